#pragma once
// Windows BMP files on the core's memory bitmap, and the pixel operations
// that skin painting is built from. Every bitmap here is opaque (alpha 0xFF);
// the one transparent colour is pure magenta.

#include "base/Bitmap.h"
#include "base/Geometry.h"

#include <cstdint>
#include <vector>

inline constexpr TPixel MagentaPixel = 0xFFFF00FFu;
inline constexpr TColor clMagenta = 0xFF00FF;
inline bool IsMagenta(TPixel P) {
    return (P & 0xFFFFFF) == 0xFF00FF;
}

// Largest image we accept from a file: far above any skin, and small enough
// that a forged header cannot make us allocate without bound.
inline constexpr std::int64_t BmpMaxPixels = 1ll << 24;
inline constexpr int BmpMaxSide = 32768;

// Reads a BMP file: 1, 4, 8, 16, 24 or 32 bits a pixel; uncompressed,
// bit fields, RLE4 and RLE8; bottom-up or top-down. Anything malformed gives
// an empty bitmap and false.
bool LoadBMP(const std::uint8_t* Data, std::size_t Size, TMemoryBitmap& Target);
inline bool LoadBMP(const std::vector<std::uint8_t>& Data, TMemoryBitmap& Target) {
    return LoadBMP(Data.data(), Data.size(), Target);
}
// A 24-bit bottom-up BMP file of the bitmap (empty bitmap: empty result).
std::vector<std::uint8_t> SaveBMP24(const TMemoryBitmap& Bitmap);

// Nearest-neighbour stretch of SrcRect onto DstRect (the colour-on-colour
// mode): destination pixels whose source falls outside Src are left alone,
// and with Transparent so are those whose source is magenta. Clip, when
// given, limits the pixels written.
void StretchCopy(TMemoryBitmap& Dst, const TRect& DstRect, const TMemoryBitmap& Src,
                 const TRect& SrcRect, bool Transparent = false, const TRect* Clip = nullptr);
// A 1:1 copy of Src at (X, Y).
void CopyBitmap(TMemoryBitmap& Dst, int X, int Y, const TMemoryBitmap& Src,
                bool Transparent = false);
// The part Src of a bitmap as a bitmap of its own (clipped to the bitmap).
TMemoryBitmap CropBitmap(const TMemoryBitmap& Bitmap, const TRect& Src);
void FillBitmapRect(TMemoryBitmap& Bitmap, const TRect& R, TPixel P);

void MirrorHorz(TMemoryBitmap& Bitmap);
void MirrorVert(TMemoryBitmap& Bitmap);
void Rotate90(TMemoryBitmap& Bitmap);  // a quarter turn to the left
void Rotate270(TMemoryBitmap& Bitmap); // a quarter turn to the right
void Grayscale(TMemoryBitmap& Bitmap);
// Pixels exactly magenta become Colour (an RGB colour, 0x00BBGGRR).
void ReplaceMagenta(TMemoryBitmap& Bitmap, TColor Colour);
