#include "skin/colors.h"

#include <algorithm>
#include <cmath>

TColor Blend(TColor C1, TColor C2, int Amount, const TColorResolver& Resolve) {
    C1 = Resolve(C1);
    C2 = Resolve(C2);
    const int scale = Amount < 100 ? 100 : 1000;
    auto mix = [&](int a, int b) {
        int v = (a * Amount + b * (scale - Amount) + scale / 2) / scale;
        return std::clamp(v, 0, 255); // amounts beyond the scale would leave the byte
    };
    return RGBColor(mix(GetRValue(C1), GetRValue(C2)), mix(GetGValue(C1), GetGValue(C2)),
                    mix(GetBValue(C1), GetBValue(C2)));
}

int Brightness(TColor C, const TColorResolver& Resolve) {
    C = Resolve(C);
    int r = GetRValue(C), g = GetGValue(C), b = GetBValue(C);
    if (r < 160 && g < 160 && b < 160) return 200;
    int mx = std::max({r, g, b}), mn = std::min({r, g, b});
    // Rounds half to even, as the run-time's rounding does.
    return int(std::nearbyint(double(mx - mn) / mx * 255));
}

TGradientCache& TGradientCache::Shared() {
    static TGradientCache cache;
    return cache;
}

const std::vector<TPixel>& TGradientCache::Table(int Length, TColor C1, TColor C2) {
    for (const auto& e : FEntries)
        if (e.Length == Length && e.C1 == C1 && e.C2 == C2) return e.Colors;
    ++FMisses;
    TEntry& e = FEntries[std::size_t(FNext)];
    FNext = (FNext + 1) % int(FEntries.size());
    e.Length = Length;
    e.C1 = C1;
    e.C2 = C2;
    e.Colors.assign(std::size_t(std::max(Length, 0)), 0);
    const int from[3] = {GetRValue(C1), GetGValue(C1), GetBValue(C1)};
    const int delta[3] = {GetRValue(C2) - from[0], GetGValue(C2) - from[1],
                          GetBValue(C2) - from[2]};
    for (int i = 0; i < Length; ++i) {
        int ch[3];
        for (int k = 0; k < 3; ++k)
            ch[k] = Length == 1 ? from[k] + delta[k] / 2
                                : from[k] + (delta[k] * i + (Length - 1) / 2) / (Length - 1);
        e.Colors[std::size_t(i)] = ColorToPixel(RGBColor(ch[0], ch[1], ch[2]));
    }
    return e.Colors;
}

void GradientRect(TMemoryBitmap& Target, const TRect& R, TColor C1, TColor C2, bool Vertical,
                  const TRect* Clip, TGradientCache& Cache) {
    const int n = Vertical ? R.Height() : R.Width();
    if (n <= 0 || R.IsEmpty()) return;
    TRect box;
    if (!IntersectRect(box, R, Rect(0, 0, Target.Width(), Target.Height()))) return;
    if (Clip && !IntersectRect(box, box, *Clip)) return;
    const std::vector<TPixel>& table = Cache.Table(n, ColorToRGB(C1), ColorToRGB(C2));
    for (int y = box.Top; y < box.Bottom; ++y) {
        TPixel* row = Target.ScanLine(y);
        if (Vertical) {
            std::fill(row + box.Left, row + box.Right, table[std::size_t(y - R.Top)]);
        } else {
            for (int x = box.Left; x < box.Right; ++x)
                row[x] = table[std::size_t(x - R.Left)];
        }
    }
}
