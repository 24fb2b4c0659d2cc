#include "skin/lzh.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes ToBytes(const std::string& s) {
    return Bytes(s.begin(), s.end());
}

Bytes Expand(const Bytes& frame) {
    Bytes out;
    EXPECT_TRUE(LzhExpandFrame(frame.data(), frame.size(), out, 1 << 28));
    return out;
}

Bytes Mixed(std::size_t size, unsigned seed) {
    std::mt19937 rng(seed);
    Bytes out;
    const std::string words[] = {"[Personality]\r\n", "Image=", "frame.bmp\r\n",
                                 "LeftWidth=3\r\n",   "    ",   "\x00\x00\x00\xFF"};
    while (out.size() < size) {
        if (rng() % 4 == 0) {
            for (int i = 0, n = int(rng() % 200); i < n; ++i)
                out.push_back(std::uint8_t(rng()));
        } else {
            const std::string& w = words[rng() % 6];
            out.insert(out.end(), w.begin(), w.end());
        }
    }
    out.resize(size);
    return out;
}

} // namespace

TEST(Lzh, PositionTablesFollowTheGroupSizes) {
    const auto& t = Lzh::PositionTables;
    // Upper bits 0 for 32 bytes, 1-3 for 16 each, ... 48-63 for one each.
    struct {
        int Byte, Code, Len;
    } cases[] = {{0, 0, 3},    {31, 0, 3},   {32, 1, 4},   {79, 3, 4},
                 {80, 4, 5},   {143, 11, 5}, {144, 12, 6}, {191, 23, 6},
                 {192, 24, 7}, {239, 47, 7}, {240, 48, 8}, {255, 63, 8}};
    for (auto& c : cases) {
        EXPECT_EQ(t.d_code[std::size_t(c.Byte)], c.Code) << c.Byte;
        EXPECT_EQ(t.d_len[std::size_t(c.Byte)], c.Len) << c.Byte;
    }
    for (int code = 0; code < 64; ++code)
        EXPECT_EQ(t.d_code[t.p_code[std::size_t(code)]], code);
}

TEST(Lzh, HandCheckedStreams) {
    // In the fresh tree byte 65 sits at depth 9 with the path 111001101;
    // length 3 (symbol 256) has the 8-bit path 10001100, and position 0 is
    // the 3-bit group 000 and six zero bits.
    struct {
        const char* Name;
        Bytes Frame;
        std::string Expected;
    } cases[] = {
        {"first literal", {1, 0, 0, 0, 0xE6, 0x80}, "A"},
        {"match into the blank ring", {3, 0, 0, 0, 0x8C, 0x00, 0x00}, "   "},
        {"a match runs past the declared size", {1, 0, 0, 0, 0x8C, 0x00, 0x00}, "   "},
        {"zero size reads nothing", {0, 0, 0, 0, 0xE6, 0x80}, ""},
        {"negative size", {0xFF, 0xFF, 0xFF, 0xFF, 0xE6, 0x80}, ""},
    };
    for (auto& c : cases) {
        Bytes out = Expand(c.Frame);
        EXPECT_EQ(std::string(out.begin(), out.end()), c.Expected) << c.Name;
    }
    // Our encoder sends exactly those bits for a lone literal.
    EXPECT_EQ(LzhCompressFrame(ToBytes("A")), (Bytes{1, 0, 0, 0, 0xE6, 0x80}));
}

TEST(Lzh, ZeroSizeTakesNoInput) {
    TLZH lzh;
    int reads = 0;
    Bytes out;
    lzh.LZHUnpack(0, TLzhVectorSink{out},
                  [&](std::uint8_t*, int, int& actual) { ++reads, actual = 0; });
    EXPECT_EQ(reads, 0);
    EXPECT_TRUE(out.empty());
}

TEST(Lzh, RoundTrips) {
    struct {
        const char* Name;
        Bytes Data;
    } cases[] = {
        {"empty", {}},
        {"one byte", ToBytes("x")},
        {"overlapping match", ToBytes("abcabcabcabcabcabcabcabc")},
        {"blanks from the ring", ToBytes("          text after blanks")},
        {"long run", Bytes(100000, 'q')},
        {"mixed", Mixed(300000, 7)},
        {"random", Mixed(0, 1)},
    };
    std::mt19937 rng(3);
    cases[6].Data.resize(70000);
    for (auto& b : cases[6].Data)
        b = std::uint8_t(rng());
    for (auto& c : cases) {
        Bytes frame = LzhCompressFrame(c.Data);
        EXPECT_EQ(Expand(frame), c.Data) << c.Name;
    }
    // The repetitive inputs must actually have been matched.
    EXPECT_LT(LzhCompressFrame(Bytes(100000, 'q')).size(), 2500u);
}

TEST(Lzh, LiteralRunRebuildsTheTree) {
    // 40,000 literals push the root count past 0x8000 and force a rebuild;
    // decoding must go on in step with the encoder.
    Bytes data(40000, 'z');
    data[20000] = 'y';
    TLZH lzh;
    Bytes bits = lzh.LZHPack(data.data(), data.size(), false);
    // A literal of a skewed tree costs a bit or two, far below eight.
    EXPECT_LT(bits.size(), data.size() / 3);
    Bytes out;
    TLZH dec;
    TLzhMemorySource src{bits.data(), bits.size()};
    dec.LZHUnpack(std::int32_t(data.size()), TLzhVectorSink{out}, src);
    EXPECT_EQ(out, data);
}

TEST(Lzh, StreamSourceAndSink) {
    Bytes data = Mixed(5000, 11);
    Bytes frame = LzhCompressFrame(data);
    TMemoryStream in(Bytes(frame.begin() + 4, frame.end()));
    TMemoryStream out;
    TLZH lzh;
    lzh.InStream = &in;
    lzh.OutStream = &out;
    lzh.LZHUnpack(std::int32_t(data.size()));
    EXPECT_EQ(out.Data(), data);
}

TEST(Lzh, TruncatedInputReadsZeroBits) {
    Bytes data = Mixed(4000, 5);
    Bytes frame = LzhCompressFrame(data);
    frame.resize(frame.size() / 2);
    Bytes out = Expand(frame);
    // The declared length is produced whatever the bits decode to, plus at
    // most the rest of a last match.
    ASSERT_GE(out.size(), data.size());
    EXPECT_LT(out.size(), data.size() + Lzh::F);
    EXPECT_EQ(Expand(frame), out); // and the same every time
    EXPECT_TRUE(std::equal(out.begin(), out.begin() + 100, data.begin()));
}

TEST(Lzh, DeclaredSizeBeyondTheLimitIsRefused) {
    Bytes frame = {0x00, 0x00, 0x00, 0x10, 1, 2, 3};
    Bytes out{9};
    EXPECT_FALSE(LzhExpandFrame(frame.data(), frame.size(), out, 1 << 20));
    EXPECT_TRUE(out.empty());
}

namespace {

// The decoder written out plainly, step for step, with the linear walk of
// the tree update: the reference the fast decoder must match bit for bit.
Bytes ReferenceExpand(const Bytes& frame) {
    const int N = 4096, F = 60, T = 627, R = 626, NC = 314;
    std::vector<unsigned> freq(T + 1), prnt(T + NC), son(T);
    std::vector<std::uint8_t> ring(N + F - 1, 0);
    std::size_t in = 4;
    unsigned getbuf = 0, getlen = 0;
    auto fill = [&] {
        while (getlen < 9) {
            unsigned b = in < frame.size() ? frame[in++] : 0;
            getbuf |= b << (8 - getlen);
            getlen += 8;
        }
    };
    auto getBit = [&] {
        fill();
        unsigned bit = (getbuf >> 15) & 1;
        getbuf = (getbuf << 1) & 0xFFFF;
        --getlen;
        return bit;
    };
    auto getByte = [&] {
        fill();
        unsigned b = (getbuf >> 8) & 0xFF;
        getbuf = (getbuf << 8) & 0xFFFF;
        getlen -= 8;
        return b;
    };
    for (int i = 0; i < NC; ++i)
        freq[i] = 1, son[i] = i + T, prnt[i + T] = i;
    for (int i = 0, j = NC; j <= R; i += 2, ++j)
        freq[j] = freq[i] + freq[i + 1], son[j] = i, prnt[i] = prnt[i + 1] = j;
    freq[T] = 0xFFFF;
    prnt[R] = 0;
    auto reconst = [&] {
        int j = 0;
        for (int i = 0; i < T; ++i)
            if (son[i] >= unsigned(T)) freq[j] = (freq[i] + 1) / 2, son[j] = son[i], ++j;
        for (int i = 0, jj = NC; jj < T; i += 2, ++jj) {
            unsigned f = freq[jj] = freq[i] + freq[i + 1];
            int k = jj - 1;
            while (f < freq[k])
                --k;
            ++k;
            for (int m = jj; m > k; --m)
                freq[m] = freq[m - 1], son[m] = son[m - 1];
            freq[k] = f;
            son[k] = i;
        }
        for (int i = 0; i < T; ++i) {
            unsigned k = son[i];
            if (k >= unsigned(T))
                prnt[k] = i;
            else
                prnt[k] = prnt[k + 1] = i;
        }
    };
    auto update = [&](int c) {
        if (freq[R] == 0x8000) reconst();
        c = int(prnt[c + T]);
        do {
            unsigned k = ++freq[c];
            unsigned l = c + 1;
            if (k > freq[l]) {
                while (k > freq[++l]) {
                }
                --l;
                freq[c] = freq[l];
                freq[l] = k;
                unsigned i = son[c];
                prnt[i] = l;
                if (i < unsigned(T)) prnt[i + 1] = l;
                unsigned j = son[l];
                son[l] = i;
                prnt[j] = c;
                if (j < unsigned(T)) prnt[j + 1] = c;
                son[c] = j;
                c = int(l);
            }
        } while ((c = int(prnt[c])) != 0);
    };
    const auto& t = Lzh::PositionTables;
    std::int32_t size =
        std::int32_t(frame[0] | (frame[1] << 8) | (frame[2] << 16) | (frame[3] << 24));
    std::fill(ring.begin(), ring.begin() + 4036, 0x20);
    unsigned r = 4036;
    Bytes out;
    while (std::int64_t(out.size()) < size) {
        unsigned c = son[R];
        while (c < unsigned(T))
            c = son[c + getBit()];
        c -= T;
        update(int(c));
        if (c < 256) {
            out.push_back(std::uint8_t(c));
            ring[r] = std::uint8_t(c);
            r = (r + 1) & 0xFFF;
        } else {
            unsigned i = getByte();
            unsigned hi = unsigned(t.d_code[i]) << 6;
            for (int j = t.d_len[i] - 2; j > 0; --j)
                i = (i << 1) + getBit();
            unsigned pos = hi | (i & 0x3F);
            unsigned from = (r - pos - 1) & 0xFFF;
            for (unsigned k = 0; k < c - 253; ++k) {
                std::uint8_t b = ring[(from + k) & 0xFFF];
                out.push_back(b);
                ring[r] = b;
                r = (r + 1) & 0xFFF;
            }
        }
    }
    return out;
}

} // namespace

TEST(Lzh, MatchesThePlainDecoderBitForBit) {
    // Streams of our encoder and garbage alike, long enough for several
    // rebuilds of the tree.
    std::mt19937 rng(99);
    Bytes random(120000);
    for (auto& b : random)
        b = std::uint8_t(rng());
    Bytes garbage = {0x40, 0x0D, 0x03, 0x00};
    for (int i = 0; i < 3000; ++i)
        garbage.push_back(std::uint8_t(rng()));
    const Bytes frames[] = {LzhCompressFrame(random), LzhCompressFrame(Mixed(200000, 4)), garbage};
    for (const Bytes& f : frames)
        EXPECT_EQ(Expand(f), ReferenceExpand(f));
}
