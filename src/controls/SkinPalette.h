#pragma once
// The colours the main window takes from a skin: the five palette colours,
// the owner-drawn top menu items and the menu bar's picture. A null skin
// stands for "no skin active" and gives the plain system look.

#include "controls/WgMenuBarDraw.h"
#include "controls/WgPanelPalette.h"

class TMemoryBitmap;
class TSkinDataModel;

// Face from the skin's button face, accent and the two shades from its
// custom colours 1 to 3, the menu bar from its menu bar colour.
TWindowPalette WindowPaletteOf(const TSkinDataModel* Skin);

// Highlight, highlight text and menu bar text of the skin; without one the
// menu highlight, highlight text and window text of the system.
TTopMenuItemColors TopMenuItemColorsOf(const TSkinDataModel* Skin);

// The menu bar picture a skin gives in its personality, or null when it has
// none (or its image could not be read).
const TMemoryBitmap* SkinMenuBarPicture(const TSkinDataModel* Skin);

// The upper Height div 2 rows of Bitmap: the menu bar shows only the top
// half of its picture (the lower half is another state of it).
TMemoryBitmap TopHalf(const TMemoryBitmap& Bitmap);
