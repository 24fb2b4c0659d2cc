#pragma once
// TKVSyntax: the reader and writer of .syx syntax definition files. It keeps
// no document state; both operations work on eleven containers that the
// caller owns, in this order: Header, Options, Blocks, Folds, AutoHint,
// Sample, Keywords, Tags, AutoComplete, TagComplete, UserMenu.

#include "document/KVWideStrings.h"
#include "document/MenuList.h"
#include "document/TextLines.h"

#include <array>

// The number of fixed entries of the Options container.
inline constexpr int SyntaxOptionCount = 30;
// Item kind 20: no kind (letter "-"), the kind of keywords and tags.
inline constexpr int KindNone = 20;

// The key of each Options index as the writer spells it.
extern const std::array<const char*, SyntaxOptionCount> SyntaxOptionKeys;

class TKVSyntax {
public:
    // Fills the containers from the file. The caller hands Options with its
    // 30 entries and the five menu lists empty. A file that cannot be opened
    // raises the file stream's error with every container untouched.
    void LoadSyntaxFile(TWgWideStringList& Header, TWgWideStringList& Options,
                        TWgWideStringList& Blocks, TWgWideStringList& Folds,
                        TWgWideStringList& AutoHint, TWgWideStringList& Sample, TMenuList& Keywords,
                        TMenuList& Tags, TMenuList& AutoComplete, TMenuList& TagComplete,
                        TMenuList& UserMenu, const AnsiString& FileName,
                        TTextEncoding* DetectedEncoding = nullptr);

    // Writes the containers as narrow text in the system code page. The text
    // is built in memory first, so a file that cannot be created stays as it was.
    void SaveSyntaxFile(const TWgWideStringList& Header, const TWgWideStringList& Options,
                        const TWgWideStringList& Blocks, const TWgWideStringList& Folds,
                        const TWgWideStringList& AutoHint, const TWgWideStringList& Sample,
                        const TMenuList& Keywords, const TMenuList& Tags,
                        const TMenuList& AutoComplete, const TMenuList& TagComplete,
                        const TMenuList& UserMenu, const AnsiString& FileName);

    // The same two walks on lines and on text already in memory.
    void LoadSyntaxLines(const TLineSource& Lines, TWgWideStringList& Header,
                         TWgWideStringList& Options, TWgWideStringList& Blocks,
                         TWgWideStringList& Folds, TWgWideStringList& AutoHint,
                         TWgWideStringList& Sample, TMenuList& Keywords, TMenuList& Tags,
                         TMenuList& AutoComplete, TMenuList& TagComplete, TMenuList& UserMenu);
    AnsiString SaveSyntaxText(const TWgWideStringList& Header, const TWgWideStringList& Options,
                              const TWgWideStringList& Blocks, const TWgWideStringList& Folds,
                              const TWgWideStringList& AutoHint, const TWgWideStringList& Sample,
                              const TMenuList& Keywords, const TMenuList& Tags,
                              const TMenuList& AutoComplete, const TMenuList& TagComplete,
                              const TMenuList& UserMenu);
};

// The reader's line helpers: pure functions of one line.
WideString StripLineComment(std::u16string_view S);
WideString GetOptionKey(std::u16string_view S);
WideString GetOptionValue(std::u16string_view S);
WideString GetKeywordValue(std::u16string_view S);
WideString GetHintText(std::u16string_view S);
WideString GetEntryName(std::u16string_view S);
WideString GetEntryText(std::u16string_view S);
WideChar GetEntryKind(std::u16string_view S); // 0 when the line names no letter
WideString GetMenuTitle(std::u16string_view S);
int KindLetterToIndex(WideChar Letter);
WideChar KindIndexToLetter(int Index);
