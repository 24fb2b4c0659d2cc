#pragma once
// Ordered named menus of composed items: the in-memory form of keyword and
// tag groups, completion menus and the user menu. An item is one string
// "name | text" with its kind as the entry's object value.

#include "document/WgUnicodeStrings.h"

#include <memory>
#include <unordered_map>
#include <vector>

class TAListItem {
public:
    explicit TAListItem(WideString AName) : Name(std::move(AName)) {}

    WideString Name;
    std::unique_ptr<TWgWideStringList> Items = std::make_unique<TWgWideStringList>();
};

class TMenuList {
public:
    void AddMenu(const WideString& Name);
    void AddMenuItem(int MenuIndex, std::u16string_view Name, int Kind, std::u16string_view Text);
    int MenuCount() const { return int(FList.size()); }
    void GetMenuName(int MenuIndex, WideString& Name) const;
    WideString MenuName(int MenuIndex) const; // GetMenuName as a value
    void SetMenuName(int MenuIndex, const WideString& Name);
    int IndexOfMenu(const WideString& Name, bool CaseSensitive) const;
    int MenuItemCount(const WideString& Name) const;
    void GetItemText(int MenuIndex, int ItemIndex, WideString& Text) const;
    void GetItemNameKind(int MenuIndex, int ItemIndex, WideString& Name, int& Kind) const;
    void GetItemTextKind(int MenuIndex, int ItemIndex, int& Kind, WideString& Text) const;
    int IndexOfItem(int MenuIndex, const WideString& Name) const;
    void SetItemName(int MenuIndex, int ItemIndex, const WideString& Name);
    void ChangeItem(int MenuIndex, const WideString& Name, int Kind, const WideString& Text);
    void DeleteItem(int MenuIndex, const WideString& Name);
    void DeleteMenu(int MenuIndex);
    void SortMenus();
    void SortItems(int MenuIndex);
    void ClearMenus();

    // The menu itself, for views that walk the items; null when out of range.
    TAListItem* Menu(int MenuIndex) const;

    // The parts of a composed item: what stands before and after its first
    // "|", each trimmed of spaces. Without "|" the whole string is the name.
    static WideString ItemLeft(const WideString& Item);
    static std::u16string_view ItemLeftView(const WideString& Item);
    static WideString ItemRight(const WideString& Item);
    static std::u16string_view ItemRightView(const WideString& Item);

private:
    bool MenuInRange(int MenuIndex) const { return MenuIndex >= 0 && MenuIndex < MenuCount(); }
    const TWgWideStringList* ItemsOf(int MenuIndex) const;
    void NamesChanged() { FLowerIndexValid = false; }

    std::vector<std::unique_ptr<TAListItem>> FList;
    // First menu index by lower-cased name, rebuilt on demand: writers ask
    // for counts by name once a menu, which must not cost a scan each time.
    mutable std::unordered_map<WideString, int> FLowerIndex;
    mutable bool FLowerIndexValid = false;
};
