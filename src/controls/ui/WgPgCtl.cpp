#include "controls/ui/WgPgCtl.h"

#include "base/Exceptions.h"
#include "base/ui/Colors.h"
#include "base/ui/QtCanvas.h"
#include "controls/WgPgCtlPages.h"
#include "controls/ui/WgHintWindow.h"

#include <QApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace {

// Measures with the real fonts, outside any paint event.
template <typename F> auto WithCanvas(const QWidget* Widget, F&& Work) {
    QImage scratch(1, 1, QImage::Format_RGB32);
    QPainter painter(&scratch);
    TQtCanvas canvas(painter, &Widget->palette());
    return Work(canvas);
}

} // namespace

// ---------------------------------------------------------------- sheet

TWgTabSheet::TWgTabSheet(QWidget* Parent) : QWidget(Parent) {
    hide();
}

TWgTabSheet::~TWgTabSheet() {
    if (FPageControl) FPageControl->RemovePage(this);
}

void TWgTabSheet::SetCaption(const WideString& Value) {
    if (FCaption == Value) return;
    FCaption = Value;
    if (FPageControl) FPageControl->update();
}

void TWgTabSheet::SetPageControl(TWgPageControl* Value) {
    if (FPageControl == Value) return;
    if (FPageControl) FPageControl->RemovePage(this);
    setParent(Value);
    if (!Value) return;
    Value->InsertPage(this);
    if (!Value->FActivePage) Value->SetActivePageSheet(this);
}

int TWgTabSheet::PageIndex() const {
    if (!FPageControl) return -1;
    const auto& pages = FPageControl->FPages;
    return int(std::find(pages.begin(), pages.end(), this) - pages.begin());
}

void TWgTabSheet::SetPageIndex(int Value) {
    if (FPageControl) FPageControl->MovePage(this, Value);
}

void TWgTabSheet::SetColor(TColor Value) {
    FColor = Value;
    FParentColor = false;
    update();
}

void TWgTabSheet::SetParentColor(bool Value) {
    FParentColor = Value;
    update();
}

void TWgTabSheet::SetTabVisible(bool Value) {
    if (FTabVisible == Value) return;
    FTabVisible = Value;
    if (FPageControl) FPageControl->update();
}

void TWgTabSheet::SetImageIndex(int Value) {
    if (FImageIndex == Value) return;
    FImageIndex = Value;
    if (FPageControl) FPageControl->PageChanged();
}

void TWgTabSheet::SetCloseBtnEnabled(bool Value) {
    if (FCloseBtnEnabled == Value) return;
    FCloseBtnEnabled = Value;
    if (FPageControl) FPageControl->update();
}

void TWgTabSheet::SetTabEnabled(bool Value) {
    if (FTabEnabled == Value) return;
    FTabEnabled = Value;
    if (FPageControl) FPageControl->update();
}

void TWgTabSheet::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    TQtCanvas canvas(painter, &palette());
    canvas.SetBrushColor(FParentColor && FPageControl ? FPageControl->Color() : FColor);
    canvas.FillRect(Rect(0, 0, width(), height()));
}

// ---------------------------------------------------------------- control

TWgPageControl::TWgPageControl(QWidget* Parent) : QWidget(Parent) {
    resize(289, 193);
    setMouseTracking(true);
    FFont.Name = u"Tahoma";
    FFont.Height = -11;
    FActiveTabFont = FFont;
    FHotTrackFont = FFont;
    FHotTrackFont.Color = 0xFF0000; // blue
}

TWgPageControl::~TWgPageControl() {
    // The sheets die with the children; they must not call back into us.
    for (TWgTabSheet* page : FPages)
        page->FPageControl = nullptr;
}

TWgTabSheet* TWgPageControl::Pages(int Index) const {
    return Index >= 0 && Index < PageCount() ? FPages[std::size_t(Index)] : nullptr;
}

int TWgPageControl::ActivePage() const {
    return FActivePage ? FActivePage->PageIndex() : -1;
}

void TWgPageControl::SetActivePage(int Index) {
    SetActivePageSheet(Pages(Index));
}

bool TWgPageControl::CanChange() {
    bool allow = true;
    if (OnChanging) OnChanging(this, allow);
    return allow;
}

void TWgPageControl::SetActivePageSheet(TWgTabSheet* Page) {
    if (Page == FActivePage) return;
    if (Page && Page->FPageControl != this) return;
    if (!CanChange()) return;

    QWidget* form = window();
    TWgTabSheet* old = FActivePage;
    QWidget* focus = QApplication::focusWidget();
    const bool oldHadFocus = old && focus && (focus == old || old->isAncestorOf(focus));
    if (form && oldHadFocus) {
        old->setFocus();
        // The focus refused to leave the control inside the old page.
        if (QApplication::focusWidget() != old && QApplication::focusWidget() == focus &&
            focus != old) {
            update();
            return;
        }
    }
    if (old) old->hide();
    if (Page) {
        Page->setGeometry(PageRect());
        Page->show();
        Page->raise();
    }
    if (oldHadFocus) {
        if (Page && Page->focusPolicy() != Qt::NoFocus)
            Page->setFocus();
        else
            setFocus();
    }
    FActivePage = Page;
    if (Page && QApplication::focusWidget() == Page) Page->focusNextChild();
    if (OnChange) OnChange(this);
    update();
}

int TWgPageControl::TabIndex() const {
    return TabIndexOfPage(TabVisibility(), ActivePage());
}

void TWgPageControl::SetTabIndex(int Value) {
    SetActivePageSheet(Pages(PageOfTabIndex(TabVisibility(), Value)));
}

std::vector<bool> TWgPageControl::TabVisibility() const {
    std::vector<bool> visible;
    for (const TWgTabSheet* page : FPages)
        visible.push_back(page->TabVisible());
    return visible;
}

void TWgPageControl::InsertPage(TWgTabSheet* Page) {
    FPages.push_back(Page);
    Page->FPageControl = this;
    Page->setGeometry(PageRect());
    update();
}

void TWgPageControl::RemovePage(TWgTabSheet* Page) {
    auto it = std::find(FPages.begin(), FPages.end(), Page);
    if (it == FPages.end()) return;
    const int removed = int(it - FPages.begin());
    const int count = PageCount();
    FPages.erase(it);
    Page->FPageControl = nullptr;
    if (FActivePage == Page) {
        FActivePage = nullptr;
        SetActivePageSheet(Pages(PageAfterRemoval(count, removed)));
    }
    update();
}

void TWgPageControl::MovePage(TWgTabSheet* Page, int Index) {
    auto it = std::find(FPages.begin(), FPages.end(), Page);
    if (it == FPages.end()) return;
    FPages.erase(it);
    Index = std::clamp(Index, 0, PageCount());
    FPages.insert(FPages.begin() + Index, Page);
    update();
}

#define WG_PGCTL_SETTER(Name, Type, Field)                                                         \
    void TWgPageControl::Set##Name(Type Value) {                                                   \
        if (Field == Value) return;                                                                \
        Field = Value;                                                                             \
        PlacePages();                                                                              \
        update();                                                                                  \
    }

WG_PGCTL_SETTER(ShowTabs, bool, FShowTabs)
WG_PGCTL_SETTER(ShowBorder, bool, FShowBorder)
WG_PGCTL_SETTER(Flat, bool, FFlat)
WG_PGCTL_SETTER(MultiLine, bool, FMultiLine)
WG_PGCTL_SETTER(Color, TColor, FColor)
WG_PGCTL_SETTER(TabBkColor, TColor, FTabBkColor)
WG_PGCTL_SETTER(ActiveTabColor, TColor, FActiveTabColor)
WG_PGCTL_SETTER(InactiveTabColor, TColor, FInactiveTabColor)
WG_PGCTL_SETTER(Font, const TFont&, FFont)
WG_PGCTL_SETTER(ShowImages, bool, FShowImages)
WG_PGCTL_SETTER(Images, const TWgImageList*, FImages)
WG_PGCTL_SETTER(CloseButtonMode, TWgCloseBtnMode, FCloseButtonMode)
WG_PGCTL_SETTER(UseActiveTabFont, bool, FUseActiveTabFont)
WG_PGCTL_SETTER(ActiveTabFont, const TFont&, FActiveTabFont)
WG_PGCTL_SETTER(HotTrackFont, const TFont&, FHotTrackFont)

#undef WG_PGCTL_SETTER

void TWgPageControl::SetStyle(TWgTabStyle Value) {
    if (Value == etsAngledTabs && FMultiLine)
        throw Exception("Angled tabs are not available for a multi-line page control");
    FStyle = Value;
    if (Value == etsNetTabs) {
        const TColor rgb = ResolveColor(FColor, &palette());
        auto darker = [rgb](int Shift) {
            return TColor(std::max(0, int((rgb >> Shift) & 0xFF) - 20)) << Shift;
        };
        FFlatTabBorderColor = darker(0) | darker(8) | darker(16);
    }
    update();
}

void TWgPageControl::SetHotTrack(bool Value) {
    if (FHotTrack == Value) return;
    FHotTrack = Value;
    update();
}

void TWgPageControl::PageChanged() {
    PlacePages();
    update();
}

bool TWgPageControl::HasCloseButton(int Page) const {
    return FCloseButtonMode == cbmAll || (FCloseButtonMode == cbmActive && Page == ActivePage());
}

std::vector<TPlusTabInfo> TWgPageControl::TabInfos() const {
    std::vector<TPlusTabInfo> tabs;
    for (int i = 0; i < PageCount(); ++i) {
        const TWgTabSheet* page = FPages[std::size_t(i)];
        TPlusTabInfo tab{page->Caption(), page->TabVisible(), page->TabEnabled(), FInactiveTabColor,
                         clNone};
        tab.ImageIndex = page->ImageIndex();
        tab.ShowClose = HasCloseButton(i);
        tab.CloseEnabled = page->CloseBtnEnabled();
        tab.Hot = FHotTrack && i == FHotTab;
        tabs.push_back(tab);
    }
    return tabs;
}

TPlusTabStyle TWgPageControl::TabStyle() const {
    TPlusTabStyle style;
    style.Font = FFont;
    style.ActiveFont = FUseActiveTabFont ? FActiveTabFont : FFont;
    if (FShowImages) style.Images = FImages;
    if (FHotTrack) style.HotFont = FHotTrackFont;
    style.TabMargin = {2, 2, 2};
    style.TabBackGroundColor = FTabBkColor;
    style.ActiveColor = FActiveTabColor;
    style.TabBorderColor = FFlatTabBorderColor;
    style.TabSheetBorderColor = FFlatTabBorderColor;
    return style;
}

TPlusTabLayout TWgPageControl::TabLayout() const {
    if (!FShowTabs) return {};
    return WithCanvas(this, [&](TCanvas& Canvas) {
        return LayoutPlusTabs(Canvas, TabInfos(), ActivePage(), TabStyle(), width());
    });
}

QRect TWgPageControl::PageRect() const {
    // Without tabs no strip takes up room.
    const int top = FShowTabs ? TabLayout().StripBottom + 1 : 0;
    const int border = FShowBorder ? 2 : 0;
    return QRect(border, top + (FShowTabs ? 0 : border), std::max(0, width() - 2 * border),
                 std::max(0, height() - top - border - (FShowTabs ? 0 : border)));
}

void TWgPageControl::PlacePages() {
    const QRect r = PageRect();
    for (TWgTabSheet* page : FPages)
        page->setGeometry(r);
}

void TWgPageControl::resizeEvent(QResizeEvent* Event) {
    QWidget::resizeEvent(Event);
    PlacePages();
}

void TWgPageControl::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    TQtCanvas canvas(painter, &palette());
    canvas.SetBrushColor(FColor);
    canvas.FillRect(Rect(0, 0, width(), height()));
    if (FShowTabs) {
        const TPlusTabLayout layout = TabLayout();
        PaintPlusTabs(canvas, layout, TabInfos(), ActivePage(), TabStyle(), width(), height());
    } else if (FShowBorder) {
        canvas.DrawEdge(Rect(0, 0, width(), height()), FFlat ? BDR_SUNKENOUTER : EDGE_SUNKEN,
                        BF_RECT);
    }
}

void TWgPageControl::mousePressEvent(QMouseEvent* Event) {
    if (!FShowTabs || Event->button() != Qt::LeftButton) return;
    const QPoint p = Event->position().toPoint();
    const TPlusTabLayout layout = TabLayout();
    // A close button closes when the mouse goes up on it again.
    FClosePressed = PlusTabCloseAt(layout, {p.x(), p.y()});
    if (FClosePressed >= 0) return;
    const int tab = PlusTabAt(layout, {p.x(), p.y()});
    if (tab >= 0 && FPages[std::size_t(tab)]->TabEnabled()) SetActivePage(tab);
}

void TWgPageControl::mouseReleaseEvent(QMouseEvent* Event) {
    if (Event->button() != Qt::LeftButton || FClosePressed < 0) return;
    const int pressed = FClosePressed;
    FClosePressed = -1;
    const QPoint p = Event->position().toPoint();
    if (PlusTabCloseAt(TabLayout(), {p.x(), p.y()}) != pressed) return;
    TWgTabSheet* page = Pages(pressed);
    if (page && page->TabEnabled() && page->CloseBtnEnabled()) ClosePage(page);
}

bool TWgPageControl::ClosePage(TWgTabSheet* Page) {
    if (!Page || Page->FPageControl != this) return false;
    bool canClose = true;
    if (OnClosePageQuery) OnClosePageQuery(this, Page, canClose);
    if (!canClose) return false;
    if (Page == FActivePage) {
        // The next visible tab takes over, wrapping round; none is left
        // active when this was the last.
        const int index = Page->PageIndex();
        TWgTabSheet* next = nullptr;
        for (int k = 1; k < PageCount() && !next; ++k) {
            TWgTabSheet* candidate = FPages[std::size_t((index + k) % PageCount())];
            if (candidate->TabVisible()) next = candidate;
        }
        SetActivePageSheet(next);
        // OnChanging refused: the page stays, and so does its tab.
        if (FActivePage == Page) return false;
    }
    Page->SetTabVisible(false);
    SetHotTab(-1);
    return true;
}

void TWgPageControl::SetHotTab(int Tab) {
    if (FHotTab == Tab) return;
    FHotTab = Tab;
    // A hint belongs to the tab it was shown for.
    if (TWgHintWindow::ShownFor(this)) TWgHintWindow::HideControlHint();
    if (FHotTrack) update();
}

void TWgPageControl::mouseMoveEvent(QMouseEvent* Event) {
    QWidget::mouseMoveEvent(Event);
    const QPoint p = Event->position().toPoint();
    SetHotTab(FShowTabs ? PlusTabAt(TabLayout(), {p.x(), p.y()}) : -1);
}

void TWgPageControl::leaveEvent(QEvent* Event) {
    QWidget::leaveEvent(Event);
    SetHotTab(-1);
}

bool TWgPageControl::event(QEvent* Event) {
    if (Event->type() != QEvent::ToolTip) return QWidget::event(Event);
    const auto* help = static_cast<QHelpEvent*>(Event);
    const int tab = FShowTabs && FShowTabHints
                        ? PlusTabAt(TabLayout(), {help->pos().x(), help->pos().y()})
                        : -1;
    if (tab < 0 || !TWgHintWindow::ShowControlHint(this, help->globalPos(), Pages(tab)->Hint()))
        Event->ignore();
    return true;
}
