#pragma once
// The skin data model: the records every skin painter draws from, and the
// reading of a skin's ini text into them. Window attachment, activation and
// the posts to the manager live with the UI's TSkinData, which derives from
// TSkinDataModel.

#include "base/Bitmap.h"
#include "base/Geometry.h"
#include "base/Streams.h"
#include "base/SystemColors.h"
#include "base/Types.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class TQuickIni;
class TSkinReader;

enum TSkinControlType : std::uint8_t {
    xcMainMenu = 0,
    xcPopupMenu = 1,
    xcMenuItem = 2,
    xcToolbar = 3,
    xcControlbar = 4,
    xcCombo = 5,
    xcCheckBox = 6,
    xcRadioButton = 7,
    xcProgress = 8,
    xcScrollbar = 9,
    xcEdit = 10,
    xcButton = 11,
    xcBitBtn = 12,
    xcSpeedButton = 13,
    xcSpin = 14,
    xcPanel = 15,
    xcGroupBox = 16,
    xcStatusBar = 17,
    xcTab = 18,
    xcTrackBar = 19,
    xcSystemMenu = 20,
    xcFastReport = 21,
};
using TSkinControlTypes = std::uint32_t; // bit n is TSkinControlType n

enum TSkinOption : std::uint8_t {
    xoMDIScrollbar = 0,
    xoMenuMerge = 1,
    xoTransparent = 2,
    xoPreview = 3,
    xoParentBackGround = 4,
    xoNoFocusRect = 5,
    xoToolbarBK = 6,
    xoMDIChildBorder = 7,
    xoMenuBG = 8,
};
using TSkinOptions = std::uint32_t; // bit n is TSkinOption n

enum TSkinFormType : std::uint8_t { sfMainform = 0, sfOnlyThisForm = 1, sfDialog = 2, sfDLL = 3 };

// All images of one skin together may hold this many pixels; beyond it an
// image stays empty. Real skins use well under a million, and a forged one
// that names one huge image from a thousand sections stays bounded.
inline constexpr std::int64_t SkinPixelBudget = 1ll << 26;

inline constexpr bool HasBit(std::uint32_t Set, int Bit) {
    return (Set >> Bit) & 1u;
}

inline constexpr TColor clUnsetColour = 0xFFFFFFFF; // -1: a colour key that was not given
inline constexpr int SM_CXVSCROLL = 17;             // classic width of a vertical scroll bar

class TDataSkinObject {
public:
    virtual ~TDataSkinObject() = default;

    TRect r;           // slicing margins: Left, Top, Right, Bottom
    TMemoryBitmap Map; // the frames side by side unless a painter says otherwise
    std::int32_t Trans = 0;
    std::int32_t Tile = 0;
    AnsiString IDName;
    std::int32_t Frame = 0;
    std::int32_t Style = 0;
    TColor NormalColour = clUnsetColour;
    TColor MouseOverColour = clUnsetColour;
    TColor PressedColour = clUnsetColour;
    TColor NormalColour2 = clBtnText;
    TColor MouseOverColour2 = clBtnText;
    TColor PressedColour2 = clBtnText;
};

class TDataSkinBorder : public TDataSkinObject {
public:
    TMemoryBitmap Map2;
};

class TDataSkinTitle : public TDataSkinObject {
public:
    std::int32_t TextAlignment = 0; // 0 left, 1 centre, 2 right
    std::int32_t Textbackground = 0;
    std::int32_t FontHeight = 14;
    std::int32_t TXTBackleft = 0;
    std::int32_t TXTBackRight = 0;
    TColor ActiveText = clNone;
    TColor InActiveText = clNone;
};

class TDataSkinButton : public TDataSkinObject {
public:
    TMemoryBitmap CheckMap;
    TMemoryBitmap RadioMap;
    std::int32_t RadioButtonFrame = 0;
    std::int32_t CheckButtonFrame = 0;
    bool HasNormal2 = false;
    bool HasOver2 = false;
    bool HasPressed2 = false;
};

class TDataSkinSysButton : public TDataSkinObject {
public:
    std::int32_t Action = 0;
    std::int32_t Align = 0;
    std::int32_t Xcoord = 0;
    std::int32_t Ycoord = 0;
    std::int32_t CombineOp = -1;
    std::int32_t Visibility = 0;
    std::int32_t Visibility1 = 0;
};

class TDataSkinBoxLabel : public TDataSkinObject {
public:
    std::int32_t BackgroundLeftShift = 0;
    std::int32_t BackgroundRightShift = 0;
    std::int32_t BackgroundAlignment = 0;
};

// A colour value: decimal numbers for red, green and blue, separated by any
// run of non-digits. A number counts when a non-digit follows it; the last
// number of the text counts only as the third. Empty text gives Default.
TColor ParseColourValue(const AnsiString& Text, TColor Default);

// Kind of a control class in a Skin3rd table, "" when no line matches.
AnsiString Skin3rdKind(const std::vector<AnsiString>& Table, const AnsiString& ClassName);
const std::vector<AnsiString>& DefaultSkin3rd();

// The small images a skin falls back on when it has no track bar images.
TMemoryBitmap TrackResource(bool Vertical);
// The glyphs of the menu strip's window buttons: four 16 by 16 cells
// (restore, maximize, minimize, close), black on white, white the mask.
TMemoryBitmap VeneerMenuResource();

class TSkinDataModel {
public:
    TSkinDataModel();
    virtual ~TSkinDataModel();
    TSkinDataModel(const TSkinDataModel&) = delete;
    TSkinDataModel& operator=(const TSkinDataModel&) = delete;

    // ---- published properties
    std::int32_t DisableTag = 99;
    TSkinControlTypes SkinControls = 0x1FFFFB; // bits 0 to 20 but xcMenuItem
    TSkinOptions Options = (1u << xoPreview) | (1u << xoToolbarBK);
    std::vector<AnsiString> Skin3rd;
    TSkinFormType SkinFormtype = sfMainform;
    bool MenuUpdate = true;
    bool MenuMerge = false;

    const AnsiString& SkinFile() const { return FSkinFile; }
    // Loads the file when it exists (a missing file is silent and leaves the
    // model empty), then UpdateSkin for the main form's data.
    void SetSkinFile(const AnsiString& Value);
    AnsiString SkinStore() const { return "(none)"; }
    AnsiString Version() const { return "4.03.04.01"; }
    AnsiString Skin3rdKind(const AnsiString& ClassName) const {
        return ::Skin3rdKind(Skin3rd, ClassName);
    }

    // The raw skin, as loaded from a file or streamed with a form.
    TMemoryStream SkinStream;
    // The form-stream form of SkinStream: a signed 32-bit size and the bytes.
    void ReadSkinStream(TStream& Stream);
    void WriteSkinStream(TStream& Stream) const;

    // Expands SkinStream and builds the model; false for a file of another
    // format (the model is then left as it was, and Empty).
    bool ReadSkin();
    void LoadBitmap(TMemoryBitmap& Target, const AnsiString& Path);
    TColor SampleBackground();

    // Re-applies a new skin to attached forms: the UI's business.
    virtual void UpdateSkin() {}
    // Turns a system colour into RGB; the UI answers from its palette.
    virtual TColor ResolveColor(TColor C) const { return ColorToRGB(C); }
    // The pixels all images of one load may take (SkinPixelBudget).
    std::int64_t PixelBudget = SkinPixelBudget;
    // Shows the reader's one message; the UI sets it to a message box.
    std::function<void(const AnsiString&)> OnMessage;

    // ---- the model
    bool Empty = true;
    TColor WindowText = clWindowText, TitleTextActive = clCaptionText,
           TitleTextNoActive = clInactiveCaptionText, ButtonFace = clBtnFace,
           ButtonText = clBtnText, ButtonHilight = clBtnHighlight, Buttonlight = clBtnHighlight,
           ButtonShadow = clBtnShadow, ButtonDkShadow = cl3DDkShadow, HilightText = clHighlightText,
           Hilight = clHighlight, Menubar = clBtnFace, MenuBarText = clMenuText,
           MenuText = clMenuText, Menu = clMenu, BGColor = clBtnFace, Scrollbar = clScrollBar;
    std::vector<TColor> Colours;
    std::unique_ptr<TDataSkinTitle> Title;
    std::vector<std::unique_ptr<TDataSkinSysButton>> SysButtons;

    std::unique_ptr<TDataSkinButton> Buttons;
    std::unique_ptr<TDataSkinObject> Progress, ProgressChunk, MenuBar, GroupBoxEdge;
    std::unique_ptr<TDataSkinBoxLabel> GroupBox;
    std::unique_ptr<TDataSkinBorder> Tabs;
    std::unique_ptr<TDataSkinObject> StatusBarEdges, TabPane, ToolBars;
    std::unique_ptr<TDataSkinBorder> ComboButton;
    std::unique_ptr<TDataSkinObject> SunkEdge, ExtraImages, Headerbar, MenuItem, MenuBackground,
        ScrollbarMap, HorzScroll, VertScroll, HorzScrollThumb, VertScrollThumb;
    std::unique_ptr<TDataSkinObject> ThumbHorz, ThumbVert, ThumbLeft, ThumbRight, ThumbUp,
        ThumbDown;
    std::unique_ptr<TDataSkinBorder> UpDownHorz, UpDownVert;
    std::unique_ptr<TDataSkinObject> Track, TrackVert;
    std::unique_ptr<TDataSkinObject> ComboxArrow, Toolbar; // derived while reading

    // Borders 1 to 4: Left, Right, Top, Bottom.
    std::unique_ptr<TDataSkinBorder> Left, Right, Top, Bottom;
    TDataSkinBorder* Borders(int Index) const;
    // Every object reference of the model by its field name, in the order
    // they are read (Title and Buttons first, then the table objects, then
    // the derived ones); absent objects are null.
    std::vector<std::pair<const char*, const TDataSkinObject*>> Objects() const;
    std::array<TColor, 10> CustomColors{};
    AnsiString SkinName;

private:
    AnsiString FSkinFile;
    const TSkinReader* FReader = nullptr; // only while ReadSkin runs
    std::int64_t FPixelBudget = 0;        // pixels that images of this load may still take

    void ResetModel();
    void ReadIni(const TQuickIni& Ini);
    void ReadBorders(const TQuickIni& Ini);
    void ReadColours(const TQuickIni& Ini);
    void ReadSysButtons(const TQuickIni& Ini);
    void ReadButtons(const TQuickIni& Ini);
    void ReadTitle(const TQuickIni& Ini);
    void ReadObjects(const TQuickIni& Ini);
    void SetObjectFrames();
    void MakeComboButton();
    void MakeComboArrow();
    void MakeToolbarImage();

    void DefaultTextColours(TDataSkinObject& Obj) const;
    TColor ReadColour(const TQuickIni& Ini, const AnsiString& Section, const AnsiString& Key,
                      TColor Default) const;
    // IDName, margins, Trans, Tile, and Style and the colours when asked.
    void ReadCommon(const TQuickIni& Ini, const AnsiString& Section, TDataSkinObject& Obj,
                    bool Style, bool Colours);
    template <class T>
    std::unique_ptr<T> ReadObjectAs(const TQuickIni& Ini, const AnsiString& Section);
    std::unique_ptr<TDataSkinObject> ReadObject(const TQuickIni& Ini, const AnsiString& Section);
    std::unique_ptr<TDataSkinBorder>
    ReadBorderObject(const TQuickIni& Ini, const AnsiString& Section, const AnsiString& ExtraKey);
    std::unique_ptr<TDataSkinObject> ReadBitmapObject(const TQuickIni& Ini,
                                                      const AnsiString& Section);
    std::unique_ptr<TDataSkinBoxLabel> ReadBoxLabel(const TQuickIni& Ini,
                                                    const AnsiString& Section);
};
