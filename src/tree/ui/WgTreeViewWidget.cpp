// The rows widget of TWgTree: paints through the view, passes input on.

#include "base/ui/Colors.h"
#include "base/ui/Keys.h"
#include "base/ui/QtCanvas.h"
#include "tree/ui/WgTree.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QWheelEvent>

namespace {

unsigned ShiftOf(Qt::KeyboardModifiers Modifiers) {
    unsigned shift = 0;
    if (Modifiers & Qt::ShiftModifier) shift |= ssShift;
    if (Modifiers & Qt::AltModifier) shift |= ssAlt;
    if (Modifiers & Qt::ControlModifier) shift |= ssCtrl;
    return shift;
}

// The virtual key of a Qt key for the view, 0 for keys it has no use for:
// those go on to Qt (Tab moves the focus, Enter and Esc reach the form).
int ViewKeyOf(const QKeyEvent& Event) {
    const int vk = VirtualKeyOf(Event.key(), Event.modifiers() & Qt::KeypadModifier);
    switch (vk) {
    case VK_TAB:
    case VK_RETURN:
    case VK_SHIFT:
    case VK_CONTROL:
    case VK_MENU:
    case VK_ESCAPE:
    case VK_INSERT:
    case VK_DELETE:
        return 0;
    default:
        return vk >= VK_F1 && vk < VK_F1 + 24 ? 0 : vk;
    }
}

// The canvas of the rows. They are painted straight into the widget's
// surface: Qt paints every widget into its backing store first, so the
// tree's own off-screen copy would only fill and blend the whole area once
// more with each frame. And a row's text is measured just before it is
// drawn: when it fits its cell there is nothing to shorten with an ellipsis,
// and the measuring that the shortening starts with is left out. (The width
// measured is rounded, so only a text a whole pixel narrower than the cell
// counts as fitting.)
class TRowsCanvas : public TQtCanvas {
public:
    using TQtCanvas::TQtCanvas;
    void BeginBuffer(const TRect&) override {}
    void EndBuffer() override {}

    TSize TextExtent(WideView Text) override {
        const TSize size = TQtCanvas::TextExtent(Text);
        FMeasured.assign(Text);
        FMeasuredWidth = size.cx;
        return size;
    }
    int DrawText(WideView Text, TRect& R, unsigned Flags) override {
        constexpr unsigned plainLine = DT_SINGLELINE | DT_NOPREFIX;
        if ((Flags & DT_END_ELLIPSIS) && (Flags & plainLine) == plainLine &&
            !(Flags & DT_CALCRECT) && FMeasuredWidth >= 0 && FMeasuredWidth < R.Width() &&
            Text == FMeasured)
            Flags &= ~unsigned(DT_END_ELLIPSIS);
        return TQtCanvas::DrawText(Text, R, Flags);
    }

protected:
    void FontChanged() override {
        TQtCanvas::FontChanged();
        FMeasuredWidth = -1;
    }

private:
    WideString FMeasured;
    int FMeasuredWidth = -1; // -1: nothing measured with the current font
};

} // namespace

TWgTreeViewWidget::TWgTreeViewWidget(TWgTree& Owner, QWidget* Parent)
    : QWidget(Parent), FOwner(Owner) {
    setObjectName(QStringLiteral("TWgTreeView"));
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_KeyCompression, false);
    setAttribute(Qt::WA_InputMethodEnabled, true);
    for (std::size_t i = 0; i < FTimers.size(); ++i) {
        QTimer* timer = new QTimer(this);
        timer->setSingleShot(true);
        const auto which = TWgViewTimer(i);
        connect(timer, &QTimer::timeout, this, [this, which] { FOwner.View().TimerFired(which); });
        FTimers[i] = timer;
    }
    FOwner.View().SetHost(this);
}

TWgTreeViewWidget::~TWgTreeViewWidget() {
    FOwner.View().SetMeasureCanvas(nullptr);
    if (FOwner.View().Host() == this) FOwner.View().SetHost(nullptr);
}

void TWgTreeViewWidget::SetMeasure() {
    FMeasureImage = std::make_unique<QImage>(1, 1, QImage::Format_RGB32);
    FMeasurePainter = std::make_unique<QPainter>(FMeasureImage.get());
    FMeasureCanvas = std::make_unique<TQtCanvas>(*FMeasurePainter, &palette());
    FOwner.View().SetMeasureCanvas(FMeasureCanvas.get());
}

// ---- host

void TWgTreeViewWidget::InvalidateRect(const TRect& R) {
    update(QRect(R.Left, R.Top, R.Width(), R.Height()));
}

void TWgTreeViewWidget::UpdateNow() {
    repaint();
}

void TWgTreeViewWidget::StartTimer(TWgViewTimer Timer, int Interval) {
    FTimers[Timer]->start(std::max(Interval, 0));
}

void TWgTreeViewWidget::StopTimer(TWgViewTimer Timer) {
    FTimers[Timer]->stop();
}

bool TWgTreeViewWidget::TimerActive(TWgViewTimer Timer) const {
    return FTimers[Timer]->isActive();
}

void TWgTreeViewWidget::SetCapture(bool Captured) {
    if (Captured && QWidget::mouseGrabber() != this)
        grabMouse();
    else if (!Captured && QWidget::mouseGrabber() == this)
        releaseMouse();
}

void TWgTreeViewWidget::DrawFocusFrame(const TRect& R) {
    // Inverted drawing: the same frame a second time takes it away.
    if (FFocusFrame && *FFocusFrame == R)
        FFocusFrame.reset();
    else
        FFocusFrame = R;
    update();
}

void TWgTreeViewWidget::ScrollBarsChanged() {
    FOwner.SyncScrollBars();
}

void TWgTreeViewWidget::ShowLineHint(const TRect& R, const WideString& Text) {
    if (!FHint) {
        FHint = new QLabel(this, Qt::ToolTip | Qt::FramelessWindowHint);
        FHint->setObjectName(QStringLiteral("LineHint"));
        FHint->setAutoFillBackground(true);
        QPalette pal = FHint->palette();
        pal.setColor(QPalette::Window, ToQColor(clInfoBk));
        pal.setColor(QPalette::WindowText, ToQColor(clInfoText));
        FHint->setPalette(pal);
        FHint->setFrameShape(QFrame::Box);
        FHint->setMargin(1);
    }
    FHint->setFont(ToQFont(FOwner.View().TreeFont()));
    FHint->setText(QString::fromStdU16String(Text));
    FHint->adjustSize();
    const QPoint at = mapToGlobal(QPoint(R.Left, R.Top));
    FHint->move(at);
    FHint->resize(std::max(FHint->width(), R.Width()), std::max(FHint->height(), R.Height()));
    FHint->show();
}

void TWgTreeViewWidget::HideLineHint() {
    if (FHint) FHint->hide();
}

QWidget* TWgTreeViewWidget::HintWindow() const {
    return FHint;
}

// ---- painting

void TWgTreeViewWidget::paintEvent(QPaintEvent* Event) {
    QPainter p(this);
    TRowsCanvas canvas(p, &palette());
    const QRect u = Event->rect();
    FOwner.View().Paint(canvas, TRect{u.left(), u.top(), u.right() + 1, u.bottom() + 1});
    p.setCompositionMode(QPainter::RasterOp_NotDestination);
    if (FFocusFrame) {
        const TRect& r = *FFocusFrame;
        p.setPen(QPen(Qt::black, 1, Qt::DotLine));
        p.setBrush(Qt::NoBrush);
        p.drawRect(QRect(r.Left, r.Top, r.Width() - 1, r.Height() - 1));
    }
    // The header's resize line runs on across the rows.
    if (auto x = FOwner.Header()->ResizeLineX(); x && FOwner.Tree().ShowColumns())
        p.fillRect(QRect(*x, 0, 1, height()), Qt::black);
}

void TWgTreeViewWidget::resizeEvent(QResizeEvent*) {
    FOwner.View().Resize(width(), height());
    FOwner.SyncScrollBars();
}

// ---- input

void TWgTreeViewWidget::mousePressEvent(QMouseEvent* Event) {
    if (Event->button() != Qt::LeftButton && Event->button() != Qt::RightButton) return;
    if (!hasFocus()) setFocus(Qt::MouseFocusReason);
    FPressSeen = true;
    const QPoint pos = Event->position().toPoint();
    FOwner.View().MouseDown(Event->button() == Qt::RightButton, ShiftOf(Event->modifiers()),
                            pos.x(), pos.y());
}

void TWgTreeViewWidget::mouseDoubleClickEvent(QMouseEvent* Event) {
    if (Event->button() != Qt::LeftButton) return;
    // The double click event stands for the second press: the view gets it
    // as a press marked double (a button there does not toggle again).
    if (!FPressSeen) {
        FPressSeen = true;
        const QPoint pos = Event->position().toPoint();
        FOwner.View().MouseDown(false, ShiftOf(Event->modifiers()) | ssDouble, pos.x(), pos.y());
    }
    // The view hears of the double click after the release that ends it:
    // a release stops the edit timer, and would stop the edit a double
    // click asks for.
    FDoubleClickPending = true;
}

void TWgTreeViewWidget::mouseMoveEvent(QMouseEvent* Event) {
    const QPoint pos = Event->position().toPoint();
    FOwner.View().MouseMove(ShiftOf(Event->modifiers()), pos.x(), pos.y(),
                            Event->buttons() & (Qt::LeftButton | Qt::RightButton));
}

void TWgTreeViewWidget::mouseReleaseEvent(QMouseEvent* Event) {
    if (Event->button() != Qt::LeftButton && Event->button() != Qt::RightButton) return;
    FPressSeen = false;
    const QPoint pos = Event->position().toPoint();
    const unsigned shift = ShiftOf(Event->modifiers());
    FOwner.View().MouseUp(Event->button() == Qt::RightButton, shift, pos.x(), pos.y());
    if (FDoubleClickPending && Event->button() == Qt::LeftButton) {
        FDoubleClickPending = false;
        FOwner.View().DblClick(shift, pos.x(), pos.y());
    }
}

void TWgTreeViewWidget::wheelEvent(QWheelEvent* Event) {
    // Three rows a notch, as the system's default wheel setting.
    const int notches = Event->angleDelta().y() / 120;
    if (notches == 0) return;
    FOwner.CancelEditForLayout();
    FOwner.View().MouseWheel(-notches * 3);
    Event->accept();
}

void TWgTreeViewWidget::keyPressEvent(QKeyEvent* Event) {
    // A character typed while a click's edit waits for its delay is the
    // start of the new value: open the editor now and hand it the key.
    const bool typed = !Event->text().isEmpty() && Event->text()[0].unicode() >= 32 &&
                       !(Event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    if (typed && FOwner.View().DelayedEditItem() && FOwner.View().StartDelayedEdit()) {
        TWgTreeInplaceEditor* editor = FOwner.InplaceEditor();
        if (QWidget* control = editor ? editor->Control() : nullptr) {
            QWidget* target = QApplication::focusWidget();
            if (!target || (target != control && !control->isAncestorOf(target)))
                target = control->focusProxy() ? control->focusProxy() : control;
            QKeyEvent copy(Event->type(), Event->key(), Event->modifiers(), Event->text(),
                           Event->isAutoRepeat(), ushort(Event->count()));
            QCoreApplication::sendEvent(target, &copy);
            return;
        }
    }
    const int vk = ViewKeyOf(*Event);
    if (vk) FOwner.View().KeyDown(vk, ShiftOf(Event->modifiers()));
    const QString text = Event->text();
    // Typed characters feed the incremental search, Space too (it also
    // works as a key above); control characters are keys only.
    if (!text.isEmpty() && !(Event->modifiers() & Qt::ControlModifier))
        for (QChar ch : text)
            FOwner.View().KeyPress(ch.unicode());
    if (!vk && text.isEmpty()) QWidget::keyPressEvent(Event);
}

void TWgTreeViewWidget::inputMethodEvent(QInputMethodEvent* Event) {
    // Composed text joins the incremental search as typed characters do.
    for (QChar ch : Event->commitString())
        FOwner.View().KeyPress(ch.unicode());
    Event->accept();
}

QVariant TWgTreeViewWidget::inputMethodQuery(Qt::InputMethodQuery Query) const {
    switch (Query) {
    case Qt::ImEnabled:
        return FOwner.Tree().IncrementalSearch;
    case Qt::ImCursorRectangle:
        return QRect(0, 0, 1, FOwner.Tree().LineHeight());
    default:
        return QWidget::inputMethodQuery(Query);
    }
}

void TWgTreeViewWidget::focusInEvent(QFocusEvent*) {
    FOwner.View().SetHasFocus(true);
}

void TWgTreeViewWidget::focusOutEvent(QFocusEvent* Event) {
    // Focus that goes to the tree's own editor keeps the rows painted as focused.
    QWidget* to = QApplication::focusWidget();
    TWgTreeInplaceEditor* editor = FOwner.InplaceEditor();
    const bool toEditor = editor && to && editor->Control() &&
                          (to == editor->Control() || editor->Control()->isAncestorOf(to));
    if (!toEditor) FOwner.View().SetHasFocus(false);
    if (Event->reason() == Qt::ActiveWindowFocusReason) FOwner.View().CancelMode();
}

void TWgTreeViewWidget::leaveEvent(QEvent*) {
    // Hot tracking and hints end where the mouse leaves the rows.
    if (QApplication::mouseButtons() == Qt::NoButton) FOwner.View().MouseMove(0, -1, -1, false);
    HideLineHint();
}

bool TWgTreeViewWidget::event(QEvent* Event) {
    if (Event->type() == QEvent::UngrabMouse) FOwner.View().CancelMode();
    // Tab and Backtab stay with the dialog; the arrows are ours.
    return QWidget::event(Event);
}
