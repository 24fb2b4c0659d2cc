#include "tree/WgTreeModel.h"

#include "tree/WgTreeErrors.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"

#include <algorithm>

TWgTreeModel::TWgTreeModel() : FItems(std::make_unique<TWgTreeItems>(this)) {}

TWgTreeModel::~TWgTreeModel() {
    FDestroying = true;
    FView = nullptr;
    // The items go while the collection is still reachable from them.
    TWgTreeItem* root = FItems->Root();
    while (root->HasChildren())
        root->DeleteChild(root->GetLastChild());
    FItems.reset();
    for (TWgTreeItemStaticDataEx* data : FStaticDataPool)
        delete data;
}

int TWgTreeModel::IndexOfItem(const TWgTreeItem* Item) const {
    if (!Item) return -1;
    const int n = FAllList.Count();
    const int hint = Item->FIndexHint;
    if (hint >= 0 && hint < n && FAllList.At(hint) == Item) return hint;
    const int index = FAllList.IndexNear(Item, hint);
    Item->FIndexHint = index;
    return index;
}

void TWgTreeModel::PutItem(int Index, TWgTreeItem* Item) {
    FAllList.Put(Index, Item);
    Item->FIndexHint = Index;
}

int TWgTreeModel::SubtreeEnd(int Index) const {
    const TWgTreeItem* item = FAllList.At(Index);
    if (!item->HasChildren()) return Index + 1;
    return IndexOfItem(item->LastSubItem()) + 1;
}

void TWgTreeModel::IndexVisibleRows() const {
    if (FVisibleRowsMade && FVisibleRowsListChanges == FAllList.Changes() &&
        FVisibleRowsFlagChanges == FVisibilityChanges)
        return;
    FVisibleRows.clear();
    const int n = FAllList.Count();
    for (int i = 0; i < n;) {
        TWgTreeItem* item = FAllList.At(i);
        if (!item) { // the slot of an item deleted with its subtree
            ++i;
            continue;
        }
        // The walk passes every row on show: their remembered places are
        // made good on the way, so that finding them again costs nothing.
        if (item->FIndexHint != i) item->FIndexHint = i;
        if (FFilteredVisibility && item->Hidden()) {
            i = SubtreeEnd(i);
            continue;
        }
        FVisibleRows.push_back(i);
        i = item->Expanded() ? i + 1 : SubtreeEnd(i);
    }
    FVisibleRowsListChanges = FAllList.Changes();
    FVisibleRowsFlagChanges = FVisibilityChanges;
    FVisibleRowsMade = true;
}

int TWgTreeModel::TotalVisible() const {
    IndexVisibleRows();
    return int(FVisibleRows.size());
}

TWgTreeItem* TWgTreeModel::VisibleItem(int Index) const {
    IndexVisibleRows();
    if (Index < 0 || Index >= int(FVisibleRows.size())) return nullptr;
    return FAllList.At(FVisibleRows[std::size_t(Index)]);
}

int TWgTreeModel::VisibleIndexOf(const TWgTreeItem* Item) const {
    IndexVisibleRows();
    const int flat = IndexOfItem(Item);
    if (flat < 0) return -1;
    const auto it = std::lower_bound(FVisibleRows.begin(), FVisibleRows.end(), flat);
    return (it != FVisibleRows.end() && *it == flat) ? int(it - FVisibleRows.begin()) : -1;
}

void TWgTreeModel::SetVirtualityLevel(TVirtualityLevel Value) {
    if (Value == FVirtualityLevel) return;
    if (FView && !FView->Confirm(WgTreeMessages::SVirtualityWarning,
                                 WgTreeMessages::SVirtualityWarningTitle))
        return;
    FItems->Clear();
    FVirtualityLevel = Value;
}

void TWgTreeModel::SetMultiSelect(bool Value) {
    if (Value == FMultiSelect) return;
    FMultiSelect = Value;
    if (Value) {
        FSelectedList = std::make_unique<TWgList<TWgTreeItem>>();
        if (FSelAnchor && FSelAnchor->Selected()) FSelectedList->Add(FSelAnchor);
    } else {
        // Single selection keeps at most the anchor selected.
        for (TWgTreeItem* item : FSelectedList->Items())
            if (item != FSelAnchor) {
                item->FFlags &= ~ifSelected;
                item->RepaintItem();
            }
        FSelectedList.reset();
    }
}

void TWgTreeModel::DoSetFocused(TWgTreeItem* Item, bool /*Forced*/) {
    if (Item == FFocused) return;
    AssignFocus(Item);
    if (FFocusHold == 0 && OnItemFocused) OnItemFocused(*this);
}

void TWgTreeModel::AssignFocus(TWgTreeItem* Item) {
    if (Item == FFocused) return;
    TWgTreeItem* old = FFocused;
    if (old) {
        old->FFlags &= ~ifFocused;
        old->RepaintItem();
    }
    FFocused = Item;
    if (Item) {
        Item->FFlags |= ifFocused;
        Item->RepaintItem();
    }
}

void TWgTreeModel::ReleaseFocusEvent(TWgTreeItem* OldFocused) {
    if (--FFocusHold == 0 && FFocused != OldFocused && OnItemFocused) OnItemFocused(*this);
}

void TWgTreeModel::SetItemSelected(TWgTreeItem* Item, bool Value) {
    if (!Item || Item->Selected() == Value) return;
    if (Value) {
        Item->FFlags |= ifSelected;
        if (FMultiSelect && FSelectedList) FSelectedList->Add(Item);
    } else {
        Item->FFlags &= ~ifSelected;
        if (FSelectedList) {
            int index = FSelectedList->IndexOfBack(Item);
            if (index >= 0) FSelectedList->Delete(index);
        }
    }
    if (OnItemSelectedChange) OnItemSelectedChange(*this, Item);
    Item->RepaintItem();
}

void TWgTreeModel::DeselectAll() {
    if (FSelectedList) {
        std::vector<TWgTreeItem*> items = FSelectedList->Items();
        FSelectedList->Clear();
        for (TWgTreeItem* item : items) {
            item->FFlags &= ~ifSelected;
            if (OnItemSelectedChange) OnItemSelectedChange(*this, item);
            item->RepaintItem();
        }
    } else if (FSelAnchor) {
        SetItemSelected(FSelAnchor, false);
    }
}

bool TWgTreeModel::SkippedByWalk(const TWgTreeItem* Item, bool VisibleOnly,
                                 bool IncludeCollapsed) const {
    const bool filter = VisibleOnly && FFilteredVisibility;
    if (filter && Item->Hidden()) return true;
    for (const TWgTreeItem* p = Item->ParentItem(); p && p->ParentItem(); p = p->ParentItem()) {
        if (filter && p->Hidden()) return true;
        if (!IncludeCollapsed && !p->Expanded()) return true;
    }
    return false;
}

void TWgTreeModel::IterateRange(int From, bool Backward, bool VisibleOnly, bool IncludeCollapsed,
                                const TWgIterateProc& Proc, void* IterateData) {
    bool go = true;
    int index = 0; // the root is walked first but never reported
    if (!Backward) {
        const bool filter = VisibleOnly && FFilteredVisibility;
        for (int i = From; go && i >= 0 && i < FAllList.Count();) {
            TWgTreeItem* item = FAllList.At(i);
            if (filter && item->Hidden()) {
                i = SubtreeEnd(i);
                continue;
            }
            const int next = (!IncludeCollapsed && !item->Expanded()) ? SubtreeEnd(i) : i + 1;
            Proc(item, index++, go, IterateData, this);
            i = next;
        }
    } else {
        for (int i = std::min(From, FAllList.Count() - 1); go && i >= 0; --i) {
            TWgTreeItem* item = FAllList.At(i);
            if (i != From && SkippedByWalk(item, VisibleOnly, IncludeCollapsed)) continue;
            Proc(item, index++, go, IterateData, this);
            i = std::min(i, FAllList.Count());
        }
    }
}

void TWgTreeModel::Iterate(bool VisibleOnly, bool IncludeCollapsed, const TWgIterateProc& Proc,
                           void* IterateData) {
    IterateRange(0, false, VisibleOnly, IncludeCollapsed, Proc, IterateData);
}

void TWgTreeModel::IterateBack(bool VisibleOnly, bool IncludeCollapsed, const TWgIterateProc& Proc,
                               void* IterateData) {
    // From the end; the last item is subject to the same skipping rules.
    const int last = FAllList.Count() - 1;
    if (last < 0) return;
    if (SkippedByWalk(FAllList.At(last), VisibleOnly, IncludeCollapsed)) {
        int i = last;
        while (i >= 0 && SkippedByWalk(FAllList.At(i), VisibleOnly, IncludeCollapsed))
            --i;
        if (i < 0) return;
        IterateRange(i, true, VisibleOnly, IncludeCollapsed, Proc, IterateData);
        return;
    }
    IterateRange(last, true, VisibleOnly, IncludeCollapsed, Proc, IterateData);
}

void TWgTreeModel::IterateFrom(bool VisibleOnly, bool IncludeCollapsed, const TWgIterateProc& Proc,
                               void* IterateData, TWgTreeItem* StartFrom) {
    const int start = StartFrom ? IndexOfItem(StartFrom) : 0;
    if (start < 0) return;
    IterateRange(start, false, VisibleOnly, IncludeCollapsed, Proc, IterateData);
}

void TWgTreeModel::IterateBackFrom(bool VisibleOnly, bool IncludeCollapsed,
                                   const TWgIterateProc& Proc, void* IterateData,
                                   TWgTreeItem* StartFrom) {
    if (!StartFrom) {
        IterateBack(VisibleOnly, IncludeCollapsed, Proc, IterateData);
        return;
    }
    const int start = IndexOfItem(StartFrom);
    if (start >= 0) IterateRange(start, true, VisibleOnly, IncludeCollapsed, Proc, IterateData);
}

void TWgTreeModel::ApplyVisFilter() {
    if (!OnApplyVisFilter) return;
    for (int i = 0; i < FAllList.Count(); ++i) {
        TWgTreeItem* item = FAllList.At(i);
        if (!item) continue; // the slot of an item deleted with its subtree
        bool hidden = item->Hidden();
        OnApplyVisFilter(*this, item, hidden);
        item->SetHidden(hidden);
    }
}

void TWgTreeModel::ParseLoadedMarkup() {
    if (!FView) return;
    for (int i = 0; i < FAllList.Count(); ++i) {
        TWgTreeItem* item = FAllList.At(i);
        if (!item || !item->IsHTML()) continue;
        item->ParseMarkup();
        item->FHeightWord |= 0xFFFF;
    }
}

TWgTreeItemStaticDataEx* TWgTreeModel::TakeStaticData() {
    if (FStaticDataPool.empty()) return new TWgTreeItemStaticDataEx;
    TWgTreeItemStaticDataEx* data = FStaticDataPool.back();
    FStaticDataPool.pop_back();
    data->Reset();
    return data;
}

void TWgTreeModel::ReturnStaticData(TWgTreeItemStaticDataEx* Data) {
    if (int(FStaticDataPool.size()) < StaticDataPoolLimit)
        FStaticDataPool.push_back(Data);
    else
        delete Data;
}

void TWgTreeModel::SortNow(TWgTreeItem* Parent, bool Recursive) {
    if (OnSortBegin) OnSortBegin(*this);
    if (FView) FView->SortChildren(Parent, Recursive);
    if (OnSortEnd) OnSortEnd(*this);
}

bool TWgTreeModel::AutoSortsOn(int SectionIndex) const {
    return (FSortMode == smAdd || FSortMode == smAddClick) && !FSorting &&
           (FSortSection == SectionIndex || FSortSection == -1);
}
