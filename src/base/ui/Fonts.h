#pragma once
// The forms ask for "Tahoma" and "MS Sans Serif". Where the set-up installed
// the metric-compatible faces that ship with the Windows compatibility
// fonts, they are loaded into the application; otherwise Qt's fallback
// font stands in.

// Loads the faces once; true when "Tahoma" is available afterwards.
bool LoadBundledFonts();
