// Group boxes, edits, combo boxes, status bars, progress bars, track bars
// and the plain members.

#include "skin/bitmap.h"
#include "skin/control.h"
#include "skin/draw.h"
#include "skin/ui/control.h"
#include "skin/ui/data.h"

#include "base/ui/Colors.h"
#include "base/ui/QtCanvas.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QCursor>
#include <QDateTimeEdit>
#include <QGroupBox>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QProgressBar>
#include <QSizeGrip>
#include <QSlider>
#include <QStatusBar>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QStyleOptionSlider>
#include <QStyleOptionSpinBox>

namespace {

bool IsPointerEvent(QEvent::Type Type) {
    switch (Type) {
    case QEvent::Enter:
    case QEvent::Leave:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
    case QEvent::HoverMove:
        return true;
    default:
        return false;
    }
}

// The pointer over W, in W's coordinates; outside when W is not under it.
QPoint PointerIn(const QWidget* W) {
    return W->underMouse() ? W->mapFromGlobal(QCursor::pos()) : QPoint(-1, -1);
}

bool LeftDown() {
    return (QApplication::mouseButtons() & Qt::LeftButton) != 0;
}

} // namespace

// ---- TSkinGroupBox

bool TSkinGroupBox::BeforeProc(QObject* Target, QEvent* Event) {
    auto* box = qobject_cast<QGroupBox*>(Control());
    // A box with a check in its title keeps its own paint.
    if (Event->type() == QEvent::Paint && Target == Control() && box && !box->isCheckable()) {
        PaintClient(Control());
        return false;
    }
    return TSkinControl::BeforeProc(Target, Event);
}

void TSkinGroupBox::Paint(QPainter& Painter, const QRect& R) {
    auto* box = qobject_cast<QGroupBox*>(Control());
    const QFontMetrics fm(box->font());
    const int captionHeight = fm.height();
    if (!OwnColor) Painter.fillRect(R, Face());
    Painter.save();
    Painter.setRenderHint(QPainter::Antialiasing, true);
    Painter.setPen(SkinColor(Skin->ButtonShadow));
    Painter.setBrush(Qt::NoBrush);
    const int top = captionHeight / 2 - 1;
    Painter.drawRoundedRect(QRectF(R.left() + 0.5, top + 0.5, R.width() - 1, R.height() - top - 1),
                            5, 5);
    Painter.restore();
    const QString text = box->title().remove(QLatin1Char('&'));
    if (text.isEmpty()) return;
    const int tw = fm.horizontalAdvance(text);
    const bool right = box->layoutDirection() == Qt::RightToLeft;
    const QRect caption(right ? R.right() - 8 - tw - 2 : R.left() + 8, 0, tw + 4, captionHeight);
    Painter.fillRect(caption, Face());
    Painter.setFont(box->font());
    Painter.setPen(box->palette().color(box->isEnabled() ? QPalette::Active : QPalette::Disabled,
                                        QPalette::WindowText));
    Painter.drawText(caption, Qt::AlignCenter, text);
}

// ---- TSkinEdit

void TSkinEdit::InitSkin(TVeneerForm* AForm, TSkinData* Data, bool AOwnColor, QWidget* AControl) {
    TSkinControl::InitSkin(AForm, Data, AOwnColor, AControl);
    auto* spin = qobject_cast<QAbstractSpinBox*>(AControl);
    FSpin = spin && spin->buttonSymbols() != QAbstractSpinBox::NoButtons &&
            HasBit(Data->SkinControls, xcSpin) && Data->UpDownVert &&
            !Data->UpDownVert->Map.Empty();
    if (FSpin) KeepAttribute(AControl, Qt::WA_Hover, true);
}

bool TSkinEdit::HasAfter(QObject* Target, QEvent::Type Type) const {
    return Type == QEvent::Paint || (FSpin && IsPointerEvent(Type)) ||
           TSkinControl::HasAfter(Target, Type);
}

void TSkinEdit::AfterProc(QObject* Target, QEvent* Event) {
    if (Event->type() == QEvent::Paint && Target == Control()) {
        PaintFrame(Control());
        if (FSpin) PaintArrows(Control());
        return;
    }
    if (IsPointerEvent(Event->type())) {
        Repaint();
        return;
    }
    TSkinControl::AfterProc(Target, Event);
}

void TSkinEdit::PaintFrame(QWidget* Target) {
    bool framed = false;
    if (auto* edit = qobject_cast<QLineEdit*>(Target)) framed = edit->hasFrame();
    if (auto* spin = qobject_cast<QAbstractSpinBox*>(Target)) framed = spin->hasFrame();
    if (!framed) return;
    // An outer line in the shadow colour and two lines of the edit's own
    // ground inside it.
    QPainter painter(Target);
    const QRect r = Target->rect();
    painter.setPen(SkinColor(Skin->ButtonShadow));
    painter.drawRect(r.adjusted(0, 0, -1, -1));
    painter.setPen(Target->palette().color(QPalette::Base));
    painter.drawRect(r.adjusted(1, 1, -2, -2));
    painter.drawRect(r.adjusted(2, 2, -3, -3));
}

void TSkinEdit::PaintArrows(QWidget* Target) {
    auto* spin = qobject_cast<QAbstractSpinBox*>(Target);
    if (!spin) return;
    QStyleOptionSpinBox option;
    option.initFrom(spin);
    option.subControls = QStyle::SC_SpinBoxUp | QStyle::SC_SpinBoxDown | QStyle::SC_SpinBoxFrame;
    option.frame = spin->hasFrame();
    option.buttonSymbols = spin->buttonSymbols();
    option.stepEnabled = QAbstractSpinBox::StepUpEnabled | QAbstractSpinBox::StepDownEnabled;
    const QRect up =
        spin->style()->subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxUp, spin);
    const QRect down =
        spin->style()->subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxDown, spin);
    const QPoint p = PointerIn(spin);
    QPainter painter(spin);
    const TDataSkinBorder& strip = *Skin->UpDownVert;
    int arrow = 0;
    for (const QRect& r : {up, down}) {
        if (r.isEmpty()) {
            ++arrow;
            continue;
        }
        int state = 1;
        if (!spin->isEnabled())
            state = 3;
        else if (r.contains(p))
            state = LeftDown() ? 2 : 4;
        const int cell = UpDownCell(arrow, state);
        painter.fillRect(r, Face());
        DrawCell(painter, r, strip.Map, cell, 8);
        if (!strip.Map2.Empty()) {
            const int gw = strip.Map2.Width() / 8, gh = strip.Map2.Height();
            DrawCell(painter, QRect(r.center().x() - gw / 2, r.center().y() - gh / 2, gw, gh),
                     strip.Map2, cell, 8);
        }
        ++arrow;
    }
}

void TSkinDateTime::InitSkin(TVeneerForm* AForm, TSkinData* Data, bool AOwnColor,
                             QWidget* AControl) {
    TSkinControl::InitSkin(AForm, Data, AOwnColor, AControl);
    FSpin = false;
}

// ---- TSkinComBox

void TSkinComBox::InitSkin(TVeneerForm* AForm, TSkinData* Data, bool AOwnColor, QWidget* AControl) {
    TSkinControl::InitSkin(AForm, Data, AOwnColor, AControl);
    if (auto* combo = qobject_cast<QComboBox*>(AControl); combo && combo->lineEdit())
        Watch(combo->lineEdit()); // its presses show on the button
}

bool TSkinComBox::CanPaint() const {
    return Skin && Skin->ComboButton && !Skin->ComboButton->Map.Empty();
}

bool TSkinComBox::HasAfter(QObject* Target, QEvent::Type Type) const {
    return IsPointerEvent(Type) || Type == QEvent::Paint || TSkinControl::HasAfter(Target, Type);
}

bool TSkinComBox::BeforeProc(QObject* Target, QEvent* Event) {
    auto* combo = qobject_cast<QComboBox*>(Control());
    if (Event->type() == QEvent::Paint && Target == Control() && combo && !combo->isEditable() &&
        CanPaint()) {
        PaintClient(Control());
        return false;
    }
    return TSkinControl::BeforeProc(Target, Event);
}

void TSkinComBox::AfterProc(QObject* Target, QEvent* Event) {
    if (Event->type() == QEvent::Paint) {
        // An editable box paints its edit; the frame and button go over it.
        if (Target == Control() && CanPaint()) {
            QPainter painter(Control());
            PaintButton(painter, Control()->rect());
        }
        return;
    }
    if (IsPointerEvent(Event->type())) {
        switch (Event->type()) {
        case QEvent::Enter:
            MouseState |= msHover;
            break;
        case QEvent::Leave:
            MouseState = 0;
            break;
        case QEvent::MouseButtonPress:
            MouseState |= msPressed;
            break;
        case QEvent::MouseButtonRelease:
            MouseState &= ~msPressed;
            break;
        default:
            break;
        }
        Repaint();
        return;
    }
    TSkinControl::AfterProc(Target, Event);
}

void TSkinComBox::PaintButton(QPainter& Painter, const QRect& R) {
    auto* combo = qobject_cast<QComboBox*>(Control());
    Dropped = false;
    for (QWidget* popup : combo->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        if (popup->isWindow() && popup->isVisible()) Dropped = true;
    const bool pressed = Dropped || (MouseState & msPressed) != 0;
    const int frame =
        ComboFrame(pressed, combo->underMouse() || (MouseState & msHover), combo->isEnabled());
    // Right to left takes the mirrored strip.
    const TDataSkinObject* strip = combo->layoutDirection() == Qt::RightToLeft && Skin->SunkEdge
                                       ? Skin->SunkEdge.get()
                                       : Skin->ComboButton.get();
    Painter.drawImage(R.topLeft(), FaceImage(strip, frame, R.size(),
                                             Painter.device()->devicePixelRatioF(), false));
}

void TSkinComBox::Paint(QPainter& Painter, const QRect& R) {
    auto* combo = qobject_cast<QComboBox*>(Control());
    Painter.fillRect(R, combo->palette().color(QPalette::Base));
    PaintButton(Painter, R);
    const int button = SM_CXVSCROLL + 2;
    QRect text = R.adjusted(4, 2, -button - 4, -2);
    if (combo->layoutDirection() == Qt::RightToLeft) text = R.adjusted(button + 4, 2, -4, -2);
    const QIcon icon = combo->itemIcon(combo->currentIndex());
    if (!icon.isNull()) {
        const QSize s = combo->iconSize();
        Painter.drawPixmap(text.left(), text.center().y() - s.height() / 2 + 1,
                           icon.pixmap(s, Painter.device()->devicePixelRatioF(),
                                       combo->isEnabled() ? QIcon::Normal : QIcon::Disabled));
        text.setLeft(text.left() + s.width() + 4);
    }
    Painter.setFont(combo->font());
    Painter.setPen(combo->palette().color(
        combo->isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Text));
    const QString shown =
        QFontMetrics(combo->font()).elidedText(combo->currentText(), Qt::ElideRight, text.width());
    Painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft, shown);
    if (combo->hasFocus() && !HasOption(xoNoFocusRect))
        DrawFocus(Painter, text.adjusted(-2, 0, 2, 0));
}

// ---- TSkinStatusBar

void TSkinStatusBar::InitSkin(TVeneerForm* AForm, TSkinData* Data, bool AOwnColor,
                              QWidget* AControl) {
    TSkinControl::InitSkin(AForm, Data, AOwnColor, AControl);
    // The panels' texts stand on the skin's edges, in the skin's text colour.
    if (AControl && CanPaint()) SetPaletteColour(QPalette::WindowText, SkinColor(Data->WindowText));
}

void TSkinStatusBar::SkinChange() {
    TSkinControl::SkinChange();
    if (Control() && CanPaint())
        SetPaletteColour(QPalette::WindowText, SkinColor(Skin->WindowText));
}

bool TSkinStatusBar::CanPaint() const {
    return Skin && Skin->StatusBarEdges && !Skin->StatusBarEdges->Map.Empty();
}

bool TSkinStatusBar::BeforeProc(QObject* Target, QEvent* Event) {
    if (Event->type() == QEvent::Paint && Target == Control() && CanPaint()) {
        PaintClient(Control());
        return false;
    }
    return TSkinControl::BeforeProc(Target, Event);
}

void TSkinStatusBar::Paint(QPainter& Painter, const QRect& R) {
    auto* bar = qobject_cast<QStatusBar*>(Control());
    Painter.fillRect(R, Face());
    if (!bar) return;
    const qreal ratio = Painter.device()->devicePixelRatioF();
    const TDataSkinObject* edges = Skin->StatusBarEdges.get();
    // Each panel on the first frame of the edges, the text over it.
    for (QWidget* panel : bar->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        if (!panel->isVisible() || panel->isWindow() || qobject_cast<QSizeGrip*>(panel)) continue;
        const QRect r = panel->geometry().adjusted(-1, -1, 1, 1).intersected(R);
        if (r.isEmpty()) continue;
        TMemoryBitmap work(r.width(), r.height(), ColorToPixel(FromQColor(Face())));
        PaintFace(work, edges, 1);
        Painter.drawImage(r.topLeft(), ToDenseQImage(work, clNone, ratio));
    }
    const QString message = bar->currentMessage();
    if (!message.isEmpty()) {
        Painter.setFont(bar->font());
        Painter.setPen(SkinColor(Skin->WindowText));
        Painter.drawText(R.adjusted(4, 0, -4, 0), Qt::AlignVCenter | Qt::AlignLeft, message);
    }
}

// ---- TSkinProgress

bool TSkinProgress::CanPaint() const {
    return Skin && Skin->Progress && !Skin->Progress->Map.Empty();
}

bool TSkinProgress::BeforeProc(QObject* Target, QEvent* Event) {
    if (Event->type() == QEvent::Paint && Target == Control() && CanPaint()) {
        PaintClient(Control());
        return false;
    }
    return TSkinControl::BeforeProc(Target, Event);
}

void TSkinProgress::Paint(QPainter& Painter, const QRect& R) {
    auto* bar = qobject_cast<QProgressBar*>(Control());
    if (!bar) return;
    const bool vertical = bar->orientation() == Qt::Vertical;
    // A vertical bar is laid out lying down and turned.
    const int W = vertical ? R.height() : R.width(), H = vertical ? R.width() : R.height();
    TMemoryBitmap work(W, H, ColorToPixel(FromQColor(Face())));
    const TDataSkinObject& p = *Skin->Progress;
    const int fill = ProgressFill(W, bar->minimum(), bar->maximum(), bar->value());
    if (p.Style != 1) {
        DrawObject(work, ::Rect(0, 0, W, H), p.Map, 1, std::max(p.Frame, 1), false, p.r,
                   p.Tile == 1, false);
        if (fill > 0)
            DrawObject(work, ::Rect(0, 0, fill, H), p.Map, 2, std::max(p.Frame, 1), false, p.r,
                       p.Tile == 1, p.Trans == 1);
    } else {
        DrawObject(work, ::Rect(0, 0, W, H), p.Map, 1, 1, false, p.r, p.Tile == 1, false);
        const TDataSkinObject* chunk = Skin->ProgressChunk.get();
        if (chunk && !chunk->Map.Empty()) {
            const int step = chunk->Map.Width() / std::max(chunk->Frame, 1);
            for (int x = p.r.Left; step > 0 && x + step <= std::min(fill, W - p.r.Right); x += step)
                DrawFrame(work, ::Rect(x, p.r.Top, x + step, H - p.r.Bottom), chunk->Map, 1,
                          std::max(chunk->Frame, 1), chunk->Trans == 1);
        }
    }
    if (vertical) Rotate90(work); // the start of a vertical bar is at its foot
    Painter.drawImage(R.topLeft(),
                      ToDenseQImage(work, clNone, Painter.device()->devicePixelRatioF()));
    if (bar->isTextVisible() && !vertical) {
        Painter.setFont(bar->font());
        Painter.setPen(bar->palette().color(QPalette::WindowText));
        Painter.drawText(R, Qt::AlignCenter, bar->text());
    }
}

// ---- TSkinTrackBar

bool TSkinTrackBar::HasAfter(QObject* Target, QEvent::Type Type) const {
    return IsPointerEvent(Type) || TSkinControl::HasAfter(Target, Type);
}

bool TSkinTrackBar::BeforeProc(QObject* Target, QEvent* Event) {
    if (Event->type() == QEvent::Paint && Target == Control()) {
        PaintClient(Control());
        return false;
    }
    return TSkinControl::BeforeProc(Target, Event);
}

void TSkinTrackBar::AfterProc(QObject* Target, QEvent* Event) {
    if (IsPointerEvent(Event->type())) {
        Repaint();
        return;
    }
    TSkinControl::AfterProc(Target, Event);
}

void TSkinTrackBar::Paint(QPainter& Painter, const QRect&) {
    auto* slider = qobject_cast<QSlider*>(Control());
    if (!slider) return;
    QStyleOptionSlider option;
    option.initFrom(slider);
    option.orientation = slider->orientation();
    option.minimum = slider->minimum();
    option.maximum = slider->maximum();
    option.sliderPosition = slider->sliderPosition();
    option.sliderValue = slider->value();
    option.tickPosition = slider->tickPosition();
    option.tickInterval = slider->tickInterval();
    option.upsideDown = slider->invertedAppearance() != (slider->orientation() == Qt::Vertical);
    option.subControls = QStyle::SC_SliderGroove | QStyle::SC_SliderHandle;
    QStyle* style = slider->style();
    const QRect groove =
        style->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, slider);
    const QRect handle =
        style->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider);
    const bool vertical = slider->orientation() == Qt::Vertical;
    const qreal ratio = Painter.device()->devicePixelRatioF();

    const TDataSkinObject* track = vertical ? Skin->TrackVert.get() : Skin->Track.get();
    if (track && !track->Map.Empty()) {
        // The channel keeps the image's thickness, centred on the groove.
        const int thick = vertical ? track->Map.Width() : track->Map.Height();
        const QRect channel =
            vertical ? QRect(groove.center().x() - thick / 2, groove.top(), thick, groove.height())
                     : QRect(groove.left(), groove.center().y() - thick / 2, groove.width(), thick);
        if (!channel.isEmpty())
            Painter.drawImage(channel.topLeft(), FaceImage(track, 1, channel.size(), ratio, false));
    }
    const QSlider::TickPosition ticks = slider->tickPosition();
    const TDataSkinObject* thumb;
    if (vertical)
        thumb = ticks == QSlider::TicksLeft    ? Skin->ThumbLeft.get()
                : ticks == QSlider::TicksRight ? Skin->ThumbRight.get()
                                               : Skin->ThumbVert.get();
    else
        thumb = ticks == QSlider::TicksAbove   ? Skin->ThumbUp.get()
                : ticks == QSlider::TicksBelow ? Skin->ThumbDown.get()
                                               : Skin->ThumbHorz.get();
    if (!thumb || thumb->Map.Empty()) {
        Painter.fillRect(handle, Face());
        return;
    }
    const int frames = std::max(thumb->Frame, 1);
    const int tw = thumb->Map.Width() / frames, th = thumb->Map.Height();
    const bool hover = handle.contains(PointerIn(slider));
    const int frame =
        ButtonFrame(slider->hasFocus(), false, slider->isSliderDown(), hover, slider->isEnabled());
    DrawCell(Painter,
             QRect(handle.center().x() - tw / 2 + 1, handle.center().y() - th / 2 + 1, tw, th),
             thumb->Map, std::min(frame, frames), frames);
}

// ---- TSkinSizer

bool TSkinSizer::BeforeProc(QObject* Target, QEvent* Event) {
    if (Event->type() == QEvent::Paint && Target == Control()) {
        QPainter painter(Control());
        painter.fillRect(Control()->rect(), Face());
        return false;
    }
    return TSkinControl::BeforeProc(Target, Event);
}
