// Painting of the tree: background, rows in the order of VisibleList, the
// empty area and the divider lines, as operations on a TCanvas.

#include "tree/WgTree.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeView.h"

#include <algorithm>
#include <array>

namespace {
const WideString HtmlTag = u"<html>";
const WideString PasswordText = u"******";
constexpr unsigned DefaultCellFlags = DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS;

// The program's own expand glyphs ("PLUSBMP", "MINUSBMP", "LEAFBMP"): a
// 9 by 9 box in grey on white with the sign in black; a leaf is the box.
std::array<TMemoryBitmap, 3> MakeButtonGlyphs() {
    std::array<TMemoryBitmap, 3> out;
    for (int k = 0; k < 3; ++k) {
        TMemoryBitmap& b = out[std::size_t(k)];
        b.SetSize(9, 9, ColorToPixel(0xFFFFFF));
        for (int i = 0; i < 9; ++i)
            for (int e : {0, 8}) {
                b.SetPixel(i, e, ColorToPixel(0x808080));
                b.SetPixel(e, i, ColorToPixel(0x808080));
            }
        if (k == 2) continue;
        for (int i = 2; i <= 6; ++i)
            b.SetPixel(i, 4, ColorToPixel(0));
        if (k == 0)
            for (int i = 2; i <= 6; ++i)
                b.SetPixel(4, i, ColorToPixel(0));
    }
    return out;
}

const TMemoryBitmap& ButtonGlyph(int Kind) {
    static const std::array<TMemoryBitmap, 3> glyphs = MakeButtonGlyphs();
    return glyphs[std::size_t(Kind)];
}

// One sixth of a glyph strip: the frame for a check box state.
TMemoryBitmap GlyphFrame(const TMemoryBitmap& Strip, int Frame) {
    const int w = Strip.Width() / 6;
    TMemoryBitmap out(w, Strip.Height());
    for (int y = 0; y < out.Height(); ++y)
        for (int x = 0; x < w; ++x)
            out.SetPixel(x, y, Strip.Pixel(Frame * w + x, y));
    return out;
}

bool Meets(const TRect& A, const TRect& B) {
    TRect r;
    return IntersectRect(r, A, B);
}

bool StartsWithHtml(const WideString& S) {
    return S.compare(0, HtmlTag.size(), HtmlTag) == 0;
}
} // namespace

void TWgTreeView::SetHasFocus(bool Value) {
    if (Value == FHasFocus) return;
    FHasFocus = Value;
    // Selection and focus colours change with the focus.
    IsUpdating(true);
    FMarks |= tsmRedrawMark | tsmClearAll | tsmUpdated;
    IsUpdating(false);
}

void TWgTreeView::Paint(TCanvas& Canvas, const TRect& UpdateRect) {
    if (FOwner.UpdateCount() > 0) {
        FMarks |= tsmClearAll;
        return;
    }
    Canvas.SetDoubleBuffered(FOwner.DoubleBuffered);
    if (FOwner.DoubleBuffered) Canvas.BeginBuffer(UpdateRect);
    Canvas.SaveClip();
    Canvas.IntersectClipRect(UpdateRect);
    const TMemoryBitmap& picture = FOwner.Background;
    if (FOwner.BackgroundType == bgtColorFill || picture.Empty()) {
        Canvas.SetBrushColor(FOwner.BkColor);
        Canvas.FillRect(UpdateRect);
    } else if (FOwner.BackgroundType == bgtStretchBitmap) {
        Canvas.StretchDraw(Rect(0, 0, FClientWidth, FClientHeight), picture);
    } else {
        // Tiles from the top left; only those that meet the update rectangle.
        const int w = picture.Width(), h = picture.Height();
        for (int y = UpdateRect.Top / h * h; y < UpdateRect.Bottom; y += h)
            for (int x = UpdateRect.Left / w * w; x < UpdateRect.Right; x += w)
                Canvas.Draw(x, y, picture);
    }
    RedrawTree(Canvas, UpdateRect);
    Canvas.RestoreClip();
    if (FOwner.DoubleBuffered) Canvas.EndBuffer();
}

void TWgTreeView::RedrawTree(TCanvas& Canvas, const TRect& Clip) {
    const bool columns = FOwner.ShowColumns();
    if (columns) FHeader.SetLeftPos(FLeftPosition);
    if (FOwner.MainTreeColumn() >= FHeader.Sections().Count()) FOwner.SetMainTreeColumn(0);
    const int rowsRight = columns ? FHeader.SectionsWidth() - FLeftPosition : FClientWidth;

    int top = 0;
    for (std::size_t i = 0; i < FVisibleList.size(); ++i) {
        TWgTreeItem* item = FVisibleList[i];
        const int height = RowHeight(item);
        TRect row = Rect(0, top, rowsRight, top + height);
        top += height;
        if (!Meets(row, Clip)) continue;
        const TWgTreeItemStaticDataEx* ex = item->StaticDataEx();
        const TWgItemBorderStyle border = ex ? ex->BorderStyle : ibsNone;
        if (FOwner.HorizontalLines && !FOwner.BarStyle && border == ibsNone) --row.Bottom;
        if (!item->UseStyles()) Canvas.SetFont(TreeFont());
        const bool framed = FOwner.BarStyle || border != ibsNone;
        TRect inner = row;
        if (framed) inner = Rect(row.Left + 1, row.Top + 1, row.Right - 1, row.Bottom - 1);
        if (FOwner.OnItemPreDraw) FOwner.OnItemPreDraw(FOwner, item);
        DrawRow(Canvas, item, inner, int(i), Clip);
        if (!framed) continue;
        switch (border) {
        case ibsRaised:
            Canvas.DrawEdge(row, EDGE_RAISED, BF_RECT);
            break;
        case ibsFlat:
            Canvas.DrawEdge(row, EDGE_RAISED, BF_RECT | BF_FLAT);
            break;
        case ibsSunken:
            Canvas.DrawEdge(row, EDGE_SUNKEN, BF_RECT);
            break;
        case ibsSpace:
            Canvas.SetPenColor(ex->BorderSpaceColor);
            Canvas.FrameRect(row);
            break;
        default:
            Canvas.DrawEdge(row, item->Selected() ? EDGE_SUNKEN : EDGE_RAISED, BF_RECT);
            break;
        }
    }
    const int rowsBottom = top;

    if (FOwner.BackgroundType == bgtColorFill) {
        Canvas.SetBrushColor(FOwner.BkColor);
        if (rowsBottom < FClientHeight)
            Canvas.FillRect(Rect(0, rowsBottom, FClientWidth, FClientHeight));
        if (columns && rowsRight < FClientWidth && rowsBottom > 0)
            Canvas.FillRect(Rect(rowsRight, 0, FClientWidth, rowsBottom));
    }
    if (columns && FOwner.SortColumnColor != clNone && rowsBottom < FClientHeight)
        if (TWgHeaderSection* s = FHeader.Sections().GetSection(FOwner.SortSection());
            s && s->Visible()) {
            Canvas.SetBrushColor(FOwner.SortColumnColor);
            Canvas.FillRect(Rect(s->Left() - FLeftPosition, rowsBottom, s->Right() - FLeftPosition,
                                 FClientHeight));
        }

    if (FOwner.HorizontalLines && !(FOwner.BarStyle || FOwner.BarStyleVerticalLines)) {
        Canvas.SetPenColor(FOwner.HorzDivLinesColor);
        Canvas.SetPenStyle(psSolid);
        int y = 0;
        for (TWgTreeItem* item : FVisibleList) {
            y += RowHeight(item);
            if (!item->HasStaticFlag(sfDrawHLine)) continue;
            Canvas.MoveTo(0, y - 1);
            Canvas.LineTo(rowsRight, y - 1);
        }
    }

    if (FOwner.VerticalLines && columns) {
        const int bottom = FOwner.VerticalLinesLong ? FClientHeight : rowsBottom;
        const TWgHeaderSection* locked = FHeader.LockedSection();
        Canvas.SetPenColor(FOwner.VertDivLinesColor);
        Canvas.SetPenStyle(psSolid);
        const TWgHeaderSections& sections = FHeader.Sections();
        for (int i = 0; i < sections.Count(); ++i) {
            const TWgHeaderSection* s = sections.GetSectionByPos(i);
            if (!s->Visible() || s->Width() <= 0) continue;
            const int x = s->Right() - FLeftPosition;
            if (locked && locked != s && locked->Visible() && x < locked->Width()) continue;
            Canvas.MoveTo(x, 0);
            Canvas.LineTo(x, bottom);
        }
    }
}

TWgCellStyle* TWgTreeView::CellStyleOf(TWgTreeItem* Item, int SectionIndex) const {
    if (!Item->UseStyles()) return nullptr;
    if (SectionIndex < 0 || SectionIndex == MainColumn()) return Item->GetMainStyle();
    // A column of UseMainStyle shows its cells in the item's main style.
    const TWgHeaderSection* section =
        FOwner.ShowColumns() ? FHeader.Sections().GetSection(SectionIndex) : nullptr;
    if (section && section->UseMainStyle) return Item->GetMainStyle();
    return Item->GetStyles(TextIndexOfColumn(SectionIndex));
}

void TWgTreeView::SetRowFont(TCanvas& Canvas, TWgTreeItem* Item, int SectionIndex) {
    TFont font = TreeFont();
    const TWgCellStyle* style = CellStyleOf(Item, SectionIndex);
    if (style) {
        font.Name.assign(style->FontName().begin(), style->FontName().end());
        font.SetPointSize(style->FontSize());
        font.Style = style->FontStyles();
    } else if (!Item->HasStaticFlag(sfParentStyle) && Item->StaticDataEx()) {
        const std::uint16_t state = Item->State();
        font.Style = TFontStyles((state & stBold ? fsBold : 0) | (state & stItalic ? fsItalic : 0) |
                                 (state & stUnderlined ? fsUnderline : 0) |
                                 (state & stStrikedOut ? fsStrikeOut : 0));
    }
    if (Item == FTrackItem && FOwner.Tracking() && FOwner.UnderlineTracked)
        font.Style |= fsUnderline;
    font.Color = Canvas.Font().Color;
    Canvas.SetFont(font);
}

void TWgTreeView::DrawRow(TCanvas& Canvas, TWgTreeItem* Item, const TRect& Row, int VisPos,
                          const TRect& Clip) {
    const bool parentColors = !Item->StaticDataEx() || Item->HasStaticFlag(sfParentColors);
    const TWgTreeItemStaticDataEx* ex = Item->StaticDataEx();
    const TWgItemBorderStyle border = ex ? ex->BorderStyle : ibsNone;

    // Row colours, each later rule overriding the earlier.
    TColor rowBk = clNone;
    TColor text = FOwner.TextColor;
    if (!parentColors) text = ex->Color;
    if (!parentColors && Item->HasStaticFlag(sfUseBkColor)) rowBk = ex->RowBkColor;
    const bool selected = Item->Selected() && (FHasFocus || !FOwner.HideSelection) &&
                          !FOwner.BarStyle && border == ibsNone;
    const TColor selBk = FHasFocus ? FOwner.FocusedSelectColor : FOwner.HideSelectColor;
    const TColor selText = FHasFocus ? FOwner.FocusedSelectTextColor : FOwner.HideSelectTextColor;
    if (!selected && FOwner.StripedItems)
        rowBk = (VisPos + FTopIndex) % 2 == 0 ? FOwner.StripedEvenColor : FOwner.StripedOddColor;
    if (Item == FTrackItem && FOwner.RowHotTrack) rowBk = FOwner.TrackColor;
    const bool fullRow = selected && FOwner.RowSelect && FOwner.FullRowSelect;

    auto cellColors = [&](int Section, TColor& Bk, TColor& Fg, bool& Highlight) {
        Highlight = fullRow || (selected && Section >= 0 && Section == FOwner.SelectColumn);
        Bk = Highlight ? selBk : rowBk;
        Fg = Highlight ? selText : text;
        if (Highlight) return;
        if (!parentColors && Item->HasStaticFlag(sfUseBkColor) && ex->BkColor != 0)
            Bk = ex->BkColor;
        const TWgCellStyle* style = CellStyleOf(Item, Section);
        if (style && style->UseBkColor()) Bk = style->CellBkColor();
        if (style && !style->OwnerProps()) Fg = style->TextColor();
        if (FOwner.SortColumnColor != clNone && FOwner.ShowColumns() &&
            Section == FOwner.SortSection())
            Bk = FOwner.SortColumnColor;
        if (Item == FTrackItem && FOwner.RowHotTrack) Bk = FOwner.TrackColor;
    };

    if (!FOwner.ShowColumns()) {
        TColor bk, fg;
        bool highlight;
        cellColors(-1, bk, fg, highlight);
        if (bk != clNone) {
            Canvas.SetBrushColor(bk);
            Canvas.FillRect(Row);
        }
        DrawMainCell(Canvas, Item, Row, fg, selected && !highlight, selBk);
    } else {
        const TWgHeaderSections& sections = FHeader.Sections();
        const int main = MainColumn();
        for (int i = 0; i < sections.Count(); ++i) {
            TWgHeaderSection* s = sections.GetSectionByPos(i);
            if (!s->Visible()) continue;
            const int index = s->SectionIndex();
            if (Item->WholeLine() && index != main) continue;
            TRect cell =
                Rect(s->Left() - FLeftPosition, Row.Top, s->Right() - FLeftPosition, Row.Bottom);
            if (Item->WholeLine())
                if (TWgHeaderSection* last = sections.LastVisibleSection())
                    cell.Right = last->Right() - FLeftPosition;
            if (!Meets(cell, Clip)) continue;
            TColor bk, fg;
            bool highlight;
            cellColors(index, bk, fg, highlight);
            if (bk != clNone) {
                Canvas.SetBrushColor(bk);
                Canvas.FillRect(cell);
            }
            if (index == main) {
                DrawMainCell(Canvas, Item, Row, fg, selected && !highlight, selBk);
                continue;
            }
            TFont font = Canvas.Font();
            font.Color = fg;
            Canvas.SetFont(font);
            SetRowFont(Canvas, Item, index);
            const int margin = FOwner.ItemIndent() / 3;
            TRect textRect = Rect(cell.Left + margin, cell.Top, cell.Right - margin, cell.Bottom);
            unsigned flags = DefaultCellFlags;
            if (s->Alignment == hsaCenter) flags |= DT_CENTER;
            if (s->Alignment == hsaRight) flags |= DT_RIGHT;
            DrawCellText(Canvas, Item, index, textRect,
                         s->Password ? PasswordText : CellText(Item, index), flags);
        }
    }

    if (FOwner.DrawFocusRect && !FOwner.HideFocusRect && FHasFocus && Item->Focused()) {
        TRect r = Row;
        if (!(FOwner.RowSelect && FOwner.FullRowSelect)) {
            const TRect tr = Item->TextRect();
            r = Rect(tr.Left - FLeftPosition, Row.Top, tr.Right - FLeftPosition, Row.Bottom);
        }
        Canvas.SetPenColor(text);
        Canvas.DrawFocusRect(r);
    }
    if (Item->HasStaticFlag(sfStrikedOutLine)) {
        const int y = Row.Top + Row.Height() / 2;
        Canvas.SetPenColor(ex->StrikedLineColor);
        Canvas.SetPenStyle(psSolid);
        Canvas.MoveTo(Row.Left, y);
        Canvas.LineTo(Row.Right, y);
    }
}

void TWgTreeView::DrawTreeLines(TCanvas& Canvas, const TWgMainCellLayout& L, int Shift) {
    const bool dotted = FOwner.LinesStyle == 2;
    Canvas.SetPenColor(FOwner.LinesColor);
    Canvas.SetPenStyle(dotted ? psDot : psSolid);
    for (const TWgTreeLine& line : L.Lines) {
        int x1 = line.X1 - Shift, y1 = line.Y1;
        const int x2 = line.X2 - Shift, y2 = line.Y2;
        // Dots start where X xor Y is even, so that crossing lines share a grid.
        if (dotted && ((x1 ^ y1) & 1)) {
            if (x1 == x2)
                ++y1;
            else
                x1 += x2 > x1 ? 1 : -1;
        }
        if (x1 == x2 && y1 >= y2) continue;
        if (y1 == y2 && x1 == x2) continue;
        Canvas.MoveTo(x1, y1);
        Canvas.LineTo(x2, y2);
    }
}

void TWgTreeView::DrawMainCell(TCanvas& Canvas, TWgTreeItem* Item, const TRect& Row, TColor RowText,
                               bool Selected, TColor SelBk) {
    const TWgMainCellLayout L = LayoutMainCell(Item, Row);
    const int shift = FLeftPosition;
    if (!L.Lines.empty()) DrawTreeLines(Canvas, L, shift);

    if (L.Button) {
        const TMemoryBitmap* glyph = &ButtonGlyph(L.ButtonGlyph);
        if (FOwner.CustomPlusMinus) {
            const TMemoryBitmap& own = L.ButtonGlyph == 0   ? FOwner.PlusPicture
                                       : L.ButtonGlyph == 1 ? FOwner.MinusPicture
                                                            : FOwner.LeafPicture;
            if (!own.Empty()) glyph = &own;
        }
        const TRect slot = L.ButtonSlot;
        const int x = slot.Left - shift + (slot.Width() - glyph->Width()) / 2;
        const int y = slot.Top + (slot.Height() - glyph->Height()) / 2;
        const TColor key = FOwner.PlusMinusTransparent
                               ? PixelToColor(glyph->Pixel(0, glyph->Height() - 1))
                               : clNone;
        // A glyph taller than the row is cut to it.
        const bool crop = glyph->Height() > Row.Height();
        if (crop) {
            Canvas.SaveClip();
            Canvas.IntersectClipRect(Row);
        }
        Canvas.Draw(x, y, *glyph, key);
        if (crop) Canvas.RestoreClip();
    }

    if (L.CheckBox) {
        const TRect r = Rect(L.CheckRect.Left - shift, L.CheckRect.Top, L.CheckRect.Right - shift,
                             L.CheckRect.Bottom);
        if (FOwner.CustomCheckboxes) {
            const TMemoryBitmap& strip = Item->CheckBoxType() == ectRadioButton
                                             ? FOwner.RadioButtonGlyph
                                             : FOwner.CheckBoxGlyph;
            const int frame =
                std::min<int>(Item->CheckBoxState(), 2) + ((L.CheckFlags & DFCS_INACTIVE) ? 3 : 0);
            if (strip.Width() >= 6) Canvas.Draw(r.Left, r.Top, GlyphFrame(strip, frame));
        } else {
            Canvas.DrawFrameControl(r, DFC_BUTTON, L.CheckFlags);
        }
        if (FOwner.CheckBoxFlat) {
            Canvas.SetPenColor(clSystemColor | 16u);
            Canvas.FrameRect(r);
        }
    }

    std::uint32_t flags = Item->Flags() & ~std::uint32_t(ifHasPicture | ifHasStatePicture);
    const TWgImageList* stateList = FOwner.Images2 ? FOwner.Images2 : FOwner.Images;
    if (L.StateImage >= 0 && stateList) {
        const TMemoryBitmap& image = *stateList->Get(L.StateImage);
        Canvas.Draw(L.StateX - shift, Row.Top + (Row.Height() - stateList->Height()) / 2, image);
        flags |= ifHasStatePicture;
    }
    if (L.MainImage >= 0 && FOwner.Images) {
        const TMemoryBitmap& image = *FOwner.Images->Get(L.MainImage);
        Canvas.Draw(L.MainX - shift, Row.Top + (Row.Height() - FOwner.Images->Height()) / 2, image);
        flags |= ifHasPicture;
    }
    Item->SetFlagsRaw(flags);

    TFont font = Canvas.Font();
    font.Color = Selected ? FOwner.FocusedSelectTextColor : RowText;
    if (Selected && !FHasFocus) font.Color = FOwner.HideSelectTextColor;
    Canvas.SetFont(font);
    SetRowFont(Canvas, Item, -1);
    const WideString text = FOwner.ShowColumns() && FHeader.Sections().GetSection(MainColumn()) &&
                                    FHeader.Sections().GetSection(MainColumn())->Password
                                ? PasswordText
                                : Item->Text();
    const int width = std::min(Canvas.TextWidth(text), std::max(L.TextRight - L.TextLeft, 0));
    TRect textRect = FOwner.RightAlignedView
                         ? Rect(L.TextRight - width, Row.Top, L.TextRight, Row.Bottom)
                         : Rect(L.TextLeft, Row.Top, L.TextLeft + width, Row.Bottom);
    Item->SetTextRect(textRect);
    if (Selected) {
        // Without a full-row selection only the text shows it.
        Canvas.SetBrushColor(SelBk);
        Canvas.FillRect(Rect(textRect.Left - shift, Row.Top, textRect.Right - shift, Row.Bottom));
    }
    if (L.OwnerDrawn) return;
    unsigned dt = DefaultCellFlags;
    if (const TWgCellStyle* style = Item->UseStyles() ? Item->GetMainStyle() : nullptr)
        dt = style->TextFlags();
    if (Item->Multiline()) dt = (dt & ~DT_SINGLELINE) | (Item->WordWrap() ? DT_WORDBREAK : 0);
    if (FOwner.RightAlignedText || FOwner.RightAlignedView) dt |= DT_RIGHT;
    TRect area = Rect(L.TextLeft - shift, Row.Top, L.TextRight - shift, Row.Bottom);
    DrawCellText(Canvas, Item, -1, area, text, dt);
}

void TWgTreeView::DrawCellText(TCanvas& Canvas, TWgTreeItem* Item, int SectionIndex,
                               const TRect& Cell, const WideString& Text, unsigned Flags) {
    if (Text.empty() || Cell.IsEmpty()) return;
    Canvas.SetTextBgColor(clNone);
    if (Item->IsHTML() && StartsWithHtml(Text) && FOwner.OnMarkupDraw) {
        TWgMarkupData* data = SectionIndex < 0 || SectionIndex == MainColumn()
                                  ? Item->MainHtmlData()
                                  : Item->ColumnHtmlData(TextIndexOfColumn(SectionIndex));
        FOwner.OnMarkupDraw(Canvas, Cell, Text, data);
        return;
    }
    TRect r = Cell;
    Canvas.DrawText(Text, r, Flags);
}
