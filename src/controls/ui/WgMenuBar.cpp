#include "controls/ui/WgMenuBar.h"

#include "base/ui/Keys.h"
#include "base/ui/Messages.h"
#include "base/ui/QtCanvas.h"
#include "controls/HTMLCaption.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace {

// The bar that owns the key filter: the design has one menu bar per process.
TWgMenuBar* GHookOwner = nullptr;

constexpr int MenuButtonPadding = 7;

} // namespace

// ---------------------------------------------------------------- button

TWgMenuBarButton::TWgMenuBarButton(TWgMenuBar* Bar, TWgMenuItem* Item)
    : TCustomWgToolButton(Bar), FItem(Item) {
    setMouseTracking(true);
}

TWgMenuBar* TWgMenuBarButton::Bar() const {
    return qobject_cast<TWgMenuBar*>(parentWidget());
}

bool TWgMenuBarButton::Selected() const {
    const TWgMenuBar* bar = Bar();
    return bar && bar->HotButton() >= 0 && bar->HotButton() == bar->IndexOfButton(this);
}

TWgButtonFace TWgMenuBarButton::Face() const {
    TWgButtonFace face = TCustomWgToolButton::Face();
    face.Transparent = true;
    // Without border the hot state only picks the glyph of the hot list.
    face.Hot = Selected();
    face.Down = false;
    face.ShowBorder = false;
    return face;
}

TSize TWgMenuBarButton::ContentSize() const {
    TSize size = TCustomWgToolButton::ContentSize();
    size.cx += 2 * (MenuButtonPadding - ToolButtonPadding);
    return size;
}

void TWgMenuBarButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    TQtCanvas canvas(painter, &palette());
    const TRect r = Rect(0, 0, width(), height());
    const bool selected = Selected();
    const TWgMenuBar* bar = Bar();
    canvas.SetFont(bar ? bar->Font() : Font());
    if (FItem && FItem->OnDrawItem && bar && bar->Menu() && bar->Menu()->OwnerDraw) {
        // The program draws the item; the handler may keep the rectangle.
        FItem->OnDrawItem(FItem, canvas, r, selected);
        return;
    }
    if (selected) {
        canvas.SetBrushColor(clSystemColor | 29);
        canvas.FillRect(r);
    }
    TWgButtonFace face = Face();
    if (selected) face.Font.Color = clSystemColor | 14;
    PaintToolButton(canvas, r, face);
}

void TWgMenuBarButton::enterEvent(QEnterEvent* Event) {
    if (TWgMenuBar* bar = Bar())
        bar->ButtonMouseMove(bar->IndexOfButton(this), Event->globalPosition().toPoint());
}

void TWgMenuBarButton::leaveEvent(QEvent*) {}

void TWgMenuBarButton::mouseMoveEvent(QMouseEvent* Event) {
    if (TWgMenuBar* bar = Bar())
        bar->ButtonMouseMove(bar->IndexOfButton(this), Event->globalPosition().toPoint());
}

void TWgMenuBarButton::mousePressEvent(QMouseEvent* Event) {
    if (Event->button() != Qt::LeftButton) return;
    if (TWgMenuBar* bar = Bar()) bar->ButtonMouseDown(bar->IndexOfButton(this));
}

void TWgMenuBarButton::mouseReleaseEvent(QMouseEvent*) {}

// ---------------------------------------------------------------- bar

TWgMenuBar::TWgMenuBar(QWidget* Parent) : TCustomWgToolBar(Parent), FState(*this) {
    setMouseTracking(true);
    // The focus moving elsewhere in the window (a shortcut, a click) ends
    // the keyboard's stay in the bar; moves into and out of our own popups
    // are part of that stay.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* Old, QWidget* Now) {
        auto inPopup = [](QWidget* W) {
            return W && qobject_cast<TWgPopupMenu*>(W->window()) != nullptr;
        };
        // A window getting its focus back (Old null) is no move in it, nor
        // is the bar taking the focus for that stay.
        if (!Old || !Now || inPopup(Old) || inPopup(Now) || OpenPopup()) return;
        if (Now == this || isAncestorOf(Now)) return;
        if (FState.KeyboardMode() && FState.Hot() >= 0 && Old->window() == window() &&
            Now->window() == window())
            FState.SetHot(-1);
    });
    SetShowCaption(true);
    SetShowGlyph(true);
    SetBtnOffsHorz(1);
    SetBtnOffsVert(1);
    SetBevelInner(bvNone);
    SetBevelOuter(bvNone);
    SetMinSize(SystemMenuButtonHeight + 2);
    SetBtnHeight(MinSize());
    // The font of the system's menus.
    TFont font;
    font.Name = u"Tahoma";
    font.Height = -11;
    SetFont(font);
    Realign();
}

TWgMenuBar::~TWgMenuBar() {
    if (FMenu) FMenu->Unsubscribe(FSubscription);
    RemoveHook();
}

void TWgMenuBar::InstallHook() {
    if (GHookOwner) return;
    GHookOwner = this;
    qApp->installEventFilter(this);
}

void TWgMenuBar::RemoveHook() {
    if (GHookOwner != this) return;
    qApp->removeEventFilter(this);
    GHookOwner = nullptr;
}

void TWgMenuBar::SetMenu(TWgMainMenu* Value) {
    if (FMenu == Value) return;
    if (FMenu) FMenu->Unsubscribe(FSubscription);
    FSubscription = 0;
    FMenu = Value;
    // A window here never shows a native menu of its own, so there is
    // nothing to take off the form.
    if (FMenu)
        InstallHook();
    else
        RemoveHook();
    Rebuild();
}

void TWgMenuBar::Rebuild() {
    FState.SetHot(-1);
    if (FOpenPopup) FOpenPopup->CloseMenu(pcrCancel);
    const QList<TWgMenuBarButton*> old = FButtons;
    FButtons.clear();
    for (TWgMenuBarButton* button : old) {
        button->SetAction(nullptr);
        if (TWgPopupMenu* popup = button->PullDownMenu()) popup->deleteLater();
        button->hide();
        button->setParent(nullptr);
        button->deleteLater();
    }
    if (!FMenu) {
        SetImages(nullptr);
        SetHotImages(nullptr);
        SetDisabledImages(nullptr);
        SetMinSize(SystemMenuButtonHeight + 2);
        SetBtnHeight(SystemMenuButtonHeight + 2);
        Realign();
        return;
    }
    if (!FSubscription)
        FSubscription = FMenu->Subscribe(
            [this](TWgMenuItem* Item, bool Structural) { MenuChanged(Item, Structural); });

    SetImages(FMenu->Images);
    SetHotImages(FMenu->HotImages);
    SetDisabledImages(FMenu->DisabledImages);
    SetUseImageList(FMenu->Images != nullptr);
    SetIsHTML(FMenu->IsHTML);
    if (!FMenu->SystemFont) SetFont(FMenu->Font);
    TWgMenuItem& root = FMenu->Items();
    for (int i = 0; i < root.Count(); ++i) {
        auto* button = new TWgMenuBarButton(this, root.Items(i));
        auto* popup = new TWgPopupMenu(this);
        popup->AssignMenuSettings(*FMenu);
        popup->SetSource(root.Items(i));
        // Named after its item, so the window system and assistive tools can
        // tell the open menu.
        const QString title =
            QString::fromStdU16String(StripHotkey(CaptionPlainText(root.Items(i)->Caption())));
        popup->setWindowTitle(title);
        popup->setAccessibleName(title);
        button->setAccessibleName(title);
        button->SetPullDownMenu(popup);
        FButtons.append(button);
        CopyItemToButton(button);
    }

    int height = SystemMenuButtonHeight + 2;
    {
        QImage scratch(1, 1, QImage::Format_RGB32);
        QPainter painter(&scratch);
        TQtCanvas canvas(painter);
        canvas.SetFont(Font());
        height = std::max(height, canvas.TextMetrics().Height + 4);
    }
    SetMinSize(height);
    SetBtnHeight(height);
    Realign();
}

void TWgMenuBar::CopyItemToButton(TWgMenuBarButton* Button) {
    TWgMenuItem* item = Button->Item();
    Button->SetCaption(item->Caption());
    Button->SetImageIndex(item->ImageIndex());
    Button->setVisible(item->Visible());
    Button->setEnabled(item->Enabled());
    Button->SetHint(item->Hint());
    Button->SetAction(item->Action());
    Button->SetTag(item->Tag);
}

void TWgMenuBar::MenuChanged(TWgMenuItem* Item, bool Structural) {
    if (!Item && Structural) {
        // The menu is being destroyed: let go of it without calling it again.
        FSubscription = 0;
        FMenu = nullptr;
        RemoveHook();
        Rebuild();
        return;
    }
    TWgMenuItem* root = &FMenu->Items();
    if (Item == root) {
        // Top-level items came or went: the buttons are made anew.
        Rebuild();
        return;
    }
    // The change is that of a top-level item or lies below one: its button
    // takes the item's values again and its popup is laid out again.
    TWgMenuItem* top = Item;
    while (top->Parent() && top->Parent() != root)
        top = top->Parent();
    for (int i = 0; i < FButtons.size(); ++i) {
        TWgMenuBarButton* button = FButtons[i];
        if (button->Item() != top) continue;
        if (Item == top) CopyItemToButton(button);
        if (TWgPopupMenu* popup = button->PullDownMenu()) popup->ItemsChanged(Structural);
        // A hot button that went out of sight is hot no more.
        if (FState.Hot() == i && button->isHidden()) FState.SetHot(-1);
    }
}

int TWgMenuBar::IndexOfButton(const TWgMenuBarButton* Button) const {
    for (int i = 0; i < FButtons.size(); ++i)
        if (FButtons[i] == Button) return i;
    return -1;
}

TWgPopupMenu* TWgMenuBar::OpenPopup() const {
    return FOpenPopup && FOpenPopup->isVisible() ? FOpenPopup.data() : nullptr;
}

bool TWgMenuBar::ButtonVisible(int Index) const {
    return Index >= 0 && Index < FButtons.size() && !FButtons[Index]->isHidden();
}

bool TWgMenuBar::ButtonEnabled(int Index) const {
    return Index >= 0 && Index < FButtons.size() && FButtons[Index]->isEnabled();
}

WideString TWgMenuBar::ButtonCaption(int Index) const {
    return Index >= 0 && Index < FButtons.size() ? FButtons[Index]->Caption() : WideString();
}

TWgMenuItem* TWgMenuBar::MenuRoot() const {
    return FMenu ? &FMenu->Items() : nullptr;
}

void TWgMenuBar::ClosePopup() {
    if (FOpenPopup) FOpenPopup->CloseMenu(pcrCancel);
    FOpenPopup = nullptr;
    for (TWgMenuBarButton* button : FButtons)
        button->update();
}

void TWgMenuBar::PressButton(int Index) {
    if (Index < 0 || Index >= FButtons.size()) return;
    TWgMenuBarButton* button = FButtons[Index];
    TWgMenuItem* item = button->Item();
    TWgPopupMenu* popup = button->PullDownMenu();
    if (!item || item->Count() == 0 || !popup) {
        // A top-level item without sub-items is a command of its own.
        if (item) item->Click();
        return;
    }
    popup->OnClose = [this](TWgPopupCloseReason Reason) {
        FOpenPopup = nullptr;
        if (OnMenuTracking) OnMenuTracking(window(), false);
        FState.PopupClosed(Reason);
        for (TWgMenuBarButton* b : FButtons)
            b->update();
    };
    popup->OnForeignKey = [this](int Key, TShortCut Shift) {
        FState.Vertical = Orientation() == 1;
        return FState.KeyDown(Key, Shift);
    };
    popup->OnMouseOutside = [this](QPoint GlobalPos) { MouseMoveAt(GlobalPos); };
    popup->OnPressOutside = [this](QPoint GlobalPos) {
        const int index = ButtonAtGlobal(GlobalPos);
        if (index < 0) return false;
        FState.MouseDown(index);
        return true;
    };
    FOpenPopup = popup;
    if (OnMenuTracking) OnMenuTracking(window(), true);
    // Marked open before it shows, so that the leave its grab causes finds it open.
    FState.PopupOpened(FState.KeyboardOpened());
    popup->Popup(button->mapToGlobal(QPoint(0, button->height())), FState.KeyboardOpened());
    button->update();
}

void TWgMenuBar::RepaintButton(int Index) {
    if (Index >= 0 && Index < FButtons.size()) FButtons[Index]->repaint();
}

void TWgMenuBar::InvalidateButton(int Index) {
    if (Index >= 0 && Index < FButtons.size()) FButtons[Index]->update();
}

void TWgMenuBar::RestoreFocus() {
    if (FFocusToReturn) FFocusToReturn->setFocus();
    FFocusToReturn = nullptr;
}

void TWgMenuBar::TakeFocus() {
    FFocusToReturn = QApplication::focusWidget();
    if (focusPolicy() != Qt::NoFocus) setFocus();
}

void TWgMenuBar::PostMessage(int Number, int WParam, int LParam) {
    PostPrivateMessage(this, Number, WParam, LParam);
}

int TWgMenuBar::ButtonAtGlobal(QPoint GlobalPos) const {
    const QPoint local = mapFromGlobal(GlobalPos);
    if (!rect().contains(local)) return -1;
    for (int i = 0; i < FButtons.size(); ++i)
        if (!FButtons[i]->isHidden() && FButtons[i]->geometry().contains(local)) return i;
    return -1;
}

void TWgMenuBar::ButtonMouseMove(int Index, QPoint GlobalPos) {
    FState.MouseMove(Index, true, {GlobalPos.x(), GlobalPos.y()});
}

void TWgMenuBar::ButtonMouseDown(int Index) {
    FState.MouseDown(Index);
}

void TWgMenuBar::MouseMoveAt(QPoint GlobalPos) {
    const bool inside = rect().contains(mapFromGlobal(GlobalPos));
    FState.MouseMove(ButtonAtGlobal(GlobalPos), inside, {GlobalPos.x(), GlobalPos.y()});
}

void TWgMenuBar::mouseMoveEvent(QMouseEvent* Event) {
    MouseMoveAt(Event->globalPosition().toPoint());
}

void TWgMenuBar::leaveEvent(QEvent* Event) {
    TCustomWgToolBar::leaveEvent(Event);
    FState.MouseLeave();
}

bool TWgMenuBar::event(QEvent* Event) {
    switch (PrivateMessageNumber(Event)) {
    case WM_MENUBAR_OPENPOPUP: {
        const auto* message = static_cast<TPrivateMessage*>(Event);
        FState.OpenPopupMessage(int(message->WParam()), int(message->LParam()));
        return true;
    }
    case WM_MENUBAR_ALTRESET:
        FState.AltResetMessage();
        return true;
    default:
        return TCustomWgToolBar::event(Event);
    }
}

bool TWgMenuBar::eventFilter(QObject* Watched, QEvent* Event) {
    const QEvent::Type type = Event->type();
    if (type != QEvent::KeyPress && type != QEvent::KeyRelease) return false;
    // A key from the window system reaches the window object first and is
    // then forwarded, as the same event, to the focused widget: only the
    // widgets count.
    auto* widget = qobject_cast<QWidget*>(Watched);
    if (!widget || !FMenu) return false;
    // A key that its receiver ignores climbs to the parents through this
    // filter again; it counts once. Events in between (input method queries
    // of the receiver, say) must not make it count twice, so a key is known
    // by its kind, key and time stamp as well as by the event object.
    auto* key = static_cast<QKeyEvent*>(Event);
    const TSeenKey seen{Event, type, key->key(), key->timestamp()};
    if (seen == FLastKey) return false;
    FLastKey = seen;
    QWidget* form = window();
    if (type == QEvent::KeyRelease) {
        if (key->isAutoRepeat()) return false;
        if (widget->window() == form || qobject_cast<TWgPopupMenu*>(widget->window()))
            FState.KeyUp(VirtualKeyOf(key->key()));
        else
            FState.KeyUpElsewhere();
        return false;
    }
    // Open popups take their own keys; the bar acts for its form only, and
    // only while that form is the active one.
    if (widget->window() != form || QApplication::activeWindow() != form) return false;
    FState.Vertical = Orientation() == 1;
    const int vk = VirtualKeyOf(key->key());
    const TShortCut shift = ShiftStateOf(key->modifiers());
    if (!FState.KeyDown(vk, shift)) return false;
    RunActionShortCut(ShortCut(vk, shift));
    return true;
}

void TWgMenuBar::RunActionShortCut(TShortCut Key) {
    // The bar's shortcut handling leaves an item bound to an action alone;
    // it is clicked here instead, as the form's own shortcut handling would
    // click it. The key was the item's: the bar has swallowed it.
    TWgMenuItem* item = FMenu ? FMenu->Items().FindShortCut(Key) : nullptr;
    if (item && item->HasAction() && item->ChainEnabledAndVisible()) item->Click();
}
