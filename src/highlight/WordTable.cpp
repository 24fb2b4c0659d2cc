#include "highlight/WordTable.h"

#include <algorithm>

namespace {

std::uint32_t HashWord(std::u16string_view Word) {
    std::uint32_t h = 2166136261u;
    for (WideChar c : Word)
        h = (h ^ c) * 16777619u;
    return h;
}

} // namespace

void TWordTable::Reserve(std::size_t Count) {
    std::size_t slots = 16;
    while (slots < Count * 2)
        slots *= 2;
    if (slots > FSlots.size()) Rehash(slots);
    FEntries.reserve(Count);
}

void TWordTable::Add(std::u16string_view Word, int Group) {
    if (Word.empty() || Find(Word) != 0) return;
    // At most half the slots in use keeps the probe runs short.
    if ((FEntries.size() + 1) * 2 > FSlots.size())
        Rehash(std::max<std::size_t>(16, FSlots.size() * 2));
    FEntries.push_back(
        {std::uint32_t(FText.size()), std::uint32_t(Word.size()), HashWord(Word), Group});
    FText.append(Word);
    FMaxLength = std::max(FMaxLength, Word.size());
    Place(std::uint32_t(FEntries.size()));
}

int TWordTable::Find(std::u16string_view Word) const {
    if (FEntries.empty() || Word.size() > FMaxLength) return 0;
    const std::uint32_t hash = HashWord(Word);
    for (std::size_t i = hash & FMask;; i = (i + 1) & FMask) {
        const std::uint32_t slot = FSlots[i];
        if (slot == 0) return 0;
        const TEntry& e = FEntries[slot - 1];
        if (e.Hash == hash && e.Length == Word.size() &&
            std::u16string_view(FText).substr(e.Offset, e.Length) == Word)
            return e.Group;
    }
}

void TWordTable::Rehash(std::size_t Slots) {
    FSlots.assign(Slots, 0);
    FMask = Slots - 1;
    for (std::size_t e = 0; e < FEntries.size(); ++e)
        Place(std::uint32_t(e + 1));
}

void TWordTable::Place(std::uint32_t Entry) {
    std::size_t i = FEntries[Entry - 1].Hash & FMask;
    while (FSlots[i] != 0)
        i = (i + 1) & FMask;
    FSlots[i] = Entry;
}
