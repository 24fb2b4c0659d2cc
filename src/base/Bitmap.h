#pragma once
// The memory bitmap of the core: width, height and 32-bit pixels, rows top
// to bottom. A pixel is 0xAARRGGBB (the layout of a 32-bit image in the UI
// toolkit, so the UI can wrap the pixels without converting them); colours
// of the program (TColor) are 0x00BBGGRR and convert with the helpers below.

#include "base/Types.h"

#include <cstdint>
#include <vector>

using TPixel = std::uint32_t;

inline constexpr TPixel ColorToPixel(TColor C) {
    return 0xFF000000u | ((C & 0xFF) << 16) | (C & 0xFF00) | ((C >> 16) & 0xFF);
}
inline constexpr TColor PixelToColor(TPixel P) {
    return ((P & 0xFF) << 16) | (P & 0xFF00) | ((P >> 16) & 0xFF);
}

class TMemoryBitmap {
public:
    TMemoryBitmap() = default;
    TMemoryBitmap(int Width, int Height, TPixel Fill = 0xFF000000u) {
        SetSize(Width, Height, Fill);
    }

    int Width() const { return FWidth; }
    int Height() const { return FHeight; }
    bool Empty() const { return FWidth <= 0 || FHeight <= 0; }

    // Negative or absurd sizes give an empty bitmap.
    void SetSize(int Width, int Height, TPixel Fill = 0xFF000000u) {
        if (Width <= 0 || Height <= 0 || std::int64_t(Width) * Height > (std::int64_t(1) << 28)) {
            FWidth = FHeight = 0;
            FPixels.clear();
            return;
        }
        FWidth = Width;
        FHeight = Height;
        FPixels.assign(std::size_t(Width) * std::size_t(Height), Fill);
    }

    bool Contains(int X, int Y) const { return X >= 0 && Y >= 0 && X < FWidth && Y < FHeight; }
    TPixel Pixel(int X, int Y) const { return FPixels[std::size_t(Y) * FWidth + std::size_t(X)]; }
    void SetPixel(int X, int Y, TPixel P) { FPixels[std::size_t(Y) * FWidth + std::size_t(X)] = P; }
    TPixel* ScanLine(int Y) { return FPixels.data() + std::size_t(Y) * FWidth; }
    const TPixel* ScanLine(int Y) const { return FPixels.data() + std::size_t(Y) * FWidth; }
    const std::vector<TPixel>& Pixels() const { return FPixels; }

    bool operator==(const TMemoryBitmap& Other) const = default;

private:
    int FWidth = 0;
    int FHeight = 0;
    std::vector<TPixel> FPixels;
};
