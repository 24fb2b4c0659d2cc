#include "controls/WgMenuBarState.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// A bar of buttons named by their captions that writes down what the state asks of it.
class TFakeBar : public TWgMenuBarHost {
public:
    std::vector<WideString> Captions{u"File", u"Edit", u"View", u"Help"};
    std::vector<bool> Visible{true, true, true, true};
    std::vector<bool> Enabled{true, true, true, true};
    mutable TWgMainMenu Menu;
    std::vector<std::string> Log;
    TWgMenuBarState* State = nullptr;
    bool OpenPopups = true;

    int ButtonCount() const override { return int(Captions.size()); }
    bool ButtonVisible(int I) const override { return Visible[std::size_t(I)]; }
    bool ButtonEnabled(int I) const override { return Enabled[std::size_t(I)]; }
    WideString ButtonCaption(int I) const override { return Captions[std::size_t(I)]; }
    TWgMenuItem* MenuRoot() const override {
        return Menu.Items().Count() ? &Menu.Items() : nullptr;
    }
    void ClosePopup() override {
        Log.push_back("close");
        // A real popup reports its closing; the state must not react while it closes.
        State->PopupClosed(pcrCancel);
    }
    void PressButton(int I) override {
        Log.push_back("press " + std::to_string(I));
        if (OpenPopups) State->PopupOpened(State->KeyboardOpened());
    }
    void RepaintButton(int I) override { Log.push_back("repaint " + std::to_string(I)); }
    void InvalidateButton(int I) override { Log.push_back("invalidate " + std::to_string(I)); }
    void RestoreFocus() override { Log.push_back("restore"); }
    void TakeFocus() override { Log.push_back("take"); }
    void PostMessage(int N, int W, int L) override {
        Log.push_back("post " + std::to_string(N) + " " + std::to_string(W) + " " +
                      std::to_string(L));
    }
};

class MenuBarStateTest : public ::testing::Test {
protected:
    MenuBarStateTest() : State(Bar) { Bar.State = &State; }
    std::vector<std::string> TakeLog() { return std::exchange(Bar.Log, {}); }
    TFakeBar Bar;
    TWgMenuBarState State;
};

using Log = std::vector<std::string>;

} // namespace

TEST_F(MenuBarStateTest, AltAloneMakesTheFirstVisibleButtonHotAndAgainGivesTheFocusBack) {
    Bar.Visible[0] = false;
    EXPECT_FALSE(State.KeyDown(VK_MENU, scAlt));
    State.KeyUp(VK_MENU);
    EXPECT_EQ(State.Hot(), 1);
    EXPECT_EQ(TakeLog(), (Log{"take", "invalidate 1"}));

    State.KeyDown(VK_MENU, scAlt);
    State.KeyUp(VK_MENU);
    EXPECT_EQ(State.Hot(), -1);
    EXPECT_EQ(TakeLog(), (Log{"restore", "repaint 1", "post 1718 0 0"}));
}

TEST_F(MenuBarStateTest, AltWithAnotherKeyBetweenIsNoMenuKey) {
    State.KeyDown(VK_MENU, scAlt);
    State.KeyDown(VK_TAB, scAlt);
    State.KeyUp(VK_TAB);
    State.KeyUp(VK_MENU);
    EXPECT_EQ(State.Hot(), -1);
    EXPECT_TRUE(TakeLog().empty());
}

TEST_F(MenuBarStateTest, ArrowsWalkTheButtonsWithWrapSkippingHiddenOnes) {
    Bar.Visible[2] = false;
    struct Step {
        int Key;
        int Hot;
    } steps[] = {{VK_LEFT, 3}, {VK_LEFT, 1}, {VK_RIGHT, 3}, {VK_RIGHT, 0}, {VK_RIGHT, 1}};
    State.SetHot(0);
    for (const Step& s : steps) {
        EXPECT_TRUE(State.KeyDown(s.Key, 0));
        EXPECT_EQ(State.Hot(), s.Hot) << s.Key;
    }
}

TEST_F(MenuBarStateTest, AVerticalBarWalksWithUpAndDownAndOpensWithRight) {
    State.Vertical = true;
    State.SetHot(0);
    EXPECT_FALSE(State.KeyDown(VK_LEFT, 0));
    EXPECT_TRUE(State.KeyDown(VK_UP, 0));
    EXPECT_EQ(State.Hot(), 3);
    EXPECT_TRUE(State.KeyDown(VK_DOWN, 0));
    EXPECT_EQ(State.Hot(), 0);
    EXPECT_FALSE(State.PopupOpen());
    EXPECT_TRUE(State.KeyDown(VK_RIGHT, 0));
    EXPECT_TRUE(State.PopupOpen());
}

TEST_F(MenuBarStateTest, ArrowsDoNothingWithoutAHotButton) {
    EXPECT_FALSE(State.KeyDown(VK_RIGHT, 0));
    EXPECT_EQ(State.Hot(), -1);
}

TEST_F(MenuBarStateTest, MovingAlongTheBarWithAPopupOpenOpensTheNextOne) {
    State.SetHot(1);
    State.KeyDown(VK_DOWN, 0);
    ASSERT_TRUE(State.PopupOpen());
    EXPECT_TRUE(State.KeyboardOpened());
    TakeLog();
    EXPECT_TRUE(State.KeyDown(VK_RIGHT, 0));
    EXPECT_EQ(TakeLog(), (Log{"close", "repaint 1", "invalidate 2", "post 1716 2 2"}));
    EXPECT_FALSE(State.PopupOpen());
    State.OpenPopupMessage(2, 2);
    EXPECT_TRUE(State.PopupOpen());
    EXPECT_EQ(TakeLog(), (Log{"press 2"}));
}

TEST_F(MenuBarStateTest, EnterDownAndEscapeOnAHotClosedButton) {
    State.SetHot(0);
    TakeLog();
    EXPECT_TRUE(State.KeyDown(VK_RETURN, 0));
    EXPECT_EQ(TakeLog(), (Log{"press 0"}));
    // Escape inside the popup closes it and leaves the button hot.
    State.PopupClosed(pcrCancel);
    EXPECT_EQ(State.Hot(), 0);
    EXPECT_TRUE(State.KeyDown(VK_ESCAPE, 0));
    EXPECT_EQ(State.Hot(), -1);
    EXPECT_EQ(TakeLog(), (Log{"restore", "repaint 0"}));
}

TEST_F(MenuBarStateTest, AltLetterOpensTheButtonOfThatLetter) {
    Bar.Captions[2] = u"&Options";
    EXPECT_TRUE(State.KeyDown('O', scAlt));
    EXPECT_EQ(State.Hot(), 2);
    EXPECT_TRUE(State.PopupOpen());
    EXPECT_TRUE(State.KeyboardOpened());
    Bar.Enabled[3] = false;
    State.PopupClosed(pcrOutside);
    EXPECT_FALSE(State.KeyDown('H', scAlt)); // disabled
    EXPECT_FALSE(State.KeyDown('V', scAlt)); // "View" is now "&Options"
    EXPECT_EQ(State.Hot(), -1);
}

TEST_F(MenuBarStateTest, ShortcutClicksOncePerKeyUpAndSwallowsTheKey) {
    int clicks = 0;
    TWgMenuItem* save = Bar.Menu.Items().Add(u"File")->Add(u"Save", 2, ShortCut('S', scCtrl));
    save->OnClick = [&](TWgMenuItem*) { ++clicks; };
    State.SetHot(0);
    EXPECT_TRUE(State.KeyDown('S', scCtrl));
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(State.Hot(), -1);
    // Held down: repeats do not click again until a key went up.
    EXPECT_TRUE(State.KeyDown('S', scCtrl));
    EXPECT_EQ(clicks, 1);
    State.KeyUp('S');
    EXPECT_TRUE(State.KeyDown('S', scCtrl));
    EXPECT_EQ(clicks, 2);
    // The click opened a dialog, which took the key's release: the next
    // press after the dialog still clicks.
    State.KeyUpElsewhere();
    EXPECT_TRUE(State.KeyDown('S', scCtrl));
    EXPECT_EQ(clicks, 3);
}

TEST_F(MenuBarStateTest, ShortcutsOfDisabledItemsAndUnderDisabledParents) {
    int clicks = 0;
    TWgMenuItem* file = Bar.Menu.Items().Add(u"File");
    TWgMenuItem* save = file->Add(u"Save", 2, ShortCut('S', scCtrl));
    save->OnClick = [&](TWgMenuItem*) { ++clicks; };
    save->SetEnabled(false);
    EXPECT_FALSE(State.KeyDown('S', scCtrl)); // does nothing, the key goes on
    EXPECT_EQ(clicks, 0);
    save->SetEnabled(true);
    file->SetEnabled(false);
    State.KeyUp('S');
    // The item clicks though its parent is disabled, and the key still goes on.
    EXPECT_FALSE(State.KeyDown('S', scCtrl));
    EXPECT_EQ(clicks, 1);
    TWgAction action(u"Save");
    action.SetShortCut(ShortCut('S', scCtrl));
    save->SetAction(&action);
    file->SetEnabled(true);
    State.KeyUp('S');
    EXPECT_TRUE(State.KeyDown('S', scCtrl)); // an action's item is never clicked here
    EXPECT_EQ(clicks, 1);
}

TEST_F(MenuBarStateTest, AltWithAnOpenPopupClosesItWithoutMakingTheBarHotAgain) {
    State.SetHot(0);
    State.KeyDown(VK_DOWN, 0);
    TakeLog();
    EXPECT_TRUE(State.KeyDown(VK_MENU, scAlt));
    State.KeyUp(VK_MENU);
    EXPECT_EQ(State.Hot(), -1);
    EXPECT_FALSE(State.PopupOpen());
    EXPECT_EQ(TakeLog(), (Log{"restore", "close", "repaint 0", "post 1718 0 0"}));
}

TEST_F(MenuBarStateTest, MouseTracking) {
    State.MouseMove(1, true, {10, 5});
    EXPECT_EQ(State.Hot(), 1);
    State.MouseDown(1);
    ASSERT_TRUE(State.PopupOpen());
    EXPECT_FALSE(State.KeyboardOpened());
    TakeLog();
    // A move that did not move (a popup opening under the pointer) changes nothing.
    State.MouseMove(3, true, {10, 5});
    EXPECT_EQ(State.Hot(), 1);
    State.MouseMove(3, true, {60, 5});
    EXPECT_EQ(State.Hot(), 3);
    EXPECT_EQ(TakeLog(), (Log{"close", "repaint 1", "invalidate 3", "post 1716 1 3"}));
    State.OpenPopupMessage(1, 3);
    // Outside the bar the open popup keeps the button hot ...
    State.MouseMove(-1, false, {60, 80});
    EXPECT_EQ(State.Hot(), 3);
    // ... a second click on it closes the popup and keeps it hot ...
    State.MouseDown(3);
    EXPECT_FALSE(State.PopupOpen());
    EXPECT_EQ(State.Hot(), 3);
    // ... and without a popup, leaving the bar clears it.
    State.MouseMove(-1, false, {60, 90});
    EXPECT_EQ(State.Hot(), -1);
}

TEST_F(MenuBarStateTest, PopupCloseReasons) {
    const std::pair<TWgPopupCloseReason, int> cases[] = {
        {pcrCancel, 2}, {pcrOutside, -1}, {pcrItemClicked, -1}};
    for (const auto& [reason, hot] : cases) {
        State.SetHot(2);
        State.KeyDown(VK_DOWN, 0);
        State.PopupClosed(reason);
        EXPECT_EQ(State.Hot(), hot) << int(reason);
        EXPECT_FALSE(State.PopupOpen());
        State.SetHot(-1);
    }
}

TEST_F(MenuBarStateTest, AnEmptyOrAllHiddenBarHasNoNextButton) {
    Bar.Visible = {false, false, false, false};
    EXPECT_EQ(State.NextButton(-1, 1), -1);
    State.AltAlone();
    EXPECT_EQ(State.Hot(), -1);
    Bar.Captions.clear();
    Bar.Visible.clear();
    EXPECT_EQ(State.NextButton(0, -1), -1);
}

TEST_F(MenuBarStateTest, F10StandsForAltAloneUnlessItIsAShortcut) {
    EXPECT_TRUE(State.KeyDown(VK_F10, 0));
    EXPECT_EQ(State.Hot(), 0);
    EXPECT_TRUE(State.KeyboardMode());
    EXPECT_EQ(TakeLog(), (Log{"take", "invalidate 0"}));
    EXPECT_TRUE(State.KeyDown(VK_F10, 0)); // again: back where the focus was
    EXPECT_EQ(State.Hot(), -1);
    EXPECT_EQ(TakeLog(), (Log{"restore", "repaint 0", "post 1718 0 0"}));
    // Shift+F10 is no menu key, and an item's own F10 shortcut wins.
    EXPECT_FALSE(State.KeyDown(VK_F10, scShift));
    EXPECT_EQ(State.Hot(), -1);
    int clicks = 0;
    TWgMenuItem* item = Bar.Menu.Items().Add(u"File")->Add(u"Run", -1, ShortCut(VK_F10, 0));
    item->OnClick = [&](TWgMenuItem*) { ++clicks; };
    EXPECT_TRUE(State.KeyDown(VK_F10, 0));
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(State.Hot(), -1);
}

// Letters alone pick a button only while the keyboard put the bar hot; a
// bar hot under the pointer leaves typing alone, and in the keyboard's stay
// any key that is not the bar's own ends it and goes on.
TEST_F(MenuBarStateTest, LettersAloneBelongToTheKeyboardsStayInTheBar) {
    State.MouseMove(1, true, {10, 5});
    EXPECT_FALSE(State.KeyboardMode());
    EXPECT_FALSE(State.KeyDown('H', 0));
    EXPECT_FALSE(State.PopupOpen());
    EXPECT_EQ(State.Hot(), 1);
    State.MouseLeave();

    State.KeyDown(VK_MENU, scAlt);
    State.KeyUp(VK_MENU);
    EXPECT_TRUE(State.KeyDown('H', 0));
    EXPECT_EQ(State.Hot(), 3);
    EXPECT_TRUE(State.PopupOpen());
    State.PopupClosed(pcrCancel); // Escape in the popup: Help stays hot
    EXPECT_EQ(State.Hot(), 3);
    EXPECT_FALSE(State.KeyDown(VK_SHIFT, scShift)); // a modifier alone keeps the stay
    EXPECT_EQ(State.Hot(), 3);
    EXPECT_FALSE(State.KeyDown('Q', 0)); // no button of that letter
    EXPECT_EQ(State.Hot(), -1);
    EXPECT_FALSE(State.KeyboardMode());
    EXPECT_FALSE(State.KeyDown('H', 0)); // typing again reaches the control
    EXPECT_EQ(State.Hot(), -1);
}
