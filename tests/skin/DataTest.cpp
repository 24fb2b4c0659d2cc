#include "skin/data.h"
#include "base/Exceptions.h"
#include "skin/bitmap.h"
#include "skin/colors.h"
#include "skin/reader.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace {

using Bytes = std::vector<std::uint8_t>;

TMemoryBitmap Solid(int w, int h, TPixel p = 0xFF808080) {
    return TMemoryBitmap(w, h, p);
}

// A skin from an ini text and bitmaps.
struct TSkin {
    std::vector<TSkinMember> Members;
    explicit TSkin(const std::string& ini) {
        Members.push_back({"Skin.ini", Bytes(ini.begin(), ini.end())});
    }
    TSkin& Add(const std::string& name, const TMemoryBitmap& b) {
        Members.push_back({name, SaveBMP24(b)});
        return *this;
    }
    bool Load(TSkinDataModel& m) const {
        m.SkinStream = TMemoryStream(PackSkinFile(Members));
        return m.ReadSkin();
    }
};

Bytes ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return Bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

} // namespace

TEST(SkinData, ColourValues) {
    struct {
        const char* Text;
        TColor Expected;
    } cases[] = {
        {"12,200", RGBColor(12, 0, 0)}, // the last number counts only as the third
        {"12, 200, 30", RGBColor(12, 200, 30)},
        {"12 200 30", RGBColor(12, 200, 30)},
        {"1,2,3,4", RGBColor(1, 2, 3)},
        {"1,2,3,4,", RGBColor(1, 2, 3)},
        {",,5;;6 x 7", RGBColor(5, 6, 7)},
        {"7", RGBColor(0, 0, 0)},
        {"abc", RGBColor(0, 0, 0)},
        {"300,0,0", RGBColor(44, 0, 0)},
        {"99999999999,1,2", RGBColor(0, 1, 2)},
        {"", 0xABCDEF},
    };
    for (auto& c : cases)
        EXPECT_EQ(ParseColourValue(c.Text, 0xABCDEF), c.Expected) << c.Text;
}

TEST(SkinData, Skin3rdTable) {
    EXPECT_EQ(DefaultSkin3rd().size(), 117u);
    struct {
        const char* Class;
        const char* Kind;
    } cases[] = {
        {"TComboBoxEx", "combobox"},
        {"tvirtualstringtree", "scrollbar"},
        {"TLMDGroupBox", "panel"}, // two spellings in the table: the first wins
        {"TcxGroupbox", "groupbox"},
        {"TRzButton", "button"},
        {"TRzButtonEdit", "edit"}, // a longer name needs its own line
        {"TRz", ""},
        {"TButton", ""},
    };
    for (auto& c : cases)
        EXPECT_EQ(Skin3rdKind(DefaultSkin3rd(), c.Class), c.Kind) << c.Class;
    EXPECT_EQ(Skin3rdKind({}, "TComboBoxEx"), "");
    EXPECT_EQ(Skin3rdKind({"TPlusPageControl=nil"}, "TPlusPageControl"), "nil");
    EXPECT_EQ(Skin3rdKind({"TX=" + std::string(60, 'k')}, "tx").size(), 50u);
}

TEST(SkinData, OurSkinsLoadWhole) {
    for (const char* file : {"Lexsmith Light.skn", "Lexsmith Dark.skn"}) {
        SCOPED_TRACE(file);
        TSkinDataModel m;
        m.SkinStream = TMemoryStream(
            ReadFile(std::string(LEXSMITH_TEST_DATA) + "/../../resources/skins/" + file));
        ASSERT_TRUE(m.ReadSkin());
        EXPECT_FALSE(m.Empty);
        EXPECT_EQ(m.SkinName + ".skn", file);
        for (auto [name, obj] : m.Objects()) {
            ASSERT_NE(obj, nullptr) << name;
            if (std::string(name) != "Title") {
                EXPECT_FALSE(obj->Map.Empty()) << name;
            }
        }
        for (int i = 1; i <= 4; ++i)
            EXPECT_EQ(m.Borders(i)->Frame, 2);
        EXPECT_EQ(m.Top->Map.Height() / m.Top->Frame, 30);
        ASSERT_EQ(m.SysButtons.size(),
                  8u); // system menu, close, maximize, restore, minimize, 3 MDI
        EXPECT_EQ(m.SysButtons[1]->IDName, "BUTTON.CLOSE");
        EXPECT_EQ(m.ScrollbarMap->Map.Width() / m.ScrollbarMap->Frame, 17);
        EXPECT_EQ(m.ComboButton->Style, 2);
        EXPECT_EQ(m.ComboxArrow->Map.Width(), 17 * 4);
        EXPECT_FALSE(IsSysColor(m.ButtonFace));
        EXPECT_EQ(m.Colours.size(), 2u);
    }
}

TEST(SkinData, SystemButtons) {
    TSkin skin("[Button.Hidden]\nAction=-1\nButtonImage=b114.bmp\n"
               "[Button.Shown]\nAction=-1\nVisibility=0\nButtonImage=b114.bmp\n"
               "[BUTTONS]\n[Button]\n[Button.Radio]\n[Button.CheckBox]\nAction=1\n"
               "[buttonx]\nButtonImage=b114.bmp\nAlign=1\nXcoord=30\n"
               "[Button.Wide]\nButtonImage=b115.bmp\nCombineOp=2\n"
               "[Button.Menu]\nAction=3\nButtonImage=b114.bmp\n"
               "[Button.Own]\nAction=11\nframe=2\nButtonImage=b114.bmp\n"
               "[Button.Plain]\nAction=1\n"
               "[MDICONTROLS]\nImage=mdi.bmp\n");
    skin.Add("b114.bmp", Solid(114, 30))
        .Add("b115.bmp", Solid(115, 30))
        .Add("mdi.bmp", Solid(120, 9));
    TSkinDataModel m;
    ASSERT_TRUE(skin.Load(m));
    struct {
        const char* ID;
        int Action, Frame, Visibility1, MapWidth;
    } expected[] = {
        {"BUTTON.SHOWN", -1, 6, -1, 114}, // hidden action, image: back to 6
        {"BUTTONX", 0, 3, 0, 114},        // 114 / 30 is 3.8
        {"BUTTON.WIDE", 0, 6, 0, 115},    // 115 / 30 is above 3.8
        {"BUTTON.MENU", 3, 3, 0, 0},      // a system menu button loses its image
        {"BUTTON.OWN", 11, 2, 0, 114},    // with a frame count it keeps it
        {"BUTTON.PLAIN", 1, 6, 0, 0},     {"MDICONTROLS", 7, 4, 100, 40},
        {"MDICONTROLS", 8, 4, 100, 40},   {"MDICONTROLS", 9, 4, 100, 40},
    };
    ASSERT_EQ(m.SysButtons.size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        const auto& b = *m.SysButtons[i];
        EXPECT_EQ(b.IDName, expected[i].ID) << i;
        EXPECT_EQ(b.Action, expected[i].Action) << i;
        EXPECT_EQ(b.Frame, expected[i].Frame) << i;
        EXPECT_EQ(b.Visibility1, expected[i].Visibility1) << i;
        EXPECT_EQ(b.Map.Width(), expected[i].MapWidth) << i;
    }
    EXPECT_EQ(m.SysButtons[1]->Align, 1);
    EXPECT_EQ(m.SysButtons[1]->Xcoord, 30);
    EXPECT_EQ(m.SysButtons[1]->CombineOp, -1);
    EXPECT_EQ(m.SysButtons[2]->CombineOp, 2);
    EXPECT_EQ(m.SysButtons[6]->Xcoord, 42); // (3 - i) x (cell width 10 + 4)
    EXPECT_EQ(m.SysButtons[8]->Xcoord, 14);
}

TEST(SkinData, ObjectRulesAndDefaults) {
    TSkin skin("[Colours]\nButtonText=1,2,3\nButtonFace=200,100,50\nMenubar=\n"
               "[Colour1]\ncolor=9,9,9\n[colours]\n[COLOUR.x]\n"
               "[Customcolors]\nColor3=4,5,6\n"
               "[Personality]\nActiveTextR=1\nActiveTextG=2\nInActiveTextR=0\nInActiveTextG=0\n"
               "InActiveTextB=0\nTextShift=7\nTop=top.bmp\nTopFrame=2\nTopStretch=5\n"
               "TopTopHeight=4\nLeftTopHeight=3\nLeft=sub\\dir\\IMG.bmp\nRight=img.BMP\n"
               "[Buttons]\nBitmap=img.bmp\nNormalColour2=\nMouseOverColour2=9,8,7\n"
               "RadioButton=radio.bmp\nCheckButton=check.bmp\n"
               "[Headerbar]\nImage=img.bmp\n[MenuItem]\nImage=img.bmp\nFrame=9\nTile=2\n"
               "[Tab.Pane]\nImage=img.bmp\nLeftWidth=9\nTopHeight=2\nRightWidth=5\n"
               "[Progress]\nBitmap=img.bmp\nStyle=1\nTile=5\nNormalColour2=5,5,5\n"
               "[Progress.Chunk]\nImage=img.bmp\n[StatusBarEdges]\nImage=\n"
               "[HorzScrollThumb]\nImage=img.bmp\nFrame=9\n"
               "[ComboButton]\nImage=img.bmp\n");
    TMemoryBitmap top(30, 20, 0xFF000000);
    top.SetPixel(10, 3, 0xFF102030); // (width / 3, (height / frames) / 3)
    skin.Add("Img.Bmp", Solid(40, 20))
        .Add("top.bmp", top)
        .Add("radio.bmp", Solid(52, 13))
        .Add("check.bmp", Solid(96, 16));
    TSkinDataModel m;
    ASSERT_TRUE(skin.Load(m));
    EXPECT_EQ(m.ButtonText, RGBColor(1, 2, 3));
    EXPECT_EQ(m.Menubar, RGBColor(200, 100, 50)); // the skin's own face
    EXPECT_EQ(m.WindowText, clWindowText);        // kept symbolic for the UI
    EXPECT_EQ(m.Colours, (std::vector<TColor>{RGBColor(9, 9, 9), clWindowText}));
    EXPECT_EQ(m.CustomColors[3], RGBColor(4, 5, 6));
    EXPECT_EQ(m.CustomColors[0], clWhite);
    EXPECT_EQ(m.Title->ActiveText, clNone); // blue missing
    EXPECT_EQ(m.Title->InActiveText, RGBColor(0, 0, 0));
    EXPECT_EQ(m.Title->r.Left, 7);
    EXPECT_EQ(m.Title->FontHeight, 14);
    // Borders: heights into the margins across the part, Stretch capped at 1.
    EXPECT_EQ(m.Top->r, Rect(4, 0, 0, 0));
    EXPECT_EQ(m.Left->r, Rect(0, 3, 0, 0));
    EXPECT_EQ(m.Top->Tile, 1);
    EXPECT_EQ(m.Top->Trans, 1);
    EXPECT_EQ(m.Left->Map.Width(), 40); // path dropped, member found whatever its case
    EXPECT_TRUE(m.Right->Map.Empty());  // ".BMP" is not ".bmp"
    EXPECT_EQ(m.SampleBackground(), RGBColor(0x10, 0x20, 0x30));
    EXPECT_EQ(m.BGColor, RGBColor(0x10, 0x20, 0x30));
    // Buttons: colour-2 presence flags.
    EXPECT_FALSE(m.Buttons->HasNormal2);
    EXPECT_EQ(m.Buttons->NormalColour2, RGBColor(1, 2, 3));
    EXPECT_TRUE(m.Buttons->HasOver2);
    EXPECT_EQ(m.Buttons->MouseOverColour2, RGBColor(9, 8, 7));
    EXPECT_EQ(m.Buttons->Frame, 5);
    EXPECT_EQ(m.Buttons->RadioButtonFrame, 4); // 52 / 13
    EXPECT_EQ(m.Buttons->CheckButtonFrame, 6); // 96 / 16
    // Objects.
    EXPECT_EQ(m.Headerbar->Frame, 5);
    EXPECT_EQ(m.MenuItem->Frame, 5);
    EXPECT_EQ(m.MenuItem->Tile, 0); // above 1 is stored as 0
    EXPECT_EQ(m.TabPane->r, Rect(4, 2, 4, 0));
    EXPECT_EQ(m.Progress->Frame, 1);
    EXPECT_EQ(m.Progress->Tile, 1);                          // capped to 1 for this reader
    EXPECT_EQ(m.Progress->NormalColour2, RGBColor(1, 2, 3)); // this reader takes no colours
    EXPECT_EQ(m.MenuItem->PressedColour2, RGBColor(1, 2, 3));
    EXPECT_EQ(m.ProgressChunk->Frame, 0);
    EXPECT_EQ(m.StatusBarEdges, nullptr);
    EXPECT_EQ(m.GroupBox, nullptr);
    EXPECT_EQ(m.HorzScrollThumb->Frame, 3); // its own key, default 3
    EXPECT_EQ(m.ComboButton->Map2.Width(), 40);
    EXPECT_EQ(m.ComboxArrow->Map.Width(), 40); // no sunk edge: a copy of the button
    EXPECT_EQ(m.Track->Map.Width(), 16);       // the built-in groove
    EXPECT_EQ(m.TrackVert->Map.Height(), 16);
    EXPECT_EQ(m.TrackVert->r, Rect(3, 3, 3, 3));
}

TEST(SkinData, ComboFaceAndToolbarGradient) {
    // Sunk edge frames in 4 shades of red, button frames in shades of blue.
    TMemoryBitmap edge(16, 21), button(40, 21);
    for (int k = 0; k < 4; ++k) {
        for (int y = 0; y < 21; ++y)
            for (int x = 0; x < 4; ++x)
                edge.SetPixel(k * 4 + x, y, 0xFF100000u * TPixel(k + 1));
        for (int y = 0; y < 21; ++y)
            for (int x = 0; x < 10; ++x)
                button.SetPixel(k * 10 + x, y, 0xFF000010u * TPixel(k + 1));
    }
    TSkin skin("[SunkEdge]\nImage=edge.bmp\nTopHeight=1\nBottomHeight=2\n"
               "[ComboButton]\nImage=button.bmp\n"
               "[Colours]\nButtonFace=100,100,100\n");
    skin.Add("edge.bmp", edge).Add("button.bmp", button);
    TSkinDataModel m;
    ASSERT_TRUE(skin.Load(m));
    const TMemoryBitmap& face = m.ComboButton->Map;
    ASSERT_EQ(face.Width(), 200);
    ASSERT_EQ(face.Height(), 21);
    EXPECT_EQ(face.Pixel(50 + 1, 10), 0xFF200000u); // frame 2: edge
    EXPECT_EQ(face.Pixel(50 + 2, 2), MagentaPixel); // the text area is cut out
    EXPECT_EQ(face.Pixel(50 + 29, 17), MagentaPixel);
    EXPECT_EQ(face.Pixel(50 + 30, 18), 0xFF200000u);
    EXPECT_EQ(face.Pixel(50 + 31, 10), 0xFF000020u); // the button part from 50 - 19
    EXPECT_EQ(m.ComboButton->r, Rect(2, 1, 21, 2));
    EXPECT_EQ(m.SunkEdge->r, Rect(21, 1, 2, 2));
    EXPECT_EQ(m.SunkEdge->Map.Pixel(0, 10), 0xFF000040u); // mirrored whole: frame 4 first
    EXPECT_EQ(m.ComboxArrow->Frame, 4);
    EXPECT_EQ(m.ComboxArrow->Map.Pixel(17 + 16, 0), 0xFF000020u); // cut at 2*50-19 .. 2*50-2

    // Toolbar: from 15% of the face into white, down to a colour by the
    // sampled background (the face here, brightness 200).
    const TMemoryBitmap& bar = m.Toolbar->Map;
    ASSERT_EQ(bar.Width(), 10);
    ASSERT_EQ(bar.Height(), 40);
    // Start 232 (15% of 100 with white); end 171 (54% of 100 with white),
    // which the falling ramp stops one short of.
    EXPECT_EQ(Blend(RGBColor(100, 100, 100), clWhite, ((225 - 200) * 25) / 140 + 50),
              RGBColor(171, 171, 171));
    EXPECT_EQ(PixelToColor(bar.Pixel(3, 0)), RGBColor(232, 232, 232));
    EXPECT_EQ(PixelToColor(bar.Pixel(3, 39)), RGBColor(172, 172, 172));
}

TEST(SkinData, RefusedAndReplacedSkins) {
    TSkinDataModel m;
    std::vector<AnsiString> messages;
    m.OnMessage = [&](const AnsiString& s) { messages.push_back(s); };
    TSkin first("[Headerbar]\nImage=a.bmp\n");
    first.Add("a.bmp", Solid(10, 10));
    ASSERT_TRUE(first.Load(m));
    ASSERT_NE(m.Headerbar, nullptr);
    // A stream of another format leaves the old objects, and Empty.
    m.SkinStream = TMemoryStream(Bytes{1, 0, 0, 0, 0xE6, 0x80});
    EXPECT_FALSE(m.ReadSkin());
    EXPECT_TRUE(m.Empty);
    EXPECT_NE(m.Headerbar, nullptr);
    EXPECT_EQ(messages.size(), 1u);
    // A new skin without the object takes it away.
    ASSERT_TRUE(TSkin("[Other]\n").Load(m));
    EXPECT_EQ(m.Headerbar, nullptr);
    // A skin with no ini member: every key takes its default.
    TSkinDataModel bare;
    TSkin none("");
    none.Members.clear();
    ASSERT_TRUE(none.Load(bare));
    EXPECT_EQ(bare.ButtonFace, clBtnFace);
    EXPECT_EQ(bare.SysButtons.size(), 3u);
}

TEST(SkinData, StreamedSkinProperty) {
    TSkinDataModel m;
    TSkin skin("[TitlebarSkin]\nSkinName=Streamed\n");
    m.SkinStream = TMemoryStream(PackSkinFile(skin.Members));
    TMemoryStream s;
    m.WriteSkinStream(s);
    EXPECT_EQ(s.Size(), 4 + m.SkinStream.Size());
    TSkinDataModel back;
    s.SetPosition(0);
    back.ReadSkinStream(s);
    EXPECT_EQ(back.SkinName, "Streamed");
    // A size larger than the stream fails before anything is allocated.
    TMemoryStream forged(Bytes{0xFF, 0xFF, 0xFF, 0x7F, 1, 2});
    EXPECT_THROW(back.ReadSkinStream(forged), EReadError);
    TMemoryStream zero(Bytes{0, 0, 0, 0});
    back.ReadSkinStream(zero);
    EXPECT_TRUE(back.Empty);
}

TEST(SkinData, SkinFileSetter) {
    struct TCounting : TSkinDataModel {
        int Updates = 0;
        void UpdateSkin() override { ++Updates; }
    };
    const std::string dir = std::string(LEXSMITH_TEST_DATA) + "/../../resources/skins/";
    TCounting main, dialog;
    dialog.SkinFormtype = sfDialog;
    main.SetSkinFile(dir + "missing.skn"); // silent, stays empty
    EXPECT_TRUE(main.Empty);
    EXPECT_EQ(main.Updates, 0);
    EXPECT_EQ(main.SkinFile(), dir + "missing.skn");
    main.SetSkinFile(dir + "Lexsmith Light.skn");
    dialog.SetSkinFile(dir + "Lexsmith Dark.skn");
    EXPECT_FALSE(main.Empty);
    EXPECT_EQ(main.Updates, 1); // only the main form's data re-applies itself
    EXPECT_EQ(dialog.Updates, 0);
    EXPECT_EQ(dialog.SkinName, "Lexsmith Dark");
}

TEST(SkinData, ImagesShareOnePixelBudget) {
    TSkin skin("[Headerbar]\nImage=a.bmp\n[MenuItem]\nImage=a.bmp\n[SunkEdge]\nImage=a.bmp\n");
    skin.Add("a.bmp", Solid(20, 20));
    TSkinDataModel m;
    m.PixelBudget = 1000;
    ASSERT_TRUE(skin.Load(m));
    // Read in the model's order: the sunk edge, the header bar, the menu item.
    EXPECT_EQ(m.SunkEdge->Map.Width(), 20);
    EXPECT_EQ(m.Headerbar->Map.Width(), 20);
    EXPECT_TRUE(m.MenuItem->Map.Empty()); // 400 more would pass 1000
}
