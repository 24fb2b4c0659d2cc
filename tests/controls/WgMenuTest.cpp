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
