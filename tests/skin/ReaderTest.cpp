#include "skin/reader.h"
#include "skin/lzh.h"

#include <gtest/gtest.h>

namespace {

using Bytes = std::vector<std::uint8_t>;

void Put32(Bytes& b, std::int64_t v) {
    for (int i = 0; i < 4; ++i)
        b.push_back(std::uint8_t(std::uint64_t(v) >> (8 * i)));
}

// The expanded image: mark, name length, two reserved words, names, sizes,
// payload.
Bytes Image(const std::string& names, const std::vector<std::int32_t>& sizes,
            const std::string& payload, std::int32_t mark = SkinFormatMark) {
    Bytes b;
    Put32(b, mark);
    Put32(b, std::int32_t(names.size()));
    Put32(b, 0);
    Put32(b, 0);
    b.insert(b.end(), names.begin(), names.end());
    for (auto s : sizes)
        Put32(b, s);
    b.insert(b.end(), payload.begin(), payload.end());
    return b;
}

struct TLoaded {
    TSkinReader Reader;
    bool Ok = false;
    std::vector<AnsiString> Messages;
};

std::unique_ptr<TLoaded> Load(const Bytes& image) {
    auto l = std::make_unique<TLoaded>();
    l->Reader.OnMessage = [m = &l->Messages](const AnsiString& s) { m->push_back(s); };
    TMemoryStream file(LzhCompressFrame(image));
    l->Ok = l->Reader.LoadFromStream(file);
    return l;
}

std::string Get(const TSkinReader& r, const std::string& name) {
    TMemoryStream t(Bytes{1, 2, 3});
    t.SetPosition(2);
    r.GetFile(name, t);
    EXPECT_EQ(t.Position(), 0);
    return std::string(t.Data().begin(), t.Data().end());
}

} // namespace

TEST(SkinReader, Members) {
    auto l = Load(Image("Skin.INI\r\nA.bmp\r\na.bmp\r\nempty.bmp\nlast.bmp\r\n", {3, 2, 4, 0, 5},
                        "ini"
                        "AA"
                        "aaaa"
                        ""
                        "LLLLL"));
    ASSERT_TRUE(l->Ok);
    EXPECT_EQ(l->Reader.FileNames,
              (std::vector<AnsiString>{"skin.ini", "a.bmp", "a.bmp", "empty.bmp", "last.bmp"}));
    struct {
        const char *Name, *Expected;
    } cases[] = {
        {"skin.ini", "ini"}, {"SKIN.ini", "ini"},
        {"a.bmp", "AA"}, // two members with one name: the first
        {"EMPTY.BMP", ""},   {"Last.Bmp", "LLLLL"},
        {"nothing.bmp", ""},
    };
    for (auto& c : cases)
        EXPECT_EQ(Get(l->Reader, c.Name), c.Expected) << c.Name;
    TMemoryStream t;
    AnsiString full = "unchanged";
    l->Reader.GetFileByPart(".INI", t, full); // used as given: no lower-casing
    EXPECT_EQ(full, "unchanged");
    EXPECT_EQ(t.Size(), 0);
    l->Reader.GetFileByPart("ast", t, full);
    EXPECT_EQ(full, "last.bmp");
    EXPECT_EQ(t.Size(), 5);
}

TEST(SkinReader, IniFoundInTheMiddleOfAName) {
    auto l = Load(Image("old.ini.bak\r\nskin.ini\r\n", {1, 1}, "ab"));
    TMemoryStream t;
    AnsiString full;
    l->Reader.GetFileByPart(".ini", t, full);
    EXPECT_EQ(full, "old.ini.bak");
    EXPECT_EQ(t.Data(), (Bytes{'a'}));
}

TEST(SkinReader, EmptyNameTextStartsThePayloadAt16) {
    auto l = Load(Image("", {}, "payload"));
    ASSERT_TRUE(l->Ok);
    EXPECT_EQ(l->Reader.FileCount, 0);
    EXPECT_EQ(std::string(l->Reader.Data->Data().begin(), l->Reader.Data->Data().end()), "payload");
}

TEST(SkinReader, RefusedFilesLeaveTheReaderAsItWas) {
    auto l = Load(Image("keep.bmp\r\n", {2}, "KK"));
    ASSERT_TRUE(l->Ok);
    std::vector<AnsiString> many(1001, "x.bmp");
    std::string names;
    for (auto& n : many)
        names += n + "\r\n";
    struct {
        const char* Name;
        Bytes File;
    } cases[] = {
        {"wrong mark", LzhCompressFrame(Image("a.bmp\r\n", {1}, "a", 19999))},
        {"1001 members", LzhCompressFrame(Image(names, std::vector<std::int32_t>(1001, 0), ""))},
        {"empty file", {}},
        {"image shorter than its header", LzhCompressFrame(Bytes{0x20, 0x4E, 0, 0, 1})},
        {"declared length beyond the input", {0xFF, 0xFF, 0xFF, 0x0F, 0x00}},
    };
    for (auto& c : cases) {
        TMemoryStream file(c.File);
        EXPECT_FALSE(l->Reader.LoadFromStream(file)) << c.Name;
        EXPECT_EQ(Get(l->Reader, "keep.bmp"), "KK") << c.Name;
    }
    ASSERT_EQ(l->Messages.size(), 5u);
    EXPECT_EQ(l->Messages[0], "This is Older Skin File\rPlease update to new version !");
}

TEST(SkinReader, SizesThatLieStayInsideThePayload) {
    struct {
        const char* Name;
        Bytes Image;
        const char* Member;
        std::string Expected;
    } cases[] = {
        {"size beyond the payload", Image("a\r\nb\r\n", {2, 100}, "aabbb"), "b", "bbb"},
        {"negative size", Image("a\r\nb\r\n", {-3, 2}, "xyz"), "a", ""},
        {"offset moved back by a negative size", Image("a\r\nb\r\n", {-1, 2}, "xyz"), "b", "x"},
        {"offset beyond the payload", Image("a\r\nb\r\n", {0x7FFFFFFF, 0x7FFFFFFF}, "xy"), "b", ""},
        {"sizes cut off", Bytes(Image("a\r\nb\r\n", {}, "")), "a", ""},
        {"name text longer than the image",
         [] {
             Bytes b = Image("a\r\nb", {}, "");
             b[4] = 200;
             return b;
         }(),
         "b", ""},
    };
    for (auto& c : cases) {
        auto l = Load(c.Image);
        ASSERT_TRUE(l->Ok) << c.Name;
        EXPECT_EQ(Get(l->Reader, c.Member), c.Expected) << c.Name;
    }
}
