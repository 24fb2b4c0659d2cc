#pragma once
// Wide string lists: the abstract collection TWgWideStrings and the
// array-backed TWgWideStringList, with object values beside the strings.

#include "base/FormStream.h"
#include "base/Streams.h"
#include "base/Types.h"

#include <functional>
#include <vector>

class TWgWideStrings {
public:
    TWgWideStrings() = default;
    virtual ~TWgWideStrings() = default;
    TWgWideStrings(const TWgWideStrings&) = delete;
    TWgWideStrings& operator=(const TWgWideStrings&) = delete;

    // Properties.
    int Count() const { return GetCount(); }
    WideString Strings(int Index) const { return Get(Index); }
    TObjectValue Objects(int Index) const { return GetObject(Index); }
    int UpdateCount() const { return FUpdateCount; }
    bool SaveUnicode() const { return FSaveUnicode; }
    void SetSaveUnicode(bool Value) { FSaveUnicode = Value; }
    bool Saved() const { return FSaved; }

    // Virtual operations, in the order the class declares them.
    virtual WideString Get(int Index) const = 0;
    virtual int GetCapacity() const { return GetCount(); }
    virtual int GetCount() const = 0;
    virtual TObjectValue GetObject(int Index) const;
    virtual WideString GetTextStr() const;
    virtual void Put(int Index, const WideString& S);
    virtual void PutObject(int Index, TObjectValue Object);
    virtual void SetCapacity(int NewCapacity);
    virtual void SetTextStr(const WideString& Value);
    virtual void SetUpdateState(bool Updating);
    virtual int Add(const WideString& S);
    virtual int AddObject(const WideString& S, TObjectValue Object);
    virtual void AddStrings(const TWgWideStrings& Strings);
    virtual void Clear() = 0;
    virtual void Delete(int Index) = 0;
    virtual void Exchange(int Index1, int Index2);
    virtual WideString GetText() const { return GetTextStr(); }
    virtual int IndexOf(const WideString& S) const;
    virtual void Insert(int Index, const WideString& S) = 0;
    virtual void LoadFromFile(const AnsiString& FileName);
    virtual void LoadFromStream(TStream& Stream);
    virtual void Move(int CurIndex, int NewIndex);
    virtual void SaveToFile(const AnsiString& FileName);
    virtual void SaveToStream(TStream& Stream);
    virtual void SetText(const WideString& Text) { SetTextStr(Text); }

    void InsertObject(int Index, const WideString& S, TObjectValue Object);
    void Assign(const TWgWideStrings& Source);
    void BeginUpdate();
    void EndUpdate();

    // The "Strings" property of the form stream.
    void WriteStrings(TFormWriter& Writer) const;
    void ReadStrings(TFormReader& Reader);

protected:
    int FUpdateCount = 0;
    bool FSaveUnicode = false;
    bool FSaved = false;
};

enum TDuplicates : std::uint8_t { dupIgnore = 0, dupAccept = 1, dupError = 2 };

class TWgWideStringList;
using TWgStringListEvent = std::function<void(TWgWideStringList& Sender)>;
using TWgStringListSortCompare =
    std::function<int(const TWgWideStringList& List, int Index1, int Index2)>;

class TWgWideStringList : public TWgWideStrings {
public:
    TWgWideStringList() = default;
    ~TWgWideStringList() override;

    TDuplicates Duplicates() const { return FDuplicates; }
    void SetDuplicates(TDuplicates Value) { FDuplicates = Value; }
    bool Sorted() const { return FSorted; }
    TWgStringListEvent OnChange;
    TWgStringListEvent OnChanging;

    WideString Get(int Index) const override;
    // Reads a string without copying it; the index must be valid.
    const WideString& Ref(int Index) const { return FList[std::size_t(Index)].Str; }
    // Reads an object value without the index check; the index must be valid.
    TObjectValue ObjectAt(int Index) const { return FList[std::size_t(Index)].Obj; }
    int GetCapacity() const override { return FCapacity; }
    int GetCount() const override { return int(FList.size()); }
    TObjectValue GetObject(int Index) const override;
    void Put(int Index, const WideString& S) override;
    void PutObject(int Index, TObjectValue Object) override;
    void SetCapacity(int NewCapacity) override;
    void SetUpdateState(bool Updating) override;
    int Add(const WideString& S) override;
    void Clear() override;
    void Delete(int Index) override;
    void Exchange(int Index1, int Index2) override;
    int IndexOf(const WideString& S) const override;
    void Insert(int Index, const WideString& S) override;

    // AddObject that moves the string in instead of copying it.
    int AddObjectMove(WideString&& S, TObjectValue Object);

    virtual void SetSorted(bool Value);
    virtual void Changed();
    virtual void Changing();
    virtual void InsertItem(int Index, const WideString& S);
    virtual void CustomSort(const TWgStringListSortCompare& Compare);
    virtual bool Find(const WideString& S, int& Index) const;
    virtual void Sort();

protected:
    // Moves S into the list at Index without the sorted-list checks.
    void InsertItemMove(int Index, WideString&& S);

private:
    struct TEntry {
        TEntry() = default;
        TEntry(WideString&& AStr, TObjectValue AObj) : Str(std::move(AStr)), Obj(AObj) {}
        WideString Str;
        TObjectValue Obj = 0;
    };

    void Grow();
    void CheckIndex(int Index) const;
    void ExchangeItems(int Index1, int Index2);
    void QuickSort(int L, int R, const TWgStringListSortCompare& Compare);

    TDuplicates FDuplicates = dupIgnore;
    bool FSorted = false;
    int FCapacity = 0;
    std::vector<TEntry> FList;
};
