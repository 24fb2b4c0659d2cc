#include "document/KVSyntax.h"

#include "base/Strings.h"

#include <string_view>
#include <vector>

const std::array<const char*, SyntaxOptionCount> SyntaxOptionKeys = {"LineCommentA",
                                                                     "LineCommentB",
                                                                     "CommentStartA",
                                                                     "CommentEndA",
                                                                     "CommentStartB",
                                                                     "CommentEndB",
                                                                     "Char",
                                                                     "String",
                                                                     "StringOnLine",
                                                                     "HexIdentifier",
                                                                     "Escape",
                                                                     "Symbols",
                                                                     "Numbers",
                                                                     "CaseSensitive",
                                                                     "TagsCaseSensitive",
                                                                     "NoTagsStart",
                                                                     "NoTagsEnd",
                                                                     "HighlightUrl",
                                                                     "BlockEsc",
                                                                     "CommentEsc",
                                                                     "FoldOpt_AsBegin",
                                                                     "FoldOpt_Separators",
                                                                     "Foldopt_Sections",
                                                                     "Foldopt_AutoIdExcludes",
                                                                     "FoldOpt_Case",
                                                                     "FoldOpt_FoldAllTags",
                                                                     "Rgn_Start",
                                                                     "Rgn_End",
                                                                     "Rgn_CommentStart",
                                                                     "AutoCompleteTags"};

namespace {

constexpr WideChar Quote = u'"';
constexpr WideChar Backslash = u'\\';

// ---- small string steps shared by the helpers

WideView TrimView(WideView S);

void DeleteFirst(WideString& S, WideChar C) {
    auto p = S.find(C);
    if (p != WideString::npos) S.erase(p, 1);
}

void DeleteLast(WideString& S, WideChar C) {
    auto p = S.rfind(C);
    if (p != WideString::npos) S.erase(p, 1);
}

// Deletes the first backslash, repeatedly, while one is left and the text is
// longer than one character; so a lone backslash is kept, and in general the
// first min(count, length - 1) backslashes go.
WideString DeleteBackslashes(WideView S) {
    std::size_t total = 0;
    for (auto c : S)
        total += c == Backslash;
    std::size_t drop = S.size() > 1 ? std::min(total, S.size() - 1) : 0;
    if (drop == 0) return WideString(S);
    WideString r;
    r.reserve(S.size() - drop);
    for (auto c : S) {
        if (c == Backslash && drop > 0) {
            --drop;
            continue;
        }
        r.push_back(c);
    }
    return r;
}

// Trim(DeleteBackslashes(S)), copying only what is kept.
WideString DeleteBackslashesTrimmed(WideView S) {
    if (S.find(Backslash) == WideView::npos) return WideString(TrimView(S));
    WideString r = DeleteBackslashes(S);
    const WideView kept = TrimView(r);
    if (kept.size() == r.size()) return r;
    return WideString(kept);
}

// S less its first double quote and, if another follows, its last one.
WideString WithoutOuterQuotes(WideView S) {
    const std::size_t first = S.find(Quote);
    if (first == WideView::npos) return WideString(S);
    const std::size_t last = S.rfind(Quote);
    WideString r;
    r.reserve(S.size());
    r.append(S.substr(0, first));
    if (last == first) return r.append(S.substr(first + 1));
    return r.append(S.substr(first + 1, last - first - 1)).append(S.substr(last + 1));
}

bool IsYes(const WideString& Value) {
    WideString low = WideLowerCase(Value);
    return low == u"yes" || low == u"y";
}

// ---- section markers

enum TSection : std::uint8_t {
    secNone,
    secOptions,
    secTags,
    secKeywords,
    secAutoHint,
    secAutoComplete,
    secUserMenu,
    secTagComplete,
    secSample
};

enum TMarker : std::uint8_t {
    mkNone,
    mkOptions,
    mkTags,
    mkKeywords,
    mkAutoHint,
    mkUserMenu,
    mkAutoComplete,
    mkTagComplete,
    mkBeginSample,
    mkEndSample,
    mkEnd // only meaningful to the look-ahead and inside sections
};

// The marker a comment-stripped, trimmed line is, in the reader's order of tests.
TMarker MarkerOf(WideView Line) {
    if (Line.size() < 5 || Line.front() != u'[' || Line.back() != u']') return mkNone;
    const WideString low = WideLowerCase(Line);
    static const struct {
        const char16_t* Text;
        TMarker Marker;
    } markers[] = {{u"[options]", mkOptions},         {u"[tags]", mkTags},
                   {u"[keywords]", mkKeywords},       {u"[autohint]", mkAutoHint},
                   {u"[usermenu]", mkUserMenu},       {u"[autocomplete]", mkAutoComplete},
                   {u"[tagcomplete]", mkTagComplete}, {u"[beginsample]", mkBeginSample},
                   {u"[endsample]", mkEndSample},     {u"[end]", mkEnd}};
    for (const auto& m : markers)
        if (low == m.Text) return m.Marker;
    return mkNone;
}

bool IsEndLine(WideView Line) {
    return Line.size() == 5 && MarkerOf(Line) == mkEnd;
}

WideView TrimView(WideView S) {
    std::size_t b = 0, e = S.size();
    while (b < e && S[b] < 33)
        ++b;
    while (e > b && S[e - 1] < 33)
        --e;
    return S.substr(b, e - b);
}

// HasQuote, when given, tells whether a double quote is left in the result.
WideView StripLineCommentView(WideView S, bool* HasQuote = nullptr) {
    // One pass finds the quotes and the first of each comment form.
    constexpr std::size_t none = WideView::npos;
    std::size_t q1 = none, q2 = none, semicolon = none, slashes = none;
    for (std::size_t i = 0; i < S.size(); ++i) {
        const WideChar c = S[i];
        if (c > u';') // all three stand below the letters
            continue;
        if (c == Quote) {
            if (q1 == none) q1 = i;
            q2 = i;
        } else if (c == u';') {
            if (semicolon == none) semicolon = i;
        } else if (c == u'/' && slashes == none && i + 1 < S.size() && S[i + 1] == u'/') {
            slashes = i;
        }
    }
    const bool quoted = q1 != none && q1 < q2;
    auto outside = [&](std::size_t p) { return !quoted || p < q1 || p > q2; };
    // Only the first ";" and the first "//" count; one inside the quotes
    // ends the search for that form of comment.
    if (semicolon != none && outside(semicolon)) {
        S = S.substr(0, semicolon);
        if (slashes != none && slashes + 1 >= semicolon)
            slashes = S.find(u"//"); // a pair cut in half by the ";" is no comment
    }
    if (slashes != none && outside(slashes)) S = S.substr(0, slashes);
    if (HasQuote) *HasQuote = q1 < S.size(); // trimming never takes a quote
    return TrimView(S);
}

// Whether a section marker at line Index has content: the look-ahead over
// the following lines, without comment stripping. Content usually follows
// its marker at once, so each marker scans forward on its own; should a
// file make those scans long (markers hidden in long brace runs), the answer
// for every line is computed once, backwards, and a file of many markers
// costs one pass.
class TContentLookAhead {
public:
    explicit TContentLookAhead(const TLineSource& Lines) : FLines(Lines) {}

    bool SectionHasContent(int Index) {
        if (!FFree.empty()) return FFree[std::size_t(Index) + 1];
        bool inBrace = false;
        int scanned = 0;
        for (int j = Index + 1; j < FLines.Count(); ++j) {
            if (++FBudget > ScanBudget) {
                ComputeAll();
                return FFree[std::size_t(Index) + 1];
            }
            ++scanned;
            FLines.Line(j, FBuffer);
            const WideView t = TrimView(FBuffer);
            if (!t.empty() && t[0] == u'{') inBrace = true;
            if (inBrace) {
                if (t.find(u'}') != WideView::npos) inBrace = false;
                continue;
            }
            switch (Classify(t)) {
            case lkSkip:
                continue;
            case lkMarker:
                return false;
            case lkContent:
                return true;
            }
        }
        return false;
    }

private:
    enum TLineKind : std::uint8_t { lkSkip, lkMarker, lkContent };
    static constexpr long long ScanBudget = 100000;

    static TLineKind Classify(WideView T) {
        if (T.empty() || T[0] == u'>' || T[0] == u';' ||
            (T.size() > 1 && T[0] == u'/' && T[1] == u'/'))
            return lkSkip;
        return MarkerOf(T) != mkNone ? lkMarker : lkContent;
    }

    void ComputeAll() {
        const int n = FLines.Count();
        FFree.assign(std::size_t(n) + 1, false);
        std::vector<bool> inBrace(std::size_t(n) + 1, false);
        for (int j = n - 1; j >= 0; --j) {
            FLines.Line(j, FBuffer);
            const WideView t = TrimView(FBuffer);
            const std::size_t next = std::size_t(j) + 1;
            // Inside a brace run a line is passed over; one holding "}" ends the run.
            inBrace[std::size_t(j)] = t.find(u'}') != WideView::npos ? FFree[next] : inBrace[next];
            if (!t.empty() && t[0] == u'{') {
                FFree[std::size_t(j)] = inBrace[std::size_t(j)];
                continue;
            }
            switch (Classify(t)) {
            case lkSkip:
                FFree[std::size_t(j)] = FFree[next];
                break;
            case lkMarker:
                FFree[std::size_t(j)] = false;
                break;
            case lkContent:
                FFree[std::size_t(j)] = true;
                break;
            }
        }
    }

    const TLineSource& FLines;
    WideString FBuffer;
    long long FBudget = 0;
    std::vector<bool> FFree; // the answer when a scan starts at a line outside braces
};

// Index of each recognised option key (lower case) in the actions below.
enum TOptionAction : std::uint8_t { oaStore, oaYesNo, oaBlock, oaFold };

struct TOptionKey {
    const char16_t* Key;
    TOptionAction Action;
    int Index; // Options index, or the tuple field for blocks and folds
};

const TOptionKey OptionKeys[] = {
    {u"linecommenta", oaStore, 0},
    {u"linecommentb", oaStore, 1},
    {u"commentstarta", oaStore, 2},
    {u"commentenda", oaStore, 3},
    {u"commentstartb", oaStore, 4},
    {u"commentendb", oaStore, 5},
    {u"blockname", oaBlock, 0},
    {u"blockonline", oaBlock, 1},
    {u"blockasstring", oaBlock, 2},
    {u"blockstart", oaBlock, 3},
    {u"blockend", oaBlock, 4},
    {u"fold_id", oaFold, 0},
    {u"fold_begin", oaFold, 1},
    {u"fold_end", oaFold, 2},
    {u"fold_section", oaFold, 3},
    {u"fold_noparentofid", oaFold, 4},
    {u"char", oaStore, 6},
    {u"string", oaStore, 7},
    {u"hexidentifier", oaStore, 9},
    {u"escape", oaStore, 10},
    {u"symbols", oaStore, 11},
    {u"numbers", oaStore, 12},
    {u"notagsstart", oaStore, 15},
    {u"notagsend", oaStore, 16},
    {u"blockesc", oaStore, 18},
    {u"commentesc", oaStore, 19},
    {u"foldopt_asbegin", oaStore, 20},
    {u"foldopt_separators", oaStore, 21},
    {u"foldopt_sections", oaStore, 22},
    {u"foldopt_autoidexcludes", oaStore, 23},
    {u"rgn_start", oaStore, 26},
    {u"rgn_end", oaStore, 27},
    {u"rgn_commentstart", oaStore, 28},
    {u"stringonline", oaYesNo, 8},
    {u"casesensitive", oaYesNo, 13},
    {u"tagscasesensitive", oaYesNo, 14},
    {u"highlighturl", oaYesNo, 17},
    {u"foldopt_case", oaYesNo, 24},
    {u"foldopt_foldalltags", oaYesNo, 25},
    {u"autocompletetags", oaYesNo, 29},
};

const TOptionKey* FindOptionKey(const WideString& LowKey) {
    for (const auto& k : OptionKeys)
        if (LowKey == k.Key) return &k;
    return nullptr;
}

// A tuple key stores into the most recent tuple; before any tuple has
// started the computed index is not above 0 and nothing happens.
void StoreInTuple(TWgWideStringList& List, int FromEnd, const WideString& Value) {
    int index = List.Count() - FromEnd;
    if (index > 0) List.Put(index, Value);
}

// The state of one walk over the lines.
class TSyntaxReader {
public:
    TSyntaxReader(const TLineSource& Lines, TWgWideStringList& Header, TWgWideStringList& Options,
                  TWgWideStringList& Blocks, TWgWideStringList& Folds, TWgWideStringList& AutoHint,
                  TWgWideStringList& Sample, TMenuList& Keywords, TMenuList& Tags,
                  TMenuList& AutoComplete, TMenuList& TagComplete, TMenuList& UserMenu,
                  TSyntaxWalkObserver* Observer)
        : FLines(Lines), FHeader(Header), FOptions(Options), FBlocks(Blocks), FFolds(Folds),
          FAutoHint(AutoHint), FSample(Sample), FKeywords(Keywords), FTags(Tags),
          FAutoComplete(AutoComplete), FTagComplete(TagComplete), FUserMenu(UserMenu),
          FLookAhead(Lines), FObserver(Observer) {}

    void Run();

private:
    void ApplyMarker(TMarker Marker, int Index);
    void OptionLine(WideView Line);
    void GroupLine(WideView Line, bool IsTags);
    void CompletionLine(WideView Line, TMenuList& Menus, bool IsAutoComplete);
    void UserMenuLine(WideView Line);
    void EntryLine(WideView Line, TMenuList& Menus, TSyntaxPart Part);
    void NoteTupleField(const TWgWideStringList& List, TSyntaxPart Part, int FromEnd, bool Stored);
    // Tells the observer, if there is one, what the current line did.
    void Note(TLineAction Action, TSyntaxPart Part = spNone, int Index = -1, int Item = -1,
              TSkipReason Reason = skNone) {
        if (!FObserver) return;
        ++FSteps;
        FObserver->Step({FLine, Action, Part, Index, Item, Reason, FCommentCut, FWithin, FText});
    }
    // After AddMenuItem: a menu index out of range added nothing.
    void NoteItem(TMenuList& Menus, TSyntaxPart Part, int Menu) {
        if (!FObserver) return;
        if (const TAListItem* menu = Menus.Menu(Menu))
            Note(laItemAdded, Part, Menu, menu->Items->Count() - 1);
        else
            Note(laSkipped, Part, -1, -1, skNoMenu);
    }

    const TLineSource& FLines;
    TWgWideStringList &FHeader, &FOptions, &FBlocks, &FFolds, &FAutoHint, &FSample;
    TMenuList &FKeywords, &FTags, &FAutoComplete, &FTagComplete, &FUserMenu;
    TContentLookAhead FLookAhead;
    TSyntaxWalkObserver* FObserver;
    int FLine = 0;
    int FSteps = 0;           // steps noted for the current line
    bool FCommentCut = false; // the current line lost a comment to the stripping
    TSyntaxPart FWithin = spNone;
    WideView FText;
    bool FHasQuote = false; // the current stripped line holds a double quote

    TSection FState = secNone;
    bool FBannerAllowed = true;
    int FTagsCounter = 0;
    int FKeywordsCounter = 0;
    bool FNewTagGroup = false;
    bool FNewKeywordGroup = false;
};

void TSyntaxReader::Run() {
    FHeader.Clear();
    FAutoHint.Clear();
    FSample.Clear();
    FKeywords.ClearMenus();
    FTags.ClearMenus();
    FAutoComplete.ClearMenus();
    FTagComplete.ClearMenus();
    FUserMenu.ClearMenus();
    FBlocks.Clear();
    FFolds.Clear();

    WideString raw;
    const int count = FLines.Count();
    for (int i = 0; i < count; ++i) {
        FLines.Line(i, raw);
        const WideView line = StripLineCommentView(raw, &FHasQuote);
        if (FObserver) {
            FLine = i;
            FSteps = 0;
            FCommentCut = line.size() < TrimView(raw).size();
            FText = raw;
            static constexpr TSyntaxPart within[] = {spNone,     spOptions,      spTags,
                                                     spKeywords, spAutoHint,     spAutoComplete,
                                                     spUserMenu, spTagComplete,  spSample};
            FWithin = within[FState];
        }
        TMarker marker = MarkerOf(line);
        if (marker != mkNone && marker != mkEnd) {
            if (marker != mkEndSample) FBannerAllowed = false;
            ApplyMarker(marker, i);
        } else if (FBannerAllowed && line.size() >= 3 && line[0] == u'{' && line[1] != u'*') {
            // Tested on the stripped line, taken from the raw one: a leading
            // space costs the space and leaves the brace in the text.
            WideString text = raw.substr(1);
            DeleteFirst(text, u'}');
            FHeader.Add(Trim(text));
            Note(laBanner, spHeader, FHeader.Count() - 1);
        } else {
            switch (FState) {
            case secNone:
                if (marker == mkEnd) Note(laSectionEnd);
                break;
            case secOptions:
                OptionLine(line);
                break;
            case secTags:
                GroupLine(line, true);
                break;
            case secKeywords:
                GroupLine(line, false);
                break;
            case secAutoHint:
                if (IsEndLine(line)) {
                    FState = secNone;
                    Note(laSectionEnd);
                } else if (WideString hint = GetHintText(line); !hint.empty()) {
                    FAutoHint.Add(hint);
                    Note(laHintAdded, spAutoHint, FAutoHint.Count() - 1);
                }
                break;
            case secAutoComplete:
                CompletionLine(line, FAutoComplete, true);
                break;
            case secTagComplete:
                CompletionLine(line, FTagComplete, false);
                break;
            case secUserMenu:
                UserMenuLine(line);
                break;
            case secSample:
                FSample.Add(raw);
                Note(laSampleLine, spSample, FSample.Count() - 1);
                break;
            }
        }
        if (FObserver && FSteps == 0) {
            // Whatever the line was, it stored nothing.
            if (line.empty())
                Note(laBlank);
            else if (FState == secNone)
                Note(laOutside);
            else
                Note(laSkipped, spNone, -1, -1, skNoValue);
        }
    }
}

void TSyntaxReader::ApplyMarker(TMarker Marker, int Index) {
    if (Marker == mkOptions) {
        FState = secOptions;
        Note(laSectionEntered, spOptions);
        return;
    }
    // Every other marker is entered only when its section has content;
    // otherwise the previous state stays in force.
    if (!FLookAhead.SectionHasContent(Index)) {
        Note(laSectionEmpty);
        return;
    }
    if (FObserver) {
        static constexpr TSyntaxPart parts[] = {spNone,       spOptions,  spTags,
                                                spKeywords,   spAutoHint, spUserMenu,
                                                spAutoComplete, spTagComplete, spSample};
        if (Marker == mkEndSample)
            Note(laSectionEnd);
        else
            Note(laSectionEntered, parts[Marker]);
    }
    switch (Marker) {
    case mkTags:
        FState = secTags;
        ++FTagsCounter;
        FNewTagGroup = true;
        break;
    case mkKeywords:
        FState = secKeywords;
        ++FKeywordsCounter;
        FNewKeywordGroup = true;
        break;
    case mkAutoHint:
        FState = secAutoHint;
        break;
    case mkUserMenu:
        FState = secUserMenu;
        break;
    case mkAutoComplete:
        FState = secAutoComplete;
        break;
    case mkTagComplete:
        FState = secTagComplete;
        break;
    case mkBeginSample:
        FState = secSample;
        break;
    case mkEndSample:
        FState = secNone;
        break;
    default:
        break;
    }
}

void TSyntaxReader::OptionLine(WideView Line) {
    if (IsEndLine(Line)) {
        FState = secNone;
        Note(laSectionEnd);
        return;
    }
    const TOptionKey* key = FindOptionKey(WideLowerCase(GetOptionKey(Line)));
    if (!key) {
        if (!Line.empty()) Note(laUnknownKey, spOptions);
        return;
    }
    const WideString value = GetOptionValue(Line);
    switch (key->Action) {
    case oaStore:
        FOptions.Put(key->Index, value);
        Note(laOptionStored, spOptions, key->Index);
        break;
    case oaYesNo:
        if (IsYes(value)) FOptions.Put(key->Index, u"Yes");
        Note(IsYes(value) ? laOptionStored : laOptionNotYes, spOptions, key->Index);
        break;
    case oaBlock:
        switch (key->Index) {
        case 0:
            FBlocks.Add(value);
            FBlocks.Add(u"No");
            FBlocks.Add(u"No");
            FBlocks.Add(u"");
            FBlocks.Add(u"");
            Note(laTupleStarted, spBlocks, FBlocks.Count() - 5);
            break;
        case 1:
        case 2:
            if (IsYes(value)) StoreInTuple(FBlocks, 5 - key->Index, u"Yes");
            NoteTupleField(FBlocks, spBlocks, 5 - key->Index, IsYes(value));
            break;
        default:
            StoreInTuple(FBlocks, 5 - key->Index, value);
            NoteTupleField(FBlocks, spBlocks, 5 - key->Index, true);
            break;
        }
        break;
    case oaFold:
        switch (key->Index) {
        case 0:
            FFolds.Add(value);
            for (int k = 0; k < 4; ++k)
                FFolds.Add(u"");
            Note(laTupleStarted, spFolds, FFolds.Count() - 5);
            break;
        case 4:
            // Marks the last block's end field, not the fold: the format's
            // reader has always done so, and files depend on it.
            if (IsYes(value)) StoreInTuple(FBlocks, 1, u"Yes");
            NoteTupleField(FBlocks, spBlocks, 1, IsYes(value));
            break;
        default:
            StoreInTuple(FFolds, 5 - key->Index, value);
            NoteTupleField(FFolds, spFolds, 5 - key->Index, true);
            break;
        }
        break;
    }
}

void TSyntaxReader::NoteTupleField(const TWgWideStringList& List, TSyntaxPart Part, int FromEnd,
                                   bool Stored) {
    if (!FObserver) return;
    const int index = List.Count() - FromEnd;
    if (index <= 0)
        Note(laTupleMissing, Part);
    else
        Note(Stored ? laTupleField : laTupleNotYes, Part, index);
}

void TSyntaxReader::GroupLine(WideView Line, bool IsTags) {
    if (IsEndLine(Line)) {
        FState = secNone;
        Note(laSectionEnd);
        return;
    }
    // Without a quote the value is the (already trimmed) line itself.
    const bool plain = !FHasQuote && (Line.empty() || Line[0] != u'>');
    if (plain && !Line.empty() && !IsTags && !FNewKeywordGroup) {
        FKeywords.AddMenuItem(FKeywordsCounter - 1, Line, KindNone, WideView());
        NoteItem(FKeywords, spKeywords, FKeywordsCounter - 1);
        return;
    }
    WideString value = plain ? WideString(Line) : GetKeywordValue(Line);
    if (value.empty()) return;
    TMenuList& menus = IsTags ? FTags : FKeywords;
    const TSyntaxPart part = IsTags ? spTags : spKeywords;
    bool& newGroup = IsTags ? FNewTagGroup : FNewKeywordGroup;
    const int counter = IsTags ? FTagsCounter : FKeywordsCounter;
    if (newGroup) {
        WideString title = value == u">" ? GetOptionValue(Line) : WideString();
        if (!title.empty())
            menus.AddMenu(title);
        else
            menus.AddMenu((IsTags ? u"Tags " : u"Keywords ") + IntToWide(counter));
        newGroup = false;
        Note(laGroupStarted, part, menus.MenuCount() - 1);
    }
    if (value == u">") return;
    if (IsTags) {
        if (value[0] == Backslash) value.erase(0, 1);
        menus.AddMenuItem(counter - 1, plain && value.size() == Line.size() ? value : Trim(value),
                          KindNone, WideString());
    } else {
        // Keywords keep the whole line: quotes and backslashes stay.
        menus.AddMenuItem(counter - 1, plain ? value : Trim(Line), KindNone, WideString());
    }
    NoteItem(menus, part, counter - 1);
}

void TSyntaxReader::EntryLine(WideView Line, TMenuList& Menus, TSyntaxPart Part) {
    const WideString name = GetEntryName(Line);
    if (name.empty()) {
        Note(laSkipped, Part, -1, -1, skNoEntryName);
        return;
    }
    WideString text = GetEntryText(Line);
    if (text.empty()) text = name;
    WideChar letter = GetEntryKind(Line);
    if (letter == 0) letter = u'p'; // no letter at all means kind 2
    if (Menus.MenuCount() == 0) {
        Note(laSkipped, Part, -1, -1, skNoMenu);
        return;
    }
    Menus.AddMenuItem(Menus.MenuCount() - 1, name, KindLetterToIndex(letter), text);
    NoteItem(Menus, Part, Menus.MenuCount() - 1);
}

void TSyntaxReader::CompletionLine(WideView Line, TMenuList& Menus, bool IsAutoComplete) {
    const TSyntaxPart part = IsAutoComplete ? spAutoComplete : spTagComplete;
    if (IsEndLine(Line)) {
        FState = secNone;
        Note(laSectionEnd);
        return;
    }
    if (Line.size() > 2 && Line[0] == u'-' && Line[1] == u'>') {
        EntryLine(Line, Menus, part);
        return;
    }
    if (Line.size() < 3) {
        if (!Line.empty()) Note(laSkipped, part, -1, -1, skTooShort);
        return;
    }
    WideString title = GetMenuTitle(Line);
    // An empty class title becomes "." by the same dot rule.
    if (IsAutoComplete && (title.empty() || title.back() != u'.')) title += u'.';
    Menus.AddMenu(title);
    Note(laMenuAdded, part, Menus.MenuCount() - 1);
}

void TSyntaxReader::UserMenuLine(WideView Line) {
    if (IsEndLine(Line)) {
        FState = secNone;
        Note(laSectionEnd);
        return;
    }
    if (FUserMenu.MenuCount() < 1) {
        FUserMenu.AddMenu(u"0");
        Note(laMenuAdded, spUserMenu, 0);
    }
    if (Line.size() < 3 || Line[0] != u'-' || Line[1] != u'>') {
        if (!Line.empty()) Note(laSkipped, spUserMenu, -1, -1, skNotEntry);
        return;
    }
    EntryLine(Line, FUserMenu, spUserMenu);
}

} // namespace

// ---- line helpers

WideString StripLineComment(WideView S) {
    return WideString(StripLineCommentView(S));
}

WideString GetOptionKey(WideView S) {
    WideString s = Trim(S);
    auto p = s.find(u'=');
    if (p != WideString::npos) return Trim(WideView(s).substr(0, p));
    if (!s.empty() && s[0] == u'>') return u">";
    return {};
}

WideString GetOptionValue(WideView S) {
    WideString s = Trim(S);
    auto p = s.find(u'=');
    if (p != WideString::npos) {
        WideString v = s.substr(p + 1);
        DeleteFirst(v, Quote);
        DeleteLast(v, Quote);
        v = Trim(v);
        // One backslash at most goes, whatever escapes the writer added.
        if (v.size() > 1) DeleteFirst(v, Backslash);
        return Trim(v);
    }
    if (!s.empty() && s[0] == u'>') return Trim(WideView(s).substr(1));
    return {};
}

WideString GetHintText(WideView S) {
    WideString s = Trim(S);
    DeleteFirst(s, Quote);
    DeleteLast(s, Quote);
    s = Trim(s);
    if (s.size() > 1) DeleteFirst(s, Backslash);
    return Trim(s);
}

WideString GetKeywordValue(WideView S) {
    WideString s = Trim(S);
    if (!s.empty() && s[0] == u'>') return u">";
    const std::size_t q = Pos(Quote, s);
    if (q > 0) s.erase(q - 1, 1);
    DeleteLast(s, Quote);
    s = Trim(s);
    if (q == 0) return s;
    // Walk the backslashes left to right; one deleted skips the character
    // after it, and one at position q (first inside the quotes) stays.
    WideString out;
    out.reserve(s.size());
    std::size_t length = s.size();
    bool keepNext = false;
    for (WideChar c : s) {
        if (keepNext) {
            out.push_back(c);
            keepNext = false;
            continue;
        }
        const std::size_t position = out.size() + 1;
        if (c == Backslash && position > q && length > 1) {
            --length;
            keepNext = true;
            continue;
        }
        out.push_back(c);
    }
    return Trim(out);
}

WideString GetEntryName(WideView S) {
    WideView s = TrimView(S);
    s = s.substr(0, s.find(u'|'));
    s = s.substr(0, s.find(u'+'));
    if (auto first = s.find(Quote); first != WideView::npos) s.remove_prefix(first + 1);
    if (auto last = s.rfind(Quote); last != WideView::npos) s = s.substr(0, last);
    return DeleteBackslashesTrimmed(TrimView(s));
}

WideString GetEntryText(WideView S) {
    WideView v = TrimView(S);
    auto bar = v.find(u'|');
    if (bar == WideView::npos) return {};
    v.remove_prefix(bar + 1);
    v = v.substr(0, v.find(u'+'));
    WideString s = WithoutOuterQuotes(v);
    WideView t = TrimView(s);
    if (t.find(u"#12") != WideView::npos) {
        s = ReplaceAll(t, u"#12", u"\r\n");
        t = s;
    }
    return DeleteBackslashesTrimmed(t);
}

WideChar GetEntryKind(WideView S) {
    WideView s = TrimView(S);
    if (auto last = s.rfind(Quote); last != WideView::npos) s.remove_prefix(last);
    auto plus = s.find(u'+');
    if (plus == WideView::npos) return 0;
    const WideView tail = TrimView(s.substr(plus + 1));
    return tail.size() == 1 ? tail[0] : WideChar(0);
}

WideString GetMenuTitle(WideView S) {
    WideString s = Trim(S);
    DeleteFirst(s, Quote);
    DeleteLast(s, Quote);
    return Trim(DeleteBackslashes(Trim(s)));
}

namespace {
constexpr char16_t KindLetters[] = u"lvpemfotnc0123456789";
}

int KindLetterToIndex(WideChar Letter) {
    for (int i = 0; i < 20; ++i)
        if (KindLetters[i] == Letter) return i;
    return KindNone;
}

WideChar KindIndexToLetter(int Index) {
    return Index >= 0 && Index < 20 ? KindLetters[Index] : u'-';
}

// ---- TKVSyntax

void TKVSyntax::LoadSyntaxLines(const TLineSource& Lines, TWgWideStringList& Header,
                                TWgWideStringList& Options, TWgWideStringList& Blocks,
                                TWgWideStringList& Folds, TWgWideStringList& AutoHint,
                                TWgWideStringList& Sample, TMenuList& Keywords, TMenuList& Tags,
                                TMenuList& AutoComplete, TMenuList& TagComplete,
                                TMenuList& UserMenu, TSyntaxWalkObserver* Observer) {
    if (Lines.Count() == 0) return; // nothing is cleared
    TSyntaxReader(Lines, Header, Options, Blocks, Folds, AutoHint, Sample, Keywords, Tags,
                  AutoComplete, TagComplete, UserMenu, Observer)
        .Run();
}

void TKVSyntax::LoadSyntaxFile(TWgWideStringList& Header, TWgWideStringList& Options,
                               TWgWideStringList& Blocks, TWgWideStringList& Folds,
                               TWgWideStringList& AutoHint, TWgWideStringList& Sample,
                               TMenuList& Keywords, TMenuList& Tags, TMenuList& AutoComplete,
                               TMenuList& TagComplete, TMenuList& UserMenu,
                               const AnsiString& FileName, TTextEncoding* DetectedEncoding) {
    // The lines are decoded as the text-file list decodes them, but kept as
    // the file's own bytes where possible, so a large file is not held twice.
    TTextLines lines;
    TTextEncoding encoding = teAnsi;
    {
        TFileStream stream(FileName, fmOpenRead | fmShareDenyWrite);
        lines.Load(stream, encoding);
    }
    if (DetectedEncoding) *DetectedEncoding = encoding;
    LoadSyntaxLines(lines, Header, Options, Blocks, Folds, AutoHint, Sample, Keywords, Tags,
                    AutoComplete, TagComplete, UserMenu);
}
