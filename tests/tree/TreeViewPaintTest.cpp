#include "ViewTestUtil.h"

using Ops = std::vector<std::string>;

TEST(TreeViewPaint, SmallTreeInOrder) {
    TViewFixture f(120, 60);
    f.Build({"a", "  b", "c"});
    f.ExpandAll();
    f.View().SetHasFocus(true);
    f.View().DoSetFocused(f.Item("b"), true, false);
    const Ops expected = {
        "BeginBuffer(0,0,120,60)",
        "FillRect(0,0,120,60) FF000005",
        // a: the minus glyph centred in the first slot, then the text.
        "Draw(4,4) 9x9 key=none",
        "DrawText(22,0,120,17),\"a\",34852 Tahoma/-11 FF000008",
        // b, focused and selected: the row in the selection colour, then the
        // dotted stub and the line from the top down to the middle.
        "FillRect(0,17,120,34) FF00000D",
        "Line(25,25,34,25) FF00000F dot",
        "Line(25,17,25,25) FF00000F dot",
        "DrawText(39,17,120,34),\"b\",34852 Tahoma/-11 FF00000E",
        "FocusRect(0,17,120,34)",
        "DrawText(22,34,120,51),\"c\",34852 Tahoma/-11 FF000008",
        "FillRect(0,51,120,60) FF000005",
        "EndBuffer",
    };
    EXPECT_EQ(f.Paint(), expected);

    // Without the focus the selection takes the hidden colours and no frame.
    f.View().SetHasFocus(false);
    const Ops ops = f.Paint();
    EXPECT_EQ(ops[4], "FillRect(0,17,120,34) FF00000F");
    EXPECT_EQ(ops[7], "DrawText(39,17,120,34),\"b\",34852 Tahoma/-11 FF000010");
    EXPECT_EQ(ops[8], "DrawText(22,34,120,51),\"c\",34852 Tahoma/-11 FF000008");
}

TEST(TreeViewPaint, ColumnsCheckBoxesMarkupAndDividers) {
    TViewFixture f(200, 50);
    f.Tree.SetShowColumnsProp(true);
    f.Tree.SetShowCheckboxesProp(true);
    f.Tree.SetShowRoot(true);
    f.Tree.VerticalLines = true;
    f.Tree.HorizontalLines = true;
    f.Tree.VerticalLinesLong = false;
    auto& sections = f.Tree.Header().Sections();
    sections.AddSection()->SetWidth(80);
    sections.AddSection()->SetWidth(60);
    sections.GetSection(1)->Password = true;
    f.Tree.DisplayChanged();
    f.Build({"a", "<html>b"});
    f.Item("a")->ColumnText().Add(u"secret");
    f.Item("a")->SetCheckBoxState(cbChecked);
    f.Item("<html>b")->SetIsHTML(true);
    std::vector<std::string> markup;
    f.Tree.OnMarkupDraw = [&](TCanvas&, const TRect& R, const WideString& T, TWgMarkupData*) {
        markup.push_back(TRecordingCanvas::Rect(R) + " " + AsciiFromWide(T));
    };
    const Ops expected = {
        "BeginBuffer(0,0,200,50)",
        "FillRect(0,0,200,50) FF000005",
        // Rows are 18 high (17 and one for the divider) and end one early.
        "Line(8,8,17,8) FF00000F dot",
        "Line(8,8,8,17) FF00000F dot",
        "FrameControl(17,1,32,16) 4 1024",
        "DrawText(37,0,79,17),\"a\",34852 Tahoma/-11 FF000008",
        "DrawText(85,0,135,17),\"******\",34852 Tahoma/-11 FF000008",
        "Line(8,26,17,26) FF00000F dot",
        "Line(8,18,8,26) FF00000F dot",
        "FrameControl(17,19,32,34) 4 0",
        "DrawText(85,18,135,35),\"******\",34852 Tahoma/-11 FF000008",
        "FillRect(0,36,200,50) FF000005",
        "FillRect(140,0,200,36) FF000005",
        "Line(0,17,140,17) FF00000F",
        "Line(0,35,140,35) FF00000F",
        "Line(80,0,80,36) FF00000F",
        "Line(140,0,140,36) FF00000F",
        "EndBuffer",
    };
    EXPECT_EQ(f.Paint(), expected);
    EXPECT_EQ(markup, (std::vector<std::string>{"(37,18,79,35) <html>b"}));
}

TEST(TreeViewPaint, RowBackgroundPrecedence) {
    struct Case {
        const char* Name;
        std::function<void(TViewFixture&)> Setup;
        std::string RowFill; // first fill of row 1 ("" for none)
    };
    const Case cases[] = {
        {"plain", [](TViewFixture&) {}, ""},
        {"striped odd", [](TViewFixture& F) { F.Tree.StripedItems = true; }, "FF000005"},
        {"row colour",
         [](TViewFixture& F) {
             TWgTreeItem* b = F.Item("b");
             b->StaticDataEx()->RowBkColor = 0x123456;
             b->SetStaticFlag(sfParentColors, false);
         },
         "123456"},
        {"selection beats row colour and stripes",
         [](TViewFixture& F) {
             F.Tree.StripedItems = true;
             TWgTreeItem* b = F.Item("b");
             b->StaticDataEx()->RowBkColor = 0x123456;
             b->SetStaticFlag(sfParentColors, false);
             F.View().SetHasFocus(true);
             F.View().DoSetFocused(b, true, false);
         },
         "FF00000D"},
        {"hidden selection stays hidden",
         [](TViewFixture& F) {
             F.Tree.HideSelection = true;
             F.View().DoSetFocused(F.Item("b"), true, false);
         },
         ""},
    };
    for (const Case& c : cases) {
        TViewFixture f(100, 40);
        f.Build({"a", "b"});
        c.Setup(f);
        std::string fill;
        for (const std::string& op : f.Paint())
            if (op.rfind("FillRect(0,17,100,34)", 0) == 0) {
                fill = op.substr(op.rfind(" ") + 1);
                break;
            }
        EXPECT_EQ(fill, c.RowFill) << c.Name;
    }
}

TEST(TreeViewPaint, ImagesAndStateImagesSetTheMarks) {
    TViewFixture f(200, 40);
    TWgImageList images{16, 16, {TMemoryBitmap(16, 16), TMemoryBitmap(16, 16)}};
    TWgImageList states{12, 12, {TMemoryBitmap(12, 12)}};
    f.Tree.Images = &images;
    f.Tree.Images2 = &states;
    f.Build({"a", "b"});
    TWgTreeItem* a = f.Item("a");
    a->StaticDataEx()->ImageIndex = 1;
    a->StaticDataEx()->ImageIndex2 = 0;
    // b: an index past the list is no image; with ShowEmptyImages a gap.
    f.Item("b")->StaticDataEx()->ImageIndex = 7;
    f.Tree.OnItemPicDraw2 = [](TCustomWgTree&, TWgTreeItem*, int& Index) { Index = 5; };
    const Ops ops = f.Paint();
    EXPECT_EQ(TRecordingCanvas().Rect(a->TextRect()), "(55,0,61,17)");
    EXPECT_TRUE(a->HasFlag(ifHasPicture));
    EXPECT_TRUE(a->HasFlag(ifHasStatePicture));
    EXPECT_FALSE(f.Item("b")->HasFlag(ifHasPicture));
    EXPECT_EQ(f.Item("b")->TextRect().Left, 22);
    std::vector<std::string> draws;
    for (const std::string& op : ops)
        if (op.rfind("Draw(", 0) == 0) draws.push_back(op);
    EXPECT_EQ(draws,
              (std::vector<std::string>{"Draw(17,2) 12x12 key=none", "Draw(34,0) 16x16 key=none"}));
    f.Tree.ShowEmptyImages = true;
    f.Tree.DisplayChanged();
    f.Paint();
    EXPECT_EQ(f.Item("b")->TextRect().Left, 22 + 16);
}
