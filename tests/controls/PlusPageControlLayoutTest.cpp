#include "controls/PlusPageControlLayout.h"

#include "base/BitmapCanvas.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

namespace {

// The options section's two sheets, as the main form sets them up.
std::vector<TPlusTabInfo> OptionTabs() {
    return {{u"Syntax ", true, true, clBtnFace, clNone},
            {u"Block && folding ", true, true, clBtnFace, clNone}};
}

TPlusTabStyle Style() {
    TPlusTabStyle style;
    style.ActiveFont.Style = fsBold; // seven pixels a character in the fixed metrics
    return style;
}

} // namespace

TEST(PlusPageControlLayout, TabsStandSideBySideAndTheActiveOneIsTallerAndLower) {
    TFixedMetricsCanvas canvas;
    const auto layout = LayoutPlusTabs(canvas, OptionTabs(), 0, Style(), 400);
    // 2 for the drop of inactive tabs, 11 of text and 4 above and below.
    EXPECT_EQ(layout.StripBottom, 21);
    ASSERT_EQ(layout.Tabs.size(), 2u);
    EXPECT_EQ(layout.Tabs[0], Rect(0, 0, 65, 23));   // 7 bold chars + 16, lowered by 2
    EXPECT_EQ(layout.Tabs[1], Rect(65, 2, 177, 21)); // "Block & folding ": 16 chars
}

TEST(PlusPageControlLayout, MarginsOverlapHiddenTabsAndHitTesting) {
    TFixedMetricsCanvas canvas;
    TPlusTabStyle style = Style();
    style.TabMargin = {4, 3, 0};
    style.TabOverlap = 3;
    style.LowerActive = 0;
    auto tabs = OptionTabs();
    tabs.insert(tabs.begin() + 1, {u"Hidden", false, true, clBtnFace, clNone});
    const auto layout = LayoutPlusTabs(canvas, tabs, 2, style, 400);
    EXPECT_EQ(layout.StripBottom, 24);
    EXPECT_EQ(layout.Tabs[0], Rect(4, 5, 62, 24));
    EXPECT_TRUE(layout.Tabs[1].IsEmpty());
    EXPECT_EQ(layout.Tabs[2], Rect(59, 3, 59 + 16 * 7 + 16, 24));
    const std::pair<TPoint, int> hits[] = {{{5, 10}, 0}, {{60, 10}, 2}, {{58, 10}, 0},
                                           {{60, 4}, 2}, {{5, 4}, -1},  {{300, 10}, -1}};
    for (const auto& [p, tab] : hits)
        EXPECT_EQ(PlusTabAt(layout, p), tab) << p.X << "," << p.Y;
}

TEST(PlusPageControlLayout, ActiveTabFillsFromActiveColorToActiveColorTo) {
    TFixedMetricsCanvas measure;
    TPlusTabStyle style = Style();
    style.TabBackGroundColor = 0xFFFFFF;
    style.ActiveColor = 0xFFFFFF;
    style.ActiveColorTo = 0x000000;
    style.LowerActive = 0;
    const auto tabs = OptionTabs();
    const auto layout = LayoutPlusTabs(measure, tabs, 1, style, 300);
    TMemoryBitmap bitmap(300, 60, 0xFF00FF00u);
    TBitmapCanvas canvas(bitmap);
    PaintPlusTabs(canvas, layout, tabs, 1, style, 300, 60);
    const TRect active = layout.Tabs[1];
    auto at = [&](int X, int Y) { return PixelToColor(bitmap.Pixel(X, Y)); };
    EXPECT_EQ(at(active.Left + 2, active.Top + 1), 0xFFFFFFu);     // the first row
    EXPECT_EQ(at(active.Left + 2, active.Bottom - 1), 0x000000u);  // the last row
    EXPECT_EQ(at(active.Left + 2, layout.StripBottom), 0x000000u); // opens into its page
    EXPECT_EQ(at(active.Left, active.Top + 5), 0x808080u);         // border
    EXPECT_EQ(at(3, layout.StripBottom - 2), 0xC8D0D4u);           // inactive tab, plain face
    EXPECT_EQ(at(299, 5), 0xFFFFFFu);                              // strip background
    EXPECT_EQ(at(299, 40), 0x808080u);                             // page frame
    EXPECT_EQ(at(150, 40), 0x00FF00u);                             // the page itself is left alone
}

TEST(PlusPageControlLayout, CaptionsShowOneAmpersandInTheirFonts) {
    TRecordingCanvas canvas;
    TPlusTabStyle style = Style();
    const auto tabs = OptionTabs();
    const auto layout = LayoutPlusTabs(canvas, tabs, 0, style, 300);
    canvas.Ops.clear();
    PaintPlusTabs(canvas, layout, tabs, 0, style, 300, 100);
    const auto texts = canvas.OpsStartingWith("DrawText");
    ASSERT_EQ(texts.size(), 2u);
    const unsigned flags = DT_SINGLELINE | DT_CENTER | DT_VCENTER | DT_NOPREFIX;
    // Inactive tabs first, the active one last, over them.
    EXPECT_EQ(texts[0], "DrawText(65,2,177,21),\"Block & folding \"," + std::to_string(flags) +
                            " MS Sans Serif/-11 FF000008");
    EXPECT_EQ(texts[1], "DrawText(0,0,65,21),\"Syntax \"," + std::to_string(flags) +
                            " MS Sans Serif/-11/b FF000008");
}

TEST(PlusPageControlLayout, ImagesAndCloseButtonsWidenTheirTabs) {
    TFixedMetricsCanvas canvas;
    TWgImageList images;
    images.Add(TMemoryBitmap(16, 16, ColorToPixel(0x0000FF)));
    TPlusTabStyle style = Style();
    style.LowerActive = 0;
    auto tabs = OptionTabs();
    tabs[0].ImageIndex = 0;
    tabs[1].ImageIndex = 5; // not in the list: no room for it
    tabs[1].ShowClose = true;

    auto layout = LayoutPlusTabs(canvas, tabs, 0, style, 400);
    EXPECT_EQ(layout.Tabs[0], Rect(0, 0, 65, 21)); // no list: no image
    style.Images = &images;
    layout = LayoutPlusTabs(canvas, tabs, 0, style, 400);
    // 49 of bold text, 16 of image and 3 of gap, and 8 a side.
    EXPECT_EQ(layout.Tabs[0], Rect(0, 0, 84, 21));
    // 96 of text, 3 of gap and 11 of close button, 8 a side.
    EXPECT_EQ(layout.Tabs[1], Rect(84, 2, 84 + 126, 21));
    ASSERT_EQ(layout.CloseButtons.size(), 2u);
    EXPECT_TRUE(layout.CloseButtons[0].IsEmpty());
    // At the right margin, centred between the tab's top and the strip's bottom.
    EXPECT_EQ(layout.CloseButtons[1], Rect(191, 6, 202, 17));
    const std::pair<TPoint, int> hits[] = {{{195, 10}, 1}, {{185, 10}, -1}, {{50, 10}, -1}};
    for (const auto& [p, tab] : hits)
        EXPECT_EQ(PlusTabCloseAt(layout, p), tab) << p.X << "," << p.Y;

    TRecordingCanvas paint;
    PaintPlusTabs(paint, layout, tabs, 0, style, 400, 100);
    EXPECT_EQ(paint.OpsStartingWith("Draw("),
              (std::vector<std::string>{"Draw(8,2) 16x16 key=FF00FF"}));
    // The captions keep their own width beside image and button.
    const auto texts = paint.OpsStartingWith("DrawText");
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[0].substr(0, 22), "DrawText(84,2,196,21),");
    EXPECT_EQ(texts[1].substr(0, 21), "DrawText(19,0,84,21),");
    // The cross: four strokes in the caption's colour.
    EXPECT_EQ(paint.OpsStartingWith("Line(193,8,200,15)"),
              (std::vector<std::string>{"Line(193,8,200,15) FF000008"}));
    EXPECT_EQ(paint.OpsStartingWith("Line(").size(), 4u + 2 * 3u); // and two tab outlines
}

TEST(PlusPageControlLayout, AHotInactiveTabTakesTheHotFontAndKeepsItsWidth) {
    TRecordingCanvas canvas;
    TPlusTabStyle style = Style();
    TFont hot = style.Font;
    hot.Color = 0xFF0000;
    hot.Style = fsUnderline;
    style.HotFont = hot;
    auto tabs = OptionTabs();
    tabs[0].Hot = true; // active: not hot-tracked
    tabs[1].Hot = true;
    const auto plain = LayoutPlusTabs(canvas, OptionTabs(), 0, Style(), 300);
    const auto layout = LayoutPlusTabs(canvas, tabs, 0, style, 300);
    EXPECT_EQ(layout.Tabs, plain.Tabs);
    canvas.Ops.clear();
    PaintPlusTabs(canvas, layout, tabs, 0, style, 300, 100);
    const auto texts = canvas.OpsStartingWith("DrawText");
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_NE(texts[0].find("MS Sans Serif/-11/u FF0000"), std::string::npos) << texts[0];
    EXPECT_NE(texts[1].find("MS Sans Serif/-11/b FF000008"), std::string::npos) << texts[1];
}
