#include "document/KVWideStrings.h"

#include "base/Exceptions.h"
#include "wide/CodePage.h"
#include "wide/Utf.h"

namespace {

constexpr std::uint16_t MarkLE = 65279; // the bytes 255, 254
constexpr std::uint16_t MarkBE = 65534; // the bytes 254, 255

} // namespace

const char* EncodingName(TTextEncoding Encoding) {
    switch (Encoding) {
    case teAnsi:
        return "ansi";
    case teUtf8:
        return "utf-8";
    case teUtf16LE:
        return "utf-16le";
    case teUtf16BE:
        return "utf-16be";
    }
    return "unknown";
}

WideString TKVWideStringList::ExpandTabs(WideString S) const {
    // Stops are real columns: positions are those of the string as it grows.
    std::size_t i = S.find(u'\t');
    while (i != WideString::npos) {
        // A zero tab width divides by zero here, as the list has always done;
        // callers never set it.
        int pos = int(i) + 1;
        int spaces = FTabWidth - ((pos - 1) % FTabWidth);
        S.replace(i, 1, std::size_t(spaces), u' ');
        i = S.find(u'\t', i);
    }
    return S;
}

int TKVWideStringList::Add(const WideString& S) {
    if (!FKeepTabs) return TWgWideStringList::Add(ExpandTabs(S));
    return TWgWideStringList::Add(S);
}

int TKVWideStringList::AddMove(WideString&& S) {
    if (Sorted()) return Add(S);
    if (!FKeepTabs) S = ExpandTabs(std::move(S));
    int index = Count();
    InsertItemMove(index, std::move(S));
    return index;
}

void TKVWideStringList::SetTextStr(const WideString& Value) {
    BeginUpdate();
    try {
        Clear();
        // Walk by count, not by terminator: a zero character stays in its line.
        const std::size_t n = Value.size();
        std::size_t p = 0;
        while (p < n) {
            std::size_t start = p;
            while (p < n && Value[p] != u'\r' && Value[p] != u'\n')
                ++p;
            AddMove(Value.substr(start, p - start));
            if (p < n && Value[p] == u'\r') ++p;
            if (p < n && Value[p] == u'\n') ++p;
        }
    } catch (...) {
        EndUpdate();
        throw;
    }
    EndUpdate();
}

void TKVWideStringList::LoadFromStream(TStream& Stream) {
    BeginUpdate();
    Clear();
    std::int64_t remaining = Stream.Size() - Stream.Position();
    if (remaining < 0)
        // The list stays empty and in its update state, as it always has.
        throw EStreamError("Invalid string header read from the stream");
    try {
        if (remaining > 0) {
            // A single byte cannot hold a mark: it is narrow text.
            std::uint16_t mark = 0;
            if (remaining >= 2) {
                mark = Stream.ReadUInt16();
                Stream.Seek(-2, soCurrent);
            }
            WideString text;
            if (mark != MarkLE && mark != MarkBE) {
                std::string bytes(std::size_t(remaining), '\0');
                Stream.ReadBuffer(bytes.data(), remaining);
                if (bytes.size() >= 3 && std::uint8_t(bytes[0]) == 239 &&
                    std::uint8_t(bytes[1]) == 187 && std::uint8_t(bytes[2]) == 191) {
                    text = DecodeUtf8Lenient(std::string_view(bytes).substr(3));
                    FEncoding = teUtf8;
                } else {
                    text = AnsiToWide(bytes);
                    FEncoding = teAnsi;
                }
            } else {
                Stream.Seek(2, soCurrent);
                FEncoding = teUtf16LE;
                std::string bytes(std::size_t(remaining - 2), '\0');
                Stream.ReadBuffer(bytes.data(), remaining - 2);
                text = DecodeUtf16LE(bytes); // an odd last byte is dropped
                bytes = std::string();
                if (mark == MarkBE) {
                    // Swapped only up to the first zero character; the rest stays reversed.
                    for (auto& c : text) {
                        if (c == 0) break;
                        c = WideChar((c >> 8) | (c << 8));
                    }
                    FEncoding = teUtf16BE;
                }
                std::size_t lead = 0;
                while (lead < text.size() && (text[lead] == MarkLE || text[lead] == MarkBE))
                    ++lead;
                text.erase(0, lead);
            }
            SetTextStr(text);
        }
    } catch (...) {
        EndUpdate();
        throw;
    }
    EndUpdate();
}

void TKVWideStringList::SaveToFile(const AnsiString& FileName) {
    TFileStream stream(FileName, fmCreate);
    SaveToStream(stream);
}

void TKVWideStringList::SaveToStream(TStream& Stream) {
    WideString text = GetTextStr();
    switch (FEncoding) {
    case teUtf16LE: {
        if (FWriteBOM) Stream.WriteBuffer("\xFF\xFE", 2);
        if (!text.empty()) {
            std::string bytes = EncodeUtf16LE(text);
            Stream.WriteBuffer(bytes.data(), std::int64_t(bytes.size()));
        }
        break;
    }
    case teUtf16BE: {
        if (FWriteBOM) Stream.WriteBuffer("\xFE\xFF", 2);
        if (!text.empty()) {
            SwapUtf16(text);
            std::string bytes = EncodeUtf16LE(text);
            Stream.WriteBuffer(bytes.data(), std::int64_t(bytes.size()));
        }
        break;
    }
    default: {
        if (text.empty()) break; // no mark either
        std::string bytes;
        if (FEncoding == teUtf8) {
            bytes = EncodeUtf8Lenient(text);
            if (FWriteBOM && bytes.compare(0, 3, "\xEF\xBB\xBF") != 0)
                bytes.insert(0, "\xEF\xBB\xBF");
        } else {
            bytes = WideToAnsi(text);
        }
        Stream.WriteBuffer(bytes.data(), std::int64_t(bytes.size()));
        break;
    }
    }
}
