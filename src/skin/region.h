#pragma once
// Regions as the window system keeps them: horizontal bands, each with
// sorted, separate spans, neighbouring bands with equal spans merged. Two
// regions covering the same pixels are equal.

#include "base/Bitmap.h"
#include "base/Geometry.h"

#include <utility>
#include <vector>

class TRegion {
public:
    struct TBand {
        int Top = 0, Bottom = 0;
        std::vector<std::pair<int, int>> Spans; // [Left, Right)
        bool operator==(const TBand&) const = default;
    };

    TRegion() = default;
    explicit TRegion(const TRect& R) : TRegion(FromRects({R})) {}
    // The union of the rectangles (empty ones are ignored).
    static TRegion FromRects(const std::vector<TRect>& Rects);

    void Union(const TRegion& Other); // the RGN_OR combination
    bool Empty() const { return FBands.empty(); }
    bool Contains(int X, int Y) const;
    // One rectangle for each span of each band, top to bottom, left to right.
    std::vector<TRect> Rects() const;
    const std::vector<TBand>& Bands() const { return FBands; }
    bool operator==(const TRegion&) const = default;

private:
    std::vector<TBand> FBands;
    void Coalesce();
};

// Runs of each row whose colour lies outside Key .. Key + tolerance (per
// channel, capped at 255) become one-row rectangles, offset by OffsetX and
// OffsetY. They gather in a buffer merged into the result every
// RegionFlushCount rectangles, as the window system's region calls need.
inline constexpr int RegionFlushCount = 2000;
TRegion RegionFromBitmap(const TMemoryBitmap& Bitmap, int OffsetX, int OffsetY, int TolR, int TolG,
                         int TolB, TColor Key);
