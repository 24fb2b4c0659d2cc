// The keyword table through its growth: every word found with its first
// group, nothing else found.

#include "highlight/WordTable.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::u16string Word(int N) {
    std::u16string w;
    for (; N > 0; N /= 26)
        w += char16_t(u'a' + N % 26);
    return w + u"_";
}

TEST(WordTableTest, GrowsWithoutLosingWordsAndKeepsTheFirstGroup) {
    TWordTable table;
    EXPECT_EQ(table.Find(u"a"), 0); // empty: nothing to probe
    table.Add(u"", 1);
    EXPECT_TRUE(table.Empty());
    // Without a reservation the table grows many times on the way.
    for (int n = 1; n <= 5000; ++n)
        table.Add(Word(n), 1 + n % 7);
    for (int n = 1; n <= 5000; ++n)
        table.Add(Word(n), 99); // listed again in a later group
    for (int n = 1; n <= 5000; ++n)
        ASSERT_EQ(table.Find(Word(n)), 1 + n % 7) << n;
    for (int n = 5001; n <= 6000; ++n)
        ASSERT_EQ(table.Find(Word(n)), 0) << n;
    EXPECT_EQ(table.Find(u"a"), 0);   // a prefix of "a_"
    EXPECT_EQ(table.Find(u"b_x"), 0); // longer than a listed word
    EXPECT_EQ(table.MaxLength(), Word(5000).size());
    EXPECT_EQ(table.Find(std::u16string(40, u'a')), 0); // beyond the longest
}

} // namespace
