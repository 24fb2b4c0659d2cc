#include "tree/WgTreeItem.h"

#include "tree/WgHeaderSections.h"
#include "tree/WgTreeErrors.h"
#include "tree/WgTreeItems.h"
#include "tree/WgTreeModel.h"

TWgTreeItem::TWgTreeItem(TWgTreeModel* Owner) : FOwner(Owner) {}

TWgTreeItem::~TWgTreeItem() {
    if (Selected() && FOwner && FOwner->MultiSelect() && FOwner->SelectedList()) {
        int index = FOwner->SelectedList()->IndexOfBack(this);
        if (index >= 0) FOwner->SelectedList()->Delete(index);
    }
    if (IsHTML()) SetIsHTML(false);
    FreeBlocks();
}

TWgTreeModel* TWgTreeItem::Owner() const {
    return FOwner;
}
TWgTreeItems* TWgTreeItem::List() const {
    return FOwner ? &FOwner->Items() : nullptr;
}
TWgTreeItem* TWgTreeItem::Root() const {
    return FOwner ? FOwner->Items().Root() : nullptr;
}

TWgTreeItem* TWgTreeItem::Parent() const {
    return (FParent && FParent->FParent) ? FParent : nullptr;
}

// ---- blocks

void TWgTreeItem::CreateTextBlock() {
    if (!FStaticData) FStaticData = ::new (&FInlineText) TWgTreeItemStaticData;
}

void TWgTreeItem::CreateBlocks() {
    const TVirtualityLevel level = FOwner->VirtualityLevel();
    if (level == vlNone) CreateTextBlock();
    if ((level < vlAllProps || FOwner->Designing()) && !FStaticDataEx)
        FStaticDataEx = ::new (&FInlineEx) TWgTreeItemStaticDataEx;
}

void TWgTreeItem::FreeBlocks() {
    if (FStaticDataEx) {
        if (FStaticDataEx == &FInlineEx)
            FInlineEx.~TWgTreeItemStaticDataEx();
        else if (FOwner && FOwner->VirtualityLevel() == vlAllProps && !FOwner->Designing())
            FOwner->ReturnStaticData(FStaticDataEx);
        else
            delete FStaticDataEx;
        FStaticDataEx = nullptr;
    }
    if (FStaticData) {
        FInlineText.~TWgTreeItemStaticData();
        FStaticData = nullptr;
    }
}

TWgTreeItemTextExtra& TWgTreeItem::TextExtra() {
    if (!FStaticData->Extra) FStaticData->Extra = std::make_unique<TWgTreeItemTextExtra>();
    return *FStaticData->Extra;
}

TWgTreeItemExtra& TWgTreeItem::Extra() {
    if (!FExtra) FExtra = std::make_unique<TWgTreeItemExtra>();
    return *FExtra;
}

TWgMarkupData* TWgTreeItem::ColumnHtmlData(int Index) const {
    if (!FExtra || Index < 0 || Index >= int(FExtra->ColumnHtmlData.size())) return nullptr;
    return FExtra->ColumnHtmlData[std::size_t(Index)].get();
}

// ---- structure

int TWgTreeItem::Level() const {
    int level = -1;
    for (const TWgTreeItem* p = FParent; p; p = p->FParent)
        ++level;
    return level;
}

int TWgTreeItem::Index() const {
    return FParent ? FParent->FChildren->IndexOf(this) : -1;
}

int TWgTreeItem::AbsoluteIndex() const {
    return FOwner->IndexOfItem(this);
}

int TWgTreeItem::VisIndex() const {
    return FOwner->VisibleIndexOf(this);
}

int TWgTreeItem::SubCount() const {
    int count = 0;
    if (FChildren)
        for (const TWgTreeItem* child : FChildren->Items())
            count += 1 + child->SubCount();
    return count;
}

bool TWgTreeItem::HasVisibleChildren() const {
    if (!FOwner->FilteredVisibility()) return HasChildren();
    return GetFirstVisibleChild() != nullptr;
}

TWgTreeItem* TWgTreeItem::LastSubItem() const {
    const TWgTreeItem* p = this;
    while (p->HasChildren())
        p = p->FChildren->Last();
    return const_cast<TWgTreeItem*>(p);
}

bool TWgTreeItem::IsUnder(const TWgTreeItem* Other) const {
    if (!Other) return false;
    for (const TWgTreeItem* p = this; p; p = p->FParent)
        if (p == Other) return true;
    return false;
}

bool TWgTreeItem::FullyExpanded() const {
    for (const TWgTreeItem* p = this; p; p = p->FParent)
        if (!p->Expanded() && p->HasChildren()) return false;
    return true;
}

bool TWgTreeItem::AllParentsVisible() const {
    for (const TWgTreeItem* p = this; p && p->FParent; p = p->FParent)
        if (p->Hidden()) return false;
    return true;
}

TWgTreeItem* TWgTreeItem::GetFirstChild() const {
    return HasChildren() ? FChildren->Get(0) : nullptr;
}
TWgTreeItem* TWgTreeItem::GetLastChild() const {
    return HasChildren() ? FChildren->Last() : nullptr;
}

TWgTreeItem* TWgTreeItem::GetNextChild(const TWgTreeItem* Child) const {
    if (!HasChildren()) return nullptr;
    int index = FChildren->IndexOf(Child);
    return (index >= 0 && index + 1 < FChildren->Count()) ? FChildren->Get(index + 1) : nullptr;
}

TWgTreeItem* TWgTreeItem::GetPrevChild(const TWgTreeItem* Child) const {
    if (!HasChildren()) return nullptr;
    int index = FChildren->IndexOf(Child);
    return index > 0 ? FChildren->Get(index - 1) : nullptr;
}

TWgTreeItem* TWgTreeItem::GetFirstVisibleChild() const {
    if (!HasChildren()) return nullptr;
    if (!FOwner->FilteredVisibility()) return FChildren->Get(0);
    for (TWgTreeItem* child : FChildren->Items())
        if (!child->Hidden()) return child;
    return nullptr;
}

TWgTreeItem* TWgTreeItem::GetNextSibling() const {
    return FParent ? FParent->GetNextChild(this) : nullptr;
}
TWgTreeItem* TWgTreeItem::GetPrevSibling() const {
    return FParent ? FParent->GetPrevChild(this) : nullptr;
}

TWgTreeItem* TWgTreeItem::GetPrev() const {
    const int index = AbsoluteIndex();
    return index > 0 ? FOwner->AllList().At(index - 1) : nullptr;
}

TWgTreeItem* TWgTreeItem::GetNext() const {
    const int index = AbsoluteIndex();
    return FOwner->Items().Item(index < 0 ? -1 : index + 1);
}

// ---- adding

// A child that comes or goes changes where subtrees end even where the flat
// list keeps its order (a move to the place it already has): the model's
// index of the rows on show hears of it.
void TWgTreeItem::Attach(TWgTreeItem* Child) {
    FOwner->VisibilityChanged();
    Child->FParent = this;
    if (!FChildren) FChildren = std::make_unique<TWgList<TWgTreeItem>>();
}

void TWgTreeItem::InsertIntoAllList(int Position, TWgTreeItem* Child) {
    FOwner->FAllList.Insert(Position, Child);
    Child->FIndexHint = Position;
}

TWgTreeItem* TWgTreeItem::AddChild(TWgTreeItem* Child) {
    Attach(Child);
    auto& all = FOwner->FAllList;
    const TWgTreeItem* last = LastSubItem();
    int position;
    if (all.Count() == 0 || last == all.Last())
        position = all.Count();
    else if (last == FOwner->Items().Root())
        position = 0;
    else
        position = FOwner->IndexOfItem(last) + 1;
    InsertIntoAllList(position, Child);
    FChildren->Add(Child);
    Child->CreateBlocks();
    FOwner->MarkStale(tsmUpdated);
    return Child;
}

TWgTreeItem* TWgTreeItem::InsertChild(int Index, TWgTreeItem* Child) {
    const int count = ChildrenCount();
    if (Index < 0 || Index > count) throw EWgTreeError(WgTreeMessages::SItemIndexOutOfBounds);
    Attach(Child);
    int position;
    if (Index < count)
        position = FOwner->IndexOfItem(FChildren->Get(Index));
    else if (count > 0)
        position = FOwner->IndexOfItem(FChildren->Get(count - 1)->LastSubItem()) + 1;
    else
        position = FParent ? FOwner->IndexOfItem(this) + 1 : 0;
    InsertIntoAllList(position, Child);
    FChildren->Insert(Index, Child);
    Child->CreateBlocks();
    FOwner->MarkStale(tsmUpdated);
    return Child;
}

TWgTreeItem* TWgTreeItem::AddLastChild(TWgTreeItem* Child) {
    Attach(Child);
    InsertIntoAllList(FOwner->FAllList.Count(), Child);
    FChildren->Add(Child);
    Child->CreateBlocks();
    FOwner->MarkStale(tsmUpdated);
    return Child;
}

void TWgTreeItem::AllocateStorage(int MaxItems) {
    if (MaxItems <= 0) return;
    if (!FChildren) FChildren = std::make_unique<TWgList<TWgTreeItem>>();
    if (MaxItems > FChildren->Capacity()) FChildren->SetCapacity(MaxItems);
}

// ---- deleting

void TWgTreeItem::Delete() {
    if (FOwner) FOwner->Items().Delete(this);
}

void TWgTreeItem::RemoveFromChildren(TWgTreeItem* Child) {
    const int index = FChildren->IndexOfBack(Child);
    if (index >= 0) FChildren->Delete(index);
    if (FChildren->Count() == 0) FChildren.reset();
    FOwner->VisibilityChanged();
}

void TWgTreeItem::DeleteChild(TWgTreeItem* Child) {
    DeleteChildInBatch(Child, nullptr);
}

// The steps of a deletion, in their fixed order. A subtree leaves the flat
// list as one range when its top item goes, so that deleting a large subtree
// costs one block move instead of one per item. Its descendants are freed as
// they go; their slots in the flat list are cleared on the way (they go in
// reverse depth-first order, so each one stands just before the previous),
// and the range is cut out at the end. The descendants go under the lock
// and the stale mark of their top item, which hold for the whole subtree.
void TWgTreeItem::DeleteChildInBatch(TWgTreeItem* Child, TDeleteBatch* Batch) {
    TWgTreeModel* tree = FOwner;
    auto& all = tree->FAllList;
    const bool destroying = tree->Destroying();
    const bool wasUnlocked = tree->UpdateCount() == 0;
    Child->FFlags |= ifDeleting;
    if (!Batch) tree->BeginUpdate();

    TDeleteBatch local;
    if (!Batch) {
        // Deletions mostly come from the end: look there first.
        const int n = all.Count();
        local.First = (n > 0 && all.At(n - 1) == Child) ? n - 1 : tree->IndexOfItem(Child);
        local.Next = local.First;
        if (Child->HasChildren() && local.First >= 0) {
            const TWgTreeItem* last = Child->LastSubItem();
            local.Next = all.At(n - 1) == last ? n - 1 : tree->IndexOfItem(last);
        }
        local.Last = local.Next;
    }
    TDeleteBatch* batch = Batch ? Batch : &local;
    if (Child->HasChildren()) {
        TWgTreeItem* oldFocused = tree->FFocused;
        tree->HoldFocusEvent();
        while (Child->HasChildren())
            Child->DeleteChildInBatch(Child->FChildren->Last(), batch);
        tree->ReleaseFocusEvent(oldFocused);
    }

    if (Child->Hidden()) {
        --tree->FHiddenCount;
        Child->StoreFlags(Child->FFlags & ~ifHidden);
    }

    auto successor = [&]() -> TWgTreeItem* {
        if (TWgTreeItem* next = Child->GetNextSibling()) return next;
        if (TWgTreeItem* prev = Child->GetPrevSibling()) return prev;
        return FParent ? this : nullptr;
    };
    if (tree->FSelAnchor == Child) tree->FSelAnchor = destroying ? nullptr : successor();
    if (Child->Selected()) tree->SetItemSelected(Child, false);
    if (tree->FFocused == Child) {
        if (destroying) {
            Child->FFlags &= ~ifFocused;
            tree->FFocused = nullptr;
        } else {
            tree->DoSetFocused(successor(), true);
        }
    }

    if (wasUnlocked && tree->FilteredVisibility()) tree->ApplyVisFilter();
    if (TWgTreeViewLink* view = tree->View()) {
        view->ForgetItem(Child);
        if (!destroying) view->RemoveVisibleRow(Child);
    }
    if (tree->OnItemDeletion) tree->OnItemDeletion(*tree, Child);

    RemoveFromChildren(Child);

    if (!Child->OwnerHeight() || (Child->Multiline() && tree->AdjustMultilineHeight()))
        --tree->FTotalVarHeightCount;
    if (Child->IsHTML()) {
        // Counted off here once; the markup goes with the flag, so that the
        // destructor does not count it off a second time.
        --tree->FTotalVarHeightCount;
        Child->ReleaseMarkup();
        Child->FFlags &= ~ifIsHTML;
        Child->SetStaticFlag(sfIsHTMLCopy, false);
    }

    if (Batch) {
        if (Batch->Next >= 0 && Batch->Next < all.Count() && all.At(Batch->Next) == Child)
            all.Put(Batch->Next, nullptr);
        else
            Batch->Consistent = false; // a handler changed the list: search at the end
        --Batch->Next;
        delete Child;
        return;
    }
    if (local.Consistent && local.First >= 0 && local.Next == local.First &&
        all.At(local.First) == Child) {
        all.DeleteRange(local.First, local.Last - local.First + 1);
    } else {
        // Drop the item and every cleared slot, wherever they are now.
        const int index = tree->IndexOfItem(Child);
        if (index >= 0) all.Put(index, nullptr);
        all.RemoveNulls();
    }
    delete Child;

    tree->MarkStale(tsmUpdated);
    tree->EndUpdate();
}

// ---- moving

void TWgTreeItem::MoveTo(TWgTreeItem* NewParent, int Index) {
    if (NewParent == this) return;
    TWgTreeModel* tree = FOwner;
    if (!NewParent) NewParent = tree->Items().Root();
    if (NewParent->IsUnder(this)) throw EWgTreeError(WgTreeMessages::SCantMoveToSubitem);
    TWgTreeItem* oldParent = FParent;
    const int oldIndex = this->Index();
    const int countAfter = NewParent->ChildrenCount() - (NewParent == oldParent ? 1 : 0);
    const bool toEnd = NewParent == oldParent && Index > oldIndex && Index >= countAfter;
    if (!toEnd && (Index < 0 || Index > countAfter))
        throw EListError(FormatIndexMessage(RtlMessages::SListIndexError, Index));

    TWgTreeLock lock(*tree);
    auto& all = tree->FAllList;
    const int from = tree->IndexOfItem(this);
    const TWgTreeItem* last = LastSubItem();
    const int count = last == this ? 1 : tree->IndexOfItem(last) - from + 1;

    oldParent->RemoveFromChildren(this);
    if (TWgTreeViewLink* view = tree->View()) view->RemoveVisibleRow(this);

    // The flat position after the subtree of Item; after the root's own
    // (empty) subtree is the start of the list.
    auto after = [&](const TWgTreeItem* Item) {
        const TWgTreeItem* last = Item->LastSubItem();
        return last->FParent ? tree->IndexOfItem(last) + 1 : 0;
    };
    int target;
    NewParent->Attach(this);
    if (toEnd) {
        target = after(NewParent);
        NewParent->FChildren->Add(this);
    } else {
        NewParent->FChildren->Insert(Index, this);
        target = Index > 0 ? after(NewParent->FChildren->Get(Index - 1))
                           : (NewParent->FParent ? tree->IndexOfItem(NewParent) + 1 : 0);
    }

    // The block move takes a target inside the list: a move behind the last
    // element lends the list one slot for the move.
    const bool extend = target == all.Count();
    if (extend) all.Add(nullptr);
    all.MoveRange(from, count, target);
    if (extend) all.Delete(all.Count() - 1);
    // Remember the new places of everything that moved.
    const int lo = std::min(from, target),
              hi = std::min(std::max(from + count, target), all.Count());
    for (int i = lo; i < hi; ++i)
        all.At(i)->FIndexHint = i;

    FParent = NewParent;
    tree->VisibilityChanged();
    if ((tree->SortMode() == smAdd || tree->SortMode() == smAddClick) && !tree->Sorting() &&
        (tree->SortSection() == tree->MainTreeColumn() || tree->SortSection() == -1))
        tree->MarkStale(tsmDelayedSort);
    tree->MarkStale(tsmAll);
}

void TWgTreeItem::SetChildrenOrder(const std::vector<TWgTreeItem*>& Order) {
    if (!FChildren || int(Order.size()) != FChildren->Count()) return;
    for (int i = 0; i < FChildren->Count(); ++i)
        FChildren->Put(i, Order[std::size_t(i)]);
    FOwner->VisibilityChanged();
}

void TWgTreeItem::MoveToIns(TWgTreeItem* Item, int Mode) {
    TWgTreeItem* root = FOwner->Items().Root();
    switch (Mode) {
    case 0:
        if (!Item) throw EWgTreeError(WgTreeMessages::SItemNotSpecified);
        MoveTo(Item->FParent, Item->FParent->ChildrenCount());
        break;
    case 1:
        if (Item)
            MoveTo(Item->FParent, 0);
        else
            MoveTo(root, 0);
        break;
    case 2:
        if (!Item) Item = root;
        MoveTo(Item, Item->ChildrenCount());
        break;
    case 3:
        MoveTo(Item ? Item : root, 0);
        break;
    case 4:
        if (Item) {
            int index = Item->Index();
            // Our own removal shifts Item one place up.
            if (Item->FParent == FParent && this->Index() < index) --index;
            MoveTo(Item->FParent, index);
        } else {
            MoveTo(root, 0);
        }
        break;
    default:
        break;
    }
}
