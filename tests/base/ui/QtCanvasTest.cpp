#include "base/ui/QtCanvas.h"
#include "base/ui/Colors.h"
#include "base/ui/QtDialogs.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

// Paints into a white image and returns its pixels.
template <typename F> QImage Paint(int W, int H, F&& Painter) {
    QImage image(W, H, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter p(&image);
    TQtCanvas canvas(p);
    Painter(canvas);
    p.end();
    return image;
}

TColor At(const QImage& I, int X, int Y) {
    return FromQColor(I.pixelColor(X, Y));
}

constexpr TColor White = 0xFFFFFF;
constexpr TColor Red = 0x0000FF; // 0x00BBGGRR

} // namespace

TEST(QtCanvas, FillsAndFramesRespectExclusiveEdges) {
    QImage img = Paint(8, 8, [](TCanvas& c) {
        c.SetBrushColor(Red);
        c.FillRect(Rect(1, 1, 3, 3));
        c.SetPenColor(0xFF0000);
        c.FrameRect(Rect(4, 4, 8, 8));
    });
    EXPECT_EQ(At(img, 1, 1), Red);
    EXPECT_EQ(At(img, 2, 2), Red);
    EXPECT_EQ(At(img, 3, 3), White);
    EXPECT_EQ(At(img, 4, 4), 0xFF0000u);
    EXPECT_EQ(At(img, 7, 7), 0xFF0000u);
    EXPECT_EQ(At(img, 5, 5), White);
}

TEST(QtCanvas, DottedLinesSetEveryOtherPixelAndSolidOnesStopShort) {
    QImage img = Paint(10, 3, [](TCanvas& c) {
        c.SetPenColor(0);
        c.SetPenStyle(psDot);
        c.MoveTo(0, 0);
        c.LineTo(6, 0);
        c.SetPenStyle(psSolid);
        c.MoveTo(0, 2);
        c.LineTo(4, 2);
    });
    for (int x = 0; x < 7; ++x)
        EXPECT_EQ(At(img, x, 0), x % 2 == 0 && x < 6 ? 0u : White) << x;
    EXPECT_EQ(At(img, 3, 2), 0u);
    EXPECT_EQ(At(img, 4, 2), White);
}

TEST(QtCanvas, SunkenEdgeUsesShadowAboveAndHighlightBelow) {
    QImage img =
        Paint(6, 6, [](TCanvas& c) { c.DrawEdge(Rect(0, 0, 6, 6), BDR_SUNKENOUTER, BF_RECT); });
    EXPECT_EQ(At(img, 2, 0), ResolveColor(clBtnShadow));
    EXPECT_EQ(At(img, 2, 5), ResolveColor(clBtnHighlight));
    EXPECT_EQ(At(img, 2, 2), White);
}

TEST(QtCanvas, TransparentKeyAndBufferedPaintingKeepWhatLiesBelow) {
    TMemoryBitmap bmp(2, 1);
    bmp.SetPixel(0, 0, ColorToPixel(0xFF00FF));
    bmp.SetPixel(1, 0, ColorToPixel(Red));
    QImage img = Paint(4, 4, [&](TCanvas& c) {
        c.SetBrushColor(0x00FF00);
        c.FillRect(Rect(0, 0, 4, 1));
        c.Draw(0, 0, bmp, 0xFF00FF);
        c.BeginBuffer(Rect(0, 2, 4, 4));
        c.SetBrushColor(Red);
        c.FillRect(Rect(1, 2, 2, 3));
        c.EndBuffer();
    });
    EXPECT_EQ(At(img, 0, 0), 0x00FF00u);
    EXPECT_EQ(At(img, 1, 0), Red);
    EXPECT_EQ(At(img, 1, 2), Red);
    EXPECT_EQ(At(img, 0, 2), White);
}

// On a denser screen painting through the off-screen buffer gives the very
// pixels that direct painting gives (a buffer of the coarser density would
// be enlarged and smear text), and our bitmaps become whole pixel blocks.
TEST(QtCanvas, DenseScreensGetTheirOwnDensityFromBuffersAndBitmaps) {
    for (qreal ratio : {1.25, 1.5, 2.0}) {
        auto paint = [&](bool Buffered) {
            QImage image(QSize(60, 16) * ratio, QImage::Format_RGB32);
            image.setDevicePixelRatio(ratio);
            image.fill(Qt::white);
            QPainter p(&image);
            TQtCanvas canvas(p);
            canvas.SetDoubleBuffered(Buffered);
            canvas.BeginBuffer(Rect(0, 0, 60, 16));
            TFont font;
            font.Name = u"Tahoma";
            font.Height = -11;
            canvas.SetFont(font);
            canvas.TextOut(2, 1, u"Value");
            canvas.EndBuffer();
            p.end();
            return image;
        };
        EXPECT_EQ(paint(true), paint(false)) << ratio;
    }

    QImage image(QSize(4, 2) * 2, QImage::Format_RGB32);
    image.setDevicePixelRatio(2);
    image.fill(Qt::white);
    TMemoryBitmap bmp(2, 1);
    bmp.SetPixel(0, 0, ColorToPixel(Red));
    bmp.SetPixel(1, 0, ColorToPixel(0x000000));
    {
        QPainter p(&image);
        TQtCanvas canvas(p);
        canvas.Draw(1, 1, bmp, clNone);
    }
    for (int y = 2; y < 4; ++y) {
        EXPECT_EQ(At(image, 1, y), White);
        EXPECT_EQ(At(image, 2, y), Red);
        EXPECT_EQ(At(image, 3, y), Red);
        EXPECT_EQ(At(image, 4, y), 0x000000u);
        EXPECT_EQ(At(image, 5, y), 0x000000u);
        EXPECT_EQ(At(image, 6, y), White);
    }
}

TEST(QtCanvas, TextMeasureAgreesWithCalcRect) {
    QImage img(10, 10, QImage::Format_RGB32);
    QPainter p(&img);
    TQtCanvas c(p);
    TFont f;
    f.Name = u"Tahoma";
    f.Height = -13;
    c.SetFont(f);
    const TSize size = c.TextExtent(u"Keywords");
    EXPECT_GT(size.cx, 20);
    EXPECT_EQ(size.cy, c.TextMetrics().Height);
    TRect r = Rect(5, 5, 5, 5);
    c.DrawText(u"Keywords", r, DT_CALCRECT | DT_SINGLELINE | DT_NOPREFIX);
    EXPECT_EQ(r.Width(), size.cx);
    EXPECT_EQ(r.Height(), size.cy);
}

TEST(QtDialogs, FilterTextsBecomeNameFilters) {
    EXPECT_EQ(ToQtNameFilters(u"Ansi|*.syx|UTF-8|*.syx|Bad"),
              (QStringList{"Ansi (*.syx)", "UTF-8 (*.syx)"}));
    EXPECT_EQ(ToQtNameFilters(u"Images|*.bmp;*.png"), QStringList{"Images (*.bmp *.png)"});
}
