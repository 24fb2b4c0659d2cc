#pragma once
// TWgMenuBar: a toolbar bound to a TWgMainMenu. Each top-level item becomes
// a TWgMenuBarButton whose popup shows the item's sub-items; the bar takes
// over the keyboard handling of a window menu through one application-wide
// key filter. The hot button and key rules are TWgMenuBarState's.

#include "controls/WgMenuBarState.h"
#include "controls/ui/WgPopupMenu.h"
#include "controls/ui/WgToolBar.h"

class TWgMenuBar;

// The height of a menu bar button as the system gives it (metric 71, the
// menu button height of the classic desktop).
inline constexpr int SystemMenuButtonHeight = 18;

class TWgMenuBarButton : public TCustomWgToolButton {
    Q_OBJECT
public:
    TWgMenuBarButton(TWgMenuBar* Bar, TWgMenuItem* Item);

    TWgMenuItem* Item() const { return FItem; }
    TWgMenuBar* Bar() const;
    // Hot or open, as the menu bar's state says.
    bool Selected() const;
    TWgButtonFace Face() const override;
    TSize ContentSize() const override;

protected:
    void paintEvent(QPaintEvent* Event) override;
    void enterEvent(QEnterEvent* Event) override;
    void leaveEvent(QEvent* Event) override;
    void mouseMoveEvent(QMouseEvent* Event) override;
    void mousePressEvent(QMouseEvent* Event) override;
    void mouseReleaseEvent(QMouseEvent* Event) override;

private:
    TWgMenuItem* FItem;
};

class TWgMenuBar : public TCustomWgToolBar, private TWgMenuBarHost {
    Q_OBJECT
public:
    explicit TWgMenuBar(QWidget* Parent = nullptr);
    ~TWgMenuBar() override;

    TWgMainMenu* Menu() const { return FMenu; }
    // Assigning rebuilds the buttons; the first menu installs the key
    // filter of the process, clearing the menu removes it.
    void SetMenu(TWgMainMenu* Value);
    void Rebuild();

    const TWgMenuBarState& State() const { return FState; }
    int HotButton() const { return FState.Hot(); }
    QList<TWgMenuBarButton*> MenuButtons() const { return FButtons; }
    int IndexOfButton(const TWgMenuBarButton* Button) const;
    // The popup that is open now, or null.
    TWgPopupMenu* OpenPopup() const;

    // Told with the bar's window before the bar opens one of its menus
    // (Opening) and after that menu closed: the skin engine learns from it
    // which menus are the window's main menu.
    static inline std::function<void(QWidget* Form, bool Opening)> OnMenuTracking;

    // Calls from the buttons and the popups.
    void ButtonMouseMove(int Index, QPoint GlobalPos);
    void ButtonMouseDown(int Index);
    void MouseMoveAt(QPoint GlobalPos);

protected:
    bool eventFilter(QObject* Watched, QEvent* Event) override;
    bool event(QEvent* Event) override;
    void mouseMoveEvent(QMouseEvent* Event) override;
    void leaveEvent(QEvent* Event) override;

private:
    // TWgMenuBarHost
    int ButtonCount() const override { return int(FButtons.size()); }
    bool ButtonVisible(int Index) const override;
    bool ButtonEnabled(int Index) const override;
    WideString ButtonCaption(int Index) const override;
    TWgMenuItem* MenuRoot() const override;
    void ClosePopup() override;
    void PressButton(int Index) override;
    void RepaintButton(int Index) override;
    void InvalidateButton(int Index) override;
    void RestoreFocus() override;
    void TakeFocus() override;
    void PostMessage(int Number, int WParam, int LParam) override;

    void MenuChanged(TWgMenuItem* Item, bool Structural);
    void RunActionShortCut(TShortCut Key);
    void CopyItemToButton(TWgMenuBarButton* Button);
    int ButtonAtGlobal(QPoint GlobalPos) const;
    void InstallHook();
    void RemoveHook();

    TWgMainMenu* FMenu = nullptr;
    int FSubscription = 0;
    TWgMenuBarState FState;
    QList<TWgMenuBarButton*> FButtons;
    QPointer<TWgPopupMenu> FOpenPopup;
    QPointer<QWidget> FFocusToReturn;
    // The key event last seen, so that one event climbing the parents is handled once.
    struct TSeenKey {
        const QEvent* Event = nullptr;
        QEvent::Type Type = QEvent::None;
        int Key = 0;
        quint64 Time = 0;
        bool operator==(const TSeenKey&) const = default;
    };
    TSeenKey FLastKey;
};
