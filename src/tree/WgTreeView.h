#pragma once
// TWgTreeView: the part of the tree that shows rows and takes the mouse and
// keys, without a screen. It keeps the stale marks and the rows on screen,
// lays rows out, paints them on a TCanvas, maps points back to parts, and
// runs sorting, incremental search, focus and selection. A window host
// feeds it sizes, paint requests, mouse, keys and timer expiries.

#include "base/Canvas.h"
#include "tree/WgTreeTypes.h"
#include "tree/WgTreeViewLink.h"

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

class TCustomWgTree;
class TWgTreeItem;
class TWgHeaderModel;
class TWgHeaderSection;
class TWgCellControl;
class TWgCellStyle;

// One piece of tree line, from (X1, Y1) to (X2, Y2), end excluded.
struct TWgTreeLine {
    int X1 = 0, Y1 = 0, X2 = 0, Y2 = 0;
    bool operator==(const TWgTreeLine&) const = default;
};

// Where the parts of a main cell lie, in tree coordinates (before the
// horizontal scroll). Painting, hit testing and column fitting read it.
struct TWgMainCellLayout {
    TRect Cell;
    std::vector<TWgTreeLine> Lines;
    bool Button = false;
    TRect ButtonSlot;    // ItemIndent wide, the row's height
    int ButtonGlyph = 0; // 0 plus, 1 minus, 2 leaf
    bool CheckBox = false;
    TRect CheckRect;
    unsigned CheckFlags = 0;
    int StateImage = -1; // index drawn, -1 for none
    int StateX = 0;      // left of the state image or its gap
    int StateWidth = 0;  // room taken, 0 for none
    int MainImage = -1;
    int MainX = 0;
    int MainWidth = 0;
    int TextLeft = 0; // where the text area starts and ends
    int TextRight = 0;
    bool OwnerDrawn = false;
};

class TWgTreeView : public TWgTreeViewLink {
public:
    explicit TWgTreeView(TCustomWgTree& Owner);
    ~TWgTreeView() override;
    TWgTreeView(const TWgTreeView&) = delete;
    TWgTreeView& operator=(const TWgTreeView&) = delete;

    TCustomWgTree& Owner() const { return FOwner; }
    TWgTreeViewHost* Host() const { return FHost; }
    void SetHost(TWgTreeViewHost* Value) { FHost = Value; }

    // ---- the update lock
    void IsUpdating(bool Value);
    std::uint32_t Marks() const { return FMarks; }
    void Repaint();

    // ---- size and rows
    void Resize(int ClientWidth, int ClientHeight);
    int ClientWidthPx() const { return FClientWidth; }
    int ClientHeightPx() const { return FClientHeight; }
    int ComputeLineHeight() const;
    int GetVisCount() const;
    int GetVisiCount() const;
    void FillVisibleList(int Start);
    const std::vector<TWgTreeItem*>& VisibleList() const { return FVisibleList; }
    int TopIndex() const { return FTopIndex; }
    int BottomIndex() const { return FBottomIndex; }
    void SetVPosition(int Pos);
    void SetVScroll(int Pos);
    void SetHPosition(int Pos);
    int LeftPosition() const { return FLeftPosition; }
    int HRange() const { return FHRange; }
    // The largest top position; walks back over rows of their own height.
    int MaxTopIndex();
    // Scroll bar state; true when the visibility of a bar changed.
    bool UpdateScrollBars();
    const TWgScrollBarInfo& HScrollBar() const { return FHScroll; }
    const TWgScrollBarInfo& VScrollBar() const { return FVScroll; }
    void ScrollByRows(int Rows) { SetVScroll(FTopIndex + Rows); }
    // Brings a row into view: it becomes the top or the bottom row.
    void ScrollToTop(TWgTreeItem* Item);
    void ScrollToBottom(TWgTreeItem* Item);
    void EnsureVisible(TWgTreeItem* Item);

    // ---- geometry and hit testing
    TRect GetItemRect(int Index) const;
    int GetItemAtY(int Y) const;
    int RowsBottom() const;
    TWgMainCellLayout LayoutMainCell(TWgTreeItem* Item, const TRect& Row) const;
    TWgTreeItem* GetItemAt(int X, int Y, int& Column, TWgItemPart& Part) const;
    int MeasureColumnWidth(int SectionIndex, bool VisibleOnly);
    void AutoSizeColumn(int SectionIndex);
    void AutoSizeAllColumns();
    // The canvas used for measuring; the host sets its own.
    void SetMeasureCanvas(TCanvas* Canvas) { FMeasureCanvas = Canvas; }
    TCanvas& MeasureCanvas() const;
    TFont TreeFont() const;

    // Where an in-place editor for the cell goes, in view coordinates; the
    // row is brought into view and the view scrolled horizontally first.
    // No item raises EWgTreeError.
    TRect EditCellRect(TWgTreeItem* Item, int SectionIndex);

    // ---- painting
    void Paint(TCanvas& Canvas, const TRect& UpdateRect);
    void RedrawTree(TCanvas& Canvas, const TRect& Clip);
    bool HasFocus() const { return FHasFocus; }
    void SetHasFocus(bool Value);

    // ---- sorting
    void SortItem(TWgTreeItem* Parent, bool Recursive);
    int CompareItems(TWgTreeItem* Item1, TWgTreeItem* Item2, TSortTypes Type, int SectionMode);
    void SectionClick(TWgHeaderSection* Section, bool Ctrl);

    // ---- search
    void ProcessSearch(const WideString& Text);
    // Typed characters for the incremental search.
    void KeyPress(WideChar Ch);
    const WideString& SearchText() const { return FSearchText; }

    // ---- focus and selection
    // Select false leaves out the selection step (search, pending clicks).
    void DoSetFocused(TWgTreeItem* Item, bool Forced, bool Delayed = true, bool Select = true);
    void DoSelection(TWgTreeItem* Item);
    void SetSelected(TWgTreeItem* Item, bool Value);
    void SelectRange(TWgTreeItem* From, TWgTreeItem* To, bool Select);
    TWgTreeItem* SelAnchor() const;
    void SetSelAnchor(TWgTreeItem* Item);

    // ---- input
    void MouseDown(bool RightButton, unsigned Shift, int X, int Y);
    void MouseMove(unsigned Shift, int X, int Y, bool ButtonDown);
    void MouseUp(bool RightButton, unsigned Shift, int X, int Y);
    void DblClick(unsigned Shift, int X, int Y);
    void KeyDown(int Key, unsigned Shift);
    void MouseWheel(int Rows) { SetVScroll(FTopIndex + Rows); }
    void TimerFired(TWgViewTimer Timer);
    void CancelMode();
    bool FrameSelecting() const { return FFrameSelecting; }
    TWgTreeItem* TrackItem() const { return FTrackItem; }
    TWgTreeItem* DelayedEditItem() const { return FDelayedItem; }
    // The width that shows a section's caption and every text of its column.
    int FitWidth(TWgHeaderSection* Section);
    // Starts a requested edit now instead of when its delay ends (a key
    // typed during the delay belongs to the editor); false when none waits.
    bool StartDelayedEdit();
    int DelayedEditColumn() const { return FDelayedColumn; }

    // ---- TWgTreeViewLink
    void UpdateBegun() override;
    void UpdateEnded(int Count) override;
    void MarkStale(std::uint32_t Marks) override;
    void ForgetItem(TWgTreeItem* Item) override;
    void RemoveVisibleRow(TWgTreeItem* Item) override;
    void ClearVisibleRows() override;
    void InvalidateItem(TWgTreeItem* Item, int Column) override;
    void RecomputeHRange() override;
    void AutoSizeSection(int SectionIndex) override;
    void AutoSizeAllSections() override;
    void SortChildren(TWgTreeItem* Parent, bool Recursive) override;
    int MeasureCellHeight(TWgTreeItem* Item, int Column, int Width) override;
    int MeasureItemWidth(TWgTreeItem* Item) override;
    int ClientWidth() override { return FClientWidth; }
    std::unique_ptr<TWgMarkupData> ParseMarkup(const WideString& Text) override;
    bool Confirm(const char* Text, const char* Title) override;

private:
    friend class TCustomWgTree;
    // layout
    int RowHeight(TWgTreeItem* Item) const;
    TRect MainCellRect(TWgTreeItem* Item, const TRect& Row) const;
    void AddTreeLines(TWgTreeItem* Item, const TRect& Row, int LineLeft,
                      TWgMainCellLayout& L) const;
    void MirrorLayout(TWgMainCellLayout& L) const;
    void FitAllColumns();
    int CheckBoxWidth() const;
    WideString CellText(TWgTreeItem* Item, int SectionIndex) const;
    int TextIndexOfColumn(int Column) const;
    int MainColumn() const;
    // painting
    void DrawRow(TCanvas& Canvas, TWgTreeItem* Item, const TRect& Row, int VisPos,
                 const TRect& Clip);
    void DrawMainCell(TCanvas& Canvas, TWgTreeItem* Item, const TRect& Row, TColor RowText,
                      bool Selected, TColor SelBk);
    void DrawCellText(TCanvas& Canvas, TWgTreeItem* Item, int SectionIndex, const TRect& Cell,
                      const WideString& Text, unsigned Flags);
    void DrawTreeLines(TCanvas& Canvas, const TWgMainCellLayout& L, int Shift);
    void SetRowFont(TCanvas& Canvas, TWgTreeItem* Item, int SectionIndex);
    // The style a cell is drawn in, none without UseStyles.
    TWgCellStyle* CellStyleOf(TWgTreeItem* Item, int SectionIndex) const;
    // sorting
    void QuickSort(TWgTreeItem* Parent, std::vector<TWgTreeItem*>& List, int L, int R, int Column,
                   TSortTypes Type, int Mode);
    void PrepareKey(TWgTreeItem* Item, int Column, TSortTypes Type);
    void RewriteAllList(TWgTreeItem* Parent, int Position);
    // selection and input
    bool ItemUsable(TWgTreeItem* Item) const;
    void FireAfterSelectionChange();
    void ToggleExpand(TWgTreeItem* Item);
    void ExpandAndShowChildren(TWgTreeItem* Item);
    TWgTreeItem* NextEnabled(TWgTreeItem* From, bool Forward) const;
    TWgTreeItem* FindNewFocused(int Key, TWgTreeItem* Focused) const;
    void FrameMove(unsigned Shift, int X, int Y);
    void EndFrame();
    void RequestDelayedEdit(TWgTreeItem* Item, int Column, bool Immediate);
    void CheckBoxClick(TWgTreeItem* Item);
    void UpdateLineHint(int X, int Y);
    void ShowLineHintNow();
    void MoveFocusByKey(int Key, unsigned Shift, TWgTreeItem* NewFocus);
    // cell controls: the usable control of a cell, whether it takes the
    // mouse, a point in cell terms, and the release of a press it took.
    TWgCellControl* CellControl(TWgTreeItem* Item, int Column) const;
    static bool WantsMouse(const TWgCellControl& Control);
    TPoint CellPoint(int Column, int X, int Y) const;
    bool ControlMouseUp(bool RightButton, unsigned Shift, int X, int Y);

    TCustomWgTree& FOwner;
    TWgHeaderModel& FHeader;
    TWgTreeViewHost* FHost = nullptr;
    TCanvas* FMeasureCanvas = nullptr;
    std::unique_ptr<TCanvas> FOwnMeasureCanvas;

    std::uint32_t FMarks = 0;
    bool FInUpdate = false; // the re-entrancy guard of the deferred steps
    int FHRange = -1;
    int FClientWidth = 0;
    int FClientHeight = 0;
    int FTopIndex = 0;
    int FBottomIndex = 0;
    int FLeftPosition = 0;
    TWgScrollBarInfo FHScroll;
    TWgScrollBarInfo FVScroll;
    bool FNoUserScroll = false;
    std::vector<TWgTreeItem*> FVisibleList;
    bool FHasFocus = false;

    // mouse state
    TPoint FPressCoord;
    bool FPressed = false;
    bool FPressedRight = false;
    TWgTreeItem* FPressItem = nullptr;
    TWgTreeItem* FControlItem = nullptr; // the cell control's row while it has the mouse
    int FControlColumn = -1;
    bool FControlRight = false;
    TWgItemPart FPressPart = ipOutside;
    bool FSelectionPending = false;
    TWgTreeItem* FPendingItem = nullptr;
    unsigned FPendingShift = 0;
    bool FSelectionChanged = false;
    bool FFrameSelecting = false;
    bool FMoved = false;
    TRect FFrameRect;
    TPoint FFrameStart; // in tree coordinates
    std::vector<std::pair<TWgTreeItem*, bool>> FFrameRestore;
    std::vector<TWgTreeItem*> FFrameSet;
    TWgTreeItem* FTrackItem = nullptr;
    TWgTreeItem* FLastClickItem = nullptr;
    int FLastClickColumn = -1;
    bool FClickedAgain = false;
    TWgTreeItem* FDelayedItem = nullptr;
    int FDelayedColumn = -1;
    TWgTreeItem* FHintItem = nullptr;
    bool FHintShown = false;

    TPoint FHintCoord;
    int FPressRow = -1; // visible index of the pressed row, for the frame
    bool FDragging = false;
    int FSortColumn = -1;
    bool FSortRecursive = false;

    // search
    WideString FSearchText;
};
