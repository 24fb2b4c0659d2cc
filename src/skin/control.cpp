#include "skin/control.h"

#include "skin/bitmap.h"
#include "skin/data.h"
#include "skin/draw.h"

#include <algorithm>
#include <cstdlib>

int ButtonFrame(bool Focused, bool IsDefault, bool Pressed, bool Hover, bool Enabled) {
    int frame = 1;
    if (Focused || IsDefault) frame = 5;
    if (Pressed)
        frame = 2;
    else if (Hover)
        frame = 4;
    if (!Enabled) frame = 3;
    return frame;
}

WideString ButtonCaptionText(const WideString& Caption) {
    const auto at = Caption.find(u"||");
    if (at == WideString::npos) return Caption;
    return Caption.substr(0, at) + u'\n' + Caption.substr(at + 2);
}

int CheckCell(int Cells, int State, bool Disabled, bool Pressed) {
    int cell = State;
    if (Disabled) cell += 2;
    if (Cells >= 12) {
        // The long strip has a cell for each look.
        if (Pressed) return Disabled ? 12 : 9;
        switch (cell) {
        case 2:
            return 5;
        case 3:
            return 4;
        case 4:
            return 8;
        default:
            return cell;
        }
    }
    if (Pressed) cell = 4;
    return std::clamp(cell, 1, std::max(Cells, 1));
}

int ComboFrame(bool PressedOrDropped, bool Hover, bool Enabled) {
    if (!Enabled) return 3;
    if (PressedOrDropped) return 2;
    return Hover ? 4 : 1;
}

int UpDownCell(int Arrow, int State) {
    return std::clamp(Arrow, 0, 1) * 4 + std::clamp(State, 1, 4);
}

int ProgressFill(int Width, int Min, int Max, int Position) {
    const long long range = static_cast<long long>(Max) - Min;
    if (range <= 0 || Width <= 0) return 0;
    const long long done = std::clamp<long long>(static_cast<long long>(Position) - Min, 0, range);
    return static_cast<int>(Width * done / range);
}

TScrollZone ZoneAt(const TScrollBarGeometry& Bar, TPoint P) {
    const int p = Bar.Vertical ? P.Y : P.X;
    if (p < Bar.ArrowSize) return szFirstArrow;
    if (p < Bar.ThumbTop) return szPageBefore;
    if (p < Bar.ThumbBottom) return szThumb;
    if (p < Bar.BarLength - Bar.ArrowSize) return szPageAfter;
    return szLastArrow;
}

int ScrollArrowCell(bool Vertical, bool Last, int Zone, bool Pressed, bool Disabled) {
    int cell = Vertical ? (Last ? 13 : 9) : (Last ? 5 : 1);
    if (Disabled) return cell + 2;
    if (Zone == (Last ? szLastArrow : szFirstArrow)) cell += Pressed ? 1 : 3;
    return cell;
}

int ScrollThumbFrame(int Zone, bool Pressed) {
    if (Zone != szThumb) return 1;
    return Pressed ? 2 : 3;
}

int ScrollGripCell(bool Vertical, int Zone, bool Pressed) {
    return (Vertical ? 20 : 17) + ScrollThumbFrame(Zone, Pressed) - 1;
}

TScrollBarLayout LayoutScrollBar(const TScrollBarGeometry& Bar, int Width, int Height) {
    TScrollBarLayout l;
    const int length = Bar.Vertical ? Height : Width;
    int arrow = Bar.ArrowSize;
    if (2 * arrow > length) arrow = length / 2;
    // Along the axis from a to b, across the whole bar.
    auto span = [&](int a, int b) {
        return Bar.Vertical ? Rect(0, a, Width, b) : Rect(a, 0, b, Height);
    };
    l.FirstArrow = span(0, arrow);
    l.LastArrow = span(length - arrow, length);
    l.Track = span(Bar.ArrowSize, length - Bar.ArrowSize);
    l.Thumb = span(Bar.ThumbTop, Bar.ThumbBottom);
    l.ThumbInside = Bar.ThumbBottom > Bar.ThumbTop && Bar.ThumbTop >= Bar.ArrowSize &&
                    Bar.ThumbBottom <= length - Bar.ArrowSize;
    return l;
}

bool PaintFace(TMemoryBitmap& Work, const TDataSkinObject* Object, int Frame) {
    if (!Object || Object->Map.Empty() || Work.Empty()) return false;
    DrawObject(Work, Rect(0, 0, Work.Width(), Work.Height()), Object->Map, Frame,
               std::max(Object->Frame, 1), false, Object->r, Object->Tile == 1, Object->Trans == 1);
    return true;
}

bool PaintScrollBar(TMemoryBitmap& Work, const TSkinDataModel& Skin, const TScrollBarGeometry& Bar,
                    int Zone, bool Pressed, bool Disabled) {
    const TDataSkinObject* strip = Skin.ScrollbarMap.get();
    if (!strip || strip->Map.Empty() || Work.Empty()) return false;
    const TMemoryBitmap& map = strip->Map;
    const int W = Work.Width(), H = Work.Height();
    FillBitmapRect(Work, Rect(0, 0, W, H), ColorToPixel(Skin.ResolveColor(Skin.ButtonFace)));
    int imageHeight = map.Height();
    if (std::abs(imageHeight - Bar.ArrowSize) > 2) imageHeight = Bar.ArrowSize;
    const TScrollBarLayout l = LayoutScrollBar(Bar, W, H);
    auto cell = [&](int Cell, const TRect& Dest) {
        const TRect src = FrameRect(map, Cell, 23, false);
        if (Dest.Width() > 0 && Dest.Height() > 0 && !src.IsEmpty())
            StretchCopy(Work, Dest, map, src, true);
    };

    // The track. A vertical track takes the horizontal one's Tile: skins
    // have always been drawn so, keep it.
    const TDataSkinObject* track = Bar.Vertical ? Skin.VertScroll.get() : Skin.HorzScroll.get();
    if (track && !track->Map.Empty() && !l.Track.IsEmpty()) {
        const int tile = Skin.HorzScroll ? Skin.HorzScroll->Tile : track->Tile;
        DrawObject(Work, l.Track, track->Map, Disabled ? 3 : 1, 4, false, track->r, tile == 1,
                   false);
    }
    cell(ScrollArrowCell(Bar.Vertical, false, Zone, Pressed, Disabled), l.FirstArrow);
    cell(ScrollArrowCell(Bar.Vertical, true, Zone, Pressed, Disabled), l.LastArrow);
    if (Disabled || !l.ThumbInside) return true;

    // The thumb: the vertical body keeps the horizontal one's Trans and
    // frame count, as skins expect.
    const TDataSkinObject* horz = Skin.HorzScrollThumb.get();
    const TDataSkinObject* body = Bar.Vertical ? Skin.VertScrollThumb.get() : horz;
    const int frame = ScrollThumbFrame(Zone, Pressed);
    if (body && !body->Map.Empty()) {
        const int frames = std::max(horz ? horz->Frame : body->Frame, 1);
        const bool trans = (horz ? horz->Trans : body->Trans) == 1;
        DrawObject(Work, l.Thumb, body->Map, frame, frames, false, body->r, body->Tile == 1, trans);
    }
    const int thumbLength = Bar.ThumbBottom - Bar.ThumbTop;
    const int cellWidth = map.Width() / 23;
    if (imageHeight < thumbLength + 2 && cellWidth > 0) {
        const int across = Bar.Vertical ? W : H;
        const int mid = (Bar.ThumbTop + Bar.ThumbBottom) / 2;
        // The grip cell is drawn upright for both axes, centred on the thumb.
        const int gw = Bar.Vertical ? std::min(cellWidth, across) : cellWidth;
        const int gh = std::min(imageHeight, Bar.Vertical ? thumbLength : across);
        const TRect dest = Bar.Vertical ? Bounds((W - gw) / 2, mid - gh / 2, gw, gh)
                                        : Bounds(mid - gw / 2, (H - gh) / 2, gw, gh);
        cell(ScrollGripCell(Bar.Vertical, Zone, Pressed), dest);
    }
    return true;
}
