// The committed form blobs of the main form's trees read back to their last
// byte, hold the rows and columns the pages rely on, and rewrite unchanged.

#include "TreeTestUtil.h"

#include "base/Strings.h"
#include "tree/WgHeaderModel.h"

#include <fstream>
#include <iterator>
#include <random>

namespace {

std::vector<std::uint8_t> ReadBlob(const std::string& Name) {
    const std::string path = std::string(LEXSMITH_TEST_DATA) + "/../../resources/forms/" + Name;
    std::ifstream in(path, std::ios::binary);
    EXPECT_TRUE(in) << path;
    return std::vector<std::uint8_t>(std::istreambuf_iterator<char>(in), {});
}

} // namespace

TEST(FormData, OptionsTableRows) {
    const auto bytes = ReadBlob("WgTree1.Items.Data");
    ASSERT_EQ(bytes.size(), 5461u);
    TWgTreeModel tree;
    TMemoryStream in(bytes);
    tree.Items().LoadFromStream(in);
    EXPECT_EQ(in.Position(), in.Size());
    struct {
        const char* Text;
        int Tag;
    } rows[] = {
        {"LineCommentA", 1},
        {"LineCommentB", 1},
        {"CommentStartA", 1},
        {"CommentEndA", 1},
        {"CommentStartB", 1},
        {"CommentEndB", 1},
        {"Char", 1},
        {"String", 1},
        {"StringOnLine", 8},
        {"HexIdentifier", 1},
        {"Escape", 1},
        {"Symbols", 1},
        {"Numbers", 1},
        {"CaseSensitive", 8},
        {"TagsCaseSensitive", 8},
        {"NoTagsStart", 1},
        {"NoTagsEnd", 1},
        {"HighlightUrl", 8},
        {"BlockEsc", 1},
        {"CommentEsc", 1},
        {"FoldOpt_AsBegin", 1},
        {"FoldOpt_Separators", 1},
        {"FoldOpt_Sections", 1},
        {"FoldOpt_AutoIdExcludes", 1},
        {"FoldOpt_Case", 8},
        {"FoldOpt_FoldAllTags", 8},
        {"Rgn_Start", 1},
        {"Rgn_End", 1},
        {"Rgn_CommentStart", 1},
        {"AutoCompleteTags", 8},
    };
    ASSERT_EQ(tree.Items().Count(), 30);
    ASSERT_EQ(tree.Items().Root()->ChildrenCount(), 30);
    for (int i = 0; i < 30; ++i) {
        TWgTreeItem* row = tree.Items().Item(i);
        SCOPED_TRACE(rows[i].Text);
        EXPECT_EQ(row->Text(), WideFromAscii(rows[i].Text));
        EXPECT_EQ(row->Tag(), rows[i].Tag);
        EXPECT_EQ(row->Flags() | row->StaticFlags(), 0x00168683u);
        EXPECT_EQ(row->ChildrenCount(), 0);
        EXPECT_EQ(row->ColumnTextCount(), i == 0 ? 1 : 0);
        EXPECT_EQ(row->ImageIndex(), -1);
    }
    EXPECT_EQ(tree.Items().Item(0)->ColumnTextAt(0), u"");
    TMemoryStream out;
    tree.Items().SaveToStream(out);
    EXPECT_EQ(out.Data(), bytes);
}

TEST(FormData, HeaderSectionsOfTheThreeTrees) {
    struct {
        const char* File;
        std::size_t Size;
        const char16_t* Caption;
        int Width, MinWidth;
        bool AutoSize;
    } headers[] = {
        {"WgTree1.HeaderSections.Data", 335, u"Option", 131, 80, true},
        {"WgTreeFold.HeaderSections.Data", 340, u"Fold Option", 100, 100, false},
        {"WgTree2.HeaderSections.Data", 341, u"Block Option", 100, 100, false},
    };
    for (const auto& h : headers) {
        SCOPED_TRACE(h.File);
        const auto bytes = ReadBlob(h.File);
        ASSERT_EQ(bytes.size(), h.Size);
        TWgHeaderModel header;
        TMemoryStream in(bytes);
        header.Sections().LoadFromStream(in);
        EXPECT_EQ(in.Position(), in.Size());
        ASSERT_EQ(header.Sections().Count(), 2);
        TWgHeaderSection* option = header.Sections().GetSection(0);
        TWgHeaderSection* value = header.Sections().GetSection(1);
        EXPECT_EQ(option->Text(), h.Caption);
        EXPECT_EQ(option->Width(), h.Width);
        EXPECT_EQ(option->MinWidth(), h.MinWidth);
        EXPECT_EQ(option->MaxWidth(), 10000);
        EXPECT_EQ(option->FieldType, sftText);
        EXPECT_FALSE(option->Editable);
        EXPECT_EQ(option->AutoSize(), h.AutoSize);
        EXPECT_EQ(value->Text(), u"Value");
        EXPECT_EQ(value->Width(), 100);
        EXPECT_EQ(value->MinWidth(), 100);
        EXPECT_EQ(value->FieldType, sftCustom);
        EXPECT_TRUE(value->Editable);
        EXPECT_EQ(value->AutoSize(), h.AutoSize);
        EXPECT_NE(option->SectionTag(), value->SectionTag());
        EXPECT_EQ(header.Sections().SectionsOrder(),
                  u"i0:w" + IntToWide(h.Width) + u":vt,i1:w100:vt,");
        TMemoryStream out;
        header.Sections().SaveToStream(out);
        EXPECT_EQ(out.Data(), bytes);
    }
}

// Damaged copies of the blobs either read or fail with a message; the
// sanitizer build checks that nothing reads outside its buffers.
TEST(FormData, DamagedBlobsFailCleanly) {
    std::mt19937 rng(7);
    for (const char* file : {"WgTree1.Items.Data", "WgTree1.HeaderSections.Data"}) {
        const auto original = ReadBlob(file);
        ASSERT_FALSE(original.empty());
        for (int round = 0; round < 300; ++round) {
            auto bytes = original;
            for (int k = 0; k < 1 + int(rng() % 4); ++k)
                bytes[rng() % bytes.size()] = std::uint8_t(rng());
            TMemoryStream in(bytes);
            try {
                if (std::string(file).find("Items") != std::string::npos) {
                    TWgTreeModel tree;
                    tree.Items().LoadFromStream(in);
                    CheckTreeInvariants(tree);
                } else {
                    TWgHeaderModel header;
                    header.Sections().LoadFromStream(in);
                }
            } catch (const Exception&) {
            }
        }
    }
}
