// The colours the window takes from a skin: the top menu items and the menu
// bar's picture (the palette is tested where it is applied).

#include "controls/SkinPalette.h"
#include "skin/data.h"

#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

TEST(SkinPalette, TopMenuItemsTakeTheSkinsHighlightAndMenuBarText) {
    TSkinDataModel skin; // three different colours, so that a swapped field shows
    skin.MenuBarText = 0x708090;
    skin.Hilight = 0xA0B0C0;
    skin.HilightText = 0xD0E0F0;
    const struct {
        bool Selected;
        std::vector<std::string> Ops;
    } cases[] = {
        {true,
         {"FillRect(0,0,40,20) A0B0C0", "TextOut(8,4,\"File\") MS Sans Serif/-11 D0E0F0 bg=none"}},
        {false, {"TextOut(8,4,\"File\") MS Sans Serif/-11 708090 bg=none"}},
    };
    for (const auto& c : cases) {
        TRecordingCanvas canvas;
        DrawTopMenuItemCaption(canvas, Rect(0, 0, 40, 20), c.Selected, u"File",
                               TopMenuItemColorsOf(&skin));
        EXPECT_EQ(canvas.Ops, c.Ops) << c.Selected;
    }
}

TEST(SkinPalette, MenuBarPictureNeedsAnImageAndShowsItsTopHalf) {
    TSkinDataModel skin;
    EXPECT_EQ(SkinMenuBarPicture(nullptr), nullptr);
    EXPECT_EQ(SkinMenuBarPicture(&skin), nullptr); // no personality object
    skin.MenuBar = std::make_unique<TDataSkinObject>();
    EXPECT_EQ(SkinMenuBarPicture(&skin), nullptr); // named, but its image was not read
    skin.MenuBar->Map.SetSize(3, 5);
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 3; ++x)
            skin.MenuBar->Map.SetPixel(x, y, 0xFF000000u | TPixel(y * 16 + x));
    ASSERT_EQ(SkinMenuBarPicture(&skin), &skin.MenuBar->Map);

    const TMemoryBitmap half = TopHalf(skin.MenuBar->Map);
    ASSERT_EQ(half.Width(), 3);
    ASSERT_EQ(half.Height(), 2);
    EXPECT_EQ(half.Pixel(2, 1), 0xFF000012u);
    EXPECT_EQ(half.Pixel(0, 0), 0xFF000000u);
    EXPECT_TRUE(TopHalf(TMemoryBitmap(4, 1)).Empty());
}
