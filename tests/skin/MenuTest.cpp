#include "skin/menu.h"
#include "base/BitmapCanvas.h"
#include "skin/bitmap.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

TPixel Px(int V) {
    return 0xFF000000u | TPixel(V);
}

// Five MenuItem frames of 10 x 8 whose pixels tell frame, column and row:
// Base + 0x100 x frame + 0x10 x row + column.
TMemoryBitmap ItemStrip(int Base) {
    TMemoryBitmap b(50, 8);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 50; ++x)
            b.SetPixel(x, y, Px(Base + 0x100 * (x / 10) + 0x10 * y + x % 10));
    return b;
}

// A 9 x 9 background: corners 3 x 3 of their own colours, the rest one colour.
TMemoryBitmap BackStrip() {
    TMemoryBitmap b(9, 9, Px(0x505050));
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 3; ++x) {
            b.SetPixel(x, y, Px(0x010101));
            b.SetPixel(8 - x, 8 - y, Px(0x020202));
        }
    return b;
}

std::unique_ptr<TSkinDataModel> MenuSkin() {
    auto m = std::make_unique<TSkinDataModel>();
    m->MenuBackground = std::make_unique<TDataSkinObject>();
    m->MenuBackground->Map = BackStrip();
    m->MenuBackground->r = Rect(3, 3, 3, 3);
    m->MenuItem = std::make_unique<TDataSkinObject>();
    m->MenuItem->Map = ItemStrip(0x400000);
    m->MenuItem->r = Rect(2, 2, 2, 2);
    m->MenuText = 0x112233;
    m->HilightText = 0x445566;
    m->ButtonShadow = 0x778899;
    m->ButtonText = 0x0000AA;
    m->Menu = 0x00CC00;
    m->Hilight = 0xCC0000;
    m->Empty = false;
    return m;
}

TFont MenuFont() {
    TFont f;
    f.Height = -8;
    return f;
}

} // namespace

TEST(MenuSkin, BackgroundIsTheSkinImageSlicedToTheWindow) {
    auto skin = MenuSkin();
    const TMemoryBitmap back = MenuBackgroundImage(*skin, 40, 20);
    ASSERT_EQ(back.Width(), 40);
    ASSERT_EQ(back.Height(), 20);
    // The corners keep their size; the middle is stretched between them.
    EXPECT_EQ(back.Pixel(0, 0), Px(0x010101));
    EXPECT_EQ(back.Pixel(2, 2), Px(0x010101));
    EXPECT_EQ(back.Pixel(39, 19), Px(0x020202));
    EXPECT_EQ(back.Pixel(37, 17), Px(0x020202));
    EXPECT_EQ(back.Pixel(20, 10), Px(0x505050));

    // No image, or no skin at all: the window paints itself.
    skin->MenuBackground->Map = {};
    EXPECT_TRUE(MenuBackgroundImage(*skin, 40, 20).Empty());
    skin = MenuSkin();
    skin->Empty = true;
    EXPECT_TRUE(MenuBackgroundImage(*skin, 40, 20).Empty());
}

TEST(MenuSkin, BorderRingIsThreePixelsAndStaysInsideSmallWindows) {
    const std::vector<TRect> ring = MenuBorderRing(50, 30);
    ASSERT_EQ(ring.size(), 4u);
    EXPECT_EQ(ring[0], Rect(0, 0, 50, 3));
    EXPECT_EQ(ring[1], Rect(0, 27, 50, 30));
    EXPECT_EQ(ring[2], Rect(0, 3, 3, 27));
    EXPECT_EQ(ring[3], Rect(47, 3, 50, 27));
    for (const TRect& r : MenuBorderRing(2, 1)) {
        EXPECT_GE(r.Left, 0);
        EXPECT_LE(r.Right, 2);
        EXPECT_GE(r.Top, 0);
        EXPECT_LE(r.Bottom, 1);
    }
}

TEST(MenuSkin, ItemStatePicksFrameAndTextColour) {
    auto skin = MenuSkin();
    EXPECT_EQ(MenuItemFrame(false), 1);
    EXPECT_EQ(MenuItemFrame(true), 4);
    struct Case {
        bool Enabled, Selected;
        TColor Expected;
    } cases[] = {{true, false, 0x112233},
                 {true, true, 0x445566},
                 {false, false, 0x778899},
                 {false, true, 0x778899}};
    for (const Case& c : cases)
        EXPECT_EQ(MenuItemTextColour(*skin, c.Enabled, c.Selected), c.Expected)
            << c.Enabled << c.Selected;
    // A skin whose shadow is its text colour greys with the system's shadow.
    skin->ButtonShadow = skin->MenuText;
    EXPECT_EQ(MenuItemTextColour(*skin, false, false), clBtnShadow);
}

TEST(MenuSkin, GlyphBoxFollowsImageSizeWithSixteenForCheckMarks) {
    auto skin = MenuSkin();
    const TRect item = Rect(10, 20, 110, 44);
    struct Case {
        int W, H;
        bool Checked;
        int ExpectW, ExpectH;
    } cases[] = {{24, 24, false, 24, 24},
                 {12, 12, true, 16, 16},
                 {12, 12, false, 12, 12},
                 {0, 0, false, 16, 16},
                 {0, 0, true, 16, 16}};
    for (const Case& c : cases) {
        const TRect box = MenuItemBox(*skin, item, c.W, c.H, c.Checked);
        EXPECT_EQ(box.Width(), c.ExpectW);
        EXPECT_EQ(box.Height(), c.ExpectH);
        EXPECT_EQ(box.Left, 10 + 1 + 2); // past the item image's left margin
        EXPECT_EQ(box.Top, 20 + (24 - c.ExpectH) / 2);
    }
}

TEST(MenuSkin, ItemsTakeTheirFrameOverTheBackground) {
    auto skin = MenuSkin();
    TMemoryBitmap target(60, 40, Px(0));
    TBitmapCanvas canvas(target);
    const TMemoryBitmap back = MenuBackgroundImage(*skin, 60, 40);
    const TRect r = Rect(3, 5, 57, 13); // as high as the strip: no stretch in height
    TSkinMenuItem item;
    item.Caption = u"&Open";
    PaintSkinMenuItem(canvas, *skin, &back, r, item, MenuFont(), 0, 0);
    // Corners come straight from frame 1, the right corner from its last column.
    EXPECT_EQ(target.Pixel(3, 5), Px(0x400000));
    EXPECT_EQ(target.Pixel(56, 12), Px(0x400000 + 0x70 + 9));
    // Nothing is painted outside the item.
    EXPECT_EQ(target.Pixel(3, 13), Px(0));

    item.Selected = true;
    PaintSkinMenuItem(canvas, *skin, &back, r, item, MenuFont(), 0, 0);
    EXPECT_EQ(target.Pixel(3, 5), Px(0x400000 + 0x300));
    EXPECT_EQ(target.Pixel(56, 12), Px(0x400000 + 0x300 + 0x70 + 9));

    // A transparent item strip lets the background through where it is magenta.
    skin->MenuItem->Trans = 1;
    for (int x = 0; x < 50; ++x)
        skin->MenuItem->Map.SetPixel(x, 0, MagentaPixel);
    PaintSkinMenuItem(canvas, *skin, &back, r, item, MenuFont(), 0, 0);
    EXPECT_EQ(target.Pixel(20, 5), Px(0x505050));
}

TEST(MenuSkin, TextCheckMarkAndArrowUseTheStateColours) {
    auto skin = MenuSkin();
    TMemoryBitmap target(80, 20, Px(0));
    TBitmapCanvas canvas(target);
    const TRect r = Rect(0, 0, 80, 20);
    auto count = [&](TColor C, int From, int To) {
        int n = 0;
        for (int y = 0; y < 20; ++y)
            for (int x = From; x < To; ++x)
                n += target.Pixel(x, y) == ColorToPixel(C);
        return n;
    };
    TSkinMenuItem item;
    item.Caption = u"Ab";
    item.Checked = true;
    item.SubMenu = true;
    PaintSkinMenuItem(canvas, *skin, nullptr, r, item, MenuFont(), 0, 0);
    const TRect box = MenuItemBox(*skin, r, 0, 0, true);
    EXPECT_GT(count(skin->ButtonText, box.Left, box.Right), 0); // the tick
    EXPECT_GT(count(skin->MenuText, box.Right + 3, 60), 0);     // the caption
    EXPECT_GT(count(skin->MenuText, 66, 72), 0);                // the arrow
    EXPECT_EQ(count(skin->MenuText, 0, box.Right + 3), 0);

    item.Enabled = false;
    PaintSkinMenuItem(canvas, *skin, nullptr, r, item, MenuFont(), 0, 0);
    EXPECT_EQ(count(skin->MenuText, 0, 80), 0);
    EXPECT_GT(count(skin->ButtonShadow, box.Right + 3, 80), 0);
}

TEST(MenuSkin, SeparatorsComeFromTheSecondFrameOrAnEtchedLine) {
    auto skin = MenuSkin();
    TMemoryBitmap target(40, 10, Px(0));
    TBitmapCanvas canvas(target);
    TSkinMenuItem line;
    line.Caption = u"-";
    const TRect r = Rect(0, 2, 40, 7); // five rows: the strip's last five
    PaintSkinMenuItem(canvas, *skin, nullptr, r, line, MenuFont(), 0, 0);
    EXPECT_EQ(target.Pixel(0, 2), Px(0x400000 + 0x100 + 0x30));      // left cap
    EXPECT_EQ(target.Pixel(39, 6), Px(0x400000 + 0x100 + 0x70 + 9)); // right cap
    EXPECT_EQ(target.Pixel(1, 2), Px(0x400000 + 0x100 + 0x30 + 1));
    // Nothing lands outside the separator's rows.
    EXPECT_EQ(target.Pixel(10, 1), Px(0));
    EXPECT_EQ(target.Pixel(10, 7), Px(0));

    // Without an item image: the Menu colour and an etched line 4 below the top.
    skin->MenuItem.reset();
    target = TMemoryBitmap(40, 12, Px(0));
    TBitmapCanvas plain(target);
    PaintSkinMenuItem(plain, *skin, nullptr, Rect(0, 0, 40, 12), line, MenuFont(), 0, 0);
    EXPECT_EQ(target.Pixel(20, 1), ColorToPixel(skin->Menu));
    EXPECT_NE(target.Pixel(20, 4), ColorToPixel(skin->Menu));
}

TEST(MenuSkin, FlatItemsWithoutAnItemImage) {
    auto skin = MenuSkin();
    skin->MenuItem.reset();
    TMemoryBitmap target(40, 12, Px(0));
    TBitmapCanvas canvas(target);
    TSkinMenuItem item;
    item.Caption = u"X";
    PaintSkinMenuItem(canvas, *skin, nullptr, Rect(0, 0, 40, 12), item, MenuFont(), 0, 0);
    EXPECT_EQ(target.Pixel(0, 0), ColorToPixel(skin->Menu));
    item.Selected = true;
    PaintSkinMenuItem(canvas, *skin, nullptr, Rect(0, 0, 40, 12), item, MenuFont(), 0, 0);
    EXPECT_EQ(target.Pixel(0, 0), ColorToPixel(skin->Hilight));
}

TEST(MenuStrip, ButtonsAreCaptionWidePlusTenFromTheSkinsStart) {
    auto skin = MenuSkin();
    TFixedMetricsCanvas canvas;
    canvas.SetFont(MenuFont());
    std::vector<TMenuStripButton> buttons(3);
    buttons[0].Caption = u"&File";
    buttons[1].Caption = u"&Edit";
    buttons[1].Visible = false;
    buttons[2].Caption = u"&Help";
    const TRect strip = Rect(4, 20, 204, 39);
    const int file = canvas.TextWidth(u"File") + 10, help = canvas.TextWidth(u"Help") + 10;

    // No MenuBar image: from 6 in.
    LayoutMenuStrip(canvas, *skin, strip, false, buttons);
    EXPECT_EQ(buttons[0].Rect, Rect(10, 20, 10 + file, 38));
    EXPECT_TRUE(buttons[1].Rect.IsEmpty());
    EXPECT_EQ(buttons[2].Rect, Rect(10 + file, 20, 10 + file + help, 38));

    // With one: its left margin + 4; right to left from the right edge.
    skin->MenuBar = std::make_unique<TDataSkinObject>();
    skin->MenuBar->Map = TMemoryBitmap(8, 4, Px(0x123456));
    skin->MenuBar->r = Rect(5, 0, 7, 0);
    LayoutMenuStrip(canvas, *skin, strip, false, buttons);
    EXPECT_EQ(buttons[0].Rect.Left, 4 + 9);
    LayoutMenuStrip(canvas, *skin, strip, true, buttons);
    EXPECT_EQ(buttons[0].Rect.Right, 204 - 15);
    EXPECT_EQ(buttons[2].Rect.Right, 204 - 15 - file);

    EXPECT_EQ(MenuStripButtonAt(buttons, {buttons[2].Rect.Left, 25}), 2);
    EXPECT_EQ(MenuStripButtonAt(buttons, {2, 25}), -1);
}

TEST(MenuStrip, KeyboardWalkWrapsAndSkipsHiddenButtons) {
    std::vector<TMenuStripButton> buttons(4);
    buttons[0].Caption = u"A";
    buttons[1].Caption = u"B";
    buttons[1].Visible = false;
    buttons[2].Caption = u""; // no caption: no stop
    buttons[3].Caption = u"D";
    struct Case {
        int From, Step, Expected;
    } cases[] = {{0, 1, 3}, {3, 1, 0}, {0, -1, 3}, {3, -1, 0}, {-1, 1, 0}, {-1, -1, 3}};
    for (const Case& c : cases)
        EXPECT_EQ(NextMenuStripButton(buttons, c.From, c.Step), c.Expected) << c.From << c.Step;
    buttons[3].Visible = false;
    EXPECT_EQ(NextMenuStripButton(buttons, 0, 1), 0); // the only one stays
    buttons[0].Visible = false;
    EXPECT_EQ(NextMenuStripButton(buttons, 0, 1), -1);
}

TEST(MenuStrip, BackUsesTheActiveOrInactiveFrame) {
    auto skin = MenuSkin();
    EXPECT_EQ(MenuStripBack(*skin, 20, 6, true).Pixel(10, 3),
              ColorToPixel(skin->ResolveColor(skin->Menubar)));
    skin->MenuBar = std::make_unique<TDataSkinObject>();
    skin->MenuBar->Map = TMemoryBitmap(4, 12, Px(0x111111)); // frames stacked
    for (int y = 6; y < 12; ++y)
        for (int x = 0; x < 4; ++x)
            skin->MenuBar->Map.SetPixel(x, y, Px(0x222222));
    skin->MenuBar->Tile = 1;
    EXPECT_EQ(MenuStripBack(*skin, 20, 6, true).Pixel(10, 3), Px(0x111111));
    EXPECT_EQ(MenuStripBack(*skin, 20, 6, false).Pixel(10, 3), Px(0x222222));
    skin->MenuBar->Tile = 0;
    EXPECT_EQ(MenuStripBack(*skin, 20, 6, false).Pixel(10, 3), Px(0x222222));
}
