#include "controls/WgPopupMenuLayout.h"

#include "controls/HTMLCaption.h"
#include "controls/WgToolBarPaint.h"

#include <algorithm>

namespace {

constexpr TColor kHighlight = clSystemColor | 13;
constexpr TColor kHighlightText = clSystemColor | 14;
constexpr TColor kGrayText = clSystemColor | 17;
constexpr TColor kMenuText = clSystemColor | 7;

TColor gFaceColor = clBtnFace;
TColor gShadeColor = clBtnShadow;

bool IsStop(const TWgMenuItem* Item) {
    return Item && Item->Visible() && !Item->IsLine();
}

bool IsMarkup(const TWgPopupMetrics& Metrics, const TWgMenuItem& Item) {
    return Metrics.IsHTML && IsHTMLCaption(Item.Caption());
}

// Seven parts of white to three of the highlight: the selection of the flat style.
TColor LightHighlight(TCanvas& Canvas) {
    const TColor h = Canvas.ColorToRGB(kHighlight);
    auto mix = [](int C) { return (C * 3 + 255 * 7) / 10; };
    return TColor(mix(h & 0xFF)) | (TColor(mix((h >> 8) & 0xFF)) << 8) |
           (TColor(mix((h >> 16) & 0xFF)) << 16);
}

// Image drawn at the size of the column's glyphs, stretched if it differs.
void DrawSized(TCanvas& Canvas, int X, int Y, const TWgImageList& Column,
               const TMemoryBitmap& Image, TColor Key) {
    if (Image.Width() == Column.Width() && Image.Height() == Column.Height())
        Canvas.Draw(X, Y, Image, Key);
    else
        Canvas.StretchDraw(Bounds(X, Y, Column.Width(), Column.Height()), Image, Key);
}

// The item's glyph in the state it is in: the hot or disabled list's image
// where that list has one, else the plain image, greyed when disabled.
void DrawGlyph(TCanvas& Canvas, const TWgPopupMetrics& Metrics, const TWgMenuItem& Item, int X,
               int Y, bool Selected) {
    const TWgImageList& images = *Metrics.Images;
    const int index = Item.ImageIndex();
    const TWgImageList* state = !Item.Enabled() ? Metrics.DisabledImages
                                : Selected      ? Metrics.HotImages
                                                : nullptr;
    if (const TMemoryBitmap* own = state ? state->Get(index) : nullptr; own && !own->Empty()) {
        DrawSized(Canvas, X, Y, images, *own, state->TransparentColor);
        return;
    }
    const TMemoryBitmap* image = images.Get(index);
    if (!image || image->Empty()) return;
    if (Item.Enabled())
        DrawSized(Canvas, X, Y, images, *image, images.TransparentColor);
    else
        DrawSized(Canvas, X, Y, images, GrayedBitmap(*image, images.TransparentColor),
                  images.TransparentColor);
}

// Caption with its accelerator underlined; Y is the top of the text.
void DrawCaption(TCanvas& Canvas, int X, int Y, WideView Caption) {
    int hot = -1;
    const WideString shown = StripHotkey(Caption, &hot);
    Canvas.TextOut(X, Y, shown);
    if (hot < 0) return;
    const int left = X + Canvas.TextWidth(WideView(shown).substr(0, std::size_t(hot)));
    const int width = Canvas.TextWidth(WideView(shown).substr(std::size_t(hot), 1));
    const int baseline = Y + Canvas.TextMetrics().Ascent + 1;
    Canvas.SetPenColor(Canvas.Font().Color);
    Canvas.MoveTo(left, baseline);
    Canvas.LineTo(left + width, baseline);
}

} // namespace

void DrawMenuArrow(TCanvas& Canvas, int X, int MidY, TColor Color) {
    Canvas.SetPenColor(Color);
    for (int i = 0; i < 4; ++i) {
        Canvas.MoveTo(X + i, MidY - 3 + i);
        Canvas.LineTo(X + i, MidY + 4 - i);
    }
}

void DrawMenuCheck(TCanvas& Canvas, int X, int Y, TColor Color) {
    Canvas.SetPenColor(Color);
    for (int d = 0; d < 3; ++d) {
        Canvas.MoveTo(X, Y + 2 + d);
        Canvas.LineTo(X + 3, Y + 5 + d);
        Canvas.LineTo(X + 8, Y + d);
    }
}

TColor PopupMenuFaceColor() {
    return gFaceColor;
}
TColor PopupMenuShadeColor() {
    return gShadeColor;
}
void SetPopupMenuColors(TColor Face, TColor Shade) {
    gFaceColor = Face;
    gShadeColor = Shade;
}

TWgPopupLayout LayoutPopupMenu(TCanvas& Canvas, const TWgMenuItem& Parent,
                               const TWgPopupMetrics& Metrics) {
    TWgPopupLayout layout;
    Canvas.SetFont(Metrics.Font);
    const int imageW = Metrics.Images ? Metrics.Images->Width() : 16;
    const int imageH = Metrics.Images ? Metrics.Images->Height() : 16;
    layout.GlyphColumn = std::max(20, imageW + 2 * Metrics.ImageMargin);
    layout.TextLeft = PopupFrame + layout.GlyphColumn + PopupTextGap;
    const int textH = Canvas.TextMetrics().Height;
    const int itemH = std::max(textH + Metrics.ItemSpace, imageH + 4);

    int textW = 0, shortCutW = 0;
    int y = PopupFrame + PopupPadding;
    for (int i = 0; i < Parent.Count(); ++i) {
        TWgMenuItem* item = Parent.Items(i);
        if (!item->Visible()) continue;
        int h = item->IsLine() ? PopupSeparatorHeight : itemH;
        if (IsMarkup(Metrics, *item)) {
            // Markup may be taller than a line of the menu's font, and has no accelerator.
            const TSize size = THTMLCaption(Canvas, item->Caption(), Metrics.Font).Size();
            h = std::max(size.cy + Metrics.ItemSpace, imageH + 4);
            textW = std::max(textW, size.cx);
        } else if (!item->IsLine()) {
            textW = std::max(textW, Canvas.TextWidth(StripHotkey(item->Caption())));
        }
        layout.Boxes.push_back({item, i, Rect(PopupFrame, y, 0, y + h)});
        y += h;
        if (item->IsLine()) continue;
        if (item->ShortCutKey())
            shortCutW = std::max(shortCutW, Canvas.TextWidth(ShortCutToText(item->ShortCutKey())));
    }
    const int shortCutPart = shortCutW ? PopupShortCutGap + shortCutW : 0;
    layout.ShortCutRight = layout.TextLeft + textW + shortCutPart;
    layout.Width = layout.ShortCutRight + PopupArrowColumn + PopupFrame;
    layout.Height = y + PopupPadding + PopupFrame;
    for (auto& box : layout.Boxes)
        box.Bounds.Right = layout.Width - PopupFrame;
    return layout;
}

int PopupItemAt(const TWgPopupLayout& Layout, TPoint P) {
    for (const auto& box : Layout.Boxes)
        if (box.Bounds.Contains(P)) return box.Index;
    return -1;
}

const TWgPopupItemBox* PopupBoxOf(const TWgPopupLayout& Layout, int Index) {
    for (const auto& box : Layout.Boxes)
        if (box.Index == Index) return &box;
    return nullptr;
}

int NextPopupItem(const TWgMenuItem& Parent, int From, int Step) {
    const int n = Parent.Count();
    if (n <= 0) return -1;
    int i = From < 0 ? (Step > 0 ? -1 : n) : From;
    for (int k = 0; k < n; ++k) {
        i = ((i + Step) % n + n) % n;
        if (IsStop(Parent.Items(i))) return i;
    }
    return -1;
}

int PopupAccelItem(const TWgMenuItem& Parent, int Key, int From, bool& Unique) {
    int first = -1, count = 0;
    const int n = Parent.Count();
    for (int k = 1; k <= n; ++k) {
        const int i = ((From < 0 ? -1 : From) + k) % n;
        const TWgMenuItem* item = Parent.Items(i);
        if (!IsStop(item) || !MenuKeyMatches(Key, item->Caption())) continue;
        if (first < 0) first = i;
        ++count;
    }
    Unique = count == 1;
    return first;
}

void PaintPopupMenu(TCanvas& Canvas, const TWgPopupLayout& Layout, const TWgPopupMetrics& Metrics,
                    int Selected) {
    const bool flat = Metrics.DrawStyle == tdsOfficeXP;
    const TRect all = Rect(0, 0, Layout.Width, Layout.Height);
    Canvas.SetBrushColor(flat ? clWindow : clBtnFace);
    Canvas.FillRect(all);
    if (flat) {
        Canvas.SetBrushColor(gFaceColor);
        Canvas.FillRect(Rect(PopupFrame, PopupFrame, PopupFrame + Layout.GlyphColumn,
                             Layout.Height - PopupFrame));
        Canvas.SetPenColor(gShadeColor);
        Canvas.FrameRect(all);
    } else {
        Canvas.DrawEdge(all, EDGE_RAISED, BF_RECT);
    }

    Canvas.SetFont(Metrics.Font);
    const int textH = Canvas.TextMetrics().Height;
    for (const auto& box : Layout.Boxes) {
        const TRect& r = box.Bounds;
        TWgMenuItem* item = box.Item;
        if (item->IsLine()) {
            const int mid = r.Top + r.Height() / 2;
            Canvas.SetPenColor(gShadeColor);
            Canvas.MoveTo(flat ? Layout.TextLeft : r.Left + 2, mid);
            Canvas.LineTo(r.Right - 2, mid);
            continue;
        }
        const bool selected = box.Index == Selected;
        TColor textColor = item->Enabled() ? kMenuText : kGrayText;
        if (selected && flat) {
            Canvas.SetBrushColor(LightHighlight(Canvas));
            Canvas.FillRect(r);
            Canvas.SetPenColor(kHighlight);
            Canvas.FrameRect(r);
        } else if (selected) {
            Canvas.SetBrushColor(kHighlight);
            Canvas.FillRect(r);
            if (item->Enabled()) textColor = kHighlightText;
        }

        const int glyphX =
            r.Left + (Layout.GlyphColumn - (Metrics.Images ? Metrics.Images->Width() : 16)) / 2;
        const int glyphY =
            r.Top + (r.Height() - (Metrics.Images ? Metrics.Images->Height() : 16)) / 2;
        const bool hasGlyph = Metrics.Images && Metrics.Images->Get(item->ImageIndex());
        if (item->Checked()) {
            if (hasGlyph) {
                Canvas.SetPenColor(kHighlight);
                Canvas.FrameRect(Bounds(glyphX - 2, glyphY - 2, Metrics.Images->Width() + 4,
                                        Metrics.Images->Height() + 4));
            } else {
                DrawMenuCheck(Canvas, glyphX + 4, glyphY + 4, textColor);
            }
        }
        if (hasGlyph) DrawGlyph(Canvas, Metrics, *item, glyphX, glyphY, selected);

        TFont font = Metrics.Font;
        font.Color = textColor;
        Canvas.SetFont(font);
        Canvas.SetTextBgColor(clNone);
        const int textY = r.Top + (r.Height() - textH) / 2;
        if (IsMarkup(Metrics, *item)) {
            THTMLCaption caption(Canvas, item->Caption(), font);
            if (!item->Enabled()) caption.ForceColor(kGrayText);
            caption.Draw(Canvas, Layout.TextLeft, r.Top + (r.Height() - caption.Size().cy) / 2);
            Canvas.SetFont(font);
        } else {
            DrawCaption(Canvas, Layout.TextLeft, textY, item->Caption());
        }
        if (item->ShortCutKey()) {
            const WideString text = ShortCutToText(item->ShortCutKey());
            Canvas.TextOut(Layout.ShortCutRight - Canvas.TextWidth(text), textY, text);
        }
        if (item->Count() > 0)
            DrawMenuArrow(Canvas, r.Right - 12, r.Top + r.Height() / 2, textColor);
    }
}
