#include "document/KVSyntax.h"

#include <gtest/gtest.h>

namespace {
struct TCase {
    const char16_t* In;
    const char16_t* Out;
};
} // namespace

TEST(SyntaxLineHelpers, StripLineComment) {
    const TCase cases[] = {
        {u"  Symbols = ;:.", u"Symbols ="},
        {u"a = \"x;y\" ; note", u"a = \"x;y\" ; note"}, // first ";" quoted: the rest stays
        {u"a = \"x\" ; note", u"a = \"x\""},
        {u"a = \"http://x\" // c", u"a = \"http://x\" // c"},
        {u"b = 1 // c ; d", u"b = 1"},
        {u"[Options] ; main", u"[Options]"},
        {u"\"unterminated ; x", u"\"unterminated"},
        {u"; all comment", u""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(StripLineComment(c.In), c.Out);
}

TEST(SyntaxLineHelpers, OptionKeyAndValue) {
    EXPECT_EQ(GetOptionKey(u" Key = v "), u"Key");
    EXPECT_EQ(GetOptionKey(u">Title"), u">");
    EXPECT_EQ(GetOptionKey(u"plain"), u"");
    const TCase values[] = {
        {u"k = \"//\"", u"//"},
        {u"k = \"\\\\\"", u"\\"},     // one backslash of two goes
        {u"k = \"\\'\\'\"", u"'\\'"}, // only the first escape is undone
        {u"k = \"\\\"", u"\\"},       // a lone backslash stays
        {u"k = a=b", u"a=b"},
        {u"k = \"unterminated", u"unterminated"},
        {u">  Group name ", u"Group name"},
        {u">a=b", u"b"},
        {u"nothing", u""},
    };
    for (const auto& c : values)
        EXPECT_EQ(GetOptionValue(c.In), c.Out) << std::string(c.In, c.In + 3);
}

TEST(SyntaxLineHelpers, KeywordAndHintValues) {
    const TCase keywords[] = {
        {u"  \"\\<b\"", u"\\<b"}, // a backslash first inside the quotes stays
        {u"\"a\\\"b\"", u"a\"b"},
        {u"\"a\\\\b\"", u"a\\b"}, // the character after a deleted
                                  // backslash is kept
        {u"x\\y", u"x\\y"},       // no quote: nothing is deleted
        {u">Main", u">"},
        {u"\"\"", u""},
        {u"\"a\\\\\\\\\"", u"a\\\\"},
    };
    for (const auto& c : keywords)
        EXPECT_EQ(GetKeywordValue(c.In), c.Out);
    EXPECT_EQ(GetHintText(u" \"say \\\"hi\\\"\" "), u"say \"hi\\\"");
    EXPECT_EQ(GetHintText(u"\"\\\""), u"\\");
}

TEST(SyntaxLineHelpers, EntryParts) {
    struct {
        const char16_t* Line;
        const char16_t* Name;
        const char16_t* Text;
        char16_t Kind;
    } cases[] = {
        {u"->\"Run\" | \"Run()\" + m", u"Run", u"Run()", u'm'},
        {u"->\"Name\"", u"Name", u"", 0},
        {u"->abc + p", u"->abc", u"", u'p'},
        {u"->\"a\" + x", u"a", u"", u'x'},
        {u"->\"a\" + pp", u"a", u"", 0},
        {u"->\"a\\b\" | \"c\\\\d\" + l", u"ab", u"cd", u'l'},
        {u"->\"\\\"", u"\\", u"", 0}, // a lone backslash is kept, and nothing hangs
        {u"->\"x\" | \"one#12two\" + 0", u"x", u"one\r\ntwo", u'0'},
        {u"->\"p+q\" + f", u"p", u"", u'f'}, // "+" has no escape
        {u"->\"a\" | \"b + c\" + e", u"a", u"b", u'e'},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(GetEntryName(c.Line), c.Name) << std::string(c.Line, c.Line + 6);
        EXPECT_EQ(GetEntryText(c.Line), c.Text);
        EXPECT_EQ(GetEntryKind(c.Line), c.Kind);
    }
    EXPECT_EQ(GetMenuTitle(u"  \"obj\\\"\"  "), u"obj\"");
    EXPECT_EQ(GetMenuTitle(u"\"\\\""), u"\\");
}

TEST(SyntaxLineHelpers, KindLetters) {
    const char16_t letters[] = u"lvpemfotnc0123456789";
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(KindLetterToIndex(letters[i]), i);
        EXPECT_EQ(KindIndexToLetter(i), letters[i]);
    }
    EXPECT_EQ(KindLetterToIndex(u'-'), 20);
    EXPECT_EQ(KindLetterToIndex(u'M'), 20);
    EXPECT_EQ(KindIndexToLetter(20), u'-');
    EXPECT_EQ(KindIndexToLetter(57), u'-');
}
