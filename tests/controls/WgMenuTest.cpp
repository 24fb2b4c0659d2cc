#include "controls/WgMenu.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

TEST(WgMenu, HotkeysAndShownCaptions) {
    struct Case {
        const char16_t* Caption;
        const char16_t* Shown;
        int Pos;
        WideChar Hotkey;
    } cases[] = {
        {u"&File", u"File", 0, u'F'},
        {u"Save &as", u"Save as", 5, u'A'},
        {u"Block && folding ", u"Block & folding ", -1, 0},
        {u"a&&b&c", u"a&bc", 3, u'C'},
        {u"trailing&", u"trailing", -1, 0},
        {u"&One &Two", u"One Two", 4, u'T'}, // the last single ampersand wins
        {u"", u"", -1, 0},
    };
    for (const auto& c : cases) {
        int pos = -2;
        EXPECT_EQ(StripHotkey(c.Caption, &pos), WideString(c.Shown))
            << std::u16string(c.Caption).size();
        EXPECT_EQ(pos, c.Pos);
        EXPECT_EQ(GetHotkey(c.Caption), c.Hotkey);
    }
}

TEST(WgMenu, MenuKeysFallBackToTheFirstLetterOnlyWithoutAccelerator) {
    EXPECT_TRUE(MenuKeyMatches('F', u"File"));
    EXPECT_TRUE(MenuKeyMatches('A', u"Save &As..."));
    EXPECT_FALSE(MenuKeyMatches('S', u"Save &As..."));
    EXPECT_FALSE(MenuKeyMatches('X', u""));
    EXPECT_TRUE(IsAccel('a', u"Save &As"));
    // Markup answers to the first letter of its text; "&amp;" is no accelerator.
    EXPECT_TRUE(MenuKeyMatches('H', u"<html><u>H</u>elp"));
    EXPECT_TRUE(MenuKeyMatches('S', u"<html><b>Save</b> &amp; close"));
    EXPECT_FALSE(MenuKeyMatches('A', u"<html><b>Save</b> &amp; close"));
    EXPECT_FALSE(MenuKeyMatches('<', u"<html>x"));
}

TEST(WgMenu, ShortCutTexts) {
    const std::pair<TShortCut, const char16_t*> cases[] = {
        {ShortCut('S', scCtrl), u"Ctrl+S"},
        {ShortCut('N', scCtrl | scShift), u"Shift+Ctrl+N"},
        {ShortCut(VK_F1, 0), u"F1"},
        {ShortCut(VK_F1 + 11, scAlt), u"Alt+F12"},
        {ShortCut(VK_DELETE, 0), u"Del"},
        {ShortCut('7', scCtrl), u"Ctrl+7"},
        {0, u""},
        {ShortCut(0x07, scCtrl), u""}, // a key without a name
    };
    for (const auto& [key, text] : cases)
        EXPECT_EQ(ShortCutToText(key), WideString(text)) << key;
}

TEST(WgMenu, ShortcutSearchIsDepthFirstAndChainChecksParents) {
    TWgMainMenu menu;
    TWgMenuItem* file = menu.Items().Add(u"File");
    TWgMenuItem* sub = file->Add(u"Recent");
    TWgMenuItem* deep = sub->Add(u"One", -1, ShortCut('S', scCtrl));
    TWgMenuItem* later = menu.Items().Add(u"Edit")->Add(u"Save", -1, ShortCut('S', scCtrl));
    EXPECT_EQ(menu.Items().FindShortCut(ShortCut('S', scCtrl)), deep);
    EXPECT_EQ(menu.Items().FindShortCut(0), nullptr);
    EXPECT_TRUE(deep->ChainEnabledAndVisible());
    sub->SetVisible(false);
    EXPECT_FALSE(deep->ChainEnabledAndVisible());
    sub->SetVisible(true);
    file->SetEnabled(false);
    EXPECT_FALSE(deep->ChainEnabledAndVisible());
    EXPECT_TRUE(later->ChainEnabledAndVisible());
}

TEST(WgMenu, ClickFiresOnlyWhenEnabled) {
    TWgMenuItem item(u"Go");
    int clicks = 0;
    item.OnClick = [&](TWgMenuItem* Sender) {
        EXPECT_EQ(Sender, &item);
        ++clicks;
    };
    item.Click();
    item.SetEnabled(false);
    item.Click();
    EXPECT_EQ(clicks, 1);
}

TEST(WgMenu, SubscribersHearStructuralAndPlainChangesUntilUnsubscribed) {
    TWgMainMenu menu;
    std::vector<std::string> log;
    const int id = menu.Subscribe([&](TWgMenuItem* Item, bool Structural) {
        log.push_back((Structural ? "S:" : "P:") +
                      std::string(Item->Caption().begin(), Item->Caption().end()));
    });
    TWgMenuItem* file = menu.Items().Add(u"File");
    TWgMenuItem* open = file->Add(u"Open");
    open->SetCaption(u"Open...");
    open->SetCaption(u"Open..."); // unchanged: no event
    open->SetEnabled(false);
    open->SetVisible(false);
    auto removed = file->Remove(open);
    ASSERT_TRUE(removed);
    EXPECT_EQ(removed->Parent(), nullptr);
    menu.Unsubscribe(id);
    file->SetCaption(u"Datei");
    const std::vector<std::string> expected = {"S:",        "S:File",    "P:Open...",
                                               "P:Open...", "S:Open...", "S:File"};
    EXPECT_EQ(log, expected);
}

TEST(WgMenu, AnItemFollowsItsActionAndRunsIt) {
    std::vector<std::string> log;
    TWgMainMenu menu;
    menu.Subscribe([&](TWgMenuItem* Item, bool Structural) {
        if (!Item) return; // the menu goes
        log.push_back((Structural ? "S:" : "P:") +
                      std::string(Item->Caption().begin(), Item->Caption().end()));
    });
    TWgMenuItem* item = menu.Items().Add(u"File")->Add(u"old");
    log.clear();
    int runs = 0;
    TWgAction action(u"Save");
    action.SetHint(u"Save|Saves the definition");
    action.SetImageIndex(2);
    action.SetShortCut(ShortCut('S', scCtrl));
    action.OnExecute = [&](TWgAction* Sender) {
        EXPECT_EQ(Sender, &action);
        ++runs;
    };
    item->SetAction(&action);
    EXPECT_TRUE(item->HasAction());
    EXPECT_EQ(item->Caption(), u"Save");
    EXPECT_EQ(item->Hint(), u"Save|Saves the definition");
    EXPECT_EQ(item->ImageIndex(), 2);
    EXPECT_EQ(menu.Items().FindShortCut(ShortCut('S', scCtrl)), item);
    EXPECT_EQ(log, (std::vector<std::string>{"P:Save", "P:Save", "P:Save", "P:Save"}));

    item->Click();
    EXPECT_EQ(runs, 1);
    // A change of the action reaches the item and the menu's listeners.
    log.clear();
    action.SetEnabled(false);
    action.SetCaption(u"Save now");
    EXPECT_FALSE(item->Enabled());
    EXPECT_EQ(log, (std::vector<std::string>{"P:Save", "P:Save now"}));
    item->Click(); // disabled: nothing runs
    action.SetEnabled(true);
    action.SetVisible(false);
    EXPECT_FALSE(item->Visible());
    // An OnClick of the item wins over the action.
    int clicks = 0;
    item->OnClick = [&](TWgMenuItem*) { ++clicks; };
    item->SetVisible(true);
    item->Click();
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(clicks, 1);
}

TEST(WgMenu, ActionAndItemMayGoInEitherOrder) {
    TWgMenuItem root;
    {
        TWgAction action(u"Gone");
        root.Add(u"a")->SetAction(&action);
        root.Add(u"b")->SetAction(&action);
        root.Remove(root.Items(1)); // destroyed while bound
        action.SetCaption(u"Still here");
        EXPECT_EQ(root.Items(0)->Caption(), u"Still here");
    }
    // The action went: the item keeps its values and lets go.
    EXPECT_FALSE(root.Items(0)->HasAction());
    EXPECT_EQ(root.Items(0)->Caption(), u"Still here");
    int clicks = 0;
    root.Items(0)->OnClick = [&](TWgMenuItem*) { ++clicks; };
    root.Items(0)->Click();
    EXPECT_EQ(clicks, 1);

    TWgAction other(u"x");
    root.Items(0)->SetAction(&other);
    root.Items(0)->SetAction(nullptr);
    other.SetCaption(u"y"); // no longer followed
    EXPECT_EQ(root.Items(0)->Caption(), u"x");
}

TEST(WgMenu, AHintChangeIsAChangeOfTheItem) {
    TWgMainMenu menu;
    TWgMenuItem* item = menu.Items().Add(u"File");
    int changes = 0;
    menu.Subscribe([&](TWgMenuItem* Item, bool Structural) {
        if (!Item) return; // the menu goes
        EXPECT_EQ(Item, item);
        EXPECT_FALSE(Structural);
        ++changes;
    });
    item->SetHint(u"Files|Open and save definitions");
    item->SetHint(u"Files|Open and save definitions");
    EXPECT_EQ(changes, 1);
}
