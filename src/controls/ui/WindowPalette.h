#pragma once
// Paints the main window's controls with its palette: the start-up step that
// gives the menu bar, toolbars, panels, page controls and trees their
// colours, from the active skin or, without one, from the system.

#include "controls/WgPanelPalette.h"

#include <array>

class QWidget;
class TSkinDataModel;
class TWgToolbar;
class TWgMenuBar;
class TWgPanel;
class TWgPageControl;
class TPlusPageControl;
class TWgTree;

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
    std::array<TWgTree*, 3> Trees{};
};

// Applies the palette of Skin, the active skin or null for the plain look,
// in the window's order: popup colours, toolbars, menu bar, panels, the menu
// bar's bevel, form colours, page control, plus page control, trees.
void ApplyWindowPalette(const TSkinDataModel* Skin, const TPaletteTargets& Targets);

// Sets the background colour of a plain widget (a form or a panel of the toolkit).
void SetWidgetColor(QWidget* Widget, TColor Color);
