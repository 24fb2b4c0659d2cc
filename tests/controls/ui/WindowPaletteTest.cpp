#include "controls/ui/WindowPalette.h"
#include "controls/WgPopupMenuLayout.h"
#include "controls/ui/PlusPageControl.h"
#include "controls/ui/WgMenuBar.h"
#include "controls/ui/WgPgCtl.h"

#include <gtest/gtest.h>

namespace {

struct Window {
    QWidget Form;
    TWgMenuBar MenuBar;
    TWgToolbar Bars[3];
    TWgPanel Head, Bottom, Sections[5], Header;
    TWgPageControl Pages;
    TPlusPageControl Plus;
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
        return t;
    }
};

} // namespace

TEST(WindowPalette, ThePlainPaletteGivesTheSystemLookAndARaisedMenuBar) {
    Window w;
    ApplyPlainPalette(PlainWindowPalette(), w.Targets());
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
}

TEST(WindowPalette, AnAccentOtherThanTheFaceFlattensTheMenuBar) {
    Window w;
    TWindowPalette palette = PlainWindowPalette();
    palette.AccentColor = 0x00C0FF;
    palette.ShadeColor = 0x404040;
    ApplyPlainPalette(palette, w.Targets());
    EXPECT_EQ(w.MenuBar.BevelOuter(), bvNone);
    EXPECT_EQ(w.MenuBar.BevelSpaceColor(), 0x00C0FFu);
    EXPECT_EQ(w.Sections[2].GradientEndColor(), 0x00C0FFu);
    EXPECT_EQ(PopupMenuShadeColor(), 0x404040u);
    SetPopupMenuColors(clBtnFace, clBtnShadow);    // the module-wide colours back as they were
    ApplyPlainPalette(palette, TPaletteTargets{}); // nothing to paint is no fault
}
