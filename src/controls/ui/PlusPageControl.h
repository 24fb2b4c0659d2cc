#pragma once
// TPlusPageControl and TPlusTabSheet: a page control whose tabs are filled
// top to bottom from the tab's colour to its end colour, the active tab
// from ActiveColor to ActiveColorTo. Geometry and painting are the core's
// (PlusPageControlLayout).

#include "controls/PlusPageControlLayout.h"

#include <QWidget>

#include <functional>
#include <vector>

class TPlusPageControl;

enum TPlusTabStyleKind : std::uint8_t { tsClassic = 0, tsDotNet = 1, tsDelphi = 2 };

inline constexpr const char* SCanNotDisableActiveTab = "Can not disable active tab.";
inline constexpr const char* STabSplitLineMustBeFalse =
    "TabSplitLine must be false when TabStyle is tsDotNet/tsDelphi";

class TPlusTabSheet : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int Tag READ Tag WRITE SetTag)
public:
    explicit TPlusTabSheet(QWidget* Parent = nullptr);
    ~TPlusTabSheet() override;

    int Tag() const { return FTag; }
    void SetTag(int Value) { FTag = Value; }
    const WideString& Caption() const { return FCaption; }
    void SetCaption(const WideString& Value);
    TPlusPageControl* PageControl() const { return FPageControl; }
    void SetPageControl(TPlusPageControl* Value);
    int PageIndex() const;
    TColor Color() const { return FColor; }
    void SetColor(TColor Value);
    TColor ColorTo() const { return FColorTo; }
    void SetColorTo(TColor Value);
    TColor TabColor() const { return FTabColor; }
    void SetTabColor(TColor Value);
    TColor TabColorTo() const { return FTabColorTo; }
    void SetTabColorTo(TColor Value);
    bool TabEnable() const { return FTabEnable; }
    // Disabling the active sheet is refused with an exception.
    void SetTabEnable(bool Value);
    bool TabVisible() const { return FTabVisible; }
    void SetTabVisible(bool Value);
    bool ShowClose() const { return FShowClose; }
    void SetShowClose(bool Value) { FShowClose = Value; }
    int ImageIndex() const { return FImageIndex; }
    void SetImageIndex(int Value) { FImageIndex = Value; }

protected:
    void paintEvent(QPaintEvent* Event) override;

private:
    friend class TPlusPageControl;
    void Changed();
    int FTag = 0;
    WideString FCaption;
    TPlusPageControl* FPageControl = nullptr;
    TColor FColor = clBtnFace;
    TColor FColorTo = clNone;
    TColor FTabColor = clBtnFace;
    TColor FTabColorTo = clNone;
    bool FTabEnable = true;
    bool FTabVisible = true;
    bool FShowClose = false;
    int FImageIndex = -1;
};

class TPlusPageControl : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int Tag READ Tag WRITE SetTag)
    Q_PROPERTY(int ActivePageIndex READ ActivePageIndex WRITE SetActivePageIndex)
public:
    explicit TPlusPageControl(QWidget* Parent = nullptr);
    ~TPlusPageControl() override;

    int Tag() const { return FTag; }
    void SetTag(int Value) { FTag = Value; }

    int PageCount() const { return int(FPages.size()); }
    TPlusTabSheet* Pages(int Index) const;
    // The active page's index, or -1; an index out of range clears it.
    int ActivePageIndex() const;
    void SetActivePageIndex(int Index);
    TPlusTabSheet* ActivePage() const { return FActivePage; }
    void SetActivePage(TPlusTabSheet* Page);

    // Tab colours and fonts.
    TColor DefaultTabColor() const { return FDefaultTabColor; }
    void SetDefaultTabColor(TColor Value);
    TColor DefaultTabColorTo() const { return FDefaultTabColorTo; }
    void SetDefaultTabColorTo(TColor Value);
    TColor DefaultTextColor() const { return FStyle.DefaultTextColor; }
    void SetDefaultTextColor(TColor Value);
    TColor ActiveColor() const { return FStyle.ActiveColor; }
    void SetActiveColor(TColor Value);
    TColor ActiveColorTo() const { return FStyle.ActiveColorTo; }
    void SetActiveColorTo(TColor Value);
    TColor TabBorderColor() const { return FStyle.TabBorderColor; }
    void SetTabBorderColor(TColor Value);
    TColor TabSheetBorderColor() const { return FStyle.TabSheetBorderColor; }
    void SetTabSheetBorderColor(TColor Value);
    TColor TabBackGroundColor() const { return FStyle.TabBackGroundColor; }
    void SetTabBackGroundColor(TColor Value);
    TColor TabHoverColor = clNone;
    TColor TabHoverColorTo = clNone;
    TColor TabHoverBorder = clNone;
    bool TabBorder3D = false;
    bool TabSheet3D = false;
    bool RoundEdges = false;
    bool ShowFocus = false;
    bool FreeOnClose = false;
    int LowerActive() const { return FStyle.LowerActive; }
    void SetLowerActive(int Value);
    int TabOverlap() const { return FStyle.TabOverlap; }
    void SetTabOverlap(int Value);
    const TTabMargin& TabMargin() const { return FStyle.TabMargin; }
    void SetTabMargin(const TTabMargin& Value);
    const TFont& Font() const { return FStyle.Font; }
    void SetFont(const TFont& Value);
    const TFont& ActiveFont() const { return FStyle.ActiveFont; }
    void SetActiveFont(const TFont& Value);
    TPlusTabStyleKind TabStyle() const { return FTabStyle; }
    void SetTabStyle(TPlusTabStyleKind Value) { FTabStyle = Value; }
    bool TabSplitLine() const { return FTabSplitLine; }
    // Refused with an exception while TabStyle is tsDotNet or tsDelphi.
    void SetTabSplitLine(bool Value);

    std::function<void(QObject* Sender)> OnChange;

    TPlusTabLayout TabLayout() const;
    QRect PageRect() const;

protected:
    void paintEvent(QPaintEvent* Event) override;
    void resizeEvent(QResizeEvent* Event) override;
    void mousePressEvent(QMouseEvent* Event) override;

private:
    friend class TPlusTabSheet;
    void InsertPage(TPlusTabSheet* Page);
    void RemovePage(TPlusTabSheet* Page);
    void PlacePages();
    void Changed();
    std::vector<TPlusTabInfo> TabInfos() const;

    int FTag = 0;
    std::vector<TPlusTabSheet*> FPages;
    TPlusTabSheet* FActivePage = nullptr;
    TPlusTabStyle FStyle;
    TColor FDefaultTabColor = clBtnFace;
    TColor FDefaultTabColorTo = clNone;
    TPlusTabStyleKind FTabStyle = tsClassic;
    bool FTabSplitLine = false;
};
