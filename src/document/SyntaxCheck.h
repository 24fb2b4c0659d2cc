#pragma once
// The definition doctor: what a definition's reader passes over, what its
// writer changes, and what the companion editor cannot make sense of. The
// format forgives silently; these checks say it aloud, with the line.
//
// Checks, by id (SyntaxChecks lists them with their severity):
//   dropped-line          a line inside a section that the reader passes over
//   dropped-comment       comments, which no save keeps (once a file)
//   ignored-value         a yes/no value that is neither yes nor no
//   duplicate-keyword     a keyword or tag listed twice
//   duplicate-menu        two groups or menus of one name
//   encoding-loss         characters the system code page lacks
//   save-drift            a value that reads back otherwise after a save
//   empty-group           a group or menu without items
//   keyword-is-delimiter  a keyword or tag equal to a delimiter

#include "document/SyntaxDocument.h"

#include <set>
#include <string>
#include <vector>

enum TCheckSeverity : std::uint8_t { csWarning, csError };

struct TSyntaxCheckInfo {
    const char* Id;
    TCheckSeverity Severity;
    const char* Summary;
};
extern const std::array<TSyntaxCheckInfo, 9> SyntaxChecks;

struct TSyntaxFinding {
    int Line = 0;   // 1-based line of the checked text; 0 for none
    int Column = 0; // 1-based; 0 when the whole line is meant
    TCheckSeverity Severity = csWarning;
    std::string Check;
    WideString Message;
    // Where the finding lives in the document: the container, the entry
    // or menu, the item of a menu (-1 where not meant).
    TSyntaxPart Part = spNone;
    int Index = -1;
    int Item = -1;

    bool operator==(const TSyntaxFinding&) const = default;
};

class TSyntaxChecker {
public:
    // Check ids that are not run.
    std::set<std::string> Disabled;

    // The lines of a definition file as they were read (decoded text).
    std::vector<TSyntaxFinding> CheckLines(const TLineSource& Lines) const;
    // A definition in memory, such as the editor's: the lines are those a
    // save would write, and save-drift compares Document with what those
    // lines read back as.
    std::vector<TSyntaxFinding> CheckDocument(const TSyntaxDocument& Document) const;

private:
    std::vector<TSyntaxFinding> Run(const TLineSource& Lines, const TSyntaxDocument* Before) const;
};

// The name of a part as a user reads it: "Options", "Keywords" ...
const char* SyntaxPartName(TSyntaxPart Part);
