#pragma once
// What the control skins decide without a window: which frame of a strip a
// control in a given state shows, where the parts of a scroll bar lie and
// which part a point falls on, and the composition of a scroll bar from the
// skin's images. The UI reads the state of its widgets, asks here, and only
// copies the result to the screen.

#include "base/Bitmap.h"
#include "base/Geometry.h"
#include "base/Types.h"

class TDataSkinObject;
class TSkinDataModel;

// ---- buttons, check boxes, combo boxes, up-downs

// Mouse state bits of a control skin.
inline constexpr int msHover = 1;
inline constexpr int msPressed = 2;

// The frame of the five-frame button strip: 1 normal, 2 pressed, 3 disabled,
// 4 hover, 5 focused or default. Disabled wins over all, pressed over hover,
// and both over focus.
int ButtonFrame(bool Focused, bool IsDefault, bool Pressed, bool Hover, bool Enabled);

// A caption's first "||" becomes a line break; later ones stay.
WideString ButtonCaptionText(const WideString& Caption);

// Check states as the cell rule counts them.
enum TCheckState : int { cbsUnchecked = 1, cbsChecked = 2, cbsGrayed = 4 };

// The cell of a check or radio strip with Cells cells. A disabled box moves
// two cells on and a pressed one shows cell 4; a strip of 12 cells has
// cells of its own for the checked, disabled, grayed and pressed looks.
int CheckCell(int Cells, int State, bool Disabled, bool Pressed);

// The frame of the combo box strip: 1 normal, 2 pressed or dropped down,
// 3 disabled, 4 hover.
int ComboFrame(bool PressedOrDropped, bool Hover, bool Enabled);

// The cell of an up-down strip of eight: four states of the first arrow,
// then four of the second. Arrow 0 or 1; state 1 normal, 2 pressed,
// 3 disabled, 4 hover.
int UpDownCell(int Arrow, int State);

// The width of a progress bar's filled part: Width * (Position - Min) /
// (Max - Min), within 0 and Width; 0 for an empty range.
int ProgressFill(int Width, int Min, int Max, int Position);

// ---- scroll bars

// The parts of a scroll bar under the mouse.
enum TScrollZone : int {
    szNone = -1,
    szFirstArrow = 0,
    szLastArrow = 1,
    szPageBefore = 2,
    szPageAfter = 3,
    szThumb = 5,
};

// A bar along its axis: its length, the size of each arrow, and the span of
// the thumb, all in bar coordinates.
struct TScrollBarGeometry {
    int BarLength = 0;
    int ArrowSize = 0;
    int ThumbTop = 0, ThumbBottom = 0;
    bool Vertical = false;
};

TScrollZone ZoneAt(const TScrollBarGeometry& Bar, TPoint P);

// Cells of the 23-cell scroll bar strip, numbered from 1.
int ScrollArrowCell(bool Vertical, bool Last, int Zone, bool Pressed, bool Disabled);
// Frame of the thumb body (1 normal, 2 pressed, 3 hover) and cell of its grip.
int ScrollThumbFrame(int Zone, bool Pressed);
int ScrollGripCell(bool Vertical, int Zone, bool Pressed);

// Where the pieces of a bar of Width x Height go. The arrows are ArrowSize
// long, or half the bar each when two would not fit.
struct TScrollBarLayout {
    TRect FirstArrow, LastArrow, Track, Thumb;
    bool ThumbInside = false; // the thumb's span lies inside the track
};
TScrollBarLayout LayoutScrollBar(const TScrollBarGeometry& Bar, int Width, int Height);

// The whole bar, from the skin: ButtonFace, the track, both arrows and,
// unless disabled, the thumb with its grip. False when the skin has no
// scroll bar strip; Work is then left as it was.
bool PaintScrollBar(TMemoryBitmap& Work, const TSkinDataModel& Skin, const TScrollBarGeometry& Bar,
                    int Zone, bool Pressed, bool Disabled);

// One frame of a skin object sliced over the whole of Work, a masked copy
// when the object asks for transparency; false when it has no image.
bool PaintFace(TMemoryBitmap& Work, const TDataSkinObject* Object, int Frame);
