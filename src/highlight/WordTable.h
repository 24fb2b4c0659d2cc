#pragma once
// The highlighter's keyword and tag lookup: words to group numbers by
// hashing, over one arena of text. Built once per definition; a word found
// costs one hash and, as a rule, one comparison.

#include "base/Types.h"

#include <cstdint>
#include <string_view>
#include <vector>

class TWordTable {
public:
    // Room for Count words without growing.
    void Reserve(std::size_t Count);
    // The first group that lists a word keeps it; an empty word is ignored.
    void Add(std::u16string_view Word, int Group);
    // The group of Word, 0 when it is listed nowhere.
    int Find(std::u16string_view Word) const;

    bool Empty() const { return FEntries.empty(); }
    // The longest word: a longer one needs no lookup.
    std::size_t MaxLength() const { return FMaxLength; }

private:
    struct TEntry {
        std::uint32_t Offset, Length, Hash;
        int Group;
    };

    void Rehash(std::size_t Slots);
    void Place(std::uint32_t Entry);

    WideString FText;
    std::vector<TEntry> FEntries;
    std::vector<std::uint32_t> FSlots; // entry index + 1; 0 is free
    std::size_t FMask = 0;
    std::size_t FMaxLength = 0;
};
