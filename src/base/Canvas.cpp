#include "base/Canvas.h"

#include <algorithm>
#include <cstdlib>

namespace {

struct TColorName {
    const char* Name;
    TColor Color;
};

constexpr TColorName ColorNames[] = {
    {"clBlack", 0x000000},
    {"clMaroon", 0x000080},
    {"clGreen", 0x008000},
    {"clOlive", 0x008080},
    {"clNavy", 0x800000},
    {"clPurple", 0x800080},
    {"clTeal", 0x808000},
    {"clGray", 0x808080},
    {"clSilver", 0xC0C0C0},
    {"clRed", 0x0000FF},
    {"clLime", 0x00FF00},
    {"clYellow", 0x00FFFF},
    {"clBlue", 0xFF0000},
    {"clFuchsia", 0xFF00FF},
    {"clAqua", 0xFFFF00},
    {"clWhite", 0xFFFFFF},
    {"clMoneyGreen", 0xC0DCC0},
    {"clSkyBlue", 0xF0CAA6},
    {"clCream", 0xF0FBFF},
    {"clMedGray", 0xA4A0A0},
    {"clLtGray", 0xC0C0C0},
    {"clDkGray", 0x808080},
    {"clNone", clNone},
    {"clDefault", 0x20000000},
    {"clScrollBar", clSystemColor | 0},
    {"clBackground", clSystemColor | 1},
    {"clActiveCaption", clSystemColor | 2},
    {"clInactiveCaption", clSystemColor | 3},
    {"clMenu", clSystemColor | 4},
    {"clWindow", clSystemColor | 5},
    {"clWindowFrame", clSystemColor | 6},
    {"clMenuText", clSystemColor | 7},
    {"clWindowText", clSystemColor | 8},
    {"clCaptionText", clSystemColor | 9},
    {"clActiveBorder", clSystemColor | 10},
    {"clInactiveBorder", clSystemColor | 11},
    {"clAppWorkSpace", clSystemColor | 12},
    {"clHighlight", clSystemColor | 13},
    {"clHighlightText", clSystemColor | 14},
    {"clBtnFace", clSystemColor | 15},
    {"clBtnShadow", clSystemColor | 16},
    {"clGrayText", clSystemColor | 17},
    {"clBtnText", clSystemColor | 18},
    {"clInactiveCaptionText", clSystemColor | 19},
    {"clBtnHighlight", clSystemColor | 20},
    {"cl3DDkShadow", clSystemColor | 21},
    {"cl3DLight", clSystemColor | 22},
    {"clInfoText", clSystemColor | 23},
    {"clInfoBk", clSystemColor | 24},
    {"clHotLight", clSystemColor | 26},
    {"clGradientActiveCaption", clSystemColor | 27},
    {"clGradientInactiveCaption", clSystemColor | 28},
    {"clMenuHighlight", clSystemColor | 29},
    {"clMenuBar", clSystemColor | 30},
};

bool SameAsciiText(WideView A, const char* B) {
    std::size_t i = 0;
    for (; B[i]; ++i) {
        if (i >= A.size()) return false;
        char16_t a = A[i], b = char16_t(static_cast<unsigned char>(B[i]));
        if (a >= u'A' && a <= u'Z') a = char16_t(a + 32);
        if (b >= u'A' && b <= u'Z') b = char16_t(b + 32);
        if (a != b) return false;
    }
    return i == A.size();
}

int MulDivRound(int Value, int Mul, int Div) {
    if (Div == 0) return 0;
    long long p = (long long)Value * Mul;
    long long half = std::llabs(Div) / 2;
    long long q = (p >= 0) == (Div > 0) ? (std::llabs(p) + half) / std::llabs(Div)
                                        : -((std::llabs(p) + half) / std::llabs(Div));
    return int(std::clamp<long long>(q, -2147483647LL, 2147483647LL));
}

} // namespace

int TFont::PointSize(int PixelsPerInch) const {
    return MulDivRound(-Height, 72, PixelsPerInch);
}

void TFont::SetPointSize(int Points, int PixelsPerInch) {
    Height = -MulDivRound(Points, PixelsPerInch, 72);
}

TColor ClassicColorToRGB(TColor Color) {
    if ((Color & 0xFF000000u) == clSystemColor) {
        return ClassicSysColor(int(Color & 0xFF));
    }
    return Color;
}

bool IdentToColor(WideView Name, TColor& Color) {
    for (const TColorName& entry : ColorNames)
        if (SameAsciiText(Name, entry.Name)) {
            Color = entry.Color;
            return true;
        }
    return false;
}

void TCanvas::SetFont(const TFont& Value) {
    if (FFont == Value) return;
    FFont = Value;
    FontChanged();
}

void TCanvas::SetClipRect(const std::optional<TRect>& R) {
    FClip = R;
    ClipChanged();
}

void TCanvas::IntersectClipRect(const TRect& R) {
    TRect result;
    if (!FClip)
        result = R;
    else
        IntersectRect(result, *FClip, R);
    SetClipRect(result);
}

void TCanvas::RestoreClip() {
    if (FClipStack.empty()) return;
    std::optional<TRect> saved = FClipStack.back();
    FClipStack.pop_back();
    SetClipRect(saved);
}

TTextMetrics FixedFontMetrics(const TFont& Font) {
    // Heights are kept to 16 bits so that no product below can overflow.
    int h = std::min(std::abs(std::clamp(Font.Height, -32767, 32767)), 32767);
    if (h == 0) h = 11;
    int w = (h + 1) / 2 + ((Font.Style & fsBold) ? 1 : 0);
    TTextMetrics m;
    m.Height = h;
    m.Descent = h / 4;
    m.Ascent = h - m.Descent;
    m.AveCharWidth = w;
    m.MaxCharWidth = 2 * w;
    return m;
}

TSize TFixedMetricsCanvas::TextExtent(WideView Text) {
    TTextMetrics m = FixedFontMetrics(FFont);
    long long w = (long long)Text.size() * m.AveCharWidth;
    return {int(std::min<long long>(w, 0x7FFFFFFF)), m.Height};
}

std::vector<WideString> TFixedMetricsCanvas::TextLines(WideView Text, const TRect& R,
                                                       unsigned Flags) {
    std::vector<WideString> lines;
    auto addLine = [&](WideView Line) {
        if (!(Flags & DT_WORDBREAK)) {
            lines.emplace_back(Line);
            return;
        }
        // Break at the last space that keeps the line inside the rectangle;
        // a word longer than the line stands alone.
        while (!Line.empty()) {
            std::size_t fit = 0;
            int cw = std::max(1, FixedFontMetrics(FFont).AveCharWidth);
            std::size_t maxChars = std::size_t(std::max(1, R.Width() / cw));
            if (Line.size() <= maxChars) {
                lines.emplace_back(Line);
                return;
            }
            std::size_t space = Line.rfind(u' ', maxChars);
            fit = (space == WideView::npos || space == 0) ? Line.find(u' ') : space;
            if (fit == WideView::npos) {
                lines.emplace_back(Line);
                return;
            }
            lines.emplace_back(Line.substr(0, fit));
            Line.remove_prefix(fit + 1);
        }
    };
    if (Flags & DT_SINGLELINE) {
        lines.emplace_back(Text);
        return lines;
    }
    std::size_t start = 0;
    for (;;) {
        std::size_t lf = Text.find(u'\n', start);
        WideView line = Text.substr(start, lf == WideView::npos ? WideView::npos : lf - start);
        if (!line.empty() && line.back() == u'\r') line.remove_suffix(1);
        addLine(line);
        if (lf == WideView::npos) break;
        start = lf + 1;
    }
    return lines;
}

int TFixedMetricsCanvas::DrawText(WideView Text, TRect& R, unsigned Flags) {
    std::vector<WideString> lines = TextLines(Text, R, Flags);
    int lineHeight = TextMetrics().Height;
    int height = int(lines.size()) * lineHeight;
    if (Flags & DT_CALCRECT) {
        int width = 0;
        for (const WideString& line : lines)
            width = std::max(width, TextWidth(line));
        R.Right = R.Left + width;
        R.Bottom = R.Top + height;
    }
    return height;
}

void TCanvas::DrawFrameControl(const TRect& R, unsigned Kind, unsigned State) {
    if (Kind != DFC_BUTTON || R.IsEmpty()) return;
    const TColor brush = FBrushColor, pen = FPenColor;
    const TPenStyle style = FPenStyle;
    const bool grey = (State & (DFCS_INACTIVE | DFCS_BUTTON3STATE)) != 0;
    FBrushColor = clSystemColor | (grey ? 15u : 5u); // button face or window
    FillRect(R);
    DrawEdge(R, EDGE_SUNKEN, BF_RECT | (State & DFCS_FLAT ? BF_FLAT : 0));
    if (State & DFCS_CHECKED) {
        // A tick (or a dot for radio buttons) in the middle of the box.
        FPenColor = clSystemColor | (State & DFCS_INACTIVE ? 16u : 8u);
        FPenStyle = psSolid;
        const int cx = (R.Left + R.Right) / 2, cy = (R.Top + R.Bottom) / 2;
        if (State & DFCS_BUTTONRADIO) {
            FBrushColor = FPenColor;
            FillRect(Rect(cx - 1, cy - 1, cx + 2, cy + 2));
        } else {
            for (int d = 0; d < 3; ++d) {
                MoveTo(cx - 3, cy - 1 + d);
                LineTo(cx - 1, cy + 1 + d);
                LineTo(cx + 4, cy - 4 + d);
            }
        }
    }
    FBrushColor = brush;
    FPenColor = pen;
    FPenStyle = style;
}

void TCanvas::DrawFocusRect(const TRect& R) {
    if (R.IsEmpty()) return;
    const TPenStyle style = FPenStyle;
    FPenStyle = psDot;
    MoveTo(R.Left, R.Top);
    LineTo(R.Right - 1, R.Top);
    LineTo(R.Right - 1, R.Bottom - 1);
    LineTo(R.Left, R.Bottom - 1);
    LineTo(R.Left, R.Top);
    FPenStyle = style;
}
