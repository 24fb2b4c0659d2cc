#pragma once
// The twenty item kind icons and the owner drawing of rows that carry one.
// The icons are our own 16 by 16 bitmaps under resources/images/kinds/,
// made by scripts/make_kind_icons.py; their background is the key colour
// below, left out when a row is drawn.

#include "base/Bitmap.h"
#include "base/Canvas.h"

#include <QPixmap>
#include <QString>

// The bitmap of one item kind. KindIndex is written when the icons are made
// and read by nobody: the kind of an icon is fixed by its slot.
class TKVBitmap : public TMemoryBitmap {
public:
    int KindIndex = 0;
};

inline constexpr int KindIconCount = 20;
// Lime, the background of the icon files.
inline constexpr TColor KindIconTransparentColor = 0x00FF00;

// The folder of the program's form data, images and skins: LEXSMITH_RESOURCES
// when set, else the copy built into the program (":/resources").
QString ResourcesFolder();
QString KindIconPath(int Kind);
// False, with Bitmap left empty, when the icon file is missing or broken.
bool LoadKindBitmap(int Kind, TMemoryBitmap& Bitmap);
// The icon with its background cut out, for image combo boxes; a null
// pixmap when the file is missing.
QPixmap KindPixmap(int Kind);

// One row of a list of kinds: fill the row with the current brush, draw the
// icon at the top left when the row has one and start the text 20 pixels
// further right, then the text at the row's top. The colours are whatever
// the list left on the canvas.
void DrawKindListItem(TCanvas& Canvas, const TRect& Rect, WideView Text, const TKVBitmap* Bitmap);
