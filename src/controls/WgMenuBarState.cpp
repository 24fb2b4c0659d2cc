#include "controls/WgMenuBarState.h"

void TWgMenuBarState::SetHot(int Button) {
    if (Button == FHot) return;
    if (FPopupOpen && !FClosing) {
        FClosing = true;
        FHost.ClosePopup();
        FClosing = false;
        FPopupOpen = false;
    }
    if (Button < 0) FKeyboardMode = false;
    const int old = FHot;
    FHot = -1;
    if (old >= 0) FHost.RepaintButton(old);
    FHot = Button;
    if (Button >= 0) FHost.InvalidateButton(Button);
}

int TWgMenuBarState::NextButton(int From, int Step) const {
    const int n = FHost.ButtonCount();
    if (n <= 0) return -1;
    int i = From < 0 ? (Step > 0 ? -1 : n) : From;
    for (int k = 0; k < n; ++k) {
        i = ((i + Step) % n + n) % n;
        if (FHost.ButtonVisible(i)) return i;
    }
    return -1;
}

int TWgMenuBarState::AccelButton(int Key) const {
    for (int i = 0; i < FHost.ButtonCount(); ++i)
        if (FHost.ButtonVisible(i) && FHost.ButtonEnabled(i) &&
            MenuKeyMatches(Key, FHost.ButtonCaption(i)))
            return i;
    return -1;
}

void TWgMenuBarState::OpenHot(bool FromKeyboard) {
    if (FHot < 0 || !FHost.ButtonEnabled(FHot)) return;
    FKeyboardOpened = FromKeyboard;
    FHost.PressButton(FHot);
}

bool TWgMenuBarState::KeyDown(int Key, TShortCut Shift) {
    bool swallow = false;
    // F10 alone is the desktop's other way to the menu: it acts as Alt
    // pressed and released (a shortcut on F10 itself still wins below).
    if (Key == VK_F10 && Shift == 0 &&
        !(FHost.MenuRoot() && FHost.MenuRoot()->FindShortCut(ShortCut(Key, Shift)))) {
        FAltDown = false;
        AltAlone();
        return true;
    }
    if (TWgMenuItem* root = FHost.MenuRoot()) {
        if (TWgMenuItem* item = root->FindShortCut(ShortCut(Key, Shift))) {
            // Taken before the click, whose handler may change or free the menu.
            const bool chain = item->ChainEnabledAndVisible();
            // An item under a disabled parent still clicks; only the key's
            // swallowing looks at the whole chain. Intended.
            if (!item->HasAction() && item->Enabled() && FKeyUp) {
                FKeyUp = false;
                item->Click();
            }
            if (chain) {
                if (FPopupOpen) {
                    FClosing = true;
                    FHost.ClosePopup();
                    FClosing = false;
                    FPopupOpen = false;
                }
                SetHot(-1);
                FAltDown = false;
                return true;
            }
        }
    }
    if (Key == VK_ESCAPE && FHot >= 0 && !FPopupOpen) {
        FHost.RestoreFocus();
        SetHot(-1);
        swallow = true;
    } else if (Key == VK_MENU) {
        FAltDown = true;
        if (FHot >= 0 && FPopupOpen) {
            FHost.RestoreFocus();
            SetHot(-1);
            FHost.PostMessage(WM_MENUBAR_ALTRESET, 0, 0);
            // The release of this Alt must not make the bar hot again.
            FAltDown = false;
            swallow = true;
        }
    } else if ((Key == VK_RETURN || Key == (Vertical ? VK_RIGHT : VK_DOWN)) && FHot >= 0 &&
               !FPopupOpen) {
        OpenHot(true);
        swallow = true;
    } else if ((Vertical ? (Key == VK_UP || Key == VK_DOWN)
                         : (Key == VK_LEFT || Key == VK_RIGHT)) &&
               FHot >= 0) {
        const bool wasOpen = FPopupOpen;
        const int next = NextButton(FHot, Key == VK_LEFT || Key == VK_UP ? -1 : 1);
        SetHot(next);
        if (wasOpen && next >= 0) FHost.PostMessage(WM_MENUBAR_OPENPOPUP, 2, next);
        swallow = true;
    } else if (((Shift & scAlt) || (FKeyboardMode && FHot >= 0 && !FPopupOpen)) &&
               ((Key >= 'A' && Key <= 'Z') || (Key >= '0' && Key <= '9'))) {
        // The buttons' own accelerators: Alt+letter, or the letter alone
        // while the bar is hot from the keyboard.
        const int button = AccelButton(Key);
        if (button >= 0) {
            SetHot(button);
            FKeyboardMode = true;
            OpenHot(true);
            swallow = true;
        }
    }
    if (Key != VK_MENU) FAltDown = false;
    // Any other key ends the keyboard's stay in the bar and goes on to the
    // focused control, so typing is never caught by a bar left hot.
    if (!swallow && FKeyboardMode && FHot >= 0 && !FPopupOpen && Key != VK_SHIFT &&
        Key != VK_CONTROL && Key != VK_MENU)
        SetHot(-1);
    return swallow;
}

void TWgMenuBarState::KeyUp(int Key) {
    FKeyUp = true;
    if (Key == VK_MENU && FAltDown) {
        FAltDown = false;
        AltAlone();
    }
}

void TWgMenuBarState::AltAlone() {
    if (FHot >= 0) {
        FHost.RestoreFocus();
        SetHot(-1);
        FHost.PostMessage(WM_MENUBAR_ALTRESET, 0, 0);
        return;
    }
    FHost.TakeFocus();
    SetHot(NextButton(-1, 1));
    FKeyboardMode = FHot >= 0;
}

void TWgMenuBarState::MouseMove(int OverButton, bool InsideBar, TPoint ScreenPos) {
    // A popup opening under a still pointer sends a move; it must stay open.
    if (FHasMousePos && ScreenPos == FMousePos) return;
    FHasMousePos = true;
    FMousePos = ScreenPos;
    if (FPopupOpen) {
        if (InsideBar && OverButton >= 0 && OverButton != FHot && FHost.ButtonVisible(OverButton)) {
            FKeyboardMode = false;
            SetHot(OverButton);
            FHost.PostMessage(WM_MENUBAR_OPENPOPUP, 1, OverButton);
        }
        return;
    }
    if (!InsideBar) {
        SetHot(-1);
    } else if (OverButton >= 0 && OverButton != FHot) {
        FKeyboardMode = false;
        SetHot(OverButton);
    }
}

void TWgMenuBarState::MouseLeave() {
    if (!FPopupOpen) SetHot(-1);
}

void TWgMenuBarState::MouseDown(int Button) {
    if (Button < 0) return;
    if (FPopupOpen && Button == FHot) {
        FClosing = true;
        FHost.ClosePopup();
        FClosing = false;
        FPopupOpen = false;
        return;
    }
    SetHot(Button);
    OpenHot(false);
}

void TWgMenuBarState::PopupOpened(bool FromKeyboard) {
    FPopupOpen = true;
    FKeyboardOpened = FromKeyboard;
    FKeyboardMode = FromKeyboard;
}

void TWgMenuBarState::PopupClosed(TWgPopupCloseReason Reason) {
    FPopupOpen = false;
    if (FClosing) return;
    switch (Reason) {
    case pcrCancel:
        break;
    case pcrOutside:
        SetHot(-1);
        break;
    case pcrItemClicked:
        FHost.RestoreFocus();
        SetHot(-1);
        break;
    }
}

void TWgMenuBarState::OpenPopupMessage(int Kind, int Button) {
    if (Button < 0 || Button >= FHost.ButtonCount() || !FHost.ButtonVisible(Button)) return;
    SetHot(Button);
    if (!FPopupOpen) OpenHot(Kind == 2);
}

void TWgMenuBarState::AltResetMessage() {
    FAltDown = false;
    FKeyboardOpened = false;
}
