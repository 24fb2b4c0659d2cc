#include "base/Exceptions.h"
#include "controls/ui/WgPgCtl.h"

#include <gtest/gtest.h>

namespace {

// The main page area: six pages, tabs hidden, no border.
class PageControlWidgetTest : public ::testing::Test {
protected:
    PageControlWidgetTest() {
        Pages.resize(400, 300);
        Pages.SetShowTabs(false);
        Pages.SetShowBorder(false);
        Pages.SetFlat(true);
        for (int i = 0; i < 6; ++i) {
            auto* sheet = new TWgTabSheet;
            sheet->SetPageControl(&Pages);
        }
        Pages.OnChange = [this](QObject*) { ++Changes; };
        Pages.show();
    }
    std::vector<int> Shown() const {
        std::vector<int> shown;
        for (int i = 0; i < Pages.PageCount(); ++i)
            if (!Pages.Pages(i)->isHidden()) shown.push_back(i);
        return shown;
    }
    TWgPageControl Pages;
    int Changes = 0;
};

} // namespace

TEST_F(PageControlWidgetTest, TheFirstSheetBecomesActiveAndIndexesSelectPages) {
    EXPECT_EQ(Pages.ActivePage(), 0);
    EXPECT_EQ(Shown(), (std::vector<int>{0}));
    const std::pair<int, std::vector<int>> cases[] = {{5, {5}}, {2, {2}}, {2, {2}},
                                                      {6, {}},  {-1, {}}, {0, {0}}};
    int changes = 0;
    int last = 0;
    for (const auto& [index, shown] : cases) {
        Pages.SetActivePage(index);
        EXPECT_EQ(Shown(), shown) << index;
        EXPECT_EQ(Pages.ActivePage(), shown.empty() ? -1 : shown[0]);
        const int now = shown.empty() ? -1 : shown[0];
        if (now != last) ++changes; // re-selecting the active page changes nothing
        last = now;
        EXPECT_EQ(Changes, changes);
    }
}

TEST_F(PageControlWidgetTest, WithoutTabsThePagesFillTheControl) {
    EXPECT_EQ(Pages.PageRect(), QRect(0, 0, 400, 300));
    EXPECT_EQ(Pages.Pages(0)->geometry(), QRect(0, 0, 400, 300));
    Pages.SetShowTabs(true);
    EXPECT_GT(Pages.Pages(0)->y(), 10);
}

TEST_F(PageControlWidgetTest, OnChangingCanRefuse) {
    Pages.OnChanging = [](QObject*, bool& Allow) { Allow = false; };
    Pages.SetActivePage(3);
    EXPECT_EQ(Pages.ActivePage(), 0);
    EXPECT_EQ(Changes, 0);
}

TEST_F(PageControlWidgetTest, TabIndexCountsOnlyVisibleTabs) {
    Pages.Pages(1)->SetTabVisible(false);
    Pages.SetTabIndex(1);
    EXPECT_EQ(Pages.ActivePage(), 2);
    Pages.SetActivePage(1);
    EXPECT_EQ(Pages.TabIndex(), 1); // a hidden tab reads as the next visible one
}

TEST_F(PageControlWidgetTest, RemovingTheActivePageHandsOverToTheNext) {
    Pages.SetActivePage(5);
    delete Pages.Pages(5);
    EXPECT_EQ(Pages.PageCount(), 5);
    EXPECT_EQ(Pages.ActivePage(), 0); // wrapped round
    Pages.Pages(2)->SetPageControl(nullptr);
    EXPECT_EQ(Pages.PageCount(), 4);
    EXPECT_EQ(Pages.ActivePage(), 0);
}

TEST_F(PageControlWidgetTest, StylesAndTheirRules) {
    Pages.SetColor(0x646464);
    Pages.SetStyle(etsNetTabs);
    EXPECT_EQ(Pages.FlatTabBorderColor(), 0x505050u);
    Pages.SetMultiLine(true);
    EXPECT_THROW(Pages.SetStyle(etsAngledTabs), Exception);
    EXPECT_EQ(Pages.Style(), etsNetTabs);
}
