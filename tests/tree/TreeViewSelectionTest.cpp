#include "ViewTestUtil.h"

namespace {
// Rows are 17 high; the text of a top-level leaf starts at 22.
constexpr int TextX = 25;
int RowY(int Row) {
    return Row * 17 + 5;
}

struct TSelectionFixture : TViewFixture {
    int AfterChanges = 0;
    int Focusings = 0;
    TSelectionFixture() {
        Build({"a", "b", "c", "d", "e"});
        Paint();
        Tree.OnAfterSelectionChange = [this](TWgTreeModel&) { ++AfterChanges; };
        Tree.OnItemFocused = [this](TWgTreeModel&) { ++Focusings; };
    }
    void Click(int Row, unsigned Shift = 0) {
        View().MouseDown(false, Shift, TextX, RowY(Row));
        View().MouseUp(false, Shift, TextX, RowY(Row));
    }
};
} // namespace

TEST(TreeViewSelection, MouseSequencesInUsualMode) {
    struct Step {
        const char* What;
        int Row;
        unsigned Shift;
        std::string Selection, Focus;
    };
    const Step steps[] = {
        {"plain click", 0, 0, "a", "a"},
        {"shift extends from the anchor", 2, ssShift, "a b c", "c"},
        {"ctrl inverts", 1, ssCtrl, "a c", "b"},
        {"ctrl + shift counts as shift", 3, ssCtrl | ssShift, "a b c d", "d"},
        {"plain click elsewhere", 4, 0, "e", "e"},
        {"ctrl adds", 0, ssCtrl, "a e", "a"},
    };
    TSelectionFixture f;
    for (const Step& s : steps) {
        f.Click(s.Row, s.Shift);
        EXPECT_EQ(f.Selection(), s.Selection) << s.What;
        EXPECT_EQ(f.Focused(), s.Focus) << s.What;
    }
    EXPECT_EQ(f.Tree.SelAnchor(), f.Item("a"));
}

TEST(TreeViewSelection, PressOnASelectedRowWaitsForTheRelease) {
    TSelectionFixture f;
    f.Click(0);
    f.Click(2, ssShift);
    ASSERT_EQ(f.Selection(), "a b c");
    const int before = f.AfterChanges;
    f.View().MouseDown(false, 0, TextX, RowY(1));
    EXPECT_EQ(f.Selection(), "a b c");
    EXPECT_EQ(f.Focused(), "b");
    EXPECT_EQ(f.AfterChanges, before);
    f.View().MouseUp(false, 0, TextX, RowY(1));
    EXPECT_EQ(f.Selection(), "b");
    EXPECT_EQ(f.AfterChanges, before + 1);
}

TEST(TreeViewSelection, SimpleModeTogglesAndSingleSelectionFollowsFocus) {
    TSelectionFixture f;
    f.Tree.SelectionMode = smSimple;
    f.Click(0);
    f.Click(2);
    EXPECT_EQ(f.Selection(), "a c");
    f.Click(0);
    EXPECT_EQ(f.Selection(), "c");
    EXPECT_EQ(f.Tree.SelAnchor(), f.Item("a"));

    TSelectionFixture g;
    g.Tree.SetMultiSelect(false);
    g.Click(1);
    g.Click(3);
    EXPECT_EQ(g.Selection(), "d");
    g.View().KeyDown(VK_UP, 0);
    EXPECT_EQ(g.Selection(), "c");
    EXPECT_EQ(g.Focused(), "c");
}

TEST(TreeViewSelection, EmptySpaceAndKeepRules) {
    TSelectionFixture f;
    f.Click(1);
    f.View().MouseDown(false, 0, TextX, 95); // below the rows
    f.View().MouseUp(false, 0, TextX, 95);
    EXPECT_EQ(f.Focused(), "none");
    EXPECT_EQ(f.Selection(), "b"); // AlwaysKeepSelection
    f.Tree.AlwaysKeepSelection = false;
    f.Tree.AlwaysKeepFocus = true;
    f.Click(2);
    f.View().MouseDown(false, 0, TextX, 95);
    EXPECT_EQ(f.Focused(), "c");
    EXPECT_EQ(f.Selection(), "");
}

TEST(TreeViewSelection, KeyboardMovesAndSpace) {
    struct Step {
        int Key;
        unsigned Shift;
        std::string Selection, Focus;
    };
    const Step steps[] = {
        {VK_DOWN, 0, "a", "a"}, // from no focus: the first row
        {VK_DOWN, 0, "b", "b"},
        {VK_DOWN, ssShift, "b c", "c"},
        {VK_DOWN, ssShift | ssCtrl, "b c d", "d"},
        {VK_UP, ssCtrl, "b c d", "c"},
        {VK_SPACE, 0, "c", "c"}, // deselect all, then toggle the focused row on
        {VK_SPACE, 0, "c", "c"}, // the toggle works on what the deselect left
        {VK_SPACE, ssCtrl, "", "c"},
        {VK_END, 0, "e", "e"},
        {VK_HOME, 0, "a", "a"},
        {VK_NEXT, 0, "e", "e"}, // a page is 5 - 1 rows
        {VK_PRIOR, 0, "a", "a"},
    };
    TSelectionFixture f;
    for (const Step& s : steps) {
        f.View().KeyDown(s.Key, s.Shift);
        EXPECT_EQ(f.Selection(), s.Selection) << s.Key << "/" << s.Shift;
        EXPECT_EQ(f.Focused(), s.Focus) << s.Key << "/" << s.Shift;
    }
}

TEST(TreeViewSelection, DisabledRowsAreSkippedByKeys) {
    TSelectionFixture f;
    f.Item("b")->SetEnabled(false);
    f.Item("e")->SetEnabled(false);
    f.View().KeyDown(VK_HOME, 0);
    f.View().KeyDown(VK_DOWN, 0);
    EXPECT_EQ(f.Focused(), "c");
    f.View().KeyDown(VK_END, 0);
    EXPECT_EQ(f.Focused(), "d");
    f.View().KeyDown(VK_DOWN, 0); // nothing enabled below: no move
    EXPECT_EQ(f.Focused(), "d");
    // A click on a disabled row does nothing.
    f.Click(1);
    EXPECT_EQ(f.Focused(), "d");
}

TEST(TreeViewSelection, KeysExpandCollapseAndWalkTheLevels) {
    TViewFixture f(200, 100);
    f.Build({"a", "  a1", "    a11", "  a2", "b"});
    f.View().KeyDown(VK_HOME, 0);
    f.View().KeyDown(VK_RIGHT, 0);
    EXPECT_TRUE(f.Item("a")->Expanded());
    f.View().KeyDown(VK_RIGHT, 0);
    EXPECT_EQ(f.Focused(), "a1");
    f.View().KeyDown(VK_MULTIPLY, 0);
    EXPECT_TRUE(f.Item("a1")->Expanded());
    f.View().KeyDown(VK_DOWN, 0);
    EXPECT_EQ(f.Focused(), "a11");
    f.View().KeyDown(VK_BACK, 0);
    EXPECT_EQ(f.Focused(), "a1");
    f.View().KeyDown(VK_LEFT, 0); // expanded: collapse
    EXPECT_FALSE(f.Item("a1")->Expanded());
    f.View().KeyDown(VK_LEFT, 0); // collapsed: the parent
    EXPECT_EQ(f.Focused(), "a");
    f.View().KeyDown(VK_DIVIDE, 0);
    EXPECT_FALSE(f.Item("a")->Expanded());
    f.View().KeyDown(VK_DOWN, 0);
    EXPECT_EQ(f.Focused(), "b");
}

TEST(TreeViewSelection, ScrollingFollowsTheFocus) {
    TViewFixture f(200, 100); // five whole rows of 17
    std::vector<std::string> lines;
    for (int i = 0; i < 20; ++i)
        lines.push_back("r" + std::to_string(i));
    f.Build(lines);
    for (int i = 0; i < 6; ++i)
        f.View().KeyDown(VK_DOWN, 0);
    EXPECT_EQ(f.Focused(), "r5");
    EXPECT_EQ(f.View().TopIndex(), 1); // the new row at the bottom
    f.View().KeyDown(VK_END, 0);
    EXPECT_EQ(f.View().TopIndex(), 20 - 6 + 1);
    f.View().KeyDown(VK_HOME, 0);
    EXPECT_EQ(f.View().TopIndex(), 0);
}

TEST(TreeViewSelection, FocusEventWaitsForTheChangeDelay) {
    TSelectionFixture f;
    f.Click(1);
    EXPECT_EQ(f.Focusings, 0);
    EXPECT_EQ(f.Host.Timers[vtChange], 500);
    f.Click(2); // restarts the timer
    EXPECT_TRUE(f.Host.Running(vtChange));
    f.View().TimerFired(vtChange);
    EXPECT_EQ(f.Focusings, 1);
    EXPECT_FALSE(f.Host.Running(vtChange));
    f.Tree.ChangeDelay = 0;
    f.Click(3);
    EXPECT_EQ(f.Focusings, 2);
    // A handler that leaves AllowChange as it came refuses a move by the user.
    f.Tree.OnChanging = [](TCustomWgTree&, TWgTreeItem*, bool&) {};
    f.Click(4);
    EXPECT_EQ(f.Focused(), "d");
    f.Tree.SetFocusedItem(f.Item("e")); // forced
    EXPECT_EQ(f.Focused(), "e");
}

TEST(TreeViewSelection, LevelRules) {
    TViewFixture f(200, 100);
    f.Build({"a", "  a1", "  a2", "b"});
    f.ExpandAll();
    f.Tree.KeepSelectionWithinLevel = true;
    f.View().SetSelected(f.Item("a1"), true);
    f.View().SetSelected(f.Item("b"), true);
    f.View().SetSelected(f.Item("a2"), true);
    EXPECT_EQ(f.Selection(), "a1 a2");
    f.Tree.KeepSelectionWithinLevel = false;
    f.Tree.MultiSelectLevel = 0;
    f.View().DoSelection(f.Item("b"));
    EXPECT_EQ(f.Selection(), "b");
}

TEST(TreeViewSelection, CheckBoxesButtonsAndDoubleClicks) {
    TViewFixture f(200, 100);
    f.Tree.SetShowCheckboxesProp(true);
    f.Build({"a", "  a1", "b", "c"});
    f.Item("b")->SetCheckBoxType(ectThreeState);
    f.Paint();
    int checked = 0;
    f.Tree.OnItemChecked = [&](TWgTreeModel&, TWgTreeItem*) { ++checked; };
    auto click = [&](int X, int Y) {
        f.View().MouseDown(false, 0, X, Y);
        f.View().MouseUp(false, 0, X, Y);
    };
    click(25, 5); // a's check box (17..31)
    EXPECT_TRUE(f.Item("a")->Checked());
    EXPECT_EQ(f.Selection(), ""); // a check box click moves only the focus
    EXPECT_EQ(f.Focused(), "a");
    std::vector<int> states;
    for (int i = 0; i < 3; ++i) {
        click(25, 17 + 5);
        states.push_back(f.Item("b")->CheckBoxState());
    }
    EXPECT_EQ(states, (std::vector<int>{cbGrayed, cbChecked, cbUnchecked}));
    EXPECT_EQ(checked, 4);
    click(8, 5); // a's button
    EXPECT_TRUE(f.Item("a")->Expanded());
    f.Paint();
    f.View().DblClick(0, 40, 5); // on the text: collapses
    EXPECT_FALSE(f.Item("a")->Expanded());
}

TEST(TreeViewSelection, RubberBandSelectsAndRestores) {
    TSelectionFixture f;
    f.Click(4);
    f.Click(1, ssCtrl);
    ASSERT_EQ(f.Selection(), "b e");
    // From the empty space below the rows up over d: all are deselected
    // first, then d and e are in the frame.
    f.View().MouseDown(false, 0, 150, 95);
    f.View().MouseMove(0, 148, 93, true); // not yet 5 pixels away
    EXPECT_FALSE(f.View().FrameSelecting());
    f.View().MouseMove(0, 10, RowY(3), true);
    EXPECT_TRUE(f.View().FrameSelecting());
    EXPECT_EQ(f.Selection(), "d e");
    f.View().MouseMove(0, 10, RowY(4), true);
    EXPECT_EQ(f.Selection(), "e"); // d left the frame and is restored
    EXPECT_FALSE(f.Host.Frames.empty());
    const int before = f.AfterChanges;
    f.View().MouseUp(false, 0, 10, RowY(4));
    EXPECT_FALSE(f.View().FrameSelecting());
    EXPECT_EQ(f.AfterChanges, before + 1);
    // With Ctrl nothing is deselected and the frame inverts.
    f.View().MouseDown(false, ssCtrl, 150, 95);
    f.View().MouseMove(ssCtrl, 10, RowY(3), true);
    EXPECT_EQ(f.Selection(), "d");
    f.View().MouseUp(false, ssCtrl, 10, RowY(3));
}

TEST(TreeViewSelection, QuickEditRequestsADelayedEdit) {
    TSelectionFixture f;
    std::vector<TWgTreeItem*> edits;
    f.Tree.OnEditRequest = [&](TCustomWgTree&, TWgTreeItem* Item, int) { edits.push_back(Item); };
    f.Click(1); // the first click only focuses
    EXPECT_FALSE(f.Host.Running(vtEdit));
    f.Click(1); // a second click on the same row asks for an edit
    EXPECT_EQ(f.Host.Timers[vtEdit], 500);
    f.View().TimerFired(vtEdit);
    EXPECT_EQ(edits, (std::vector<TWgTreeItem*>{f.Item("b")}));
    f.Tree.QuickEditMode = true;
    f.Click(3);
    EXPECT_TRUE(f.Host.Running(vtEdit));
    f.View().DblClick(0, TextX, RowY(3)); // a double click stops it
    EXPECT_FALSE(f.Host.Running(vtEdit));
}

TEST(TreeViewSearch, PrefixSearchWithWrapAndScopes) {
    TViewFixture f(200, 100);
    f.Build({"apple", "banana", "  berry", "blueberry", "cherry", "<html><b>Bold</b>"});
    f.Tree.IncrementalSearch = true;
    int after = 0;
    f.Tree.OnAfterSelectionChange = [&](TWgTreeModel&) { ++after; };
    struct Step {
        const char* Text;
        std::string Focus;
    };
    const Step steps[] = {
        {"B", "banana"},  // upper-cased compare
        {"ba", "banana"}, // the focused row is compared first
        {"bl", "blueberry"},
        {"a", "apple"},              // wraps past the end
        {"be", "berry"},             // collapsed rows count, and are opened
        {"bo", "<html><b>Bold</b>"}, // markup tags removed
        {"zz", "<html><b>Bold</b>"},
    };
    for (const Step& s : steps) {
        f.View().ProcessSearch(WideFromAscii(s.Text));
        EXPECT_EQ(f.Focused(), s.Focus) << s.Text;
    }
    EXPECT_TRUE(f.Item("banana")->Expanded());
    EXPECT_EQ(f.Selection(), ""); // the search never selects
    EXPECT_EQ(after, 6);

    // Typed characters collect until the time-out clears them.
    f.View().KeyPress(u'c');
    f.View().KeyPress(u'h');
    EXPECT_EQ(f.View().SearchText(), u"ch");
    EXPECT_EQ(f.Focused(), "cherry");
    EXPECT_EQ(f.Host.Timers[vtSearch], 500);
    f.View().TimerFired(vtSearch);
    EXPECT_EQ(f.View().SearchText(), u"");

    // Within the parent, the siblings' numbers index the whole list: with
    // the focus on "berry" (an only child) just the first row is searched.
    f.Tree.IncrementalSearchScope = issWithinParent;
    f.Tree.SetFocusedItem(f.Item("berry"));
    f.View().ProcessSearch(u"ch");
    EXPECT_EQ(f.Focused(), "berry");
    f.View().ProcessSearch(u"ap");
    EXPECT_EQ(f.Focused(), "apple");
}
