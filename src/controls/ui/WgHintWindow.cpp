#include "controls/ui/WgHintWindow.h"

#include "base/ui/QtCanvas.h"
#include "controls/WgHint.h"

#include <QApplication>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

#include <algorithm>

namespace {

// The window showing a control's hint now; there is one at a time, as
// there is one pointer.
QPointer<TWgHintWindow> GControlHint;

template <typename F> auto WithCanvas(const QWidget* Widget, F&& Work) {
    QImage scratch(1, 1, QImage::Format_RGB32);
    QPainter painter(&scratch);
    TQtCanvas canvas(painter, &Widget->palette());
    return Work(canvas);
}

QRect ScreenAreaAt(QPoint Pos) {
    const QScreen* screen = QGuiApplication::screenAt(Pos);
    if (!screen) screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect(0, 0, 1024, 768);
}

} // namespace

TWgHintWindow::TWgHintWindow(QWidget* Parent)
    : QWidget(Parent, Qt::ToolTip | Qt::FramelessWindowHint) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    FFont.Name = u"Tahoma";
    FFont.Height = -11;
    FHideTimer.setSingleShot(true);
    connect(&FHideTimer, &QTimer::timeout, this, &TWgHintWindow::HideHint);
}

void TWgHintWindow::SetFont(const TFont& Value) {
    FFont = Value;
    if (isVisible()) ActivateHint(pos(), FText);
}

void TWgHintWindow::ActivateHint(QPoint Pos, const WideString& Text) {
    FText = Text;
    if (Text.empty()) {
        HideHint();
        return;
    }
    const QRect area = ScreenAreaAt(Pos);
    FRoom = FMaxWidth > 0 ? FMaxWidth : area.width();
    FSize =
        WithCanvas(this, [&](TCanvas& Canvas) { return CalcHintSize(Canvas, Text, FFont, FRoom); });
    Pos.setX(std::max(area.left(), std::min(Pos.x(), area.right() + 1 - FSize.cx)));
    // Below the pointer where there is room, else above it.
    if (Pos.y() + FSize.cy > area.bottom() + 1) Pos.ry() -= FSize.cy + CursorMargin;
    setGeometry(QRect(Pos, QSize(FSize.cx, FSize.cy)));
    show();
    raise();
    update();
}

void TWgHintWindow::HideHint() {
    FHideTimer.stop();
    if (FFiltering) qApp->removeEventFilter(this);
    FFiltering = false;
    FControl = nullptr;
    hide();
}

bool TWgHintWindow::ShowControlHint(QWidget* Control, QPoint GlobalPos, const WideString& Hint) {
    const WideString text = GetShortHint(Hint);
    if (!Control || text.empty()) {
        HideControlHint();
        return false;
    }
    QWidget* form = Control->window();
    if (!GControlHint) {
        GControlHint = new TWgHintWindow(form);
    } else if (GControlHint->parentWidget() != form) {
        GControlHint->HideHint();
        GControlHint->setParent(form, Qt::ToolTip | Qt::FramelessWindowHint);
    }
    TWgHintWindow* hint = GControlHint;
    if (!hint->FFiltering) qApp->installEventFilter(hint);
    hint->FFiltering = true;
    hint->FControl = Control;
    hint->ActivateHint(GlobalPos + QPoint(0, CursorMargin), text);
    hint->FHideTimer.start(HidePause);
    return true;
}

TWgHintWindow* TWgHintWindow::ShownFor(const QWidget* Control) {
    return GControlHint && GControlHint->isVisible() && GControlHint->FControl == Control
               ? GControlHint.data()
               : nullptr;
}

void TWgHintWindow::HideControlHint() {
    if (GControlHint) GControlHint->HideHint();
}

bool TWgHintWindow::eventFilter(QObject* Watched, QEvent* Event) {
    switch (Event->type()) {
    case QEvent::Leave:
    case QEvent::Hide:
        // The control lost the pointer or went away; leaving another
        // widget means nothing here.
        if (Watched == FControl) HideHint();
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::Wheel:
    case QEvent::WindowDeactivate:
        HideHint();
        break;
    default:
        break;
    }
    // The control was destroyed.
    if (FFiltering && !FControl) HideHint();
    return false;
}

void TWgHintWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    TQtCanvas canvas(painter, &palette());
    PaintHint(canvas, FSize, FText, FFont, FRoom);
}
