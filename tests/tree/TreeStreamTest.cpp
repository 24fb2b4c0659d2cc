#include "StreamTestUtil.h"
#include "TreeTestUtil.h"

#include "tree/WgTreeErrors.h"

namespace {

std::vector<std::uint8_t> Save(TWgTreeModel& Tree) {
    TMemoryStream s;
    Tree.Items().SaveToStream(s);
    return s.Data();
}

void Load(TWgTreeModel& Tree, const std::vector<std::uint8_t>& Bytes) {
    TMemoryStream s(Bytes);
    Tree.Items().LoadFromStream(s);
}

// A tree with everything the entry holds.
void BuildRichTree(TWgTreeModel& Tree) {
    auto& items = Tree.Items();
    TWgTreeItem* a = items.AddChild(nullptr, u"Alpha \u00e9\u4e2d");
    a->SetTag(-5);
    a->SetHint(u"a hint");
    a->ColumnText().Add(u"c0");
    a->ColumnText().Add(u"");
    a->ColumnText().Add(u"\u0416");
    a->SetUseStyles(true);
    TWgCellStyle* main = a->GetMainStyle();
    main->SetTextColor(0x00112233);
    main->SetFontName("Courier");
    main->SetFontStyles(fsBold | fsItalic);
    TWgCellStyle* column = a->AddStyle();
    column->SetCellType(sftEnum);
    column->SetTag(99);
    column->SetPicture(0x1234);
    a->Expand(false);
    TWgTreeItem* b = items.AddChild(a, u"<html><b>bold</b>");
    b->SetIsHTML(true);
    b->SetCheckBoxType(ectThreeState);
    b->SetCheckBoxState(cbGrayed);
    b->SetImageIndex(4);
    b->StaticDataEx()->OverlayIndex = 3;
    b->StaticDataEx()->OverlayIndex2 = -1;
    b->StaticDataEx()->IndentAdjust = -7;
    b->SetFixedHeight(40);
    items.AddChild(b, u"deep");
    TWgTreeItem* c = items.AddChild(nullptr, u"Gamma");
    c->SetMultiline(true);
    c->SetWholeLine(true);
}

} // namespace

TEST(TreeStream, RoundTripKeepsEveryStoredValue) {
    TWgTreeModel tree;
    BuildRichTree(tree);
    const auto bytes = Save(tree);

    TWgTreeModel copy;
    Load(copy, bytes);
    CheckTreeInvariants(copy);
    ASSERT_EQ(Texts(copy), Texts(tree));
    EXPECT_EQ(Save(copy), bytes);

    TWgTreeItem* a = copy.Items().Item(0);
    EXPECT_EQ(a->Text(), u"Alpha \u00e9\u4e2d");
    EXPECT_EQ(a->Tag(), -5);
    EXPECT_EQ(a->Hint(), u"a hint");
    ASSERT_EQ(a->ColumnTextCount(), 3);
    EXPECT_EQ(a->ColumnTextAt(2), u"\u0416");
    EXPECT_TRUE(a->Expanded());
    EXPECT_EQ(a->State(), stExpanded);
    EXPECT_TRUE(a->UseStyles());
    EXPECT_EQ(a->GetMainStyle()->TextColor(), 0x00112233u);
    EXPECT_EQ(a->GetMainStyle()->FontName(), "Courier");
    EXPECT_EQ(a->GetMainStyle()->FontStyles(), fsBold | fsItalic);
    ASSERT_EQ(a->StylesCount(), 1);
    EXPECT_EQ(a->GetStyles(0)->CellType(), sftEnum);
    EXPECT_EQ(a->GetStyles(0)->Tag(), 99);
    EXPECT_EQ(a->GetStyles(0)->Picture(), 0x1234u); // a number, never a reference

    TWgTreeItem* b = copy.Items().Item(1);
    EXPECT_TRUE(b->IsHTML());
    EXPECT_EQ(b->CheckBoxType(), ectThreeState);
    EXPECT_EQ(b->CheckBoxState(), cbGrayed);
    EXPECT_EQ(b->ImageIndex(), 4);
    EXPECT_EQ(b->StaticDataEx()->OverlayIndex, 3);
    EXPECT_EQ(b->StaticDataEx()->OverlayIndex2, -1);
    EXPECT_EQ(b->StaticDataEx()->IndentAdjust, -7);
    EXPECT_EQ(b->StaticDataEx()->BorderSpaceColor, 0xFF000005u);
    EXPECT_EQ(b->HeightWord(), 0x0028FFFFu);
    EXPECT_EQ(b->Level(), 1);
    TWgTreeItem* c = copy.Items().Item(3);
    EXPECT_TRUE(c->Multiline());
    EXPECT_TRUE(c->WholeLine());
    EXPECT_EQ(copy.TotalVarHeightCount(), tree.TotalVarHeightCount());
    copy.Items().Clear();
    EXPECT_EQ(copy.TotalVarHeightCount(), 0);
}

TEST(TreeStream, EntryLayoutOfARow) {
    TWgTreeModel tree;
    TWgTreeItem* row = tree.Items().AddChild(nullptr, u"ab");
    row->SetTag(8);
    row->Expand(false);
    row->SetFocused(true);
    const auto bytes = Save(tree);
    // Root: version, empty text, record, -1, empty hint, no columns, no styles, one child.
    ASSERT_EQ(bytes.size(), 153u + 153u + 4u);
    auto i32 = [&](std::size_t at) {
        return std::uint32_t(bytes[at] | bytes[at + 1] << 8 | bytes[at + 2] << 16 |
                             std::uint32_t(bytes[at + 3]) << 24);
    };
    EXPECT_EQ(i32(0), 0xFFFFFFF2u);
    EXPECT_EQ(i32(8 + 20), 0x02108000u); // root flags
    EXPECT_EQ(i32(8 + 4), 0u);           // no flag block: images are 0
    EXPECT_EQ(i32(136), 0xFFFFFFFFu);    // marker
    EXPECT_EQ(i32(140), 0u);             // a hint of length 0 is still written
    EXPECT_EQ(i32(149), 1u);             // one child
    const std::size_t r = 153 + 4 + 8;   // the row's record, after "ab"
    EXPECT_EQ(bytes[r], 128);            // State: expanded
    EXPECT_EQ(i32(r + 20), 0x02168683u); // written expanded, the focus left out
    EXPECT_EQ(i32(r + 4), 0xFFFFFFFFu);
    EXPECT_EQ(i32(r + 60), 8u);
    EXPECT_EQ(i32(r + 64), 0xFFFFFFFFu); // both overlays -1
    EXPECT_TRUE(row->Focused());         // restored after writing
}

TEST(TreeStream, HooksWriteAndReadTheirOwnBytes) {
    TWgTreeModel tree;
    TWgTreeItem* item = tree.Items().AddChild(nullptr, u"x");
    item->SetUseStyles(true);
    item->AddStyle();
    tree.OnItemSave = [](TWgTreeModel&, TStream& s, TWgTreeItem* i) {
        s.WriteInt32(i->Tag() + 1000);
    };
    tree.OnCellStyleSave = [](TWgTreeModel&, TStream& s, TWgCellStyle*) { s.WriteByte(0xAB); };
    const auto bytes = Save(tree);

    TWgTreeModel copy;
    std::vector<std::int32_t> seen;
    int styles = 0;
    copy.OnItemLoad = [&](TWgTreeModel&, TStream& s, TWgTreeItem*) {
        seen.push_back(s.ReadInt32());
    };
    copy.OnCellStyleLoad = [&](TWgTreeModel&, TStream& s, TWgCellStyle*) {
        EXPECT_EQ(s.ReadByte(), 0xAB);
        ++styles;
    };
    Load(copy, bytes);
    EXPECT_EQ(seen, (std::vector<std::int32_t>{1000, 1000}));
    EXPECT_EQ(styles, 2);
    EXPECT_EQ(copy.Items().Item(0)->StylesCount(), 1);
}

TEST(TreeStream, TruncatedBlobsFailWithTheReadErrorAndKeepWhatWasRead) {
    TWgTreeModel tree;
    BuildRichTree(tree);
    const auto bytes = Save(tree);
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        TWgTreeModel copy;
        std::vector<std::uint8_t> part(bytes.begin(), bytes.begin() + std::ptrdiff_t(n));
        try {
            Load(copy, part);
            ADD_FAILURE() << "no error at length " << n;
        } catch (const EReadError& e) {
            EXPECT_STREQ(e.what(), "Stream read error") << n;
        }
        CheckTreeInvariants(copy);
        if (n == bytes.size() - 1) {
            EXPECT_EQ(copy.Items().Count(), 4); // the last row was created before it failed
        }
    }
}

TEST(TreeStream, BadCountsAreRejected) {
    // A negative text count is an invalid string header.
    TMemoryStream neg = TBytes().I32(-14).I32(-3).Stream();
    TWgTreeModel tree;
    try {
        tree.Items().LoadFromStream(neg);
        FAIL();
    } catch (const EReadError& e) {
        EXPECT_STREQ(e.what(), "Invalid string header read from the stream");
    }
    // A huge count is refused before anything is allocated.
    TMemoryStream huge = TBytes().I32(-14).I32(0x7FFFFFFF).Stream();
    EXPECT_THROW(tree.Items().LoadFromStream(huge), EReadError);
    TMemoryStream children = TBytes().I32(-14).I32(0).Record(128, {}).I32(0).U8(0).I32(-2).Stream();
    EXPECT_THROW(tree.Items().LoadFromStream(children), EReadError);
    // Custom styles without a handler to read them take no bytes: a count
    // of them in a blob of a few bytes once made two thousand million.
    TMemoryStream styles =
        TBytes().I32(-14).I32(0).Record(128, {}).I32(0).U8(1).U8(1).I32(0x7FFFFFFF).Stream();
    EXPECT_THROW(tree.Items().LoadFromStream(styles), EReadError);
    TMemoryStream columns = TBytes().I32(-14).I32(0).Record(128, {}).I32(0x7FFFFFF0).Stream();
    EXPECT_THROW(tree.Items().LoadFromStream(columns), EReadError);
    EXPECT_EQ(tree.Items().Count(), 0);
}

TEST(TreeStream, OlderItemVersionsRead) {
    // Version 0 root with one version -11 child, one -10 child, one -7
    // child (no hint step) and one -1 child with styles.
    TBytes b;
    b.I32(0).Ansi("").I32(0).I32(4); // root: text length 0, hint, no columns, children
    b.I32(-11).Ansi("eleven").Record(128,
                                     {{20, 0x0014C683, 4}, {0, 0x80, 2}, {60, 42, 4}, {4, 3, 4}});
    b.I32(-1).Ansi("old hint").I32(1).Ansi("col").U8(0).I32(0);
    b.I32(-10).Ansi("ten").Record(60, {{0, 0x80, 2},
                                       {4, 7, 4},
                                       {20, 0x55, 4},
                                       {24, 0x66, 4},
                                       {28, 1, 1},
                                       {31, 1, 1},
                                       {33, 2, 1},
                                       {44, 1, 1},
                                       {47, 1, 1},
                                       {48, 1, 1},
                                       {52, 25, 4}});
    b.U8(1).I32(0).U8(0).I32(0);
    b.I32(-7).Ansi("seven").Record(
        52, {{4, 9, 4}, {12, 1, 1}, {32, 11, 4}, {40, 1, 1}, {41, 1, 1}, {43, 1, 1}, {44, 30, 4}});
    b.U8(0).I32(0).U8(0).I32(0);
    b.I32(-1).Ansi("one").I32(0).U8(1);
    b.Record(36, {{8, 0x0000FF, 4}, {20, 8, 1}}).Ansi("Arial").I32(0).I32(0);
    TMemoryStream s = b.Stream();
    TWgTreeModel tree;
    tree.Items().LoadFromStream(s);
    EXPECT_EQ(s.Position(), s.Size());
    ASSERT_EQ(Texts(tree), "eleven ten seven one");
    CheckTreeInvariants(tree);
    EXPECT_EQ(tree.Items().Root()->Flags() & 0x02008000u, 0x02008000u);

    TWgTreeItem* eleven = tree.Items().Item(0);
    EXPECT_EQ(eleven->Tag(), 42);
    EXPECT_EQ(eleven->ImageIndex(), 3);
    EXPECT_TRUE(eleven->Expanded());
    EXPECT_TRUE(eleven->Hidden());
    EXPECT_EQ(eleven->Flags(), 0x0210C000u);
    EXPECT_EQ(eleven->StaticFlags(), 0x00040683u);
    EXPECT_EQ(eleven->StaticDataEx()->OverlayIndex, -1); // not stored before -13
    EXPECT_EQ(eleven->Hint(), u"old hint");
    EXPECT_EQ(eleven->ColumnTextAt(0), u"col");
    EXPECT_EQ(tree.HiddenCount(), 2); // eleven and seven

    TWgTreeItem* ten = tree.Items().Item(1);
    EXPECT_TRUE(ten->Expanded());
    EXPECT_EQ(ten->ImageIndex(), 7);
    EXPECT_EQ(ten->StaticDataEx()->RowBkColor, 0x55u);
    EXPECT_EQ(ten->StaticDataEx()->BkColor, 0x66u);
    EXPECT_EQ(ten->CheckBoxState(), 1);
    EXPECT_EQ(ten->CheckBoxType(), 2);
    EXPECT_EQ(ten->Flags(), std::uint32_t(ifEnabled | ifMultiline | ifOwnerHeight | ifExpanded));
    EXPECT_TRUE(ten->HasStaticFlag(sfParentColors | sfUseBkColor));
    EXPECT_FALSE(ten->HasStaticFlag(sfParentStyle));
    EXPECT_EQ(ten->FixedHeight(), 25);

    TWgTreeItem* seven = tree.Items().Item(2);
    EXPECT_EQ(seven->ImageIndex(), 9);
    EXPECT_EQ(seven->StaticDataEx()->ImageIndex2, 11);
    EXPECT_TRUE(seven->HasStaticFlag(sfForceButtons));
    EXPECT_EQ(seven->Flags(), std::uint32_t(ifEnabled | ifHidden | ifOwnerHeight));
    EXPECT_EQ(seven->FixedHeight(), 30);

    TWgTreeItem* one = tree.Items().Item(3);
    EXPECT_EQ(one->GetMainStyle()->TextColor(), 0x0000FFu);
    EXPECT_EQ(one->GetMainStyle()->CellType(), sftEnum);
    EXPECT_EQ(one->GetMainStyle()->FontName(), "Arial");
}

TEST(TreeStream, NestingDeeperThanAThousandLevelsIsRefused) {
    for (int depth : {1000, 1001}) {
        TWgTreeModel tree;
        TWgTreeItem* item = nullptr;
        for (int i = 0; i < depth; ++i)
            item = tree.Items().AddChild(item, u"n");
        const auto bytes = Save(tree);
        TWgTreeModel copy;
        if (depth == 1000) {
            Load(copy, bytes);
            EXPECT_EQ(copy.Items().Count(), 1000);
        } else {
            EXPECT_THROW(Load(copy, bytes), EReadError);
            EXPECT_EQ(copy.Items().Count(), 1000); // what was read stays
        }
    }
}
