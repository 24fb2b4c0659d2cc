#pragma once
// One-shot entry points over raw bytes, one for each reader of data that
// comes from outside the program, shared by the unit tests and the fuzzing
// harnesses in fuzz/. Each lives beside its reader (skin/, document/,
// controls/, tree/ Fuzz.cpp).
//
// Each returns 1 when the reader took the input and 0 when it refused it,
// by a false result or by one of the program's own errors (Exception),
// which are what a user would see for a broken file. Everything else is a
// bug the caller must see: a fault, a hang, another exception escaping, or
// a std::logic_error raised here because what we wrote could not be read
// back.

#include <cstddef>
#include <cstdint>

// ---- skin files

// An outer LZH frame: a declared length, then the coded bits.
int FuzzLzhExpand(const std::uint8_t* Data, std::size_t Size);
// The ini text a skin carries.
int FuzzQuickIni(const std::uint8_t* Data, std::size_t Size);
// A skin file as the archive reader sees it: every member is taken out.
int FuzzSkinReader(const std::uint8_t* Data, std::size_t Size);
// A BMP file.
int FuzzBmp(const std::uint8_t* Data, std::size_t Size);
// A whole skin file: reader, ini text, bitmaps and the model built on them.
int FuzzSkinData(const std::uint8_t* Data, std::size_t Size);

// ---- syntax definitions

// A .syx file: the text-file list's encoding detection and its writer, then
// the definition reader on the same bytes and the definition writer.
int FuzzSyntaxFile(const std::uint8_t* Data, std::size_t Size);

// ---- controls

// HTML markup for the caption renderer. Byte 0 is half the wrap width,
// byte 1 holds the options (bit 0 wrap, bit 1 an adjust colour, bit 2 the
// back buffer); the rest is the markup in UTF-8. It is parsed, laid out,
// drawn on a memory canvas and hit-tested.
int FuzzHtml(const std::uint8_t* Data, std::size_t Size);
// The text and binary forms of the settings store, each loaded, saved and
// loaded again; the binary form must then save to the same bytes.
int FuzzIniText(const std::uint8_t* Data, std::size_t Size);
int FuzzIniBinary(const std::uint8_t* Data, std::size_t Size);

// ---- tree

// The item stream and the header section stream of the tree; what is
// loaded is saved and must load again.
int FuzzTreeItems(const std::uint8_t* Data, std::size_t Size);
int FuzzHeaderSections(const std::uint8_t* Data, std::size_t Size);

// The most any entry point may allocate in one piece for an input of Size
// bytes: 64 bytes for each input byte plus a fixed allowance, which covers
// the buffers readers and writers size by themselves (the definition
// writer's 1 MiB chunks, the drawing canvas of FuzzHtml). The skin
// entry points that decode bitmaps get the bitmap reader's own cap (16 M
// pixels of 4 bytes) as their allowance: a run-length image of a few bytes
// may fill that much, by the format's rules.
inline constexpr std::size_t FuzzBytesPerInputByte = 64;
inline constexpr std::size_t FuzzAllowance = std::size_t(4) << 20;
inline constexpr std::size_t FuzzImageAllowance = std::size_t(64) << 20;
inline constexpr std::size_t FuzzAllocationBound(std::size_t Size, std::size_t Allowance) {
    return Size * FuzzBytesPerInputByte + Allowance;
}
