#include "document/MenuList.h"

#include "base/Exceptions.h"
#include "base/Strings.h"

namespace {
constexpr WideChar Separator = u'|';
}

WideView TMenuList::ItemLeftView(const WideString& Item) {
    WideView v(Item);
    v = v.substr(0, v.find(Separator));
    while (!v.empty() && v.front() == u' ')
        v.remove_prefix(1);
    while (!v.empty() && v.back() == u' ')
        v.remove_suffix(1);
    return v;
}

WideString TMenuList::ItemLeft(const WideString& Item) {
    return WideString(ItemLeftView(Item));
}

WideView TMenuList::ItemRightView(const WideString& Item) {
    auto p = Item.find(Separator);
    if (p == WideString::npos) return {};
    WideView v = WideView(Item).substr(p + 1);
    while (!v.empty() && v.front() == u' ')
        v.remove_prefix(1);
    while (!v.empty() && v.back() == u' ')
        v.remove_suffix(1);
    return v;
}

WideString TMenuList::ItemRight(const WideString& Item) {
    return WideString(ItemRightView(Item));
}

TAListItem* TMenuList::Menu(int MenuIndex) const {
    return MenuInRange(MenuIndex) ? FList[std::size_t(MenuIndex)].get() : nullptr;
}

const TWgWideStringList* TMenuList::ItemsOf(int MenuIndex) const {
    TAListItem* menu = Menu(MenuIndex);
    return menu ? menu->Items.get() : nullptr;
}

void TMenuList::AddMenu(const WideString& Name) {
    FList.push_back(std::make_unique<TAListItem>(Name));
    if (FLowerIndexValid) FLowerIndex.try_emplace(WideLowerCase(Name), MenuCount() - 1);
}

void TMenuList::AddMenuItem(int MenuIndex, WideView Name, int Kind, WideView Text) {
    if (!MenuInRange(MenuIndex)) return;
    WideString item;
    item.reserve(Name.size() + 3 + Text.size());
    item.append(Name).append(u" | ", 3).append(Text);
    FList[std::size_t(MenuIndex)]->Items->AddObjectMove(std::move(item), Kind);
}

void TMenuList::GetMenuName(int MenuIndex, WideString& Name) const {
    Name = MenuInRange(MenuIndex) ? TrimSpaces(FList[std::size_t(MenuIndex)]->Name) : WideString();
}

WideString TMenuList::MenuName(int MenuIndex) const {
    WideString name;
    GetMenuName(MenuIndex, name);
    return name;
}

void TMenuList::SetMenuName(int MenuIndex, const WideString& Name) {
    if (!MenuInRange(MenuIndex)) return;
    FList[std::size_t(MenuIndex)]->Name = Name;
    NamesChanged();
}

int TMenuList::IndexOfMenu(const WideString& Name, bool CaseSensitive) const {
    WideString wanted = TrimSpaces(Name);
    if (CaseSensitive) {
        for (int i = 0; i < MenuCount(); ++i)
            if (FList[std::size_t(i)]->Name == wanted) return i;
        return -1;
    }
    if (!FLowerIndexValid) {
        FLowerIndex.clear();
        for (int i = 0; i < MenuCount(); ++i)
            FLowerIndex.try_emplace(WideLowerCase(FList[std::size_t(i)]->Name), i);
        FLowerIndexValid = true;
    }
    auto it = FLowerIndex.find(WideLowerCase(wanted));
    return it == FLowerIndex.end() ? -1 : it->second;
}

int TMenuList::MenuItemCount(const WideString& Name) const {
    int index = IndexOfMenu(WideLowerCase(Name), false);
    return index < 0 ? 0 : FList[std::size_t(index)]->Items->Count();
}

void TMenuList::GetItemText(int MenuIndex, int ItemIndex, WideString& Text) const {
    const TWgWideStringList* items = ItemsOf(MenuIndex);
    if (!items || ItemIndex < 0 || ItemIndex >= items->Count()) {
        Text.clear();
        return;
    }
    Text = ItemRight(items->Ref(ItemIndex));
}

void TMenuList::GetItemNameKind(int MenuIndex, int ItemIndex, WideString& Name, int& Kind) const {
    const TWgWideStringList* items = ItemsOf(MenuIndex);
    if (!items || ItemIndex < 0 || ItemIndex >= items->Count()) {
        Name.clear(); // the kind is left as the caller had it
        return;
    }
    Name = ItemLeft(items->Ref(ItemIndex));
    Kind = int(items->GetObject(ItemIndex));
}

void TMenuList::GetItemTextKind(int MenuIndex, int ItemIndex, int& Kind, WideString& Text) const {
    const TWgWideStringList* items = ItemsOf(MenuIndex);
    if (!items || ItemIndex < 0 || ItemIndex >= items->Count()) {
        Text.clear();
        return;
    }
    Text = ItemRight(items->Ref(ItemIndex));
    Kind = int(items->GetObject(ItemIndex));
}

int TMenuList::IndexOfItem(int MenuIndex, const WideString& Name) const {
    const TWgWideStringList* items = ItemsOf(MenuIndex);
    WideString wanted = TrimSpaces(Name);
    if (!items || wanted.empty()) return -1;
    for (int i = 0; i < items->Count(); ++i)
        if (ItemLeft(items->Ref(i)) == wanted) return i;
    return -1;
}

void TMenuList::SetItemName(int MenuIndex, int ItemIndex, const WideString& Name) {
    TAListItem* menu = Menu(MenuIndex);
    if (!menu || ItemIndex < 0 || ItemIndex >= menu->Items->Count()) return;
    const WideString& old = menu->Items->Ref(ItemIndex);
    auto p = old.find(Separator);
    // Without "|" the whole old string is kept behind the new name.
    WideString rest = p == WideString::npos ? old : old.substr(p);
    menu->Items->Put(ItemIndex, Name + u" " + rest);
}

void TMenuList::ChangeItem(int MenuIndex, const WideString& Name, int Kind,
                           const WideString& Text) {
    int index = IndexOfItem(MenuIndex, Name);
    if (index < 0) return;
    TWgWideStringList& items = *Menu(MenuIndex)->Items;
    items.Delete(index);
    items.InsertObject(index, TrimSpaces(Name) + u" | " + TrimSpaces(Text), Kind);
}

void TMenuList::DeleteItem(int MenuIndex, const WideString& Name) {
    int index = IndexOfItem(MenuIndex, Name);
    if (index >= 0) Menu(MenuIndex)->Items->Delete(index);
}

void TMenuList::DeleteMenu(int MenuIndex) {
    if (FList.empty()) return;
    if (!MenuInRange(MenuIndex))
        throw EListError(FormatIndexMessage(RtlMessages::SListIndexError, MenuIndex));
    FList.erase(FList.begin() + MenuIndex);
    NamesChanged();
}

void TMenuList::SortMenus() {
    if (FList.size() < 2) return;
    // Quicksort with an explicit stack: the longer part is pushed and the
    // shorter handled in place, so 32 pairs always suffice.
    struct TRange {
        int L, R;
    };
    TRange stack[32];
    int top = 0;
    stack[top++] = {0, MenuCount() - 1};
    auto name = [this](int i) -> const WideString& { return FList[std::size_t(i)]->Name; };
    while (top > 0) {
        auto [l, r] = stack[--top];
        while (l < r) {
            int i = l, j = r;
            const WideString pivot = name((l + r) / 2);
            do {
                while (name(i) < pivot)
                    ++i;
                while (pivot < name(j))
                    --j;
                if (i <= j) {
                    std::swap(FList[std::size_t(i)], FList[std::size_t(j)]);
                    ++i;
                    --j;
                }
            } while (i <= j);
            if (j - l < r - i) {
                if (i < r) stack[top++] = {i, r};
                r = j;
            } else {
                if (l < j) stack[top++] = {l, j};
                l = i;
            }
        }
    }
    NamesChanged();
}

void TMenuList::SortItems(int MenuIndex) {
    if (!MenuInRange(MenuIndex))
        throw EListError(FormatIndexMessage(RtlMessages::SListIndexError, MenuIndex));
    FList[std::size_t(MenuIndex)]->Items->Sort();
}

void TMenuList::ClearMenus() {
    // Menus stay in the list with their names emptied and their items gone;
    // the reader is always handed empty lists, where this is harmless.
    for (auto& menu : FList) {
        menu->Name.clear();
        menu->Items->Clear();
    }
    NamesChanged();
}
