#include "base/BitmapCanvas.h"

#include <algorithm>
#include <cstdlib>

void TBitmapCanvas::PutPixel(int X, int Y, TPixel Pixel) {
    if (FClip && !FClip->Contains({X, Y})) return;
    if (FScreen) {
        if (!FBufferRect.Contains({X, Y})) return;
        X -= FBufferRect.Left;
        Y -= FBufferRect.Top;
    }
    if (FTarget->Contains(X, Y)) FTarget->SetPixel(X, Y, Pixel);
}

void TBitmapCanvas::Put(int X, int Y, TColor Color) {
    PutPixel(X, Y, ColorToPixel(ColorToRGB(Color)));
}

void TBitmapCanvas::Fill(const TRect& R, TColor Color) {
    if (Color == clNone) return;
    // Only the part that can reach the bitmap is walked.
    TRect area = R;
    TRect limit = FScreen ? FBufferRect : Bounds(0, 0, FTarget->Width(), FTarget->Height());
    if (!IntersectRect(area, area, limit)) return;
    TPixel pixel = ColorToPixel(ColorToRGB(Color));
    for (int y = area.Top; y < area.Bottom; ++y)
        for (int x = area.Left; x < area.Right; ++x)
            PutPixel(x, y, pixel);
}

void TBitmapCanvas::FillRect(const TRect& R) {
    Fill(R, FBrushColor);
}

void TBitmapCanvas::FrameRect(const TRect& R) {
    if (R.IsEmpty()) return;
    Fill(Rect(R.Left, R.Top, R.Right, R.Top + 1), FPenColor);
    Fill(Rect(R.Left, R.Bottom - 1, R.Right, R.Bottom), FPenColor);
    Fill(Rect(R.Left, R.Top, R.Left + 1, R.Bottom), FPenColor);
    Fill(Rect(R.Right - 1, R.Top, R.Right, R.Bottom), FPenColor);
}

void TBitmapCanvas::DrawEdge(const TRect& R, unsigned Edge, unsigned Flags) {
    // Top-left and bottom-right colours of each ring, by system colour index.
    auto ring = [&](const TRect& Q, int TopLeft, int BottomRight) {
        if (Q.IsEmpty()) return;
        TColor tl = clSystemColor | unsigned(TopLeft), br = clSystemColor | unsigned(BottomRight);
        if (Flags & BF_FLAT) tl = br = clBtnShadow;
        if (Flags & BF_TOP) Fill(Rect(Q.Left, Q.Top, Q.Right, Q.Top + 1), tl);
        if (Flags & BF_LEFT) Fill(Rect(Q.Left, Q.Top, Q.Left + 1, Q.Bottom), tl);
        if (Flags & BF_BOTTOM) Fill(Rect(Q.Left, Q.Bottom - 1, Q.Right, Q.Bottom), br);
        if (Flags & BF_RIGHT) Fill(Rect(Q.Right - 1, Q.Top, Q.Right, Q.Bottom), br);
    };
    if (Edge & BDR_RAISEDOUTER)
        ring(R, 22, 21);
    else if (Edge & BDR_SUNKENOUTER)
        ring(R, 16, 20);
    TRect inner = Rect(R.Left + 1, R.Top + 1, R.Right - 1, R.Bottom - 1);
    if (Edge & BDR_RAISEDINNER)
        ring(inner, 20, 16);
    else if (Edge & BDR_SUNKENINNER)
        ring(inner, 21, 22);
}

void TBitmapCanvas::Ellipse(const TRect& R) {
    if (R.IsEmpty()) return;
    TRect area = R;
    TRect limit = FScreen ? FBufferRect : Bounds(0, 0, FTarget->Width(), FTarget->Height());
    if (!IntersectRect(area, area, limit)) return;
    // A pixel belongs to the ellipse when its centre does; it is on the
    // outline when a neighbour's centre does not.
    double cx = (R.Left + R.Right) / 2.0, cy = (R.Top + R.Bottom) / 2.0;
    double rx = R.Width() / 2.0, ry = R.Height() / 2.0;
    auto inside = [&](int X, int Y) {
        double dx = (X + 0.5 - cx) / rx, dy = (Y + 0.5 - cy) / ry;
        return dx * dx + dy * dy <= 1.0;
    };
    for (int y = area.Top; y < area.Bottom; ++y)
        for (int x = area.Left; x < area.Right; ++x) {
            if (!inside(x, y)) continue;
            bool edge =
                !inside(x - 1, y) || !inside(x + 1, y) || !inside(x, y - 1) || !inside(x, y + 1);
            TColor color = edge && FPenStyle != psClear ? FPenColor : FBrushColor;
            if (color != clNone) Put(x, y, color);
        }
}

void TBitmapCanvas::LineTo(int X, int Y) {
    int x = FPenPos.X, y = FPenPos.Y;
    MoveTo(X, Y);
    if (FPenStyle == psClear) return;
    long long dx = std::llabs((long long)X - x), dy = -std::llabs((long long)Y - y);
    int sx = x < X ? 1 : -1, sy = y < Y ? 1 : -1;
    long long err = dx + dy;
    // Lines longer than any bitmap can show stop at a safe length.
    for (long long step = 0; (x != X || y != Y) && step < (1 << 24); ++step) {
        if (FPenStyle != psDot || step % 2 == 0) Put(x, y, FPenColor);
        long long e2 = 2 * err;
        if (e2 >= dy) {
            err += dy;
            x += sx;
        }
        if (e2 <= dx) {
            err += dx;
            y += sy;
        }
    }
}

void TBitmapCanvas::TextOut(int X, int Y, WideView Text) {
    TTextMetrics m = TextMetrics();
    int top = FTextAlign == taBaseline ? Y - m.Ascent : Y;
    int width = int(std::min<long long>((long long)Text.size() * m.AveCharWidth, 1 << 24));
    Fill(Bounds(X, top, width, m.Height), FTextBgColor);
    int baseline = top + m.Ascent;
    for (std::size_t i = 0; i < Text.size() && X < (1 << 24); ++i, X += m.AveCharWidth)
        if (Text[i] != u' ') Fill(Rect(X, top, X + m.AveCharWidth - 1, baseline), FFont.Color);
    if (FFont.Style & fsUnderline) Fill(Bounds(X - width, baseline + 1, width, 1), FFont.Color);
    if (FFont.Style & fsStrikeOut)
        Fill(Bounds(X - width, top + m.Ascent / 2, width, 1), FFont.Color);
}

int TBitmapCanvas::DrawText(WideView Text, TRect& R, unsigned Flags) {
    if (Flags & DT_CALCRECT) return TFixedMetricsCanvas::DrawText(Text, R, Flags);
    std::vector<WideString> lines = TextLines(Text, R, Flags);
    int lineHeight = TextMetrics().Height;
    int height = int(lines.size()) * lineHeight;
    int y = R.Top;
    if (Flags & DT_VCENTER)
        y = R.Top + (R.Height() - height) / 2;
    else if (Flags & DT_BOTTOM)
        y = R.Bottom - height;
    TTextAlign align = FTextAlign;
    FTextAlign = taTop;
    SaveClip();
    if (!(Flags & DT_NOCLIP)) IntersectClipRect(R);
    for (const WideString& line : lines) {
        int w = TextWidth(line);
        int x = (Flags & DT_CENTER)  ? R.Left + (R.Width() - w) / 2
                : (Flags & DT_RIGHT) ? R.Right - w
                                     : R.Left;
        TextOut(x, y, line);
        y += lineHeight;
    }
    RestoreClip();
    FTextAlign = align;
    return height;
}

void TBitmapCanvas::Draw(int X, int Y, const TMemoryBitmap& Bitmap, TColor TransparentColor) {
    StretchDraw(Bounds(X, Y, Bitmap.Width(), Bitmap.Height()), Bitmap, TransparentColor);
}

void TBitmapCanvas::StretchDraw(const TRect& R, const TMemoryBitmap& Bitmap,
                                TColor TransparentColor) {
    if (Bitmap.Empty() || R.IsEmpty()) return;
    TRect area = R;
    TRect limit = FScreen ? FBufferRect : Bounds(0, 0, FTarget->Width(), FTarget->Height());
    if (!IntersectRect(area, area, limit)) return;
    // Nearest source pixel, as a colour-on-colour stretch takes it.
    for (int y = area.Top; y < area.Bottom; ++y) {
        int sy = int((long long)(y - R.Top) * Bitmap.Height() / R.Height());
        for (int x = area.Left; x < area.Right; ++x) {
            int sx = int((long long)(x - R.Left) * Bitmap.Width() / R.Width());
            TPixel pixel = Bitmap.Pixel(sx, sy);
            if (TransparentColor != clNone && PixelToColor(pixel) == TransparentColor) continue;
            PutPixel(x, y, pixel | 0xFF000000u);
        }
    }
}

void TBitmapCanvas::BeginBuffer(const TRect& R) {
    if (!FDoubleBuffered || FScreen || R.IsEmpty()) return;
    FBufferRect = R;
    FBuffer.SetSize(R.Width(), R.Height());
    if (FBuffer.Empty()) return;
    for (int y = 0; y < R.Height(); ++y)
        for (int x = 0; x < R.Width(); ++x)
            if (FTarget->Contains(R.Left + x, R.Top + y))
                FBuffer.SetPixel(x, y, FTarget->Pixel(R.Left + x, R.Top + y));
    FScreen = FTarget;
    FTarget = &FBuffer;
}

void TBitmapCanvas::EndBuffer() {
    if (!FScreen) return;
    FTarget = FScreen;
    FScreen = nullptr;
    for (int y = 0; y < FBuffer.Height(); ++y)
        for (int x = 0; x < FBuffer.Width(); ++x)
            if (FTarget->Contains(FBufferRect.Left + x, FBufferRect.Top + y))
                FTarget->SetPixel(FBufferRect.Left + x, FBufferRect.Top + y, FBuffer.Pixel(x, y));
    FBuffer = TMemoryBitmap();
}
