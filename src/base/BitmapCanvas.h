#pragma once
// A canvas that paints into a memory bitmap, for pixel checks of painters
// and for off-screen work in the core. Text is drawn with the fixed metrics
// as one solid box per character (the ascent above the baseline, one pixel
// of the cell's width left free), so that where text lands is visible in
// pixels without any font.

#include "base/Canvas.h"

class TBitmapCanvas : public TFixedMetricsCanvas {
public:
    // Target must outlive the canvas.
    explicit TBitmapCanvas(TMemoryBitmap& Target) : FTarget(&Target) {}

    void FillRect(const TRect& R) override;
    void FrameRect(const TRect& R) override;
    // The classic two-line edges: outer ring on R, inner ring one pixel in.
    void DrawEdge(const TRect& R, unsigned Edge, unsigned Flags) override;
    void Ellipse(const TRect& R) override;
    void LineTo(int X, int Y) override;
    void TextOut(int X, int Y, WideView Text) override;
    int DrawText(WideView Text, TRect& R, unsigned Flags) override;
    void Draw(int X, int Y, const TMemoryBitmap& Bitmap, TColor TransparentColor) override;
    void StretchDraw(const TRect& R, const TMemoryBitmap& Bitmap, TColor TransparentColor) override;
    // Drawing between these goes to a copy of R and comes back at the end;
    // whatever falls outside R is lost, as with a real back buffer.
    void BeginBuffer(const TRect& R) override;
    void EndBuffer() override;

private:
    void Put(int X, int Y, TColor Color);
    void PutPixel(int X, int Y, TPixel Pixel);
    void Fill(const TRect& R, TColor Color);

    TMemoryBitmap* FTarget;
    // While buffering: the buffer, where it stands, and the real target.
    TMemoryBitmap FBuffer;
    TRect FBufferRect;
    TMemoryBitmap* FScreen = nullptr;
};
