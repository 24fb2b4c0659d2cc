#include "controls/WgMenuBarDraw.h"

#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

TEST(WgMenuBarDraw, TopItemCaptionIsCentredAndOnlyASelectedItemFillsItsBackground) {
    const struct {
        TRect R;
        bool Selected;
        std::vector<std::string> Ops;
    } cases[] = {
        {Rect(10, 0, 50, 20),
         true,
         {"FillRect(10,0,50,20) FF00001D",
          "TextOut(15,4,\"&File\") MS Sans Serif/-11 FF00000E bg=none"}},
        {Rect(10, 0, 50, 20),
         false,
         {"TextOut(15,4,\"&File\") MS Sans Serif/-11 FF000008 bg=none"}},
        // Narrower than the text: still centred, the clip cuts both ends.
        {Rect(10, 0, 20, 9), false, {"TextOut(0,-1,\"&File\") MS Sans Serif/-11 FF000008 bg=none"}},
    };
    for (const auto& c : cases) {
        TRecordingCanvas canvas;
        canvas.SetBrushColor(0x123456);
        DrawTopMenuItemCaption(canvas, c.R, c.Selected, u"&File");
        EXPECT_EQ(canvas.Ops, c.Ops);
        EXPECT_EQ(canvas.BrushColor(), 0x123456u); // the brush is given back
        EXPECT_FALSE(canvas.ClipRect().has_value());
    }
}
