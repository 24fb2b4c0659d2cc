#include "tree/WgHeaderPaint.h"

#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

namespace {

struct THeader {
    TWgHeaderModel Model;
    TWgHeaderPaintOptions Options;
    THeader(std::initializer_list<std::pair<const char16_t*, int>> Sections) {
        Model.SetHeight(20);
        for (auto [text, width] : Sections) {
            TWgHeaderSection* s = Model.Sections().AddSection();
            s->SetText(text);
            s->SetWidth(width);
        }
        Options.Color = 0xC0C0C0;
        Options.Font.Name = u"Tahoma";
        Options.Font.Height = -11;
    }
    TWgHeaderSection& operator[](int I) { return *Model.Sections()[I]; }
};

// Remembers which bitmaps were drawn.
class TBitmapRecorder : public TRecordingCanvas {
public:
    std::vector<const TMemoryBitmap*> Bitmaps;
    void Draw(int X, int Y, const TMemoryBitmap& Bitmap, TColor Key) override {
        Bitmaps.push_back(&Bitmap);
        TRecordingCanvas::Draw(X, Y, Bitmap, Key);
    }
};

// Remembers the flags of the captions.
class TFlagsRecorder : public TRecordingCanvas {
public:
    std::vector<unsigned> Flags;
    int DrawText(WideView Text, TRect& R, unsigned F) override {
        Flags.push_back(F);
        return TRecordingCanvas::DrawText(Text, R, F);
    }
};

} // namespace

TEST(WgHeaderPaint, SectionStepsInOrder) {
    THeader h({{u"Key", 60}});
    h[0].FontColor = 0x0000FF;
    TRecordingCanvas c;
    PaintHeaderSection(c, h.Model, h[0], Rect(0, 0, 60, 20), h.Options);
    ASSERT_EQ(c.Ops.size(), 3u);
    EXPECT_EQ(c.Ops[0], "FillRect(0,0,60,20) C0C0C0");
    EXPECT_EQ(c.Ops[1], "DrawEdge(0,0,60,20) 4 15");
    // The caption sits 3 pixels inside the shrunk rectangle, single line with ellipsis.
    EXPECT_EQ(c.Ops[2].rfind("DrawText(4,1,56,19),\"Key\"", 0), 0u) << c.Ops[2];
    EXPECT_NE(c.Ops[2].find("0000FF"), std::string::npos) << c.Ops[2];
}

TEST(WgHeaderPaint, SortMarkPictureFollowsModeAndInversion) {
    struct {
        TWgSSortMode Mode;
        bool Invert;
        bool AscendingPicture;
    } cases[] = {{hsmAscend, false, false},
                 {hsmAscend, true, true},
                 {hsmDescend, false, true},
                 {hsmDescend, true, false}};
    for (const auto& k : cases) {
        THeader h({{u"A", 60}});
        h.Model.InvertSortArrows = k.Invert;
        h[0].SetSortModeRaw(k.Mode);
        TBitmapRecorder c;
        PaintHeaderSection(c, h.Model, h[0], Rect(0, 0, 60, 20), h.Options);
        auto draws = c.OpsStartingWith("Draw(");
        ASSERT_EQ(draws.size(), 1u);
        // 9 pixels from the shrunk right edge, vertically centred plus 3.
        EXPECT_EQ(draws[0], "Draw(50,10) 6x5 key=FF00FF");
        ASSERT_EQ(c.Bitmaps.size(), 1u);
        EXPECT_EQ(c.Bitmaps[0], &HeaderSortBitmap(k.AscendingPicture));
        // The caption loses the mark and its gap.
        auto text = c.OpsStartingWith("DrawText");
        ASSERT_EQ(text.size(), 1u);
        EXPECT_EQ(text[0].rfind("DrawText(4,1,44,19),", 0), 0u) << text[0];
    }
    EXPECT_NE(HeaderSortBitmap(true), HeaderSortBitmap(false));
    EXPECT_EQ(HeaderSortBitmap(true).Width(), 6);
}

TEST(WgHeaderPaint, NarrowSectionsDropTheMarkAndHotOnesRaise) {
    THeader h({{u"A", 14}, {u"B", 50}});
    h[0].SetSortModeRaw(hsmAscend);
    TRecordingCanvas c;
    PaintHeaderSection(c, h.Model, h[0], Rect(0, 0, 14, 20), h.Options);
    EXPECT_TRUE(c.OpsStartingWith("Draw(").empty());

    h.Model.Flat = true;
    TRecordingCanvas flat;
    PaintHeaderSection(flat, h.Model, h[1], Rect(14, 0, 64, 20), h.Options);
    EXPECT_EQ(flat.Ops[1], "DrawEdge(14,0,64,20) 4 12"); // bottom and right only
}

TEST(WgHeaderPaint, HeaderPaintsLockedSectionLastAndFillsTheRest) {
    THeader h({{u"A", 40}, {u"B", 40}, {u"C", 40}});
    h.Model.SetLockedSection(&h[0]);
    h.Model.SetLeftPos(10);
    h[1].SetVisible(false);
    TRecordingCanvas c;
    PaintHeader(c, h.Model, Rect(0, 0, 150, 20), h.Options);
    auto fills = c.OpsStartingWith("FillRect");
    ASSERT_EQ(fills.size(), 3u);
    EXPECT_EQ(fills[0], "FillRect(30,0,70,20) C0C0C0"); // C, scrolled by 10
    EXPECT_EQ(fills[1], "FillRect(0,0,40,20) C0C0C0");  // A, locked: not scrolled, last
    EXPECT_EQ(fills[2], "FillRect(70,0,150,20) C0C0C0");
}

TEST(WgHeaderPaint, OwnerDrawAndMarkupCaptions) {
    THeader h({{u"<html><b>x</b>", 50}, {u"own", 50}});
    h[1].Style = elhsOwnerDraw;
    std::vector<std::string> seen;
    h.Options.DrawMarkup = [&](TCanvas&, WideView M, const TRect& R) {
        seen.push_back("markup " + std::to_string(M.size()) + TRecordingCanvas::Rect(R));
    };
    h.Options.OnSectionDraw = [&](TCanvas&, TWgHeaderSection& S, const TRect& R, bool Pressed) {
        seen.push_back("own " + std::to_string(S.Position()) + TRecordingCanvas::Rect(R) +
                       (Pressed ? " pressed" : ""));
    };
    TRecordingCanvas c;
    PaintHeader(c, h.Model, Rect(0, 0, 100, 20), h.Options);
    EXPECT_EQ(seen, (std::vector<std::string>{"markup 14(4,1,46,19)", "own 1(51,1,99,19)"}));
    EXPECT_TRUE(c.OpsStartingWith("DrawText").empty());
}

TEST(WgHeaderPaint, WalksListPositionsAfterColumnsAreDeletedAndMoved) {
    THeader h({{u"A", 40}, {u"B", 50}, {u"C", 60}});
    // Column numbers 0 and 2 are left: the painter must not look for column 1.
    h.Model.Sections().DeleteSection(&h[1]);
    TRecordingCanvas deleted;
    PaintHeader(deleted, h.Model, Rect(0, 0, 150, 20), h.Options);
    EXPECT_EQ(
        deleted.OpsStartingWith("FillRect"),
        (std::vector<std::string>{"FillRect(0,0,40,20) C0C0C0", "FillRect(40,0,100,20) C0C0C0",
                                  "FillRect(100,0,150,20) C0C0C0"}));

    // C moved to the front and locked: it is painted last, at its own place.
    h.Model.Sections().MoveSection(&h[2], 0);
    h.Model.SetLockedSection(&h[2]);
    TRecordingCanvas moved;
    PaintHeader(moved, h.Model, Rect(0, 0, 150, 20), h.Options);
    auto captions = moved.OpsStartingWith("DrawText");
    ASSERT_EQ(captions.size(), 2u);
    EXPECT_EQ(captions[0].rfind("DrawText(64,1,96,19),\"A\"", 0), 0u) << captions[0];
    EXPECT_EQ(captions[1].rfind("DrawText(4,1,56,19),\"C\"", 0), 0u) << captions[1];
}

TEST(WgHeaderPaint, TextLayoutPlacesTheCaption) {
    const std::pair<int, unsigned> cases[] = {{0, DT_TOP}, {1, DT_VCENTER}, {2, DT_BOTTOM}};
    for (auto [layout, flag] : cases) {
        THeader h({{u"A", 60}});
        h[0].TextLayout = std::uint8_t(layout);
        TFlagsRecorder c;
        PaintHeaderSection(c, h.Model, h[0], Rect(0, 0, 60, 20), h.Options);
        ASSERT_EQ(c.Flags.size(), 1u);
        EXPECT_EQ(c.Flags[0] & (DT_VCENTER | DT_BOTTOM), flag) << layout;
    }
}
