#pragma once
// Captions of menu items, buttons and hints whose text begins with "<html>"
// are markup. This measures and draws one such caption through a renderer of
// its own, with the owner's font as the text's default font and colour. A
// caption is parsed where it is used: menus and hints are short.

#include "controls/HTMLRender.h"

// True when Text begins with exactly "<html>"; any other spelling is plain text.
bool IsHTMLCaption(WideView Text);

class THTMLCaption {
public:
    // Parses Text with Font as its default font and colour; a MaxWidth above
    // 0 wraps the lines at that width. Broken markup gives an empty caption.
    THTMLCaption(TCanvas& Canvas, WideView Text, const TFont& Font, int MaxWidth = 0);

    TSize Size() const { return FRender.Data()->TextSize; }
    // The text without its tags, for assistive tools and plain displays.
    WideString PlainText() const;
    // Every part of the text takes Color, whatever the markup says, as a
    // disabled item shows it.
    void ForceColor(TColor Color);
    // Draws the caption with its top left at (X, Y).
    void Draw(TCanvas& Canvas, int X, int Y);

private:
    TWgHTMLRender FRender;
};

// The text of Caption without its tags when it is markup, else as it is.
WideString CaptionPlainText(WideView Caption);
