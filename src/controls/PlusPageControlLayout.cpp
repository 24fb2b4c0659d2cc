#include "controls/PlusPageControlLayout.h"

#include "controls/WgMenu.h"
#include "controls/WgPanelPaint.h"

#include <algorithm>

TPlusTabLayout LayoutPlusTabs(TCanvas& Canvas, const std::vector<TPlusTabInfo>& Tabs, int Active,
                              const TPlusTabStyle& Style, int Width) {
    (void)Width;
    TPlusTabLayout layout;
    Canvas.SetFont(Style.Font);
    int textH = Canvas.TextMetrics().Height;
    Canvas.SetFont(Style.ActiveFont);
    textH = std::max(textH, Canvas.TextMetrics().Height);
    const int top = Style.TabMargin.TopMargin;
    layout.StripBottom = top + PlusTabInactiveDrop + textH + 2 * PlusTabVertMargin;

    int x = Style.TabMargin.LeftMargin;
    for (int i = 0; i < int(Tabs.size()); ++i) {
        const TPlusTabInfo& tab = Tabs[std::size_t(i)];
        if (!tab.Visible) {
            layout.Tabs.push_back({});
            continue;
        }
        const bool active = i == Active;
        Canvas.SetFont(active ? Style.ActiveFont : Style.Font);
        const int w = Canvas.TextWidth(StripHotkey(tab.Caption)) + 2 * PlusTabTextMargin;
        layout.Tabs.push_back(active
                                  ? Rect(x, top, x + w, layout.StripBottom + Style.LowerActive)
                                  : Rect(x, top + PlusTabInactiveDrop, x + w, layout.StripBottom));
        x += w - Style.TabOverlap;
    }
    return layout;
}

int PlusTabAt(const TPlusTabLayout& Layout, TPoint P) {
    int found = -1;
    // Later tabs lie over earlier ones where they overlap.
    for (int i = 0; i < int(Layout.Tabs.size()); ++i)
        if (Layout.Tabs[std::size_t(i)].Contains(P)) found = i;
    return found;
}

namespace {

void PaintTab(TCanvas& Canvas, const TRect& R, TColor From, TColor To, const TPlusTabStyle& Style,
              bool Active, int StripBottom) {
    const TRect body = Rect(R.Left + 1, R.Top + 1, R.Right - 1, R.Bottom);
    if (To == clNone) {
        Canvas.SetBrushColor(From);
        Canvas.FillRect(body);
    } else {
        PaintGradient(Canvas, body, From, To, body.Height(), true);
    }
    if (Active && R.Bottom <= StripBottom) {
        // The active tab opens into its page even when it is not lowered.
        Canvas.SetBrushColor(To == clNone ? From : To);
        Canvas.FillRect(Rect(R.Left + 1, StripBottom, R.Right - 1, StripBottom + 1));
    }
    Canvas.SetPenColor(Style.TabBorderColor);
    Canvas.MoveTo(R.Left, Active ? std::max(R.Bottom, StripBottom + 1) : StripBottom);
    Canvas.LineTo(R.Left, R.Top);
    Canvas.LineTo(R.Right - 1, R.Top);
    Canvas.LineTo(R.Right - 1, Active ? std::max(R.Bottom, StripBottom + 1) : StripBottom);
}

} // namespace

void PaintPlusTabs(TCanvas& Canvas, const TPlusTabLayout& Layout,
                   const std::vector<TPlusTabInfo>& Tabs, int Active, const TPlusTabStyle& Style,
                   int Width, int Height) {
    Canvas.SetBrushColor(Style.TabBackGroundColor);
    Canvas.FillRect(Rect(0, 0, Width, Layout.StripBottom));
    Canvas.SetPenColor(Style.TabSheetBorderColor);
    Canvas.FrameRect(Rect(0, Layout.StripBottom, Width, Height));

    auto paintOne = [&](int I) {
        const TRect& r = Layout.Tabs[std::size_t(I)];
        if (r.IsEmpty()) return;
        const TPlusTabInfo& tab = Tabs[std::size_t(I)];
        const bool active = I == Active;
        if (active)
            PaintTab(Canvas, r, Style.ActiveColor, Style.ActiveColorTo, Style, true,
                     Layout.StripBottom);
        else
            PaintTab(Canvas, r, tab.TabColor, tab.TabColorTo, Style, false, Layout.StripBottom);
        TFont font = active ? Style.ActiveFont : Style.Font;
        if (!tab.Enabled) font.Color = clSystemColor | 17;
        Canvas.SetFont(font);
        Canvas.SetTextBgColor(clNone);
        TRect text = Rect(r.Left, r.Top, r.Right, Layout.StripBottom);
        Canvas.DrawText(StripHotkey(tab.Caption), text,
                        DT_SINGLELINE | DT_CENTER | DT_VCENTER | DT_NOPREFIX);
    };
    for (int i = 0; i < int(Tabs.size()) && i < int(Layout.Tabs.size()); ++i)
        if (i != Active) paintOne(i);
    // The active tab last, over its neighbours and over the page frame.
    if (Active >= 0 && Active < int(Layout.Tabs.size())) paintOne(Active);
}
