#include "tree/WgTree.h"

#include "tree/WgTreeErrors.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"

TCustomWgTree::TCustomWgTree()
    : FHeader(std::make_unique<TWgHeaderModel>()), FTreeView(std::make_unique<TWgTreeView>(*this)) {
    SetHeaderSections(&FHeader->Sections());
    SetView(FTreeView.get());
    SetMultiSelect(true);
    SetSortSection(0);
    SetLineHeight(FTreeView->ComputeLineHeight());
    // The section is still in the list while this runs.
    FHeader->OnSectionDelete = [this](TWgHeaderModel& Header, TWgHeaderSection* Section) {
        if (FSortSections) std::erase(*FSortSections, Section);
        SectionDeleted(Header.Sections().Count() - (Section ? 1 : 0));
    };
    // A section that asks for its width gets the fit of its column.
    FHeader->OnSectionAutoSize = [this](TWgHeaderModel&, TWgHeaderSection* Section) {
        FTreeView->AutoSizeColumn(Section->SectionIndex());
    };
}

TCustomWgTree::~TCustomWgTree() {
    // The items go in the model's destructor; by then view and header are
    // gone, so nothing may call back into them.
    SetDestroying();
    SetView(nullptr);
    SetHeaderSections(nullptr);
}

template <typename T> void TCustomWgTree::SetDisplay(T& Field, T Value, std::uint32_t Marks) {
    if (Field == Value) return;
    FTreeView->IsUpdating(true);
    Field = Value;
    MarkStale(Marks | tsmUpdated);
    FTreeView->IsUpdating(false);
}

void TCustomWgTree::DisplayChanged(std::uint32_t Marks) {
    FTreeView->IsUpdating(true);
    MarkStale(Marks | tsmUpdated);
    FTreeView->IsUpdating(false);
}

void TCustomWgTree::SetHeaderFlat(bool Value) {
    if (FHeader->Flat == Value) return;
    FHeader->Flat = Value;
    FHeader->Repaint(nullptr);
}

void TCustomWgTree::SetHeaderHotTrack(bool Value) {
    FHeaderHotTrack = Value;
    FHeader->Tracking = FHeaderHotTrack && FTracking;
    FHeader->Repaint(nullptr);
}

void TCustomWgTree::SetTracking(bool Value) {
    FTracking = Value;
    FHeader->Tracking = FHeaderHotTrack && FTracking;
    FHeader->Repaint(nullptr);
}

void TCustomWgTree::SetItemIndent(int Value) {
    SetDisplay(FItemIndent, Value, tsmClearAll | (ShowColumns() ? 0u : unsigned(tsmHRange)));
}

void TCustomWgTree::SetAutoLineHeight(bool Value) {
    SetDisplay(FAutoLineHeight, Value, tsmClearVis | tsmClearAll);
}

void TCustomWgTree::SetLineHeightProp(int Value) {
    if (FAutoLineHeight) return;
    // 0 would divide by zero in the row count: it asks for the computed height.
    if (Value == 0) Value = FTreeView->ComputeLineHeight();
    if (Value == LineHeight()) return;
    FTreeView->IsUpdating(true);
    SetLineHeight(Value);
    MarkStale(tsmClearVis | tsmClearAll | tsmUpdated);
    FTreeView->IsUpdating(false);
}

void TCustomWgTree::SetShowRoot(bool Value) {
    SetDisplay(FShowRoot, Value, tsmClearAll | (ShowColumns() ? 0u : unsigned(tsmHRange)));
}

void TCustomWgTree::SetShowButtons(bool Value) {
    SetDisplay(FShowButtons, Value, tsmClearAll | (ShowColumns() ? 0u : unsigned(tsmHRange)));
}

void TCustomWgTree::SetShowImages(bool Value) {
    // The automatic line height follows the images; the update recomputes it.
    SetDisplay(FShowImages, Value, tsmClearAll | (ShowColumns() ? 0u : unsigned(tsmHRange)));
}

void TCustomWgTree::SetShowLines(bool Value) {
    SetDisplay(FShowLines, Value, tsmClearAll);
}

void TCustomWgTree::SetShowColumnsProp(bool Value) {
    if (Value == ShowColumns()) return;
    FTreeView->IsUpdating(true);
    SetShowColumns(Value);
    MarkStale(tsmClearAll | tsmClearVis | tsmHRange | tsmUpdated);
    FTreeView->IsUpdating(false);
}

void TCustomWgTree::SetShowCheckboxesProp(bool Value) {
    if (Value == ShowCheckboxes()) return;
    FTreeView->IsUpdating(true);
    SetShowCheckboxes(Value);
    MarkStale(tsmClearAll | tsmClearVis | (ShowColumns() ? 0u : unsigned(tsmHRange)) | tsmUpdated);
    FTreeView->IsUpdating(false);
}

TWgTreeItem* TCustomWgTree::GetItemAt(int X, int Y, TWgItemPart& Part, int& HitColumn) const {
    return FTreeView->GetItemAt(X, Y, HitColumn, Part);
}

void TCustomWgTree::Sort(bool Recursive) {
    FTreeView->SortItem(Items().Root(), Recursive);
}

void TCustomWgTree::DoSetFocused(TWgTreeItem* Item, bool Forced) {
    // Focus moves made by the model (deletion, collapse) are not delayed;
    // only single selection follows them.
    FTreeView->DoSetFocused(Item, Forced, false, !MultiSelect());
}

void TCustomWgTree::SelectAll() {
    if (!MultiSelect()) return;
    TWgTreeLock lock(*this);
    for (int i = 0; i < AllList().Count(); ++i)
        FTreeView->SetSelected(AllList().At(i), true);
}

void TCustomWgTree::InvertSelection() {
    if (!MultiSelect()) return;
    TWgTreeLock lock(*this);
    for (int i = 0; i < AllList().Count(); ++i) {
        TWgTreeItem* item = AllList().At(i);
        FTreeView->SetSelected(item, !item->Selected());
    }
}

int TCustomWgTree::SelectedCount() const {
    if (SelectedList()) return SelectedList()->Count();
    return (SelAnchor() && SelAnchor()->Selected()) ? 1 : 0;
}

TWgTreeItem* TCustomWgTree::GetNextSelected(TWgTreeItem* Prev) const {
    if (!SelectedList()) {
        TWgTreeItem* only = (SelAnchor() && SelAnchor()->Selected()) ? SelAnchor() : nullptr;
        return Prev ? nullptr : only;
    }
    const auto& list = *SelectedList();
    const int index = Prev ? list.IndexOf(Prev) + 1 : 0;
    return (index >= 0 && index < list.Count()) ? list.Get(index) : nullptr;
}

void TCustomWgTree::PruneSortSections() {
    // Sections deleted while the header held its notifications are gone
    // without a word; only pointers are compared here.
    if (FSortSections)
        std::erase_if(*FSortSections,
                      [this](TWgHeaderSection* S) { return FHeader->Sections().IndexOf(S) < 0; });
}

void TCustomWgTree::SectionDeleted(int NewCount) {
    if (SortMode() != smClick && SortMode() != smAddClick) return;
    TWgTreeLock lock(*this);
    MarkStale(tsmDelayedSort);
    if (SortSection() >= NewCount) SetSortSection(-1);
}

void TCustomWgTree::Loaded() {
    SetLoading(false);
    FTreeView->IsUpdating(true);
    // Markup of streamed items was left unparsed while they came in.
    ParseLoadedMarkup();
    if (SortMode() == smAdd || SortMode() == smAddClick) FTreeView->SortItem(Items().Root(), true);
    SetLineHeight(FTreeView->ComputeLineHeight());
    MarkStale(tsmAll | tsmHRange);
    FTreeView->IsUpdating(false);
}

bool TCustomWgTree::Restore() {
    if (!FHeader->Storage) return false;
    FTreeView->IsUpdating(true);
    const bool restored = FHeader->Restore();
    MarkStale(tsmClearVis | tsmClearAll | tsmRedrawMark | tsmHRange | tsmUpdated);
    FTreeView->IsUpdating(false);
    return restored;
}

TWgTreeItem* TCustomWgTree::TopItem() const {
    const auto& rows = FTreeView->VisibleList();
    return rows.empty() ? nullptr : rows.front();
}

void TCustomWgTree::SetTopItem(TWgTreeItem* Item) {
    if (!Item) throw EWgTreeError(WgTreeMessages::SItemNotSpecified);
    FTreeView->ScrollToTop(Item);
}
