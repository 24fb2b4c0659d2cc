// Buttons, bit buttons, tool buttons, check boxes and radio buttons.

#include "skin/control.h"
#include "skin/ui/control.h"
#include "skin/ui/data.h"

#include "base/ui/Tag.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QToolButton>

namespace {

constexpr int TagParentBack = 5555; // a control that shows its parent's background

QAbstractButton* AsButton(QWidget* W) {
    return qobject_cast<QAbstractButton*>(W);
}

bool IsMouseOrKey(QEvent::Type Type) {
    switch (Type) {
    case QEvent::Enter:
    case QEvent::Leave:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return true;
    default:
        return false;
    }
}

// Hover and pressed bits after an event the control has handled.
void TrackMouse(int& MouseState, bool Enabled, QEvent* Event) {
    switch (Event->type()) {
    case QEvent::Enter:
        if (Enabled) MouseState |= msHover;
        break;
    case QEvent::Leave:
        MouseState = 0;
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (static_cast<QMouseEvent*>(Event)->button() == Qt::LeftButton) MouseState |= msPressed;
        break;
    case QEvent::MouseButtonRelease:
        MouseState &= ~msPressed;
        break;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        if (static_cast<QKeyEvent*>(Event)->key() == Qt::Key_Space &&
            !static_cast<QKeyEvent*>(Event)->isAutoRepeat()) {
            if (Event->type() == QEvent::KeyPress)
                MouseState |= msPressed;
            else
                MouseState &= ~msPressed;
        }
        break;
    default:
        break;
    }
}

} // namespace

// ---- TSkinButton

void TSkinButton::InitSkin(TVeneerForm* AForm, TSkinData* Data, bool AOwnColor, QWidget* AControl) {
    TSkinControl::InitSkin(AForm, Data, AOwnColor, AControl);
    if (!AControl) return;
    ParentBack = TagOf(AControl) == TagParentBack || HasOption(xoParentBackGround);
}

bool TSkinButton::CanPaint() const {
    return Skin && Skin->Buttons && !Skin->Buttons->Map.Empty();
}

bool TSkinButton::HasAfter(QObject* Target, QEvent::Type Type) const {
    return IsMouseOrKey(Type) || TSkinControl::HasAfter(Target, Type);
}

bool TSkinButton::BeforeProc(QObject* Target, QEvent* Event) {
    if (Event->type() == QEvent::Paint && Target == Control() && CanPaint()) {
        PaintClient(Control());
        return false;
    }
    return TSkinControl::BeforeProc(Target, Event);
}

void TSkinButton::AfterProc(QObject* Target, QEvent* Event) {
    if (IsMouseOrKey(Event->type())) {
        const int before = MouseState;
        TrackMouse(MouseState, Control()->isEnabled(), Event);
        if (before != MouseState) Repaint();
        return;
    }
    TSkinControl::AfterProc(Target, Event);
}

int TSkinButton::CurrentFrame() const {
    QWidget* w = Control();
    auto* button = AsButton(w);
    auto* push = qobject_cast<QPushButton*>(w);
    const bool pressed = button ? button->isDown() || (button->isCheckable() && button->isChecked())
                                : (MouseState & msPressed) != 0;
    const bool hover = (MouseState & msHover) != 0 || w->underMouse();
    return ButtonFrame(w->hasFocus(), push && push->isDefault(), pressed, hover, w->isEnabled());
}

QColor TSkinButton::TextColour(int Frame) const {
    const TDataSkinButton& b = *Skin->Buttons;
    TColor c = Skin->ButtonText;
    if (Frame == 1 && b.HasNormal2) c = b.NormalColour2;
    if (Frame == 4 && b.HasOver2) c = b.MouseOverColour2;
    if (Frame == 2 && b.HasPressed2) c = b.PressedColour2;
    if (Frame == 3) c = Skin->ButtonShadow;
    return SkinColor(c);
}

void TSkinButton::Paint(QPainter& Painter, const QRect& R) {
    QWidget* w = Control();
    Enabled = w->isEnabled();
    Focused = w->hasFocus();
    const QVariant multi = w->property("MultiLine");
    MultiLine = multi.isValid() && multi.toBool();
    const int frame = CurrentFrame();
    Painter.drawImage(R.topLeft(), FaceImage(Skin->Buttons.get(), frame, R.size(),
                                             Painter.device()->devicePixelRatioF(), !ParentBack));
    PaintContents(Painter, R, frame);
}

void TSkinButton::PaintContents(QPainter& Painter, const QRect& R, int Frame) {
    auto* button = AsButton(Control());
    const WideString caption =
        ButtonCaptionText(button ? button->text().toStdU16String() : WideString());
    QString text = QString::fromStdU16String(caption);
    text.remove(QLatin1Char('&'));
    Painter.setFont(Control()->font());
    Painter.setPen(TextColour(Frame));
    const QRect area = R.adjusted(2, 2, -2, -2);
    const int flags = Qt::AlignCenter | Qt::TextWordWrap | Qt::TextExpandTabs;
    QRect measured = Painter.boundingRect(area, flags, text);
    measured.translate(0, -1); // a touch above the middle, as buttons always drew it
    Painter.drawText(measured, flags, text);
    if (Focused && !HasOption(xoNoFocusRect) && !text.isEmpty())
        DrawFocus(Painter, measured.adjusted(-2, -2, 2, 2));
}

// ---- TSkinBitButton

void TSkinBitButton::PaintContents(QPainter& Painter, const QRect& R, int Frame) {
    auto* button = AsButton(Control());
    if (!button || button->icon().isNull()) {
        TSkinButton::PaintContents(Painter, R, Frame);
        return;
    }
    const QSize size = button->iconSize();
    const QPixmap glyph =
        button->icon().pixmap(size, Painter.device()->devicePixelRatioF(),
                              button->isEnabled() ? QIcon::Normal : QIcon::Disabled);
    QString text = button->text();
    text.remove(QLatin1Char('&'));
    auto* tool = qobject_cast<QToolButton*>(button);
    const bool glyphOnly =
        text.isEmpty() || (tool && tool->toolButtonStyle() == Qt::ToolButtonIconOnly);
    const bool glyphTop = tool && tool->toolButtonStyle() == Qt::ToolButtonTextUnderIcon;
    Painter.setFont(button->font());
    Painter.setPen(TextColour(Frame));
    const QFontMetrics fm(button->font());
    const int spacing = 4;
    if (glyphOnly) {
        Painter.drawPixmap(R.center().x() - size.width() / 2 + 1,
                           R.center().y() - size.height() / 2 + 1, glyph);
    } else if (glyphTop) {
        const int h = size.height() + spacing + fm.height();
        const int top = R.top() + (R.height() - h) / 2;
        Painter.drawPixmap(R.center().x() - size.width() / 2 + 1, top, glyph);
        Painter.drawText(QRect(R.left(), top + size.height() + spacing, R.width(), fm.height()),
                         Qt::AlignCenter, text);
    } else {
        // Glyph left of the caption, the two centred as one.
        const int tw = fm.horizontalAdvance(text);
        const int w = size.width() + spacing + tw;
        const int left = R.left() + (R.width() - w) / 2;
        Painter.drawPixmap(left, R.center().y() - size.height() / 2 + 1, glyph);
        const QRect textRect(left + size.width() + spacing, R.top(), tw + 1, R.height());
        Painter.drawText(textRect, Qt::AlignVCenter | Qt::AlignLeft, text);
        if (Focused && !HasOption(xoNoFocusRect))
            DrawFocus(Painter, QRect(textRect.left() - 2, R.center().y() - fm.height() / 2 - 2,
                                     tw + 4, fm.height() + 4));
    }
}

// ---- TSkinMenuButton

void TSkinMenuButton::PaintContents(QPainter& Painter, const QRect& R, int Frame) {
    TSkinBitButton::PaintContents(Painter, R.adjusted(0, 0, -12, 0), Frame);
    // The drop-down arrow.
    const int x = R.right() - 10, y = R.center().y() - 1;
    Painter.save();
    Painter.setPen(Qt::NoPen);
    Painter.setBrush(TextColour(Frame));
    const QPoint arrow[] = {{x, y}, {x + 7, y}, {x + 3, y + 4}};
    Painter.drawPolygon(arrow, 3);
    Painter.restore();
}

// ---- TSkinCheckBox, TSkinRadioButton

void TSkinCheckBox::InitSkin(TVeneerForm* AForm, TSkinData* Data, bool AOwnColor,
                             QWidget* AControl) {
    TSkinControl::InitSkin(AForm, Data, AOwnColor, AControl);
    if (!AControl) return;
    Checked = 0;
    PaintText = CanPaint();
    ParentBack = TagOf(AControl) == TagParentBack || HasOption(xoParentBackGround);
}

bool TSkinCheckBox::CanPaint() const {
    if (!Skin || !Skin->Buttons) return false;
    const TDataSkinButton& b = *Skin->Buttons;
    return !(Radio() ? b.RadioMap : b.CheckMap).Empty();
}

bool TSkinCheckBox::HasAfter(QObject* Target, QEvent::Type Type) const {
    return IsMouseOrKey(Type) || TSkinControl::HasAfter(Target, Type);
}

bool TSkinCheckBox::BeforeProc(QObject* Target, QEvent* Event) {
    if (Event->type() == QEvent::Paint && Target == Control() && PaintText) {
        PaintClient(Control());
        return false;
    }
    return TSkinControl::BeforeProc(Target, Event);
}

void TSkinCheckBox::AfterProc(QObject* Target, QEvent* Event) {
    if (IsMouseOrKey(Event->type())) {
        TrackMouse(MouseState, Control()->isEnabled(), Event);
        Repaint();
        return;
    }
    TSkinControl::AfterProc(Target, Event);
}

void TSkinCheckBox::Paint(QPainter& Painter, const QRect& R) {
    auto* button = AsButton(Control());
    if (!button) return;
    const TDataSkinButton& b = *Skin->Buttons;
    const TMemoryBitmap& map = Radio() ? b.RadioMap : b.CheckMap;
    const int cells = std::max(Radio() ? b.RadioButtonFrame : b.CheckButtonFrame, 1);
    int state = button->isChecked() ? cbsChecked : cbsUnchecked;
    if (auto* check = qobject_cast<QCheckBox*>(button);
        check && check->checkState() == Qt::PartiallyChecked)
        state = cbsGrayed;
    Checked = state;
    Enabled = button->isEnabled();
    Focused = button->hasFocus();
    const int cell = CheckCell(cells, state, !Enabled, button->isDown());

    if (!ParentBack) Painter.fillRect(R, Face());
    const int cw = map.Width() / cells, ch = map.Height();
    const bool rightBox = button->layoutDirection() == Qt::RightToLeft;
    const int top = R.top() + (R.height() - ch) / 2;
    const QRect box(rightBox ? R.right() - cw + 1 : R.left(), top, cw, ch);
    DrawCell(Painter, box, map, cell, cells);

    QString text = button->text();
    text.remove(QLatin1Char('&'));
    if (text.isEmpty()) return;
    Painter.setFont(button->font());
    // The text in the control's own colour, which the window palette sets.
    Painter.setPen(button->palette().color(Enabled ? QPalette::Active : QPalette::Disabled,
                                           QPalette::WindowText));
    QRect area = rightBox ? QRect(R.left(), R.top(), R.width() - cw - 2, R.height())
                          : QRect(R.left() + cw + 2, R.top(), R.width() - cw - 2, R.height());
    const int flags = Qt::AlignVCenter | (rightBox ? Qt::AlignRight : Qt::AlignLeft) |
                      Qt::TextWordWrap | Qt::TextExpandTabs;
    Painter.save();
    Painter.setClipRect(area);
    const QRect used = Painter.boundingRect(area, flags, text);
    Painter.drawText(area, flags, text);
    Painter.restore();
    if (Focused && !HasOption(xoNoFocusRect))
        DrawFocus(Painter, used.adjusted(-1, 0, 1, 0).intersected(R));
}
