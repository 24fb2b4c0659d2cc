#include "highlight/Highlighter.h"

#include "base/Strings.h"
#include "document/SyntaxDocument.h"
#include "highlight/WordTable.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

using TPos = std::size_t;
constexpr TPos NotFound = std::u16string_view::npos;

// ---- the options the highlighter reads, by the names the files use

enum TUsedOption : std::uint8_t {
    uoLineCommentA,
    uoLineCommentB,
    uoCommentStartA,
    uoCommentEndA,
    uoCommentStartB,
    uoCommentEndB,
    uoChar,
    uoString,
    uoStringOnLine,
    uoHexIdentifier,
    uoEscape,
    uoSymbols,
    uoNumbers,
    uoCaseSensitive,
    uoTagsCaseSensitive,
    uoNoTagsStart,
    uoNoTagsEnd,
    uoHighlightUrl,
    uoCount
};

constexpr std::array<const char*, uoCount> UsedOptionKeys = {
    "LineCommentA", "LineCommentB", "CommentStartA", "CommentEndA",   "CommentStartB",
    "CommentEndB",  "Char",         "String",        "StringOnLine",  "HexIdentifier",
    "Escape",       "Symbols",      "Numbers",       "CaseSensitive", "TagsCaseSensitive",
    "NoTagsStart",  "NoTagsEnd",    "HighlightUrl"};

// The Options index of each used option, looked up once by name.
const std::array<int, uoCount>& UsedOptionIndexes() {
    static const std::array<int, uoCount> indexes = [] {
        std::array<int, uoCount> r{};
        for (std::size_t u = 0; u < uoCount; ++u) {
            r[u] = -1;
            for (int i = 0; i < SyntaxOptionCount; ++i)
                if (std::strcmp(SyntaxOptionKeys[std::size_t(i)], UsedOptionKeys[u]) == 0) r[u] = i;
        }
        return r;
    }();
    return indexes;
}

const WideString& RawOption(const TSyntaxDocument& Document, TUsedOption Option) {
    static const WideString empty;
    const int index = UsedOptionIndexes()[Option];
    const TWgWideStringList& options = *Document.Options;
    return index >= 0 && index < options.Count() ? options.Ref(index) : empty;
}

// The reader's own test of a yes/no value.
bool IsYes(std::u16string_view Value) {
    const WideString low = WideLowerCase(Trim(Value));
    return low == u"yes" || low == u"y";
}

// ---- character classes

enum : std::uint16_t {
    fIdent = 1 << 0,    // letter, digit, "_", above 127 but for the spaces
    fWord = 1 << 1,     // fIdent and the extra characters of the keywords
    fSymbol = 1 << 2,   // listed in Symbols
    fNumber = 1 << 3,   // listed in Numbers
    fMarker = 1 << 4,   // may start a comment or block marker
    fString = 1 << 5,   // opens a string
    fChar = 1 << 6,     // opens a char
    fTagName = 1 << 7,  // may stand in a tag name
    fUrl = 1 << 8,      // may start a URL
    fHex = 1 << 9,      // may start the hex prefix
    fNoTags = 1 << 10,  // may start NoTagsStart
    fTagOpen = 1 << 11, // "<" while there are tags
};

bool IsUnicodeSpace(WideChar C) {
    return C == 0x85 || C == 0xA0 || C == 0x1680 || (C >= 0x2000 && C <= 0x200A) || C == 0x2028 ||
           C == 0x2029 || C == 0x202F || C == 0x205F || C == 0x3000 || C == 0xFEFF;
}

bool IsIdentChar(WideChar C) {
    if (C < 0x80)
        return (C >= u'a' && C <= u'z') || (C >= u'A' && C <= u'Z') || (C >= u'0' && C <= u'9') ||
               C == u'_';
    return !IsUnicodeSpace(C);
}

bool IsDigit(WideChar C) {
    return C >= u'0' && C <= u'9';
}

bool IsHexDigit(WideChar C) {
    return IsDigit(C) || (C >= u'a' && C <= u'f') || (C >= u'A' && C <= u'F');
}

bool IsBreak(WideChar C) {
    return C == u'\r' || C == u'\n';
}

WideChar AsciiLower(WideChar C) {
    return C >= u'A' && C <= u'Z' ? WideChar(C + 32) : C;
}

constexpr std::array<std::u16string_view, 6> UrlSchemes = {u"http://", u"https://", u"ftp://",
                                                           u"file://", u"mailto:",  u"www."};

// The item names of a menu list in order, kept to tell a changed list.
struct TMenuSource {
    std::vector<std::uint32_t> GroupSizes;
    std::vector<std::uint32_t> Lengths;
    WideString Text;

    void Read(const TMenuList& Menus) {
        std::size_t total = 0;
        for (int g = 0; g < Menus.MenuCount(); ++g)
            total += std::size_t(Menus.Menu(g)->Items->Count());
        Lengths.reserve(total);
        for (int g = 0; g < Menus.MenuCount(); ++g) {
            const TWgWideStringList& items = *Menus.Menu(g)->Items;
            GroupSizes.push_back(std::uint32_t(items.Count()));
            for (int i = 0; i < items.Count(); ++i) {
                const std::u16string_view name = TMenuList::ItemLeftView(items.Ref(i));
                Lengths.push_back(std::uint32_t(name.size()));
                Text.append(name);
            }
        }
    }

    bool Same(const TMenuList& Menus) const {
        if (std::size_t(Menus.MenuCount()) != GroupSizes.size()) return false;
        std::size_t item = 0, offset = 0;
        const std::u16string_view text(Text);
        for (int g = 0; g < Menus.MenuCount(); ++g) {
            const TWgWideStringList& items = *Menus.Menu(g)->Items;
            if (std::uint32_t(items.Count()) != GroupSizes[std::size_t(g)]) return false;
            for (int i = 0; i < items.Count(); ++i, ++item) {
                const std::u16string_view name = TMenuList::ItemLeftView(items.Ref(i));
                if (name != text.substr(offset, Lengths[item])) return false;
                offset += Lengths[item];
            }
        }
        return true;
    }
};

enum TMarkerRole : std::uint8_t { mrBlockComment, mrLineComment, mrBlock };

struct TMarker {
    WideString Start, End; // folded when markers ignore case
    TMarkerRole Role = mrLineComment;
    int Group = 0;
    bool OnLine = false;
    bool AsString = false;
};

} // namespace

// ---- the rules

struct THighlightRules::TData {
    // What the rules were built from.
    std::array<WideString, uoCount> OptionSource;
    std::vector<WideString> BlockSource;
    TMenuSource KeywordSource, TagSource;

    // Compiled.
    std::vector<std::uint16_t> Class = std::vector<std::uint16_t>(0x10000, 0);
    std::vector<TMarker> Markers; // in the order that breaks ties
    bool MarkersIgnoreCase = true;
    bool KeywordsIgnoreCase = true;
    bool TagsIgnoreCase = true;
    bool StringOnLine = false;
    bool Urls = false;
    WideChar Escape = 0;               // 0: none
    WideString HexPrefix;              // lower case
    WideString NoTagsStart, NoTagsEnd; // folded as the markers
    TWordTable Keywords, Tags;
    int KeywordGroups = 0, TagGroups = 0;

    WideChar FoldMarker(WideChar C) const { return MarkersIgnoreCase ? LowerChar(C) : C; }
    WideString FoldMarker(std::u16string_view S) const {
        return MarkersIgnoreCase ? WideLowerCase(S) : WideString(S);
    }
    bool Has(WideChar C, std::uint16_t Flag) const { return (Class[C] & Flag) != 0; }

    void Build(const TSyntaxDocument& Document);
    void AddMarker(std::u16string_view Start, std::u16string_view End, TMarkerRole Role, int Group,
                   bool OnLine = false, bool AsString = false);
    void FlagFirstChar(std::u16string_view Text, std::uint16_t Flag, bool IgnoreCase);
    void BuildTable(const TMenuList& Menus, TWordTable& Table, bool IgnoreCase, std::uint16_t Flag,
                    std::uint16_t Excluded);
};

void THighlightRules::TData::AddMarker(std::u16string_view Start, std::u16string_view End,
                                       TMarkerRole Role, int Group, bool OnLine, bool AsString) {
    if (Start.empty()) return;
    TMarker m;
    m.Start = FoldMarker(Start);
    m.End = FoldMarker(End);
    m.Role = Role;
    m.Group = Group;
    m.OnLine = OnLine;
    m.AsString = AsString;
    FlagFirstChar(m.Start, fMarker, MarkersIgnoreCase);
    Markers.push_back(std::move(m));
}

// Flags the first character of Text, and when case is ignored every
// character that folds to it.
void THighlightRules::TData::FlagFirstChar(std::u16string_view Text, std::uint16_t Flag,
                                           bool IgnoreCase) {
    if (Text.empty()) return;
    const WideChar first = Text[0];
    Class[first] |= Flag;
    if (!IgnoreCase) return;
    const WideChar folded = LowerChar(first);
    if (folded < 0x80) { // only the ASCII pair folds to an ASCII letter
        Class[folded] |= Flag;
        if (folded >= u'a' && folded <= u'z') Class[folded - 32] |= Flag;
        return;
    }
    for (std::uint32_t c = 0x80; c < 0x10000; ++c)
        if (LowerChar(WideChar(c)) == folded) Class[c] |= Flag;
}

void THighlightRules::TData::BuildTable(const TMenuList& Menus, TWordTable& Table, bool IgnoreCase,
                                        std::uint16_t Flag, std::uint16_t Excluded) {
    std::size_t total = 0;
    for (int g = 0; g < Menus.MenuCount(); ++g)
        total += std::size_t(Menus.Menu(g)->Items->Count());
    Table.Reserve(total);
    WideString folded;
    for (int g = 0; g < Menus.MenuCount(); ++g) {
        const TWgWideStringList& items = *Menus.Menu(g)->Items;
        for (int i = 0; i < items.Count(); ++i) {
            const std::u16string_view name = TMenuList::ItemLeftView(items.Ref(i));
            for (WideChar c : name)
                if (c > u' ' && !(Class[c] & Excluded)) Class[c] |= Flag;
            if (IgnoreCase) {
                folded.assign(name);
                for (WideChar& c : folded)
                    c = LowerChar(c);
                Table.Add(folded, g + 1);
            } else {
                Table.Add(name, g + 1);
            }
        }
    }
}

void THighlightRules::TData::Build(const TSyntaxDocument& Document) {
    for (std::size_t u = 0; u < uoCount; ++u)
        OptionSource[u] = RawOption(Document, TUsedOption(u));
    const auto option = [this](TUsedOption O) { return Trim(OptionSource[O]); };
    for (int i = 0; i < Document.Blocks->Count(); ++i)
        BlockSource.push_back(Document.Blocks->Ref(i));

    MarkersIgnoreCase = !IsYes(OptionSource[uoCaseSensitive]);
    KeywordsIgnoreCase = MarkersIgnoreCase;
    TagsIgnoreCase = !IsYes(OptionSource[uoTagsCaseSensitive]);
    StringOnLine = IsYes(OptionSource[uoStringOnLine]);
    Urls = IsYes(OptionSource[uoHighlightUrl]);
    const WideString escape = option(uoEscape);
    Escape = escape.empty() ? 0 : escape[0];

    for (std::uint32_t c = 0; c < 0x10000; ++c)
        if (IsIdentChar(WideChar(c))) Class[c] |= fIdent | fWord | fTagName;
    for (WideChar c : option(uoSymbols))
        Class[c] |= fSymbol;
    for (WideChar c : option(uoNumbers))
        Class[c] |= fNumber;
    for (WideChar c : option(uoChar))
        Class[c] |= fChar;
    for (WideChar c : option(uoString))
        Class[c] = std::uint16_t((Class[c] | fString) & ~fChar); // a string delimiter first

    // Markers in the order that breaks ties between equal lengths.
    AddMarker(option(uoCommentStartA), option(uoCommentEndA), mrBlockComment, 1);
    AddMarker(option(uoCommentStartB), option(uoCommentEndB), mrBlockComment, 2);
    AddMarker(option(uoLineCommentA), {}, mrLineComment, 1);
    AddMarker(option(uoLineCommentB), {}, mrLineComment, 2);
    const TWgWideStringList& blocks = *Document.Blocks;
    for (int r = 0; r + 5 <= blocks.Count(); r += 5)
        AddMarker(Trim(blocks.Ref(r + 3)), Trim(blocks.Ref(r + 4)), mrBlock, r / 5 + 1,
                  IsYes(blocks.Ref(r + 1)), IsYes(blocks.Ref(r + 2)));

    HexPrefix = WideLowerCase(option(uoHexIdentifier));
    FlagFirstChar(HexPrefix, fHex, true);
    NoTagsStart = FoldMarker(option(uoNoTagsStart));
    NoTagsEnd = FoldMarker(option(uoNoTagsEnd));
    if (Urls)
        for (std::u16string_view scheme : UrlSchemes)
            FlagFirstChar(scheme, fUrl, true);

    KeywordGroups = Document.Keywords->MenuCount();
    TagGroups = Document.Tags->MenuCount();
    // Characters that open something else never join a word.
    BuildTable(*Document.Keywords, Keywords, KeywordsIgnoreCase, fWord, fSymbol | fString | fChar);
    BuildTable(*Document.Tags, Tags, TagsIgnoreCase, fTagName, 0);
    Class[u'<'] &= std::uint16_t(~fTagName);
    Class[u'>'] &= std::uint16_t(~fTagName);
    if (!Tags.Empty()) {
        Class[u'<'] |= fTagOpen;
        FlagFirstChar(NoTagsStart, fNoTags, MarkersIgnoreCase);
    }
    KeywordSource.Read(*Document.Keywords);
    TagSource.Read(*Document.Tags);
}

THighlightRules::THighlightRules(const TSyntaxDocument& Document) : F(std::make_unique<TData>()) {
    F->Build(Document);
}

THighlightRules::~THighlightRules() = default;

bool THighlightRules::SameDefinition(const TSyntaxDocument& Document) const {
    for (std::size_t u = 0; u < uoCount; ++u)
        if (RawOption(Document, TUsedOption(u)) != F->OptionSource[u]) return false;
    const TWgWideStringList& blocks = *Document.Blocks;
    if (std::size_t(blocks.Count()) != F->BlockSource.size()) return false;
    for (int i = 0; i < blocks.Count(); ++i)
        if (blocks.Ref(i) != F->BlockSource[std::size_t(i)]) return false;
    return F->KeywordSource.Same(*Document.Keywords) && F->TagSource.Same(*Document.Tags);
}

int THighlightRules::KeywordGroupCount() const {
    return F->KeywordGroups;
}

int THighlightRules::TagGroupCount() const {
    return F->TagGroups;
}

// ---- the scan

class THighlightScan {
public:
    THighlightScan(const THighlightRules::TData& Rules, std::u16string_view Text,
                   std::vector<THighlightSpan>& Out)
        : R(Rules), T(Text), N(Text.size()), FOut(Out) {}

    void Run();

private:
    bool IdentAt(TPos P) const { return P < N && R.Has(T[P], fIdent); }
    bool WordStartAt(TPos P) const { return P == 0 || !R.Has(T[P - 1], fIdent); }
    TPos LineEnd(TPos P);
    bool MatchAt(TPos P, std::u16string_view Folded) const;
    bool MarkerAt(TPos P, std::u16string_view Folded) const;
    TPos FindMarker(std::u16string_view Folded, TPos From, TPos Limit) const;
    const TMarker* BestMarker(TPos P) const;

    TPos Construct(const TMarker& M, TPos P);
    TPos Literal(TPos P, THighlightKind Kind);
    TPos Tag(TPos P);
    TPos Url(TPos P, TPos Limit) const;
    TPos HexNumber(TPos P) const;
    TPos Number(TPos P) const;
    TPos Word(TPos P);
    void NoTagsRegion(TPos P);

    void Emit(THighlightKind Kind, int Group, TPos From, TPos To);
    void EmitWithUrls(THighlightKind Kind, int Group, TPos From, TPos To);

    const THighlightRules::TData& R;
    const std::u16string_view T;
    const TPos N;
    std::vector<THighlightSpan>& FOut;
    TPos FNoTagsUntil = 0;
    TPos FLineFrom = 1, FLineEnd = 0; // the line end of every position in [FLineFrom, FLineEnd]
    WideString FFolded;
};

TPos THighlightScan::LineEnd(TPos P) {
    if (P >= FLineFrom && P <= FLineEnd) return FLineEnd;
    TPos e = P;
    while (e < N && !IsBreak(T[e]))
        ++e;
    FLineFrom = P;
    FLineEnd = e;
    return e;
}

bool THighlightScan::MatchAt(TPos P, std::u16string_view Folded) const {
    if (Folded.empty() || N - P < Folded.size()) return false;
    for (std::size_t i = 0; i < Folded.size(); ++i)
        if (R.FoldMarker(T[P + i]) != Folded[i]) return false;
    return true;
}

// A marker at P, with the word boundaries that a marker of letters needs.
bool THighlightScan::MarkerAt(TPos P, std::u16string_view Folded) const {
    if (!MatchAt(P, Folded)) return false;
    if (R.Has(Folded.front(), fIdent) && !WordStartAt(P)) return false;
    if (R.Has(Folded.back(), fIdent) && IdentAt(P + Folded.size())) return false;
    return true;
}

TPos THighlightScan::FindMarker(std::u16string_view Folded, TPos From, TPos Limit) const {
    if (Folded.empty()) return NotFound;
    for (TPos p = From; p + Folded.size() <= Limit; ++p) {
        if (!R.MarkersIgnoreCase) {
            p = T.substr(0, Limit).find(Folded, p);
            if (p == NotFound) return NotFound;
        }
        if (MarkerAt(p, Folded)) return p;
    }
    return NotFound;
}

const TMarker* THighlightScan::BestMarker(TPos P) const {
    const TMarker* best = nullptr;
    for (const TMarker& m : R.Markers)
        if ((!best || m.Start.size() > best->Start.size()) && MarkerAt(P, m.Start)) best = &m;
    return best;
}

TPos THighlightScan::Construct(const TMarker& M, TPos P) {
    const TPos from = P + M.Start.size();
    TPos end;
    if (M.Role == mrLineComment || M.End.empty()) {
        end = LineEnd(from);
    } else {
        const TPos limit = M.Role == mrBlock && M.OnLine ? LineEnd(from) : N;
        const TPos found = FindMarker(M.End, from, limit);
        end = found == NotFound ? limit : found + M.End.size();
    }
    const THighlightKind kind = M.Role != mrBlock ? hkComment : M.AsString ? hkString : hkBlock;
    EmitWithUrls(kind, M.Group, P, end);
    return end;
}

TPos THighlightScan::Literal(TPos P, THighlightKind Kind) {
    const WideChar quote = T[P];
    TPos q = P + 1;
    TPos end = N;
    while (q < N) {
        const WideChar c = T[q];
        if (R.StringOnLine && IsBreak(c)) {
            end = q;
            break;
        }
        if (c == quote) {
            // With the quote as its own escape, a doubled quote stands for one.
            if (R.Escape == quote && q + 1 < N && T[q + 1] == quote) {
                q += 2;
                continue;
            }
            end = q + 1;
            break;
        }
        if (c == R.Escape && R.Escape != 0 && q + 1 < N && !(R.StringOnLine && IsBreak(T[q + 1])))
            q += 2;
        else
            ++q;
    }
    EmitWithUrls(Kind, 0, P, std::min(end, N));
    return std::min(end, N);
}

TPos THighlightScan::Tag(TPos P) {
    TPos name = P + 1;
    if (name < N && T[name] == u'/') ++name;
    TPos end = name;
    while (end < N && R.Has(T[end], fTagName))
        ++end;
    if (end == name) return P;
    const std::u16string_view word = T.substr(name, end - name);
    int group;
    if (R.TagsIgnoreCase) {
        FFolded.assign(word);
        for (WideChar& c : FFolded)
            c = LowerChar(c);
        group = R.Tags.Find(FFolded);
    } else {
        group = R.Tags.Find(word);
    }
    if (group == 0) return P;
    for (TPos s = P; s < name; ++s)
        if (R.Has(T[s], fSymbol)) Emit(hkSymbol, 0, s, s + 1);
    Emit(hkTag, group, name, end);
    return end;
}

// The end of a URL that starts at P, or P when none does.
TPos THighlightScan::Url(TPos P, TPos Limit) const {
    for (std::u16string_view scheme : UrlSchemes) {
        if (Limit - P <= scheme.size()) continue;
        bool match = true;
        for (std::size_t i = 0; i < scheme.size() && match; ++i)
            match = AsciiLower(T[P + i]) == scheme[i];
        if (!match) continue;
        const TPos body = P + scheme.size();
        TPos end = body;
        while (end < Limit) {
            const WideChar c = T[end];
            if (c <= u' ' || c == u'"' || c == u'\'' || c == u'<' || c == u'>' || c == u'`' ||
                IsUnicodeSpace(c))
                break;
            ++end;
        }
        while (end > body && std::u16string_view(u".,;:!?)]}").find(T[end - 1]) != NotFound)
            --end;
        return end > body ? end : P;
    }
    return P;
}

TPos THighlightScan::HexNumber(TPos P) const {
    const std::u16string_view prefix = R.HexPrefix;
    if (prefix.empty() || N - P <= prefix.size()) return P;
    for (std::size_t i = 0; i < prefix.size(); ++i)
        if (AsciiLower(T[P + i]) != prefix[i]) return P;
    TPos end = P + prefix.size();
    while (end < N && IsHexDigit(T[end]))
        ++end;
    return end > P + prefix.size() ? end : P;
}

TPos THighlightScan::Number(TPos P) const {
    const auto digit = [this](TPos Q) { return Q < N && IsDigit(T[Q]) && R.Has(T[Q], fNumber); };
    const WideChar c = T[P];
    const bool starts = digit(P) || (!R.Has(c, fIdent) && digit(P + 1));
    if (!starts) return P;
    TPos end = P + 1;
    while (end < N && R.Has(T[end], fNumber))
        ++end;
    return end;
}

TPos THighlightScan::Word(TPos P) {
    TPos end = P + 1;
    while (end < N && R.Has(T[end], fWord))
        ++end;
    if (R.Keywords.Empty() || end - P > R.Keywords.MaxLength()) return end;
    const std::u16string_view word = T.substr(P, end - P);
    int group;
    if (R.KeywordsIgnoreCase) {
        FFolded.assign(word);
        for (WideChar& c : FFolded)
            c = LowerChar(c);
        group = R.Keywords.Find(FFolded);
    } else {
        group = R.Keywords.Find(word);
    }
    if (group != 0) Emit(hkKeyword, group, P, end);
    return end;
}

// NoTagsStart at P opens a region without tags up to the next NoTagsEnd.
void THighlightScan::NoTagsRegion(TPos P) {
    if (P < FNoTagsUntil || !MarkerAt(P, R.NoTagsStart)) return;
    const TPos from = P + R.NoTagsStart.size();
    if (R.NoTagsEnd.empty()) {
        FNoTagsUntil = LineEnd(from);
        return;
    }
    const TPos found = FindMarker(R.NoTagsEnd, from, N);
    FNoTagsUntil = found == NotFound ? N : found + R.NoTagsEnd.size();
}

void THighlightScan::Emit(THighlightKind Kind, int Group, TPos From, TPos To) {
    if (To <= From) return;
    if (Kind == hkSymbol && !FOut.empty() && FOut.back().Kind == hkSymbol &&
        FOut.back().End() == From) {
        FOut.back().Length += To - From;
        return;
    }
    FOut.push_back({From, To - From, Kind, Group});
}

void THighlightScan::EmitWithUrls(THighlightKind Kind, int Group, TPos From, TPos To) {
    if (R.Urls) {
        TPos piece = From;
        for (TPos q = From; q < To;) {
            if (R.Has(T[q], fUrl) && WordStartAt(q)) {
                const TPos end = Url(q, To);
                if (end > q) {
                    Emit(Kind, Group, piece, q);
                    Emit(hkUrl, 0, q, end);
                    piece = q = end;
                    continue;
                }
            }
            ++q;
        }
        From = piece;
    }
    Emit(Kind, Group, From, To);
}

void THighlightScan::Run() {
    constexpr std::uint16_t Starts = fMarker | fString | fChar | fTagOpen | fNoTags;
    TPos p = 0;
    while (p < N) {
        const std::uint16_t cls = R.Class[T[p]];
        if (cls == 0) {
            ++p;
            continue;
        }
        if (cls & Starts) {
            if (cls & fNoTags) NoTagsRegion(p);
            if (cls & fMarker) {
                if (const TMarker* m = BestMarker(p)) {
                    p = Construct(*m, p);
                    continue;
                }
            }
            if (cls & fString) {
                p = Literal(p, hkString);
                continue;
            }
            if (cls & fChar) {
                p = Literal(p, hkChar);
                continue;
            }
            if ((cls & fTagOpen) && p >= FNoTagsUntil) {
                const TPos end = Tag(p);
                if (end > p) {
                    p = end;
                    continue;
                }
            }
        }
        if (WordStartAt(p)) {
            TPos end = p;
            if (cls & fUrl) end = Url(p, N);
            if (end > p) {
                Emit(hkUrl, 0, p, end);
                p = end;
                continue;
            }
            if (cls & fHex) end = HexNumber(p);
            if (end == p && (cls & fNumber)) end = Number(p);
            if (end > p) {
                Emit(hkNumber, 0, p, end);
                p = end;
                continue;
            }
        }
        if (cls & fWord) {
            p = Word(p);
            continue;
        }
        if (cls & fSymbol) Emit(hkSymbol, 0, p, p + 1);
        ++p;
    }
}

void THighlightRules::Highlight(std::u16string_view Text,
                                std::vector<THighlightSpan>& Spans) const {
    Spans.clear();
    THighlightScan(*F, Text, Spans).Run();
}

std::vector<THighlightSpan> THighlightRules::Highlight(std::u16string_view Text) const {
    std::vector<THighlightSpan> spans;
    Highlight(Text, spans);
    return spans;
}

// ---- the cache

THighlighter::THighlighter() = default;
THighlighter::~THighlighter() = default;

const THighlightRules& THighlighter::Rules(const TSyntaxDocument& Document) {
    if (!FRules || !FRules->SameDefinition(Document)) {
        FRules.reset(); // the old tables go before the new ones are built
        FRules = std::make_unique<THighlightRules>(Document);
        ++FBuilds;
    }
    return *FRules;
}

void THighlighter::Highlight(const TSyntaxDocument& Document, std::u16string_view Text,
                             std::vector<THighlightSpan>& Spans) {
    Rules(Document).Highlight(Text, Spans);
}

// ---- helpers

std::string HighlightClassName(const THighlightSpan& Span) {
    switch (Span.Kind) {
    case hkComment:
        return "comment";
    case hkString:
        return "string";
    case hkChar:
        return "char";
    case hkNumber:
        return "number";
    case hkSymbol:
        return "symbol";
    case hkBlock:
        return "block";
    case hkKeyword:
        return "keyword-" + std::to_string(Span.Group);
    case hkTag:
        return "tag-" + std::to_string(Span.Group);
    case hkUrl:
        return "url";
    }
    return "plain";
}

WideString JoinLines(const TWgWideStringList& Lines) {
    std::size_t size = 0;
    for (int i = 0; i < Lines.Count(); ++i)
        size += Lines.Ref(i).size() + 1;
    WideString text;
    text.reserve(size);
    for (int i = 0; i < Lines.Count(); ++i) {
        if (i > 0) text += u'\n';
        text += Lines.Ref(i);
    }
    return text;
}

std::vector<THighlightSpan> SplitAtLineEnds(std::u16string_view Text,
                                            const std::vector<THighlightSpan>& Spans) {
    std::vector<THighlightSpan> pieces;
    pieces.reserve(Spans.size());
    for (const THighlightSpan& span : Spans) {
        const TPos end = std::min(span.End(), Text.size());
        TPos p = span.Offset;
        while (p < end) {
            TPos e = p;
            while (e < end && !IsBreak(Text[e]))
                ++e;
            if (e > p) pieces.push_back({p, e - p, span.Kind, span.Group});
            p = e;
            while (p < end && IsBreak(Text[p]))
                ++p;
        }
    }
    return pieces;
}
