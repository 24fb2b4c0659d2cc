#pragma once
// How a panel looks and how it is painted: background (colour, gradient,
// bitmap), bevels and caption. Toolbars, the menu bar and the side panel's
// bands all stand on this.

#include "base/Background.h"
#include "base/Canvas.h"

#include <cstdint>

enum TPanelBevel : std::uint8_t { bvNone = 0, bvLowered = 1, bvRaised = 2, bvSpace = 3 };

enum TWgAlignment : std::uint8_t { taLeftJustify = 0, taRightJustify = 1, taCenter = 2 };

struct TWgPanelLook {
    TColor Color = clBtnFace;
    TWgBackgroundType BackgroundType = bgtColorFill;
    TColor GradientStartColor = clWindow;
    TColor GradientEndColor = clBtnFace;
    int GradientSteps = 64;
    // Shown with the bitmap background types; none falls back to the colour.
    const TMemoryBitmap* Background = nullptr;
    TPanelBevel BevelOuter = bvRaised;
    TPanelBevel BevelInner = bvNone;
    int BevelWidth = 1;
    int BorderWidth = 0;
    // Colour of a space bevel.
    TColor BevelSpaceColor = clBtnFace;
    WideString Caption;
    TWgAlignment Alignment = taCenter;
    TFont Font;
};

// Colour of band Step of Steps from Start to End, both ends included.
TColor GradientColor(TColor Start, TColor End, int Step, int Steps);
// Fills R with Steps bands running from Start to End, top to bottom when
// Vertical, else left to right. System colours are resolved by the canvas.
void PaintGradient(TCanvas& Canvas, const TRect& R, TColor Start, TColor End, int Steps,
                   bool Vertical);
// The background alone, over R.
void PaintPanelBackground(TCanvas& Canvas, const TRect& R, const TWgPanelLook& Look);
// R less the bevels and the border.
TRect PanelClientRect(const TRect& R, const TWgPanelLook& Look);
// Background, outer bevel, inner bevel and caption, in that order.
void PaintPanel(TCanvas& Canvas, const TRect& R, const TWgPanelLook& Look);
