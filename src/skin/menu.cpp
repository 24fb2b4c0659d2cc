#include "skin/menu.h"

#include "skin/bitmap.h"
#include "skin/draw.h"

#include "controls/WgPopupMenuLayout.h"

#include <algorithm>

// ---- menu windows

TMemoryBitmap MenuBackgroundImage(const TSkinDataModel& Skin, int W, int H) {
    const TDataSkinObject* back = Skin.MenuBackground.get();
    if (Skin.Empty || !back || back->Map.Empty() || W <= 0 || H <= 0) return {};
    return DrawRect(back->Map, 1, 1, false, back->r, back->Tile != 0, W, H);
}

std::vector<TRect> MenuBorderRing(int W, int H) {
    const int b = MenuBorderWidth;
    std::vector<TRect> ring = {Rect(0, 0, W, b), Rect(0, H - b, W, H), Rect(0, b, b, H - b),
                               Rect(W - b, b, W, H - b)};
    for (TRect& r : ring) {
        r.Left = std::clamp(r.Left, 0, std::max(W, 0));
        r.Right = std::clamp(r.Right, 0, std::max(W, 0));
        r.Top = std::clamp(r.Top, 0, std::max(H, 0));
        r.Bottom = std::clamp(r.Bottom, 0, std::max(H, 0));
    }
    return ring;
}

int MenuItemFrame(bool Selected) {
    return Selected ? 4 : 1;
}

TColor MenuItemTextColour(const TSkinDataModel& Skin, bool Enabled, bool Selected) {
    if (Enabled) return Selected ? Skin.HilightText : Skin.MenuText;
    // Grey on a skin whose shadow is its text colour would not read as grey.
    return Skin.ButtonShadow == Skin.MenuText ? clBtnShadow : Skin.ButtonShadow;
}

TRect MenuItemBox(const TSkinDataModel& Skin, const TRect& Item, int ImageWidth, int ImageHeight,
                  bool Checked) {
    int w = ImageWidth > 0 ? ImageWidth : 16;
    int h = ImageHeight > 0 ? ImageHeight : 16;
    if (Checked) {
        w = std::max(w, 16);
        h = std::max(h, 16);
    }
    const int left = Item.Left + 1 + (Skin.MenuItem ? Skin.MenuItem->r.Left : 0);
    const int top = Item.Top + (Item.Height() - h) / 2;
    return Bounds(left, top, w, h);
}

namespace {

// The framework's dither of face and highlight behind a checked image.
TMemoryBitmap Dither(int W, int H, TColor A, TColor B) {
    TMemoryBitmap d(W, H);
    for (int y = 0; y < d.Height(); ++y)
        for (int x = 0; x < d.Width(); ++x)
            d.SetPixel(x, y, ColorToPixel((x + y) % 2 ? B : A));
    return d;
}

void DrawContent(TCanvas& Canvas, const TSkinDataModel& Skin, const TRect& R,
                 const TSkinMenuItem& Item, const TFont& Font, int ImageWidth, int ImageHeight) {
    const TColor text = MenuItemTextColour(Skin, Item.Enabled, Item.Selected);
    const bool image = Item.Glyph && !Item.Glyph->Empty();
    const TRect box =
        MenuItemBox(Skin, R, image ? ImageWidth : 0, image ? ImageHeight : 0, Item.Checked);
    if (image) {
        if (Item.Checked) {
            const TRect checked = Bounds(box.Left, R.Top + (R.Height() - 16) / 2, box.Width(), 16);
            Canvas.Draw(checked.Left, checked.Top,
                        Dither(checked.Width(), checked.Height(), clBtnFace, clBtnHighlight),
                        clNone);
            Canvas.DrawEdge(checked, EDGE_SUNKEN, BF_RECT);
        }
        const TMemoryBitmap& g = *Item.Glyph;
        Canvas.Draw(box.Left + (box.Width() - g.Width()) / 2,
                    box.Top + (box.Height() - g.Height()) / 2, g, Item.GlyphTransparent);
    } else if (Item.Checked) {
        DrawMenuCheck(Canvas, box.Left + (box.Width() - 9) / 2 + 1,
                      box.Top + (box.Height() - 8) / 2 + 1, Skin.ButtonText);
    }

    TFont font = Font;
    font.Color = text;
    if (Item.Default) font.Style = TFontStyles(font.Style | fsBold);
    Canvas.SetFont(font);
    Canvas.SetTextBgColor(clNone);
    TRect t = Rect(box.Right + 3, R.Top, R.Right - 1, R.Bottom);
    // A lone "&" would show nothing: it stands for a blank.
    const WideString caption = Item.Caption == u"&" ? WideString(u"& ") : Item.Caption;
    Canvas.DrawText(caption, t, DT_SINGLELINE | DT_VCENTER | DT_LEFT);
    if (!Item.ShortCut.empty()) {
        TRect s = Rect(box.Right + 3, R.Top, R.Right - 10, R.Bottom);
        Canvas.DrawText(Item.ShortCut, s, DT_SINGLELINE | DT_VCENTER | DT_RIGHT | DT_NOPREFIX);
    }
    if (Item.SubMenu) DrawMenuArrow(Canvas, R.Right - 12, R.Top + R.Height() / 2, text);
}

} // namespace

void DrawMenuSeparator(TMemoryBitmap& Target, const TRect& R, const TDataSkinObject& MenuItem) {
    const TRect cell = FrameRect(MenuItem.Map, 2, MenuItemFrames, false);
    if (cell.IsEmpty() || R.IsEmpty()) return;
    const int h = std::min(cell.Height(), R.Height());
    const TRect src = Rect(cell.Left, cell.Bottom - h, cell.Right, cell.Bottom);
    int l = std::max(0, MenuItem.r.Left), rr = std::max(0, MenuItem.r.Right);
    if (l + rr > cell.Width() || l + rr > R.Width()) l = rr = 0;
    const int top = R.Top + (R.Height() - h) / 2;
    StretchCopy(Target, Bounds(R.Left, top, l, h), MenuItem.Map, Bounds(src.Left, src.Top, l, h),
                true);
    StretchCopy(Target, Bounds(R.Right - rr, top, rr, h), MenuItem.Map,
                Bounds(src.Right - rr, src.Top, rr, h), true);
    StretchCopy(Target, Rect(R.Left + l, top, R.Right - rr, top + h), MenuItem.Map,
                Rect(src.Left + l, src.Top, src.Right - rr, src.Bottom), true);
}

void PaintSkinMenuItem(TCanvas& Canvas, const TSkinDataModel& Skin, const TMemoryBitmap* Background,
                       const TRect& R, const TSkinMenuItem& Item, const TFont& Font, int ImageWidth,
                       int ImageHeight) {
    if (R.IsEmpty()) return;
    const int w = R.Width(), h = R.Height();
    TMemoryBitmap work;
    if (Background && !Background->Empty()) work = CropBitmap(*Background, R);
    if (work.Width() != w || work.Height() != h) {
        work = TMemoryBitmap(w, h, ColorToPixel(Skin.ResolveColor(Skin.Menu)));
        if (Background && !Background->Empty()) CopyBitmap(work, 0, 0, CropBitmap(*Background, R));
    }
    const TDataSkinObject* look = Skin.MenuItem.get();
    const bool skinned = look && !look->Map.Empty();
    if (Item.IsLine()) {
        if (skinned) {
            DrawMenuSeparator(work, Rect(0, 0, w, h), *look);
            Canvas.Draw(R.Left, R.Top, work, clNone);
        } else {
            Canvas.Draw(R.Left, R.Top, work, clNone);
            Canvas.DrawEdge(Rect(R.Left, R.Top + 4, R.Right, R.Bottom), EDGE_ETCHED, BF_TOP);
        }
        return;
    }
    if (skinned) {
        DrawObject(work, Rect(0, 0, w, h), look->Map, MenuItemFrame(Item.Selected), MenuItemFrames,
                   false, look->r, look->Tile != 0, look->Trans != 0);
        Canvas.Draw(R.Left, R.Top, work, clNone);
    } else {
        // No item image in the skin: flat, in the selection colour.
        Canvas.Draw(R.Left, R.Top, work, clNone);
        if (Item.Selected) {
            Canvas.SetBrushColor(Skin.Hilight);
            Canvas.FillRect(R);
        }
    }
    DrawContent(Canvas, Skin, R, Item, Font, ImageWidth, ImageHeight);
}

// ---- the menu strip

namespace {

// The caption as shown: "&" marks the accelerator, "&&" stands for "&".
WideString StripHotkeyText(const WideString& Caption) {
    WideString shown;
    shown.reserve(Caption.size());
    for (std::size_t i = 0; i < Caption.size(); ++i) {
        if (Caption[i] == u'&' && i + 1 < Caption.size())
            ++i;
        else if (Caption[i] == u'&')
            continue;
        shown += Caption[i];
    }
    return shown;
}

} // namespace

void LayoutMenuStrip(TCanvas& Canvas, const TSkinDataModel& Skin, const TRect& Strip,
                     bool RightToLeft, std::vector<TMenuStripButton>& Buttons) {
    const TDataSkinObject* bar = Skin.MenuBar.get();
    int x = 6;
    if (bar && !bar->Map.Empty()) {
        x = RightToLeft ? bar->r.Right + 8 : bar->r.Left + 4;
        if (x > Strip.Width()) x = 12;
    }
    for (TMenuStripButton& b : Buttons) {
        if (!b.Visible) {
            b.Rect = {};
            continue;
        }
        int w = Canvas.TextWidth(StripHotkeyText(b.Caption));
        if (w > 0) w += 10;
        b.Rect = RightToLeft
                     ? Rect(Strip.Right - x - w, Strip.Top, Strip.Right - x, Strip.Bottom - 1)
                     : Rect(Strip.Left + x, Strip.Top, Strip.Left + x + w, Strip.Bottom - 1);
        x += w;
    }
}

TMemoryBitmap MenuStripBack(const TSkinDataModel& Skin, int W, int H, bool Active) {
    TMemoryBitmap back(W, H, ColorToPixel(Skin.ResolveColor(Skin.Menubar)));
    const TDataSkinObject* bar = Skin.MenuBar.get();
    if (back.Empty() || !bar || bar->Map.Empty()) return back;
    const int frame = Active ? 1 : 2;
    if (bar->Tile == 1)
        DrawObject(back, Rect(0, 0, W, H), bar->Map, frame, 2, true, bar->r, false, false);
    else
        DrawTiledBar(back, Rect(0, 0, W, H), bar->Map, frame, 2, true, bar->r.Left, bar->r.Right,
                     false);
    return back;
}

void PaintMenuStrip(TCanvas& Canvas, const TSkinDataModel& Skin, const TRect& Strip,
                    const TMemoryBitmap& Back, const std::vector<TMenuStripButton>& Buttons) {
    Canvas.Draw(Strip.Left, Strip.Top, Back, clNone);
    Canvas.SetTextBgColor(clNone);
    for (const TMenuStripButton& b : Buttons) {
        if (!b.Visible || b.Rect.IsEmpty()) continue;
        if (b.State == 2 || b.State == 3) {
            Canvas.SetPenColor(Skin.ButtonHilight);
            Canvas.FrameRect(b.Rect);
        }
        TFont font = Canvas.Font();
        font.Color = b.Enabled ? Skin.MenuBarText : Skin.ButtonShadow;
        font.Style = 0;
        Canvas.SetFont(font);
        TRect r = b.Rect;
        Canvas.DrawText(b.Caption, r, DT_SINGLELINE | DT_VCENTER | DT_CENTER);
    }
}

int MenuStripButtonAt(const std::vector<TMenuStripButton>& Buttons, TPoint P) {
    for (std::size_t i = 0; i < Buttons.size(); ++i) {
        const TMenuStripButton& b = Buttons[i];
        if (!b.Caption.empty() && b.Rect.Contains(P)) return int(i);
    }
    return -1;
}

int NextMenuStripButton(const std::vector<TMenuStripButton>& Buttons, int From, int Step) {
    const int n = int(Buttons.size());
    if (n == 0 || (Step != 1 && Step != -1)) return -1;
    int i = From < 0 || From >= n ? (Step > 0 ? -1 : n) : From;
    for (int k = 0; k < n; ++k) {
        i = ((i + Step) % n + n) % n;
        if (Buttons[std::size_t(i)].Visible && !Buttons[std::size_t(i)].Caption.empty()) return i;
    }
    return -1;
}
