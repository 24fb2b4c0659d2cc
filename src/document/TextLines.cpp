#include "document/TextLines.h"

#include "base/Exceptions.h"
#include "wide/CodePage.h"
#include "wide/Utf.h"

#include <limits>

namespace {

constexpr std::uint16_t MarkLE = 65279; // the bytes 255, 254
constexpr std::uint16_t MarkBE = 65534; // the bytes 254, 255

} // namespace

template <typename Char> void TTextLines::Index(const Char* Data, std::size_t Size) {
    // One pass from a guess of the line count, growing by a quarter, so the
    // offsets take little more memory than they need.
    FStarts.clear();
    FStarts.reserve(Size / 16 + 16);
    ForEachLine(Data, Size, [this](std::size_t Start, std::size_t) {
        if (FStarts.size() == FStarts.capacity()) FStarts.reserve(FStarts.size() / 4 * 5 + 16);
        FStarts.push_back(std::uint32_t(Start));
    });
    // Past the last line, ForEachLine stands at the end of the text.
    FStarts.push_back(std::uint32_t(Size));
}

template <typename Char> std::size_t TTextLines::EndOf(const Char* Data, int Index) const {
    const std::size_t start = FStarts[std::size_t(Index)];
    std::size_t end = FStarts[std::size_t(Index) + 1];
    if (end > start && Data[end - 1] == Char('\n')) --end;
    if (end > start && Data[end - 1] == Char('\r')) --end;
    return end;
}

bool TTextLines::Load(TStream& Stream, TTextEncoding& Encoding) {
    const std::int64_t remaining = Stream.Size() - Stream.Position();
    if (remaining < 0) throw EStreamError("Invalid string header read from the stream");
    if (remaining == 0) return false;
    // Line offsets are 32-bit: a text file of 4 GiB or more is refused.
    if (remaining >= std::int64_t(std::numeric_limits<std::uint32_t>::max()))
        throw EReadError("Stream read error");

    // A single byte cannot hold a mark: it is narrow text.
    std::uint16_t mark = 0;
    if (remaining >= 2) {
        mark = Stream.ReadUInt16();
        Stream.Seek(-2, soCurrent);
    }
    FBytes.clear();
    FWide.clear();
    if (mark != MarkLE && mark != MarkBE) {
        FBytes.resize(std::size_t(remaining));
        Stream.ReadBuffer(FBytes.data(), remaining);
        FUtf8 = FBytes.size() >= 3 && std::uint8_t(FBytes[0]) == 239 &&
                std::uint8_t(FBytes[1]) == 187 && std::uint8_t(FBytes[2]) == 191;
        if (FUtf8) FBytes.erase(0, 3);
        Encoding = FUtf8 ? teUtf8 : teAnsi;
        FCodePage = &SystemCodePage();
        FNarrow = FUtf8 || FCodePage->SplitsOnBytes();
        if (FNarrow) {
            Index(FBytes.data(), FBytes.size());
            return true;
        }
        FWide = AnsiToWide(FBytes);
        std::string().swap(FBytes);
    } else {
        FNarrow = false;
        Stream.Seek(2, soCurrent);
        Encoding = teUtf16LE;
        std::string bytes(std::size_t(remaining - 2), '\0');
        Stream.ReadBuffer(bytes.data(), remaining - 2);
        FWide = DecodeUtf16LE(bytes); // an odd last byte is dropped
        std::string().swap(bytes);
        if (mark == MarkBE) {
            // Swapped only up to the first zero character; the rest stays reversed.
            for (auto& c : FWide) {
                if (c == 0) break;
                c = WideChar((c >> 8) | (c << 8));
            }
            Encoding = teUtf16BE;
        }
        std::size_t lead = 0;
        while (lead < FWide.size() && (FWide[lead] == MarkLE || FWide[lead] == MarkBE))
            ++lead;
        FWide.erase(0, lead);
    }
    Index(FWide.data(), FWide.size());
    return true;
}

void TTextLines::Line(int Index, WideString& Out) const {
    const std::size_t start = FStarts[std::size_t(Index)];
    if (FNarrow) {
        const std::size_t end = EndOf(FBytes.data(), Index);
        const std::string_view bytes(FBytes.data() + start, end - start);
        if (FUtf8)
            DecodeUtf8LenientTo(bytes, Out);
        else
            FCodePage->DecodeTo(bytes, Out);
        return;
    }
    const std::size_t end = EndOf(FWide.data(), Index);
    Out.assign(FWide, start, end - start);
}
