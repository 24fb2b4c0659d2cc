#pragma once
// TWgList: an array list of references (non-owning pointers) with an event
// when an element leaves the list.

#include "base/Exceptions.h"

#include <algorithm>
#include <functional>
#include <vector>

template <typename T> class TWgList {
public:
    using TDropEvent = std::function<void(TWgList& Sender, T* Item)>;

    // Fired for each element that Delete or Clear drops.
    TDropEvent OnDelete;

    int Count() const { return int(FItems.size()); }
    int Capacity() const { return int(FItems.capacity()); }
    void SetCapacity(int Value) {
        if (Value < Count())
            throw EListError(FormatIndexMessage("List capacity out of bounds (%d)", Value));
        if (Value > Capacity())
            FItems.reserve(std::size_t(Value));
        else
            FItems.shrink_to_fit();
    }

    T* operator[](int Index) const { return Get(Index); }
    T* Get(int Index) const {
        Check(Index);
        return FItems[std::size_t(Index)];
    }
    void Put(int Index, T* Item) {
        Check(Index);
        FItems[std::size_t(Index)] = Item;
    }
    T* Last() const { return FItems.empty() ? nullptr : FItems.back(); }

    int Add(T* Item) {
        FItems.push_back(Item);
        return Count() - 1;
    }
    void Insert(int Index, T* Item) {
        if (Index < 0 || Index > Count())
            throw EListError(FormatIndexMessage(RtlMessages::SListIndexError, Index));
        FItems.insert(FItems.begin() + Index, Item);
    }
    void Delete(int Index) {
        Check(Index);
        T* item = FItems[std::size_t(Index)];
        FItems.erase(FItems.begin() + Index);
        if (OnDelete) OnDelete(*this, item);
    }
    void Clear() {
        std::vector<T*> old;
        old.swap(FItems);
        if (OnDelete)
            for (T* item : old)
                OnDelete(*this, item);
    }

    int IndexOf(const T* Item) const { return IndexOfFrom(Item, 0); }
    // First index at or after From that holds Item, or -1.
    int IndexOfFrom(const T* Item, int From) const {
        for (int i = std::max(From, 0); i < Count(); ++i)
            if (FItems[std::size_t(i)] == Item) return i;
        return -1;
    }
    // Searches backwards from the end; the most recent additions are found first.
    int IndexOfBack(const T* Item) const {
        for (int i = Count() - 1; i >= 0; --i)
            if (FItems[std::size_t(i)] == Item) return i;
        return -1;
    }

    // Moves Count elements starting at From so that they start at To, where
    // To is an index of the list as it is before the move.
    void MoveRange(int From, int Count, int To) {
        if (Count <= 0 || From == To) return;
        if (From < 0 || From + Count > this->Count() || To < 0 || To > this->Count())
            throw EListError(FormatIndexMessage(RtlMessages::SListIndexError, From));
        auto first = FItems.begin() + From, last = first + Count;
        if (To < From)
            std::rotate(FItems.begin() + To, first, last);
        else if (To > From + Count)
            std::rotate(first, last, FItems.begin() + To);
        else
            return; // a target inside the range itself moves nothing
    }

    const std::vector<T*>& Items() const { return FItems; }

private:
    void Check(int Index) const {
        if (Index < 0 || Index >= Count())
            throw EListError(FormatIndexMessage(RtlMessages::SListIndexError, Index));
    }

    std::vector<T*> FItems;
};
