#include "base/BitmapCanvas.h"
#include "skin/bitmap.h"
#include "skin/draw.h"
#include "skin/form.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

TPixel Px(int V) {
    return 0xFF000000u | TPixel(V);
}

// A strip whose pixels tell where they come from: Base + 16 x frame +
// column for frames side by side, Base + row for stacked ones.
TMemoryBitmap Strip(int FrameW, int FrameH, int Frames, bool Stacked, int Base) {
    TMemoryBitmap b(Stacked ? FrameW : FrameW * Frames, Stacked ? FrameH * Frames : FrameH);
    for (int y = 0; y < b.Height(); ++y)
        for (int x = 0; x < b.Width(); ++x)
            b.SetPixel(x, y, Px(Stacked ? Base + y : Base + 16 * (x / FrameW) + x % FrameW));
    return b;
}

// Sides 3 (left), 2 (right), 10 (top, magenta corners) and 4 (bottom) thick,
// two frames each. Buttons: icon at 4, close, maximize and a hidden restore.
std::unique_ptr<TSkinDataModel> SmallSkin() {
    auto m = std::make_unique<TSkinDataModel>();
    auto border = [](TDataSkinBorder& B, TMemoryBitmap Map, TRect Margins) {
        B.Map = std::move(Map);
        B.Frame = 2;
        B.Tile = 1;
        B.Trans = 0;
        B.r = Margins;
    };
    border(*m->Left, Strip(3, 5, 2, false, 0x100), {});
    border(*m->Right, Strip(2, 5, 2, false, 0x200), {});
    border(*m->Top, Strip(20, 10, 2, true, 0x300), Rect(4, 0, 4, 0));
    for (int y : {0, 10})
        for (int x : {0, 19})
            m->Top->Map.SetPixel(x, y, MagentaPixel);
    border(*m->Bottom, Strip(12, 4, 2, true, 0x400), {});
    m->Title->r = Rect(20, 0, 30, 0);
    m->ButtonFace = 0x030201;
    m->TitleTextActive = 0x0000FF;
    const int actions[] = {3, 0, 1, 1}, xs[] = {4, 14, 28, 28}, visibility[] = {0, 0, 2, 1};
    for (int i = 0; i < 4; ++i) {
        auto& b = *m->SysButtons.emplace_back(std::make_unique<TDataSkinSysButton>());
        b.Action = actions[i];
        b.Align = i ? 1 : 0;
        b.Xcoord = xs[i];
        b.Ycoord = 1;
        b.Visibility = visibility[i];
        b.Frame = i ? 4 : 1;
        if (i) b.Map = Strip(12, 8, 4, false, 0x500);
    }
    m->Empty = false;
    return m;
}

constexpr std::uint32_t Sizeable =
    WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX;

// A 100 x 60 sizeable window on the small skin, laid out.
struct FormFrame : testing::Test {
    std::unique_ptr<TSkinDataModel> skin = SmallSkin();
    TFormFrame f{*skin};
    void SetUp() override {
        f.Setup(Sizeable, 0, "TForm", false);
        f.RebuildButtons(TMemoryBitmap(8, 8, Px(0x600)), {});
        f.Width = 100;
        f.Height = 60;
        f.Text = u"Ab";
        TFixedMetricsCanvas c;
        f.LayoutTitle(c);
        f.LayoutButtons();
    }
};

} // namespace

TEST_F(FormFrame, BorderKindAndCapsFromStyles) {
    struct {
        std::uint32_t Style, ExStyle;
        const char* Class;
        bool SysMenu;
        int Kind, Caps;
    } cases[] = {
        {WS_POPUP | WS_SYSMENU, 0, "TForm", false, 2, 8},
        {0x00800000u | WS_THICKFRAME, 0, "TForm", false, 2, 0}, // half a caption is none
        {Sizeable, 0, "TForm", false, 0, 11},
        {WS_CAPTION | WS_MAXIMIZEBOX, 0, "TForm", true, 1, 9},
        {WS_CAPTION | WS_THICKFRAME | DS_MODALFRAME, 0, "TForm", false, 3, 0},
        {WS_CAPTION | WS_THICKFRAME, WS_EX_DLGMODALFRAME, "TForm", false, 3, 0},
        {WS_CAPTION, 0, "#32770", false, 3, 0},
        {WS_CAPTION | WS_MINIMIZEBOX, 0, "TMessageForm", false, 3, 2},
    };
    for (auto& c : cases) {
        EXPECT_EQ(BorderKindOf(c.Style, c.ExStyle, c.Class), c.Kind) << c.Style << c.Class;
        EXPECT_EQ(CapsOf(c.Style, c.SysMenu), c.Caps) << c.Style;
    }
    f.Setup(WS_CAPTION, WS_EX_LEFTSCROLLBAR, "TMessageForm", false);
    EXPECT_TRUE(f.RightToLeft && f.IsDialog && !f.ThickFrame);
}

TEST_F(FormFrame, FrameSizesIconsAndWindowSize) {
    EXPECT_EQ(std::vector<int>({f.FrameLeft, f.FrameTop, f.FrameRight, f.FrameBottom}),
              std::vector<int>({3, 10, 2, 4}));
    // The icon: the window's, beaten by the entry's image, beaten by the application's.
    EXPECT_EQ(f.SysButtons[0].Map(), TMemoryBitmap(8, 8, Px(0x600)));
    skin->SysButtons[0]->Map = TMemoryBitmap(5, 5, Px(0x700));
    f.RebuildButtons(TMemoryBitmap(8, 8), {});
    EXPECT_EQ(f.SysButtons[0].Map(), TMemoryBitmap(5, 5, Px(0x700)));
    f.RebuildButtons(TMemoryBitmap(8, 8), TMemoryBitmap(6, 6, Px(0x800)));
    EXPECT_EQ(f.SysButtons[0].Map(), TMemoryBitmap(6, 6, Px(0x800)));

    // Client plus frame plus menu; a dialog grows to its title (300 + 20 + 30).
    f.MenuHeight = 18;
    f.Text = WideString(50, u'x');
    TFixedMetricsCanvas c;
    int grow = -1;
    EXPECT_EQ(f.WindowSizeFor(200, 100, &c, &grow), (TSize{205, 132}));
    EXPECT_EQ(grow, 0);
    f.IsDialog = true;
    EXPECT_EQ(f.WindowSizeFor(200, 100, &c, &grow), (TSize{350, 132}));
    EXPECT_EQ(grow, 145);
    EXPECT_EQ(f.WindowSizeFor(400, 100, &c, &grow), (TSize{405, 132}));
    EXPECT_EQ(grow, 0);

    skin->Right->Frame = 0; // would divide by zero: no right frame
    f.RebuildButtons({}, {});
    EXPECT_EQ(f.FrameRight, 0);
    f.BorderKind = 2;
    f.RebuildButtons({}, {});
    EXPECT_EQ(std::vector<int>({f.FrameLeft, f.FrameTop, f.FrameBottom, f.MenuHeight}),
              std::vector<int>(4, 0));
}

TEST_F(FormFrame, ButtonLayoutByAlign) {
    f.MenuHeight = 18;
    f.TitleRect = Rect(20, 0, 54, 11);
    skin->MenuBar = std::make_unique<TDataSkinObject>();
    skin->MenuBar->r.Left = 2;
    struct {
        int Align, X;
        bool RightToLeft;
        TRect Expected;
    } cases[] = {
        {0, 5, false, Rect(5, 1, 17, 9)},       {1, 14, false, Rect(86, 1, 98, 9)},
        {2, 3, false, Rect(5, 1, 17, 9)},       {8, 3, false, Rect(5, 1, 17, 9)},
        {3, 3, false, Rect(57, 1, 69, 9)},      {9, 3, false, Rect(57, 1, 69, 9)},
        {100, 10, false, Rect(86, 15, 98, 23)}, {100, 10, true, Rect(13, 15, 25, 23)},
        {5, 10, false, Rect(0, 0, 12, 8)},
    };
    TDataSkinSysButton& data = *skin->SysButtons[1];
    for (auto& c : cases) {
        data.Align = c.Align;
        data.Xcoord = c.X;
        f.RightToLeft = c.RightToLeft;
        f.SysButtons.assign(1, TWinSysButton{});
        f.SysButtons[0].Data = &data;
        f.LayoutButtons();
        EXPECT_EQ(f.SysButtons[0].Rect, c.Expected) << c.Align;
    }
    // The left of the rightmost right-aligned button, found anew.
    data.Align = 1;
    data.Xcoord = 14;
    f.RightToLeft = false;
    f.RebuildButtons({}, {});
    f.TitleLimit = 500;
    f.LayoutButtons();
    EXPECT_EQ(f.TitleLimit, 86);
}

TEST_F(FormFrame, VisibilityTables) {
    f.AskVisible = [](int V, int Action) { return V == 1500 && Action == 5 ? 1 : 0; };
    // State: M maximized, i inactive, 3 a dialog frame, d a dialog.
    struct {
        int V, V1, Action, Caps;
        const char* State;
        bool Visible;
    } cases[] = {
        {0, 0, 5, 0, "", true},      {-1, 0, 5, 0, "", false},   {1, 0, 5, 0, "", false},
        {1, 0, 5, 0, "M", true},     {2, 0, 5, 0, "M", false},   {3, 0, 5, 0, "i", false},
        {4, 0, 5, 0, "i", true},     {6, 0, 5, 1, "", false},    {6, 0, 5, 9, "", true},
        {7, 0, 5, 1, "", false},     {8, 0, 5, 10, "", true},    {9, 0, 5, 2, "", false},
        {5, 0, 5, 0, "", false},     {100, 0, 5, 0, "M", false}, {200, 0, 5, 0, "3", true},
        {200, 0, 5, 0, "3d", false}, {200, 0, 5, 0, "", false},  {500, 0, 5, 0, "", true},
        {1500, 0, 5, 0, "", true},   {1999, 0, 5, 0, "", false}, {2001, 0, 5, 0, "", false},
        {0, 6, 5, 1, "", true},      {0, 8, 5, 2, "", true},     {0, 9, 5, 2, "", false},
        {0, 100, 5, 0, "", true},    {0, 200, 5, 0, "3", false}, {0, 500, 5, 0, "", false},
        {0, 0, 0, 0, "", false},     {0, 0, 0, 8, "", true},     {0, 0, 1, 2, "", false},
        {0, 0, 2, 2, "", true},      {0, 0, 12, 0, "3", false},  {0, 0, 11, 0, "", true},
    };
    for (auto& c : cases) {
        TDataSkinSysButton b;
        b.Visibility = c.V;
        b.Visibility1 = c.V1;
        b.Action = c.Action;
        const std::string s = c.State;
        f.Caps = std::uint8_t(c.Caps);
        f.WindowState = s.find('M') != s.npos ? wsMaximized : wsNormal;
        f.Active = s.find('i') == s.npos;
        f.BorderKind = s.find('3') != s.npos ? 3 : 1;
        f.IsDialog = s.find('d') != s.npos;
        EXPECT_EQ(f.ButtonVisible(b), c.Visible) << c.V << " " << c.V1 << " " << c.Action;
    }
}

TEST_F(FormFrame, TitleRectangles) {
    skin->Title->r = Rect(30, 4, 100, 0);
    skin->Title->TXTBackleft = 3;
    skin->Title->TXTBackRight = 5;
    f.Width = 200;
    f.FrameTop = 20;
    f.Text = u"Abc"; // "  Abc " is 36 pixels; with the back's margins 44, and 11 high
    struct {
        int Align;
        bool RightToLeft;
        int Kind;
        bool Popup;
        int TitleLimit;
        TRect Expected;
    } cases[] = {
        {0, false, 1, false, 0, Rect(30, 6, 74, 17)},
        {1, false, 1, false, 0, Rect(78, 6, 100, 17)},
        {2, false, 1, false, 0, Rect(56, 6, 100, 17)},
        {1, true, 1, false, 0, Rect(56, 6, 100, 17)},
        {0, false, 3, false, 0, Rect(14, 6, 74, 17)},
        {1, false, 3, false, 0, Rect(78, 6, 100, 17)},
        {1, false, 1, true, 5, Rect(78, 6, 122, 17)},
        {1, false, 1, true, 100, Rect(78, 6, 95, 17)},
        {1, false, 1, true, 200, Rect(78, 6, 122, 17)},
        {1, false, 1, true, 6, Rect(78, 6, 1, 17)},
    };
    TFixedMetricsCanvas canvas;
    for (auto& c : cases) {
        skin->Title->TextAlignment = c.Align;
        f.RightToLeft = c.RightToLeft;
        f.BorderKind = std::uint8_t(c.Kind);
        f.Style = WS_CAPTION | (c.Popup ? WS_POPUP : 0);
        f.TitleLimit = c.TitleLimit;
        EXPECT_EQ(f.LayoutTitle(canvas), c.Expected) << c.Align << " " << c.TitleLimit;
    }
}

TEST_F(FormFrame, MouseStatesAndRepaints) {
    std::vector<TRect> painted;
    f.OnInvalidate = [&](const TRect& R) { painted.push_back(R); };
    const TRect close = f.SysButtons[1].Rect, maximize = f.SysButtons[2].Rect;
    struct {
        char Op;
        int Index;
        std::vector<TRect> Painted;
        int Hot, CloseState, MaximizeState;
    } steps[] = {
        {'E', 1, {close}, 1, 3, 1},           {'E', 1, {}, 1, 3, 1}, // again: nothing
        {'E', 2, {close, maximize}, 2, 1, 3}, {'D', 2, {maximize}, 2, 1, 2},
        {'U', 2, {maximize}, 2, 1, 3},        {'D', 1, {maximize, close}, 1, 2, 1},
        {'L', -1, {close}, -1, 1, 1},         {'E', 3, {}, -1, 1, 1}, // hidden
    };
    for (auto& s : steps) {
        painted.clear();
        if (s.Op == 'E') f.MouseEnter(s.Index);
        if (s.Op == 'L') f.MouseLeave();
        if (s.Op == 'D') f.MouseDown(s.Index);
        if (s.Op == 'U') f.MouseUp(s.Index);
        EXPECT_EQ(painted, s.Painted) << s.Op << s.Index;
        EXPECT_EQ(std::vector<int>({f.Hot, f.SysButtons[1].State, f.SysButtons[2].State}),
                  std::vector<int>({s.Hot, s.CloseState, s.MaximizeState}))
            << s.Op << s.Index;
    }
}

TEST_F(FormFrame, ButtonActionsAndDoubleClicks) {
    struct {
        int Action, Caps;
        TFrameCommand Command;
    } actions[] = {
        {0, 8, fcClose},       {0, 3, fcNone},      {1, 0, fcMaximize},   {22, 0, fcMaximize},
        {2, 0, fcMinimize},    {23, 0, fcMinimize}, {3, 0, fcSystemMenu}, {11, 0, fcSystemMenu},
        {12, 0, fcSystemMenu}, {7, 0, fcNone},      {61, 0, fcNone},      {40, 0, fcCustom},
    };
    f.Hot = 1;
    for (auto& a : actions) {
        skin->SysButtons[1]->Action = a.Action;
        f.Caps = std::uint8_t(a.Caps);
        const TFrameAction r = f.ButtonAction({90, 4});
        EXPECT_EQ(r.Command, a.Command) << a.Action;
        EXPECT_EQ(r.Action, a.Action);
    }
    EXPECT_EQ(f.ButtonAction({90, 4}).MenuAt, (TPoint{0, 0}));
    skin->SysButtons[1]->Action = 3;
    EXPECT_EQ(f.ButtonAction({90, 4}).MenuAt, (TPoint{91, 5}));
    f.Hot = -1;
    EXPECT_EQ(f.ButtonAction({90, 4}).Command, fcNone);

    skin->SysButtons[1]->Action = 0;
    // The icon closes, another button does nothing, the caption maximizes or restores.
    struct {
        TPoint P;
        int Caps, State;
        TFrameCommand Command;
    } clicks[] = {
        {{5, 2}, 11, wsNormal, fcClose},       {{90, 4}, 11, wsNormal, fcNone},
        {{50, 5}, 11, wsNormal, fcMaximize},   {{50, 5}, 8, wsNormal, fcNone},
        {{50, 5}, 8, wsMaximized, fcMaximize}, {{50, 5}, 8, wsMinimized, fcMinimize},
        {{50, 3}, 11, wsNormal, fcNone},       {{50, 30}, 11, wsNormal, fcNone},
    };
    for (auto& c : clicks) {
        f.Caps = std::uint8_t(c.Caps);
        f.WindowState = std::uint8_t(c.State);
        f.LayoutButtons();
        EXPECT_EQ(f.DoubleClick(c.P), c.Command) << c.P.X << "," << c.P.Y << " " << c.Caps;
    }
}

TEST_F(FormFrame, ZonesOfTheFrame) {
    f.MenuHeight = 18;
    // Buttons come before the ring; corners reach two grips along each edge;
    // a frame wider than the grip is all ring; row 3 is not caption yet.
    struct {
        TPoint P;
        int Grip, State;
        bool Thick;
        TFrameZone Zone;
    } cases[] = {
        {{90, 4}, 6, wsNormal, true, fzButton},     {{50, 2}, 6, wsNormal, true, fzTop},
        {{11, 0}, 6, wsNormal, true, fzTopLeft},    {{12, 0}, 6, wsNormal, true, fzTop},
        {{2, 11}, 6, wsNormal, true, fzTopLeft},    {{2, 12}, 6, wsNormal, true, fzLeft},
        {{97, 30}, 6, wsNormal, true, fzRight},     {{99, 59}, 6, wsNormal, true, fzBottomRight},
        {{2, 50}, 6, wsNormal, true, fzBottomLeft}, {{50, 54}, 6, wsNormal, true, fzBottom},
        {{50, 53}, 6, wsNormal, true, fzClient},    {{50, 56}, 2, wsNormal, true, fzBottom},
        {{50, 55}, 2, wsNormal, true, fzClient},    {{93, 20}, 6, wsNormal, true, fzMenu},
        {{50, 4}, 6, wsMaximized, true, fzCaption}, {{50, 3}, 6, wsMaximized, true, fzClient},
        {{2, 30}, 6, wsMaximized, true, fzClient},  {{1, 5}, 6, wsNormal, false, fzCaption},
    };
    for (auto& c : cases) {
        f.WindowState = std::uint8_t(c.State);
        f.ThickFrame = c.Thick;
        EXPECT_EQ(f.ZoneAt(c.P, c.Grip), c.Zone) << c.P.X << "," << c.P.Y << " " << c.State;
    }
}

TEST_F(FormFrame, PaintOperations) {
    skin->Title->Map = TMemoryBitmap(10, 22, Px(0x900));
    skin->Title->TXTBackleft = skin->Title->TXTBackRight = 2;
    TRecordingCanvas c;
    f.PaintFrame(c);
    const std::vector<std::string> expected = {
        "Draw(0,0) 3x60 key=none",
        "Draw(98,0) 2x60 key=none",
        "Draw(3,56) 95x4 key=none",
        "BeginBuffer(0,0,100,10)",
        "Draw(3,0) 95x10 key=FF00FF",
        "Draw(20,0) 34x11 key=FF00FF",
        "DrawText(22,0,52,11),\"  Ab \",32800 MS Sans Serif/-11 0000FF",
        "StretchDraw(4,1,12,9) 8x8 key=FF00FF",
        "StretchDraw(86,1,98,9) 12x8 key=FF00FF",
        "StretchDraw(72,1,84,9) 12x8 key=FF00FF",
        "EndBuffer",
    };
    EXPECT_EQ(c.Ops, expected);
    f.Width = 120; // the cached pieces are sliced again
    c.Ops.clear();
    f.PaintFrame(c);
    EXPECT_EQ(c.Ops[2], "Draw(3,56) 115x4 key=none");
    f.Width = 100;

    f.MenuHeight = 18;
    c.Ops.clear();
    f.PaintFrame(c);
    EXPECT_EQ(c.Ops.back(), "FillRect(3,10,98,28) 030201");
    TRect strip;
    f.HasMenu = true;
    f.OnPaintMenuStrip = [&](TCanvas&, const TRect& R) { strip = R; };
    c.Ops.clear();
    f.PaintFrame(c);
    EXPECT_EQ(c.Ops.back(), "EndBuffer");
    EXPECT_EQ(strip, Rect(3, 10, 98, 28));

    f.WindowState = wsMinimized; // the title only, over the whole window
    c.Ops.clear();
    f.PaintFrame(c);
    ASSERT_GE(c.Ops.size(), 3u);
    EXPECT_EQ(c.Ops[0], "BeginBuffer(0,0,100,60)");
    EXPECT_EQ(c.Ops[1], "FillRect(0,0,100,60) 030201");
    EXPECT_EQ(c.Ops[2], "Draw(3,0) 95x10 key=FF00FF");
    EXPECT_EQ(c.Ops.back(), "EndBuffer");

    f.WindowState = wsNormal;
    f.BorderKind = 2;
    c.Ops.clear();
    f.PaintFrame(c);
    EXPECT_TRUE(c.Ops.empty());
}

TEST_F(FormFrame, PaintedPixelsMatchTheSkinImages) {
    std::vector<std::unique_ptr<TSkinDataModel>> skins;
    skins.push_back(std::move(skin));
    for (const char* file : {"Lexsmith Light.skn", "Lexsmith Dark.skn"}) {
        skins.push_back(std::make_unique<TSkinDataModel>());
        skins.back()->SetSkinFile(std::string(LEXSMITH_TEST_DATA) + "/../../resources/skins/" +
                                  file);
        ASSERT_FALSE(skins.back()->Empty) << file;
    }
    const TPixel under = Px(0x777);
    for (const auto& s : skins) {
        SCOPED_TRACE(s->SkinName);
        TFormFrame f(*s);
        f.Setup(Sizeable, 0, "TForm", false);
        f.RebuildButtons({}, {});
        f.Width = 300;
        f.Height = 200;
        f.Text = u"Title";
        TMemoryBitmap screen(300, 200, under);
        TBitmapCanvas canvas(screen);
        f.PaintFrame(canvas);
        const int close = 1; // in all three skins
        ASSERT_EQ(s->SysButtons[close]->Action, 0);
        f.MouseEnter(close);
        f.PaintFrame(canvas);

        // The left side: frame 1 of its image, sliced to the window's height,
        // copied plainly (the outline, not the paint, cuts its magenta away).
        const TDataSkinBorder& leftPart = *s->Left;
        const TMemoryBitmap& left = leftPart.Map;
        const int fw = left.Width() / leftPart.Frame;
        ASSERT_EQ(f.FrameLeft, fw);
        auto expectLeft = [&](int Frame) {
            const TMemoryBitmap want = DrawRect(left, Frame, leftPart.Frame, false, leftPart.r,
                                                leftPart.Tile != 1, fw, 200);
            for (int y = 0; y < 200; ++y)
                for (int x = 0; x < fw; ++x) {
                    ASSERT_EQ(screen.Pixel(x, y), want.Pixel(x, y)) << x << "," << y;
                }
        };
        expectLeft(1);

        // The close button in hover shows frame 3.
        const TWinSysButton& b = f.SysButtons[close];
        const TRect src = FrameRect(b.Map(), 3, b.Frames(), false);
        for (int y = 0; y < src.Height(); ++y)
            for (int x = 0; x < src.Width(); ++x) {
                const TPixel p = b.Map().Pixel(src.Left + x, y);
                if (!IsMagenta(p)) {
                    ASSERT_EQ(screen.Pixel(b.Rect.Left + x, b.Rect.Top + y), p) << x << "," << y;
                }
            }

        // The top-left corner is magenta in whichever part carries it: below
        // the top's transparent copy what lay there shows; the side's corner
        // is cut out of the window's outline.
        if (IsMagenta(s->Top->Map.Pixel(0, 0))) {
            EXPECT_EQ(screen.Pixel(f.FrameLeft, 0), under);
        } else {
            ASSERT_TRUE(IsMagenta(left.Pixel(0, 0)));
            EXPECT_FALSE(f.Outline().Contains(0, 0));
            EXPECT_TRUE(f.Outline().Contains(fw, 10));
        }
        EXPECT_NE(screen.Pixel(f.FrameLeft + 10, 0), under);

        f.Active = false; // frame 2
        f.PaintFrame(canvas);
        expectLeft(2);
    }
}

TEST_F(FormFrame, Outline) {
    // Bottom is left out of the test: with no other side transparent, its
    // magenta is not cut.
    skin->Bottom->Trans = 1;
    skin->Bottom->Map.SetPixel(0, 3, MagentaPixel);
    EXPECT_EQ(f.Outline(), TRegion(Rect(0, 0, 100, 60)));

    // A transparent top loses its magenta corners; a transparent bottom 1
    // pixel thick stays a plain rectangle although its image is all magenta.
    skin->Top->Trans = 1;
    skin->Bottom->Map = TMemoryBitmap(12, 2, MagentaPixel);
    f.RebuildButtons({}, {});
    ASSERT_EQ(f.FrameBottom, 1);
    const TRegion outline = f.Outline();
    for (int y = 0; y < 60; ++y)
        for (int x = 0; x < 100; ++x) {
            const bool corner = y == 0 && (x == 3 || x == 97);
            ASSERT_EQ(outline.Contains(x, y), !corner) << x << "," << y;
        }
}
