// Layout of the main cell, hit testing and column fitting. The layout is
// computed in one place; painting, hit testing and fitting read it.

#include "tree/WgTree.h"
#include "tree/WgTreeErrors.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"
#include "tree/WgTreeView.h"

#include <algorithm>

namespace {
const WideString HtmlTag = u"<html>";

bool HasNextSiblingWithLines(const TWgTreeItem* Item, bool Filter) {
    for (TWgTreeItem* s = Item->GetNextSibling(); s; s = s->GetNextSibling()) {
        if (Filter && s->Hidden()) continue;
        return !s->HasStaticFlag(sfSuppressLines) || !s->StaticDataEx();
    }
    return false;
}

bool IsFirstSibling(const TWgTreeItem* Item, bool Filter) {
    for (TWgTreeItem* s = Item->GetPrevSibling(); s; s = s->GetPrevSibling())
        if (!Filter || !s->Hidden()) return false;
    return true;
}

std::int32_t ExIndex(const TWgTreeItem* Item, std::int32_t TWgTreeItemStaticDataEx::*Field) {
    return Item->StaticDataEx() ? Item->StaticDataEx()->*Field : -1;
}
} // namespace

int TWgTreeView::MainColumn() const {
    const int main = FOwner.MainTreeColumn();
    // A main column beyond the sections counts as the first.
    return (main >= 0 && main < FHeader.Sections().Count()) ? main : 0;
}

int TWgTreeView::TextIndexOfColumn(int Column) const {
    const int main = MainColumn();
    return Column < main ? Column : Column - 1;
}

WideString TWgTreeView::CellText(TWgTreeItem* Item, int SectionIndex) const {
    if (SectionIndex < 0 || !FOwner.ShowColumns() || SectionIndex == MainColumn())
        return Item->Text();
    if (FOwner.VirtualityLevel() != vlNone) {
        WideString text;
        if (FOwner.OnVirtualTextNeeded)
            FOwner.OnVirtualTextNeeded(FOwner, Item, SectionIndex, text);
        return text;
    }
    return Item->ColumnTextAt(TextIndexOfColumn(SectionIndex));
}

int TWgTreeView::CheckBoxWidth() const {
    if (FOwner.CustomCheckboxes) return FOwner.CheckBoxGlyph.Width() / 6;
    return FOwner.CheckBoxSize;
}

TRect TWgTreeView::MainCellRect(TWgTreeItem* Item, const TRect& Row) const {
    TRect r = Row;
    if (FOwner.ShowColumns()) {
        const TWgHeaderSections& sections = FHeader.Sections();
        if (TWgHeaderSection* s = sections.GetSection(MainColumn())) {
            r.Left = s->Left();
            r.Right = s->Right();
            if (Item->WholeLine())
                if (TWgHeaderSection* last = sections.LastVisibleSection()) r.Right = last->Right();
        }
    } else {
        r.Left = 0;
        r.Right = Row.Right + FLeftPosition;
    }
    if (FOwner.VerticalLines && !(FOwner.BarStyle && !FOwner.BarStyleVerticalLines)) --r.Right;
    return r;
}

void TWgTreeView::AddTreeLines(TWgTreeItem* Item, const TRect& Row, int LineLeft,
                               TWgMainCellLayout& L) const {
    const int indent = FOwner.ItemIndent();
    const bool filter = FOwner.FilteredVisibility();
    const int top = Row.Top, bottom = Row.Bottom, mid = Row.Top + Row.Height() / 2;
    const int right = L.Cell.Right;
    std::vector<TWgTreeItem*> ancestors;
    for (TWgTreeItem* p = Item->Parent(); p; p = p->Parent())
        ancestors.push_back(p);
    std::reverse(ancestors.begin(), ancestors.end());
    int slot = LineLeft; // the slot of level 0; one more per level
    for (TWgTreeItem* a : ancestors) {
        const int x = slot + indent / 2;
        const bool drawn = a->Level() > 0 || FOwner.ShowRoot();
        if (drawn && x < right && HasNextSiblingWithLines(a, filter))
            L.Lines.push_back({x, top, x, bottom});
        slot += indent;
    }
    if (Item->Level() == 0 && !FOwner.ShowRoot()) return;
    const int x = slot + indent / 2;
    if (x >= right) return;
    L.Lines.push_back({x, mid, std::min(slot + indent, right), mid});
    // No line comes down to the very first row of the tree.
    const bool fromMid = Item->Level() == 0 && IsFirstSibling(Item, filter);
    const int y1 = fromMid ? mid : top;
    const int y2 = HasNextSiblingWithLines(Item, filter) ? bottom : mid;
    if (y2 > y1) L.Lines.push_back({x, y1, x, y2});
}

TWgMainCellLayout TWgTreeView::LayoutMainCell(TWgTreeItem* Item, const TRect& Row) const {
    TWgMainCellLayout L;
    L.Cell = MainCellRect(Item, Row);
    TRect R = L.Cell;
    const int indent = FOwner.ItemIndent();
    const int level = Item->Level();
    const int mid = Row.Top + Row.Height() / 2;

    if (const TWgTreeItemStaticDataEx* ex = Item->StaticDataEx()) R.Left += ex->IndentAdjust;
    if ((FOwner.ShowRoot() && FOwner.ShowLines()) ||
        (FOwner.ShowButtons() && FOwner.ShowRootButtons))
        R.Left += indent;
    else
        R.Left += indent / 5;
    // Level 0 has its slot just left of here; each level one slot more.
    // The row's own slot, with its button and line stub, is the one that
    // the step after the button passes over, so that the text, images and
    // check box follow the button directly.
    if (FOwner.ShowLines() && !Item->HasStaticFlag(sfSuppressLines))
        AddTreeLines(Item, Row, R.Left - indent, L);
    R.Left += (level - 1) * indent;

    const bool hasButton = Item->HasVisibleChildren() || Item->HasStaticFlag(sfForceButtons);
    if (FOwner.ShowButtons() && !Item->HasStaticFlag(sfSuppressButtons) &&
        !(level == 0 && !FOwner.ShowRootButtons) && (hasButton || FOwner.ShowLeafButton)) {
        L.Button = true;
        L.ButtonSlot = Rect(R.Left, Row.Top, R.Left + indent, Row.Bottom);
        if (!Item->HasVisibleChildren() && FOwner.ShowLeafButton)
            L.ButtonGlyph = 2;
        else
            L.ButtonGlyph = Item->Expanded() && Item->HasVisibleChildren() ? 1 : 0;
    }
    R.Left += indent;

    bool before = false; // something stands left of the next image
    if (FOwner.ShowCheckboxes() && Item->HasStaticFlag(sfShowCheckBox)) {
        const int w = CheckBoxWidth();
        L.CheckBox = true;
        L.CheckRect = Bounds(R.Left, mid - w / 2, w, w);
        const std::uint8_t type = Item->CheckBoxType(), state = Item->CheckBoxState();
        unsigned flags = type == ectRadioButton ? DFCS_BUTTONRADIO : DFCS_BUTTONCHECK;
        if (state == cbChecked) flags |= DFCS_CHECKED;
        if (type == ectThreeState && state == cbGrayed) flags |= DFCS_CHECKED | DFCS_BUTTON3STATE;
        if (!Item->HasStaticFlag(sfCheckBoxEnabled) || !FOwner.Enabled) flags |= DFCS_INACTIVE;
        L.CheckFlags = flags;
        R.Left += w;
        before = true;
    }

    if (FOwner.ShowImages()) {
        const bool stateful = Item->Focused() || Item->Selected() || (Item->State() & stCut) ||
                              (Item->Expanded() && Item->HasVisibleChildren());
        auto place = [&](const TWgImageList* List, int Index, bool ShowEmpty, int& Image, int& X,
                         int& Width) {
            if (!List) return;
            const bool inList = Index >= 0 && Index < List->Count();
            if (!inList && !ShowEmpty) return;
            if (before) R.Left += indent / 3;
            Image = inList ? Index : -1;
            X = R.Left;
            Width = List->Width();
            R.Left += List->Width();
            before = true;
        };
        const TWgImageList* stateList = FOwner.Images2 ? FOwner.Images2 : FOwner.Images;
        int index2 = ExIndex(Item, stateful ? &TWgTreeItemStaticDataEx::StateImageIndex2
                                            : &TWgTreeItemStaticDataEx::ImageIndex2);
        if (index2 == -1 && FOwner.OnItemPicDraw2) FOwner.OnItemPicDraw2(FOwner, Item, index2);
        place(stateList, index2, FOwner.ShowEmptyImages2, L.StateImage, L.StateX, L.StateWidth);
        int index = ExIndex(Item, stateful ? &TWgTreeItemStaticDataEx::StateImageIndex
                                           : &TWgTreeItemStaticDataEx::ImageIndex);
        if (index == -1 && FOwner.OnItemPicDraw) FOwner.OnItemPicDraw(FOwner, Item, index);
        place(FOwner.Images, index, FOwner.ShowEmptyImages, L.MainImage, L.MainX, L.MainWidth);
    }

    const TWgCellStyle* style = Item->UseStyles() ? Item->GetMainStyle() : nullptr;
    L.OwnerDrawn = style && style->Style() == elhsOwnerDraw;
    if (!L.OwnerDrawn) R.Left += indent / 3;
    L.TextLeft = R.Left;
    L.TextRight = L.Cell.Right;
    if (FOwner.RightAlignedView) MirrorLayout(L);
    return L;
}

void TWgTreeView::MirrorLayout(TWgMainCellLayout& L) const {
    // Everything runs from the right edge leftward: mirror around the cell.
    const int c = L.Cell.Left + L.Cell.Right;
    auto rect = [c](TRect& R) { R = Rect(c - R.Right, R.Top, c - R.Left, R.Bottom); };
    for (TWgTreeLine& line : L.Lines) {
        line.X1 = c - 1 - line.X1;
        line.X2 = c - 1 - line.X2;
    }
    rect(L.ButtonSlot);
    rect(L.CheckRect);
    L.StateX = c - L.StateX - L.StateWidth;
    L.MainX = c - L.MainX - L.MainWidth;
    const int textLeft = L.TextLeft;
    L.TextLeft = L.Cell.Left;
    L.TextRight = c - textLeft;
}

// ---- hit testing

TWgTreeItem* TWgTreeView::GetItemAt(int X, int Y, int& Column, TWgItemPart& Part) const {
    Part = ipOutside;
    Column = -1;
    const int row = GetItemAtY(Y);
    if (row < 0) return nullptr;
    TWgTreeItem* item = FVisibleList[std::size_t(row)];
    int p = X + FLeftPosition;
    const int main = MainColumn();
    if (FOwner.ShowColumns()) {
        const TWgHeaderSections& sections = FHeader.Sections();
        for (int i = 0; i < sections.Count(); ++i) {
            TWgHeaderSection* s = sections.GetSectionByPos(i);
            if (!s->Visible()) continue;
            const int q = s == FHeader.LockedSection() ? p - FHeader.LeftPos() : p;
            if (s->Left() <= q && q < s->Right()) {
                Column = s->SectionIndex();
                if (Column != main && !item->WholeLine()) {
                    Part = ipColumn;
                    return item;
                }
                Part = ipInside;
                if (item->WholeLine()) Column = main;
                break;
            }
        }
    }
    const int indent = FOwner.ItemIndent();
    const int t = indent / 3;
    TRect tr = item->TextRect();
    if (FOwner.RightAlignedView) {
        // Compare in the mirrored cell, so that the same arithmetic applies.
        const TRect cell = MainCellRect(item, GetItemRect(row));
        const int c = cell.Left + cell.Right;
        p = c - 1 - p;
        tr = Rect(c - tr.Right, tr.Top, c - tr.Left, tr.Bottom);
    }
    if (tr.Left - t + 1 <= p && p <= tr.Right) {
        Part = ipMainText;
        Column = main;
        return item;
    }
    int q;
    const bool checkBox = FOwner.ShowCheckboxes() && item->HasStaticFlag(sfShowCheckBox);
    if (item->HasFlag(ifHasPicture)) {
        const int w = FOwner.Images ? FOwner.Images->Width() : 0;
        q = tr.Left - w - t + 1;
        if (q <= p && p < q + w) {
            Part = ipPicture;
            return item;
        }
        if (item->HasFlag(ifHasStatePicture) || checkBox) q -= t;
    } else {
        q = tr.Left - t + 1;
    }
    if (item->HasFlag(ifHasStatePicture)) {
        const TWgImageList* list = FOwner.Images2 ? FOwner.Images2 : FOwner.Images;
        const int w = list ? list->Width() : 0;
        q -= w;
        if (q <= p && p < q + w) {
            Part = ipPicture2;
            return item;
        }
    }
    if (checkBox) {
        const int e = q + 1, w = CheckBoxWidth();
        if (e - w <= p && p < e) {
            Part = ipCheckBox;
            return item;
        }
        q = e - w;
    }
    if (!FOwner.ShowButtons() || !(item->HasVisibleChildren() ||
                                   item->HasStaticFlag(sfForceButtons) || FOwner.ShowLeafButton))
        return item;
    if (q - indent <= p && p < q) {
        Part = item->HasStaticFlag(sfSuppressButtons) ? ipInside : ipButton;
        Column = main;
    }
    return item;
}

// ---- measuring and column fitting

int TWgTreeView::MeasureItemWidth(TWgTreeItem* Item) {
    TCanvas& canvas = MeasureCanvas();
    canvas.SetFont(TreeFont());
    const TWgMainCellLayout layout = LayoutMainCell(Item, Rect(0, 0, 0, FOwner.LineHeight()));
    return layout.TextLeft - layout.Cell.Left + canvas.TextWidth(Item->Text()) +
           FOwner.ItemIndent() / 3;
}

int TWgTreeView::MeasureCellHeight(TWgTreeItem* Item, int Column, int Width) {
    TCanvas& canvas = MeasureCanvas();
    canvas.SetFont(TreeFont());
    const int section = Column < 0 ? MainColumn() : Column;
    const WideString text = CellText(Item, section);
    // Markup takes the height of its layout; "<html>" in a plain item is text.
    if (Item->IsHTML() && text.compare(0, HtmlTag.size(), HtmlTag) == 0) {
        if (!FOwner.OnMarkupMeasure) return FOwner.LineHeight();
        TWgMarkupData* data = (section == MainColumn() || !FOwner.ShowColumns())
                                  ? Item->MainHtmlData()
                                  : Item->ColumnHtmlData(TextIndexOfColumn(section));
        const int height = FOwner.OnMarkupMeasure(text, data, std::max(Width, 1), Item->WordWrap());
        return std::max(height, FOwner.LineHeight());
    }
    if (!Item->Multiline()) return FOwner.LineHeight();
    TRect r = Rect(0, 0, std::max(Width, 1), 0);
    unsigned flags = DT_CALCRECT | DT_NOPREFIX | (Item->WordWrap() ? DT_WORDBREAK : 0);
    canvas.DrawText(text, r, flags);
    return std::max(r.Height() + 2, FOwner.LineHeight());
}

int TWgTreeView::MeasureColumnWidth(int SectionIndex, bool VisibleOnly) {
    TCanvas& canvas = MeasureCanvas();
    canvas.SetFont(TreeFont());
    const int main = MainColumn();
    const int margin = FOwner.ItemIndent() / 3;
    int widest = 0;
    FOwner.Iterate(
        VisibleOnly, true,
        [&](TWgTreeItem* Item, int, bool&, void*, TWgTreeModel*) {
            int w;
            if (SectionIndex == main) {
                // Level, indent, check box and images count as in the layout.
                const TWgMainCellLayout L =
                    LayoutMainCell(Item, Rect(0, 0, 0, FOwner.LineHeight()));
                const int offset =
                    FOwner.RightAlignedView ? L.Cell.Right - L.TextRight : L.TextLeft - L.Cell.Left;
                w = offset + canvas.TextWidth(Item->Text()) + margin;
            } else {
                const WideString text = CellText(Item, SectionIndex);
                w = canvas.TextWidth(FHeader.Sections().GetSection(SectionIndex)->Password
                                         ? WideString(u"******")
                                         : text) +
                    2 * margin;
            }
            widest = std::max(widest, w);
        },
        nullptr);
    return widest;
}

int TWgTreeView::FitWidth(TWgHeaderSection* Section) {
    // The header measures its captions in the tree's font.
    FHeader.MeasureTextWidth = [this](const WideString& Text) {
        TCanvas& canvas = MeasureCanvas();
        canvas.SetFont(TreeFont());
        return canvas.TextWidth(Text);
    };
    return std::max(FHeader.MeasureSectionWidth(Section),
                    MeasureColumnWidth(Section->SectionIndex(), false));
}

void TWgTreeView::AutoSizeColumn(int SectionIndex) {
    if (FOwner.IsLocked()) {
        FMarks |= tsmColumnSizeUpdate;
        return;
    }
    TWgHeaderSection* s = FHeader.Sections().GetSection(SectionIndex);
    if (!FOwner.ShowColumns() || !s || !s->AutoSize()) return;
    s->SetWidth(FitWidth(s));
    UpdateScrollBars();
    FMarks |= tsmClearAll | tsmRedrawMark;
    Repaint();
}

void TWgTreeView::FitAllColumns() {
    if (!FOwner.ShowColumns()) return;
    for (int i = 0; i < FHeader.Sections().Count(); ++i) {
        TWgHeaderSection* s = FHeader.Sections().GetSectionByPos(i);
        if (s->AutoSize()) s->SetWidth(FitWidth(s));
    }
    FMarks |= tsmClearAll | tsmRedrawMark;
}

void TWgTreeView::AutoSizeAllColumns() {
    if (FOwner.IsLocked()) {
        FMarks |= tsmColumnSizeUpdate;
        return;
    }
    IsUpdating(true);
    FitAllColumns();
    FMarks |= tsmUpdated;
    IsUpdating(false);
}

void TWgTreeView::AutoSizeSection(int SectionIndex) {
    AutoSizeColumn(SectionIndex);
}

void TWgTreeView::AutoSizeAllSections() {
    AutoSizeAllColumns();
}

// ---- where an in-place editor goes

TRect TWgTreeView::EditCellRect(TWgTreeItem* Item, int SectionIndex) {
    if (!Item) throw EWgTreeError(WgTreeMessages::SItemNotSpecified);
    if (std::find(FVisibleList.begin(), FVisibleList.end(), Item) == FVisibleList.end())
        EnsureVisible(Item);
    const auto it = std::find(FVisibleList.begin(), FVisibleList.end(), Item);
    if (it == FVisibleList.end()) return TRect{};
    const int row = int(it - FVisibleList.begin());
    const TRect text = Item->TextRect();
    const int cw = FClientWidth;
    TWgHeaderSection* s =
        FOwner.ShowColumns() ? FHeader.Sections().GetSection(SectionIndex) : nullptr;
    TRect cell;
    if (s) {
        const bool main = SectionIndex == MainColumn();
        const int l = main ? text.Left : s->Left();
        const int r = main ? text.Right : s->Right();
        const int w = r - l;
        int lp = FLeftPosition;
        if (!FOwner.RightAlignedView) {
            if (lp > l)
                lp = l;
            else if (cw > w && cw + lp < r)
                lp = r - cw;
            if (cw <= w) lp = l;
        } else {
            if (cw + lp < r || cw <= w)
                lp = r - cw;
            else if (lp > l)
                lp = l;
        }
        SetHPosition(lp);
        lp = FLeftPosition;
        if (!FOwner.RightAlignedView)
            cell = Rect(l - lp, 0, std::min(s->Right() - lp, cw - 1), 0);
        else
            cell = Rect(std::max(s->Left() - lp, 0), 0, r - lp, 0);
    } else {
        if (text.Left < FLeftPosition)
            SetHPosition(text.Left);
        else if (text.Left >= FLeftPosition + cw)
            SetHPosition(text.Left - cw + 1);
        const int lp = FLeftPosition;
        cell = FOwner.RightAlignedView ? Rect(0, 0, text.Right - lp, 0)
                                       : Rect(text.Left - lp, 0, cw - 1, 0);
    }
    const TRect r = GetItemRect(row);
    cell.Top = r.Top;
    cell.Bottom = r.Bottom;
    return cell;
}
