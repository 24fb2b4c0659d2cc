#pragma once
// Enumerations and bit sets shared by the tree, its items and its header.
// Ordinal values are stored in form streams and must not change.

#include "base/Canvas.h"

#include <cstdint>

enum TWgFieldType : std::uint8_t {
    sftCustom = 0,
    sftText = 1,
    sftNumber = 2,
    sftFloating = 3,
    sftDateTime = 4,
    sftDate = 5,
    sftTime = 6,
    sftPicture = 7,
    sftEnum = 8,
    sftBLOB = 9,
    sftUndef = 10,
    sftBool = 11,
    sftCurrency = 12,
    sftMemo = 13,
};

enum TWgSectionStyle : std::uint8_t {
    elhsText = 0,
    elhsOwnerDraw = 1,
    elhsPictureOnly = 2,
    elhsImageIndex = 3,
};

enum TWgSAlignment : std::uint8_t { hsaLeft = 0, hsaCenter = 1, hsaRight = 2 };
enum TWgSSortMode : std::uint8_t { hsmNone = 0, hsmAscend = 1, hsmDescend = 2 };

enum TWgItemBorderStyle : std::uint8_t {
    ibsNone = 0,
    ibsRaised = 1,
    ibsFlat = 2,
    ibsSunken = 3,
    ibsSpace = 4,
};

enum TVirtualityLevel : std::uint8_t { vlNone = 0, vlTextAndStyles = 1, vlAllProps = 2 };
enum TItemChangeMode : std::uint8_t {
    icmText = 0,
    icmState = 1,
    icmCheckState = 2,
    icmColumnText = 3
};
enum TSortModes : std::uint8_t { smNone = 0, smAdd = 1, smClick = 2, smAddClick = 3 };

// Font style bits as the cell style record stores them: the canvas's own.
using TWgFontStyle = TFontStyle;

// Bits of TWgTreeItem::Flags.
enum TWgItemFlag : std::uint32_t {
    ifHasPicture = 0x00000008,
    ifHasStatePicture = 0x00000010,
    ifWholeLine = 0x00000100,
    ifDeleting = 0x00000800,
    ifMultiline = 0x00002000,
    ifHidden = 0x00004000,
    ifEnabled = 0x00008000,
    ifIsHTML = 0x00080000,
    ifOwnerHeight = 0x00100000,
    ifSortKeysReady = 0x00200000,
    ifSelected = 0x00800000,
    ifFocused = 0x01000000,
    ifExpanded = 0x02000000,
    ifWordWrap = 0x04000000,
};

inline constexpr std::uint32_t DefaultItemFlags = ifOwnerHeight | ifEnabled;  // 0x00108000
inline constexpr std::uint32_t RootItemFlags = DefaultItemFlags | ifExpanded; // 0x02108000
inline constexpr std::uint32_t DefaultHeightWord = 0x0000FFFF;
// Flags that Assign does not copy: focus, selection, markup and the paint marks.
inline constexpr std::uint32_t AssignSkippedFlags = 0x01880018;

// Bits of TWgTreeItemStaticDataEx::StaticFlags.
enum TWgStaticFlag : std::uint32_t {
    sfParentColors = 0x00000001,
    sfParentStyle = 0x00000002,
    sfSuppressLines = 0x00000004,
    sfForceButtons = 0x00000020,
    sfStrikedOutLine = 0x00000040,
    sfDrawHLine = 0x00000080,
    sfAllowEdit = 0x00000200,
    sfUseBkColor = 0x00000400,
    sfUseStyles = 0x00001000,
    sfEnabledCopy = 0x00008000, // a copy of Enabled with no meaning here
    sfSuppressButtons = 0x00010000,
    sfCheckBoxEnabled = 0x00020000,
    sfShowCheckBox = 0x00040000,
    sfIsHTMLCopy = 0x00400000,
};

inline constexpr std::uint32_t DefaultStaticFlags = 0x00068683;

// Bits of the State word of an item.
enum TWgItemStateBit : std::uint16_t {
    stCut = 1 << 3,
    stUnderlined = 1 << 4,
    stBold = 1 << 5,
    stItalic = 1 << 6,
    stExpanded = 1 << 7,
    stStrikedOut = 1 << 8,
};

// Check box types and states.
enum TWgCheckBoxType : std::uint8_t { ectCheckBox = 0, ectThreeState = 1, ectRadioButton = 2 };
enum TWgCheckBoxState : std::uint8_t { cbUnchecked = 0, cbChecked = 1, cbGrayed = 2 };

inline constexpr std::uint32_t SystemWindowColor = 0xFF000005;
