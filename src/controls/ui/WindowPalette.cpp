#include "controls/ui/WindowPalette.h"

#include "base/ui/Colors.h"
#include "controls/WgPopupMenuLayout.h"
#include "controls/ui/PlusPageControl.h"
#include "controls/ui/WgMenuBar.h"
#include "controls/ui/WgPgCtl.h"

#include <QPalette>

namespace {

void Gradient(TWgPanel* Panel, TColor Start, TColor End) {
    if (!Panel) return;
    Panel->SetBackgroundType(bgtVertGradient);
    Panel->SetGradientStartColor(Start);
    Panel->SetGradientEndColor(End);
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

void ApplyPlainPalette(const TWindowPalette& Palette, const TPaletteTargets& Targets) {
    SetPopupMenuColors(Palette.FaceColor, Palette.ShadeColor);

    for (TWgToolbar* bar : Targets.Toolbars) {
        if (!bar) continue;
        bar->SetGradientStartColor(0xFFFFFF);
        bar->SetGradientEndColor(Palette.AccentColor);
    }

    if (TWgMenuBar* bar = Targets.MenuBar) {
        bar->SetBackgroundType(bgtColorFill);
        TFont font = bar->Font();
        font.Color = clWindowText;
        bar->SetFont(font);
        bar->SetButtonColor(Palette.MenuBarColor);
        bar->SetBevelSpaceColor(Palette.AccentColor);
        bar->SetColor(Palette.MenuBarColor);
    }

    Gradient(Targets.panHead, Palette.FaceColor, Palette.ShadeColor);
    Gradient(Targets.panBottom, Palette.FaceColor, Palette.ShadeColor);
    for (TWgPanel* band : Targets.panSections)
        Gradient(band, 0xFFFFFF, Palette.AccentColor);

    if (Targets.MenuBar) Targets.MenuBar->SetBevelOuter(MenuBarRaised(Palette) ? bvRaised : bvNone);

    SetWidgetColor(Targets.Form, Palette.FaceColor);
    SetWidgetColor(Targets.Panel1, Palette.FaceColor);
    Gradient(Targets.WgPanel1, Palette.FaceColor, Palette.ShadeColor);

    if (TWgPageControl* pages = Targets.PageControl) {
        pages->SetColor(Palette.FaceColor);
        pages->SetTabBkColor(Palette.FaceColor);
        pages->SetActiveTabColor(Palette.FaceColor);
        pages->SetInactiveTabColor(Palette.FaceColor);
    }

    if (TPlusPageControl* plus = Targets.PlusPageControl) {
        plus->SetDefaultTabColor(0xFFFFFF);
        plus->SetActiveColor(0xFFFFFF);
        plus->SetActiveColorTo(Palette.FaceColor);
    }
}
