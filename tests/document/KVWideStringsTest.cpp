#include "document/KVWideStrings.h"

#include "base/Exceptions.h"

#include <gtest/gtest.h>

namespace {

std::vector<std::uint8_t> Bytes(std::string_view S) {
    return {S.begin(), S.end()};
}

std::vector<std::u16string> LoadLines(std::string_view Data, TKVWideStringList& List) {
    TMemoryStream stream(Bytes(Data));
    List.LoadFromStream(stream);
    std::vector<std::u16string> r;
    for (int i = 0; i < List.Count(); ++i)
        r.push_back(List.Get(i));
    return r;
}

std::string Saved(TKVWideStringList& List) {
    TMemoryStream out;
    List.SaveToStream(out);
    return std::string(out.Data().begin(), out.Data().end());
}

using V = std::vector<std::u16string>;
using namespace std::string_literals;

} // namespace

TEST(KVWideStringList, DetectsEncodingsInTheirOrderOfTests) {
    struct {
        std::string Data;
        TTextEncoding Encoding;
        V Lines;
    } cases[] = {
        {"a\r\nb"s, teAnsi, {u"a", u"b"}},
        {"\xE9t\xE9"s, teAnsi, {u"\u00E9t\u00E9"}},
        {"\xEF\xBB\xBF\xC3\xA9t\xC3\xA9\n"s, teUtf8, {u"\u00E9t\u00E9"}},
        {"\xC3\xA9"s, teAnsi, {u"\u00C3\u00A9"}}, // UTF-8 without its mark is narrow
        {"\xFF\xFE"
         "a\0\n\0b\0"s,
         teUtf16LE,
         {u"a", u"b"}},
        {"\xFE\xFF\0a\0\n\0b"s, teUtf16BE, {u"a", u"b"}},
        {"\xFF\xFE"s, teUtf16LE, {}},
        {"\xFF\xFE\xFF\xFE\xFE\xFF"
         "x\0"s,
         teUtf16LE,
         {u"x"}}, // all leading marks go
        {"\xFF\xFE"
         "a\0b"s,
         teUtf16LE,
         {u"a"}},               // odd last byte dropped
        {"x"s, teAnsi, {u"x"}}, // one byte holds no mark
        {"\xFF"s, teAnsi, {u"\u00FF"}},
        // A narrow file that begins like a mark is read as UTF-16.
        {"\xFF\xFEhi"s, teUtf16LE, {u"\u6968"}},
    };
    for (const auto& c : cases) {
        TKVWideStringList list;
        EXPECT_EQ(LoadLines(c.Data, list), c.Lines) << c.Data;
        EXPECT_EQ(list.Encoding(), c.Encoding) << c.Data;
    }
}

TEST(KVWideStringList, SplitsByCountNotByTerminator) {
    TKVWideStringList list;
    EXPECT_EQ(LoadLines("a\nb\n\nc", list), (V{u"a", u"b", u"", u"c"}));
    EXPECT_EQ(LoadLines("a\r\n", list), (V{u"a"})); // a final line end adds nothing
    EXPECT_EQ(LoadLines("a\n\rb", list), (V{u"a", u"", u"b"}));
    EXPECT_EQ(LoadLines("a\rb\r\r\n", list), (V{u"a", u"b", u""}));
    const std::string zero("a\0b\r\nc", 6);
    EXPECT_EQ(LoadLines(zero, list), (V{std::u16string(u"a\0b", 3), u"c"}));
    EXPECT_EQ(Saved(list), zero + "\r\n"); // the zero goes out too
}

TEST(KVWideStringList, BigEndianSwapStopsAtTheFirstZero) {
    TKVWideStringList list;
    const std::string data("\xFE\xFF\0a\0\0\0b", 8);
    auto lines = LoadLines(data, list);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0], std::u16string(u"a\0\u6200", 3));
}

TEST(KVWideStringList, EmptyLoadKeepsTheEncodingAndEmptySavesWriteOnlyWideMarks) {
    TKVWideStringList list;
    LoadLines("\xEF\xBB\xBFx", list);
    LoadLines("", list);
    EXPECT_EQ(list.Encoding(), teUtf8);
    EXPECT_EQ(list.Count(), 0);
    list.SetWriteBOM(true);
    EXPECT_EQ(Saved(list), "");
    list.SetEncoding(teUtf16LE);
    EXPECT_EQ(Saved(list), "\xFF\xFE");
    list.SetEncoding(teUtf16BE);
    EXPECT_EQ(Saved(list), "\xFE\xFF");
}

TEST(KVWideStringList, SavesInTheRememberedEncoding) {
    TKVWideStringList list;
    list.Add(u"\u00E9\U0001F600");
    list.SetEncoding(teUtf8);
    EXPECT_EQ(Saved(list), "\xC3\xA9\xF0\x9F\x98\x80\r\n");
    list.SetWriteBOM(true);
    EXPECT_EQ(Saved(list), "\xEF\xBB\xBF\xC3\xA9\xF0\x9F\x98\x80\r\n");
    list.SetEncoding(teUtf16BE);
    EXPECT_EQ(Saved(list), std::string("\xFE\xFF\0\xE9\xD8\x3D\xDE\x00\0\r\0\n", 12));
    list.SetEncoding(teAnsi);
    EXPECT_EQ(Saved(list), "\xE9?\r\n");
}

TEST(KVWideStringList, TabsExpandToRealColumnsWhenNotKept) {
    TKVWideStringList list;
    list.SetKeepTabs(false);
    list.Add(u"\tx\ty\t\tz");
    list.SetTabWidth(3);
    list.Add(u"ab\tc");
    EXPECT_EQ(list.Get(0), u"    x   y       z");
    EXPECT_EQ(list.Get(1), u"ab c");
    TKVWideStringList kept;
    kept.Add(u"\ta");
    EXPECT_EQ(kept.Get(0), u"\ta");
}

TEST(KVWideStringList, NegativeRemainderLeavesTheListEmptyAndLocked) {
    TKVWideStringList list;
    list.Add(u"old");
    TMemoryStream stream(Bytes("abc"));
    stream.SetPosition(10);
    try {
        list.LoadFromStream(stream);
        FAIL() << "no exception";
    } catch (const Exception& e) {
        EXPECT_STREQ(e.what(), "Invalid string header read from the stream");
    }
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(list.UpdateCount(), 1);
}
