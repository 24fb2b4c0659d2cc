#pragma once
// Layout of a toolbar's row of buttons, free of any window system: the bar
// widget feeds it its children and their wanted sizes, and places them where
// it says.

#include "base/Geometry.h"

#include <cstdint>
#include <vector>

enum TWgToolButtonType : std::uint8_t { ebtButton = 0, ebtSeparator = 1, ebtDivider = 2 };

// One child of the bar as the layout sees it.
struct TWgToolBarItem {
    TWgToolButtonType ButtonType = ebtButton;
    bool Visible = true;
    // A forced line break after this control.
    bool Wrap = false;
    // Where the control stands now; decides the order.
    int Left = 0;
    int Top = 0;
    // Size the content asks for (glyph and text with their spacing).
    int ContentWidth = 0;
    int ContentHeight = 0;
    // Result of the layout.
    TRect Bounds;
    // The caller's own reference, carried through the ordering.
    void* Data = nullptr;
};

struct TWgToolBarMetrics {
    int BtnWidth = 24;
    int BtnHeight = 24;
    int LargeBtnWidth = 48;
    int LargeBtnHeight = 48;
    bool LargeSize = false;
    int BtnOffsHorz = 3;
    int BtnOffsVert = 3;
    bool AutoSize = true;
    bool AutoWrap = false;
    bool ShowMoreMenu = false;
    bool DesignTime = false;
    // Aligned to top or bottom (a horizontal bar), or left or right (vertical).
    bool AlignedAlongEdge = true;
    int MinSize = 24;
    // 0 horizontal, 1 vertical.
    int Orientation = 0;
    bool AdjustButtonWidth = true;
    bool AdjustButtonHeight = true;
    // Client size of the bar and the insets of its border and bevels.
    int Width = 0;
    int Height = 0;
    TRect Insets;
};

// Thickness of the panel's frame on each side: an edge where one is shown,
// the border width, and the bevel width once for an inner and once for an
// outer bevel.
TRect ToolBarInsets(bool Edge, int BorderWidth, bool BevelInner, bool BevelOuter, int BevelWidth);

// Orders the children as the layout walks them: a horizontal bar by Top,
// then Left; a vertical one by Left, then Top. Ties keep their order.
void OrderToolBarItems(std::vector<TWgToolBarItem>& Items, int Orientation);

// The width and height a button of this bar asks for.
void WantedButtonSize(const TWgToolBarMetrics& M, const TWgToolBarItem& Item, int& Width,
                      int& Height);

// Places Items (already ordered) and gives the bar's thickness: its height
// when horizontal, its width when vertical. Without AutoSize the thickness
// is the bar's current one.
int LayoutToolBar(const TWgToolBarMetrics& M, std::vector<TWgToolBarItem>& Items);
