#include "controls/WgMenu.h"

#include "controls/HTMLCaption.h"

#include <algorithm>

namespace {

WideString KeyName(int Key) {
    switch (Key) {
    case VK_BACK:
        return u"BkSp";
    case VK_TAB:
        return u"Tab";
    case VK_RETURN:
        return u"Enter";
    case VK_ESCAPE:
        return u"Esc";
    case VK_SPACE:
        return u"Space";
    case VK_PRIOR:
        return u"PgUp";
    case VK_NEXT:
        return u"PgDn";
    case VK_END:
        return u"End";
    case VK_HOME:
        return u"Home";
    case VK_LEFT:
        return u"Left";
    case VK_UP:
        return u"Up";
    case VK_RIGHT:
        return u"Right";
    case VK_DOWN:
        return u"Down";
    case VK_INSERT:
        return u"Ins";
    case VK_DELETE:
        return u"Del";
    default:
        break;
    }
    if ((Key >= 'A' && Key <= 'Z') || (Key >= '0' && Key <= '9'))
        return WideString(1, WideChar(Key));
    if (Key >= VK_F1 && Key < VK_F1 + 24) return u"F" + IntToWide(Key - VK_F1 + 1);
    return {};
}

WideChar Upper(WideChar C) {
    return C >= u'a' && C <= u'z' ? WideChar(C - 32) : C;
}

} // namespace

WideString ShortCutToText(TShortCut Value) {
    const WideString name = KeyName(Value & 0xFF);
    if (name.empty()) return {};
    WideString text;
    if (Value & scShift) text += u"Shift+";
    if (Value & scCtrl) text += u"Ctrl+";
    if (Value & scAlt) text += u"Alt+";
    return text + name;
}

WideString StripHotkey(WideView Caption, int* HotkeyPos) {
    WideString shown;
    int pos = -1;
    for (std::size_t i = 0; i < Caption.size(); ++i) {
        if (Caption[i] == u'&') {
            if (i + 1 < Caption.size() && Caption[i + 1] == u'&') {
                shown += u'&';
                ++i;
                continue;
            }
            // The last single ampersand wins, as the platform's prefix rule has it.
            if (i + 1 < Caption.size()) pos = int(shown.size());
            continue;
        }
        shown += Caption[i];
    }
    if (HotkeyPos) *HotkeyPos = pos;
    return shown;
}

WideChar GetHotkey(WideView Caption) {
    // Markup has no accelerator: its "&" begins an entity.
    if (IsHTMLCaption(Caption)) return 0;
    int pos = -1;
    const WideString shown = StripHotkey(Caption, &pos);
    return pos < 0 ? 0 : Upper(shown[std::size_t(pos)]);
}

bool IsAccel(int Key, WideView Caption) {
    const WideChar hot = GetHotkey(Caption);
    return hot != 0 && hot == Upper(WideChar(Key));
}

bool MenuKeyMatches(int Key, WideView Caption) {
    if (GetHotkey(Caption) != 0) return IsAccel(Key, Caption);
    const WideString shown =
        IsHTMLCaption(Caption) ? CaptionPlainText(Caption) : StripHotkey(Caption);
    return !shown.empty() && Upper(shown[0]) == Upper(WideChar(Key));
}

TWgMenuItem::~TWgMenuItem() = default;

void TWgMenuItem::SetCaption(WideView Value) {
    if (FCaption == Value) return;
    FCaption = Value;
    Changed(false);
}

void TWgMenuItem::SetHint(WideView Value) {
    if (FHint == Value) return;
    FHint = Value;
    Changed(false);
}

void TWgMenuItem::SetAction(TWgAction* Value) {
    FActionLink.OnChange = [this](TWgAction& Action) {
        SetCaption(Action.Caption());
        SetHint(Action.Hint());
        SetImageIndex(Action.ImageIndex());
        SetShortCut(Action.ShortCutKey());
        SetEnabled(Action.Enabled());
        SetChecked(Action.Checked());
        SetVisible(Action.Visible());
    };
    FActionLink.Bind(Value);
}

void TWgMenuItem::SetImageIndex(int Value) {
    if (FImageIndex == Value) return;
    FImageIndex = Value;
    Changed(false);
}

void TWgMenuItem::SetShortCut(TShortCut Value) {
    if (FShortCut == Value) return;
    FShortCut = Value;
    Changed(false);
}

void TWgMenuItem::SetEnabled(bool Value) {
    if (FEnabled == Value) return;
    FEnabled = Value;
    Changed(false);
}

void TWgMenuItem::SetVisible(bool Value) {
    if (FVisible == Value) return;
    FVisible = Value;
    // Showing or hiding an item changes which buttons the bar holds.
    Changed(true);
}

void TWgMenuItem::SetChecked(bool Value) {
    if (FChecked == Value) return;
    FChecked = Value;
    Changed(false);
}

TWgMenuItem* TWgMenuItem::Items(int Index) const {
    return Index >= 0 && Index < Count() ? FItems[std::size_t(Index)].get() : nullptr;
}

int TWgMenuItem::IndexOf(const TWgMenuItem* Item) const {
    for (int i = 0; i < Count(); ++i)
        if (FItems[std::size_t(i)].get() == Item) return i;
    return -1;
}

TWgMenuItem* TWgMenuItem::Insert(int Index, std::unique_ptr<TWgMenuItem> Item) {
    if (!Item) return nullptr;
    TWgMenuItem* raw = Item.get();
    raw->FParent = this;
    if (Index < 0 || Index > Count()) Index = Count();
    FItems.insert(FItems.begin() + Index, std::move(Item));
    Changed(true);
    return raw;
}

TWgMenuItem* TWgMenuItem::Add(WideView Caption, int ImageIndex, TShortCut Key) {
    auto item = std::make_unique<TWgMenuItem>(Caption);
    item->FImageIndex = ImageIndex;
    item->FShortCut = Key;
    return Add(std::move(item));
}

std::unique_ptr<TWgMenuItem> TWgMenuItem::Remove(TWgMenuItem* Item) {
    const int index = IndexOf(Item);
    if (index < 0) return nullptr;
    std::unique_ptr<TWgMenuItem> owned = std::move(FItems[std::size_t(index)]);
    FItems.erase(FItems.begin() + index);
    owned->FParent = nullptr;
    Changed(true);
    return owned;
}

void TWgMenuItem::Clear() {
    if (FItems.empty()) return;
    FItems.clear();
    Changed(true);
}

TWgMenuItem* TWgMenuItem::FindShortCut(TShortCut Key) const {
    if (Key == 0) return nullptr;
    for (const auto& item : FItems) {
        if (item->FShortCut == Key) return item.get();
        if (TWgMenuItem* found = item->FindShortCut(Key)) return found;
    }
    return nullptr;
}

bool TWgMenuItem::ChainEnabledAndVisible() const {
    for (const TWgMenuItem* item = this; item; item = item->FParent)
        if (!item->FEnabled || !item->FVisible) return false;
    return true;
}

void TWgMenuItem::Click() {
    if (!FEnabled) return;
    if (OnClick)
        OnClick(this);
    else if (TWgAction* action = Action())
        action->Execute();
}

void TWgMenuItem::Changed(bool Structural) {
    TWgMenuItem* root = this;
    while (root->FParent)
        root = root->FParent;
    if (root->OnChange) root->OnChange(this, Structural);
}

TWgMenu::TWgMenu() : FItems(std::make_unique<TWgMenuItem>()) {
    FItems->OnChange = [this](TWgMenuItem* Item, bool Structural) {
        // Copy first: a subscriber may rebuild and subscribe anew.
        auto subscribers = FSubscribers;
        for (auto& s : subscribers)
            if (s.second) s.second(Item, Structural);
    };
}

TWgMenu::~TWgMenu() {
    auto subscribers = std::move(FSubscribers);
    for (auto& s : subscribers)
        if (s.second) s.second(nullptr, true);
}

int TWgMenu::Subscribe(TChangeEvent Listener) {
    FSubscribers.emplace_back(FNextId, std::move(Listener));
    return FNextId++;
}

void TWgMenu::Unsubscribe(int Id) {
    std::erase_if(FSubscribers, [Id](const auto& S) { return S.first == Id; });
}
