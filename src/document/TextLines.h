#pragma once
// The lines of a text file as a text-file string list reads them: the same
// encoding detection and the same split by count. Narrow text that can be
// split before decoding is kept as bytes and decoded a line at a time, so a
// large file never exists twice in memory.

#include "document/KVWideStrings.h"
#include "wide/CodePage.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

// The index of the first carriage return or line feed at or after Start, or Size.
inline std::size_t LineEnd(const char16_t* Data, std::size_t Start, std::size_t Size) {
    // Both terminators stand below 14: one compare passes over nearly every character.
    while (Start < Size && (Data[Start] > u'\r' || (Data[Start] != u'\r' && Data[Start] != u'\n')))
        ++Start;
    return Start;
}

inline std::size_t LineEnd(const char* Data, std::size_t Start, std::size_t Size) {
    // Eight bytes at a time: the lowest byte below 14 in a word is found
    // exactly (a borrow only runs upwards from it); a tab or another control
    // character there is passed over.
    constexpr std::uint64_t Ones = 0x0101010101010101u, Highs = 0x8080808080808080u;
    constexpr bool Little = std::endian::native == std::endian::little;
    std::size_t p = Start;
    while (Little && Size - p >= 8) {
        std::uint64_t x;
        std::memcpy(&x, Data + p, 8);
        const std::uint64_t low = (x - Ones * 14) & ~x & Highs;
        if (low == 0) {
            p += 8;
            continue;
        }
        p += std::size_t(std::countr_zero(low)) / 8;
        if (Data[p] == '\r' || Data[p] == '\n') return p;
        ++p;
    }
    while (p < Size && Data[p] != '\r' && Data[p] != '\n')
        ++p;
    return p;
}

// Calls Line(start, length) for each line of Data: a line runs to the next
// carriage return or line feed or to the end; then one carriage return is
// skipped if it stands there, then one line feed. A final line end adds no
// empty line and a zero character stays in its line.
template <typename Char, typename F>
void ForEachLine(const Char* Data, std::size_t Size, F&& Line) {
    std::size_t p = 0;
    while (p < Size) {
        const std::size_t start = p;
        p = LineEnd(Data, start, Size);
        Line(start, p - start);
        if (p < Size && Data[p] == Char('\r')) ++p;
        if (p < Size && Data[p] == Char('\n')) ++p;
    }
}

// Random access to decoded lines.
class TLineSource {
public:
    virtual ~TLineSource() = default;
    virtual int Count() const = 0;
    virtual void Line(int Index, WideString& Out) const = 0;
};

class TTextLines final : public TLineSource {
public:
    // Reads the rest of Stream. An empty remainder reads nothing and leaves
    // Encoding as it was (false); a negative one raises "Invalid string
    // header read from the stream".
    bool Load(TStream& Stream, TTextEncoding& Encoding);

    int Count() const override { return FStarts.empty() ? 0 : int(FStarts.size()) - 1; }
    void Line(int Index, WideString& Out) const override;

private:
    template <typename Char> void Index(const Char* Data, std::size_t Size);
    // Where line Index ends, from where the next one starts: a line holds
    // no terminator, so what stands before the next start is its own.
    template <typename Char> std::size_t EndOf(const Char* Data, int Index) const;

    std::string FBytes; // narrow text, decoded line by line
    WideString FWide;   // or text decoded whole
    bool FNarrow = false;
    const TCodePage* FCodePage = nullptr; // decodes narrow text that is not UTF-8
    bool FUtf8 = false;
    std::vector<std::uint32_t> FStarts; // and one past the last line: the text's size
};

// The lines of a string list as a line source.
class TStringListLines final : public TLineSource {
public:
    explicit TStringListLines(const TWgWideStringList& List) : FList(List) {}
    int Count() const override { return FList.Count(); }
    void Line(int Index, WideString& Out) const override { Out = FList.Ref(Index); }

private:
    const TWgWideStringList& FList;
};
