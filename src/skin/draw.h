#pragma once
// Cutting pictures out of a skin image strip. Frames are numbered from 1 and
// lie side by side (or stacked, when the caller asks for the vertical
// layout); a frame count below 1 draws nothing. Stretches are nearest
// neighbour and the transparent colour is magenta.

#include "base/Bitmap.h"
#include "base/Geometry.h"

// The source rectangle of a frame. It is not clipped to the strip: a frame
// beyond the strip simply has no pixels to give.
TRect FrameRect(const TMemoryBitmap& Map, int Frame, int Frames, bool Vertical);

// Nine-slice of one frame into a new W x H bitmap (magenta where nothing is
// drawn). Margins hold the widths of the left and right columns and the
// heights of the top and bottom rows.
TMemoryBitmap DrawRect(const TMemoryBitmap& Map, int Frame, int Frames, bool Vertical,
                       const TRect& Margins, bool Tile, int W, int H);
// DrawRect to a work bitmap, then a plain or a transparent copy into Dest.
void DrawObject(TMemoryBitmap& Target, const TRect& Dest, const TMemoryBitmap& Map, int Frame,
                int Frames, bool Vertical, const TRect& Margins, bool Tile, bool Transparent);
// Left cap L wide and right cap R wide stretched to the height; the middle of
// the frame repeated unstretched in width across the rest.
void DrawTiledBar(TMemoryBitmap& Target, const TRect& Dest, const TMemoryBitmap& Map, int Frame,
                  int Frames, bool Vertical, int L, int R, bool Transparent);
// The whole frame (side by side only) stretched to Dest.
void DrawFrame(TMemoryBitmap& Target, const TRect& Dest, const TMemoryBitmap& Map, int Frame,
               int Frames, bool Transparent);
// The frame at its natural size centred in Dest.
void DrawCentred(TMemoryBitmap& Target, const TRect& Dest, const TMemoryBitmap& Map, int Frame,
                 int Frames, bool Vertical, bool Transparent);
// L columns, the middle stretched, R columns, straight into the target.
void DrawThreeSlice(TMemoryBitmap& Target, const TRect& Dest, const TMemoryBitmap& Map, int Frame,
                    int Frames, bool Vertical, int L, int R, bool Transparent);
// The transparent 1:1 copy of a whole bitmap at (X, Y).
void DrawMasked(TMemoryBitmap& Target, int X, int Y, const TMemoryBitmap& Source);
