#pragma once
// The menu bar's hot button and keyboard handling, free of any window
// system. The bar widget is the host: it reports keys, mouse moves and popup
// changes, and carries out what the state asks of it.

#include "controls/WgMenu.h"

#include <functional>

// Private messages of the bar: open the popup of a button (WParam 1 from
// the mouse, 2 from the keyboard; LParam the button), and the reset after Alt.
inline constexpr int WM_MENUBAR_OPENPOPUP = 1716;
inline constexpr int WM_MENUBAR_ALTRESET = 1718;

class TWgMenuBarHost {
public:
    virtual ~TWgMenuBarHost() = default;
    virtual int ButtonCount() const = 0;
    virtual bool ButtonVisible(int Index) const = 0;
    virtual bool ButtonEnabled(int Index) const = 0;
    virtual WideString ButtonCaption(int Index) const = 0;
    // The menu whose shortcuts the bar answers; may be null.
    virtual TWgMenuItem* MenuRoot() const = 0;
    // Closes the open popup and all its sub-popups.
    virtual void ClosePopup() = 0;
    // Opens the popup of button Index.
    virtual void PressButton(int Index) = 0;
    virtual void RepaintButton(int Index) = 0;
    virtual void InvalidateButton(int Index) = 0;
    // Gives the focus back to where it was before the bar took it.
    virtual void RestoreFocus() = 0;
    // Remembers the current focus and moves it to the bar if it can.
    virtual void TakeFocus() = 0;
    virtual void PostMessage(int Number, int WParam, int LParam) = 0;
};

// Why a popup of the bar went away.
enum TWgPopupCloseReason : std::uint8_t {
    pcrCancel = 0,  // Esc in the popup: the button stays hot
    pcrOutside = 1, // a click elsewhere
    pcrItemClicked = 2,
};

class TWgMenuBarState {
public:
    explicit TWgMenuBarState(TWgMenuBarHost& Host) : FHost(Host) {}

    // A vertical bar opens with Right and walks with Up and Down.
    bool Vertical = false;

    int Hot() const { return FHot; }
    void SetHot(int Button);
    bool PopupOpen() const { return FPopupOpen; }
    bool KeyboardOpened() const { return FKeyboardOpened; }
    bool AltDown() const { return FAltDown; }
    bool KeyUpSeen() const { return FKeyUp; }
    // The bar was made hot from the keyboard (Alt, F10, an accelerator):
    // letters alone then pick a button, and any other key leaves it.
    bool KeyboardMode() const { return FKeyboardMode; }

    // A key went down while the bar's form is active; true swallows it.
    bool KeyDown(int Key, TShortCut Shift);
    // A key went up; Alt released with nothing between its press and
    // release stands for the window's key-menu command.
    void KeyUp(int Key);
    // A key went up in another window of the program, such as a dialog that
    // a shortcut opened while its key was down: the next shortcut may click.
    void KeyUpElsewhere() { FKeyUp = true; }
    // The key-menu command: Alt alone.
    void AltAlone();

    // The next visible button after From in direction Step (+1 or -1),
    // wrapping round; -1 when none is visible.
    int NextButton(int From, int Step) const;
    // The visible, enabled button whose caption has Key as accelerator, or -1.
    int AccelButton(int Key) const;

    // The pointer moved to ScreenPos; OverButton is the button under it, or
    // -1; InsideBar tells whether it is over the bar at all.
    void MouseMove(int OverButton, bool InsideBar, TPoint ScreenPos);
    // The pointer left the bar with no popup open.
    void MouseLeave();
    // The button was clicked with the mouse.
    void MouseDown(int Button);

    // The host reports that the popup of the hot button opened or closed.
    void PopupOpened(bool FromKeyboard);
    void PopupClosed(TWgPopupCloseReason Reason);
    // Handling of the private messages.
    void OpenPopupMessage(int Kind, int Button);
    void AltResetMessage();

private:
    void OpenHot(bool FromKeyboard);

    TWgMenuBarHost& FHost;
    int FHot = -1;
    bool FPopupOpen = false;
    bool FKeyboardOpened = false;
    bool FAltDown = false;
    // Starts as seen, so that the first shortcut after start works.
    bool FKeyUp = true;
    bool FClosing = false;
    bool FKeyboardMode = false;
    bool FHasMousePos = false;
    TPoint FMousePos;
};
