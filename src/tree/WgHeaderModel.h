#pragma once
// TWgHeaderModel: the screen-free part of the column header: its properties,
// geometry, hit testing, sort marks, sticky widths, height rule, and the
// press, click, resize and drag behaviour as a state machine fed with mouse
// calls. What it would draw (the resize line, the drag image) and what it
// would ask of a window (capture, repaint, the lookup box) goes to a host.

#include "base/Geometry.h"
#include "tree/WgHeaderSections.h"

#include <functional>
#include <memory>

class TWgIniFile;

enum TWgHResizingStates : std::uint8_t { trsBegin = 0, trsMove = 1, trsEnd = 2 };
enum TSectionChangeMode : std::uint8_t {
    scmText = 0,
    scmWidth = 1,
    scmVisible = 2,
    scmStyle = 3,
    scmAlign = 4,
    scmFieldType = 5,
    scmParent = 6,
};
// Parts of a section, as GetSectionAtEx reports them.
enum TWgHeaderPart : std::uint8_t {
    hpDivider = 0,
    hpBody = 1,
    hpExpand = 2,
    hpLookup = 3,
    hpFilter = 4,
};

// What the header asks of its window.
class TWgHeaderHost {
public:
    virtual ~TWgHeaderHost() = default;
    virtual void SetCapture(bool Captured) = 0;
    // Draws, or with a second call erases, the XOR resize line at X.
    virtual void DrawResizeLine(int X) = 0;
    // The drag image: made from the section, moved to X, ended.
    virtual void BeginDragImage(TWgHeaderSection* Section) = 0;
    virtual void MoveDragImage(int X) = 0;
    virtual void EndDragImage() = 0;
    // Repaints: one section (none: all), or from a section to the right.
    virtual void InvalidateSection(TWgHeaderSection* Section) = 0;
    virtual void InvalidateRight(int Position) = 0;
    virtual void UpdateNow() = 0;
    // The lookup box over a section; closing gives the text it held.
    virtual void OpenLookup(TWgHeaderSection* Section) = 0;
    virtual WideString CloseLookup() = 0;
};

class TWgHeaderModel {
public:
    using TSectionEvent = std::function<void(TWgHeaderModel& Sender, TWgHeaderSection* Section)>;
    using TResizingEvent = std::function<void(TWgHeaderModel& Sender, TWgHeaderSection* Section,
                                              TWgHResizingStates State, int Width)>;
    using TMoveEvent = std::function<void(TWgHeaderModel& Sender, TWgHeaderSection* Section,
                                          int OldPos, int NewPos)>;
    using TPictureEvent =
        std::function<void(TWgHeaderModel& Sender, TWgHeaderSection* Section, int& ImageIndex)>;
    using TChangeEvent = std::function<void(TWgHeaderModel& Sender, TWgHeaderSection* Section,
                                            TSectionChangeMode Change)>;
    using TLookupEvent =
        std::function<void(TWgHeaderModel& Sender, TWgHeaderSection* Section, WideString& Text)>;
    using TLookupDoneEvent = std::function<void(TWgHeaderModel& Sender, TWgHeaderSection* Section,
                                                const WideString& Text, bool Accepted)>;
    // Height of a caption laid out in Width pixels (Wrap: over several lines).
    using TMeasureText = std::function<int(const WideString& Text, int Width, bool Wrap)>;

    TWgHeaderModel();
    virtual ~TWgHeaderModel();
    TWgHeaderModel(const TWgHeaderModel&) = delete;
    TWgHeaderModel& operator=(const TWgHeaderModel&) = delete;

    TWgHeaderSections& Sections() { return *FSections; }
    const TWgHeaderSections& Sections() const { return *FSections; }
    TWgHeaderHost* Host() const { return FHost; }
    void SetHost(TWgHeaderHost* Value) { FHost = Value; }

    // ---- properties
    bool AllowDrag = true;
    bool MoveOnDrag = false;
    bool ResizeOnDrag = false;
    bool Tracking = true;
    bool MultiSort = false;
    bool InvertSortArrows = false;
    bool Flat = false;
    bool WrapCaptions = false;
    bool RightAlignedText = false;
    bool RightAlignedOrder = false;
    bool LockHeight = false;
    TColor FilterColor = 0xFF000012;
    TColor ActiveFilterColor = 0;
    WideString Hint;
    // The store and the path below which Save and Restore keep the sections.
    TWgIniFile* Storage = nullptr;
    AnsiString StoragePath;
    int ImageWidth = 0; // size of the images, 0 without images
    int ImageHeight = 0;
    TMeasureText MeasureText;
    // Width of a caption on one line; without it captions count as empty.
    std::function<int(const WideString& Text)> MeasureTextWidth;
    // Finds a popup menu by its name on the owner form, none if absent.
    std::function<void*(const AnsiString& Name)> FindPopupMenu;

    int DefaultWidth() const { return FDefaultWidth; }
    void SetDefaultWidth(int Value) { FDefaultWidth = Value; }
    bool StickySections() const { return FStickySections; }
    void SetStickySections(bool Value);
    int Width() const { return FWidth; }
    int Height() const { return FHeight; }
    void SetHeight(int Value) { FHeight = Value; }
    // A new client width; with sticky sections the widths follow.
    void Resize(int NewWidth);
    int LeftPos() const { return FLeftPos; }
    void SetLeftPos(int Value) { FLeftPos = Value; }
    TWgHeaderSection* LockedSection() const { return FLockedSection; }
    void SetLockedSection(TWgHeaderSection* Value) { FLockedSection = Value; }
    bool Loading() const { return FLoading; }
    void SetLoading(bool Value) { FLoading = Value; }
    bool Designing() const { return FDesigning; }
    void SetDesigning(bool Value) { FDesigning = Value; }

    // ---- geometry
    int SectionsWidth() const;
    TRect GetSectionRect(int Index) const;
    TWgHeaderSection* GetSectionAt(int X, int Y) const;
    // The divider zone around X: true when it is there, with the section
    // whose right border it is.
    bool GetResizableSectionAt(int X, TWgHeaderSection*& Section) const;
    TWgHeaderSection* GetSectionAtEx(int X, int Y, TWgHeaderPart& Part) const;
    int CalcHeaderHeight() const;
    // The width a section needs for its caption, image and buttons.
    int MeasureSectionWidth(const TWgHeaderSection* Section) const;
    // The height a new header takes from the height of its font.
    static int InitialHeight(int FontHeight);
    // The end of loading: popup names become menus, sticky shares and the
    // height are computed for the loaded sections.
    void Loaded();
    // Writes the order, widths, visibility, expansion and alignment of the
    // sections to Storage under StoragePath + "WgHeader"; Restore reads them
    // back. Both are false without a store or when the store refuses.
    bool Save() const;
    bool Restore();
    // Applies CalcHeaderHeight unless LockHeight.
    void UpdateHeight();
    // Corrects rounding after a sticky change; Section is spared.
    void AdjustStickySize(TWgHeaderSection* Section);
    void RecalcStickyShares();

    void BeginUpdate() { ++FUpdateCount; }
    void EndUpdate();
    int UpdateCount() const { return FUpdateCount; }
    // Repaints from the section at Position to the right.
    void InvalidateRight(int Position);

    // ---- mouse and mode
    void MouseDown(int X, int Y);
    void MouseMove(int X, int Y, bool LeftButtonDown);
    void MouseUp(int X, int Y);
    // Loss of the mouse: ends a drag or a resize as a release at (0, -1).
    void CancelMode();
    void CloseLookup(bool Accepted);

    bool Resizing() const { return FResizeSection != nullptr; }
    bool Dragging() const { return FDragSection != nullptr; }
    bool Pressed() const { return FPressed; }
    TWgHeaderSection* PressedSection() const { return FPressSection; }
    TWgHeaderSection* HotSection() const { return FHotSection; }
    TWgHeaderSection* LookupSection() const { return FLookupSection; }
    int DragX() const { return FDragX; }

    // ---- events
    TSectionEvent OnSectionClick;
    TSectionEvent OnSectionResize;
    TSectionEvent OnSectionDelete;
    TSectionEvent OnSectionShowHide;
    TSectionEvent OnSectionCreate;
    TSectionEvent OnSectionExpand;
    TSectionEvent OnSectionCollapse;
    TSectionEvent OnSectionAutoSize;
    TSectionEvent OnFilterCall;
    TResizingEvent OnSectionResizing;
    TMoveEvent OnSectionMove;
    TPictureEvent OnPictureNeeded;
    TChangeEvent OnSectionChange;
    TLookupEvent OnHeaderLookup;
    TLookupDoneEvent OnHeaderLookupDone;

    // ---- for the sections
    void SectionWidthChanged(TWgHeaderSection* Section);
    void SectionVisibilityChanged(TWgHeaderSection* Section, int OldWidth);
    void SectionCreated(TWgHeaderSection* Section);
    void SectionDeleted(TWgHeaderSection* Section);
    void SortModeChanged(TWgHeaderSection* Section);
    void SectionChanged(TWgHeaderSection* Section, TSectionChangeMode Change);
    void Repaint(TWgHeaderSection* Section);

private:
    int ScreenLeft(const TWgHeaderSection* Section) const;
    void FinishResize();
    void Drop(int X, int Y);

    std::unique_ptr<TWgHeaderSections> FSections;
    TWgHeaderHost* FHost = nullptr;
    int FDefaultWidth = 120;
    int FWidth = 0;
    int FHeight = 17;
    int FLeftPos = 0;
    int FUpdateCount = 0;
    bool FStickySections = false;
    bool FSizingHeader = false; // a header resize spreads widths; shares stay
    bool FLoading = false;
    bool FDesigning = false;
    bool FPendingCreate = false;
    bool FPendingDelete = false;
    TWgHeaderSection* FLockedSection = nullptr;
    TWgHeaderSection* FHotSection = nullptr;
    TWgHeaderSection* FPressSection = nullptr;
    TPoint FPressPoint;
    bool FPressed = false;
    TWgHeaderSection* FResizeSection = nullptr;
    int FDragX = 0;
    int FDragOffset = 0;
    TWgHeaderSection* FDragSection = nullptr;
    int FDragGrab = 0; // pointer X minus the dragged section's screen left
    TWgHeaderSection* FLookupSection = nullptr;
};

// The colour of a section's drag image and mask: the green component v of
// the colour becomes v - v/4, at most Limit (239 for the mask, 252 while
// the image is painted), as a grey.
TColor DragShadeColor(TColor RGB, int Limit);
