#include "base/Canvas.h"
#include "base/BitmapCanvas.h"

#include <gtest/gtest.h>

namespace {

TEST(Canvas, FixedMetricsAndPointSizes) {
    struct {
        int Height;
        TFontStyles Style;
        TTextMetrics Expected;
    } cases[] = {
        {-11, 0, {11, 9, 2, 6, 12}},
        {-11, fsBold, {11, 9, 2, 7, 14}},
        {14, 0, {14, 11, 3, 7, 14}},
        {0, 0, {11, 9, 2, 6, 12}},
        {-2000000000, 0, {32767, 24576, 8191, 16384, 32768}},
    };
    for (const auto& c : cases) {
        TFont font;
        font.Height = c.Height;
        font.Style = c.Style;
        TTextMetrics m = FixedFontMetrics(font);
        EXPECT_EQ(m.Height, c.Expected.Height) << c.Height;
        EXPECT_EQ(m.Ascent, c.Expected.Ascent) << c.Height;
        EXPECT_EQ(m.Descent, c.Expected.Descent) << c.Height;
        EXPECT_EQ(m.AveCharWidth, c.Expected.AveCharWidth) << c.Height;
        EXPECT_EQ(m.MaxCharWidth, c.Expected.MaxCharWidth) << c.Height;
    }
    TFont font;
    font.SetPointSize(8);
    EXPECT_EQ(font.Height, -11);
    font.SetPointSize(9, 120);
    EXPECT_EQ(font.Height, -15);
    font.Height = -16;
    EXPECT_EQ(font.PointSize(), 12);
}

TEST(Canvas, ColourNamesAndSystemColours) {
    TColor c = 0;
    EXPECT_TRUE(IdentToColor(u"CLBTNFACE", c));
    EXPECT_EQ(c, clBtnFace);
    EXPECT_TRUE(IdentToColor(u"clMoneyGreen", c));
    EXPECT_EQ(c, 0xC0DCC0u);
    EXPECT_FALSE(IdentToColor(u"red", c));
    EXPECT_FALSE(IdentToColor(u"clRedd", c));
    EXPECT_EQ(ClassicColorToRGB(clBtnFace), 0xC8D0D4u);
    EXPECT_EQ(ClassicColorToRGB(clSystemColor | 200), 0u);
    EXPECT_EQ(ClassicColorToRGB(0x123456), 0x123456u);
}

TEST(Canvas, ClipStackAndRectangleText) {
    TFixedMetricsCanvas canvas;
    canvas.IntersectClipRect(Rect(0, 0, 50, 50));
    canvas.SaveClip();
    canvas.IntersectClipRect(Rect(40, 40, 90, 90));
    EXPECT_EQ(*canvas.ClipRect(), Rect(40, 40, 50, 50));
    canvas.IntersectClipRect(Rect(60, 60, 70, 70));
    EXPECT_TRUE(canvas.ClipRect()->IsEmpty());
    canvas.RestoreClip();
    EXPECT_EQ(*canvas.ClipRect(), Rect(0, 0, 50, 50));
    canvas.RestoreClip(); // nothing saved: unchanged
    EXPECT_EQ(*canvas.ClipRect(), Rect(0, 0, 50, 50));

    TRect r = Rect(0, 0, 40, 0);
    EXPECT_EQ(canvas.DrawText(u"aaa bbb ccc\r\nlonglongword", r, DT_CALCRECT | DT_WORDBREAK), 44);
    EXPECT_EQ(r, Rect(0, 0, 72, 44));
}

TEST(Canvas, BitmapCanvasPixels) {
    TMemoryBitmap bitmap(20, 10, ColorToPixel(0xFFFFFF));
    TBitmapCanvas canvas(bitmap);
    canvas.SetBrushColor(0x0000FF);
    canvas.SetClipRect(Rect(0, 0, 4, 10));
    canvas.FillRect(Rect(-5, -5, 10, 2));
    canvas.SetClipRect(std::nullopt);
    EXPECT_EQ(PixelToColor(bitmap.Pixel(3, 1)), 0x0000FFu);
    EXPECT_EQ(PixelToColor(bitmap.Pixel(4, 1)), 0xFFFFFFu);

    canvas.SetPenColor(0x00FF00);
    canvas.SetPenStyle(psDot);
    canvas.MoveTo(0, 5);
    canvas.LineTo(6, 5);
    std::string dots;
    for (int x = 0; x < 7; ++x)
        dots += PixelToColor(bitmap.Pixel(x, 5)) == 0x00FF00 ? '#' : '.';
    EXPECT_EQ(dots, "#.#.#..");

    // A sunken outer edge: shadow above and left, highlight below and right.
    canvas.DrawEdge(Rect(10, 2, 14, 6), BDR_SUNKENOUTER, BF_RECT);
    EXPECT_EQ(PixelToColor(bitmap.Pixel(10, 2)), 0x808080u);
    EXPECT_EQ(PixelToColor(bitmap.Pixel(13, 5)), 0xFFFFFFu);
    EXPECT_EQ(PixelToColor(bitmap.Pixel(12, 5)), 0xFFFFFFu);
    EXPECT_EQ(PixelToColor(bitmap.Pixel(11, 2)), 0x808080u);

    // Stretching doubles pixels; the key colour leaves the target alone.
    TMemoryBitmap source(2, 1);
    source.SetPixel(0, 0, ColorToPixel(0x112233));
    source.SetPixel(1, 0, ColorToPixel(0xFF00FF));
    canvas.StretchDraw(Rect(16, 0, 20, 2), source, 0xFF00FF);
    EXPECT_EQ(PixelToColor(bitmap.Pixel(17, 1)), 0x112233u);
    EXPECT_EQ(PixelToColor(bitmap.Pixel(18, 1)), 0xFFFFFFu);

    // Drawing outside the buffered rectangle is lost.
    canvas.BeginBuffer(Rect(0, 8, 10, 10));
    canvas.SetBrushColor(0);
    canvas.FillRect(Rect(0, 7, 10, 10));
    canvas.EndBuffer();
    EXPECT_EQ(PixelToColor(bitmap.Pixel(0, 7)), 0xFFFFFFu);
    EXPECT_EQ(PixelToColor(bitmap.Pixel(0, 8)), 0u);
}

TEST(Canvas, BitmapCanvasTextBoxes) {
    TMemoryBitmap bitmap(30, 20, ColorToPixel(0xFFFFFF));
    TBitmapCanvas canvas(bitmap);
    TFont font;
    font.Color = 0xFF0000;
    canvas.SetFont(font);
    canvas.SetTextAlign(taBaseline);
    canvas.TextOut(2, 12, u"a b");
    // Boxes of 5 by 9 above the baseline, one per character but the space.
    std::string row;
    for (int x = 0; x < 20; ++x)
        row += PixelToColor(bitmap.Pixel(x, 11)) == 0xFF0000 ? '#' : '.';
    EXPECT_EQ(row, "..#####.......#####.");
    EXPECT_EQ(PixelToColor(bitmap.Pixel(2, 3)), 0xFF0000u);
    EXPECT_EQ(PixelToColor(bitmap.Pixel(2, 2)), 0xFFFFFFu);
    EXPECT_EQ(PixelToColor(bitmap.Pixel(2, 12)), 0xFFFFFFu);
}

} // namespace
