#pragma once
// One-shot entry points over raw bytes for each skin reader, shared by the
// unit tests and a fuzzing harness. None may fault on any input.

#include <cstddef>
#include <cstdint>

int FuzzLzhExpand(const std::uint8_t* Data, std::size_t Size);
int FuzzQuickIni(const std::uint8_t* Data, std::size_t Size);
int FuzzSkinReader(const std::uint8_t* Data, std::size_t Size);
int FuzzBmp(const std::uint8_t* Data, std::size_t Size);
// A whole skin file: reader, ini text, bitmaps and the model built on them.
int FuzzSkinData(const std::uint8_t* Data, std::size_t Size);
