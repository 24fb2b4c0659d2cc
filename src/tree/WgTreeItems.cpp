#include "tree/WgTreeItems.h"

#include "document/WgUnicodeStrings.h"
#include "tree/WgTreeErrors.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeModel.h"

TWgTreeItems::TWgTreeItems(TWgTreeModel* Owner) : FOwner(Owner) {
    FRoot = new TWgTreeItem(Owner);
    FRoot->FFlags = RootItemFlags;
    FRoot->CreateTextBlock();
}

TWgTreeItems::~TWgTreeItems() {
    while (FRoot->HasChildren())
        FRoot->DeleteChild(FRoot->GetLastChild());
    delete FRoot;
}

TWgTreeItem* TWgTreeItems::CreateItem() {
    return ItemClass ? ItemClass(FOwner) : new TWgTreeItem(FOwner);
}

int TWgTreeItems::Count() const {
    return FOwner->AllList().Count();
}

TWgTreeItem* TWgTreeItems::Item(int Index) const {
    const auto& all = FOwner->AllList();
    return (Index >= 0 && Index < all.Count()) ? all.At(Index) : nullptr;
}

TWgTreeItem* TWgTreeItems::ItemAsVis(int Index) const {
    return FOwner->VisibleItem(Index);
}

void TWgTreeItems::BeginUpdate() {
    FOwner->BeginUpdate();
}
void TWgTreeItems::EndUpdate() {
    FOwner->EndUpdate();
}

void TWgTreeItems::AfterAdd(TWgTreeItem* Parent) {
    if (Parent->FullyExpanded() && Parent->Expanded())
        FOwner->MarkStale(tsmClearVis | tsmUpdated | tsmVisUpdated);
    FOwner->MarkStale(tsmRedrawMark);
}

TWgTreeItem* TWgTreeItems::AddItem(TWgTreeItem* Parent, int Index, const WideString& Text,
                                   void* Ptr, bool Append) {
    TWgTreeItem* parent = Parent ? Parent : FRoot;
    if (!Append && (Index < 0 || Index > parent->ChildrenCount()))
        throw EWgTreeError(WgTreeMessages::SItemIndexOutOfBounds);
    TWgTreeLock lock(*FOwner);
    TWgTreeItem* child = CreateItem();
    if (Append)
        parent->AddChild(child);
    else
        parent->InsertChild(Index, child);
    child->FData = Ptr;
    child->SetText(Text);
    AfterAdd(parent);
    return child;
}

namespace {
TWgTreeItem* ParentOfSibling(TWgTreeItem* Sibling, TWgTreeItem* Root) {
    return (Sibling && Sibling->ParentItem()) ? Sibling->ParentItem() : Root;
}
} // namespace

TWgTreeItem* TWgTreeItems::Add(TWgTreeItem* Sibling, const WideString& Text) {
    return AddItem(ParentOfSibling(Sibling, FRoot), 0, Text, nullptr, true);
}
TWgTreeItem* TWgTreeItems::AddFirst(TWgTreeItem* Sibling, const WideString& Text) {
    return AddItem(ParentOfSibling(Sibling, FRoot), 0, Text, nullptr, false);
}
TWgTreeItem* TWgTreeItems::AddObject(TWgTreeItem* Sibling, const WideString& Text, void* Ptr) {
    return AddItem(ParentOfSibling(Sibling, FRoot), 0, Text, Ptr, true);
}
TWgTreeItem* TWgTreeItems::AddObjectFirst(TWgTreeItem* Sibling, const WideString& Text, void* Ptr) {
    return AddItem(ParentOfSibling(Sibling, FRoot), 0, Text, Ptr, false);
}
TWgTreeItem* TWgTreeItems::AddChild(TWgTreeItem* Parent, const WideString& Text) {
    return AddItem(Parent, 0, Text, nullptr, true);
}
TWgTreeItem* TWgTreeItems::AddChildFirst(TWgTreeItem* Parent, const WideString& Text) {
    return AddItem(Parent, 0, Text, nullptr, false);
}
TWgTreeItem* TWgTreeItems::AddChildObject(TWgTreeItem* Parent, const WideString& Text, void* Ptr) {
    return AddItem(Parent, 0, Text, Ptr, true);
}
TWgTreeItem* TWgTreeItems::AddChildObjectFirst(TWgTreeItem* Parent, const WideString& Text,
                                               void* Ptr) {
    return AddItem(Parent, 0, Text, Ptr, false);
}
TWgTreeItem* TWgTreeItems::Insert(TWgTreeItem* Sibling, const WideString& Text) {
    return InsertObject(Sibling, Text, nullptr);
}
TWgTreeItem* TWgTreeItems::InsertObject(TWgTreeItem* Sibling, const WideString& Text, void* Ptr) {
    if (!Sibling || !Sibling->ParentItem()) return AddItem(FRoot, 0, Text, Ptr, false);
    return AddItem(Sibling->ParentItem(), Sibling->Index(), Text, Ptr, false);
}
TWgTreeItem* TWgTreeItems::InsertAfter(TWgTreeItem* Sibling, const WideString& Text) {
    return InsertAfterObject(Sibling, Text, nullptr);
}
TWgTreeItem* TWgTreeItems::InsertAfterObject(TWgTreeItem* Sibling, const WideString& Text,
                                             void* Ptr) {
    if (!Sibling || !Sibling->ParentItem()) return AddItem(FRoot, 0, Text, Ptr, false);
    return AddItem(Sibling->ParentItem(), Sibling->Index() + 1, Text, Ptr, false);
}

TWgTreeItem* TWgTreeItems::InsertItem(int Index, TWgTreeItem* Parent) {
    return AddItem(Parent, Index, WideString(), nullptr, false);
}

TWgTreeItem* TWgTreeItems::AddLastItem(TWgTreeItem* Parent) {
    TWgTreeItem* parent = Parent ? Parent : FRoot;
    TWgTreeLock lock(*FOwner);
    TWgTreeItem* child = parent->AddLastChild(CreateItem());
    AfterAdd(parent);
    return child;
}

void TWgTreeItems::AllocateStorage(int Count) {
    const int capacity = int((std::uint32_t(Count) + 0x4FF) & 0xFFFFFB00u);
    if (capacity > FOwner->AllList().Capacity()) FOwner->AllList().SetCapacity(capacity);
}

void TWgTreeItems::Delete(TWgTreeItem* Item) {
    if (!Item || Item == FRoot || !Item->ParentItem()) return;
    TWgTreeLock lock(*FOwner);
    TWgTreeItem* parent = Item->ParentItem();
    parent->DeleteChild(Item);
    if (parent->FullyExpanded() && parent->Expanded())
        FOwner->MarkStale(tsmClearVis | tsmUpdated | tsmVisUpdated);
}

void TWgTreeItems::Clear() {
    const int count = Count();
    TWgTreeLock lock(*FOwner);
    FOwner->DoSetFocused(nullptr, true);
    FOwner->DeselectAll();
    if (TWgTreeViewLink* view = FOwner->View()) view->ClearVisibleRows();
    // Without multi-selection no item looks for itself in the selection list.
    const bool multiSelect = FOwner->FMultiSelect;
    FOwner->FMultiSelect = false;
    while (FRoot->HasChildren())
        FRoot->DeleteChild(FRoot->GetLastChild());
    FOwner->FMultiSelect = multiSelect;
    if (FOwner->FSelectedList) FOwner->FSelectedList->SetCapacity(0);
    FOwner->MarkStale(tsmHRange);
    if (count > 0) FOwner->MarkStale(tsmClearVis | tsmVisUpdated | tsmUpdated | tsmClearAll);
}

void TWgTreeItems::Assign(const TWgTreeItems& Source) {
    if (&Source == this) return;
    FRoot->Assign(*Source.FRoot);
    FRoot->FFlags = RootItemFlags | (FRoot->FFlags & (ifFocused | ifSelected));
}

void TWgTreeItems::Assign(const TWgWideStrings& Source) {
    TWgTreeLock lock(*FOwner);
    Clear();
    for (int i = 0; i < Source.Count(); ++i)
        AddChild(nullptr, Source.Strings(i));
}
