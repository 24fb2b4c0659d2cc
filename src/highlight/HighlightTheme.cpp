#include "highlight/HighlightTheme.h"

#include <cstdio>

namespace {

constexpr TColor Rgb(int R, int G, int B) {
    return TColor(R) | TColor(G) << 8 | TColor(B) << 16;
}

constexpr std::array<TColor, 4> KeywordColors = {Rgb(0x00, 0x00, 0xC0), Rgb(0x26, 0x7F, 0x99),
                                                 Rgb(0xAF, 0x00, 0xDB), Rgb(0x79, 0x5E, 0x26)};
constexpr std::array<TColor, 4> TagColors = {Rgb(0x80, 0x00, 0x00), Rgb(0xC0, 0x3A, 0x2B),
                                             Rgb(0x01, 0x84, 0xBC), Rgb(0x98, 0x68, 0x01)};

// Group 1 takes the first entry; groups beyond the list start over.
template <std::size_t Size> TColor Cycle(const std::array<TColor, Size>& Colors, int Group) {
    const std::size_t index = Group > 0 ? std::size_t(Group - 1) % Size : 0;
    return Colors[index];
}

} // namespace

THighlightStyle DefaultHighlightStyle(THighlightKind Kind, int Group) {
    switch (Kind) {
    case hkComment:
        return {Rgb(0x00, 0x80, 0x00), false, true, false};
    case hkString:
        return {Rgb(0xA3, 0x15, 0x15)};
    case hkChar:
        return {Rgb(0xA0, 0x52, 0x2D)};
    case hkNumber:
        return {Rgb(0x09, 0x86, 0x58)};
    case hkSymbol:
        return {Rgb(0x6A, 0x3D, 0x9A)};
    case hkBlock:
        return {Rgb(0xB3, 0x59, 0x00)};
    case hkKeyword:
        return {Cycle(KeywordColors, Group), true, false, false};
    case hkTag:
        return {Cycle(TagColors, Group), true, false, false};
    case hkUrl:
        return {Rgb(0x00, 0x66, 0xCC), false, false, true};
    }
    return {HighlightTextColor};
}

THighlightStyle SkinHighlightStyle(THighlightKind Kind, int Group,
                                   const std::array<TColor, 10>& CustomColors) {
    THighlightStyle style = DefaultHighlightStyle(Kind, Group);
    const std::array<TColor, 3> keywords = {CustomColors[0], CustomColors[4], CustomColors[5]};
    const std::array<TColor, 3> tags = {CustomColors[5], CustomColors[0], CustomColors[4]};
    switch (Kind) {
    case hkKeyword:
        style.Color = Cycle(keywords, Group);
        break;
    case hkTag:
        style.Color = Cycle(tags, Group);
        break;
    case hkComment:
        style.Color = CustomColors[6];
        break;
    case hkUrl:
        style.Color = CustomColors[0];
        break;
    default:
        break;
    }
    return style;
}

std::string CssColor(TColor Color) {
    char text[8];
    std::snprintf(text, sizeof text, "#%02X%02X%02X", unsigned(Color & 0xFF),
                  unsigned(Color >> 8 & 0xFF), unsigned(Color >> 16 & 0xFF));
    return text;
}
