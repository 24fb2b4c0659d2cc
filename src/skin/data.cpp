#include "skin/data.h"

#include "base/Exceptions.h"
#include "skin/bitmap.h"
#include "skin/colors.h"
#include "skin/draw.h"
#include "skin/quickini.h"
#include "skin/reader.h"

#include <algorithm>
#include <filesystem>

// ---- colour values and the class table

TColor ParseColourValue(const AnsiString& Text, TColor Default) {
    if (Text.empty()) return Default;
    int channel[3] = {0, 0, 0};
    int count = 0;
    AnsiString digits;
    // A number beyond 32 bits reads as 0; a channel keeps the low byte of its
    // number, as the byte conversion of the colour does.
    auto number = [&] { return StrToIntDef(digits, 0) & 0xFF; };
    for (char c : Text) {
        if (c >= '0' && c <= '9') {
            digits += c;
            continue;
        }
        if (!digits.empty()) {
            if (count < 3) channel[count] = number();
            ++count;
            digits.clear();
        }
    }
    // The text's last number counts only as the third: "12,200" is red 12.
    if (!digits.empty() && count == 2) channel[2] = number();
    return RGBColor(channel[0], channel[1], channel[2]);
}

AnsiString Skin3rdKind(const std::vector<AnsiString>& Table, const AnsiString& ClassName) {
    const AnsiString pattern = AnsiLower(ClassName) + "=";
    for (const AnsiString& line : Table) {
        AnsiString lower = AnsiLower(line);
        if (lower.compare(0, pattern.size(), pattern) == 0) return lower.substr(pattern.size(), 50);
    }
    return AnsiString();
}

const std::vector<AnsiString>& DefaultSkin3rd() {
    struct TGroup {
        const char* Kind;
        std::vector<const char*> Classes;
    };
    // Three lines are repeated, as the table has always been shipped; they
    // change no look-up.
    static const std::vector<AnsiString> table = [] {
        const TGroup groups[] = {
            {"scrollbar",
             {"TCategoryButtons", "TVirtualStringTree", "TVirtualDrawTree", "TPlusPanelGroup",
              "THTMLViewer", "TDBCtrlGrid", "TImageEnMView", "TImageEnView", "TPlusMemo",
              "TDBPlusMemo"}},
            {"pngbitbtn", {"TPngBitBtn"}},
            {"panel",
             {"TTBXDockablePanel", "TControlBar", "TTBDock", "TTBToolbar", "TRzGroup",
              "TLMDCalculator", "TLMDGROUPBOX", "TLMDSIMPLEPANEL", "TLMDDBCalendar",
              "TLMDButtonPanel", "TLMDLMDCalculator", "TLMDHeaderPanel", "TLMDTechnicalLine",
              "TLMDLMDClock", "TLMDTrackbar"}},
            {"combobox",
             {"TComboboxex",
              "TcxDBLookupComboBox",
              "TcxDBComboBox",
              "TcxDBDateEdit",
              "TcxDBImageComboBox",
              "TcxDBCalcEdit",
              "TcxDBBlobEdit",
              "TcxDBPopupEdit",
              "TcxDBFontNameComboBox",
              "TcxDBShellComboBox",
              "TRxLookupEdit",
              "TRxDBLookupCombo",
              "TRzDateTimeEdit",
              "TRzColorEdit",
              "TRzDateTimePicker",
              "TRzDBDateTimeEdit",
              "TRzDbColorEdit",
              "TRzDBDateTimePicker",
              "TLMDListCombobox",
              "TLMDCheckListCombobox",
              "TLMDHeaderListCombobox",
              "TLMDImageCombobox",
              "TLMDColorCombobox",
              "TLMDFontCombobox",
              "TLMDFontSizeCombobox",
              "TLMDPrinterCombobox",
              "TLMDDriveCombobox",
              "TLMDCalculatorComboBox",
              "TLMDTrackBarComboBox",
              "TLMDCalendarComboBox",
              "TLMDTreeComboBox",
              "TDBLookupCombobox",
              "TDBLookupCombobox",
              "TWWDBCombobox",
              "TWWDBLookupCombo",
              "TWWKeyCombo",
              "TWWTempKeyCombo",
              "TWWDBDateTimePicker"}},
            {"speedbutton", {"TRxSpeedButton", "TfrSpeedButton", "TfrTBButton"}},
            {"button", {"TRzButton"}},
            {"bitbtn", {"TRzBitbtn", "TLMDButton", "TcxButton"}},
            {"menubtn", {"TRzMenuButton"}},
            {"checkgroup", {"TRzCheckGroup", "TLMDCheckGroup", "TLMDDBCheckGroup"}},
            {"radiogroup",
             {"TRzRadioGroup", "TRzDBRadioGroup", "TLMDRADIOGROUP", "TLMDDBRADIOGROUP",
              "TWWRADIOGROUP", "TcxDBRadioGroup", "TcxRadioGroup"}},
            {"edit",
             {"TRzButtonEdit",     "TLMDCalculatorEdit", "TLMDEDIT",           "TLMDMASKEDIT",
              "TLMDBROWSEEDIT",    "TLMDEXTSPINEDIT",    "TLMDCALENDAREDIT",   "TLMDFILEOPENEDIT",
              "TLMDFILESAVEEDIT",  "TLMDCOLOREDIT",      "TLMDDBEDIT",         "TLMDDBMASKEDIT",
              "TLMDDBEXTSPINEDIT", "TLMDDBSPINEDIT",     "TLMDDBEDITDBLookup", "TLMDEDITDBLookup",
              "TWWDBEDIT",         "TWWDBEDIT",          "TOVCPICTUREFIELD",   "TOVCDBPICTUREFIELD",
              "TOVCSLIDEREDIT",    "TOVCDBSLIDEREDIT",   "TOVCSIMPLEFIELD",    "TOVCDBSIMPLEFIELD",
              "TO32DBFLEXEDIT",    "TOVCNUMERICFIELD",   "TOVCDBNUMERICFIELD"}},
            {"radiobutton", {"TRzDBRadioButton", "TLMDRadiobutton"}},
            {"groupbox", {"TLMDGroupBox", "TcxGroupbox"}},
            {"checkbox", {"TDBCheckboxEh", "TLMDCHECKBOX", "TLMDCHECKBOX", "TLMDDBCHECKBOX"}},
        };
        std::vector<AnsiString> lines;
        for (const TGroup& g : groups)
            for (const char* c : g.Classes)
                lines.push_back(AnsiString(c) + "=" + g.Kind);
        return lines;
    }();
    return table;
}

TMemoryBitmap TrackResource(bool Vertical) {
    // A sunken groove: shadow, dark shadow, face, highlight from the outside in.
    TMemoryBitmap bmp(16, 4);
    const TPixel rows[4] = {
        ColorToPixel(RGBColor(128, 128, 128)), ColorToPixel(RGBColor(64, 64, 64)),
        ColorToPixel(RGBColor(212, 208, 200)), ColorToPixel(RGBColor(255, 255, 255))};
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 16; ++x)
            bmp.SetPixel(x, y, rows[y]);
    if (Vertical) Rotate270(bmp);
    return bmp;
}

TMemoryBitmap VeneerMenuResource() {
    static const char* const glyphs[4][8] = {{"  ######", "  #    #", "####### ", "#     ##",
                                              "#     # ", "#     # ", "#######", "        "},
                                             {"########", "########", "#      #", "#      #",
                                              "#      #", "#      #", "########", "        "},
                                             {"        ", "        ", "        ", "        ",
                                              "        ", "        ", "######", "######"},
                                             {"##    ##", " ##  ## ", "  ####  ", "   ##   ",
                                              "  ####  ", " ##  ## ", "##    ##", "        "}};
    TMemoryBitmap bmp(64, 16, 0xFFFFFFFFu);
    for (int g = 0; g < 4; ++g)
        for (int y = 0; y < 8; ++y)
            for (int x = 0; glyphs[g][y][x]; ++x)
                if (glyphs[g][y][x] == '#') bmp.SetPixel(g * 16 + 4 + x, 4 + y, 0xFF000000u);
    return bmp;
}

// ---- TSkinDataModel

TSkinDataModel::TSkinDataModel() {
    Skin3rd = DefaultSkin3rd();
    ResetModel();
}

TSkinDataModel::~TSkinDataModel() = default;

TDataSkinBorder* TSkinDataModel::Borders(int Index) const {
    switch (Index) {
    case 1:
        return Left.get();
    case 2:
        return Right.get();
    case 3:
        return Top.get();
    case 4:
        return Bottom.get();
    default:
        return nullptr;
    }
}

std::vector<std::pair<const char*, const TDataSkinObject*>> TSkinDataModel::Objects() const {
    return {{"Title", Title.get()},
            {"Buttons", Buttons.get()},
            {"Progress", Progress.get()},
            {"ProgressChunk", ProgressChunk.get()},
            {"MenuBar", MenuBar.get()},
            {"GroupBoxEdge", GroupBoxEdge.get()},
            {"GroupBox", GroupBox.get()},
            {"Tabs", Tabs.get()},
            {"StatusBarEdges", StatusBarEdges.get()},
            {"TabPane", TabPane.get()},
            {"ToolBars", ToolBars.get()},
            {"ComboButton", ComboButton.get()},
            {"SunkEdge", SunkEdge.get()},
            {"ExtraImages", ExtraImages.get()},
            {"Headerbar", Headerbar.get()},
            {"MenuItem", MenuItem.get()},
            {"MenuBackground", MenuBackground.get()},
            {"ScrollbarMap", ScrollbarMap.get()},
            {"HorzScroll", HorzScroll.get()},
            {"VertScroll", VertScroll.get()},
            {"HorzScrollThumb", HorzScrollThumb.get()},
            {"VertScrollThumb", VertScrollThumb.get()},
            {"ThumbHorz", ThumbHorz.get()},
            {"ThumbVert", ThumbVert.get()},
            {"ThumbLeft", ThumbLeft.get()},
            {"ThumbRight", ThumbRight.get()},
            {"ThumbUp", ThumbUp.get()},
            {"ThumbDown", ThumbDown.get()},
            {"UpDownHorz", UpDownHorz.get()},
            {"UpDownVert", UpDownVert.get()},
            {"Track", Track.get()},
            {"TrackVert", TrackVert.get()},
            {"ComboxArrow", ComboxArrow.get()},
            {"Toolbar", Toolbar.get()}};
}

void TSkinDataModel::SetSkinFile(const AnsiString& Value) {
    Empty = true;
    FSkinFile = Value;
    std::error_code ec;
    if (Value.empty() || !std::filesystem::is_regular_file(Value, ec)) return;
    {
        TFileStream file(Value, fmOpenRead | fmShareDenyWrite);
        std::vector<std::uint8_t> bytes(std::size_t(std::max<std::int64_t>(file.Size(), 0)));
        file.ReadBuffer(bytes.data(), std::int64_t(bytes.size()));
        SkinStream = TMemoryStream(std::move(bytes));
    }
    ReadSkin();
    if (SkinFormtype == sfMainform) UpdateSkin();
}

void TSkinDataModel::ReadSkinStream(TStream& Stream) {
    std::int32_t size = Stream.ReadInt32();
    SkinStream.Clear();
    if (size >= 1) {
        // Checked before allocating: a forged size must not reserve memory.
        if (size > Stream.Size() - Stream.Position()) throw EReadError(RtlMessages::SReadError);
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
        Stream.ReadBuffer(bytes.data(), size);
        SkinStream = TMemoryStream(std::move(bytes));
    }
    ReadSkin();
}

void TSkinDataModel::WriteSkinStream(TStream& Stream) const {
    const auto& bytes = SkinStream.Data();
    Stream.WriteInt32(std::int32_t(bytes.size()));
    if (!bytes.empty()) Stream.WriteBuffer(bytes.data(), std::int64_t(bytes.size()));
}

bool TSkinDataModel::ReadSkin() {
    Empty = true;
    TSkinReader reader;
    reader.OnMessage = OnMessage;
    TMemoryStream temp;
    if (!reader.LoadFromStream(SkinStream)) return false;
    TQuickIni ini;
    AnsiString iniName;
    reader.GetFileByPart(".ini", temp, iniName);
    temp.SetPosition(0);
    ini.LoadFromStream(&temp);
    struct TReaderScope {
        const TSkinReader*& Ref;
        ~TReaderScope() { Ref = nullptr; }
    } scope{FReader};
    FReader = &reader;
    FPixelBudget = PixelBudget;
    ReadIni(ini);
    return true;
}

void TSkinDataModel::LoadBitmap(TMemoryBitmap& Target, const AnsiString& Path) {
    std::size_t cut = Path.find_last_of("\\/:");
    AnsiString name = cut == AnsiString::npos ? Path : Path.substr(cut + 1);
    std::size_t dot = name.rfind('.');
    AnsiString ext = dot == AnsiString::npos ? AnsiString() : name.substr(dot);
    // The extension test is case-sensitive on purpose: ".BMP" gives no image
    // although the member look-up ignores case.
    if (name.empty() || ext != ".bmp" || !FReader) {
        Target = TMemoryBitmap();
        return;
    }
    TMemoryStream member;
    FReader->GetFile(name, member);
    if (member.Size() > 0)
        LoadBMP(member.Data(), Target);
    else
        Target = TMemoryBitmap();
    const std::int64_t pixels = std::int64_t(Target.Width()) * Target.Height();
    if (pixels > FPixelBudget)
        Target = TMemoryBitmap();
    else
        FPixelBudget -= pixels;
}

TColor TSkinDataModel::SampleBackground() {
    if (!Top || Top->Map.Empty()) return ButtonFace;
    // A border without a frame count is sampled as one frame.
    int frames = Top->Frame > 0 ? Top->Frame : 1;
    int x = Top->Map.Width() / 3, y = (Top->Map.Height() / frames) / 3;
    return PixelToColor(Top->Map.Pixel(x, y));
}

// ---- reading

void TSkinDataModel::ResetModel() {
    Title = std::make_unique<TDataSkinTitle>();
    Buttons = std::make_unique<TDataSkinButton>();
    Left = std::make_unique<TDataSkinBorder>();
    Right = std::make_unique<TDataSkinBorder>();
    Top = std::make_unique<TDataSkinBorder>();
    Bottom = std::make_unique<TDataSkinBorder>();
    SysButtons.clear();
    Colours.clear();
    for (auto* p :
         {&Progress,        &ProgressChunk,   &MenuBar,      &GroupBoxEdge, &StatusBarEdges,
          &TabPane,         &ToolBars,        &SunkEdge,     &ExtraImages,  &Headerbar,
          &MenuItem,        &MenuBackground,  &ScrollbarMap, &HorzScroll,   &VertScroll,
          &HorzScrollThumb, &VertScrollThumb, &ThumbHorz,    &ThumbVert,    &ThumbLeft,
          &ThumbRight,      &ThumbUp,         &ThumbDown,    &Track,        &TrackVert,
          &ComboxArrow,     &Toolbar})
        p->reset();
    GroupBox.reset();
    Tabs.reset();
    ComboButton.reset();
    UpDownHorz.reset();
    UpDownVert.reset();
}

void TSkinDataModel::DefaultTextColours(TDataSkinObject& Obj) const {
    // Text colours that no key gives are the skin's button text.
    Obj.NormalColour2 = Obj.MouseOverColour2 = Obj.PressedColour2 = ButtonText;
}

TColor TSkinDataModel::ReadColour(const TQuickIni& Ini, const AnsiString& Section,
                                  const AnsiString& Key, TColor Default) const {
    return ParseColourValue(Ini.ReadString(Section, Key, AnsiString()), Default);
}

void TSkinDataModel::ReadIni(const TQuickIni& Ini) {
    ResetModel();
    SkinName = Ini.ReadString("TitlebarSkin", "SkinName", AnsiString());
    ReadBorders(Ini);
    ReadColours(Ini);
    for (TDataSkinObject* o : std::initializer_list<TDataSkinObject*>{
             Title.get(), Buttons.get(), Left.get(), Right.get(), Top.get(), Bottom.get()})
        DefaultTextColours(*o);
    ReadSysButtons(Ini);
    ReadButtons(Ini);
    ReadTitle(Ini);
    ReadObjects(Ini);
    SetObjectFrames();
    MakeComboButton();
    MakeComboArrow();
    MakeToolbarImage();
    BGColor = SampleBackground();
    Empty = false;
}

void TSkinDataModel::ReadBorders(const TQuickIni& Ini) {
    const char* parts[4] = {"Left", "Right", "Top", "Bottom"};
    for (int i = 0; i < 4; ++i) {
        const AnsiString part = parts[i];
        TDataSkinBorder& b = *Borders(i + 1);
        b.IDName = part;
        int topHeight = Ini.ReadInteger("Personality", part + "TopHeight", 0);
        int botHeight = Ini.ReadInteger("Personality", part + "BotHeight", 0);
        b.Frame = Ini.ReadInteger("Personality", part + "Frame", 1);
        b.Tile = std::min(Ini.ReadInteger("Personality", part + "Stretch", 0), 1);
        b.Trans = Ini.ReadInteger("Personality", part + "Trans", 1);
        LoadBitmap(b.Map, Ini.ReadString("Personality", part, AnsiString()));
        if (i < 2)
            b.r = Rect(0, topHeight, 0, botHeight);
        else
            b.r = Rect(topHeight, 0, botHeight, 0);
    }
}

void TSkinDataModel::ReadColours(const TQuickIni& Ini) {
    const AnsiString s = "Colours";
    WindowText = ReadColour(Ini, s, "WindowText", clWindowText);
    ButtonText = ReadColour(Ini, s, "ButtonText", clBtnText);
    ButtonFace = ReadColour(Ini, s, "ButtonFace", clBtnFace);
    ButtonHilight = ReadColour(Ini, s, "ButtonHilight", clBtnHighlight);
    Scrollbar = ReadColour(Ini, s, "Scrollbar", clScrollBar);
    Buttonlight = ReadColour(Ini, s, "Buttonlight", clBtnHighlight);
    HilightText = ReadColour(Ini, s, "HilightText", clHighlightText);
    ButtonShadow = ReadColour(Ini, s, "ButtonShadow", clBtnShadow);
    Hilight = ReadColour(Ini, s, "Hilight", clHighlight);
    ButtonDkShadow = ReadColour(Ini, s, "ButtonDkShadow", cl3DDkShadow);
    Menubar = ReadColour(Ini, s, "Menubar", ButtonFace);
    MenuBarText = ReadColour(Ini, s, "MenuBarText", clMenuText);
    Menu = ReadColour(Ini, s, "Menu", clMenu);
    TitleTextActive = ReadColour(Ini, s, "TitleTextActive", clCaptionText);
    MenuText = ReadColour(Ini, s, "MenuText", clMenuText);
    TitleTextNoActive = ReadColour(Ini, s, "TitleTextNoActive", clInactiveCaptionText);

    std::vector<AnsiString> sections;
    Ini.ReadSections(sections);
    for (const AnsiString& name : sections) {
        AnsiString upper = AnsiUpper(name);
        if (upper.rfind("COLOUR", 0) == 0 && upper != "COLOURS")
            Colours.push_back(ReadColour(Ini, name, "color", clWindowText));
    }
    for (int i = 0; i < 10; ++i)
        CustomColors[std::size_t(i)] =
            ReadColour(Ini, "Customcolors", "Color" + std::to_string(i), clWhite);
}

void TSkinDataModel::ReadSysButtons(const TQuickIni& Ini) {
    SysButtons.clear();
    std::vector<AnsiString> sections;
    Ini.ReadSections(sections);
    for (std::size_t i = sections.size(); i-- > 0;) {
        const AnsiString upper = AnsiUpper(sections[i]);
        bool keep = upper.rfind("BUTTON", 0) == 0 && upper != "BUTTONS" &&
                    upper != "BUTTON.RADIO" && upper != "BUTTON.CHECKBOX" && upper != "BUTTON";
        // A hidden button (action -1) stays only when its visibility is 0.
        if (keep && Ini.ReadInteger(sections[i], "Action", 0) == -1 &&
            Ini.ReadInteger(sections[i], "Visibility", -1) != 0)
            keep = false;
        if (!keep) sections.erase(sections.begin() + std::ptrdiff_t(i));
    }
    for (const AnsiString& name : sections) {
        auto b = std::make_unique<TDataSkinSysButton>();
        b->IDName = AnsiUpper(name);
        DefaultTextColours(*b);
        b->Action = Ini.ReadInteger(name, "Action", 0);
        b->Align = Ini.ReadInteger(name, "Align", 0);
        b->Xcoord = Ini.ReadInteger(name, "Xcoord", 0);
        b->Ycoord = Ini.ReadInteger(name, "Ycoord", 0);
        b->Visibility = Ini.ReadInteger(name, "Visibility", 0);
        b->Visibility1 = Ini.ReadInteger(name, "Visibility1", b->Action == -1 ? -1 : 0);
        b->CombineOp = Ini.ReadInteger(name, "CombineOp", -1);
        b->Frame = Ini.ReadInteger(name, "frame", 0);
        LoadBitmap(b->Map, Ini.ReadString(name, "ButtonImage", AnsiString()));
        if (b->Frame == 0) {
            b->Frame = 6;
            if (!b->Map.Empty() && double(b->Map.Width()) / double(b->Map.Height()) <= 3.8)
                b->Frame = 3;
            if (!b->Map.Empty() && b->Action < 0) b->Frame = 6;
            // The system menu button shows the window's icon instead.
            if (b->Action == 3 || b->Action == 11) b->Map = TMemoryBitmap();
        }
        SysButtons.push_back(std::move(b));
    }
    // The buttons of a maximized child window, cut from one 12-cell strip.
    TMemoryBitmap strip;
    LoadBitmap(strip, Ini.ReadString("MDICONTROLS", "Image", AnsiString()));
    const int w = strip.Width() / 12;
    for (int i = 0; i < 3; ++i) {
        auto b = std::make_unique<TDataSkinSysButton>();
        b->IDName = "MDICONTROLS";
        DefaultTextColours(*b);
        b->Action = 7 + i;
        b->Align = b->Visibility = b->Visibility1 = 100;
        b->Frame = 4;
        b->Xcoord = (3 - i) * (w + 4);
        if (w > 0) b->Map = CropBitmap(strip, Bounds(4 * i * w, 0, 4 * w, strip.Height()));
        SysButtons.push_back(std::move(b));
    }
}

void TSkinDataModel::ReadCommon(const TQuickIni& Ini, const AnsiString& Section,
                                TDataSkinObject& Obj, bool Style, bool Colours) {
    Obj.IDName = Section;
    if (Style) Obj.Style = Ini.ReadInteger(Section, "Style", 0);
    Obj.r = Rect(Ini.ReadInteger(Section, "LeftWidth", 0), Ini.ReadInteger(Section, "TopHeight", 0),
                 Ini.ReadInteger(Section, "RightWidth", 0),
                 Ini.ReadInteger(Section, "BottomHeight", 0));
    Obj.Trans = Ini.ReadInteger(Section, "Trans", 0);
    Obj.Tile = Ini.ReadInteger(Section, "Tile", 0);
    if (Obj.Tile > 1) Obj.Tile = 0;
    DefaultTextColours(Obj);
    if (!Colours) return;
    Obj.NormalColour = TColor(Ini.ReadInteger(Section, "NormalColour", -1));
    Obj.MouseOverColour = TColor(Ini.ReadInteger(Section, "MouseOverColour", -1));
    Obj.PressedColour = TColor(Ini.ReadInteger(Section, "PressedColour", -1));
    Obj.NormalColour2 = ReadColour(Ini, Section, "NormalColour2", ButtonText);
    Obj.MouseOverColour2 = ReadColour(Ini, Section, "MouseOverColour2", ButtonText);
    Obj.PressedColour2 = ReadColour(Ini, Section, "PressedColour2", ButtonText);
}

template <class T>
std::unique_ptr<T> TSkinDataModel::ReadObjectAs(const TQuickIni& Ini, const AnsiString& Section) {
    AnsiString image = Ini.ReadString(Section, "Image", AnsiString());
    if (image.empty()) return nullptr;
    auto obj = std::make_unique<T>();
    LoadBitmap(obj->Map, image);
    ReadCommon(Ini, Section, *obj, true, true);
    obj->Frame = Ini.ReadInteger(Section, "Frame", 0);
    return obj;
}

std::unique_ptr<TDataSkinObject> TSkinDataModel::ReadObject(const TQuickIni& Ini,
                                                            const AnsiString& Section) {
    return ReadObjectAs<TDataSkinObject>(Ini, Section);
}

std::unique_ptr<TDataSkinBorder> TSkinDataModel::ReadBorderObject(const TQuickIni& Ini,
                                                                  const AnsiString& Section,
                                                                  const AnsiString& ExtraKey) {
    auto obj = ReadObjectAs<TDataSkinBorder>(Ini, Section);
    if (obj) LoadBitmap(obj->Map2, Ini.ReadString(Section, ExtraKey, AnsiString()));
    return obj;
}

std::unique_ptr<TDataSkinObject> TSkinDataModel::ReadBitmapObject(const TQuickIni& Ini,
                                                                  const AnsiString& Section) {
    AnsiString image = Ini.ReadString(Section, "Bitmap", AnsiString());
    if (image.empty()) return nullptr;
    auto obj = std::make_unique<TDataSkinObject>();
    LoadBitmap(obj->Map, image);
    ReadCommon(Ini, Section, *obj, true, false);
    obj->Tile = std::min(Ini.ReadInteger(Section, "Tile", 0), 1); // capped to 1 here, not 0
    return obj;
}

std::unique_ptr<TDataSkinBoxLabel> TSkinDataModel::ReadBoxLabel(const TQuickIni& Ini,
                                                                const AnsiString& Section) {
    auto obj = ReadObjectAs<TDataSkinBoxLabel>(Ini, Section);
    if (obj) {
        obj->BackgroundLeftShift = Ini.ReadInteger(Section, "BackgroundLeftShift", 0);
        obj->BackgroundRightShift = Ini.ReadInteger(Section, "BackgroundRightShift", 0);
        obj->BackgroundAlignment = Ini.ReadInteger(Section, "BackgroundAlignment", 0);
    }
    return obj;
}

void TSkinDataModel::ReadButtons(const TQuickIni& Ini) {
    const AnsiString s = "Buttons";
    TDataSkinButton& b = *Buttons;
    ReadCommon(Ini, s, b, false, true);
    LoadBitmap(b.Map, Ini.ReadString(s, "Bitmap", AnsiString()));
    LoadBitmap(b.CheckMap, Ini.ReadString(s, "CheckButton", AnsiString()));
    LoadBitmap(b.RadioMap, Ini.ReadString(s, "RadioButton", AnsiString()));
    b.RadioButtonFrame = Ini.ReadInteger(s, "RadioButtonFrame", 0);
    b.CheckButtonFrame = Ini.ReadInteger(s, "CheckButtonFrame", 0);
    b.HasNormal2 = !Ini.ReadString(s, "NormalColour2", AnsiString()).empty();
    b.HasOver2 = !Ini.ReadString(s, "MouseOverColour2", AnsiString()).empty();
    b.HasPressed2 = !Ini.ReadString(s, "PressedColour2", AnsiString()).empty();
}

void TSkinDataModel::ReadTitle(const TQuickIni& Ini) {
    const AnsiString s = "Personality";
    TDataSkinTitle& t = *Title;
    t.IDName = "Title";
    LoadBitmap(t.Map, Ini.ReadString(s, "TextBack", AnsiString()));
    t.r = Rect(Ini.ReadInteger(s, "TextShift", 0), Ini.ReadInteger(s, "TextShiftVert", 0),
               Ini.ReadInteger(s, "TextRightClip", 0), 0);
    t.TextAlignment = Ini.ReadInteger(s, "TextAlignment", 0);
    t.Textbackground = Ini.ReadInteger(s, "Textbackground", 0);
    t.TXTBackleft = Ini.ReadInteger(s, "TXTBackleft", 0);
    t.TXTBackRight = Ini.ReadInteger(s, "TXTBackRight", 0);
    t.FontHeight = Ini.ReadInteger("Fonts", "FontHeight", 14);
    auto rgb = [&](const AnsiString& key) {
        int r = Ini.ReadInteger(s, key + "R", -1), g = Ini.ReadInteger(s, key + "G", -1),
            b = Ini.ReadInteger(s, key + "B", -1);
        return r >= 0 && g >= 0 && b >= 0 ? RGBColor(r, g, b) : clNone;
    };
    t.ActiveText = rgb("ActiveText");
    t.InActiveText = rgb("InActiveText");
}

void TSkinDataModel::ReadObjects(const TQuickIni& Ini) {
    Progress = ReadBitmapObject(Ini, "Progress");
    ProgressChunk = ReadObject(Ini, "Progress.Chunk");
    {
        AnsiString image = Ini.ReadString("Personality", "menuBar", AnsiString());
        if (!image.empty()) {
            MenuBar = std::make_unique<TDataSkinObject>();
            MenuBar->IDName = "MenuBar";
            DefaultTextColours(*MenuBar);
            LoadBitmap(MenuBar->Map, image);
            MenuBar->Tile = Ini.ReadInteger("Personality", "TileMenu", 1);
            MenuBar->r.Left = Ini.ReadInteger("Personality", "TileLeftMenu", 1);
            MenuBar->r.Right = Ini.ReadInteger("Personality", "TileRightMenu", 1);
        }
    }
    GroupBoxEdge = ReadObject(Ini, "GroupBoxEdge");
    GroupBox = ReadBoxLabel(Ini, "GroupBox");
    Tabs = ReadBorderObject(Ini, "Tabs", "Border");
    StatusBarEdges = ReadObject(Ini, "StatusBarEdges");
    TabPane = ReadObject(Ini, "Tab.Pane");
    if (TabPane) {
        TRect& m = TabPane->r;
        m = Rect(std::min(m.Left, 4), std::min(m.Top, 4), std::min(m.Right, 4),
                 std::min(m.Bottom, 4));
    }
    ToolBars = ReadObject(Ini, "ToolBars");
    ComboButton = ReadBorderObject(Ini, "ComboButton", "****"); // the extra key is never present
    if (ComboButton && !ComboButton->Map.Empty()) {
        ComboButton->Map2 = ComboButton->Map;
        MirrorHorz(ComboButton->Map2);
    }
    SunkEdge = ReadObject(Ini, "SunkEdge");
    ExtraImages = ReadObject(Ini, "ExtraImages");
    Headerbar = ReadObject(Ini, "Headerbar");
    MenuItem = ReadObject(Ini, "MenuItem");
    MenuBackground = ReadObject(Ini, "MenuBackground");
    ScrollbarMap = ReadObject(Ini, "Scrollbar");
    HorzScroll = ReadObject(Ini, "HorzScroll");
    VertScroll = ReadObject(Ini, "VertScroll");
    HorzScrollThumb = ReadObject(Ini, "HorzScrollThumb");
    VertScrollThumb = ReadObject(Ini, "VertScrollThumb");
    ThumbHorz = ReadObject(Ini, "Trackbar.ThumbHorz");
    ThumbVert = ReadObject(Ini, "Trackbar.ThumbVert");
    ThumbLeft = ReadObject(Ini, "Trackbar.ThumbLeft");
    ThumbRight = ReadObject(Ini, "Trackbar.ThumbRight");
    ThumbUp = ReadObject(Ini, "Trackbar.ThumbUp");
    ThumbDown = ReadObject(Ini, "Trackbar.ThumbDown");
    UpDownHorz = ReadBorderObject(Ini, "UpDown.Horz", "GlyphImage");
    UpDownVert = ReadBorderObject(Ini, "UpDown.Vert", "GlyphImage");
    for (auto [obj, section, vertical] :
         {std::tuple{&Track, "Track", false}, std::tuple{&TrackVert, "TRACKVERT", true}}) {
        *obj = ReadObject(Ini, section);
        if (!*obj) {
            *obj = std::make_unique<TDataSkinObject>();
            (*obj)->IDName = section;
            DefaultTextColours(**obj);
            (*obj)->Map = TrackResource(vertical);
            (*obj)->r = Rect(3, 3, 3, 3);
            (*obj)->Tile = 0;
            (*obj)->Frame = 1;
        }
    }
    // The thumbs count their frames under a key of their own.
    if (HorzScrollThumb)
        HorzScrollThumb->Frame = Ini.ReadInteger("HorzScrollThumb", "FrameCount", 3);
    if (VertScrollThumb)
        VertScrollThumb->Frame = Ini.ReadInteger("VertScrollThumb", "FrameCount", 3);
}

void TSkinDataModel::SetObjectFrames() {
    auto set = [](const auto& obj, int frames) {
        if (obj) obj->Frame = frames;
    };
    if (Progress) Progress->Frame = Progress->Style != 0 ? 1 : 2;
    set(MenuBar, 2);
    set(GroupBoxEdge, 2);
    set(GroupBox, 1);
    set(Tabs, 5);
    set(StatusBarEdges, 3);
    set(TabPane, 1);
    set(ToolBars, 5);
    set(ComboButton, 4);
    set(SunkEdge, 4);
    set(ExtraImages, 5);
    if (Headerbar && Headerbar->Frame == 0) Headerbar->Frame = 5;
    set(MenuItem, 5);
    set(MenuBackground, 1);
    set(ScrollbarMap, 23);
    set(HorzScroll, 4);
    set(VertScroll, 4);
    for (auto* t : {&ThumbHorz, &ThumbVert, &ThumbLeft, &ThumbRight, &ThumbUp, &ThumbDown})
        set(*t, 5);
    set(UpDownHorz, 8);
    set(UpDownVert, 8);
    Title->Frame = 2;
    Buttons->Frame = 5;
    auto derive = [](const TMemoryBitmap& map) {
        int cell = map.Height() < 16 ? 13 : 16;
        return std::max(map.Width() / cell, 4);
    };
    if (Buttons->RadioButtonFrame == 0) Buttons->RadioButtonFrame = derive(Buttons->RadioMap);
    if (Buttons->CheckButtonFrame == 0) Buttons->CheckButtonFrame = derive(Buttons->CheckMap);
}

void TSkinDataModel::MakeComboButton() {
    if (!SunkEdge || !ComboButton) return;
    const int b = SM_CXVSCROLL + 2;
    const int frames = std::max(SunkEdge->Frame, 0);
    TMemoryBitmap strip(50 * frames, 21, MagentaPixel);
    for (int k = 1; k <= frames; ++k) {
        TMemoryBitmap work(50, 21, MagentaPixel);
        DrawObject(work, Rect(0, 0, 50, 21), SunkEdge->Map, k, SunkEdge->Frame, false, SunkEdge->r,
                   SunkEdge->Tile == 1, false);
        const TRect part = Rect(50 - b, 0, 50, 21);
        DrawObject(work, part, ComboButton->Map, k, ComboButton->Frame, false, ComboButton->r,
                   ComboButton->Tile == 1, ComboButton->Trans == 1);
        if (ExtraImages)
            DrawCentred(work, part, ExtraImages->Map, k, ExtraImages->Frame, false, true);
        FillBitmapRect(work, Rect(2, 2, 49 - b, 18), MagentaPixel);
        CopyBitmap(strip, (k - 1) * 50, 0, work);
    }
    ComboButton->Style = 2;
    ComboButton->r = SunkEdge->r;
    ComboButton->r.Left = 2;
    ComboButton->r.Right = b + 2;
    ComboButton->Map = strip;
    // The mirror, for right-to-left layouts, turns the whole strip: the frame
    // order comes out reversed with it, as skins have always had it.
    MirrorHorz(strip);
    SunkEdge->Map = std::move(strip);
    SunkEdge->r.Left = b + 2;
    SunkEdge->r.Right = 2;
}

void TSkinDataModel::MakeComboArrow() {
    if (!ComboButton) return;
    if (!ComboxArrow) ComboxArrow = std::make_unique<TDataSkinObject>();
    ComboxArrow->IDName = "ComboxArrow";
    DefaultTextColours(*ComboxArrow);
    if (SunkEdge && ComboButton->Style == 2) {
        const int frames = std::max(ComboButton->Frame, 0);
        const int fw = frames > 0 ? ComboButton->Map.Width() / frames : 0;
        TMemoryBitmap cells(17 * frames, 17, MagentaPixel);
        for (int k = 1; k <= frames; ++k)
            StretchCopy(cells, Bounds((k - 1) * 17, 0, 17, 17), ComboButton->Map,
                        Rect(k * fw - 19, 2, k * fw - 2, 19));
        ComboxArrow->Map = std::move(cells);
        ComboxArrow->Frame = frames;
    } else {
        ComboxArrow->Map = ComboButton->Map;
        ReplaceMagenta(ComboxArrow->Map, ResolveColor(ButtonFace));
        ComboxArrow->Frame = ComboButton->Frame;
    }
}

void TSkinDataModel::MakeToolbarImage() {
    Toolbar = std::make_unique<TDataSkinObject>();
    Toolbar->IDName = "Toolbar";
    DefaultTextColours(*Toolbar);
    Toolbar->Frame = 1;
    auto resolve = [this](TColor c) { return ResolveColor(c); };
    const TColor c = ResolveColor(SampleBackground());
    const TColor start = Blend(ButtonFace, clWhite, 150, resolve);
    TColor end = Blend(0x808080, c, 150, resolve);
    const int bright = Brightness(c, resolve);
    if (bright > 110) end = Blend(c, clWhite, ((225 - bright) * 25) / 140 + 50, resolve);
    Toolbar->Map = TMemoryBitmap(10, 40);
    GradientRect(Toolbar->Map, Rect(0, 0, 10, 40), start, end, true);
}
