#pragma once
// The skin manager's decisions without any window: which skin each control
// of a form gets, whether a top-level window or a menu window is skinned at
// all, and with which data. The UI describes its widgets here in the
// framework's class names, carries out the steps it is given, and keeps the
// lists, the hook and the timer.

#include "base/Types.h"
#include "skin/data.h"

#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

class TSkinControl; // the UI's control skin; the rule only hands it back

// ---- one control as the rule sees it

// The UI fills one per widget, usually as a base of its own record that also
// holds the widget: every step names the description it is for, and the UI
// casts back. Children form a tree, never a cycle.
struct TControlDesc {
    // Own class first, then its ancestors, in the framework's names
    // ({"TPageControl", "TCustomTabControl", "TWinControl", "TControl"}).
    std::vector<AnsiString> Classes;
    std::int32_t Tag = 0;
    bool Windowed = true;
    bool HasParent = true;
    bool Skinned = false;      // answers the probe or is in the form's list
    bool ScrollStyle = false;  // WS_HSCROLL or WS_VSCROLL
    bool FramedClient = false; // window and client sizes differ
    // Published properties the rule reads, as text: "Style", "Kind",
    // "NumButtons", "DateMode". Enumerations by their value names.
    std::vector<std::pair<AnsiString, AnsiString>> Properties;
    std::vector<const TControlDesc*> Children; // the controls it parents, in order

    AnsiString ClassName() const { return Classes.empty() ? AnsiString() : Classes.front(); }
    bool Is(std::string_view Class) const;            // the class or one of its ancestors
    AnsiString Property(std::string_view Name) const; // "" when it has none
};

// ---- what the rule decides

// The control skins the rule creates. SkinClassName gives the class name.
enum TSkinClass : std::uint8_t {
    skTab,
    skTabBtn,
    skTab31,
    skTabSheet,
    skHeader,
    skCheckBox,
    skTrackBar,
    skUpDown,
    skMP,
    skRadioButton,
    skGroupBox,
    skBox,
    skObjImage,
    skStatusBar,
    skProgress,
    skScControl,
    skComBox,
    skEdit,
    skDateTime,
    skScrollbar,
    skBitButton,
    skSpeedButton,
    skButton,
    skListView,
    skMenuButton,
    skPlusPage,
};
const char* SkinClassName(TSkinClass Skin); // "TSkinTab", ...

enum TSkinStepKind : std::uint8_t {
    stCreate,        // create Skin for the control and InitSkin it with Flag
    stAddCustom,     // add Custom, made by OnSkinControl, with the flag it keeps itself
    stSetTag,        // the control's Tag := Tag
    stSetProperty,   // the published property Name := Value
    stBandColours,   // each band's colour := the skin's ButtonFace
    stMenuDraw,      // the item tree of the control's MenuItem gets the menu skin's draw events
    stToolBarEvents, // background and button draw events where unset; its Menu's items owner drawn
};

inline constexpr int NoFlag = -1; // the rule names no flag: the skin keeps its default

struct TSkinStep {
    TSkinStepKind Kind = stCreate;
    const TControlDesc* Control = nullptr;
    TSkinClass Skin = skBox;
    int Flag = NoFlag;      // 1: the skin also takes over the control's Color
    int SubKind = 0;        // TSkinTab 2, TSkinObjImage 1 to 3, TSkinPlusPage 4
    bool Single = false;    // TSkinScrollbar in single mode
    bool PngGlyph = false;  // TSkinBitButton takes its glyph from "PngImage"
    bool ByHandle = false;  // InitSkinHandle instead of InitSkin
    std::int32_t Tag = 0;   // stSetTag
    AnsiString Name, Value; // stSetProperty
    TSkinControl* Custom = nullptr;
};

// What the rule needs of the form and its data.
struct TSkinContext {
    TSkinControlTypes SkinControls = 0;
    std::int32_t DisableTag = 99;
    std::vector<AnsiString> Skin3rd;
    bool HasTabs = false;  // the data has a Tabs image
    bool FormSkin = false; // the form's frame is skinned
    // Asked first for every control, with the upper-cased class name; the
    // skin it returns, if any, replaces the rule.
    std::function<TSkinControl*(const TControlDesc& Control, const AnsiString& Cls)> OnSkinControl;
};
// Everything of the context that the data holds.
TSkinContext SkinContextOf(const TSkinDataModel& Data);

// The steps for one control, in the order to carry them out. The rule tries
// its tests in a fixed order, numbered 1 to 48 in the comments; the first
// that fires decides, and some run the rule again for children. Controls that
// the steps skin are skinned for the rest of the call too, so a control that
// two walks reach gets one skin.
std::vector<TSkinStep> DecideControlSkin(const TControlDesc& Control, const TSkinContext& Context);

// ---- top-level windows and menu windows

// A registered data with what the decision needs beyond the model.
struct TDataEntry {
    const TSkinDataModel* Data = nullptr;
    std::uintptr_t OwnerHandle = 0; // the window of the form that owns it
    std::function<void(const AnsiString& Name, bool& DoSkin)> OnFormSkin;
};
using TDataList = std::vector<TDataEntry>; // in the order of registration

// The first registered data for the main form.
const TDataEntry* MainDataOf(const TDataList& List);
// The data that skins the window: its own form's, a dialog's, the main
// form's, or else the first. Null when none is registered.
const TDataEntry* ChooseData(const TDataList& List, std::uintptr_t Handle,
                             const AnsiString& ClassName);
// The data's say on a window class, changing DoSkin.
void DoFormSkin(const TDataEntry& Data, const AnsiString& Name, bool& DoSkin);

struct TWindowDesc {
    std::uintptr_t Handle = 0;
    AnsiString ClassName;
    bool AnswersProbe = false; // the probe message answers 1
    bool Listed = false;       // already in the form list
    bool HasForm = false;      // a framework form owns the window
    std::int32_t FormTag = 0;
    bool IsChild = false; // WS_CHILD
    AnsiString ParentClass;
    bool MDIChild = false;  // WS_EX_MDICHILD
    bool SameModule = true; // created by this program's module
    std::int64_t Area = 0;  // width times height
};

struct TManagerFlags {
    bool Active = false;
    bool Scanning = false; // a sweep over all forms: child windows pass
};

// The ten tests a top-level window must pass, in order: 1 the manager is
// active; 2 the window is neither skinned nor listed; 3 it is top-level, an
// MDI child, or met in a sweep; 4 it is ours or a native dialog; 5 it has an
// area; 6 its form's Tag is not 99; 7 its class is not one never skinned;
// 8 the class filter lets it pass; 9 a data is chosen; 10 that data has a skin.
struct TAddFormResult {
    int FailedTest = 0;               // 0 accepted, else the first test that failed
    const TDataEntry* Data = nullptr; // the chosen data, from test 9 on
    bool Accepted() const { return FailedTest == 0; }
};
TAddFormResult DecideAddForm(const TWindowDesc& Window, const TManagerFlags& Flags,
                             const TDataList& List);

// Which menu opens next: 0 pop-up, 1 the main menu, 2 the system menu.
// The data to skin the menu window with, or null when it stays native.
const TDataEntry* DecideAddMenu(const TWindowDesc& Window, const TManagerFlags& Flags, int MenuKind,
                                const TDataList& List);
