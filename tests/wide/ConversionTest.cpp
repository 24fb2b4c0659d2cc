#include "wide/CodePage.h"
#include "wide/Utf.h"

#include <gtest/gtest.h>

TEST(Utf8, LenientDecodingReplacesEachMaximalBadSubsequenceOnce) {
    struct {
        std::string Bytes;
        std::u16string Expected;
    } cases[] = {
        {"abc", u"abc"},
        {"\xC3\xA4", u"\u00E4"},
        {"\xE2\x82\xAC", u"\u20AC"},
        {"\xF0\x9F\x98\x80", u"\U0001F600"},
        {"\xE2\x82", u"\uFFFD"},       // truncated three-byte form: one replacement
        {"\xE2\x82x", u"\uFFFDx"},     // broken prefix, then the byte that broke it
        {"\xF0\x9F\x98", u"\uFFFD"},   // truncated four-byte form
        {"\x80\xBF", u"\uFFFD\uFFFD"}, // lone continuation bytes each
        {"\xC0\xAF", u"\uFFFD\uFFFD"}, // overlong lead is never valid
        {"\xE0\x80\x80", u"\uFFFD\uFFFD\uFFFD"},
        {"\xF5\x80", u"\uFFFD\uFFFD"},
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},     // above U+10FFFF
        {"\xED\xA0\x80", std::u16string(1, char16_t(0xD800))}, // encoded surrogate kept
        {std::string("a\0b", 3), std::u16string(u"a\0b", 3)},
    };
    for (const auto& c : cases)
        EXPECT_EQ(DecodeUtf8Lenient(c.Bytes), c.Expected) << c.Bytes;
}

TEST(Utf8, LenientEncodingPairsAndLoneSurrogates) {
    EXPECT_EQ(EncodeUtf8Lenient(u"\U0001F600"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(EncodeUtf8Lenient(std::u16string(1, char16_t(0xDC00))), "\xED\xB0\x80");
    EXPECT_EQ(EncodeUtf8Lenient(u"a\u00E4\u20AC"), "a\xC3\xA4\xE2\x82\xAC");
    // A lone surrogate survives a round trip through the lenient pair.
    std::u16string lone(1, char16_t(0xD834));
    EXPECT_EQ(DecodeUtf8Lenient(EncodeUtf8Lenient(lone)), lone);
}

TEST(CodePage, Windows1252BothWays) {
    auto cp = CreateCodePage(1252);
    ASSERT_TRUE(cp);
    EXPECT_EQ(cp->Decode("\x80\x81\x8D\x8F\x90\x9D\x9F\xFF"),
              u"\u20AC\u0081\u008D\u008F\u0090\u009D\u0178\u00FF");
    EXPECT_EQ(cp->Encode(u"\u20AC\u0081\u0178\u00E9"), "\x80\x81\x9F\xE9");
    // Missing characters become "?", a surrogate pair one "?", no best fit.
    EXPECT_EQ(cp->Encode(u"\u0100\U0001F600x\u2260"), "??x?");
    EXPECT_EQ(cp->Encode(std::u16string(1, char16_t(0xD800)) + u"a"), "?a");
    EXPECT_EQ(cp->Encode(std::u16string(u"\0", 1)), std::string("\0", 1));
}

TEST(CodePage, OtherPagesThroughTheSystemConverter) {
    auto cyrillic = CreateCodePage(1251);
    if (!cyrillic) GTEST_SKIP() << "no converter for code page 1251 on this system";
    EXPECT_EQ(cyrillic->Decode("\xC0\xFF"), u"\u0410\u044F");
    EXPECT_EQ(cyrillic->Encode(u"\u0410\u044F\u00E9"), "\xC0\xFF?");
    EXPECT_EQ(CreateCodePage(999999), nullptr);
}
