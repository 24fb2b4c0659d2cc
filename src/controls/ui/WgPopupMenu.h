#pragma once
// TWgPopupMenu: a popup window that shows the sub-items of one menu item and
// draws them itself (glyph column, separators, shortcut texts, sub-menu
// arrows). It runs without a modal loop: it opens, takes the keyboard and
// the mouse while it is up, and reports how it closed.

#include "controls/WgMenu.h"
#include "controls/WgMenuBarState.h"
#include "controls/WgPopupMenuLayout.h"

#include <QEvent>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>

class TWgPopupMenu : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int Tag READ Tag WRITE SetTag)
public:
    // A stand-alone popup has its own items (Items()); a popup of the menu
    // bar or a sub-menu shows the sub-items of another menu's item.
    explicit TWgPopupMenu(QWidget* Parent = nullptr);
    ~TWgPopupMenu() override;

    int Tag() const { return FTag; }
    void SetTag(int Value) { FTag = Value; }

    TWgMenuItem& Items() { return *FSource; }
    void SetSource(TWgMenuItem* Item);

    const TWgImageList* Images() const { return FMetrics.Images; }
    void SetImages(const TWgImageList* Value) { FMetrics.Images = Value; }
    const TWgImageList* HotImages() const { return FMetrics.HotImages; }
    void SetHotImages(const TWgImageList* Value) { FMetrics.HotImages = Value; }
    const TWgImageList* DisabledImages() const { return FMetrics.DisabledImages; }
    void SetDisabledImages(const TWgImageList* Value) { FMetrics.DisabledImages = Value; }
    int ItemSpace() const { return FMetrics.ItemSpace; }
    void SetItemSpace(int Value) { FMetrics.ItemSpace = Value; }
    int ImageMargin() const { return FMetrics.ImageMargin; }
    void SetImageMargin(int Value) { FMetrics.ImageMargin = Value; }
    TWgMenuDrawStyle DrawStyle() const { return FMetrics.DrawStyle; }
    void SetDrawStyle(TWgMenuDrawStyle Value) { FMetrics.DrawStyle = Value; }
    const TFont& Font() const { return FMetrics.Font; }
    void SetFont(const TFont& Value) { FMetrics.Font = Value; }
    bool OwnerDraw = true;
    // Item captions that begin with "<html>" are drawn as markup.
    bool IsHTML() const { return FMetrics.IsHTML; }
    void SetIsHTML(bool Value);
    // Copies images, style, spacing, markup and font (unless it uses the
    // system's) of Menu.
    void AssignMenuSettings(const TWgMenu& Menu);
    // The items shown changed while the popup may be open: it is laid out
    // again where it stands. After a structural change (items came or went)
    // its sub-menus close, as the item they show may be gone.
    void ItemsChanged(bool Structural);

    // Opens with the top left at Pos (screen coordinates); with SelectFirst
    // the first item is selected, as when opened from the keyboard.
    void Popup(QPoint Pos, bool SelectFirst = false);
    // Closes this popup and its sub-menus, and reports Reason once.
    void CloseMenu(TWgPopupCloseReason Reason);
    bool IsOpen() const { return isVisible(); }

    int Selected() const { return FSelected; }
    TWgPopupMenu* SubMenu() const { return FSubMenu; }
    const TWgPopupLayout& Layout() const { return FLayout; }
    // The item box of item Index in widget coordinates, empty if hidden.
    QRect ItemRect(int Index) const;

    // Reports the closing of the top popup of a chain.
    std::function<void(TWgPopupCloseReason Reason)> OnClose;
    // Keys the popup chain does not use itself (Left and Right at the top
    // level, Alt, shortcuts); true when the receiver used the key.
    std::function<bool(int Key, TShortCut Shift)> OnForeignKey;
    // The pointer moved outside every popup of the chain.
    std::function<void(QPoint GlobalPos)> OnMouseOutside;
    // The pointer was pressed outside every popup of the chain; true when
    // the receiver takes it over (the menu bar, for its own buttons).
    std::function<bool(QPoint GlobalPos)> OnPressOutside;

protected:
    void paintEvent(QPaintEvent* Event) override;
    void mouseMoveEvent(QMouseEvent* Event) override;
    void mousePressEvent(QMouseEvent* Event) override;
    void mouseReleaseEvent(QMouseEvent* Event) override;
    void keyPressEvent(QKeyEvent* Event) override;
    void closeEvent(QCloseEvent* Event) override;

private:
    TWgPopupMenu* Root();
    TWgPopupMenu* PopupAt(QPoint GlobalPos);
    void Relayout();
    void Select(int Index);
    void TellStatus(const WideString& Text);
    void OpenSubMenu(bool SelectFirst);
    void CloseSubMenu();
    void Execute(int Index);
    void HoverAt(QPoint LocalPos);

    int FTag = 0;
    std::unique_ptr<TWgMenuItem> FOwnItems;
    TWgMenuItem* FSource;
    TWgPopupMetrics FMetrics;
    TWgPopupLayout FLayout;
    int FSelected = -1;
    QPointer<TWgPopupMenu> FSubMenu;
    TWgPopupMenu* FParentMenu = nullptr;
    bool FClosing = false;
    // Moves with an unchanged screen position come from nothing the user did.
    QPoint FLastMouse{-1000000, -1000000};
};

TShortCut ShiftStateOf(Qt::KeyboardModifiers Modifiers);
