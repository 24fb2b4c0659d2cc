#include "controls/WgHint.h"
#include "controls/HTMLCaption.h"
#include "controls/WgToolBarPaint.h"

#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

bool HasOp(const TRecordingCanvas& Canvas, const std::string& Op) {
    return std::find(Canvas.Ops.begin(), Canvas.Ops.end(), Op) != Canvas.Ops.end();
}

bool AnyOpContains(const TRecordingCanvas& Canvas, const std::string& Part) {
    return std::any_of(Canvas.Ops.begin(), Canvas.Ops.end(),
                       [&](const std::string& Op) { return Op.find(Part) != std::string::npos; });
}

} // namespace

TEST(WgHint, TheFirstBarSplitsShortAndLongForms) {
    const struct {
        const char16_t* Hint;
        const char16_t* Short;
        const char16_t* Long;
    } cases[] = {
        {u"Open|Opens a file", u"Open", u"Opens a file"},
        {u"Open", u"Open", u"Open"},
        {u"|Only on the status line", u"", u"Only on the status line"},
        {u"Only here|", u"Only here", u""},
        {u"a|b|c", u"a", u"b|c"},
        {u"", u"", u""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(GetShortHint(c.Hint), c.Short);
        EXPECT_EQ(GetLongHint(c.Hint), c.Long);
    }
}

TEST(WgHint, OnlyAnExactLeadingTagMakesMarkup) {
    EXPECT_TRUE(IsHTMLCaption(u"<html>x"));
    EXPECT_TRUE(IsHTMLCaption(u"<html>"));
    EXPECT_FALSE(IsHTMLCaption(u"<HTML>x"));
    EXPECT_FALSE(IsHTMLCaption(u" <html>x"));
    EXPECT_FALSE(IsHTMLCaption(u"<htm"));
    EXPECT_EQ(CaptionPlainText(u"<html><b>Save</b> all"), u"Save all");
    EXPECT_EQ(CaptionPlainText(u"<b>Save</b>"), u"<b>Save</b>");
}

TEST(WgHint, WindowSizeFitsPlainAndMarkedUpText) {
    // Fixed metrics: 11 pixels high, 6 wide, 7 in bold; frame and margin 3 a side.
    TFixedMetricsCanvas canvas;
    const TFont font;
    const struct {
        const char16_t* Text;
        int MaxWidth;
        TSize Size;
    } cases[] = {
        {u"Hello", 1000, {36, 17}},
        {u"Hello world", 46, {36, 28}},             // broken at the space into two lines
        {u"<html><b>Hi</b> there", 1000, {56, 17}}, // tags take no room; bold is wider
        {u"<html>a<br>b", 1000, {12, 28}},
        {u"<b>Hi</b>", 1000, {60, 17}}, // without the leading tag the tags are text
        {u"", 1000, {0, 0}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CalcHintSize(canvas, c.Text, font, c.MaxWidth), c.Size)
            << std::u16string_view(c.Text).size();
}

TEST(WgHint, MarkupIsDrawnByTheRendererAndPlainTextByDrawText) {
    TFont font;
    font.Name = u"Tahoma";
    {
        TRecordingCanvas canvas;
        PaintHint(canvas, {56, 17}, u"<html><b>Hi</b> there", font, 1000);
        EXPECT_EQ(canvas.Ops[0], "FillRect(0,0,56,17) FF000018");
        EXPECT_EQ(canvas.Ops[1], "FrameRect(0,0,56,17) FF000006");
        // At the margin, on the baseline of the line (ascent 9 of 11).
        EXPECT_TRUE(HasOp(canvas, "TextOut(3,12,\"Hi\") Tahoma/-11/b FF000017 bg=none baseline"))
            << canvas.Ops[2];
        EXPECT_TRUE(
            HasOp(canvas, "TextOut(17,12,\" there\") Tahoma/-11 FF000017 bg=none baseline"));
        EXPECT_FALSE(AnyOpContains(canvas, "<html>"));
    }
    {
        TRecordingCanvas canvas;
        PaintHint(canvas, {36, 17}, u"Hello", font, 1000);
        EXPECT_TRUE(HasOp(canvas, "DrawText(3,3,33,14),\"Hello\",2064 Tahoma/-11 FF000017"));
    }
}

TEST(WgHint, ButtonCaptionsInMarkupAreMeasuredAndDrawnWithoutTags) {
    TWgButtonFace face;
    face.ShowCaption = true;
    face.ShowBorder = false;
    face.Transparent = true;
    face.Caption = u"<html><b>File</b>";
    face.Font.Name = u"Tahoma";
    TRecordingCanvas canvas;
    // Unless the bar takes markup, the tags are 17 characters of text.
    EXPECT_EQ(ToolButtonContentSize(canvas, face), (TSize{110, 19}));
    face.IsHTML = true;
    // Four bold characters and the padding.
    EXPECT_EQ(ToolButtonContentSize(canvas, face), (TSize{36, 19}));

    PaintToolButton(canvas, Rect(0, 0, 40, 20), face);
    EXPECT_EQ(canvas.Ops, (std::vector<std::string>{
                              "TextOut(6,13,\"File\") Tahoma/-11/b FF000008 bg=none baseline"}));
    canvas.Ops.clear();
    face.Enabled = false;
    face.Caption = u"<html><font color=\"#FF0000\">File</font>";
    PaintToolButton(canvas, Rect(0, 0, 40, 20), face);
    EXPECT_EQ(canvas.Ops, (std::vector<std::string>{
                              "TextOut(8,13,\"File\") Tahoma/-11 FF000011 bg=none baseline"}));
}
