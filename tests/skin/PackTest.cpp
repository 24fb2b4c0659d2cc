#include "skin/pack.h"
#include "base/Exceptions.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace {

void Write(const fs::path& p, const std::string& s) {
    std::ofstream(p, std::ios::binary) << s;
}
std::string Read(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

struct TTempDir {
    fs::path Path;
    TTempDir() {
        Path = fs::temp_directory_path() /
               ("lexsmith-pack-" + std::to_string(reinterpret_cast<std::uintptr_t>(this)));
        fs::remove_all(Path);
        fs::create_directories(Path / "in");
    }
    ~TTempDir() { fs::remove_all(Path); }
};

std::unique_ptr<TSkinReader> Open(const std::vector<TSkinMember>& members) {
    auto r = std::make_unique<TSkinReader>();
    TMemoryStream file(PackSkinFile(members));
    EXPECT_TRUE(r->LoadFromStream(file));
    return r;
}

} // namespace

TEST(SkinPack, FolderRoundTrip) {
    TTempDir t;
    const fs::path in = t.Path / "in";
    Write(in / "skin.ini", "[TitlebarSkin]\r\nSkinName=x\r\n");
    Write(in / "Logo.BMP", std::string("BM\0\1binary", 11));
    Write(in / "a.bmp", "");
    Write(in / "notes.txt", "not a member");
    auto members = ReadSkinFolder(in.string());
    ASSERT_EQ(members.size(), 3u);
    EXPECT_EQ(members[0].Name, "a.bmp");
    EXPECT_EQ(members[1].Name, "Logo.BMP");
    EXPECT_EQ(members[2].Name, "skin.ini");
    auto reader = Open(members);
    EXPECT_TRUE(WriteSkinFolder(*reader, (t.Path / "out").string()).empty());
    // Names come back as the reader keeps them: lower case.
    EXPECT_EQ(Read(t.Path / "out" / "logo.bmp"), Read(in / "Logo.BMP"));
    EXPECT_EQ(Read(t.Path / "out" / "skin.ini"), Read(in / "skin.ini"));
    EXPECT_TRUE(fs::exists(t.Path / "out" / "a.bmp"));
    EXPECT_FALSE(fs::exists(t.Path / "out" / "notes.txt"));

    // A listing file gives the order, and may name anything.
    Write(in / "files.lst", "notes.txt\n\nskin.ini\r\n");
    members = ReadSkinFolder(in.string());
    ASSERT_EQ(members.size(), 2u);
    EXPECT_EQ(members[0].Name, "notes.txt");
    Write(in / "files.lst", "missing.bmp\n");
    EXPECT_THROW(ReadSkinFolder(in.string()), Exception);
    EXPECT_THROW(ReadSkinFolder((t.Path / "nowhere").string()), Exception);
}

TEST(SkinPack, UnpackKeepsInsideItsFolder) {
    TTempDir t;
    auto reader = Open({{"../evil.bmp", {'x'}}, {"sub\\x.bmp", {'y'}}, {"ok.bmp", {'z'}}});
    auto skipped = WriteSkinFolder(*reader, (t.Path / "out").string());
    EXPECT_EQ(skipped, (std::vector<AnsiString>{"../evil.bmp", "sub\\x.bmp"}));
    EXPECT_FALSE(fs::exists(t.Path / "evil.bmp"));
    EXPECT_EQ(Read(t.Path / "out" / "ok.bmp"), "z");
}
