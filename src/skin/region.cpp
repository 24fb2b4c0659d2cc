#include "skin/region.h"

#include "base/SystemColors.h"

#include <algorithm>

namespace {

using TSpans = std::vector<std::pair<int, int>>;

// Sorts and joins overlapping or touching spans.
TSpans MergeSpans(TSpans Spans) {
    std::sort(Spans.begin(), Spans.end());
    TSpans out;
    for (const auto& s : Spans) {
        if (!out.empty() && s.first <= out.back().second)
            out.back().second = std::max(out.back().second, s.second);
        else
            out.push_back(s);
    }
    return out;
}

} // namespace

void TRegion::Coalesce() {
    std::vector<TBand> out;
    for (auto& b : FBands) {
        if (b.Spans.empty() || b.Bottom <= b.Top) continue;
        if (!out.empty() && out.back().Bottom == b.Top && out.back().Spans == b.Spans)
            out.back().Bottom = b.Bottom;
        else
            out.push_back(std::move(b));
    }
    FBands = std::move(out);
}

TRegion TRegion::FromRects(const std::vector<TRect>& Rects) {
    std::vector<TRect> rects;
    std::vector<int> ys;
    for (const TRect& r : Rects)
        if (!r.IsEmpty()) {
            rects.push_back(r);
            ys.push_back(r.Top);
            ys.push_back(r.Bottom);
        }
    TRegion region;
    if (rects.empty()) return region;
    std::sort(ys.begin(), ys.end());
    ys.erase(std::unique(ys.begin(), ys.end()), ys.end());
    std::sort(rects.begin(), rects.end(),
              [](const TRect& a, const TRect& b) { return a.Top < b.Top; });
    std::vector<const TRect*> active;
    std::size_t next = 0;
    for (std::size_t i = 0; i + 1 < ys.size(); ++i) {
        const int top = ys[i], bottom = ys[i + 1];
        std::erase_if(active, [top](const TRect* r) { return r->Bottom <= top; });
        while (next < rects.size() && rects[next].Top <= top)
            active.push_back(&rects[next++]);
        TSpans spans;
        for (const TRect* r : active)
            spans.emplace_back(r->Left, r->Right);
        region.FBands.push_back({top, bottom, MergeSpans(std::move(spans))});
    }
    region.Coalesce();
    return region;
}

void TRegion::Union(const TRegion& Other) {
    if (Other.Empty()) return;
    if (Empty()) {
        *this = Other;
        return;
    }
    std::vector<int> ys;
    for (const auto* bands : {static_cast<const std::vector<TBand>*>(&FBands), &Other.FBands})
        for (const TBand& b : *bands) {
            ys.push_back(b.Top);
            ys.push_back(b.Bottom);
        }
    std::sort(ys.begin(), ys.end());
    ys.erase(std::unique(ys.begin(), ys.end()), ys.end());
    std::vector<TBand> out;
    std::size_t a = 0, b = 0;
    for (std::size_t i = 0; i + 1 < ys.size(); ++i) {
        const int top = ys[i], bottom = ys[i + 1];
        while (a < FBands.size() && FBands[a].Bottom <= top)
            ++a;
        while (b < Other.FBands.size() && Other.FBands[b].Bottom <= top)
            ++b;
        TSpans spans;
        if (a < FBands.size() && FBands[a].Top <= top)
            spans.insert(spans.end(), FBands[a].Spans.begin(), FBands[a].Spans.end());
        if (b < Other.FBands.size() && Other.FBands[b].Top <= top)
            spans.insert(spans.end(), Other.FBands[b].Spans.begin(), Other.FBands[b].Spans.end());
        out.push_back({top, bottom, MergeSpans(std::move(spans))});
    }
    FBands = std::move(out);
    Coalesce();
}

bool TRegion::Contains(int X, int Y) const {
    for (const TBand& b : FBands)
        if (Y >= b.Top && Y < b.Bottom)
            for (const auto& s : b.Spans)
                if (X >= s.first && X < s.second) return true;
    return false;
}

std::vector<TRect> TRegion::Rects() const {
    std::vector<TRect> out;
    for (const TBand& b : FBands)
        for (const auto& s : b.Spans)
            out.push_back(Rect(s.first, b.Top, s.second, b.Bottom));
    return out;
}

TRegion RegionFromBitmap(const TMemoryBitmap& Bitmap, int OffsetX, int OffsetY, int TolR, int TolG,
                         int TolB, TColor Key) {
    const int lo[3] = {GetRValue(Key), GetGValue(Key), GetBValue(Key)};
    const int hi[3] = {std::min(lo[0] + TolR, 255), std::min(lo[1] + TolG, 255),
                       std::min(lo[2] + TolB, 255)};
    auto isKey = [&](TPixel p) {
        const int c[3] = {int((p >> 16) & 0xFF), int((p >> 8) & 0xFF), int(p & 0xFF)};
        for (int k = 0; k < 3; ++k)
            if (c[k] < lo[k] || c[k] > hi[k]) return false;
        return true;
    };
    TRegion result;
    std::vector<TRect> buffer;
    buffer.reserve(500); // grows by 500 as the window system's buffer did
    auto flush = [&] {
        result.Union(TRegion::FromRects(buffer));
        buffer.clear();
    };
    for (int y = 0; y < Bitmap.Height(); ++y) {
        const TPixel* row = Bitmap.ScanLine(y);
        int x = 0;
        const int w = Bitmap.Width();
        while (x < w) {
            while (x < w && isKey(row[x]))
                ++x;
            int start = x;
            while (x < w && !isKey(row[x]))
                ++x;
            if (x > start) {
                if (buffer.size() == buffer.capacity()) buffer.reserve(buffer.size() + 500);
                buffer.push_back(Rect(start + OffsetX, y + OffsetY, x + OffsetX, y + OffsetY + 1));
                if (int(buffer.size()) == RegionFlushCount) flush();
            }
        }
    }
    flush();
    return result;
}
