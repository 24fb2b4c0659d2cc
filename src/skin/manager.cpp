#include "skin/manager.h"

#include "skin/quickini.h"

#include <initializer_list>
#include <iterator>
#include <unordered_set>

// ---- the control description

bool TControlDesc::Is(std::string_view Class) const {
    for (const AnsiString& c : Classes)
        if (AnsiSameText(c, Class)) return true;
    return false;
}

AnsiString TControlDesc::Property(std::string_view Name) const {
    for (const auto& [name, value] : Properties)
        if (AnsiSameText(name, Name)) return value;
    return AnsiString();
}

const char* SkinClassName(TSkinClass Skin) {
    static const char* const names[] = {
        "TSkinTab",       "TSkinTabBtn",      "TSkinTab31",    "TSkinTabSheet",  "TSkinHeader",
        "TSkinCheckBox",  "TSkinTrackBar",    "TSkinUpDown",   "TSkinMP",        "TSkinRadioButton",
        "TSkinGroupBox",  "TSkinBox",         "TSkinObjImage", "TSkinStatusBar", "TSkinProgress",
        "TSkinScControl", "TSkinComBox",      "TSkinEdit",     "TSkinDateTime",  "TSkinScrollbar",
        "TSkinBitButton", "TSkinSpeedButton", "TSkinButton",   "TSkinListView",  "TSkinMenuButton",
        "TSkinPlusPage",
    };
    static_assert(std::size(names) == skPlusPage + 1);
    return Skin <= skPlusPage ? names[Skin] : "";
}

TSkinContext SkinContextOf(const TSkinDataModel& Data) {
    TSkinContext c;
    c.SkinControls = Data.SkinControls;
    c.DisableTag = Data.DisableTag;
    c.Skin3rd = Data.Skin3rd;
    c.HasTabs = Data.Tabs != nullptr;
    return c;
}

// ---- deciding a control skin

namespace {

bool Contains(std::string_view Text, std::string_view Part) {
    return Text.find(Part) != std::string_view::npos;
}

// A window that scrolls by itself, or one of the classes that always can.
bool IsScrollable(const TControlDesc& D) {
    return (D.Windowed && D.ScrollStyle) || D.Is("TListBox") || D.Is("TMemo") ||
           D.Is("TCustomListBox") || D.Is("TCustomTreeView") || D.Is("TScrollBox");
}

// An enumeration property at its second value, by name or by number.
bool AtValueOne(const TControlDesc& D, std::string_view Name, std::string_view ValueName) {
    const AnsiString value = D.Property(Name);
    return AnsiSameText(value, ValueName) || value == "1";
}

class TRuleRun {
public:
    explicit TRuleRun(const TSkinContext& Context) : FContext(Context) {}

    std::vector<TSkinStep> Steps;

    void Run(const TControlDesc& D);

private:
    const TSkinContext& FContext;
    std::unordered_set<const TControlDesc*> FVisited, FSkinned, FDisabled;

    bool Has(TSkinControlType Type) const { return HasBit(FContext.SkinControls, Type); }
    bool TabsOn() const { return Has(xcTab) && FContext.HasTabs; }
    bool IsSkinned(const TControlDesc& D) const { return D.Skinned || FSkinned.count(&D) != 0; }

    TSkinStep& Add(TSkinStepKind Kind, const TControlDesc& D);
    TSkinStep& Create(const TControlDesc& D, TSkinClass Skin, int Flag, int SubKind = 0);
    void CreateForChild(const TControlDesc& Child, TSkinClass Skin, int SubKind = 0);
    void SetProperty(const TControlDesc& D, const char* Name, const char* Value);
    void EachChild(const TControlDesc& D);
    void EachComponent(const TControlDesc& D);

    void Skin3rd(const TControlDesc& D, const AnsiString& Kind, const AnsiString& Cls);
    void ClassRules(const TControlDesc& D, const AnsiString& Cls);
};

TSkinStep& TRuleRun::Add(TSkinStepKind Kind, const TControlDesc& D) {
    TSkinStep& s = Steps.emplace_back();
    s.Kind = Kind;
    s.Control = &D;
    return s;
}

TSkinStep& TRuleRun::Create(const TControlDesc& D, TSkinClass Skin, int Flag, int SubKind) {
    TSkinStep& s = Add(stCreate, D);
    s.Skin = Skin;
    s.Flag = Flag;
    s.SubKind = SubKind;
    FSkinned.insert(&D);
    return s;
}

// The group rules skin a group's children directly, past the rule; a child
// that already has a skin keeps it, so no control ever gets two.
void TRuleRun::CreateForChild(const TControlDesc& Child, TSkinClass Skin, int SubKind) {
    if (!IsSkinned(Child)) Create(Child, Skin, NoFlag, SubKind);
}

void TRuleRun::SetProperty(const TControlDesc& D, const char* Name, const char* Value) {
    TSkinStep& s = Add(stSetProperty, D);
    s.Name = Name;
    s.Value = Value;
}

void TRuleRun::EachChild(const TControlDesc& D) {
    for (const TControlDesc* child : D.Children)
        if (child) Run(*child);
}

// What a form or a frame owns: all the controls inside it, parents before
// their children.
void TRuleRun::EachComponent(const TControlDesc& D) {
    for (const TControlDesc* child : D.Children) {
        if (!child) continue;
        Run(*child);
        EachComponent(*child);
    }
}

void TRuleRun::Run(const TControlDesc& D) {
    // Walks overlap (a form's components and a panel's children); the rule
    // runs once per control and call.
    if (!FVisited.insert(&D).second) return;
    const AnsiString cls = AnsiUpper(D.ClassName());

    // 1. Left alone by its Tag; a group passes that on to its buttons.
    if (D.Tag == FContext.DisableTag || FDisabled.count(&D)) {
        const AnsiString lower = AnsiLower(D.ClassName());
        if (D.Windowed && (Contains(lower, "radiogroup") || Contains(lower, "checkgroup"))) {
            for (const TControlDesc* child : D.Children) {
                if (!child) continue;
                Add(stSetTag, *child).Tag = FContext.DisableTag;
                FDisabled.insert(child);
            }
        }
        return;
    }
    // 2. Orphans, and controls that have a skin already.
    if (!D.HasParent || IsSkinned(D)) return;
    // 3. A widget needs no handle made before it is skinned.

    // 4. The application's own choice.
    if (FContext.OnSkinControl) {
        if (TSkinControl* custom = FContext.OnSkinControl(D, cls)) {
            Add(stAddCustom, D).Custom = custom;
            FSkinned.insert(&D);
            if (D.Is("TCustomPanel")) EachChild(D);
            return;
        }
    }
    // 5. A hit in the class table ends the rule, whatever its kind did.
    const AnsiString kind = ::Skin3rdKind(FContext.Skin3rd, D.ClassName());
    if (!kind.empty()) {
        Skin3rd(D, kind, cls);
        return;
    }
    // 6. Classes that are always left alone.
    if (cls == "TDBCOMBOBOXEH" || cls == "TFRDESIGNERPAGE" || cls == "TFRPBOX") return;

    ClassRules(D, cls);
}

void TRuleRun::Skin3rd(const TControlDesc& D, const AnsiString& Kind, const AnsiString& Cls) {
    if (Kind == "nil") return;
    if (Kind == "combobox") {
        if (Has(xcCombo)) Create(D, skComBox, NoFlag);
    } else if (Kind == "edit") {
        // Only a control with a frame has anything for the edit skin to paint.
        if (Has(xcEdit) && D.FramedClient) Create(D, skEdit, NoFlag);
    } else if (Kind == "radiobutton") {
        if (Has(xcRadioButton)) Create(D, skRadioButton, NoFlag);
    } else if (Kind == "panel") {
        if (Has(xcPanel)) {
            SetProperty(D, "Transparent", "True");
            Create(D, skBox, 1);
        }
    } else if (Kind == "trackbar") {
        // Gated by xcButton, not xcTrackBar: intended, keep it so.
        if (Has(xcButton)) {
            SetProperty(D, "Transparent", "True");
            Create(D, skTrackBar, NoFlag);
        }
    } else if (Kind == "button") {
        if (Has(xcButton)) Create(D, skButton, NoFlag);
    } else if (Kind == "datetimepicker") {
        if (Has(xcCombo)) Create(D, skDateTime, NoFlag);
    } else if (Kind == "mediaplayer") {
        if (Has(xcButton)) Create(D, skMP, NoFlag);
    } else if (Kind == "bitbtn") {
        if (Has(xcButton)) {
            const bool dropDown =
                Cls == "TCXBUTTON" && AnsiSameText(D.Property("Kind"), "cxbkDropDownButton");
            Create(D, dropDown ? skMenuButton : skBitButton, NoFlag);
        }
    } else if (Kind == "pngbitbtn") {
        if (Has(xcButton)) Create(D, skBitButton, NoFlag).PngGlyph = true;
    } else if (Kind == "menubtn") {
        if (Has(xcButton)) Create(D, skMenuButton, NoFlag);
    } else if (Kind == "speedbutton") {
        if (Has(xcSpeedButton)) Create(D, skSpeedButton, NoFlag);
    } else if (Kind == "tab") {
        if (TabsOn()) Create(D, skTab, NoFlag);
    } else if (Kind == "progress") {
        if (Has(xcProgress)) Create(D, skProgress, NoFlag);
    } else if (Kind == "scrollbar") {
        if (Has(xcScrollbar)) {
            Create(D, skScrollbar, NoFlag);
            EachChild(D);
        }
    } else if (Kind == "singlescrollbar") {
        if (Has(xcScrollbar)) Create(D, skScrollbar, NoFlag).Single = true;
    } else if (Kind == "embedscrollbar") {
        if (Has(xcScrollbar)) {
            for (const TControlDesc* child : D.Children) {
                if (!child) continue;
                if (child->Is("TScrollBar"))
                    CreateForChild(*child, skScControl);
                else if (IsScrollable(*child))
                    CreateForChild(*child, skScrollbar);
            }
        }
    } else if (Kind == "container") {
        EachChild(D);
    } else if (Kind == "groupbox") {
        if (Has(xcGroupBox)) Create(D, skGroupBox, 1);
    } else if (Kind == "pluspagecontrol") {
        if (Has(xcTab)) Create(D, skPlusPage, 1, 4);
    } else if (Kind == "radiogroup") {
        if (Has(xcGroupBox)) {
            if (Has(xcRadioButton)) {
                for (const TControlDesc* child : D.Children) {
                    if (!child) continue;
                    if (Contains(Cls, "TRZ"))
                        CreateForChild(*child, skObjImage, 2);
                    else
                        CreateForChild(*child, skRadioButton);
                }
            }
            Create(D, skGroupBox, 1);
        }
    } else if (Kind == "checkgroup") {
        // Gated by xcPanel, its buttons by xcRadioButton: intended, keep it so.
        if (Has(xcPanel)) {
            if (Has(xcRadioButton)) {
                for (const TControlDesc* child : D.Children) {
                    if (!child) continue;
                    if (Contains(Cls, "TRZ"))
                        CreateForChild(*child, skObjImage, 1);
                    else
                        CreateForChild(*child, skCheckBox);
                }
            }
            if (Has(xcGroupBox)) Create(D, skGroupBox, 1);
        }
    } else if (Kind == "checkbox") {
        if (Has(xcCheckBox)) Create(D, skCheckBox, NoFlag);
    }
}

void TRuleRun::ClassRules(const TControlDesc& D, const AnsiString& Cls) {
    const bool tabs = TabsOn();
    const auto is = [&](const char* Class) { return D.Is(Class); };
    const auto named = [&](std::initializer_list<const char*> Names) {
        for (const char* n : Names)
            if (Cls == n) return true;
        return false;
    };
    const auto tabsStyle = [&] { return AnsiSameText(D.Property("Style"), "tsTabs"); };

    if (is("TCustomTabControl") && tabs) { // 7
        if (!is("TPageControl"))
            Create(D, skTab, 0, 2);
        else
            Create(D, tabsStyle() ? skTab : skTabBtn, 0);
        return;
    }
    if (is("TToolButton") && FContext.FormSkin) { // 8
        Add(stMenuDraw, D);
        return;
    }
    if (is("TCoolBar") && Has(xcToolbar)) { // 9
        Add(stBandColours, D);
        return;
    }
    if (named({"TTABSET"}) && tabs) { // 10
        Create(D, skTab31, 0);
        return;
    }
    if (is("TTabSheet") && tabs) { // 11
        Create(D, skTabSheet, 0);
        return;
    }
    if (named({"TTABBEDNOTEBOOK"}) && tabs) { // 12
        Create(D, skTab, 0);
        return;
    }
    if (named({"TMVCPANEL"})) { // 13
        EachChild(D);
        return;
    }
    if (is("TPageControl") && tabs) { // 14: rule 7 takes these first; kept in its place
        Create(D, tabsStyle() ? skTab : skTabBtn, 0);
        return;
    }
    if (is("THeaderControl") && Has(xcPanel)) { // 15
        Create(D, skHeader, 0);
        return;
    }
    if (is("TCustomCheckBox") && Has(xcCheckBox)) { // 16
        Create(D, skCheckBox, 0);
        return;
    }
    if (is("TTrackBar") && Has(xcTrackBar)) { // 17
        Create(D, skTrackBar, 0);
        return;
    }
    if (named({"TUPDOWN", "TSPINBUTTON"}) && Has(xcSpin)) { // 18
        Create(D, skUpDown, 0);
        return;
    }
    if (named({"TMEDIAPLAYER"}) && Has(xcButton)) { // 19
        Create(D, skMP, 0);
        return;
    }
    if (is("TCustomRadioGroup") && Has(xcRadioButton)) { // 20
        for (const TControlDesc* child : D.Children)
            if (child && !IsSkinned(*child)) Create(*child, skRadioButton, 0);
        Create(D, skGroupBox, 1);
        return;
    }
    if (named({"TDBNAVIGATOR"}) && Has(xcPanel)) { // 21
        Create(D, skBox, 1);
        EachChild(D);
        return;
    }
    if (named({"TRZDBCHECKBOX", "TRZCHECKBOX"}) && Has(xcCheckBox)) { // 22
        Create(D, skObjImage, 1, 1);
        return;
    }
    if (named({"TRZRADIOBUTTON", "TRZDBRADIOBUTTON"}) && Has(xcRadioButton)) { // 23
        Create(D, skObjImage, 1, 2);
        return;
    }
    if (named({"TCXDBCHECKBOX", "TCXCHECKBOX"}) && Has(xcCheckBox)) { // 24
        Create(D, skObjImage, 1, 3);
        return;
    }
    // 25: gated by xcPanel, not xcGroupBox: intended, keep it so.
    if (is("TCustomGroupBox") && Has(xcPanel)) {
        EachChild(D);
        Create(D, skGroupBox, 0);
        return;
    }
    if (is("TRadioButton") && Has(xcRadioButton)) { // 26
        Create(D, skRadioButton, 0);
        return;
    }
    if (is("TToolBar") && Has(xcToolbar)) { // 27
        SetProperty(D, "Flat", "True");
        Create(D, skBox, 0);
        Add(stToolBarEvents, D);
        return;
    }
    if (is("TCustomStatusBar") && Has(xcStatusBar)) { // 28
        Create(D, skStatusBar, 0);
        return;
    }
    if (is("TProgressBar") && Has(xcProgress)) { // 29
        Create(D, skProgress, 0);
        return;
    }
    if (is("TScrollBar") && Has(xcScrollbar)) { // 30
        Create(D, skScControl, NoFlag);
        return;
    }
    if (named({"TUNICOMBOBOX"}) && Has(xcCombo)) { // 31
        Create(D, skComBox, 0);
        return;
    }
    if (is("TCustomComboBox") && Has(xcCombo)) { // 32
        Create(D, skComBox, 0);
        return;
    }
    if (is("TDateTimePicker") && Has(xcEdit)) { // 33
        const bool plain =
            AtValueOne(D, "DateMode", "dmUpDown") || AtValueOne(D, "Kind", "dtkTime");
        Create(D, plain ? skEdit : skDateTime, 0);
        return;
    }
    if (named({"TRICHEDIT", "TWWDBRICHEDIT", "TDXDBMEMO"}) && Has(xcScrollbar)) { // 34, 35
        Create(D, skScrollbar, NoFlag);
        return;
    }
    // 36: a bit button stops here even without xcBitBtn, never falling
    // through to the plain button rule: intended, keep it so.
    if (is("TBitBtn")) {
        if (Has(xcBitBtn)) Create(D, skBitButton, 0);
        return;
    }
    if (is("TSpeedButton") && Has(xcSpeedButton)) { // 37
        Create(D, skSpeedButton, NoFlag);
        return;
    }
    if (is("TCustomPanel") && Has(xcPanel)) { // 38
        EachChild(D);
        Create(D, skBox, 1);
        return;
    }
    if (named({"TDXTREELIST", "TDXDBTREELIST", "TDXDBGRID"}) && Has(xcScrollbar)) { // 39
        Create(D, skScrollbar, NoFlag);
        return;
    }
    if (is("TCustomListView") && Has(xcScrollbar)) { // 40
        Create(D, skListView, NoFlag);
        return;
    }
    if ((is("TCustomMemo") || is("TCustomGrid") || IsScrollable(D)) && Has(xcScrollbar)) {
        Create(D, skScrollbar, NoFlag); // 41, 42, 43
        return;
    }
    if (is("TButton") && Has(xcButton)) { // 44
        Create(D, skButton, 0);
        return;
    }
    if (is("TCustomEdit") && Has(xcEdit)) { // 45
        Create(D, skEdit, 0);
        return;
    }
    if (named({"TDCEDIT", "TDCDBEDIT"})) { // 46
        const std::int32_t buttons = StrToIntDef(D.Property("NumButtons"), -1);
        if (buttons == 1 && Has(xcCombo))
            Create(D, skComBox, 0);
        else if (buttons == 0 && Has(xcEdit))
            Create(D, skEdit, 0).ByHandle = true;
        return;
    }
    // 47 and 48 stand in the branch of the classes other than those two.
    if (is("TCustomFrame")) {
        EachComponent(D);
        return;
    }
    if (is("TCustomForm")) {
        Create(D, skBox, 1);
        EachComponent(D);
    }
}

} // namespace

// Windows with no framework object (a native dialog's children) have no
// counterpart here: every window the engine meets is a widget.
std::vector<TSkinStep> DecideControlSkin(const TControlDesc& Control, const TSkinContext& Context) {
    TRuleRun run(Context);
    run.Run(Control);
    return std::move(run.Steps);
}

// ---- top-level windows and menu windows

namespace {

template <class Pred> const TDataEntry* LastOf(const TDataList& List, Pred P) {
    const TDataEntry* found = nullptr;
    for (const TDataEntry& e : List)
        if (e.Data && P(*e.Data, e)) found = &e;
    return found;
}

bool OfType(const TSkinDataModel& Data, TSkinFormType Type) {
    return Data.SkinFormtype == Type;
}

} // namespace

const TDataEntry* MainDataOf(const TDataList& List) {
    for (const TDataEntry& e : List)
        if (e.Data && OfType(*e.Data, sfMainform)) return &e;
    return nullptr;
}

const TDataEntry* ChooseData(const TDataList& List, std::uintptr_t Handle,
                             const AnsiString& ClassName) {
    const TDataEntry* own = LastOf(List, [&](const TSkinDataModel& d, const TDataEntry& e) {
        return OfType(d, sfOnlyThisForm) && e.OwnerHandle != 0 && e.OwnerHandle == Handle;
    });
    if (own) return own;
    const AnsiString lower = AnsiLower(ClassName);
    if (lower == "tmessageform" || lower == "#32770") {
        const TDataEntry* dialog = LastOf(
            List, [](const TSkinDataModel& d, const TDataEntry&) { return OfType(d, sfDialog); });
        if (dialog) return dialog;
    }
    const TDataEntry* main = LastOf(
        List, [](const TSkinDataModel& d, const TDataEntry&) { return OfType(d, sfMainform); });
    if (main) return main;
    for (const TDataEntry& e : List)
        if (e.Data) return &e;
    return nullptr;
}

void DoFormSkin(const TDataEntry& Data, const AnsiString& Name, bool& DoSkin) {
    if (Data.OnFormSkin) {
        Data.OnFormSkin(Name, DoSkin);
        return;
    }
    if (Name == "SysMonthCal32") DoSkin = false;
    if (Data.Data && HasBit(Data.Data->SkinControls, xcFastReport) && Name.rfind("Tfr", 0) == 0)
        DoSkin = false;
}

TAddFormResult DecideAddForm(const TWindowDesc& Window, const TManagerFlags& Flags,
                             const TDataList& List) {
    TAddFormResult r;
    const auto fail = [&](int Test) {
        r.FailedTest = Test;
        return r;
    };
    // 1. The UI sweeps its dead forms once this has passed.
    if (!Flags.Active) return fail(1);
    if (Window.AnswersProbe || Window.Listed) return fail(2);
    if (!Flags.Scanning && Window.IsChild && AnsiLower(Window.ParentClass) != "mdiclient" &&
        !Window.MDIChild)
        return fail(3);
    // Windows of other modules stay as they are, but for native dialogs.
    if (!Window.HasForm && !Window.SameModule && Window.ClassName != "#32770") return fail(4);
    if (Window.Area == 0 && !Window.MDIChild) return fail(5);
    // Fixed at 99: the data's DisableTag is not consulted for forms. Intended.
    if (Window.HasForm && Window.FormTag == 99) return fail(6);
    if (Contains(Window.ClassName, "TcxPopupEditPopupWindow") || Window.ClassName == "TApplication")
        return fail(7);
    if (const TDataEntry* main = MainDataOf(List)) {
        bool doSkin = true;
        if (!HasBit(main->Data->Options, xoPreview) &&
            Contains(AnsiLower(Window.ClassName), "preview"))
            doSkin = false;
        DoFormSkin(*main, Window.ClassName, doSkin);
        if (!doSkin) return fail(8);
    }
    r.Data = ChooseData(List, Window.Handle, Window.ClassName);
    if (!r.Data) return fail(9);
    if (r.Data->Data->Empty) return fail(10);
    return r;
}

const TDataEntry* DecideAddMenu(const TWindowDesc& Window, const TManagerFlags& Flags, int MenuKind,
                                const TDataList& List) {
    if (!Flags.Active || Window.AnswersProbe || Window.Listed) return nullptr;
    const TDataEntry* data = ChooseData(List, Window.Handle, Window.ClassName);
    if (!data || data->Data->Empty) return nullptr;
    const TSkinControlTypes set = data->Data->SkinControls;
    switch (MenuKind) {
    case 0:
        return HasBit(set, xcPopupMenu) ? data : nullptr;
    case 1:
        return HasBit(set, xcMainMenu) || HasBit(set, xcMenuItem) ? data : nullptr;
    case 2:
        return HasBit(set, xcSystemMenu) ? data : nullptr;
    default:
        return nullptr;
    }
}
