#include "controls/SkinPalette.h"

#include "skin/data.h"

#include <algorithm>

TWindowPalette WindowPaletteOf(const TSkinDataModel* Skin) {
    if (!Skin) return PlainWindowPalette();
    // CustomColors[i] is key "Color<i>" of the skin's custom colours.
    return {Skin->ButtonFace, Skin->CustomColors[1], Skin->CustomColors[2], Skin->CustomColors[3],
            Skin->Menubar};
}

TTopMenuItemColors TopMenuItemColorsOf(const TSkinDataModel* Skin) {
    if (!Skin) return {};
    return {Skin->Hilight, Skin->HilightText, Skin->MenuBarText};
}

const TMemoryBitmap* SkinMenuBarPicture(const TSkinDataModel* Skin) {
    if (!Skin || !Skin->MenuBar || Skin->MenuBar->Map.Empty()) return nullptr;
    return &Skin->MenuBar->Map;
}

TMemoryBitmap TopHalf(const TMemoryBitmap& Bitmap) {
    // One row high gives nothing, as a bitmap cut to height 0 would.
    TMemoryBitmap half(Bitmap.Width(), Bitmap.Height() / 2);
    for (int y = 0; y < half.Height(); ++y)
        std::copy_n(Bitmap.ScanLine(y), half.Width(), half.ScanLine(y));
    return half;
}
