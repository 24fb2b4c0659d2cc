#pragma once
// A list of images of one size (16 by 16 in this program), drawn by index
// onto a canvas. The glyphs of menus and toolbars come from one of these.

#include "base/Bitmap.h"
#include "base/Canvas.h"

#include <vector>

class TWgImageList {
public:
    TWgImageList(int Width = 16, int Height = 16) : FWidth(Width), FHeight(Height) {}
    TWgImageList(int Width, int Height, std::vector<TMemoryBitmap> Images)
        : FWidth(Width), FHeight(Height), FImages(std::move(Images)) {}

    int Width() const { return FWidth; }
    int Height() const { return FHeight; }
    int Count() const { return int(FImages.size()); }
    // Images of another size are stretched when drawn, never refused.
    void Add(TMemoryBitmap Image) { FImages.push_back(std::move(Image)); }
    const TMemoryBitmap* Get(int Index) const {
        return Index >= 0 && Index < Count() ? &FImages[std::size_t(Index)] : nullptr;
    }
    // Pixels of this colour are left out when drawing; clNone draws them all.
    TColor TransparentColor = 0xFF00FF;

    // Draws image Index with its top left at (X, Y); an index out of range draws nothing.
    void Draw(TCanvas& Canvas, int X, int Y, int Index) const {
        const TMemoryBitmap* image = Get(Index);
        if (!image || image->Empty()) return;
        if (image->Width() == FWidth && image->Height() == FHeight)
            Canvas.Draw(X, Y, *image, TransparentColor);
        else
            Canvas.StretchDraw(Bounds(X, Y, FWidth, FHeight), *image, TransparentColor);
    }

private:
    int FWidth, FHeight;
    std::vector<TMemoryBitmap> FImages;
};
