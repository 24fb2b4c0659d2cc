#include "document/WgUnicodeStrings.h"

#include "base/Exceptions.h"

#include <gtest/gtest.h>

namespace {

std::vector<std::u16string> Lines(const TWgWideStrings& L) {
    std::vector<std::u16string> r;
    for (int i = 0; i < L.Count(); ++i)
        r.push_back(L.Get(i));
    return r;
}

template <typename E, typename F> std::string MessageOf(F&& Action) {
    try {
        Action();
    } catch (const E& e) {
        return e.what();
    }
    return "(no exception)";
}

} // namespace

TEST(WgWideStringList, IndexErrorsCarryTheRunTimeTexts) {
    TWgWideStringList list;
    list.Add(u"a");
    EXPECT_EQ(MessageOf<EStringListError>([&] { list.Get(1); }), "List index out of bounds (1)");
    EXPECT_EQ(MessageOf<EStringListError>([&] { list.Delete(-1); }),
              "List index out of bounds (-1)");
    EXPECT_EQ(MessageOf<EStringListError>([&] { list.Insert(2, u"x"); }),
              "List index out of bounds (2)");
    list.Insert(1, u"b"); // an index equal to Count is accepted
    list.SetSorted(true);
    EXPECT_EQ(MessageOf<EStringListError>([&] { list.Put(0, u"z"); }),
              "Operation not allowed on sorted list");
    list.SetDuplicates(dupError);
    EXPECT_EQ(MessageOf<EStringListError>([&] { list.Add(u"a"); }),
              "String list does not allow duplicates");
}

TEST(WgWideStringList, SortedAddAndFindFollowTheDuplicatePolicy) {
    TWgWideStringList list;
    list.SetSorted(true);
    for (auto s : {u"m", u"B", u"a", u"z", u"m"})
        list.AddObject(s, 7);
    // Ignore: the second "m" stored nothing, but AddObject overwrote its object.
    EXPECT_EQ(Lines(list), (std::vector<std::u16string>{u"B", u"a", u"m", u"z"}));
    list.PutObject(2, 1);
    EXPECT_EQ(list.AddObject(u"m", 9), 2);
    EXPECT_EQ(list.GetObject(2), 9);

    TWgWideStringList accept;
    accept.SetSorted(true);
    accept.SetDuplicates(dupAccept);
    for (auto s : {u"b", u"a", u"b", u"b", u"c"})
        accept.Add(s);
    int index = -1;
    EXPECT_TRUE(accept.Find(u"b", index));
    EXPECT_EQ(index, 1); // the first of the run
    EXPECT_FALSE(accept.Find(u"bb", index));
    EXPECT_EQ(index, 4);
}

TEST(WgWideStringList, SortExchangesObjectsAndComparesUpToZero) {
    TWgWideStringList list;
    const std::u16string withZero(u"b\0z", 3);
    list.AddObject(u"c", 3);
    list.AddObject(withZero, 2);
    list.AddObject(u"A", 1);
    list.AddObject(u"a", 4);
    list.Sort();
    EXPECT_EQ(Lines(list), (std::vector<std::u16string>{u"A", u"a", withZero, u"c"}));
    EXPECT_EQ(list.GetObject(0), 1);
    EXPECT_EQ(list.GetObject(3), 3);
    // The zero ends the comparison: "b" finds the entry holding "b\0z".
    EXPECT_EQ(list.IndexOf(u"b"), 2);
    EXPECT_EQ(list.IndexOf(u""), -1);
    list.Add(u"");
    EXPECT_EQ(list.IndexOf(u""), 4);
}

TEST(WgWideStringList, CapacityGrowsByTheClassicSteps) {
    TWgWideStringList list;
    std::vector<int> seen;
    for (int i = 0; i < 100; ++i) {
        list.Add(u"x");
        if (seen.empty() || seen.back() != list.GetCapacity()) seen.push_back(list.GetCapacity());
    }
    EXPECT_EQ(seen, (std::vector<int>{4, 8, 12, 28, 44, 60, 76, 95, 118}));
}

TEST(WgWideStringList, ChangeEventsRespectTheUpdateLock) {
    TWgWideStringList list;
    int changing = 0, changed = 0;
    list.OnChanging = [&](TWgWideStringList&) { ++changing; };
    list.OnChange = [&](TWgWideStringList&) { ++changed; };
    list.Add(u"a");
    list.BeginUpdate();
    list.Add(u"b");
    list.Add(u"c");
    list.EndUpdate();
    EXPECT_EQ(changing, 2); // one for the Add, one for BeginUpdate
    EXPECT_EQ(changed, 2);
    list.SetTextStr(u"x\ny");
    EXPECT_EQ(changed, 3);
    {
        TWgWideStringList doomed;
        doomed.OnChange = [&](TWgWideStringList&) { ++changed; };
        doomed.Add(u"q");
    }
    EXPECT_EQ(changed, 4); // destroying fired nothing more than the Add
}

TEST(WgWideStringList, PlainTextStopsAtZeroAndMovesKeepObjects) {
    TWgWideStringList list;
    list.SetTextStr(std::u16string(u"a\r\nb\0c\nd", 8));
    EXPECT_EQ(Lines(list), (std::vector<std::u16string>{u"a", u"b"}));
    EXPECT_EQ(list.GetTextStr(), u"a\r\nb\r\n");
    list.PutObject(0, 5);
    list.Add(u"c");
    list.Move(0, 2);
    EXPECT_EQ(Lines(list), (std::vector<std::u16string>{u"b", u"c", u"a"}));
    EXPECT_EQ(list.GetObject(2), 5);
    TWgWideStringList copy;
    copy.Assign(list);
    EXPECT_EQ(Lines(copy), Lines(list));
    EXPECT_EQ(copy.GetObject(2), 5);
}

TEST(WgWideStringList, StringsPropertyInTheFormStream) {
    TWgWideStringList list;
    list.Add(u"A\u00E9");
    list.Add(u"");
    TMemoryStream out;
    TFormWriter writer(out);
    list.WriteStrings(writer);
    const std::vector<std::uint8_t> expected = {1,    18, 2,  0, 0, 0, 'A', 0,
                                                0xE9, 0,  18, 0, 0, 0, 0,   0};
    EXPECT_EQ(out.Data(), expected);

    // Narrow short, narrow long, wide and UTF-8 values are all read.
    std::vector<std::uint8_t> blob = {
        1, 6, 2, 'h',          0xE9,       12, 1, 0, 0, 0, 'x',  18,   1,
        0, 0, 0, 0x3A9 & 0xFF, 0x3A9 >> 8, 20, 2, 0, 0, 0, 0xC3, 0xA4, 0};
    TMemoryStream in(blob);
    TFormReader reader(in);
    TWgWideStringList read;
    read.ReadStrings(reader);
    EXPECT_EQ(Lines(read), (std::vector<std::u16string>{u"h\u00E9", u"x", u"\u03A9", u"\u00E4"}));

    TMemoryStream bad(std::vector<std::uint8_t>{1, 2, 5, 0});
    TFormReader badReader(bad);
    EXPECT_EQ(MessageOf<EReadError>([&] { read.ReadStrings(badReader); }),
              "Error while reading wide strings list");
    TMemoryStream truncated(std::vector<std::uint8_t>{1, 18, 0xFF, 0xFF, 0, 0, 'a'});
    TFormReader truncReader(truncated);
    EXPECT_EQ(MessageOf<EReadError>([&] { read.ReadStrings(truncReader); }), "Stream read error");
}
