#pragma once
// The face of a tool button or a menu bar button: what it shows and in
// which state, and how that is painted. The button widgets compute the state
// and hand it here with a canvas.

#include "base/Canvas.h"
#include "base/ImageList.h"

struct TWgButtonFace {
    bool Flat = true;
    bool Hot = false;
    bool Down = false;
    bool Enabled = true;
    // A transparent button leaves the bar's background showing.
    bool Transparent = false;
    bool ShowBorder = true;
    TColor Color = clBtnFace;
    bool ShowGlyph = true;
    bool ShowCaption = false;
    WideString Caption; // "&" marks the accelerator
    // A caption that begins with "<html>" is markup, without accelerator.
    bool IsHTML = false;
    TFont Font;
    const TWgImageList* Images = nullptr;
    // Used instead of Images, when they hold the index, for a hot button and
    // for a disabled one (which is then not greyed).
    const TWgImageList* HotImages = nullptr;
    const TWgImageList* DisabledImages = nullptr;
    int ImageIndex = -1;
    // An own glyph, used when no image list is.
    const TMemoryBitmap* Glyph = nullptr;
    TColor GlyphTransparentColor = 0xFF00FF;
    int Spacing = 4;
};

// Pixels on each side of the content.
inline constexpr int ToolButtonPadding = 4;

// Width and height of glyph and caption with their spacing and padding.
TSize ToolButtonContentSize(TCanvas& Canvas, const TWgButtonFace& Face);
// A grey copy of Bitmap for disabled buttons; pixels of Key stay as they are.
TMemoryBitmap GrayedBitmap(const TMemoryBitmap& Bitmap, TColor Key);
// Background (unless transparent), the edge of the state, then glyph and
// caption centred; a pressed button's content moves one pixel down and right.
void PaintToolButton(TCanvas& Canvas, const TRect& R, const TWgButtonFace& Face);
