// The section stream of a header.

#include "base/Exceptions.h"
#include "tree/WgHeaderModel.h"
#include "tree/WgStreamIO.h"
#include "wide/CodePage.h"

#include <unordered_set>

using namespace WgStreamIO;

namespace {
constexpr std::int32_t SectionStreamVersion = -12;
constexpr int SectionRecordSize = 140;
} // namespace

void TWgHeaderSections::WriteData(TStream& Stream) const {
    Stream.WriteInt32(SectionStreamVersion);
    Stream.WriteInt32(Count());
    std::uint8_t r[SectionRecordSize] = {};
    for (const auto& s : FList) {
        r[4] = s->LookupEnabled();
        PutI32(r, 8, s->ParentSection() ? IndexOf(s->ParentSection()) : -1);
        r[12] = s->Expandable;
        r[13] = s->Expanded();
        r[14] = s->OwnVisible();
        r[15] = s->ClickSelect;
        r[16] = s->Resizable;
        r[17] = s->Style;
        PutI32(r, 20, s->Width());
        PutI32(r, 24, s->MinWidth());
        PutI32(r, 28, s->MaxWidth());
        r[32] = s->SortMode();
        r[33] = s->AllowClick;
        r[34] = s->Alignment;
        PutU32(r, 36, s->SectionTag());
        PutI32(r, 40, s->SectionIndex());
        r[44] = s->FieldType;
        r[45] = s->Editable;
        PutI32(r, 48, s->ImageIndex());
        r[52] = s->PictureAlign;
        r[53] = s->Password;
        r[54] = s->ParentColor;
        PutU32(r, 56, s->Color);
        PutU32(r, 60, s->FontColor);
        r[64] = s->FilterEnabled;
        r[65] = s->TextLayout;
        r[66] = s->UseMainStyle;
        r[67] = s->AutoSize();
        PutI32(r, 68, s->Tag);
        Stream.WriteBuffer(r, SectionRecordSize);
        // The caption is narrowed on purpose: only the hint is stored wide.
        WriteAnsiZ(Stream, WideToAnsi(s->Text()));
        WriteAnsiZ(Stream, s->FieldName());
        WriteAnsiCounted(Stream, s->PopupName());
        WriteWideCounted(Stream, s->Hint());
    }
}

namespace {

// Reads the record fields shared by the layouts from -5 to -12, whose first
// 36 bytes are the same.
void ReadCommonHead(const std::uint8_t* r, TWgHeaderSection& s) {
    s.SetLookupEnabled(r[4] != 0);
    s.SetParentIndex(GetI32(r, 8));
    s.Expandable = r[12] != 0;
    s.SetExpandedRaw(r[13] != 0);
    s.SetVisibleRaw(r[14] != 0);
    s.ClickSelect = r[15] != 0;
    s.Resizable = r[16] != 0;
    s.Style = TWgSectionStyle(r[17]);
    s.SetStoredWidth(GetI32(r, 20));
    s.SetMinWidth(GetI32(r, 24));
    s.SetMaxWidth(GetI32(r, 28));
    s.SetStoredWidth(GetI32(r, 20));
    s.SetSortModeRaw(TWgSSortMode(r[32]));
    s.AllowClick = r[33] != 0;
    s.Alignment = TWgSAlignment(r[34]);
}

} // namespace

void TWgHeaderSections::IntReadData(TStream& Stream, bool /*Direct*/) {
    const std::int32_t version = Stream.ReadInt32();
    Clear();
    int recordSize;
    if (version <= -11)
        recordSize = 140;
    else if (version == -10)
        recordSize = 68;
    else if (version == -9 || version == -8)
        recordSize = 64;
    else if (version == -6 || version == -5)
        recordSize = 52;
    else if (version == -4)
        recordSize = 36;
    else
        return; // an unknown layout leaves the header empty
    const bool hasPopup = version <= -6;
    const bool hasHint = version <= -8;
    const bool wideHint = version < -11;

    const std::int32_t count = ReadCount(Stream, recordSize);
    std::uint8_t r[SectionRecordSize];
    for (std::int32_t n = 0; n < count; ++n) {
        Stream.ReadBuffer(r, recordSize);
        TWgHeaderSection* s = AppendRead();
        bool autoSize = false; // set after the caption, which would fit the width
        if (version == -4) {
            s->SetVisibleRaw(r[0] != 0);
            s->ClickSelect = r[1] != 0;
            s->Resizable = r[2] != 0;
            s->Style = TWgSectionStyle(r[3]);
            s->SetStoredWidth(GetI32(r, 4));
            s->SetMinWidth(GetI32(r, 8));
            s->SetMaxWidth(GetI32(r, 12));
            s->SetStoredWidth(GetI32(r, 4));
            s->SetSortModeRaw(TWgSSortMode(r[16]));
            s->AllowClick = r[17] != 0;
            s->Alignment = TWgSAlignment(r[18]);
            s->SetSectionIndex(GetI32(r, 20));
            s->FieldType = TWgFieldType(r[24]);
            s->Editable = r[25] != 0;
            s->SetImageIndex(GetI32(r, 28));
            s->PictureAlign = TWgSAlignment(r[32]);
            s->Password = r[33] != 0;
        } else if (version >= -9) {
            ReadCommonHead(r, *s);
            s->SetSectionIndex(GetI32(r, 36));
            s->FieldType = TWgFieldType(r[40]);
            s->Editable = r[41] != 0;
            s->SetImageIndex(GetI32(r, 44));
            s->PictureAlign = TWgSAlignment(r[48]);
            s->Password = r[49] != 0;
            if (version <= -8) {
                s->ParentColor = r[50] != 0;
                s->Color = GetU32(r, 52);
                s->FontColor = GetU32(r, 56);
                s->FilterEnabled = r[60] != 0;
                s->TextLayout = r[61];
                s->UseMainStyle = r[62] != 0;
                if (version == -9) autoSize = r[63] != 0;
            }
        } else {
            ReadCommonHead(r, *s);
            s->SetSectionTag(GetU32(r, 36));
            s->SetSectionIndex(GetI32(r, 40));
            s->FieldType = TWgFieldType(r[44]);
            s->Editable = r[45] != 0;
            s->SetImageIndex(GetI32(r, 48));
            s->PictureAlign = TWgSAlignment(r[52]);
            s->Password = r[53] != 0;
            s->ParentColor = r[54] != 0;
            s->Color = GetU32(r, 56);
            s->FontColor = GetU32(r, 60);
            s->FilterEnabled = r[64] != 0;
            s->TextLayout = r[65];
            s->UseMainStyle = r[66] != 0;
            autoSize = r[67] != 0;
            if (version <= -11) s->Tag = GetI32(r, 68);
        }
        s->SetText(AnsiToWide(ReadAnsiZ(Stream)));
        s->SetFieldName(ReadAnsiZ(Stream));
        if (hasPopup) s->SetPopupName(ReadAnsiCounted(Stream));
        if (hasHint)
            s->SetHint(wideHint ? ReadWideCounted(Stream) : AnsiToWide(ReadAnsiCounted(Stream)));
        s->SetAutoSizeRaw(autoSize);
    }
    if (version > -10) AllocateReadTags(); // older layouts have no tag
    ResolveReadParents();
    if (FOwner) FOwner->Repaint(nullptr);
}

void TWgHeaderSections::LoadFromStream(TStream& Stream) {
    IntReadData(Stream, false);
}
void TWgHeaderSections::ReadData(TStream& Stream) {
    IntReadData(Stream, true);
}

TWgHeaderSection* TWgHeaderSections::AppendRead() {
    FList.emplace_back(CreateSection());
    TWgHeaderSection* section = FList.back().get();
    if (FOwner) FOwner->SectionCreated(section);
    return section;
}

void TWgHeaderSections::AllocateReadTags() {
    std::unordered_set<std::uint32_t> used;
    for (auto& s : FList) {
        std::uint32_t tag = std::uint32_t(reinterpret_cast<std::uintptr_t>(s.get()));
        while (!used.insert(tag).second)
            ++tag;
        s->FSectionTag = tag;
    }
}

// Parents by list position as it stands at the end: a parent may follow its
// child. A chain that would close a cycle is cut where it closes.
void TWgHeaderSections::ResolveReadParents() {
    const int count = Count();
    std::vector<int> parent(std::size_t(count), -1);
    for (int i = 0; i < count; ++i) {
        TWgHeaderSection& s = *FList[std::size_t(i)];
        if (s.FParentIndex >= 0 && s.FParentIndex < count) parent[std::size_t(i)] = s.FParentIndex;
        s.FParentIndex = -1;
    }
    std::vector<std::uint8_t> state(std::size_t(count), 0); // 1 on this walk, 2 settled
    std::vector<int> walk;
    for (int i = 0; i < count; ++i) {
        walk.clear();
        for (int at = i; at >= 0 && state[std::size_t(at)] == 0;) {
            state[std::size_t(at)] = 1;
            walk.push_back(at);
            const int next = parent[std::size_t(at)];
            if (next >= 0 && state[std::size_t(next)] == 1) parent[std::size_t(at)] = -1;
            at = parent[std::size_t(at)];
        }
        for (int w : walk)
            state[std::size_t(w)] = 2;
    }
    for (int i = 0; i < count; ++i) {
        const int p = parent[std::size_t(i)];
        FList[std::size_t(i)]->FParentSection = p >= 0 ? FList[std::size_t(p)].get() : nullptr;
    }
}
