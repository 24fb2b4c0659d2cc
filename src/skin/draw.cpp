#include "skin/draw.h"

#include "skin/bitmap.h"

#include <algorithm>

TRect FrameRect(const TMemoryBitmap& Map, int Frame, int Frames, bool Vertical) {
    if (Frames < 1 || Map.Empty()) return {};
    if (Vertical) {
        int fh = Map.Height() / Frames;
        return Bounds(0, (Frame - 1) * fh, Map.Width(), fh);
    }
    int fw = Map.Width() / Frames;
    return Bounds((Frame - 1) * fw, 0, fw, Map.Height());
}

namespace {

// Copies a source part onto a destination part, stretched, unless either
// has no area.
void Part(TMemoryBitmap& Dst, const TRect& D, const TMemoryBitmap& Src, const TRect& S,
          bool Transparent = false) {
    if (D.Width() <= 0 || D.Height() <= 0 || S.Width() <= 0 || S.Height() <= 0) return;
    StretchCopy(Dst, D, Src, S, Transparent);
}

void Tiled(TMemoryBitmap& Dst, const TRect& D, const TMemoryBitmap& Src, const TRect& S) {
    if (D.Width() <= 0 || D.Height() <= 0 || S.Width() <= 0 || S.Height() <= 0) return;
    for (int y = D.Top; y < D.Bottom; y += S.Height())
        for (int x = D.Left; x < D.Right; x += S.Width()) {
            int w = std::min(S.Width(), D.Right - x), h = std::min(S.Height(), D.Bottom - y);
            StretchCopy(Dst, Bounds(x, y, w, h), Src, Bounds(S.Left, S.Top, w, h));
        }
}

} // namespace

TMemoryBitmap DrawRect(const TMemoryBitmap& Map, int Frame, int Frames, bool Vertical,
                       const TRect& Margins, bool Tile, int W, int H) {
    TMemoryBitmap work(W, H, MagentaPixel);
    TRect f = FrameRect(Map, Frame, Frames, Vertical);
    if (work.Empty() || f.IsEmpty()) return work;
    int L = Margins.Left, T = Margins.Top, R = Margins.Right, B = Margins.Bottom;
    if (L + R > W) L = R = 0;
    if (T + B > H) T = B = 0;
    const int x0 = f.Left, y0 = f.Top, fw = f.Width(), fh = f.Height();
    const int mw = fw - L - R, mh = fh - T - B; // middle of the source
    const int cw = W - L - R, ch = H - T - B;   // middle of the target
    // The order of the nine copies is the one skins were drawn with.
    Part(work, Bounds(0, 0, L, T), Map, Bounds(x0, y0, L, T));
    Part(work, Bounds(0, H - B, L, B), Map, Bounds(x0, y0 + fh - B, L, B));
    Part(work, Bounds(W - R, 0, R, T), Map, Bounds(x0 + fw - R, y0, R, T));
    Part(work, Bounds(0, T, L, ch), Map, Bounds(x0, y0 + T, L, mh));
    Part(work, Bounds(L, 0, cw, T), Map, Bounds(x0 + L, y0, mw, T));
    if (Tile)
        Tiled(work, Bounds(L, T, cw, ch), Map, Bounds(x0 + L, y0 + T, mw, mh));
    else
        Part(work, Bounds(L, T, cw, ch), Map, Bounds(x0 + L, y0 + T, mw, mh));
    Part(work, Bounds(W - R, H - B, R, B), Map, Bounds(x0 + fw - R, y0 + fh - B, R, B));
    Part(work, Bounds(W - R, T, R, ch), Map, Bounds(x0 + fw - R, y0 + T, R, mh));
    Part(work, Bounds(L, H - B, cw, B), Map, Bounds(x0 + L, y0 + fh - B, mw, B));
    return work;
}

void DrawObject(TMemoryBitmap& Target, const TRect& Dest, const TMemoryBitmap& Map, int Frame,
                int Frames, bool Vertical, const TRect& Margins, bool Tile, bool Transparent) {
    if (Dest.IsEmpty()) return;
    TMemoryBitmap work =
        DrawRect(Map, Frame, Frames, Vertical, Margins, Tile, Dest.Width(), Dest.Height());
    CopyBitmap(Target, Dest.Left, Dest.Top, work, Transparent);
}

void DrawTiledBar(TMemoryBitmap& Target, const TRect& Dest, const TMemoryBitmap& Map, int Frame,
                  int Frames, bool Vertical, int L, int R, bool Transparent) {
    TRect f = FrameRect(Map, Frame, Frames, Vertical);
    if (f.IsEmpty() || Dest.IsEmpty()) return;
    const int H = Dest.Height();
    Part(Target, Bounds(Dest.Left, Dest.Top, L, H), Map, Bounds(f.Left, f.Top, L, f.Height()),
         Transparent);
    const int mw = f.Width() - L - R;
    if (mw > 0) {
        TRect clip = Rect(Dest.Left + L, Dest.Top, Dest.Right - R, Dest.Bottom);
        // Only the repeats that can reach the target are drawn.
        int x = clip.Left;
        if (x < -mw) x += ((-mw - x) / mw) * mw;
        const int end = std::min(clip.Right, Target.Width());
        for (; x < end; x += mw) {
            int w = std::min(mw, clip.Right - x); // the last repeat is cut, not squeezed
            Part(Target, Bounds(x, Dest.Top, w, H), Map, Bounds(f.Left + L, f.Top, w, f.Height()),
                 Transparent);
        }
    }
    Part(Target, Bounds(Dest.Right - R, Dest.Top, R, H), Map,
         Bounds(f.Right - R, f.Top, R, f.Height()), Transparent);
}

void DrawFrame(TMemoryBitmap& Target, const TRect& Dest, const TMemoryBitmap& Map, int Frame,
               int Frames, bool Transparent) {
    Part(Target, Dest, Map, FrameRect(Map, Frame, Frames, false), Transparent);
}

void DrawCentred(TMemoryBitmap& Target, const TRect& Dest, const TMemoryBitmap& Map, int Frame,
                 int Frames, bool Vertical, bool Transparent) {
    TRect f = FrameRect(Map, Frame, Frames, Vertical);
    int dx = Dest.Width() - f.Width(), dy = Dest.Height() - f.Height();
    // An odd pixel of room goes to the left and the top.
    int x = Dest.Left + dx - dx / 2, y = Dest.Top + dy - dy / 2;
    Part(Target, Bounds(x, y, f.Width(), f.Height()), Map, f, Transparent);
}

void DrawThreeSlice(TMemoryBitmap& Target, const TRect& Dest, const TMemoryBitmap& Map, int Frame,
                    int Frames, bool Vertical, int L, int R, bool Transparent) {
    TRect f = FrameRect(Map, Frame, Frames, Vertical);
    if (f.IsEmpty() || Dest.IsEmpty()) return;
    const int x0 = f.Left, y0 = f.Top, fw = f.Width(), fh = f.Height();
    if (fw > Dest.Width()) {
        // Width fw + x0 and height y0 + fh: later frames come out skewed. Kept
        // on purpose, skins have been drawn against it.
        Part(Target, Dest, Map, Bounds(x0, y0, fw + x0, y0 + fh), Transparent);
        return;
    }
    const int H = Dest.Height();
    Part(Target, Bounds(Dest.Left, Dest.Top, L, H), Map, Bounds(x0, y0, L, fh), Transparent);
    Part(Target, Rect(Dest.Left + L, Dest.Top, Dest.Right - R, Dest.Bottom), Map,
         Bounds(x0 + L, y0, fw - L - R, fh), Transparent);
    Part(Target, Bounds(Dest.Right - R, Dest.Top, R, H), Map, Bounds(x0 + fw - R, y0, R, fh),
         Transparent);
}

void DrawMasked(TMemoryBitmap& Target, int X, int Y, const TMemoryBitmap& Source) {
    CopyBitmap(Target, X, Y, Source, true);
}
