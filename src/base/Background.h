#pragma once
// How a control fills its background.

#include <cstdint>

enum TWgBackgroundType : std::uint8_t {
    bgtColorFill = 0,
    bgtStretchBitmap = 1,
    bgtTileBitmap = 2,
    bgtCenterBitmap = 3,
    bgtHorzGradient = 4,
    bgtVertGradient = 5,
};
