#pragma once
// TWgAction: a command with its caption, hint, image, shortcut and state,
// shared by the menu items and buttons bound to it. A bound client takes
// those values from the action when it is bound and at every change of the
// action, and clicking the client runs the action.

#include "base/Strings.h"
#include "base/Types.h"

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

// A key with its shift state, coded as virtual key | scShift | scCtrl | scAlt.
using TShortCut = std::uint16_t;
inline constexpr TShortCut scShift = 0x2000;
inline constexpr TShortCut scCtrl = 0x4000;
inline constexpr TShortCut scAlt = 0x8000;

inline TShortCut ShortCut(int Key, TShortCut Shift) {
    return TShortCut((Key & 0xFF) | Shift);
}

class TWgAction {
public:
    TWgAction() = default;
    explicit TWgAction(WideView Caption) : FCaption(Caption) {}
    TWgAction(const TWgAction&) = delete;
    TWgAction& operator=(const TWgAction&) = delete;
    // Tells the clients, which let go of the action.
    ~TWgAction();

    const WideString& Caption() const { return FCaption; }
    void SetCaption(WideView Value);
    const WideString& Hint() const { return FHint; }
    void SetHint(WideView Value);
    int ImageIndex() const { return FImageIndex; }
    void SetImageIndex(int Value);
    TShortCut ShortCutKey() const { return FShortCut; }
    void SetShortCut(TShortCut Value);
    bool Enabled() const { return FEnabled; }
    void SetEnabled(bool Value);
    bool Visible() const { return FVisible; }
    void SetVisible(bool Value);
    bool Checked() const { return FChecked; }
    void SetChecked(bool Value);
    int Tag = 0;

    std::function<void(TWgAction* Sender)> OnExecute;
    // Runs OnExecute if the action is enabled; true when it ran.
    bool Execute();

    // A client hears of every change, and with Gone true of the action's end.
    using TClient = std::function<void(TWgAction* Action, bool Gone)>;
    int AddClient(TClient Client);
    void RemoveClient(int Id);

private:
    void Changed();

    WideString FCaption;
    WideString FHint;
    int FImageIndex = -1;
    TShortCut FShortCut = 0;
    bool FEnabled = true;
    bool FVisible = true;
    bool FChecked = false;
    std::vector<std::pair<int, TClient>> FClients;
    int FNextId = 1;
};

// The link a client keeps to its action: binding, following and letting go
// in one place. OnChange runs when the client must copy the action's values.
class TWgActionLink {
public:
    TWgActionLink() = default;
    TWgActionLink(const TWgActionLink&) = delete;
    TWgActionLink& operator=(const TWgActionLink&) = delete;
    ~TWgActionLink() { Unbind(); }

    TWgAction* Action() const { return FAction; }
    // Binds to Value (null unbinds) and copies its values at once.
    void Bind(TWgAction* Value);
    std::function<void(TWgAction& Action)> OnChange;

private:
    void Unbind();
    TWgAction* FAction = nullptr;
    int FClient = 0;
};
