#pragma once
// Colour arithmetic of the skin painters.

#include "base/Bitmap.h"
#include "base/Geometry.h"
#include "base/SystemColors.h"

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

using TColorResolver = std::function<TColor(TColor)>;

// Mixes c1 into c2: amount is a part of 100 below 100, otherwise of 1,000,
// so 150 means 15% of c1. System colours are resolved first.
TColor Blend(TColor C1, TColor C2, int Amount, const TColorResolver& Resolve = ColorToRGB);
// 200 for a colour with no channel at 160 or above; otherwise its saturation
// scaled to 255.
int Brightness(TColor C, const TColorResolver& Resolve = ColorToRGB);

// Colour tables of gradients, kept for the last 16 (length, first, last).
class TGradientCache {
public:
    const std::vector<TPixel>& Table(int Length, TColor C1, TColor C2);
    int Misses() const { return FMisses; }
    static TGradientCache& Shared();

private:
    struct TEntry {
        int Length = -1;
        TColor C1 = 0, C2 = 0;
        std::vector<TPixel> Colors;
    };
    std::array<TEntry, 16> FEntries;
    int FNext = 0;
    int FMisses = 0;
};

// Fills R line by line from C1 to C2 (RGB colours), top to bottom when
// Vertical, else left to right; only the part inside Clip (when given) and
// the bitmap is written.
void GradientRect(TMemoryBitmap& Target, const TRect& R, TColor C1, TColor C2, bool Vertical,
                  const TRect* Clip = nullptr, TGradientCache& Cache = TGradientCache::Shared());
