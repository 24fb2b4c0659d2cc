#include "controls/WgPanelPaint.h"

#include <algorithm>

namespace {

void Frame3D(TCanvas& Canvas, TRect& R, TColor TopLeft, TColor BottomRight, int Width) {
    // The top right and bottom left corners take the bottom right colour.
    for (int i = 0; i < Width && !R.IsEmpty(); ++i) {
        Canvas.SetPenColor(TopLeft);
        Canvas.MoveTo(R.Left, R.Bottom - 1);
        Canvas.LineTo(R.Left, R.Top);
        Canvas.LineTo(R.Right - 1, R.Top);
        Canvas.SetPenColor(BottomRight);
        Canvas.LineTo(R.Right - 1, R.Bottom - 1);
        Canvas.LineTo(R.Left - 1, R.Bottom - 1);
        R = Rect(R.Left + 1, R.Top + 1, R.Right - 1, R.Bottom - 1);
    }
}

void PaintBevel(TCanvas& Canvas, TRect& R, TPanelBevel Bevel, const TWgPanelLook& Look) {
    switch (Bevel) {
    case bvNone:
        return;
    case bvLowered:
        Frame3D(Canvas, R, clBtnShadow, clBtnHighlight, Look.BevelWidth);
        return;
    case bvRaised:
        Frame3D(Canvas, R, clBtnHighlight, clBtnShadow, Look.BevelWidth);
        return;
    case bvSpace:
        Frame3D(Canvas, R, Look.BevelSpaceColor, Look.BevelSpaceColor, Look.BevelWidth);
        return;
    }
}

int Channel(TColor C, int Shift) {
    return int((C >> Shift) & 0xFF);
}

} // namespace

TColor GradientColor(TColor Start, TColor End, int Step, int Steps) {
    if (Steps <= 1) return Start;
    auto mix = [&](int Shift) {
        const int a = Channel(Start, Shift), b = Channel(End, Shift);
        return TColor(a + (b - a) * Step / (Steps - 1)) << Shift;
    };
    return mix(0) | mix(8) | mix(16);
}

void PaintGradient(TCanvas& Canvas, const TRect& R, TColor Start, TColor End, int Steps,
                   bool Vertical) {
    if (R.IsEmpty()) return;
    const int length = Vertical ? R.Height() : R.Width();
    // More bands than pixels would only repeat colours.
    Steps = std::clamp(Steps, 1, std::max(1, length));
    const TColor a = Canvas.ColorToRGB(Start), b = Canvas.ColorToRGB(End);
    for (int i = 0; i < Steps; ++i) {
        const int from = length * i / Steps, to = length * (i + 1) / Steps;
        if (to <= from) continue;
        Canvas.SetBrushColor(GradientColor(a, b, i, Steps));
        Canvas.FillRect(Vertical ? Rect(R.Left, R.Top + from, R.Right, R.Top + to)
                                 : Rect(R.Left + from, R.Top, R.Left + to, R.Bottom));
    }
}

void PaintPanelBackground(TCanvas& Canvas, const TRect& R, const TWgPanelLook& Look) {
    const TMemoryBitmap* bitmap =
        Look.Background && !Look.Background->Empty() ? Look.Background : nullptr;
    switch (Look.BackgroundType) {
    case bgtVertGradient:
    case bgtHorzGradient:
        PaintGradient(Canvas, R, Look.GradientStartColor, Look.GradientEndColor, Look.GradientSteps,
                      Look.BackgroundType == bgtVertGradient);
        return;
    case bgtStretchBitmap:
        if (!bitmap) break;
        Canvas.StretchDraw(R, *bitmap);
        return;
    case bgtTileBitmap:
        if (!bitmap) break;
        Canvas.SaveClip();
        Canvas.IntersectClipRect(R);
        for (int y = R.Top; y < R.Bottom; y += bitmap->Height())
            for (int x = R.Left; x < R.Right; x += bitmap->Width())
                Canvas.Draw(x, y, *bitmap);
        Canvas.RestoreClip();
        return;
    case bgtCenterBitmap:
        if (!bitmap) break;
        Canvas.SetBrushColor(Look.Color);
        Canvas.FillRect(R);
        Canvas.Draw(R.Left + (R.Width() - bitmap->Width()) / 2,
                    R.Top + (R.Height() - bitmap->Height()) / 2, *bitmap);
        return;
    case bgtColorFill:
        break;
    }
    Canvas.SetBrushColor(Look.Color);
    Canvas.FillRect(R);
}

TRect PanelClientRect(const TRect& R, const TWgPanelLook& Look) {
    int inset = std::max(0, Look.BorderWidth);
    if (Look.BevelOuter != bvNone) inset += Look.BevelWidth;
    if (Look.BevelInner != bvNone) inset += Look.BevelWidth;
    return Rect(R.Left + inset, R.Top + inset, R.Right - inset, R.Bottom - inset);
}

void PaintPanel(TCanvas& Canvas, const TRect& R, const TWgPanelLook& Look) {
    PaintPanelBackground(Canvas, R, Look);
    TRect r = R;
    PaintBevel(Canvas, r, Look.BevelOuter, Look);
    const int border = std::max(0, Look.BorderWidth);
    r = Rect(r.Left + border, r.Top + border, r.Right - border, r.Bottom - border);
    PaintBevel(Canvas, r, Look.BevelInner, Look);
    if (Look.Caption.empty() || r.IsEmpty()) return;
    Canvas.SetFont(Look.Font);
    Canvas.SetTextBgColor(clNone);
    unsigned flags = DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX;
    if (Look.Alignment == taCenter) flags |= DT_CENTER;
    if (Look.Alignment == taRightJustify) flags |= DT_RIGHT;
    Canvas.DrawText(Look.Caption, r, flags);
}
