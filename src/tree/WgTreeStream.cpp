// The item stream: one entry per item, the root's first, children nested.

#include "base/Exceptions.h"
#include "tree/WgStreamIO.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"
#include "tree/WgTreeModel.h"
#include "wide/CodePage.h"

using namespace WgStreamIO;

namespace {

constexpr std::int32_t ItemStreamVersion = -14;
constexpr int ItemRecordSize = 128;
constexpr int StyleRecordSize = 36;
// Bits of the combined flags word that belong to the item's own flags; the
// focus and selection bits are dropped, all others go to the flag block.
constexpr std::uint32_t ItemFlagsMask = 0x0418E100;
constexpr std::uint32_t DroppedFlagsMask = 0x01800000;
constexpr std::uint32_t RootForcedFlags = 0x02008000;
// Entries nest by recursion; a blob nested deeper than this is refused
// rather than allowed to exhaust the stack.
constexpr int MaxReadDepth = 1000;
// The least a counted text (its count) and a stored item (its first
// field) take in the stream.
constexpr std::int64_t MinCountedBytes = 4;
constexpr std::int64_t MinItemBytes = 4;

void WriteStyle(TStream& Stream, const TWgCellStyle& Style) {
    std::uint8_t r[StyleRecordSize] = {};
    PutU32(r, 0, Style.CellBkColor());
    PutU32(r, 4, Style.TextBkColor());
    PutU32(r, 8, Style.TextColor());
    PutU32(r, 12, Style.TextFlags());
    PutU32(r, 16, std::uint32_t(Style.Picture()));
    r[20] = Style.CellType();
    r[21] = Style.Style();
    r[22] = Style.OwnerProps();
    r[23] = Style.UseBkColor();
    PutI32(r, 24, Style.FontSize());
    r[28] = Style.FontStyles();
    PutI32(r, 32, Style.Tag());
    Stream.WriteBuffer(r, StyleRecordSize);
    WriteAnsiCounted(Stream, Style.FontName());
}

void ReadStyle(TStream& Stream, TWgCellStyle& Style) {
    std::uint8_t r[StyleRecordSize];
    Stream.ReadBuffer(r, StyleRecordSize);
    Style.SetCellBkColor(GetU32(r, 0));
    Style.SetTextBkColor(GetU32(r, 4));
    Style.SetTextColor(GetU32(r, 8));
    Style.SetTextFlags(GetU32(r, 12));
    Style.SetPicture(GetU32(r, 16));
    Style.SetCellType(TWgFieldType(r[20]));
    Style.SetStyle(TWgSectionStyle(r[21]));
    Style.SetOwnerProps(r[22] != 0);
    Style.SetUseBkColor(r[23] != 0);
    Style.SetFontSize(GetI32(r, 24));
    Style.SetFontStyles(r[28]);
    Style.SetTag(GetI32(r, 32));
    Style.SetFontName(ReadAnsiCounted(Stream));
}

WideString ReadText(TStream& Stream, bool Wide) {
    return Wide ? ReadWideCounted(Stream) : AnsiToWide(ReadAnsiCounted(Stream));
}

} // namespace

// ---- writing

void TWgTreeItem::WriteData(TStream& Stream) {
    TWgTreeModel* tree = FOwner;
    Stream.WriteInt32(ItemStreamVersion);
    WriteWideCounted(Stream, Text());

    std::uint8_t r[ItemRecordSize] = {};
    const TWgTreeItemStaticDataEx* ex = FStaticDataEx;
    std::uint16_t state = ex ? ex->State : 0;
    if (Expanded()) state |= stExpanded;
    PutU16(r, 0, state);
    PutU32(r, 20, FFlags | StaticFlags());
    PutI32(r, 44, FixedHeight());
    PutI32(r, 60, FTag);
    if (ex) {
        PutI32(r, 4, ex->ImageIndex);
        PutI32(r, 8, ex->StateImageIndex);
        PutI32(r, 12, ex->ImageIndex2);
        PutI32(r, 16, ex->StateImageIndex2);
        PutU32(r, 28, ex->Color);
        PutU32(r, 32, ex->RowBkColor);
        PutU32(r, 36, ex->BkColor);
        r[40] = ex->CheckBoxState;
        r[41] = ex->CheckBoxType;
        r[48] = ex->BorderStyle;
        PutI32(r, 52, ex->IndentAdjust);
        PutU32(r, 56, ex->StrikedLineColor);
        PutU32(r, 64,
               (std::uint32_t(ex->OverlayIndex) & 0xFFFF) |
                   (std::uint32_t(ex->OverlayIndex2) << 16));
    }
    Stream.WriteBuffer(r, ItemRecordSize);

    Stream.WriteInt32(-1);
    WriteWideCounted(Stream, FStaticData ? Hint() : GetHint());
    const int columns = ColumnTextCount();
    Stream.WriteInt32(columns);
    for (int i = 0; i < columns; ++i)
        WriteWideCounted(Stream, FStaticData->Extra->ColumnText->Ref(i));

    const bool hasStyles = UseStyles();
    Stream.WriteByte(hasStyles);
    if (hasStyles) {
        const bool custom = bool(tree->OnCellStyleSave);
        Stream.WriteByte(custom);
        auto writeOne = [&](TWgCellStyle* Style) {
            if (custom)
                tree->OnCellStyleSave(*tree, Stream, Style);
            else
                WriteStyle(Stream, *Style);
        };
        TWgCellStyle scratch;
        TWgCellStyle* main = GetMainStyle();
        writeOne(main ? main : &scratch);
        Stream.WriteInt32(StylesCount());
        for (int i = 0; i < StylesCount(); ++i)
            writeOne(GetStyles(i));
    }
    if (tree->OnItemSave) tree->OnItemSave(*tree, Stream, this);

    Stream.WriteInt32(ChildrenCount());
    for (int i = 0; i < ChildrenCount(); ++i)
        FChildren->Get(i)->WriteData(Stream);
}

// ---- reading

namespace {

// Copies a fixed record of any version into the item's fields.
struct TRecordFields {
    std::uint16_t State = 0;
    std::uint32_t ItemFlags = 0;
    std::uint32_t StaticFlags = 0;
    bool HasStaticFlags = false; // the record holds the whole static word
    std::uint32_t StaticSet = 0, StaticHeld = 0;
    std::int32_t FixedHeight = 0;
    std::int32_t Tag = 0;
    bool HasTag = false;
    TWgTreeItemStaticDataEx Ex;
};

void ReadOldRecord(TStream& Stream, int Size, const int* O, TRecordFields& F) {
    std::uint8_t r[60] = {};
    Stream.ReadBuffer(r, Size);
    const bool useBkColor = Stream.ReadByte() != 0;
    // O: State, ImageIndex, StateImageIndex, ForceButtons, Color, RowBkColor (-1 none),
    // BkColor, ParentColors, ParentStyle, CheckBoxEnabled, CheckBoxState, ShowCheckBox,
    // CheckBoxType, ImageIndex2 (-1 none), StateImageIndex2 (-1 none), Enabled, Hidden,
    // Multiline, OwnerHeight, FixedHeight, SuppressLines, IsHTML
    F.State = GetU16(r, O[0]);
    F.Ex.ImageIndex = GetI32(r, O[1]);
    F.Ex.StateImageIndex = GetI32(r, O[2]);
    F.Ex.Color = GetU32(r, O[4]);
    if (O[5] >= 0) F.Ex.RowBkColor = GetU32(r, O[5]);
    F.Ex.BkColor = GetU32(r, O[6]);
    F.Ex.CheckBoxState = r[O[10]];
    F.Ex.CheckBoxType = r[O[12]];
    if (O[13] >= 0) F.Ex.ImageIndex2 = GetI32(r, O[13]);
    if (O[14] >= 0) F.Ex.StateImageIndex2 = GetI32(r, O[14]);
    F.FixedHeight = GetI32(r, O[19]);
    struct {
        int Offset;
        std::uint32_t Bit;
    } statics[] = {{O[3], sfForceButtons},    {O[7], sfParentColors},  {O[8], sfParentStyle},
                   {O[9], sfCheckBoxEnabled}, {O[11], sfShowCheckBox}, {O[20], sfSuppressLines}};
    for (auto& s : statics) {
        F.StaticHeld |= s.Bit;
        if (r[s.Offset]) F.StaticSet |= s.Bit;
    }
    F.StaticHeld |= sfUseBkColor;
    if (useBkColor) F.StaticSet |= sfUseBkColor;
    // Item flags the record does not hold are cleared.
    struct {
        int Offset;
        std::uint32_t Bit;
    } items[] = {{O[15], ifEnabled},
                 {O[16], ifHidden},
                 {O[17], ifMultiline},
                 {O[18], ifOwnerHeight},
                 {O[21], ifIsHTML}};
    for (auto& s : items)
        if (r[s.Offset]) F.ItemFlags |= s.Bit;
}

} // namespace

void TWgTreeItem::ReadData(TStream& Stream) {
    TWgTreeModel* tree = FOwner;
    const std::int32_t first = Stream.ReadInt32();
    const std::int32_t version = first >= 0 ? 0 : first;

    WideString text;
    if (version == 0)
        text = AnsiToWide(ReadRaw(Stream, first));
    else
        text = ReadText(Stream, version <= -14);
    if (FStaticData) FStaticData->Text = text;

    // The fixed record.
    TRecordFields f;
    bool hasRecord = true;
    if (version <= -11) {
        std::uint8_t r[ItemRecordSize];
        Stream.ReadBuffer(r, ItemRecordSize);
        f.State = GetU16(r, 0);
        const std::uint32_t combined = GetU32(r, 20);
        f.ItemFlags = combined & ItemFlagsMask;
        f.StaticFlags = combined & ~(ItemFlagsMask | DroppedFlagsMask);
        f.HasStaticFlags = true;
        f.Ex.ImageIndex = GetI32(r, 4);
        f.Ex.StateImageIndex = GetI32(r, 8);
        f.Ex.ImageIndex2 = GetI32(r, 12);
        f.Ex.StateImageIndex2 = GetI32(r, 16);
        f.Ex.Color = GetU32(r, 28);
        f.Ex.RowBkColor = GetU32(r, 32);
        f.Ex.BkColor = GetU32(r, 36);
        f.Ex.CheckBoxState = r[40];
        f.Ex.CheckBoxType = r[41];
        f.FixedHeight = GetI32(r, 44);
        f.Ex.BorderStyle = TWgItemBorderStyle(r[48]);
        f.Ex.IndentAdjust = GetI32(r, 52);
        f.Ex.StrikedLineColor = GetU32(r, 56);
        f.Tag = GetI32(r, 60);
        f.HasTag = true;
        if (version < -12) {
            f.Ex.OverlayIndex = std::int16_t(GetU16(r, 64));
            f.Ex.OverlayIndex2 = std::int16_t(GetU16(r, 66));
        }
    } else if (version <= -10) {
        static const int o60[] = {0,  4,  8,  12, 16, 20, 24, 28, 29, 30, 31,
                                  32, 33, -1, -1, 44, 45, 47, 48, 52, 56, 57};
        ReadOldRecord(Stream, 60, o60, f);
    } else if (version <= -7) {
        static const int o52[] = {0,  4,  8,  12, 16, -1, 20, 24, 25, 26, 27,
                                  28, 29, 32, 36, 40, 41, 42, 43, 44, 48, 49};
        ReadOldRecord(Stream, 52, o52, f);
    } else {
        hasRecord = false;
    }

    if (hasRecord) {
        const bool wasHidden = Hidden();
        if (TWgTreeItemStaticDataEx* ex = FStaticDataEx) {
            const std::uint32_t flags =
                f.HasStaticFlags ? f.StaticFlags : (ex->StaticFlags & ~f.StaticHeld) | f.StaticSet;
            const std::uint16_t state = f.State;
            *ex = f.Ex;
            ex->StaticFlags = flags;
            ex->State = state;
        }
        StoreFlags(f.ItemFlags | ((f.State & stExpanded) ? std::uint32_t(ifExpanded) : 0u));
        if (f.HasTag) FTag = f.Tag;
        FHeightWord = (std::uint32_t(f.FixedHeight & 0xFFFF) << 16) | 0xFFFF;
        if (Hidden() != wasHidden) tree->AdjustHiddenCount(Hidden() ? 1 : -1);
    }
    // The root always counts as expanded and enabled.
    if (!FParent) StoreFlags(FFlags | RootForcedFlags);
    if (FFlags & ifIsHTML) {
        FFlags &= ~ifIsHTML;
        SetIsHTML(true);
    }
    // Counted as a deletion will count it off (the markup was counted by
    // the setter above).
    if (!OwnerHeight() || (Multiline() && tree->AdjustMultilineHeight()))
        tree->AdjustTotalVarHeightCount(1);

    // Hint and column texts.
    const bool wideHint = version <= -12;
    WideString hint;
    std::int32_t columns;
    if (version == 0) {
        hint = ReadText(Stream, false);
        columns = ReadCount(Stream, MinCountedBytes);
    } else {
        // -1 stands for "a hint follows", then comes the real count.
        const std::int64_t at = Stream.Position();
        columns = Stream.ReadInt32();
        if (columns == -1) {
            hint = ReadText(Stream, wideHint);
            columns = ReadCount(Stream, MinCountedBytes);
        } else {
            Stream.SetPosition(at);
            columns = ReadCount(Stream, MinCountedBytes);
        }
    }
    SetHint(hint);
    if (columns > 0 || ColumnTextCount() > 0) {
        TWgWideStringList& list = ColumnText();
        auto event = std::move(list.OnChange);
        list.OnChange = nullptr;
        try {
            list.Clear();
            for (std::int32_t i = 0; i < columns; ++i)
                list.Add(ReadText(Stream, version <= -14));
        } catch (...) {
            list.OnChange = std::move(event);
            throw;
        }
        list.OnChange = std::move(event);
    }
    if (IsHTML() && tree->View() && !tree->Loading()) ParseMarkup();

    // Styles.
    if (version != 0 && Stream.ReadByte() != 0) {
        const bool custom = version == -1 ? false : Stream.ReadByte() != 0;
        TWgCellStyle scratch;
        auto readOne = [&](TWgCellStyle* Style) {
            if (!Style) Style = &scratch;
            if (custom) {
                if (tree->OnCellStyleLoad) tree->OnCellStyleLoad(*tree, Stream, Style);
            } else {
                ReadStyle(Stream, *Style);
            }
        };
        readOne(GetMainStyle());
        if (FStaticData && FStaticData->Extra && FStaticData->Extra->Styles)
            FStaticData->Extra->Styles->clear();
        // A custom style is whatever the handler reads; without one nothing
        // is read, and a count of such entries is no reason to make any.
        const std::int32_t styles =
            ReadCount(Stream, custom ? 1 : StyleRecordSize + MinCountedBytes);
        for (std::int32_t i = 0; i < styles; ++i)
            readOne(AddStyle());
    }
    if (tree->OnItemLoad) tree->OnItemLoad(*tree, Stream, this);

    // Children, appended one at a time.
    const std::int32_t children = ReadCount(Stream, MinItemBytes);
    if (children > 0 && tree->FReadDepth >= MaxReadDepth)
        throw EReadError(RtlMessages::SReadError); // nested too deep to be a real tree
    TWgTreeItems& items = tree->Items();
    ++tree->FReadDepth;
    try {
        for (std::int32_t i = 0; i < children; ++i) {
            TWgTreeItem* child = items.CreateItem();
            {
                TWgTreeLock lock(*tree);
                AddChild(child);
                items.AfterAdd(this);
            }
            child->ReadData(Stream);
        }
    } catch (...) {
        --tree->FReadDepth;
        throw;
    }
    --tree->FReadDepth;
}

// ---- the collection

void TWgTreeItems::SaveToStream(TStream& Stream) {
    // The focus bit is not part of the stored form.
    TWgTreeItem* focused = FOwner->FocusedItem();
    if (focused) focused->FFlags &= ~ifFocused;
    try {
        FRoot->WriteData(Stream);
    } catch (...) {
        if (focused) focused->FFlags |= ifFocused;
        throw;
    }
    if (focused) focused->FFlags |= ifFocused;
}

void TWgTreeItems::LoadFromStream(TStream& Stream) {
    TWgTreeLock lock(*FOwner);
    while (FRoot->HasChildren())
        FRoot->DeleteChild(FRoot->GetLastChild());
    // The new rows are shown from the first; the old top index means nothing to them.
    constexpr std::uint32_t marks =
        tsmClearVis | tsmUpdated | tsmVisUpdated | tsmClearAll | tsmTopIndex;
    try {
        FRoot->ReadData(Stream);
    } catch (...) {
        FOwner->MarkStale(marks);
        throw;
    }
    FOwner->MarkStale(marks);
}
