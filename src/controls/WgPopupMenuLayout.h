#pragma once
// Geometry, navigation and painting of a popup menu's items, free of any
// window system: the popup widget hosts this and hands it a canvas.

#include "base/Canvas.h"
#include "controls/WgMenu.h"

#include <vector>

// The two module-wide colours of popup drawing: the glyph column and the
// frame and separators. The window palette sets them at start.
TColor PopupMenuFaceColor();
TColor PopupMenuShadeColor();
void SetPopupMenuColors(TColor Face, TColor Shade);

// The glyphs of a menu item, shared by plain and skinned menus: a
// seven-pixel tick, three pixels thick, its box at X, Y; and the arrow of an
// item with a sub-menu, its left edge at X, centred on MidY.
void DrawMenuCheck(TCanvas& Canvas, int X, int Y, TColor Color);
void DrawMenuArrow(TCanvas& Canvas, int X, int MidY, TColor Color);

struct TWgPopupMetrics {
    const TWgImageList* Images = nullptr;
    // Glyphs of the selected item and of disabled items, by the same index;
    // without one the plain glyph serves, greyed for a disabled item.
    const TWgImageList* HotImages = nullptr;
    const TWgImageList* DisabledImages = nullptr;
    TWgMenuDrawStyle DrawStyle = tdsOfficeXP;
    int ItemSpace = 0;
    int ImageMargin = 0;
    TFont Font;
    // Captions that begin with "<html>" are markup.
    bool IsHTML = false;
};

struct TWgPopupItemBox {
    TWgMenuItem* Item = nullptr;
    // The item's index among its parent's items.
    int Index = -1;
    TRect Bounds;
};

struct TWgPopupLayout {
    std::vector<TWgPopupItemBox> Boxes;
    int Width = 0;
    int Height = 0;
    int GlyphColumn = 0; // width of the glyph column
    int TextLeft = 0;
    int ShortCutRight = 0; // right end of the shortcut texts
};

// Fixed parts of the geometry, in pixels.
inline constexpr int PopupFrame = 1;   // frame on every side
inline constexpr int PopupPadding = 1; // above the first and below the last item
inline constexpr int PopupSeparatorHeight = 5;
inline constexpr int PopupTextGap = 8; // from the glyph column to the text
inline constexpr int PopupShortCutGap = 24;
inline constexpr int PopupArrowColumn = 20; // right of the text, where a sub-menu arrow stands

// Lays out the visible sub-items of Parent; hidden items get no box.
TWgPopupLayout LayoutPopupMenu(TCanvas& Canvas, const TWgMenuItem& Parent,
                               const TWgPopupMetrics& Metrics);
// The item index under P, or -1 (separators count: they are boxes too).
int PopupItemAt(const TWgPopupLayout& Layout, TPoint P);
const TWgPopupItemBox* PopupBoxOf(const TWgPopupLayout& Layout, int Index);

// Keyboard stops: visible items that are no separators. The next stop after
// From in direction Step, wrapping round; -1 when there is none.
int NextPopupItem(const TWgMenuItem& Parent, int From, int Step);
// The next stop after From whose accelerator is Key, wrapping; -1 if none.
// Unique is set when exactly one item has it.
int PopupAccelItem(const TWgMenuItem& Parent, int Key, int From, bool& Unique);

// Paints the whole popup; Selected is an item index or -1.
void PaintPopupMenu(TCanvas& Canvas, const TWgPopupLayout& Layout, const TWgPopupMetrics& Metrics,
                    int Selected);
