#pragma once
// TCustomWgTree: the tree as one object: the item model, the column header
// and the view that shows the rows, with the display, sorting and selection
// properties. Everything here is screen-free; the widget gives the view a
// host and passes it its input.

#include "tree/WgHeaderModel.h"
#include "tree/WgTreeModel.h"
#include "tree/WgTreeTypes.h"
#include "tree/WgTreeView.h"

#include <functional>
#include <memory>

class TCustomWgTree;

using TWgTreeChangingEvent =
    std::function<void(TCustomWgTree& Sender, TWgTreeItem* Item, bool& AllowChange)>;
using TWgCompareItemsEvent =
    std::function<void(TCustomWgTree& Sender, TWgTreeItem* Item1, TWgTreeItem* Item2, int& Res)>;
using TWgItemPicDrawEvent =
    std::function<void(TCustomWgTree& Sender, TWgTreeItem* Item, int& ImageIndex)>;
using TWgTreeItemDrawEvent = std::function<void(TCustomWgTree& Sender, TWgTreeItem* Item)>;
using TWgCanDragEvent =
    std::function<void(TCustomWgTree& Sender, TWgTreeItem* Item, bool& CanDrag)>;
// Draws a "<html>" text in R; the widget wires the markup renderer here.
using TWgMarkupDrawEvent = std::function<void(TCanvas& Canvas, const TRect& R,
                                              const WideString& Text, TWgMarkupData* Data)>;
// Parses a "<html>" text for an item; none keeps the item without markup data.
using TWgMarkupParseEvent = std::function<std::unique_ptr<TWgMarkupData>(const WideString& Text)>;
// Height of a "<html>" text laid out in Width pixels, wrapped at the width
// with WordWrap; Data is the item's parsed markup or none.
using TWgMarkupMeasureEvent =
    std::function<int(const WideString& Text, TWgMarkupData* Data, int Width, bool WordWrap)>;
using TWgEditRequestEvent =
    std::function<void(TCustomWgTree& Sender, TWgTreeItem* Item, int SectionIndex)>;

class TCustomWgTree : public TWgTreeModel {
public:
    TCustomWgTree();
    ~TCustomWgTree() override;

    TWgTreeView& View() { return *FTreeView; }
    const TWgTreeView& View() const { return *FTreeView; }
    TWgHeaderModel& Header() { return *FHeader; }
    const TWgHeaderModel& Header() const { return *FHeader; }

    // ---- display properties with side effects (compare, lock, store, mark)
    int ItemIndent() const { return FItemIndent; }
    void SetItemIndent(int Value);
    bool AutoLineHeight() const { return FAutoLineHeight; }
    void SetAutoLineHeight(bool Value);
    // 0 means: compute it. Ignored while AutoLineHeight is on.
    void SetLineHeightProp(int Value);
    bool ShowRoot() const { return FShowRoot; }
    void SetShowRoot(bool Value);
    bool ShowButtons() const { return FShowButtons; }
    void SetShowButtons(bool Value);
    bool ShowImages() const { return FShowImages; }
    void SetShowImages(bool Value);
    bool ShowLines() const { return FShowLines; }
    void SetShowLines(bool Value);
    void SetShowColumnsProp(bool Value);
    void SetShowCheckboxesProp(bool Value);
    // ---- forwarded to the header
    bool HeaderFlat() const { return FHeader->Flat; }
    void SetHeaderFlat(bool Value);
    // The header hot-tracks its sections while both this and Tracking are on.
    bool HeaderHotTrack() const { return FHeaderHotTrack; }
    void SetHeaderHotTrack(bool Value);
    bool Tracking() const { return FTracking; }
    void SetTracking(bool Value);
    int DefaultSectionWidth() const { return FHeader->DefaultWidth(); }
    void SetDefaultSectionWidth(int Value) { FHeader->SetDefaultWidth(Value); }
    // Where the tree and its header keep their settings in the storage.
    const AnsiString& StoragePath() const { return FHeader->StoragePath; }
    void SetStoragePath(const AnsiString& Value) { FHeader->StoragePath = Value; }
    // The store of the column layout, none by default; not owned, and it
    // must outlive the tree or be set back to none first.
    TWgIniFile* Storage() const { return FHeader->Storage; }
    void SetStorage(TWgIniFile* Value) { FHeader->Storage = Value; }
    // Writes the column layout to the store, or reads it back and shows it;
    // false without a store or when a value could not be written.
    bool Save() const { return FHeader->Save(); }
    bool Restore();

    // For the plain properties below: take the lock, set the marks, release.
    void DisplayChanged(std::uint32_t Marks = tsmClearAll | tsmRedrawMark);

    // ---- plain display properties (change them, then call DisplayChanged)
    bool ShowRootButtons = true;
    bool ShowLeafButton = false;
    bool ShowEmptyImages = false;
    bool ShowEmptyImages2 = false;
    bool RightAlignedView = false;
    bool RightAlignedText = false;
    bool HorizontalLines = false;
    bool VerticalLines = false;
    bool VerticalLinesLong = true;
    TColor HorzDivLinesColor = 0xFF00000F;
    TColor VertDivLinesColor = 0xFF00000F;
    int LinesStyle = 2; // 0 solid, 2 dotted
    TColor LinesColor = 0xFF00000F;
    bool BarStyle = false;
    bool BarStyleVerticalLines = false;
    bool RowSelect = true;
    bool FullRowSelect = true;
    int SelectColumn = -1;
    bool HideSelection = false;
    TColor FocusedSelectColor = 0xFF00000D;
    TColor FocusedSelectTextColor = 0xFF00000E;
    TColor HideSelectColor = 0xFF00000F;
    TColor HideSelectTextColor = 0xFF000010;
    TColor TextColor = 0xFF000008;
    TColor BkColor = 0xFF000005;
    TColor SortColumnColor = clNone;
    bool StripedItems = false;
    TColor StripedEvenColor = 0xFF00000F;
    TColor StripedOddColor = 0xFF000005;
    TWgBackgroundType BackgroundType = bgtColorFill;
    TMemoryBitmap Background; // drawn by BackgroundType when that is no plain fill
    bool DoubleBuffered = true;
    bool UseCustomScrollBars = true;
    int ForcedScrollBars = 0; // 1 horizontal, 2 vertical, 3 both
    bool HideHorzScrollBar = false;
    bool HideVertScrollBar = false;
    bool CustomPlusMinus = false;
    bool PlusMinusTransparent = false;
    TMemoryBitmap PlusPicture, MinusPicture, LeafPicture;
    int CheckBoxSize = 15;
    bool CustomCheckboxes = false;
    TMemoryBitmap CheckBoxGlyph, RadioButtonGlyph;
    bool CheckBoxFlat = false;
    bool DrawFocusRect = true;
    bool HideFocusRect = false;
    bool RowHotTrack = false;
    bool UnderlineTracked = true;
    TColor TrackColor = 0xFF00000D;
    TLineHintMode LineHintMode = shmLong;
    TLineHintType LineHintType = lhtSmart;
    int LineHintTimeout = 3000;
    int HintPause = 500;
    bool HideHintOnTimer = true;
    bool HideHintOnMove = true;
    bool Enabled = true;
    TWgImageList* Images = nullptr;
    TWgImageList* Images2 = nullptr;

    // ---- sorting, searching and selection
    TSortTypes SortType = stText;
    TSortDirs SortDir = sdAscend;
    bool SortUseCase = true;
    std::vector<TWgHeaderSection*>* SortSections() { return FSortSections.get(); }
    std::unique_ptr<std::vector<TWgHeaderSection*>>& SortSectionsList() { return FSortSections; }
    int MultiSelectLevel = -1;
    TSTSelModes SelectionMode = smUsual;
    bool KeepSelectionWithinLevel = false;
    bool AlwaysKeepSelection = true;
    bool AlwaysKeepFocus = false;
    bool RightClickSelect = true;
    bool MouseFrameSelect = true;
    bool MouseFrameVisible = true;
    bool AutoCollapse = false;
    bool HorzArrowsScroll = false;
    int ChangeDelay = 500;
    bool IncrementalSearch = false;
    int IncrementalSearchTimeout = 500;
    TWgSearchScope IncrementalSearchScope = issWholeTree;
    TWgSearchColumn IncrementalSearchColumn = iscMainText;
    bool DragAllowed = false;
    // in-place editing requests
    bool DoInplaceEdit = true;
    bool QuickEditMode = false;
    int InplaceEditorDelay = 500;
    TWgDblClickMode DblClickMode = dcmExpand;

    // ---- operations
    TWgTreeItem* GetItemAt(int X, int Y, TWgItemPart& Part, int& HitColumn) const;
    void Sort(bool Recursive);
    void EnsureVisible(TWgTreeItem* Item) { FTreeView->EnsureVisible(Item); }
    void SelectRange(TWgTreeItem* From, TWgTreeItem* To, bool Select) {
        FTreeView->SelectRange(From, To, Select);
    }
    // The first row on screen; setting none raises EWgTreeError.
    TWgTreeItem* TopItem() const;
    void SetTopItem(TWgTreeItem* Item);
    void SelectAll();
    void InvertSelection();
    int SelectedCount() const;
    TWgTreeItem* GetNextSelected(TWgTreeItem* Prev) const;
    void DoSetFocused(TWgTreeItem* Item, bool Forced) override;
    // Deleting a section: a sort section beyond the new count goes.
    void SectionDeleted(int NewCount);
    // Drops sort sections that the header no longer has.
    void PruneSortSections();
    // A click on a header section, with the state of Ctrl: sorts by it.
    void HeaderClick(TWgHeaderSection* Section, bool Ctrl) {
        FTreeView->SectionClick(Section, Ctrl);
    }
    // The end of loading: streamed items are in; sort, measure and repaint.
    void Loaded();

    // ---- events
    TWgTreeChangingEvent OnChanging;
    TWgTreeNotifyEvent OnAfterSelectionChange;
    TWgTreeNotifyEvent OnScroll;
    TWgCompareItemsEvent OnCompareItems;
    TWgItemPicDrawEvent OnItemPicDraw;
    TWgItemPicDrawEvent OnItemPicDraw2;
    TWgTreeItemDrawEvent OnItemPreDraw;
    TWgTreeItemDrawEvent OnHotTrack;
    TWgCanDragEvent OnCanDrag;
    TWgMarkupDrawEvent OnMarkupDraw;
    TWgMarkupParseEvent OnMarkupParse;
    TWgMarkupMeasureEvent OnMarkupMeasure;
    TWgEditRequestEvent OnEditRequest;
    // Yes/no question to the user (the virtuality warning); without it, yes.
    std::function<bool(const char* Text, const char* Title)> OnConfirm;
    // The drag of items may start now; the widget runs it.
    TWgTreeItemDrawEvent OnStartDrag;
    // The section whose compare runs for stCustom, -1 for the main text.
    int CompareSection = -1;

private:
    friend class TWgTreeView;
    template <typename T> void SetDisplay(T& Field, T Value, std::uint32_t Marks);

    std::unique_ptr<TWgHeaderModel> FHeader;
    std::unique_ptr<TWgTreeView> FTreeView;
    std::unique_ptr<std::vector<TWgHeaderSection*>> FSortSections;
    int FItemIndent = 17;
    bool FAutoLineHeight = true;
    bool FShowRoot = false;
    bool FShowButtons = true;
    bool FShowImages = true;
    bool FShowLines = true;
    bool FHeaderHotTrack = true;
    bool FTracking = true;
};

// Ctrl with Shift counts as Shift in the key and click tables.
inline unsigned NormalizeShift(unsigned Shift) {
    return (Shift & ssShift) ? (Shift & ~ssCtrl) : Shift;
}
