#pragma once
// The side panel's section icons and the application icon, drawn by code.

#include <QIcon>
#include <QPixmap>

// The 16 by 16 icon beside the label of a section, 0 to 8: options,
// keywords, tags, user menu, class completion, tag completion, hints,
// sample, author information.
QPixmap SideBarIcon(int Section);

// The window icon: the about picture's page and initials at 16, 32 and 48 pixels.
QIcon ApplicationIcon();
