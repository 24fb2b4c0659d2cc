#pragma once
// TWgTreeItem: one row of a tree, with its text block and flag block.

#include "base/Geometry.h"
#include "base/Streams.h"
#include "base/WgList.h"
#include "document/WgUnicodeStrings.h"
#include "tree/WgCellStyle.h"
#include "tree/WgItemText.h"
#include "tree/WgPool.h"
#include "tree/WgTreeModel.h"
#include "tree/WgTreeViewLink.h"
#include "tree/WgTypes.h"

#include <cstdint>
#include <memory>
#include <vector>

class TWgTreeModel;
class TWgTreeItems;
class TWgTreeItem;

// Column styles of an item: owns its elements.
using TWgCellStyles = std::vector<std::unique_ptr<TWgCellStyle>>;

// The rarely used part of the text block, made at first use so that plain
// rows of a large tree carry only their text.
struct TWgTreeItemTextExtra {
    WideString Hint;
    std::unique_ptr<TWgWideStringList> ColumnText;
    std::unique_ptr<TWgCellStyle> MainStyle;
    std::unique_ptr<TWgCellStyles> Styles; // none until the first column style
};

// The text block: the item's text, and on demand hint, column texts and styles.
struct TWgTreeItemStaticData {
    LEXSMITH_POOLED(TWgTreeItemStaticData)
    TWgItemText Text;
    std::unique_ptr<TWgTreeItemTextExtra> Extra;
};

// The flag block of an item.
class TWgTreeItemStaticDataEx {
public:
    LEXSMITH_POOLED(TWgTreeItemStaticDataEx)
    void Reset() { *this = TWgTreeItemStaticDataEx(); }

    std::uint32_t Link = 0; // free-list link while pooled
    std::uint16_t State = 0;
    std::uint32_t StaticFlags = DefaultStaticFlags;
    TColor BkColor = 0;
    TColor StrikedLineColor = 0;
    TColor BorderSpaceColor = SystemWindowColor;
    std::int32_t IndentAdjust = 0;
    TWgItemBorderStyle BorderStyle = ibsNone;
    TColor Color = 0;
    std::uint8_t CheckBoxType = ectCheckBox;
    std::uint8_t CheckBoxState = cbUnchecked;
    TColor RowBkColor = 0;
    std::int32_t ImageIndex = -1;
    std::int32_t StateImageIndex = -1;
    std::int32_t ImageIndex2 = -1;
    std::int32_t StateImageIndex2 = -1;
    std::int32_t OverlayIndex = -1;
    std::int32_t OverlayIndex2 = -1;
};

// Values of an item that few rows have: markup, the user's second and third
// values, the sort key and the painted text rectangle.
class TWgSortValue {
public:
    virtual ~TWgSortValue() = default;
};
struct TWgTreeItemExtra {
    std::unique_ptr<TWgMarkupData> MainHtmlData;
    std::vector<std::unique_ptr<TWgMarkupData>> ColumnHtmlData;
    void* ObjectData = nullptr;
    std::shared_ptr<void> DataInterface;
    std::uint8_t SortType = 0;
    std::unique_ptr<TWgSortValue> SortValue;
    std::uint32_t SortRef = 0;
    TRect TextRect;
};

class TWgTreeItem {
public:
    LEXSMITH_POOLED(TWgTreeItem)

    explicit TWgTreeItem(TWgTreeModel* Owner);
    virtual ~TWgTreeItem();
    TWgTreeItem(const TWgTreeItem&) = delete;
    TWgTreeItem& operator=(const TWgTreeItem&) = delete;

    // ---- virtual operations, in the order of their slots
    virtual void Assign(const TWgTreeItem& Source);
    virtual WideString GetHint();
    virtual void SetText(const WideString& Value);
    virtual void SetMultiline(bool Value);
    virtual int GetWidth();
    virtual void ReadData(TStream& Stream);
    virtual void WriteData(TStream& Stream);
    virtual void Delete();
    virtual TWgTreeItem* GetPrev() const;
    virtual TWgTreeItem* GetNext() const;
    virtual void MoveToIns(TWgTreeItem* Item, int Mode);
    virtual TWgCellStyle* AddStyle();
    virtual void RemoveStyle(TWgCellStyle* Style);
    // Reserves room for MaxItems children.
    virtual void AllocateStorage(int MaxItems);

    // ---- identity and structure
    TWgTreeModel* Owner() const;
    TWgTreeItems* List() const;
    TWgTreeItem* Root() const;
    // The parent, none when it is the root.
    TWgTreeItem* Parent() const;
    // The stored parent: the root for top-level items, none for the root.
    TWgTreeItem* ParentItem() const { return FParent; }
    const TWgList<TWgTreeItem>* Children() const { return FChildren.get(); }
    int Level() const;
    int Index() const;
    int AbsoluteIndex() const;
    int VisIndex() const;
    int ChildrenCount() const { return FChildren ? FChildren->Count() : 0; }
    int SubCount() const;
    bool HasChildren() const { return ChildrenCount() > 0; }
    bool HasVisibleChildren() const;
    TWgTreeItem* LastSubItem() const;
    bool IsUnder(const TWgTreeItem* Other) const;
    bool FullyExpanded() const;
    bool AllParentsVisible() const;

    TWgTreeItem* GetFirstChild() const;
    TWgTreeItem* GetLastChild() const;
    TWgTreeItem* GetNextChild(const TWgTreeItem* Child) const;
    TWgTreeItem* GetPrevChild(const TWgTreeItem* Child) const;
    TWgTreeItem* GetFirstVisibleChild() const;
    TWgTreeItem* GetNextSibling() const;
    TWgTreeItem* GetPrevSibling() const;
    TWgTreeItem* GetChild(int Index) const { return FChildren ? FChildren->Get(Index) : nullptr; }

    // ---- moving
    void MoveTo(TWgTreeItem* NewParent, int Index);
    // Puts the children in a new order (the same items, permuted); the flat
    // list is the caller's to rewrite.
    void SetChildrenOrder(const std::vector<TWgTreeItem*>& Order);

    // ---- texts
    WideString Text() const;
    // Column texts; the list is made at first use and reports its changes.
    TWgWideStringList& ColumnText();
    int ColumnTextCount() const;
    // Column text by index; beyond the list it reads as empty.
    WideString ColumnTextAt(int Index) const;
    const WideString& Hint() const;
    void SetHint(const WideString& Value);
    TWgTreeItemStaticData* StaticData() const { return FStaticData; }
    TWgTreeItemStaticDataEx* StaticDataEx() const { return FStaticDataEx; }

    // ---- user values
    std::int32_t Tag() const { return FTag; }
    void SetTag(std::int32_t Value) { FTag = Value; }
    void* Data() const { return FData; }
    void SetData(void* Value) { FData = Value; }
    void* ObjectData() const { return FExtra ? FExtra->ObjectData : nullptr; }
    void SetObjectData(void* Value) { Extra().ObjectData = Value; }
    std::shared_ptr<void> DataInterface() const { return FExtra ? FExtra->DataInterface : nullptr; }
    void SetDataInterface(std::shared_ptr<void> Value) { Extra().DataInterface = std::move(Value); }
    TWgTreeItemExtra& Extra();
    TWgTreeItemExtra* ExtraIfAny() const { return FExtra.get(); }
    TRect TextRect() const { return FExtra ? FExtra->TextRect : TRect{}; }
    void SetTextRect(const TRect& R) { Extra().TextRect = R; }
    TWgMarkupData* MainHtmlData() const { return FExtra ? FExtra->MainHtmlData.get() : nullptr; }
    TWgMarkupData* ColumnHtmlData(int Index) const;

    // ---- flags
    std::uint32_t Flags() const { return FFlags; }
    void SetFlagsRaw(std::uint32_t Value) { StoreFlags(Value); }
    bool HasFlag(std::uint32_t Flag) const { return (FFlags & Flag) != 0; }
    std::uint32_t StaticFlags() const { return FStaticDataEx ? FStaticDataEx->StaticFlags : 0; }
    bool HasStaticFlag(std::uint32_t Flag) const { return (StaticFlags() & Flag) != 0; }
    void SetStaticFlag(std::uint32_t Flag, bool Value);
    std::uint16_t State() const { return FStaticDataEx ? FStaticDataEx->State : 0; }
    // The cut and font bits of State; the expanded bit follows Expanded
    // alone. A change fires OnItemChange with icmState.
    void SetState(std::uint16_t Value);
    std::uint32_t HeightWord() const { return FHeightWord; }
    void SetHeightWord(std::uint32_t Value) { FHeightWord = Value; }
    int FixedHeight() const { return int(FHeightWord >> 16); }
    void SetFixedHeight(int Value);

    bool Expanded() const { return HasFlag(ifExpanded); }
    void SetExpanded(bool Value);
    void Expand(bool Recursive);
    void Collapse(bool Recursive);
    void MakeVisible();
    bool Selected() const { return HasFlag(ifSelected); }
    void SetSelected(bool Value);
    bool Focused() const { return HasFlag(ifFocused); }
    void SetFocused(bool Value);
    bool Multiline() const { return HasFlag(ifMultiline); }
    bool WholeLine() const { return HasFlag(ifWholeLine); }
    void SetWholeLine(bool Value);
    bool WordWrap() const { return HasFlag(ifWordWrap); }
    void SetWordWrap(bool Value);
    bool OwnerHeight() const { return HasFlag(ifOwnerHeight); }
    void SetOwnerHeight(bool Value);
    bool IsHTML() const { return HasFlag(ifIsHTML); }
    void SetIsHTML(bool Value);
    bool Hidden() const { return HasFlag(ifHidden); }
    void SetHidden(bool Value);
    bool Enabled() const { return HasFlag(ifEnabled); }
    void SetEnabled(bool Value);
    bool UseStyles() const { return HasStaticFlag(sfUseStyles); }
    void SetUseStyles(bool Value);
    bool AllowEdit() const { return !FStaticDataEx || HasStaticFlag(sfAllowEdit); }

    // ---- check box
    bool Checked() const { return CheckBoxState() == cbChecked; }
    void SetChecked(bool Value);
    std::uint8_t CheckBoxState() const { return FStaticDataEx ? FStaticDataEx->CheckBoxState : 0; }
    void SetCheckBoxState(std::uint8_t Value);
    std::uint8_t CheckBoxType() const { return FStaticDataEx ? FStaticDataEx->CheckBoxType : 0; }
    void SetCheckBoxType(std::uint8_t Value);

    // ---- images (the flag block's values; -1 without one)
    std::int32_t ImageIndex() const { return FStaticDataEx ? FStaticDataEx->ImageIndex : -1; }
    void SetImageIndex(std::int32_t Value);

    // ---- styles
    TWgCellStyle* GetMainStyle();
    TWgCellStyle* GetStyles(int Index) const;
    int StylesCount() const;

    // ---- height
    int GetHeight();

    // ---- operations of the collection
    // Appends a child (positioned in AllList), or inserts one at Index.
    TWgTreeItem* AddChild(TWgTreeItem* Child);
    TWgTreeItem* InsertChild(int Index, TWgTreeItem* Child);
    // Appends a child to the end of AllList: valid only while rows arrive
    // in depth-first order.
    TWgTreeItem* AddLastChild(TWgTreeItem* Child);
    void DeleteChild(TWgTreeItem* Child);

    // Repaints this row (Column -1) or one of its cells.
    void RepaintItem(int Column = -1);
    // A column text list reported a change.
    void ColumnTextChanged();

private:
    friend class TWgTreeItems;
    friend class TWgTreeModel;
    friend class TWgItemStreamReader;

    void Attach(TWgTreeItem* Child);
    // Every change of the expanded or hidden flag passes here, so that the
    // model's index of the rows on show learns that it is stale.
    void StoreFlags(std::uint32_t Value) {
        if (((FFlags ^ Value) & (ifExpanded | ifHidden)) && FOwner) FOwner->VisibilityChanged();
        FFlags = Value;
    }
    void CreateTextBlock();
    void CreateBlocks();
    TWgTreeItemTextExtra& TextExtra();
    struct TDeleteBatch {
        int First = -1; // flat index of the subtree's top item
        int Last = -1;  // flat index of its last descendant
        int Next = -1;  // flat index of the next item to go
        bool Consistent = true;
    };
    void DeleteChildInBatch(TWgTreeItem* Child, TDeleteBatch* Batch);
    void FreeBlocks();
    void ParseMarkup();
    void ReleaseMarkup();
    void AfterTextChange(TItemChangeMode Mode);
    void UpdateExpanded(bool Value);
    void ExpandOne(bool Recursive);
    void CollapseOne(bool Recursive);
    void InsertIntoAllList(int Position, TWgTreeItem* Child);
    void RemoveFromChildren(TWgTreeItem* Child);

    TWgTreeItem* FParent = nullptr;
    std::unique_ptr<TWgList<TWgTreeItem>> FChildren;
    TWgTreeItemStaticData* FStaticData = nullptr;
    TWgTreeItemStaticDataEx* FStaticDataEx = nullptr;
    void* FData = nullptr;
    std::unique_ptr<TWgTreeItemExtra> FExtra;
    std::uint32_t FFlags = DefaultItemFlags;
    std::uint32_t FHeightWord = DefaultHeightWord;
    std::int32_t FTag = 0;
    mutable std::int32_t FIndexHint = 0; // last known index in AllList
    TWgTreeModel* FOwner;
    // The blocks live inside the item when it has them, so that a row is one
    // allocation; the pointers above say whether they exist.
    union {
        TWgTreeItemStaticData FInlineText;
    };
    union {
        TWgTreeItemStaticDataEx FInlineEx;
    };
};
