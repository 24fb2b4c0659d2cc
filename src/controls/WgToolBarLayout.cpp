#include "controls/WgToolBarLayout.h"

#include <algorithm>

TRect ToolBarInsets(bool Edge, int BorderWidth, bool BevelInner, bool BevelOuter, int BevelWidth) {
    int inset = (Edge ? 1 : 0) + std::max(0, BorderWidth);
    if (BevelInner) inset += BevelWidth;
    if (BevelOuter) inset += BevelWidth;
    return {inset, inset, inset, inset};
}

void OrderToolBarItems(std::vector<TWgToolBarItem>& Items, int Orientation) {
    const bool vertical = Orientation == 1;
    std::stable_sort(Items.begin(), Items.end(), [vertical](const auto& A, const auto& B) {
        if (vertical) return A.Left != B.Left ? A.Left < B.Left : A.Top < B.Top;
        return A.Top != B.Top ? A.Top < B.Top : A.Left < B.Left;
    });
}

void WantedButtonSize(const TWgToolBarMetrics& M, const TWgToolBarItem& Item, int& Width,
                      int& Height) {
    const int barW = M.LargeSize ? M.LargeBtnWidth : M.BtnWidth;
    const int barH = M.LargeSize ? M.LargeBtnHeight : M.BtnHeight;
    Width = M.AdjustButtonWidth ? std::max(barW, Item.ContentWidth) : barW;
    Height = M.AdjustButtonHeight ? std::max(barH, Item.ContentHeight) : barH;
}

int LayoutToolBar(const TWgToolBarMetrics& M, std::vector<TWgToolBarItem>& Items) {
    const bool vertical = M.Orientation == 1;
    const int startX = M.BtnOffsHorz + M.Insets.Left;
    const int startY = M.BtnOffsVert + M.Insets.Top;
    int x = startX;
    int y = startY;

    int rowW = M.LargeSize ? M.LargeBtnWidth : M.BtnWidth;
    int rowH = M.LargeSize ? M.LargeBtnHeight : M.BtnHeight;
    for (const auto& item : Items) {
        if (item.ButtonType != ebtButton) continue;
        int w = 0, h = 0;
        WantedButtonSize(M, item, w, h);
        rowW = std::max(rowW, w);
    }
    for (const auto& item : Items) {
        if (item.ButtonType != ebtButton) continue;
        int w = 0, h = 0;
        WantedButtonSize(M, item, w, h);
        rowH = std::max(rowH, h);
    }

    const bool mayWrap =
        (M.AutoWrap && (!M.AutoSize || M.AlignedAlongEdge)) || (M.ShowMoreMenu && !M.DesignTime);
    const int endX = M.Width - M.Insets.Right;
    const int endY = M.Height - M.Insets.Bottom;
    const TWgToolBarItem* previous = nullptr;
    bool any = false;
    for (auto& item : Items) {
        int w = 0, h = 0;
        if (item.ButtonType == ebtButton) {
            WantedButtonSize(M, item, w, h);
            if (vertical)
                w = rowW;
            else
                h = rowH;
        } else if (vertical) {
            w = rowW;
            h = (M.LargeSize ? M.LargeBtnHeight : M.BtnHeight) / 4;
        } else {
            w = (M.LargeSize ? M.LargeBtnWidth : M.BtnWidth) / 4;
            h = rowH;
        }
        const bool forced = previous && previous->Wrap;
        if (!vertical) {
            const bool passes = x > startX && x + w > endX;
            if (forced || (mayWrap && passes)) {
                x = startX;
                y += rowH + M.BtnOffsVert;
            }
        } else {
            const bool passes = y > startY && y + h > endY;
            if (forced || (mayWrap && passes)) {
                y = startY;
                x += rowW + M.BtnOffsHorz;
            }
        }
        item.Bounds = Bounds(x, y, w, h);
        if (item.Visible) {
            any = true;
            if (vertical)
                y += h + M.BtnOffsVert;
            else
                x += w + M.BtnOffsHorz;
        }
        previous = &item;
    }

    if (!M.AutoSize) return vertical ? M.Width : M.Height;
    if (!any) return M.MinSize;
    const int thickness = vertical ? x + rowW + M.BtnOffsHorz + M.Insets.Right
                                   : y + rowH + M.BtnOffsVert + M.Insets.Bottom;
    return std::max(thickness, M.MinSize);
}
