#include "controls/WgMenuBarDraw.h"

void DrawTopMenuItemCaption(TCanvas& Canvas, TRect R, bool Selected, WideView Caption,
                            const TTopMenuItemColors& Colors) {
    TFont font = Canvas.Font();
    if (Selected) {
        const TColor saved = Canvas.BrushColor();
        Canvas.SetBrushColor(Colors.SelectedBack);
        Canvas.FillRect(R);
        Canvas.SetBrushColor(saved);
        font.Color = Colors.SelectedText;
    } else {
        // The background is left as the bar painted it.
        font.Color = Colors.PlainText;
    }
    Canvas.SetFont(font);
    const TSize size = Canvas.TextExtent(Caption);
    const int x = R.Left + (R.Width() - size.cx) / 2;
    const int y = R.Top + (R.Height() - size.cy) / 2;
    Canvas.SaveClip();
    Canvas.IntersectClipRect(R);
    Canvas.SetTextBgColor(clNone);
    // The caption stands as it is: "&" is not an accelerator here.
    Canvas.TextOut(x, y, Caption);
    Canvas.RestoreClip();
}
