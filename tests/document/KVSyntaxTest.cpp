#include "document/SyntaxDocument.h"

#include "base/Exceptions.h"
#include "base/Strings.h"
#include "wide/CodePage.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

namespace {

namespace fs = std::filesystem;
using V = std::vector<std::u16string>;

std::string ReadFile(const fs::path& P) {
    std::ifstream in(P, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void WriteFile(const fs::path& P, const std::string& Bytes) {
    std::ofstream(P, std::ios::binary) << Bytes;
}

fs::path TempFile(const std::string& Name) {
    fs::path dir = fs::temp_directory_path() / "lexsmith-syntax-tests";
    fs::create_directories(dir);
    return dir / Name;
}

// Loads narrow text (CR LF added to each line) into a fresh document.
TSyntaxDocument Load(const std::string& Text) {
    TSyntaxDocument doc;
    TKVWideStringList lines;
    TMemoryStream stream(std::vector<std::uint8_t>(Text.begin(), Text.end()));
    lines.LoadFromStream(stream);
    TKVSyntax().LoadSyntaxLines(TStringListLines(lines), *doc.Header, *doc.Options, *doc.Blocks,
                                *doc.Folds, *doc.AutoHint, *doc.Sample, *doc.Keywords, *doc.Tags,
                                *doc.AutoComplete, *doc.TagComplete, *doc.UserMenu);
    return doc;
}

V Items(const TWgWideStrings& L) {
    V r;
    for (int i = 0; i < L.Count(); ++i)
        r.push_back(L.Get(i));
    return r;
}

V MenuNames(const TMenuList& M) {
    V r;
    for (int i = 0; i < M.MenuCount(); ++i)
        r.push_back(M.MenuName(i));
    return r;
}

// "name|text|kind" for each item of menu I.
V MenuItems(const TMenuList& M, int I) {
    V r;
    for (int j = 0; j < M.Menu(I)->Items->Count(); ++j) {
        WideString name, text;
        int kind = -1;
        M.GetItemNameKind(I, j, name, kind);
        M.GetItemText(I, j, text);
        r.push_back(name + u"|" + text + u"|" + IntToWide(kind));
    }
    return r;
}

// The lines of a saved text between two markers, without the blanks.
std::string Saved(const TSyntaxDocument& D) {
    return D.SaveText();
}

} // namespace

TEST(SyntaxFile, RoundTripOfTheReferenceDocumentIsByteExact) {
    const fs::path data = LEXSMITH_TEST_DATA "/document";
    const fs::path out1 = TempFile("saved1.syx"), out2 = TempFile("saved2.syx");
    TSyntaxDocument doc;
    doc.Open((data / "roundtrip_input.syx").string());
    EXPECT_EQ(Items(*doc.Header), V{u"Sample syntax"});
    EXPECT_EQ(doc.Options->Get(0), u"//");
    EXPECT_EQ(doc.Options->Get(13), u"Yes");
    EXPECT_EQ(doc.Options->Get(8), u"");
    EXPECT_EQ(Items(*doc.Blocks), (V{u"Str", u"Yes", u"No", u"\"", u""}));
    EXPECT_EQ(MenuItems(*doc.Keywords, 0), (V{u"begin||20", u"\"odd word\"||20"}));
    EXPECT_EQ(MenuNames(*doc.Tags), V{u"Tags 1"});
    EXPECT_EQ(MenuItems(*doc.Tags, 0), V{u"<b||20"});
    EXPECT_EQ(MenuNames(*doc.AutoComplete), V{u"obj."});
    EXPECT_EQ(MenuItems(*doc.AutoComplete, 0), (V{u"Run|Run()|4", u"Name|Name|2"}));

    doc.Save(out1.string());
    EXPECT_EQ(ReadFile(out1), ReadFile(data / "roundtrip_saved.syx"));
    TSyntaxDocument again;
    again.Open(out1.string());
    again.Save(out2.string());
    EXPECT_EQ(ReadFile(out2), ReadFile(out1));
}

TEST(SyntaxFile, EmptyDocumentAndBannerWidths) {
    TSyntaxDocument doc;
    const std::string banner = "{" + std::string(61, '*') + "}\r\n";
    EXPECT_EQ(Saved(doc), banner + banner + "\r\n\r\n[Options]\r\n\r\n\r\n\r\n[End]\r\n\r\n");

    doc.Header->Add(std::u16string(60, u'a'));
    doc.Header->Add(std::u16string(61, u'b'));
    doc.Header->Add(u"");
    const std::string text = Saved(doc);
    EXPECT_NE(text.find("{ " + std::string(60, 'a') + "}\r\n"), std::string::npos);
    EXPECT_NE(text.find("{ " + std::string(61, 'b') + "}\r\n"), std::string::npos);
    EXPECT_NE(text.find("{ " + std::string(60, ' ') + "}\r\n"), std::string::npos);
    TSyntaxDocument back = Load(text);
    EXPECT_EQ(Items(*back.Header), (V{std::u16string(60, u'a'), std::u16string(61, u'b'), u""}));
}

TEST(SyntaxFile, OptionsBlocksAndFolds) {
    TSyntaxDocument doc = Load("[Options]\n"
                               "Fold_NoParentOfId = Yes\n" // before any block: nothing
                               "BlockOnLine = yes\n"
                               "Symbols = ;:.\n"
                               "Escape = \"a;b\" ; trailing\n"
                               "HighlightUrl = No\n"
                               "Unknown = 1\n"
                               "no equals sign\n"
                               "BlockName = \"\"\n"
                               "BlockAsString = Y\n"
                               "Fold_Id = \"f1\"\n"
                               "Fold_Begin = \"{\"\n"
                               "Fold_NoParentOfId = yes\n"
                               "FOLDOPT_SECTIONS = \"sec\"\n"
                               "[End]\n");
    EXPECT_EQ(doc.Options->Get(11), u"");
    EXPECT_EQ(doc.Options->Get(10), u"a;b ; trailing"); // the comment stays, less the quotes
    EXPECT_EQ(doc.Options->Get(17), u"");
    EXPECT_EQ(doc.Options->Get(22), u"sec");
    // The no-parent flag lands in the last block's end field, not in the fold.
    EXPECT_EQ(Items(*doc.Blocks), (V{u"", u"No", u"Yes", u"", u"Yes"}));
    EXPECT_EQ(Items(*doc.Folds), (V{u"f1", u"{", u"", u"", u""}));

    const std::string text = Saved(doc);
    EXPECT_NE(text.find("  Foldopt_Sections = \"sec\"\r\n"), std::string::npos);
    EXPECT_NE(text.find("\r\n\r\n  BlockName = \"\"\r\n  BlockOnLine = \"No\"\r\n"
                        "  BlockAsString = \"Yes\"\r\n  BlockEnd = \"Yes\"\r\n"
                        "\r\n  Fold_Id = \"f1\"\r\n  Fold_Begin = \"{\"\r\n\r\n[End]"),
              std::string::npos)
        << text;

    TSyntaxDocument shortOptions;
    shortOptions.Options->Delete(29);
    TKVWideStringList lines;
    lines.Add(u"[Options]");
    lines.Add(u"AutoCompleteTags = y");
    EXPECT_THROW(TKVSyntax().LoadSyntaxLines(
                     TStringListLines(lines), *shortOptions.Header, *shortOptions.Options,
                     *shortOptions.Blocks, *shortOptions.Folds, *shortOptions.AutoHint,
                     *shortOptions.Sample, *shortOptions.Keywords, *shortOptions.Tags,
                     *shortOptions.AutoComplete, *shortOptions.TagComplete, *shortOptions.UserMenu),
                 EStringListError);
}

TEST(SyntaxFile, GroupsAndTheirContentLookAhead) {
    EXPECT_EQ(Load("[Tags]\n>Name\n[End]\n").Tags->MenuCount(), 0);
    TSyntaxDocument two = Load("[Tags]\na\n[End]\n[Tags]\nb\n[End]\n");
    EXPECT_EQ(MenuNames(*two.Tags), (V{u"Tags 1", u"Tags 2"}));

    // A group whose only line is "" counts but adds no menu; later items drop.
    TSyntaxDocument lost = Load("[Tags]\n\"\"\n[End]\n[Tags]\n>T\nx\n[End]\n");
    EXPECT_EQ(MenuNames(*lost.Tags), V{u"T"});
    EXPECT_EQ(lost.Tags->Menu(0)->Items->Count(), 0);

    TSyntaxDocument quoted = Load("[Keywords]\n\"word\"\n[End]\n[Tags]\n\"word\"\n\\\\x\n[End]\n");
    EXPECT_EQ(MenuItems(*quoted.Keywords, 0), V{u"\"word\"||20"});
    EXPECT_EQ(MenuItems(*quoted.Tags, 0), (V{u"word||20", u"\\x||20"}));

    // Braced runs and comment-like lines are no content to the look-ahead.
    TSyntaxDocument braced = Load("[Keywords]\n{ note\n still }\n; c\n// c\n>T\n[Tags]\nt\n");
    EXPECT_EQ(braced.Keywords->MenuCount(), 0);
    EXPECT_EQ(MenuItems(*braced.Tags, 0), V{u"t||20"});
    // A marker with a comment is a marker, but content to the look-ahead.
    TSyntaxDocument commented = Load("[Keywords]\n[Tags] ; x\nk\n");
    EXPECT_EQ(commented.Keywords->MenuCount(), 0);
    EXPECT_EQ(MenuItems(*commented.Tags, 0), V{u"k||20"});
}

TEST(SyntaxFile, CompletionMenusAndUserMenu) {
    TSyntaxDocument doc = Load("[AutoComplete]\n"
                               "->\"orphan\" + m\n"
                               "\"obj.\"\n"
                               "->\"a\" | \"b\" + 5\n"
                               "\"\\\"\n"
                               "\" \"\n"
                               "[TagComplete]\n"
                               "\"html\"\n"
                               "->\"x\" + Q\n"
                               "[UserMenu]\n"
                               "[End]\n"
                               "[UserMenu]\n"
                               "junk\n"
                               "->\"Save\" | \"line1#12line2\" + -\n"
                               "[End]\n");
    EXPECT_EQ(MenuNames(*doc.AutoComplete), (V{u"obj.", u"\\.", u"."}));
    EXPECT_EQ(MenuItems(*doc.AutoComplete, 0), V{u"a|b|15"});
    EXPECT_EQ(MenuNames(*doc.TagComplete), V{u"html"});
    EXPECT_EQ(MenuItems(*doc.TagComplete, 0), V{u"x|x|20"});
    EXPECT_EQ(MenuNames(*doc.UserMenu), V{u"0"});
    EXPECT_EQ(MenuItems(*doc.UserMenu, 0), V{u"Save|line1\r\nline2|20"});

    const std::string text = Saved(doc);
    EXPECT_NE(text.find("[UserMenu]\r\n  ->\"Save\" | \"line1#12line2\" + -\r\n"),
              std::string::npos);
    EXPECT_NE(text.find("  \"obj.\"\r\n    ->\"a\" | \"b\" + 5\r\n"), std::string::npos);
}

TEST(SyntaxFile, HintsSampleAndBanner) {
    TSyntaxDocument doc = Load(" { lead }\n"
                               "{ a } b }\n"
                               "{*** stars\n"
                               "{;x\n"
                               "[EndSample]\n"
                               "{ still banner }\n"
                               "[AutoHint]\n"
                               "\"f(x)\"\n"
                               "\"\"\n"
                               "[BeginSample]\n"
                               "  ; sample line\n"
                               "real [end]\n"
                               "[end]\n"
                               "[EndSample]\n"
                               "\n"
                               "// kept\n");
    EXPECT_EQ(Items(*doc.Header), (V{u"{ lead", u"a  b }", u"still banner"}));
    EXPECT_EQ(Items(*doc.AutoHint), V{u"f(x)"});
    // [EndSample] followed by nothing but blanks and comments stays in the sample.
    EXPECT_EQ(Items(*doc.Sample),
              (V{u"  ; sample line", u"real [end]", u"[end]", u"", u"// kept"}));
}

TEST(SyntaxFile, AsymmetriesDriftAsDesigned) {
    TSyntaxDocument doc;
    doc.Options->Put(7, u"''");
    doc.AutoHint->Add(u"say \"a\" \"b\"");
    doc.Keywords->AddMenu(u"K");
    doc.Keywords->AddMenu(u"Dup");
    doc.Keywords->AddMenuItem(1, u"one", KindNone, u"");
    doc.Keywords->AddMenu(u"Dup");
    doc.Keywords->AddMenuItem(2, u"x", KindNone, u"");
    doc.Keywords->AddMenuItem(2, u"y", KindNone, u"");
    doc.AutoComplete->AddMenu(u"q\"t");
    doc.AutoComplete->AddMenuItem(0, u"lost", 3, u"");
    doc.UserMenu->AddMenu(u"0");
    doc.UserMenu->AddMenuItem(0, u"a\\b", 4, u"a\\b");
    doc.Header->Add(u"brace } kept");

    const std::string text = Saved(doc);
    EXPECT_NE(text.find("  String = \"\\'\\'\"\r\n"), std::string::npos);
    EXPECT_NE(text.find("  \"say \\\"a\\\" \\\"b\\\"\"\r\n"), std::string::npos);
    // The second "Dup" is walked with the first one's count of 1.
    EXPECT_NE(text.find(">Dup\r\n\r\n  x\r\n\r\n[End]"), std::string::npos);
    EXPECT_NE(text.find("  \"q\\\"t\"\r\n\r\n[End]"), std::string::npos);

    TSyntaxDocument back = Load(text);
    EXPECT_EQ(back.Options->Get(7), u"'\\'");                   // one escape undone of two
    EXPECT_EQ(back.AutoHint->Get(0), u"say \"a\\\" \\\"b\\\""); // first backslash only
    EXPECT_EQ(back.Keywords->MenuCount(), 2);                   // the empty group "K" is gone
    EXPECT_EQ(MenuItems(*back.UserMenu, 0), V{u"ab|ab|4"});
    EXPECT_EQ(back.Header->Get(0), u"brace  kept" + std::u16string(48, u' ') + u"}");
    EXPECT_EQ(back.AutoComplete->MenuName(0), u"q\"t.");
}

TEST(SyntaxFile, KindOfLinesBeyondAShortDuplicateIsTheLastOneWritten) {
    TSyntaxDocument doc;
    doc.AutoComplete->AddMenu(u"m");
    doc.AutoComplete->AddMenuItem(0, u"a", 4, u"");
    doc.AutoComplete->AddMenuItem(0, u"b", 6, u"");
    doc.AutoComplete->AddMenu(u"m");
    doc.AutoComplete->AddMenuItem(1, u"c", 9, u"");
    const std::string text = Saved(doc);
    EXPECT_NE(text.find("    ->\"c\" + c\r\n    ->\"\" + c\r\n"), std::string::npos) << text;
}

TEST(SyntaxFile, FailurePaths) {
    TSyntaxDocument doc;
    doc.Header->Add(u"keep");
    EXPECT_THROW(doc.Load(TempFile("does-not-exist.syx").string()), EFOpenError);
    EXPECT_EQ(Items(*doc.Header), V{u"keep"});

    const fs::path empty = TempFile("empty.syx");
    WriteFile(empty, "");
    doc.Load(empty.string());
    EXPECT_EQ(Items(*doc.Header), V{u"keep"}); // nothing is cleared

    EXPECT_THROW(doc.Save((TempFile("no-such-dir") / "x.syx").string()), EFCreateError);

    const fs::path utf16 = TempFile("utf16.syx");
    WriteFile(utf16, std::string("\xFF\xFE[\0T\0a\0g\0s\0]\0\n\0\xE9\0", 18));
    TTextEncoding encoding = teAnsi;
    TSyntaxDocument wide;
    wide.Open(utf16.string(), &encoding);
    EXPECT_EQ(encoding, teUtf16LE);
    EXPECT_EQ(MenuItems(*wide.Tags, 0), V{u"\u00E9||20"});
    EXPECT_EQ(wide.Header->Count(), 6); // no banner: the default author lines
}

TEST(SyntaxFile, ArbitraryBytesNeverFault) {
    std::mt19937 rng(20261121);
    const std::string alphabet = "[]{}\"\\|+->=;/#12 \t\r\nabcEND\xFF\xFE\xEF\xBB\xBF\0";
    const char* markers[] = {"[options]",
                             "[tags]",
                             "[keywords]",
                             "[autohint]",
                             "[usermenu]",
                             "[autocomplete]",
                             "[tagcomplete]",
                             "[beginsample]",
                             "[endsample]",
                             "[end]",
                             "->\"",
                             "\"\\\"",
                             ">"};
    for (int round = 0; round < 400; ++round) {
        std::string text;
        const int pieces = int(rng() % 200);
        for (int i = 0; i < pieces; ++i) {
            if (rng() % 4 == 0)
                text += markers[rng() % std::size(markers)];
            else
                text += alphabet[rng() % alphabet.size()];
            if (rng() % 6 == 0) text += "\r\n";
        }
        TSyntaxDocument doc = Load(text);
        TSyntaxDocument again = Load(Saved(doc));
        EXPECT_EQ(again.Options->Count(), SyntaxOptionCount);
    }
    // One huge line of backslashes and quotes.
    std::string huge = "[AutoComplete]\r\n\"t\"\r\n->\"" + std::string(200000, '\\') + "\" | \"" +
                       std::string(200000, '"') + "\"\r\n";
    TSyntaxDocument doc = Load(huge);
    EXPECT_EQ(doc.AutoComplete->MenuCount(), 1);
}
