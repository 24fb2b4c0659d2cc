// Focus and selection, the view's timers, and the incremental search.

#include "base/Strings.h"
#include "tree/WgTree.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"
#include "tree/WgTreeView.h"

#include <algorithm>

namespace {
const WideString HtmlTag = u"<html>";

// The text without its markup tags.
WideString StripTags(const WideString& S) {
    WideString out;
    bool inTag = false;
    for (WideChar c : S) {
        if (c == u'<')
            inTag = true;
        else if (c == u'>' && inTag)
            inTag = false;
        else if (!inTag)
            out += c;
    }
    return out;
}
} // namespace

TWgTreeItem* TWgTreeView::SelAnchor() const {
    return FOwner.SelAnchor();
}

void TWgTreeView::SetSelAnchor(TWgTreeItem* Item) {
    FOwner.SetSelAnchor(Item);
}

void TWgTreeView::DoSetFocused(TWgTreeItem* Item, bool Forced, bool Delayed, bool Select) {
    if (Item == FOwner.FocusedItem()) return;
    if (FOwner.OnChanging) {
        // The handler sees AllowChange as Forced; only a forced move survives
        // a refusal.
        bool allow = Forced;
        FOwner.OnChanging(FOwner, Item, allow);
        if (!allow && !Forced) return;
    }
    IsUpdating(true);
    TWgTreeItem* old = FOwner.FocusedItem();
    FOwner.AssignFocus(nullptr);
    if (FOwner.AutoExpand() && Item && FOwner.AutoCollapse) {
        for (TWgTreeItem* p = old; p; p = p->Parent()) {
            if (p == Item || Item->IsUnder(p)) break;
            p->Collapse(false);
        }
    }
    if (FHost) FHost->StopTimer(vtEdit);
    FOwner.AssignFocus(Item);
    if (Select) DoSelection(Item);
    if (Item) {
        if (FOwner.AutoExpand()) Item->Expand(false);
        if (!FVisibleList.empty() && FVisibleList.back() == Item && RowsBottom() > FClientHeight &&
            FVisibleList.size() > 1)
            ScrollByRows(1);
    }
    IsUpdating(false);
    if (FOwner.ChangeDelay == 0 || !Delayed || !FHost) {
        if (FOwner.OnItemFocused && !FOwner.FocusEventHeld()) FOwner.OnItemFocused(FOwner);
    } else {
        FHost->StopTimer(vtChange);
        FHost->StartTimer(vtChange, FOwner.ChangeDelay);
    }
}

void TWgTreeView::DoSelection(TWgTreeItem* Item) {
    if (!FOwner.MultiSelect()) {
        TWgTreeItem* anchor = FOwner.SelAnchor();
        if (anchor) FOwner.SetItemSelected(anchor, false);
        if (Item) FOwner.SetItemSelected(Item, true);
        FOwner.SetSelAnchor(Item);
        FSelectionChanged = true;
        return;
    }
    if (!Item) return;
    const auto* list = FOwner.SelectedList();
    const int level = FOwner.MultiSelectLevel;
    if (level >= 0) {
        TWgTreeItem* first = list && list->Count() > 0 ? list->Get(0) : nullptr;
        if (Item->Level() != level || (first && first->Level() != level)) FOwner.DeselectAll();
    }
    if (!Item->Selected()) {
        TWgTreeItem* first = list && list->Count() > 0 ? list->Get(0) : nullptr;
        if (FOwner.KeepSelectionWithinLevel && first && Item->Level() != first->Level()) return;
        FOwner.SetItemSelected(Item, true);
    } else {
        FOwner.SetItemSelected(Item, false);
        if (FOwner.SelAnchor() == Item) FOwner.SetSelAnchor(nullptr);
    }
    FSelectionChanged = true;
}

void TWgTreeView::SetSelected(TWgTreeItem* Item, bool Value) {
    if (!Item || !FOwner.MultiSelect() || Item->Selected() == Value) return;
    if (Value && FOwner.KeepSelectionWithinLevel) {
        const auto* list = FOwner.SelectedList();
        if (list && list->Count() > 0 && list->Get(0)->Level() != Item->Level()) return;
    }
    FOwner.SetItemSelected(Item, Value);
    FSelectionChanged = true;
}

void TWgTreeView::SelectRange(TWgTreeItem* From, TWgTreeItem* To, bool Select) {
    if (!From || !To) return;
    if (To->AbsoluteIndex() < From->AbsoluteIndex()) std::swap(From, To);
    // The rows from the first to the last, as the walk of the screen meets them.
    std::vector<TWgTreeItem*> rows;
    bool reached = false;
    FOwner.IterateFrom(
        true, false,
        [&](TWgTreeItem* Item, int, bool& Continue, void*, TWgTreeModel*) {
            rows.push_back(Item);
            if (Item == To) {
                reached = true;
                Continue = false;
            }
        },
        nullptr, From);
    if (!reached) return;
    IsUpdating(true);
    for (TWgTreeItem* item : rows)
        SetSelected(item, Select);
    IsUpdating(false);
}

void TWgTreeView::FireAfterSelectionChange() {
    FSelectionChanged = false;
    if (FOwner.OnAfterSelectionChange) FOwner.OnAfterSelectionChange(FOwner);
}

bool TWgTreeView::StartDelayedEdit() {
    if (FHost) FHost->StopTimer(vtEdit);
    if (FFrameSelecting || !FDelayedItem) return false;
    TWgTreeItem* item = FDelayedItem;
    FDelayedItem = nullptr;
    if (FOwner.OnEditRequest) FOwner.OnEditRequest(FOwner, item, FDelayedColumn);
    return true;
}

void TWgTreeView::TimerFired(TWgViewTimer Timer) {
    if (FHost) FHost->StopTimer(Timer);
    switch (Timer) {
    case vtChange:
        if (FOwner.OnItemFocused) FOwner.OnItemFocused(FOwner);
        break;
    case vtSearch:
        FSearchText.clear();
        break;
    case vtEdit:
        StartDelayedEdit();
        break;
    case vtHint:
        ShowLineHintNow();
        break;
    case vtHintHide:
        if (FHintShown && FHost) FHost->HideLineHint();
        FHintShown = false;
        break;
    }
}

// ---- incremental search

void TWgTreeView::KeyPress(WideChar Ch) {
    if (!FOwner.IncrementalSearch || Ch < 32) return;
    FSearchText += Ch;
    ProcessSearch(FSearchText);
}

void TWgTreeView::ProcessSearch(const WideString& Text) {
    if (Text.empty()) return;
    TWgTreeItem* focused = FOwner.FocusedItem();
    int start = 0, stop = -1;
    if (FOwner.IncrementalSearchScope == issWithinParent && focused) {
        // The siblings' numbers among themselves index the flat list of all
        // items. Deliberate: the scope is the start of the tree, as wide as
        // the family.
        start = focused->ParentItem()->GetFirstChild()->Index();
        stop = focused->ParentItem()->GetLastChild()->Index();
    } else if (focused) {
        start = focused->AbsoluteIndex();
        stop = start - 1;
    }
    const int count = FOwner.Items().Count();
    const WideString wanted = WideUpperCase(Text);
    for (int i = start, steps = 0; steps <= count; ++steps) {
        TWgTreeItem* item = FOwner.Items().Item(i);
        if (!item) break;
        WideString text = FOwner.IncrementalSearchColumn == iscMainText
                              ? item->Text()
                              : CellText(item, FOwner.SortSection());
        if (text.compare(0, HtmlTag.size(), HtmlTag) == 0) text = StripTags(text);
        const bool passed = (FOwner.FilteredVisibility() && item->Hidden()) || !item->Enabled();
        if (!passed && text.size() >= wanted.size()) {
            bool same = true;
            for (std::size_t k = 0; k < wanted.size() && same; ++k)
                same = UpperChar(text[k]) == wanted[k];
            if (same) {
                EnsureVisible(item);
                DoSetFocused(item, false, true, false);
                FireAfterSelectionChange();
                break;
            }
        }
        if (i == stop) break;
        ++i;
        if (i >= count) {
            if (stop == -1) break;
            i = 0;
        }
    }
    if (FHost) {
        FHost->StopTimer(vtSearch);
        FHost->StartTimer(vtSearch, FOwner.IncrementalSearchTimeout);
    }
}
