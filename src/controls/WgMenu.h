#pragma once
// The menu model shared by the main menu, the menu bar and popup menus:
// items with caption, accelerator, glyph, shortcut, state and sub-items.
// Widgets only show it; every rule about finding, enabling and clicking an
// item lives here.

#include "base/Canvas.h"
#include "base/Geometry.h"
#include "base/ImageList.h"
#include "base/Types.h"
#include "base/VirtualKeys.h"
#include "controls/WgAction.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>
// "Ctrl+Shift+S", "F1", "Del"; empty for 0.
WideString ShortCutToText(TShortCut Value);
// The upper-cased character after a single "&" ("&&" is a literal ampersand),
// or 0; a caption in markup ("<html>...") has none.
WideChar GetHotkey(WideView Caption);
// Caption as shown: "&&" becomes "&", a single "&" disappears. HotkeyPos
// receives the zero-based index of the accelerator in the result, or -1.
WideString StripHotkey(WideView Caption, int* HotkeyPos = nullptr);
// True when Key (an upper-case character code) is the accelerator of Caption.
bool IsAccel(int Key, WideView Caption);
// The key a menu answers for Caption: its accelerator, or without one the
// first character of the caption as shown (of its text, for markup), as
// window menus do.
bool MenuKeyMatches(int Key, WideView Caption);

class TWgMenuItem;
using TWgMenuItemEvent = std::function<void(TWgMenuItem* Sender)>;
using TWgDrawMenuItemEvent =
    std::function<void(TWgMenuItem* Sender, TCanvas& Canvas, TRect R, bool Selected)>;

class TWgMenuItem {
public:
    TWgMenuItem() = default;
    explicit TWgMenuItem(WideView Caption) : FCaption(Caption) {}
    TWgMenuItem(const TWgMenuItem&) = delete;
    TWgMenuItem& operator=(const TWgMenuItem&) = delete;
    virtual ~TWgMenuItem();

    const WideString& Caption() const { return FCaption; }
    void SetCaption(WideView Value);
    // A caption of "-" makes the item a separator.
    bool IsLine() const { return FCaption == u"-"; }
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
    const WideString& Hint() const { return FHint; }
    void SetHint(WideView Value);
    int Tag = 0;
    // Binds the item to an action (null lets go): the item takes the
    // action's caption, hint, image, shortcut and state, now and at every
    // change of it, and a click without OnClick runs the action. The menu
    // bar's shortcut handling leaves such an item to the action.
    TWgAction* Action() const { return FActionLink.Action(); }
    void SetAction(TWgAction* Value);
    bool HasAction() const { return Action() != nullptr; }

    TWgMenuItem* Parent() const { return FParent; }
    int Count() const { return int(FItems.size()); }
    TWgMenuItem* Items(int Index) const;
    int IndexOf(const TWgMenuItem* Item) const;
    // Takes ownership; Index -1 appends. Gives the item back.
    TWgMenuItem* Insert(int Index, std::unique_ptr<TWgMenuItem> Item);
    TWgMenuItem* Add(std::unique_ptr<TWgMenuItem> Item) { return Insert(-1, std::move(Item)); }
    TWgMenuItem* Add(WideView Caption, int ImageIndex = -1, TShortCut Key = 0);
    std::unique_ptr<TWgMenuItem> Remove(TWgMenuItem* Item);
    void Clear();

    // Depth-first search of the sub-items (not this item) for a shortcut.
    TWgMenuItem* FindShortCut(TShortCut Key) const;
    // The item and every parent up to the root are enabled and visible.
    bool ChainEnabledAndVisible() const;

    // Fires OnClick, or without one runs the action, when the item is
    // enabled; a disabled item does nothing.
    void Click();

    TWgMenuItemEvent OnClick;
    TWgDrawMenuItemEvent OnDrawItem;
    // Fired on the root with the changed item (Structural: items came or went).
    std::function<void(TWgMenuItem* Item, bool Structural)> OnChange;

protected:
    void Changed(bool Structural);

private:
    WideString FCaption;
    int FImageIndex = -1;
    TShortCut FShortCut = 0;
    bool FEnabled = true;
    bool FVisible = true;
    bool FChecked = false;
    WideString FHint;
    TWgMenuItem* FParent = nullptr;
    std::vector<std::unique_ptr<TWgMenuItem>> FItems;
    TWgActionLink FActionLink;
};

enum TWgMenuDrawStyle : std::uint8_t { tdsNormal = 0, tdsOfficeXP = 1 };

// A menu: a root item whose sub-items are the top-level entries, and the
// settings the bar and the popups copy from it.
class TWgMenu {
public:
    TWgMenu();
    // Tells the listeners, with a null item, that the menu goes away.
    virtual ~TWgMenu();
    TWgMenuItem& Items() { return *FItems; }
    const TWgMenuItem& Items() const { return *FItems; }

    const TWgImageList* Images = nullptr;
    // Glyphs of the item under the pointer and of disabled items, by the
    // same index; without one the plain glyph serves, greyed when disabled.
    const TWgImageList* HotImages = nullptr;
    const TWgImageList* DisabledImages = nullptr;
    bool OwnerDraw = false;
    TWgMenuDrawStyle DrawStyle = tdsNormal;
    // Pixels added to the text height of an item, and on each side of a glyph.
    int ItemSpace = 0;
    int ImageMargin = 0;
    bool SystemFont = true;
    bool IsHTML = false;
    TFont Font;
    int Tag = 0;

    // Listeners of every change below the root; Subscribe gives the id to
    // unsubscribe with.
    using TChangeEvent = std::function<void(TWgMenuItem* Item, bool Structural)>;
    int Subscribe(TChangeEvent Listener);
    void Unsubscribe(int Id);

private:
    std::unique_ptr<TWgMenuItem> FItems;
    std::vector<std::pair<int, TChangeEvent>> FSubscribers;
    int FNextId = 1;
};

class TWgMainMenu : public TWgMenu {};
