#include "document/SyntaxCheck.h"
#include "document/SyntaxDiff.h"

#include "base/Streams.h"
#include "base/Strings.h"
#include "wide/Utf.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

namespace {

namespace fs = std::filesystem;

// Lines of a test text, split at "\n".
std::unique_ptr<TWgWideStringList> Lines(std::u16string_view Text) {
    auto lines = std::make_unique<TWgWideStringList>();
    std::size_t start = 0;
    while (start <= Text.size()) {
        const std::size_t end = std::min(Text.find(u'\n', start), Text.size());
        lines->Add(WideString(Text.substr(start, end - start)));
        start = end + 1;
    }
    return lines;
}

std::vector<TSyntaxFinding> Check(std::u16string_view Text, std::set<std::string> Disabled = {}) {
    TSyntaxChecker checker;
    checker.Disabled = std::move(Disabled);
    const auto lines = Lines(Text);
    return checker.CheckLines(TStringListLines(*lines));
}

// "LINE:COL id" of each finding.
std::vector<std::string> Where(const std::vector<TSyntaxFinding>& Findings) {
    std::vector<std::string> out;
    for (const TSyntaxFinding& f : Findings)
        out.push_back(std::to_string(f.Line) + ":" + std::to_string(f.Column) + " " + f.Check);
    return out;
}

std::string Message(const TSyntaxFinding& F) {
    return EncodeUtf8Lenient(F.Message);
}

using S = std::vector<std::string>;

// Every container of a document, printed, for comparing two loads.
std::u16string Print(const TSyntaxDocument& D) {
    std::u16string out;
    auto list = [&](const TWgWideStringList& L) {
        for (int i = 0; i < L.Count(); ++i)
            out += L.Ref(i) + u"#" + IntToWide(L.GetObject(i)) + u"\n";
        out += u"--\n";
    };
    auto menus = [&](const TMenuList& M) {
        for (int i = 0; i < M.MenuCount(); ++i) {
            out += u"menu " + M.MenuName(i) + u"\n";
            list(*M.Menu(i)->Items);
        }
        out += u"==\n";
    };
    list(*D.Header), list(*D.Options), list(*D.Blocks), list(*D.Folds), list(*D.AutoHint);
    list(*D.Sample);
    menus(*D.Keywords), menus(*D.Tags), menus(*D.AutoComplete), menus(*D.TagComplete);
    menus(*D.UserMenu);
    return out;
}

class TRecorder final : public TSyntaxWalkObserver {
public:
    void Step(const TLineStep& S) override { Steps.push_back(S); }
    std::vector<TLineStep> Steps;
};

// The walk reports each line at least once, in order, and the containers
// come out exactly as without anyone listening.
void ExpectSameWalk(const TLineSource& Lines) {
    TSyntaxDocument plain, watched;
    plain.LoadLines(Lines);
    TRecorder recorder;
    watched.LoadLines(Lines, &recorder);
    ASSERT_EQ(Print(plain), Print(watched));
    int next = 0;
    for (const TLineStep& s : recorder.Steps) {
        ASSERT_TRUE(s.Line == next || s.Line == next - 1) << "line " << s.Line;
        next = s.Line + 1;
    }
    EXPECT_EQ(next, Lines.Count());
}

} // namespace

TEST(SyntaxWalk, ListeningChangesNothingOnRealAndRandomFiles) {
    std::vector<fs::path> files;
    for (const char* dir : {LEXSMITH_EXAMPLES, LEXSMITH_TEST_DATA "/document"})
        for (const auto& e : fs::directory_iterator(dir))
            if (e.path().extension() == ".syx") files.push_back(e.path());
    ASSERT_GE(files.size(), 5u);
    for (const fs::path& file : files) {
        SCOPED_TRACE(file.string());
        TFileStream stream(file.string(), fmOpenRead);
        TTextLines lines;
        TTextEncoding encoding = teAnsi;
        lines.Load(stream, encoding);
        ExpectSameWalk(lines);
    }
    std::mt19937 rng(1124);
    const char16_t* pieces[] = {u"[Options]", u"[Keywords]", u"[Tags]",    u"[AutoHint]",
                                u"[UserMenu]", u"[AutoComplete]", u"[TagComplete]",
                                u"[BeginSample]", u"[EndSample]", u"[End]", u"->\"a\" | \"b\" + m",
                                u"BlockStart = x", u"BlockName = b", u"Fold_NoParentOfId = y",
                                u">T", u"\"q\\\"\"", u"x ; c", u"{ banner }", u"", u"ab",
                                u"CaseSensitive = maybe", u"Fold_Id = f"};
    for (int round = 0; round < 300; ++round) {
        std::u16string text;
        for (int i = int(rng() % 40); i > 0; --i)
            text += std::u16string(pieces[rng() % std::size(pieces)]) + u"\n";
        const auto lines = Lines(text);
        ExpectSameWalk(TStringListLines(*lines));
        Check(text); // and the checks survive whatever the walk did
    }
}

TEST(SyntaxCheck, DroppedLinesSayWhyAtTheirLine) {
    const auto findings = Check(u"[Options]\n"                   // 1
                                u"  CaseSensitve = Yes\n"        // 2 misspelt
                                u"  Symbols\n"                   // 3 no "="
                                u"  BlockStart = \"(*\"\n"       // 4 before any BlockName
                                u"  Escape = \\\n"               // 5 fine
                                u"[End]\n"                       // 6
                                u"stray text\n"                  // 7 outside
                                u"[UserMenu]\n"                  // 8
                                u"  not an entry\n"              // 9
                                u"  ->\"\" + p\n"                // 10 no name
                                u"  ->\"ok\" + p\n"              // 11
                                u"[End]\n"                       // 12
                                u"[AutoComplete]\n"              // 13
                                u"  ->\"early\"\n"               // 14 before any menu
                                u"  ab\n"                        // 15 too short
                                u"  \"obj\"\n"                   // 16
                                u"  ->\"run\"\n"                 // 17
                                u"[End]\n"                       // 18
                                u"[Keywords]\n"                  // 19 a title does not count
                                u">Lonely\n"                     // 20
                                u"[End]");
    EXPECT_EQ(Where(findings), (S{"2:0 dropped-line", "3:0 dropped-line", "4:0 dropped-line",
                                  "7:0 dropped-line", "9:0 dropped-line", "10:0 dropped-line",
                                  "14:0 dropped-line", "15:0 dropped-line", "20:0 dropped-line"}));
    EXPECT_EQ(Message(findings[0]),
              "unknown option \"CaseSensitve\" (did you mean \"CaseSensitive\"?); a save drops "
              "this line");
    EXPECT_NE(Message(findings[1]).find("no \"=\""), std::string::npos);
    EXPECT_NE(Message(findings[2]).find("\"BlockStart\" comes before any BlockName"),
              std::string::npos);
    EXPECT_EQ(findings[0].Severity, csError);
    EXPECT_NE(Message(findings[8]).find("the section marker at line 19 has nothing below it"),
              std::string::npos);
    // A file the writer wrote has nothing of the kind.
    TSyntaxDocument doc;
    doc.Options->Put(13, u"Yes");
    doc.Blocks->Add(u"b"), doc.Blocks->Add(u"No"), doc.Blocks->Add(u"No");
    doc.Blocks->Add(u"(*"), doc.Blocks->Add(u"*)");
    const std::string saved = doc.SaveText();
    EXPECT_TRUE(Check(DecodeUtf8Lenient(saved)).empty());
}

TEST(SyntaxCheck, IgnoredValuesAndComments) {
    const auto findings = Check(u"; about this file\n"      // 1 comment line
                                u"[Options]\n"              // 2
                                u"  CaseSensitive = true\n" // 3
                                u"  HighlightUrl = No\n"    // 4 a plain no
                                u"  BlockName = b\n"        // 5
                                u"  BlockOnLine = 1 // on\n" // 6 and a comment
                                u"[End]");
    EXPECT_EQ(Where(findings), (S{"1:0 dropped-comment", "3:19 ignored-value",
                                  "6:17 ignored-value"}));
    EXPECT_EQ(Message(findings[0]), "2 comments in this file, the first here; a save keeps none "
                                    "of them");
    EXPECT_EQ(Message(findings[1]),
              "CaseSensitive = \"true\" is read as not set; only \"Yes\" (or \"y\") sets it");
    EXPECT_EQ(findings[1].Part, spOptions);
    EXPECT_EQ(findings[1].Index, 13);
    // Disabled checks stay silent.
    EXPECT_EQ(Where(Check(u"; c\n[Options]\nCaseSensitive = true", {"ignored-value"})),
              S{"1:0 dropped-comment"});
}

TEST(SyntaxCheck, DuplicatesFollowTheDefinitionsCaseRules) {
    const std::u16string groups = u"[Keywords]\n" // 1 (2 with the option line)
                                  u">Flow\n"
                                  u"if\n"
                                  u"then\n"
                                  u"IF\n"
                                  u"[End]\n"
                                  u"[Keywords]\n"
                                  u">Other\n"
                                  u"then\n"
                                  u"[End]\n"
                                  u"[Tags]\n"
                                  u">T\n"
                                  u"b\n"
                                  u"B\n"
                                  u"[End]";
    auto insensitive = Check(u"[Options]\n[End]\n" + groups);
    EXPECT_EQ(Where(insensitive),
              (S{"7:0 duplicate-keyword", "11:0 duplicate-keyword", "16:0 duplicate-keyword"}));
    EXPECT_EQ(Message(insensitive[0]),
              "keyword \"IF\" is already in this group (line 5), which compares without case");
    EXPECT_EQ(Message(insensitive[1]), "keyword \"then\" is already in group \"Flow\" (line 6)");
    EXPECT_EQ(insensitive[1].Part, spKeywords);
    EXPECT_EQ(insensitive[1].Index, 1);
    EXPECT_EQ(insensitive[1].Item, 0);
    auto sensitive =
        Check(u"[Options]\nCaseSensitive = Yes\nTagsCaseSensitive = y\n[End]\n" + groups);
    EXPECT_EQ(Where(sensitive), S{"13:0 duplicate-keyword"}); // "then" only

    const auto menus = Check(u"[AutoComplete]\n"
                             u"\"obj\"\n"
                             u"->\"a\"\n"
                             u"\"Obj.\"\n"
                             u"->\"b\"\n"
                             u"\"empty\"\n"
                             u"[End]\n"
                             u"[Keywords]\n"
                             u">Lonely\n"
                             u"\"\"\n"
                             u"[End]");
    // A group with a title and no items does not survive a save either.
    EXPECT_EQ(Where(menus), (S{"4:0 duplicate-menu", "6:0 empty-group", "9:0 save-drift",
                               "9:0 empty-group", "10:0 dropped-line"}));
    EXPECT_EQ(Message(menus[0]), "menu \"Obj.\" has the name of an earlier one (line 2); a save "
                                 "writes it with the earlier one's item count");
}

TEST(SyntaxCheck, KeywordsThatAreDelimiters) {
    const auto findings = Check(u"[Options]\n"
                                u"LineCommentA = --\n"
                                u"BlockName = long\n"
                                u"BlockStart = [[\n"
                                u"[End]\n"
                                u"[Keywords]\n"
                                u"--\n"
                                u"[[\n"
                                u"ok\n"
                                u"[End]");
    EXPECT_EQ(Where(findings), (S{"7:0 keyword-is-delimiter", "8:0 keyword-is-delimiter"}));
    EXPECT_EQ(Message(findings[1]), "keyword \"[[\" is also BlockStart of block \"long\"; the "
                                    "companion editor cannot tell them apart");
}

TEST(SyntaxCheck, EncodingLossOncePerLineWithTheCharacters) {
    // The system code page of the tests is Windows-1252: it has "é", not "Ω" or "→".
    const auto findings = Check(u"[AutoHint]\n"
                                u"\"caf\u00E9 \u03A9 and \u03A9\u2192\"\n"
                                u"[End]\n"
                                u"[BeginSample]\n"
                                u"x \u2192 y ; not a comment in a sample\n"
                                u"[EndSample]\n"
                                u"[Keywords]\n"
                                u"a ; \u03A9 in a comment is lost anyway\n"
                                u"[End]");
    EXPECT_EQ(Where(findings), (S{"2:7 encoding-loss", "5:3 encoding-loss", "8:0 dropped-comment"}));
    EXPECT_EQ(Message(findings[0]),
              "code page 1252 has no characters \"\u03A9\u2192\"; a save writes \"?\" for them");
    EXPECT_EQ(findings[0].Part, spAutoHint);
    EXPECT_EQ(findings[1].Part, spSample);
}

TEST(SyntaxCheck, SaveDriftShowsBeforeAndAfter) {
    const auto findings = Check(u"[AutoHint]\n"
                                u"\"plain\"\n"
                                u"\"a\\\\b\"\n"
                                u"[End]\n"
                                u"[BeginSample]\n"
                                u"x\n"
                                u"[Tags]\n" // a marker inside the sample
                                u"[EndSample]\n"
                                u"[BeginSample]\n"
                                u"y\n"
                                u"[AutoHint]\n" // ends the sample
                                u"z\n");
    EXPECT_EQ(Where(findings),
              (S{"3:0 save-drift", "7:0 dropped-line", "11:0 dropped-line"}));
    EXPECT_EQ(Message(findings[0]), "a save changes hint 2 from \"a\\b\" to \"ab\"");
    EXPECT_EQ(Message(findings[2]), "this marker ends the sample: the lines below it are read as "
                                    "AutoHint, not as sample text");

    // In memory: a fold's Fold_NoParentOfId lands in the last block.
    TSyntaxDocument doc;
    for (const char16_t* v : {u"b", u"No", u"No", u"(", u")"})
        doc.Blocks->Add(v);
    for (const char16_t* v : {u"f", u"{", u"}", u"", u"Yes"})
        doc.Folds->Add(v);
    const auto drift = TSyntaxChecker().CheckDocument(doc);
    ASSERT_EQ(Where(drift), (S{"0:0 save-drift", "0:0 save-drift"}));
    EXPECT_EQ(Message(drift[0]), "a save changes BlockEnd of block \"b\" from \")\" to \"Yes\"");
    EXPECT_EQ(drift[0].Part, spBlocks);
    EXPECT_EQ(drift[0].Index, 4);
    EXPECT_EQ(Message(drift[1]), "a save drops Fold_NoParentOfId of fold \"f\" \"Yes\"");
    EXPECT_EQ(drift[1].Part, spFolds);
}

TEST(SyntaxCheck, LineBreaksInsideAValueDriftInMemory) {
    // A completion entry's text with a line break is written as two lines.
    TSyntaxDocument doc;
    doc.AutoComplete->AddMenu(u"obj.");
    doc.AutoComplete->AddMenuItem(0, u"run", 2, u"a\r\nb");
    const auto findings = TSyntaxChecker().CheckDocument(doc);
    ASSERT_EQ(Where(findings), (S{"0:0 save-drift", "0:0 save-drift"}));
    EXPECT_NE(Message(findings[1]).find("a save adds the menu"), std::string::npos)
        << Message(findings[1]);
    EXPECT_EQ(Message(findings[0]), "a save changes \"run\" | \"a\\nb\" + p to \"run\" | \"a\" + p in "
                                    "\"obj.\"");
}

TEST(SyntaxCheck, DocumentInMemoryReportsWhereNotLines) {
    TSyntaxDocument doc;
    // The default author lines end in a space that the banner does not keep:
    // layout, not a value.
    for (const char16_t* line : DefaultHeaderLines)
        doc.Header->Add(line);
    doc.Keywords->AddMenu(u"A");
    doc.Keywords->AddMenuItem(0, u"x", KindNone, u"");
    doc.Keywords->AddMenu(u"B");
    doc.Keywords->AddMenuItem(1, u"y", KindNone, u"");
    doc.Keywords->AddMenuItem(1, u"X", KindNone, u"");
    doc.AutoHint->Add(u"\u03A9");
    const auto findings = TSyntaxChecker().CheckDocument(doc);
    ASSERT_EQ(Where(findings), (S{"0:0 duplicate-keyword", "0:0 encoding-loss"}));
    EXPECT_EQ(findings[0].Part, spKeywords);
    EXPECT_EQ(findings[0].Index, 1);
    EXPECT_EQ(findings[0].Item, 1);
    EXPECT_EQ(findings[1].Part, spAutoHint);
    EXPECT_EQ(findings[1].Index, 0);
}

TEST(SyntaxDiff, SectionBySection) {
    TSyntaxDocument a, b;
    a.Options->Put(0, u"--");
    b.Options->Put(0, u"//");
    b.Options->Put(13, u"Yes");
    for (const char16_t* v : {u"str", u"No", u"No", u"\"", u"\""})
        a.Blocks->Add(v), b.Blocks->Add(v);
    b.Blocks->Put(4, u"'");
    a.Keywords->AddMenu(u"K");
    a.Keywords->AddMenuItem(0, u"if", KindNone, u"");
    a.Keywords->AddMenuItem(0, u"then", KindNone, u"");
    b.Keywords->AddMenu(u"K");
    b.Keywords->AddMenuItem(0, u"then", KindNone, u"");
    b.Keywords->AddMenuItem(0, u"else", KindNone, u"");
    b.AutoComplete->AddMenu(u"obj.");
    b.AutoComplete->AddMenuItem(0, u"run", 2, u"run()");
    for (const char16_t* v : {u"one", u"two", u"three"})
        a.Sample->Add(v);
    for (const char16_t* v : {u"one", u"2", u"three", u"four"})
        b.Sample->Add(v);

    std::vector<std::string> got;
    for (const TSyntaxDiffSection& s : DiffSyntaxDocuments(a, b)) {
        got.push_back(std::string("[") + s.Name + "]");
        for (const WideString& c : s.Changes)
            got.push_back(EncodeUtf8Lenient(c));
    }
    EXPECT_EQ(got, (S{"[Options]", "~ LineCommentA: \"--\" -> \"//\"",
                      "+ CaseSensitive = \"Yes\"", "[Blocks]",
                      "~ block \"str\": BlockEnd \"\"\" -> \"'\"", "[Keywords]",
                      "- \"if\" in group \"K\"", "+ \"else\" in group \"K\"", "[AutoComplete]",
                      "+ menu \"obj.\" (1 items)", "[Sample]", "- line 2: \"two\"",
                      "+ line 2: \"2\"", "+ line 4: \"four\""}));
    EXPECT_TRUE(DiffSyntaxDocuments(a, a).empty());
}
