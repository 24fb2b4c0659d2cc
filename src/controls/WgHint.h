#pragma once
// Hints: the text a control shows in a small window under the pointer. A
// hint holds a short form for that window and a long form for the status
// line, split at its first "|". A hint whose short form begins with "<html>"
// is markup. Sizing and painting of the window live here; the widget only
// places it.

#include "base/Canvas.h"

// The part before the first "|", or all of Hint without one.
WideString GetShortHint(WideView Hint);
// The part after the first "|", or all of Hint without one.
WideString GetLongHint(WideView Hint);

// Pixels between the window's frame and its text.
inline constexpr int HintMarginX = 2;
inline constexpr int HintMarginY = 2;

// The size of the window that shows Text (a short hint) in Font, with its
// lines broken at spaces to stay within MaxWidth. Empty for empty text.
TSize CalcHintSize(TCanvas& Canvas, WideView Text, const TFont& Font, int MaxWidth);
// Frame, background and text of a hint window of Size.
void PaintHint(TCanvas& Canvas, TSize Size, WideView Text, const TFont& Font, int MaxWidth);
