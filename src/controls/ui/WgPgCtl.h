#pragma once
// TWgPageControl and TWgTabSheet: the main page area. The program drives it
// by page index with its tabs hidden; with tabs shown it draws one plain tab
// style for every TWgTabStyle.

#include "base/Canvas.h"
#include "controls/PlusPageControlLayout.h"

#include <QWidget>

#include <functional>
#include <vector>

class TWgPageControl;

enum TWgTabStyle : std::uint8_t {
    etsTabs = 0,
    etsButtons = 1,
    etsFlatButtons = 2,
    etsNetTabs = 3,
    etsFlatTabs = 4,
    etsAngledTabs = 5,
};
enum TWgTabPosition : std::uint8_t { etpTop = 0, etpBottom = 1, etpRight = 2, etpLeft = 3 };
// Which tabs carry a close button.
enum TWgCloseBtnMode : std::uint8_t { cbmNone = 0, cbmActive = 1, cbmAll = 2 };

class TWgTabSheet : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int Tag READ Tag WRITE SetTag)
public:
    explicit TWgTabSheet(QWidget* Parent = nullptr);
    ~TWgTabSheet() override;

    int Tag() const { return FTag; }
    void SetTag(int Value) { FTag = Value; }
    const WideString& Caption() const { return FCaption; }
    void SetCaption(const WideString& Value);
    TWgPageControl* PageControl() const { return FPageControl; }
    // Leaves the old control, joins the new one, and becomes its active
    // page if it had none.
    void SetPageControl(TWgPageControl* Value);
    int PageIndex() const;
    void SetPageIndex(int Value);
    TColor Color() const { return FColor; }
    void SetColor(TColor Value);
    TColor TabColor() const { return FTabColor; }
    void SetTabColor(TColor Value) { FTabColor = Value; }
    bool ParentColor() const { return FParentColor; }
    void SetParentColor(bool Value);
    bool TabVisible() const { return FTabVisible; }
    void SetTabVisible(bool Value);
    bool TabEnabled() const { return FTabEnabled; }
    void SetTabEnabled(bool Value);
    int ImageIndex() const { return FImageIndex; }
    void SetImageIndex(int Value);
    // Shown over the tab (its short form; see TWgHintWindow).
    const WideString& Hint() const { return FHint; }
    void SetHint(const WideString& Value) { FHint = Value; }
    // A close button of this tab shows greyed and does nothing while false.
    bool CloseBtnEnabled() const { return FCloseBtnEnabled; }
    void SetCloseBtnEnabled(bool Value);
    bool UseFontForTabs() const { return FUseFontForTabs; }

protected:
    void paintEvent(QPaintEvent* Event) override;

private:
    friend class TWgPageControl;
    int FTag = 0;
    WideString FCaption;
    TWgPageControl* FPageControl = nullptr;
    TColor FColor = clBtnFace;
    TColor FTabColor = clBtnFace;
    bool FParentColor = false;
    bool FTabVisible = true;
    bool FTabEnabled = true;
    int FImageIndex = -1;
    WideString FHint;
    bool FCloseBtnEnabled = true;
    bool FUseFontForTabs = true;
};

class TWgPageControl : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int Tag READ Tag WRITE SetTag)
    Q_PROPERTY(int ActivePage READ ActivePage WRITE SetActivePage)
public:
    explicit TWgPageControl(QWidget* Parent = nullptr);
    ~TWgPageControl() override;

    int Tag() const { return FTag; }
    void SetTag(int Value) { FTag = Value; }

    int PageCount() const { return int(FPages.size()); }
    TWgTabSheet* Pages(int Index) const;
    // The active page's index, or -1 without one.
    int ActivePage() const;
    // An index in range activates that page; any other clears the active page.
    void SetActivePage(int Index);
    TWgTabSheet* ActivePageSheet() const { return FActivePage; }
    void SetActivePageSheet(TWgTabSheet* Page);
    // Counts visible tabs only.
    int TabIndex() const;
    void SetTabIndex(int Value);

    bool ShowTabs() const { return FShowTabs; }
    void SetShowTabs(bool Value);
    bool ShowBorder() const { return FShowBorder; }
    void SetShowBorder(bool Value);
    bool Flat() const { return FFlat; }
    void SetFlat(bool Value);
    bool MultiLine() const { return FMultiLine; }
    void SetMultiLine(bool Value);
    TWgTabStyle Style() const { return FStyle; }
    // The angled style is refused while the control is multi-line.
    void SetStyle(TWgTabStyle Value);
    TWgTabPosition TabPosition() const { return FTabPosition; }
    void SetTabPosition(TWgTabPosition Value) { FTabPosition = Value; }
    bool VerticalSideCaptions() const { return FVerticalSideCaptions; }
    void SetVerticalSideCaptions(bool Value) { FVerticalSideCaptions = Value; }
    // The tab under the pointer takes HotTrackFont.
    bool HotTrack() const { return FHotTrack; }
    void SetHotTrack(bool Value);
    const TFont& HotTrackFont() const { return FHotTrackFont; }
    void SetHotTrackFont(const TFont& Value);
    // The tab under the pointer now, or -1 (also without HotTrack).
    int HotTab() const { return FHotTab; }
    // Tabs show their sheet's image of Images.
    bool ShowImages() const { return FShowImages; }
    void SetShowImages(bool Value);
    const TWgImageList* Images() const { return FImages; }
    void SetImages(const TWgImageList* Value);
    // A tab shows its sheet's hint under the pointer.
    bool ShowTabHints() const { return FShowTabHints; }
    void SetShowTabHints(bool Value) { FShowTabHints = Value; }
    TWgCloseBtnMode CloseButtonMode() const { return FCloseButtonMode; }
    void SetCloseButtonMode(TWgCloseBtnMode Value);
    // The active tab's caption takes ActiveTabFont instead of Font.
    bool UseActiveTabFont() const { return FUseActiveTabFont; }
    void SetUseActiveTabFont(bool Value);
    const TFont& ActiveTabFont() const { return FActiveTabFont; }
    void SetActiveTabFont(const TFont& Value);
    int MinTabWidth() const { return FMinTabWidth; }
    int MinTabHeight() const { return FMinTabHeight; }
    TColor Color() const { return FColor; }
    void SetColor(TColor Value);
    TColor TabBkColor() const { return FTabBkColor; }
    void SetTabBkColor(TColor Value);
    TColor ActiveTabColor() const { return FActiveTabColor; }
    void SetActiveTabColor(TColor Value);
    TColor InactiveTabColor() const { return FInactiveTabColor; }
    void SetInactiveTabColor(TColor Value);
    TColor FlatTabBorderColor() const { return FFlatTabBorderColor; }
    void SetFlatTabBorderColor(TColor Value) { FFlatTabBorderColor = Value; }
    const TFont& Font() const { return FFont; }
    void SetFont(const TFont& Value);

    // Asked before the page changes; AllowChange holds true before the call.
    std::function<void(QObject* Sender, bool& AllowChange)> OnChanging;
    std::function<void(QObject* Sender)> OnChange;
    // Asked before a close button closes its page; CanClose holds true
    // before the call. A closed page keeps existing with its tab hidden.
    std::function<void(QObject* Sender, TWgTabSheet* Page, bool& CanClose)> OnClosePageQuery;
    // Closes Page as its close button does: asks OnClosePageQuery, hands
    // the active role on to the next visible tab, and hides Page's tab.
    // False when the close was refused.
    bool ClosePage(TWgTabSheet* Page);

    // Where the pages stand, in the control's coordinates.
    QRect PageRect() const;
    // The tab strip's geometry (empty without tabs).
    TPlusTabLayout TabLayout() const;

protected:
    bool event(QEvent* Event) override;
    void paintEvent(QPaintEvent* Event) override;
    void resizeEvent(QResizeEvent* Event) override;
    void mousePressEvent(QMouseEvent* Event) override;
    void mouseMoveEvent(QMouseEvent* Event) override;
    void mouseReleaseEvent(QMouseEvent* Event) override;
    void leaveEvent(QEvent* Event) override;

private:
    friend class TWgTabSheet;
    void SetHotTab(int Tab);
    bool HasCloseButton(int Page) const;
    // A sheet's tab changed in size.
    void PageChanged();
    void InsertPage(TWgTabSheet* Page);
    void RemovePage(TWgTabSheet* Page);
    void MovePage(TWgTabSheet* Page, int Index);
    bool CanChange();
    void PlacePages();
    std::vector<bool> TabVisibility() const;
    std::vector<TPlusTabInfo> TabInfos() const;
    TPlusTabStyle TabStyle() const;

    int FTag = 0;
    std::vector<TWgTabSheet*> FPages;
    TWgTabSheet* FActivePage = nullptr;
    bool FShowTabs = true;
    bool FShowBorder = true;
    bool FFlat = false;
    bool FMultiLine = false;
    TWgTabStyle FStyle = etsTabs;
    TWgTabPosition FTabPosition = etpTop;
    bool FVerticalSideCaptions = true;
    bool FHotTrack = true;
    TFont FHotTrackFont;
    int FHotTab = -1;
    bool FShowImages = true;
    const TWgImageList* FImages = nullptr;
    bool FShowTabHints = true;
    TWgCloseBtnMode FCloseButtonMode = cbmNone;
    // The tab whose close button the mouse went down on, or -1.
    int FClosePressed = -1;
    bool FUseActiveTabFont = false;
    TFont FActiveTabFont;
    int FMinTabWidth = 40;
    int FMinTabHeight = 40;
    TColor FColor = clBtnFace;
    TColor FTabBkColor = clBtnFace;
    TColor FActiveTabColor = clBtnFace;
    TColor FInactiveTabColor = clBtnFace;
    TColor FFlatTabBorderColor = clBtnShadow;
    TFont FFont;
};
