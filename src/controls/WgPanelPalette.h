#pragma once
// The five colours the main window is painted with. With the skin off they
// are the plain system colours; a skin supplies its own.

#include "base/Canvas.h"

struct TWindowPalette {
    TColor FaceColor = clBtnFace;
    TColor AccentColor = clBtnFace;
    TColor ShadeColor = clBtnShadow;
    TColor DarkShadeColor = clBtnShadow;
    TColor MenuBarColor = clBtnFace;
};

// The palette of the plain system look (no skin active).
inline TWindowPalette PlainWindowPalette() {
    return {clBtnFace, clBtnFace, clBtnShadow, clBtnShadow, clBtnFace};
}

// The menu bar is raised only when face and accent agree, so the plain look
// has a raised bar and a skin normally a flat one.
inline bool MenuBarRaised(const TWindowPalette& Palette) {
    return Palette.FaceColor == Palette.AccentColor;
}
