#pragma once
// The live preview's highlighter: runs a definition over text and yields the
// coloured stretches. The companion editor's own colouring is not known, so
// these are our rules, kept simple so that a definition's author can predict
// the result.
//
// A word character below is a letter, a digit, "_" or any character above
// 127 but for the Unicode spaces.
//
// Reading the definition
// - The options are read by name. Values are trimmed. A yes/no option is on
//   when its value is "yes" or "y" in any case, as the reader takes it.
// - Markers (comment starts and ends, line comments, block starts and ends,
//   NoTagsStart/NoTagsEnd) compare exactly when CaseSensitive is on and
//   ignoring case otherwise. A marker that begins with a word character
//   matches only where no word character stands before it, and one that ends
//   with one only where none follows ("REM" is not found in "REMARK").
// - Every character of String opens a string and every character of Char a
//   character literal; a character in both is a string delimiter.
// - A keyword is the text before the item's "|" (the whole line as the file
//   gave it). Keyword groups count from 1 in the order of the Keywords menus;
//   a word listed in two groups takes the first. Tag groups alike.
//
// Scanning, left to right; where several constructs could start at one
// place, the longest marker wins; at equal length the order is: block
// comment A, block comment B, line comment A, line comment B, the block
// records in their order, string, char.
// - Line comment: from the marker to the end of its line.
// - Block comment: from the start marker through the first end marker after
//   it, across lines; without an end in the text, to the end of the text.
// - Block record: from BlockStart through the first BlockEnd. With
//   BlockOnLine "Yes" it stops at the line end when no end comes before.
//   A block shows as a string when BlockAsString is "Yes", as a block
//   otherwise. A block record without a start is ignored.
// - An empty end marker (comment or block) ends the construct at its line end.
// - String and char: to the next closing delimiter, the same character that
//   opened it. The Escape character takes the character after it into the
//   literal; when Escape is the delimiter itself, a doubled delimiter stands
//   for one ('it''s'). With StringOnLine "Yes" a literal ends at its line end
//   at the latest (an escape does not carry it over); otherwise it runs on
//   to the end of the text when never closed.
// - Nothing is found inside comments, strings and blocks except URLs.
// - Tag: "<" or "</" followed by a name listed in a tag group; the name is
//   the tag stretch ("<" and "/" are symbols if listed in Symbols). A name is
//   a run of word characters and the characters used in the tag lists.
//   Compared exactly when TagsCaseSensitive is "Yes", ignoring case
//   otherwise. From NoTagsStart (found where a construct could start) to the
//   next NoTagsEnd no tags are found; the rest is coloured as usual there.
// - Word: a run of word characters and the characters that the keywords use
//   which are no symbol, string or char delimiter and no space ("#" for
//   "#include").
//   A word listed in a keyword group is a keyword of that group; case as
//   CaseSensitive says.
// - Where no word character stands just before, in this order:
//   URL when HighlightUrl is "Yes": "http://", "https://", "ftp://",
//     "file://", "mailto:" or "www." (any case) and what follows up to a
//     space, a quote, "<", ">" or "`", less trailing ".,;:!?)]}".
//   Hex number: HexIdentifier (any case) followed by at least one hex digit;
//     the run of hex digits is the number.
//   Number: a run of Numbers characters that begins with a digit 0-9, or
//     with one that is no word character followed by a digit (".5"); the
//     digits count only when Numbers lists them.
//   The text after a number is scanned anew ("10px": "px" may be a keyword).
// - Symbol: each character listed in Symbols; a run of them is one stretch.
// - Everything else is plain text and yields no stretch.
//
// The scan is linear in the text: each character is looked at a bounded
// number of times; keywords and tags are found by hashing.

#include "base/Types.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class TWgWideStringList;
struct TSyntaxDocument;

enum THighlightKind : std::uint8_t {
    hkComment,
    hkString,
    hkChar,
    hkNumber,
    hkSymbol,
    hkBlock,
    hkKeyword,
    hkTag,
    hkUrl
};

// One coloured stretch of the text.
struct THighlightSpan {
    std::size_t Offset = 0; // 0-based, in UTF-16 code units of the text
    std::size_t Length = 0;
    THighlightKind Kind = hkComment;
    // Keywords and tags: the group from 1. Blocks (also those shown as
    // strings): the block record from 1. Comments: 1 for the A markers, 2
    // for the B markers. Otherwise 0.
    int Group = 0;

    std::size_t End() const { return Offset + Length; }
    bool operator==(const THighlightSpan&) const = default;
};

// The style class of a stretch: "comment", "string", "char", "number",
// "symbol", "block", "keyword-N", "tag-N" or "url". A block record shown as
// a string is a "string".
std::string HighlightClassName(const THighlightSpan& Span);

// A definition compiled for highlighting: options read, markers sorted,
// keyword and tag tables built. Building costs about as much as reading the
// keyword lists; highlighting does not allocate beyond the span list.
class THighlightRules {
public:
    explicit THighlightRules(const TSyntaxDocument& Document);
    ~THighlightRules();
    THighlightRules(const THighlightRules&) = delete;
    THighlightRules& operator=(const THighlightRules&) = delete;

    // Whether Document still defines these rules: the options they read,
    // the block records and every keyword and tag in order. Comparing is
    // cheaper than building and allocates nothing.
    bool SameDefinition(const TSyntaxDocument& Document) const;

    // Replaces Spans by the stretches of Text, in order, never overlapping.
    void Highlight(std::u16string_view Text, std::vector<THighlightSpan>& Spans) const;
    std::vector<THighlightSpan> Highlight(std::u16string_view Text) const;

    int KeywordGroupCount() const;
    int TagGroupCount() const;

private:
    struct TData;
    friend class THighlightScan;
    std::unique_ptr<TData> F;
};

// Highlights with the rules of the last definition it saw, building new
// rules only when the definition differs.
class THighlighter {
public:
    THighlighter();
    ~THighlighter();

    const THighlightRules& Rules(const TSyntaxDocument& Document);
    void Highlight(const TSyntaxDocument& Document, std::u16string_view Text,
                   std::vector<THighlightSpan>& Spans);
    // How many times rules were built.
    int Builds() const { return FBuilds; }

private:
    std::unique_ptr<THighlightRules> FRules;
    int FBuilds = 0;
};

// The lines of a list as one text, joined by "\n": the form in which a
// sample or a text file is highlighted.
WideString JoinLines(const TWgWideStringList& Lines);

// Spans cut at the line ends of Text ("\r\n", "\r" or "\n"): each piece lies
// within one line and no piece holds a line break, for painters and writers
// that work a line at a time.
std::vector<THighlightSpan> SplitAtLineEnds(std::u16string_view Text,
                                            const std::vector<THighlightSpan>& Spans);
