#pragma once
// UTF-8 and UTF-16 conversions of the wide character layer.

#include "base/Types.h"

#include <string_view>

// Lenient UTF-8 decoding: each maximal ill-formed subsequence becomes one
// U+FFFD; a three-byte encoded surrogate decodes to that surrogate unit.
WideString DecodeUtf8Lenient(std::string_view Bytes);
void DecodeUtf8LenientTo(std::string_view Bytes, WideString& Out); // reuses Out
// Lenient UTF-8 encoding: a valid surrogate pair becomes one four-byte
// sequence, a lone surrogate passes through as three bytes.
std::string EncodeUtf8Lenient(std::u16string_view Text);

// UTF-16 from raw bytes; an odd last byte is dropped.
WideString DecodeUtf16LE(std::string_view Bytes);
std::string EncodeUtf16LE(std::u16string_view Text);
// Byte-swaps each unit in place.
void SwapUtf16(WideString& Text);

// Is C the first, second or any half of a surrogate pair?
inline bool IsHighSurrogate(WideChar C) {
    return C >= 0xD800 && C <= 0xDBFF;
}
inline bool IsLowSurrogate(WideChar C) {
    return C >= 0xDC00 && C <= 0xDFFF;
}
