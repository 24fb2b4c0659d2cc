#include "TreeTestUtil.h"
#include "ViewTestUtil.h"

namespace {
std::string SortedWith(const std::vector<std::string>& Lines,
                       const std::function<void(TCustomWgTree&)>& Setup) {
    TViewFixture f;
    f.Build(Lines);
    Setup(f.Tree);
    f.Tree.Sort(true);
    CheckTreeInvariants(f.Tree);
    return f.Order();
}
} // namespace

TEST(TreeViewSort, OrdersByTypeCaseAndDirection) {
    struct Case {
        const char* Name;
        std::vector<std::string> Lines;
        std::function<void(TCustomWgTree&)> Setup;
        std::string Order;
    };
    const Case cases[] = {
        {"code units", {"b", "abc", "ABD", "a"}, [](TCustomWgTree&) {}, "ABD a abc b"},
        {"without case",
         {"b", "ABD", "abc", "a"},
         [](TCustomWgTree& T) { T.SortUseCase = false; },
         "a abc ABD b"},
        {"descending", {"b", "c", "a"}, [](TCustomWgTree& T) { T.SortDir = sdDescend; }, "c b a"},
        {"numbers",
         {"10", "9", "-3", "100"},
         [](TCustomWgTree& T) { T.SortType = stNumber; },
         "-3 9 10 100"},
        {"floats",
         {"1.5", "1e1", "-0.25"},
         [](TCustomWgTree& T) { T.SortType = stFloating; },
         "-0.25 1.5 1e1"},
        {"dates ignore the time",
         {"2024-03-01 10:00", "2023-12-31", "2024-02-29 23:59"},
         [](TCustomWgTree& T) { T.SortType = stDate; },
         "2023-12-31 2024-02-29 23:59 2024-03-01 10:00"},
        {"times ignore the date",
         {"2020-01-01 12:00", "09:30", "2024-05-05 08:15:10"},
         [](TCustomWgTree& T) { T.SortType = stTime; },
         "2024-05-05 08:15:10 09:30 2020-01-01 12:00"},
        {"currency",
         {"2.50", "2.4999", "-1"},
         [](TCustomWgTree& T) { T.SortType = stCurrency; },
         "-1 2.4999 2.50"},
        {"custom compare by length",
         {"ccc", "a", "bb"},
         [](TCustomWgTree& T) {
             T.SortType = stCustom;
             T.OnCompareItems = [](TCustomWgTree&, TWgTreeItem* A, TWgTreeItem* B, int& Res) {
                 Res = int(A->Text().size()) - int(B->Text().size());
             };
         },
         "a bb ccc"},
        {"recursive", {"b", "  z", "  y", "a", "  x", "  w"}, [](TCustomWgTree&) {}, "a w x b y z"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(SortedWith(c.Lines, c.Setup), c.Order) << c.Name;
}

TEST(TreeViewSort, MissingKeysComeFirstAndIdentityBreaksTies) {
    TViewFixture f;
    f.Build({"10", "", "9", "x"});
    f.Tree.SortType = stNumber;
    f.Tree.Sort(false);
    const std::string order = f.Order();
    EXPECT_TRUE(order == " x 9 10" || order == "x  9 10") << order;

    // Equal keys: the order of the objects decides, reversed when descending.
    TViewFixture g;
    g.Build({"same", "same", "other"});
    TWgTreeItem* first = g.Tree.Items().Item(0);
    TWgTreeItem* second = g.Tree.Items().Item(1);
    TWgTreeItem* low = std::less<TWgTreeItem*>()(first, second) ? first : second;
    EXPECT_LT(g.View().CompareItems(low, low == first ? second : first, stText, hsmAscend), 0);
    EXPECT_GT(g.View().CompareItems(low, low == first ? second : first, stText, hsmDescend), 0);
    EXPECT_EQ(g.View().CompareItems(low, low, stText, hsmAscend), 0);
    g.Tree.Sort(false);
    EXPECT_EQ(g.Tree.Items().Item(1), low);
    g.Tree.SortDir = sdDescend;
    g.Tree.Sort(false);
    EXPECT_EQ(g.Tree.Items().Item(0), low == first ? second : first);
    // Prepared keys are released after the sort.
    EXPECT_EQ(g.Tree.Items().Item(0)->Extra().SortRef, 0u);
}

TEST(TreeViewSort, HeaderClicksAndMultiSectionSort) {
    TViewFixture f;
    f.Tree.SetShowColumnsProp(true);
    f.Tree.SetSortMode(smClick);
    auto& sections = f.Tree.Header().Sections();
    TWgHeaderSection* name = sections.AddSection();
    TWgHeaderSection* size = sections.AddSection();
    size->FieldType = sftNumber;
    f.Build({"b", "a", "b", "a"});
    const char* sizes[] = {"2", "10", "1", "3"};
    for (int i = 0; i < 4; ++i)
        f.Tree.Items().Item(i)->ColumnText().Add(WideFromAscii(sizes[i]));
    auto order = [&] {
        std::string s;
        for (int i = 0; i < 4; ++i) {
            TWgTreeItem* item = f.Tree.Items().Item(i);
            s += AsciiFromWide(item->Text()) + AsciiFromWide(item->ColumnTextAt(0)) + " ";
        }
        return s;
    };
    int begins = 0;
    f.Tree.OnSortBegin = [&](TWgTreeModel&) { ++begins; };
    f.Tree.HeaderClick(size, false);
    EXPECT_EQ(size->SortMode(), hsmAscend);
    EXPECT_EQ(f.Tree.SortSection(), 1);
    EXPECT_EQ(order(), "b1 b2 a3 a10 ");
    f.Tree.HeaderClick(size, false);
    EXPECT_EQ(size->SortMode(), hsmDescend);
    EXPECT_EQ(order(), "a10 a3 b2 b1 ");
    EXPECT_EQ(begins, 2);
    EXPECT_TRUE(f.Tree.Header().MultiSort);

    // Name first, then size within equal names; Ctrl cycles the size's mode.
    f.Tree.HeaderClick(name, false);
    EXPECT_EQ(size->SortMode(), hsmNone);
    f.Tree.HeaderClick(size, true);
    EXPECT_EQ(size->SortMode(), hsmAscend);
    ASSERT_EQ(f.Tree.SortSections()->size(), 2u);
    EXPECT_EQ(order(), "a3 a10 b1 b2 ");
    f.Tree.HeaderClick(size, true);
    EXPECT_EQ(size->SortMode(), hsmDescend);
    EXPECT_EQ(f.Tree.SortSections()->size(), 2u);
    EXPECT_EQ(order(), "a10 a3 b2 b1 ");
    f.Tree.HeaderClick(size, true);
    EXPECT_EQ(size->SortMode(), hsmNone);
    EXPECT_EQ(f.Tree.SortSections()->size(), 1u);
    // Deleting sort sections, also while locked, leaves no trace in the list.
    f.Tree.HeaderClick(size, true);
    {
        TWgTreeLock lock(f.Tree);
        sections.DeleteSection(size);
    }
    EXPECT_EQ(f.Tree.SortSections()->size(), 1u);
    sections.DeleteSection(name);
    EXPECT_TRUE(f.Tree.SortSections()->empty());
    EXPECT_EQ(f.Tree.SortSection(), -1);
}

TEST(TreeViewSort, TextChangesSortOnceAtTheEndOfAnUpdate) {
    TViewFixture f;
    f.Tree.SetSortMode(smAdd);
    int sorts = 0;
    f.Tree.OnSortBegin = [&](TWgTreeModel&) { ++sorts; };
    f.Build({"c", "a", "b"});
    EXPECT_EQ(sorts, 1);
    EXPECT_EQ(f.Order(), "a b c");
    f.Tree.BeginUpdate();
    f.Item("a")->SetText(u"z");
    f.Item("b")->SetText(u"y");
    EXPECT_EQ(f.Order(), "z y c");
    f.Tree.EndUpdate();
    EXPECT_EQ(sorts, 2);
    EXPECT_EQ(f.Order(), "c y z");
    // Unlocked, a change sorts its siblings at once.
    f.Item("c")->SetText(u"zz");
    EXPECT_EQ(f.Order(), "y z zz");
}

TEST(TreeViewSort, SortAndSearchFoldEveryCasedLetter) {
    // Each pair differs first in case only: folded, the second letter decides.
    const std::vector<std::pair<WideString, WideString>> pairs = {
        {u"\u015Cb", u"\u015Da"}, // Latin Extended-A: S with circumflex
        {u"\u0141b", u"\u0142a"}, // L with stroke
        {u"\u0401b", u"\u0451a"}, // Cyrillic IO
        {u"\u0178b", u"\u00FFa"}, // y with diaeresis, whose capital lies far away
    };
    for (const auto& [upper, lower] : pairs) {
        TViewFixture f;
        TWgTreeItem* first = f.Tree.Items().AddChild(nullptr, upper);
        TWgTreeItem* second = f.Tree.Items().AddChild(nullptr, lower);
        f.Tree.SortUseCase = false;
        f.Tree.Sort(false);
        EXPECT_EQ(f.Tree.Items().Item(0), second) << int(upper[0]);

        // The search finds either row from the other case.
        f.View().ProcessSearch(WideString(1, lower[0]) + u"b");
        EXPECT_EQ(f.Tree.FocusedItem(), first) << int(upper[0]);
        f.View().ProcessSearch(WideString(1, upper[0]) + u"A");
        EXPECT_EQ(f.Tree.FocusedItem(), second) << int(upper[0]);
    }
}
