// The values of an item: texts, markup, flags, check boxes, expansion,
// height, styles and copying.

#include "tree/WgTreeItem.h"

#include "tree/WgHeaderSections.h"
#include "tree/WgTreeErrors.h"
#include "tree/WgTreeItems.h"
#include "tree/WgTreeModel.h"

namespace {
const WideString EmptyText;
const WideString HtmlTag = u"<html>";

bool StartsWithHtml(const WideString& S) {
    return S.compare(0, HtmlTag.size(), HtmlTag) == 0;
}
} // namespace

// ---- texts

WideString TWgTreeItem::Text() const {
    if (FStaticData) return FStaticData->Text.Str();
    WideString text;
    if (FOwner && FOwner->OnVirtualTextNeeded)
        FOwner->OnVirtualTextNeeded(*FOwner, const_cast<TWgTreeItem*>(this), -1, text);
    return text;
}

void TWgTreeItem::SetText(const WideString& Value) {
    if (!FStaticData) return;
    FStaticData->Text = Value;
    if (FOwner->OnItemChange) FOwner->OnItemChange(*FOwner, this, icmText);
    AfterTextChange(icmText);
}

TWgWideStringList& TWgTreeItem::ColumnText() {
    if (!FStaticData) CreateTextBlock(); // a virtual item asked for its list
    TWgTreeItemTextExtra& extra = TextExtra();
    if (!extra.ColumnText) {
        extra.ColumnText = std::make_unique<TWgWideStringList>();
        extra.ColumnText->OnChange = [this](TWgWideStringList&) { ColumnTextChanged(); };
    }
    return *extra.ColumnText;
}

int TWgTreeItem::ColumnTextCount() const {
    return (FStaticData && FStaticData->Extra && FStaticData->Extra->ColumnText)
               ? FStaticData->Extra->ColumnText->Count()
               : 0;
}

WideString TWgTreeItem::ColumnTextAt(int Index) const {
    if (Index < 0 || Index >= ColumnTextCount()) return WideString();
    return FStaticData->Extra->ColumnText->Ref(Index);
}

const WideString& TWgTreeItem::Hint() const {
    return (FStaticData && FStaticData->Extra) ? FStaticData->Extra->Hint : EmptyText;
}

void TWgTreeItem::SetHint(const WideString& Value) {
    if (!FStaticData) return;
    if (Value.empty() && !FStaticData->Extra) return;
    TextExtra().Hint = Value;
}

WideString TWgTreeItem::GetHint() {
    if (FStaticData) return Hint();
    WideString hint;
    if (FOwner->OnVirtualHintNeeded) FOwner->OnVirtualHintNeeded(*FOwner, this, hint);
    return hint;
}

void TWgTreeItem::ColumnTextChanged() {
    if (FOwner->OnItemChange) FOwner->OnItemChange(*FOwner, this, icmColumnText);
    AfterTextChange(icmColumnText);
}

void TWgTreeItem::AfterTextChange(TItemChangeMode Mode) {
    TWgTreeModel* tree = FOwner;
    const bool unlocked = tree->UpdateCount() == 0;
    TWgTreeLock lock(*tree);
    TWgTreeViewLink* view = tree->View();
    if (!tree->ShowColumns() && FullyExpanded()) {
        if (unlocked && view)
            view->RecomputeHRange();
        else
            tree->MarkStale(tsmHRange);
    }
    bool sorts = tree->SortMode() == smAdd || tree->SortMode() == smAddClick;
    if (Mode == icmText) {
        sorts =
            sorts && (tree->SortSection() == tree->MainTreeColumn() || tree->SortSection() == -1);
    } else {
        const int sections = tree->HeaderSections() ? tree->HeaderSections()->Count() : 0;
        sorts = sorts && tree->SortSection() >= -1 && tree->SortSection() < sections && FParent;
    }
    if (sorts && FParent) {
        if (unlocked)
            tree->SortNow(FParent, false);
        else
            tree->MarkStale(tsmDelayedSort);
    }
    if (tree->ShowColumns()) {
        if (unlocked && view) {
            if (Mode == icmText)
                view->AutoSizeSection(tree->MainTreeColumn());
            else
                view->AutoSizeAllSections();
        } else {
            tree->MarkStale(tsmColumnSizeUpdate);
        }
    }
    if ((Multiline() && tree->AdjustMultilineHeight()) || IsHTML()) {
        if (IsHTML()) ParseMarkup();
        FHeightWord |= 0xFFFF;
        tree->MarkStale(tsmAll);
    } else if ((FHeightWord & 0xFFFF) != 0xFFFF) {
        // Any text change makes a measured height stale: a row of its own
        // height (no OwnerHeight) is measured anew for the new text.
        FHeightWord |= 0xFFFF;
        tree->MarkStale(tsmClearVis | tsmClearAll | tsmUpdated);
    }
    RepaintItem();
}

void TWgTreeItem::RepaintItem(int Column) {
    if (HasFlag(ifDeleting) || !FOwner || !FOwner->View() || FOwner->Destroying()) return;
    FOwner->View()->InvalidateItem(this, Column);
}

// ---- markup

void TWgTreeItem::ParseMarkup() {
    TWgTreeViewLink* view = FOwner->View();
    TWgTreeItemExtra& extra = Extra();
    const WideString text = Text();
    extra.MainHtmlData = (view && StartsWithHtml(text)) ? view->ParseMarkup(text) : nullptr;
    const int count = ColumnTextCount();
    extra.ColumnHtmlData.clear();
    extra.ColumnHtmlData.resize(std::size_t(count));
    for (int i = 0; view && i < count; ++i) {
        const WideString& column = FStaticData->Extra->ColumnText->Ref(i);
        if (StartsWithHtml(column))
            extra.ColumnHtmlData[std::size_t(i)] = view->ParseMarkup(column);
    }
}

void TWgTreeItem::ReleaseMarkup() {
    if (!FExtra) return;
    FExtra->MainHtmlData.reset();
    FExtra->ColumnHtmlData.clear();
}

void TWgTreeItem::SetIsHTML(bool Value) {
    if (Value == IsHTML()) return;
    TWgTreeModel* tree = FOwner;
    if (Value) {
        FFlags |= ifIsHTML;
        SetStaticFlag(sfIsHTMLCopy, true);
        if (!tree->Loading()) ParseMarkup();
        tree->AdjustTotalVarHeightCount(1);
    } else {
        ReleaseMarkup();
        FFlags &= ~ifIsHTML;
        SetStaticFlag(sfIsHTMLCopy, false);
        tree->AdjustTotalVarHeightCount(-1);
    }
    FHeightWord |= 0xFFFF;
    if (!tree->Destroying()) {
        TWgTreeLock lock(*tree);
        tree->MarkStale(tsmAll);
    }
}

// ---- flags

void TWgTreeItem::SetStaticFlag(std::uint32_t Flag, bool Value) {
    if (!FStaticDataEx) return;
    const std::uint32_t old = FStaticDataEx->StaticFlags;
    FStaticDataEx->StaticFlags = Value ? old | Flag : old & ~Flag;
    if (FStaticDataEx->StaticFlags != old) RepaintItem();
}

void TWgTreeItem::SetUseStyles(bool Value) {
    SetStaticFlag(sfUseStyles, Value);
}

namespace {
// Whether an item counts in TotalVarHeightCount for its height flags; the
// same rule counts it off when it is deleted.
bool VarHeightFlags(const TWgTreeItem& Item, const TWgTreeModel& Tree) {
    return !Item.OwnerHeight() || (Item.Multiline() && Tree.AdjustMultilineHeight());
}
} // namespace

void TWgTreeItem::SetMultiline(bool Value) {
    if (Value == Multiline()) return;
    const bool before = VarHeightFlags(*this, *FOwner);
    FFlags = Value ? FFlags | ifMultiline : FFlags & ~ifMultiline;
    FOwner->AdjustTotalVarHeightCount(int(VarHeightFlags(*this, *FOwner)) - int(before));
    FHeightWord |= 0xFFFF;
    TWgTreeLock lock(*FOwner);
    FOwner->MarkStale(tsmAll);
}

void TWgTreeItem::SetOwnerHeight(bool Value) {
    if (Value == OwnerHeight()) return;
    const bool before = VarHeightFlags(*this, *FOwner);
    FFlags = Value ? FFlags | ifOwnerHeight : FFlags & ~ifOwnerHeight;
    FOwner->AdjustTotalVarHeightCount(int(VarHeightFlags(*this, *FOwner)) - int(before));
    TWgTreeLock lock(*FOwner);
    FOwner->MarkStale(tsmAll);
}

void TWgTreeItem::SetFixedHeight(int Value) {
    FHeightWord = (std::uint32_t(Value & 0xFFFF) << 16) | (FHeightWord & 0xFFFF);
    TWgTreeLock lock(*FOwner);
    FOwner->MarkStale(tsmAll);
}

void TWgTreeItem::SetWholeLine(bool Value) {
    if (Value == WholeLine()) return;
    FFlags = Value ? FFlags | ifWholeLine : FFlags & ~ifWholeLine;
    FHeightWord |= 0xFFFF;
    TWgTreeLock lock(*FOwner);
    FOwner->MarkStale(tsmAll);
}

void TWgTreeItem::SetWordWrap(bool Value) {
    if (Value == WordWrap()) return;
    FFlags = Value ? FFlags | ifWordWrap : FFlags & ~ifWordWrap;
    FHeightWord |= 0xFFFF;
    TWgTreeLock lock(*FOwner);
    FOwner->MarkStale(tsmAll);
}

void TWgTreeItem::SetHidden(bool Value) {
    if (Value == Hidden()) return;
    StoreFlags(Value ? FFlags | ifHidden : FFlags & ~ifHidden);
    FOwner->AdjustHiddenCount(Value ? 1 : -1);
    if (FOwner->FilteredVisibility()) {
        TWgTreeLock lock(*FOwner);
        FOwner->MarkStale(tsmAll);
    }
}

void TWgTreeItem::SetEnabled(bool Value) {
    if (Value == Enabled()) return;
    FFlags = Value ? FFlags | ifEnabled : FFlags & ~ifEnabled;
    RepaintItem();
}

void TWgTreeItem::SetSelected(bool Value) {
    if (FOwner->MultiSelect()) FOwner->SetItemSelected(this, Value);
}

void TWgTreeItem::SetFocused(bool Value) {
    if (Value)
        FOwner->DoSetFocused(this, true);
    else if (Focused())
        FOwner->DoSetFocused(nullptr, true);
}

void TWgTreeItem::SetState(std::uint16_t Value) {
    if (!FStaticDataEx) return;
    const std::uint16_t expanded = FStaticDataEx->State & stExpanded;
    Value = std::uint16_t((Value & ~std::uint16_t(stExpanded)) | expanded);
    if (Value == FStaticDataEx->State) return;
    FStaticDataEx->State = Value;
    if (FOwner->OnItemChange) FOwner->OnItemChange(*FOwner, this, icmState);
    RepaintItem();
}

void TWgTreeItem::SetImageIndex(std::int32_t Value) {
    if (!FStaticDataEx || FStaticDataEx->ImageIndex == Value) return;
    FStaticDataEx->ImageIndex = Value;
    RepaintItem();
}

// ---- check boxes

void TWgTreeItem::SetCheckBoxState(std::uint8_t Value) {
    if (!FStaticDataEx || FStaticDataEx->CheckBoxState == Value) return;
    FStaticDataEx->CheckBoxState = Value;
    if (HasStaticFlag(sfShowCheckBox) && FOwner->ShowCheckboxes())
        RepaintItem(FOwner->ShowColumns() ? FOwner->MainTreeColumn() : -1);
}

void TWgTreeItem::SetCheckBoxType(std::uint8_t Value) {
    if (!FStaticDataEx || FStaticDataEx->CheckBoxType == Value) return;
    FStaticDataEx->CheckBoxType = Value;
    if (HasStaticFlag(sfShowCheckBox) && FOwner->ShowCheckboxes())
        RepaintItem(FOwner->ShowColumns() ? FOwner->MainTreeColumn() : -1);
}

void TWgTreeItem::SetChecked(bool Value) {
    SetCheckBoxState(Value ? cbChecked : cbUnchecked);
    if (Value && CheckBoxType() == ectRadioButton && FParent)
        for (TWgTreeItem* sibling : FParent->FChildren->Items())
            if (sibling != this && sibling->CheckBoxType() == ectRadioButton)
                sibling->SetCheckBoxState(cbUnchecked);
}

// ---- expanding

void TWgTreeItem::UpdateExpanded(bool Value) {
    StoreFlags(Value ? FFlags | ifExpanded : FFlags & ~ifExpanded);
    if (FStaticDataEx)
        FStaticDataEx->State = Value ? FStaticDataEx->State | stExpanded
                                     : FStaticDataEx->State & ~std::uint16_t(stExpanded);
}

void TWgTreeItem::SetExpanded(bool Value) {
    if (Value == Expanded()) return;
    if (Value)
        Expand(false);
    else
        Collapse(false);
}

void TWgTreeItem::Expand(bool Recursive) {
    TWgTreeModel* tree = FOwner;
    const bool isRoot = FParent == nullptr;
    if (!isRoot && tree->OnItemExpanding) {
        bool can = true;
        tree->OnItemExpanding(*tree, this, can);
        if (!can) return;
    }
    {
        TWgTreeLock lock(*tree);
        tree->MarkStale(tsmVisUpdated | tsmClearAll);
        UpdateExpanded(true);
        if (Recursive && FChildren) {
            const std::vector<TWgTreeItem*> children = FChildren->Items();
            for (TWgTreeItem* child : children)
                child->Expand(true);
        }
        if (!tree->ShowColumns() && FullyExpanded()) tree->MarkStale(tsmHRange);
        tree->MarkStale(tsmClearVis | tsmUpdated);
    }
    TWgHeaderSections* sections = tree->HeaderSections();
    if (sections && sections->GetSection(tree->MainTreeColumn()) && tree->View())
        tree->View()->AutoSizeSection(tree->MainTreeColumn());
    if (!isRoot && tree->OnItemExpand) tree->OnItemExpand(*tree, this);
}

void TWgTreeItem::Collapse(bool Recursive) {
    TWgTreeModel* tree = FOwner;
    const bool isRoot = FParent == nullptr;
    if (!isRoot && tree->OnItemCollapsing) {
        bool can = true;
        tree->OnItemCollapsing(*tree, this, can);
        if (!can) return;
    }
    {
        TWgTreeLock lock(*tree);
        tree->MarkStale(tsmVisUpdated | tsmClearAll);
        UpdateExpanded(false);
        if (Recursive && FChildren) {
            const std::vector<TWgTreeItem*> children = FChildren->Items();
            for (TWgTreeItem* child : children)
                child->Collapse(true);
        }
        TWgTreeItem* focused = tree->FocusedItem();
        if (focused && focused != this && focused->IsUnder(this) && tree->MoveFocusOnCollapse()) {
            const int selected =
                tree->SelectedList() ? tree->SelectedList()->Count() : int(focused->Selected());
            if (selected == 1) {
                const bool autoExpand = tree->AutoExpand();
                tree->SetAutoExpand(false);
                tree->DoSetFocused(this, true);
                tree->SetAutoExpand(autoExpand);
                tree->SetItemSelected(focused, false);
            } else {
                tree->DoSetFocused(this, true);
            }
        }
        if (tree->DeselectChildrenOnCollapse()) {
            const int start = tree->IndexOfItem(this) + 1;
            auto& all = tree->AllList();
            for (int i = start; i < all.Count(); ++i) {
                TWgTreeItem* item = all.At(i);
                if (!item->IsUnder(this)) break;
                tree->SetItemSelected(item, false);
            }
        }
        if (!tree->ShowColumns() && FullyExpanded()) tree->MarkStale(tsmHRange);
        tree->MarkStale(tsmClearVis | tsmUpdated);
    }
    TWgHeaderSections* sections = tree->HeaderSections();
    if (sections && sections->GetSection(tree->MainTreeColumn()) && tree->View())
        tree->View()->AutoSizeSection(tree->MainTreeColumn());
    if (!isRoot && tree->OnItemCollapse) tree->OnItemCollapse(*tree, this);
}

void TWgTreeItem::MakeVisible() {
    TWgTreeLock lock(*FOwner);
    for (TWgTreeItem* p = FParent; p && p->FParent; p = p->FParent)
        if (!p->Expanded()) p->Expand(false);
}

// ---- height

int TWgTreeItem::GetHeight() {
    TWgTreeModel* tree = FOwner;
    const bool adjustMultiline = Multiline() && tree->AdjustMultilineHeight();
    if (OwnerHeight() && !IsHTML() && !adjustMultiline) return tree->LineHeight();
    if (FixedHeight() > 0 && !Multiline() && !IsHTML()) return FixedHeight();
    if ((FHeightWord & 0xFFFF) != 0xFFFF) return int(FHeightWord & 0xFFFF);
    TWgTreeViewLink* view = tree->View();
    if (!view) return tree->LineHeight();
    int height = 0;
    TWgHeaderSections* sections = tree->HeaderSections();
    if (!tree->ShowColumns() || !sections) {
        height = view->MeasureCellHeight(this, -1, view->ClientWidth());
    } else if (WholeLine()) {
        int width = 0;
        for (int i = 0; i < sections->Count(); ++i)
            if (TWgHeaderSection* s = sections->GetSectionByPos(i); s->Visible())
                width += s->Width();
        height = view->MeasureCellHeight(this, -1, width);
    } else {
        for (int i = 0; i < sections->Count(); ++i) {
            TWgHeaderSection* s = sections->GetSectionByPos(i);
            if (s->Visible())
                height =
                    std::max(height, view->MeasureCellHeight(this, s->SectionIndex(), s->Width()));
        }
    }
    height = std::clamp(height, 0, 0xFFFE);
    FHeightWord = (FHeightWord & 0xFFFF0000u) | std::uint32_t(height);
    return height;
}

int TWgTreeItem::GetWidth() {
    TWgTreeViewLink* view = FOwner->View();
    return view ? view->MeasureItemWidth(this) : 0;
}

// ---- styles

TWgCellStyle* TWgTreeItem::GetMainStyle() {
    if (!FStaticData) return nullptr;
    TWgTreeItemTextExtra& extra = TextExtra();
    if (!extra.MainStyle) {
        // Made at first use, from the tree's font as it stands then.
        extra.MainStyle = std::make_unique<TWgCellStyle>(this);
        const TWgTreeFont& font = FOwner->Font();
        TWgCellStyle& style = *extra.MainStyle;
        style.SetFontSize(font.Size);
        style.SetFontStyles(font.Styles);
        style.SetFontName(font.Name);
        style.SetOwnerProps(true);
    }
    return extra.MainStyle.get();
}

TWgCellStyle* TWgTreeItem::GetStyles(int Index) const {
    if (!FStaticData || !FStaticData->Extra || !FStaticData->Extra->Styles) return nullptr;
    const TWgCellStyles& styles = *FStaticData->Extra->Styles;
    return (Index >= 0 && Index < int(styles.size())) ? styles[std::size_t(Index)].get() : nullptr;
}

int TWgTreeItem::StylesCount() const {
    return (FStaticData && FStaticData->Extra && FStaticData->Extra->Styles)
               ? int(FStaticData->Extra->Styles->size())
               : 0;
}

TWgCellStyle* TWgTreeItem::AddStyle() {
    if (!FStaticData) return nullptr;
    TWgTreeItemTextExtra& extra = TextExtra();
    if (!extra.Styles) extra.Styles = std::make_unique<TWgCellStyles>();
    extra.Styles->push_back(std::make_unique<TWgCellStyle>(this));
    return extra.Styles->back().get();
}

void TWgTreeItem::RemoveStyle(TWgCellStyle* Style) {
    if (!FStaticData || !FStaticData->Extra || !FStaticData->Extra->Styles) return;
    TWgCellStyles& styles = *FStaticData->Extra->Styles;
    for (auto it = styles.begin(); it != styles.end(); ++it)
        if (it->get() == Style) {
            styles.erase(it);
            break;
        }
}

// ---- assign

void TWgTreeItem::Assign(const TWgTreeItem& Source) {
    if (&Source == this) return;
    if (Source.IsUnder(this) || IsUnder(&Source)) {
        // The source is a descendant, whose copy of the children would
        // delete it, or an ancestor, which would grow while it is copied:
        // copy it aside first.
        TWgTreeModel scratch;
        TWgTreeItem* copy = scratch.Items().AddChild(nullptr, WideString());
        copy->Assign(Source);
        Assign(*copy);
        return;
    }
    TWgTreeModel* tree = FOwner;
    TWgTreeLock lock(*tree);
    if (FStaticData && Source.FStaticData) {
        FStaticData->Text = Source.FStaticData->Text;
        if (Source.ColumnTextCount() > 0 || ColumnTextCount() > 0) {
            TWgWideStringList& columns = ColumnText();
            auto event = std::move(columns.OnChange);
            columns.Clear();
            for (int i = 0; i < Source.ColumnTextCount(); ++i)
                columns.Add(Source.ColumnTextAt(i));
            columns.OnChange = std::move(event);
        }
        SetHint(Source.Hint());
    }
    if (FStaticDataEx && Source.FStaticDataEx) *FStaticDataEx = *Source.FStaticDataEx;

    const bool before = VarHeightFlags(*this, *tree);
    const bool wasHidden = Hidden();
    StoreFlags((Source.FFlags & ~AssignSkippedFlags) | (FFlags & AssignSkippedFlags));
    tree->AdjustTotalVarHeightCount(int(VarHeightFlags(*this, *tree)) - int(before));
    if (Hidden() != wasHidden) tree->AdjustHiddenCount(Hidden() ? 1 : -1);
    SetIsHTML(Source.IsHTML());
    FHeightWord = Source.FHeightWord;
    if (Source.FExtra || FExtra) {
        SetObjectData(Source.ObjectData());
        SetDataInterface(Source.DataInterface());
    }
    FTag = Source.FTag;

    if (Source.FStaticData && Source.FStaticData->Extra && Source.FStaticData->Extra->MainStyle)
        if (TWgCellStyle* main = GetMainStyle())
            main->Assign(*Source.FStaticData->Extra->MainStyle);
    if (FStaticData && FStaticData->Extra && FStaticData->Extra->Styles)
        FStaticData->Extra->Styles->clear();
    for (int i = 0; i < Source.StylesCount(); ++i)
        if (TWgCellStyle* style = AddStyle()) style->Assign(*Source.GetStyles(i));

    while (HasChildren())
        DeleteChild(FChildren->Last());
    if (Source.FChildren) {
        TWgTreeItems& items = tree->Items();
        for (const TWgTreeItem* child : Source.FChildren->Items()) {
            TWgTreeItem* copy = items.CreateItem();
            AddChild(copy);
            copy->Assign(*child);
        }
    }
    tree->MarkStale(tsmAll);
}
