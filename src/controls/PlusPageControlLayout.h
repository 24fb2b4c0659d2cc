#pragma once
// Tab strip of the gradient page control: where each tab stands, which tab
// lies under a point, and the painting of strip and page frame. Free of any
// window system.

#include "base/Canvas.h"
#include "base/ImageList.h"

#include <optional>
#include <vector>

struct TTabMargin {
    int LeftMargin = 0;
    int TopMargin = 0;
    int RightMargin = 2;
};

struct TPlusTabInfo {
    WideString Caption; // "&&" shows one ampersand
    bool Visible = true;
    bool Enabled = true;
    TColor TabColor = clBtnFace;
    TColor TabColorTo = clNone;
    // Image of the style's list, left of the caption; -1 for none.
    int ImageIndex = -1;
    // A close button at the tab's right end, greyed when not enabled.
    bool ShowClose = false;
    bool CloseEnabled = true;
    // Under the pointer: an inactive tab's caption takes the style's HotFont.
    bool Hot = false;
};

struct TPlusTabStyle {
    TFont Font;
    TFont ActiveFont;
    TTabMargin TabMargin;
    int TabOverlap = 0;
    int LowerActive = 2;
    TColor TabBackGroundColor = clBtnFace;
    TColor ActiveColor = clBtnFace;
    TColor ActiveColorTo = clNone;
    TColor TabBorderColor = 0x808080;
    TColor TabSheetBorderColor = 0x808080;
    TColor DefaultTextColor = 0;
    // Tab images; none shows no image whatever the tabs ask for.
    const TWgImageList* Images = nullptr;
    // Caption font of a hot tab; without one hot tabs look as the others.
    // Only the look changes: tabs are measured in Font and ActiveFont.
    std::optional<TFont> HotFont;
};

// Text padding left and right of a caption, and above and below it.
inline constexpr int PlusTabTextMargin = 8;
inline constexpr int PlusTabVertMargin = 4;
// How much lower inactive tabs start than the active one.
inline constexpr int PlusTabInactiveDrop = 2;
// Between an image or a close button and the caption.
inline constexpr int PlusTabGap = 3;
// The square of a close button, and its cross inside.
inline constexpr int PlusTabCloseSize = 11;
inline constexpr int PlusTabCrossSize = 7;

struct TPlusTabLayout {
    // One per tab in page order; empty for hidden tabs.
    std::vector<TRect> Tabs;
    // The close button of each tab; empty where there is none.
    std::vector<TRect> CloseButtons;
    // Bottom of the strip: the page area starts here.
    int StripBottom = 0;
};

// Measures the captions with the fonts on Canvas. Width is the control's.
TPlusTabLayout LayoutPlusTabs(TCanvas& Canvas, const std::vector<TPlusTabInfo>& Tabs, int Active,
                              const TPlusTabStyle& Style, int Width);
// The tab under P, or -1.
int PlusTabAt(const TPlusTabLayout& Layout, TPoint P);
// The tab whose close button is under P, or -1.
int PlusTabCloseAt(const TPlusTabLayout& Layout, TPoint P);
// Strip background, the tabs with their gradients and captions, and the
// frame of the page area down to Height.
void PaintPlusTabs(TCanvas& Canvas, const TPlusTabLayout& Layout,
                   const std::vector<TPlusTabInfo>& Tabs, int Active, const TPlusTabStyle& Style,
                   int Width, int Height);
