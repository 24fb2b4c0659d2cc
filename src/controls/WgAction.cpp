#include "controls/WgAction.h"

#include <algorithm>

TWgAction::~TWgAction() {
    auto clients = std::move(FClients);
    for (auto& c : clients)
        if (c.second) c.second(this, true);
}

#define WG_ACTION_SETTER(Name, Type, Field)                                                        \
    void TWgAction::Set##Name(Type Value) {                                                        \
        if (Field == Value) return;                                                                \
        Field = Value;                                                                             \
        Changed();                                                                                 \
    }

WG_ACTION_SETTER(Caption, WideView, FCaption)
WG_ACTION_SETTER(Hint, WideView, FHint)
WG_ACTION_SETTER(ImageIndex, int, FImageIndex)
WG_ACTION_SETTER(ShortCut, TShortCut, FShortCut)
WG_ACTION_SETTER(Enabled, bool, FEnabled)
WG_ACTION_SETTER(Visible, bool, FVisible)
WG_ACTION_SETTER(Checked, bool, FChecked)

#undef WG_ACTION_SETTER

bool TWgAction::Execute() {
    if (!FEnabled || !OnExecute) return false;
    OnExecute(this);
    return true;
}

int TWgAction::AddClient(TClient Client) {
    FClients.emplace_back(FNextId, std::move(Client));
    return FNextId++;
}

void TWgAction::RemoveClient(int Id) {
    std::erase_if(FClients, [Id](const auto& C) { return C.first == Id; });
}

void TWgAction::Changed() {
    // By id, looked up at each call: a client may let go of the action, or
    // another client, while it hears of the change.
    std::vector<int> ids;
    for (const auto& c : FClients)
        ids.push_back(c.first);
    for (int id : ids) {
        auto it = std::find_if(FClients.begin(), FClients.end(),
                               [id](const auto& C) { return C.first == id; });
        if (it == FClients.end() || !it->second) continue;
        TClient client = it->second;
        client(this, false);
    }
}

void TWgActionLink::Bind(TWgAction* Value) {
    if (FAction == Value) return;
    Unbind();
    FAction = Value;
    if (!FAction) return;
    FClient = FAction->AddClient([this](TWgAction* Action, bool Gone) {
        if (Gone) {
            // The action is going: keep the values it gave, drop the link.
            FAction = nullptr;
            FClient = 0;
            return;
        }
        if (OnChange) OnChange(*Action);
    });
    if (OnChange) OnChange(*FAction);
}

void TWgActionLink::Unbind() {
    if (FAction) FAction->RemoveClient(FClient);
    FAction = nullptr;
    FClient = 0;
}
