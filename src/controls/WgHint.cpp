#include "controls/WgHint.h"

#include "controls/HTMLCaption.h"

#include <algorithm>

WideString GetShortHint(WideView Hint) {
    const std::size_t bar = Hint.find(u'|');
    return WideString(bar == WideView::npos ? Hint : Hint.substr(0, bar));
}

WideString GetLongHint(WideView Hint) {
    const std::size_t bar = Hint.find(u'|');
    return WideString(bar == WideView::npos ? Hint : Hint.substr(bar + 1));
}

namespace {

// The room the text may take inside the frame and margins.
int TextRoom(int MaxWidth) {
    return std::max(1, MaxWidth - 2 * (HintMarginX + 1));
}

constexpr unsigned HintTextFlags = DT_LEFT | DT_NOPREFIX | DT_WORDBREAK;

} // namespace

TSize CalcHintSize(TCanvas& Canvas, WideView Text, const TFont& Font, int MaxWidth) {
    if (Text.empty()) return {};
    TSize text;
    if (IsHTMLCaption(Text)) {
        text = THTMLCaption(Canvas, Text, Font, TextRoom(MaxWidth)).Size();
    } else {
        Canvas.SetFont(Font);
        TRect r = Rect(0, 0, TextRoom(MaxWidth), 0);
        Canvas.DrawText(Text, r, HintTextFlags | DT_CALCRECT);
        text = {r.Width(), r.Height()};
    }
    // The frame's pixel on each side, and the margins.
    return {text.cx + 2 * (HintMarginX + 1), text.cy + 2 * (HintMarginY + 1)};
}

void PaintHint(TCanvas& Canvas, TSize Size, WideView Text, const TFont& Font, int MaxWidth) {
    const TRect all = Rect(0, 0, Size.cx, Size.cy);
    Canvas.SetBrushColor(clInfoBk);
    Canvas.FillRect(all);
    Canvas.SetPenColor(clWindowFrame);
    Canvas.FrameRect(all);
    const int x = HintMarginX + 1, y = HintMarginY + 1;
    if (IsHTMLCaption(Text)) {
        TFont font = Font;
        font.Color = clInfoText;
        THTMLCaption(Canvas, Text, font, TextRoom(MaxWidth)).Draw(Canvas, x, y);
        return;
    }
    TFont font = Font;
    font.Color = clInfoText;
    Canvas.SetFont(font);
    Canvas.SetTextBgColor(clNone);
    TRect r = Rect(x, y, Size.cx - x, Size.cy - y);
    Canvas.DrawText(Text, r, HintTextFlags);
}
