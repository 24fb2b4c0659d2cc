#include "ViewTestUtil.h"
#include "tree/WgTreeErrors.h"

namespace {

std::vector<std::string> Rows(int Count) {
    std::vector<std::string> lines;
    for (int i = 0; i < Count; ++i)
        lines.push_back("r" + std::to_string(i));
    return lines;
}

} // namespace

TEST(TreeViewLayout, LineHeightFollowsIndentFontImagesAndCheckBoxes) {
    TWgImageList tall{16, 20, {}};
    TMemoryBitmap glyphs(6 * 18, 18);
    struct Case {
        const char* Name;
        std::function<void(TCustomWgTree&)> Setup;
        int Height;
    };
    const Case cases[] = {
        {"default indent", [](TCustomWgTree&) {}, 17},
        {"indent 8: the font wins", [](TCustomWgTree& T) { T.SetItemIndent(8); }, 15},
        {"tall images", [&](TCustomWgTree& T) { T.SetItemIndent(8), T.Images = &tall; }, 20},
        {"images hidden",
         [&](TCustomWgTree& T) { T.SetItemIndent(8), T.Images = &tall, T.SetShowImages(false); },
         15},
        {"horizontal lines", [](TCustomWgTree& T) { T.SetItemIndent(8), T.HorizontalLines = true; },
         16},
        {"bar style beats lines",
         [](TCustomWgTree& T) { T.SetItemIndent(8), T.HorizontalLines = true, T.BarStyle = true; },
         17},
        {"custom check glyphs",
         [&](TCustomWgTree& T) {
             T.SetItemIndent(8), T.SetShowCheckboxesProp(true), T.CustomCheckboxes = true,
                                                                T.CheckBoxGlyph = glyphs;
         },
         18},
        {"14 points: 19 pixels + 4",
         [](TCustomWgTree& T) {
             T.SetFont({14, 0, "Tahoma"}), T.SetItemIndent(8);
         },
         23},
    };
    for (const Case& c : cases) {
        TCustomWgTree tree;
        c.Setup(tree);
        EXPECT_EQ(tree.View().ComputeLineHeight(), c.Height) << c.Name;
    }
}

TEST(TreeViewLayout, RowCountsAndTheVisibleList) {
    TViewFixture f(200, 100);
    f.Tree.SetItemIndent(8); // line height 15
    f.Build(Rows(20));
    ASSERT_EQ(f.Tree.LineHeight(), 15);
    EXPECT_EQ(f.View().GetVisCount(), 6);
    EXPECT_EQ(f.View().GetVisiCount(), 7);
    EXPECT_EQ(f.View().VisibleList().size(), 7u); // the partly visible last row counts
    EXPECT_EQ(f.View().BottomIndex(), 6);

    struct Case {
        int Pos, Top, Bottom, Listed;
    };
    // The last top position is 20 - 7 + 1 = 14, showing six whole rows.
    const Case cases[] = {{3, 3, 9, 7}, {100, 14, 19, 6}, {-5, 0, 6, 7}, {14, 14, 19, 6}};
    for (const Case& c : cases) {
        f.View().SetVScroll(c.Pos);
        EXPECT_EQ(f.View().TopIndex(), c.Top) << c.Pos;
        EXPECT_EQ(f.View().BottomIndex(), c.Bottom) << c.Pos;
        EXPECT_EQ(int(f.View().VisibleList().size()), c.Listed) << c.Pos;
    }
    f.Tree.Items().Clear();
    EXPECT_EQ(f.View().TopIndex(), 0);
    EXPECT_EQ(f.View().BottomIndex(), 0);
    int column = 5;
    TWgItemPart part = ipMainText;
    EXPECT_EQ(f.View().GetItemAt(10, 10, column, part), nullptr);
    EXPECT_EQ(part, ipOutside);
}

TEST(TreeViewLayout, CollapsedAndFilteredSubtreesAreJumped) {
    TViewFixture f(200, 300);
    f.Build({"a", "  a1", "    a11", "  a2", "b", "  b1", "c"});
    EXPECT_EQ(f.Tree.TotalVisible(), 3);
    f.Item("a")->Expand(false);
    EXPECT_EQ(f.Tree.TotalVisible(), 5);
    f.Tree.SetFilteredVisibility(true);
    f.Item("a1")->SetHidden(true);
    EXPECT_EQ(f.Tree.TotalVisible(), 4);
    std::string listed;
    for (TWgTreeItem* item : f.View().VisibleList())
        listed += AsciiFromWide(item->Text()) + " ";
    EXPECT_EQ(listed, "a a2 b c ");
}

TEST(TreeViewLayout, NestedLockRepaintsOnceAtTheLastRelease) {
    TViewFixture f(200, 100);
    f.Tree.SetItemIndent(8);
    f.Build(Rows(3));
    f.Host.Invalidated.clear();
    f.Tree.BeginUpdate();
    f.Tree.BeginUpdate();
    f.Tree.MarkStale(tsmRedrawMark | tsmUpdated);
    f.Tree.EndUpdate();
    EXPECT_TRUE(f.Host.Invalidated.empty());
    f.Tree.EndUpdate();
    // Without ClearAll only the rows are invalidated.
    ASSERT_EQ(f.Host.Invalidated.size(), 1u);
    EXPECT_EQ(f.Host.Invalidated[0], Rect(0, 0, 200, 45));
    f.Host.Invalidated.clear();
    f.Tree.DisplayChanged(tsmClearAll);
    ASSERT_EQ(f.Host.Invalidated.size(), 1u);
    EXPECT_EQ(f.Host.Invalidated[0], Rect(0, 0, 200, 100));
}

TEST(TreeViewLayout, PaintWhileLockedIsDiscardedAndMarksClearAll) {
    TViewFixture f;
    f.Build({"a"});
    f.Tree.BeginUpdate();
    TRecordingCanvas canvas;
    f.View().Paint(canvas, Rect(0, 0, 200, 100));
    EXPECT_TRUE(canvas.Ops.empty());
    EXPECT_TRUE(f.View().Marks() & tsmClearAll);
    f.Tree.EndUpdate();
}

TEST(TreeViewLayout, ScrollBarsReportRangesPagesAndNeeds) {
    TViewFixture f(200, 100);
    f.Tree.SetItemIndent(8);
    f.Build(Rows(5));
    EXPECT_FALSE(f.View().VScrollBar().Needed);
    f.Build(Rows(15));
    const TWgScrollBarInfo v = f.View().VScrollBar();
    EXPECT_TRUE(v.Needed);
    EXPECT_EQ(v.Max, 19);
    EXPECT_EQ(v.Page, 5);
    f.Tree.HideVertScrollBar = true;
    f.View().UpdateScrollBars();
    EXPECT_FALSE(f.View().VScrollBar().Visible);
    f.Tree.ForcedScrollBars = 2;
    f.View().UpdateScrollBars();
    EXPECT_TRUE(f.View().VScrollBar().Visible);

    // Columns: the range is the sections' width, the page the client width + 1.
    f.Tree.SetShowColumnsProp(true);
    f.Tree.Header().Sections().AddSection()->SetWidth(150);
    f.Tree.Header().Sections().AddSection()->SetWidth(120);
    f.View().UpdateScrollBars();
    EXPECT_TRUE(f.View().HScrollBar().Needed);
    EXPECT_EQ(f.View().HScrollBar().Max, 270);
    EXPECT_EQ(f.View().HScrollBar().Page, 201);
    f.View().SetHPosition(500);
    EXPECT_EQ(f.View().LeftPosition(), 70);
    EXPECT_EQ(f.Tree.Header().LeftPos(), 70);
    f.Tree.Header().Sections().GetSection(1)->SetWidth(20);
    f.View().UpdateScrollBars();
    EXPECT_FALSE(f.View().HScrollBar().Needed);
    EXPECT_EQ(f.View().LeftPosition(), 0);
}

TEST(TreeViewLayout, MainCellLayoutPerLevel) {
    TViewFixture f(200, 200);
    f.Build({"a", "  b", "    c", "  d", "e"});
    f.ExpandAll();
    struct Case {
        const char* Text;
        int TextLeft;
        bool Button;
        int ButtonLeft;
        std::vector<TWgTreeLine> Lines;
    };
    // Indent 17; level 0 has no lines without ShowRoot; rows 17 high.
    const Case cases[] = {
        {"a", 22, true, 0, {}},
        {"b", 39, true, 17, {{25, 25, 34, 25}, {25, 17, 25, 34}}},
        {"c", 56, false, 0, {{25, 34, 25, 51}, {42, 42, 51, 42}, {42, 34, 42, 42}}},
        {"d", 39, false, 0, {{25, 59, 34, 59}, {25, 51, 25, 59}}},
        {"e", 22, false, 0, {}},
    };
    for (const Case& c : cases) {
        TWgTreeItem* item = f.Item(c.Text);
        const int row = item->VisIndex();
        const TWgMainCellLayout L = f.View().LayoutMainCell(item, f.View().GetItemRect(row));
        EXPECT_EQ(L.TextLeft, c.TextLeft) << c.Text;
        EXPECT_EQ(L.Button, c.Button) << c.Text;
        if (c.Button) {
            EXPECT_EQ(L.ButtonSlot.Left, c.ButtonLeft) << c.Text;
        }
        EXPECT_EQ(L.Lines, c.Lines) << c.Text;
    }
    // With ShowRoot the top level has its lines; the first row starts at its middle.
    f.Tree.SetShowRoot(true);
    const TWgMainCellLayout a = f.View().LayoutMainCell(f.Item("a"), f.View().GetItemRect(0));
    EXPECT_EQ(a.Lines, (std::vector<TWgTreeLine>{{8, 8, 17, 8}, {8, 8, 8, 17}}));
}

TEST(TreeViewLayout, IndentDivisionsForIndentEight) {
    TViewFixture f(200, 100);
    f.Tree.SetItemIndent(8);
    f.Tree.ShowRootButtons = false;
    f.Tree.DisplayChanged();
    f.Build({"a", "  b", "    c"});
    f.ExpandAll();
    // Neither root lines nor root buttons: indent div 5 is 1, indent div 3 is 2.
    const TWgMainCellLayout a = f.View().LayoutMainCell(f.Item("a"), f.View().GetItemRect(0));
    EXPECT_FALSE(a.Button);
    EXPECT_EQ(a.TextLeft, 1 + 2);
    const TWgMainCellLayout b = f.View().LayoutMainCell(f.Item("b"), f.View().GetItemRect(1));
    EXPECT_EQ(b.ButtonSlot.Left, 1);
    EXPECT_EQ(b.TextLeft, 1 + 8 + 2);
}

TEST(TreeViewLayout, HitTestParts) {
    TViewFixture f(200, 100);
    TWgImageList images{16, 16, {TMemoryBitmap(16, 16), TMemoryBitmap(16, 16)}};
    f.Tree.Images = &images;
    f.Tree.SetShowCheckboxesProp(true);
    f.Build({"a", "  b", "c"});
    f.Item("a")->StaticDataEx()->ImageIndex = 1;
    f.Paint();
    const int lh = f.Tree.LineHeight();
    ASSERT_EQ(lh, 17);
    // Row a: button slot 0..16, check box 17..31, gap 5, image 37..52,
    // gap 5, text from 58 ("a" is 6 wide). The hit zones are those of the
    // arithmetic on the text rectangle, one pixel to the right of the drawing.
    ASSERT_EQ(f.Item("a")->TextRect(), Rect(58, 0, 64, 17));
    struct Case {
        int X, Y;
        TWgItemPart Part;
        const char* Item;
    };
    const Case cases[] = {
        {64, 5, ipMainText, "a"},         {54, 5, ipMainText, "a"},
        {65, 5, ipOutside, "a"},          {53, 5, ipPicture, "a"},
        {38, 5, ipPicture, "a"},          {37, 5, ipOutside, "a"},
        {33, 5, ipCheckBox, "a"},         {19, 5, ipCheckBox, "a"},
        {18, 5, ipButton, "a"},           {2, 5, ipButton, "a"},
        {1, 5, ipOutside, "a"},           {150, 5, ipOutside, "a"},
        {20, lh + 2, ipCheckBox, "c"},    {2, lh + 2, ipOutside, "c"},
        {20, 2 * lh, ipOutside, nullptr},
    };
    for (const Case& c : cases) {
        int column = -7;
        TWgItemPart part = ipInside;
        TWgTreeItem* item = f.View().GetItemAt(c.X, c.Y, column, part);
        EXPECT_EQ(part, c.Part) << c.X << "," << c.Y;
        EXPECT_EQ(item, c.Item ? f.Item(c.Item) : nullptr) << c.X << "," << c.Y;
    }
}

TEST(TreeViewLayout, HitTestWithColumnsAndHorizontalScroll) {
    TViewFixture f(200, 100);
    f.Tree.SetShowColumnsProp(true);
    auto& sections = f.Tree.Header().Sections();
    sections.AddSection()->SetWidth(150);
    sections.AddSection()->SetWidth(150);
    f.Build({"a", "b"});
    int column = -1;
    TWgItemPart part = ipOutside;
    // Never painted: the text rectangle is empty, so the row is only "inside".
    EXPECT_EQ(f.View().GetItemAt(25, 5, column, part), f.Item("a"));
    EXPECT_EQ(part, ipInside);
    EXPECT_EQ(column, 0);
    f.Paint();
    f.View().GetItemAt(25, 5, column, part);
    EXPECT_EQ(part, ipMainText);
    f.View().GetItemAt(40, 5, column, part);
    EXPECT_EQ(part, ipInside);
    f.View().GetItemAt(160, 5, column, part);
    EXPECT_EQ(part, ipColumn);
    EXPECT_EQ(column, 1);
    // Scrolled by 100: X 60 lies in the second section at 160.
    f.View().SetHPosition(100);
    ASSERT_EQ(f.View().LeftPosition(), 100);
    f.View().GetItemAt(60, 20, column, part);
    EXPECT_EQ(part, ipColumn);
    EXPECT_EQ(column, 1);
    // A whole-line row has only the main cell.
    f.Item("b")->SetWholeLine(true);
    f.View().GetItemAt(60, 20, column, part);
    EXPECT_EQ(part, ipInside);
    EXPECT_EQ(column, 0);
}

TEST(TreeViewLayout, AutoSizeColumnMeasuresCellsAndCaption) {
    TViewFixture f(400, 100);
    f.Tree.SetShowColumnsProp(true);
    auto& sections = f.Tree.Header().Sections();
    TWgHeaderSection* main = sections.AddSection();
    TWgHeaderSection* second = sections.AddSection();
    second->SetText(u"Value");
    f.Build({"a", "  bbbb"});
    f.Item("a")->ColumnText().Add(u"xx");
    f.ExpandAll();
    main->SetAutoSize(true);
    second->SetAutoSize(true);
    f.View().AutoSizeAllColumns();
    // Main: level 1 text at 39, four characters of 6, margin 5.
    EXPECT_EQ(main->Width(), 39 + 24 + 5);
    // Second: the caption (30 + 8) beats the cell (12 + 10).
    EXPECT_EQ(second->Width(), 38);
    // Locked, the fit waits for the end of the update.
    f.Tree.BeginUpdate();
    f.Item("bbbb")->SetText(u"bbbbbbbb");
    EXPECT_EQ(main->Width(), 68);
    f.Tree.EndUpdate();
    EXPECT_EQ(main->Width(), 39 + 48 + 5);
}

TEST(TreeViewLayout, EditCellRectScrollsTheCellIntoView) {
    TViewFixture f(200, 100);
    f.Tree.SetShowColumnsProp(true);
    auto& sections = f.Tree.Header().Sections();
    sections.AddSection()->SetWidth(150);
    sections.AddSection()->SetWidth(150);
    f.Build({"a", "b"});
    f.Paint();
    // The second section (150..300) is brought in: LeftPosition 100.
    EXPECT_EQ(f.View().EditCellRect(f.Item("b"), 1), Rect(50, 17, 199, 34));
    EXPECT_EQ(f.View().LeftPosition(), 100);
    // The main column by the text: scrolled back to its left side.
    EXPECT_EQ(f.View().EditCellRect(f.Item("b"), 0), Rect(0, 17, 128, 34));
    EXPECT_EQ(f.View().LeftPosition(), 22);
    EXPECT_THROW(f.View().EditCellRect(nullptr, 0), EWgTreeError);
    EXPECT_THROW(f.Tree.SetTopItem(nullptr), EWgTreeError);

    TViewFixture g(200, 100);
    g.Build({"a"});
    g.Paint();
    EXPECT_EQ(g.View().EditCellRect(g.Item("a"), -1), Rect(22, 0, 199, 17));
}

TEST(TreeViewLayout, RightAlignedViewMirrorsLayoutAndHitTest) {
    TViewFixture f(200, 100);
    f.Tree.RightAlignedView = true;
    f.Tree.DisplayChanged();
    f.Build({"a", "  a1", "b"});
    f.Paint();
    EXPECT_EQ(f.Item("a")->TextRect(), Rect(172, 0, 178, 17));
    struct Case {
        int X, Y;
        TWgItemPart Part;
    };
    const Case cases[] = {{175, 5, ipMainText}, {181, 5, ipMainText}, {182, 5, ipButton},
                          {198, 5, ipButton},   {199, 5, ipOutside},  {182, 22, ipOutside}};
    for (const Case& c : cases) {
        int column = -1;
        TWgItemPart part = ipOutside;
        f.View().GetItemAt(c.X, c.Y, column, part);
        EXPECT_EQ(part, c.Part) << c.X << "," << c.Y;
    }
}

TEST(TreeViewLayout, LineHintsOnlyForCutTexts) {
    TViewFixture f(200, 100);
    f.Build({"ab", std::string(40, 'x') + "|tail"});
    f.Paint();
    f.View().MouseMove(0, 30, 5, false);
    EXPECT_EQ(f.Host.Timers[vtHint], 500);
    f.View().TimerFired(vtHint);
    EXPECT_TRUE(f.Host.Hints.empty()); // "ab" fits
    f.View().MouseMove(0, 30, 22, false);
    f.View().TimerFired(vtHint);
    ASSERT_EQ(f.Host.Hints.size(), 1u);
    // The text up to the bar, over the cell, as wide as the text + 3/5 indent.
    EXPECT_EQ(f.Host.Hints[0], "(22,17,272,34) " + std::string(40, 'x'));
    EXPECT_EQ(f.Host.Timers[vtHintHide], 3000);
    f.View().MouseMove(0, 31, 22, false);
    EXPECT_EQ(f.Host.Hints.back(), "hide");
}

TEST(TreeViewLayout, RowsOfTheirOwnHeight) {
    TViewFixture f(200, 100);
    f.Build(Rows(6));
    {
        TWgTreeLock lock(f.Tree);
        for (int i = 0; i < 6; ++i) {
            TWgTreeItem* item = f.Tree.Items().Item(i);
            item->SetOwnerHeight(false);
            item->SetFixedHeight(i % 2 == 0 ? 30 : 17);
        }
    }
    ASSERT_EQ(f.Tree.TotalVarHeightCount(), 6);
    // Back from the end: 17 + 30 + 17 + 30 = 94 fits, + 17 does not.
    EXPECT_EQ(f.View().MaxTopIndex(), 2);
    f.View().SetVScroll(100);
    EXPECT_EQ(f.View().TopIndex(), 2);
    EXPECT_EQ(f.View().BottomIndex(), 5);
    EXPECT_EQ(f.View().GetItemRect(1), Rect(0, 30, 200, 47));
    EXPECT_EQ(f.View().GetItemAtY(40), 1);
    EXPECT_EQ(f.View().GetItemAtY(94), -1);
    EXPECT_EQ(f.View().VScrollBar().Page, 1);
    EXPECT_EQ(f.View().VScrollBar().Max, 2);
    f.View().SetVScroll(0);
    f.View().ScrollToBottom(f.Tree.Items().Item(4));
    EXPECT_EQ(f.View().TopIndex(), 1); // rows 1..4: 17 + 30 + 17 + 30
}
