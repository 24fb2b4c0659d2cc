#pragma once
// A renderer for a small subset of HTML used in captions, menu items, hints
// and tree cells. One pass over the text builds a flat list of items in
// which every line starts with a break item; a second pass measures the
// lines; drawing and hit testing walk the list.

#include "base/Canvas.h"
#include "base/Exceptions.h"
#include "base/WgList.h"

#include <cstdint>
#include <functional>
#include <memory>

class TWgHTMLRender;
class TWgHTMLData;

class EWgHTMLError : public Exception {
public:
    using Exception::Exception;
};

inline constexpr const char* SWgHTMLError =
    "Widgetry HTML engine error - the text is not valid HTML";

// Item types.
inline constexpr std::uint8_t hitText = 0;
inline constexpr std::uint8_t hitSoftBreak = 1;
inline constexpr std::uint8_t hitHardBreak = 2;
inline constexpr std::uint8_t hitParagraph = 3;
inline constexpr std::uint8_t hitImage = 4;
inline constexpr std::uint8_t hitRule = 5;
inline constexpr std::uint8_t hitBullet = 6;
inline constexpr std::uint8_t hitListStart = 7;
inline constexpr std::uint8_t hitIndent = 8;

// Item flags.
inline constexpr std::uint32_t hifLink = 1;
inline constexpr std::uint32_t hifSubscript = 2;
inline constexpr std::uint32_t hifSuperscript = 4;
inline constexpr std::uint32_t hifAbsolute = 8;
inline constexpr std::uint32_t hifParagraphClosed = 0x80000000u;

inline constexpr std::uint16_t NotMeasured = 65535;

class TWgHTMLItem {
public:
    explicit TWgHTMLItem(TWgHTMLData* Owner) : Owner(Owner) {}
    virtual ~TWgHTMLItem() = default;

    TWgHTMLData* Owner;
    std::uint8_t ItemType = hitText;
    WideString Text;
    TFontStyles FontStyle = 0;
    std::int32_t FontHeight = 0;
    std::uint32_t FontCharset = 0;
    TColor FontColor = 0;
    TColor FontBgColor = clNone;
    std::int32_t ColorChanged = 0;
    WideString LinkRef;
    WideString FontName;
    std::uint16_t TextWidth = NotMeasured;
    std::uint16_t Width = 0;
    std::uint16_t Height = 0;
    std::int32_t Indent = 0;
    std::uint32_t Flags = 0;
    bool Transparent = false;

    virtual std::uint16_t GetWidth();
    virtual std::uint16_t GetHeight(int& Descent);

    bool IsBreak() const { return FIsBreak; }
    // Takes over the font, colours, link, flags and indent of Source.
    void AssignStyle(const TWgHTMLItem& Source);
    // Selects the item's font on the canvas; HeightDelta is added to FontHeight.
    void SelectFont(TCanvas& Canvas, int HeightDelta) const;

protected:
    bool FIsBreak = false;
    TCanvas& MeasureCanvas() const;
};

class TWgHTMLBreakItem : public TWgHTMLItem {
public:
    explicit TWgHTMLBreakItem(TWgHTMLData* Owner) : TWgHTMLItem(Owner) { FIsBreak = true; }

    // Alignment in the low word (0 left, 1 center, 2 right), the line's
    // largest descent in the high word.
    std::uint32_t Alignment = 0;
    std::int32_t ListLevel = 0;
    std::int32_t ListItemIndex = -1;

    int Align() const { return int(Alignment & 0xFFFF); }
    int MaxDescent() const { return int(Alignment >> 16); }

    std::uint16_t GetWidth() override;
    std::uint16_t GetHeight(int& Descent) override;

    // Where the layout found this break in the list; checked before use.
    int IndexHint = -1;
};

class TWgHTMLData {
public:
    explicit TWgHTMLData(TWgHTMLRender* Render);
    ~TWgHTMLData();
    TWgHTMLData(const TWgHTMLData&) = delete;
    TWgHTMLData& operator=(const TWgHTMLData&) = delete;

    TWgHTMLRender* Render;
    TColor LinkColor = 0xFF0000;
    TColor DefaultColor = clWindowText;
    TFontStyles LinkStyle = fsUnderline;
    TFontStyles DefaultStyle = 0;
    std::int32_t DefaultHeight = -11;
    std::uint8_t Charset = 0;
    AnsiString DefaultFont = "MS Sans Serif";
    TWgList<TWgHTMLItem> Items; // owned
    TColor DefaultBgColor = clNone;
    // Colours of the link under the mouse.
    TColor HighlightBgColor = clNone;
    TColor HighlightColor = 0x0000FF;
    TWgHTMLItem* HighlightItem = nullptr;
    TRect LastRect;
    TSize TextSize;

    void ClearItems();
};

using TWgHTMLImageNeededEvent =
    std::function<void(TWgHTMLRender& Sender, const WideString& Src, TMemoryBitmap*& Image)>;
using TWgHTMLLinkClickEvent = std::function<void(void* Sender, const WideString& HRef)>;

class TWgHTMLRender {
public:
    // MeasureCanvas does all measuring; it is not owned and must outlive
    // the render. PixelsPerInch scales relative font sizes.
    explicit TWgHTMLRender(TCanvas* MeasureCanvas, int PixelsPerInch = 96);
    virtual ~TWgHTMLRender();
    TWgHTMLRender(const TWgHTMLRender&) = delete;
    TWgHTMLRender& operator=(const TWgHTMLRender&) = delete;

    TWgHTMLImageNeededEvent OnImageNeeded;

    TWgHTMLData* DefaultData() const { return FDefaultData.get(); }
    TWgHTMLData* Data() const { return FData; }
    TCanvas& Canvas() const { return *FCanvas; }
    bool DoubleBuffer() const { return FDoubleBuffer; }
    void SetDoubleBuffer(bool Value) { FDoubleBuffer = Value; }
    int PixelsPerInch() const { return FPixelsPerInch; }

    void PrepareText(WideView Text, int MaxWidth, bool AutoWrap);
    void DrawHtml(TCanvas& Canvas, TPoint Origin, const TRect& R, TColor AdjustColor);
    void DrawHtmlEx(TCanvas& Canvas, TPoint Origin, const TRect& R, TColor AdjustColor,
                    TColor HighlightBg, TColor HighlightFg, TColor NormalBg, TColor NormalFg,
                    bool UseOverride);
    bool LinkAtPoint(TPoint Origin, TPoint Point, const TRect& R, WideString& HRef);
    TWgHTMLItem* ItemAtPoint(TPoint Origin, TPoint Point, const TRect& R);
    void MeasureData();
    void PlainText(WideString& Text) const;
    // A new data object owned by the caller, with the render as its back reference.
    std::unique_ptr<TWgHTMLData> NewData();
    // Null falls back to DefaultData.
    void SetCurrentData(TWgHTMLData* Value) { FData = Value ? Value : FDefaultData.get(); }

    // Clears Image, then asks OnImageNeeded.
    virtual void TriggerImageNeededEvent(const WideString& Src, TMemoryBitmap*& Image);

private:
    struct TPlacement;
    void Parse(WideView Text, int MaxWidth, bool AutoWrap);
    void Layout();
    // Walks the laid-out items in drawing order; Visit gets each item with
    // its place and returns false to stop.
    template <typename TVisit> void Walk(TPoint Origin, const TRect& R, TVisit&& Visit);

    TCanvas* FCanvas;
    int FPixelsPerInch;
    std::unique_ptr<TWgHTMLData> FDefaultData;
    TWgHTMLData* FData;
    bool FDoubleBuffer = true;
};
