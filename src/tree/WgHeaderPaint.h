#pragma once
// Painting of the column header as canvas operations: each section in its
// rectangle (background, edge, right zone, filter glyph, sort mark, image,
// caption), the locked section last so it lies on top, and the space right
// of the last section.

#include "base/Canvas.h"
#include "tree/WgHeaderModel.h"

#include <functional>

struct TWgHeaderPaintOptions {
    TColor Color = clBtnFace; // the header's own colour
    TFont Font;               // the caption font; its colour gives way to the section's
    int ImageWidth = 0;       // size of the header's images, 0 without images
    int ImageHeight = 0;
    std::function<void(TCanvas& Canvas, int ImageIndex, int X, int Y)> DrawImage;
    // Draws a caption that begins with "<html>".
    std::function<void(TCanvas& Canvas, WideView Markup, const TRect& R)> DrawMarkup;
    // Owner drawing of sections with the owner-draw style.
    std::function<void(TCanvas& Canvas, TWgHeaderSection& Section, const TRect& R, bool Pressed)>
        OnSectionDraw;
};

// The sort marks, 6 pixels wide: "WGHEADERASCBMP" and "WGHEADERDESCBMP".
// Their background is the transparent colour (magenta).
const TMemoryBitmap& HeaderSortBitmap(bool Ascending);
inline constexpr TColor HeaderSortBitmapKey = 0xFF00FF;

// Paints one section in R (its rectangle already shifted by the scroll
// offset). MakingDragImage darkens the background as the drag image wants.
void PaintHeaderSection(TCanvas& Canvas, TWgHeaderModel& Header, TWgHeaderSection& Section, TRect R,
                        const TWgHeaderPaintOptions& Options, bool MakingDragImage = false);

// Paints the whole header into Client.
void PaintHeader(TCanvas& Canvas, TWgHeaderModel& Header, const TRect& Client,
                 const TWgHeaderPaintOptions& Options);
