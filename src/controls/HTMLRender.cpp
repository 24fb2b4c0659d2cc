#include "controls/HTMLRender.h"

#include "wide/CodePage.h"

#include <algorithm>
#include <climits>

// ---------------------------------------------------------------- items

namespace {

std::uint16_t Clamp16(long long Value) {
    // 65535 is the "not measured" mark of the width cache, so sizes stop below it.
    return std::uint16_t(std::clamp<long long>(Value, 0, 65534));
}

// Indents are kept within what a width can be either way, so that lists
// nested in a paragraph of any indent add and take back without overflow.
int ClampIndent(long long Value) {
    return int(std::clamp<long long>(Value, -65534, 65534));
}

int Sign(int Value) {
    return (Value > 0) - (Value < 0);
}

} // namespace

TCanvas& TWgHTMLItem::MeasureCanvas() const {
    return Owner->Render->Canvas();
}

void TWgHTMLItem::AssignStyle(const TWgHTMLItem& Source) {
    FontStyle = Source.FontStyle;
    FontHeight = Source.FontHeight;
    FontCharset = Source.FontCharset;
    FontColor = Source.FontColor;
    FontBgColor = Source.FontBgColor;
    ColorChanged = Source.ColorChanged;
    LinkRef = Source.LinkRef;
    FontName = Source.FontName;
    Indent = Source.Indent;
    // Absolute position belongs to one indent item and a closed paragraph
    // to one break; neither passes on.
    Flags = Source.Flags & ~(hifAbsolute | hifParagraphClosed);
}

void TWgHTMLItem::SelectFont(TCanvas& Canvas, int HeightDelta) const {
    const TFont& current = Canvas.Font();
    int height = FontHeight + HeightDelta;
    if (current.Height == height && current.Style == FontStyle &&
        current.Charset == std::uint8_t(FontCharset) && current.Color == FontColor &&
        current.Name == FontName)
        return;
    TFont font;
    font.Name = FontName;
    font.Height = height;
    font.Style = FontStyle;
    font.Charset = std::uint8_t(FontCharset);
    font.Color = FontColor;
    Canvas.SetFont(font);
}

// Subscripts and superscripts are measured two pixels "smaller" in the
// signed height, which with negative heights makes the measured font the
// larger one; drawing uses another height. Kept as it is on purpose.
static int MeasureDelta(const TWgHTMLItem& Item) {
    return (Item.Flags & (hifSubscript | hifSuperscript)) ? -2 : 0;
}

std::uint16_t TWgHTMLItem::GetWidth() {
    switch (ItemType) {
    case hitText:
        if (TextWidth == NotMeasured) {
            TCanvas& canvas = MeasureCanvas();
            SelectFont(canvas, MeasureDelta(*this));
            TextWidth = Clamp16(canvas.TextExtent(Text).cx);
        }
        return TextWidth;
    case hitImage:
    case hitRule:
    case hitIndent:
        return Width;
    default:
        return 0;
    }
}

std::uint16_t TWgHTMLItem::GetHeight(int& Descent) {
    Descent = 0;
    switch (ItemType) {
    case hitText: {
        TCanvas& canvas = MeasureCanvas();
        SelectFont(canvas, MeasureDelta(*this));
        TTextMetrics m = canvas.TextMetrics();
        Descent = m.Descent;
        return Clamp16(std::abs(m.Height));
    }
    case hitImage:
        return Height;
    default:
        return 0;
    }
}

std::uint16_t TWgHTMLBreakItem::GetWidth() {
    if (ItemType != hitBullet && ItemType != hitListStart) return 0;
    TCanvas& canvas = MeasureCanvas();
    SelectFont(canvas, 0);
    TTextMetrics m = canvas.TextMetrics();
    return Clamp16(ItemType == hitBullet ? m.AveCharWidth : m.MaxCharWidth);
}

std::uint16_t TWgHTMLBreakItem::GetHeight(int& Descent) {
    Descent = 0;
    if (ItemType != hitSoftBreak && ItemType != hitHardBreak && ItemType != hitBullet) return 0;
    // A line that holds nothing but its break still takes the font's height.
    const TWgList<TWgHTMLItem>& items = Owner->Items;
    int index = IndexHint;
    if (index < 0 || index >= items.Count() || items[index] != this) index = items.IndexOf(this);
    bool nextIsBreak = index < 0 || index + 1 >= items.Count() || items[index + 1]->IsBreak();
    if (!nextIsBreak) return 0;
    TCanvas& canvas = MeasureCanvas();
    SelectFont(canvas, 0);
    return Clamp16(std::abs(canvas.TextMetrics().Height));
}

// ---------------------------------------------------------------- data

TWgHTMLData::TWgHTMLData(TWgHTMLRender* Render) : Render(Render) {
    Items.OnDelete = [](TWgList<TWgHTMLItem>&, TWgHTMLItem* Item) { delete Item; };
}

TWgHTMLData::~TWgHTMLData() {
    ClearItems();
}

void TWgHTMLData::ClearItems() {
    HighlightItem = nullptr;
    Items.Clear();
}

// ---------------------------------------------------------------- parser

namespace {

struct TFontRecord {
    WideString Name;
    std::int32_t Height;
    TColor Color;
    TColor BgColor;
};

using TAttributes = std::vector<std::pair<WideString, WideString>>;

// Whole text as a signed 32-bit decimal, or Default.
int StrToIntDef(WideView S, int Default) {
    std::size_t i = 0;
    bool negative = false;
    if (i < S.size() && (S[i] == u'+' || S[i] == u'-')) negative = S[i++] == u'-';
    if (i >= S.size()) return Default;
    long long value = 0;
    for (; i < S.size(); ++i) {
        if (S[i] < u'0' || S[i] > u'9') return Default;
        value = value * 10 + (S[i] - u'0');
        if (value > 2147483648LL) return Default;
    }
    if (negative) value = -value;
    if (value > INT_MAX || value < INT_MIN) return Default;
    return int(value);
}

int HexDigit(char16_t C) {
    if (C >= u'0' && C <= u'9') return C - u'0';
    if (C >= u'a' && C <= u'f') return C - u'a' + 10;
    if (C >= u'A' && C <= u'F') return C - u'A' + 10;
    return -1;
}

// "#rrggbb" or a colour name with or without its "cl" prefix; false leaves
// Color alone.
bool ParseColor(WideView S, TColor& Color) {
    if (!S.empty() && S[0] == u'#') {
        if (S.size() != 7) return false;
        unsigned rgb[3];
        for (int i = 0; i < 3; ++i) {
            int hi = HexDigit(S[1 + 2 * i]), lo = HexDigit(S[2 + 2 * i]);
            if (hi < 0 || lo < 0) return false;
            rgb[i] = unsigned(hi * 16 + lo);
        }
        Color = rgb[0] | (rgb[1] << 8) | (rgb[2] << 16);
        return true;
    }
    WideString name(S);
    if (WideLowerCase(name.substr(0, 2)) != u"cl") name = u"cl" + name;
    return IdentToColor(name, Color);
}

long long MulDiv(int Value, int Mul, int Div) {
    long long p = (long long)Value * Mul;
    long long q = (std::llabs(p) + Div / 2) / Div;
    return p < 0 ? -q : q;
}

class THTMLParser {
public:
    THTMLParser(TWgHTMLRender& Render, TWgHTMLData& Data, WideView Text, int MaxWidth,
                bool AutoWrap)
        : FRender(Render), FData(Data), FItems(Data.Items), FText(Text), FMaxWidth(MaxWidth),
          FAutoWrap(AutoWrap) {
        std::size_t zero = FText.find(u'\0');
        if (zero != WideView::npos) FText = FText.substr(0, zero);
    }

    void Run();

private:
    void TakeChar(char16_t C);
    void CheckWrap();
    void Wrap();
    void ReadEntity();
    void ReadTag();
    void ReadAttributes(TAttributes& Attributes);
    void CloseCurrent();
    void HandleTag(const WideString& Name, const TAttributes& Attributes);
    TWgHTMLBreakItem* AddBreak(std::uint8_t Type);
    TWgHTMLBreakItem* LastBreak() const;
    std::uint32_t LastAlignment() const;
    void RemoveBlankSinceBreak();
    void RemoveTrailingHardBreak();
    void Add(std::unique_ptr<TWgHTMLItem> Item);
    std::unique_ptr<TWgHTMLItem> NewTextItem(const TWgHTMLItem& Style) {
        auto item = std::make_unique<TWgHTMLItem>(&FData);
        item->AssignStyle(Style);
        return item;
    }
    void ApplySize(WideView Size);

    TWgHTMLRender& FRender;
    TWgHTMLData& FData;
    TWgList<TWgHTMLItem>& FItems;
    WideView FText;
    std::size_t FPos = 0;
    int FMaxWidth;
    bool FAutoWrap;
    std::unique_ptr<TWgHTMLItem> FBase;
    std::unique_ptr<TWgHTMLItem> FCur;
    std::vector<TFontRecord> FStack;
    int FListLevel = 0;
    // The width of the items since the last break and that break, kept up
    // as items are added so that a wrap test does not walk the whole line;
    // a removal from the list makes the next test count afresh.
    bool FLineValid = false;
    long long FLineSum = 0;
    TWgHTMLItem* FLineBreak = nullptr;
    // The last item that is not a link, for the style after "/a"; kept up the same way.
    bool FPlainValid = true;
    TWgHTMLItem* FLastPlain = nullptr;
};

void THTMLParser::Add(std::unique_ptr<TWgHTMLItem> Item) {
    TWgHTMLItem* item = Item.get();
    FItems.Add(Item.release());
    if (!(item->Flags & hifLink)) FLastPlain = item;
    if (!FLineValid) return;
    if (item->IsBreak()) {
        FLineBreak = item;
        FLineSum = 0;
    } else {
        FLineSum += item->GetWidth();
    }
}

bool Has(const TAttributes& A, const char16_t* Name) {
    for (const auto& [name, value] : A)
        if (name == Name) return true;
    return false;
}

// The value of the attribute, with one pair of matching quotes removed.
WideString Value(const TAttributes& A, const char16_t* Name) {
    for (const auto& [name, value] : A)
        if (name == Name) {
            if (value.size() >= 2 && value.front() == value.back() &&
                (value.front() == u'"' || value.front() == u'\''))
                return value.substr(1, value.size() - 2);
            return value;
        }
    return {};
}

void THTMLParser::Run() {
    FData.ClearItems();
    FBase = std::make_unique<TWgHTMLItem>(&FData);
    FBase->FontStyle = FData.DefaultStyle;
    FBase->FontName = AnsiToWide(FData.DefaultFont);
    FBase->FontHeight = FData.DefaultHeight;
    FBase->FontCharset = FData.Charset;
    FBase->FontColor = FData.DefaultColor;
    FBase->FontBgColor = FData.DefaultBgColor;
    FCur = NewTextItem(*FBase);

    while (FPos < FText.size()) {
        char16_t c = FText[FPos];
        if (c == u'<') {
            ++FPos;
            ReadTag();
        } else if (c == u'\r') {
            ++FPos;
            if (FPos < FText.size() && FText[FPos] == u'\n') ++FPos;
        } else if (c == u'&' && !(FPos + 1 < FText.size() && FText[FPos + 1] == u' ')) {
            ++FPos;
            ReadEntity();
        } else if (c == u' ') {
            ++FPos;
            if (FCur->Text.empty() || FCur->Text.back() != u' ') TakeChar(c);
        } else {
            ++FPos;
            TakeChar(c);
        }
    }

    if (FCur->ItemType != hitText || !FCur->Text.empty()) Add(std::move(FCur));
    if (FItems.Count() > 0 && FItems[0]->ItemType != hitParagraph) {
        auto para = std::make_unique<TWgHTMLBreakItem>(&FData);
        para->AssignStyle(*FBase);
        para->ItemType = hitParagraph;
        FItems.Insert(0, para.release());
    }
}

void THTMLParser::ReadEntity() {
    std::size_t end = FText.find(u';', FPos);
    WideView name = FText.substr(FPos, end == WideView::npos ? WideView::npos : end - FPos);
    FPos = end == WideView::npos ? FText.size() : end + 1;
    int code = -1;
    if (!name.empty() && name[0] == u'#') {
        code = StrToIntDef(name.substr(1), 32);
    } else {
        static const struct {
            const char16_t* Name;
            int Code;
        } entities[] = {{u"nbsp", 32},  {u"amp", 38},   {u"quot", 34},  {u"gt", 62},
                        {u"lt", 60},    {u"euro", 192}, {u"sect", 167}, {u"reg", 174},
                        {u"copy", 169}, {u"para", 182}, {u"trade", 153}};
        // The euro sign's 192 is a code of the old font tables; kept as it is.
        WideString lower = WideLowerCase(name);
        for (const auto& entity : entities)
            if (lower == entity.Name) code = entity.Code;
        if (code < 0) return; // an unknown name gives nothing
    }
    if (code == 32) {
        if (FCur->Text.empty() || FCur->Text.back() != u' ') TakeChar(u' ');
    } else {
        TakeChar(char16_t(code));
    }
}

void THTMLParser::TakeChar(char16_t C) {
    FCur->Text += C;
    FCur->TextWidth = NotMeasured;
    if (FAutoWrap) CheckWrap();
}

void THTMLParser::CheckWrap() {
    if (!FLineValid) {
        FLineSum = 0;
        FLineBreak = nullptr;
        for (int i = FItems.Count() - 1; i >= 0; --i) {
            TWgHTMLItem* item = FItems[i];
            if (item->IsBreak()) {
                FLineBreak = item;
                break;
            }
            FLineSum += item->GetWidth();
        }
        FLineValid = true;
    }
    long long width = FCur->GetWidth() + FLineSum + (FLineBreak ? FLineBreak->Indent : 0);
    if (width > FMaxWidth) Wrap();
}

void THTMLParser::Wrap() {
    WideString& text = FCur->Text;
    WideString moved;
    std::size_t space = text.rfind(u' ');
    bool lastIsBreak = FItems.Count() > 0 && FItems.Last()->IsBreak();
    if (space == WideString::npos && lastIsBreak) {
        // The word is longer than the line: only the new character moves on.
        moved = text.substr(text.size() - 1);
        text.pop_back();
    } else if (space != WideString::npos) {
        moved = text.substr(space + 1);
        text.resize(space + 1);
    } else {
        moved.swap(text);
    }
    FCur->TextWidth = NotMeasured;

    std::unique_ptr<TWgHTMLItem> next = NewTextItem(*FCur);
    next->Text = std::move(moved);
    if (!FCur->Text.empty()) Add(std::move(FCur));
    const TWgHTMLItem& fontSource = FItems.Count() > 0 ? *FItems.Last() : *next;
    auto brk = std::make_unique<TWgHTMLBreakItem>(&FData);
    brk->AssignStyle(fontSource);
    brk->ItemType = hitSoftBreak;
    if (TWgHTMLBreakItem* last = LastBreak()) {
        brk->Alignment = last->Alignment & 0xFFFF;
        brk->Indent = last->Indent;
        brk->ListLevel = last->ListLevel;
        brk->ListItemIndex = last->ListItemIndex;
    }
    Add(std::move(brk));
    FCur = std::move(next);
}

void THTMLParser::ReadTag() {
    std::size_t start = FPos;
    while (FPos < FText.size() && FText[FPos] != u' ' && FText[FPos] != u'>')
        ++FPos;
    WideView rawName = FText.substr(start, FPos - start);
    if (rawName.substr(0, 3) == u"!--") {
        std::size_t end = FText.find(u"-->", start + 3);
        FPos = end == WideView::npos ? FText.size() : end + 3;
        return;
    }
    WideString name = WideLowerCase(rawName);
    TAttributes attributes;
    if (FPos < FText.size() && FText[FPos] == u' ')
        ReadAttributes(attributes);
    else if (FPos < FText.size())
        ++FPos; // the ">"
    HandleTag(name, attributes);
}

void THTMLParser::ReadAttributes(TAttributes& Attributes) {
    WideString current;
    char16_t quote = 0;
    auto flush = [&] {
        std::size_t eq = current.find(u'=');
        // An attribute without "=" is dropped.
        if (eq != WideString::npos)
            Attributes.emplace_back(WideLowerCase(WideView(current).substr(0, eq)),
                                    current.substr(eq + 1));
        current.clear();
    };
    while (FPos < FText.size()) {
        char16_t c = FText[FPos++];
        if (quote) {
            current += c;
            if (c == quote) quote = 0;
        } else if (c == u'"' || c == u'\'') {
            quote = c;
            current += c;
        } else if (c == u'>') {
            break;
        } else if (c == u' ') {
            flush();
        } else {
            current += c;
        }
    }
    flush();
}

void THTMLParser::CloseCurrent() {
    if (!FCur->Text.empty() || FCur->ItemType != hitText) {
        std::unique_ptr<TWgHTMLItem> next = NewTextItem(*FCur);
        Add(std::move(FCur));
        FCur = std::move(next);
    }
    // An empty text item simply carries on as the new one.
}

TWgHTMLBreakItem* THTMLParser::LastBreak() const {
    for (int i = FItems.Count() - 1; i >= 0; --i)
        if (FItems[i]->IsBreak()) return static_cast<TWgHTMLBreakItem*>(FItems[i]);
    return nullptr;
}

std::uint32_t THTMLParser::LastAlignment() const {
    TWgHTMLBreakItem* last = LastBreak();
    return last ? last->Alignment & 0xFFFF : 0;
}

TWgHTMLBreakItem* THTMLParser::AddBreak(std::uint8_t Type) {
    auto brk = std::make_unique<TWgHTMLBreakItem>(&FData);
    brk->AssignStyle(*FCur);
    brk->ItemType = Type;
    TWgHTMLBreakItem* result = brk.get();
    Add(std::move(brk));
    return result;
}

void THTMLParser::RemoveBlankSinceBreak() {
    int i = FItems.Count() - 1;
    while (i >= 0 && !FItems[i]->IsBreak()) {
        TWgHTMLItem* item = FItems[i];
        if (item->ItemType != hitText || !Trim(item->Text).empty()) return;
        --i;
    }
    if (i < 0 || (FItems[i]->ItemType != hitSoftBreak && FItems[i]->ItemType != hitHardBreak))
        return;
    FLineValid = false;
    FPlainValid = false;
    while (FItems.Count() - 1 > i)
        FItems.Delete(FItems.Count() - 1);
}

void THTMLParser::RemoveTrailingHardBreak() {
    if (FItems.Count() > 0 && FItems.Last()->ItemType == hitHardBreak) {
        FLineValid = false;
        FPlainValid = false;
        FItems.Delete(FItems.Count() - 1);
    }
}

void THTMLParser::ApplySize(WideView Size) {
    int current = FCur->FontHeight;
    long long height;
    if (!Size.empty() && (Size[0] == u'+' || Size[0] == u'-')) {
        long long delta = MulDiv(StrToIntDef(Size, 0), FRender.PixelsPerInch(), 72);
        long long magnitude = std::llabs((long long)current) + delta;
        height = current < 0 ? -magnitude : magnitude;
    } else {
        height = StrToIntDef(Size, current);
    }
    // Font heights stay within 16 bits, as every measured size does.
    FCur->FontHeight = std::int32_t(std::clamp<long long>(height, -32767, 32767));
}

void THTMLParser::HandleTag(const WideString& Name, const TAttributes& A) {
    static const char16_t* const known[] = {
        u"sub",        u"/sub", u"sup", u"/sup", u"b",   u"/b",   u"i",    u"/i", u"strikeout",
        u"/strikeout", u"u",    u"/u",  u"ul",   u"/ul", u"li",   u"p",    u"/p", u"br",
        u"ind",        u"img",  u"a",   u"/a",   u"hr",  u"font", u"/font"};
    bool isKnown = false;
    for (const char16_t* k : known)
        if (Name == k) isKnown = true;
    if (!isKnown) return; // "html" and unknown tags are no-ops and leave the current item open
    CloseCurrent();
    TWgHTMLItem& cur = *FCur;
    auto setFlag = [&](std::uint32_t Flag, bool On) {
        cur.Flags = On ? cur.Flags | Flag : cur.Flags & ~Flag;
    };
    auto setStyle = [&](TFontStyles Style, bool On) {
        cur.FontStyle = On ? cur.FontStyle | Style : cur.FontStyle & ~Style;
    };
    bool closing = Name[0] == u'/';
    WideView bare = WideView(Name).substr(closing ? 1 : 0);

    if (bare == u"sub")
        setFlag(hifSubscript, !closing);
    else if (bare == u"sup")
        setFlag(hifSuperscript, !closing);
    else if (bare == u"b")
        setStyle(fsBold, !closing);
    else if (bare == u"i")
        setStyle(fsItalic, !closing);
    else if (bare == u"strikeout")
        setStyle(fsStrikeOut, !closing);
    else if (bare == u"u")
        setStyle(fsUnderline, !closing);
    else if (Name == u"ul") {
        RemoveBlankSinceBreak();
        ++FListLevel;
        std::uint32_t align = LastAlignment();
        TWgHTMLBreakItem* brk = AddBreak(hitListStart);
        brk->Alignment = align;
        brk->ListLevel = FListLevel;
        brk->Indent = ClampIndent((long long)brk->Indent + brk->GetWidth());
        cur.Indent = brk->Indent;
    } else if (Name == u"/ul") {
        --FListLevel;
        // The item counts as a list start for one moment, to give the width to take back.
        TWgHTMLBreakItem probe(&FData);
        probe.AssignStyle(cur);
        probe.ItemType = hitListStart;
        cur.Indent = ClampIndent((long long)cur.Indent - probe.GetWidth());
        RemoveTrailingHardBreak();
        std::uint32_t align = LastAlignment();
        AddBreak(hitHardBreak)->Alignment = align;
    } else if (Name == u"li") {
        RemoveTrailingHardBreak();
        std::uint32_t align = LastAlignment();
        TWgHTMLBreakItem* brk = AddBreak(hitBullet);
        brk->Alignment = align;
        brk->ListLevel = FListLevel;
        brk->ListItemIndex = -1;
    } else if (bare == u"p") {
        WideString align = WideLowerCase(Value(A, u"align"));
        TWgHTMLBreakItem* brk = AddBreak(hitParagraph);
        brk->Alignment = align == u"center" ? 1 : align == u"right" ? 2 : 0;
        brk->Indent = ClampIndent(StrToIntDef(Value(A, u"indent"), 0));
        if (closing) brk->Flags |= hifParagraphClosed;
        cur.Indent = brk->Indent;
    } else if (Name == u"br") {
        std::uint32_t align = LastAlignment();
        AddBreak(hitHardBreak)->Alignment = align;
    } else if (Name == u"ind") {
        if (!Has(A, u"width")) return;
        auto ind = NewTextItem(cur);
        ind->ItemType = hitIndent;
        ind->Width = Clamp16(StrToIntDef(Value(A, u"width"), 0));
        if (WideLowerCase(Value(A, u"pos")) == u"abs") ind->Flags |= hifAbsolute;
        Add(std::move(ind));
    } else if (Name == u"img") {
        if (!Has(A, u"src")) return;
        auto img = NewTextItem(cur);
        img->ItemType = hitImage;
        img->Text = Value(A, u"src");
        img->Transparent = WideLowerCase(Value(A, u"transparent")) != u"solid";
        TMemoryBitmap* bitmap = nullptr;
        FRender.TriggerImageNeededEvent(img->Text, bitmap);
        int w = bitmap ? bitmap->Width() : 0, h = bitmap ? bitmap->Height() : 0;
        img->Width = Clamp16(Has(A, u"width") ? StrToIntDef(Value(A, u"width"), w) : w);
        img->Height = Clamp16(Has(A, u"height") ? StrToIntDef(Value(A, u"height"), h) : h);
        Add(std::move(img));
    } else if (Name == u"a") {
        if (!Has(A, u"href")) return;
        cur.Flags |= hifLink;
        cur.LinkRef = Value(A, u"href");
        // A link takes the link style in place of the style it stands in.
        cur.FontColor = FData.LinkColor;
        cur.FontStyle = FData.LinkStyle;
    } else if (Name == u"/a") {
        cur.Flags &= ~hifLink;
        cur.LinkRef.clear();
        if (!FPlainValid) {
            FLastPlain = nullptr;
            for (int i = FItems.Count() - 1; i >= 0 && !FLastPlain; --i)
                if (!(FItems[i]->Flags & hifLink)) FLastPlain = FItems[i];
            FPlainValid = true;
        }
        cur.FontStyle = FLastPlain ? FLastPlain->FontStyle : FData.DefaultStyle;
        cur.FontColor = FLastPlain ? FLastPlain->FontColor : FData.DefaultColor;
    } else if (Name == u"hr") {
        std::uint32_t align = LastAlignment();
        AddBreak(hitHardBreak)->Alignment = align;
        auto rule = NewTextItem(cur);
        rule->ItemType = hitRule;
        rule->Width = Clamp16(StrToIntDef(Value(A, u"width"), 0));
        Add(std::move(rule));
        AddBreak(hitHardBreak)->Alignment = align;
    } else if (Name == u"font") {
        FStack.push_back({cur.FontName, cur.FontHeight, cur.FontColor, cur.FontBgColor});
        if (Has(A, u"face")) cur.FontName = Value(A, u"face");
        if (Has(A, u"name")) cur.FontName = Value(A, u"name");
        if (Has(A, u"size")) ApplySize(Value(A, u"size"));
        if (Has(A, u"color")) ParseColor(Value(A, u"color"), cur.FontColor);
        if (Has(A, u"bgcolor")) ParseColor(Value(A, u"bgcolor"), cur.FontBgColor);
        if (Has(A, u"color") || Has(A, u"bgcolor")) ++cur.ColorChanged;
    } else if (Name == u"/font") {
        // An unmatched closing tag finds the stack empty and does nothing.
        if (FStack.empty()) return;
        TFontRecord record = std::move(FStack.back());
        FStack.pop_back();
        if (record.Color != cur.FontColor || record.BgColor != cur.FontBgColor) --cur.ColorChanged;
        cur.FontName = std::move(record.Name);
        cur.FontHeight = record.Height;
        cur.FontColor = record.Color;
        cur.FontBgColor = record.BgColor;
    }
}

} // namespace

// ---------------------------------------------------------------- render

TWgHTMLRender::TWgHTMLRender(TCanvas* MeasureCanvas, int PixelsPerInch)
    : FCanvas(MeasureCanvas), FPixelsPerInch(PixelsPerInch > 0 ? PixelsPerInch : 96),
      FDefaultData(std::make_unique<TWgHTMLData>(this)), FData(FDefaultData.get()) {}

TWgHTMLRender::~TWgHTMLRender() = default;

std::unique_ptr<TWgHTMLData> TWgHTMLRender::NewData() {
    return std::make_unique<TWgHTMLData>(this);
}

void TWgHTMLRender::TriggerImageNeededEvent(const WideString& Src, TMemoryBitmap*& Image) {
    Image = nullptr;
    if (OnImageNeeded) OnImageNeeded(*this, Src, Image);
}

void TWgHTMLRender::PrepareText(WideView Text, int MaxWidth, bool AutoWrap) {
    TWgHTMLData* saved = FData;
    TWgHTMLData* data = FData;
    try {
        THTMLParser(*this, *data, Text, MaxWidth, AutoWrap).Run();
        FData = data;
        Layout();
    } catch (...) {
        data->ClearItems();
        FData = saved;
        throw EWgHTMLError(SWgHTMLError);
    }
    FData = saved;
}

void TWgHTMLRender::Layout() {
    TWgList<TWgHTMLItem>& items = FData->Items;
    int count = items.Count();
    int i = 0;
    while (i < count) {
        long long lineWidth = 0;
        int maxHeight = 0, maxDescent = 0;
        int j = i;
        for (; j < count; ++j) {
            TWgHTMLItem* item = items[j];
            if (j > i && item->IsBreak()) break;
            if (item->IsBreak()) static_cast<TWgHTMLBreakItem*>(item)->IndexHint = j;
            item->Width = item->GetWidth();
            if (item->ItemType == hitIndent && (item->Flags & hifAbsolute))
                lineWidth = item->Width;
            else
                lineWidth += item->Width;
            int descent = 0;
            int height = item->GetHeight(descent);
            item->Height = std::uint16_t(height);
            if (item->ItemType == hitText && (item->Flags & hifSubscript)) {
                descent += height / 4;
                height += height / 4;
            } else if (item->ItemType == hitText && (item->Flags & hifSuperscript)) {
                descent -= height / 2;
                height += height * 2 / 3;
            }
            maxHeight = std::max(maxHeight, height);
            maxDescent = std::max(maxDescent, descent);
        }
        if (items[i]->IsBreak()) {
            auto* brk = static_cast<TWgHTMLBreakItem*>(items[i]);
            brk->Height = Clamp16(maxHeight);
            brk->Width = Clamp16(brk->Indent + lineWidth);
            brk->Alignment = (brk->Alignment & 0xFFFF) | (std::uint32_t(Clamp16(maxDescent)) << 16);
        }
        i = j;
    }
    MeasureData();
}

void TWgHTMLRender::MeasureData() {
    TSize size;
    for (TWgHTMLItem* item : FData->Items.Items())
        if (item->IsBreak()) {
            size.cx = std::max<int>(size.cx, item->Width);
            size.cy += item->Height;
        }
    FData->TextSize = size;
}

void TWgHTMLRender::PlainText(WideString& Text) const {
    Text.clear();
    const auto& items = FData->Items.Items();
    for (std::size_t i = 0; i < items.size(); ++i) {
        switch (items[i]->ItemType) {
        case hitText:
            Text += items[i]->Text;
            break;
        case hitHardBreak:
            Text += u"\r\n";
            break;
        case hitParagraph:
            if (i > 0) Text += u"\r\n\r\n";
            break;
        case hitBullet:
            Text += u"- ";
            break;
        default:
            break;
        }
    }
}

struct TWgHTMLRender::TPlacement {
    TWgHTMLItem* Item;
    TWgHTMLBreakItem* Line;
    int X;
    int LineTop;
    int Baseline;
};

template <typename TVisit> void TWgHTMLRender::Walk(TPoint Origin, const TRect& R, TVisit&& Visit) {
    long long y = (long long)R.Top - Origin.Y;
    long long x = 0;
    int left = R.Left - Origin.X;
    TWgHTMLBreakItem* line = nullptr;
    for (TWgHTMLItem* item : FData->Items.Items()) {
        if (item->IsBreak()) {
            if (line) y += line->Height;
            // Lines that start below the rectangle are not visited.
            if (y >= R.Bottom) return;
            line = static_cast<TWgHTMLBreakItem*>(item);
            int lineWidth = line->Width;
            int avail = std::max(R.Width(), lineWidth);
            switch (line->Align()) {
            case 1:
                x = (avail - lineWidth - 1) / 2;
                break;
            case 2:
                x = avail - lineWidth - 1;
                break;
            default:
                x = line->Indent;
                break;
            }
            x += left;
        } else if (!line) {
            continue;
        }
        TPlacement place{item, line, int(x), int(y), int(y + line->Height - line->MaxDescent())};
        if (!Visit(place)) return;
        if (item->IsBreak()) continue;
        if (item->ItemType == hitIndent && (item->Flags & hifAbsolute))
            x = left + item->Width;
        else
            x += item->Width;
    }
}

namespace {
TColor AdjustTextColor(const TCanvas& Canvas, TColor Text, TColor Background) {
    TColor bg = Canvas.ColorToRGB(Background), fg = Canvas.ColorToRGB(Text);
    unsigned r = bg & 0xFF, g = (bg >> 8) & 0xFF, b = (bg >> 16) & 0xFF;
    unsigned lightness = (std::max({r, g, b}) + std::min({r, g, b})) / 2;
    TColor out = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        unsigned c = (fg >> shift) & 0xFF;
        c = lightness < 129 ? c + (255 - c) / 2 : c / 2;
        out |= c << shift;
    }
    return out;
}
} // namespace

void TWgHTMLRender::DrawHtml(TCanvas& Canvas, TPoint Origin, const TRect& R, TColor AdjustColor) {
    DrawHtmlEx(Canvas, Origin, R, AdjustColor, FData->HighlightBgColor, FData->HighlightColor,
               clNone, clNone, false);
}

void TWgHTMLRender::DrawHtmlEx(TCanvas& Canvas, TPoint Origin, const TRect& R, TColor AdjustColor,
                               TColor HighlightBg, TColor HighlightFg, TColor NormalBg,
                               TColor NormalFg, bool UseOverride) {
    FData->LastRect = R;
    if (FDoubleBuffer) Canvas.BeginBuffer(R);
    TTextAlign oldAlign = Canvas.TextAlign();
    TColor oldBg = Canvas.TextBgColor();
    Canvas.SetTextAlign(taBaseline);
    Walk(Origin, R, [&](const TPlacement& P) {
        TWgHTMLItem* item = P.Item;
        switch (item->ItemType) {
        case hitBullet: {
            int d = item->GetWidth();
            int top = P.LineTop + (P.Line->Height - d) / 2;
            Canvas.SetBrushColor(item->FontColor);
            Canvas.SetPenColor(item->FontColor);
            Canvas.Ellipse(Bounds(P.X - d, top, d, d));
            break;
        }
        case hitText: {
            if (item->Text.empty()) break;
            bool shifted = item->Flags & (hifSubscript | hifSuperscript);
            TColor fg = item->FontColor, bg = item->FontBgColor;
            if (item == FData->HighlightItem && (item->Flags & hifLink)) {
                fg = HighlightFg;
                bg = HighlightBg;
            }
            if (UseOverride && item->ColorChanged == 0) {
                if (NormalFg != clNone) fg = NormalFg;
                bg = NormalBg;
            }
            if (AdjustColor != clNone) fg = AdjustTextColor(Canvas, fg, AdjustColor);
            TWgHTMLItem styled(FData);
            styled.AssignStyle(*item);
            styled.FontColor = fg;
            styled.SelectFont(Canvas, shifted ? -2 * Sign(item->FontHeight) : 0);
            Canvas.SetTextBgColor(bg);
            int y = P.Baseline;
            if (item->Flags & hifSuperscript)
                y -= item->Height / 2;
            else if (item->Flags & hifSubscript)
                y += item->Height / 4;
            Canvas.TextOut(P.X, y, item->Text);
            break;
        }
        case hitImage: {
            TMemoryBitmap* bitmap = nullptr;
            TriggerImageNeededEvent(item->Text, bitmap);
            if (!bitmap || bitmap->Empty()) break;
            int top = P.Baseline - item->Height;
            if (item->Transparent)
                Canvas.Draw(P.X, top, *bitmap,
                            PixelToColor(bitmap->Pixel(0, bitmap->Height() - 1)));
            else
                Canvas.StretchDraw(Bounds(P.X, top, item->Width, item->Height), *bitmap);
            break;
        }
        case hitRule: {
            int width = item->Width ? item->Width : std::max<int>(R.Width(), P.Line->Width);
            Canvas.DrawEdge(Bounds(P.X, P.LineTop + P.Line->Height / 2, width, 2), BDR_SUNKENOUTER,
                            BF_RECT);
            break;
        }
        default:
            break;
        }
        return true;
    });
    Canvas.SetTextAlign(oldAlign);
    Canvas.SetTextBgColor(oldBg);
    if (FDoubleBuffer) Canvas.EndBuffer();
}

TWgHTMLItem* TWgHTMLRender::ItemAtPoint(TPoint Origin, TPoint Point, const TRect& R) {
    TWgHTMLItem* found = nullptr;
    Walk(Origin, R, [&](const TPlacement& P) {
        TWgHTMLItem* item = P.Item;
        if (item->IsBreak() || item->Width == 0) return true;
        int bottom = item->ItemType == hitImage ? P.Baseline : P.LineTop + P.Line->Height;
        if (item->Flags & hifSuperscript)
            bottom -= item->Height / 2;
        else if (item->Flags & hifSubscript)
            bottom += item->Height / 4;
        if (Point.X >= P.X && Point.X < P.X + item->Width && Point.Y >= bottom - item->Height &&
            Point.Y < bottom) {
            found = item;
            return false;
        }
        return true;
    });
    return found;
}

bool TWgHTMLRender::LinkAtPoint(TPoint Origin, TPoint Point, const TRect& R, WideString& HRef) {
    TWgHTMLItem* item = ItemAtPoint(Origin, Point, R);
    if (!item || !(item->Flags & hifLink)) return false;
    HRef = item->LinkRef;
    return true;
}
