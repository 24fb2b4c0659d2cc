#include "controls/WgGlyphs.h"
#include "controls/ui/WgToolBar.h"

#include <QApplication>
#include <QEnterEvent>
#include <QTest>

#include <gtest/gtest.h>

namespace {

std::vector<int> Lefts(const TCustomWgToolBar& Bar) {
    std::vector<int> lefts;
    for (const TCustomWgToolButton* button : Bar.Buttons())
        lefts.push_back(button->isHidden() ? -1 : button->x());
    return lefts;
}

} // namespace

TEST(ToolBarWidget, FourButtonsStandAt3_30_57_84InABarOf30) {
    TWgToolbar bar;
    bar.resize(300, 28);
    for (int i = 0; i < 4; ++i)
        new TWgToolButton(&bar);
    EXPECT_EQ(Lefts(bar), (std::vector<int>{3, 30, 57, 84}));
    EXPECT_EQ(bar.height(), 30);
    for (const TCustomWgToolButton* button : bar.Buttons())
        EXPECT_EQ(button->geometry(), QRect(button->x(), 3, 24, 24));
    // A later button goes to the end; a hidden one gives its place up.
    auto* late = new TWgToolButton(&bar);
    EXPECT_EQ(late->x(), 111);
    bar.Buttons()[1]->hide();
    EXPECT_EQ(Lefts(bar), (std::vector<int>{3, -1, 30, 57, 84}));
}

TEST(ToolBarWidget, SeparatorsAreNarrowAndHaveNoCaption) {
    TWgToolbar bar;
    bar.resize(300, 28);
    new TWgToolButton(&bar);
    auto* separator = new TWgToolButton(&bar);
    separator->SetCaption(u"Before");
    separator->SetButtonType(ebtSeparator);
    EXPECT_TRUE(separator->Caption().empty());
    separator->SetCaption(u"After");
    EXPECT_TRUE(separator->Caption().empty());
    auto* last = new TWgToolButton(&bar);
    EXPECT_EQ(separator->width(), 6);
    EXPECT_EQ(last->x(), 3 + 24 + 3 + 6 + 3);
}

TEST(ToolBarWidget, ClickFiresOnClickWithTheButtonAsSender) {
    TWgToolbar bar;
    auto* button = new TWgToolButton(&bar);
    bar.show();
    QObject* sender = nullptr;
    int clicks = 0;
    button->OnClick = [&](QObject* Sender) {
        sender = Sender;
        ++clicks;
    };
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(sender, button);
    button->setEnabled(false);
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
}

TEST(ToolBarWidget, TransparentButtonsShowTheGradientAndTheirGlyph) {
    const TWgImageList glyphs = MainMenuGlyphs();
    TWgToolbar bar;
    bar.resize(200, 30);
    bar.SetBackgroundType(bgtVertGradient);
    bar.SetGradientStartColor(0xFFFFFF);
    bar.SetGradientEndColor(0x000000);
    bar.SetShowBorder(false);
    bar.SetImages(&glyphs);
    bar.SetUseImageList(true);
    bar.SetTransparentButtons(true);
    auto* add = new TWgToolButton(&bar);
    add->SetImageIndex(7);
    const QImage image = bar.grab().toImage();
    EXPECT_EQ(image.pixelColor(150, 0), QColor(255, 255, 255));
    EXPECT_EQ(image.pixelColor(150, 29), QColor(0, 0, 0));
    // Inside the button, off the glyph: the bar's background.
    EXPECT_EQ(image.pixelColor(4, 15), image.pixelColor(150, 15));
    // The middle of the plus sign of the add glyph (16 by 16, centred in 24).
    EXPECT_EQ(image.pixelColor(3 + 4 + 7, 3 + 4 + 7), QColor(40, 150, 50));
}

namespace {

TWgImageList SolidGlyphs(std::initializer_list<TColor> Colors) {
    TWgImageList list;
    for (TColor c : Colors)
        list.Add(TMemoryBitmap(16, 16, ColorToPixel(c)));
    return list;
}

// The glyph's centre: 16 by 16 in the 24-pixel button at (3, 3).
QColor GlyphColor(TWgToolbar& Bar) {
    return Bar.grab().toImage().pixelColor(3 + 12, 3 + 12);
}

} // namespace

TEST(ToolBarWidget, HotAndDisabledButtonsTakeTheGlyphsOfTheirLists) {
    const TWgImageList plain = SolidGlyphs({0x0000FF, 0x0000FF});
    const TWgImageList hot = SolidGlyphs({0x00FF00});
    const TWgImageList disabled = SolidGlyphs({0xFF0000});
    TWgToolbar bar;
    bar.resize(200, 30);
    bar.SetImages(&plain);
    bar.SetHotImages(&hot);
    bar.SetDisabledImages(&disabled);
    bar.SetUseImageList(true);
    auto* button = new TWgToolButton(&bar);
    button->SetImageIndex(0);
    bar.show();
    EXPECT_EQ(GlyphColor(bar), QColor(255, 0, 0));
    QEnterEvent enter(QPointF(5, 5), QPointF(5, 5), QPointF(5, 5));
    QApplication::sendEvent(button, &enter);
    EXPECT_EQ(GlyphColor(bar), QColor(0, 255, 0));
    button->setEnabled(false);
    EXPECT_EQ(GlyphColor(bar), QColor(0, 0, 255));
    // An index that the disabled list lacks: the plain glyph, greyed.
    button->SetImageIndex(1);
    const QColor grey = GlyphColor(bar);
    EXPECT_EQ(grey.red(), grey.green());
    EXPECT_EQ(grey.green(), grey.blue());
}

TEST(ToolBarWidget, AButtonShowsItsActionAndRunsIt) {
    TWgToolbar bar;
    auto* button = new TWgToolButton(&bar);
    bar.show();
    int runs = 0;
    auto action = std::make_unique<TWgAction>(u"Sort");
    action->SetHint(u"Sort|Sorts the list");
    action->SetImageIndex(3);
    action->OnExecute = [&](TWgAction*) { ++runs; };
    button->SetAction(action.get());
    EXPECT_EQ(button->Caption(), u"Sort");
    EXPECT_EQ(button->statusTip(), "Sorts the list");
    EXPECT_EQ(button->ImageIndex(), 3);
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(runs, 1);
    action->SetEnabled(false);
    EXPECT_FALSE(button->isEnabled());
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(runs, 1);
    action->SetChecked(true);
    EXPECT_TRUE(button->Down());
    action->SetVisible(false);
    EXPECT_TRUE(button->isHidden());
    action.reset(); // the button lets go and keeps what it showed
    EXPECT_EQ(button->Action(), nullptr);
    EXPECT_EQ(button->Caption(), u"Sort");
}
