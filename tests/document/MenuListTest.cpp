#include "document/MenuList.h"

#include "base/Exceptions.h"
#include "base/Strings.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace {

std::vector<std::u16string> Names(const TMenuList& M) {
    std::vector<std::u16string> r;
    for (int i = 0; i < M.MenuCount(); ++i)
        r.push_back(M.Menu(i)->Name);
    return r;
}

} // namespace

TEST(MenuList, ItemsSplitAtTheFirstBar) {
    TMenuList m;
    m.AddMenu(u"K");
    m.AddMenuItem(-1, u"x", 1, u"");
    m.AddMenuItem(1, u"x", 1, u"");
    m.AddMenuItem(0, u"begin", 20, u"");
    m.AddMenuItem(0, u"a|b", 20, u"");
    m.AddMenuItem(0, u" Run ", 4, u" Run() ");
    EXPECT_EQ(m.Menu(0)->Items->Count(), 3);
    EXPECT_EQ(m.Menu(0)->Items->Get(0), u"begin | ");

    WideString name = u"?", text = u"?";
    int kind = -1;
    m.GetItemNameKind(0, 0, name, kind);
    m.GetItemText(0, 0, text);
    EXPECT_EQ(name, u"begin");
    EXPECT_EQ(kind, 20);
    EXPECT_EQ(text, u"");
    m.GetItemNameKind(0, 1, name, kind);
    m.GetItemText(0, 1, text);
    EXPECT_EQ(name, u"a"); // the keyword is cut at its own bar
    EXPECT_EQ(text, u"b |");
    m.GetItemTextKind(0, 2, kind, text);
    EXPECT_EQ(text, u"Run()");
    EXPECT_EQ(kind, 4);
    // Out of range in the item index: name empty, kind untouched.
    kind = 99;
    m.GetItemNameKind(0, 3, name, kind);
    EXPECT_EQ(name, u"");
    EXPECT_EQ(kind, 99);
    EXPECT_EQ(m.IndexOfItem(0, u"  Run "), 2);
    EXPECT_EQ(m.IndexOfItem(0, u""), -1);
    EXPECT_EQ(m.IndexOfItem(5, u"Run"), -1);
}

TEST(MenuList, NamesAreFoundTrimmedAndOptionallyCaseBlind) {
    TMenuList m;
    m.AddMenu(u"Main");
    m.AddMenu(u" Spaced ");
    m.AddMenu(u"MAIN");
    m.AddMenuItem(2, u"x", 20, u"");
    EXPECT_EQ(m.IndexOfMenu(u"main", false), 0);
    EXPECT_EQ(m.IndexOfMenu(u"main", true), -1);
    EXPECT_EQ(m.IndexOfMenu(u"  MAIN ", true), 2);
    // Stored names are compared as they are: the padded one is never found.
    EXPECT_EQ(m.IndexOfMenu(u"Spaced", false), -1);
    EXPECT_EQ(m.MenuName(1), u"Spaced");
    // Counts go by name, so the duplicate reports the first menu's count.
    EXPECT_EQ(m.MenuItemCount(u"MAIN"), 0);
    m.SetMenuName(0, u"Other");
    EXPECT_EQ(m.MenuItemCount(u"main"), 1);
}

TEST(MenuList, RenamingChangingAndDeletingItems) {
    TMenuList m;
    m.AddMenu(u"0");
    m.AddMenuItem(0, u"one", 3, u"1");
    m.AddMenuItem(0, u"two", 5, u"2");
    m.Menu(0)->Items->Add(u"bare");
    m.SetItemName(0, 0, u"uno");
    EXPECT_EQ(m.Menu(0)->Items->Get(0), u"uno | 1");
    m.SetItemName(0, 2, u"new");
    EXPECT_EQ(m.Menu(0)->Items->Get(2), u"new bare");
    m.ChangeItem(0, u" two ", 7, u" deux ");
    EXPECT_EQ(m.Menu(0)->Items->Get(1), u"two | deux");
    EXPECT_EQ(m.Menu(0)->Items->GetObject(1), 7);
    m.ChangeItem(0, u"absent", 1, u"x");
    m.DeleteItem(0, u"uno");
    m.DeleteItem(0, u"");
    EXPECT_EQ(m.Menu(0)->Items->Count(), 2);
    m.DeleteMenu(0);
    EXPECT_EQ(m.MenuCount(), 0);
    m.DeleteMenu(3); // an empty list ignores the index
    m.AddMenu(u"a");
    EXPECT_THROW(m.DeleteMenu(1), EListError);
    EXPECT_THROW(m.SortItems(1), EListError);
}

TEST(MenuList, SortMenusIsOrdinalAndHandlesLargeLists) {
    TMenuList m;
    for (auto n : {u"b", u"B", u"a", u"_", u"A", u"b"})
        m.AddMenu(n);
    m.SortMenus();
    EXPECT_EQ(Names(m), (std::vector<std::u16string>{u"A", u"B", u"_", u"a", u"b", u"b"}));

    TMenuList big;
    for (int i = 0; i < 5000; ++i)
        big.AddMenu(IntToWide((i * 7919) % 5003));
    big.SortMenus();
    auto names = Names(big);
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    EXPECT_EQ(big.IndexOfMenu(names[17], true), 17);
}

TEST(MenuList, ClearMenusKeepsTheEntries) {
    TMenuList m;
    m.AddMenu(u"x");
    m.AddMenuItem(0, u"i", 1, u"");
    m.ClearMenus();
    EXPECT_EQ(m.MenuCount(), 1);
    EXPECT_EQ(m.MenuName(0), u"");
    EXPECT_EQ(m.Menu(0)->Items->Count(), 0);
}
