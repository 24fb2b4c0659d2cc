#pragma once
// TKVSyntax: the reader and writer of .syx syntax definition files. It keeps
// no document state; both operations work on eleven containers that the
// caller owns, in this order: Header, Options, Blocks, Folds, AutoHint,
// Sample, Keywords, Tags, AutoComplete, TagComplete, UserMenu.

#include "document/KVWideStrings.h"
#include "document/MenuList.h"
#include "document/TextLines.h"

#include <array>
#include <cstdint>

// The number of fixed entries of the Options container.
inline constexpr int SyntaxOptionCount = 30;
// Item kind 20: no kind (letter "-"), the kind of keywords and tags.
inline constexpr int KindNone = 20;

// The key of each Options index as the writer spells it.
extern const std::array<const char*, SyntaxOptionCount> SyntaxOptionKeys;

// The containers of a definition, in the order above.
enum TSyntaxPart : std::uint8_t {
    spNone,
    spHeader,
    spOptions,
    spBlocks,
    spFolds,
    spAutoHint,
    spSample,
    spKeywords,
    spTags,
    spAutoComplete,
    spTagComplete,
    spUserMenu
};

// What the reader did with one line of the file.
enum TLineAction : std::uint8_t {
    laBlank,          // nothing left once the comment is stripped
    laOutside,        // text outside every section, passed over
    laSectionEntered, // a marker that switched the section
    laSectionEmpty,   // a marker without content: the previous section goes on
    laSectionEnd,     // [End] or [EndSample]
    laBanner,         // a banner line: Header entry Index
    laOptionStored,   // Options entry Index set
    laOptionNotYes,   // a yes/no option left as it was: the value is no "yes"
    laTupleStarted,   // BlockName or Fold_Id: a new record at entry Index
    laTupleField,     // a record field set: entry Index of Blocks or Folds
    laTupleNotYes,    // a yes/no record field left as it was
    laTupleMissing,   // a record key before any record: nothing stored
    laUnknownKey,     // an option line whose key the reader does not know
    laGroupStarted,   // a keyword or tag group: menu Index
    laItemAdded,      // a menu item: menu Index, item Item
    laMenuAdded,      // a completion menu: menu Index
    laHintAdded,      // AutoHint entry Index
    laSampleLine,     // Sample entry Index
    laSkipped         // a line inside a section that stores nothing (see the reason)
};

// Why a line inside a section stored nothing.
enum TSkipReason : std::uint8_t {
    skNone,
    skNoValue,     // a keyword, tag or hint line whose value is empty
    skNoEntryName, // an entry line "->" without a name
    skNoMenu,      // an entry line before any menu title
    skTooShort,    // a completion line shorter than three characters
    skNotEntry     // a user menu line that is no "->" entry
};

// One step of the reader: Line is the 0-based line index.
struct TLineStep {
    int Line = 0;
    TLineAction Action = laBlank;
    TSyntaxPart Part = spNone;
    int Index = -1; // entry or menu index in Part
    int Item = -1;  // item index within the menu
    TSkipReason Reason = skNone;
    bool CommentStripped = false; // the line had a comment that the reader cut off
    TSyntaxPart Within = spNone;  // the section the reader was in when the line began
    std::u16string_view Text;     // the line as read; valid only during the call
};

// Hears each step of a walk; a line may give more than one step (a group
// title and its first item, the user menu's own menu and an entry).
class TSyntaxWalkObserver {
public:
    virtual ~TSyntaxWalkObserver() = default;
    virtual void Step(const TLineStep& Step) = 0;
};

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

    // The same two walks on lines and on text already in memory. Observer,
    // when given, hears what the reader did with each line; the containers
    // come out the same either way.
    void LoadSyntaxLines(const TLineSource& Lines, TWgWideStringList& Header,
                         TWgWideStringList& Options, TWgWideStringList& Blocks,
                         TWgWideStringList& Folds, TWgWideStringList& AutoHint,
                         TWgWideStringList& Sample, TMenuList& Keywords, TMenuList& Tags,
                         TMenuList& AutoComplete, TMenuList& TagComplete, TMenuList& UserMenu,
                         TSyntaxWalkObserver* Observer = nullptr);
    AnsiString SaveSyntaxText(const TWgWideStringList& Header, const TWgWideStringList& Options,
                              const TWgWideStringList& Blocks, const TWgWideStringList& Folds,
                              const TWgWideStringList& AutoHint, const TWgWideStringList& Sample,
                              const TMenuList& Keywords, const TMenuList& Tags,
                              const TMenuList& AutoComplete, const TMenuList& TagComplete,
                              const TMenuList& UserMenu);
    // The lines a save writes, before they are narrowed to the code page.
    void SaveSyntaxWideLines(const TWgWideStringList& Header, const TWgWideStringList& Options,
                             const TWgWideStringList& Blocks, const TWgWideStringList& Folds,
                             const TWgWideStringList& AutoHint, const TWgWideStringList& Sample,
                             const TMenuList& Keywords, const TMenuList& Tags,
                             const TMenuList& AutoComplete, const TMenuList& TagComplete,
                             const TMenuList& UserMenu, TWgWideStringList& Lines);
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
