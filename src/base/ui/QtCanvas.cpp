#include "base/ui/QtCanvas.h"

#include "base/ui/Colors.h"

#include <QPaintDevice>
#include <QPainter>

#include <QPalette>
#include <algorithm>
#include <cmath>

namespace {

QString ToQString(WideView Text) {
    return QString::fromUtf16(Text.data(), qsizetype(Text.size()));
}

QRect ToQRect(const TRect& R) {
    return QRect(R.Left, R.Top, R.Width(), R.Height());
}

} // namespace

QFont ToQFont(const TFont& Font) {
    QFont f(QString::fromStdU16String(Font.Name));
    const int height = Font.Height == 0 ? 11 : Font.Height;
    if (height < 0) {
        f.setPixelSize(-height);
    } else {
        // A positive height is the whole cell: shrink the em until it fits.
        f.setPixelSize(height);
        const int cell = QFontMetrics(f).height();
        if (cell > height) f.setPixelSize(std::max(1, height * height / cell));
    }
    f.setBold(Font.Style & fsBold);
    f.setItalic(Font.Style & fsItalic);
    f.setUnderline(Font.Style & fsUnderline);
    f.setStrikeOut(Font.Style & fsStrikeOut);
    return f;
}

QImage ToQImage(const TMemoryBitmap& Bitmap, TColor TransparentColor) {
    if (Bitmap.Empty()) return {};
    QImage image(Bitmap.Width(), Bitmap.Height(), QImage::Format_ARGB32);
    const TPixel key = ColorToPixel(TransparentColor) & 0xFFFFFF;
    for (int y = 0; y < Bitmap.Height(); ++y) {
        const TPixel* src = Bitmap.ScanLine(y);
        auto* dest = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < Bitmap.Width(); ++x) {
            const TPixel p = src[x] & 0xFFFFFF;
            dest[x] = (TransparentColor != clNone && p == key) ? 0 : (0xFF000000u | p);
        }
    }
    return image;
}

QImage ToDenseQImage(const TMemoryBitmap& Bitmap, TColor TransparentColor, qreal Ratio) {
    const int factor = std::max(1, int(std::lround(Ratio)));
    QImage image = ToQImage(Bitmap, TransparentColor);
    if (factor > 1)
        image = image.scaled(image.size() * factor, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    image.setDevicePixelRatio(factor);
    return image;
}

TQtCanvas::TQtCanvas(QPainter& Painter, const QPalette* Palette)
    : FScreen(&Painter), FTarget(&Painter), FPalette(Palette) {
    FontChanged();
}

TQtCanvas::~TQtCanvas() {
    if (FBufferPainter) EndBuffer();
}

QColor TQtCanvas::Q(TColor Color) const {
    return ToQColor(Color, FPalette);
}

TColor TQtCanvas::ColorToRGB(TColor Color) const {
    return ResolveColor(Color, FPalette);
}

void TQtCanvas::FontChanged() {
    FQFont = ToQFont(FFont);
    FMetrics = std::make_unique<QFontMetrics>(FQFont);
}

const QFontMetrics& TQtCanvas::Metrics() {
    return *FMetrics;
}

void TQtCanvas::ClipChanged() {
    if (FClip)
        FTarget->setClipRect(ToQRect(*FClip));
    else
        FTarget->setClipping(false);
}

TTextMetrics TQtCanvas::TextMetrics() {
    const QFontMetrics& m = Metrics();
    return {m.height(), m.ascent(), m.descent(), m.averageCharWidth(), m.maxWidth()};
}

TSize TQtCanvas::TextExtent(WideView Text) {
    const QFontMetrics& m = Metrics();
    return {m.horizontalAdvance(ToQString(Text)), m.height()};
}

void TQtCanvas::Fill(int Left, int Top, int Width, int Height, TColor Color) {
    if (Width > 0 && Height > 0) FTarget->fillRect(QRect(Left, Top, Width, Height), Q(Color));
}

void TQtCanvas::FillRect(const TRect& R) {
    Fill(R.Left, R.Top, R.Width(), R.Height(), FBrushColor);
}

void TQtCanvas::FrameRect(const TRect& R) {
    if (R.IsEmpty()) return;
    Fill(R.Left, R.Top, R.Width(), 1, FPenColor);
    Fill(R.Left, R.Bottom - 1, R.Width(), 1, FPenColor);
    Fill(R.Left, R.Top, 1, R.Height(), FPenColor);
    Fill(R.Right - 1, R.Top, 1, R.Height(), FPenColor);
}

void TQtCanvas::DrawEdge(const TRect& R, unsigned Edge, unsigned Flags) {
    TRect r = R;
    auto ring = [&](TColor TopLeft, TColor BottomRight) {
        if (r.IsEmpty()) return;
        if (Flags & BF_TOP) Fill(r.Left, r.Top, r.Width(), 1, TopLeft);
        if (Flags & BF_LEFT) Fill(r.Left, r.Top, 1, r.Height(), TopLeft);
        if (Flags & BF_BOTTOM) Fill(r.Left, r.Bottom - 1, r.Width(), 1, BottomRight);
        if (Flags & BF_RIGHT) Fill(r.Right - 1, r.Top, 1, r.Height(), BottomRight);
        r = {r.Left + ((Flags & BF_LEFT) ? 1 : 0), r.Top + ((Flags & BF_TOP) ? 1 : 0),
             r.Right - ((Flags & BF_RIGHT) ? 1 : 0), r.Bottom - ((Flags & BF_BOTTOM) ? 1 : 0)};
    };
    if (Flags & BF_FLAT) {
        ring(clBtnShadow, clBtnShadow);
        return;
    }
    if (Edge & BDR_RAISEDOUTER)
        ring(cl3DLight, cl3DDkShadow);
    else if (Edge & BDR_SUNKENOUTER)
        ring(clBtnShadow, clBtnHighlight);
    if (Edge & BDR_RAISEDINNER)
        ring(clBtnHighlight, clBtnShadow);
    else if (Edge & BDR_SUNKENINNER)
        ring(cl3DDkShadow, cl3DLight);
}

void TQtCanvas::Ellipse(const TRect& R) {
    FTarget->save();
    FTarget->setPen(FPenStyle == psClear ? QPen(Qt::NoPen) : QPen(Q(FPenColor)));
    FTarget->setBrush(Q(FBrushColor));
    FTarget->drawEllipse(QRect(R.Left, R.Top, R.Width() - 1, R.Height() - 1));
    FTarget->restore();
}

void TQtCanvas::LineTo(int X, int Y) {
    const TPoint from = FPenPos;
    MoveTo(X, Y);
    if (FPenStyle == psClear) return;
    const QColor color = Q(FPenColor);
    const int dx = X - from.X, dy = Y - from.Y;
    const int steps = std::max(std::abs(dx), std::abs(dy));
    if (FPenStyle == psSolid && (dx == 0 || dy == 0)) {
        // Straight lines leave out their end point.
        const int left = std::min(from.X, X + (dx > 0 ? 0 : 1));
        const int top = std::min(from.Y, Y + (dy > 0 ? 0 : 1));
        FTarget->fillRect(QRect(left, top, dx == 0 ? 1 : std::abs(dx), dy == 0 ? 1 : std::abs(dy)),
                          color);
        return;
    }
    // Dotted lines set every other pixel, starting with the first.
    FTarget->save();
    FTarget->setPen(QPen(color, 0));
    for (int i = 0; i < steps; i += FPenStyle == psDot ? 2 : 1)
        FTarget->drawPoint(from.X + dx * i / steps, from.Y + dy * i / steps);
    FTarget->restore();
}

void TQtCanvas::TextOut(int X, int Y, WideView Text) {
    const QFontMetrics& m = Metrics();
    const QString text = ToQString(Text);
    const int top = FTextAlign == taBaseline ? Y - m.ascent() : Y;
    if (FTextBgColor != clNone) Fill(X, top, m.horizontalAdvance(text), m.height(), FTextBgColor);
    FTarget->setFont(FQFont);
    FTarget->setPen(Q(FFont.Color));
    FTarget->drawText(QPoint(X, top + m.ascent()), text);
}

int TQtCanvas::DrawText(WideView Text, TRect& R, unsigned Flags) {
    QString text = ToQString(Text);
    int qt = 0;
    qt |= (Flags & DT_CENTER)  ? Qt::AlignHCenter
          : (Flags & DT_RIGHT) ? Qt::AlignRight
                               : Qt::AlignLeft;
    if (Flags & DT_SINGLELINE)
        qt |= (Flags & DT_VCENTER)  ? Qt::AlignVCenter
              : (Flags & DT_BOTTOM) ? Qt::AlignBottom
                                    : Qt::AlignTop;
    else
        qt |= Qt::AlignTop;
    if (Flags & DT_WORDBREAK) qt |= Qt::TextWordWrap;
    if (!(Flags & DT_NOPREFIX)) qt |= Qt::TextShowMnemonic;
    if (Flags & DT_SINGLELINE) qt |= Qt::TextSingleLine;
    const QFontMetrics& m = Metrics();
    if ((Flags & DT_END_ELLIPSIS) && !(Flags & DT_CALCRECT))
        text = m.elidedText(text, Qt::ElideRight, R.Width(), qt);
    const QRect area = ToQRect(R);
    if (Flags & DT_CALCRECT) {
        const QRect bound = m.boundingRect(
            QRect(R.Left, R.Top, (Flags & DT_WORDBREAK) ? std::max(R.Width(), 1) : 1 << 20,
                  1 << 20),
            qt, text);
        R.Right = R.Left + bound.width();
        R.Bottom = R.Top + bound.height();
        return bound.height();
    }
    FTarget->setFont(FQFont);
    FTarget->setPen(Q(FFont.Color));
    if (Flags & DT_NOCLIP) qt |= Qt::TextDontClip;
    QRect used;
    FTarget->drawText(area, qt, text, &used);
    return used.height();
}

qreal TQtCanvas::DevicePixelRatio() const {
    const QPaintDevice* device = FScreen->device();
    return device ? std::max<qreal>(device->devicePixelRatioF(), 1) : 1;
}

void TQtCanvas::DrawBitmapScaled(const QRect& Target, const TMemoryBitmap& Bitmap,
                                 TColor TransparentColor, bool Stretched) {
    // Our bitmaps are drawn for one device pixel each. On a denser screen
    // they are enlarged by a whole factor without smoothing, so their
    // pixels stay sharp squares; only the rest to a fractional ratio is
    // smoothed, and never for a stretched copy, which keeps hard edges.
    const qreal ratio = DevicePixelRatio();
    const QImage image = ToDenseQImage(Bitmap, TransparentColor, ratio);
    FTarget->save();
    FTarget->setRenderHint(QPainter::SmoothPixmapTransform,
                           !Stretched && std::abs(ratio - image.devicePixelRatio()) > 0.01);
    FTarget->drawImage(Target, image);
    FTarget->restore();
}

void TQtCanvas::Draw(int X, int Y, const TMemoryBitmap& Bitmap, TColor TransparentColor) {
    if (Bitmap.Empty()) return;
    DrawBitmapScaled(QRect(X, Y, Bitmap.Width(), Bitmap.Height()), Bitmap, TransparentColor, false);
}

void TQtCanvas::StretchDraw(const TRect& R, const TMemoryBitmap& Bitmap, TColor TransparentColor) {
    if (Bitmap.Empty() || R.IsEmpty()) return;
    DrawBitmapScaled(ToQRect(R), Bitmap, TransparentColor, true);
}

void TQtCanvas::BeginBuffer(const TRect& R) {
    if (!FDoubleBuffered || FBufferPainter || R.IsEmpty()) return;
    // Transparent at first, so what lies below shows through where the
    // buffered painting leaves pixels untouched. The copy has the screen's
    // pixel density, or text and lines would be enlarged from a coarser
    // picture.
    const qreal ratio = DevicePixelRatio();
    FBuffer = QImage(int(std::ceil(R.Width() * ratio)), int(std::ceil(R.Height() * ratio)),
                     QImage::Format_ARGB32_Premultiplied);
    FBuffer.setDevicePixelRatio(ratio);
    FBuffer.fill(Qt::transparent);
    FBufferRect = R;
    FBufferPainter = std::make_unique<QPainter>(&FBuffer);
    FBufferPainter->translate(-R.Left, -R.Top);
    FTarget = FBufferPainter.get();
    ClipChanged();
}

void TQtCanvas::EndBuffer() {
    if (!FBufferPainter) return;
    FBufferPainter->end();
    FBufferPainter.reset();
    FTarget = FScreen;
    ClipChanged();
    FScreen->drawImage(QPoint(FBufferRect.Left, FBufferRect.Top), FBuffer);
    FBuffer = QImage();
}
