#include "controls/ui/WindowPalette.h"

#include "base/ui/Colors.h"
#include "controls/SkinPalette.h"
#include "controls/WgPopupMenuLayout.h"
#include "controls/ui/PlusPageControl.h"
#include "controls/ui/WgMenuBar.h"
#include "controls/ui/WgPgCtl.h"
#include "skin/data.h"
#include "tree/ui/WgTree.h"

#include <QPalette>

namespace {

void Gradient(TWgPanel* Panel, TColor Start, TColor End) {
    if (!Panel) return;
    Panel->SetBackgroundType(bgtVertGradient);
    Panel->SetGradientStartColor(Start);
    Panel->SetGradientEndColor(End);
}

void SetFontColor(TWgMenuBar& Bar, TColor Color) {
    TFont font = Bar.Font();
    font.Color = Color;
    Bar.SetFont(font);
}

void PaintMenuBar(TWgMenuBar& Bar, const TSkinDataModel* Skin, const TWindowPalette& Palette) {
    if (Skin) {
        if (const TMemoryBitmap* picture = SkinMenuBarPicture(Skin)) {
            Bar.SetBackground(TopHalf(*picture));
            Bar.SetBackgroundType(bgtStretchBitmap);
            SetFontColor(Bar, Skin->MenuBarText);
            return;
        }
        Bar.SetBackgroundType(bgtColorFill);
        SetFontColor(Bar, Skin->MenuBarText);
        Bar.SetButtonColor(Palette.MenuBarColor);
        Bar.SetColor(Palette.MenuBarColor);
        return;
    }
    Bar.SetBackgroundType(bgtColorFill);
    SetFontColor(Bar, clWindowText);
    Bar.SetButtonColor(Palette.MenuBarColor);
    Bar.SetBevelSpaceColor(Palette.AccentColor);
    Bar.SetColor(Palette.MenuBarColor);
}

} // namespace

void SetWidgetColor(QWidget* Widget, TColor Color) {
    if (!Widget) return;
    if (auto* panel = qobject_cast<TWgPanel*>(Widget)) {
        panel->SetColor(Color);
        return;
    }
    QPalette palette = Widget->palette();
    palette.setColor(QPalette::Window, ToQColor(Color));
    Widget->setPalette(palette);
    Widget->setAutoFillBackground(true);
}

void ApplyWindowPalette(const TSkinDataModel* Skin, const TPaletteTargets& Targets) {
    const TWindowPalette palette = WindowPaletteOf(Skin);
    SetPopupMenuColors(palette.FaceColor, palette.ShadeColor);

    for (TWgToolbar* bar : Targets.Toolbars) {
        if (!bar) continue;
        bar->SetGradientStartColor(0xFFFFFF);
        bar->SetGradientEndColor(palette.AccentColor);
    }

    if (Targets.MenuBar) PaintMenuBar(*Targets.MenuBar, Skin, palette);

    Gradient(Targets.panHead, palette.FaceColor, palette.ShadeColor);
    Gradient(Targets.panBottom, palette.FaceColor, palette.ShadeColor);
    for (TWgPanel* band : Targets.panSections)
        Gradient(band, 0xFFFFFF, palette.AccentColor);

    if (Targets.MenuBar) Targets.MenuBar->SetBevelOuter(MenuBarRaised(palette) ? bvRaised : bvNone);

    SetWidgetColor(Targets.Form, palette.FaceColor);
    SetWidgetColor(Targets.Panel1, palette.FaceColor);
    Gradient(Targets.WgPanel1, palette.FaceColor, palette.ShadeColor);

    if (TWgPageControl* pages = Targets.PageControl) {
        pages->SetColor(palette.FaceColor);
        pages->SetTabBkColor(palette.FaceColor);
        pages->SetActiveTabColor(palette.FaceColor);
        pages->SetInactiveTabColor(palette.FaceColor);
    }

    if (TPlusPageControl* plus = Targets.PlusPageControl) {
        plus->SetDefaultTabColor(0xFFFFFF);
        plus->SetActiveColor(0xFFFFFF);
        plus->SetActiveColorTo(palette.FaceColor);
    }

    for (TWgTree* tree : Targets.Trees) {
        if (!tree) continue;
        tree->SetHeaderColor(palette.FaceColor);
        tree->SetBorderColorDkShadow(palette.ShadeColor);
        tree->SetBorderColorFace(palette.FaceColor);
        tree->SetBorderColorHighlight(0xFFFFFF);
        tree->SetBorderColorShadow(palette.DarkShadeColor);
        tree->SetBorderColorWindow(0xFFFFFF);
    }
}
