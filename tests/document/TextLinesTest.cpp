#include "document/TextLines.h"

#include "base/Streams.h"
#include "wide/CodePage.h"
#include "wide/Utf.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// The lines of Text by the plain rule, one character at a time: a line runs
// to the next carriage return or line feed, then one carriage return and
// one line feed are skipped.
template <typename Str> std::vector<Str> ReferenceLines(const Str& Text) {
    std::vector<Str> lines;
    std::size_t p = 0;
    while (p < Text.size()) {
        std::size_t e = p;
        while (e < Text.size() && Text[e] != '\r' && Text[e] != '\n')
            ++e;
        lines.push_back(Text.substr(p, e - p));
        p = e;
        if (p < Text.size() && Text[p] == '\r') ++p;
        if (p < Text.size() && Text[p] == '\n') ++p;
    }
    return lines;
}

// Texts of up to 40 characters from a small alphabet that holds both
// terminators, other control characters below 14 (tab, vertical tab, zero)
// and a letter above 127, so that terminators fall at every place of the
// eight-byte words the splitter scans.
std::vector<std::string> SampleTexts() {
    static const char alphabet[] = {'a', 'b', ' ', '\t', '\r', '\n', '\0', '\x0b', '\xe9', ';'};
    std::vector<std::string> texts = {
        "", "\r", "\n", "\r\n", "\n\r", "abcdefgh\r\n", "abcdefg\t\r\nx", "12345678901234567"};
    unsigned seed = 7;
    for (int t = 0; t < 3000; ++t) {
        seed = seed * 1103515245u + 12345u;
        std::string s((seed >> 16) % 41, 'a');
        for (char& c : s) {
            seed = seed * 1103515245u + 12345u;
            c = alphabet[(seed >> 16) % sizeof(alphabet)];
        }
        texts.push_back(s);
    }
    return texts;
}

TTextLines Load(const std::string& Bytes, TTextEncoding& Encoding) {
    TMemoryStream stream(std::vector<std::uint8_t>(Bytes.begin(), Bytes.end()));
    TTextLines lines;
    lines.Load(stream, Encoding);
    return lines;
}

} // namespace

TEST(TextLines, NarrowTextSplitsAsThePlainRuleSays) {
    for (const std::string& text : SampleTexts()) {
        TTextEncoding encoding = teUtf16LE;
        const TTextLines lines = Load(text, encoding);
        const std::vector<std::string> expected = ReferenceLines(text);
        ASSERT_EQ(lines.Count(), int(expected.size())) << testing::PrintToString(text);
        WideString line;
        for (int i = 0; i < lines.Count(); ++i) {
            lines.Line(i, line);
            EXPECT_EQ(line, AnsiToWide(expected[std::size_t(i)]))
                << testing::PrintToString(text) << " line " << i;
        }
        if (!text.empty()) {
            EXPECT_EQ(encoding, teAnsi);
        }
    }
}

TEST(TextLines, WideTextSplitsAsThePlainRuleSays) {
    for (const std::string& narrow : SampleTexts()) {
        const WideString text = AnsiToWide(narrow);
        TTextEncoding encoding = teAnsi;
        const TTextLines lines = Load("\xff\xfe" + EncodeUtf16LE(text), encoding);
        const std::vector<WideString> expected = ReferenceLines(text);
        EXPECT_EQ(encoding, teUtf16LE);
        ASSERT_EQ(lines.Count(), int(expected.size())) << testing::PrintToString(narrow);
        WideString line;
        for (int i = 0; i < lines.Count(); ++i) {
            lines.Line(i, line);
            EXPECT_EQ(line, expected[std::size_t(i)]) << testing::PrintToString(narrow);
        }
    }
}
