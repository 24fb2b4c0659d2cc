#include "controls/WgToolBarPaint.h"

#include "controls/HTMLCaption.h"
#include "controls/WgMenu.h"

#include <algorithm>
#include <optional>

namespace {

const TMemoryBitmap* FaceGlyph(const TWgButtonFace& Face) {
    if (!Face.ShowGlyph) return nullptr;
    if (Face.Images) return Face.Images->Get(Face.ImageIndex);
    return Face.Glyph && !Face.Glyph->Empty() ? Face.Glyph : nullptr;
}

// The glyph of the state; StateList is set when it comes from the list made
// for that state (hot or disabled).
const TMemoryBitmap* StateGlyph(const TWgButtonFace& Face, const TWgImageList*& StateList) {
    StateList = nullptr;
    const TMemoryBitmap* glyph = FaceGlyph(Face);
    if (!glyph || !Face.Images) return glyph;
    const TWgImageList* list = !Face.Enabled ? Face.DisabledImages
                               : Face.Hot    ? Face.HotImages
                                             : nullptr;
    const TMemoryBitmap* own = list ? list->Get(Face.ImageIndex) : nullptr;
    if (!own || own->Empty()) return glyph;
    StateList = list;
    return own;
}

TSize GlyphSize(const TWgButtonFace& Face, const TMemoryBitmap* Glyph) {
    if (!Glyph) return {};
    if (Face.Images) return {Face.Images->Width(), Face.Images->Height()};
    return {Glyph->Width(), Glyph->Height()};
}

bool MarkupCaption(const TWgButtonFace& Face) {
    return Face.ShowCaption && Face.IsHTML && IsHTMLCaption(Face.Caption);
}

TFont CaptionFont(const TWgButtonFace& Face) {
    TFont font = Face.Font;
    if (!Face.Enabled) font.Color = clGrayText;
    return font;
}

} // namespace

TSize ToolButtonContentSize(TCanvas& Canvas, const TWgButtonFace& Face) {
    const TSize glyph = GlyphSize(Face, FaceGlyph(Face));
    TSize text;
    if (MarkupCaption(Face)) {
        text = THTMLCaption(Canvas, Face.Caption, Face.Font).Size();
    } else if (Face.ShowCaption && !Face.Caption.empty()) {
        Canvas.SetFont(Face.Font);
        text = Canvas.TextExtent(StripHotkey(Face.Caption));
    }
    const int gap = glyph.cx > 0 && text.cx > 0 ? Face.Spacing : 0;
    return {glyph.cx + gap + text.cx + 2 * ToolButtonPadding,
            std::max(glyph.cy, text.cy) + 2 * ToolButtonPadding};
}

TMemoryBitmap GrayedBitmap(const TMemoryBitmap& Bitmap, TColor Key) {
    TMemoryBitmap grey = Bitmap;
    const TPixel key = ColorToPixel(Key) & 0xFFFFFF;
    for (int y = 0; y < grey.Height(); ++y)
        for (int x = 0; x < grey.Width(); ++x) {
            const TPixel p = grey.Pixel(x, y);
            if (Key != clNone && (p & 0xFFFFFF) == key) continue;
            const int l =
                int(((p >> 16) & 0xFF) * 30 + ((p >> 8) & 0xFF) * 59 + (p & 0xFF) * 11) / 100;
            // Lightened toward white, so it reads as unavailable.
            const TPixel v = TPixel(128 + l / 2);
            grey.SetPixel(x, y, 0xFF000000u | (v << 16) | (v << 8) | v);
        }
    return grey;
}

void PaintToolButton(TCanvas& Canvas, const TRect& R, const TWgButtonFace& Face) {
    if (!Face.Transparent) {
        Canvas.SetBrushColor(Face.Color);
        Canvas.FillRect(R);
    }
    if (Face.ShowBorder) {
        if (Face.Down && Face.Enabled)
            Canvas.DrawEdge(R, BDR_SUNKENOUTER, BF_RECT);
        else if (!Face.Flat || (Face.Hot && Face.Enabled))
            Canvas.DrawEdge(R, Face.Flat ? BDR_RAISEDINNER : EDGE_RAISED, BF_RECT);
    }

    const TWgImageList* stateList = nullptr;
    const TMemoryBitmap* glyph = StateGlyph(Face, stateList);
    const TSize glyphSize = GlyphSize(Face, glyph);
    WideString caption;
    int hot = -1;
    TSize text;
    std::optional<THTMLCaption> markup;
    if (MarkupCaption(Face)) {
        markup.emplace(Canvas, Face.Caption, CaptionFont(Face));
        if (!Face.Enabled) markup->ForceColor(clGrayText);
        text = markup->Size();
    } else if (Face.ShowCaption && !Face.Caption.empty()) {
        Canvas.SetFont(CaptionFont(Face));
        caption = StripHotkey(Face.Caption, &hot);
        text = Canvas.TextExtent(caption);
    }
    const int gap = glyphSize.cx > 0 && text.cx > 0 ? Face.Spacing : 0;
    const int shift = Face.Down && Face.Enabled ? 1 : 0;
    int x = R.Left + (R.Width() - (glyphSize.cx + gap + text.cx)) / 2 + shift;
    if (glyph) {
        const int y = R.Top + (R.Height() - glyphSize.cy) / 2 + shift;
        const TColor key = stateList     ? stateList->TransparentColor
                           : Face.Images ? Face.Images->TransparentColor
                                         : Face.GlyphTransparentColor;
        const bool greyed = !Face.Enabled && !stateList;
        const TMemoryBitmap grey = greyed ? GrayedBitmap(*glyph, key) : TMemoryBitmap();
        const TMemoryBitmap& shown = greyed ? grey : *glyph;
        if (shown.Width() == glyphSize.cx && shown.Height() == glyphSize.cy)
            Canvas.Draw(x, y, shown, key);
        else
            Canvas.StretchDraw(Bounds(x, y, glyphSize.cx, glyphSize.cy), shown, key);
        x += glyphSize.cx + gap;
    }
    if (markup) markup->Draw(Canvas, x, R.Top + (R.Height() - text.cy) / 2 + shift);
    if (!caption.empty()) {
        const int y = R.Top + (R.Height() - text.cy) / 2 + shift;
        Canvas.SetTextBgColor(clNone);
        Canvas.TextOut(x, y, caption);
        if (hot >= 0) {
            const int left = x + Canvas.TextWidth(WideView(caption).substr(0, std::size_t(hot)));
            const int width = Canvas.TextWidth(WideView(caption).substr(std::size_t(hot), 1));
            const int base = y + Canvas.TextMetrics().Ascent + 1;
            Canvas.SetPenColor(Canvas.Font().Color);
            Canvas.MoveTo(left, base);
            Canvas.LineTo(left + width, base);
        }
    }
}
