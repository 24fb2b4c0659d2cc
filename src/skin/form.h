#pragma once
// The frame of a skinned top-level window without the window: what kind of
// border it has, how thick the frame is, where the title text and the title
// buttons go, which button is under a point, what a click on one does, how
// the frame is painted (as canvas operations) and the window's outline.
// The UI's TVeneerForm holds one TFormFrame, feeds it the window's state and
// turns its answers into widget geometry, masks and repaints.

#include "base/Bitmap.h"
#include "base/Canvas.h"
#include "base/Geometry.h"
#include "base/Types.h"
#include "skin/data.h"
#include "skin/region.h"

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

// Window style bits the frame reads. The UI derives them from the widget's
// window flags, so the rules below keep their classic form.
inline constexpr std::uint32_t WS_POPUP = 0x80000000u;
inline constexpr std::uint32_t WS_CHILD = 0x40000000u;
inline constexpr std::uint32_t WS_CAPTION = 0x00C00000u;
inline constexpr std::uint32_t WS_SYSMENU = 0x00080000u;
inline constexpr std::uint32_t WS_THICKFRAME = 0x00040000u;
inline constexpr std::uint32_t WS_MINIMIZEBOX = 0x00020000u;
inline constexpr std::uint32_t WS_MAXIMIZEBOX = 0x00010000u;
inline constexpr std::uint32_t DS_MODALFRAME = 0x00000080u;
inline constexpr std::uint32_t WS_EX_DLGMODALFRAME = 0x00000001u;
inline constexpr std::uint32_t WS_EX_LEFTSCROLLBAR = 0x00004000u;

// Caps bits.
inline constexpr std::uint8_t capMaximize = 1;
inline constexpr std::uint8_t capMinimize = 2;
inline constexpr std::uint8_t capSystemMenu = 8;
inline constexpr std::uint8_t capStyleToggle = 16; // never set here: no native caption to hide

// WindowState values.
inline constexpr std::uint8_t wsNormal = 0;
inline constexpr std::uint8_t wsMaximized = 1;
inline constexpr std::uint8_t wsMinimized = 2;

// 2: no caption; 1: a fixed frame; 0: a sizeable one; 3: a dialog frame.
std::uint8_t BorderKindOf(std::uint32_t Style, std::uint32_t ExStyle, const AnsiString& ClassName);
// Caps from the style: maximize box, minimize box, system menu.
std::uint8_t CapsOf(std::uint32_t Style, bool HasSystemMenu);

// A clickable thing of the frame. State: 1 normal, 2 pressed, 3 hover.
struct TNCObject {
    TRect Rect; // window coordinates
    bool Visible = false;
    int State = 1;
};

// A title button. Its image is the skin entry's strip, or for a system-menu
// button (Action 3 or 11) the window's icon, one frame.
struct TWinSysButton : TNCObject {
    const TDataSkinSysButton* Data = nullptr;
    bool IsIcon = false;
    TMemoryBitmap IconMap;
    const TMemoryBitmap& Map() const { return IsIcon ? IconMap : Data->Map; }
    int Frames() const { return IsIcon ? 1 : Data->Frame; }
};

// What a finished click on a title button asks the window to do.
enum TFrameCommand : std::uint8_t {
    fcNone,
    fcClose,      // the form's own close path
    fcMaximize,   // maximize, or restore when maximized
    fcMinimize,   // minimize, or restore when minimized
    fcSystemMenu, // show the system menu at the point given
    fcCustom,     // an application action: the number is in the result
};
struct TFrameAction {
    TFrameCommand Command = fcNone;
    int Action = 0;  // the button's Action
    TPoint MenuAt{}; // for fcSystemMenu, window coordinates
};

// Where a point of the window lies, for the mouse.
enum TFrameZone : std::uint8_t {
    fzClient,
    fzCaption,
    fzMenu,
    fzButton,
    fzLeft,
    fzRight,
    fzTop,
    fzBottom,
    fzTopLeft,
    fzTopRight,
    fzBottomLeft,
    fzBottomRight,
};

class TFormFrame {
public:
    explicit TFormFrame(const TSkinDataModel& Skin) : FSkin(&Skin) {}
    const TSkinDataModel& Skin() const { return *FSkin; }

    // ---- what the window tells (Setup and later)
    std::uint32_t Style = 0;
    std::uint32_t ExStyle = 0;
    AnsiString ClassName;
    bool IsDialog = false; // a message box or a dialog class
    bool RightToLeft = false;
    bool ThickFrame = false;
    bool HasMenu = false; // a menu strip is drawn by the menu skin
    std::uint8_t BorderKind = 1;
    std::uint8_t Caps = 0;
    std::uint8_t WindowState = wsNormal;
    bool Active = true;
    int MenuHeight = 0;
    int Width = 0, Height = 0; // window size in logical pixels
    WideString Text;           // the window title
    TFont CaptionFont;

    // Reads Style and ExStyle into BorderKind, Caps, RightToLeft, ThickFrame,
    // IsDialog (ClassName "#32770" or "TMessageForm").
    void Setup(std::uint32_t WindowStyle, std::uint32_t WindowExStyle, const AnsiString& Class,
               bool HasSystemMenu);

    // ---- frame and buttons
    int FrameLeft = 0, FrameTop = 0, FrameRight = 0, FrameBottom = 0;
    // Frame sizes from the border images, and one button per skin entry.
    // The icon goes to system-menu buttons: the window's icon, or the skin
    // entry's own image, or AppIcon when that is not empty. Call it after a
    // skin change: it also forgets the border pieces cached for painting.
    void RebuildButtons(const TMemoryBitmap& WindowIcon, const TMemoryBitmap& AppIcon);
    std::vector<TWinSysButton> SysButtons;
    TRect TitleRect;    // where the title text went, window coordinates
    int TitleLimit = 0; // left edge of the rightmost right-aligned button

    // The Visibility and Visibility1 tests with the Action rule. The 1000
    // to 2000 range asks the application through AskVisible(Visibility,
    // Action); no answer means hidden.
    bool ButtonVisible(const TDataSkinSysButton& B) const;
    std::function<int(int Visibility, int Action)> AskVisible;

    // The title text rectangle (DrawTitle's arithmetic), measured on Canvas
    // with CaptionFont. Stores TitleRect.
    TRect LayoutTitle(TCanvas& Canvas);
    // Places the visible buttons by their Align; needs TitleRect. TitleLimit
    // is found again from 0.
    void LayoutButtons();

    // The window size for a client area of ClientW x ClientH: the frame and
    // the menu strip added. A dialog whose title is wider than that grows to
    // the title's width (measured on Canvas); Grow is what it gained, so
    // its children can move right by half of it.
    TSize WindowSizeFor(int ClientW, int ClientH, TCanvas* Canvas, int* Grow = nullptr) const;
    // The client rectangle inside the frame, window coordinates.
    TRect ClientRect() const;

    // Paints the frame: borders, title (top part, title back, text), the
    // title buttons in their states, and the menu strip's face when there
    // is no menu skin. Nothing for BorderKind 2. Title and buttons go
    // through one buffer.
    void PaintFrame(TCanvas& Canvas);
    // Called for the menu strip rectangle when HasMenu; the menu skin paints it.
    std::function<void(TCanvas& Canvas, const TRect& Strip)> OnPaintMenuStrip;

    // The window's outline for its size. Only the Left, Right and Top parts
    // decide whether the outline is cut (Bottom is left out of the test on
    // purpose); a part is cut when its Trans is 1 and it is at least 2
    // pixels thick, otherwise it is a plain rectangle.
    TRegion Outline() const;

    // ---- mouse
    // The first visible button with an Action of 0 or more under P, or -1.
    int ButtonAt(TPoint P) const;
    // The zone under P (fzClient outside the window); Grip is the least
    // width of the resize ring.
    TFrameZone ZoneAt(TPoint P, int Grip) const;
    int Hot = -1; // index of the button under the mouse
    // Repaint requests for a button whose state changed.
    std::function<void(const TRect& R)> OnInvalidate;
    void MouseDown(int Index);
    void MouseUp(int Index);
    void MouseEnter(int Index);
    void MouseLeave();
    // The release over the pressed Hot button: its command.
    TFrameAction ButtonAction(TPoint P) const;
    // A double click on the frame: a system-menu button closes, another
    // button does nothing, the caption maximizes or restores.
    TFrameCommand DoubleClick(TPoint P) const;

private:
    const TSkinDataModel* FSkin;
    int ButtonFrameToPaint(const TWinSysButton& B) const;

    // Border parts 1 to 4 (left, right, top, bottom), sliced once per
    // frame and size: a repaint at the same size only copies.
    struct TPartCache {
        int W = 0, H = 0;
        TMemoryBitmap Map;
    };
    mutable std::array<std::array<TPartCache, 2>, 4> FParts;
    TRect PartRect(int Part) const;
    const TMemoryBitmap& BorderPart(int Part, int W, int H) const;
    void PaintPart(TCanvas& Canvas, int Part) const;
    void PaintTitle(TCanvas& Canvas);
    void DrawTitle(TCanvas& Canvas);
    void PaintButtons(TCanvas& Canvas) const;
    void PaintMenuStrip(TCanvas& Canvas);
    void SetButtonState(int Index, int State);
};
