#include "base/Exceptions.h"
#include "controls/ui/PlusPageControl.h"

#include <QTest>

#include <gtest/gtest.h>

namespace {

// The options section: two sheets, white, and the plain palette's tab colours.
class PlusPageControlWidgetTest : public ::testing::Test {
protected:
    PlusPageControlWidgetTest() {
        Plus.resize(400, 300);
        Plus.SetTabBackGroundColor(0xFFFFFF);
        Plus.SetTabMargin({0, 0, 0});
        Plus.SetLowerActive(0);
        Plus.SetActiveColor(0xFFFFFF);
        Plus.SetActiveColorTo(0x000000);
        for (const WideString caption : {u"Syntax ", u"Block && folding "}) {
            auto* sheet = new TPlusTabSheet;
            sheet->SetCaption(caption);
            sheet->SetColor(0xFFFFFF);
            sheet->SetPageControl(&Plus);
        }
        Plus.OnChange = [this](QObject*) { ++Changes; };
        Plus.show();
    }
    TPlusPageControl Plus;
    int Changes = 0;
};

} // namespace

TEST_F(PlusPageControlWidgetTest, ClickingATabSelectsItsPage) {
    EXPECT_EQ(Plus.ActivePageIndex(), 0); // the first sheet took over when it joined
    Plus.SetActivePageIndex(0);
    EXPECT_EQ(Changes, 0);
    const TRect second = Plus.TabLayout().Tabs[1];
    QTest::mouseClick(&Plus, Qt::LeftButton, Qt::NoModifier,
                      QPoint(second.Left + 5, second.Top + 5));
    EXPECT_EQ(Plus.ActivePageIndex(), 1);
    EXPECT_EQ(Changes, 1);
    EXPECT_TRUE(Plus.Pages(0)->isHidden());
    EXPECT_FALSE(Plus.Pages(1)->isHidden());
    EXPECT_EQ(Plus.Pages(1)->geometry(), Plus.PageRect());
    Plus.SetActivePageIndex(2);
    EXPECT_EQ(Plus.ActivePageIndex(), -1);
}

TEST_F(PlusPageControlWidgetTest, TheActiveTabCannotBeDisabled) {
    try {
        Plus.Pages(0)->SetTabEnable(false);
        FAIL() << "no exception";
    } catch (const Exception& e) {
        EXPECT_EQ(e.Message(), "Can not disable active tab.");
    }
    Plus.Pages(1)->SetTabEnable(false);
    const TRect second = Plus.TabLayout().Tabs[1];
    QTest::mouseClick(&Plus, Qt::LeftButton, Qt::NoModifier, QPoint(second.Left + 5, 10));
    EXPECT_EQ(Plus.ActivePageIndex(), 0);
}

TEST_F(PlusPageControlWidgetTest, TabSplitLineIsRefusedForTheOtherStyles) {
    Plus.SetTabSplitLine(true);
    Plus.SetTabSplitLine(false);
    for (TPlusTabStyleKind style : {tsDotNet, tsDelphi}) {
        Plus.SetTabStyle(style);
        try {
            Plus.SetTabSplitLine(true);
            FAIL() << "no exception";
        } catch (const Exception& e) {
            EXPECT_EQ(e.Message(), "TabSplitLine must be false when TabStyle is tsDotNet/tsDelphi");
        }
    }
}

TEST_F(PlusPageControlWidgetTest, ActiveTabIsPaintedWithItsGradient) {
    const TRect tab = Plus.TabLayout().Tabs[0];
    const QImage image = Plus.grab().toImage();
    EXPECT_EQ(image.pixelColor(tab.Left + 2, tab.Top + 1), QColor(255, 255, 255));
    EXPECT_EQ(image.pixelColor(tab.Left + 2, tab.Bottom - 1), QColor(0, 0, 0));
    EXPECT_EQ(image.pixelColor(tab.Left, tab.Top + 4), QColor(128, 128, 128));
    EXPECT_EQ(image.pixelColor(399, 2), QColor(255, 255, 255));
}
