#include "document/WgUnicodeStrings.h"
#include "base/SafeFileStream.h"

#include "base/Exceptions.h"
#include "base/Strings.h"
#include "wide/CodePage.h"
#include "wide/Utf.h"

#include <algorithm>

namespace {

[[noreturn]] void ListError(const char* Message, int Index) {
    throw EStringListError(FormatIndexMessage(Message, Index));
}

[[noreturn]] void ListError(const char* Message) {
    throw EStringListError(Message);
}

constexpr WideChar MarkLE = 0xFEFF; // bytes 255, 254 read little-endian
constexpr WideChar MarkBE = 0xFFFE; // bytes 254, 255 read little-endian

void StripLeadingMarks(WideString& Text) {
    std::size_t n = 0;
    while (n < Text.size() && (Text[n] == MarkLE || Text[n] == MarkBE))
        ++n;
    Text.erase(0, n);
}

} // namespace

// ---- TWgWideStrings

TObjectValue TWgWideStrings::GetObject(int) const {
    return 0;
}

WideString TWgWideStrings::GetTextStr() const {
    WideString r;
    for (int i = 0; i < GetCount(); ++i) {
        r += Get(i);
        r += u"\r\n";
    }
    return r;
}

void TWgWideStrings::Put(int Index, const WideString& S) {
    TObjectValue obj = GetObject(Index);
    Delete(Index);
    InsertObject(Index, S, obj);
}

void TWgWideStrings::PutObject(int, TObjectValue) {}

void TWgWideStrings::SetCapacity(int) {}

void TWgWideStrings::SetTextStr(const WideString& Value) {
    BeginUpdate();
    try {
        Clear();
        // The plain form ends at the first zero character.
        std::size_t p = 0;
        const std::size_t n = Value.size();
        while (p < n && Value[p] != 0) {
            std::size_t start = p;
            while (p < n && Value[p] != 0 && Value[p] != u'\r' && Value[p] != u'\n')
                ++p;
            Add(Value.substr(start, p - start));
            if (p < n && Value[p] == u'\r') ++p;
            if (p < n && Value[p] == u'\n') ++p;
        }
    } catch (...) {
        EndUpdate();
        throw;
    }
    EndUpdate();
}

void TWgWideStrings::SetUpdateState(bool) {}

int TWgWideStrings::Add(const WideString& S) {
    int result = GetCount();
    Insert(result, S);
    return result;
}

int TWgWideStrings::AddObject(const WideString& S, TObjectValue Object) {
    int result = Add(S);
    PutObject(result, Object);
    return result;
}

void TWgWideStrings::AddStrings(const TWgWideStrings& Strings) {
    BeginUpdate();
    try {
        for (int i = 0; i < Strings.Count(); ++i)
            AddObject(Strings.Get(i), Strings.GetObject(i));
    } catch (...) {
        EndUpdate();
        throw;
    }
    EndUpdate();
}

void TWgWideStrings::Exchange(int Index1, int Index2) {
    BeginUpdate();
    try {
        WideString s = Get(Index1);
        TObjectValue o = GetObject(Index1);
        Put(Index1, Get(Index2));
        PutObject(Index1, GetObject(Index2));
        Put(Index2, s);
        PutObject(Index2, o);
    } catch (...) {
        EndUpdate();
        throw;
    }
    EndUpdate();
}

int TWgWideStrings::IndexOf(const WideString& S) const {
    for (int i = 0; i < GetCount(); ++i)
        if (CompareZ(Get(i), S) == 0) return i;
    return -1;
}

void TWgWideStrings::LoadFromFile(const AnsiString& FileName) {
    TFileStream stream(FileName, fmOpenRead | fmShareDenyWrite);
    LoadFromStream(stream);
}

void TWgWideStrings::LoadFromStream(TStream& Stream) {
    BeginUpdate();
    try {
        std::int64_t remaining = Stream.Size() - Stream.Position();
        if (remaining < 0) remaining = 0;
        std::string bytes(std::size_t(remaining), '\0');
        Stream.ReadBuffer(bytes.data(), remaining);
        bool mark = bytes.size() >= 2 &&
                    ((std::uint8_t(bytes[0]) == 0xFF && std::uint8_t(bytes[1]) == 0xFE) ||
                     (std::uint8_t(bytes[0]) == 0xFE && std::uint8_t(bytes[1]) == 0xFF));
        WideString text;
        if (mark || FSaveUnicode) {
            text = DecodeUtf16LE(bytes);
            if (!text.empty() && text[0] == MarkBE) SwapUtf16(text);
            StripLeadingMarks(text);
        } else {
            text = AnsiToWide(bytes);
        }
        SetTextStr(text);
    } catch (...) {
        EndUpdate();
        throw;
    }
    EndUpdate();
}

void TWgWideStrings::Move(int CurIndex, int NewIndex) {
    if (CurIndex == NewIndex) return;
    BeginUpdate();
    try {
        WideString s = Get(CurIndex);
        TObjectValue o = GetObject(CurIndex);
        Delete(CurIndex);
        InsertObject(NewIndex, s, o);
    } catch (...) {
        EndUpdate();
        throw;
    }
    EndUpdate();
}

void TWgWideStrings::SaveToFile(const AnsiString& FileName) {
    SaveFileSafely(FileName, [this](TStream& Stream) { SaveToStream(Stream); });
}

void TWgWideStrings::SaveToStream(TStream& Stream) {
    FSaved = false;
    WideString text = GetTextStr();
    if (FSaveUnicode) {
        Stream.WriteBuffer("\xFF\xFE", 2);
        std::string bytes = EncodeUtf16LE(text);
        Stream.WriteBuffer(bytes.data(), std::int64_t(bytes.size()));
    } else {
        AnsiString bytes = WideToAnsi(text);
        Stream.WriteBuffer(bytes.data(), std::int64_t(bytes.size()));
    }
    FSaved = true;
}

void TWgWideStrings::InsertObject(int Index, const WideString& S, TObjectValue Object) {
    Insert(Index, S);
    PutObject(Index, Object);
}

void TWgWideStrings::Assign(const TWgWideStrings& Source) {
    if (&Source == this) return;
    BeginUpdate();
    try {
        Clear();
        AddStrings(Source);
    } catch (...) {
        EndUpdate();
        throw;
    }
    EndUpdate();
}

void TWgWideStrings::BeginUpdate() {
    // The state changes before the count rises, so Changing still fires.
    if (FUpdateCount == 0) SetUpdateState(true);
    ++FUpdateCount;
}

void TWgWideStrings::EndUpdate() {
    if (--FUpdateCount == 0) SetUpdateState(false);
}

void TWgWideStrings::WriteStrings(TFormWriter& Writer) const {
    Writer.WriteListBegin();
    for (int i = 0; i < GetCount(); ++i)
        Writer.WriteWideString(Get(i));
    Writer.WriteListEnd();
}

void TWgWideStrings::ReadStrings(TFormReader& Reader) {
    Reader.ReadListBegin();
    BeginUpdate();
    try {
        Clear();
        while (!Reader.EndOfList()) {
            switch (Reader.ReadValue()) {
            case vaString: {
                std::uint8_t len = Reader.ReadByte();
                Add(AnsiToWide(Reader.ReadNarrow(len)));
                break;
            }
            case vaLString: {
                std::int32_t len = Reader.ReadInt32();
                Add(AnsiToWide(Reader.ReadNarrow(len)));
                break;
            }
            case vaWString:
                Add(Reader.ReadWideChars(Reader.ReadInt32()));
                break;
            case vaUTF8String:
                Add(DecodeUtf8Lenient(Reader.ReadNarrow(Reader.ReadInt32())));
                break;
            default:
                throw EReadError("Error while reading wide strings list");
            }
        }
        Reader.ReadListEnd();
    } catch (...) {
        EndUpdate();
        throw;
    }
    EndUpdate();
}

// ---- TWgWideStringList

TWgWideStringList::~TWgWideStringList() {
    // Destroying a list fires nothing.
    OnChange = nullptr;
    OnChanging = nullptr;
}

void TWgWideStringList::CheckIndex(int Index) const {
    if (Index < 0 || Index >= int(FList.size())) ListError(RtlMessages::SListIndexError, Index);
}

WideString TWgWideStringList::Get(int Index) const {
    CheckIndex(Index);
    return FList[std::size_t(Index)].Str;
}

TObjectValue TWgWideStringList::GetObject(int Index) const {
    CheckIndex(Index);
    return FList[std::size_t(Index)].Obj;
}

void TWgWideStringList::Put(int Index, const WideString& S) {
    if (FSorted) ListError(RtlMessages::SSortedListError);
    CheckIndex(Index);
    Changing();
    FList[std::size_t(Index)].Str = S;
    Changed();
}

void TWgWideStringList::PutObject(int Index, TObjectValue Object) {
    CheckIndex(Index);
    Changing();
    FList[std::size_t(Index)].Obj = Object;
    Changed();
}

void TWgWideStringList::SetCapacity(int NewCapacity) {
    if (NewCapacity < GetCount()) NewCapacity = GetCount();
    FCapacity = NewCapacity;
    if (std::size_t(NewCapacity) > FList.capacity()) FList.reserve(std::size_t(NewCapacity));
}

void TWgWideStringList::SetUpdateState(bool Updating) {
    if (Updating)
        Changing();
    else
        Changed();
}

int TWgWideStringList::Add(const WideString& S) {
    int result;
    if (!FSorted) {
        result = GetCount();
    } else if (Find(S, result)) {
        switch (FDuplicates) {
        case dupIgnore:
            return result;
        case dupError:
            ListError(RtlMessages::SDuplicateString);
        case dupAccept:
            break;
        }
    }
    InsertItem(result, S);
    return result;
}

void TWgWideStringList::Clear() {
    if (FList.empty()) return;
    Changing();
    FList.clear();
    FList.shrink_to_fit();
    FCapacity = 0;
    Changed();
}

void TWgWideStringList::Delete(int Index) {
    CheckIndex(Index);
    Changing();
    FList.erase(FList.begin() + Index);
    Changed();
}

void TWgWideStringList::Exchange(int Index1, int Index2) {
    CheckIndex(Index1);
    CheckIndex(Index2);
    Changing();
    ExchangeItems(Index1, Index2);
    Changed();
}

int TWgWideStringList::IndexOf(const WideString& S) const {
    if (!FSorted) return TWgWideStrings::IndexOf(S);
    int index;
    return Find(S, index) ? index : -1;
}

void TWgWideStringList::Insert(int Index, const WideString& S) {
    if (FSorted) ListError(RtlMessages::SSortedListError);
    if (Index < 0 || Index > GetCount()) ListError(RtlMessages::SListIndexError, Index);
    InsertItem(Index, S);
}

int TWgWideStringList::AddObjectMove(WideString&& S, TObjectValue Object) {
    if (FSorted) return AddObject(S, Object);
    const int index = int(FList.size());
    InsertItemMove(index, std::move(S));
    // As AddObject: the object value goes in by a change of its own.
    Changing();
    FList.back().Obj = Object;
    Changed();
    return index;
}

void TWgWideStringList::SetSorted(bool Value) {
    if (FSorted == Value) return;
    if (Value) Sort();
    FSorted = Value;
}

void TWgWideStringList::Changed() {
    if (FUpdateCount == 0 && OnChange) OnChange(*this);
}

void TWgWideStringList::Changing() {
    if (FUpdateCount == 0 && OnChanging) OnChanging(*this);
}

void TWgWideStringList::Grow() {
    int delta = FCapacity > 64 ? FCapacity / 4 : FCapacity > 8 ? 16 : 4;
    FCapacity += delta;
    // The storage behind the reported capacity grows by half at least, so a
    // long list that is built by Add moves its entries twice or so, not a
    // dozen times, and holds no more than half as many again as it needs.
    if (std::size_t(FCapacity) > FList.capacity())
        FList.reserve(std::max(std::size_t(FCapacity), FList.capacity() / 2 * 3));
}

void TWgWideStringList::InsertItem(int Index, const WideString& S) {
    InsertItemMove(Index, WideString(S));
}

void TWgWideStringList::InsertItemMove(int Index, WideString&& S) {
    Changing();
    if (int(FList.size()) == FCapacity) Grow();
    if (std::size_t(Index) == FList.size())
        FList.emplace_back(std::move(S), 0);
    else
        FList.insert(FList.begin() + Index, TEntry{std::move(S), 0});
    Changed();
}

void TWgWideStringList::ExchangeItems(int Index1, int Index2) {
    std::swap(FList[std::size_t(Index1)], FList[std::size_t(Index2)]);
}

void TWgWideStringList::QuickSort(int L, int R, const TWgStringListSortCompare& Compare) {
    int i, j;
    do {
        i = L;
        j = R;
        int p = (L + R) >> 1;
        do {
            while (Compare(*this, i, p) < 0)
                ++i;
            while (Compare(*this, j, p) > 0)
                --j;
            if (i <= j) {
                ExchangeItems(i, j);
                // The pivot is an index, so it follows its entry when that moves.
                if (p == i)
                    p = j;
                else if (p == j)
                    p = i;
                ++i;
                --j;
            }
        } while (i <= j);
        if (L < j) QuickSort(L, j, Compare);
        L = i;
    } while (i < R);
}

void TWgWideStringList::CustomSort(const TWgStringListSortCompare& Compare) {
    if (FSorted || GetCount() <= 1) return;
    Changing();
    QuickSort(0, GetCount() - 1, Compare);
    Changed();
}

bool TWgWideStringList::Find(const WideString& S, int& Index) const {
    bool result = false;
    int l = 0, h = GetCount() - 1;
    while (l <= h) {
        int i = (l + h) >> 1;
        int c = CompareZ(FList[std::size_t(i)].Str, S);
        if (c < 0) {
            l = i + 1;
        } else {
            h = i - 1;
            if (c == 0) {
                result = true;
                if (FDuplicates != dupAccept) l = i;
            }
        }
    }
    Index = l;
    return result;
}

void TWgWideStringList::Sort() {
    CustomSort([](const TWgWideStringList& List, int A, int B) {
        return CompareZ(List.Ref(A), List.Ref(B));
    });
}
