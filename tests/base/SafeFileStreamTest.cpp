// Saving never loses the old file: the new bytes replace it whole or not at
// all, every failure says which file and why, and links, permissions,
// devices and pipes are treated as a user expects.

#include "base/SafeFileStream.h"
#include "base/Exceptions.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace fs = std::filesystem;

namespace {

class SafeFileStreamTest : public ::testing::Test {
protected:
    void SetUp() override {
        Dir =
            fs::temp_directory_path() /
            ("lexsmith-safe-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
             "-" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(Dir);
        fs::create_directories(Dir);
    }
    void TearDown() override { fs::remove_all(Dir); }

    static std::string Read(const fs::path& P) {
        std::ifstream in(P, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    static void Put(const fs::path& P, const std::string& Bytes) {
        std::ofstream(P, std::ios::binary) << Bytes;
    }
    static void Save(const fs::path& P, const std::string& Bytes) {
        SaveFileSafely(P.string(), [&](TStream& S) {
            S.WriteBuffer(Bytes.data(), std::int64_t(Bytes.size()));
        });
    }
    // The names in the folder: no temporary file may be left behind.
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(Dir))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    fs::path Dir;
};

TEST_F(SafeFileStreamTest, ReplacesWholeAndKeepsLinksAndPermissions) {
    const fs::path file = Dir / "a.syx";
    Save(file, "first");
    EXPECT_EQ(Read(file), "first");
#ifdef _WIN32
    // Windows has a read-only attribute in place of permissions, and links
    // need rights that users lack. A read-only file is not replaced: the
    // save fails as creating it would, and leaves it and nothing else.
    fs::permissions(file, fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
    try {
        Save(file, "second");
        ADD_FAILURE() << "a read-only file was replaced";
    } catch (const EFCreateError& e) {
        EXPECT_EQ(std::string(e.what()),
                  "Cannot create file \"" + file.string() + "\". Permission denied");
    }
    EXPECT_EQ(Read(file), "first");
    EXPECT_EQ(Names(), std::vector<std::string>{"a.syx"});
    fs::permissions(file, fs::perms::owner_write, fs::perm_options::add);
    Save(file, "second, longer");
    EXPECT_EQ(Read(file), "second, longer");
    EXPECT_EQ(Names(), std::vector<std::string>{"a.syx"});
#else
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    Save(file, "second, longer");
    EXPECT_EQ(Read(file), "second, longer");
    EXPECT_EQ(fs::status(file).permissions(),
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);

    // Through a link: the destination gets the bytes, the link stays a link,
    // also a link to a file that is not there yet.
    fs::create_symlink("a.syx", Dir / "link.syx");
    Save(Dir / "link.syx", "through the link");
    EXPECT_TRUE(fs::is_symlink(Dir / "link.syx"));
    EXPECT_EQ(Read(file), "through the link");
    fs::create_symlink("new.syx", Dir / "dangling.syx");
    Save(Dir / "dangling.syx", "made");
    EXPECT_TRUE(fs::is_symlink(Dir / "dangling.syx"));
    EXPECT_EQ(Read(Dir / "new.syx"), "made");
    EXPECT_EQ(Names(), (std::vector<std::string>{"a.syx", "dangling.syx", "link.syx", "new.syx"}));
#endif
}

TEST_F(SafeFileStreamTest, AnInterruptedSaveLeavesTheOldFileAndNoTemporaryOne) {
    const fs::path file = Dir / "a.syx";
    Put(file, "the old definition");
    EXPECT_THROW(SaveFileSafely(file.string(),
                                [](TStream& S) {
                                    S.WriteBuffer("half", 4);
                                    throw EConvertError("the writer gave up");
                                }),
                 EConvertError);
    EXPECT_EQ(Read(file), "the old definition");
    EXPECT_EQ(Names(), std::vector<std::string>{"a.syx"});

    // Without Commit nothing replaces the file either.
    {
        TSafeFileStream stream(file.string());
        stream.WriteBuffer("new", 3);
        EXPECT_TRUE(fs::exists(stream.WorkName()));
    }
    EXPECT_EQ(Read(file), "the old definition");
    EXPECT_EQ(Names(), std::vector<std::string>{"a.syx"});
}

TEST_F(SafeFileStreamTest, FilesThatCannotBeCreatedSayWhichAndWhy) {
    auto message = [](const fs::path& P) {
        try {
            Save(P, "x");
        } catch (const EFCreateError& e) {
            return std::string(e.what());
        }
        return std::string("no error");
    };
    EXPECT_EQ(message(Dir), "Cannot create file \"" + Dir.string() + "\". Is a directory");
    const fs::path missing = Dir / "no-folder" / "a.syx";
    EXPECT_EQ(message(missing),
              "Cannot create file \"" + missing.string() + "\". No such file or directory");
}

#ifndef _WIN32
TEST_F(SafeFileStreamTest, DevicesAndPipesAreWrittenInPlaceWithEveryFailureReported) {
    if (fs::exists("/dev/full")) {
        try {
            Save("/dev/full", std::string(100, 'x'));
            ADD_FAILURE() << "a save to /dev/full succeeded";
        } catch (const EWriteError& e) {
            EXPECT_EQ(std::string(e.what()),
                      "Cannot write file \"/dev/full\". No space left on device");
        }
        EXPECT_TRUE(fs::is_character_file("/dev/full"));
    }
    const fs::path fifo = Dir / "pipe";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const pid_t reader = fork();
    if (reader == 0) {
        std::ifstream in(fifo, std::ios::binary);
        const std::string got{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
        _exit(got == "through the pipe" ? 0 : 1);
    }
    Save(fifo, "through the pipe");
    int status = 0;
    waitpid(reader, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_TRUE(fs::is_fifo(fifo));
}

// A write that the system refuses halfway (here the file size limit, as a
// full disk would) leaves the old file byte for byte.
TEST_F(SafeFileStreamTest, ARefusedWriteHalfwayLeavesTheOldFile) {
    const fs::path file = Dir / "a.syx";
    Put(file, "the old definition");
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{4096, 4096};
        setrlimit(RLIMIT_FSIZE, &limit);
        try {
            Save(file, std::string(1 << 20, 'x'));
        } catch (const EWriteError& e) {
            const std::string text = e.what();
            _exit(text.find(file.string()) != std::string::npos &&
                          text.find("File too large") != std::string::npos
                      ? 3
                      : 4);
        }
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 3) << "the failure was not reported with name and reason";
    EXPECT_EQ(Read(file), "the old definition");
    EXPECT_EQ(Names(), std::vector<std::string>{"a.syx"});
}
#endif

} // namespace
