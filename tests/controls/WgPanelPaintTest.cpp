#include "controls/WgPanelPaint.h"

#include "base/BitmapCanvas.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

namespace {

TColor At(const TMemoryBitmap& B, int X, int Y) {
    return PixelToColor(B.Pixel(X, Y));
}

} // namespace

TEST(WgPanelPaint, GradientColours) {
    const struct {
        TColor Start, End;
        int Step, Steps;
        TColor Expected;
    } cases[] = {
        {0x000000, 0x0000FF, 0, 3, 0x000000}, {0x000000, 0x0000FF, 1, 3, 0x00007F},
        {0x000000, 0x0000FF, 2, 3, 0x0000FF}, {0xFFFFFF, 0x204060, 1, 2, 0x204060},
        {0xFFFFFF, 0x000000, 5, 1, 0xFFFFFF}, {0x102030, 0x302010, 1, 2, 0x302010},
        {0x00FF00, 0xFF0000, 1, 3, 0x7F8000}, // truncation toward zero both ways
    };
    for (const auto& c : cases)
        EXPECT_EQ(GradientColor(c.Start, c.End, c.Step, c.Steps), c.Expected) << &c - cases;
}

TEST(WgPanelPaint, VerticalGradientRunsTopToBottomInBands) {
    TMemoryBitmap bitmap(6, 8);
    TBitmapCanvas canvas(bitmap);
    TWgPanelLook look;
    look.BackgroundType = bgtVertGradient;
    look.GradientStartColor = 0xFFFFFF;
    look.GradientEndColor = 0x000000;
    look.GradientSteps = 4; // two rows a band
    look.BevelOuter = bvNone;
    PaintPanel(canvas, Rect(0, 0, 6, 8), look);
    const TColor rows[8] = {0xFFFFFF, 0xFFFFFF, 0xAAAAAA, 0xAAAAAA,
                            0x555555, 0x555555, 0x000000, 0x000000};
    for (int y = 0; y < 8; ++y) {
        EXPECT_EQ(At(bitmap, 0, y), rows[y]) << y;
        EXPECT_EQ(At(bitmap, 5, y), rows[y]) << y;
    }
}

TEST(WgPanelPaint, SystemColoursAreResolvedAndMoreStepsThanPixelsStillEndOnTheEndColour) {
    TMemoryBitmap bitmap(3, 4);
    TBitmapCanvas canvas(bitmap);
    PaintGradient(canvas, Rect(0, 0, 3, 4), 0xFFFFFF, clBtnShadow, 256, false);
    EXPECT_EQ(At(bitmap, 0, 0), 0xFFFFFFu);
    EXPECT_EQ(At(bitmap, 2, 3), 0x808080u);
}

TEST(WgPanelPaint, BevelsFrameTheEdgesInTheirColours) {
    TMemoryBitmap bitmap(8, 8);
    TBitmapCanvas canvas(bitmap);
    TWgPanelLook look;
    look.Color = 0x00FF00;
    look.BevelOuter = bvRaised;
    look.BevelInner = bvSpace;
    look.BevelSpaceColor = 0x000000;
    PaintPanel(canvas, Rect(0, 0, 8, 8), look);
    EXPECT_EQ(At(bitmap, 0, 0), 0xFFFFFFu); // highlight at the top left
    EXPECT_EQ(At(bitmap, 7, 7), 0x808080u); // shadow at the bottom right
    EXPECT_EQ(At(bitmap, 7, 0), 0x808080u);
    EXPECT_EQ(At(bitmap, 1, 1), 0x000000u); // the space bevel one pixel in
    EXPECT_EQ(At(bitmap, 6, 6), 0x000000u);
    EXPECT_EQ(At(bitmap, 3, 3), 0x00FF00u);
    EXPECT_EQ(PanelClientRect(Rect(0, 0, 8, 8), look), Rect(2, 2, 6, 6));
}

TEST(WgPanelPaint, CaptionIsDrawnInsideBevelsAndBorderWithItsAlignment) {
    const std::pair<TWgAlignment, unsigned> cases[] = {
        {taLeftJustify, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX},
        {taCenter, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_CENTER},
        {taRightJustify, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_RIGHT},
    };
    for (const auto& [alignment, flags] : cases) {
        TRecordingCanvas canvas;
        TWgPanelLook look;
        look.Caption = u" Options";
        look.Alignment = alignment;
        look.BorderWidth = 2;
        look.Font.Name = u"Tahoma";
        look.Font.Height = -15;
        look.Font.Style = fsBold;
        look.Font.Color = 0xFFFFFF;
        PaintPanel(canvas, Rect(0, 0, 177, 25), look);
        const auto texts = canvas.OpsStartingWith("DrawText");
        ASSERT_EQ(texts.size(), 1u);
        EXPECT_EQ(texts[0], "DrawText(3,3,174,22),\" Options\"," + std::to_string(flags) +
                                " Tahoma/-15/b FFFFFF");
    }
}

TEST(WgPanelPaint, BitmapBackgroundsAndTheirFallback) {
    TMemoryBitmap picture(4, 2, ColorToPixel(0x0000FF));
    TWgPanelLook look;
    look.BevelOuter = bvNone;
    look.Background = &picture;
    const std::pair<TWgBackgroundType, const char*> cases[] = {
        {bgtStretchBitmap, "StretchDraw(0,0,10,5) 4x2 key=none"},
        {bgtTileBitmap, "Draw(0,0) 4x2 key=none"},
        {bgtCenterBitmap, "Draw(3,1) 4x2 key=none"},
    };
    for (const auto& [type, first] : cases) {
        TRecordingCanvas canvas;
        look.BackgroundType = type;
        PaintPanelBackground(canvas, Rect(0, 0, 10, 5), look);
        const auto draws = canvas.OpsStartingWith(type == bgtStretchBitmap ? "Stretch" : "Draw(");
        ASSERT_FALSE(draws.empty());
        EXPECT_EQ(draws[0], first);
        if (type == bgtTileBitmap) {
            EXPECT_EQ(draws.size(), 9u); // 3 across, 3 down
        }
    }
    TRecordingCanvas canvas;
    TMemoryBitmap empty;
    look.Background = &empty;
    look.BackgroundType = bgtStretchBitmap;
    PaintPanelBackground(canvas, Rect(0, 0, 10, 5), look);
    EXPECT_EQ(canvas.Ops, (std::vector<std::string>{"FillRect(0,0,10,5) FF00000F"}));
}
