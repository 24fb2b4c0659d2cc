#include "controls/HTMLRender.h"

#include "base/BitmapCanvas.h"

#include "../support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>

namespace {

// One line per item: type, text, layout sizes and the style that matters.
std::string Dump(const TWgHTMLData& Data) {
    std::ostringstream out;
    for (TWgHTMLItem* item : Data.Items.Items()) {
        out << int(item->ItemType);
        if (item->IsBreak()) {
            auto* brk = static_cast<TWgHTMLBreakItem*>(item);
            out << " align=" << brk->Align() << " desc=" << brk->MaxDescent();
            if (brk->ItemType == hitBullet || brk->ItemType == hitListStart)
                out << " level=" << brk->ListLevel;
        } else {
            std::string text;
            for (char16_t c : item->Text)
                text += c < 128 ? char(c) : '?';
            out << " \"" << text << "\"";
        }
        out << " w=" << item->Width << " h=" << item->Height << " ind=" << item->Indent;
        if (item->Flags) out << " flags=" << std::hex << item->Flags << std::dec;
        if (item->FontStyle) out << " style=" << int(item->FontStyle);
        out << " font=" << item->FontHeight << "\n";
    }
    return out.str();
}

struct HTMLRenderTest : ::testing::Test {
    TRecordingCanvas Measure;
    TWgHTMLRender Render{&Measure};
    WideString Plain() {
        WideString text;
        Render.PlainText(text);
        return text;
    }
    std::string Prepare(const char16_t* Text, int MaxWidth = 1000, bool Wrap = false) {
        Render.PrepareText(Text, MaxWidth, Wrap);
        return Dump(*Render.Data());
    }
};

TEST_F(HTMLRenderTest, BoldRunGetsParagraphBreakAndDropsTrailingEmptyItem) {
    EXPECT_EQ(Prepare(u"<b>x</b>"), "3 align=0 desc=2 w=7 h=11 ind=0 font=-11\n"
                                    "0 \"x\" w=7 h=11 ind=0 style=1 font=-11\n");
    EXPECT_EQ(Render.Data()->TextSize, (TSize{7, 11}));
}

TEST_F(HTMLRenderTest, CharactersEntitiesAndSpaces) {
    struct {
        const char16_t* Markup;
        const char16_t* Plain;
    } cases[] = {
        {u"&amp;&lt;b&gt;&quot;", u"&<b>\""},
        {u"&AMP;", u"&"},
        {u"&amp", u"&"},        // the rest of the text is the name
        {u"&ampx y", u""},      // ... so an unknown name eats it all
        {u"a & b", u"a & b"},   // an ampersand before a space stays
        {u"&#65;&#;x", u"A x"}, // no number means a space
        {u"a&#32;&#32;b", u"a b"},
        {u"&euro;&copy;&trade;", u"\u00C0\u00A9\u0099"},
        {u"&bogus;z", u"z"},
        {u"a   b  ", u"a b "},
        {u" a", u" a"},
        {u"a <b> b</b>", u"a  b"}, // collapsing stays within one item
        {u"a\r\nb\rc\nd", u"abc\nd"},
        {u"a<!-- <b>x</b> -->b", u"ab"},
        {u"a<!-- open", u"a"},
        {u"a<unknown x=1>b<html>c", u"abc"},
        {u"a<br>b<p>c</p>d", u"a\r\nb\r\n\r\nc\r\n\r\nd"},
        {u"a\0b", u"a"},
        {u"<b", u""},
    };
    for (const auto& c : cases) {
        Render.PrepareText(c.Markup, 1000, false);
        EXPECT_EQ(Plain(), c.Plain) << (const char*)nullptr;
    }
    Render.PrepareText(u"a<unknown>b", 1000, false);
    EXPECT_EQ(Render.Data()->Items.Count(), 2) << "unknown tags leave the item open";
}

TEST_F(HTMLRenderTest, WordWrapMovesTheLastWord) {
    EXPECT_EQ(Prepare(u"aaa bbb ccc", 40, true), "3 align=0 desc=2 w=24 h=11 ind=0 font=-11\n"
                                                 "0 \"aaa \" w=24 h=11 ind=0 font=-11\n"
                                                 "1 align=0 desc=2 w=24 h=11 ind=0 font=-11\n"
                                                 "0 \"bbb \" w=24 h=11 ind=0 font=-11\n"
                                                 "1 align=0 desc=2 w=18 h=11 ind=0 font=-11\n"
                                                 "0 \"ccc\" w=18 h=11 ind=0 font=-11\n");
    EXPECT_EQ(Render.Data()->TextSize, (TSize{24, 33}));
    // Without AutoWrap only explicit breaks make lines.
    Render.PrepareText(u"aaa bbb ccc", 40, false);
    EXPECT_EQ(Render.Data()->Items.Count(), 2);
}

TEST_F(HTMLRenderTest, OverlongWordIsCutBetweenCharacters) {
    // The first overflow moves the whole word, later ones one character each.
    Render.PrepareText(u"abcdefgh", 20, true);
    std::vector<std::u16string> texts;
    std::vector<int> types;
    for (TWgHTMLItem* item : Render.Data()->Items.Items()) {
        types.push_back(item->ItemType);
        texts.push_back(item->Text);
    }
    EXPECT_EQ(types, (std::vector<int>{3, 1, 0, 1, 0, 1, 0}));
    EXPECT_EQ(texts[2], u"abcd");
    EXPECT_EQ(texts[4], u"efg");
    EXPECT_EQ(texts[6], u"h");
}

TEST_F(HTMLRenderTest, FontSizesAndColours) {
    struct {
        const char16_t* Markup;
        int Ppi;
        int Height;
        TColor Color;
        int ColorChanged;
    } cases[] = {
        {u"<font size=+1>x", 96, -12, clWindowText, 0},
        {u"<font size=+2>x", 96, -14, clWindowText, 0},
        {u"<font size=+1>x", 120, -13, clWindowText, 0},
        {u"<font size=-1>x", 96, -10, clWindowText, 0},
        {u"<font size=14>x", 96, 14, clWindowText, 0},
        {u"<font size=big>x", 96, -11, clWindowText, 0},
        {u"<font size=99999999>x", 96, 32767, clWindowText, 0},
        {u"<font color=#102030>x", 96, -11, 0x302010, 1},
        {u"<font color=\"#A0b0C0\">x", 96, -11, 0xC0B0A0, 1},
        {u"<font color=#12345>x", 96, -11, clWindowText, 1},
        {u"<font color=red>x", 96, -11, 0x0000FF, 1},
        {u"<font color=clBtnFace>x", 96, -11, clBtnFace, 1},
        {u"<font color=nosuch>x", 96, -11, clWindowText, 1},
        {u"<font color=red>a</font>x", 96, -11, clWindowText, 0},
        {u"<font bgcolor=red><font color=red>a</font>x", 96, -11, clWindowText, 1},
        {u"</font></font>x", 96, -11, clWindowText, 0},
    };
    for (const auto& c : cases) {
        TWgHTMLRender render(&Measure, c.Ppi);
        render.PrepareText(c.Markup, 1000, false);
        TWgHTMLItem* last = render.Data()->Items.Last();
        ASSERT_EQ(last->Text, u"x");
        EXPECT_EQ(last->FontHeight, c.Height);
        EXPECT_EQ(last->FontColor, c.Color);
        EXPECT_EQ(last->ColorChanged, c.ColorChanged);
    }
}

TEST_F(HTMLRenderTest, LinksAttributesAndStyleRestore) {
    Render.PrepareText(u"<b>x<a  HREF=\"a b>c\" x>y</a>z", 1000, false);
    const auto& items = Render.Data()->Items;
    ASSERT_EQ(items.Count(), 4);
    EXPECT_EQ(items[2]->LinkRef, u"a b>c");
    EXPECT_EQ(items[2]->FontStyle, fsUnderline);
    EXPECT_EQ(items[2]->FontColor, 0xFF0000u);
    EXPECT_EQ(items[3]->FontStyle, fsBold);
    EXPECT_EQ(items[3]->Flags & hifLink, 0u);

    WideString href;
    EXPECT_TRUE(Render.LinkAtPoint({0, 0}, {8, 5}, Rect(0, 0, 100, 50), href));
    EXPECT_EQ(href, u"a b>c");
    EXPECT_FALSE(Render.LinkAtPoint({0, 0}, {2, 5}, Rect(0, 0, 100, 50), href));
    EXPECT_FALSE(Render.LinkAtPoint({0, 0}, {8, 11}, Rect(0, 0, 100, 50), href));
    EXPECT_EQ(Render.ItemAtPoint({7, 0}, {1, 5}, Rect(0, 0, 100, 50)), items[2]);
}

TEST_F(HTMLRenderTest, ListsRulesAndIndents) {
    EXPECT_EQ(Prepare(u"<ul><li>one<li>two</ul>after"),
              "3 align=0 desc=0 w=0 h=0 ind=0 font=-11\n"
              "7 align=0 desc=0 level=1 w=24 h=0 ind=12 font=-11\n"
              "6 align=0 desc=2 level=1 w=36 h=11 ind=12 font=-11\n"
              "0 \"one\" w=18 h=11 ind=12 font=-11\n"
              "6 align=0 desc=2 level=1 w=36 h=11 ind=12 font=-11\n"
              "0 \"two\" w=18 h=11 ind=12 font=-11\n"
              "2 align=0 desc=2 w=30 h=11 ind=0 font=-11\n"
              "0 \"after\" w=30 h=11 ind=0 font=-11\n");
    EXPECT_EQ(Plain(), u"- one- two\r\nafter");

    // A rule stands between two hard breaks; the line of the rule has no height.
    EXPECT_EQ(Prepare(u"a<hr>b"), "3 align=0 desc=2 w=6 h=11 ind=0 font=-11\n"
                                  "0 \"a\" w=6 h=11 ind=0 font=-11\n"
                                  "2 align=0 desc=0 w=0 h=0 ind=0 font=-11\n"
                                  "5 \"\" w=0 h=0 ind=0 font=-11\n"
                                  "2 align=0 desc=2 w=6 h=11 ind=0 font=-11\n"
                                  "0 \"b\" w=6 h=11 ind=0 font=-11\n");
    // An absolute indent sets the line width; a relative one adds to it.
    Render.PrepareText(u"ab<ind width=5 pos=abs>c<ind width=7>d<ind>", 1000, false);
    EXPECT_EQ(Render.Data()->Items[0]->Width, 5 + 6 + 7 + 6);
    // Blank text since a hard break is removed before a list starts.
    Render.PrepareText(u"a<br> <ul>", 1000, false);
    EXPECT_EQ(Render.Data()->Items.Last()->ItemType, hitListStart);
    EXPECT_EQ(Render.Data()->Items[Render.Data()->Items.Count() - 2]->ItemType, hitHardBreak);
}

// Indents at the ends of the integer range are held to what a width can
// be, so lists inside such a paragraph add and take back without overflow.
TEST_F(HTMLRenderTest, ExtremeIndentsAreClamped) {
    const struct {
        const char16_t* Text;
        int Indent;
    } cases[] = {{u"<p indent=2147483647><ul>x", 65534},
                 {u"<p indent=-2147483648></ul>x", -65534},
                 {u"<p indent=99999999999999>x", 0}, // no number: the default
                 {u"<p indent=-20></ul></ul>x", -44}};
    for (const auto& c : cases) {
        Render.PrepareText(c.Text, 1000, false);
        ASSERT_GT(Render.Data()->Items.Count(), 0);
        EXPECT_EQ(Render.Data()->Items.Last()->Indent, c.Indent) << std::string(c.Text, c.Text + 8);
        TRecordingCanvas canvas;
        Render.DrawHtml(canvas, {0, 0}, Rect(0, 0, 200, 50), clNone);
    }
}

TEST_F(HTMLRenderTest, SubscriptIsMeasuredLargerAndDrawnSmaller) {
    Render.PrepareText(u"x<sub>2</sub>", 1000, false);
    TWgHTMLItem* sub = Render.Data()->Items[2];
    EXPECT_EQ(sub->Width, 7); // measured at -13
    EXPECT_EQ(sub->Height, 13);
    auto* line = static_cast<TWgHTMLBreakItem*>(Render.Data()->Items[0]);
    EXPECT_EQ(line->Height, 16); // 13 + 13 / 4
    EXPECT_EQ(line->MaxDescent(), 6);

    TRecordingCanvas canvas;
    Render.SetDoubleBuffer(false);
    Render.DrawHtml(canvas, {0, 0}, Rect(0, 0, 100, 40), clNone);
    EXPECT_EQ(canvas.Ops, (std::vector<std::string>{
                              "TextOut(0,10,\"x\") MS Sans Serif/-11 FF000008 bg=none baseline",
                              "TextOut(6,13,\"2\") MS Sans Serif/-9 FF000008 bg=none baseline"}));
}

TEST_F(HTMLRenderTest, DrawingAlignmentColoursAndBuffer) {
    TRecordingCanvas canvas;
    Render.PrepareText(u"<p align=center>ab<p align=right><font color=red>c</font>d", 1000, false);
    Render.DrawHtmlEx(canvas, {0, 0}, Rect(10, 20, 110, 70), 0x000000, clNone, clNone, 0xFFFFFF,
                      0x00FF00, true);
    EXPECT_EQ(canvas.Ops, (std::vector<std::string>{
                              "BeginBuffer(10,20,110,70)",
                              "TextOut(53,29,\"ab\") MS Sans Serif/-11 7FFF7F bg=FFFFFF baseline",
                              "TextOut(97,40,\"c\") MS Sans Serif/-11 7F7FFF bg=none baseline",
                              "TextOut(103,40,\"d\") MS Sans Serif/-11 7FFF7F bg=FFFFFF baseline",
                              "EndBuffer"}));
    EXPECT_EQ(canvas.TextAlign(), taTop);

    // Darkened against a light background; lines below the rectangle are not drawn.
    TRecordingCanvas light;
    Render.DrawHtml(light, {0, 5}, Rect(0, 0, 100, 11), 0xFFFFFF);
    EXPECT_EQ(light.OpsStartingWith("TextOut"),
              (std::vector<std::string>{
                  "TextOut(43,4,\"ab\") MS Sans Serif/-11 000000 bg=none baseline",
                  "TextOut(87,15,\"c\") MS Sans Serif/-11 00007F bg=none baseline",
                  "TextOut(93,15,\"d\") MS Sans Serif/-11 000000 bg=none baseline"}));
    TRecordingCanvas cut;
    Render.DrawHtml(cut, {0, 11}, Rect(0, 0, 100, 11), clNone);
    EXPECT_EQ(cut.OpsStartingWith("TextOut").size(), 3u);
    Render.DrawHtml(cut, {0, 0}, Rect(0, 0, 100, 11), clNone);
    EXPECT_EQ(cut.OpsStartingWith("TextOut").size(), 4u);
}

TEST_F(HTMLRenderTest, BulletsRulesAndImages) {
    TMemoryBitmap bitmap(16, 8, 0xFF112233);
    bitmap.SetPixel(0, 7, ColorToPixel(0x00FF00));
    std::vector<std::u16string> asked;
    Render.OnImageNeeded = [&](TWgHTMLRender&, const WideString& Src, TMemoryBitmap*& Image) {
        asked.push_back(Src);
        if (Src != u"missing") Image = &bitmap;
    };
    Render.SetDoubleBuffer(false);
    Render.PrepareText(u"<ul><li>a</ul><hr width=30><img src=k><img src=s transparent=solid "
                       u"width=4 height=3><img src=missing>",
                       1000, false);
    EXPECT_EQ(asked.size(), 3u);
    TWgHTMLItem* missing = Render.Data()->Items.Last();
    EXPECT_EQ(missing->Width + missing->Height, 0);
    TRecordingCanvas canvas;
    Render.DrawHtml(canvas, {0, 0}, Rect(0, 0, 100, 100), clNone);
    EXPECT_EQ(canvas.Ops, (std::vector<std::string>{
                              "Ellipse(6,2,12,8) FF000008",
                              "TextOut(12,9,\"a\") MS Sans Serif/-11 FF000008 bg=none baseline",
                              "DrawEdge(0,22,30,24) 2 15", "Draw(0,22) 16x8 key=00FF00",
                              "StretchDraw(16,27,20,30) 16x8 key=none"}));
    EXPECT_EQ(asked.size(), 6u);
}

TEST_F(HTMLRenderTest, PixelsThroughABitmapCanvas) {
    Render.PrepareText(u"a<hr>b", 100, false);
    TMemoryBitmap direct(30, 30, ColorToPixel(0x404040));
    TBitmapCanvas canvas(direct);
    canvas.SetDoubleBuffered(false);
    Render.DrawHtml(canvas, {0, 0}, Rect(0, 0, 30, 30), clNone);
    // The rule's line has no height: it lies on top of the next line.
    EXPECT_EQ(PixelToColor(direct.Pixel(10, 11)), 0x808080u);
    EXPECT_EQ(PixelToColor(direct.Pixel(10, 12)), 0xFFFFFFu);
    EXPECT_EQ(PixelToColor(direct.Pixel(10, 13)), 0x404040u);
    EXPECT_EQ(PixelToColor(direct.Pixel(0, 11)), 0u) << "the text box of b covers the rule";

    TMemoryBitmap buffered(30, 30, ColorToPixel(0x404040));
    TBitmapCanvas second(buffered);
    Render.DrawHtml(second, {0, 0}, Rect(0, 0, 30, 30), clNone);
    EXPECT_EQ(buffered, direct);
}

TEST_F(HTMLRenderTest, FailureReleasesItemsAndRestoresCurrentData) {
    Render.PrepareText(u"keep", 100, false);
    auto other = Render.NewData();
    Render.OnImageNeeded = [&](TWgHTMLRender& Sender, const WideString&, TMemoryBitmap*&) {
        Sender.SetCurrentData(other.get());
        throw std::runtime_error("no image");
    };
    try {
        Render.PrepareText(u"a<img src=x>b", 100, false);
        FAIL() << "no exception";
    } catch (const EWgHTMLError& e) {
        EXPECT_STREQ(e.what(), "Widgetry HTML engine error - the text is not valid HTML");
    }
    EXPECT_EQ(Render.Data(), Render.DefaultData());
    EXPECT_EQ(Render.Data()->Items.Count(), 0);

    Render.OnImageNeeded = nullptr;
    Render.SetCurrentData(other.get());
    Render.PrepareText(u"x", 100, false);
    EXPECT_EQ(other->Items.Count(), 2);
    Render.SetCurrentData(nullptr);
    EXPECT_EQ(Render.Data(), Render.DefaultData());
}

// Golden files: tests/data/html/NAME.html holds "width wrap" on its first
// line and the markup below; NAME.items is the expected item list. With
// LEXSMITH_REGEN_GOLDEN set the references are rewritten instead.
TEST_F(HTMLRenderTest, GoldenLayouts) {
    const std::string dir = std::string(LEXSMITH_TEST_DATA) + "/html/";
    bool regen = std::getenv("LEXSMITH_REGEN_GOLDEN") != nullptr;
    for (const char* name : {"caption", "list", "wrap", "mixed"}) {
        std::ifstream in(dir + name + ".html", std::ios::binary);
        ASSERT_TRUE(in) << name;
        int width = 0, wrap = 0;
        in >> width >> wrap;
        in.ignore(1 << 20, '\n');
        std::string markup((std::istreambuf_iterator<char>(in)), {});
        Render.PrepareText(WideString(markup.begin(), markup.end()), width, wrap != 0);
        std::string actual = Dump(*Render.Data());
        if (regen) {
            std::ofstream(dir + name + ".items", std::ios::binary) << actual;
            continue;
        }
        std::ifstream ref(dir + name + ".items", std::ios::binary);
        std::string expected((std::istreambuf_iterator<char>(ref)), {});
        EXPECT_EQ(actual, expected) << name;
    }
}

TEST_F(HTMLRenderTest, LongInputsStayLinear) {
    // Many items on one line, and many closing link tags after many link
    // items: each must cost the same however long the text is.
    std::u16string line, links = u"<a href=x>";
    for (int i = 0; i < 50000; ++i) {
        line += u"a<i>b</i>";
        links += u"a<b>";
    }
    for (int i = 0; i < 50000; ++i)
        links += u"</a>";
    Render.PrepareText(line, 1 << 30, true);
    EXPECT_EQ(Render.Data()->Items.Count(), 100001);
    Render.PrepareText(links, 1 << 30, true);
    EXPECT_EQ(Render.Data()->Items.Count(), 50001);
}

TEST_F(HTMLRenderTest, MutatedMarkupNeverFaults) {
    const std::u16string seeds[] = {
        u"<b>bold</b> <a href=\"x\">link</a><br><font size=+2 color=#ff0000>big</font>",
        u"<ul><li>one<li><i>two</i></ul><hr><p align=center indent=5>c</p>&amp;&#65;",
        u"x<sub>1</sub><sup>2</sup><ind width=9 pos=abs><img src=a width=3 height=4>"};
    const char16_t alphabet[] = u"<>/=\"' &;#abpfiu0123456789-+\r\n";
    std::mt19937 random(20261121);
    TMemoryBitmap bitmap(3, 3);
    Render.OnImageNeeded = [&](TWgHTMLRender&, const WideString&, TMemoryBitmap*& Image) {
        Image = &bitmap;
    };
    for (int round = 0; round < 3000; ++round) {
        std::u16string text = seeds[round % 3];
        int edits = 1 + int(random() % 8);
        for (int e = 0; e < edits && !text.empty(); ++e) {
            std::size_t at = random() % text.size();
            switch (random() % 3) {
            case 0:
                text.erase(at, 1 + random() % 4);
                break;
            case 1:
                text.insert(at, 1, alphabet[random() % (sizeof alphabet / 2 - 1)]);
                break;
            default:
                text[at] = char16_t(random() % 0x10000);
            }
        }
        Render.PrepareText(text, int(random() % 120), random() % 2);
        TRecordingCanvas canvas;
        Render.DrawHtml(canvas, {0, 0}, Rect(0, 0, 80, 60), 0x808080);
        TMemoryBitmap pixels(40, 30);
        TBitmapCanvas painter(pixels);
        Render.DrawHtml(painter, {int(random() % 60) - 30, int(random() % 60) - 30},
                        Rect(-10, -10, 50, 40), clNone);
        WideString href, plain;
        Render.LinkAtPoint({0, 0}, {int(random() % 80), int(random() % 60)}, Rect(0, 0, 80, 60),
                           href);
        Render.PlainText(plain);
        const TSize size = Render.Data()->TextSize;
        EXPECT_GE(size.cx, 0);
        EXPECT_GE(size.cy, 0);
    }
}

} // namespace
