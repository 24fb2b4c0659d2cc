#pragma once
// Skinned menus on the widgets.
//
// TVeneerPopMenu paints one open menu window from the skin: its background
// and border from the skin's menu background, and its items, owner-drawn,
// from the skin's item strip. It only paints: the geometry, the keyboard
// and the mouse stay the window's own, so a skinned menu works exactly as
// a plain one, and removing the skin leaves the window as it was.
//
// Which menus get one, by the manager's MenuKind as the window opens:
//  - 1, the main menu: the menus that a menu bar (TWgMenuBar) opens, while
//    the bar's form is skinned with its frame; they need xcMainMenu (or
//    xcMenuItem), so with DontSkinCaption they stay plain. The bar tells the
//    manager before it opens one and after it closed (MenuTracking).
//  - 2, the system menu: the form skin's own menu of its title; needs
//    xcSystemMenu.
//  - 0, any other popup (the program's context menus); needs xcPopupMenu,
//    which the program's own set leaves out.
// A sub-menu takes the look of the menu it opens from. The kind is used up
// by the menu it was set for: the next unrelated popup is 0 again.
//
// TVeneerMenu draws a form's Qt menu bar (QMenuBar) as a strip in the
// skinned frame, with one TMenuBtn per top-level menu, and opens their
// menus itself. Our own TWgMenuBar is a control of the form, not a platform
// menu, and is left where it is.

#include "skin/menu.h"

#include <QAction>
#include <QImage>
#include <QMenu>
#include <QMenuBar>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <memory>
#include <vector>

class QPainter;
class TSkinData;
class TVeneerForm;
class TWgPopupMenu;

// The windows menus open in: our popups and Qt's menus.
bool IsMenuWindow(const QWidget* Window);

class TVeneerPopMenu : public QObject {
    Q_OBJECT
public:
    // Starts painting Window (a menu window) from Data.
    TVeneerPopMenu(QWidget* Window, TSkinData& Data, int Kind);
    // Lets go of the window and has it paint itself again.
    ~TVeneerPopMenu() override;

    QWidget* Handle() const { return FHandle; }
    TSkinData& Data() const { return *FData; }
    int Kind() const { return FKind; }
    // The picture of the whole window at its last paint.
    const TMemoryBitmap& Background() const { return FBackground; }
    bool Update = false; // repaint at the next show

    // Paints the whole window; false when the skin has nothing for menus
    // and the window paints itself.
    bool PaintWindow(QPainter& Painter);

protected:
    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    QPointer<QWidget> FHandle;
    TSkinData* FData;
    int FKind;
    TMemoryBitmap FBackground;

    void PaintPopupItems(TCanvas& Canvas, const TWgPopupMenu& Popup);
    void PaintQMenuItems(TCanvas& Canvas, QMenu& Menu);
};

// An open popup menu drawn from a skin, for pictures of a skin: a normal, a
// hot, a disabled and a checked item, a separator and an item with a
// sub-menu, at the device pixel ratio Ratio.
QImage RenderSkinnedMenuSample(TSkinData& Data, qreal Ratio = 1.0);

// One top-level menu of a skinned strip.
class TMenuBtn {
public:
    int Index = 0;
    QPointer<QMenu> SubMenu; // null for an item that is a command of its own
    QPointer<QAction> Item;
    TMenuStripButton Look;
    bool Enabled() const { return Look.Enabled; }
};

// The menu strip of a skinned form whose menu is a QMenuBar.
class TVeneerMenu : public QObject {
    Q_OBJECT
public:
    TVeneerMenu(TVeneerForm& Form, QMenuBar& Bar);
    // Gives the bar back to the window.
    ~TVeneerMenu() override;

    // Reads the bar's top-level items into Buttons and takes the bar off
    // the window; Refresh reads them again after a change.
    void Build();
    void Refresh();
    // Paints the strip (window coordinates) and keeps its layout.
    void Paint(TCanvas& Canvas, const TRect& Strip, bool Active);
    TMenuBtn* BtnAt(QPoint WindowPos);
    int IndexOf(const TMenuBtn* Btn) const;
    // Opens the button's menu below it; a command item is triggered.
    void OpenMenu(TMenuBtn* Btn, bool FromKeyboard);
    // The strip's height for the form's frame: the system's menu height.
    int Height() const;

    std::vector<std::unique_ptr<TMenuBtn>> Buttons;
    int TrackIndex = -1; // the button whose menu is open
    QMenuBar* Bar() const { return FBar; }

    // Mouse on the strip, window coordinates.
    void MouseMove(QPoint WindowPos);
    void MousePress(QPoint WindowPos);
    void MouseLeave();

protected:
    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    TVeneerForm& FForm;
    QPointer<QMenuBar> FBar;
    bool FBarWasVisible = true;
    int FSwitchTo = -1; // the button to open once the open menu has gone
    bool FSwitchKeys = false;
    TMemoryBitmap FBack;

    std::vector<TMenuStripButton> Looks() const;
    void SetState(int Index, int State);
    void Repaint();
    void SwitchTo(int Index, bool FromKeyboard);
};
