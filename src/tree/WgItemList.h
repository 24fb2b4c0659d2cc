#pragma once
// TWgItemList: the array list behind a tree's flat list of all items.
//
// It offers what TWgList offers (Add, Insert, Delete, IndexOf, IndexOfFrom,
// IndexOfBack, MoveRange, Capacity, Last) over one array with a movable gap:
// a run of insertions or deletions in one region costs the distance from the
// previous one, not the length of the list, so deleting or inserting whole
// subtrees of a million-row tree does not move the whole array each time.
// Indexes are logical; the gap is never visible to callers.
//
// Every change of the contents counts in Changes(), so that what is derived
// from the list (the index of the rows on show) can tell that it is stale.

#include "base/Exceptions.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>

template <typename T> class TWgItemList {
public:
    int Count() const { return FSize - FGapLen; }
    std::uint64_t Changes() const { return FChanges; }
    int Capacity() const { return FSize; }
    void SetCapacity(int Value) {
        if (Value > FSize) Regrow(Value);
    }

    T* operator[](int Index) const { return Get(Index); }
    T* Get(int Index) const {
        Check(Index);
        return At(Index);
    }
    // Unchecked access for the hot loops of the model.
    T* At(int Index) const { return FBuf[Index < FGapStart ? Index : Index + FGapLen]; }
    void Put(int Index, T* Item) {
        Check(Index);
        ++FChanges;
        FBuf[Index < FGapStart ? Index : Index + FGapLen] = Item;
    }
    T* Last() const { return Count() == 0 ? nullptr : At(Count() - 1); }

    int Add(T* Item) {
        Insert(Count(), Item);
        return Count() - 1;
    }
    void Insert(int Index, T* Item) {
        if (Index < 0 || Index > Count())
            throw EListError(FormatIndexMessage(RtlMessages::SListIndexError, Index));
        if (FGapLen == 0) Regrow(FSize < 16 ? 16 : FSize * 2);
        MoveGap(Index);
        ++FChanges;
        FBuf[FGapStart++] = Item;
        --FGapLen;
    }
    void Delete(int Index) { DeleteRange(Index, 1); }
    void DeleteRange(int Index, int N) {
        if (N <= 0) return;
        if (Index < 0 || Index + N > Count())
            throw EListError(FormatIndexMessage(RtlMessages::SListIndexError, Index));
        MoveGap(Index);
        ++FChanges;
        FGapLen += N;
    }
    // Removes every null element, keeping the order of the others.
    void RemoveNulls() {
        int to = 0;
        const int n = Count();
        for (int i = 0; i < n; ++i)
            if (T* item = At(i)) Put(to++, item);
        DeleteRange(to, n - to);
    }
    void Clear() {
        FBuf.reset();
        FSize = FGapStart = FGapLen = 0;
        ++FChanges;
    }

    int IndexOf(const T* Item) const { return IndexOfFrom(Item, 0); }
    int IndexOfFrom(const T* Item, int From) const {
        const int n = Count();
        for (int i = std::max(From, 0); i < n; ++i)
            if (At(i) == Item) return i;
        return -1;
    }
    int IndexOfBack(const T* Item) const {
        for (int i = Count() - 1; i >= 0; --i)
            if (At(i) == Item) return i;
        return -1;
    }
    // Searches outward from a remembered index; the answer is the same as
    // IndexOf's, found quickly when the item has moved little since.
    int IndexNear(const T* Item, int Hint) const {
        const int n = Count();
        if (n == 0) return -1;
        Hint = std::clamp(Hint, 0, n - 1);
        for (int d = 0; Hint - d >= 0 || Hint + d < n; ++d) {
            if (Hint + d < n && At(Hint + d) == Item) return Hint + d;
            if (d > 0 && Hint - d >= 0 && At(Hint - d) == Item) return Hint - d;
        }
        return -1;
    }

    // Moves N elements starting at From so that they start before the
    // element that stood at To before the move (To may equal Count).
    void MoveRange(int From, int N, int To) {
        if (N <= 0 || From == To) return;
        if (From < 0 || From + N > Count() || To < 0 || To > Count())
            throw EListError(FormatIndexMessage(RtlMessages::SListIndexError, From));
        if (To >= From && To <= From + N) return; // a target inside the range itself moves nothing
        ++FChanges;
        const int lo = std::min(From, To), hi = std::max(From + N, To);
        if (FGapStart > lo && FGapStart < hi) MoveGap(FGapStart - lo < hi - FGapStart ? lo : hi);
        const int off = FGapStart <= lo ? FGapLen : 0;
        T** base = FBuf.get() + off;
        if (To < From)
            std::rotate(base + To, base + From, base + From + N);
        else
            std::rotate(base + From, base + From + N, base + To);
    }

private:
    void Check(int Index) const {
        if (Index < 0 || Index >= Count())
            throw EListError(FormatIndexMessage(RtlMessages::SListIndexError, Index));
    }

    void MoveGap(int Pos) {
        if (FGapLen == 0) {
            FGapStart = Pos;
            return;
        }
        T** b = FBuf.get();
        if (Pos < FGapStart)
            std::memmove(b + Pos + FGapLen, b + Pos, std::size_t(FGapStart - Pos) * sizeof(T*));
        else if (Pos > FGapStart)
            std::memmove(b + FGapStart, b + FGapStart + FGapLen,
                         std::size_t(Pos - FGapStart) * sizeof(T*));
        FGapStart = Pos;
    }

    void Regrow(int NewSize) {
        const int count = Count();
        if (NewSize < count) NewSize = count;
        std::unique_ptr<T*[]> nb(new T*[std::size_t(NewSize)]);
        T** b = FBuf.get();
        const int tail = FSize - FGapStart - FGapLen;
        if (FGapStart > 0) std::memcpy(nb.get(), b, std::size_t(FGapStart) * sizeof(T*));
        if (tail > 0)
            std::memcpy(nb.get() + NewSize - tail, b + FGapStart + FGapLen,
                        std::size_t(tail) * sizeof(T*));
        FBuf = std::move(nb);
        FGapLen = NewSize - count;
        FSize = NewSize;
    }

    std::unique_ptr<T*[]> FBuf;
    int FSize = 0;     // physical length, elements and gap
    int FGapStart = 0; // logical index where the gap begins
    int FGapLen = 0;
    std::uint64_t FChanges = 0;
};
