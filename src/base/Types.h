#pragma once
// Shared value types of the whole program.

#include <cstdint>
#include <string>

// Text of containers and controls: UTF-16 code units.
using WideString = std::u16string;
using WideChar = char16_t;
// Narrow text: bytes in the system code page (file names, InputBox, ini bytes).
using AnsiString = std::string;

// 32-bit colour in the 0x00BBGGRR layout; 0xFF000000 + index is a system
// colour, clNone means no colour at all.
using TColor = std::uint32_t;
inline constexpr TColor clNone = 0x1FFFFFFF;
inline constexpr TColor clSystemColor = 0xFF000000;

// Object value stored beside a list string (item kinds, or a pointer in the UI).
using TObjectValue = std::intptr_t;
