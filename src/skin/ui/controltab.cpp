// Tab controls, page controls, their pages, and headers.

#include "skin/bitmap.h"
#include "skin/control.h"
#include "skin/draw.h"
#include "skin/ui/control.h"
#include "skin/ui/data.h"

#include "base/ui/Colors.h"
#include "base/ui/QtCanvas.h"

#include <QCursor>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>

namespace {

bool IsPointerEvent(QEvent::Type Type) {
    switch (Type) {
    case QEvent::Leave:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
    case QEvent::HoverMove:
    case QEvent::HoverLeave:
        return true;
    default:
        return false;
    }
}

QPoint EventPoint(QEvent* Event) {
    switch (Event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
        return static_cast<QMouseEvent*>(Event)->position().toPoint();
    case QEvent::HoverMove:
        return static_cast<QHoverEvent*>(Event)->position().toPoint();
    default:
        return {-1, -1};
    }
}

// One frame of a skin object over R, turned for tabs on the bottom or the
// sides: the strips are drawn for tabs at the top.
QImage TabFace(const TDataSkinObject* Object, int Frame, QSize Size, QTabBar::Shape Shape,
               TPixel Ground, qreal Ratio) {
    const bool side = Shape == QTabBar::RoundedWest || Shape == QTabBar::RoundedEast ||
                      Shape == QTabBar::TriangularWest || Shape == QTabBar::TriangularEast;
    TMemoryBitmap work(side ? Size.height() : Size.width(), side ? Size.width() : Size.height(),
                       Ground);
    PaintFace(work, Object, Frame);
    switch (Shape) {
    case QTabBar::RoundedSouth:
    case QTabBar::TriangularSouth:
        MirrorVert(work);
        break;
    case QTabBar::RoundedWest:
    case QTabBar::TriangularWest:
        Rotate90(work);
        break;
    case QTabBar::RoundedEast:
    case QTabBar::TriangularEast:
        Rotate270(work);
        break;
    default:
        break;
    }
    return ToDenseQImage(work, IsMagenta(Ground) ? 0xFF00FF : clNone, Ratio);
}

} // namespace

// ---- TSkinTab

void TSkinTab::InitSkin(TVeneerForm* AForm, TSkinData* Data, bool AOwnColor, QWidget* AControl) {
    TSkinControl::InitSkin(AForm, Data, AOwnColor, AControl);
    if (auto* tabs = qobject_cast<QTabWidget*>(AControl))
        FBar = tabs->tabBar();
    else
        FBar = qobject_cast<QTabBar*>(AControl);
    if (FBar && FBar != AControl) Watch(FBar);
    if (FBar) KeepAttribute(FBar, Qt::WA_Hover, true);
}

bool TSkinTab::CanPaint() const {
    return Skin && Skin->Tabs && !Skin->Tabs->Map.Empty();
}

bool TSkinTab::HasAfter(QObject* Target, QEvent::Type Type) const {
    return (Target == FBar && IsPointerEvent(Type)) || TSkinControl::HasAfter(Target, Type);
}

bool TSkinTab::BeforeProc(QObject* Target, QEvent* Event) {
    if (Event->type() == QEvent::Paint && CanPaint()) {
        if (Target == FBar) {
            PaintTabs(FBar);
            return false;
        }
        if (Target == Control()) {
            PaintClient(Control());
            return false;
        }
    }
    return TSkinControl::BeforeProc(Target, Event);
}

void TSkinTab::AfterProc(QObject* Target, QEvent* Event) {
    if (Target == FBar && IsPointerEvent(Event->type())) {
        auto* bar = static_cast<QTabBar*>(FBar);
        const int hot = Event->type() == QEvent::Leave || Event->type() == QEvent::HoverLeave
                            ? -1
                            : bar->tabAt(EventPoint(Event));
        if (hot != FHot) {
            FHot = hot;
            FBar->update();
        }
        return;
    }
    TSkinControl::AfterProc(Target, Event);
}

void TSkinTab::Paint(QPainter& Painter, const QRect& R) {
    // The page frame around the stack of pages.
    Painter.fillRect(R, Face());
    auto* tabs = qobject_cast<QTabWidget*>(Control());
    const TDataSkinObject* pane = Skin->TabPane.get();
    if (!tabs || !pane || pane->Map.Empty()) return;
    auto* stack = tabs->findChild<QStackedWidget*>(QString(), Qt::FindDirectChildrenOnly);
    if (!stack) return;
    const QRect r = stack->geometry().adjusted(-2, -2, 2, 2).intersected(R);
    if (r.isEmpty()) return;
    Painter.drawImage(r.topLeft(),
                      FaceImage(pane, 1, r.size(), Painter.device()->devicePixelRatioF(), false));
}

void TSkinTab::PaintTabs(QWidget* Widget) {
    auto* bar = static_cast<QTabBar*>(Widget);
    QPainter painter(bar);
    painter.fillRect(bar->rect(), Face());
    const TDataSkinBorder& tabs = *Skin->Tabs;
    const qreal ratio = painter.device()->devicePixelRatioF();
    const TPixel face = ColorToPixel(FromQColor(Face()));
    painter.setFont(bar->font());
    for (int i = 0; i < bar->count(); ++i) {
        const QRect r = bar->tabRect(i);
        if (r.isEmpty() || !r.intersects(bar->rect())) continue;
        const bool selected = i == bar->currentIndex();
        int frame = selected ? 2 : (i == FHot ? 4 : 1);
        if (!bar->isTabEnabled(i)) frame = 3;
        painter.drawImage(r.topLeft(), TabFace(&tabs, frame, r.size(), bar->shape(), face, ratio));
        const QString label = bar->tabText(i).remove(QLatin1Char('&'));
        const QColor pen = bar->isTabEnabled(i)
                               ? SkinColor(selected ? tabs.MouseOverColour2 : tabs.NormalColour2)
                               : SkinColor(Skin->ButtonShadow);
        const QTabBar::Shape shape = bar->shape();
        if (shape == QTabBar::RoundedWest || shape == QTabBar::RoundedEast ||
            shape == QTabBar::TriangularWest || shape == QTabBar::TriangularEast) {
            // Tabs at the sides read along the side, as the tabs are turned.
            const bool west = shape == QTabBar::RoundedWest || shape == QTabBar::TriangularWest;
            painter.save();
            painter.translate(r.center() + QPointF(0.5, 0.5));
            painter.rotate(west ? -90 : 90);
            painter.setPen(pen);
            painter.drawText(QRectF(-r.height() / 2.0, -r.width() / 2.0, r.height(), r.width()),
                             Qt::AlignCenter, label);
            painter.restore();
            continue;
        }
        // Text and icon, centred; room on the right for a close button.
        QRect text = r.adjusted(4, 2, -4, 0);
        if (QWidget* close = bar->tabButton(i, QTabBar::RightSide)) text.setRight(close->x() - 2);
        if (QWidget* left = bar->tabButton(i, QTabBar::LeftSide))
            text.setLeft(left->geometry().right() + 2);
        const QIcon icon = bar->tabIcon(i);
        const QFontMetrics fm(bar->font());
        const QSize is = icon.isNull() ? QSize() : bar->iconSize();
        const int w = fm.horizontalAdvance(label) + (icon.isNull() ? 0 : is.width() + 4);
        int x = text.left() + std::max(0, (text.width() - w) / 2);
        if (!icon.isNull()) {
            painter.drawPixmap(x, text.center().y() - is.height() / 2, icon.pixmap(is, ratio));
            x += is.width() + 4;
        }
        painter.setPen(pen);
        painter.drawText(QRect(x, text.top(), text.right() - x + 1, text.height()),
                         Qt::AlignVCenter | Qt::AlignLeft, label);
        if (selected && bar->hasFocus() && !HasOption(xoNoFocusRect))
            DrawFocus(painter, r.adjusted(3, 3, -3, -2));
    }
}

// ---- TSkinTabBtn

void TSkinTabBtn::PaintTabs(QWidget* Widget) {
    auto* bar = static_cast<QTabBar*>(Widget);
    if (!Skin->Buttons || Skin->Buttons->Map.Empty()) {
        TSkinTab::PaintTabs(Widget);
        return;
    }
    QPainter painter(bar);
    painter.fillRect(bar->rect(), Face());
    painter.setFont(bar->font());
    const qreal ratio = painter.device()->devicePixelRatioF();
    const TPixel face = ColorToPixel(FromQColor(Face()));
    for (int i = 0; i < bar->count(); ++i) {
        const QRect r = bar->tabRect(i).adjusted(1, 1, -1, -1);
        if (r.isEmpty()) continue;
        int frame = i == bar->currentIndex() ? 2 : (i == FHot ? 4 : 1);
        if (!bar->isTabEnabled(i)) frame = 3;
        painter.drawImage(r.topLeft(), TabFace(Skin->Buttons.get(), frame, r.size(),
                                               QTabBar::RoundedNorth, face, ratio));
        painter.setPen(SkinColor(frame == 3 ? Skin->ButtonShadow : Skin->ButtonText));
        painter.drawText(r, Qt::AlignCenter, bar->tabText(i).remove(QLatin1Char('&')));
    }
}

// ---- TSkinTabSheet

bool TSkinTabSheet::BeforeProc(QObject* Target, QEvent* Event) {
    if (Event->type() == QEvent::Paint && Target == Control()) {
        // The face under the page; the page paints on it.
        QPainter painter(Control());
        painter.fillRect(Control()->rect(), Face());
    }
    return TSkinControl::BeforeProc(Target, Event);
}

// ---- TSkinHeader

void TSkinHeader::InitSkin(TVeneerForm* AForm, TSkinData* Data, bool AOwnColor, QWidget* AControl) {
    TSkinControl::InitSkin(AForm, Data, AOwnColor, AControl);
    // Sections are painted on the header's viewport.
    if (auto* header = qobject_cast<QHeaderView*>(AControl)) {
        Watch(header->viewport());
        KeepAttribute(header->viewport(), Qt::WA_Hover, true);
    }
}

bool TSkinHeader::CanPaint() const {
    return Skin && Skin->Headerbar && !Skin->Headerbar->Map.Empty();
}

bool TSkinHeader::HasAfter(QObject* Target, QEvent::Type Type) const {
    auto* header = qobject_cast<QHeaderView*>(Control());
    return (header && Target == header->viewport() && IsPointerEvent(Type)) ||
           TSkinControl::HasAfter(Target, Type);
}

bool TSkinHeader::BeforeProc(QObject* Target, QEvent* Event) {
    auto* header = qobject_cast<QHeaderView*>(Control());
    if (header && Event->type() == QEvent::Paint && Target == header->viewport() && CanPaint()) {
        Rect = header->viewport()->rect();
        QPainter painter(header->viewport());
        Paint(painter, Rect);
        return false;
    }
    return TSkinControl::BeforeProc(Target, Event);
}

void TSkinHeader::AfterProc(QObject* Target, QEvent* Event) {
    auto* header = qobject_cast<QHeaderView*>(Control());
    if (header && Target == header->viewport() && IsPointerEvent(Event->type())) {
        const QEvent::Type type = Event->type();
        if (type == QEvent::MouseButtonPress)
            FPressed = header->logicalIndexAt(EventPoint(Event));
        else if (type == QEvent::MouseButtonRelease)
            FPressed = -1;
        header->viewport()->update();
        return;
    }
    TSkinControl::AfterProc(Target, Event);
}

void TSkinHeader::Paint(QPainter& Painter, const QRect& R) {
    auto* header = qobject_cast<QHeaderView*>(Control());
    if (!header) return;
    Painter.fillRect(R, Face());
    const TDataSkinObject* strip = Skin->Headerbar.get();
    const qreal ratio = Painter.device()->devicePixelRatioF();
    const TPixel face = ColorToPixel(FromQColor(Face()));
    const bool horizontal = header->orientation() == Qt::Horizontal;
    const QPoint pointer = header->viewport()->underMouse()
                               ? header->viewport()->mapFromGlobal(QCursor::pos())
                               : QPoint(-1, -1);
    Painter.setFont(header->font());
    for (int v = 0; v < header->count(); ++v) {
        const int logical = header->logicalIndex(v);
        if (header->isSectionHidden(logical)) continue;
        const int pos = header->sectionViewportPosition(logical);
        const int size = header->sectionSize(logical);
        const QRect r =
            horizontal ? QRect(pos, 0, size, R.height()) : QRect(0, pos, R.width(), size);
        if (!r.intersects(R)) continue;
        int frame = logical == FPressed ? 2 : (r.contains(pointer) ? 4 : 1);
        if (!header->isEnabled()) frame = 3;
        TMemoryBitmap work(r.width(), r.height(), face);
        PaintFace(work, strip, frame);
        Painter.drawImage(r.topLeft(), ToDenseQImage(work, clNone, ratio));
        QString text;
        if (header->model())
            text = header->model()->headerData(logical, header->orientation()).toString();
        Painter.setPen(SkinColor(header->isEnabled() ? strip->NormalColour2 : Skin->ButtonShadow));
        QRect tr = r.adjusted(4, 0, -4, 0);
        if (header->isSortIndicatorShown() && header->sortIndicatorSection() == logical) {
            // The sort mark at the right: up for ascending.
            const int x = tr.right() - 7, y = r.center().y();
            const bool up = header->sortIndicatorOrder() == Qt::AscendingOrder;
            const QPoint mark[] = {
                {x, up ? y + 2 : y - 2}, {x + 7, up ? y + 2 : y - 2}, {x + 3, up ? y - 2 : y + 2}};
            Painter.save();
            Painter.setBrush(Painter.pen().color());
            Painter.drawPolygon(mark, 3);
            Painter.restore();
            tr.setRight(x - 4);
        }
        Painter.drawText(tr, Qt::AlignCenter,
                         QFontMetrics(header->font()).elidedText(text, Qt::ElideRight, tr.width()));
    }
}
