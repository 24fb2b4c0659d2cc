#include "skin/form.h"

#include "skin/bitmap.h"
#include "skin/draw.h"

#include <algorithm>

// Multiple-document windows (MDI kinds, child-window controls in the menu
// strip), operating system version branches and windows known only by a
// handle have no counterpart on our platform and are left out throughout.

namespace {

// Single line with an end ellipsis.
constexpr unsigned TitleFlags = DT_SINGLELINE | DT_END_ELLIPSIS;

bool IsSystemMenuAction(int Action) {
    return Action == 3 || Action == 11;
}

// A side's thickness from its image; a frame count below 1 would divide by
// zero, so such a side has no frame.
int Thickness(const TDataSkinBorder* B, bool Vertical) {
    if (!B || B->Frame < 1) return 0;
    return (Vertical ? B->Map.Height() : B->Map.Width()) / B->Frame;
}

} // namespace

std::uint8_t BorderKindOf(std::uint32_t Style, std::uint32_t ExStyle, const AnsiString& ClassName) {
    if ((Style & WS_CAPTION) != WS_CAPTION) return 2;
    std::uint8_t kind = Style & WS_THICKFRAME ? 0 : 1;
    if (Style & DS_MODALFRAME) kind = 3;
    if ((ExStyle & WS_EX_DLGMODALFRAME) || ClassName == "#32770" || ClassName == "TMessageForm")
        kind = 3;
    return kind;
}

std::uint8_t CapsOf(std::uint32_t Style, bool HasSystemMenu) {
    std::uint8_t caps = 0;
    if (Style & WS_MAXIMIZEBOX) caps |= capMaximize;
    if (Style & WS_MINIMIZEBOX) caps |= capMinimize;
    if ((Style & WS_SYSMENU) || HasSystemMenu) caps |= capSystemMenu;
    // capStyleToggle stays off: a frameless window has no native caption to hide.
    return caps;
}

void TFormFrame::Setup(std::uint32_t WindowStyle, std::uint32_t WindowExStyle,
                       const AnsiString& Class, bool HasSystemMenu) {
    Style = WindowStyle;
    ExStyle = WindowExStyle;
    ClassName = Class;
    RightToLeft = (ExStyle & WS_EX_LEFTSCROLLBAR) != 0;
    ThickFrame = (Style & WS_THICKFRAME) != 0;
    Caps = CapsOf(Style, HasSystemMenu);
    BorderKind = BorderKindOf(Style, ExStyle, ClassName);
    IsDialog = ClassName == "#32770" || ClassName == "TMessageForm";
}

// ---- frame and buttons

void TFormFrame::RebuildButtons(const TMemoryBitmap& WindowIcon, const TMemoryBitmap& AppIcon) {
    if (FSkin->Empty) return;
    FParts = {};
    if (BorderKind == 2) {
        FrameLeft = FrameTop = FrameRight = FrameBottom = MenuHeight = 0;
    } else {
        FrameTop = Thickness(FSkin->Top.get(), true);
        FrameLeft = Thickness(FSkin->Left.get(), false);
        FrameRight = Thickness(FSkin->Right.get(), false);
        FrameBottom = Thickness(FSkin->Bottom.get(), true);
    }
    SysButtons.clear();
    Hot = -1;
    for (const auto& data : FSkin->SysButtons) {
        TWinSysButton& b = SysButtons.emplace_back();
        b.Data = data.get();
        if (!IsSystemMenuAction(data->Action)) continue;
        b.IsIcon = true;
        b.IconMap = WindowIcon;
        if (!data->Map.Empty()) b.IconMap = data->Map;
        if (!AppIcon.Empty()) b.IconMap = AppIcon;
    }
}

bool TFormFrame::ButtonVisible(const TDataSkinSysButton& B) const {
    const bool maximized = WindowState == wsMaximized;
    const bool cap1 = Caps & capMaximize, cap2 = Caps & capMinimize, cap8 = Caps & capSystemMenu;
    // Both tests read -1 to 4 alike.
    const bool common[] = {false, true, maximized, !maximized, Active, !Active};
    auto isCommon = [](int V) { return V >= -1 && V <= 4; };

    const int v = B.Visibility;
    bool first = false; // 100 needs a maximized MDI child: there is none here
    if (isCommon(v))
        first = common[v + 1];
    else if (v == 6 || v == 8)
        first = (v == 6 ? cap1 : cap2) && cap8;
    else if (v == 7 || v == 9)
        first = !(v == 7 ? cap1 : cap2);
    else if (v == 200)
        first = !IsDialog && BorderKind == 3;
    else if (v > 200 && v < 1000)
        first = true;
    else if (v >= 1000 && v <= 2000)
        first = AskVisible && AskVisible(v, B.Action) >= 1;

    const int v1 = B.Visibility1;
    bool second = false; // 200 and above hide the button; skins rely on it
    if (isCommon(v1))
        second = common[v1 + 1];
    else if (v1 == 6 || v1 == 8)
        second = v1 == 6 ? cap1 : cap2;
    else if (v1 == 7 || v1 == 9)
        second = !(v1 == 7 ? cap1 : cap2);
    else if (v1 == 100)
        second = first;

    if (!first || !second) return false;
    switch (B.Action) {
    case 0:
        return cap8;
    case 1:
        return cap1;
    case 2:
        return cap2;
    case 3:
    case 11:
    case 12:
        return BorderKind != 3;
    default:
        return true;
    }
}

TRect TFormFrame::LayoutTitle(TCanvas& Canvas) {
    const TDataSkinTitle& t = *FSkin->Title;
    const int textShift = t.r.Left, textShiftVert = t.r.Top, textRightClip = t.r.Right;
    Canvas.SetFont(CaptionFont);
    TRect extent;
    Canvas.DrawText(u"  " + Text + u" ", extent, TitleFlags | DT_CALCRECT);
    const int w = extent.Width() + t.TXTBackleft + t.TXTBackRight, h = extent.Height();

    int x = textShift;
    if (t.TextAlignment == 1) x = (Width - w) / 2;
    if (t.TextAlignment == 2 || RightToLeft) x = Width - textRightClip - w;
    const int y = (FrameTop - h) / 2 + textShiftVert / 2;
    TRect r = Bounds(x, y, w, h);
    if (Style & WS_POPUP) {
        // A limit of 5 or less means no right-aligned button: no clipping.
        if (TitleLimit >= 6 && TitleLimit - 5 < r.Right) r.Right = TitleLimit - 5;
    } else {
        r.Right = std::min(r.Right, Width - textRightClip);
    }
    // Dialogs have no icon button, so the text takes its place.
    if (BorderKind == 3 && t.TextAlignment == 0) r.Left -= 16;
    TitleRect = r;
    return r;
}

void TFormFrame::LayoutButtons() {
    TitleLimit = 0;
    const int menuLeft = FSkin->MenuBar ? FSkin->MenuBar->r.Left : 0;
    for (TWinSysButton& b : SysButtons) {
        const TDataSkinSysButton& d = *b.Data;
        b.Visible = ButtonVisible(d);
        if (!b.Visible || b.Map().Empty()) {
            b.Rect = {};
            continue;
        }
        const int fw = b.Frames() > 0 ? b.Map().Width() / b.Frames() : b.Map().Width();
        const int h = b.Map().Height();
        int x = 0, y = d.Ycoord;
        switch (d.Align) {
        case 0:
            x = d.Xcoord;
            break;
        case 1:
            x = Width - d.Xcoord;
            TitleLimit = std::max(TitleLimit, x);
            break;
        case 2:
        case 8:
            x = TitleRect.Left - fw - d.Xcoord;
            break;
        case 3:
        case 9:
            x = TitleRect.Right + d.Xcoord;
            break;
        case 100:
            y = FrameTop + (MenuHeight - h) / 2;
            x = RightToLeft ? d.Xcoord + FrameLeft : Width - d.Xcoord - FrameRight - menuLeft;
            break;
        default: // an unknown Align leaves the button at the origin
            y = 0;
            break;
        }
        b.Rect = Bounds(x, y, fw, h);
    }
}

TSize TFormFrame::WindowSizeFor(int ClientW, int ClientH, TCanvas* Canvas, int* Grow) const {
    TSize size{ClientW + FrameLeft + FrameRight, ClientH + FrameTop + FrameBottom + MenuHeight};
    int gain = 0;
    if (IsDialog && Canvas) {
        Canvas->SetFont(CaptionFont);
        const TDataSkinTitle& t = *FSkin->Title;
        const int need = Canvas->TextWidth(Text) + t.r.Left + t.r.Right;
        if (need > size.cx) {
            gain = need - size.cx;
            size.cx = need;
        }
    }
    if (Grow) *Grow = gain;
    return size;
}

TRect TFormFrame::ClientRect() const {
    return Rect(FrameLeft, FrameTop + MenuHeight, Width - FrameRight, Height - FrameBottom);
}

// ---- painting

TRect TFormFrame::PartRect(int Part) const {
    switch (Part) {
    case 1:
        return Rect(0, 0, FrameLeft, Height);
    case 2:
        return Rect(Width - FrameRight, 0, Width, Height);
    case 3:
        return Rect(FrameLeft, 0, Width - FrameRight, FrameTop);
    default:
        return Rect(FrameLeft, Height - FrameBottom, Width - FrameRight, Height);
    }
}

const TMemoryBitmap& TFormFrame::BorderPart(int Part, int W, int H) const {
    const TDataSkinBorder& d = *FSkin->Borders(Part);
    const int frame = Active || d.Frame == 1 ? 1 : 2;
    TPartCache& c = FParts[std::size_t(Part - 1)][std::size_t(frame - 1)];
    if (c.Map.Empty() || c.W != W || c.H != H) {
        // Left and right frames lie side by side, top and bottom ones stacked.
        c.Map = DrawRect(d.Map, frame, d.Frame, Part >= 3, d.r, d.Tile != 1, W, H);
        c.W = W;
        c.H = H;
    }
    return c.Map;
}

void TFormFrame::PaintPart(TCanvas& Canvas, int Part) const {
    const TRect r = PartRect(Part);
    if (r.IsEmpty()) return;
    // The top keys out magenta so that what lies below shows through its
    // corners; the other sides are plain copies.
    Canvas.Draw(r.Left, r.Top, BorderPart(Part, r.Width(), r.Height()),
                Part == 3 ? clMagenta : clNone);
}

void TFormFrame::PaintFrame(TCanvas& Canvas) {
    if (FSkin->Empty || BorderKind == 2 || Width <= 0 || Height <= 0) return;
    const bool minimized = WindowState == wsMinimized;
    if (!minimized) {
        PaintPart(Canvas, 1);
        PaintPart(Canvas, 2);
        PaintPart(Canvas, 4);
    }
    PaintTitle(Canvas);
    if (!minimized) PaintMenuStrip(Canvas);
}

void TFormFrame::PaintTitle(TCanvas& Canvas) {
    const bool minimized = WindowState == wsMinimized;
    const TRect bar = minimized ? Rect(0, 0, Width, Height) : Rect(0, 0, Width, FrameTop);
    // One buffer and one copy, so the title does not flicker.
    Canvas.BeginBuffer(bar);
    Canvas.SaveClip();
    Canvas.IntersectClipRect(bar);
    if (minimized) {
        Canvas.SetBrushColor(FSkin->ButtonFace);
        Canvas.FillRect(bar);
    }
    PaintPart(Canvas, 3);
    DrawTitle(Canvas);
    LayoutButtons();
    PaintButtons(Canvas);
    Canvas.RestoreClip();
    Canvas.EndBuffer();
}

void TFormFrame::DrawTitle(TCanvas& Canvas) {
    const TDataSkinTitle& t = *FSkin->Title;
    const TRect r = LayoutTitle(Canvas);
    if (!t.Map.Empty() && !r.IsEmpty()) {
        TMemoryBitmap back(r.Width(), r.Height(), MagentaPixel);
        DrawTiledBar(back, Bounds(0, 0, r.Width(), r.Height()), t.Map, Active ? 1 : 2, 2, true,
                     t.TXTBackleft, t.TXTBackRight, false);
        Canvas.Draw(r.Left, r.Top, back, clMagenta);
    }
    TFont font = CaptionFont;
    font.Color = Active ? FSkin->TitleTextActive : FSkin->TitleTextNoActive;
    Canvas.SetFont(font);
    Canvas.SetTextBgColor(clNone);
    TRect textRect = Rect(r.Left + t.TXTBackleft, r.Top, r.Right - t.TXTBackRight, r.Bottom);
    Canvas.DrawText(u"  " + Text + u" ", textRect, TitleFlags | (RightToLeft ? DT_RIGHT : 0));
}

// The frame paint draws every button in its normal face and each button
// then paints itself in its state; this is the result of the two on screen.
int TFormFrame::ButtonFrameToPaint(const TWinSysButton& B) const {
    if (B.IsIcon) return 1;
    const int normal = Active || B.Frames() < 4 ? 1 : 4;
    if (B.State == 1) return normal;
    // Hover on a child-window control uses the fourth frame.
    const int frame = B.State == 3 && B.Data->Visibility == 100 ? 4 : B.State;
    // A state frame the strip lacks paints nothing over the normal face.
    return frame <= B.Frames() ? frame : normal;
}

void TFormFrame::PaintButtons(TCanvas& Canvas) const {
    for (const TWinSysButton& b : SysButtons) {
        // Visibility 100 buttons belong to the menu strip, which paints them.
        if (!b.Visible || b.Map().Empty() || b.Rect.IsEmpty() || b.Data->Visibility == 100)
            continue;
        const TMemoryBitmap face =
            CropBitmap(b.Map(), FrameRect(b.Map(), ButtonFrameToPaint(b), b.Frames(), false));
        Canvas.StretchDraw(b.Rect, face, clMagenta);
    }
}

void TFormFrame::PaintMenuStrip(TCanvas& Canvas) {
    const TRect strip = Rect(FrameLeft, FrameTop, Width - FrameRight, FrameTop + MenuHeight);
    if (HasMenu && OnPaintMenuStrip) {
        OnPaintMenuStrip(Canvas, strip);
    } else if (MenuHeight > 0) {
        Canvas.SetBrushColor(FSkin->ButtonFace);
        Canvas.FillRect(strip);
    }
}

// ---- outline

TRegion TFormFrame::Outline() const {
    const TDataSkinBorder *left = FSkin->Left.get(), *right = FSkin->Right.get(),
                          *top = FSkin->Top.get();
    // Left counts twice and Bottom not at all: skins were made against this test.
    if (left->Trans + left->Trans + right->Trans + top->Trans == 0)
        return TRegion(Rect(0, 0, Width, Height));
    TRegion region(Rect(FrameLeft, FrameTop, Width - FrameRight, Height - FrameBottom));
    if (BorderKind == 2) return region;
    const int thickness[4] = {FrameLeft, FrameRight, FrameTop, FrameBottom};
    for (int part = 1; part <= 4; ++part) {
        const TRect r = PartRect(part);
        if (r.IsEmpty()) continue;
        if (FSkin->Borders(part)->Trans == 1 && thickness[part - 1] >= 2)
            region.Union(RegionFromBitmap(BorderPart(part, r.Width(), r.Height()), r.Left, r.Top, 1,
                                          1, 1, clMagenta));
        else
            region.Union(TRegion(r));
    }
    return region;
}

// ---- mouse

int TFormFrame::ButtonAt(TPoint P) const {
    for (std::size_t i = 0; i < SysButtons.size(); ++i) {
        const TWinSysButton& b = SysButtons[i];
        if (b.Visible && b.Data->Action >= 0 && b.Rect.Contains(P)) return int(i);
    }
    return -1;
}

TFrameZone TFormFrame::ZoneAt(TPoint P, int Grip) const {
    if (!Rect(0, 0, Width, Height).Contains(P)) return fzClient;
    if (ButtonAt(P) >= 0) return fzButton;
    if (ThickFrame && WindowState == wsNormal) {
        // The top frame is the caption, so only Grip rows of it resize.
        const int l = std::max(Grip, FrameLeft), r = std::max(Grip, FrameRight), t = Grip,
                  b = std::max(Grip, FrameBottom);
        const bool onLeft = P.X < l, onRight = P.X >= Width - r, onTop = P.Y < t,
                   onBottom = P.Y >= Height - b;
        if (onLeft || onRight || onTop || onBottom) {
            // Corners reach along each edge for at least two grips.
            const bool nearLeft = P.X < std::max(l, 2 * Grip),
                       nearRight = P.X >= Width - std::max(r, 2 * Grip),
                       nearTop = P.Y < std::max(t, 2 * Grip),
                       nearBottom = P.Y >= Height - std::max(b, 2 * Grip);
            if ((onTop && nearLeft) || (onLeft && nearTop)) return fzTopLeft;
            if ((onTop && nearRight) || (onRight && nearTop)) return fzTopRight;
            if ((onBottom && nearLeft) || (onLeft && nearBottom)) return fzBottomLeft;
            if ((onBottom && nearRight) || (onRight && nearBottom)) return fzBottomRight;
            if (onLeft) return fzLeft;
            if (onRight) return fzRight;
            return onTop ? fzTop : fzBottom;
        }
    }
    if (MenuHeight > 0 && P.Y >= FrameTop && P.Y < FrameTop + MenuHeight && P.X >= FrameLeft &&
        P.X < Width - FrameRight)
        return fzMenu;
    // The four topmost rows have never been caption; kept.
    if (P.Y < FrameTop && P.Y > 3) return fzCaption;
    return fzClient;
}

void TFormFrame::SetButtonState(int Index, int State) {
    TWinSysButton& b = SysButtons[std::size_t(Index)];
    b.State = State;
    if (OnInvalidate) OnInvalidate(b.Rect);
}

void TFormFrame::MouseDown(int Index) {
    if (Index < 0 || Index >= int(SysButtons.size())) return;
    if (Hot != Index) MouseLeave();
    if (!SysButtons[std::size_t(Index)].Visible) return;
    Hot = Index;
    SetButtonState(Index, 2);
}

void TFormFrame::MouseUp(int Index) {
    if (Index < 0 || Index >= int(SysButtons.size())) return;
    if (SysButtons[std::size_t(Index)].Visible) SetButtonState(Index, 3);
}

void TFormFrame::MouseEnter(int Index) {
    if (Index < 0 || Index >= int(SysButtons.size()) || Hot == Index) return;
    MouseLeave();
    if (!SysButtons[std::size_t(Index)].Visible) return;
    Hot = Index;
    SetButtonState(Index, 3);
}

void TFormFrame::MouseLeave() {
    if (Hot < 0 || Hot >= int(SysButtons.size())) {
        Hot = -1;
        return;
    }
    // A button that was hidden while hot is let go too, so that it does not
    // come back in its hover face; only a visible one needs repainting.
    const int index = Hot;
    Hot = -1;
    if (SysButtons[std::size_t(index)].Visible)
        SetButtonState(index, 1);
    else
        SysButtons[std::size_t(index)].State = 1;
}

TFrameAction TFormFrame::ButtonAction(TPoint P) const {
    TFrameAction result;
    if (Hot < 0 || Hot >= int(SysButtons.size())) return result;
    result.Action = SysButtons[std::size_t(Hot)].Data->Action;
    switch (result.Action) {
    case 0:
        // Closing needs a close item in the system menu.
        if (Caps & capSystemMenu) result.Command = fcClose;
        break;
    case 1:
    case 22:
        result.Command = fcMaximize;
        break;
    case 2:
    case 23:
        result.Command = fcMinimize;
        break;
    case 3:
    case 11:
    case 12:
        result.Command = fcSystemMenu;
        result.MenuAt = {P.X + 1, P.Y + 1};
        break;
    case 7:
    case 8:
    case 9:
    case 60:
    case 61:
    case 62:
        break; // the active MDI child's buttons: no multiple-document windows here
    default:
        result.Command = fcCustom;
        break;
    }
    return result;
}

TFrameCommand TFormFrame::DoubleClick(TPoint P) const {
    const int i = ButtonAt(P);
    if (i >= 0)
        return IsSystemMenuAction(SysButtons[std::size_t(i)].Data->Action) ? fcClose : fcNone;
    if (ZoneAt(P, 0) != fzCaption) return fcNone;
    if (WindowState == wsMinimized) return fcMinimize; // restores
    if (WindowState == wsMaximized || (Caps & capMaximize)) return fcMaximize;
    return fcNone;
}
