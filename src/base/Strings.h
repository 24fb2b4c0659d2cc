#pragma once
// String helpers shared by every layer. Positions are one-based; 0 means
// "not found", as the document algorithms state them.

#include "base/Types.h"

#include <string_view>

using WideView = std::u16string_view;

// Removes every character with a code below 33 from both ends.
WideString Trim(WideView S);
WideString TrimLeft(WideView S);
WideString TrimRight(WideView S);
// Removes only the space character (code 32) from both ends.
WideString TrimSpaces(WideView S);

// Lower-cases by simple Unicode case pairs of the Basic Multilingual Plane;
// a character whose lower form does not map back to it is left alone.
WideChar LowerChar(WideChar C);
WideString WideLowerCase(WideView S);
// The inverse of the same pairs: a character that is the lower form of
// several becomes the first of them by code.
WideChar UpperChar(WideChar C);
WideString WideUpperCase(WideView S);

// One-based position of Sub in S at or after Offset; 0 if absent.
std::size_t Pos(WideView Sub, WideView S, std::size_t Offset = 1);
std::size_t Pos(WideChar C, WideView S, std::size_t Offset = 1);
// One-based position of the last occurrence of Sub in S; 1 when the strings
// are equal, 0 when Sub is longer than S or absent.
std::size_t LastPos(WideView Sub, WideView S);

// Replaces every occurrence of From (non-empty) by To, left to right.
WideString ReplaceAll(WideView S, WideView From, WideView To);

// Ordinal comparison by 16-bit code units, stopping at the first zero
// character of either string (the end of a string counts as a zero).
int CompareZ(WideView A, WideView B);

// ASCII-only conversions for literals and numbers.
WideString WideFromAscii(std::string_view S);
std::string AsciiFromWide(WideView S); // characters above 127 become '?'
WideString IntToWide(long long Value);
