#include "tree/WgHeaderSections.h"

#include "base/Strings.h"
#include "tree/WgHeaderModel.h"
#include "tree/WgTreeErrors.h"

#include <algorithm>

// ---- section

TWgHeaderSection::TWgHeaderSection(TWgHeaderSections* Owner) : FOwner(Owner) {
    if (Owner && Owner->Owner()) FWidth = Owner->Owner()->DefaultWidth();
}

TWgHeaderModel* TWgHeaderSection::Header() const {
    return FOwner ? FOwner->Owner() : nullptr;
}

int TWgHeaderSection::Position() const {
    return FOwner ? FOwner->IndexOf(this) : -1;
}

bool TWgHeaderSection::Locked() const {
    return Header() && Header()->LockedSection() == this;
}

bool TWgHeaderSection::Visible() const {
    // Shown when it and every parent up the chain are, and every parent is
    // expanded.
    if (!FVisible) return false;
    for (const TWgHeaderSection* p = FParentSection; p; p = p->FParentSection)
        if (!p->FVisible || !p->FExpanded) return false;
    return true;
}

// The sum of the shown widths before the section; a loop rather than the
// predecessor's Right, so that no header can be deep enough to overflow.
int TWgHeaderSection::Left() const {
    const int position = Position();
    int left = 0;
    for (int i = 0; i < position; ++i) {
        const TWgHeaderSection* s = FOwner->GetSectionByPos(i);
        if (s->Visible()) left += s->FWidth;
    }
    return left;
}

int TWgHeaderSection::Right() const {
    return Left() + (Visible() ? FWidth : 0);
}

void TWgHeaderSection::SetWidth(int Value) {
    if (Value < FMinWidth || Value > FMaxWidth || Value == FWidth) return;
    FWidth = Value;
    if (TWgHeaderModel* header = Header()) header->SectionWidthChanged(this);
}

void TWgHeaderSection::SetMinWidth(int Value) {
    FMinWidth = Value;
    if (FWidth < Value) {
        FWidth = Value;
        if (TWgHeaderModel* header = Header()) header->SectionWidthChanged(this);
    }
}

void TWgHeaderSection::SetMaxWidth(int Value) {
    FMaxWidth = Value;
    if (FWidth > Value) {
        FWidth = Value;
        if (TWgHeaderModel* header = Header()) header->SectionWidthChanged(this);
    }
}

void TWgHeaderSection::SetVisible(bool Value) {
    if (Value == FVisible) return;
    const int oldWidth = FWidth;
    FVisible = Value;
    if (TWgHeaderModel* header = Header()) {
        header->SectionVisibilityChanged(this, oldWidth);
        header->SectionChanged(this, scmVisible);
    }
}

void TWgHeaderSection::SetParentSection(TWgHeaderSection* Value) {
    for (TWgHeaderSection* p = Value; p; p = p->FParentSection)
        if (p == this) return;
    FParentSection = Value;
    if (TWgHeaderModel* header = Header()) {
        header->SectionChanged(this, scmParent);
        header->Repaint(nullptr);
    }
}

void TWgHeaderSection::AutoSizeChanged() {
    TWgHeaderModel* header = Header();
    if (FAutoSize && header && header->OnSectionAutoSize) header->OnSectionAutoSize(*header, this);
}

void TWgHeaderSection::SetText(const WideString& Value) {
    if (Value == FText) return;
    FText = Value;
    AutoSizeChanged();
    if (TWgHeaderModel* header = Header()) {
        header->SectionChanged(this, scmText);
        header->Repaint(this);
    }
}

void TWgHeaderSection::SetImageIndex(std::int32_t Value) {
    if (Value == FImageIndex) return;
    FImageIndex = Value;
    AutoSizeChanged();
    if (TWgHeaderModel* header = Header()) header->Repaint(this);
}

void TWgHeaderSection::SetStyle(TWgSectionStyle Value) {
    if (Value == Style) return;
    Style = Value;
    AutoSizeChanged();
    if (TWgHeaderModel* header = Header()) {
        header->SectionChanged(this, scmStyle);
        header->Repaint(this);
    }
}

void TWgHeaderSection::SetAlignment(TWgSAlignment Value) {
    if (Value == Alignment) return;
    Alignment = Value;
    if (TWgHeaderModel* header = Header()) {
        header->SectionChanged(this, scmAlign);
        header->Repaint(this);
    }
}

void TWgHeaderSection::SetFieldType(TWgFieldType Value) {
    if (Value == FieldType) return;
    FieldType = Value;
    if (TWgHeaderModel* header = Header()) header->SectionChanged(this, scmFieldType);
}

void TWgHeaderSection::SetLookupEnabled(bool Value) {
    if (Value == FLookupEnabled) return;
    FLookupEnabled = Value;
    TWgHeaderModel* header = Header();
    if (Value && header && header->Height() < 17) header->SetHeight(17);
    AutoSizeChanged();
    if (header) header->Repaint(this);
}

void TWgHeaderSection::SetExpanded(bool Value) {
    if (Value == FExpanded) return;
    FExpanded = Value;
    if (TWgHeaderModel* header = Header()) header->Repaint(nullptr);
}

void TWgHeaderSection::SetSortMode(TWgSSortMode Value) {
    if (TWgHeaderModel* header = Header(); header && !header->MultiSort)
        for (int i = 0; i < FOwner->Count(); ++i)
            FOwner->GetSectionByPos(i)->FSortMode = hsmNone;
    FSortMode = Value;
    AutoSizeChanged(); // the mark takes room
    if (TWgHeaderModel* header = Header()) header->SortModeChanged(this);
}

void TWgHeaderSection::SetAutoSize(bool Value) {
    if (Value == FAutoSize) return;
    FAutoSize = Value;
    AutoSizeChanged();
}

void TWgHeaderSection::Assign(const TWgHeaderSection& Source) {
    if (&Source == this) return;
    FilterIsActive = Source.FilterIsActive;
    FilterEnabled = Source.FilterEnabled;
    FHint = Source.FHint;
    TextLayout = Source.TextLayout;
    UseMainStyle = Source.UseMainStyle;
    FontColor = Source.FontColor;
    Color = Source.Color;
    ParentColor = Source.ParentColor;
    FLookupEnabled = Source.FLookupEnabled;
    Expandable = Source.Expandable;
    FExpanded = Source.FExpanded;
    FParentSection = nullptr;
    if (Source.FParentSection && FOwner)
        SetParentSection(FOwner->GetSection(Source.FParentSection->FSectionIndex));
    FPopupMenu = Source.FPopupMenu;
    FPopupName = Source.FPopupName;
    Resizable = Source.Resizable;
    ClickSelect = Source.ClickSelect;
    Password = Source.Password;
    FFieldName = Source.FFieldName;
    FieldType = Source.FieldType;
    Editable = Source.Editable;
    FImageIndex = Source.FImageIndex;
    PictureAlign = Source.PictureAlign;
    Tag = Source.Tag;
    FVisible = Source.FVisible;
    Style = Source.Style;
    FMinWidth = Source.FMinWidth;
    FMaxWidth = Source.FMaxWidth;
    FWidth = Source.FWidth;
    FSortMode = Source.FSortMode;
    AllowClick = Source.AllowClick;
    Alignment = Source.Alignment;
    FText = Source.FText;
    LookupHistory = Source.LookupHistory;
    FAutoSize = Source.FAutoSize;
    SavedWidth = Source.SavedWidth;
    StickyShare = Source.StickyShare;
    ShowSortMark = Source.ShowSortMark;
}

// ---- section list

TWgHeaderSections::~TWgHeaderSections() = default;

int TWgHeaderSections::IndexOf(const TWgHeaderSection* Section) const {
    for (std::size_t i = 0; i < FList.size(); ++i)
        if (FList[i].get() == Section) return int(i);
    return -1;
}

std::int32_t TWgHeaderSections::FreeSectionIndex() const {
    std::int32_t index = 0;
    while (FindSectionByIndex(index))
        ++index;
    return index;
}

std::uint32_t TWgHeaderSections::FreeSectionTag(std::uint32_t Start) const {
    std::uint32_t tag = Start;
    while (GetSectionByIntTag(tag))
        ++tag;
    return tag;
}

TWgHeaderSection* TWgHeaderSections::CreateSection() {
    return new TWgHeaderSection(this);
}

TWgHeaderSection* TWgHeaderSections::NewSection(int Position) {
    std::unique_ptr<TWgHeaderSection> section(CreateSection());
    section->FSectionIndex = FreeSectionIndex();
    // The identity starts from the object's own address.
    section->FSectionTag =
        FreeSectionTag(std::uint32_t(reinterpret_cast<std::uintptr_t>(section.get())));
    TWgHeaderSection* result = section.get();
    FList.insert(FList.begin() + Position, std::move(section));
    if (FOwner) FOwner->SectionCreated(result);
    return result;
}

TWgHeaderSection* TWgHeaderSections::AddSection() {
    return NewSection(Count());
}

TWgHeaderSection* TWgHeaderSections::InsertSection(int Index) {
    if (Index < 0 || Index > Count()) throw EWgHeaderError(WgTreeMessages::SIndexOutOfBounds);
    return NewSection(Index);
}

void TWgHeaderSections::DeleteSection(TWgHeaderSection* Section) {
    const int index = IndexOf(Section);
    if (!Section || index < 0) throw EWgHeaderError(WgTreeMessages::SInvalidSection);
    if (FOwner) FOwner->SectionDeleted(Section);
    for (auto& s : FList)
        if (s->FParentSection == Section) s->FParentSection = nullptr;
    FList.erase(FList.begin() + index);
}

void TWgHeaderSections::MoveSection(TWgHeaderSection* Section, int NewPos) {
    const int old = IndexOf(Section);
    if (old < 0) return;
    NewPos = std::clamp(NewPos, 0, Count() - 1);
    if (old != NewPos) {
        std::unique_ptr<TWgHeaderSection> moving = std::move(FList[std::size_t(old)]);
        FList.erase(FList.begin() + old);
        FList.insert(FList.begin() + NewPos, std::move(moving));
    }
    // The locked section stays in front.
    if (FOwner && FOwner->LockedSection()) {
        const int locked = IndexOf(FOwner->LockedSection());
        if (locked > 0) {
            std::unique_ptr<TWgHeaderSection> l = std::move(FList[std::size_t(locked)]);
            FList.erase(FList.begin() + locked);
            FList.insert(FList.begin(), std::move(l));
        }
    }
    if (FOwner) {
        if (FOwner->OnSectionMove) FOwner->OnSectionMove(*FOwner, Section, old, IndexOf(Section));
        FOwner->Repaint(nullptr);
    }
}

void TWgHeaderSections::Clear() {
    if (FOwner) FOwner->SetLockedSection(nullptr);
    FList.clear();
}

TWgHeaderSection* TWgHeaderSections::GetSectionByIntTag(std::uint32_t Tag) const {
    for (auto& s : FList)
        if (s->FSectionTag == Tag) return s.get();
    return nullptr;
}

TWgHeaderSection* TWgHeaderSections::FindSectionByIndex(int Index) const {
    for (auto& s : FList)
        if (s->FSectionIndex == Index) return s.get();
    return nullptr;
}

TWgHeaderSection* TWgHeaderSections::GetSection(int Index) const {
    return FindSectionByIndex(Index);
}

void TWgHeaderSections::SetSection(int Index, const TWgHeaderSection& Section) {
    if (TWgHeaderSection* s = GetSection(Index)) s->Assign(Section);
}

TWgHeaderSection* TWgHeaderSections::GetSectionByPos(int Position) const {
    return (Position >= 0 && Position < Count()) ? FList[std::size_t(Position)].get() : nullptr;
}

TWgHeaderSection* TWgHeaderSections::LastVisibleSection() const {
    for (int i = Count() - 1; i >= 0; --i)
        if (FList[std::size_t(i)]->Visible()) return FList[std::size_t(i)].get();
    return nullptr;
}

TWgHeaderSection* TWgHeaderSections::GetPrevVisibleSection(const TWgHeaderSection* Section) const {
    for (int i = IndexOf(Section) - 1; i >= 0; --i)
        if (FList[std::size_t(i)]->Visible()) return FList[std::size_t(i)].get();
    return nullptr;
}

void TWgHeaderSections::Assign(const TWgHeaderSections& Source) {
    if (&Source == this) return;
    Clear();
    for (auto& s : Source.FList) {
        TWgHeaderSection* section = AddSection();
        section->FSectionIndex = s->FSectionIndex;
    }
    for (int i = 0; i < Count(); ++i)
        FList[std::size_t(i)]->Assign(*Source.FList[std::size_t(i)]);
}

WideString TWgHeaderSections::SectionsOrder() const {
    WideString result;
    for (auto& s : FList) {
        result += u'i';
        result += IntToWide(s->FSectionIndex);
        result += u":w";
        result += IntToWide(s->FWidth);
        result += s->FVisible ? u":vt," : u":vf,";
    }
    return result;
}

void TWgHeaderSections::SetSectionsOrder(const WideString& Value) {
    if (FOwner && (FOwner->Loading() || FOwner->Designing())) return;
    int next = 0;
    std::size_t start = 0;
    while (start < Value.size()) {
        std::size_t end = Value.find(u',', start);
        if (end == WideString::npos) end = Value.size();
        const WideString group = Value.substr(start, end - start);
        start = end + 1;
        // i<index>:w<width>:v<t|f>
        long index = 0, width = 0;
        bool visible = true, ok = group.size() > 1 && group[0] == u'i';
        std::size_t p = 1;
        auto number = [&](long& Out) {
            bool neg = p < group.size() && group[p] == u'-';
            if (neg) ++p;
            const std::size_t digits = p;
            long v = 0;
            while (p < group.size() && group[p] >= u'0' && group[p] <= u'9' && v < 100000000)
                v = v * 10 + (group[p++] - u'0');
            Out = neg ? -v : v;
            return p > digits;
        };
        ok = ok && number(index);
        ok = ok && group.compare(p, 2, u":w") == 0;
        p += 2;
        ok = ok && number(width);
        ok = ok && group.compare(p, 2, u":v") == 0;
        p += 2;
        ok = ok && p < group.size();
        if (ok) visible = group[p] == u't';
        if (!ok) continue;
        TWgHeaderSection* section = FindSectionByIndex(int(index));
        if (!section) continue;
        const int old = IndexOf(section);
        if (old != next && next < Count()) {
            std::unique_ptr<TWgHeaderSection> moving = std::move(FList[std::size_t(old)]);
            FList.erase(FList.begin() + old);
            FList.insert(FList.begin() + std::min(next, Count()), std::move(moving));
        }
        ++next;
        section->SetWidth(int(width));
        section->SetVisible(visible);
    }
    if (FOwner) FOwner->Repaint(nullptr);
}
