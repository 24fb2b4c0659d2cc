// The text of a row: short texts inside the row, long ones on the heap, and
// every change between the two keeping the units.

#include "tree/WgItemText.h"

#include <gtest/gtest.h>

namespace {
WideString Units(std::size_t Count, char16_t First) {
    WideString s;
    for (std::size_t i = 0; i < Count; ++i)
        s += char16_t(First + i % 26);
    return s;
}
} // namespace

TEST(ItemText, KeepsEveryLengthAcrossTheInlineLimit) {
    const std::size_t limit = TWgItemText::LocalCapacity;
    const std::size_t lengths[] = {0, 1, limit - 1, limit, limit + 1, 200};
    TWgItemText text;
    // Each length after each other one: inline to heap, heap to inline, heap to heap.
    for (std::size_t before : lengths)
        for (std::size_t after : lengths) {
            SCOPED_TRACE(std::to_string(before) + " then " + std::to_string(after));
            text = Units(before, u'a');
            ASSERT_EQ(text.Str(), Units(before, u'a'));
            text = Units(after, u'A');
            EXPECT_EQ(text.Str(), Units(after, u'A'));
            EXPECT_EQ(text.Size(), after);
            EXPECT_EQ(text.Empty(), after == 0);
        }
}

TEST(ItemText, CopiesAndTakesAPartOfItself) {
    TWgItemText a;
    a = Units(40, u'a');
    TWgItemText b(a);
    a = WideString(u"short");
    EXPECT_EQ(b.Str(), Units(40, u'a'));
    EXPECT_EQ(a.Str(), u"short");
    const TWgItemText& same = b;
    b = same; // a text given itself keeps it
    EXPECT_EQ(b.Str(), Units(40, u'a'));
    // A view of its own units, long and short.
    b.Assign(b.View().substr(5, 20));
    EXPECT_EQ(b.Str(), Units(40, u'a').substr(5, 20));
    b.Assign(b.View().substr(1, 3));
    EXPECT_EQ(b.Str(), Units(40, u'a').substr(6, 3));
    a.Assign(a.View().substr(2));
    EXPECT_EQ(a.Str(), u"ort");
}
