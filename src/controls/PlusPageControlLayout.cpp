#include "controls/PlusPageControlLayout.h"

#include "controls/WgMenu.h"
#include "controls/WgPanelPaint.h"

#include <algorithm>

namespace {

bool HasImage(const TPlusTabInfo& Tab, const TPlusTabStyle& Style) {
    const TMemoryBitmap* image = Style.Images ? Style.Images->Get(Tab.ImageIndex) : nullptr;
    return image && !image->Empty();
}

// Image, caption and close button side by side: the room each takes.
int ContentWidth(TCanvas& Canvas, const TPlusTabInfo& Tab, const TPlusTabStyle& Style) {
    int width = Canvas.TextWidth(StripHotkey(Tab.Caption));
    if (HasImage(Tab, Style)) width += Style.Images->Width() + PlusTabGap;
    if (Tab.ShowClose) width += PlusTabGap + PlusTabCloseSize;
    return width;
}

} // namespace

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
            layout.CloseButtons.push_back({});
            continue;
        }
        const bool active = i == Active;
        Canvas.SetFont(active ? Style.ActiveFont : Style.Font);
        const int w = ContentWidth(Canvas, tab, Style) + 2 * PlusTabTextMargin;
        const TRect r = active ? Rect(x, top, x + w, layout.StripBottom + Style.LowerActive)
                               : Rect(x, top + PlusTabInactiveDrop, x + w, layout.StripBottom);
        layout.Tabs.push_back(r);
        // At the right end, centred on the caption's line.
        const int closeTop = r.Top + (layout.StripBottom - r.Top - PlusTabCloseSize) / 2;
        layout.CloseButtons.push_back(tab.ShowClose
                                          ? Bounds(r.Right - PlusTabTextMargin - PlusTabCloseSize,
                                                   closeTop, PlusTabCloseSize, PlusTabCloseSize)
                                          : TRect{});
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

int PlusTabCloseAt(const TPlusTabLayout& Layout, TPoint P) {
    // Only where the tab itself is what lies under the point.
    const int tab = PlusTabAt(Layout, P);
    if (tab < 0 || tab >= int(Layout.CloseButtons.size())) return -1;
    return Layout.CloseButtons[std::size_t(tab)].Contains(P) ? tab : -1;
}

namespace {

void PaintCloseButton(TCanvas& Canvas, const TRect& R, TColor Color) {
    const int left = R.Left + (R.Width() - PlusTabCrossSize) / 2;
    const int top = R.Top + (R.Height() - PlusTabCrossSize) / 2;
    const int n = PlusTabCrossSize;
    Canvas.SetPenColor(Color);
    // Both diagonals, two pixels thick.
    for (int d = 0; d < 2; ++d) {
        Canvas.MoveTo(left + d, top);
        Canvas.LineTo(left + d + n, top + n);
        Canvas.MoveTo(left + n - 1 - d, top);
        Canvas.LineTo(left - 1 - d, top + n);
    }
}

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
        if (tab.Hot && !active && Style.HotFont) font = *Style.HotFont;
        if (!tab.Enabled) font.Color = clGrayText;
        TRect text = Rect(r.Left, r.Top, r.Right, Layout.StripBottom);
        if (HasImage(tab, Style)) {
            const int imageX = r.Left + PlusTabTextMargin;
            Style.Images->Draw(Canvas, imageX,
                               r.Top + (Layout.StripBottom - r.Top - Style.Images->Height()) / 2,
                               tab.ImageIndex);
            text.Left = imageX + Style.Images->Width() + PlusTabGap - PlusTabTextMargin;
        }
        const TRect close =
            I < int(Layout.CloseButtons.size()) ? Layout.CloseButtons[std::size_t(I)] : TRect{};
        if (!close.IsEmpty()) {
            PaintCloseButton(Canvas, close,
                             tab.CloseEnabled && tab.Enabled ? font.Color : clGrayText);
            text.Right = close.Left - PlusTabGap + PlusTabTextMargin;
        }
        Canvas.SetFont(font);
        Canvas.SetTextBgColor(clNone);
        Canvas.DrawText(StripHotkey(tab.Caption), text,
                        DT_SINGLELINE | DT_CENTER | DT_VCENTER | DT_NOPREFIX);
    };
    for (int i = 0; i < int(Tabs.size()) && i < int(Layout.Tabs.size()); ++i)
        if (i != Active) paintOne(i);
    // The active tab last, over its neighbours and over the page frame.
    if (Active >= 0 && Active < int(Layout.Tabs.size())) paintOne(Active);
}
