#include "controls/WgPgCtlPages.h"

#include <gtest/gtest.h>

TEST(WgPgCtlPages, TabIndexCountsVisibleTabsAndHiddenPagesReadAsANeighbour) {
    const std::vector<bool> tabs = {true, false, true, false, false};
    const std::pair<int, int> cases[] = {
        {0, 0}, {1, 1}, {2, 1}, {3, 1}, {4, 1}, {-1, -1}, {5, -1},
    };
    // Page 1 is hidden: it reads as the next visible tab (page 2, tab 1); pages
    // 3 and 4 have none after them and read as the one before (tab 1).
    for (const auto& [page, tab] : cases)
        EXPECT_EQ(TabIndexOfPage(tabs, page), tab) << page;
    EXPECT_EQ(TabIndexOfPage({false, false}, 1), -1);
    EXPECT_EQ(TabIndexOfPage({false, true}, 0), 0);
}

TEST(WgPgCtlPages, TabIndexFindsTheNthVisiblePage) {
    const std::vector<bool> tabs = {false, true, false, true};
    const std::pair<int, int> cases[] = {{0, 1}, {1, 3}, {2, -1}, {-1, -1}};
    for (const auto& [tab, page] : cases)
        EXPECT_EQ(PageOfTabIndex(tabs, tab), page) << tab;
}

TEST(WgPgCtlPages, RemovingTheActivePageHandsOverToTheNextWrapping) {
    const struct {
        int Count, Removed, Next;
    } cases[] = {{6, 2, 2}, {6, 5, 0}, {1, 0, -1}, {2, 1, 0}, {3, 7, -1}};
    for (const auto& c : cases)
        EXPECT_EQ(PageAfterRemoval(c.Count, c.Removed), c.Next) << c.Count << " " << c.Removed;
}
