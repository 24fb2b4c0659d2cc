#pragma once
// The LZHUF coder of skin files: LZSS over a 4 KB ring with adaptive Huffman
// codes for literals and match lengths, and a fixed code for the upper six
// bits of a match position. The decoder is bit-exact with the published
// scheme; the encoder exists only for our own packer and tests.

#include "base/Exceptions.h"
#include "base/Streams.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <type_traits>
#include <vector>

class ElzhException : public Exception {
public:
    using Exception::Exception;
};

namespace LzhMessages {
inline constexpr const char* SNoMemory = "LZH : Cannot get memory for dictionary tables";
inline constexpr const char* SFreeError = "LZH : Error freeing memory for dictionary tables";
} // namespace LzhMessages

namespace Lzh {
inline constexpr int N = 4096;                     // ring size; arithmetic masked with 0xFFF
inline constexpr int F = 60;                       // longest match
inline constexpr int THRESHOLD = 2;                // matches this short are sent as literals
inline constexpr int N_CHAR = 256 - THRESHOLD + F; // 314 symbols: bytes, then lengths
inline constexpr int T = N_CHAR * 2 - 1;           // 627 tree slots
inline constexpr int R = T - 1;                    // root slot
inline constexpr unsigned MAX_FREQ = 0x8000;       // the tree is rebuilt at this root count
inline constexpr int RingStart = N - F;            // 4036; bytes below it start as blanks

// Decoding tables of the position code: the first byte read gives the upper
// six bits (d_code) and the total code length less six (d_len).
struct TPositionTables {
    std::array<std::uint8_t, 256> d_code{};
    std::array<std::uint8_t, 256> d_len{};
    std::array<std::uint8_t, 64> p_code{}; // encoder: code of the upper bits, left-aligned
    std::array<std::uint8_t, 64> p_len{};
};

constexpr TPositionTables MakePositionTables() {
    // (number of upper-bit values, byte values each, code length)
    constexpr int groups[6][3] = {{1, 32, 3}, {3, 16, 4}, {8, 8, 5},
                                  {12, 4, 6}, {24, 2, 7}, {16, 1, 8}};
    TPositionTables t;
    int i = 0, code = 0;
    for (const auto& g : groups)
        for (int v = 0; v < g[0]; ++v, ++code) {
            t.p_code[code] = std::uint8_t(i);
            t.p_len[code] = std::uint8_t(g[2]);
            for (int k = 0; k < g[1]; ++k, ++i) {
                t.d_code[i] = std::uint8_t(code);
                t.d_len[i] = std::uint8_t(g[2]);
            }
        }
    return t;
}
inline constexpr TPositionTables PositionTables = MakePositionTables();
} // namespace Lzh

// A byte source over memory: the fast counterpart of the stream source.
struct TLzhMemorySource final {
    const std::uint8_t* Data;
    std::size_t Size;
    std::size_t Pos = 0;
    void operator()(std::uint8_t* Buffer, int Count, int& Actual) {
        Actual = 0;
        if (Count == 1 && Pos < Size) {
            *Buffer = Data[Pos++];
            Actual = 1;
        }
    }
};

// A byte sink appending to a vector.
struct TLzhVectorSink final {
    std::vector<std::uint8_t>& Out;
    void operator()(const std::uint8_t* Buffer, int Count, int& Actual) {
        Out.insert(Out.end(), Buffer, Buffer + Count);
        Actual = Count;
    }
};

class TLZH {
public:
    TStream* InStream = nullptr;  // not owned
    TStream* OutStream = nullptr; // not owned

    TLZH() = default;
    TLZH(const TLZH&) = delete;
    TLZH& operator=(const TLZH&) = delete;

    void InitLZH();
    void FreeLZH();

    // Expands TextSize bytes. Read and Write take (buffer, count, out actual)
    // and are called with a count of 1 only.
    template <class TWrite, class TRead>
    void LZHUnpack(std::int32_t TextSize, TWrite&& Write, TRead&& Read);
    // The same between InStream and OutStream.
    void LZHUnpack(std::int32_t TextSize);

    void GetBytes(std::uint8_t* Buffer, int Count, int& Actual);
    void PutBytes(const std::uint8_t* Buffer, int Count, int& Actual);

    // Our packer: the bit stream for Data (without the length word). Without
    // Matches every byte is sent as a literal (streams for tests).
    std::vector<std::uint8_t> LZHPack(const std::uint8_t* Data, std::size_t Size,
                                      bool Matches = true);

private:
    std::uint16_t getbuf = 0;
    std::uint8_t getlen = 0;
    std::uint8_t putlen = 0;
    std::uint16_t putbuf = 0;
    std::uint32_t textsize = 0, codesize = 0, printcount = 0, spare = 0;
    std::unique_ptr<std::uint8_t[]> text_buf;
    std::unique_ptr<std::uint16_t[]> lson, dad, rson, freq, prnt, son;

    void StartHuff();
    void Update(int c);
    void Reconst();

    template <class TRead> int GetBit(TRead& Read);
    template <class TRead> int GetByte(TRead& Read);
    template <class TRead> void FillBits(TRead& Read);
    template <class TRead> int DecodeChar(TRead& Read);
    template <class TRead> int DecodePosition(TRead& Read);

    // Encoder state: match finding on the three binary trees.
    int match_position = 0, match_length = 0;
    std::vector<std::uint8_t>* packed = nullptr;
    void InitTree();
    void InsertNode(int r);
    void DeleteNode(int p);
    void Putcode(int l, unsigned c);
    void EncodeChar(unsigned c);
    void EncodePosition(unsigned c);
    void EncodeEnd();
};

// ---- decoder, inline so that the byte source and sink compile into it

// The bit buffer of the decoder with the coder's refill rule: one byte at a
// time while fewer than nine bits are left, a missing byte reading as zero
// bits. It lives in locals during a run so that the compiler can keep it in
// registers; getbuf and getlen receive it at the end.
template <class TRead> struct TLzhBits {
    TRead& Read;
    std::uint32_t Buf; // next bit in bit 31
    unsigned Len;
    inline void Fill() {
        while (Len < 9) {
            std::uint8_t b = 0;
            int actual = 0;
            Read(&b, 1, actual);
            if (actual != 1) b = 0; // past the end the input reads as zero bits
            Buf |= std::uint32_t(b) << (24 - Len);
            Len += 8;
        }
    }
};

template <class TRead> inline int TLZH::GetBit(TRead& Bits) {
    Bits.Fill();
    int bit = int(Bits.Buf >> 31);
    Bits.Buf <<= 1;
    --Bits.Len;
    return bit;
}

template <class TRead> inline int TLZH::GetByte(TRead& Bits) {
    Bits.Fill();
    int byte = int(Bits.Buf >> 24);
    Bits.Buf <<= 8;
    Bits.Len -= 8;
    return byte;
}

template <class TRead> inline int TLZH::DecodeChar(TRead& Bits) {
    const std::uint16_t* sn = son.get();
    unsigned c = sn[Lzh::R];
    while (c < unsigned(Lzh::T))
        c = sn[c + unsigned(GetBit(Bits))];
    c -= Lzh::T;
    Update(int(c));
    return int(c);
}

template <class TRead> inline int TLZH::DecodePosition(TRead& Bits) {
    unsigned i = unsigned(GetByte(Bits));
    unsigned c = unsigned(Lzh::PositionTables.d_code[i]) << 6;
    int j = Lzh::PositionTables.d_len[i] - 2;
    while (j--)
        i = (i << 1) + unsigned(GetBit(Bits));
    return int(c | (i & 0x3F));
}

template <class TWrite, class TRead>
void TLZH::LZHUnpack(std::int32_t TextSize, TWrite&& Write, TRead&& Read) {
    InitLZH();
    StartHuff();
    std::memset(text_buf.get(), 0x20, Lzh::RingStart);
    unsigned r = Lzh::RingStart;
    std::uint8_t* ring = text_buf.get();
    TLzhBits<std::remove_reference_t<TRead>> bits{Read, std::uint32_t(getbuf) << 16, getlen};
    int actual = 0;
    for (std::int64_t count = 0; count < TextSize;) {
        int c = DecodeChar(bits);
        if (c < 256) {
            std::uint8_t b = std::uint8_t(c);
            Write(&b, 1, actual);
            ring[r] = b;
            r = (r + 1) & (Lzh::N - 1);
            ++count;
        } else {
            unsigned i = (r - unsigned(DecodePosition(bits) + 1)) & (Lzh::N - 1);
            int j = c - 255 + Lzh::THRESHOLD;
            // The whole match is copied even when it runs past TextSize: the
            // declared size is a lower bound, as the format has always had it.
            for (int k = 0; k < j; ++k) {
                std::uint8_t b = ring[(i + unsigned(k)) & (Lzh::N - 1)];
                Write(&b, 1, actual);
                ring[r] = b;
                r = (r + 1) & (Lzh::N - 1);
                ++count;
            }
        }
    }
    getbuf = std::uint16_t(bits.Buf >> 16);
    getlen = std::uint8_t(bits.Len);
    FreeLZH();
}

namespace Lzh {
// One step of the adaptive code: the counts on the path from the symbol's
// leaf to the root go up by one, and a node that now outweighs its right
// neighbours trades places with the last of them.
inline void UpdateTree(std::uint16_t* __restrict fr, std::uint16_t* __restrict pr,
                       std::uint16_t* __restrict sn, int c) {
    c = pr[c + T];
    do {
        unsigned k = ++fr[c];
        int l = c + 1;
        if (k > fr[l]) {
            // The counts rise along the slots (the sentinel at T ends them), so
            // the last slot below k is found by galloping and halving instead
            // of one step at a time: the same slot, far fewer reads when many
            // counts are equal.
            int lo = l, step = 1, hi = l + 1;
            while (hi < T && k > fr[hi]) {
                lo = hi;
                step <<= 1;
                hi = lo + step < T ? lo + step : T;
            }
            while (hi - lo > 1) {
                int mid = (lo + hi) >> 1;
                if (k > fr[mid])
                    lo = mid;
                else
                    hi = mid;
            }
            l = lo;
            fr[c] = fr[l];
            fr[l] = std::uint16_t(k);
            int i = sn[c];
            pr[i] = std::uint16_t(l);
            if (i < T) pr[i + 1] = std::uint16_t(l);
            int j = sn[l];
            sn[l] = std::uint16_t(i);
            pr[j] = std::uint16_t(c);
            if (j < T) pr[j + 1] = std::uint16_t(c);
            sn[c] = std::uint16_t(j);
            c = l;
        }
    } while ((c = pr[c]) != 0);
}
} // namespace Lzh

inline void TLZH::Update(int c) {
    if (freq[Lzh::R] == Lzh::MAX_FREQ) Reconst();
    Lzh::UpdateTree(freq.get(), prnt.get(), son.get(), c);
}

// One-shot helpers on the outer frame: a signed 32-bit little-endian length,
// then the bit stream.
std::vector<std::uint8_t> LzhCompressFrame(const std::vector<std::uint8_t>& Data);
// Expands a frame as the decoder reads it (a negative length gives nothing).
// MaxSize bounds the declared length; a larger one gives an empty result and
// false.
bool LzhExpandFrame(const std::uint8_t* Data, std::size_t Size, std::vector<std::uint8_t>& Out,
                    std::int64_t MaxSize);
