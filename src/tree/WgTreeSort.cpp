// Sorting: prepared keys, the comparison, the quick sort over one list of
// children, and sorting by a click on a header section.

#include "base/Strings.h"
#include "tree/WgTree.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"
#include "tree/WgTreeView.h"

#include <cmath>
#include <cstdlib>
#include <string>

namespace {

// Kinds of a prepared key; -1 means no key could be made.
enum TKeyKind : int {
    kkNone = -1,
    kkInteger = 0,
    kkBoolean = 1,
    kkFloat = 3,
    kkText = 4,
    kkCurrency = 12
};

struct TWgSortKey : TWgSortValue {
    int Kind = kkNone;
    long long Int = 0;
    double Float = 0;
    WideString Text;
};

std::string Narrow(const WideString& S) {
    std::string out;
    for (WideChar c : S) {
        if (c > 127) return std::string(); // no digits beyond ASCII: not a number
        out += char(c);
    }
    const auto first = out.find_first_not_of(' ');
    if (first == std::string::npos) return std::string();
    return out.substr(first, out.find_last_not_of(' ') - first + 1);
}

bool ParseInteger(const WideString& S, long long& Value) {
    const std::string s = Narrow(S);
    if (s.empty()) return false;
    std::size_t i = (s[0] == '-' || s[0] == '+') ? 1 : 0;
    if (i >= s.size() || s.size() - i > 18) return false;
    for (std::size_t k = i; k < s.size(); ++k)
        if (s[k] < '0' || s[k] > '9') return false;
    Value = std::strtoll(s.c_str(), nullptr, 10);
    return true;
}

bool ParseFloat(const WideString& S, double& Value) {
    const std::string s = Narrow(S);
    if (s.empty()) return false;
    char* end = nullptr;
    Value = std::strtod(s.c_str(), &end);
    return end == s.c_str() + s.size() && std::isfinite(Value);
}

// Days since 1899-12-30 for a civil date.
long long DaysFromCivil(int Y, int M, int D) {
    Y -= M <= 2;
    const long long era = (Y >= 0 ? Y : Y - 399) / 400;
    const unsigned yoe = unsigned(Y - era * 400);
    const unsigned doy = (153u * unsigned(M + (M > 2 ? -3 : 9)) + 2) / 5 + unsigned(D) - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468 + 25569; // 1970-01-01 is day 25569
}

// "YYYY-MM-DD", "HH:MM[:SS]" or both, separated by a space, as days and
// fraction of a day.
bool ParseDateTime(const WideString& S, double& Value) {
    const std::string s = Narrow(S);
    if (s.empty()) return false;
    int y = 0, mo = 0, d = 0, h = 0, mi = 0, se = 0, n = 0;
    double days = 0, time = 0;
    std::size_t pos = 0;
    if (std::sscanf(s.c_str(), "%4d-%2d-%2d%n", &y, &mo, &d, &n) == 3) {
        if (mo < 1 || mo > 12 || d < 1 || d > 31) return false;
        days = double(DaysFromCivil(y, mo, d));
        pos = std::size_t(n);
        if (pos < s.size() && s[pos] == ' ') ++pos;
    }
    if (pos < s.size()) {
        n = 0;
        const int got = std::sscanf(s.c_str() + pos, "%2d:%2d%n:%2d%n", &h, &mi, &n, &se, &n);
        if (got < 2 || h > 23 || mi > 59 || se > 59 || pos + std::size_t(n) != s.size())
            return false;
        time = (h * 3600 + mi * 60 + se) / 86400.0;
    } else if (pos == 0) {
        return false;
    }
    Value = days + time;
    return true;
}

TSortTypes SortTypeOfField(TWgFieldType Type) {
    switch (Type) {
    case sftText:
        return stText;
    case sftNumber:
        return stNumber;
    case sftFloating:
        return stFloating;
    case sftDateTime:
        return stDateTime;
    case sftDate:
        return stDate;
    case sftTime:
        return stTime;
    case sftBool:
        return stBoolean;
    case sftCurrency:
        return stCurrency;
    default:
        return stText;
    }
}

int Sign(double V) {
    return V < 0 ? -1 : (V > 0 ? 1 : 0);
}

} // namespace

namespace {
TWgSortKey MakeKey(TCustomWgTree& Tree, TWgTreeItem* Item, int Column, int Main, TSortTypes Type) {
    TWgSortKey key;
    WideString text;
    if (Column == Main || Column == -1) {
        text = Item->Text();
    } else if (Tree.VirtualityLevel() == vlNone) {
        text = Item->ColumnTextAt(Column < Main ? Column : Column - 1);
    } else if (Tree.OnVirtualTextNeeded) {
        Tree.OnVirtualTextNeeded(Tree, Item, Column, text);
    }
    switch (Type) {
    case stText:
    case stCustom:
        key.Kind = kkText;
        key.Text = Tree.SortUseCase ? text : WideUpperCase(text);
        break;
    case stNumber:
        if (ParseInteger(text, key.Int)) key.Kind = kkInteger;
        break;
    case stFloating:
        if (ParseFloat(text, key.Float)) key.Kind = kkFloat;
        break;
    case stDateTime:
    case stDate:
    case stTime:
        if (ParseDateTime(text, key.Float)) key.Kind = kkFloat;
        break;
    case stBoolean:
        key.Kind = kkBoolean;
        key.Int = text.empty() ? 0 : 1;
        break;
    case stCurrency: {
        double v = 0;
        if (ParseFloat(text, v) && std::fabs(v) < 9e14) {
            key.Kind = kkCurrency;
            key.Int = std::llround(v * 10000);
        }
        break;
    }
    }
    return key;
}

int CompareKeys(const TWgSortKey& A, const TWgSortKey& B, TSortTypes Type) {
    if (A.Kind == kkNone && B.Kind == kkNone) return 0;
    if (A.Kind == kkNone) return -1;
    if (B.Kind == kkNone) return 1;
    if (A.Kind != B.Kind) return 0;
    switch (A.Kind) {
    case kkText: {
        const int c = A.Text.compare(B.Text);
        return c < 0 ? -1 : (c > 0 ? 1 : 0);
    }
    case kkInteger:
    case kkCurrency:
        return A.Int < B.Int ? -1 : (A.Int > B.Int ? 1 : 0);
    case kkBoolean:
        return int(A.Int != 0) - int(B.Int != 0);
    case kkFloat:
        if (Type == stDate) return Sign(std::floor(A.Float) - std::floor(B.Float));
        if (Type == stTime)
            return Sign((A.Float - std::floor(A.Float)) - (B.Float - std::floor(B.Float)));
        return Sign(A.Float - B.Float);
    default:
        return 0;
    }
}

const TWgSortKey* PreparedKey(TWgTreeItem* Item) {
    const TWgTreeItemExtra* extra = Item->ExtraIfAny();
    if (!extra || extra->SortRef == 0) return nullptr;
    return static_cast<const TWgSortKey*>(extra->SortValue.get());
}
} // namespace

void TWgTreeView::PrepareKey(TWgTreeItem* Item, int Column, TSortTypes Type) {
    TWgTreeItemExtra& extra = Item->Extra();
    auto key = std::make_unique<TWgSortKey>(MakeKey(FOwner, Item, Column, MainColumn(), Type));
    extra.SortType = std::uint8_t(key->Kind); // 0xFF stands for no key
    extra.SortValue = std::move(key);
    extra.SortRef = 1;
}

int TWgTreeView::CompareItems(TWgTreeItem* Item1, TWgTreeItem* Item2, TSortTypes Type,
                              int SectionMode) {
    auto inverted = [this](int Mode) {
        return Mode == hsmDescend || (Mode == hsmNone && FOwner.SortDir == sdDescend);
    };
    int res = 0;
    if (Type == stCustom) {
        FOwner.CompareSection = FSortColumn;
        if (FOwner.OnCompareItems) FOwner.OnCompareItems(FOwner, Item1, Item2, res);
    } else {
        const TWgSortKey* k1 = PreparedKey(Item1);
        const TWgSortKey* k2 = PreparedKey(Item2);
        TWgSortKey t1, t2;
        if (!k1) k1 = &(t1 = MakeKey(FOwner, Item1, FSortColumn, MainColumn(), Type));
        if (!k2) k2 = &(t2 = MakeKey(FOwner, Item2, FSortColumn, MainColumn(), Type));
        res = CompareKeys(*k1, *k2, Type);
    }
    if (inverted(SectionMode)) res = -res;
    const auto* sections = FOwner.SortSections();
    if (res == 0 && sections && sections->size() >= 2) {
        for (TWgHeaderSection* s : *sections) {
            const TSortTypes type = SortTypeOfField(s->FieldType);
            const int column = s->SectionIndex();
            const int main = MainColumn();
            res = CompareKeys(MakeKey(FOwner, Item1, column, main, type),
                              MakeKey(FOwner, Item2, column, main, type), type);
            if (inverted(s->SortMode())) res = -res;
            if (res != 0) break;
        }
    }
    if (res == 0 && Item1 != Item2) {
        // Equal keys are never equal to the sort: identity decides, so the
        // comparison is a strict order. Deliberate.
        res = std::less<TWgTreeItem*>()(Item1, Item2) ? -1 : 1;
        if (inverted(SectionMode)) res = -res;
    }
    return res;
}

void TWgTreeView::QuickSort(TWgTreeItem* Parent, std::vector<TWgTreeItem*>& List, int L, int R,
                            int Column, TSortTypes Type, int Mode) {
    const int count = int(List.size());
    const int givenL = L, givenR = R;
    const bool ready = Parent->HasFlag(ifSortKeysReady);
    if (!ready && count > 0)
        for (TWgTreeItem* child : List) {
            TWgTreeItemExtra& extra = child->Extra();
            if (extra.SortRef != 0)
                ++extra.SortRef;
            else
                PrepareKey(child, Column, Type);
        }
    if (count > 1 && L < R) {
        do {
            int i = L, j = R;
            TWgTreeItem* pivot = List[std::size_t((L + R) >> 1)];
            do {
                while (List[std::size_t(i)] != pivot &&
                       CompareItems(List[std::size_t(i)], pivot, Type, Mode) < 0 && i < count - 1)
                    ++i;
                while (List[std::size_t(j)] != pivot &&
                       !(CompareItems(List[std::size_t(j)], pivot, Type, Mode) < 0) && j > 0)
                    --j;
                if (i <= j) {
                    if (i != j) std::swap(List[std::size_t(i)], List[std::size_t(j)]);
                    ++i;
                    --j;
                }
            } while (i <= j);
            if (L < j) {
                if (L == givenL && j == givenR) {
                    // The whole range again: loop instead of recursing. Deliberate.
                    L = i;
                    continue;
                }
                Parent->SetFlagsRaw(Parent->Flags() | ifSortKeysReady);
                QuickSort(Parent, List, L, j, Column, Type, Mode);
                if (!ready) Parent->SetFlagsRaw(Parent->Flags() & ~std::uint32_t(ifSortKeysReady));
            }
            L = i;
        } while (L < R);
    }
    if (ready) return;
    for (TWgTreeItem* child : List) {
        TWgTreeItemExtra& extra = child->Extra();
        if (extra.SortRef > 1) {
            --extra.SortRef;
        } else {
            extra.SortRef = 0;
            extra.SortValue.reset();
        }
    }
    if (!FSortRecursive) return;
    for (TWgTreeItem* child : List) {
        if (child->ChildrenCount() == 0) continue;
        std::vector<TWgTreeItem*> grand = child->Children()->Items();
        child->SetFlagsRaw(child->Flags() & ~std::uint32_t(ifSortKeysReady));
        QuickSort(child, grand, 0, int(grand.size()) - 1, Column, Type, Mode);
        child->SetChildrenOrder(grand);
    }
}

void TWgTreeView::RewriteAllList(TWgTreeItem* Parent, int Position) {
    if (!Parent->HasChildren() || Position < 0) return;
    auto& all = FOwner.AllList();
    int pos = Position;
    // The quick sort reordered only the children lists; the flat list
    // follows them by a depth-first walk of the subtree.
    std::vector<TWgTreeItem*> stack(Parent->Children()->Items().rbegin(),
                                    Parent->Children()->Items().rend());
    while (!stack.empty() && pos < all.Count()) {
        TWgTreeItem* item = stack.back();
        stack.pop_back();
        FOwner.PutItem(pos++, item);
        if (item->HasChildren())
            stack.insert(stack.end(), item->Children()->Items().rbegin(),
                         item->Children()->Items().rend());
    }
}

void TWgTreeView::SortItem(TWgTreeItem* Parent, bool Recursive) {
    if (!Parent) return;
    const bool wasSorting = FOwner.Sorting();
    FOwner.SetSorting(true);
    const int count = Parent->ChildrenCount();
    if (count == 0 || (count < 2 && !Recursive)) {
        FOwner.SetSorting(wasSorting);
        return;
    }
    IsUpdating(true);
    FOwner.PruneSortSections();
    int column = -1;
    TSortTypes type = FOwner.SortType;
    int mode = hsmNone;
    if (FOwner.ShowColumns() && FOwner.SortSection() >= 0 &&
        FOwner.SortSection() < FHeader.Sections().Count()) {
        TWgHeaderSection* s = FHeader.Sections().GetSection(FOwner.SortSection());
        column = FOwner.SortSection();
        type = SortTypeOfField(s->FieldType);
        mode = s->SortMode();
    }
    const int savedColumn = FSortColumn;
    const bool savedRecursive = FSortRecursive;
    FSortColumn = column;
    FSortRecursive = Recursive;
    const int position = FOwner.IndexOfItem(Parent->GetFirstChild());
    Parent->SetFlagsRaw(Parent->Flags() & ~std::uint32_t(ifSortKeysReady));
    std::vector<TWgTreeItem*> children = Parent->Children()->Items();
    QuickSort(Parent, children, 0, count - 1, column, type, mode);
    Parent->SetChildrenOrder(children);
    RewriteAllList(Parent, position);
    FSortColumn = savedColumn;
    FSortRecursive = savedRecursive;
    FOwner.MarkStale(tsmAll);
    IsUpdating(false);
    FOwner.SetSorting(wasSorting);
}

void TWgTreeView::SortChildren(TWgTreeItem* Parent, bool Recursive) {
    SortItem(Parent, Recursive);
}

void TWgTreeView::SectionClick(TWgHeaderSection* Section, bool Ctrl) {
    if (!Section || (FOwner.SortMode() != smClick && FOwner.SortMode() != smAddClick)) return;
    IsUpdating(true);
    FOwner.PruneSortSections();
    auto& list = FOwner.SortSectionsList();
    if (!Ctrl) {
        FHeader.MultiSort = false;
        if (list) list->clear();
        Section->SetSortMode(Section->SortMode() == hsmAscend ? hsmDescend : hsmAscend);
        if (!list) list = std::make_unique<std::vector<TWgHeaderSection*>>();
        list->push_back(Section);
        FOwner.SetSortSection(Section->SectionIndex());
        // Multi-sort is on after any click, whatever it was before. Deliberate.
        FHeader.MultiSort = true;
    } else {
        if (!list) list = std::make_unique<std::vector<TWgHeaderSection*>>();
        const auto it = std::find(list->begin(), list->end(), Section);
        switch (Section->SortMode()) {
        case hsmNone:
            Section->SetSortMode(hsmAscend);
            list->push_back(Section);
            break;
        case hsmAscend:
            Section->SetSortMode(hsmDescend);
            if (it == list->end()) list->push_back(Section);
            break;
        case hsmDescend:
            Section->SetSortMode(hsmNone);
            if (it != list->end()) list->erase(it);
            break;
        }
    }
    if (FOwner.OnSortBegin) FOwner.OnSortBegin(FOwner);
    SortItem(FOwner.Items().Root(), true);
    if (FOwner.OnSortEnd) FOwner.OnSortEnd(FOwner);
    FOwner.MarkStale(tsmVisUpdated | tsmClearVis | tsmUpdated);
    IsUpdating(false);
}
