#include "skin/ui/scrollbar.h"

#include "base/ui/QtCanvas.h"
#include "skin/ui/data.h"

#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QFrame>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTableView>
#include <QTreeView>

#include <functional>

// ---- TWScrollbar

TWScrollbar::TWScrollbar(TSkinControl& Owner, QScrollBar* Bar, int AMode)
    : Mode(AMode), FOwner(Owner), FBar(Bar), FBarObject(Bar) {
    FHadHover = Bar->testAttribute(Qt::WA_Hover);
    Bar->setAttribute(Qt::WA_Hover, true); // the part under the mouse lights up
    Bar->installEventFilter(this);
    Bar->update();
}

TWScrollbar::~TWScrollbar() {
    if (!FBar) return;
    FBar->removeEventFilter(this);
    FBar->setAttribute(Qt::WA_Hover, FHadHover);
    FBar->update();
}

TScrollBarGeometry TWScrollbar::Geometry() const {
    QStyleOptionSlider o;
    o.initFrom(FBar);
    o.subControls = QStyle::SC_All;
    o.orientation = FBar->orientation();
    o.minimum = FBar->minimum();
    o.maximum = FBar->maximum();
    o.sliderPosition = FBar->sliderPosition();
    o.sliderValue = FBar->value();
    o.singleStep = FBar->singleStep();
    o.pageStep = FBar->pageStep();
    o.upsideDown = FBar->invertedAppearance();
    if (o.orientation == Qt::Horizontal) o.state |= QStyle::State_Horizontal;
    QStyle* style = FBar->style();
    const QRect sub =
        style->subControlRect(QStyle::CC_ScrollBar, &o, QStyle::SC_ScrollBarSubLine, FBar);
    const QRect thumb =
        style->subControlRect(QStyle::CC_ScrollBar, &o, QStyle::SC_ScrollBarSlider, FBar);
    TScrollBarGeometry g;
    g.Vertical = o.orientation == Qt::Vertical;
    g.BarLength = g.Vertical ? FBar->height() : FBar->width();
    g.ArrowSize = g.Vertical ? sub.height() : sub.width();
    g.ThumbTop = g.Vertical ? thumb.top() : thumb.left();
    g.ThumbBottom = g.Vertical ? thumb.bottom() + 1 : thumb.right() + 1;
    return g;
}

bool TWScrollbar::Disabled() const {
    // A bar with nothing to scroll shows as unavailable.
    return !FBar->isEnabled() || FBar->maximum() <= FBar->minimum();
}

void TWScrollbar::SkinChanged() {
    FWork = QImage();
    if (FBar) FBar->update();
}

void TWScrollbar::SetZone(int Value) {
    if (Zone == Value) return;
    Zone = Value;
    FBar->update();
}

void TWScrollbar::Paint(QPainter& Painter) {
    const TScrollBarGeometry g = Geometry();
    const bool disabled = Disabled();
    const qreal ratio = Painter.device()->devicePixelRatioF();
    // The picture depends on nothing else, so an unchanged bar is one copy.
    quint64 key = 1469598103934665603ull;
    for (int v : {g.BarLength, g.ArrowSize, g.ThumbTop, g.ThumbBottom, FBar->width(),
                  FBar->height(), Zone, int(Pressed), int(disabled), int(ratio * 100)})
        key = (key ^ quint64(std::uint32_t(v))) * 1099511628211ull;
    if (FWork.isNull() || key != FWorkKey) {
        TMemoryBitmap work(FBar->width(), FBar->height());
        if (!PaintScrollBar(work, *FOwner.Skin, g, Zone, Pressed, disabled)) return;
        FWork = ToDenseQImage(work, clNone, ratio);
        FWorkKey = key;
    }
    Painter.drawImage(0, 0, FWork);
}

bool TWScrollbar::eventFilter(QObject* Watched, QEvent* Event) {
    // While the bar is being destroyed it is no scroll bar any more: its
    // last events pass untouched.
    if (Watched != FBarObject || !qobject_cast<QScrollBar*>(Watched) || !FOwner.Active ||
        FOwner.State != scsRunning)
        return false;
    const auto* skin = FOwner.Skin;
    if (!skin || !skin->ScrollbarMap || skin->ScrollbarMap->Map.Empty()) return false;
    switch (Event->type()) {
    case QEvent::Paint: {
        QPainter painter(FBar);
        Paint(painter);
        return true;
    }
    case QEvent::HoverMove:
        if (!Pressed)
            SetZone(
                ZoneAt(Geometry(), {static_cast<QHoverEvent*>(Event)->position().toPoint().x(),
                                    static_cast<QHoverEvent*>(Event)->position().toPoint().y()}));
        return false;
    case QEvent::HoverLeave:
    case QEvent::Leave:
        if (!Pressed) SetZone(szNone);
        return false;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        auto* mouse = static_cast<QMouseEvent*>(Event);
        if (mouse->button() != Qt::LeftButton) return false;
        const QPoint p = mouse->position().toPoint();
        Zone = ZoneAt(Geometry(), {p.x(), p.y()});
        Pressed = true;
        FBar->update();
        return false; // the bar scrolls, repeats and drags by itself
    }
    case QEvent::MouseButtonRelease: {
        Pressed = false;
        const QPoint p = static_cast<QMouseEvent*>(Event)->position().toPoint();
        Zone = FBar->rect().contains(p) ? ZoneAt(Geometry(), {p.x(), p.y()}) : szNone;
        FBar->update();
        return false;
    }
    default:
        return false;
    }
}

// ---- TSkinScrollbar

namespace {

// The bars of a control: a scroll area's own, or those it holds as children.
std::pair<QScrollBar*, QScrollBar*> BarsOf(QWidget* Control) {
    if (auto* area = qobject_cast<QAbstractScrollArea*>(Control))
        return {area->horizontalScrollBar(), area->verticalScrollBar()};
    QScrollBar *h = nullptr, *v = nullptr;
    for (QScrollBar* bar : Control->findChildren<QScrollBar*>(Qt::FindDirectChildrenOnly)) {
        QScrollBar*& slot = bar->orientation() == Qt::Horizontal ? h : v;
        if (!slot) slot = bar;
    }
    return {h, v};
}

} // namespace

void TSkinScrollbar::InitSkin(TVeneerForm* AForm, TSkinData* Data, bool AOwnColor,
                              QWidget* AControl) {
    TSkinControl::InitSkin(AForm, Data, AOwnColor, AControl);
    InitScrollbar(AControl, Data, AForm);
}

void TSkinScrollbar::InitScrollbar(QWidget* AControl, TSkinData*, TVeneerForm*) {
    if (!AControl) return;
    auto* frame = qobject_cast<QFrame*>(AControl);
    PaintFrame = frame && frame->frameShape() != QFrame::NoFrame && !Single;
    auto [h, v] = BarsOf(AControl);
    if (h) FHorz = std::make_unique<TWScrollbar>(*this, h, 0);
    if (v) FVert = std::make_unique<TWScrollbar>(*this, v, 1);
}

void TSkinScrollbar::Unsubclass() {
    if (State != scsGone) {
        FHorz.reset();
        FVert.reset();
    }
    TSkinControl::Unsubclass();
}

void TSkinScrollbar::SkinChange() {
    TSkinControl::SkinChange();
    for (TWScrollbar* bar : {FHorz.get(), FVert.get()})
        if (bar) bar->SkinChanged();
}

bool TSkinScrollbar::HasAfter(QObject* Target, QEvent::Type Type) const {
    return (Target == Control() && Type == QEvent::Paint) || TSkinControl::HasAfter(Target, Type);
}

void TSkinScrollbar::AfterProc(QObject* Target, QEvent* Event) {
    if (Event->type() != QEvent::Paint) {
        TSkinControl::AfterProc(Target, Event);
        return;
    }
    if (!Skin->ScrollbarMap || Skin->ScrollbarMap->Map.Empty()) return;
    QWidget* control = Control();
    QPainter painter(control);
    if (PaintFrame) {
        // A line in the shadow colour, and one of the face inside it.
        const QRect r = control->rect();
        painter.setPen(SkinColor(Skin->ButtonShadow));
        painter.drawRect(r.adjusted(0, 0, -1, -1));
        painter.setPen(Face());
        painter.drawRect(r.adjusted(1, 1, -2, -2));
    }
    // The corner between two bars.
    QScrollBar* h = FHorz ? FHorz->Bar() : nullptr;
    QScrollBar* v = FVert ? FVert->Bar() : nullptr;
    if (h && v && h->isVisible() && v->isVisible()) {
        const QPoint vp = v->mapTo(control, QPoint(0, 0)), hp = h->mapTo(control, QPoint(0, 0));
        painter.fillRect(QRect(vp.x(), hp.y(), v->width(), h->height()), Face());
    }
}

// ---- TSkinListView

void TSkinListView::InitScrollbar(QWidget* AControl, TSkinData* Data, TVeneerForm* AForm) {
    TSkinScrollbar::InitScrollbar(AControl, Data, AForm);
    QHeaderView* header = nullptr;
    if (auto* table = qobject_cast<QTableView*>(AControl)) header = table->horizontalHeader();
    if (auto* tree = qobject_cast<QTreeView*>(AControl)) header = tree->header();
    if (header && HasBit(Data->SkinControls, xcPanel)) {
        FHeader = std::make_unique<TSkinHeader>();
        FHeader->InitSkin(AForm, Data, false, header);
    }
}

void TSkinListView::Unsubclass() {
    if (FHeader) {
        FHeader->Unsubclass();
        FHeader.reset();
    }
    TSkinScrollbar::Unsubclass();
}

// ---- TSkinScControl

void TSkinScControl::InitSkin(TVeneerForm* AForm, TSkinData* Data, bool AOwnColor,
                              QWidget* AControl) {
    TSkinControl::InitSkin(AForm, Data, AOwnColor, AControl);
    if (auto* bar = qobject_cast<QScrollBar*>(AControl))
        FBar = std::make_unique<TWScrollbar>(*this, bar, 2);
}

void TSkinScControl::Unsubclass() {
    if (State != scsGone) FBar.reset();
    TSkinControl::Unsubclass();
}

void TSkinScControl::SkinChange() {
    TSkinControl::SkinChange();
    if (FBar) FBar->SkinChanged();
}
