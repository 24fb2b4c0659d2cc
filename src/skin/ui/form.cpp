#include "skin/ui/form.h"

#include "base/ui/Colors.h"
#include "base/ui/Messages.h"
#include "base/ui/QtCanvas.h"
#include "skin/ui/control.h"
#include "skin/ui/data.h"
#include "skin/ui/manager.h"
#include "skin/ui/menu.h"

#include "base/ui/Tag.h"

#include <QAction>
#include <QApplication>
#include <QCursor>
#include <QDateTime>
#include <QEvent>
#include <QLayout>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleHints>
#include <QWindow>

// Multiple-document windows, the operating system's own caption and system
// menu, and windows with no widget behind them have no counterpart here; the
// frame is always drawn by the skin alone.

namespace {

QRegion ToQRegion(const TRegion& Region) {
    QRegion result;
    const std::vector<TRect> rects = Region.Rects();
    std::vector<QRect> qrects;
    qrects.reserve(rects.size());
    for (const TRect& r : rects)
        qrects.emplace_back(r.Left, r.Top, r.Width(), r.Height());
    result.setRects(qrects.data(), int(qrects.size()));
    return result;
}

Qt::Edges EdgesOf(TFrameZone Zone) {
    switch (Zone) {
    case fzLeft:
        return Qt::LeftEdge;
    case fzRight:
        return Qt::RightEdge;
    case fzTop:
        return Qt::TopEdge;
    case fzBottom:
        return Qt::BottomEdge;
    case fzTopLeft:
        return Qt::TopEdge | Qt::LeftEdge;
    case fzTopRight:
        return Qt::TopEdge | Qt::RightEdge;
    case fzBottomLeft:
        return Qt::BottomEdge | Qt::LeftEdge;
    case fzBottomRight:
        return Qt::BottomEdge | Qt::RightEdge;
    default:
        return {};
    }
}

Qt::CursorShape CursorOf(TFrameZone Zone) {
    switch (Zone) {
    case fzLeft:
    case fzRight:
        return Qt::SizeHorCursor;
    case fzTop:
    case fzBottom:
        return Qt::SizeVerCursor;
    case fzTopLeft:
    case fzBottomRight:
        return Qt::SizeFDiagCursor;
    case fzTopRight:
    case fzBottomLeft:
        return Qt::SizeBDiagCursor;
    default:
        return Qt::ArrowCursor;
    }
}

std::uint8_t WindowStateOf(const QWidget* Form) {
    if (Form->isMinimized()) return wsMinimized;
    if (Form->isMaximized() || Form->isFullScreen()) return wsMaximized;
    return wsNormal;
}

bool Resizable(const QWidget* Form) {
    if (Form->windowFlags().testFlag(Qt::MSWindowsFixedSizeDialogHint)) return false;
    return Form->minimumSize() != Form->maximumSize();
}

QSize Grow(QSize Size, int W, int H) {
    return QSize(Size.width() >= QWIDGETSIZE_MAX ? QWIDGETSIZE_MAX
                                                 : std::min(Size.width() + W, QWIDGETSIZE_MAX),
                 Size.height() >= QWIDGETSIZE_MAX ? QWIDGETSIZE_MAX
                                                  : std::min(Size.height() + H, QWIDGETSIZE_MAX));
}

} // namespace

// ---- the frame widget

TVeneerFrame::TVeneerFrame(TVeneerForm& Owner, QWidget* Form) : QWidget(Form), FOwner(Owner) {
    setObjectName("VeneerFrame");
    setMouseTracking(true);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
}

void TVeneerFrame::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    FOwner.PaintFrame(painter);
}

void TVeneerFrame::mousePressEvent(QMouseEvent* Event) {
    FOwner.FramePress(Event->position().toPoint(), Event->button());
}

void TVeneerFrame::mouseMoveEvent(QMouseEvent* Event) {
    FOwner.FrameMove(Event->position().toPoint(), Event->buttons());
}

void TVeneerFrame::mouseReleaseEvent(QMouseEvent* Event) {
    FOwner.FrameRelease(Event->position().toPoint(), Event->button());
}

void TVeneerFrame::mouseDoubleClickEvent(QMouseEvent* Event) {
    if (Event->button() == Qt::LeftButton) FOwner.FrameDoubleClick(Event->position().toPoint());
}

void TVeneerFrame::leaveEvent(QEvent*) {
    FOwner.FrameLeave();
}

// ---- the form skin

TVeneerForm::TVeneerForm(TSkinData& Data) : Frame(Data), FSkin(&Data) {
    FTimer.setInterval(250);
    connect(&FTimer, &QTimer::timeout, this, &TVeneerForm::HoverTimer);
    Frame.OnInvalidate = [this](const TRect& R) {
        if (FFrame) FFrame->update(R.Left, R.Top, R.Width(), R.Height());
    };
    Frame.AskVisible = [this](int Visibility, int Action) -> int {
        if (!FForm) return 0;
        // A form that accepts the question shows the button.
        TPrivateMessage ask(13589, Visibility, Action);
        ask.setAccepted(false);
        QCoreApplication::sendEvent(FForm, &ask);
        return ask.isAccepted() ? 1 : 0;
    };
}

TVeneerForm::~TVeneerForm() {
    // A live window is detached; a dead one is never touched.
    if (!Dead() && FSetupDone) Detach();
    delete FFrame.data();
}

std::uint32_t TVeneerForm::StyleOf(const QWidget* Form) {
    const Qt::WindowFlags flags = Form->windowFlags();
    std::uint32_t style = 0;
    const bool dialog = Form->windowType() == Qt::Dialog;
    if (dialog) style |= WS_POPUP;
    if (flags.testFlag(Qt::FramelessWindowHint) && !TSkinManage::IsSkinned(Form)) return style;
    if (!flags.testFlag(Qt::CustomizeWindowHint) &&
        !(flags & (Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint |
                   Qt::WindowCloseButtonHint))) {
        // No hints at all: the window system's defaults for the type.
        style |= WS_CAPTION | WS_SYSMENU;
        if (!dialog) style |= WS_MINIMIZEBOX | WS_MAXIMIZEBOX;
    } else {
        if (flags.testFlag(Qt::WindowTitleHint)) style |= WS_CAPTION;
        if (flags.testFlag(Qt::WindowSystemMenuHint) || flags.testFlag(Qt::WindowCloseButtonHint))
            style |= WS_SYSMENU;
        if (flags.testFlag(Qt::WindowMinimizeButtonHint)) style |= WS_MINIMIZEBOX;
        if (flags.testFlag(Qt::WindowMaximizeButtonHint)) style |= WS_MAXIMIZEBOX;
    }
    if (Resizable(Form))
        style |= WS_THICKFRAME;
    else if (dialog && !Form->property("SingleBorder").toBool())
        style |= DS_MODALFRAME;
    return style;
}

AnsiString TVeneerForm::ClassNameOf(const QWidget* Form) {
    if (qobject_cast<const QMessageBox*>(Form)) return "TMessageForm";
    return Form->metaObject()->className();
}

void TVeneerForm::SetupWithForm(QWidget* Form) {
    if (FSetupDone || !Form) return;
    FSetupDone = true;
    FForm = Form;
    TSkinManage::Instance().State = 1;
    connect(Form, &QObject::destroyed, this, [this] { SkinState = ssDead; });

    FormSkin = HasBit(FSkin->SkinControls, xcMainMenu);
    const std::uint32_t style = StyleOf(Form);
    Frame.Setup(style, 0, ClassNameOf(Form), (style & WS_SYSMENU) != 0);
    Frame.WindowState = WindowStateOf(Form);
    Frame.CaptionFont = FSkin->CaptionFont;
    Frame.Text = Form->windowTitle().toStdU16String();

    // The form takes the skin's face colour while skinned.
    FSavedPaletteSet = Form->testAttribute(Qt::WA_SetPalette);
    FSavedPalette = Form->palette();
    FSavedAutoFill = Form->autoFillBackground();
    TakeFaceColour();

    Form->setProperty("SkinnedForm", true);
    Form->installEventFilter(this);

    if (!FormSkin) {
        SkinState = ssRunning;
        return;
    }
    FSavedMargins = Form->contentsMargins();
    FSavedMask = Form->mask();
    FSavedMinimum = Form->minimumSize();
    FSavedMaximum = Form->maximumSize();
    if (QWindow* window = Form->windowHandle()) {
        FSavedFlags = window->flags();
        window->setFlags(FSavedFlags | Qt::FramelessWindowHint);
    } else {
        FSavedFlags = Form->windowFlags();
        Form->setWindowFlag(Qt::FramelessWindowHint, true);
    }
    AttachMenuStrip();
    RebuildButtons();
    FFrame = new TVeneerFrame(*this, Form);
    SkinState = ssResizing;
    ResizeToFrame();
    SkinState = ssAttached;
    UpdateFrameWidget();
    FFrame->show();
    FFrame->raise();
}

void TVeneerForm::Begin() {
    if (Dead()) return;
    AttachControls();
    if (SkinState != ssAttached) return;
    RebuildButtons();
    // The control skins hang on here; the window's own frame is done.
    SetRegion();
    SendPrivateMessage(FForm, 48206, 0, 16802);
    SkinState = ssRunning;
    FTimer.start();
    if (FFrame) FFrame->update();
}

void TVeneerForm::RebuildButtons() {
    if (Dead() || FSkin->Empty) return;
    Frame.RebuildButtons(SmallIconBitmap(FForm->windowIcon()), FSkin->AppIcon);
    Frame.Hot = -1;
    if (FormSkin && FFrame) UpdateFrameWidget();
}

void TVeneerForm::TakeFaceColour() {
    QPalette palette = FForm->palette();
    palette.setColor(QPalette::Window, ToQColor(FSkin->ButtonFace));
    FForm->setPalette(palette);
}

void TVeneerForm::ResizeToFrame() {
    if (Dead() || !FormSkin) return;
    // The client is what the window holds inside the frame it has now; at
    // the attachment that is the whole window. A widget's client never
    // includes a frame drawn by the system, so the refresh measures the same.
    const QMargins now = FForm->contentsMargins();
    const QSize client =
        FForm->size() -
        QSize(now.left() + now.right() - FSavedMargins.left() - FSavedMargins.right(),
              now.top() + now.bottom() - FSavedMargins.top() - FSavedMargins.bottom());
    const QMargins m(Frame.FrameLeft, Frame.FrameTop + Frame.MenuHeight, Frame.FrameRight,
                     Frame.FrameBottom);
    // The limits move with the frame, so that a fixed dialog keeps its client.
    FForm->setMinimumSize(Grow(FSavedMinimum, m.left() + m.right(), m.top() + m.bottom()));
    FForm->setMaximumSize(Grow(FSavedMaximum, m.left() + m.right(), m.top() + m.bottom()));
    FForm->setContentsMargins(FSavedMargins + m);
    ShiftChildren(QPoint(m.left(), m.top()));
    if (Frame.WindowState == wsMaximized) return;
    int grow = 0;
    QImage scratch(1, 1, QImage::Format_RGB32);
    QPainter measure(&scratch);
    TQtCanvas canvas(measure);
    const TSize size = Frame.WindowSizeFor(client.width(), client.height(), &canvas, &grow);
    measure.end();
    // A dialog widened for its title keeps its controls in the middle.
    if (grow > 0) ShiftChildren(FChildOrigin + QPoint(grow / 2, 0));
    FForm->resize(size.cx, size.cy);
}

void TVeneerForm::ShiftChildren(QPoint Origin) {
    // A layout follows the contents margins by itself; children placed by
    // hand move with the client area's origin.
    if (FForm->layout() || Origin == FChildOrigin) return;
    const QPoint delta = Origin - FChildOrigin;
    FChildOrigin = Origin;
    for (QObject* child : FForm->children())
        if (auto* w = qobject_cast<QWidget*>(child); w && w != FFrame && !w->isWindow())
            w->move(w->pos() + delta);
}

void TVeneerForm::UpdateFrameWidget() {
    if (!FFrame || Dead()) return;
    Frame.Width = FForm->width();
    Frame.Height = FForm->height();
    FFrame->setGeometry(0, 0, Frame.Width, Frame.Height);
    const TRect client = Frame.ClientRect();
    QRegion ring(0, 0, Frame.Width, Frame.Height);
    ring -= QRegion(client.Left, client.Top, client.Width(), client.Height());
    FFrame->setMask(ring);
    FFrame->raise();
}

void TVeneerForm::SetRegion() {
    if (Dead() || !FormSkin || SkinState == ssDead) return;
    Frame.Width = FForm->width();
    Frame.Height = FForm->height();
    if (Frame.WindowState != wsNormal) {
        FForm->clearMask();
        return;
    }
    FForm->setMask(ToQRegion(Frame.Outline()));
}

void TVeneerForm::Refresh() {
    if (Dead()) return;
    TakeFaceColour();
    SkinState = ssRefreshing;
    if (FormSkin) {
        Frame.CaptionFont = FSkin->CaptionFont;
        ResizeToFrame();
        UpdateFrameWidget();
        SetRegion();
    }
    AttachControls(); // controls made since the last walk
    RefreshControls();
    SendPrivateMessage(FForm, 48206, 0, 16802);
    SkinState = ssRunning;
    if (FFrame) FFrame->update();
}

void TVeneerForm::Detach() {
    if (!FSetupDone || Dead()) return;
    QWidget* form = FForm;
    DetachControls();
    FTimer.stop();
    delete FSysMenuPopup.data();
    form->removeEventFilter(this);
    form->setProperty("SkinnedForm", QVariant());
    if (FSavedPaletteSet)
        form->setPalette(FSavedPalette);
    else
        form->setPalette(QPalette());
    form->setAttribute(Qt::WA_SetPalette, FSavedPaletteSet);
    form->setAutoFillBackground(FSavedAutoFill);
    if (FormSkin) {
        const QMargins now = form->contentsMargins();
        const int lessW = now.left() + now.right() - FSavedMargins.left() - FSavedMargins.right();
        const int lessH = now.top() + now.bottom() - FSavedMargins.top() - FSavedMargins.bottom();
        delete FFrame.data();
        DetachMenuStrip();
        form->setContentsMargins(FSavedMargins);
        ShiftChildren(QPoint(0, 0));
        form->setMinimumSize(FSavedMinimum);
        form->setMaximumSize(FSavedMaximum);
        if (QWindow* window = form->windowHandle())
            window->setFlags(FSavedFlags);
        else
            form->setWindowFlags(FSavedFlags);
        if (FSavedMask.isEmpty())
            form->clearMask();
        else
            form->setMask(FSavedMask);
        if (Frame.WindowState == wsNormal)
            form->resize(form->width() - lessW, form->height() - lessH + FMenuBarHeight);
        FMenuBarHeight = 0;
    }
    FSetupDone = false;
    SkinState = ssDead;
}

void TVeneerForm::SyncState() {
    if (Dead()) return;
    Frame.WindowState = WindowStateOf(FForm);
    Frame.Text = FForm->windowTitle().toStdU16String();
}

void TVeneerForm::PaintFrame(QPainter& Painter) {
    if (Dead() || (SkinState != ssRunning && SkinState != ssRefreshing)) return;
    SyncState();
    Frame.Width = FForm->width();
    Frame.Height = FForm->height();
    TQtCanvas canvas(Painter, &FForm->palette());
    Frame.PaintFrame(canvas);
}

bool TVeneerForm::eventFilter(QObject* Watched, QEvent* Event) {
    if (Watched != FForm) return false;
    switch (Event->type()) {
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
        Frame.Active = Event->type() == QEvent::WindowActivate;
        if (Frame.Active)
            FTimer.start();
        else {
            FTimer.stop();
            Frame.MouseLeave();
        }
        if (FFrame) FFrame->update();
        break;
    case QEvent::WindowTitleChange:
    case QEvent::WindowIconChange:
        if (Event->type() == QEvent::WindowIconChange) RebuildButtons();
        SyncState();
        if (FFrame) FFrame->update();
        break;
    case QEvent::WindowStateChange:
        SyncState();
        UpdateFrameWidget();
        SetRegion();
        if (FFrame) FFrame->update();
        break;
    case QEvent::Resize:
        if (FormSkin && SkinState != ssResizing) {
            const bool changed = Frame.Width != FForm->width() || Frame.Height != FForm->height();
            UpdateFrameWidget();
            // Cutting the outline is the dearest step of a resize: only when
            // the size changed.
            if (changed && SkinState != ssAttached) SetRegion();
        }
        break;
    case QEvent::ChildAdded:
        if (FFrame) QMetaObject::invokeMethod(FFrame, "raise", Qt::QueuedConnection);
        break;
    default:
        if (PrivateMessageNumber(Event) == 13571) {
            Begin();
            return true;
        }
        if (PrivateMessageNumber(Event) == 13603) {
            Event->setAccepted(true);
            return true;
        }
        break;
    }
    return false;
}

// ---- mouse on the frame

void TVeneerForm::FramePress(QPoint P, Qt::MouseButton Button) {
    if (Dead()) return;
    const TPoint p{P.x(), P.y()};
    const TFrameZone zone = Frame.ZoneAt(p, ResizeGrip);
    if (Button == Qt::RightButton) {
        if (zone == fzCaption) ShowSystemMenu(P);
        return;
    }
    if (Button != Qt::LeftButton) return;
    if (zone == fzMenu && FMenu) {
        FMenu->MousePress(P);
        return;
    }
    if (zone == fzButton) {
        if (!Frame.Active) FForm->activateWindow();
        Frame.MouseDown(Frame.ButtonAt(p));
        return;
    }
    QWindow* window = FForm->windowHandle();
    if (!window) return;
    if (Qt::Edges edges = EdgesOf(zone)) {
        window->startSystemResize(edges);
        return;
    }
    if (zone == fzCaption && Frame.WindowState != wsMaximized) {
        // Moving starts at the first move: starting it on the press itself
        // loses the release on some window systems.
        FPendingMove = true;
    }
}

void TVeneerForm::FrameMove(QPoint P, Qt::MouseButtons Buttons) {
    if (Dead()) return;
    const TPoint p{P.x(), P.y()};
    if (FPendingMove) {
        if (Buttons & Qt::LeftButton) {
            FPendingMove = false;
            if (QWindow* window = FForm->windowHandle()) window->startSystemMove();
        }
        return;
    }
    if (FFrame) FFrame->setCursor(CursorOf(Frame.ZoneAt(p, ResizeGrip)));
    if (FMenu) {
        if (Frame.ZoneAt(p, ResizeGrip) == fzMenu)
            FMenu->MouseMove(P);
        else
            FMenu->MouseLeave();
    }
    if (Buttons & Qt::LeftButton) return; // a pressed button keeps its state
    if (!Frame.Active) return;
    const int index = Frame.ButtonAt(p);
    if (index >= 0)
        Frame.MouseEnter(index);
    else
        Frame.MouseLeave();
}

void TVeneerForm::FrameRelease(QPoint P, Qt::MouseButton Button) {
    FPendingMove = false;
    if (Dead() || Button != Qt::LeftButton) return;
    const TPoint p{P.x(), P.y()};
    const int hot = Frame.Hot;
    if (hot < 0 || hot >= int(Frame.SysButtons.size())) return;
    const bool pressed = Frame.SysButtons[std::size_t(hot)].State == 2;
    if (!pressed) return;
    if (Frame.ButtonAt(p) != hot) {
        Frame.MouseLeave();
        return;
    }
    Frame.MouseUp(hot);
    Run(Frame.ButtonAction(p));
}

void TVeneerForm::FrameDoubleClick(QPoint P) {
    if (Dead()) return;
    FPendingMove = false;
    switch (Frame.DoubleClick({P.x(), P.y()})) {
    case fcClose:
        FForm->close();
        break;
    case fcMaximize:
        if (Frame.WindowState != wsNormal)
            FForm->showNormal();
        else
            FForm->showMaximized();
        break;
    default:
        break;
    }
}

void TVeneerForm::FrameLeave() {
    if (Dead()) return;
    Frame.MouseLeave();
    if (FMenu) FMenu->MouseLeave();
}

// ---- the menu strip

QMenuBar* TVeneerForm::PlatformMenuBar(const QWidget* Form) {
    if (const auto* main = qobject_cast<const QMainWindow*>(Form))
        if (auto* bar = qobject_cast<QMenuBar*>(main->menuWidget())) return bar;
    if (const QLayout* layout = Form->layout()) return qobject_cast<QMenuBar*>(layout->menuBar());
    return nullptr;
}

void TVeneerForm::AttachMenuStrip() {
    // Our own menu bar is a control of the form, not its menu: it stays.
    QMenuBar* bar = PlatformMenuBar(FForm);
    if (!bar || TagOf(bar) == FSkin->DisableTag || bar->isNativeMenuBar()) return;
    const bool shown = !bar->isHidden();
    FMenu = std::make_unique<TVeneerMenu>(*this, *bar);
    FMenu->Build();
    Frame.HasMenu = true;
    Frame.MenuHeight = FMenu->Height();
    Frame.OnPaintMenuStrip = [this](TCanvas& Canvas, const TRect& Strip) {
        if (FMenu) FMenu->Paint(Canvas, Strip, Frame.Active);
    };
    // The client gives up the bar's room; the strip in the frame takes it.
    FMenuBarHeight = shown ? bar->sizeHint().height() : 0;
    if (FMenuBarHeight > 0 && Frame.WindowState == wsNormal)
        FForm->resize(FForm->width(), std::max(1, FForm->height() - FMenuBarHeight));
}

void TVeneerForm::DetachMenuStrip() {
    FMenu.reset();
    Frame.HasMenu = false;
    Frame.MenuHeight = 0;
    Frame.OnPaintMenuStrip = nullptr;
}

void TVeneerForm::RepaintFrame() {
    if (FFrame) FFrame->update();
}

void TVeneerForm::HoverTimer() {
    if (Dead() || !FFrame || Frame.Hot < 0) return;
    if (TSkinManage::Instance().MenuTracking) return;
    const QPoint p = FFrame->mapFromGlobal(QCursor::pos());
    const TRect& r = Frame.SysButtons[std::size_t(Frame.Hot)].Rect;
    if (!r.Contains({p.x(), p.y()})) Frame.MouseLeave();
}

void TVeneerForm::Run(const TFrameAction& Action) {
    if (Dead()) return;
    switch (Action.Command) {
    case fcClose:
        FTimer.stop();
        // Through the form's own close path, so it can ask about unsaved work.
        QMetaObject::invokeMethod(FForm, "close", Qt::QueuedConnection);
        break;
    case fcMaximize:
        Frame.MouseLeave();
        if (Frame.WindowState == wsMaximized)
            FForm->showNormal();
        else
            FForm->showMaximized();
        break;
    case fcMinimize:
        if (Frame.WindowState == wsMinimized)
            FForm->showNormal();
        else
            FForm->showMinimized();
        break;
    case fcSystemMenu:
        ShowSystemMenu(QPoint(Action.MenuAt.X, Action.MenuAt.Y));
        break;
    case fcCustom:
        PostPrivateMessage(FForm, 13588, Action.Action);
        break;
    default:
        break;
    }
}

void TVeneerForm::ShowSystemMenu(QPoint WindowPoint) {
    if (Dead()) return;
    static qint64 lastPopupTick = 0;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    const int dblClick = QApplication::styleHints()->mouseDoubleClickInterval();
    if (dblClick > 0 && now - lastPopupTick <= dblClick && Frame.Hot >= 0) {
        // A quick second press on the system button counts as a double click.
        FTimer.stop();
        QMetaObject::invokeMethod(FForm, "close", Qt::QueuedConnection);
        return;
    }
    lastPopupTick = now;
    TSkinManage::Instance().MenuKind = 2;
    delete FSysMenuPopup.data();
    auto* menu = new QMenu(FForm);
    FSysMenuPopup = menu;
    menu->setProperty("Tag", 33333);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const std::uint8_t state = Frame.WindowState;
    const std::vector<QPixmap>& images = FSkin->MenuImages;
    auto add = [&](int Image, const QString& Text, bool Enabled, auto Slot) {
        QAction* action = menu->addAction(Text, FForm, Slot);
        if (Image >= 0 && Image < int(images.size())) action->setIcon(images[std::size_t(Image)]);
        action->setEnabled(Enabled);
        return action;
    };
    QWidget* form = FForm;
    // Moving and sizing from the keyboard are the window manager's; the
    // menu offers the rest.
    add(0, tr("&Restore"), state != wsNormal, [form] { form->showNormal(); });
    add(2, tr("Mi&nimize"), (Frame.Caps & capMinimize) && state != wsMinimized,
        [form] { form->showMinimized(); });
    add(1, tr("Ma&ximize"), (Frame.Caps & capMaximize) && state != wsMaximized,
        [form] { form->showMaximized(); });
    menu->addSeparator();
    QAction* close = add(3, tr("&Close"), true, [form] { form->close(); });
    close->setShortcut(QKeySequence(Qt::ALT | Qt::Key_F4));
    menu->popup(FForm->mapToGlobal(WindowPoint));
}

QImage WindowPicture(QWidget* Window) {
    QImage image = Window->grab().toImage().convertToFormat(QImage::Format_ARGB32);
    const QRegion mask = Window->mask();
    if (mask.isEmpty()) return image;
    const qreal ratio = image.devicePixelRatio();
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            if (!mask.contains(QPoint(int(x / ratio), int(y / ratio)))) line[x] = 0;
    }
    return image;
}
