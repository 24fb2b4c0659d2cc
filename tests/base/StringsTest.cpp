#include "base/Strings.h"

#include <gtest/gtest.h>

TEST(Strings, TrimFamilies) {
    // Trim drops every code below 33; TrimSpaces only the space.
    EXPECT_EQ(Trim(u"\t\x01 a b \r\n"), u"a b");
    EXPECT_EQ(TrimSpaces(u"\t a \t"), u"\t a \t");
    EXPECT_EQ(TrimSpaces(u"  a b  "), u"a b");
    EXPECT_EQ(Trim(u"   "), u"");
    EXPECT_EQ(TrimLeft(u"  a  "), u"a  ");
    EXPECT_EQ(TrimRight(u"  a  "), u"  a");
}

TEST(Strings, LowerCaseUsesOnlyMutualPairs) {
    EXPECT_EQ(WideLowerCase(u"[OPTIONS]"), u"[options]");
    EXPECT_EQ(WideLowerCase(u"\u00C4\u0391\u0416"), u"\u00E4\u03B1\u0436");
    // Dotted capital I and the Kelvin sign lower to letters that map back
    // elsewhere: they stay as they are.
    EXPECT_EQ(WideLowerCase(u"\u0130\u212A"), u"\u0130\u212A");
    EXPECT_EQ(LowerChar(u'\u00DF'), u'\u00DF');
}

TEST(Strings, PositionsAreOneBased) {
    EXPECT_EQ(Pos(u"b", u"abcb"), 2u);
    EXPECT_EQ(Pos(u"b", u"abcb", 3), 4u);
    EXPECT_EQ(Pos(u"x", u"abc"), 0u);
    EXPECT_EQ(Pos(u'"', u"a\"b"), 2u);

    struct {
        const char16_t* Sub;
        const char16_t* S;
        std::size_t Expected;
    } cases[] = {
        {u"\"", u"\"a\"b\"", 5}, {u"ab", u"ab", 1},  {u"abc", u"ab", 0},
        {u"x", u"abc", 0},       {u"aa", u"aaa", 1}, {u"aa", u"aaaa", 3},
    };
    for (auto& c : cases)
        EXPECT_EQ(LastPos(c.Sub, c.S), c.Expected) << std::string(c.S, c.S + 0);
}

TEST(Strings, ReplaceAllAndCompareZ) {
    EXPECT_EQ(ReplaceAll(u"a\\b\\", u"\\", u"\\\\"), u"a\\\\b\\\\");
    EXPECT_EQ(ReplaceAll(u"x#12y#12", u"#12", u"\r\n"), u"x\r\ny\r\n");
    EXPECT_EQ(CompareZ(u"a", u"b"), -1);
    EXPECT_EQ(CompareZ(u"B", u"a"), -1); // ordinal: capitals first
    EXPECT_EQ(CompareZ(WideString(u"a\0x", 3), WideString(u"a\0y", 3)), 0);
    EXPECT_EQ(CompareZ(u"ab", u"a"), 1);
    EXPECT_EQ(CompareZ(u"", u""), 0);
}
