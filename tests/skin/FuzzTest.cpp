// Every fuzzing entry point over its seed corpus (fuzz/corpus/<target>) and
// over mutations of it: seeds are taken, nothing but the program's own
// errors comes out, and no allocation exceeds what the input justifies.

#include "base/Fuzz.h"
#include "skin/bitmap.h"
#include "skin/reader.h"
#include "support/AllocationProbe.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace {

using Bytes = std::vector<std::uint8_t>;
namespace fs = std::filesystem;

struct TTarget {
    const char* Name; // the folder of fuzz/corpus and the harness fuzz_<Name>
    int (*Entry)(const std::uint8_t*, std::size_t);
    std::size_t Allowance;
    int Rounds; // mutated inputs per seed
};

const TTarget Targets[] = {
    {"syx", FuzzSyntaxFile, FuzzAllowance, 40},
    {"skin_reader", FuzzSkinReader, FuzzAllowance, 10},
    {"skin_data", FuzzSkinData, FuzzImageAllowance, 10},
    {"bmp", FuzzBmp, FuzzImageAllowance, 100},
    {"lzh", FuzzLzhExpand, FuzzAllowance, 30},
    {"quickini", FuzzQuickIni, FuzzAllowance, 60},
    {"html", FuzzHtml, FuzzAllowance, 40},
    {"ini_text", FuzzIniText, FuzzAllowance, 100},
    {"ini_binary", FuzzIniBinary, FuzzAllowance, 150},
    {"tree_items", FuzzTreeItems, FuzzAllowance, 60},
    {"header_sections", FuzzHeaderSections, FuzzAllowance, 60},
};

std::vector<Bytes> Seeds(const char* Target) {
    std::vector<Bytes> seeds;
    const fs::path dir = fs::path(LEXSMITH_TEST_DATA) / ".." / ".." / "fuzz" / "corpus" / Target;
    for (const auto& entry : fs::directory_iterator(dir)) {
        std::ifstream in(entry.path(), std::ios::binary);
        seeds.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    return seeds;
}

// Flips, overwrites with edge values, inserts, deletes and cuts.
Bytes Mutate(Bytes b, std::mt19937& rng) {
    const std::uint32_t edges[] = {0,          1,    0xFF, 0x7FFFFFFF, 0x80000000,
                                   0xFFFFFFFF, 1000, 1001, 20000};
    for (int n = 1 + int(rng() % 4); n > 0; --n) {
        std::size_t at = b.empty() ? 0 : rng() % b.size();
        switch (rng() % 5) {
        case 0:
            if (!b.empty()) b[at] ^= std::uint8_t(1u << (rng() % 8));
            break;
        case 1: {
            std::uint32_t v = edges[rng() % std::size(edges)];
            for (int i = 0; i < 4 && at + std::size_t(i) < b.size(); ++i)
                b[at + std::size_t(i)] = std::uint8_t(v >> (8 * i));
            break;
        }
        case 2:
            b.insert(b.begin() + std::ptrdiff_t(at), std::uint8_t(rng()));
            break;
        case 3:
            if (!b.empty()) b.erase(b.begin() + std::ptrdiff_t(at));
            break;
        default:
            b.resize(at);
        }
    }
    return b;
}

// Runs one input; returns the entry's result, or -1 after reporting what escaped.
int RunOne(const TTarget& T, const Bytes& Input, const std::string& Label) {
    TAllocationProbe probe;
    int result = -1;
    try {
        result = T.Entry(Input.data(), Input.size());
    } catch (const std::exception& e) {
        ADD_FAILURE() << Label << ": " << e.what();
    }
    EXPECT_LE(probe.Largest(), FuzzAllocationBound(Input.size(), T.Allowance))
        << Label << ": " << Input.size() << " input bytes";
    return result;
}

} // namespace

TEST(FuzzEntryPoints, TakeEverySeed) {
    for (const TTarget& t : Targets) {
        const auto seeds = Seeds(t.Name);
        EXPECT_GE(seeds.size(), 2u) << t.Name;
        for (std::size_t i = 0; i < seeds.size(); ++i)
            EXPECT_EQ(RunOne(t, seeds[i], std::string(t.Name) + " seed " + std::to_string(i)), 1);
    }
}

TEST(FuzzEntryPoints, RefuseMutatedSeedsCleanly) {
    std::mt19937 rng(20240601);
    for (const TTarget& t : Targets) {
        const auto seeds = Seeds(t.Name);
        for (std::size_t i = 0; i < seeds.size(); ++i)
            for (int round = 0; round < t.Rounds; ++round)
                RunOne(t, Mutate(seeds[i], rng),
                       std::string(t.Name) + " seed " + std::to_string(i) + " round " +
                           std::to_string(round));
    }
}

// Byte changes to a compressed skin mostly break the frame; changes to a
// member inside it, packed again, reach the ini and bitmap readers.
TEST(FuzzEntryPoints, SkinWithMutatedMember) {
    std::mt19937 rng(20240602);
    TMemoryBitmap b(20, 8, 0xFF336699);
    b.SetPixel(3, 3, 0xFFFF00FF);
    const std::string ini = "[Personality]\r\nTop=top.bmp\r\nTopFrame=2\r\n[Colours]\r\n"
                            "ButtonFace=1,2,3\r\n[Buttons]\r\nBitmap=b.bmp\r\nFrame=0x10\r\n"
                            "[Button.Close]\r\nAction=-1\r\nButtonImage=b.bmp\r\n";
    const TTarget& skin = Targets[2];
    for (int round = 0; round < 300; ++round) {
        std::vector<TSkinMember> members = {{"skin.ini", Bytes(ini.begin(), ini.end())},
                                            {"top.bmp", SaveBMP24(b)},
                                            {"b.bmp", SaveBMP24(b)}};
        auto& m = members[rng() % members.size()];
        m.Bytes = Mutate(m.Bytes, rng);
        RunOne(skin, PackSkinFile(members), "member " + m.Name + " round " + std::to_string(round));
    }
}
