#pragma once
// Skinned menus without any window: the picture of a menu window (its
// background and border), the look of one item in it, and the menu strip
// that a skinned frame draws in place of a window's own menu bar, with its
// buttons and the keyboard's walk across them. The UI hands in a canvas,
// the item's state and the rectangles of its own layout.

#include "base/Bitmap.h"
#include "base/Canvas.h"
#include "base/Geometry.h"
#include "skin/data.h"

#include <vector>

// ---- menu windows

// The ring of the window that the background keeps for itself: the menu
// window's border in the skin's picture.
inline constexpr int MenuBorderWidth = 3;
// MenuItem strips hold five frames side by side; MenuBackground one.
inline constexpr int MenuItemFrames = 5;

// The picture of a whole menu window of W x H: MenuBackground sliced to that
// size with its own Tile. Empty when the skin has no such image (the window
// then keeps its own paint).
TMemoryBitmap MenuBackgroundImage(const TSkinDataModel& Skin, int W, int H);
// The four strips of the border ring of a W x H window, in the order they
// are copied: top, bottom, left, right. Clipped to the window.
std::vector<TRect> MenuBorderRing(int W, int H);

// One item as the painter needs it.
struct TSkinMenuItem {
    WideString Caption;  // "&" marks the accelerator; "-" is a separator
    WideString ShortCut; // the shortcut as text, "" for none
    bool Enabled = true;
    bool Checked = false;
    bool Default = false;                 // drawn bold
    bool SubMenu = false;                 // has an arrow to a sub-menu
    bool Selected = false;                // under the mouse or the keyboard
    const TMemoryBitmap* Glyph = nullptr; // the image already in its state's look
    TColor GlyphTransparent = clNone;
    bool IsLine() const { return Caption == u"-"; }
};

// The MenuItem frame an item takes: 1, or 4 while it is selected.
int MenuItemFrame(bool Selected);
// Colour of an item's text: HilightText when selected, else MenuText;
// disabled items ButtonShadow, unless the skin made that MenuText, when
// they fall back to the system's button shadow.
TColor MenuItemTextColour(const TSkinDataModel& Skin, bool Enabled, bool Selected);

// The glyph box of an item: Image wide (at least 16 with a check mark, 16
// when there is no image), starting 1 + the MenuItem's left margin in.
TRect MenuItemBox(const TSkinDataModel& Skin, const TRect& Item, int ImageWidth, int ImageHeight,
                  bool Checked);

// Paints one item into R of the canvas. Background is the window's picture
// (or null): the item's part of it lies under the item, otherwise the item
// is filled with the skin's Menu colour. Font is the menu font; ImageWidth
// and ImageHeight the image list's size, 0 without one.
void PaintSkinMenuItem(TCanvas& Canvas, const TSkinDataModel& Skin, const TMemoryBitmap* Background,
                       const TRect& R, const TSkinMenuItem& Item, const TFont& Font, int ImageWidth,
                       int ImageHeight);
// The separator line of a skin with a MenuItem strip: out of its second
// frame, the bottom rows that fit R's height, left and right caps at the
// strip's margins and the middle stretched, magenta transparent.
void DrawMenuSeparator(TMemoryBitmap& Target, const TRect& R, const TDataSkinObject& MenuItem);

// ---- the menu strip of a skinned frame

struct TMenuStripButton {
    WideString Caption;
    bool Visible = true;
    bool Enabled = true;
    int State = 0; // 0 normal, 2 hot, 3 open
    TRect Rect;    // window coordinates; empty when not shown
};

// Lays the buttons out along Strip (window coordinates) with the canvas's
// font: each visible caption its width plus 10, from the skin's start on.
void LayoutMenuStrip(TCanvas& Canvas, const TSkinDataModel& Skin, const TRect& Strip,
                     bool RightToLeft, std::vector<TMenuStripButton>& Buttons);
// The strip's face without the buttons' captions, Strip's size: MenuBar
// frame 1 while the form is active, 2 when not; a plain Menubar fill
// without that image.
TMemoryBitmap MenuStripBack(const TSkinDataModel& Skin, int W, int H, bool Active);
// Back, then every visible caption, then the frames of hot and open buttons.
void PaintMenuStrip(TCanvas& Canvas, const TSkinDataModel& Skin, const TRect& Strip,
                    const TMemoryBitmap& Back, const std::vector<TMenuStripButton>& Buttons);

// The first button with a caption whose rectangle holds P, or -1.
int MenuStripButtonAt(const std::vector<TMenuStripButton>& Buttons, TPoint P);
// The next button from From in direction Step (1 or -1) that is visible and
// has a caption, wrapping round; From itself when it is the only one, -1
// when there is none.
int NextMenuStripButton(const std::vector<TMenuStripButton>& Buttons, int From, int Step);
