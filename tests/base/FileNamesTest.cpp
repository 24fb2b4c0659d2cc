// Narrow file names reach the right file, and a file opened for shared
// reading is protected from writers where the system has share modes
// (Windows) and left to them elsewhere.

#include "base/FileNames.h"
#include "base/Exceptions.h"
#include "base/SafeFileStream.h"
#include "base/Streams.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

class FileNamesTest : public ::testing::Test {
protected:
    void SetUp() override {
        Dir =
            fs::temp_directory_path() /
            ("lexsmith-names-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
             "-" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(Dir);
        fs::create_directories(Dir);
        Folder = NarrowName(Dir);
    }
    void TearDown() override { fs::remove_all(Dir); }

    static void Save(const AnsiString& Name, const std::string& Bytes) {
        SaveFileSafely(
            Name, [&](TStream& S) { S.WriteBuffer(Bytes.data(), std::int64_t(Bytes.size())); });
    }
    static std::string Load(const AnsiString& Name) {
        TFileStream in(Name, fmOpenRead | fmShareDenyWrite);
        std::string bytes(std::size_t(in.Size()), '\0');
        in.ReadBuffer(bytes.data(), std::int64_t(bytes.size()));
        return bytes;
    }
    std::vector<AnsiString> Names() const {
        std::vector<AnsiString> names;
        for (const auto& entry : fs::directory_iterator(Dir))
            names.push_back(NarrowName(entry.path().filename()));
        std::sort(names.begin(), names.end());
        return names;
    }

    fs::path Dir;
    AnsiString Folder;
};

// The bytes 0x80 to 0x9F are where Windows-1252 and Latin-1 part, and the
// euro sign is the byte 0x80: such names must reach one file, by every way
// the programs open files, and no temporary file may stay beside it.
TEST_F(FileNamesTest, NarrowNamesInTheCodePageReachTheirFile) {
    const AnsiString name = "caf\xE9 \x80\x99\x9F.syx";
    const AnsiString path = Folder + char(fs::path::preferred_separator) + name;
    Save(path, "first");
    EXPECT_EQ(Names(), std::vector<AnsiString>{name});
    EXPECT_EQ(Load(path), "first");
    Save(path, "second"); // replacing an existing file goes by the name too
    EXPECT_EQ(Names(), std::vector<AnsiString>{name});
    EXPECT_EQ(Load(path), "second");
    EXPECT_EQ(NarrowName(NarrowPath(path)), path);
#ifdef _WIN32
    // The system sees the Windows-1252 characters, not Latin-1 control codes.
    EXPECT_EQ(NarrowPath(name).native(), L"caf\u00E9 \u20AC\u2122\u0178.syx");
    // A character the code page lacks has no narrow name: "?", no best fit.
    EXPECT_EQ(NarrowName(fs::path(L"\u0100\u0416x")), "??x");
    try {
        TFileStream missing(Folder + "\\??x.syx", fmOpenRead);
        ADD_FAILURE() << "a name with '?' opened";
    } catch (const EFOpenError&) {
    }
#endif
}

TEST_F(FileNamesTest, SharedReadingAndWriters) {
    const AnsiString path = Folder + char(fs::path::preferred_separator) + "shared.syx";
    Save(path, "old");
    TFileStream reader(path, fmOpenRead | fmShareDenyWrite);
    // Other readers are always welcome.
    EXPECT_EQ(Load(path), "old");
#ifdef _WIN32
    // A reader that denies writing keeps writers out: an open for writing
    // fails, and so does a save, which leaves the file as it was and no
    // temporary file behind.
    EXPECT_THROW(TFileStream(path, fmOpenReadWrite), EFOpenError);
    try {
        Save(path, "new");
        ADD_FAILURE() << "a save replaced a file that a reader holds";
    } catch (const EWriteError& e) {
        EXPECT_NE(std::string(e.what()).find(path), std::string::npos) << e.what();
    }
    EXPECT_EQ(Names(), std::vector<AnsiString>{"shared.syx"});
    EXPECT_EQ(Load(path), "old");
#else
    // No share modes here: the save goes through, and the reader keeps
    // reading the file it opened.
    Save(path, "new");
    EXPECT_EQ(Load(path), "new");
#endif
    char got[3] = {};
    EXPECT_EQ(reader.Read(got, 3), 3);
    EXPECT_EQ(std::string(got, 3), "old");
}

} // namespace
