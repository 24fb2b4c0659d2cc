#pragma once
// TWgHeaderSection and TWgHeaderSections: the columns of a header.

#include "base/Streams.h"
#include "base/Types.h"
#include "tree/WgTypes.h"

#include <memory>
#include <vector>

class TWgHeaderModel;
class TWgHeaderSections;

class TWgHeaderSection {
public:
    explicit TWgHeaderSection(TWgHeaderSections* Owner);
    virtual ~TWgHeaderSection() = default;
    TWgHeaderSection(const TWgHeaderSection&) = delete;
    TWgHeaderSection& operator=(const TWgHeaderSection&) = delete;

    // Copies every field but the identity ones; the parent is mapped by
    // column number in the target header.
    void Assign(const TWgHeaderSection& Source);

    TWgHeaderSections* Owner() const { return FOwner; }
    TWgHeaderModel* Header() const;

    // ---- geometry
    int Left() const;
    int Right() const;
    int Width() const { return FWidth; }
    // A value outside MinWidth..MaxWidth is ignored, not clamped.
    void SetWidth(int Value);
    // The stored width without any checks (stream reading, sticky squeeze).
    void SetStoredWidth(int Value) { FWidth = Value; }
    int MinWidth() const { return FMinWidth; }
    void SetMinWidth(int Value);
    int MaxWidth() const { return FMaxWidth; }
    void SetMaxWidth(int Value);
    // Shown: the own flag, and the parent's visibility and expansion.
    bool Visible() const;
    bool OwnVisible() const { return FVisible; }
    void SetVisible(bool Value);
    void SetVisibleRaw(bool Value) { FVisible = Value; }
    int Position() const;
    bool Locked() const;

    // ---- identity
    std::uint32_t SectionTag() const { return FSectionTag; }
    void SetSectionTag(std::uint32_t Value) { FSectionTag = Value; }
    std::int32_t SectionIndex() const { return FSectionIndex; }
    void SetSectionIndex(std::int32_t Value) { FSectionIndex = Value; }

    // ---- the rest of the fields
    const WideString& Text() const { return FText; }
    void SetText(const WideString& Value);
    const WideString& Hint() const { return FHint; }
    void SetHint(const WideString& Value) { FHint = Value; }
    const AnsiString& FieldName() const { return FFieldName; }
    void SetFieldName(const AnsiString& Value) { FFieldName = Value; }
    const AnsiString& PopupName() const { return FPopupName; }
    void SetPopupName(const AnsiString& Value) { FPopupName = Value; }
    void* PopupMenu() const { return FPopupMenu; }
    void SetPopupMenu(void* Value) { FPopupMenu = Value; }
    TWgHeaderSection* ParentSection() const { return FParentSection; }
    // A parent that would close a cycle is ignored.
    void SetParentSection(TWgHeaderSection* Value);
    std::int32_t ParentIndex() const { return FParentIndex; }
    void SetParentIndex(std::int32_t Value) { FParentIndex = Value; }

    bool FilterIsActive = false;
    bool FilterEnabled = false;
    std::uint8_t TextLayout = 1;
    bool UseMainStyle = false;
    TColor FontColor = 0;
    TColor Color = 0;
    bool ParentColor = true;
    bool Expandable = false;
    bool Resizable = true;
    bool ClickSelect = true;
    bool Password = false;
    TWgFieldType FieldType = sftText;
    bool Editable = false;
    TWgSAlignment PictureAlign = hsaLeft;
    std::int32_t Tag = 0;
    TWgSectionStyle Style = elhsText;
    bool AllowClick = true;
    TWgSAlignment Alignment = hsaLeft;
    std::vector<WideString> LookupHistory;
    std::int32_t SavedWidth = -1;
    float StickyShare = 0;
    bool ShowSortMark = true;

    bool LookupEnabled() const { return FLookupEnabled; }
    void SetLookupEnabled(bool Value);
    bool Expanded() const { return FExpanded; }
    void SetExpanded(bool Value);
    void SetExpandedRaw(bool Value) { FExpanded = Value; }
    std::int32_t ImageIndex() const { return FImageIndex; }
    void SetImageIndex(std::int32_t Value);
    // Style, Alignment and FieldType as a program changes them: the header
    // repaints the section and reports the change. The fields themselves are
    // what loading fills, without reports.
    void SetStyle(TWgSectionStyle Value);
    void SetAlignment(TWgSAlignment Value);
    void SetFieldType(TWgFieldType Value);
    TWgSSortMode SortMode() const { return FSortMode; }
    void SetSortMode(TWgSSortMode Value);
    void SetSortModeRaw(TWgSSortMode Value) { FSortMode = Value; }
    bool AutoSize() const { return FAutoSize; }
    void SetAutoSize(bool Value);
    void SetAutoSizeRaw(bool Value) { FAutoSize = Value; }

private:
    friend class TWgHeaderSections;
    void AutoSizeChanged();

    TWgHeaderSections* FOwner;
    WideString FText;
    WideString FHint;
    AnsiString FFieldName;
    AnsiString FPopupName;
    void* FPopupMenu = nullptr;
    TWgHeaderSection* FParentSection = nullptr;
    std::int32_t FParentIndex = -1;
    bool FLookupEnabled = false;
    bool FExpanded = false;
    bool FVisible = true;
    bool FAutoSize = false;
    std::int32_t FImageIndex = -1;
    std::uint32_t FSectionTag = 0;
    std::int32_t FSectionIndex = 0;
    std::int32_t FWidth = 120;
    std::int32_t FMinWidth = 0;
    std::int32_t FMaxWidth = 10000;
    TWgSSortMode FSortMode = hsmNone;
};

class TWgHeaderSections {
public:
    explicit TWgHeaderSections(TWgHeaderModel* Owner) : FOwner(Owner) {}
    virtual ~TWgHeaderSections();
    TWgHeaderSections(const TWgHeaderSections&) = delete;
    TWgHeaderSections& operator=(const TWgHeaderSections&) = delete;

    // ---- virtual operations, in the order of their slots
    virtual void Assign(const TWgHeaderSections& Source);
    virtual TWgHeaderSection* GetSectionByIntTag(std::uint32_t Tag) const;
    // By column number (SectionIndex), not by position.
    virtual TWgHeaderSection* GetSection(int Index) const;
    virtual void SetSection(int Index, const TWgHeaderSection& Section);
    // By position in the display order.
    virtual TWgHeaderSection* GetSectionByPos(int Position) const;
    virtual TWgHeaderSection* CreateSection();
    virtual void WriteData(TStream& Stream) const;
    virtual void IntReadData(TStream& Stream, bool Direct);
    virtual void LoadFromStream(TStream& Stream);
    virtual void ReadData(TStream& Stream);
    virtual TWgHeaderSection* FindSectionByIndex(int Index) const;

    void SaveToStream(TStream& Stream) const { WriteData(Stream); }

    TWgHeaderModel* Owner() const { return FOwner; }
    int Count() const { return int(FList.size()); }
    TWgHeaderSection* operator[](int Index) const { return GetSection(Index); }
    TWgHeaderSection* AddSection();
    TWgHeaderSection* InsertSection(int Index);
    void DeleteSection(TWgHeaderSection* Section);
    void MoveSection(TWgHeaderSection* Section, int NewPos);
    void Clear();
    int IndexOf(const TWgHeaderSection* Section) const;
    TWgHeaderSection* LastVisibleSection() const;
    TWgHeaderSection* GetPrevVisibleSection(const TWgHeaderSection* Section) const;

    // "i<index>:w<width>:v<t|f>," per section in list order.
    WideString SectionsOrder() const;
    void SetSectionsOrder(const WideString& Value);

    // The smallest column number and a tag that no section has.
    std::int32_t FreeSectionIndex() const;
    std::uint32_t FreeSectionTag(std::uint32_t Start) const;

private:
    friend class TWgHeaderSection;
    TWgHeaderSection* NewSection(int Position);
    // Reading: a section whose identity the record gives, and the parent
    // fix-up, which cuts any cycle the data would make.
    TWgHeaderSection* AppendRead();
    void ResolveReadParents();
    void AllocateReadTags();

    TWgHeaderModel* FOwner;
    std::vector<std::unique_ptr<TWgHeaderSection>> FList;
};
