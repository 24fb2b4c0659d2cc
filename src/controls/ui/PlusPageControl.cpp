#include "controls/ui/PlusPageControl.h"

#include "base/Exceptions.h"
#include "base/ui/QtCanvas.h"
#include "controls/WgPanelPaint.h"
#include "controls/WgPgCtlPages.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

// ---------------------------------------------------------------- sheet

TPlusTabSheet::TPlusTabSheet(QWidget* Parent) : QWidget(Parent) {
    hide();
}

TPlusTabSheet::~TPlusTabSheet() {
    if (FPageControl) FPageControl->RemovePage(this);
}

void TPlusTabSheet::Changed() {
    update();
    if (FPageControl) FPageControl->Changed();
}

void TPlusTabSheet::SetCaption(const WideString& Value) {
    if (FCaption == Value) return;
    FCaption = Value;
    Changed();
}

void TPlusTabSheet::SetPageControl(TPlusPageControl* Value) {
    if (FPageControl == Value) return;
    if (FPageControl) FPageControl->RemovePage(this);
    setParent(Value);
    if (!Value) return;
    Value->InsertPage(this);
    if (!Value->FActivePage) Value->SetActivePage(this);
}

int TPlusTabSheet::PageIndex() const {
    if (!FPageControl) return -1;
    const auto& pages = FPageControl->FPages;
    return int(std::find(pages.begin(), pages.end(), this) - pages.begin());
}

#define PLUS_SHEET_SETTER(Name, Type, Field)                                                       \
    void TPlusTabSheet::Set##Name(Type Value) {                                                    \
        if (Field == Value) return;                                                                \
        Field = Value;                                                                             \
        Changed();                                                                                 \
    }

PLUS_SHEET_SETTER(Color, TColor, FColor)
PLUS_SHEET_SETTER(ColorTo, TColor, FColorTo)
PLUS_SHEET_SETTER(TabColor, TColor, FTabColor)
PLUS_SHEET_SETTER(TabColorTo, TColor, FTabColorTo)
PLUS_SHEET_SETTER(TabVisible, bool, FTabVisible)

#undef PLUS_SHEET_SETTER

void TPlusTabSheet::SetTabEnable(bool Value) {
    if (FTabEnable == Value) return;
    if (!Value && FPageControl && FPageControl->ActivePage() == this)
        throw Exception(SCanNotDisableActiveTab);
    FTabEnable = Value;
    Changed();
}

void TPlusTabSheet::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    TQtCanvas canvas(painter, &palette());
    const TRect r = Rect(0, 0, width(), height());
    if (FColorTo == clNone) {
        canvas.SetBrushColor(FColor);
        canvas.FillRect(r);
    } else {
        PaintGradient(canvas, r, FColor, FColorTo, 64, true);
    }
}

// ---------------------------------------------------------------- control

TPlusPageControl::TPlusPageControl(QWidget* Parent) : QWidget(Parent) {
    FStyle.Font.Name = u"Tahoma";
    FStyle.Font.Height = -11;
    FStyle.ActiveFont = FStyle.Font;
    resize(289, 193);
}

TPlusPageControl::~TPlusPageControl() {
    for (TPlusTabSheet* page : FPages)
        page->FPageControl = nullptr;
}

TPlusTabSheet* TPlusPageControl::Pages(int Index) const {
    return Index >= 0 && Index < PageCount() ? FPages[std::size_t(Index)] : nullptr;
}

int TPlusPageControl::ActivePageIndex() const {
    return FActivePage ? FActivePage->PageIndex() : -1;
}

void TPlusPageControl::SetActivePageIndex(int Index) {
    SetActivePage(Pages(Index));
}

void TPlusPageControl::SetActivePage(TPlusTabSheet* Page) {
    if (Page == FActivePage) return;
    if (Page && Page->FPageControl != this) return;
    if (FActivePage) FActivePage->hide();
    FActivePage = Page;
    PlacePages();
    if (Page) {
        Page->show();
        Page->raise();
    }
    if (OnChange) OnChange(this);
    update();
}

void TPlusPageControl::InsertPage(TPlusTabSheet* Page) {
    FPages.push_back(Page);
    Page->FPageControl = this;
    Changed();
}

void TPlusPageControl::RemovePage(TPlusTabSheet* Page) {
    auto it = std::find(FPages.begin(), FPages.end(), Page);
    if (it == FPages.end()) return;
    const int removed = int(it - FPages.begin());
    const int count = PageCount();
    FPages.erase(it);
    Page->FPageControl = nullptr;
    if (FActivePage == Page) {
        FActivePage = nullptr;
        SetActivePage(Pages(PageAfterRemoval(count, removed)));
    }
    Changed();
}

void TPlusPageControl::Changed() {
    PlacePages();
    update();
}

#define PLUS_SETTER(Name, Type, Field)                                                             \
    void TPlusPageControl::Set##Name(Type Value) {                                                 \
        if (Field == Value) return;                                                                \
        Field = Value;                                                                             \
        Changed();                                                                                 \
    }

PLUS_SETTER(DefaultTabColor, TColor, FDefaultTabColor)
PLUS_SETTER(DefaultTabColorTo, TColor, FDefaultTabColorTo)
PLUS_SETTER(DefaultTextColor, TColor, FStyle.DefaultTextColor)
PLUS_SETTER(ActiveColor, TColor, FStyle.ActiveColor)
PLUS_SETTER(ActiveColorTo, TColor, FStyle.ActiveColorTo)
PLUS_SETTER(TabBorderColor, TColor, FStyle.TabBorderColor)
PLUS_SETTER(TabSheetBorderColor, TColor, FStyle.TabSheetBorderColor)
PLUS_SETTER(TabBackGroundColor, TColor, FStyle.TabBackGroundColor)
PLUS_SETTER(LowerActive, int, FStyle.LowerActive)
PLUS_SETTER(TabOverlap, int, FStyle.TabOverlap)
PLUS_SETTER(Font, const TFont&, FStyle.Font)
PLUS_SETTER(ActiveFont, const TFont&, FStyle.ActiveFont)

#undef PLUS_SETTER

void TPlusPageControl::SetTabMargin(const TTabMargin& Value) {
    FStyle.TabMargin = Value;
    Changed();
}

void TPlusPageControl::SetTabSplitLine(bool Value) {
    if (Value && (FTabStyle == tsDotNet || FTabStyle == tsDelphi))
        throw Exception(STabSplitLineMustBeFalse);
    FTabSplitLine = Value;
    update();
}

std::vector<TPlusTabInfo> TPlusPageControl::TabInfos() const {
    std::vector<TPlusTabInfo> tabs;
    for (const TPlusTabSheet* page : FPages)
        tabs.push_back({page->Caption(), page->TabVisible(), page->TabEnable(), page->TabColor(),
                        page->TabColorTo()});
    return tabs;
}

TPlusTabLayout TPlusPageControl::TabLayout() const {
    QImage scratch(1, 1, QImage::Format_RGB32);
    QPainter painter(&scratch);
    TQtCanvas canvas(painter, &palette());
    return LayoutPlusTabs(canvas, TabInfos(), ActivePageIndex(), FStyle, width());
}

QRect TPlusPageControl::PageRect() const {
    const int top = TabLayout().StripBottom + 1;
    return QRect(1, top, std::max(0, width() - 2), std::max(0, height() - top - 1));
}

void TPlusPageControl::PlacePages() {
    const QRect r = PageRect();
    for (TPlusTabSheet* page : FPages)
        page->setGeometry(r);
}

void TPlusPageControl::resizeEvent(QResizeEvent* Event) {
    QWidget::resizeEvent(Event);
    PlacePages();
}

void TPlusPageControl::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    TQtCanvas canvas(painter, &palette());
    PaintPlusTabs(canvas, TabLayout(), TabInfos(), ActivePageIndex(), FStyle, width(), height());
}

void TPlusPageControl::mousePressEvent(QMouseEvent* Event) {
    if (Event->button() != Qt::LeftButton) return;
    const QPoint p = Event->position().toPoint();
    const int tab = PlusTabAt(TabLayout(), {p.x(), p.y()});
    if (tab >= 0 && FPages[std::size_t(tab)]->TabEnable()) SetActivePageIndex(tab);
}
