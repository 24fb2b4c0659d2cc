#pragma once
// The abstract drawing surface of the core. Painters of rows, header
// sections, marked-up text and skins are written once against TCanvas; the UI
// supplies one implementation over its painter, the tests a recording one.
//
// The state model is the classic device context: a selected font, a brush
// colour for fills, a pen colour and style for lines and frames, a background
// mode for text, a text alignment (top or baseline) and a clip rectangle.

#include "base/Bitmap.h"
#include "base/Geometry.h"
#include "base/Strings.h"
#include "base/SystemColors.h"
#include "base/Types.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

enum TFontStyle : std::uint8_t { fsBold = 1, fsItalic = 2, fsUnderline = 4, fsStrikeOut = 8 };
using TFontStyles = std::uint8_t;

// A font as painters ask for it. Height is in pixels, classic style: a
// negative value is the character height, a positive one the cell height.
struct TFont {
    WideString Name = u"MS Sans Serif";
    int Height = -11;
    TFontStyles Style = 0;
    std::uint8_t Charset = 0;
    TColor Color = clSystemColor | 8; // window text

    // Point size at the given pixels per inch, and back; rounded half away from zero.
    int PointSize(int PixelsPerInch = 96) const;
    void SetPointSize(int Points, int PixelsPerInch = 96);
    bool operator==(const TFont&) const = default;
};

struct TTextMetrics {
    int Height = 0;
    int Ascent = 0;
    int Descent = 0;
    int AveCharWidth = 0;
    int MaxCharWidth = 0;
};

struct TSize {
    int cx = 0;
    int cy = 0;
    bool operator==(const TSize&) const = default;
};

enum TPenStyle : std::uint8_t { psSolid = 0, psDot = 2, psClear = 5 };
enum TTextAlign : std::uint8_t { taTop = 0, taBaseline = 24 };

// Rectangle text flags, numbered as the classic draw-text call numbers them.
inline constexpr unsigned DT_LEFT = 0x0000;
inline constexpr unsigned DT_TOP = 0x0000;
inline constexpr unsigned DT_CENTER = 0x0001;
inline constexpr unsigned DT_RIGHT = 0x0002;
inline constexpr unsigned DT_VCENTER = 0x0004;
inline constexpr unsigned DT_BOTTOM = 0x0008;
inline constexpr unsigned DT_WORDBREAK = 0x0010;
inline constexpr unsigned DT_SINGLELINE = 0x0020;
inline constexpr unsigned DT_NOCLIP = 0x0100;
inline constexpr unsigned DT_CALCRECT = 0x0400;
inline constexpr unsigned DT_NOPREFIX = 0x0800;
inline constexpr unsigned DT_END_ELLIPSIS = 0x8000;

// Edge kinds and sides of DrawEdge.
inline constexpr unsigned BDR_RAISEDOUTER = 0x1;
inline constexpr unsigned BDR_SUNKENOUTER = 0x2;
inline constexpr unsigned BDR_RAISEDINNER = 0x4;
inline constexpr unsigned BDR_SUNKENINNER = 0x8;
inline constexpr unsigned EDGE_RAISED = BDR_RAISEDOUTER | BDR_RAISEDINNER;
inline constexpr unsigned EDGE_SUNKEN = BDR_SUNKENOUTER | BDR_SUNKENINNER;
inline constexpr unsigned EDGE_ETCHED = BDR_SUNKENOUTER | BDR_RAISEDINNER;
inline constexpr unsigned EDGE_BUMP = BDR_RAISEDOUTER | BDR_SUNKENINNER;
inline constexpr unsigned BF_LEFT = 0x1;
inline constexpr unsigned BF_TOP = 0x2;
inline constexpr unsigned BF_RIGHT = 0x4;
inline constexpr unsigned BF_BOTTOM = 0x8;
inline constexpr unsigned BF_RECT = BF_LEFT | BF_TOP | BF_RIGHT | BF_BOTTOM;
inline constexpr unsigned BF_FLAT = 0x4000;

// Frame controls: the kind and the state flags of a button glyph.
inline constexpr unsigned DFC_BUTTON = 4;
inline constexpr unsigned DFCS_BUTTONCHECK = 0x0000;
inline constexpr unsigned DFCS_BUTTONRADIO = 0x0004;
inline constexpr unsigned DFCS_BUTTON3STATE = 0x0008;
inline constexpr unsigned DFCS_INACTIVE = 0x0100;
inline constexpr unsigned DFCS_CHECKED = 0x0400;
inline constexpr unsigned DFCS_FLAT = 0x4000;

// The classic value of a system colour; other colours pass unchanged.
TColor ClassicColorToRGB(TColor Color);
// Looks a colour name up in the table of classic names ("clRed",
// "clBtnFace", ...), ignoring case. False when the name is unknown.
bool IdentToColor(WideView Name, TColor& Color);

class TCanvas {
public:
    virtual ~TCanvas() = default;

    // Drawing state. Setting the font tells the implementation through FontChanged.
    const TFont& Font() const { return FFont; }
    void SetFont(const TFont& Value);
    TColor BrushColor() const { return FBrushColor; }
    void SetBrushColor(TColor Value) { FBrushColor = Value; }
    TColor PenColor() const { return FPenColor; }
    void SetPenColor(TColor Value) { FPenColor = Value; }
    TPenStyle PenStyle() const { return FPenStyle; }
    void SetPenStyle(TPenStyle Value) { FPenStyle = Value; }
    // Text background: with a background colour text cells are filled
    // with it; with clNone text is drawn transparently.
    TColor TextBgColor() const { return FTextBgColor; }
    void SetTextBgColor(TColor Value) { FTextBgColor = Value; }
    TTextAlign TextAlign() const { return FTextAlign; }
    void SetTextAlign(TTextAlign Value) { FTextAlign = Value; }
    TPoint PenPos() const { return FPenPos; }

    // Metrics of the selected font.
    virtual TTextMetrics TextMetrics() = 0;
    virtual TSize TextExtent(WideView Text) = 0;
    int TextWidth(WideView Text) { return TextExtent(Text).cx; }
    int TextHeight(WideView Text) { return TextExtent(Text).cy; }

    // Painting. Fills use the brush colour, frames and lines the pen.
    virtual void FillRect(const TRect& R) = 0;
    virtual void FrameRect(const TRect& R) = 0;
    virtual void DrawEdge(const TRect& R, unsigned Edge, unsigned Flags) = 0;
    virtual void Ellipse(const TRect& R) = 0;
    void MoveTo(int X, int Y) { FPenPos = {X, Y}; }
    // Draws from the pen position to (X, Y), excluding the end point, and
    // moves the pen there.
    virtual void LineTo(int X, int Y) = 0;
    // (X, Y) is the top left of the text, or its baseline start with taBaseline.
    virtual void TextOut(int X, int Y, WideView Text) = 0;
    // Text in a rectangle with the DT_ flags; gives the height of the text.
    // With DT_CALCRECT nothing is drawn and R is set to the text's extent.
    virtual int DrawText(WideView Text, TRect& R, unsigned Flags) = 0;
    // Bitmaps; pixels of TransparentColor are left out when it is not clNone.
    virtual void Draw(int X, int Y, const TMemoryBitmap& Bitmap,
                      TColor TransparentColor = clNone) = 0;
    virtual void StretchDraw(const TRect& R, const TMemoryBitmap& Bitmap,
                             TColor TransparentColor = clNone) = 0;
    // A check box or radio button glyph in R (Kind DFC_BUTTON, State the
    // DFCS_ flags). The default draws a sunken box, a mark when checked and
    // a grey face when inactive or grayed, from the calls above.
    virtual void DrawFrameControl(const TRect& R, unsigned Kind, unsigned State);
    // The dotted focus frame; the default draws it with dotted lines in the
    // pen colour.
    virtual void DrawFocusRect(const TRect& R);

    // Clipping: the clip rectangle, if any, limits every painting call.
    const std::optional<TRect>& ClipRect() const { return FClip; }
    void SetClipRect(const std::optional<TRect>& R);
    void IntersectClipRect(const TRect& R);
    void SaveClip() { FClipStack.push_back(FClip); }
    // Restoring with nothing saved leaves the clip as it is.
    void RestoreClip();

    // Invalidation sink: painters that change what is on screen report it here.
    std::function<void(const TRect& R)> OnInvalidate;
    void InvalidateRect(const TRect& R) {
        if (OnInvalidate) OnInvalidate(R);
    }

    // Double buffering. Between BeginBuffer and EndBuffer drawing goes to an
    // off-screen copy of R, filled with what the canvas shows there, and
    // EndBuffer copies it back. A canvas that cannot buffer, or whose option
    // is off, draws directly.
    bool DoubleBuffered() const { return FDoubleBuffered; }
    void SetDoubleBuffered(bool Value) { FDoubleBuffered = Value; }
    virtual void BeginBuffer(const TRect& R) { (void)R; }
    virtual void EndBuffer() {}

    // Resolves system colours to RGB; implementations may use their palette.
    virtual TColor ColorToRGB(TColor Color) const { return ClassicColorToRGB(Color); }

protected:
    virtual void FontChanged() {}
    virtual void ClipChanged() {}

    TFont FFont;
    TColor FBrushColor = 0xFFFFFF;
    TColor FPenColor = 0;
    TPenStyle FPenStyle = psSolid;
    TColor FTextBgColor = clNone;
    TTextAlign FTextAlign = taTop;
    TPoint FPenPos;
    std::optional<TRect> FClip;
    std::vector<std::optional<TRect>> FClipStack;
    bool FDoubleBuffered = true;
};

// Metrics of a font in which every character has the same width, so that
// layouts come out exact without a window system: the tests and the
// command-line tools measure with it.
//   pixel height  h = |Height| (0 counts as 11)
//   char width    (h + 1) / 2, plus 1 for bold
//   ascent        h - h / 4, descent h / 4
//   average width the char width; maximum width twice the char width
TTextMetrics FixedFontMetrics(const TFont& Font);

// A canvas that measures with the fixed metrics and paints nothing.
class TFixedMetricsCanvas : public TCanvas {
public:
    TTextMetrics TextMetrics() override { return FixedFontMetrics(FFont); }
    TSize TextExtent(WideView Text) override;
    void FillRect(const TRect&) override {}
    void FrameRect(const TRect&) override {}
    void DrawEdge(const TRect&, unsigned, unsigned) override {}
    void Ellipse(const TRect&) override {}
    void LineTo(int X, int Y) override { MoveTo(X, Y); }
    void TextOut(int, int, WideView) override {}
    int DrawText(WideView Text, TRect& R, unsigned Flags) override;
    void Draw(int, int, const TMemoryBitmap&, TColor) override {}
    void StretchDraw(const TRect&, const TMemoryBitmap&, TColor) override {}

protected:
    // The lines DrawText would make of Text in R: split at line feeds, and
    // with DT_WORDBREAK wrapped at spaces to the width of R.
    std::vector<WideString> TextLines(WideView Text, const TRect& R, unsigned Flags);
};
