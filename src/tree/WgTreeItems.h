#pragma once
// TWgTreeItems: the collection of a tree's items, with the root item.

#include "base/Streams.h"
#include "base/Types.h"

#include <functional>
#include <memory>

class TWgTreeModel;
class TWgTreeItem;
class TWgWideStrings;

// Makes an item of a class for the collection; the default makes TWgTreeItem.
using TWgTreeItemClass = std::function<TWgTreeItem*(TWgTreeModel* Owner)>;

class TWgTreeItems {
public:
    explicit TWgTreeItems(TWgTreeModel* Owner);
    virtual ~TWgTreeItems();
    TWgTreeItems(const TWgTreeItems&) = delete;
    TWgTreeItems& operator=(const TWgTreeItems&) = delete;

    // ---- virtual operations, in the order of their slots
    virtual void Assign(const TWgTreeItems& Source);
    virtual void LoadFromStream(TStream& Stream);
    virtual void SaveToStream(TStream& Stream);
    virtual TWgTreeItem* CreateItem();
    virtual TWgTreeItem* Add(TWgTreeItem* Sibling, const WideString& Text);
    virtual TWgTreeItem* AddChild(TWgTreeItem* Parent, const WideString& Text);
    virtual TWgTreeItem* AddChildFirst(TWgTreeItem* Parent, const WideString& Text);
    virtual TWgTreeItem* AddChildObject(TWgTreeItem* Parent, const WideString& Text, void* Ptr);
    virtual TWgTreeItem* AddChildObjectFirst(TWgTreeItem* Parent, const WideString& Text,
                                             void* Ptr);
    virtual TWgTreeItem* AddFirst(TWgTreeItem* Sibling, const WideString& Text);
    virtual TWgTreeItem* AddObject(TWgTreeItem* Sibling, const WideString& Text, void* Ptr);
    virtual TWgTreeItem* AddObjectFirst(TWgTreeItem* Sibling, const WideString& Text, void* Ptr);
    virtual TWgTreeItem* Insert(TWgTreeItem* Sibling, const WideString& Text);
    virtual TWgTreeItem* InsertObject(TWgTreeItem* Sibling, const WideString& Text, void* Ptr);
    virtual TWgTreeItem* InsertAfter(TWgTreeItem* Sibling, const WideString& Text);
    virtual TWgTreeItem* InsertAfterObject(TWgTreeItem* Sibling, const WideString& Text, void* Ptr);
    virtual void Delete(TWgTreeItem* Item);
    virtual void BeginUpdate();
    virtual void EndUpdate();

    // One row per line of a string list.
    void Assign(const TWgWideStrings& Source);

    // Inserts at an index among the children of Parent (none: the root).
    TWgTreeItem* InsertItem(int Index, TWgTreeItem* Parent);
    // The fast path of bulk loading: a new last child of Parent that goes to
    // the end of AllList without a search. Valid only while rows are added
    // strictly in depth-first order.
    TWgTreeItem* AddLastItem(TWgTreeItem* Parent);
    // Reserves AllList for (Count + 0x4FF) AND 0xFFFFFB00 entries unless the
    // capacity is larger. The mask also clears bit 10, which is not the
    // rounding it looks like; it is kept as it is on purpose.
    void AllocateStorage(int Count);
    void Clear();

    TWgTreeModel* Owner() const { return FOwner; }
    TWgTreeItem* Root() const { return FRoot; }
    TWgTreeItemClass ItemClass;

    int Count() const;
    // The item at an absolute index, or none if out of range.
    TWgTreeItem* Item(int Index) const;
    TWgTreeItem* operator[](int Index) const { return Item(Index); }
    // The row at a visible index, or none.
    TWgTreeItem* ItemAsVis(int Index) const;

private:
    friend class TWgTreeItem;
    TWgTreeItem* AddItem(TWgTreeItem* Parent, int Index, const WideString& Text, void* Ptr,
                         bool Append);
    void AfterAdd(TWgTreeItem* Parent);

    TWgTreeModel* FOwner;
    TWgTreeItem* FRoot = nullptr;
};
