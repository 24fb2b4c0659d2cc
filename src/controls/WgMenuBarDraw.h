#pragma once
// Drawing of a top-level menu item's caption the way the main form owner-
// draws its menu bar items: a filled rectangle when selected, the caption
// centred both ways and clipped to the rectangle, no accelerator processing.

#include "base/Canvas.h"

struct TTopMenuItemColors {
    TColor SelectedBack = clSystemColor | 29; // the menu highlight
    TColor SelectedText = clSystemColor | 14; // the highlight text
    TColor PlainText = clSystemColor | 8;     // the window text
};

void DrawTopMenuItemCaption(TCanvas& Canvas, TRect R, bool Selected, WideView Caption,
                            const TTopMenuItemColors& Colors = {});
