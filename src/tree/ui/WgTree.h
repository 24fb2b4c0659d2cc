#pragma once
// TWgTree: the tree list control on screen. It hosts the screen-free tree
// (items, header model, view): a header widget on top, the rows widget below
// it and two system scroll bars that follow the view's ranges. Input goes to
// the view, the view's timers run as QTimers, and the in-place editing runs
// here: the view only asks for an edit of a cell when its edit timer fires.

#include "tree/WgTree.h"
#include "tree/WgTreeViewLink.h"
#include "tree/ui/WgHeader.h"
#include "tree/ui/WgTreeInplace.h"

#include <QWidget>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QLabel;
class TWgHTMLRender;
class QScrollBar;
class QTimer;
class TQtCanvas;
class TWgTree;

using TTryEditEvent = std::function<void(TWgTree& Sender, TWgTreeItem* Item, int SectionIndex,
                                         TWgFieldType& CellType, bool& CanEdit)>;
using TInplaceEditorNeededEvent =
    std::function<void(TWgTree& Sender, TWgTreeItem* Item, int SectionIndex,
                       TWgFieldType SupposedFieldType, TWgTreeInplaceEditor*& Editor)>;
using TOnEndEditEvent = std::function<void(TWgTree& Sender, TWgTreeItem* Item,
                                           TWgHeaderSection* Section, bool Canceled)>;

// The rows of the tree: paints through the view's painter and feeds the view
// with mouse, wheel, keys and focus.
class TWgTreeViewWidget : public QWidget, public TWgTreeViewHost {
    Q_OBJECT
public:
    TWgTreeViewWidget(TWgTree& Owner, QWidget* Parent);
    ~TWgTreeViewWidget() override;

    // TWgTreeViewHost
    void InvalidateRect(const TRect& R) override;
    void UpdateNow() override;
    void StartTimer(TWgViewTimer Timer, int Interval) override;
    void StopTimer(TWgViewTimer Timer) override;
    void SetCapture(bool Captured) override;
    void DrawFocusFrame(const TRect& R) override;
    void ScrollBarsChanged() override;
    void ShowLineHint(const TRect& R, const WideString& Text) override;
    void HideLineHint() override;

    bool TimerActive(TWgViewTimer Timer) const;
    // Gives the view a canvas with the screen's font metrics for measuring.
    void SetMeasure();
    QWidget* HintWindow() const;

protected:
    void paintEvent(QPaintEvent* Event) override;
    void resizeEvent(QResizeEvent* Event) override;
    void mousePressEvent(QMouseEvent* Event) override;
    void mouseDoubleClickEvent(QMouseEvent* Event) override;
    void mouseMoveEvent(QMouseEvent* Event) override;
    void mouseReleaseEvent(QMouseEvent* Event) override;
    void wheelEvent(QWheelEvent* Event) override;
    void keyPressEvent(QKeyEvent* Event) override;
    void inputMethodEvent(QInputMethodEvent* Event) override;
    QVariant inputMethodQuery(Qt::InputMethodQuery Query) const override;
    void focusInEvent(QFocusEvent* Event) override;
    void focusOutEvent(QFocusEvent* Event) override;
    void leaveEvent(QEvent* Event) override;
    bool event(QEvent* Event) override;

private:
    TWgTree& FOwner;
    std::array<QTimer*, 5> FTimers{};
    std::optional<TRect> FFocusFrame;
    bool FDoubleClickPending = false;
    // A press came since the last release. The second press of a double
    // click comes as the double click event alone; a press seen before it
    // has been passed on already.
    bool FPressSeen = false;
    QLabel* FHint = nullptr;
    // Measuring outside paint events needs a painter of its own.
    std::unique_ptr<QImage> FMeasureImage;
    std::unique_ptr<QPainter> FMeasurePainter;
    std::unique_ptr<TQtCanvas> FMeasureCanvas;
};

class TWgTree : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int Tag READ Tag WRITE SetTag)
public:
    explicit TWgTree(QWidget* Parent = nullptr);
    ~TWgTree() override;

    TCustomWgTree& Tree() { return *FTree; }
    TWgTreeView& View() { return FTree->View(); }
    TWgTreeItems& Items() { return FTree->Items(); }
    TWgHeader* Header() const { return FHeader; }
    TWgTreeViewWidget* ViewWidget() const { return FView; }
    QScrollBar* HScrollBar() const { return FHScroll; }
    QScrollBar* VScrollBar() const { return FVScroll; }
    TWgTreeInplaceManager& InplaceManager() { return FManager; }
    int Tag() const { return FTag; }
    void SetTag(int Value) { FTag = Value; }

    // ---- loading the rows and columns from form blobs
    void LoadItemsData(const std::vector<std::uint8_t>& Bytes);
    void LoadSectionsData(const std::vector<std::uint8_t>& Bytes);
    // Reads a blob file; false when it cannot be read (nothing changes).
    bool LoadItemsFile(const QString& FileName);
    bool LoadSectionsFile(const QString& FileName);

    // ---- display properties kept by the widget
    void SetShowColumns(bool Value);
    void SetHeaderHeight(int Value);
    // A fixed line height; 0 returns to the automatic height.
    void SetLineHeight(int Value);
    void SetTreeFont(const AnsiString& Name, int PixelHeight);
    bool Flat() const { return FFlat; }
    void SetFlat(bool Value);
    // The vertical scroll bar on the left side instead of the right.
    bool ScrollbarOpposite() const { return FScrollbarOpposite; }
    void SetScrollbarOpposite(bool Value);

    // ---- colours of the header and the border; the defaults are the system look.
    // The flat border is one line in BorderColorShadow; the sunken one has
    // BorderColorShadow and BorderColorHighlight outside, BorderColorDkShadow
    // and BorderColorFace inside (top and left, then bottom and right).
    // BorderColorWindow fills what the header, rows and bars leave free.
    TColor HeaderColor() const;
    void SetHeaderColor(TColor Value);
    TColor BorderColorDkShadow() const { return FBorderColorDkShadow; }
    void SetBorderColorDkShadow(TColor Value) { SetBorderColor(FBorderColorDkShadow, Value); }
    TColor BorderColorFace() const { return FBorderColorFace; }
    void SetBorderColorFace(TColor Value) { SetBorderColor(FBorderColorFace, Value); }
    TColor BorderColorHighlight() const { return FBorderColorHighlight; }
    void SetBorderColorHighlight(TColor Value) { SetBorderColor(FBorderColorHighlight, Value); }
    TColor BorderColorShadow() const { return FBorderColorShadow; }
    void SetBorderColorShadow(TColor Value) { SetBorderColor(FBorderColorShadow, Value); }
    TColor BorderColorWindow() const { return FBorderColorWindow; }
    void SetBorderColorWindow(TColor Value) { SetBorderColor(FBorderColorWindow, Value); }

    // ---- in-place editing
    bool ExplorerEditMode = false;
    TWgFieldType MainTextType = sftText;
    TTryEditEvent OnTryEdit;
    TInplaceEditorNeededEvent OnInplaceEditorNeeded;
    TOnEndEditEvent OnEndEditItem;
    // Cancels a running edit, then starts one on the cell.
    void EditItem(TWgTreeItem* Item, int SectionIndex);
    void EndEdit(bool ByCancel);
    bool IsEditing() const;
    TWgTreeItem* EditingItem() const { return FEditItem; }
    TWgTreeInplaceEditor* InplaceEditor() const { return FInplaceEditor; }

    // Called by the editors.
    void EditorRegistered(TWgTreeInplaceEditor* Editor) { FManager.Register(Editor); }
    void EditorUnregistered(TWgTreeInplaceEditor* Editor);
    void EditFinished(TWgTreeInplaceEditor* Editor, bool Accepted);

    // Lays out header, rows and scroll bars again and sets the bars from the view.
    void SyncScrollBars();

protected:
    void resizeEvent(QResizeEvent* Event) override;
    void paintEvent(QPaintEvent* Event) override;
    void changeEvent(QEvent* Event) override;

private:
    friend class TWgTreeViewWidget;
    class TLinkProxy;
    class THeaderWidget;
    void WireMarkup();
    void DoEditItem(TWgTreeItem* Item, int SectionIndex);
    TWgFieldType CellTypeOf(TWgTreeItem* Item, int SectionIndex) const;
    WideString CellTextOf(TWgTreeItem* Item, int SectionIndex) const;
    void ItemGoing(TWgTreeItem* Item);
    void HeaderChanged();
    void LayoutChildren();
    void SetBarsFromView();
    void SetBorderColor(TColor& Field, TColor Value);
    // A layout move under an open editor ends it first.
    void CancelEditForLayout();

    // Declared first: the items' parsed markup goes before the renderer.
    std::unique_ptr<TWgHTMLRender> FHtml;
    std::unique_ptr<TCustomWgTree> FTree;
    std::unique_ptr<TLinkProxy> FLink;
    TWgHeader* FHeader = nullptr;
    TWgTreeViewWidget* FView = nullptr;
    QScrollBar* FHScroll = nullptr;
    QScrollBar* FVScroll = nullptr;
    QWidget* FCorner = nullptr;
    TWgTreeInplaceManager FManager;
    TWgTreeItem* FEditItem = nullptr;
    TWgTreeInplaceEditor* FInplaceEditor = nullptr;
    int FTag = 0;
    bool FFlat = true;
    bool FScrollbarOpposite = false;
    TColor FBorderColorDkShadow = cl3DDkShadow;
    TColor FBorderColorFace = clBtnFace;
    TColor FBorderColorHighlight = clBtnHighlight;
    TColor FBorderColorShadow = clBtnShadow;
    TColor FBorderColorWindow = clWindow;
    bool FSyncing = false;
    bool FResyncNeeded = false;
    bool FInHeaderChange = false;
};
