#include "controls/WgPopupMenuLayout.h"

#include "base/BitmapCanvas.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

namespace {

constexpr TColor Face = 0xC8D0D4; // the classic button face, 0x00BBGGRR
constexpr TColor Shadow = 0x808080;
constexpr TColor Red = 0x0000FF;

struct MenuFixture {
    TWgMenuItem Root;
    TWgPopupMetrics Metrics;
    MenuFixture() {
        Root.Add(u"&New", 0, ShortCut('N', scCtrl));
        Root.Add(u"&Open...", 1, ShortCut('O', scCtrl));
        Root.Add(u"-");
        Root.Add(u"Secret")->SetVisible(false);
        Root.Add(u"Exit", 4);
        Metrics.ItemSpace = 6;
        Metrics.ImageMargin = 6;
    }
};

TColor At(const TMemoryBitmap& B, int X, int Y) {
    return PixelToColor(B.Pixel(X, Y));
}

} // namespace

TEST(WgPopupMenuLayout, ItemBoxesSkipHiddenItemsAndSizeToTextAndShortcuts) {
    MenuFixture f;
    TFixedMetricsCanvas canvas;
    const TWgPopupLayout layout = LayoutPopupMenu(canvas, f.Root, f.Metrics);
    EXPECT_EQ(layout.GlyphColumn, 28);
    EXPECT_EQ(layout.TextLeft, 37);
    // text 42 ("Open..."), shortcut gap 24 and "Ctrl+O" 36, arrow column 20, frame 1
    EXPECT_EQ(layout.ShortCutRight, 139);
    EXPECT_EQ(layout.Width, 160);
    EXPECT_EQ(layout.Height, 69);
    ASSERT_EQ(layout.Boxes.size(), 4u);
    const int indexes[] = {0, 1, 2, 4};
    const TRect boxes[] = {Rect(1, 2, 159, 22), Rect(1, 22, 159, 42), Rect(1, 42, 159, 47),
                           Rect(1, 47, 159, 67)};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(layout.Boxes[std::size_t(i)].Index, indexes[i]);
        EXPECT_EQ(layout.Boxes[std::size_t(i)].Bounds, boxes[i]);
    }
    const std::pair<TPoint, int> hits[] = {{{10, 30}, 1},  {{10, 44}, 2},   {{10, 1}, -1},
                                           {{158, 50}, 4}, {{159, 50}, -1}, {{10, 67}, -1}};
    for (const auto& [p, index] : hits)
        EXPECT_EQ(PopupItemAt(layout, p), index) << p.X << "," << p.Y;
}

TEST(WgPopupMenuLayout, KeyboardStopsWrapAndSkipSeparatorsAndHiddenItems) {
    MenuFixture f;
    const struct {
        int From, Step, Next;
    } cases[] = {{-1, 1, 0}, {0, 1, 1}, {1, 1, 4}, {4, 1, 0}, {0, -1, 4}, {-1, -1, 4}, {4, -1, 1}};
    for (const auto& c : cases)
        EXPECT_EQ(NextPopupItem(f.Root, c.From, c.Step), c.Next) << c.From << " " << c.Step;
    TWgMenuItem lines;
    lines.Add(u"-");
    lines.Add(u"Hidden")->SetVisible(false);
    EXPECT_EQ(NextPopupItem(lines, -1, 1), -1);
    EXPECT_EQ(NextPopupItem(TWgMenuItem(), -1, 1), -1);
}

TEST(WgPopupMenuLayout, LettersFindTheirItemsAndSayWhetherTheChoiceIsUnique) {
    MenuFixture f;
    f.Root.Add(u"Edit");
    bool unique = false;
    EXPECT_EQ(PopupAccelItem(f.Root, 'O', -1, unique), 1);
    EXPECT_TRUE(unique);
    EXPECT_EQ(PopupAccelItem(f.Root, 'E', -1, unique), 4);
    EXPECT_FALSE(unique);
    EXPECT_EQ(PopupAccelItem(f.Root, 'E', 4, unique), 5); // the next one after the current
    EXPECT_EQ(PopupAccelItem(f.Root, 'E', 5, unique), 4);
    EXPECT_EQ(PopupAccelItem(f.Root, 'S', -1, unique), -1); // hidden items do not answer
}

TEST(WgPopupMenuLayout, PaintsGlyphColumnFrameSelectionGlyphsAndSeparator) {
    MenuFixture f;
    TWgImageList images;
    images.Add(TMemoryBitmap(16, 16, ColorToPixel(Red)));
    f.Metrics.Images = &images;
    TFixedMetricsCanvas measure;
    const TWgPopupLayout layout = LayoutPopupMenu(measure, f.Root, f.Metrics);
    TMemoryBitmap bitmap(layout.Width, layout.Height, 0xFF00FF00u);
    TBitmapCanvas canvas(bitmap);
    PaintPopupMenu(canvas, layout, f.Metrics, 1);

    EXPECT_EQ(At(bitmap, 0, 0), Shadow);       // frame
    EXPECT_EQ(At(bitmap, 3, 60), Face);        // glyph column
    EXPECT_EQ(At(bitmap, 150, 60), 0xFFFFFFu); // item background
    EXPECT_EQ(At(bitmap, 10, 8), Red);         // glyph 0 of "New"
    EXPECT_EQ(At(bitmap, 1, 22), 0x6A240Au);   // selection frame: the highlight
    EXPECT_EQ(At(bitmap, 150, 30), 0xD2BDB5u);
    EXPECT_EQ(At(bitmap, 60, 44), Shadow); // separator from the text column
    EXPECT_EQ(At(bitmap, 20, 44), Face);
}

TEST(WgPopupMenuLayout, MarkupCaptionsAreSizedAndDrawnByTheRenderer) {
    TWgMenuItem root;
    TWgMenuItem* bold = root.Add(u"<html><b>Bold</b> text");
    root.Add(u"<html>line<br>two");
    root.Add(u"Exit");
    TWgPopupMetrics metrics;
    metrics.ItemSpace = metrics.ImageMargin = 6;
    TFixedMetricsCanvas measure;

    // Without the menu's markup flag the tags are plain text (22 characters).
    TWgPopupLayout layout = LayoutPopupMenu(measure, root, metrics);
    EXPECT_EQ(layout.Width, 37 + 132 + 21);
    EXPECT_EQ(layout.Height, 64);

    metrics.IsHTML = true;
    layout = LayoutPopupMenu(measure, root, metrics);
    // "Bold" in bold (28) and " text" (30); the two-line item is 22 high plus the space.
    EXPECT_EQ(layout.Width, 37 + 58 + 21);
    ASSERT_EQ(layout.Boxes.size(), 3u);
    EXPECT_EQ(layout.Boxes[0].Bounds, Rect(1, 2, 115, 22));
    EXPECT_EQ(layout.Boxes[1].Bounds, Rect(1, 22, 115, 50));
    EXPECT_EQ(layout.Boxes[2].Bounds, Rect(1, 50, 115, 70));
    EXPECT_EQ(layout.Height, 72);

    TRecordingCanvas canvas;
    PaintPopupMenu(canvas, layout, metrics, -1);
    // Centred in the 20-pixel box: top 6, baseline 6 + 9.
    EXPECT_EQ(canvas.OpsStartingWith("TextOut(37,15"),
              (std::vector<std::string>{
                  "TextOut(37,15,\"Bold\") MS Sans Serif/-11/b FF000007 bg=none baseline"}));
    EXPECT_EQ(canvas.OpsStartingWith("TextOut(37,").size(), 4u); // Bold, line, two, Exit
    for (const std::string& op : canvas.Ops)
        EXPECT_EQ(op.find("<"), std::string::npos) << op;

    // A disabled item greys all of its text, coloured markup too.
    bold->SetCaption(u"<html><font color=\"#FF0000\">Red</font>");
    bold->SetEnabled(false);
    canvas.Ops.clear();
    PaintPopupMenu(canvas, LayoutPopupMenu(measure, root, metrics), metrics, -1);
    EXPECT_EQ(canvas.OpsStartingWith("TextOut(37,15"),
              (std::vector<std::string>{
                  "TextOut(37,15,\"Red\") MS Sans Serif/-11 FF000011 bg=none baseline"}));
}
