#include "skin/bitmap.h"
#include "support/AllocationProbe.h"

#include <gtest/gtest.h>

namespace {

using Bytes = std::vector<std::uint8_t>;

void Put(Bytes& b, std::uint32_t v, int n) {
    for (int i = 0; i < n; ++i)
        b.push_back(std::uint8_t(v >> (8 * i)));
}

// A BMP file: file header, an info header of HeaderSize bytes (12 for the
// core header), then Extra (masks, palette) and the pixel bytes.
Bytes Bmp(int HeaderSize, std::int32_t W, std::int32_t H, int Bits, std::uint32_t Compression,
          const Bytes& Extra, const Bytes& Pixels, std::uint32_t Masks[3] = nullptr) {
    Bytes b = {'B', 'M'};
    std::uint32_t off = 14 + std::uint32_t(HeaderSize) + std::uint32_t(Extra.size());
    Put(b, off + std::uint32_t(Pixels.size()), 4);
    Put(b, 0, 4);
    Put(b, off, 4);
    Put(b, std::uint32_t(HeaderSize), 4);
    if (HeaderSize == 12) {
        Put(b, std::uint32_t(W), 2);
        Put(b, std::uint32_t(H), 2);
        Put(b, 1, 2);
        Put(b, std::uint32_t(Bits), 2);
    } else {
        Put(b, std::uint32_t(W), 4);
        Put(b, std::uint32_t(H), 4);
        Put(b, 1, 2);
        Put(b, std::uint32_t(Bits), 2);
        Put(b, Compression, 4);
        Put(b, std::uint32_t(Pixels.size()), 4);
        Put(b, 0, 4);
        Put(b, 0, 4);
        Put(b, 0, 4); // colours used: all
        Put(b, 0, 4);
        for (int i = 0; i < 3 && HeaderSize > 40; ++i)
            Put(b, Masks ? Masks[i] : 0, 4);
        while (b.size() < 14u + std::uint32_t(HeaderSize))
            b.push_back(0);
    }
    b.insert(b.end(), Extra.begin(), Extra.end());
    b.insert(b.end(), Pixels.begin(), Pixels.end());
    return b;
}

constexpr TPixel Red = 0xFFFF0000, Green = 0xFF00FF00, Blue = 0xFF0000FF, White = 0xFFFFFFFF,
                 Black = 0xFF000000;

// Palette of 4-byte entries (blue, green, red, 0): black, red, green, blue, white.
Bytes Palette(int entrySize = 4, int count = 5) {
    const TPixel colours[] = {Black, Red, Green, Blue, White};
    Bytes p;
    for (int i = 0; i < count; ++i) {
        TPixel c = i < 5 ? colours[i] : Black;
        p.push_back(std::uint8_t(c));
        p.push_back(std::uint8_t(c >> 8));
        p.push_back(std::uint8_t(c >> 16));
        if (entrySize == 4) p.push_back(0);
    }
    return p;
}

std::vector<TPixel> Pixels(const TMemoryBitmap& b) {
    return b.Pixels();
}

} // namespace

TEST(Bmp, Variants) {
    std::uint32_t m565[3] = {0xF800, 0x07E0, 0x001F};
    std::uint32_t mBGRA[3] = {0x0000FF00, 0x00FF0000, 0xFF000000};
    Bytes pal16 = Palette(4, 16), pal256 = Palette(4, 256), pal2 = {0, 0, 0, 0, 255, 255, 255, 0};
    // Each image is 2 wide and 2 high: top row red, green; bottom row blue, white.
    struct {
        const char* Name;
        Bytes File;
    } cases[] = {
        {"24 bits bottom-up, rows padded",
         Bmp(40, 2, 2, 24, 0, {}, {255, 0, 0, 255, 255, 255, 0, 0, 0, 0, 255, 0, 255, 0, 0, 0})},
        {"24 bits top-down",
         Bmp(40, 2, -2, 24, 0, {}, {0, 0, 255, 0, 255, 0, 0, 0, 255, 0, 0, 255, 255, 255, 0, 0})},
        {"32 bits",
         Bmp(40, 2, 2, 32, 0, {}, {255, 0, 0, 9, 255, 255, 255, 9, 0, 0, 255, 9, 0, 255, 0, 9})},
        {"16 bits 5-5-5",
         Bmp(40, 2, 2, 16, 0, {}, {0x1F, 0x00, 0xFF, 0x7F, 0x00, 0x7C, 0xE0, 0x03})},
        {"16 bits fields 5-6-5",
         Bmp(40, 2, 2, 16, 3, {0x00, 0xF8, 0, 0, 0xE0, 0x07, 0, 0, 0x1F, 0, 0, 0},
             {0x1F, 0x00, 0xFF, 0xFF, 0x00, 0xF8, 0xE0, 0x07}, m565)},
        {"32 bits fields in a larger header",
         Bmp(108, 2, 2, 32, 3, {}, {0, 0, 0, 255, 0, 255, 255, 255, 0, 255, 0, 0, 0, 0, 255, 0},
             mBGRA)},
        {"8 bits", Bmp(40, 2, 2, 8, 0, pal256, {3, 4, 0, 0, 1, 2, 0, 0})},
        {"4 bits", Bmp(40, 2, 2, 4, 0, pal16, {0x34, 0, 0, 0, 0x12, 0, 0, 0})},
        {"8 bits, core header", Bmp(12, 2, 2, 8, 0, Palette(3, 256), {3, 4, 0, 0, 1, 2, 0, 0})},
        {"RLE8", Bmp(40, 2, 2, 8, 1, pal256, {1, 3, 1, 4, 0, 0, 1, 1, 1, 2, 0, 1})},
        {"RLE4", Bmp(40, 2, 2, 4, 2, pal16, {2, 0x34, 0, 0, 0, 3, 0x12, 0x30, 0, 1})},
    };
    for (auto& c : cases) {
        SCOPED_TRACE(c.Name);
        TMemoryBitmap b;
        ASSERT_TRUE(LoadBMP(c.File, b));
        EXPECT_EQ(Pixels(b), (std::vector<TPixel>{Red, Green, Blue, White})) << c.Name;
    }
}

TEST(Bmp, OneBitAndRleSkips) {
    // 1 bit, 10 wide: bits 1010000001 over two bytes; one row.
    TMemoryBitmap b;
    ASSERT_TRUE(
        LoadBMP(Bmp(40, 10, 1, 1, 0, {0, 0, 0, 0, 255, 255, 255, 0}, {0xA0, 0x40, 0, 0}), b));
    std::vector<TPixel> row(10, Black);
    row[0] = row[2] = row[9] = White;
    EXPECT_EQ(Pixels(b), row);
    // RLE8, 4 by 2: a delta skips to the second column of the top row, an
    // absolute run of three is clipped at the edge, pixels skipped stay black.
    Bytes pal = Palette(4, 256);
    ASSERT_TRUE(LoadBMP(Bmp(40, 4, 2, 8, 1, pal, {0, 2, 1, 1, 0, 3, 2, 2, 2, 0, 0, 1}), b));
    EXPECT_EQ(Pixels(b),
              (std::vector<TPixel>{Black, Green, Green, Green, Black, Black, Black, Black}));
    // A run-length stream that stops early leaves the rest black.
    ASSERT_TRUE(LoadBMP(Bmp(40, 2, 2, 8, 1, pal, {2, 1}), b));
    EXPECT_EQ(Pixels(b), (std::vector<TPixel>{Black, Black, Red, Red}));
}

TEST(Bmp, MalformedGivesAnEmptyBitmap) {
    Bytes good = Bmp(40, 2, 2, 24, 0, {}, Bytes(16, 0));
    auto with = [&](std::size_t at, std::uint8_t v) {
        Bytes b = good;
        b[at] = v;
        return b;
    };
    struct {
        const char* Name;
        Bytes File;
    } cases[] = {
        {"empty", {}},
        {"bad magic", with(0, 'X')},
        {"unknown header size", with(14, 41)},
        {"zero width", with(18, 0)},
        {"zero height", with(22, 0)},
        {"negative width", with(21, 0x80)},
        {"huge height", with(25, 0x7F)},
        {"bad bit count", with(28, 7)},
        {"unknown compression", with(30, 9)},
        {"RLE with 24 bits", with(30, 1)},
        {"pixel data cut short", Bytes(good.begin(), good.end() - 4)},
        {"header cut short", Bytes(good.begin(), good.begin() + 30)},
        {"palette beyond the file", Bmp(40, 2, 2, 8, 0, {1, 2, 3}, {})},
        {"RLE top-down", Bmp(40, 2, -2, 8, 1, Palette(4, 256), {0, 1})},
        {"bit fields on 24 bits", Bmp(40, 2, 2, 24, 3, Bytes(12, 0), Bytes(16, 0))},
        {"pixels beyond the cap", Bmp(40, 5000, 5000, 24, 0, {}, {})},
    };
    for (auto& c : cases) {
        TMemoryBitmap b(3, 3);
        EXPECT_FALSE(LoadBMP(c.File, b)) << c.Name;
        EXPECT_TRUE(b.Empty()) << c.Name;
    }
}

// A header that claims a large image without the rows behind it is refused
// before the image is made: a few bytes must not cost 64 MB.
TEST(Bmp, RowsAreCheckedBeforeTheImageIsMade) {
    struct {
        const char* Name;
        Bytes File;
    } cases[] = {
        {"24 bits, no rows", Bmp(40, 4096, 4096, 24, 0, {}, {})},
        {"1 bit, one row", Bmp(40, 4096, 4096, 1, 0, Palette(4, 2), Bytes(512, 0))},
        {"bit fields, cut", Bmp(40, 2048, 2048, 32, 3, Bytes(12, 0xFF), Bytes(100, 0))},
        {"core header", Bmp(12, 4000, 4000, 24, 0, {}, Bytes(16, 0))},
    };
    for (auto& c : cases) {
        TAllocationProbe probe;
        TMemoryBitmap b;
        EXPECT_FALSE(LoadBMP(c.File, b)) << c.Name;
        EXPECT_LT(probe.Largest(), 64 * c.File.size() + 4096) << c.Name;
    }
}

TEST(Bmp, WriterRoundTrip) {
    TMemoryBitmap b(3, 2);
    const TPixel px[] = {Red, Green, Blue, White, Black, 0xFF123456};
    for (int i = 0; i < 6; ++i)
        b.SetPixel(i % 3, i / 3, px[i]);
    Bytes file = SaveBMP24(b);
    ASSERT_EQ(file.size(), 54u + 2 * 12);
    EXPECT_EQ(file[54], 0xFF); // the bottom row comes first: white, black, ...
    TMemoryBitmap back;
    ASSERT_TRUE(LoadBMP(file, back));
    EXPECT_EQ(back, b);
}

TEST(BitmapOps, TurnsAndColours) {
    // 3 by 2: a b c / d e f
    TMemoryBitmap b(3, 2);
    for (int i = 0; i < 6; ++i)
        b.SetPixel(i % 3, i / 3, 0xFF000000u + TPixel(i));
    struct {
        const char* Name;
        void (*Op)(TMemoryBitmap&);
        int W, H;
        std::vector<TPixel> Expected;
    } cases[] = {
        {"left quarter", Rotate90, 2, 3, {2, 5, 1, 4, 0, 3}},
        {"right quarter", Rotate270, 2, 3, {3, 0, 4, 1, 5, 2}},
        {"mirror horizontally", MirrorHorz, 3, 2, {2, 1, 0, 5, 4, 3}},
        {"mirror vertically", MirrorVert, 3, 2, {3, 4, 5, 0, 1, 2}},
    };
    for (auto& c : cases) {
        TMemoryBitmap t = b;
        c.Op(t);
        ASSERT_EQ(t.Width(), c.W) << c.Name;
        ASSERT_EQ(t.Height(), c.H) << c.Name;
        std::vector<TPixel> expected;
        for (TPixel p : c.Expected)
            expected.push_back(0xFF000000u + p);
        EXPECT_EQ(t.Pixels(), expected) << c.Name;
    }
    TMemoryBitmap g(2, 1);
    g.SetPixel(0, 0, 0xFF0A1420); // 10 + 20 + 32 = 62 / 3 = 20
    g.SetPixel(1, 0, MagentaPixel);
    TMemoryBitmap m = g;
    Grayscale(g);
    EXPECT_EQ(g.Pixel(0, 0), 0xFF141414u);
    EXPECT_EQ(g.Pixel(1, 0), 0xFFAAAAAAu);
    ReplaceMagenta(m, 0x00332211); // a colour is 0x00BBGGRR
    EXPECT_EQ(m.Pixel(0, 0), 0xFF0A1420u);
    EXPECT_EQ(m.Pixel(1, 0), 0xFF112233u);
}
