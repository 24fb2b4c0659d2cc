#pragma once
// What differs between two definitions, section by section, for a person
// reviewing a change: options changed, records added, removed or changed,
// keywords and items added or removed per group or menu, and the hint,
// banner and sample lines added or removed.

#include "document/SyntaxDocument.h"

#include <vector>

struct TSyntaxDiffSection {
    const char* Name; // "Options", "Blocks", ...
    // One line a change: "+ ..." added, "- ..." removed, "~ ..." changed.
    std::vector<WideString> Changes;
};

// The sections that differ, in the file's order; empty when A and B are the same.
std::vector<TSyntaxDiffSection> DiffSyntaxDocuments(const TSyntaxDocument& A,
                                                    const TSyntaxDocument& B);
