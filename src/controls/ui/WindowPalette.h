#pragma once
// Paints the main window's controls with a palette: the part of the start-up
// palette step that concerns the menu bar, toolbars, panels and page
// controls, for the look without a skin. The trees take their colours from
// the form itself.

#include "controls/WgPanelPalette.h"

#include <array>

class QWidget;
class TWgToolbar;
class TWgMenuBar;
class TWgPanel;
class TWgPageControl;
class TPlusPageControl;

// The controls of the main form that take colours; any may be null.
struct TPaletteTargets {
    QWidget* Form = nullptr;
    QWidget* Panel1 = nullptr;
    std::array<TWgToolbar*, 3> Toolbars{};
    TWgMenuBar* MenuBar = nullptr;
    TWgPanel* panHead = nullptr;
    TWgPanel* panBottom = nullptr;
    std::array<TWgPanel*, 5> panSections{};
    TWgPanel* WgPanel1 = nullptr;
    TWgPageControl* PageControl = nullptr;
    TPlusPageControl* PlusPageControl = nullptr;
};

// Applies Palette in the window's order: popup colours, toolbars, menu bar
// (as with no skin active), panels, the menu bar's bevel, form colours,
// page control, plus page control.
void ApplyPlainPalette(const TWindowPalette& Palette, const TPaletteTargets& Targets);

// Sets the background colour of a plain widget (a form or a panel of the toolkit).
void SetWidgetColor(QWidget* Widget, TColor Color);
