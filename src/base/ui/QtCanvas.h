#pragma once
// The canvas of the core on a QPainter: every core painter draws through it
// on screen.

#include "base/Canvas.h"

#include <QFont>
#include <QFontMetrics>
#include <QImage>

#include <memory>

class QPainter;
class QPalette;

// Font of the canvas as a Qt font: family and pixel size, with a positive
// (cell) height scaled so that the font's height fits it.
QFont ToQFont(const TFont& Font);
// Our bitmap as an image; pixels of TransparentColor become transparent.
QImage ToQImage(const TMemoryBitmap& Bitmap, TColor TransparentColor = clNone);
// The same for a screen of pixel density Ratio: enlarged by the nearest whole
// factor without smoothing, so the bitmap's pixels stay sharp squares, and
// marked with that factor as its own density.
QImage ToDenseQImage(const TMemoryBitmap& Bitmap, TColor TransparentColor, qreal Ratio);

class TQtCanvas : public TCanvas {
public:
    explicit TQtCanvas(QPainter& Painter, const QPalette* Palette = nullptr);
    ~TQtCanvas() override;

    TTextMetrics TextMetrics() override;
    TSize TextExtent(WideView Text) override;
    void FillRect(const TRect& R) override;
    void FrameRect(const TRect& R) override;
    void DrawEdge(const TRect& R, unsigned Edge, unsigned Flags) override;
    void Ellipse(const TRect& R) override;
    void LineTo(int X, int Y) override;
    void TextOut(int X, int Y, WideView Text) override;
    int DrawText(WideView Text, TRect& R, unsigned Flags) override;
    void Draw(int X, int Y, const TMemoryBitmap& Bitmap, TColor TransparentColor) override;
    void StretchDraw(const TRect& R, const TMemoryBitmap& Bitmap, TColor TransparentColor) override;
    void BeginBuffer(const TRect& R) override;
    void EndBuffer() override;
    TColor ColorToRGB(TColor Color) const override;

protected:
    void FontChanged() override;
    void ClipChanged() override;

private:
    QColor Q(TColor Color) const;
    void Fill(int Left, int Top, int Width, int Height, TColor Color);
    // The pixel density of the device painted on (at least 1).
    qreal DevicePixelRatio() const;
    void DrawBitmapScaled(const QRect& Target, const TMemoryBitmap& Bitmap, TColor TransparentColor,
                          bool Stretched);
    const QFontMetrics& Metrics();

    QPainter* FScreen;
    QPainter* FTarget;
    const QPalette* FPalette;
    QFont FQFont;
    std::unique_ptr<QFontMetrics> FMetrics;
    // The off-screen copy between BeginBuffer and EndBuffer.
    QImage FBuffer;
    std::unique_ptr<QPainter> FBufferPainter;
    TRect FBufferRect;
};
