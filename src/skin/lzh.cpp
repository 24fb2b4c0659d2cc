#include "skin/lzh.h"

#include <limits>
#include <new>

using namespace Lzh;

namespace {
constexpr int NIL = N; // end of a tree branch in the encoder's trees
} // namespace

void TLZH::InitLZH() {
    getbuf = 0;
    getlen = 0;
    putlen = 0;
    putbuf = 0;
    textsize = codesize = printcount = spare = 0;
    try {
        lson.reset(new std::uint16_t[N + 1]);
        dad.reset(new std::uint16_t[N + 1]);
        rson.reset(new std::uint16_t[N + 257]);
        // The scheme leaves the ring above its start unset; we clear it so
        // that a stream reaching there decodes the same every time.
        text_buf.reset(new std::uint8_t[N + F - 1]());
        freq.reset(new std::uint16_t[T + 1]);
        prnt.reset(new std::uint16_t[T + N_CHAR]);
        son.reset(new std::uint16_t[T]);
    } catch (const std::bad_alloc&) {
        FreeLZH();
        throw ElzhException(LzhMessages::SNoMemory);
    }
}

void TLZH::FreeLZH() {
    // Releasing plain arrays cannot fail here; SFreeError is kept for callers
    // that report it.
    son.reset();
    prnt.reset();
    freq.reset();
    text_buf.reset();
    rson.reset();
    dad.reset();
    lson.reset();
}

void TLZH::StartHuff() {
    for (int i = 0; i < N_CHAR; ++i) {
        freq[i] = 1;
        son[i] = std::uint16_t(i + T);
        prnt[i + T] = std::uint16_t(i);
    }
    for (int i = 0, j = N_CHAR; j <= R; i += 2, ++j) {
        freq[j] = std::uint16_t(freq[i] + freq[i + 1]);
        son[j] = std::uint16_t(i);
        prnt[i] = prnt[i + 1] = std::uint16_t(j);
    }
    freq[T] = 0xFFFF; // sentinel that stops the upward walk in Update
    prnt[R] = 0;
}

void TLZH::Reconst() {
    int j = 0;
    for (int i = 0; i < T; ++i)
        if (son[i] >= T) {
            freq[j] = std::uint16_t((freq[i] + 1) >> 1);
            son[j] = son[i];
            ++j;
        }
    for (int i = 0, jj = N_CHAR; jj < T; i += 2, ++jj) {
        unsigned f = unsigned(freq[i]) + freq[i + 1];
        freq[jj] = std::uint16_t(f);
        int k = jj - 1;
        while (f < freq[k])
            --k;
        ++k;
        std::memmove(&freq[k + 1], &freq[k], std::size_t(jj - k) * sizeof(std::uint16_t));
        freq[k] = std::uint16_t(f);
        std::memmove(&son[k + 1], &son[k], std::size_t(jj - k) * sizeof(std::uint16_t));
        son[k] = std::uint16_t(i);
    }
    for (int i = 0; i < T; ++i) {
        int k = son[i];
        if (k >= T)
            prnt[k] = std::uint16_t(i);
        else
            prnt[k] = prnt[k + 1] = std::uint16_t(i);
    }
}

void TLZH::GetBytes(std::uint8_t* Buffer, int Count, int& Actual) {
    Actual = Count;
    std::int64_t left = InStream->Size() - InStream->Position();
    if (left < Actual) Actual = int(left < 0 ? 0 : left);
    InStream->ReadBuffer(Buffer, Actual);
}

void TLZH::PutBytes(const std::uint8_t* Buffer, int Count, int& Actual) {
    OutStream->WriteBuffer(Buffer, Count);
    Actual = Count;
}

void TLZH::LZHUnpack(std::int32_t TextSize) {
    LZHUnpack(
        TextSize, [this](const std::uint8_t* b, int c, int& a) { PutBytes(b, c, a); },
        [this](std::uint8_t* b, int c, int& a) { GetBytes(b, c, a); });
}

// ---- encoder

void TLZH::InitTree() {
    for (int i = N + 1; i <= N + 256; ++i)
        rson[i] = NIL;
    for (int i = 0; i < N; ++i)
        dad[i] = NIL;
}

void TLZH::InsertNode(int r) {
    int cmp = 1;
    const std::uint8_t* key = &text_buf[r];
    int p = N + 1 + key[0];
    rson[r] = lson[r] = NIL;
    match_length = 0;
    for (;;) {
        if (cmp >= 0) {
            if (rson[p] != NIL) {
                p = rson[p];
            } else {
                rson[p] = std::uint16_t(r);
                dad[r] = std::uint16_t(p);
                return;
            }
        } else {
            if (lson[p] != NIL) {
                p = lson[p];
            } else {
                lson[p] = std::uint16_t(r);
                dad[r] = std::uint16_t(p);
                return;
            }
        }
        int i = 1;
        for (; i < F; ++i)
            if ((cmp = int(key[i]) - int(text_buf[p + i])) != 0) break;
        if (i > THRESHOLD) {
            int pos = ((r - p) & (N - 1)) - 1;
            if (i > match_length) {
                match_position = pos;
                if ((match_length = i) >= F) break;
            } else if (i == match_length && pos < match_position) {
                match_position = pos;
            }
        }
    }
    // A full-length match: r takes p's place in the tree.
    dad[r] = dad[p];
    lson[r] = lson[p];
    rson[r] = rson[p];
    dad[lson[p]] = std::uint16_t(r);
    dad[rson[p]] = std::uint16_t(r);
    if (rson[dad[p]] == p)
        rson[dad[p]] = std::uint16_t(r);
    else
        lson[dad[p]] = std::uint16_t(r);
    dad[p] = NIL;
}

void TLZH::DeleteNode(int p) {
    if (dad[p] == NIL) return;
    int q;
    if (rson[p] == NIL) {
        q = lson[p];
    } else if (lson[p] == NIL) {
        q = rson[p];
    } else {
        q = lson[p];
        if (rson[q] != NIL) {
            do
                q = rson[q];
            while (rson[q] != NIL);
            rson[dad[q]] = lson[q];
            dad[lson[q]] = dad[q];
            lson[q] = lson[p];
            dad[lson[p]] = std::uint16_t(q);
        }
        rson[q] = rson[p];
        dad[rson[p]] = std::uint16_t(q);
    }
    dad[q] = dad[p];
    if (rson[dad[p]] == p)
        rson[dad[p]] = std::uint16_t(q);
    else
        lson[dad[p]] = std::uint16_t(q);
    dad[p] = NIL;
}

// Sends the top l bits (l up to 16) of c.
void TLZH::Putcode(int l, unsigned c) {
    putbuf = std::uint16_t(putbuf | ((c & 0xFFFF) >> putlen));
    putlen = std::uint8_t(putlen + l);
    if (putlen >= 8) {
        packed->push_back(std::uint8_t(putbuf >> 8));
        putlen = std::uint8_t(putlen - 8);
        if (putlen >= 8) {
            packed->push_back(std::uint8_t(putbuf));
            codesize += 2;
            putlen = std::uint8_t(putlen - 8);
            putbuf = std::uint16_t(c << (l - putlen));
        } else {
            putbuf = std::uint16_t(putbuf << 8);
            ++codesize;
        }
    }
}

void TLZH::EncodeChar(unsigned c) {
    // The path from the leaf up; a code may be longer than 16 bits, so it is
    // collected whole and sent from the root down in pieces.
    std::uint8_t bits[T];
    int n = 0;
    int k = prnt[c + T];
    do {
        bits[n++] = std::uint8_t(k & 1);
        k = prnt[k];
    } while (k != R);
    while (n > 0) {
        int take = n < 16 ? n : 16;
        unsigned code = 0;
        for (int i = 0; i < take; ++i)
            code |= unsigned(bits[n - 1 - i]) << (15 - i);
        Putcode(take, code);
        n -= take;
    }
    Update(int(c));
}

void TLZH::EncodePosition(unsigned c) {
    unsigned i = c >> 6;
    Putcode(PositionTables.p_len[i], unsigned(PositionTables.p_code[i]) << 8);
    Putcode(6, (c & 0x3F) << 10);
}

void TLZH::EncodeEnd() {
    if (putlen) {
        packed->push_back(std::uint8_t(putbuf >> 8));
        ++codesize;
    }
}

std::vector<std::uint8_t> TLZH::LZHPack(const std::uint8_t* Data, std::size_t Size, bool Matches) {
    std::vector<std::uint8_t> out;
    if (Size == 0) return out;
    InitLZH();
    packed = &out;
    StartHuff();
    InitTree();
    std::uint8_t* buf = text_buf.get();
    std::size_t next = 0;
    int s = 0, r = RingStart;
    std::memset(buf, 0x20, std::size_t(N + F - 1)); // the mirror of the ring start is blank too
    int len = 0;
    for (; len < F && next < Size; ++len)
        buf[r + len] = Data[next++];
    textsize = std::uint32_t(len);
    for (int i = 1; i <= F; ++i)
        InsertNode(r - i);
    InsertNode(r);
    do {
        if (match_length > len) match_length = len;
        if (match_length <= THRESHOLD || !Matches) {
            match_length = 1;
            EncodeChar(buf[r]);
        } else {
            EncodeChar(unsigned(255 - THRESHOLD + match_length));
            EncodePosition(unsigned(match_position));
        }
        int last_match_length = match_length;
        int i = 0;
        for (; i < last_match_length && next < Size; ++i) {
            std::uint8_t c = Data[next++];
            DeleteNode(s);
            buf[s] = c;
            if (s < F - 1) buf[s + N] = c;
            s = (s + 1) & (N - 1);
            r = (r + 1) & (N - 1);
            InsertNode(r);
        }
        textsize += std::uint32_t(i);
        while (i++ < last_match_length) {
            DeleteNode(s);
            s = (s + 1) & (N - 1);
            r = (r + 1) & (N - 1);
            if (--len) InsertNode(r);
        }
    } while (len > 0);
    EncodeEnd();
    packed = nullptr;
    FreeLZH();
    return out;
}

// ---- frames

std::vector<std::uint8_t> LzhCompressFrame(const std::vector<std::uint8_t>& Data) {
    if (Data.size() > std::size_t(std::numeric_limits<std::int32_t>::max()))
        throw Exception("LZH : input too large");
    TLZH lzh;
    std::vector<std::uint8_t> bits = lzh.LZHPack(Data.data(), Data.size());
    std::vector<std::uint8_t> out(4 + bits.size());
    auto n = std::uint32_t(Data.size());
    for (int i = 0; i < 4; ++i)
        out[std::size_t(i)] = std::uint8_t(n >> (8 * i));
    if (!bits.empty()) std::memcpy(out.data() + 4, bits.data(), bits.size());
    return out;
}

bool LzhExpandFrame(const std::uint8_t* Data, std::size_t Size, std::vector<std::uint8_t>& Out,
                    std::int64_t MaxSize) {
    Out.clear();
    std::int32_t textSize = 0;
    if (Size >= 4)
        textSize = std::int32_t(std::uint32_t(Data[0]) | (std::uint32_t(Data[1]) << 8) |
                                (std::uint32_t(Data[2]) << 16) | (std::uint32_t(Data[3]) << 24));
    if (textSize > MaxSize) return false;
    if (textSize > 0) Out.reserve(std::size_t(textSize) + F);
    TLZH lzh;
    TLzhMemorySource source{Data, Size, Size >= 4 ? 4u : Size};
    lzh.LZHUnpack(textSize, TLzhVectorSink{Out}, source);
    return true;
}
