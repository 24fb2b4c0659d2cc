#pragma once
// The program's own glyphs, drawn by resources/images/make_glyphs.py and
// linked in, so that no image file is needed at run time.

#include "base/ImageList.h"

// Twelve 16 by 16 glyphs of the main menu and the toolbars, in this order:
// 0 new, 1 open, 2 save, 3 save as, 4 exit, 5 help content, 6 about,
// 7 add, 8 rename, 9 edit, 10 delete, 11 sort. Magenta is transparent.
TWgImageList MainMenuGlyphs();
// 0 up, 1 down.
TWgImageList ArrowGlyphs();
