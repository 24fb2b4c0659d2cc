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
    const int target = AbsoluteIndex();
    if (target < 0) return -1;
    const auto& all = FOwner->AllList();
    const bool filter = FOwner->FilteredVisibility();
    int count = 0;
    int i = 0;
    while (i < target) {
        const TWgTreeItem* item = all.At(i);
        if (filter && item->Hidden()) {
            i = FOwner->SubtreeEnd(i);
            continue;
        }
        ++count;
        i = item->Expanded() ? i + 1 : FOwner->SubtreeEnd(i);
    }
    // Jumping past the item means it lies in a collapsed or hidden subtree.
    return i == target ? count : -1;
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

void TWgTreeItem::Attach(TWgTreeItem* Child) {
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
}

void TWgTreeItem::DeleteChild(TWgTreeItem* Child) {
    DeleteChildInBatch(Child, nullptr);
}

// The steps of a deletion, in their fixed order. A subtree leaves the flat
// list as one range when its top item goes, so that deleting a large subtree
// costs one block move instead of one per item. Its descendants are freed as
// they go; their slots in the flat list are cleared on the way (they go in
// reverse depth-first order, so each one stands just before the previous),
// and the range is cut out at the end.
void TWgTreeItem::DeleteChildInBatch(TWgTreeItem* Child, TDeleteBatch* Batch) {
    TWgTreeModel* tree = FOwner;
    auto& all = tree->FAllList;
    const bool destroying = tree->Destroying();
    const bool wasUnlocked = tree->UpdateCount() == 0;
    Child->FFlags |= ifDeleting;
    tree->BeginUpdate();

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
        Child->FFlags &= ~ifHidden;
    }

    auto successor = [&]() -> TWgTreeItem* {
        if (TWgTreeItem* next = Child->GetNextSibling()) return next;
        if (TWgTreeItem* prev = Child->GetPrevSibling()) return prev;
        return FParent ? this : nullptr;
    };
    if (tree->FSelAnchor == Child) tree->FSelAnchor = destroying ? nullptr : successor();
    tree->SetItemSelected(Child, false);
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
    } else {
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
    }

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
    if ((tree->SortMode() == smAdd || tree->SortMode() == smAddClick) && !tree->Sorting() &&
        (tree->SortSection() == tree->MainTreeColumn() || tree->SortSection() == -1))
        tree->MarkStale(tsmDelayedSort);
    tree->MarkStale(tsmAll);
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

// ---- texts

WideString TWgTreeItem::Text() const {
    if (FStaticData) return FStaticData->Text;
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
    FFlags = Value ? FFlags | ifHidden : FFlags & ~ifHidden;
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
    FFlags = Value ? FFlags | ifExpanded : FFlags & ~ifExpanded;
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
    FFlags = (Source.FFlags & ~AssignSkippedFlags) | (FFlags & AssignSkippedFlags);
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
