#include "tree/WgHeaderPaint.h"

#include <array>

namespace {

// Colour of the expand triangle.
constexpr TColor ExpandGlyphColor = 0xFF000012;

TMemoryBitmap MakeSortBitmap(bool Ascending) {
    // A 6 by 5 triangle in shadow and highlight greys, tip up when ascending.
    constexpr int W = 6, H = 5;
    TMemoryBitmap bmp(W, H, ColorToPixel(HeaderSortBitmapKey));
    const TPixel dark = ColorToPixel(0x808080), light = ColorToPixel(0xFFFFFF);
    for (int row = 0; row < H; ++row) {
        // Row 0 is the tip: one pixel pair wide, growing to the full width.
        const int y = Ascending ? row : H - 1 - row;
        const int half = (row + 1) * W / (2 * H) + 1;
        const int from = W / 2 - half, to = W / 2 + half;
        for (int x = std::max(from, 0); x < std::min(to, W); ++x)
            bmp.SetPixel(x, y, x < W / 2 ? dark : light);
    }
    return bmp;
}

void Line(TCanvas& C, int X1, int Y1, int X2, int Y2) {
    C.MoveTo(X1, Y1);
    C.LineTo(X2, Y2);
}

// A small triangle pointing down (expand or lookup), 5 wide, at (X, Y).
void DownTriangle(TCanvas& C, int X, int Y, TColor Color) {
    C.SetPenColor(Color);
    C.SetPenStyle(psSolid);
    for (int i = 0; i < 3; ++i)
        Line(C, X + i, Y + i, X + 5 - i, Y + i);
}

// A funnel, 5 wide and 6 high, at (X, Y).
void Funnel(TCanvas& C, int X, int Y, TColor Color) {
    C.SetPenColor(Color);
    C.SetPenStyle(psSolid);
    for (int i = 0; i < 3; ++i)
        Line(C, X + i, Y + i, X + 5 - i, Y + i);
    Line(C, X + 2, Y + 3, X + 2, Y + 6);
}

bool IsPressed(const TWgHeaderModel& H, const TWgHeaderSection& S) {
    return H.Pressed() && H.PressedSection() == &S;
}

} // namespace

const TMemoryBitmap& HeaderSortBitmap(bool Ascending) {
    static const TMemoryBitmap ascending = MakeSortBitmap(true);
    static const TMemoryBitmap descending = MakeSortBitmap(false);
    return Ascending ? ascending : descending;
}

void PaintHeaderSection(TCanvas& Canvas, TWgHeaderModel& Header, TWgHeaderSection& Section, TRect R,
                        const TWgHeaderPaintOptions& Options, bool MakingDragImage) {
    // 1. Background.
    TColor color = Section.ParentColor ? Options.Color : Section.Color;
    if (MakingDragImage) color = DragShadeColor(Canvas.ColorToRGB(color), 252);
    Canvas.SetBrushColor(color);
    Canvas.FillRect(R);

    // 2. Edge; the rectangle shrinks by one on each side drawn.
    const bool pressed = IsPressed(Header, Section);
    const bool lit = pressed || (Header.Tracking && Header.HotSection() == &Section);
    unsigned sides = BF_RECT;
    if (lit)
        Canvas.DrawEdge(R, Header.Flat ? BDR_RAISEDOUTER : EDGE_RAISED,
                        Header.Flat ? BF_RECT | BF_FLAT : BF_RECT);
    else if (Header.Flat)
        Canvas.DrawEdge(R, BDR_RAISEDINNER, sides = BF_BOTTOM | BF_RIGHT);
    else
        Canvas.DrawEdge(R, BDR_RAISEDINNER, BF_RECT);
    R = {R.Left + ((sides & BF_LEFT) ? 1 : 0), R.Top + ((sides & BF_TOP) ? 1 : 0),
         R.Right - ((sides & BF_RIGHT) ? 1 : 0), R.Bottom - ((sides & BF_BOTTOM) ? 1 : 0)};

    // 3. Right zone for the expand button and the lookup field.
    const bool rightZone = Section.Expandable || Section.LookupEnabled();
    if (rightZone && R.Width() > 9) {
        R.Right -= 4;
        if (Section.Expandable) DownTriangle(Canvas, R.Right - 6, R.Top + 7, ExpandGlyphColor);
        if (Section.LookupEnabled()) DownTriangle(Canvas, R.Right - 6, R.Top + 2, clBtnText);
        R.Right -= 8;
    }

    // 4. Filter glyph.
    const bool sortMark = Section.SortMode() != hsmNone && Section.ShowSortMark;
    if (Section.FilterEnabled && R.Width() > 9) {
        Funnel(Canvas, R.Right - 6, R.Top + 3,
               Section.FilterIsActive ? Header.ActiveFilterColor : Header.FilterColor);
        if (!sortMark) R.Right -= 6;
    }

    // 5. Sort mark: 9 pixels, none when fewer than 8 remain after left + 5.
    if (sortMark && R.Right - (R.Left + 5) >= 8) {
        // The ascending picture shows when the mode agrees with the inversion
        // flag: the arrow points the way the values fall, as it always has.
        const bool ascendingPicture = (Section.SortMode() == hsmAscend) == Header.InvertSortArrows;
        const TMemoryBitmap& mark = HeaderSortBitmap(ascendingPicture);
        const int y = (Section.FilterEnabled || rightZone)
                          ? R.Top + 8
                          : R.Top + (R.Height() - mark.Height()) / 2 + 3;
        Canvas.Draw(R.Right - 9, y, mark, HeaderSortBitmapKey);
        R.Right -= 9 + 3;
    }

    if (Section.Style == elhsOwnerDraw) {
        if (Options.OnSectionDraw) Options.OnSectionDraw(Canvas, Section, R, pressed);
        return;
    }

    // 6. Image.
    int imageIndex = Section.ImageIndex();
    if (imageIndex == -1 && Header.OnPictureNeeded)
        Header.OnPictureNeeded(Header, &Section, imageIndex);
    if (imageIndex >= 0 && Options.DrawImage && Options.ImageWidth > 0) {
        const int y = R.Top + (R.Height() - Options.ImageHeight) / 2;
        switch (Section.PictureAlign) {
        case hsaLeft:
            Options.DrawImage(Canvas, imageIndex, R.Left + 2, y);
            R.Left += Options.ImageWidth + 4;
            break;
        case hsaRight:
            Options.DrawImage(Canvas, imageIndex, R.Right - Options.ImageWidth - 2, y);
            R.Right -= Options.ImageWidth + 4;
            break;
        case hsaCenter:
            Options.DrawImage(Canvas, imageIndex, R.Left + (R.Width() - Options.ImageWidth) / 2, y);
            break;
        }
    }
    if (Section.Style == elhsPictureOnly || Section.Style == elhsImageIndex) return;

    // 7. Caption.
    const WideString& text = Section.Text();
    if (text.empty() || R.IsEmpty()) return;
    TRect textRect{R.Left + 3, R.Top, R.Right - 3, R.Bottom};
    if (text.rfind(u"<html>", 0) == 0 && Options.DrawMarkup) {
        Options.DrawMarkup(Canvas, text, textRect);
        return;
    }
    TFont font = Options.Font;
    font.Color = Section.FontColor;
    Canvas.SetFont(font);
    Canvas.SetTextBgColor(clNone);
    TWgSAlignment align = Section.Alignment;
    if (Header.RightAlignedText && align != hsaCenter)
        align = align == hsaLeft ? hsaRight : hsaLeft;
    unsigned flags = DT_NOPREFIX | (align == hsaCenter  ? DT_CENTER
                                    : align == hsaRight ? DT_RIGHT
                                                        : DT_LEFT);
    // TextLayout places the caption: 0 at the top, 1 in the middle, 2 at the bottom.
    const unsigned layout = Section.TextLayout == 0   ? DT_TOP
                            : Section.TextLayout == 2 ? DT_BOTTOM
                                                      : DT_VCENTER;
    flags |= Header.WrapCaptions ? DT_WORDBREAK : DT_SINGLELINE | layout | DT_END_ELLIPSIS;
    Canvas.DrawText(text, textRect, flags);
}

void PaintHeader(TCanvas& Canvas, TWgHeaderModel& Header, const TRect& Client,
                 const TWgHeaderPaintOptions& Options) {
    TWgHeaderSections& sections = Header.Sections();
    TWgHeaderSection* locked = Header.LockedSection();
    int right = Client.Left;
    // Sections are walked in display order; their rectangles are asked for
    // by column number, which no longer matches the position once columns
    // have been moved or deleted.
    auto paint = [&](TWgHeaderSection& s) {
        TRect r = Header.GetSectionRect(s.SectionIndex());
        if (&s != locked) {
            r.Left -= Header.LeftPos();
            r.Right -= Header.LeftPos();
        }
        r.Top = Client.Top;
        r.Bottom = Client.Bottom;
        right = std::max(right, r.Right);
        if (r.Right > Client.Left && r.Left < Client.Right)
            PaintHeaderSection(Canvas, Header, s, r, Options);
    };
    for (int i = 0; i < sections.Count(); ++i)
        if (TWgHeaderSection* s = sections.GetSectionByPos(i); s->Visible() && s != locked)
            paint(*s);
    if (locked && locked->Visible()) paint(*locked);
    // The space beyond the last section, with an outer edge.
    if (right < Client.Right) {
        const TRect rest{right, Client.Top, Client.Right, Client.Bottom};
        Canvas.SetBrushColor(Options.Color);
        Canvas.FillRect(rest);
        Canvas.DrawEdge(rest, BDR_RAISEDINNER, Header.Flat ? BF_BOTTOM : BF_RECT);
    }
}
