#pragma once
// TWgTreeModel: the tree-level state that the item model keeps (the flat
// list of all items, the selection list, counters, focus and anchor), the
// properties the model reads, and the events it fires. The tree control
// builds on it; without a view it is a complete, screen-free tree.

#include "base/Streams.h"
#include "base/WgList.h"
#include "tree/WgItemList.h"
#include "tree/WgTreeViewLink.h"
#include "tree/WgTypes.h"

#include <functional>
#include <memory>
#include <vector>

class TWgTreeItem;
class TWgTreeItems;
class TWgCellStyle;
class TWgHeaderSections;
class TWgTreeItemStaticDataEx;
class TWgTreeModel;

using TWgItemChangeEvent =
    std::function<void(TWgTreeModel& Sender, TWgTreeItem* Item, TItemChangeMode Mode)>;
using TWgItemProcessEvent =
    std::function<void(TWgTreeModel& Sender, TWgTreeItem* Item, bool& CanProcess)>;
using TWgItemEvent = std::function<void(TWgTreeModel& Sender, TWgTreeItem* Item)>;
using TWgTreeNotifyEvent = std::function<void(TWgTreeModel& Sender)>;
using TWgVirtualTextEvent = std::function<void(TWgTreeModel& Sender, TWgTreeItem* Item,
                                               int SectionIndex, WideString& Text)>;
using TWgVirtualHintEvent =
    std::function<void(TWgTreeModel& Sender, TWgTreeItem* Item, WideString& Hint)>;
using TWgApplyVisFilterEvent =
    std::function<void(TWgTreeModel& Sender, TWgTreeItem* Item, bool& Hidden)>;
using TWgItemStreamEvent =
    std::function<void(TWgTreeModel& Sender, TStream& Stream, TWgTreeItem* Item)>;
using TWgCellStyleStreamEvent =
    std::function<void(TWgTreeModel& Sender, TStream& Stream, TWgCellStyle* Style)>;
using TWgIterateProc = std::function<void(TWgTreeItem* Item, int Index, bool& ContinueIterate,
                                          void* IterateData, TWgTreeModel* Tree)>;

// Font of the tree, as new main cell styles take it.
struct TWgTreeFont {
    std::int32_t Size = 8;
    std::uint8_t Styles = 0;
    AnsiString Name = "Tahoma";
};

class TWgTreeModel {
public:
    TWgTreeModel();
    virtual ~TWgTreeModel();
    TWgTreeModel(const TWgTreeModel&) = delete;
    TWgTreeModel& operator=(const TWgTreeModel&) = delete;

    TWgTreeItems& Items() { return *FItems; }
    const TWgTreeItems& Items() const { return *FItems; }
    TWgItemList<TWgTreeItem>& AllList() { return FAllList; }
    const TWgItemList<TWgTreeItem>& AllList() const { return FAllList; }
    // The selected items in order of selection; none without MultiSelect.
    TWgList<TWgTreeItem>* SelectedList() const { return FSelectedList.get(); }

    // The view, or none. The model never owns it.
    TWgTreeViewLink* View() const { return FView; }
    void SetView(TWgTreeViewLink* Value) { FView = Value; }
    // The header's sections, or none; read for measuring and fitting.
    TWgHeaderSections* HeaderSections() const { return FHeaderSections; }
    void SetHeaderSections(TWgHeaderSections* Value) { FHeaderSections = Value; }

    // ---- the update lock
    void BeginUpdate() {
        ++FUpdateCount;
        if (FView) FView->UpdateBegun();
    }
    void EndUpdate() {
        --FUpdateCount;
        if (FView && !FDestroying) FView->UpdateEnded(FUpdateCount);
    }
    int UpdateCount() const { return FUpdateCount; }
    bool IsLocked() const { return FUpdateCount > 0; }
    // Passes marks to the view.
    void MarkStale(std::uint32_t Marks) {
        if (FView) FView->MarkStale(Marks);
    }

    // ---- counters
    int HiddenCount() const { return FHiddenCount; }
    int TotalVarHeightCount() const { return FTotalVarHeightCount; }
    void AdjustTotalVarHeightCount(int Delta) { FTotalVarHeightCount += Delta; }
    void AdjustHiddenCount(int Delta) { FHiddenCount += Delta; }

    // ---- the rows on show: those reachable through expanded parents and,
    // with FilteredVisibility, not hidden themselves or below a hidden row.
    // They are indexed by one walk of the flat list when first asked after
    // a change (of the flat list, a children list, an expanded or hidden
    // flag, the filter); until the next change a count or a row by position
    // costs constant time and the position of a row logarithmic time. The
    // flat list counts its own changes; the items report theirs through
    // VisibilityChanged.
    int TotalVisible() const;
    // The row at a position among the rows on show, or none.
    TWgTreeItem* VisibleItem(int Index) const;
    // The position of a row among the rows on show, -1 when it is not shown.
    int VisibleIndexOf(const TWgTreeItem* Item) const;
    void VisibilityChanged() { ++FVisibilityChanges; }

    // ---- life cycle states
    bool Destroying() const { return FDestroying; }
    bool Loading() const { return FLoading; }
    void SetLoading(bool Value) { FLoading = Value; }
    bool Designing() const { return FDesigning; }
    void SetDesigning(bool Value) { FDesigning = Value; }

    // ---- properties the model reads
    TVirtualityLevel VirtualityLevel() const { return FVirtualityLevel; }
    // Asks the view first; a refusal changes nothing. Clears all items.
    void SetVirtualityLevel(TVirtualityLevel Value);
    bool ShowColumns() const { return FShowColumns; }
    void SetShowColumns(bool Value) { FShowColumns = Value; }
    int MainTreeColumn() const { return FMainTreeColumn; }
    void SetMainTreeColumn(int Value) { FMainTreeColumn = Value; }
    TSortModes SortMode() const { return FSortMode; }
    void SetSortMode(TSortModes Value) { FSortMode = Value; }
    int SortSection() const { return FSortSection; }
    void SetSortSection(int Value) { FSortSection = Value; }
    bool Sorting() const { return FSorting; }
    void SetSorting(bool Value) { FSorting = Value; }
    bool FilteredVisibility() const { return FFilteredVisibility; }
    void SetFilteredVisibility(bool Value) {
        if (Value != FFilteredVisibility) VisibilityChanged();
        FFilteredVisibility = Value;
    }
    bool AdjustMultilineHeight() const { return FAdjustMultilineHeight; }
    void SetAdjustMultilineHeight(bool Value) { FAdjustMultilineHeight = Value; }
    bool MultiSelect() const { return FMultiSelect; }
    void SetMultiSelect(bool Value);
    bool MoveFocusOnCollapse() const { return FMoveFocusOnCollapse; }
    void SetMoveFocusOnCollapse(bool Value) { FMoveFocusOnCollapse = Value; }
    bool DeselectChildrenOnCollapse() const { return FDeselectChildrenOnCollapse; }
    void SetDeselectChildrenOnCollapse(bool Value) { FDeselectChildrenOnCollapse = Value; }
    bool AutoExpand() const { return FAutoExpand; }
    void SetAutoExpand(bool Value) { FAutoExpand = Value; }
    bool ShowCheckboxes() const { return FShowCheckboxes; }
    void SetShowCheckboxes(bool Value) { FShowCheckboxes = Value; }
    bool IgnoreEnabled() const { return FIgnoreEnabled; }
    void SetIgnoreEnabled(bool Value) { FIgnoreEnabled = Value; }
    int LineHeight() const { return FLineHeight; }
    void SetLineHeight(int Value) { FLineHeight = Value; }
    const TWgTreeFont& Font() const { return FFont; }
    void SetFont(const TWgTreeFont& Value) { FFont = Value; }

    // ---- focus and selection, as far as the model moves them
    TWgTreeItem* FocusedItem() const { return FFocused; }
    void SetFocusedItem(TWgTreeItem* Item) { DoSetFocused(Item, true); }
    TWgTreeItem* SelAnchor() const { return FSelAnchor; }
    void SetSelAnchor(TWgTreeItem* Item) { FSelAnchor = Item; }
    // Moves the focus: flags, repaint, OnItemFocused (held back while
    // children are being deleted). The selection logic builds on it.
    virtual void DoSetFocused(TWgTreeItem* Item, bool Forced);
    // Sets or clears Selected, keeping SelectedList in step.
    virtual void SetItemSelected(TWgTreeItem* Item, bool Value);
    void DeselectAll();

    // ---- walks
    void Iterate(bool VisibleOnly, bool IncludeCollapsed, const TWgIterateProc& Proc,
                 void* IterateData);
    void IterateBack(bool VisibleOnly, bool IncludeCollapsed, const TWgIterateProc& Proc,
                     void* IterateData);
    void IterateFrom(bool VisibleOnly, bool IncludeCollapsed, const TWgIterateProc& Proc,
                     void* IterateData, TWgTreeItem* StartFrom);
    void IterateBackFrom(bool VisibleOnly, bool IncludeCollapsed, const TWgIterateProc& Proc,
                         void* IterateData, TWgTreeItem* StartFrom);
    // Each item decides Hidden through OnApplyVisFilter.
    void ApplyVisFilter();
    // Parses the markup of every IsHTML item and forgets its measured
    // height: loading defers the parsing to its end.
    void ParseLoadedMarkup();

    // ---- the flat list
    // Index of an item in AllList, -1 if absent; found from the item's
    // remembered index, so repeated look-ups cost little.
    int IndexOfItem(const TWgTreeItem* Item) const;
    // Index just past the subtree of the item at Index.
    int SubtreeEnd(int Index) const;
    // Stores an item at Index of AllList and remembers the place in it, so
    // that a reordering (a sort) leaves look-ups fast.
    void PutItem(int Index, TWgTreeItem* Item);

    // ---- flag block pool of vlAllProps
    TWgTreeItemStaticDataEx* TakeStaticData();
    void ReturnStaticData(TWgTreeItemStaticDataEx* Data);
    static constexpr int StaticDataPoolLimit = 1024;

    // ---- events
    TWgItemChangeEvent OnItemChange;
    TWgItemProcessEvent OnItemExpanding;
    TWgItemProcessEvent OnItemCollapsing;
    TWgItemEvent OnItemExpand;
    TWgItemEvent OnItemCollapse;
    TWgItemEvent OnItemDeletion;
    TWgItemEvent OnItemChecked;
    TWgItemEvent OnItemSelectedChange;
    TWgTreeNotifyEvent OnItemFocused;
    TWgTreeNotifyEvent OnSortBegin;
    TWgTreeNotifyEvent OnSortEnd;
    TWgVirtualTextEvent OnVirtualTextNeeded;
    TWgVirtualHintEvent OnVirtualHintNeeded;
    TWgApplyVisFilterEvent OnApplyVisFilter;
    TWgItemStreamEvent OnItemSave;
    TWgItemStreamEvent OnItemLoad;
    TWgCellStyleStreamEvent OnCellStyleSave;
    TWgCellStyleStreamEvent OnCellStyleLoad;

    // While children are deleted the focus event is held back; at the end
    // it fires once if the focus changed.
    void HoldFocusEvent() { ++FFocusHold; }
    void ReleaseFocusEvent(TWgTreeItem* OldFocused);
    // Sort the children of Parent now, between OnSortBegin and OnSortEnd.
    void SortNow(TWgTreeItem* Parent, bool Recursive);
    // The sort condition of text changes: automatic sorting on this column.
    bool AutoSortsOn(int SectionIndex) const;

protected:
    void SetDestroying() { FDestroying = true; }
    // Moves the focused flag, with repaints, and fires no event: for trees
    // that decide themselves when OnItemFocused fires.
    void AssignFocus(TWgTreeItem* Item);
    bool FocusEventHeld() const { return FFocusHold > 0; }

private:
    friend class TWgTreeItem;
    friend class TWgTreeItems;

    void IterateRange(int From, bool Backward, bool VisibleOnly, bool IncludeCollapsed,
                      const TWgIterateProc& Proc, void* IterateData);
    bool SkippedByWalk(const TWgTreeItem* Item, bool VisibleOnly, bool IncludeCollapsed) const;
    // Walks the flat list again unless the index of the rows on show is current.
    void IndexVisibleRows() const;

    TWgItemList<TWgTreeItem> FAllList;
    std::unique_ptr<TWgList<TWgTreeItem>> FSelectedList;
    std::unique_ptr<TWgTreeItems> FItems;
    TWgTreeViewLink* FView = nullptr;
    TWgHeaderSections* FHeaderSections = nullptr;
    std::vector<TWgTreeItemStaticDataEx*> FStaticDataPool;

    TWgTreeItem* FFocused = nullptr;
    TWgTreeItem* FSelAnchor = nullptr;
    int FFocusHold = 0;
    int FReadDepth = 0; // nesting of the item entry being read

    int FUpdateCount = 0;
    int FHiddenCount = 0;
    // The index of the rows on show: the flat index of each, in order, and
    // the change counts of the flat list and of the flags it was made at.
    mutable std::vector<std::int32_t> FVisibleRows;
    mutable std::uint64_t FVisibleRowsListChanges = 0;
    mutable std::uint64_t FVisibleRowsFlagChanges = 0;
    mutable bool FVisibleRowsMade = false;
    std::uint64_t FVisibilityChanges = 0;
    int FTotalVarHeightCount = 0;
    int FMainTreeColumn = 0;
    int FSortSection = -1;
    int FLineHeight = 16;
    TWgTreeFont FFont;
    TVirtualityLevel FVirtualityLevel = vlNone;
    TSortModes FSortMode = smNone;
    bool FDestroying = false;
    bool FLoading = false;
    bool FDesigning = false;
    bool FSorting = false;
    bool FShowColumns = false;
    bool FFilteredVisibility = false;
    bool FAdjustMultilineHeight = true;
    bool FMultiSelect = false;
    bool FMoveFocusOnCollapse = false;
    bool FDeselectChildrenOnCollapse = false;
    bool FAutoExpand = false;
    bool FShowCheckboxes = false;
    bool FIgnoreEnabled = false;
};

// Holds the update lock for a scope.
class TWgTreeLock {
public:
    explicit TWgTreeLock(TWgTreeModel& Tree) : FTree(Tree) { FTree.BeginUpdate(); }
    ~TWgTreeLock() { FTree.EndUpdate(); }
    TWgTreeLock(const TWgTreeLock&) = delete;
    TWgTreeLock& operator=(const TWgTreeLock&) = delete;

private:
    TWgTreeModel& FTree;
};
