#include "skin/Fuzz.h"
#include "skin/bitmap.h"
#include "skin/lzh.h"
#include "skin/reader.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

using Bytes = std::vector<std::uint8_t>;

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

Bytes Random(std::mt19937& rng) {
    Bytes b(rng() % 300);
    for (auto& x : b)
        x = std::uint8_t(rng());
    return b;
}

Bytes Text(const std::string& s) {
    return Bytes(s.begin(), s.end());
}

const std::string SeedIni = "[Personality]\r\nTop=top.bmp\r\nTopFrame=2\r\n[Colours]\r\n"
                            "ButtonFace=1,2,3\r\n[Buttons]\r\nBitmap=b.bmp\r\nFrame=0x10\r\n"
                            "[Button.Close]\r\nAction=-1\r\nButtonImage=b.bmp\r\n"
                            "[SunkEdge]\r\nImage=b.bmp\r\n[ComboButton]\r\nImage=b.bmp\r\n";

std::vector<TSkinMember> SeedMembers() {
    TMemoryBitmap b(20, 8, 0xFF336699);
    b.SetPixel(3, 3, 0xFFFF00FF);
    return {{"skin.ini", Text(SeedIni)}, {"top.bmp", SaveBMP24(b)}, {"b.bmp", SaveBMP24(b)}};
}

} // namespace

TEST(SkinFuzz, EveryEntryPointTakesAnyInput) {
    std::mt19937 rng(20240601);
    // A palette image and a run-length one, to reach those paths too.
    Bytes rle = {'B', 'M', 0,   0, 0, 0, 0, 0, 0, 0, 62, 0, 0, 0, 40, 0, 0, 0, 4, 0,
                 0,   0,   2,   0, 0, 0, 1, 0, 8, 0, 1,  0, 0, 0, 0,  0, 0, 0, 0, 0,
                 0,   0,   0,   0, 0, 0, 2, 0, 0, 0, 0,  0, 0, 0, 0,  0, 0, 0, 0, 0,
                 255, 255, 255, 0, 0, 2, 1, 1, 0, 3, 1,  0, 1, 0, 0,  0, 0, 1};
    const Bytes bmpSeeds[] = {SaveBMP24(TMemoryBitmap(5, 3, 0xFF123456)), rle};
    const Bytes image = BuildSkinImage(SeedMembers());
    const Bytes frame = LzhCompressFrame(image);
    struct {
        const char* Name;
        int (*Entry)(const std::uint8_t*, std::size_t);
        int Rounds;
    } entries[] = {{"lzh", FuzzLzhExpand, 3000},
                   {"ini", FuzzQuickIni, 3000},
                   {"reader", FuzzSkinReader, 2000},
                   {"bmp", FuzzBmp, 4000},
                   {"skin", FuzzSkinData, 600}};
    for (auto& e : entries) {
        for (int i = 0; i < e.Rounds; ++i) {
            Bytes input;
            const std::string name = e.Name;
            if (i % 4 == 0) {
                input = Random(rng);
            } else if (name == "ini") {
                input = Mutate(Text(SeedIni), rng);
            } else if (name == "bmp") {
                input = Mutate(bmpSeeds[i % 2], rng);
            } else if (name == "lzh" || i % 3 == 0) {
                input = Mutate(frame, rng);
            } else if (name == "reader") {
                input = LzhCompressFrame(Mutate(image, rng)); // the archive inside, mutated
            } else {
                auto members = SeedMembers();
                auto& m = members[rng() % members.size()];
                m.Bytes = Mutate(m.Bytes, rng);
                input = PackSkinFile(members);
            }
            EXPECT_EQ(e.Entry(input.data(), input.size()), 0) << e.Name << " " << i;
        }
    }
    // The seeds themselves load.
    TSkinReader reader;
    TMemoryStream s(frame);
    EXPECT_TRUE(reader.LoadFromStream(s));
}
