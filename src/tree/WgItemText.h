#pragma once
// TWgItemText: the text of a row. Texts of up to LocalCapacity UTF-16 units,
// which most rows have, live inside the row itself; a longer one takes one
// block of the heap. A tree of a million rows is then made and deleted with a
// million fewer allocations, and deleting a row touches no second place in
// memory.

#include "base/Types.h"

#include <cstdint>
#include <cstring>
#include <string_view>

class TWgItemText {
public:
    static constexpr std::size_t LocalCapacity = 14;

    TWgItemText() = default;
    TWgItemText(const TWgItemText& Other) { Assign(Other.View()); }
    TWgItemText& operator=(const TWgItemText& Other) {
        Assign(Other.View());
        return *this;
    }
    TWgItemText& operator=(const WideString& Value) {
        Assign(Value);
        return *this;
    }
    ~TWgItemText() { Release(); }

    std::size_t Size() const { return FSize; }
    bool Empty() const { return FSize == 0; }
    std::u16string_view View() const { return {OnHeap() ? HeapBlock() : FChars, FSize}; }
    WideString Str() const { return WideString(View()); }

    // The new text may be a view of this one.
    void Assign(std::u16string_view Value) {
        const std::size_t size = Value.size();
        WideChar* block = size > LocalCapacity ? new WideChar[size] : nullptr;
        WideChar local[LocalCapacity];
        std::memcpy(block ? block : local, Value.data(), size * sizeof(WideChar));
        Release();
        if (block)
            std::memcpy(FChars, &block, sizeof block);
        else
            std::memcpy(FChars, local, size * sizeof(WideChar));
        FSize = std::uint32_t(size);
    }

private:
    bool OnHeap() const { return FSize > LocalCapacity; }
    // A text on the heap keeps the block's address where the units would be.
    WideChar* HeapBlock() const {
        WideChar* block;
        std::memcpy(&block, FChars, sizeof block);
        return block;
    }
    void Release() {
        if (OnHeap()) delete[] HeapBlock();
        FSize = 0;
    }

    WideChar FChars[LocalCapacity] = {};
    std::uint32_t FSize = 0;
};
