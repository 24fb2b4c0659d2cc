// The view's update lock, the rows on screen, scrolling and the link that
// the item model calls.

#include "tree/WgTreeView.h"

#include "tree/WgHeaderModel.h"
#include "tree/WgTree.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"

#include <algorithm>
#include <cstdlib>

TWgTreeView::TWgTreeView(TCustomWgTree& Owner) : FOwner(Owner), FHeader(*Owner.FHeader) {}

TWgTreeView::~TWgTreeView() = default;

TCanvas& TWgTreeView::MeasureCanvas() const {
    if (FMeasureCanvas) return *FMeasureCanvas;
    auto& self = const_cast<TWgTreeView&>(*this);
    if (!self.FOwnMeasureCanvas) self.FOwnMeasureCanvas = std::make_unique<TFixedMetricsCanvas>();
    self.FOwnMeasureCanvas->SetFont(TreeFont());
    return *self.FOwnMeasureCanvas;
}

TFont TWgTreeView::TreeFont() const {
    TFont font;
    const TWgTreeFont& f = FOwner.Font();
    font.Name.assign(f.Name.begin(), f.Name.end());
    font.SetPointSize(f.Size);
    font.Style = f.Styles;
    font.Color = FOwner.TextColor;
    return font;
}

// ---- the update lock

void TWgTreeView::IsUpdating(bool Value) {
    if (FInUpdate) return;
    if (Value)
        FOwner.BeginUpdate();
    else
        FOwner.EndUpdate();
}

void TWgTreeView::UpdateBegun() {
    FHeader.BeginUpdate();
}

void TWgTreeView::UpdateEnded(int Count) {
    FHeader.EndUpdate();
    if (FInUpdate || Count > 0 || FOwner.Destroying() || FOwner.Loading()) return;
    FInUpdate = true;
    if (FOwner.FilteredVisibility()) FOwner.ApplyVisFilter();
    if (FOwner.AutoLineHeight()) {
        const int height = ComputeLineHeight();
        if (height != FOwner.LineHeight()) {
            FOwner.SetLineHeight(height);
            FMarks |= tsmClearVis;
        }
    }
    if (FHRange == -1 && !FOwner.ShowColumns()) RecomputeHRange();
    if (FMarks & tsmDelayedSort) {
        if (FOwner.OnSortBegin) FOwner.OnSortBegin(FOwner);
        SortItem(FOwner.Items().Root(), true);
        if (FOwner.OnSortEnd) FOwner.OnSortEnd(FOwner);
        FMarks &= ~tsmDelayedSort;
    }
    if (FMarks & tsmUpdated) {
        if (FMarks & tsmVisUpdated) {
            // The rows on show are indexed here, once for the whole update.
            FOwner.TotalVisible();
            FMarks &= ~tsmVisUpdated;
        }
        if (FHost) {
            FNoUserScroll = true;
            UpdateScrollBars();
            FNoUserScroll = false;
        }
        if ((FMarks & tsmClearVis) && FHost) {
            SetVPosition(FTopIndex);
            FMarks &= ~tsmClearVis;
        }
        if (FOwner.ShowColumns() && FOwner.VirtualityLevel() == vlNone &&
            (FMarks & tsmColumnSizeUpdate)) {
            FMarks &= ~tsmColumnSizeUpdate;
            FitAllColumns();
        }
        if (FHost) {
            FNoUserScroll = true;
            UpdateScrollBars();
            FNoUserScroll = false;
        }
        Repaint();
        FMarks &= ~tsmUpdated;
    }
    FInUpdate = false;
}

void TWgTreeView::Repaint() {
    if (FOwner.IsLocked()) {
        FMarks |= tsmUpdated;
        return;
    }
    if (!(FMarks & (tsmRedrawMark | tsmClearAll))) {
        if (FHost) FHost->UpdateNow();
        return;
    }
    if (FHost) {
        if (!(FOwner.VerticalLines && FOwner.ShowColumns()) && !(FMarks & tsmClearAll)) {
            FHost->InvalidateRect(Rect(0, 0, FClientWidth, RowsBottom()));
        } else {
            FHost->InvalidateRect(Rect(0, 0, FClientWidth, FClientHeight));
            FMarks &= ~tsmClearAll;
        }
    }
    FMarks &= ~tsmRedrawMark;
}

void TWgTreeView::MarkStale(std::uint32_t Marks) {
    if (Marks & tsmHRange) FHRange = -1;
    if (Marks & tsmTopIndex) FTopIndex = 0;
    FMarks |= Marks & ~std::uint32_t(tsmHRange | tsmTopIndex);
    // A delayed fit is work of the update's layout step.
    if (Marks & tsmColumnSizeUpdate) FMarks |= tsmUpdated;
}

// ---- what the model tells the view

void TWgTreeView::ForgetItem(TWgTreeItem* Item) {
    if (FDelayedItem == Item) {
        FDelayedItem = nullptr;
        if (FHost) FHost->StopTimer(vtEdit);
    }
    if (FPressItem == Item) FPressItem = nullptr;
    if (FControlItem == Item) {
        FControlItem = nullptr;
        FControlColumn = -1;
    }
    if (FPendingItem == Item) {
        FPendingItem = nullptr;
        FSelectionPending = false;
    }
    if (FTrackItem == Item) FTrackItem = nullptr;
    if (FLastClickItem == Item) FLastClickItem = nullptr;
    if (FHintItem == Item) FHintItem = nullptr;
    std::erase_if(FFrameRestore, [Item](const auto& P) { return P.first == Item; });
    std::erase(FFrameSet, Item);
}

void TWgTreeView::RemoveVisibleRow(TWgTreeItem* Item) {
    for (int i = int(FVisibleList.size()) - 1; i >= 0; --i)
        if (FVisibleList[std::size_t(i)] == Item) {
            FVisibleList.erase(FVisibleList.begin() + i);
            return;
        }
}

void TWgTreeView::ClearVisibleRows() {
    FVisibleList.clear();
}

void TWgTreeView::InvalidateItem(TWgTreeItem* Item, int Column) {
    if (!FHost || FOwner.IsLocked()) {
        // Repainted by the update that ends the lock.
        FMarks |= tsmRedrawMark | tsmUpdated;
        return;
    }
    const auto it = std::find(FVisibleList.begin(), FVisibleList.end(), Item);
    if (it == FVisibleList.end()) return;
    TRect r = GetItemRect(int(it - FVisibleList.begin()));
    TWgHeaderSection* section =
        (Column >= 0 && FOwner.ShowColumns()) ? FHeader.Sections().GetSection(Column) : nullptr;
    if (section) {
        r.Left = section->Left() - FLeftPosition;
        r.Right = section->Right() - FLeftPosition;
    }
    FHost->InvalidateRect(r);
}

std::unique_ptr<TWgMarkupData> TWgTreeView::ParseMarkup(const WideString& Text) {
    return FOwner.OnMarkupParse ? FOwner.OnMarkupParse(Text) : nullptr;
}

bool TWgTreeView::Confirm(const char* Text, const char* Title) {
    // The widget asks the user; without a widget the answer is yes.
    return FOwner.OnConfirm ? FOwner.OnConfirm(Text, Title) : true;
}

// ---- rows

int TWgTreeView::ComputeLineHeight() const {
    int h = 0;
    if (FOwner.ShowImages()) {
        if (FOwner.Images) h = FOwner.Images->Height();
        if (FOwner.Images2) h = std::max(h, FOwner.Images2->Height());
    }
    h = std::max(h, FOwner.ItemIndent());
    const int font = TreeFont().Height;
    h = std::max(h, font >= 0 ? font + 2 : -font + 4);
    if (FOwner.ShowCheckboxes()) {
        if (FOwner.CustomCheckboxes)
            h = std::max({h, FOwner.CheckBoxGlyph.Height(), FOwner.RadioButtonGlyph.Height()});
        else
            h = std::max(h, FOwner.ItemIndent() - 2);
    }
    if (FOwner.BarStyle)
        h += 2;
    else if (FOwner.HorizontalLines)
        h += 1;
    return h;
}

int TWgTreeView::GetVisCount() const {
    const int lh = std::max(FOwner.LineHeight(), 1);
    return FClientHeight / lh;
}

int TWgTreeView::GetVisiCount() const {
    const int lh = std::max(FOwner.LineHeight(), 1);
    return (FClientHeight + lh - 1) / lh;
}

int TWgTreeView::RowHeight(TWgTreeItem* Item) const {
    return FOwner.TotalVarHeightCount() <= 0 ? FOwner.LineHeight() : Item->GetHeight();
}

void TWgTreeView::FillVisibleList(int Start) {
    FVisibleList.clear();
    int height = 0;
    for (int row = std::max(Start, 0); TWgTreeItem* item = FOwner.VisibleItem(row); ++row) {
        FVisibleList.push_back(item);
        height += RowHeight(item);
        // A partly visible last row belongs to the list.
        if (height > FClientHeight) break;
    }
}

int TWgTreeView::MaxTopIndex() {
    const int total = FOwner.TotalVisible();
    if (FOwner.TotalVarHeightCount() <= 0) return total - GetVisiCount() + 1;
    // Back from the last row until the rows no longer fit.
    int index = total, sum = 0;
    while (index > 0 && sum <= FClientHeight)
        sum += FOwner.VisibleItem(--index)->GetHeight();
    return sum > FClientHeight ? index + 1 : 0;
}

void TWgTreeView::SetVPosition(int Pos) {
    if (FOwner.TotalVisible() == 0) {
        FTopIndex = FBottomIndex = 0;
        FVisibleList.clear();
        return;
    }
    Pos = std::max(std::min(Pos, MaxTopIndex()), 0);
    FTopIndex = Pos;
    FillVisibleList(Pos);
    FBottomIndex = Pos + int(FVisibleList.size()) - 1;
}

void TWgTreeView::SetVScroll(int Pos) {
    IsUpdating(true);
    Pos = std::max(std::min(Pos, MaxTopIndex()), 0);
    if (Pos != FTopIndex) {
        FMarks |= tsmUpdated | tsmClearVis | tsmClearAll;
        FTopIndex = Pos;
    }
    FVScroll.Position = FTopIndex;
    IsUpdating(false);
    if (FOwner.OnScroll) FOwner.OnScroll(FOwner);
}

void TWgTreeView::SetHPosition(int Pos) {
    Pos = std::max(std::min(Pos, FHRange - FClientWidth), 0);
    if (Pos != FLeftPosition) {
        IsUpdating(true);
        FLeftPosition = Pos;
        FHeader.SetLeftPos(Pos);
        FMarks |= tsmClearAll | tsmUpdated | tsmRedrawMark;
        IsUpdating(false);
    }
    FHScroll.Position = FLeftPosition;
    if (FOwner.OnScroll) FOwner.OnScroll(FOwner);
}

int TWgTreeView::RowsBottom() const {
    int bottom = 0;
    for (TWgTreeItem* item : FVisibleList)
        bottom += RowHeight(item);
    return bottom;
}

bool TWgTreeView::UpdateScrollBars() {
    // Horizontal.
    if (FOwner.ShowColumns())
        FHRange = FHeader.Sections().Count() > 0 ? FHeader.SectionsWidth() : 0;
    const int hPage = FClientWidth + 1;
    const bool hNeeded = FHRange - hPage > 0 && !FOwner.HideHorzScrollBar;
    const bool hVisible = hNeeded || FOwner.ForcedScrollBars == 1 || FOwner.ForcedScrollBars == 3;
    if (!hNeeded) {
        FHRange = 0;
        FLeftPosition = 0;
        FHeader.SetLeftPos(0);
    }
    FLeftPosition = std::min(FLeftPosition, std::max(FHRange, 0));
    const bool hChanged = hVisible != FHScroll.Visible;
    FHScroll = {std::max(FHRange, 0), hPage, FLeftPosition, hNeeded, hVisible};

    // Vertical.
    const int total = FOwner.TotalVisible();
    const bool varHeights = FOwner.TotalVarHeightCount() > 0;
    const int vMax = varHeights ? std::max(MaxTopIndex(), 0) : std::max(total - 1, 0);
    const int vPage = varHeights ? 1 : std::max(GetVisCount() - 1, 0);
    const bool fits = FTopIndex < 1 && RowsBottom() <= FClientHeight &&
                      (int(FVisibleList.size()) == total || FVisibleList.empty());
    const bool vNeeded = !fits && !FOwner.HideVertScrollBar;
    const bool vVisible = vNeeded || FOwner.ForcedScrollBars == 2 || FOwner.ForcedScrollBars == 3;
    const bool vChanged = vVisible != FVScroll.Visible;
    FVScroll = {vMax, vPage, FTopIndex, vNeeded, vVisible};
    if (FHost) FHost->ScrollBarsChanged();
    return hChanged || vChanged;
}

void TWgTreeView::Resize(int ClientWidth, int ClientHeight) {
    if (ClientWidth == FClientWidth && ClientHeight == FClientHeight) return;
    IsUpdating(true);
    FClientWidth = std::max(ClientWidth, 0);
    FClientHeight = std::max(ClientHeight, 0);
    FHeader.Resize(FClientWidth);
    FMarks |= tsmClearVis | tsmClearAll | tsmUpdated;
    IsUpdating(false);
}

void TWgTreeView::RecomputeHRange() {
    int widest = 0;
    FOwner.Iterate(
        true, false,
        [&](TWgTreeItem* Item, int, bool&, void*, TWgTreeModel*) {
            widest = std::max(widest, MeasureItemWidth(Item));
        },
        nullptr);
    FHRange = widest;
}

// ---- bringing rows into view

void TWgTreeView::ScrollToTop(TWgTreeItem* Item) {
    const int index = Item ? Item->VisIndex() : -1;
    if (index >= 0) SetVScroll(index);
}

void TWgTreeView::ScrollToBottom(TWgTreeItem* Item) {
    const int index = Item ? Item->VisIndex() : -1;
    if (index < 0) return;
    if (FOwner.TotalVarHeightCount() <= 0) {
        SetVScroll(index - GetVisCount() + 1);
        return;
    }
    // Up from the row while the rows fit; the row itself is in, whatever its height.
    int top = index, sum = 0;
    for (int row = index; row >= 0; --row) {
        sum += FOwner.VisibleItem(row)->GetHeight();
        if (sum > FClientHeight && row != index) break;
        top = row;
    }
    SetVScroll(top);
}

void TWgTreeView::EnsureVisible(TWgTreeItem* Item) {
    if (!Item || Item == FOwner.Items().Root()) return;
    IsUpdating(true);
    Item->MakeVisible();
    IsUpdating(false);
    const int index = Item->VisIndex();
    if (index < 0) return;
    if (index < FTopIndex) {
        SetVScroll(index);
        return;
    }
    // Fully visible rows end at the client height.
    int y = 0;
    for (std::size_t i = 0; i < FVisibleList.size(); ++i) {
        const int h = RowHeight(FVisibleList[i]);
        if (FVisibleList[i] == Item) {
            if (y + h <= FClientHeight) return;
            break;
        }
        y += h;
    }
    ScrollToBottom(Item);
}

// ---- geometry

TRect TWgTreeView::GetItemRect(int Index) const {
    if (Index < 0 || Index >= int(FVisibleList.size()) || FOwner.Destroying()) return TRect{};
    int top = 0;
    for (int i = 0; i < Index; ++i)
        top += RowHeight(FVisibleList[std::size_t(i)]);
    return Rect(0, top, FClientWidth, top + RowHeight(FVisibleList[std::size_t(Index)]));
}

int TWgTreeView::GetItemAtY(int Y) const {
    if (Y < 0) return -1;
    int bottom = 0;
    for (std::size_t i = 0; i < FVisibleList.size(); ++i) {
        bottom += RowHeight(FVisibleList[i]);
        if (bottom > Y) return int(i);
    }
    return -1;
}
