#pragma once
// System colours by their classic indices. A colour of the program is
// 0xFF000000 + index while it names a system colour; the UI resolves it
// against its palette, the core against the classic values below.

#include "base/Types.h"

inline constexpr TColor SysColor(int Index) {
    return clSystemColor + TColor(Index);
}
inline constexpr bool IsSysColor(TColor C) {
    return (C & 0xFF000000u) == clSystemColor;
}
inline constexpr TColor RGBColor(int R, int G, int B) {
    return TColor(R & 0xFF) | (TColor(G & 0xFF) << 8) | (TColor(B & 0xFF) << 16);
}
inline constexpr int GetRValue(TColor C) {
    return int(C & 0xFF);
}
inline constexpr int GetGValue(TColor C) {
    return int((C >> 8) & 0xFF);
}
inline constexpr int GetBValue(TColor C) {
    return int((C >> 16) & 0xFF);
}

inline constexpr TColor clBlack = 0x000000;
inline constexpr TColor clWhite = 0xFFFFFF;

inline constexpr TColor clScrollBar = SysColor(0);
inline constexpr TColor clBackground = SysColor(1);
inline constexpr TColor clActiveCaption = SysColor(2);
inline constexpr TColor clInactiveCaption = SysColor(3);
inline constexpr TColor clMenu = SysColor(4);
inline constexpr TColor clWindow = SysColor(5);
inline constexpr TColor clWindowFrame = SysColor(6);
inline constexpr TColor clMenuText = SysColor(7);
inline constexpr TColor clWindowText = SysColor(8);
inline constexpr TColor clCaptionText = SysColor(9);
inline constexpr TColor clActiveBorder = SysColor(10);
inline constexpr TColor clInactiveBorder = SysColor(11);
inline constexpr TColor clAppWorkSpace = SysColor(12);
inline constexpr TColor clHighlight = SysColor(13);
inline constexpr TColor clHighlightText = SysColor(14);
inline constexpr TColor clBtnFace = SysColor(15);
inline constexpr TColor clBtnShadow = SysColor(16);
inline constexpr TColor clGrayText = SysColor(17);
inline constexpr TColor clBtnText = SysColor(18);
inline constexpr TColor clInactiveCaptionText = SysColor(19);
inline constexpr TColor clBtnHighlight = SysColor(20);
inline constexpr TColor cl3DDkShadow = SysColor(21);
inline constexpr TColor cl3DLight = SysColor(22);
inline constexpr TColor clInfoText = SysColor(23);
inline constexpr TColor clInfoBk = SysColor(24);
inline constexpr TColor clHotLight = SysColor(26);
inline constexpr TColor clGradientActiveCaption = SysColor(27);
inline constexpr TColor clGradientInactiveCaption = SysColor(28);
inline constexpr TColor clMenuHighlight = SysColor(29);
inline constexpr TColor clMenuBar = SysColor(30);

// The classic grey desktop scheme, by index 0 to 30; other indices give black.
inline constexpr TColor ClassicSysColor(int Index) {
    constexpr TColor table[31] = {
        RGBColor(212, 208, 200), RGBColor(58, 110, 165),  RGBColor(10, 36, 106),
        RGBColor(128, 128, 128), RGBColor(212, 208, 200), RGBColor(255, 255, 255),
        RGBColor(0, 0, 0),       RGBColor(0, 0, 0),       RGBColor(0, 0, 0),
        RGBColor(255, 255, 255), RGBColor(212, 208, 200), RGBColor(212, 208, 200),
        RGBColor(128, 128, 128), RGBColor(10, 36, 106),   RGBColor(255, 255, 255),
        RGBColor(212, 208, 200), RGBColor(128, 128, 128), RGBColor(128, 128, 128),
        RGBColor(0, 0, 0),       RGBColor(212, 208, 200), RGBColor(255, 255, 255),
        RGBColor(64, 64, 64),    RGBColor(212, 208, 200), RGBColor(0, 0, 0),
        RGBColor(255, 255, 225), RGBColor(181, 181, 181), RGBColor(0, 0, 128),
        RGBColor(166, 202, 240), RGBColor(192, 192, 192), RGBColor(49, 106, 197),
        RGBColor(212, 208, 200)};
    return Index >= 0 && Index < 31 ? table[Index] : clBlack;
}

// A plain RGB colour: system colours by the classic table, clNone as black,
// anything else with its top byte dropped.
inline constexpr TColor ColorToRGB(TColor C) {
    if (IsSysColor(C)) return ClassicSysColor(int(C & 0xFF));
    return C == clNone ? clBlack : (C & 0xFFFFFF);
}
