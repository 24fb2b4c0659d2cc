#include "skin/draw.h"
#include "skin/bitmap.h"
#include "skin/colors.h"
#include "skin/region.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Bitmaps written as rows of letters: each letter is one pixel value, '.'
// is magenta.
TMemoryBitmap Letters(const std::vector<std::string>& rows) {
    TMemoryBitmap b(int(rows[0].size()), int(rows.size()));
    for (int y = 0; y < b.Height(); ++y)
        for (int x = 0; x < b.Width(); ++x) {
            char c = rows[std::size_t(y)][std::size_t(x)];
            b.SetPixel(x, y, c == '.' ? MagentaPixel : 0xFF000000u + TPixel(c));
        }
    return b;
}

std::vector<std::string> Rows(const TMemoryBitmap& b) {
    std::vector<std::string> rows;
    for (int y = 0; y < b.Height(); ++y) {
        std::string row;
        for (int x = 0; x < b.Width(); ++x) {
            TPixel p = b.Pixel(x, y);
            row += IsMagenta(p) ? '.' : char(p & 0xFF);
        }
        rows.push_back(row);
    }
    return rows;
}

using R = std::vector<std::string>;

} // namespace

TEST(Draw, NineSlice) {
    // Two frames side by side; the second is drawn.
    const TMemoryBitmap map = Letters({"zzzabc", "zzzdef", "zzzghi"});
    struct {
        const char* Name;
        TRect Margins;
        bool Tile;
        int W, H;
        R Expected;
    } cases[] = {
        {"corners kept, edges and centre stretched",
         Rect(1, 1, 1, 1),
         false,
         5,
         4,
         {"abbbc", "deeef", "deeef", "ghhhi"}},
        {"no margins: the frame stretched",
         Rect(0, 0, 0, 0),
         false,
         6,
         3,
         {"aabbcc", "ddeeff", "gghhii"}},
        {"side margins wider than the target are dropped",
         Rect(2, 1, 2, 1),
         false,
         3,
         3,
         {"abc", "def", "ghi"}},
        {"zero-area centre is skipped", Rect(2, 1, 1, 1), false, 4, 3, {"ab.c", "de.f", "gh.i"}},
        {"tiled centre from its top-left",
         Rect(1, 0, 0, 0),
         true,
         5,
         3,
         {"abcbc", "defef", "ghihi"}},
    };
    for (auto& c : cases)
        EXPECT_EQ(Rows(DrawRect(map, 2, 2, false, c.Margins, c.Tile, c.W, c.H)), c.Expected)
            << c.Name;
    // Stacked frames and frames that do not exist.
    const TMemoryBitmap stacked = Letters({"ab", "cd", "ef", "gh"});
    EXPECT_EQ(Rows(DrawRect(stacked, 2, 2, true, {}, false, 2, 2)), (R{"ef", "gh"}));
    EXPECT_EQ(Rows(DrawRect(stacked, 3, 2, true, {}, false, 2, 1)), (R{".."}));
    EXPECT_EQ(Rows(DrawRect(stacked, 1, 0, true, {}, false, 2, 1)), (R{".."}));
}

TEST(Draw, CopiesIntoTargets) {
    const TMemoryBitmap map = Letters({"a.bcd", "efghi"});
    struct {
        const char* Name;
        void (*Draw)(TMemoryBitmap&, const TMemoryBitmap&);
        R Expected;
    } cases[] = {
        {"object, plain",
         [](TMemoryBitmap& t, const TMemoryBitmap& m) {
             DrawObject(t, Rect(1, 0, 6, 2), m, 1, 1, false, {}, false, false);
         },
         {"#a.bcd#", "#efghi#"}},
        {"object, transparent",
         [](TMemoryBitmap& t, const TMemoryBitmap& m) {
             DrawObject(t, Rect(1, 0, 6, 2), m, 1, 1, false, {}, false, true);
         },
         {"#a#bcd#", "#efghi#"}},
        {"tiled bar: caps stretched, middle repeated and cut",
         [](TMemoryBitmap& t, const TMemoryBitmap& m) {
             DrawTiledBar(t, Rect(0, 0, 7, 2), m, 1, 1, false, 1, 1, false);
         },
         {"a.bc.bd", "efghfgi"}},
        {"centred, odd room to the left and top",
         [](TMemoryBitmap& t, const TMemoryBitmap& m) {
             DrawCentred(t, Rect(0, 0, 4, 2), m, 2, 5, false, false);
         },
         {"##.####", "##f####"}},
        {"three slices, magenta of the middle left out",
         [](TMemoryBitmap& t, const TMemoryBitmap& m) {
             DrawThreeSlice(t, Rect(0, 0, 7, 2), m, 1, 1, false, 1, 2, true);
         },
         {"a##bbcd", "effgghi"}},
        {"three slices, frame wider than the target: skewed source kept",
         [](TMemoryBitmap& t, const TMemoryBitmap& m) {
             // Frame 2 of 2 is 2 wide at x0 2; the source becomes 4 wide.
             DrawThreeSlice(t, Rect(0, 0, 1, 2), m, 2, 2, false, 0, 0, false);
         },
         {"b######", "g######"}},
        {"whole frame stretched",
         [](TMemoryBitmap& t, const TMemoryBitmap& m) {
             DrawFrame(t, Rect(0, 0, 7, 1), m, 1, 1, false);
         },
         {"aa.bbcd", "#######"}},
    };
    for (auto& c : cases) {
        TMemoryBitmap target = Letters({"#######", "#######"});
        c.Draw(target, map);
        EXPECT_EQ(Rows(target), c.Expected) << c.Name;
    }
}

TEST(Colours, BlendAndBrightness) {
    struct {
        TColor C1, C2;
        int Amount;
        TColor Expected;
    } blends[] = {
        {clWhite, clBlack, 150, RGBColor(38, 38, 38)},   // 15% of white
        {clWhite, clBlack, 50, RGBColor(128, 128, 128)}, // below 100: parts of 100
        {RGBColor(10, 20, 30), RGBColor(110, 220, 130), 500, RGBColor(60, 120, 80)},
        {clBtnFace, clWhite, 0, clWhite}, // system colours resolved
        {clBtnFace, clWhite, 1000, RGBColor(212, 208, 200)},
    };
    for (auto& b : blends)
        EXPECT_EQ(Blend(b.C1, b.C2, b.Amount), b.Expected) << b.Amount;
    struct {
        TColor C;
        int Expected;
    } bright[] = {{RGBColor(159, 159, 159), 200}, {RGBColor(255, 0, 0), 255},
                  {RGBColor(160, 160, 160), 0},   {RGBColor(200, 150, 100), 128},
                  {RGBColor(240, 240, 200), 42},  {clBtnFace, 14}};
    for (auto& b : bright)
        EXPECT_EQ(Brightness(b.C), b.Expected) << b.C;
}

TEST(Colours, GradientTables) {
    TGradientCache cache;
    struct {
        int Length;
        TColor C1, C2;
        std::vector<int> Red;
    } cases[] = {
        {5, RGBColor(0, 0, 0), RGBColor(100, 0, 0), {0, 25, 50, 75, 100}},
        // Rounding towards zero leaves a falling ramp one short of its end.
        {4, RGBColor(100, 0, 0), RGBColor(0, 0, 0), {100, 67, 34, 1}},
        {1, RGBColor(10, 0, 0), RGBColor(31, 0, 0), {20}},
    };
    for (auto& c : cases) {
        const auto& t = cache.Table(c.Length, c.C1, c.C2);
        std::vector<int> red;
        for (TPixel p : t)
            red.push_back(int((p >> 16) & 0xFF));
        EXPECT_EQ(red, c.Red) << c.Length;
    }
    // Sixteen tables are kept; the seventeenth pushes out the oldest.
    TGradientCache ring;
    for (int n = 1; n <= 17; ++n)
        ring.Table(n, 0, clWhite);
    ring.Table(17, 0, clWhite);
    EXPECT_EQ(ring.Misses(), 17);
    ring.Table(1, 0, clWhite);
    EXPECT_EQ(ring.Misses(), 18);

    TMemoryBitmap b(2, 4, MagentaPixel);
    TRect clip = Rect(0, 1, 1, 3);
    GradientRect(b, Rect(0, 0, 2, 4), RGBColor(0, 0, 0), RGBColor(0, 0, 3), true, &clip, cache);
    EXPECT_EQ(b.Pixels(),
              (std::vector<TPixel>{MagentaPixel, MagentaPixel, 0xFF000001, MagentaPixel, 0xFF000002,
                                   MagentaPixel, MagentaPixel, MagentaPixel}));
}

TEST(Region, FromBitmapRuns) {
    // Magenta within a tolerance of 1 per channel is transparent.
    TMemoryBitmap b = Letters({".aa.", "a..a", "...."});
    b.SetPixel(0, 2, 0xFFFF01FF); // inside the tolerance
    b.SetPixel(3, 2, 0xFFFE00FF); // red one below the key: opaque
    TRegion r = RegionFromBitmap(b, 10, 20, 1, 1, 1, clMagenta);
    EXPECT_EQ(r.Rects(), (std::vector<TRect>{Rect(11, 20, 13, 21), Rect(10, 21, 11, 22),
                                             Rect(13, 21, 14, 22), Rect(13, 22, 14, 23)}));
    EXPECT_TRUE(r.Contains(13, 22));
    EXPECT_FALSE(r.Contains(10, 22));
}

TEST(Region, FlushesEqualOneStep) {
    // A checkerboard of 120 by 80 gives 4,800 one-pixel runs: two flushes
    // of 2,000 and a rest.
    TMemoryBitmap b(120, 80, MagentaPixel);
    std::vector<TRect> runs;
    for (int y = 0; y < 80; ++y)
        for (int x = (y & 1); x < 120; x += 2) {
            b.SetPixel(x, y, 0xFF000000);
            runs.push_back(Bounds(x, y, 1, 1));
        }
    TRegion region = RegionFromBitmap(b, 0, 0, 1, 1, 1, clMagenta);
    EXPECT_EQ(region, TRegion::FromRects(runs));
    EXPECT_EQ(region.Rects().size(), 4800u);
    // Unions merge bands: two overlapping squares give three bands.
    TRegion u(Rect(0, 0, 4, 4));
    u.Union(TRegion(Rect(2, 2, 6, 6)));
    EXPECT_EQ(u.Rects(),
              (std::vector<TRect>{Rect(0, 0, 4, 2), Rect(0, 2, 6, 4), Rect(2, 4, 6, 6)}));
}
