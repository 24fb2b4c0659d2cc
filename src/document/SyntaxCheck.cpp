#include "document/SyntaxCheck.h"

#include "base/Streams.h"
#include "base/Strings.h"
#include "wide/CodePage.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

const std::array<TSyntaxCheckInfo, 9> SyntaxChecks = {{
    {"dropped-line", csError, "a line that the reader passes over; a save drops it"},
    {"dropped-comment", csWarning, "comments, which a save does not keep"},
    {"ignored-value", csWarning, "a yes/no value that is neither yes nor no: read as not set"},
    {"duplicate-keyword", csWarning, "a keyword or tag listed twice"},
    {"duplicate-menu", csError, "two groups or menus of one name"},
    {"encoding-loss", csError, "characters the system code page lacks; a save writes \"?\""},
    {"save-drift", csError, "a value that reads back otherwise after a save"},
    {"empty-group", csWarning, "a keyword or tag group, or a menu, without items"},
    {"keyword-is-delimiter", csWarning, "a keyword or tag equal to a delimiter"},
}};

const char* SyntaxPartName(TSyntaxPart Part) {
    static const char* const names[] = {"",       "Header",  "Options",  "Blocks",
                                        "Folds",  "AutoHint", "Sample",  "Keywords",
                                        "Tags",   "AutoComplete", "TagComplete", "UserMenu"};
    return std::size_t(Part) < std::size(names) ? names[Part] : "";
}

namespace {

// Option indexes the checks look at.
constexpr int OptCaseSensitive = 13;
constexpr int OptTagsCaseSensitive = 14;
// The options that delimit text: comments, chars, strings, tag-free stretches.
constexpr int DelimiterOptions[] = {0, 1, 2, 3, 4, 5, 6, 7, 15, 16};

const char16_t* const BlockFieldKeys[5] = {u"BlockName", u"BlockOnLine", u"BlockAsString",
                                           u"BlockStart", u"BlockEnd"};
const char16_t* const FoldFieldKeys[5] = {u"Fold_Id", u"Fold_Begin", u"Fold_End",
                                          u"Fold_Section", u"Fold_NoParentOfId"};

// Longer values are cut in messages.
constexpr std::size_t QuoteLimit = 60;
// Changes of one container or menu reported one by one before a summary.
constexpr int DriftLimit = 20;

bool IsAscii(WideView S) {
    for (WideChar c : S)
        if (c >= 0x80) return false;
    return true;
}

// The steps of a walk, and what the checks need to know of each line
// without reading it again.
class TStepLog final : public TSyntaxWalkObserver {
public:
    enum : std::uint8_t { lfSpecial = 1, lfText = 2 };
    void Step(const TLineStep& S) override {
        Steps.push_back(S);
        Steps.back().Text = WideView();
        if (Flags.size() <= std::size_t(S.Line)) {
            Flags.resize(std::size_t(S.Line) + 1, 0);
            std::uint8_t& f = Flags[std::size_t(S.Line)];
            // Characters a code page may change, or breaks that split the
            // line in two once it is written.
            for (WideChar c : S.Text)
                if (c >= 0x80 || c == u'\r' || c == u'\n') {
                    f |= lfSpecial;
                    break;
                }
            for (WideChar c : S.Text)
                if (c > 32) {
                    f |= lfText;
                    break;
                }
        }
    }
    std::vector<TLineStep> Steps;
    std::vector<std::uint8_t> Flags; // by line
};

// Hashing and equality of keywords, with or without case.
struct TWordHash {
    bool CaseSensitive;
    std::size_t operator()(WideView S) const {
        std::size_t h = 14695981039346656037ull;
        for (WideChar c : S)
            h = (h ^ (CaseSensitive ? c : LowerChar(c))) * 1099511628211ull;
        return h;
    }
};
struct TWordEqual {
    bool CaseSensitive;
    bool operator()(WideView A, WideView B) const {
        if (A.size() != B.size()) return false;
        if (CaseSensitive) return A == B;
        for (std::size_t i = 0; i < A.size(); ++i)
            if (A[i] != B[i] && LowerChar(A[i]) != LowerChar(B[i])) return false;
        return true;
    }
};
template <typename T> using TWordMap = std::unordered_map<WideView, T, TWordHash, TWordEqual>;
template <typename T> TWordMap<T> MakeWordMap(bool CaseSensitive, std::size_t Size) {
    return TWordMap<T>(Size, TWordHash{CaseSensitive}, TWordEqual{CaseSensitive});
}

// The line each entry, menu and item was read from (the last line that set it).
class TLocations {
public:
    explicit TLocations(const std::vector<TLineStep>& Steps) {
        for (const TLineStep& s : Steps) {
            if (s.Index < 0 || s.Part == spNone || s.Part > spUserMenu) continue;
            TPart& part = FParts[s.Part];
            if (s.Item < 0) {
                Put(part.Entries, s.Index, s.Line);
            } else {
                if (part.Items.size() <= std::size_t(s.Index)) part.Items.resize(std::size_t(s.Index) + 1);
                Put(part.Items[std::size_t(s.Index)], s.Item, s.Line);
            }
        }
    }
    // 0-based line, or -1. Item -1 asks for the entry or menu itself.
    int Line(TSyntaxPart Part, int Index, int Item = -1) const {
        if (Part == spNone || Part > spUserMenu || Index < 0) return -1;
        const TPart& part = FParts[Part];
        if (Item < 0) return Get(part.Entries, Index);
        return std::size_t(Index) < part.Items.size() ? Get(part.Items[std::size_t(Index)], Item)
                                                       : -1;
    }

private:
    struct TPart {
        std::vector<int> Entries;            // entry or menu index -> line
        std::vector<std::vector<int>> Items; // menu -> item -> line
    };
    static void Put(std::vector<int>& V, int Index, int Line) {
        if (V.size() <= std::size_t(Index)) V.resize(std::size_t(Index) + 1, -1);
        V[std::size_t(Index)] = Line;
    }
    static int Get(const std::vector<int>& V, int Index) {
        return std::size_t(Index) < V.size() ? V[std::size_t(Index)] : -1;
    }
    std::array<TPart, spUserMenu + 1> FParts;
};

WideString Quoted(WideView S) {
    WideString shown = S.size() > QuoteLimit ? WideString(S.substr(0, QuoteLimit)) + u"..."
                                             : WideString(S);
    shown = ReplaceAll(shown, u"\r\n", u"\\n");
    return u"\"" + shown + u"\"";
}

WideString Ascii(const char* S) {
    return WideFromAscii(S);
}

// "yes" or "y" in any case: what the reader takes as set.
bool IsYesWord(const WideString& Value) {
    const WideString low = WideLowerCase(Value);
    return low == u"yes" || low == u"y";
}

bool IsYesNoWord(const WideString& Value) {
    const WideString low = WideLowerCase(Value);
    return low.empty() || IsYesWord(low) || low == u"no" || low == u"n";
}

// Edit distance with adjacent swaps, for "did you mean".
int Distance(WideView A, WideView B) {
    const std::size_t n = A.size(), m = B.size();
    std::vector<std::vector<int>> d(n + 1, std::vector<int>(m + 1));
    for (std::size_t i = 0; i <= n; ++i)
        d[i][0] = int(i);
    for (std::size_t j = 0; j <= m; ++j)
        d[0][j] = int(j);
    for (std::size_t i = 1; i <= n; ++i)
        for (std::size_t j = 1; j <= m; ++j) {
            const int cost = A[i - 1] == B[j - 1] ? 0 : 1;
            d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + cost});
            if (i > 1 && j > 1 && A[i - 1] == B[j - 2] && A[i - 2] == B[j - 1])
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
        }
    return d[n][m];
}

// The known option key nearest to Key, if it is close.
WideString NearestKey(const WideString& Key) {
    if (Key.empty() || Key.size() > 40) return {};
    const WideString low = WideLowerCase(Key);
    WideString best;
    int bestDistance = 3;
    auto consider = [&](const WideString& Candidate) {
        const int d = Distance(low, WideLowerCase(Candidate));
        if (d < bestDistance) {
            bestDistance = d;
            best = Candidate;
        }
    };
    for (const char* k : SyntaxOptionKeys)
        consider(WideFromAscii(k));
    for (int i = 0; i < 5; ++i) {
        consider(BlockFieldKeys[i]);
        consider(FoldFieldKeys[i]);
    }
    return best;
}

// S as the code page gives it back after a save.
WideString ThroughCodePage(const WideString& S, const TCodePage& CodePage) {
    return IsAscii(S) ? S : CodePage.Decode(CodePage.Encode(S));
}

// Characters of S that the code page cannot write, each once, in order.
// Every code page the program uses writes ASCII as it is.
WideString LostCharacters(WideView S, const TCodePage& CodePage) {
    if (IsAscii(S) || CodePage.Decode(CodePage.Encode(S)) == S) return {};
    WideString lost;
    for (std::size_t i = 0; i < S.size(); ++i) {
        std::size_t len = 1;
        if (S[i] >= 0xD800 && S[i] < 0xDC00 && i + 1 < S.size() && S[i + 1] >= 0xDC00 &&
            S[i + 1] < 0xE000)
            len = 2;
        const WideView one = S.substr(i, len);
        if (CodePage.Decode(CodePage.Encode(one)) != one && lost.find(one) == WideString::npos)
            lost.append(one);
        i += len - 1;
    }
    return lost;
}

// The column (1-based) of the first character of Chars in S, 0 if none.
int ColumnOf(WideView S, WideView Chars) {
    const std::size_t p = S.find_first_of(Chars);
    return p == WideView::npos ? 0 : int(p) + 1;
}

// One run of the checks over one text.
class TCheckRun {
public:
    TCheckRun(const TSyntaxChecker& Checker, const TLineSource& Lines, const TStepLog& Log,
              const TSyntaxDocument& Read, bool FromFile)
        : FChecker(Checker), FLines(Lines), FSteps(Log.Steps), FFlags(Log.Flags), FRead(Read),
          FFromFile(FromFile), FWhere(Log.Steps), FCodePage(SystemCodePage()) {}

    void LineChecks();
    void DocumentChecks();
    void Drift(const TSyntaxDocument& Before);
    std::vector<TSyntaxFinding> Take();

private:
    bool Enabled(const char* Id) const { return !FChecker.Disabled.count(Id); }
    void Add(const char* Id, int Line, int Column, WideString Message, TSyntaxPart Part = spNone,
             int Index = -1, int Item = -1);
    const WideString& Raw(int Line) {
        FLines.Line(Line, FRaw);
        return FRaw;
    }
    void DroppedLine(const TLineStep& S, int EmptyMarker);
    void IgnoredValue(const TLineStep& S);
    void EncodingLoss(const TLineStep& S);
    void DuplicateKeywords(const TMenuList& Menus, TSyntaxPart Part, bool CaseSensitive);
    void DuplicateMenus(const TMenuList& Menus, TSyntaxPart Part);
    void EmptyGroups(const TMenuList& Menus, TSyntaxPart Part);
    void KeywordDelimiters(const TMenuList& Menus, TSyntaxPart Part, bool CaseSensitive);
    void DriftList(const TWgWideStringList& Before, const TWgWideStringList& After,
                   TSyntaxPart Part);
    void DriftMenus(const TMenuList& Before, const TMenuList& After, TSyntaxPart Part);
    WideString EntryName(TSyntaxPart Part, int Index) const;
    int LineOr(TSyntaxPart Part, int Index, int Item, int Fallback) const {
        const int line = FWhere.Line(Part, Index, Item);
        return line >= 0 ? line : Fallback;
    }

    const TSyntaxChecker& FChecker;
    const TLineSource& FLines;
    const std::vector<TLineStep>& FSteps;
    const std::vector<std::uint8_t>& FFlags;
    bool LineHas(int Line, std::uint8_t Flag) const {
        return std::size_t(Line) < FFlags.size() && (FFlags[std::size_t(Line)] & Flag);
    }
    const TSyntaxDocument& FRead;
    const bool FFromFile; // the lines are a file's, not a save's of a document in memory
    TLocations FWhere;
    const TCodePage& FCodePage;
    WideString FRaw;
    std::vector<TSyntaxFinding> FOut;
};

void TCheckRun::Add(const char* Id, int Line, int Column, WideString Message, TSyntaxPart Part,
                    int Index, int Item) {
    if (!Enabled(Id)) return;
    TSyntaxFinding f;
    f.Line = FFromFile && Line >= 0 ? Line + 1 : 0;
    f.Column = FFromFile ? Column : 0;
    f.Check = Id;
    for (const TSyntaxCheckInfo& info : SyntaxChecks)
        if (f.Check == info.Id) f.Severity = info.Severity;
    f.Message = std::move(Message);
    f.Part = Part;
    f.Index = Index;
    f.Item = Item;
    FOut.push_back(std::move(f));
}

void TCheckRun::LineChecks() {
    int comments = 0, firstComment = -1;
    int emptyMarker = -1; // a marker the reader did not enter, and no section since
    bool sampleClosed = false; // an [EndSample] the reader passed over, and no sample line since
    for (const TLineStep& s : FSteps) {
        // The lines a save writes have no comments and nothing the reader
        // passes over that the drift would not show better; only the
        // characters they lose count.
        if (!FFromFile) {
            if (s.Part != spNone && s.Index >= 0) EncodingLoss(s);
            continue;
        }
        switch (s.Action) {
        case laUnknownKey:
        case laTupleMissing:
        case laOutside:
        case laSkipped:
            DroppedLine(s, emptyMarker);
            break;
        case laSectionEmpty:
            // Inside the sample a marker line is lost from the text; an
            // [EndSample] without content after it is the sample's own end.
            if (s.Within == spSample &&
                WideLowerCase(StripLineComment(Raw(s.Line))) == u"[endsample]")
                sampleClosed = true;
            else if (s.Within == spSample)
                Add("dropped-line", s.Line, 0,
                    u"a section marker inside the sample is not sample text; a save drops it",
                    spSample);
            else if (s.Within == spNone)
                emptyMarker = s.Line;
            break;
        case laSectionEntered:
            if (s.Within == spSample && s.Part != spSample && !sampleClosed)
                Add("dropped-line", s.Line, 0,
                    u"this marker ends the sample: the lines below it are read as " +
                        WideFromAscii(SyntaxPartName(s.Part)) + u", not as sample text",
                    spSample);
            emptyMarker = -1;
            break;
        case laSectionEnd:
            emptyMarker = -1;
            break;
        case laSampleLine:
            sampleClosed = false;
            break;
        case laOptionNotYes:
        case laTupleNotYes:
            IgnoredValue(s);
            break;
        case laBlank:
            // A line with text that strips to nothing is a comment line.
            if (LineHas(s.Line, TStepLog::lfText) && !s.CommentStripped) {
                ++comments;
                if (firstComment < 0) firstComment = s.Line;
            }
            break;
        default:
            break;
        }
        if (s.CommentStripped && s.Action != laSampleLine) {
            ++comments;
            if (firstComment < 0) firstComment = s.Line;
        }
        if (s.Part != spNone && s.Index >= 0) EncodingLoss(s);
    }
    if (comments > 0)
        Add("dropped-comment", firstComment, 0,
            comments == 1 ? u"a comment; a save does not keep comments"
                          : IntToWide(comments) +
                                u" comments in this file, the first here; a save keeps none of "
                                u"them");
}

void TCheckRun::DroppedLine(const TLineStep& S, int EmptyMarker) {
    const WideString line = StripLineComment(Raw(S.Line));
    // The star rows around the banner come back with every save.
    if (S.Action == laOutside && line.size() >= 2 && line[0] == u'{' && line[1] == u'*') return;
    WideString message;
    switch (S.Action) {
    case laUnknownKey: {
        const WideString key = GetOptionKey(line);
        if (line.find(u'=') == WideString::npos) {
            message = u"this line has no \"=\"; the reader passes over it and a save drops it";
        } else {
            message = u"unknown option " + Quoted(key);
            const WideString near = NearestKey(key);
            if (!near.empty()) message += u" (did you mean " + Quoted(near) + u"?)";
            message += u"; a save drops this line";
        }
        break;
    }
    case laTupleMissing:
        message = Quoted(GetOptionKey(line)) + u" comes before any " +
                  (S.Part == spFolds ? u"Fold_Id" : u"BlockName") +
                  u", so it belongs to no record; a save drops it";
        break;
    case laOutside:
        if (EmptyMarker >= 0)
            message = u"the section marker at line " + IntToWide(EmptyMarker + 1) +
                      u" has nothing below it that the reader counts (titles do not count), "
                      u"so it is not entered and this line stands outside every section; a "
                      u"save drops it";
        else
            message = u"this line stands outside every section; a save drops it";
        break;
    default:
        switch (S.Reason) {
        case skNoEntryName:
            message = u"this entry has no name; a save drops it";
            break;
        case skNoMenu:
            message = u"this entry comes before any menu; a save drops it";
            break;
        case skTooShort:
            message = u"a menu title needs three characters or more; a save drops this line";
            break;
        case skNotEntry:
            message = u"only \"->\" entries belong in the user menu; a save drops this line";
            break;
        default:
            message = u"this line stores nothing; a save drops it";
            break;
        }
        break;
    }
    Add("dropped-line", S.Line, 0, std::move(message), S.Part);
}

void TCheckRun::IgnoredValue(const TLineStep& S) {
    const WideString& raw = Raw(S.Line);
    const WideString line = StripLineComment(raw);
    const WideString value = GetOptionValue(line);
    if (IsYesNoWord(value)) return;
    const std::size_t at = raw.find(value);
    Add("ignored-value", S.Line, at == WideString::npos ? 0 : int(at) + 1,
        GetOptionKey(line) + u" = " + Quoted(value) +
            u" is read as not set; only \"Yes\" (or \"y\") sets it",
        S.Part, S.Index);
}

void TCheckRun::EncodingLoss(const TLineStep& S) {
    if (!Enabled("encoding-loss")) return;
    // Only what the line stores is written again.
    if (!LineHas(S.Line, TStepLog::lfSpecial)) return;
    const WideString& raw = Raw(S.Line);
    const WideString text = S.Action == laSampleLine ? raw : StripLineComment(raw);
    const WideString lost = LostCharacters(text, FCodePage);
    if (lost.empty()) return;
    // Each line once, even when it gave more than one step.
    if (!FOut.empty() && FOut.back().Check == "encoding-loss" &&
        FOut.back().Line == (FFromFile ? S.Line + 1 : 0) && FOut.back().Part == S.Part &&
        (FFromFile || FOut.back().Index == S.Index))
        return;
    WideString message = u"code page " + IntToWide(FCodePage.Number()) + u" has no ";
    message += lost.size() == 1 ? u"character " : u"characters ";
    message += Quoted(lost) + u"; a save writes \"?\" for ";
    message += lost.size() == 1 ? u"it" : u"them";
    Add("encoding-loss", S.Line, ColumnOf(raw, lost), std::move(message), S.Part, S.Index, S.Item);
}

void TCheckRun::DocumentChecks() {
    const bool caseKeywords = FRead.Options->Ref(OptCaseSensitive) == u"Yes";
    const bool caseTags = FRead.Options->Ref(OptTagsCaseSensitive) == u"Yes";
    DuplicateKeywords(*FRead.Keywords, spKeywords, caseKeywords);
    DuplicateKeywords(*FRead.Tags, spTags, caseTags);
    DuplicateMenus(*FRead.Keywords, spKeywords);
    DuplicateMenus(*FRead.Tags, spTags);
    DuplicateMenus(*FRead.AutoComplete, spAutoComplete);
    DuplicateMenus(*FRead.TagComplete, spTagComplete);
    EmptyGroups(*FRead.Keywords, spKeywords);
    EmptyGroups(*FRead.Tags, spTags);
    EmptyGroups(*FRead.AutoComplete, spAutoComplete);
    EmptyGroups(*FRead.TagComplete, spTagComplete);
    KeywordDelimiters(*FRead.Keywords, spKeywords, caseKeywords);
    KeywordDelimiters(*FRead.Tags, spTags, caseTags);
}

void TCheckRun::DuplicateKeywords(const TMenuList& Menus, TSyntaxPart Part, bool CaseSensitive) {
    if (!Enabled("duplicate-keyword")) return;
    struct TFirst {
        int Menu, Item;
    };
    std::size_t total = 0;
    for (int m = 0; m < Menus.MenuCount(); ++m)
        total += std::size_t(Menus.Menu(m)->Items->Count());
    auto seen = MakeWordMap<TFirst>(CaseSensitive, total);
    const WideString noun = Part == spTags ? u"tag " : u"keyword ";
    for (int m = 0; m < Menus.MenuCount(); ++m) {
        const TWgWideStringList& items = *Menus.Menu(m)->Items;
        for (int j = 0; j < items.Count(); ++j) {
            const WideView name = TMenuList::ItemLeftView(items.Ref(j));
            if (name.empty()) continue;
            auto [it, added] = seen.try_emplace(name, TFirst{m, j});
            if (added) continue;
            const TFirst first = it->second;
            const int firstLine = FWhere.Line(Part, first.Menu, first.Item);
            WideString message = noun + Quoted(name) + u" is already ";
            message += first.Menu == m ? u"in this group"
                                       : u"in group " + Quoted(Menus.MenuName(first.Menu));
            if (FFromFile && firstLine >= 0) message += u" (line " + IntToWide(firstLine + 1) + u")";
            if (!CaseSensitive && TMenuList::ItemLeftView(
                                      Menus.Menu(first.Menu)->Items->Ref(first.Item)) != name)
                message += u", which compares without case";
            Add("duplicate-keyword", LineOr(Part, m, j, -1), 0, std::move(message), Part, m, j);
        }
    }
}

void TCheckRun::DuplicateMenus(const TMenuList& Menus, TSyntaxPart Part) {
    if (!Enabled("duplicate-menu")) return;
    // The writer finds a menu by its name without case: the second of a
    // name is written with the first one's item count.
    std::unordered_map<WideString, int> seen;
    for (int m = 0; m < Menus.MenuCount(); ++m) {
        const WideString name = Menus.MenuName(m);
        auto [it, added] = seen.try_emplace(WideLowerCase(name), m);
        if (added) continue;
        const int firstLine = FWhere.Line(Part, it->second);
        WideString message = Ascii(Part == spKeywords || Part == spTags ? "group " : "menu ") +
                             Quoted(name) + u" has the name of an earlier one";
        if (FFromFile && firstLine >= 0) message += u" (line " + IntToWide(firstLine + 1) + u")";
        message += u"; a save writes it with the earlier one's item count";
        Add("duplicate-menu", LineOr(Part, m, -1, -1), 0, std::move(message), Part, m);
    }
}

void TCheckRun::EmptyGroups(const TMenuList& Menus, TSyntaxPart Part) {
    for (int m = 0; m < Menus.MenuCount(); ++m) {
        if (Menus.Menu(m)->Items->Count() > 0) continue;
        WideString message = Ascii(Part == spKeywords || Part == spTags ? "group " : "menu ") +
                             Quoted(Menus.MenuName(m)) + u" has no items";
        Add("empty-group", LineOr(Part, m, -1, -1), 0, std::move(message), Part, m);
    }
}

void TCheckRun::KeywordDelimiters(const TMenuList& Menus, TSyntaxPart Part, bool CaseSensitive) {
    if (!Enabled("keyword-is-delimiter")) return;
    auto delimiters = MakeWordMap<WideString>(CaseSensitive, 16); // value -> what it delimits
    for (int i : DelimiterOptions) {
        const WideString& value = FRead.Options->Ref(i);
        if (!value.empty())
            delimiters.try_emplace(value, WideFromAscii(SyntaxOptionKeys[std::size_t(i)]));
    }
    const TWgWideStringList& blocks = *FRead.Blocks;
    for (int i = 0; i + 4 < blocks.Count(); i += 5)
        for (int field : {3, 4})
            if (!blocks.Ref(i + field).empty())
                delimiters.try_emplace(blocks.Ref(i + field), WideString(BlockFieldKeys[field]) +
                                                                  u" of block " +
                                                                  Quoted(blocks.Ref(i)));
    if (delimiters.empty()) return;
    const WideString noun = Part == spTags ? u"tag " : u"keyword ";
    for (int m = 0; m < Menus.MenuCount(); ++m) {
        const TWgWideStringList& items = *Menus.Menu(m)->Items;
        for (int j = 0; j < items.Count(); ++j) {
            const WideView name = TMenuList::ItemLeftView(items.Ref(j));
            auto it = delimiters.find(name);
            if (name.empty() || it == delimiters.end()) continue;
            Add("keyword-is-delimiter", LineOr(Part, m, j, -1), 0,
                noun + Quoted(name) + u" is also " + it->second +
                    u"; the companion editor cannot tell them apart",
                Part, m, j);
        }
    }
}

WideString TCheckRun::EntryName(TSyntaxPart Part, int Index) const {
    switch (Part) {
    case spHeader:
        return u"banner line " + IntToWide(Index + 1);
    case spOptions:
        return Index < SyntaxOptionCount ? WideFromAscii(SyntaxOptionKeys[std::size_t(Index)])
                                         : u"option " + IntToWide(Index + 1);
    case spBlocks:
    case spFolds: {
        const TWgWideStringList& list = Part == spBlocks ? *FRead.Blocks : *FRead.Folds;
        const int record = Index / 5;
        // Through a pointer: indexing the conditional of the two arrays is
        // mistranslated by some compilers in unoptimised sanitizer builds.
        const char16_t* const* keys = Part == spBlocks ? BlockFieldKeys : FoldFieldKeys;
        WideString name = keys[Index % 5];
        name += Part == spBlocks ? u" of block " : u" of fold ";
        name += record * 5 < list.Count() ? Quoted(list.Ref(record * 5))
                                          : IntToWide(record + 1);
        return name;
    }
    case spAutoHint:
        return u"hint " + IntToWide(Index + 1);
    case spSample:
        return u"sample line " + IntToWide(Index + 1);
    default:
        return {};
    }
}

// A yes/no entry means only "set" or "not set": "No" and nothing are one.
bool IsYesNoEntry(TSyntaxPart Part, int Index) {
    static constexpr int yesNoOptions[] = {8, 13, 14, 17, 24, 25, 29};
    switch (Part) {
    case spOptions:
        return std::find(std::begin(yesNoOptions), std::end(yesNoOptions), Index) !=
               std::end(yesNoOptions);
    case spBlocks:
        return Index % 5 == 1 || Index % 5 == 2;
    case spFolds:
        return Index % 5 == 4;
    default:
        return false;
    }
}

bool SameMeaning(TSyntaxPart Part, int Index, const WideString& A, const WideString& B) {
    if (A == B) return true;
    // Banner lines are trimmed on reading: the spaces around them are layout.
    if (Part == spHeader) return Trim(A) == Trim(B);
    if (!IsYesNoEntry(Part, Index)) return false;
    return IsYesWord(A) == IsYesWord(B);
}

void TCheckRun::DriftList(const TWgWideStringList& Before, const TWgWideStringList& After,
                          TSyntaxPart Part) {
    int reported = 0, more = 0, lastLine = -1;
    const int count = std::max(Before.Count(), After.Count());
    for (int i = 0; i < count; ++i) {
        const WideString* a = i < After.Count() ? &After.Ref(i) : nullptr;
        // What the code page does to a value is encoding-loss, not drift.
        WideString written;
        const WideString* b = nullptr;
        if (i < Before.Count()) {
            b = &Before.Ref(i);
            if (a && SameMeaning(Part, i, *b, *a)) continue;
            written = ThroughCodePage(*b, FCodePage);
            b = &written;
        }
        const int line = FWhere.Line(Part, i);
        if (line >= 0) lastLine = line;
        if (b && a && SameMeaning(Part, i, *b, *a)) continue;
        // An empty record field that a save leaves out is no change.
        if ((!b && a && a->empty()) || (!a && b && b->empty())) continue;
        if (reported == DriftLimit) {
            ++more;
            continue;
        }
        ++reported;
        WideString message = u"a save ";
        if (b && a && a->empty())
            message += u"drops " + EntryName(Part, i) + u" " + Quoted(*b);
        else if (b && a)
            message += u"changes " + EntryName(Part, i) + u" from " + Quoted(*b) + u" to " +
                       Quoted(*a);
        else if (b)
            message += u"drops " + EntryName(Part, i) + u" " + Quoted(*b);
        else
            message += u"adds " + EntryName(Part, i) + u" " + Quoted(*a);
        Add("save-drift", line >= 0 ? line : lastLine, 0, std::move(message), Part, i);
    }
    if (more > 0)
        Add("save-drift", lastLine, 0,
            u"and " + IntToWide(more) + u" more changes in " + WideFromAscii(SyntaxPartName(Part)),
            Part);
}

void TCheckRun::DriftMenus(const TMenuList& Before, const TMenuList& After, TSyntaxPart Part) {
    const int count = std::max(Before.MenuCount(), After.MenuCount());
    for (int m = 0; m < count; ++m) {
        const TAListItem* b = Before.Menu(m);
        const TAListItem* a = After.Menu(m);
        const int menuLine = FWhere.Line(Part, m);
        if (!a || !b) {
            Add("save-drift", menuLine, 0,
                u"a save " + Ascii(b ? "drops" : "adds") + u" the menu " +
                    Quoted(b ? b->Name : a->Name) + u" of " + WideFromAscii(SyntaxPartName(Part)),
                Part, m);
            continue;
        }
        if (a->Name != b->Name && a->Name != ThroughCodePage(b->Name, FCodePage))
            Add("save-drift", menuLine, 0,
                u"a save changes the name " + Quoted(b->Name) + u" to " + Quoted(a->Name), Part,
                m);
        int reported = 0, more = 0, lastLine = menuLine;
        const int items = std::max(b->Items->Count(), a->Items->Count());
        for (int j = 0; j < items; ++j) {
            const bool hasB = j < b->Items->Count(), hasA = j < a->Items->Count();
            const int line = FWhere.Line(Part, m, j);
            if (line >= 0) lastLine = line;
            if (hasA && hasB && a->Items->GetObject(j) == b->Items->GetObject(j) &&
                (a->Items->Ref(j) == b->Items->Ref(j) ||
                 a->Items->Ref(j) == ThroughCodePage(b->Items->Ref(j), FCodePage)))
                continue;
            if (reported == DriftLimit) {
                ++more;
                continue;
            }
            ++reported;
            auto shown = [&](const TWgWideStringList& L) {
                WideString s = Quoted(TMenuList::ItemLeft(L.Ref(j)));
                const WideString text = TMenuList::ItemRight(L.Ref(j));
                if (!text.empty()) s += u" | " + Quoted(text);
                if (Part != spKeywords && Part != spTags)
                    s += u" + " + WideString(1, KindIndexToLetter(int(L.GetObject(j))));
                return s;
            };
            WideString message = u"a save ";
            if (hasA && hasB)
                message += u"changes " + shown(*b->Items) + u" to " + shown(*a->Items);
            else if (hasB)
                message += u"drops " + shown(*b->Items);
            else
                message += u"adds " + shown(*a->Items);
            message += u" in " + Quoted(b->Name);
            Add("save-drift", line >= 0 ? line : lastLine, 0, std::move(message), Part, m, j);
        }
        if (more > 0)
            Add("save-drift", lastLine, 0,
                u"and " + IntToWide(more) + u" more changes in " + Quoted(b->Name), Part, m);
    }
}

void TCheckRun::Drift(const TSyntaxDocument& Before) {
    if (!Enabled("save-drift")) return;
    const TSyntaxDocument& before = Before;
    // What a save writes, read back the way a file is read. When the lines
    // checked are that save's own and all ASCII, the code page changes
    // nothing and what was read from them is the answer already.
    TSyntaxDocument readBack;
    const bool ascii = std::none_of(FFlags.begin(), FFlags.end(),
                                    [](std::uint8_t F) { return F & TStepLog::lfSpecial; });
    if (FFromFile || !ascii) {
        const AnsiString text = Before.SaveText();
        TMemoryStream stream(std::vector<std::uint8_t>(text.begin(), text.end()));
        TTextLines lines;
        TTextEncoding encoding = teAnsi;
        lines.Load(stream, encoding);
        readBack.LoadLines(lines);
    }
    const TSyntaxDocument& after = FFromFile || !ascii ? readBack : FRead;
    DriftList(*before.Header, *after.Header, spHeader);
    DriftList(*before.Options, *after.Options, spOptions);
    DriftList(*before.Blocks, *after.Blocks, spBlocks);
    DriftList(*before.Folds, *after.Folds, spFolds);
    DriftList(*before.AutoHint, *after.AutoHint, spAutoHint);
    DriftList(*before.Sample, *after.Sample, spSample);
    DriftMenus(*before.Keywords, *after.Keywords, spKeywords);
    DriftMenus(*before.Tags, *after.Tags, spTags);
    DriftMenus(*before.AutoComplete, *after.AutoComplete, spAutoComplete);
    DriftMenus(*before.TagComplete, *after.TagComplete, spTagComplete);
    DriftMenus(*before.UserMenu, *after.UserMenu, spUserMenu);
}

std::vector<TSyntaxFinding> TCheckRun::Take() {
    auto order = [](const TSyntaxFinding& F) {
        for (std::size_t i = 0; i < SyntaxChecks.size(); ++i)
            if (F.Check == SyntaxChecks[i].Id) return int(i);
        return int(SyntaxChecks.size());
    };
    // By line, findings without a line last; a line's findings in check order.
    std::stable_sort(FOut.begin(), FOut.end(), [&](const TSyntaxFinding& A, const TSyntaxFinding& B) {
        const unsigned la = unsigned(A.Line - 1), lb = unsigned(B.Line - 1);
        if (la != lb) return la < lb;
        if (A.Column != B.Column) return A.Column < B.Column;
        return order(A) < order(B);
    });
    return std::move(FOut);
}

} // namespace

std::vector<TSyntaxFinding> TSyntaxChecker::Run(const TLineSource& Lines,
                                                const TSyntaxDocument* Before) const {
    TStepLog log;
    log.Steps.reserve(std::size_t(Lines.Count()));
    TSyntaxDocument read;
    read.LoadLines(Lines, &log);
    TCheckRun run(*this, Lines, log, read, Before == nullptr);
    run.LineChecks();
    run.DocumentChecks();
    run.Drift(Before ? *Before : read);
    return run.Take();
}

std::vector<TSyntaxFinding> TSyntaxChecker::CheckLines(const TLineSource& Lines) const {
    return Run(Lines, nullptr);
}

std::vector<TSyntaxFinding> TSyntaxChecker::CheckDocument(const TSyntaxDocument& Document) const {
    TWgWideStringList lines;
    Document.SaveWideLines(lines);
    return Run(TStringListLines(lines), &Document);
}
