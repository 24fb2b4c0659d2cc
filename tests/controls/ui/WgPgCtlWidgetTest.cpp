#include "base/Exceptions.h"
#include "controls/ui/WgHintWindow.h"
#include "controls/ui/WgPgCtl.h"

#include <QApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QTest>

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

namespace {

// Three pages with their tabs shown.
class TabStripTest : public ::testing::Test {
protected:
    TabStripTest() {
        Pages.resize(400, 200);
        for (const char16_t* caption : {u"One", u"Two", u"Three"}) {
            auto* sheet = new TWgTabSheet;
            sheet->SetCaption(caption);
            sheet->SetPageControl(&Pages);
        }
        Pages.show();
    }
    ~TabStripTest() override { TWgHintWindow::HideControlHint(); }

    QPoint TabCentre(int Tab) const {
        const TRect r = Pages.TabLayout().Tabs[std::size_t(Tab)];
        return {(r.Left + r.Right) / 2, (r.Top + r.Bottom) / 2};
    }
    QPoint CloseCentre(int Tab) const {
        const TRect r = Pages.TabLayout().CloseButtons[std::size_t(Tab)];
        return {(r.Left + r.Right) / 2, (r.Top + r.Bottom) / 2};
    }
    void MoveTo(QPoint P) {
        QMouseEvent move(QEvent::MouseMove, P, Pages.mapToGlobal(P), Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QApplication::sendEvent(&Pages, &move);
    }
    void Click(QPoint P) {
        QTest::mousePress(&Pages, Qt::LeftButton, Qt::NoModifier, P);
        QTest::mouseRelease(&Pages, Qt::LeftButton, Qt::NoModifier, P);
    }
    // Pixels of a tab that are clearly blue: the hot font's colour.
    int BluePixels(int Tab) {
        const QImage image = Pages.grab().toImage();
        const TRect r = Pages.TabLayout().Tabs[std::size_t(Tab)];
        int blue = 0;
        for (int x = r.Left; x < r.Right; ++x)
            for (int y = r.Top; y < r.Bottom; ++y) {
                const QColor c = image.pixelColor(x, y);
                if (c.blue() > c.red() + 80 && c.blue() > c.green() + 80) ++blue;
            }
        return blue;
    }

    TWgPageControl Pages;
};

} // namespace

TEST_F(TabStripTest, TheTabUnderThePointerTakesTheHotTrackFont) {
    EXPECT_EQ(Pages.HotTrackFont().Color, 0xFF0000u); // blue
    MoveTo(TabCentre(1));
    EXPECT_EQ(Pages.HotTab(), 1);
    EXPECT_GT(BluePixels(1), 5);
    EXPECT_EQ(BluePixels(2), 0);
    MoveTo(TabCentre(0)); // the active tab keeps its own font
    EXPECT_EQ(BluePixels(0), 0);
    EXPECT_EQ(BluePixels(1), 0);
    MoveTo(TabCentre(2));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&Pages, &leave);
    EXPECT_EQ(Pages.HotTab(), -1);
    EXPECT_EQ(BluePixels(2), 0);
    Pages.SetHotTrack(false);
    MoveTo(TabCentre(2));
    EXPECT_EQ(BluePixels(2), 0);
}

TEST_F(TabStripTest, TabsShowTheHintsOfTheirSheets) {
    Pages.Pages(1)->SetHint(u"Second|The second page");
    auto ask = [&](int Tab) {
        QHelpEvent help(QEvent::ToolTip, TabCentre(Tab), Pages.mapToGlobal(TabCentre(Tab)));
        QApplication::sendEvent(&Pages, &help);
        return help.isAccepted();
    };
    EXPECT_TRUE(ask(1));
    ASSERT_NE(TWgHintWindow::ShownFor(&Pages), nullptr);
    EXPECT_EQ(TWgHintWindow::ShownFor(&Pages)->Text(), u"Second");
    MoveTo(TabCentre(2)); // another tab: the hint goes
    EXPECT_EQ(TWgHintWindow::ShownFor(&Pages), nullptr);
    EXPECT_FALSE(ask(2)); // no hint of its own
    Pages.SetShowTabHints(false);
    EXPECT_FALSE(ask(1));
    EXPECT_EQ(TWgHintWindow::ShownFor(&Pages), nullptr);
}

TEST_F(TabStripTest, CloseButtonsHideTheirTabsAndHandTheActiveRoleOn) {
    EXPECT_TRUE(Pages.TabLayout().CloseButtons[0].IsEmpty()); // none by default
    Pages.SetCloseButtonMode(cbmActive);
    EXPECT_FALSE(Pages.TabLayout().CloseButtons[0].IsEmpty());
    EXPECT_TRUE(Pages.TabLayout().CloseButtons[1].IsEmpty());
    Pages.SetCloseButtonMode(cbmAll);
    std::vector<int> asked;
    bool allow = false;
    Pages.OnClosePageQuery = [&](QObject*, TWgTabSheet* Page, bool& CanClose) {
        asked.push_back(Page->PageIndex());
        CanClose = allow;
    };
    Click(CloseCentre(1));
    EXPECT_TRUE(Pages.Pages(1)->TabVisible()); // refused
    allow = true;
    Pages.Pages(1)->SetCloseBtnEnabled(false);
    Click(CloseCentre(1));
    EXPECT_TRUE(Pages.Pages(1)->TabVisible()); // its button does nothing
    Pages.Pages(1)->SetCloseBtnEnabled(true);
    Click(CloseCentre(1));
    EXPECT_FALSE(Pages.Pages(1)->TabVisible());
    EXPECT_EQ(Pages.ActivePage(), 0); // an inactive tab closes without a change of page
    Click(CloseCentre(0));
    EXPECT_FALSE(Pages.Pages(0)->TabVisible());
    EXPECT_EQ(Pages.ActivePage(), 2); // the next visible tab
    EXPECT_EQ(asked, (std::vector<int>{1, 1, 0}));
    // A press that leaves the button before it goes up closes nothing.
    QTest::mousePress(&Pages, Qt::LeftButton, Qt::NoModifier, CloseCentre(2));
    QTest::mouseRelease(&Pages, Qt::LeftButton, Qt::NoModifier, QPoint(390, 190));
    EXPECT_TRUE(Pages.Pages(2)->TabVisible());
}

TEST_F(TabStripTest, ActiveTabFontAndImagesChangeTheTabWidths) {
    auto width = [&](int Tab) { return Pages.TabLayout().Tabs[std::size_t(Tab)].Width(); };
    const int plain = width(0);
    TFont big = Pages.Font();
    big.Height = -20;
    big.Style = fsBold;
    Pages.SetActiveTabFont(big);
    EXPECT_EQ(width(0), plain); // only with UseActiveTabFont
    Pages.SetUseActiveTabFont(true);
    EXPECT_GT(width(0), plain + 10);
    EXPECT_GT(Pages.PageRect().top(), 30); // the strip grows to the larger font
    Pages.SetUseActiveTabFont(false);

    TWgImageList images;
    images.Add(TMemoryBitmap(16, 16, ColorToPixel(0x0000FF)));
    Pages.SetImages(&images);
    Pages.Pages(0)->SetImageIndex(0);
    EXPECT_EQ(width(0), plain + 16 + 3);
    const QImage image = Pages.grab().toImage();
    const TRect tab = Pages.TabLayout().Tabs[0];
    EXPECT_EQ(image.pixelColor(tab.Left + 8 + 8, (tab.Top + Pages.TabLayout().StripBottom) / 2),
              QColor(255, 0, 0));
    Pages.SetShowImages(false);
    EXPECT_EQ(width(0), plain);
}
