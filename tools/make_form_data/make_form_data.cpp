// Writes the binary form data of the main form's trees: the rows of the
// options table and the header sections of the three trees.
//
//   make_form_data [output folder]      (default: resources/forms)

#include "base/Exceptions.h"
#include "base/SafeFileStream.h"
#include "base/Streams.h"
#include "base/Strings.h"
#include "tree/WgHeaderModel.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"
#include "tree/WgTreeModel.h"

#include <cstdio>
#include <string>

namespace {

struct TRow {
    const char* Text;
    std::int32_t Tag; // the field type of the value: 1 text, 8 a fixed choice
};

const TRow OptionRows[] = {
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

struct TSectionDef {
    const char* Text;
    int Width;
    int MinWidth;
    TWgFieldType FieldType;
    bool Editable;
    bool AutoSize;
    std::uint32_t Tag;
};

struct THeaderDef {
    const char* FileName;
    TSectionDef Sections[2];
};

// Section tags only identify a section within its header.
const THeaderDef Headers[] = {
    {"WgTree1.HeaderSections.Data",
     {{"Option", 131, 80, sftText, false, true, 0x0177B1F0},
      {"Value", 100, 100, sftCustom, true, true, 0x0177B2A0}}},
    {"WgTree2.HeaderSections.Data",
     {{"Block Option", 100, 100, sftText, false, false, 0x0177C3B0},
      {"Value", 100, 100, sftCustom, true, false, 0x0177C460}}},
    {"WgTreeFold.HeaderSections.Data",
     {{"Fold Option", 100, 100, sftText, false, false, 0x0177D5C0},
      {"Value", 100, 100, sftCustom, true, false, 0x0177D670}}},
};

void Save(const std::string& Path, const TMemoryStream& Data) {
    SaveFileSafely(Path, [&](TStream& File) {
        File.WriteBuffer(Data.Data().data(), std::int64_t(Data.Data().size()));
    });
    std::printf("%s: %zu bytes\n", Path.c_str(), Data.Data().size());
}

} // namespace

int main(int argc, char** argv) {
    const std::string folder = argc > 1 ? argv[1] : "resources/forms";
    try {
        TWgTreeModel tree;
        for (const TRow& row : OptionRows) {
            TWgTreeItem* item = tree.Items().AddChild(nullptr, WideFromAscii(row.Text));
            item->SetTag(row.Tag);
        }
        // The first row carries one empty value cell in the form.
        tree.Items().Item(0)->ColumnText().Add(WideString());
        TMemoryStream items;
        tree.Items().SaveToStream(items);
        Save(folder + "/WgTree1.Items.Data", items);

        for (const THeaderDef& def : Headers) {
            TWgHeaderModel header;
            for (const TSectionDef& s : def.Sections) {
                TWgHeaderSection* section = header.Sections().AddSection();
                section->SetText(WideFromAscii(s.Text));
                section->SetMaxWidth(10000);
                section->SetMinWidth(s.MinWidth);
                section->SetWidth(s.Width);
                section->FieldType = s.FieldType;
                section->Editable = s.Editable;
                section->SetAutoSize(s.AutoSize);
                section->SetSectionTag(s.Tag);
            }
            TMemoryStream data;
            header.Sections().SaveToStream(data);
            Save(folder + "/" + def.FileName, data);
        }
    } catch (const Exception& e) {
        std::fprintf(stderr, "make_form_data: %s\n", e.what());
        return 1;
    }
    return 0;
}
