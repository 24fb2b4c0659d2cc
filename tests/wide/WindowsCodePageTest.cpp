// On Windows the system code page is the ANSI code page, and the built-in
// Windows-1252 table gives the bytes that the system's own converter gives,
// so a definition saved on Windows and one saved on Linux are the same bytes.

#ifdef _WIN32

#include "wide/CodePage.h"

#include <gtest/gtest.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <string>

namespace {

std::u16string SystemDecode(UINT Page, const std::string& Bytes) {
    const int n = MultiByteToWideChar(Page, 0, Bytes.data(), int(Bytes.size()), nullptr, 0);
    std::wstring w(std::size_t(n), L'\0');
    MultiByteToWideChar(Page, 0, Bytes.data(), int(Bytes.size()), w.data(), n);
    return std::u16string(w.begin(), w.end());
}

std::string SystemEncode(UINT Page, const std::u16string& Text) {
    const std::wstring w(Text.begin(), Text.end());
    const int n = WideCharToMultiByte(Page, WC_NO_BEST_FIT_CHARS, w.data(), int(w.size()), nullptr,
                                      0, "?", nullptr);
    std::string out(std::size_t(n), '\0');
    WideCharToMultiByte(Page, WC_NO_BEST_FIT_CHARS, w.data(), int(w.size()), out.data(), n, "?",
                        nullptr);
    return out;
}

TEST(WindowsCodePage, TheSystemCodePageIsTheAnsiCodePage) {
    // The test run names the code page it set up (Wine: from the locale).
    if (const char* expected = std::getenv("LEXSMITH_WINDOWS_ACP"); expected && *expected) {
        EXPECT_EQ(GetACP(), UINT(std::atoi(expected)));
    }
    EXPECT_EQ(SystemCodePage().Number(), int(GetACP()));
}

TEST(WindowsCodePage, BuiltInWindows1252IsTheSystemsTable) {
    auto page = CreateCodePage(1252);
    ASSERT_TRUE(page);
    std::string bytes;
    for (int b = 1; b < 256; ++b)
        bytes.push_back(char(b));
    const std::u16string decoded = SystemDecode(1252, bytes);
    ASSERT_EQ(decoded.size(), bytes.size());
    EXPECT_EQ(page->Decode(bytes), decoded);

    // Every character of the basic plane but the surrogates: the same byte
    // or the same "?" (no best fit: U+0100 is no "A").
    std::u16string all;
    for (char32_t c = 1; c < 0x10000; ++c)
        if (c < 0xD800 || c > 0xDFFF) all.push_back(char16_t(c));
    const std::string system = SystemEncode(1252, all);
    const std::string ours = page->Encode(all);
    ASSERT_EQ(ours.size(), system.size());
    const auto differ = std::mismatch(ours.begin(), ours.end(), system.begin());
    EXPECT_TRUE(differ.first == ours.end())
        << "U+" << std::hex << unsigned(all[std::size_t(differ.first - ours.begin())]);
    EXPECT_EQ(page->Encode(u"\u0100\u2260"), "??");
}

TEST(WindowsCodePage, OtherPagesGoThroughTheSystemWithoutBestFit) {
    auto cyrillic = CreateCodePage(1251);
    ASSERT_TRUE(cyrillic);
    EXPECT_EQ(cyrillic->Decode("\xC0\xFF\x88"), u"\u0410\u044F\u20AC");
    EXPECT_EQ(cyrillic->Encode(u"\u0410\u044F\u20AC\u00E9\u0100"), "\xC0\xFF\x88??");
    // A surrogate pair is one character and gives one "?"; a lone one too.
    EXPECT_EQ(cyrillic->Encode(u"a\U0001F600b"), "a?b");
    EXPECT_EQ(cyrillic->Encode(std::u16string(1, char16_t(0xDC00)) + u"b"), "?b");

    auto japanese = CreateCodePage(932);
    ASSERT_TRUE(japanese);
    const std::u16string text = u"\u65E5\u672C x";
    EXPECT_EQ(japanese->Decode(japanese->Encode(text)), text);
    EXPECT_EQ(japanese->Encode(u"\u00E9"), "?");
    // A lead byte at the end of the text decodes to something, not nothing.
    EXPECT_FALSE(japanese->Decode("a\x82").empty());

    EXPECT_EQ(CreateCodePage(999999), nullptr);
}

} // namespace

#endif
