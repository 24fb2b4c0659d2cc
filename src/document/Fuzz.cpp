#include "base/Fuzz.h"

#include "base/Exceptions.h"
#include "document/KVWideStrings.h"
#include "document/SyntaxDocument.h"
#include "document/TextLines.h"

#include <vector>

int FuzzSyntaxFile(const std::uint8_t* Data, std::size_t Size) {
    try {
        // The text-file list: encoding detection, then its writer in the
        // encoding it found.
        {
            TKVWideStringList list;
            TMemoryStream in(std::vector<std::uint8_t>(Data, Data + Size));
            list.LoadFromStream(in);
            list.SetWriteBOM(true);
            TMemoryStream out;
            list.SaveToStream(out);
        }
        // The definition reader: what TKVSyntax::LoadSyntaxFile does after
        // opening the file, on the same bytes in memory.
        TSyntaxDocument document;
        TTextLines lines;
        TTextEncoding encoding = teAnsi;
        TMemoryStream in(std::vector<std::uint8_t>(Data, Data + Size));
        lines.Load(in, encoding);
        TKVSyntax().LoadSyntaxLines(lines, *document.Header, *document.Options, *document.Blocks,
                                    *document.Folds, *document.AutoHint, *document.Sample,
                                    *document.Keywords, *document.Tags, *document.AutoComplete,
                                    *document.TagComplete, *document.UserMenu);
        document.SaveText();
    } catch (const Exception&) {
        return 0;
    }
    return 1;
}
