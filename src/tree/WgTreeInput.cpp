// Mouse and keyboard of the view: clicks, the rubber band, check boxes,
// expand buttons, edit requests, hot tracking, line hints and the key table.

#include "tree/WgTree.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"
#include "tree/WgTreeView.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr int DragThreshold = 5;

bool FarFrom(TPoint A, int X, int Y) {
    const double dx = X - A.X, dy = Y - A.Y;
    return std::sqrt(dx * dx + dy * dy) >= DragThreshold;
}
} // namespace

bool TWgTreeView::ItemUsable(TWgTreeItem* Item) const {
    return Item && (Item->Enabled() || FOwner.IgnoreEnabled());
}

void TWgTreeView::ExpandAndShowChildren(TWgTreeItem* Item) {
    Item->Expand(false);
    TWgTreeItem* last = Item->GetLastChild();
    while (last && FOwner.FilteredVisibility() && last->Hidden())
        last = last->GetPrevSibling();
    if (!last) return;
    EnsureVisible(last);
    // The children may not all fit: the parent stays the top row then.
    if (Item->VisIndex() < FTopIndex) ScrollToTop(Item);
}

void TWgTreeView::ToggleExpand(TWgTreeItem* Item) {
    if (!Item->Expanded()) {
        ExpandAndShowChildren(Item);
        return;
    }
    TWgTreeItem* focused = FOwner.FocusedItem();
    Item->Collapse(false);
    if (FOwner.MoveFocusOnCollapse() && FOwner.FocusedItem() != focused) {
        FireAfterSelectionChange();
        if (FOwner.OnItemFocused) FOwner.OnItemFocused(FOwner);
    }
}

void TWgTreeView::CheckBoxClick(TWgTreeItem* Item) {
    switch (Item->CheckBoxType()) {
    case ectRadioButton:
        Item->SetChecked(true);
        break;
    case ectThreeState: {
        static const std::uint8_t next[3] = {cbGrayed, cbUnchecked, cbChecked};
        Item->SetCheckBoxState(next[std::min<int>(Item->CheckBoxState(), 2)]);
        break;
    }
    default:
        Item->SetChecked(!Item->Checked());
        break;
    }
    if (FOwner.OnItemChecked) FOwner.OnItemChecked(FOwner, Item);
    if (FOwner.OnItemChange) FOwner.OnItemChange(FOwner, Item, icmCheckState);
}

void TWgTreeView::RequestDelayedEdit(TWgTreeItem* Item, int Column, bool Immediate) {
    if (FOwner.Designing()) return;
    if (FOwner.ShowColumns()) {
        if (Column != FLastClickColumn && !FOwner.QuickEditMode) return;
        TWgHeaderSection* s = FHeader.Sections().GetSection(Column);
        if (!s || !s->Editable) return;
    } else {
        Column = -1;
    }
    if (!FHost) return;
    FHost->StopTimer(vtEdit);
    FHost->StartTimer(vtEdit, Immediate ? 1 : FOwner.InplaceEditorDelay);
    FDelayedItem = Item;
    FDelayedColumn = Column;
}

void TWgTreeView::MouseDown(bool RightButton, unsigned Shift, int X, int Y) {
    if (FHost) FHost->StopTimer(vtEdit);
    Shift = NormalizeShift(Shift);
    const bool ctrl = Shift & ssCtrl, shift = Shift & ssShift;
    FPressed = true;
    FPressedRight = RightButton;
    FPressCoord = {X, Y};
    FMoved = false;
    FSelectionChanged = false;
    FSelectionPending = false;
    FDragging = false;
    int column = -1;
    TWgItemPart part = ipOutside;
    TWgTreeItem* item = GetItemAt(X, Y, column, part);
    if (part == ipOutside && (FOwner.ShowColumns() || !FOwner.RowSelect)) item = nullptr;
    const int row = GetItemAtY(Y);
    FPressRow = row >= 0 ? FTopIndex + row : FTopIndex + int(FVisibleList.size());
    FPressItem = item;
    FPressPart = part;
    if (item && !ItemUsable(item)) {
        FPressed = false; // a disabled row ends the press
        return;
    }
    if (part == ipButton && (ctrl || (Shift & ssDouble))) part = ipMainText;
    FPressPart = part;
    if (item && part == ipButton && !RightButton) {
        ToggleExpand(item);
        return;
    }
    if (item && part == ipColumn) {
        TWgCellControl* control = CellControl(item, column);
        if (control && WantsMouse(*control)) {
            // The control has the mouse until the release.
            FControlItem = item;
            FControlColumn = column;
            FControlRight = RightButton;
            const TPoint at = CellPoint(column, X, Y);
            if (control->OnMouseDown)
                control->OnMouseDown(*control, RightButton ? mbRight : mbLeft,
                                     TWgShiftState(Shift & 15), at.X, at.Y);
            return;
        }
        if (TWgHeaderSection* s = FHeader.Sections().GetSection(column); s && !s->ClickSelect)
            return;
    }

    IsUpdating(true);
    // With the right button or on a check box only the focus moves, with
    // RightClickSelect; otherwise the left rules apply.
    const bool focusOnly = (RightButton || part == ipCheckBox) && FOwner.RightClickSelect;
    if (!item) {
        if (!FOwner.AlwaysKeepFocus) DoSetFocused(nullptr, false);
        if (!FOwner.AlwaysKeepSelection) FOwner.DeselectAll();
    } else if (focusOnly) {
        DoSetFocused(item, false, true, false);
    } else {
        if (FOwner.MultiSelect()) {
            if (FOwner.SelectionMode == smSimple) {
                if (FOwner.FocusedItem() != item) DoSetFocused(item, false, true, false);
                SetSelected(item, !item->Selected());
                SetSelAnchor(item);
            } else if (shift) {
                TWgTreeItem* anchor = SelAnchor() ? SelAnchor() : FOwner.FocusedItem();
                if (!anchor) anchor = item;
                FOwner.DeselectAll();
                SetSelAnchor(anchor);
                SetSelected(anchor, true);
                SelectRange(anchor, item, true);
                DoSetFocused(item, false, true, false);
                FSelectionChanged = true;
            } else if (ctrl) {
                if (FOwner.FocusedItem() == item)
                    DoSelection(item);
                else
                    DoSetFocused(item, false);
                if (item->Selected()) SetSelAnchor(item);
            } else if (!item->Selected()) {
                FOwner.DeselectAll();
                if (FOwner.FocusedItem() == item)
                    DoSelection(item);
                else
                    DoSetFocused(item, false);
                SetSelAnchor(item);
                FSelectionChanged = true;
            } else {
                // Kept until the release, so that a drag of the selection can start.
                FSelectionPending = true;
                FPendingItem = item;
                FPendingShift = Shift;
                DoSetFocused(item, false, true, false);
            }
        } else {
            if (ctrl && !FOwner.AlwaysKeepSelection && item->Selected() && item->Focused()) {
                FOwner.SetItemSelected(item, false);
                FSelectionChanged = true;
            } else if (item->Focused()) {
                if (!item->Selected()) DoSelection(item);
            } else {
                DoSetFocused(item, false);
            }
        }
    }
    IsUpdating(false);
    if (FSelectionChanged && !FSelectionPending) FireAfterSelectionChange();
}

TWgCellControl* TWgTreeView::CellControl(TWgTreeItem* Item, int Column) const {
    if (!Item || !Item->UseStyles() || !FOwner.ShowColumns() || Column < 0 ||
        Column == MainColumn())
        return nullptr;
    TWgCellStyle* style = Item->GetStyles(TextIndexOfColumn(Column));
    TWgCellControl* control = style ? style->Control() : nullptr;
    return control && control->Visible && control->Enabled ? control : nullptr;
}

bool TWgTreeView::WantsMouse(const TWgCellControl& Control) {
    return Control.OnMouseDown || Control.OnMouseUp || Control.OnClick || Control.OnDblClick;
}

TPoint TWgTreeView::CellPoint(int Column, int X, int Y) const {
    // Cell terms: from the section's left side, and the row's top taken as
    // a multiple of the line height.
    TWgHeaderSection* s = FHeader.Sections().GetSection(Column);
    const int lh = std::max(FOwner.LineHeight(), 1);
    return {X + FLeftPosition - (s ? s->Left() : 0), ((Y % lh) + lh) % lh};
}

bool TWgTreeView::ControlMouseUp(bool RightButton, unsigned Shift, int X, int Y) {
    if (!FControlItem) return false;
    TWgTreeItem* pressed = FControlItem;
    const int pressedColumn = FControlColumn;
    FControlItem = nullptr;
    FControlColumn = -1;
    FPressed = false;
    if (RightButton != FControlRight) return true;
    TWgCellControl* control = CellControl(pressed, pressedColumn);
    if (!control) return true;
    const TPoint at = CellPoint(pressedColumn, X, Y);
    if (control->OnMouseUp)
        control->OnMouseUp(*control, RightButton ? mbRight : mbLeft, TWgShiftState(Shift & 7), at.X,
                           at.Y);
    // A click is a press and release in the same cell; the handler above
    // may have removed the control.
    int column = -1;
    TWgItemPart part = ipOutside;
    TWgTreeItem* item = GetItemAt(X, Y, column, part);
    control = CellControl(pressed, pressedColumn);
    if (!RightButton && control && item == pressed && column == pressedColumn && part == ipColumn &&
        control->OnClick)
        control->OnClick(*control);
    return true;
}

void TWgTreeView::MouseMove(unsigned Shift, int X, int Y, bool ButtonDown) {
    {
        // A pressed control follows the mouse; otherwise the one under it.
        TWgTreeItem* item = FControlItem;
        int column = FControlColumn;
        if (!item) {
            TWgItemPart part = ipOutside;
            item = GetItemAt(X, Y, column, part);
            if (part != ipColumn) item = nullptr;
        }
        if (TWgCellControl* control = CellControl(item, column); control && control->OnMouseMove) {
            const TPoint at = CellPoint(column, X, Y);
            control->OnMouseMove(*control, TWgShiftState(Shift & 7), at.X, at.Y);
        }
        if (FControlItem) return;
    }
    if (FOwner.Tracking()) {
        const int row = GetItemAtY(Y);
        TWgTreeItem* track = row >= 0 ? FVisibleList[std::size_t(row)] : nullptr;
        if (track != FTrackItem) {
            TWgTreeItem* old = FTrackItem;
            FTrackItem = track;
            if (old) InvalidateItem(old, -1);
            if (track) InvalidateItem(track, -1);
            if (FOwner.OnHotTrack) FOwner.OnHotTrack(FOwner, track);
        }
    }
    UpdateLineHint(X, Y);
    if (!FPressed || !ButtonDown) return;
    if (FFrameSelecting) {
        FrameMove(Shift, X, Y);
        return;
    }
    if (!FarFrom(FPressCoord, X, Y)) return;
    FMoved = true;
    if (FDragging) return;
    if (FPressItem && FOwner.DragAllowed) {
        bool can = true;
        if (FOwner.OnCanDrag) FOwner.OnCanDrag(FOwner, FOwner.FocusedItem(), can);
        const bool selection =
            FOwner.MultiSelect() ? FOwner.SelectedCount() > 0 : FOwner.SelAnchor() != nullptr;
        if (can && selection) {
            FDragging = true;
            FSelectionPending = false;
            if (FOwner.OnStartDrag) FOwner.OnStartDrag(FOwner, FPressItem);
            return;
        }
    }
    if (FOwner.MouseFrameSelect && FOwner.MultiSelect() && !FVisibleList.empty() &&
        FPressPart != ipMainText) {
        FFrameSelecting = true;
        FSelectionPending = false;
        if (FHost) FHost->StopTimer(vtEdit);
        if (!(NormalizeShift(Shift) & ssCtrl)) FOwner.DeselectAll();
        FFrameStart = {FPressCoord.X + FLeftPosition, FPressRow};
        FFrameRect = TRect{};
        FFrameRestore.clear();
        FFrameSet.clear();
        FrameMove(Shift, X, Y);
    }
}

void TWgTreeView::FrameMove(unsigned Shift, int X, int Y) {
    // Near the borders the view scrolls: a row at top and bottom, a step at the sides.
    if (Y < 0)
        ScrollByRows(-1);
    else if (Y >= FClientHeight)
        ScrollByRows(1);
    if (X < 0)
        SetHPosition(FLeftPosition - FOwner.ItemIndent());
    else if (X >= FClientWidth)
        SetHPosition(FLeftPosition + FOwner.ItemIndent());
    const int rowAtY = GetItemAtY(std::clamp(Y, 0, std::max(FClientHeight - 1, 0)));
    const int current = rowAtY >= 0 ? FTopIndex + rowAtY : FTopIndex + int(FVisibleList.size());
    const int x1 = std::min(FFrameStart.X, X + FLeftPosition);
    const int x2 = std::max(FFrameStart.X, X + FLeftPosition);
    const int r1 = std::min(FFrameStart.Y, current), r2 = std::max(FFrameStart.Y, current);

    // The band in view coordinates, for the XOR frame.
    const int lh = std::max(FOwner.LineHeight(), 1);
    const TRect band =
        Rect(x1 - FLeftPosition, (FFrameStart.Y - FTopIndex) * lh, x2 - FLeftPosition + 1, Y);
    if (FOwner.MouseFrameVisible && FHost) {
        if (!FFrameRect.IsEmpty()) FHost->DrawFocusFrame(FFrameRect);
        FFrameRect = Rect(band.Left, std::min(band.Top, band.Bottom), band.Right,
                          std::max(band.Top, band.Bottom) + 1);
        FHost->DrawFocusFrame(FFrameRect);
    }

    std::vector<TWgTreeItem*> set;
    for (int i = std::max(r1, 0); i <= r2; ++i) {
        TWgTreeItem* item = FOwner.VisibleItem(i);
        if (!item) break;
        const TRect tr = item->TextRect();
        if ((FOwner.RowSelect && FOwner.FullRowSelect) || (tr.Left <= x2 && x1 <= tr.Right))
            set.push_back(item);
    }
    const bool ctrl = NormalizeShift(Shift) & ssCtrl;
    IsUpdating(true);
    for (TWgTreeItem* item : set) {
        if (std::find(FFrameSet.begin(), FFrameSet.end(), item) != FFrameSet.end()) continue;
        auto saved = std::find_if(FFrameRestore.begin(), FFrameRestore.end(),
                                  [item](const auto& P) { return P.first == item; });
        if (saved == FFrameRestore.end()) FFrameRestore.emplace_back(item, item->Selected());
        SetSelected(item, ctrl ? !item->Selected() : true);
    }
    for (TWgTreeItem* item : FFrameSet) {
        if (std::find(set.begin(), set.end(), item) != set.end()) continue;
        for (const auto& [saved, state] : FFrameRestore)
            if (saved == item) SetSelected(item, state);
    }
    FFrameSet = std::move(set);
    IsUpdating(false);
}

void TWgTreeView::EndFrame() {
    if (FOwner.MouseFrameVisible && FHost && !FFrameRect.IsEmpty())
        FHost->DrawFocusFrame(FFrameRect);
    FFrameSelecting = false;
    FFrameRect = TRect{};
    FFrameRestore.clear();
    FFrameSet.clear();
    FireAfterSelectionChange();
}

void TWgTreeView::CancelMode() {
    FControlItem = nullptr;
    FControlColumn = -1;
    if (FFrameSelecting) EndFrame();
    FPressed = false;
    FSelectionPending = false;
}

void TWgTreeView::MouseUp(bool RightButton, unsigned Shift, int X, int Y) {
    if (FHost) FHost->StopTimer(vtEdit);
    if (ControlMouseUp(RightButton, Shift, X, Y)) return;
    if (!FPressed) return;
    FPressed = false;
    if (FFrameSelecting) {
        EndFrame();
        return;
    }
    int column = -1;
    TWgItemPart part = ipOutside;
    TWgTreeItem* item = GetItemAt(X, Y, column, part);
    if (part == ipOutside && (FOwner.ShowColumns() || !FOwner.RowSelect)) item = nullptr;

    if (FSelectionPending) {
        FSelectionPending = false;
        TWgTreeItem* pending = FPendingItem;
        FPendingItem = nullptr;
        const unsigned shift = FPendingShift;
        if (pending && !FDragging) {
            IsUpdating(true);
            if (!(shift & (ssCtrl | ssShift)) && FOwner.SelectionMode == smUsual) {
                FOwner.DeselectAll();
                SetSelected(pending, true);
                SetSelAnchor(pending);
            } else if (shift & ssShift) {
                TWgTreeItem* anchor = SelAnchor() ? SelAnchor() : pending;
                FOwner.DeselectAll();
                SetSelected(anchor, true);
                SelectRange(anchor, pending, true);
            }
            if (pending->Focused()) {
                if (!pending->Selected()) SetSelected(pending, true);
            } else {
                DoSetFocused(pending, false, true, false);
            }
            IsUpdating(false);
            FireAfterSelectionChange();
        }
    }

    if (!RightButton && item && part == ipCheckBox && item == FPressItem && ItemUsable(item) &&
        item->HasStaticFlag(sfCheckBoxEnabled))
        CheckBoxClick(item);

    // A click on the same row again, or any click in quick edit mode, asks
    // for an edit after a pause.
    if (!RightButton && !FMoved && !FDragging && FPressCoord == TPoint{X, Y} && part != ipOutside &&
        part != ipButton) {
        if ((part == ipMainText || part == ipColumn || part == ipInside) && item &&
            ItemUsable(item) && (item == FLastClickItem || FOwner.QuickEditMode) &&
            item->AllowEdit() && FOwner.DoInplaceEdit && (FClickedAgain || FOwner.QuickEditMode) &&
            FOwner.DblClickMode != dcmEdit)
            RequestDelayedEdit(item, column, false);
        FClickedAgain = true;
        FLastClickItem = item;
        FLastClickColumn = column;
    }
    FDragging = false;
    (void)Shift;
}

void TWgTreeView::DblClick(unsigned Shift, int X, int Y) {
    if (FHost) FHost->StopTimer(vtEdit);
    FDelayedItem = nullptr;
    int column = -1;
    TWgItemPart part = ipOutside;
    TWgTreeItem* item = GetItemAt(X, Y, column, part);
    if (!item || !ItemUsable(item)) return;
    if (TWgCellControl* control = part == ipColumn ? CellControl(item, column) : nullptr;
        control && WantsMouse(*control)) {
        if (control->OnDblClick) control->OnDblClick(*control);
        return;
    }
    if (FOwner.DblClickMode == dcmEdit &&
        (part == ipMainText || part == ipColumn || part == ipInside) && item->AllowEdit() &&
        FOwner.DoInplaceEdit) {
        FLastClickColumn = column;
        RequestDelayedEdit(item, column, true);
        if (FDelayedItem) return;
    }
    const bool onRow = part == ipMainText || (FOwner.RowSelect && part != ipCheckBox);
    if (onRow && FOwner.DblClickMode == dcmExpand &&
        (item->HasVisibleChildren() || item->HasStaticFlag(sfForceButtons)))
        ToggleExpand(item);
    (void)Shift;
}

// ---- line hints

void TWgTreeView::UpdateLineHint(int X, int Y) {
    if (FOwner.LineHintMode == shmNone || !FHost) return;
    const int row = GetItemAtY(Y);
    TWgTreeItem* item = row >= 0 ? FVisibleList[std::size_t(row)] : nullptr;
    if (item == FHintItem && !(FHintShown && FOwner.HideHintOnMove)) {
        FHintCoord = {X, Y};
        return;
    }
    if (FHintShown && (FOwner.HideHintOnMove || item != FHintItem)) {
        FHost->HideLineHint();
        FHintShown = false;
    }
    FHintItem = item;
    FHintCoord = {X, Y};
    FHost->StopTimer(vtHint);
    if (item) FHost->StartTimer(vtHint, FOwner.HintPause);
}

void TWgTreeView::ShowLineHintNow() {
    if (!FHintItem || !FHost) return;
    const auto it = std::find(FVisibleList.begin(), FVisibleList.end(), FHintItem);
    if (it == FVisibleList.end()) return;
    const TRect row = GetItemRect(int(it - FVisibleList.begin()));
    int column = -1;
    TWgItemPart part = ipOutside;
    GetItemAt(FHintCoord.X, FHintCoord.Y, column, part);
    const bool onMain = !FOwner.ShowColumns() || column < 0 || column == MainColumn();
    WideString text;
    if (FOwner.LineHintType == lhtMainTextOnly || (FOwner.LineHintType == lhtSmart && onMain))
        text = FHintItem->Text();
    else
        text = CellText(FHintItem, column);
    if (const auto bar = text.find(u'|'); bar != WideString::npos) text.resize(bar);
    if (text.empty()) return;
    TRect cell = row;
    int left = 0;
    if (onMain) {
        const TWgMainCellLayout L = LayoutMainCell(FHintItem, row);
        left = L.TextLeft;
        cell = Rect(L.TextLeft - FLeftPosition, row.Top, L.TextRight - FLeftPosition, row.Bottom);
    } else if (TWgHeaderSection* s = FHeader.Sections().GetSection(column)) {
        left = s->Left();
        cell = Rect(s->Left() - FLeftPosition, row.Top, s->Right() - FLeftPosition, row.Bottom);
    }
    (void)left;
    TCanvas& canvas = MeasureCanvas();
    canvas.SetFont(TreeFont());
    const int margin = FOwner.ItemIndent() * 3 / 5;
    const int textWidth = canvas.TextWidth(text);
    const bool cut = textWidth > cell.Width() - margin;
    const bool scrolledOut = cell.Left < 0 || cell.Right > FClientWidth;
    if (FOwner.LineHintMode == shmLong && !cut && !scrolledOut) return;
    FHost->ShowLineHint(Rect(cell.Left, cell.Top, cell.Left + textWidth + margin, cell.Bottom),
                        text);
    FHintShown = true;
    if (FOwner.HideHintOnTimer) FHost->StartTimer(vtHintHide, FOwner.LineHintTimeout);
}

// ---- keyboard

TWgTreeItem* TWgTreeView::NextEnabled(TWgTreeItem* From, bool Forward) const {
    if (!From && !Forward) return nullptr;
    const int start = From ? FOwner.VisibleIndexOf(From) : -1;
    if (!From || start >= 0) {
        for (int row = From ? start + (Forward ? 1 : -1) : 0;
             TWgTreeItem* item = FOwner.VisibleItem(row); row += Forward ? 1 : -1)
            if (ItemUsable(item)) return item;
        return nullptr;
    }
    // From a row that is not on show, the walk of the flat list decides: it
    // goes on through the start's siblings, shown or not.
    TWgTreeItem* found = nullptr;
    const bool ignore = FOwner.IgnoreEnabled();
    auto proc = [&](TWgTreeItem* Item, int Index, bool& Continue, void*, TWgTreeModel*) {
        if (Index == 0 && From) return; // the start itself
        if (Item->Enabled() || ignore) {
            found = Item;
            Continue = false;
        }
    };
    if (Forward)
        FOwner.IterateFrom(true, false, proc, nullptr, From);
    else if (From)
        FOwner.IterateBackFrom(true, false, proc, nullptr, From);
    return found;
}

TWgTreeItem* TWgTreeView::FindNewFocused(int Key, TWgTreeItem* Focused) const {
    switch (Key) {
    case VK_UP:
        return Focused ? NextEnabled(Focused, false) : NextEnabled(nullptr, true);
    case VK_DOWN:
        return NextEnabled(Focused, true);
    case VK_HOME:
        return NextEnabled(nullptr, true);
    case VK_END:
        for (int row = FOwner.TotalVisible() - 1; TWgTreeItem* item = FOwner.VisibleItem(row);
             --row)
            if (ItemUsable(item)) return item;
        return nullptr;
    case VK_PRIOR:
    case VK_NEXT: {
        if (!Focused) return NextEnabled(nullptr, true);
        const int page = FOwner.TotalVarHeightCount() > 0
                             ? std::max(int(FVisibleList.size()) - 1, 1)
                             : std::max(GetVisCount() - 1, 1);
        const int total = FOwner.TotalVisible();
        const int index = Focused->VisIndex();
        const int target = std::clamp(index + (Key == VK_NEXT ? page : -page), 0, total - 1);
        TWgTreeItem* item = FOwner.Items().ItemAsVis(target);
        if (!item || item == Focused) return nullptr;
        if (item->Enabled() || FOwner.IgnoreEnabled()) return item;
        return NextEnabled(item, Key == VK_NEXT);
    }
    default:
        return nullptr;
    }
}

void TWgTreeView::MoveFocusByKey(int Key, unsigned Shift, TWgTreeItem* NewFocus) {
    TWgTreeItem* old = FOwner.FocusedItem();
    if (!NewFocus || NewFocus == old) return;
    const bool ctrl = Shift & ssCtrl, shift = Shift & ssShift;
    if (FOwner.MultiSelect() && (ctrl || FOwner.SelectionMode == smSimple)) {
        const bool kept = old && old->Selected();
        DoSetFocused(NewFocus, false, true, false);
        if (old) SetSelected(old, kept);
    } else if (FOwner.MultiSelect() && shift) {
        TWgTreeItem* anchor = SelAnchor() ? SelAnchor() : (old ? old : NewFocus);
        SetSelAnchor(anchor);
        DoSetFocused(NewFocus, false, true, false);
        FOwner.DeselectAll();
        SetSelected(anchor, true);
        SelectRange(anchor, NewFocus, true);
        FSelectionChanged = true;
    } else if (FOwner.MultiSelect()) {
        FOwner.DeselectAll();
        DoSetFocused(NewFocus, false, true, false);
        SetSelected(NewFocus, true);
        SetSelAnchor(NewFocus);
        FSelectionChanged = true;
    } else {
        DoSetFocused(NewFocus, false);
    }
    // Still off the screen: scroll by the key.
    const int index = NewFocus->VisIndex();
    const int shown =
        FOwner.TotalVarHeightCount() > 0 ? int(FVisibleList.size()) - 1 : GetVisCount();
    if (index >= FTopIndex && index < FTopIndex + std::max(shown, 1)) return;
    const int page = std::max(GetVisCount() - 1, 1);
    switch (Key) {
    case VK_UP:
        ScrollToTop(NewFocus);
        break;
    case VK_DOWN:
        ScrollToBottom(NewFocus);
        break;
    case VK_PRIOR:
        SetVScroll(FTopIndex - page);
        if (NewFocus->VisIndex() < FTopIndex) ScrollToTop(NewFocus);
        break;
    case VK_NEXT:
        SetVScroll(FTopIndex + page);
        if (NewFocus->VisIndex() >= FTopIndex + GetVisCount()) ScrollToBottom(NewFocus);
        break;
    case VK_HOME:
        SetVScroll(0);
        break;
    case VK_END:
        SetVScroll(MaxTopIndex());
        break;
    default:
        EnsureVisible(NewFocus);
        break;
    }
    FMarks |= tsmClearVis | tsmClearAll | tsmUpdated;
}

void TWgTreeView::KeyDown(int Key, unsigned Shift) {
    if (FOwner.Designing() || FFrameSelecting) return;
    Shift = NormalizeShift(Shift);
    const bool ctrl = Shift & ssCtrl, shift = Shift & ssShift;
    const bool multi = FOwner.MultiSelect();
    if (multi) IsUpdating(true);
    FSelectionChanged = false;
    TWgTreeItem* focused = FOwner.FocusedItem();
    const bool usable = ItemUsable(focused);
    const bool expandable =
        focused && (focused->HasChildren() || focused->HasStaticFlag(sfForceButtons));
    if (Key == VK_LEFT || Key == VK_RIGHT) {
        if (FOwner.RightAlignedView) Key = Key == VK_LEFT ? VK_RIGHT : VK_LEFT;
        if (FOwner.HorzArrowsScroll) {
            SetHPosition(FLeftPosition + (Key == VK_LEFT ? -1 : 1) * FOwner.ItemIndent());
            Key = 0;
        }
    }
    switch (Key) {
    case 0x38: // the star over 8
        if (shift && usable && expandable) focused->Expand(true);
        break;
    case VK_MULTIPLY:
        if (usable && expandable) {
            focused->Expand(true);
            ExpandAndShowChildren(focused);
        }
        break;
    case VK_ADD:
        if (ctrl)
            AutoSizeAllColumns();
        else if (usable && expandable && !focused->Expanded())
            ExpandAndShowChildren(focused);
        break;
    case VK_SUBTRACT:
        if (usable && focused->Expanded()) focused->Collapse(false);
        break;
    case VK_DIVIDE:
        if (usable) focused->Collapse(true);
        break;
    case VK_BACK:
        if (focused && focused->Parent() && focused->Parent()->Enabled())
            MoveFocusByKey(Key, Shift, focused->Parent());
        break;
    case VK_SPACE:
        if (multi && usable) {
            if (FOwner.SelectionMode == smUsual && !ctrl && !shift) {
                FOwner.DeselectAll();
                SetSelAnchor(focused);
            } else if (FOwner.SelectionMode == smSimple) {
                SetSelAnchor(focused);
            }
            // The toggle works on the state the deselect left.
            SetSelected(focused, !focused->Selected());
            FSelectionChanged = true;
        }
        break;
    case VK_LEFT:
        if (usable && focused->Expanded())
            focused->Collapse(false);
        else if (focused)
            MoveFocusByKey(Key, Shift, focused->Parent());
        break;
    case VK_RIGHT:
        if (usable && !focused->Expanded() && expandable)
            ExpandAndShowChildren(focused);
        else if (focused)
            MoveFocusByKey(Key, Shift, focused->GetFirstVisibleChild());
        break;
    case VK_UP:
    case VK_DOWN:
    case VK_PRIOR:
    case VK_NEXT:
    case VK_HOME:
    case VK_END:
        MoveFocusByKey(Key, Shift, FindNewFocused(Key, focused));
        break;
    default:
        break;
    }
    if (multi) IsUpdating(false);
    if (FSelectionChanged) FireAfterSelectionChange();
}
