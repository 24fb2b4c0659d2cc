#include "document/KVWideStrings.h"
#include "base/SafeFileStream.h"

#include "base/Exceptions.h"
#include "document/TextLines.h"
#include "wide/CodePage.h"
#include "wide/Utf.h"

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
        ForEachLine(Value.data(), Value.size(), [&](std::size_t Start, std::size_t Length) {
            AddMove(Value.substr(Start, Length));
        });
    } catch (...) {
        EndUpdate();
        throw;
    }
    EndUpdate();
}

void TKVWideStringList::LoadFromStream(TStream& Stream) {
    BeginUpdate();
    Clear();
    // A negative remainder raises here and leaves the list empty and still
    // in its update state, as it always has.
    TTextLines lines;
    const bool any = lines.Load(Stream, FEncoding);
    try {
        if (any) {
            SetCapacity(lines.Count());
            WideString line;
            for (int i = 0; i < lines.Count(); ++i) {
                lines.Line(i, line);
                AddMove(WideString(line));
            }
        }
    } catch (...) {
        EndUpdate();
        throw;
    }
    EndUpdate();
}

void TKVWideStringList::SaveToFile(const AnsiString& FileName) {
    SaveFileSafely(FileName, [this](TStream& Stream) { SaveToStream(Stream); });
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
