#pragma once
// Enumerations, small records and host interfaces of the tree view.

#include "base/Background.h"
#include "base/Bitmap.h"
#include "base/Geometry.h"
#include "base/ImageList.h"
#include "base/Types.h"
#include "base/VirtualKeys.h"

#include <cstdint>
#include <vector>

// The part of a row that a point falls on.
enum TWgItemPart : std::uint8_t {
    ipButton = 0,
    ipMainText = 1,
    ipColumn = 2,
    ipInside = 3,
    ipPicture = 4,
    ipPicture2 = 5,
    ipCheckBox = 6,
    ipOutside = 7,
};

enum TSortTypes : std::uint8_t {
    stCustom = 0,
    stText,
    stNumber,
    stFloating,
    stDateTime,
    stDate,
    stTime,
    stBoolean,
    stCurrency,
};
enum TSortDirs : std::uint8_t { sdAscend = 0, sdDescend = 1 };
enum TSTSelModes : std::uint8_t { smSimple = 0, smUsual = 1 };
enum TWgSearchScope : std::uint8_t { issWholeTree = 0, issWithinParent = 1 };
enum TWgSearchColumn : std::uint8_t { iscMainText = 0, iscSortColumn = 1 };
enum TWgDblClickMode : std::uint8_t { dcmNone = 0, dcmExpand = 1, dcmEdit = 2 };
enum TLineHintMode : std::uint8_t { shmNone = 0, shmLong = 1, shmAll = 2 };
enum TLineHintType : std::uint8_t { lhtMainTextOnly = 0, lhtCellTextOnly = 1, lhtSmart = 2 };

// Shift state of mouse and key calls.
inline constexpr unsigned ssShift = 1;
inline constexpr unsigned ssAlt = 2;
inline constexpr unsigned ssCtrl = 4;
inline constexpr unsigned ssDouble = 8; // the press is the second of a double click

// Timers of the view. The host runs them and calls TimerFired when one
// expires; tests call it by hand.
enum TWgViewTimer : std::uint8_t {
    vtChange = 0, // the delayed OnItemFocused
    vtSearch = 1, // the incremental search time-out
    vtEdit = 2,   // the delayed in-place edit
    vtHint = 3,   // the line hint pause
    vtHintHide = 4,
};

// A scroll bar as the view reports it; the host shows it.
struct TWgScrollBarInfo {
    int Max = 0;
    int Page = 0;
    int Position = 0;
    bool Needed = false;
    bool Visible = false;
};

// What the view asks of its window.
class TWgTreeViewHost {
public:
    virtual ~TWgTreeViewHost() = default;
    virtual void InvalidateRect(const TRect& R) = 0;
    // Lets paint that is already pending through now.
    virtual void UpdateNow() {}
    virtual void StartTimer(TWgViewTimer Timer, int Interval) = 0;
    virtual void StopTimer(TWgViewTimer Timer) = 0;
    virtual void SetCapture(bool Captured) { (void)Captured; }
    // Draws, or with a second call erases, the XOR rubber band frame.
    virtual void DrawFocusFrame(const TRect& R) { (void)R; }
    // The scroll bars changed range, page, position or visibility.
    virtual void ScrollBarsChanged() {}
    // The line hint window: shown over R with Text, or hidden.
    virtual void ShowLineHint(const TRect& R, const WideString& Text) {
        (void)R;
        (void)Text;
    }
    virtual void HideLineHint() {}
};
