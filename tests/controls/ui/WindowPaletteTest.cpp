#include "controls/ui/WindowPalette.h"
#include "controls/WgPopupMenuLayout.h"
#include "controls/ui/PlusPageControl.h"
#include "controls/ui/WgMenuBar.h"
#include "controls/ui/WgPgCtl.h"
#include "skin/data.h"
#include "tree/ui/WgTree.h"

#include <gtest/gtest.h>

namespace {

struct Window {
    QWidget Form;
    TWgMenuBar MenuBar;
    TWgToolbar Bars[3];
    TWgPanel Head, Bottom, Sections[5], Header;
    TWgPageControl Pages;
    TPlusPageControl Plus;
    TWgTree Trees[3];
    TPaletteTargets Targets() {
        TPaletteTargets t;
        t.Form = &Form;
        t.MenuBar = &MenuBar;
        t.Toolbars = {&Bars[0], &Bars[1], &Bars[2]};
        t.panHead = &Head;
        t.panBottom = &Bottom;
        for (int i = 0; i < 5; ++i)
            t.panSections[std::size_t(i)] = &Sections[i];
        t.WgPanel1 = &Header;
        t.PageControl = &Pages;
        t.PlusPageControl = &Plus;
        t.Trees = {&Trees[0], &Trees[1], &Trees[2]};
        return t;
    }
};

// A skin with distinct colours; Color1 differs from the face unless asked.
struct TestSkin : TSkinDataModel {
    explicit TestSkin(TColor Accent = 0x00C0FF) {
        ButtonFace = 0xD0D0D0;
        Menubar = 0x303030;
        MenuBarText = 0x00FFFF;
        CustomColors[1] = Accent;
        CustomColors[2] = 0x808080;
        CustomColors[3] = 0x404040;
    }
    // A personality with a menu bar picture: top half red, bottom half blue.
    void AddMenuBarPicture() {
        MenuBar = std::make_unique<TDataSkinObject>();
        MenuBar->Map.SetSize(8, 6, ColorToPixel(0x0000FF));
        for (int y = 3; y < 6; ++y)
            for (int x = 0; x < 8; ++x)
                MenuBar->Map.SetPixel(x, y, ColorToPixel(0xFF0000));
    }
};

// The module-wide popup colours go back to their defaults after each test.
struct WindowPaletteTest : ::testing::Test {
    ~WindowPaletteTest() override { SetPopupMenuColors(clBtnFace, clBtnShadow); }
};

} // namespace

TEST_F(WindowPaletteTest, ThePlainPaletteGivesTheSystemLookAndARaisedMenuBar) {
    Window w;
    ApplyWindowPalette(nullptr, w.Targets());
    EXPECT_EQ(PopupMenuFaceColor(), clBtnFace);
    EXPECT_EQ(PopupMenuShadeColor(), clBtnShadow);
    for (const TWgToolbar& bar : w.Bars) {
        EXPECT_EQ(bar.GradientStartColor(), 0xFFFFFFu);
        EXPECT_EQ(bar.GradientEndColor(), clBtnFace);
    }
    EXPECT_EQ(w.MenuBar.BackgroundType(), bgtColorFill);
    EXPECT_EQ(w.MenuBar.Font().Color, clWindowText);
    EXPECT_EQ(w.MenuBar.ButtonColor(), clBtnFace);
    EXPECT_EQ(w.MenuBar.BevelSpaceColor(), clBtnFace);
    EXPECT_EQ(w.MenuBar.Color(), clBtnFace);
    EXPECT_EQ(w.MenuBar.BevelOuter(), bvRaised);
    for (const TWgPanel* panel : {&w.Head, &w.Bottom, &w.Header}) {
        EXPECT_EQ(panel->BackgroundType(), bgtVertGradient);
        EXPECT_EQ(panel->GradientStartColor(), clBtnFace);
        EXPECT_EQ(panel->GradientEndColor(), clBtnShadow);
    }
    for (const TWgPanel& band : w.Sections) {
        EXPECT_EQ(band.GradientStartColor(), 0xFFFFFFu);
        EXPECT_EQ(band.GradientEndColor(), clBtnFace);
    }
    EXPECT_EQ(w.Pages.Color(), clBtnFace);
    EXPECT_EQ(w.Pages.TabBkColor(), clBtnFace);
    EXPECT_EQ(w.Pages.ActiveTabColor(), clBtnFace);
    EXPECT_EQ(w.Pages.InactiveTabColor(), clBtnFace);
    EXPECT_EQ(w.Plus.DefaultTabColor(), 0xFFFFFFu);
    EXPECT_EQ(w.Plus.ActiveColor(), 0xFFFFFFu);
    EXPECT_EQ(w.Plus.ActiveColorTo(), clBtnFace);
    EXPECT_TRUE(w.Form.autoFillBackground());
    for (TWgTree& tree : w.Trees) {
        EXPECT_EQ(tree.HeaderColor(), clBtnFace);
        EXPECT_EQ(tree.BorderColorDkShadow(), clBtnShadow);
        EXPECT_EQ(tree.BorderColorFace(), clBtnFace);
        EXPECT_EQ(tree.BorderColorHighlight(), 0xFFFFFFu);
        EXPECT_EQ(tree.BorderColorShadow(), clBtnShadow);
        EXPECT_EQ(tree.BorderColorWindow(), 0xFFFFFFu);
    }
}

TEST_F(WindowPaletteTest, ASkinColoursEveryStepFromItsOwnColours) {
    Window w;
    TestSkin skin;
    ApplyWindowPalette(&skin, w.Targets());
    EXPECT_EQ(PopupMenuFaceColor(), 0xD0D0D0u);
    EXPECT_EQ(PopupMenuShadeColor(), 0x808080u);
    EXPECT_EQ(w.Bars[1].GradientEndColor(), 0x00C0FFu);
    EXPECT_EQ(w.Head.GradientStartColor(), 0xD0D0D0u);
    EXPECT_EQ(w.Bottom.GradientEndColor(), 0x808080u);
    EXPECT_EQ(w.Sections[4].GradientEndColor(), 0x00C0FFu);
    EXPECT_EQ(w.Header.GradientEndColor(), 0x808080u);
    EXPECT_EQ(w.Pages.InactiveTabColor(), 0xD0D0D0u);
    EXPECT_EQ(w.Plus.ActiveColorTo(), 0xD0D0D0u);
    EXPECT_EQ(w.Form.palette().color(QPalette::Window), QColor(0xD0, 0xD0, 0xD0));
    for (TWgTree& tree : w.Trees) {
        EXPECT_EQ(tree.HeaderColor(), 0xD0D0D0u);
        EXPECT_EQ(tree.BorderColorDkShadow(), 0x808080u); // Color2
        EXPECT_EQ(tree.BorderColorFace(), 0xD0D0D0u);
        EXPECT_EQ(tree.BorderColorHighlight(), 0xFFFFFFu);
        EXPECT_EQ(tree.BorderColorShadow(), 0x404040u); // Color3
        EXPECT_EQ(tree.BorderColorWindow(), 0xFFFFFFu);
    }
}

TEST_F(WindowPaletteTest, TheMenuBarIsRaisedOnlyWhenFaceAndAccentAgree) {
    const struct {
        TColor Accent;
        TPanelBevel Bevel;
    } cases[] = {{0xD0D0D0, bvRaised}, {0xD0D0D1, bvNone}, {0x00C0FF, bvNone}};
    for (const auto& c : cases) {
        Window w;
        TestSkin skin(c.Accent);
        ApplyWindowPalette(&skin, w.Targets());
        EXPECT_EQ(w.MenuBar.BevelOuter(), c.Bevel) << std::hex << c.Accent;
    }
}

TEST_F(WindowPaletteTest, TheMenuBarsThreeLooks) {
    enum TCase { Picture, SkinColours, Plain };
    for (TCase c : {Picture, SkinColours, Plain}) {
        Window w;
        w.MenuBar.SetBevelSpaceColor(0x123456); // only the plain look sets it
        w.MenuBar.SetColor(0x111111);           // the picture leaves these two alone
        w.MenuBar.SetButtonColor(0x222222);
        TestSkin skin;
        if (c == Picture) skin.AddMenuBarPicture();
        ApplyWindowPalette(c == Plain ? nullptr : &skin, w.Targets());
        const TWgMenuBar& bar = w.MenuBar;
        SCOPED_TRACE(int(c));
        EXPECT_EQ(bar.BackgroundType(), c == Picture ? bgtStretchBitmap : bgtColorFill);
        EXPECT_EQ(bar.Font().Color, c == Plain ? clWindowText : 0x00FFFFu);
        EXPECT_EQ(bar.BevelSpaceColor(), c == Plain ? clBtnFace : 0x123456u);
        EXPECT_EQ(bar.Color(), c == Picture ? 0x111111u : c == Plain ? clBtnFace : 0x303030u);
        EXPECT_EQ(bar.ButtonColor(), c == Picture ? 0x222222u : c == Plain ? clBtnFace : 0x303030u);
    }

    // Only the picture's top half shows, stretched over the bar.
    Window w;
    TestSkin skin;
    skin.AddMenuBarPicture();
    ApplyWindowPalette(&skin, w.Targets());
    EXPECT_EQ(w.MenuBar.Background().Height(), 3);
    w.MenuBar.SetBevelOuter(bvNone);
    w.MenuBar.SetShowBorder(false);
    const QImage shot = w.MenuBar.grab().toImage();
    ASSERT_GT(shot.height(), 4);
    EXPECT_EQ(shot.pixelColor(shot.width() / 2, shot.height() - 1), QColor(Qt::red));
    EXPECT_EQ(shot.pixelColor(1, 0), QColor(Qt::red));

    // Back to the plain look: a colour fill again.
    ApplyWindowPalette(nullptr, w.Targets());
    EXPECT_EQ(w.MenuBar.BackgroundType(), bgtColorFill);
    ApplyWindowPalette(&skin, TPaletteTargets{}); // nothing to paint is no fault
}
