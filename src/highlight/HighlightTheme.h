#pragma once
// The colours of highlighted text: a small default theme, and the same
// theme with the foreground colours of a skin's custom colours where a skin
// gives them. Shared by the editor's preview and the command-line output.

#include "highlight/Highlighter.h"

#include <array>

struct THighlightStyle {
    TColor Color = 0; // 0x00BBGGRR
    bool Bold = false;
    bool Italic = false;
    bool Underline = false;
    bool operator==(const THighlightStyle&) const = default;
};

// Plain text and the paper behind all of it.
inline constexpr TColor HighlightTextColor = 0x000000;
inline constexpr TColor HighlightPaperColor = 0xFFFFFF;

// The default theme. Keyword and tag groups cycle through four colours each.
THighlightStyle DefaultHighlightStyle(THighlightKind Kind, int Group);

// The default theme with colours from a skin's custom colours (index i is
// the skin's "Color<i>"): keyword groups cycle through colours 0, 4 and 5,
// tag groups through 5, 0 and 4; comments take colour 6, URLs colour 0. The
// other kinds, the paper and plain text keep the default theme.
THighlightStyle SkinHighlightStyle(THighlightKind Kind, int Group,
                                   const std::array<TColor, 10>& CustomColors);

// "#RRGGBB" of a colour.
std::string CssColor(TColor Color);
