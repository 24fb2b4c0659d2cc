#pragma once
// Colours of the program (TColor, 0x00BBGGRR, system colours by index) as Qt
// colours. System colours come from the application palette where a role
// matches and from the classic values otherwise.

#include "base/Types.h"

#include <QColor>

class QPalette;

// RGB value (0x00BBGGRR) of any colour; clNone gives black.
TColor ResolveColor(TColor Color, const QPalette* Palette = nullptr);
QColor ToQColor(TColor Color, const QPalette* Palette = nullptr);
TColor FromQColor(const QColor& Color);
