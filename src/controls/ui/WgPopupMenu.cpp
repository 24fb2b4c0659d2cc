#include "controls/ui/WgPopupMenu.h"

#include "base/ui/QtCanvas.h"

#include "base/ui/Keys.h"
#include "controls/HTMLCaption.h"
#include "controls/WgHint.h"
#include <QCloseEvent>
#include <QCursor>
#include <QGuiApplication>
#include <QImage>
#include <QKeyEvent>

#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QStatusTipEvent>

TShortCut ShiftStateOf(Qt::KeyboardModifiers Modifiers) {
    TShortCut shift = 0;
    if (Modifiers & Qt::ShiftModifier) shift |= scShift;
    if (Modifiers & Qt::ControlModifier) shift |= scCtrl;
    if (Modifiers & Qt::AltModifier) shift |= scAlt;
    return shift;
}

TWgPopupMenu::TWgPopupMenu(QWidget* Parent)
    : QWidget(Parent, Qt::Popup), FOwnItems(std::make_unique<TWgMenuItem>()),
      FSource(FOwnItems.get()) {
    setMouseTracking(true);
    setAttribute(Qt::WA_NoMouseReplay);
    FOwnItems->OnChange = [this](TWgMenuItem*, bool Structural) {
        if (FSource == FOwnItems.get()) ItemsChanged(Structural);
    };
    FMetrics.Font.Name = u"Tahoma";
    FMetrics.Font.Height = -11;
}

TWgPopupMenu::~TWgPopupMenu() = default;

void TWgPopupMenu::SetSource(TWgMenuItem* Item) {
    FSource = Item ? Item : FOwnItems.get();
    FSelected = -1;
    if (isVisible()) Relayout();
}

void TWgPopupMenu::AssignMenuSettings(const TWgMenu& Menu) {
    FMetrics.Images = Menu.Images;
    FMetrics.HotImages = Menu.HotImages;
    FMetrics.DisabledImages = Menu.DisabledImages;
    FMetrics.DrawStyle = Menu.DrawStyle;
    FMetrics.ItemSpace = Menu.ItemSpace;
    FMetrics.ImageMargin = Menu.ImageMargin;
    if (!Menu.SystemFont) FMetrics.Font = Menu.Font;
    FMetrics.IsHTML = Menu.IsHTML;
    OwnerDraw = true;
}

void TWgPopupMenu::SetIsHTML(bool Value) {
    if (FMetrics.IsHTML == Value) return;
    FMetrics.IsHTML = Value;
    if (isVisible()) Relayout();
}

void TWgPopupMenu::ItemsChanged(bool Structural) {
    // A closed popup is laid out afresh when it opens.
    if (!isVisible()) return;
    if (Structural) {
        CloseSubMenu();
        // The selection stays where its index is still an item to stop at.
        if (NextPopupItem(*FSource, FSelected - 1, 1) != FSelected) FSelected = -1;
    } else if (FSubMenu) {
        FSubMenu->ItemsChanged(false);
    }
    Relayout();
}

void TWgPopupMenu::Relayout() {
    QImage scratch(1, 1, QImage::Format_RGB32);
    QPainter painter(&scratch);
    TQtCanvas canvas(painter, &palette());
    FLayout = LayoutPopupMenu(canvas, *FSource, FMetrics);
    resize(FLayout.Width, FLayout.Height);
    update();
}

QRect TWgPopupMenu::ItemRect(int Index) const {
    const TWgPopupItemBox* box = PopupBoxOf(FLayout, Index);
    if (!box) return {};
    return QRect(box->Bounds.Left, box->Bounds.Top, box->Bounds.Width(), box->Bounds.Height());
}

void TWgPopupMenu::Popup(QPoint Pos, bool SelectFirst) {
    Relayout();
    // Keep the popup on the screen: flip above or shift left where it would leave it.
    if (const QScreen* screen = QGuiApplication::screenAt(Pos)) {
        const QRect area = screen->availableGeometry();
        if (Pos.y() + height() > area.bottom() && Pos.y() - height() >= area.top())
            Pos.ry() -= height();
        if (Pos.x() + width() > area.right())
            Pos.rx() = std::max(area.left(), area.right() - width());
    }
    // The client rectangle, not the frame: a popup's items start at Pos.
    setGeometry(QRect(Pos, size()));
    FSelected = -1;
    if (SelectFirst) Select(NextPopupItem(*FSource, -1, 1));
    FLastMouse = QCursor::pos();
    show();
    raise();
}

TWgPopupMenu* TWgPopupMenu::Root() {
    TWgPopupMenu* root = this;
    while (root->FParentMenu)
        root = root->FParentMenu;
    return root;
}

TWgPopupMenu* TWgPopupMenu::PopupAt(QPoint GlobalPos) {
    // The deepest sub-menu lies on top.
    if (FSubMenu && FSubMenu->isVisible())
        if (TWgPopupMenu* inner = FSubMenu->PopupAt(GlobalPos)) return inner;
    return isVisible() && geometry().contains(GlobalPos) ? this : nullptr;
}

void TWgPopupMenu::Select(int Index) {
    if (FSelected == Index) return;
    FSelected = Index;
    const TWgMenuItem* item = FSource->Items(Index);
    TellStatus(item ? GetLongHint(item->Hint()) : WideString());
    update();
}

void TWgPopupMenu::TellStatus(const WideString& Text) {
    // The long hint of the selected item goes to the status line of the
    // window the menu belongs to.
    QWidget* owner = Root()->parentWidget();
    if (!owner) return;
    QStatusTipEvent tip(QString::fromStdU16String(CaptionPlainText(Text)));
    QCoreApplication::sendEvent(owner, &tip);
}

void TWgPopupMenu::OpenSubMenu(bool SelectFirst) {
    TWgMenuItem* item = FSource->Items(FSelected);
    if (!item || item->Count() == 0 || !item->Enabled()) return;
    if (FSubMenu && FSubMenu->isVisible() && FSubMenu->FSource == item) {
        if (SelectFirst && FSubMenu->FSelected < 0) FSubMenu->Select(NextPopupItem(*item, -1, 1));
        return;
    }
    CloseSubMenu();
    auto* sub = new TWgPopupMenu(this);
    sub->FParentMenu = this;
    sub->FMetrics = FMetrics;
    sub->OwnerDraw = OwnerDraw;
    sub->SetSource(item);
    FSubMenu = sub;
    const QRect box = ItemRect(FSelected);
    sub->Popup(mapToGlobal(QPoint(width() - 3, box.top() - PopupFrame - PopupPadding)),
               SelectFirst);
}

void TWgPopupMenu::CloseSubMenu() {
    if (!FSubMenu) return;
    TWgPopupMenu* sub = FSubMenu;
    FSubMenu = nullptr;
    sub->FClosing = true;
    sub->CloseSubMenu();
    sub->hide();
    sub->deleteLater();
}

void TWgPopupMenu::CloseMenu(TWgPopupCloseReason Reason) {
    if (FClosing) return;
    FClosing = true;
    CloseSubMenu();
    hide();
    FClosing = false;
    if (!FParentMenu) TellStatus({});
    if (!FParentMenu && OnClose) OnClose(Reason);
}

void TWgPopupMenu::Execute(int Index) {
    TWgMenuItem* item = FSource->Items(Index);
    if (!item || item->IsLine() || !item->Visible()) return;
    if (item->Count() > 0) {
        Select(Index);
        OpenSubMenu(true);
        return;
    }
    if (!item->Enabled()) return;
    // The command runs after the menu has gone, as a menu loop would have it.
    Root()->CloseMenu(pcrItemClicked);
    item->Click();
}

void TWgPopupMenu::HoverAt(QPoint LocalPos) {
    const int index = PopupItemAt(FLayout, {LocalPos.x(), LocalPos.y()});
    TWgMenuItem* item = FSource->Items(index);
    if (!item || item->IsLine()) return;
    if (index != FSelected) Select(index);
    if (item->Count() > 0 && item->Enabled())
        OpenSubMenu(false);
    else
        CloseSubMenu();
}

void TWgPopupMenu::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    TQtCanvas canvas(painter, &palette());
    PaintPopupMenu(canvas, FLayout, FMetrics, FSelected);
}

void TWgPopupMenu::mouseMoveEvent(QMouseEvent* Event) {
    const QPoint global = Event->globalPosition().toPoint();
    TWgPopupMenu* root = Root();
    if (global == root->FLastMouse) return;
    root->FLastMouse = global;
    if (TWgPopupMenu* target = root->PopupAt(global))
        target->HoverAt(target->mapFromGlobal(global));
    else if (root->OnMouseOutside)
        root->OnMouseOutside(global);
}

void TWgPopupMenu::mousePressEvent(QMouseEvent* Event) {
    const QPoint global = Event->globalPosition().toPoint();
    TWgPopupMenu* root = Root();
    if (root->PopupAt(global)) return;
    if (root->OnPressOutside && root->OnPressOutside(global)) return;
    root->CloseMenu(pcrOutside);
}

void TWgPopupMenu::mouseReleaseEvent(QMouseEvent* Event) {
    const QPoint global = Event->globalPosition().toPoint();
    TWgPopupMenu* target = Root()->PopupAt(global);
    if (!target) return;
    const QPoint local = target->mapFromGlobal(global);
    const int index = PopupItemAt(target->FLayout, {local.x(), local.y()});
    if (index >= 0) target->Execute(index);
}

void TWgPopupMenu::keyPressEvent(QKeyEvent* Event) {
    const int key = VirtualKeyOf(Event->key());
    const TShortCut shift = ShiftStateOf(Event->modifiers());
    TWgPopupMenu* root = Root();
    auto foreign = [&](int Key) { return root->OnForeignKey && root->OnForeignKey(Key, shift); };
    switch (key) {
    case VK_UP:
    case VK_DOWN:
        Select(NextPopupItem(*FSource, FSelected, key == VK_UP ? -1 : 1));
        return;
    case VK_HOME:
        Select(NextPopupItem(*FSource, -1, 1));
        return;
    case VK_END:
        Select(NextPopupItem(*FSource, -1, -1));
        return;
    case VK_RETURN:
    case VK_SPACE:
        if (FSelected >= 0) Execute(FSelected);
        return;
    case VK_RIGHT:
        if (TWgMenuItem* item = FSource->Items(FSelected); item && item->Count() > 0) {
            OpenSubMenu(true);
            return;
        }
        foreign(VK_RIGHT);
        return;
    case VK_LEFT:
        if (FParentMenu) {
            FParentMenu->CloseSubMenu();
            return;
        }
        foreign(VK_LEFT);
        return;
    case VK_ESCAPE:
        if (FParentMenu)
            FParentMenu->CloseSubMenu();
        else
            CloseMenu(pcrCancel);
        return;
    case VK_MENU:
        if (!foreign(VK_MENU)) root->CloseMenu(pcrCancel);
        return;
    default:
        break;
    }
    if (key && !(shift & (scCtrl | scAlt)) &&
        ((key >= 'A' && key <= 'Z') || (key >= '0' && key <= '9'))) {
        bool unique = false;
        const int index = PopupAccelItem(*FSource, key, FSelected, unique);
        if (index >= 0) {
            Select(index);
            if (unique) Execute(index);
            return;
        }
    }
    if (key) foreign(key);
}

void TWgPopupMenu::closeEvent(QCloseEvent* Event) {
    // The toolkit closes popups by itself too (the application lost the
    // focus); that counts as a click elsewhere.
    if (!FClosing) {
        if (FParentMenu)
            FParentMenu->CloseSubMenu();
        else
            CloseMenu(pcrOutside);
    }
    Event->accept();
}
