#include "skin/manager.h"

#include <gtest/gtest.h>

#include <deque>
#include <sstream>

namespace {

constexpr TSkinControlTypes All = 0x3FFFFF;
constexpr TSkinControlTypes NoTabs = 1u << 30, NoFormSkin = 1u << 31; // context switches
constexpr TSkinControlTypes Bit(TSkinControlType T) {
    return 1u << T;
}

// Controls built from "TClass TAncestor ..." and "Name=Value" or flag words.
struct TTree {
    std::deque<TControlDesc> Nodes;
    TControlDesc& Add(const char* Classes, const char* Props = "",
                      std::initializer_list<const TControlDesc*> Kids = {}) {
        TControlDesc& d = Nodes.emplace_back();
        std::istringstream cls(Classes), props(Props);
        for (std::string w; cls >> w;)
            d.Classes.push_back(w);
        for (std::string w; props >> w;) {
            const auto eq = w.find('=');
            d.ScrollStyle |= w == "scroll";
            d.FramedClient |= w == "framed";
            d.Windowed &= w != "graphic";
            if (eq != std::string::npos)
                d.Properties.emplace_back(w.substr(0, eq), w.substr(eq + 1));
        }
        d.Children = Kids;
        return d;
    }
    // A button, a scroll bar and a list box: each walk treats them differently.
    TControlDesc& WithKids(const char* Classes, const char* Props = "") {
        const TControlDesc* b = &Add("TButton");
        const TControlDesc* s = &Add("TScrollBar");
        const TControlDesc* l = &Add("TListBox TCustomListBox");
        return Add(Classes, Props, {b, s, l});
    }
};
#define KIDS "TButton:TSkinButton 0; TScrollBar:TSkinScControl; TListBox:TSkinScrollbar"

std::string Show(const std::vector<TSkinStep>& Steps, const TControlDesc& Root) {
    std::string out;
    for (const TSkinStep& s : Steps) {
        if (!out.empty()) out += "; ";
        if (s.Control != &Root) out += s.Control->ClassName() + ":";
        static const char* const kinds[] = {"",      "custom",   "Tag=",         "",
                                            "bands", "menudraw", "toolbarevents"};
        out += kinds[s.Kind];
        if (s.Kind == stSetTag) out += std::to_string(s.Tag);
        if (s.Kind == stSetProperty) out += s.Name + "=" + s.Value;
        if (s.Kind != stCreate) continue;
        out += SkinClassName(s.Skin);
        if (s.Flag != NoFlag) out += " " + std::to_string(s.Flag);
        if (s.SubKind) out += " k" + std::to_string(s.SubKind);
        if (s.Single) out += " single";
        if (s.PngGlyph) out += " png";
        if (s.ByHandle) out += " handle";
    }
    return out;
}

TSkinContext Context(TSkinControlTypes Without = 0) {
    TSkinContext c;
    c.SkinControls = All & ~Without;
    c.Skin3rd = DefaultSkin3rd();
    for (const char* line :
         {"TXNil=nil", "TXTrack=trackbar", "TXDate=datetimepicker", "TXMedia=mediaplayer",
          "TXTab=tab", "TXProgress=progress", "TXSingle=singlescrollbar", "TXEmbed=embedscrollbar",
          "TXContainer=container", "TXPlus=pluspagecontrol", "TXOdd=unheard"})
        c.Skin3rd.push_back(line);
    c.HasTabs = !(Without & NoTabs);
    c.FormSkin = !(Without & NoFormSkin);
    return c;
}

} // namespace

TEST(SkinManager, ControlRules) {
    struct {
        const char* Classes;
        const char* Props;
        const char* Expected;
        TSkinControlTypes Without = 0;
    } cases[] = {
        {"TTabControl TCustomTabControl", "", "TSkinTab 0 k2"}, // 7
        {"TPageControl TCustomTabControl", "Style=tsButtons", "TSkinTabBtn 0"},
        {"TPageControl TCustomTabControl", "Style=tsTabs", "TSkinTab 0"},
        {"TTabControl TCustomTabControl", "", "", NoTabs},
        {"TTabControl TCustomTabControl", "", "", Bit(xcTab)},
        {"TToolButton TGraphicControl", "graphic", "menudraw"}, // 8
        {"TToolButton TGraphicControl", "graphic", "", NoFormSkin},
        {"TCoolBar TToolWindow", "", "bands"}, // 9
        {"TCoolBar TToolWindow", "", "", Bit(xcToolbar)},
        {"TTabSet", "", "TSkinTab31 0"},                      // 10
        {"TMyTabSet TTabSet", "", ""},                        // a quoted name is exact
        {"TTabSheet", "", "TSkinTabSheet 0"},                 // 11
        {"TTabbedNotebook", "", "TSkinTab 0"},                // 12
        {"TMVCPanel TCustomPanel", "", KIDS},                 // 13
        {"TPageControl", "Style=tsButtons", "TSkinTabBtn 0"}, // 14
        {"THeaderControl", "", "TSkinHeader 0"},              // 15
        {"THeaderControl", "", "", Bit(xcPanel)},
        {"TCheckBox TCustomCheckBox", "", "TSkinCheckBox 0"}, // 16
        {"TTrackBar", "", "TSkinTrackBar 0"},                 // 17
        {"TSpinButton", "", "TSkinUpDown 0"},                 // 18
        {"TMediaPlayer", "", "TSkinMP 0"},                    // 19
        {"TMediaPlayer", "", "", Bit(xcButton)},
        {"TRadioGroup TCustomRadioGroup TCustomGroupBox", "", // 20
         "TButton:TSkinRadioButton 0; TScrollBar:TSkinRadioButton 0; "
         "TListBox:TSkinRadioButton 0; TSkinGroupBox 1"},
        {"TRadioGroup TCustomRadioGroup TCustomGroupBox", "", KIDS "; TSkinGroupBox 0",
         Bit(xcRadioButton)},
        {"TDBNavigator TCustomPanel", "", "TSkinBox 1; " KIDS},      // 21
        {"TRzCheckBox", "", "TSkinObjImage 1 k1"},                   // 22
        {"TRzRadioButton", "", "TSkinObjImage 1 k2"},                // 23
        {"TcxCheckBox", "", "TSkinObjImage 1 k3"},                   // 24
        {"TGroupBox TCustomGroupBox", "", KIDS "; TSkinGroupBox 0"}, // 25
        {"TGroupBox TCustomGroupBox", "", KIDS "; TSkinGroupBox 0", Bit(xcGroupBox)},
        {"TGroupBox TCustomGroupBox", "", "", Bit(xcPanel)},
        {"TRadioButton", "", "TSkinRadioButton 0"},                                 // 26
        {"TToolBar TToolWindow", "", "Flat=True; TSkinBox 0; toolbarevents"},       // 27
        {"TStatusBar TCustomStatusBar", "", "TSkinStatusBar 0"},                    // 28
        {"TProgressBar", "", "TSkinProgress 0"},                                    // 29
        {"TScrollBar", "", "TSkinScControl"},                                       // 30
        {"TUniComboBox", "", "TSkinComBox 0"},                                      // 31
        {"TComboBox TCustomComboBox", "", "TSkinComBox 0"},                         // 32
        {"TDateTimePicker", "DateMode=dmComboBox Kind=dtkDate", "TSkinDateTime 0"}, // 33
        {"TDateTimePicker", "DateMode=dmUpDown", "TSkinEdit 0"},
        {"TDateTimePicker", "Kind=1", "TSkinEdit 0"},
        {"TDateTimePicker", "", "", Bit(xcEdit)},
        {"TRichEdit", "", "TSkinScrollbar"},              // 34
        {"TdxDBMemo", "", "TSkinScrollbar"},              // 35
        {"TBitBtn TButton", "", "TSkinBitButton 0"},      // 36
        {"TBitBtn TButton", "", "", Bit(xcBitBtn)},       // never a plain button
        {"TSpeedButton", "graphic", "TSkinSpeedButton"},  // 37
        {"TPanel TCustomPanel", "", KIDS "; TSkinBox 1"}, // 38
        {"TPanel TCustomPanel", "", "", Bit(xcPanel)},
        {"TdxDBGrid", "", "TSkinScrollbar"},                 // 39
        {"TListView TCustomListView", "", "TSkinListView"},  // 40
        {"TMemo TCustomMemo", "", "TSkinScrollbar"},         // 41
        {"TStringGrid TCustomGrid", "", "TSkinScrollbar"},   // 42
        {"TTreeView TCustomTreeView", "", "TSkinScrollbar"}, // 43
        {"TSomeView TWinControl", "scroll", "TSkinScrollbar"},
        {"TSomeView TWinControl", "scroll graphic", ""},
        {"TButton", "", "TSkinButton 0"},             // 44
        {"TEdit TCustomEdit", "", "TSkinEdit 0"},     // 45
        {"TDCEdit", "NumButtons=1", "TSkinComBox 0"}, // 46
        {"TDCDBEdit", "NumButtons=0", "TSkinEdit 0 handle"},
        {"TDCEdit", "NumButtons=1", "", Bit(xcCombo)},
        {"TDCEdit TCustomForm", "", ""},                // not in 48's branch
        {"TFrame TCustomFrame", "", KIDS},              // 47
        {"TForm TCustomForm", "", "TSkinBox 1; " KIDS}, // 48
        {"TDBComboBoxEh TCustomComboBox", "", ""},      // 6
        {"TfrPBox TCustomPanel", "", ""},
        // Skin3rd kinds; a hit ends the rule even when the kind does nothing.
        {"TXNil TButton", "", ""},
        {"TXOdd TButton", "", ""},
        {"TComboboxEx TCustomComboBox", "", "TSkinComBox"},
        {"TcxDBComboBox TCustomEdit", "", "", Bit(xcCombo)},
        {"TLMDEdit TCustomEdit", "framed", "TSkinEdit"},
        {"TLMDEdit TCustomEdit", "", ""},
        {"TLMDRadioButton", "", "TSkinRadioButton"},
        {"TControlBar", "", "Transparent=True; TSkinBox 1"},
        {"TXTrack", "", "Transparent=True; TSkinTrackBar", Bit(xcTrackBar)},
        {"TXTrack", "", "", Bit(xcButton)},
        {"TRzButton TButton", "", "TSkinButton"},
        {"TXDate", "", "TSkinDateTime"},
        {"TXMedia", "", "TSkinMP"},
        {"TRzBitBtn", "", "TSkinBitButton"},
        {"TcxButton", "Kind=cxbkDropDownButton", "TSkinMenuButton"},
        {"TcxButton", "Kind=cxbkStandard", "TSkinBitButton"},
        {"TPngBitBtn", "", "TSkinBitButton png"},
        {"TRzMenuButton", "", "TSkinMenuButton"},
        {"TRxSpeedButton", "", "TSkinSpeedButton"},
        {"TXTab", "", "TSkinTab"},
        {"TXTab", "", "", NoTabs},
        {"TXProgress", "", "TSkinProgress"},
        {"TPlusMemo", "", "TSkinScrollbar; " KIDS},
        {"TXSingle", "", "TSkinScrollbar single"},
        {"TXEmbed", "", "TScrollBar:TSkinScControl; TListBox:TSkinScrollbar"},
        {"TXEmbed", "", "", Bit(xcScrollbar)},
        {"TXContainer", "", KIDS},
        {"TcxGroupBox", "", "TSkinGroupBox 1"},
        {"TXPlus", "", "TSkinPlusPage 1 k4", NoTabs},
        {"TXPlus", "", "", Bit(xcTab)},
        {"TLMDRadioGroup", "",
         "TButton:TSkinRadioButton; TScrollBar:TSkinRadioButton; TListBox:TSkinRadioButton; "
         "TSkinGroupBox 1"},
        {"TRzRadioGroup", "",
         "TButton:TSkinObjImage k2; TScrollBar:TSkinObjImage k2; TListBox:TSkinObjImage k2; "
         "TSkinGroupBox 1"},
        {"TRzRadioGroup", "", "TSkinGroupBox 1", Bit(xcRadioButton)},
        {"TRzRadioGroup", "", "", Bit(xcGroupBox)},
        {"TLMDCheckGroup", "",
         "TButton:TSkinCheckBox; TScrollBar:TSkinCheckBox; TListBox:TSkinCheckBox",
         Bit(xcGroupBox)},
        {"TRzCheckGroup", "",
         "TButton:TSkinObjImage k1; TScrollBar:TSkinObjImage k1; TListBox:TSkinObjImage k1; "
         "TSkinGroupBox 1"},
        {"TRzCheckGroup", "", "", Bit(xcPanel)},
        {"TLMDCheckBox", "", "TSkinCheckBox"},
    };
    for (const auto& c : cases) {
        TTree t;
        const TControlDesc& d = t.WithKids(c.Classes, c.Props);
        EXPECT_EQ(Show(DecideControlSkin(d, Context(c.Without)), d), c.Expected)
            << c.Classes << " " << c.Props;
    }
}

TEST(SkinManager, DisableTagAndSkinned) {
    TSkinContext c = Context();
    c.DisableTag = 5;
    struct {
        const char* Classes;
        int Tag;
        const char* Props;
        const char* Expected;
    } cases[] = {
        {"TButton", 99, "", "TSkinButton 0"}, // only the data's DisableTag counts here
        {"TButton", 5, "", ""},
        {"TRadioGroup TCustomRadioGroup", 5, "", "TButton:Tag=5; TScrollBar:Tag=5; TListBox:Tag=5"},
        {"TLMDCheckGroup", 5, "", "TButton:Tag=5; TScrollBar:Tag=5; TListBox:Tag=5"},
        {"TRadioGroup TCustomRadioGroup", 5, "graphic", ""},
        {"TPanel TCustomPanel", 5, "", ""},
    };
    for (const auto& k : cases) {
        TTree t;
        TControlDesc& d = t.WithKids(k.Classes, k.Props);
        d.Tag = k.Tag;
        EXPECT_EQ(Show(DecideControlSkin(d, c), d), k.Expected) << k.Classes << " " << k.Tag;
    }
    TTree t;
    TControlDesc& orphan = t.Add("TButton");
    orphan.HasParent = false;
    TControlDesc& skinned = t.Add("TButton");
    skinned.Skinned = true;
    EXPECT_TRUE(DecideControlSkin(orphan, c).empty());
    EXPECT_TRUE(DecideControlSkin(skinned, c).empty());

    // Within one walk, buttons of a disabled group stay out once it passed its tag on.
    TControlDesc& group = t.WithKids("TRadioGroup TCustomRadioGroup");
    group.Tag = 5;
    const TControlDesc& form = t.Add("TForm TCustomForm", "", {&group});
    EXPECT_EQ(Show(DecideControlSkin(form, c), form),
              "TSkinBox 1; TButton:Tag=5; TScrollBar:Tag=5; TListBox:Tag=5");
}

TEST(SkinManager, OnSkinControl) {
    TSkinControl* const made = reinterpret_cast<TSkinControl*>(0x1000);
    TSkinContext c = Context();
    std::vector<std::string> asked;
    c.OnSkinControl = [&](const TControlDesc&, const AnsiString& Cls) -> TSkinControl* {
        asked.push_back(Cls);
        return Cls == "TPANEL" || Cls == "TLABEL" ? made : nullptr;
    };
    TTree t;
    const TControlDesc& panel = t.WithKids("TPanel TCustomPanel");
    const auto steps = DecideControlSkin(panel, c);
    EXPECT_EQ(Show(steps, panel), "custom; " KIDS);
    EXPECT_EQ(steps[0].Custom, made);
    EXPECT_EQ(asked, (std::vector<std::string>{"TPANEL", "TBUTTON", "TSCROLLBAR", "TLISTBOX"}));
    const TControlDesc& label = t.WithKids("TLabel TCustomLabel");
    EXPECT_EQ(Show(DecideControlSkin(label, c), label), "custom"); // no walk but for panels
}

TEST(SkinManager, Skin3rdTableChanges) {
    TTree t;
    const TControlDesc& edit = t.Add("TLMDEdit TCustomEdit");
    TSkinContext c = Context();
    EXPECT_EQ(Show(DecideControlSkin(edit, c), edit), "");
    c.Skin3rd.clear(); // every control falls through to the class rules
    EXPECT_EQ(Show(DecideControlSkin(edit, c), edit), "TSkinEdit 0");

    // "nil" exempts the class, yet the form's walk still reaches its children.
    c.Skin3rd = {"TPlusPageControl=nil"};
    const TControlDesc& button = t.Add("TButton");
    const TControlDesc& plus = t.Add("TPlusPageControl TCustomPanel", "", {&button});
    const TControlDesc& form = t.Add("TForm TCustomForm", "", {&plus});
    EXPECT_EQ(Show(DecideControlSkin(plus, c), plus), "");
    EXPECT_EQ(Show(DecideControlSkin(form, c), form), "TSkinBox 1; TButton:TSkinButton 0");
}

TEST(SkinManager, FormWalkSkinsEachControlOnce) {
    TTree t;
    const TControlDesc& inner = t.Add("TButton");
    const TControlDesc& panel = t.Add("TPanel TCustomPanel", "", {&inner});
    const TControlDesc& coolbar = t.Add("TCoolBar TToolWindow");
    const TControlDesc& frame = t.Add("TFrame TCustomFrame", "", {&coolbar});
    const TControlDesc& form = t.Add("TForm TCustomForm", "", {&panel, &frame});
    EXPECT_EQ(Show(DecideControlSkin(form, Context()), form),
              "TSkinBox 1; TButton:TSkinButton 0; TPanel:TSkinBox 1; TCoolBar:bands");
}

namespace {

struct TDataSet {
    std::deque<TSkinDataModel> Models;
    TDataList List;
    TDataEntry& Add(TSkinFormType Type, bool Empty = false, std::uintptr_t Owner = 0) {
        TSkinDataModel& m = Models.emplace_back();
        m.SkinFormtype = Type;
        m.Empty = Empty;
        return List.emplace_back(TDataEntry{&m, Owner, {}});
    }
};

// A window that passes every test, and one main form data with DisableTag 5.
struct TScene {
    TWindowDesc W;
    TManagerFlags F{true, false};
    TDataSet D;
    TScene() {
        W.Handle = 42, W.ClassName = "TForm1", W.HasForm = true, W.Area = 300 * 200;
        D.Add(sfMainform);
        D.Models[0].DisableTag = 5;
    }
};
void Keep(const AnsiString&, bool&) {}
void Refuse(const AnsiString&, bool& DoSkin) {
    DoSkin = false;
}

} // namespace

TEST(SkinManager, AddFormTests) {
    struct {
        int Failed;
        void (*Change)(TScene&);
    } cases[] = {
        {0, [](TScene&) {}},
        {1, [](TScene& s) { s.F.Active = false; }},
        {2, [](TScene& s) { s.W.AnswersProbe = true; }},
        {2, [](TScene& s) { s.W.Listed = true; }},
        {3, [](TScene& s) { s.W.IsChild = true, s.W.ParentClass = "TPanel"; }},
        {0, [](TScene& s) { s.W.IsChild = s.F.Scanning = true; }},
        {0, [](TScene& s) { s.W.IsChild = true, s.W.ParentClass = "MDIClient"; }},
        {4, [](TScene& s) { s.W.HasForm = s.W.SameModule = false; }},
        {0, [](TScene& s) { s.W.HasForm = s.W.SameModule = false, s.W.ClassName = "#32770"; }},
        {5, [](TScene& s) { s.W.Area = 0; }},
        {0, [](TScene& s) { s.W.Area = 0, s.W.MDIChild = s.W.IsChild = true; }},
        // Tag 99 is fixed for forms: DisableTag 5 neither frees nor takes its place.
        {6, [](TScene& s) { s.W.FormTag = 99; }},
        {0, [](TScene& s) { s.W.FormTag = 5; }},
        {7, [](TScene& s) { s.W.ClassName = "TApplication"; }},
        {7, [](TScene& s) { s.W.ClassName = "XTcxPopupEditPopupWindow2"; }},
        {8, [](TScene& s) { s.W.ClassName = "TPrintPreviewForm", s.D.Models[0].Options = 0; }},
        {0, [](TScene& s) { s.W.ClassName = "TPrintPreviewForm"; }},
        {8, [](TScene& s) { s.W.ClassName = "SysMonthCal32"; }},
        {8, [](TScene& s) { s.W.ClassName = "TfrSample", s.D.Models[0].SkinControls = All; }},
        {0, [](TScene& s) { s.W.ClassName = "TfrSample"; }},
        // A handler alone decides, starting from what the preview test left.
        {0, [](TScene& s) { s.W.ClassName = "SysMonthCal32", s.D.List[0].OnFormSkin = Keep; }},
        {8, [](TScene& s) { s.D.List[0].OnFormSkin = Refuse; }},
        {8,
         [](TScene& s) {
             s.W.ClassName = "TPreview", s.D.Models[0].Options = 0, s.D.List[0].OnFormSkin = Keep;
         }},
        {9, [](TScene& s) { s.D.List.clear(); }},
        {10, [](TScene& s) { s.D.Models[0].Empty = true; }},
    };
    for (const auto& c : cases) {
        TScene s;
        c.Change(s);
        const TAddFormResult r = DecideAddForm(s.W, s.F, s.D.List);
        EXPECT_EQ(r.FailedTest, c.Failed) << "row " << &c - cases;
        if (r.Accepted()) {
            EXPECT_EQ(r.Data, &s.D.List[0]);
        }
    }
}

TEST(SkinManager, DataChoice) {
    TDataSet d;
    d.Add(sfDialog);
    d.Add(sfMainform);
    d.Add(sfOnlyThisForm, false, 7);
    d.Add(sfMainform);
    d.Add(sfDialog);
    const TDataList& l = d.List;
    EXPECT_EQ(ChooseData(l, 7, "TForm1"), &l[2]);
    EXPECT_EQ(ChooseData(l, 8, "TMessageForm"), &l[4]); // the last of a type wins
    EXPECT_EQ(ChooseData(l, 8, "#32770"), &l[4]);
    EXPECT_EQ(ChooseData(l, 8, "TForm1"), &l[3]);
    EXPECT_EQ(MainDataOf(l), &l[1]); // while the class filter asks the first
    TDataList dialogs(l.begin(), l.begin() + 1);
    dialogs.push_back(l[4]);
    EXPECT_EQ(ChooseData(dialogs, 8, "TForm1"), &dialogs[0]);
    EXPECT_EQ(ChooseData({}, 8, "TForm1"), nullptr);
}

TEST(SkinManager, AddMenu) {
    struct {
        int Kind;
        TSkinControlTypes Set;
        bool Skinned;
    } cases[] = {
        {0, Bit(xcPopupMenu), true},          {0, All & ~Bit(xcPopupMenu), false},
        {1, Bit(xcMainMenu), true},           {1, Bit(xcMenuItem), true},
        {1, Bit(xcPopupMenu), false},         {2, Bit(xcSystemMenu), true},
        {2, All & ~Bit(xcSystemMenu), false}, {3, All, false},
    };
    for (const auto& c : cases) {
        TScene s;
        s.D.Models[0].SkinControls = c.Set;
        EXPECT_EQ(DecideAddMenu(s.W, s.F, c.Kind, s.D.List) != nullptr, c.Skinned)
            << c.Kind << " " << c.Set;
    }
    for (void (*change)(TScene&) :
         {+[](TScene& s) { s.F.Active = false; }, +[](TScene& s) { s.W.AnswersProbe = true; },
          +[](TScene& s) { s.W.Listed = true; }, +[](TScene& s) { s.D.Models[0].Empty = true; }}) {
        TScene s;
        change(s);
        EXPECT_EQ(DecideAddMenu(s.W, s.F, 0, s.D.List), nullptr);
    }
}
