#include "controls/WgToolBarLayout.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<TWgToolBarItem> Buttons(int Count) {
    std::vector<TWgToolBarItem> items(static_cast<std::size_t>(Count));
    for (auto& item : items)
        item.ContentWidth = item.ContentHeight = 24;
    return items;
}

std::vector<int> Lefts(const std::vector<TWgToolBarItem>& Items) {
    std::vector<int> lefts;
    for (const auto& item : Items)
        lefts.push_back(item.Bounds.Left);
    return lefts;
}

} // namespace

TEST(WgToolBarLayout, DefaultsPlaceFourButtonsAtTheirOffsetsInABarOf30) {
    TWgToolBarMetrics m;
    m.Width = 400;
    m.Height = 28;
    auto items = Buttons(4);
    EXPECT_EQ(LayoutToolBar(m, items), 30);
    EXPECT_EQ(Lefts(items), (std::vector<int>{3, 30, 57, 84}));
    for (const auto& item : items)
        EXPECT_EQ(item.Bounds, Bounds(item.Bounds.Left, 3, 24, 24));
}

TEST(WgToolBarLayout, MenuBarMetricsGiveABarOf22) {
    TWgToolBarMetrics m;
    m.BtnOffsHorz = m.BtnOffsVert = 1;
    m.MinSize = m.BtnHeight = 20;
    m.Width = 688;
    auto items = Buttons(2);
    items[0].ContentWidth = 34;
    items[0].ContentHeight = 15;
    items[1].ContentWidth = 38;
    items[1].ContentHeight = 15;
    EXPECT_EQ(LayoutToolBar(m, items), 22);
    EXPECT_EQ(items[0].Bounds, Bounds(1, 1, 34, 20));
    EXPECT_EQ(items[1].Bounds, Bounds(36, 1, 38, 20));
    // A taller content raises the whole row.
    items[1].ContentHeight = 24;
    EXPECT_EQ(LayoutToolBar(m, items), 26);
    EXPECT_EQ(items[0].Bounds.Height(), 24);
}

TEST(WgToolBarLayout, SeparatorsAreAQuarterOfTheButtonAndHiddenControlsDoNotAdvance) {
    TWgToolBarMetrics m;
    m.Width = 400;
    auto items = Buttons(4);
    items[1].ButtonType = ebtSeparator;
    items[2].Visible = false;
    LayoutToolBar(m, items);
    EXPECT_EQ(items[1].Bounds, Bounds(30, 3, 6, 24));
    EXPECT_EQ(Lefts(items), (std::vector<int>{3, 30, 39, 39}));
}

TEST(WgToolBarLayout, Wrapping) {
    struct Case {
        bool Wrap1;
        bool AutoWrap;
        bool AutoSize;
        bool AlongEdge;
        bool MoreMenu;
        std::vector<int> Tops;
        int Thickness;
    } cases[] = {
        {false, false, true, true, false, {3, 3, 3, 3}, 30},
        {true, false, true, true, false, {3, 3, 30, 30}, 57},  // forced after button 1
        {false, true, true, true, false, {3, 3, 3, 30}, 57},   // 84 + 24 passes 100
        {false, true, true, false, false, {3, 3, 3, 3}, 30},   // floating and sizing itself
        {false, true, false, false, false, {3, 3, 3, 30}, 28}, // fixed size: wraps, keeps size
        {false, false, true, false, true, {3, 3, 3, 30}, 57},  // a more-menu bar wraps too
    };
    for (const Case& c : cases) {
        TWgToolBarMetrics m;
        m.Width = 100;
        m.Height = 28;
        m.AutoWrap = c.AutoWrap;
        m.AutoSize = c.AutoSize;
        m.AlignedAlongEdge = c.AlongEdge;
        m.ShowMoreMenu = c.MoreMenu;
        auto items = Buttons(4);
        items[1].Wrap = c.Wrap1;
        const int thickness = LayoutToolBar(m, items);
        std::vector<int> tops;
        for (const auto& item : items)
            tops.push_back(item.Bounds.Top);
        EXPECT_EQ(tops, c.Tops) << &c - cases;
        EXPECT_EQ(thickness, c.Thickness) << &c - cases;
        if (c.Tops[2] == 3 && c.Tops[3] == 30) {
            EXPECT_EQ(items[3].Bounds.Left, 3);
        }
    }
}

TEST(WgToolBarLayout, AVerticalBarStacksAndWrapsSideways) {
    TWgToolBarMetrics m;
    m.Orientation = 1;
    m.Width = 28;
    m.Height = 60;
    m.AutoWrap = true;
    auto items = Buttons(3);
    items[0].ContentWidth = 40; // widens the column
    EXPECT_EQ(LayoutToolBar(m, items), 3 + 40 + 3 + 40 + 3);
    EXPECT_EQ(items[0].Bounds, Bounds(3, 3, 40, 24));
    EXPECT_EQ(items[1].Bounds, Bounds(3, 30, 40, 24));
    EXPECT_EQ(items[2].Bounds, Bounds(46, 3, 40, 24));
}

TEST(WgToolBarLayout, AnEmptyBarHasItsMinimumAndInsetsShiftTheButtons) {
    TWgToolBarMetrics m;
    m.MinSize = 20;
    std::vector<TWgToolBarItem> none;
    EXPECT_EQ(LayoutToolBar(m, none), 20);

    m.Width = 200;
    m.Insets = ToolBarInsets(false, 2, true, true, 1);
    EXPECT_EQ(m.Insets, Rect(4, 4, 4, 4));
    auto items = Buttons(1);
    EXPECT_EQ(LayoutToolBar(m, items), 4 + 3 + 24 + 3 + 4);
    EXPECT_EQ(items[0].Bounds.Left, 7);
}

TEST(WgToolBarLayout, WithoutAdjustingButtonsKeepTheBarSize) {
    TWgToolBarMetrics m;
    m.AdjustButtonWidth = m.AdjustButtonHeight = false;
    m.Width = 300;
    auto items = Buttons(2);
    items[0].ContentWidth = 60;
    items[0].ContentHeight = 40;
    EXPECT_EQ(LayoutToolBar(m, items), 30);
    EXPECT_EQ(items[0].Bounds, Bounds(3, 3, 24, 24));
    m.LargeSize = true;
    EXPECT_EQ(LayoutToolBar(m, items), 54);
    EXPECT_EQ(items[1].Bounds, Bounds(54, 3, 48, 48));
}

TEST(WgToolBarLayout, OrderIsByRowThenColumnAndTiesKeepTheirArrival) {
    std::vector<TWgToolBarItem> items(5);
    const int pos[5][2] = {{50, 3}, {3, 3}, {3, 30}, {32000, 32000}, {32000, 32000}};
    for (int i = 0; i < 5; ++i) {
        items[std::size_t(i)].Left = pos[i][0];
        items[std::size_t(i)].Top = pos[i][1];
        items[std::size_t(i)].Data = reinterpret_cast<void*>(std::intptr_t(i + 1));
    }
    auto horizontal = items;
    OrderToolBarItems(horizontal, 0);
    auto vertical = items;
    OrderToolBarItems(vertical, 1);
    std::vector<std::intptr_t> h, v;
    for (int i = 0; i < 5; ++i) {
        h.push_back(reinterpret_cast<std::intptr_t>(horizontal[std::size_t(i)].Data));
        v.push_back(reinterpret_cast<std::intptr_t>(vertical[std::size_t(i)].Data));
    }
    EXPECT_EQ(h, (std::vector<std::intptr_t>{2, 1, 3, 4, 5}));
    EXPECT_EQ(v, (std::vector<std::intptr_t>{2, 3, 1, 4, 5}));
}
