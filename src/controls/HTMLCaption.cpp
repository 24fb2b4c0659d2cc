#include "controls/HTMLCaption.h"

#include "wide/CodePage.h"

bool IsHTMLCaption(WideView Text) {
    return Text.substr(0, 6) == u"<html>";
}

THTMLCaption::THTMLCaption(TCanvas& Canvas, WideView Text, const TFont& Font, int MaxWidth)
    : FRender(&Canvas) {
    // Drawn straight onto the owner's surface, which buffers by itself.
    FRender.SetDoubleBuffer(false);
    TWgHTMLData& data = *FRender.Data();
    data.DefaultFont = WideToAnsi(Font.Name);
    data.DefaultHeight = Font.Height;
    data.DefaultStyle = Font.Style;
    data.DefaultColor = Font.Color;
    data.Charset = Font.Charset;
    const TFont saved = Canvas.Font();
    try {
        FRender.PrepareText(Text, MaxWidth, MaxWidth > 0);
    } catch (const EWgHTMLError&) {
        // The render has released what it parsed: an empty caption.
        data.TextSize = {};
    }
    Canvas.SetFont(saved);
}

WideString THTMLCaption::PlainText() const {
    WideString text;
    FRender.PlainText(text);
    return text;
}

void THTMLCaption::ForceColor(TColor Color) {
    for (TWgHTMLItem* item : FRender.Data()->Items.Items()) {
        item->FontColor = Color;
        item->FontBgColor = clNone;
    }
}

void THTMLCaption::Draw(TCanvas& Canvas, int X, int Y) {
    const TSize size = Size();
    if (size.cx <= 0 || size.cy <= 0) return;
    const TFont saved = Canvas.Font();
    FRender.DrawHtml(Canvas, {0, 0}, Bounds(X, Y, size.cx, size.cy), clNone);
    Canvas.SetFont(saved);
}

WideString CaptionPlainText(WideView Caption) {
    if (!IsHTMLCaption(Caption)) return WideString(Caption);
    // Only the words are wanted: any metrics will do.
    TFixedMetricsCanvas canvas;
    return THTMLCaption(canvas, Caption, canvas.Font()).PlainText();
}
