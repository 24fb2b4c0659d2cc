#pragma once
// Points and rectangles in the classic layout: Right and Bottom are
// exclusive, so Width is Right - Left.

struct TPoint {
    int X = 0;
    int Y = 0;
    bool operator==(const TPoint&) const = default;
};

struct TRect {
    int Left = 0;
    int Top = 0;
    int Right = 0;
    int Bottom = 0;

    int Width() const { return Right - Left; }
    int Height() const { return Bottom - Top; }
    bool IsEmpty() const { return Right <= Left || Bottom <= Top; }
    bool Contains(TPoint P) const {
        return P.X >= Left && P.X < Right && P.Y >= Top && P.Y < Bottom;
    }
    bool operator==(const TRect&) const = default;
};

inline TRect Rect(int Left, int Top, int Right, int Bottom) {
    return {Left, Top, Right, Bottom};
}
inline TRect Bounds(int Left, int Top, int Width, int Height) {
    return {Left, Top, Left + Width, Top + Height};
}
// The overlap of A and B; an empty rectangle when they do not meet.
inline bool IntersectRect(TRect& Dest, const TRect& A, const TRect& B) {
    Dest = {A.Left > B.Left ? A.Left : B.Left, A.Top > B.Top ? A.Top : B.Top,
            A.Right < B.Right ? A.Right : B.Right, A.Bottom < B.Bottom ? A.Bottom : B.Bottom};
    if (Dest.IsEmpty()) {
        Dest = {};
        return false;
    }
    return true;
}
