#include "document/SyntaxDocument.h"

#include "wide/CodePage.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace {

// A document of several megabytes mixing plain ASCII with characters that
// the code page has (é, €), lacks (中) and a surrogate pair, in names,
// texts and a sample line longer than the writer's chunks.
void FillMixed(TSyntaxDocument& Doc) {
    Doc.Header->Add(u"Caf\u00e9 \u4e2d");
    Doc.Options->Put(11, u"a\"b\u20ac");
    Doc.Keywords->AddMenu(u"Main");
    for (int i = 0; i < 150000; ++i) {
        const WideString n = WideString(u"kw") + char16_t(u'a' + i % 26);
        switch (i % 5) {
        case 0:
            Doc.Keywords->AddMenuItem(0, n, KindNone, u"");
            break;
        case 1:
            Doc.Keywords->AddMenuItem(0, n + u"caf\u00e9", KindNone, u"");
            break;
        case 2:
            Doc.Keywords->AddMenuItem(0, u"\u4e2d" + n, KindNone, u"");
            break;
        case 3:
            Doc.Keywords->AddMenuItem(0, n + u"\U0001F600x", KindNone, u"");
            break;
        default:
            Doc.Keywords->AddMenuItem(0, u"\u00e9" + n + u"\u00e9", KindNone, u"");
            break;
        }
    }
    Doc.AutoComplete->AddMenu(u"obj.");
    Doc.AutoComplete->AddMenuItem(0, u"na\u00efve", 5, u"x \"y\" \u20ac");
    Doc.AutoComplete->AddMenuItem(0, u"same", 7, u"same");
    Doc.UserMenu->AddMenu(u"0");
    Doc.UserMenu->AddMenuItem(0, u"run", 4, u"one\r\ntwo \u00e9");
    Doc.Sample->Add(WideString(1500000, u'x') + u"\u00e9\u4e2d");
    Doc.Sample->Add(u"");
}

std::string ReadFile(const fs::path& P) {
    std::ifstream in(P, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

} // namespace

// The narrow text of a save is its wide lines, each converted by the code
// page on its own and ended by CR LF, whatever the chunk boundaries; the
// file holds the same bytes.
TEST(SyntaxSaveText, IsTheWideLinesInTheCodePage) {
    TSyntaxDocument doc;
    FillMixed(doc);
    TWgWideStringList wide;
    doc.SaveWideLines(wide);
    std::string expected;
    for (int i = 0; i < wide.Count(); ++i)
        expected += WideToAnsi(wide.Ref(i)) + "\r\n";

    const std::string text = doc.SaveText();
    ASSERT_EQ(text.size(), expected.size());
    EXPECT_TRUE(text == expected);
    // The oracle itself: the code page's own replacements are in it (the
    // bytes below are those of the default code page; others are compared
    // by the equality above only).
    if (SystemCodePage().Number() == 1252) {
        EXPECT_NE(expected.find("  kwbcaf\xe9\r\n"), std::string::npos);
        EXPECT_NE(expected.find("  ?kwc\r\n"), std::string::npos);
        EXPECT_NE(expected.find("  kwd?x\r\n"), std::string::npos);
        EXPECT_NE(expected.find("->\"na\xefve\" | \"x \\\"y\\\" \x80\" + f\r\n"),
                  std::string::npos);
        EXPECT_NE(expected.find("->\"same\" + t\r\n"), std::string::npos);
        EXPECT_NE(expected.find("->\"run\" | \"one#12two \xe9\" + m\r\n"), std::string::npos);
    }

    const fs::path file = fs::temp_directory_path() / "lexsmith-save-text-test.syx";
    doc.Save(file.string());
    const std::string saved = ReadFile(file);
    fs::remove(file);
    ASSERT_EQ(saved.size(), expected.size());
    EXPECT_TRUE(saved == expected);
}
