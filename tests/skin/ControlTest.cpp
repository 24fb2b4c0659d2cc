#include "skin/control.h"

#include "skin/bitmap.h"
#include "skin/data.h"

#include <gtest/gtest.h>

namespace {

TEST(SkinControlRules, ButtonFrames) {
    struct {
        bool Focused, Default, Pressed, Hover, Enabled;
        int Frame;
    } cases[] = {
        {false, false, false, false, true, 1}, {true, false, false, false, true, 5},
        {false, true, false, false, true, 5},  {false, false, false, true, true, 4},
        {true, false, false, true, true, 4},   // hover over focus
        {true, true, true, true, true, 2},     // pressed over all but disabled
        {false, true, false, false, false, 3}, // a disabled default button
        {true, false, true, true, false, 3},
    };
    for (auto& c : cases)
        EXPECT_EQ(ButtonFrame(c.Focused, c.Default, c.Pressed, c.Hover, c.Enabled), c.Frame)
            << c.Focused << c.Default << c.Pressed << c.Hover << c.Enabled;
}

TEST(SkinControlRules, CaptionLineBreakReplacesOnlyTheFirstMark) {
    EXPECT_EQ(ButtonCaptionText(u"One||Two||Three"), u"One\nTwo||Three");
    EXPECT_EQ(ButtonCaptionText(u"|One|"), u"|One|");
    EXPECT_EQ(ButtonCaptionText(u"||"), u"\n");
}

TEST(SkinControlRules, CheckCells) {
    struct {
        int Cells, State;
        bool Disabled, Pressed;
        int Cell;
    } cases[] = {
        {4, cbsUnchecked, false, false, 1}, {4, cbsChecked, false, false, 2},
        {4, cbsUnchecked, true, false, 3},  {4, cbsChecked, true, false, 4},
        {4, cbsUnchecked, false, true, 4},  {4, cbsGrayed, true, false, 4}, // capped to the strip
        {8, cbsGrayed, true, false, 6},     {12, cbsUnchecked, false, false, 1},
        {12, cbsChecked, false, false, 5},  {12, cbsUnchecked, true, false, 4},
        {12, cbsGrayed, false, false, 8},   {12, cbsChecked, false, true, 9},
        {12, cbsChecked, true, true, 12},
    };
    for (auto& c : cases)
        EXPECT_EQ(CheckCell(c.Cells, c.State, c.Disabled, c.Pressed), c.Cell)
            << c.Cells << " " << c.State << " " << c.Disabled << c.Pressed;
}

TEST(SkinControlRules, ComboUpDownAndProgress) {
    EXPECT_EQ(ComboFrame(false, false, true), 1);
    EXPECT_EQ(ComboFrame(true, true, true), 2);
    EXPECT_EQ(ComboFrame(true, true, false), 3);
    EXPECT_EQ(ComboFrame(false, true, true), 4);
    EXPECT_EQ(UpDownCell(0, 1), 1);
    EXPECT_EQ(UpDownCell(1, 2), 6);
    EXPECT_EQ(UpDownCell(1, 4), 8);
    EXPECT_EQ(ProgressFill(200, 0, 100, 25), 50);
    EXPECT_EQ(ProgressFill(200, 10, 20, 5), 0);                   // below the range
    EXPECT_EQ(ProgressFill(200, 10, 20, 99), 200);                // above it
    EXPECT_EQ(ProgressFill(200, 5, 5, 5), 0);                     // no range
    EXPECT_EQ(ProgressFill(100, -2147483647, 2147483647, 0), 50); // no overflow
}

TEST(SkinControlRules, ScrollZones) {
    // A bar 100 long, arrows of 17, the thumb from 40 to 60.
    TScrollBarGeometry bar{100, 17, 40, 60, false};
    struct {
        int P;
        TScrollZone Zone;
    } cases[] = {{0, szFirstArrow}, {16, szFirstArrow}, {17, szPageBefore}, {39, szPageBefore},
                 {40, szThumb},     {59, szThumb},      {60, szPageAfter},  {82, szPageAfter},
                 {83, szLastArrow}, {99, szLastArrow}};
    for (auto& c : cases) {
        EXPECT_EQ(ZoneAt(bar, {c.P, 5}), c.Zone) << c.P;
        TScrollBarGeometry vertical = bar;
        vertical.Vertical = true;
        EXPECT_EQ(ZoneAt(vertical, {5, c.P}), c.Zone) << "vertical " << c.P;
        EXPECT_EQ(ZoneAt(vertical, {c.P, 50}), szThumb) << "across " << c.P;
    }
}

TEST(SkinControlRules, ScrollCells) {
    EXPECT_EQ(ScrollArrowCell(false, false, szNone, false, false), 1);
    EXPECT_EQ(ScrollArrowCell(false, false, szFirstArrow, true, false), 2);
    EXPECT_EQ(ScrollArrowCell(false, false, szFirstArrow, false, false), 4);
    EXPECT_EQ(ScrollArrowCell(false, true, szFirstArrow, true, false), 5); // the other arrow
    EXPECT_EQ(ScrollArrowCell(false, true, szLastArrow, true, false), 6);
    EXPECT_EQ(ScrollArrowCell(true, false, szNone, false, true), 11);
    EXPECT_EQ(ScrollArrowCell(true, true, szLastArrow, false, false), 16);
    EXPECT_EQ(ScrollThumbFrame(szThumb, true), 2);
    EXPECT_EQ(ScrollThumbFrame(szThumb, false), 3);
    EXPECT_EQ(ScrollThumbFrame(szPageAfter, true), 1);
    EXPECT_EQ(ScrollGripCell(false, szThumb, false), 19);
    EXPECT_EQ(ScrollGripCell(true, szThumb, true), 21);
}

TEST(SkinControlRules, ScrollLayoutHalvesArrowsThatDoNotFit) {
    TScrollBarGeometry bar{20, 17, 0, 0, false};
    const TScrollBarLayout l = LayoutScrollBar(bar, 20, 17);
    EXPECT_EQ(l.FirstArrow.Width(), 10);
    EXPECT_EQ(l.LastArrow.Left, 10);
    EXPECT_FALSE(l.ThumbInside);
}

// A strip whose cells are solid colours 1, 2, 3, ... (red 10 x n).
TMemoryBitmap Cells(int Count, int W, int H, int Base) {
    TMemoryBitmap b(Count * W, H);
    for (int i = 0; i < Count; ++i)
        FillBitmapRect(b, Bounds(i * W, 0, W, H), ColorToPixel(RGBColor(Base, i + 1, 0)));
    return b;
}

struct ScrollSkin : TSkinDataModel {
    ScrollSkin() {
        Empty = false;
        ButtonFace = RGBColor(1, 1, 1);
        auto object = [](int Frames, const TMemoryBitmap& Map) {
            auto o = std::make_unique<TDataSkinObject>();
            o->Frame = Frames;
            o->Map = Map;
            return o;
        };
        ScrollbarMap = object(23, Cells(23, 17, 17, 10));
        HorzScroll = object(4, Cells(4, 8, 17, 20));
        VertScroll = object(4, Cells(4, 17, 8, 30));
        HorzScrollThumb = object(3, Cells(3, 8, 17, 40));
        VertScrollThumb = object(3, Cells(3, 17, 8, 50));
    }
};

TPixel Cell(int Base, int N) {
    return ColorToPixel(RGBColor(Base, N, 0));
}

TEST(SkinScrollBarPaint, PiecesComeFromTheirCells) {
    ScrollSkin skin;
    TScrollBarGeometry bar{200, 17, 80, 120, false};
    TMemoryBitmap work(200, 17);
    ASSERT_TRUE(PaintScrollBar(work, skin, bar, szNone, false, false));
    EXPECT_EQ(work.Pixel(8, 8), Cell(10, 1));    // left arrow, normal
    EXPECT_EQ(work.Pixel(191, 8), Cell(10, 5));  // right arrow
    EXPECT_EQ(work.Pixel(30, 8), Cell(20, 1));   // track, frame 1
    EXPECT_EQ(work.Pixel(82, 1), Cell(40, 1));   // thumb body, frame 1
    EXPECT_EQ(work.Pixel(100, 8), Cell(10, 17)); // the grip in the middle

    ASSERT_TRUE(PaintScrollBar(work, skin, bar, szLastArrow, true, false));
    EXPECT_EQ(work.Pixel(191, 8), Cell(10, 6));
    EXPECT_EQ(work.Pixel(8, 8), Cell(10, 1));
    ASSERT_TRUE(PaintScrollBar(work, skin, bar, szThumb, false, false));
    EXPECT_EQ(work.Pixel(82, 1), Cell(40, 3));
    EXPECT_EQ(work.Pixel(100, 8), Cell(10, 19));

    // Disabled: arrows and track change, no thumb.
    ASSERT_TRUE(PaintScrollBar(work, skin, bar, szThumb, true, true));
    EXPECT_EQ(work.Pixel(8, 8), Cell(10, 3));
    EXPECT_EQ(work.Pixel(100, 8), Cell(20, 3));
}

TEST(SkinScrollBarPaint, VerticalBarsAndMissingImages) {
    ScrollSkin skin;
    TScrollBarGeometry bar{150, 17, 17, 40, true};
    TMemoryBitmap work(17, 150);
    ASSERT_TRUE(PaintScrollBar(work, skin, bar, szFirstArrow, false, false));
    EXPECT_EQ(work.Pixel(8, 8), Cell(10, 12));   // up arrow, hover
    EXPECT_EQ(work.Pixel(8, 141), Cell(10, 13)); // down arrow
    EXPECT_EQ(work.Pixel(8, 100), Cell(30, 1));  // the vertical track
    EXPECT_EQ(work.Pixel(1, 18), Cell(50, 1));   // the vertical thumb

    skin.ScrollbarMap->Map = TMemoryBitmap();
    TMemoryBitmap untouched(17, 150, 0xFF123456);
    EXPECT_FALSE(PaintScrollBar(untouched, skin, bar, szNone, false, false));
    EXPECT_EQ(untouched.Pixel(8, 8), 0xFF123456u);
}

} // namespace
