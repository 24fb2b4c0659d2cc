#include "app/SynEditor.h"

#include "app/AddKeywordsDialog.h"
#include "app/SideBarIcons.h"
#include "app/SynFormProblems.h"
#include "app/UserMenuDialog.h"
#include "app/about.h"
#include "app/hh.h"
#include "base/Strings.h"
#include "base/ui/Layouts.h"
#include "base/ui/QtDialogs.h"
#include "base/ui/Tag.h"
#include "controls/SkinPalette.h"
#include "controls/WgGlyphs.h"
#include "controls/WgMenuBarDraw.h"
#include "controls/ui/PlusPageControl.h"
#include "controls/ui/UniControls.h"
#include "controls/ui/WgMenuBar.h"
#include "controls/ui/WgPgCtl.h"
#include "controls/ui/WgToolBar.h"
#include "controls/ui/WindowPalette.h"
#include "skin/ui/data.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"
#include "tree/ui/WgTree.h"
#include "tree/ui/WgTreeInplace.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QShortcut>
#include <QStatusBar>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace {

const WideString PromptCaption = u"KV Scribex Message";
const WideString PromptChanged = u"The file has changed. Do you want to save it?";
const WideString PromptNotSaved = u"The file has not been saved. Do you want to save it?";
const QString NewDocumentCaption = QStringLiteral("*New.syx");

// Options has 35 entries after start-up but 30 after every reset: the
// surplus five of the start are never shown nor saved, because the 30 rows
// of the options tree drive both directions.
constexpr int StartOptionCount = 35;
constexpr int DocumentOptionCount = 30;
constexpr int RecordSize = 5;     // values of one block or fold record
constexpr int RecordRows = 6;     // its rows in the tree: the values and a separator
constexpr int TagText = sftText;  // row Tag: a text value
constexpr int TagYesNo = sftEnum; // row Tag: a Yes/No value

const std::array<const char16_t*, RecordSize> BlockLabels = {
    u"BlockName", u"BlockOnLine", u"BlockAsString", u"BlockStart", u"BlockEnd"};
const std::array<int, RecordSize> BlockTags = {TagText, TagYesNo, TagYesNo, TagText, TagText};
const std::array<const char16_t*, RecordSize> FoldLabels = {u"Fold_Id", u"Fold_Begin", u"Fold_End",
                                                            u"Fold_Section", u"Fold_NoParentOfId"};
const std::array<int, RecordSize> FoldTags = {TagText, TagText, TagText, TagText, TagYesNo};

// The side panel: where each band and label stands.
struct TBand {
    int Top;
    const char16_t* Caption;
};
const std::array<TBand, 5> Bands = {{{24, u" Options"},
                                     {72, u" Keywords"},
                                     {147, u" Auto completion"},
                                     {246, u" Hints"},
                                     {296, u" Sample and info"}}};
struct TSideLabel {
    int Top;
    const char* Text;
};
const std::array<TSideLabel, TSynForm::SectionCount> SideLabels = {
    {{49, "Options"},
     {99, "Keywords"},
     {123, "Tags"},
     {172, "User menu (Ctrl + Space)"},
     {196, "Class completion"},
     {220, "Tag completion"},
     {271, "Hints"},
     {322, "Syntax sample"},
     {346, "Author information"}}};
constexpr int SidePanelWidth = 177;
constexpr int BottomBandHeight = 32;

TFont Tahoma(int Height, TFontStyles Style = 0, TColor Color = clWindowText) {
    TFont font;
    font.Name = u"Tahoma";
    font.Height = Height;
    font.Style = Style;
    font.Color = Color;
    return font;
}

// The file name without its folder.
QString ExtractFileName(const AnsiString& FileName) {
    const std::size_t slash = FileName.find_last_of(PathDelim);
    return QFile::decodeName(QByteArray::fromStdString(
        slash == AnsiString::npos ? FileName : FileName.substr(slash + 1)));
}

void SetupTree(TWgTree& Tree, bool FullRowSelect) {
    TCustomWgTree& t = Tree.Tree();
    Tree.SetShowColumns(true);
    t.QuickEditMode = true;
    t.FullRowSelect = FullRowSelect;
    t.ShowLeafButton = false;
    t.SetItemIndent(8);
    Tree.SetTreeFont("Tahoma", 11);
    Tree.SetLineHeight(15);
    Tree.SetHeaderHeight(17);
    Tree.SetFlat(true);
    t.SetHeaderFlat(true);
    t.SetHeaderHotTrack(false);
    t.SetDefaultSectionWidth(100);
    t.BkColor = clWhite;
    t.TextColor = clBtnText;
    t.LinesColor = clBtnShadow;
    t.DisplayChanged();
}

template <class TEditor> TEditor* MakeEditor(QObject* Owner, TWgTree* Tree, TWgFieldType Type) {
    auto* editor = new TEditor(Owner);
    editor->SetTree(Tree);
    editor->Types = {Type};
    // Every edit ends as a commit: Escape stores what the editor holds, as
    // Enter does. There is no way to cancel an edit in these trees.
    editor->OnAfterOperation = [](TWgTreeInplaceEditor&, bool& Accepted, bool&) {
        Accepted = true;
    };
    return editor;
}

TWgPanel* Band(QWidget* Parent, int Top, int Height, const WideString& Caption) {
    auto* band = new TWgPanel(Parent);
    band->setGeometry(0, Top, SidePanelWidth, Height);
    band->SetCaption(Caption);
    band->SetAlignment(taLeftJustify);
    band->SetBevelOuter(bvSpace);
    band->SetBevelSpaceColor(0x000000);
    band->SetFont(Tahoma(-11, fsBold));
    band->SetBackgroundType(bgtVertGradient);
    return band;
}

} // namespace

AnsiString AppDataFolder() {
    return AppDataFolderFrom([](const char* Name) { return std::getenv(Name); },
                             [](const AnsiString& Path) {
                                 std::error_code error;
                                 return std::filesystem::is_directory(Path, error);
                             });
}

// --- FormCreate -------------------------------------------------------------

TSynForm::TSynForm(QWidget* Parent) : QWidget(Parent), Pages(this, &Document) {
    setWindowTitle(QStringLiteral("KV Lexsmith"));
    resize(688, 517);
    Params = QCoreApplication::arguments().mid(1);
    Pages.OnMarkModified = [this] { MarkModified(); };
    Pages.IsCaseSensitive = [this](bool Tags) {
        TWgTreeItems& rows = WgTree1->Tree().Items();
        const int option = Tags ? 14 : 13; // TagsCaseSensitive, CaseSensitive
        if (option >= rows.Count()) return false;
        const WideString value = WideLowerCase(rows.Item(option)->ColumnTextAt(0));
        return value == u"yes" || value == u"y";
    };
    MainMenuImageList = MainMenuGlyphs();

    auto* form = PlainColumn(this);
    CreateMenu();
    form->addWidget(WgMenuBar1);
    auto* body = new QHBoxLayout;
    body->setSpacing(0);
    form->addLayout(body, 1);
    CreateSidePanel(this);
    body->addWidget(WgPanel2);

    auto* right = new QVBoxLayout;
    right->setSpacing(0);
    body->addLayout(right, 1);
    WgPanel1 = new TWgPanel(this);
    WgPanel1->setFixedHeight(25);
    WgPanel1->SetAlignment(taLeftJustify);
    WgPanel1->SetBevelOuter(bvNone);
    WgPanel1->SetBackgroundType(bgtVertGradient);
    WgPanel1->SetFont(Tahoma(-15, fsBold, 0xFFFFFF));
    right->addWidget(WgPanel1);
    Shape1 = new QFrame(this);
    Shape1->setFrameShape(QFrame::Box);
    Shape1->setLineWidth(1);
    QVBoxLayout* shape = PlainColumn(Shape1);
    shape->setContentsMargins(1, 1, 1, 1);
    right->addWidget(Shape1, 1);

    WgPageControl1 = new TWgPageControl(Shape1);
    WgPageControl1->SetFlat(true);
    WgPageControl1->SetShowBorder(false);
    WgPageControl1->SetShowTabs(false);
    WgPageControl1->SetTag(DisableTag);
    shape->addWidget(WgPageControl1);
    std::array<TWgTabSheet**, 6> sheets = {&TabOptions, &TabCodeMenu, &TabHints,
                                           &TabSample,  &TabInfo,     &TabUserMenu};
    std::array<QWidget*, 6> content = {nullptr,         Pages.TabCodeMenu, Pages.TabHints,
                                       Pages.TabSample, Pages.TabInfo,     Pages.TabUserMenu};
    for (std::size_t i = 0; i < sheets.size(); ++i) {
        auto* sheet = new TWgTabSheet;
        sheet->SetTag(DisableTag);
        sheet->SetPageControl(WgPageControl1);
        *sheets[i] = sheet;
        if (content[i]) PlainColumn(sheet)->addWidget(content[i]);
    }
    // The three simple pages name themselves on their sheets.
    TabHints->SetCaption(u"Hints");
    TabSample->SetCaption(u"Sample");
    TabInfo->SetCaption(u"Info");
    CreateOptionsPage();
    CreateBlockPage();
    CreateToolbars();
    CreateStatusBar();
    form->addWidget(StatusBar1);
    Problems = new TSynFormProblems(*this);
    right->addWidget(Problems->List);
    StatusBar1->addPermanentWidget(Problems->Count);

    // The document's containers as the start leaves them.
    SaveEncoding = 2;
    Pages.CurrentSection = 0;
    WgPanel1->SetCaption(u"Options");
    // The menu lists, the kind bitmaps and the hint list came with Pages.
    NewTransferLists(StartOptionCount);
    Sample = std::make_unique<TWgWideStringList>();
    // The Yes/No editors. The fold tree's combo keeps an empty list: its
    // value is typed.
    for (TWgTreeInplaceComboBox* combo : {WgTreeInplaceComboBox1, WgTreeInplaceComboBox2})
        combo->Editor()->addItems({QStringLiteral("Yes"), QStringLiteral("No")});
    // An empty sample, the options page in view, the file dialogs in the
    // companion editor's syntax folder.
    Pages.SampleMemo->Lines().Clear();
    WgPageControl1->SetActivePage(0);
    const AnsiString appData = AppDataFolder();
    const AnsiString syntaxFolder = appData + PathDelim + "syntax" + PathDelim;
    OpenDialog.InitialDir = syntaxFolder;
    SaveDialog.InitialDir = syntaxFolder;
    // Every options row gets its value cell; the block tree starts empty.
    TWgTreeItems& rows = WgTree1->Tree().Items();
    for (int i = 0; i < rows.Count(); ++i)
        rows.Item(i)->ColumnText().Add(WideString());
    WgTree2->Tree().Items().Clear();
    // The companion editor's skin choice, and the window's colours.
    SkinChoice = ChooseSkin(ReadScribexSettings(appData + PathDelim + "Scribex.ini"), appData);
    CreateSkinData();
    ApplySkinPalette();
    // A new document.
    Modified = false;
    SetStatus(0, NewDocumentCaption);
    SetStatus(1, QString());

    CreateKeyboard();
    SetAccessibleNames();
    SetMinimumWindowSize();

    // The sample page's preview follows the document on screen.
    Pages.SamplePreview->Attach(*this);
}

TSynForm::~TSynForm() {
    if (FCursorSaved) QApplication::restoreOverrideCursor();
}

void TSynForm::SetForms(TSyntaxAbout* About, TUserMenuForm* UserMenuForm, TAddForm* AddForm) {
    FAbout = About;
    Pages.SetForms(AddForm, UserMenuForm);
}

void TSynForm::CreateMenu() {
    WgMainMenu1.OwnerDraw = true;
    WgMainMenu1.DrawStyle = tdsOfficeXP;
    WgMainMenu1.Images = &MainMenuImageList;
    WgMainMenu1.ItemSpace = 6;
    WgMainMenu1.ImageMargin = 6;
    WgMainMenu1.SystemFont = false;
    WgMainMenu1.Font = Tahoma(-11);
    WgMainMenu1.Tag = DisableTag;
    // The two top items are drawn here: caption centred, no accelerator, in
    // the colours of the skin that is active when they are painted.
    auto drawTopMenuItem = [this](TWgMenuItem* Sender, TCanvas& Canvas, TRect R, bool Selected) {
        DrawTopMenuItemCaption(Canvas, R, Selected, Sender->Caption(),
                               TopMenuItemColorsOf(ActiveSkin()));
    };
    auto command = [this](void (TSynForm::*Handler)()) {
        return [this, Handler](TWgMenuItem*) { (this->*Handler)(); };
    };
    WgMenuItem2 = WgMainMenu1.Items().Add(u"File");
    WgMenuItem2->OnDrawItem = drawTopMenuItem;
    FileNew = WgMenuItem2->Add(u"New", 0, ShortCut('N', scCtrl));
    FileNew->OnClick = command(&TSynForm::FileNewClick);
    FileOpen = WgMenuItem2->Add(u"Open...", 1, ShortCut('O', scCtrl));
    FileOpen->OnClick = command(&TSynForm::FileOpenClick);
    FileSave = WgMenuItem2->Add(u"Save", 2, ShortCut('S', scCtrl));
    FileSave->OnClick = command(&TSynForm::FileSaveClick);
    FileSaveAs = WgMenuItem2->Add(u"Save As...", 3);
    FileSaveAs->OnClick = command(&TSynForm::FileSaveAsClick);
    WgMenuItem2->Add(u"-");
    FileExit = WgMenuItem2->Add(u"Exit", 4);
    FileExit->OnClick = command(&TSynForm::FileExitClick);
    WgMenuItem1 = WgMainMenu1.Items().Add(u"Help");
    WgMenuItem1->OnDrawItem = drawTopMenuItem;
    HelpContent = WgMenuItem1->Add(u"Content...", 5, ShortCut(VK_F1, 0));
    HelpContent->OnClick = command(&TSynForm::HelpContentClick);
    HelpAbout = WgMenuItem1->Add(u"About...", 6);
    HelpAbout->OnClick = command(&TSynForm::HelpAboutClick);

    WgMenuBar1 = new TWgMenuBar(this);
    WgMenuBar1->setFixedHeight(22);
    WgMenuBar1->SetMenu(&WgMainMenu1);
    SetTag(WgMenuBar1, DisableTag);
}

void TSynForm::CreateSidePanel(QWidget* Parent) {
    WgPanel2 = new TWgPanel(Parent);
    WgPanel2->setFixedWidth(SidePanelWidth);
    WgPanel2->SetColor(0xFFFFFF);
    WgPanel2->SetBevelOuter(bvNone);
    WgPanel2->SetTag(DisableTag);
    WgPanel2->installEventFilter(this);

    panHead = Band(WgPanel2, 0, 25, u"Sections");
    panHead->SetAlignment(taCenter);
    panHead->SetFont(Tahoma(-11, fsBold, 0xFFFFFF));
    panHead->SetTag(DisableTag);
    for (std::size_t i = 0; i < Bands.size(); ++i) {
        panSections[i] = Band(WgPanel2, Bands[i].Top, 17, Bands[i].Caption);
        if (i > 0) panSections[i]->SetTag(DisableTag); // the first band carries no tag
    }
    panBottom = Band(WgPanel2, 444, BottomBandHeight, WideString());
    panBottom->SetTag(DisableTag);

    QFont font(QStringLiteral("Tahoma"));
    font.setPixelSize(11);
    for (int i = 0; i < SectionCount; ++i) {
        auto* label = new QLabel(QString::fromLatin1(SideLabels[std::size_t(i)].Text), WgPanel2);
        label->setObjectName(QStringLiteral("Label%1").arg(i < 4 ? i + 1 : i + 2));
        label->setFont(font);
        label->adjustSize();
        label->move(32, SideLabels[std::size_t(i)].Top);
        QPalette palette = label->palette();
        palette.setColor(QPalette::WindowText, Qt::black);
        label->setPalette(palette);
        label->installEventFilter(this);
        // The keyboard's way to the sections: Ctrl+1 to Ctrl+9, top to bottom.
        const QKeySequence key(QKeyCombination(Qt::ControlModifier, Qt::Key(Qt::Key_1 + i)));
        label->setToolTip(key.toString(QKeySequence::NativeText));
        connect(new QShortcut(key, this), &QShortcut::activated, this,
                [this, i] { SelectSection(i); });
        SectionLabels[std::size_t(i)] = label;
        auto* image = new QLabel(WgPanel2);
        image->setPixmap(SideBarIcon(i));
        image->setGeometry(8, SideLabels[std::size_t(i)].Top - 2, 16, 16);
        SectionImages[std::size_t(i)] = image;
    }
}

void TSynForm::CreateOptionsPage() {
    PlusPageControl1 = new TPlusPageControl(TabOptions);
    PlusPageControl1->SetTabBackGroundColor(0xFFFFFF);
    PlusPageControl1->SetTabMargin({0, 0, 0});
    PlusPageControl1->SetTabOverlap(0);
    PlusPageControl1->SetLowerActive(0);
    PlusPageControl1->SetFont(Tahoma(-11));
    PlusPageControl1->SetActiveFont(Tahoma(-11));
    PlusPageControl1->SetTag(DisableTag);
    PlusPageControl1->installEventFilter(this);
    PlainColumn(TabOptions)->addWidget(PlusPageControl1);
    PlusTabSheet1 = new TPlusTabSheet;
    PlusTabSheet1->SetCaption(u"Syntax ");
    PlusTabSheet1->SetColor(0xFFFFFF);
    PlusTabSheet1->SetPageControl(PlusPageControl1);
    PlusTabSheet2 = new TPlusTabSheet;
    PlusTabSheet2->SetCaption(u"Block && folding ");
    PlusTabSheet2->SetColor(0xFFFFFF);
    PlusTabSheet2->SetPageControl(PlusPageControl1);

    WgTree1 = new TWgTree(PlusTabSheet1);
    WgTree1->setObjectName(QStringLiteral("WgTree1"));
    PlainColumn(PlusTabSheet1)->addWidget(WgTree1);
    WgTree1->OnTryEdit = [this](TWgTree&, TWgTreeItem* Item, int SectionIndex,
                                TWgFieldType& CellType,
                                bool&) { TryEdit(Item, SectionIndex, CellType); };
    WgTreeInplaceEdit1 = MakeEditor<TWgTreeInplaceEdit>(this, WgTree1, sftText);
    WgTreeInplaceComboBox1 = MakeEditor<TWgTreeInplaceComboBox>(this, WgTree1, sftEnum);
    WgTreeInplaceComboBox1->DefaultValueAsText = u"No";
    WgTreeInplaceComboBox1->InitiallyDropped = false;
}

void TSynForm::CreateBlockPage() {
    QVBoxLayout* sheet = PlainColumn(PlusTabSheet2);
    auto panel = [this](QWidget*& Panel, TWgTree*& Tree, const char* Name, QPushButton*& Add,
                        QPushButton*& Delete) {
        Panel = new QWidget(PlusTabSheet2);
        auto* row = new QHBoxLayout(Panel);
        row->setContentsMargins(4, 4, 4, 4);
        Tree = new TWgTree(Panel);
        Tree->setObjectName(QString::fromLatin1(Name));
        row->addWidget(Tree, 1);
        auto* buttons = new QVBoxLayout;
        Add = new QPushButton(QStringLiteral("Add"), Panel);
        Delete = new QPushButton(QStringLiteral("Delete"), Panel);
        for (QPushButton* button : {Add, Delete}) {
            button->setAutoDefault(false);
            buttons->addWidget(button);
        }
        buttons->addStretch(1);
        row->addLayout(buttons);
        Tree->OnTryEdit = WgTree1->OnTryEdit; // one handler for the three trees
    };
    panel(Panel1, WgTree2, "WgTree2", BtnBlockAdd, BtnBlockDelete);
    panel(Panel2, WgTreeFold, "WgTreeFold", BtnFoldAdd, BtnFoldDelete);
    sheet->addWidget(Panel1);
    sheet->addWidget(Panel2, 1);
    connect(BtnBlockAdd, &QPushButton::clicked, this, &TSynForm::BtnBlockAddClick);
    connect(BtnBlockDelete, &QPushButton::clicked, this, &TSynForm::BtnBlockDeleteClick);
    connect(BtnFoldAdd, &QPushButton::clicked, this, &TSynForm::BtnFoldAddClick);
    connect(BtnFoldDelete, &QPushButton::clicked, this, &TSynForm::BtnFoldDeleteClick);

    // A finished edit changes the document on screen; the views that follow
    // it (checks, preview) hear of it. The edit was marked when it began.
    for (TWgTree* tree : {WgTree1, WgTree2, WgTreeFold})
        tree->OnEndEditItem = [this](TWgTree&, TWgTreeItem*, TWgHeaderSection*, bool Canceled) {
            if (!Canceled) emit DocumentChanged();
        };
    ReadTreeForms();
    SetupTree(*WgTree1, false);
    WgTree1->Tree().FocusedSelectColor = clActiveCaption;
    WgTree1->Tree().SetStoragePath("\\Tree");
    SetupTree(*WgTree2, true);
    SetupTree(*WgTreeFold, true);
    WgTreeInplaceEdit2 = MakeEditor<TWgTreeInplaceEdit>(this, WgTree2, sftText);
    WgTreeInplaceComboBox2 = MakeEditor<TWgTreeInplaceComboBox>(this, WgTree2, sftEnum);
    WgTreeInplaceComboBox2->DefaultValueAsText = u"No";
    WgTreeInplaceComboBox2->InitiallyDropped = false;
    WgTreeInplaceEdit3 = MakeEditor<TWgTreeInplaceEdit>(this, WgTreeFold, sftText);
    WgTreeInplaceComboBox3 = MakeEditor<TWgTreeInplaceComboBox>(this, WgTreeFold, sftEnum);
    WgTreeInplaceComboBox3->InitiallyDropped = false;
}

void TSynForm::ReadTreeForms() {
    const QString forms = ResourcesFolder() + QStringLiteral("/forms/");
    const bool read = WgTree1->LoadSectionsFile(forms + "WgTree1.HeaderSections.Data") &&
                      WgTree1->LoadItemsFile(forms + "WgTree1.Items.Data") &&
                      WgTree2->LoadSectionsFile(forms + "WgTree2.HeaderSections.Data") &&
                      WgTreeFold->LoadSectionsFile(forms + "WgTreeFold.HeaderSections.Data");
    if (!read)
        throw std::runtime_error("The form data of the option trees cannot be read from " +
                                 forms.toStdString() + ". Is the program installed completely?");
}

void TSynForm::CreateToolbars() {
    struct TButtonDef {
        int Glyph;
        void (TSynFormPages::*Click)();
        const char16_t* Hint;
    };
    using P = TSynFormPages;
    const std::array<std::array<TButtonDef, 4>, 3> bars = {{
        {{{7, &P::MenuAddClick, u"Add"},
          {8, &P::MenuRenameClick, u"Rename"},
          {11, &P::MenuSortClick, u"Sort"},
          {10, &P::MenuRemoveClick, u"Remove"}}},
        {{{7, &P::MenuItemAddClick, u"Add"},
          {9, &P::MenuItemEditClick, u"Edit"},
          {11, &P::MenuItemSortClick, u"Sort"},
          {10, &P::MenuItemRemoveClick, u"Remove"}}},
        {{{7, &P::tbUserAddClick, u"Add"},
          {9, &P::tbUserEditClick, u"Edit"},
          {11, &P::tbUserSortClick, u"Sort"},
          {10, &P::tbUserDeleteClick, u"Delete"}}},
    }};
    const std::array<QWidget*, 3> hosts = {Pages.ToolbarHost1, Pages.ToolbarHost2,
                                           Pages.ToolbarHost3};
    for (std::size_t b = 0; b < bars.size(); ++b) {
        auto* bar = new TWgToolbar(hosts[b]);
        bar->SetBackgroundType(bgtVertGradient);
        bar->SetImages(&MainMenuImageList);
        bar->SetUseImageList(true);
        bar->SetTransparentButtons(true);
        bar->SetShowBorder(false);
        SetTag(bar, DisableTag);
        for (const TButtonDef& def : bars[b]) {
            auto* button = new TWgToolButton(bar);
            button->SetImageIndex(def.Glyph);
            button->SetHint(def.Hint);
            button->OnClick = [this, Click = def.Click](QObject*) { (Pages.*Click)(); };
        }
        hosts[b]->layout()->addWidget(bar);
        Toolbars[b] = bar;
    }
}

void TSynForm::CreateStatusBar() {
    StatusBar1 = new QStatusBar(this);
    // At least the classic widths, and wide enough for the longest word a
    // panel shows in the font in use (fonts here are wider than those the
    // widths were made for).
    const std::array<int, 2> widths = {150, 50};
    const std::array<QStringList, 2> words = {
        QStringList{NewDocumentCaption},
        QStringList{QStringLiteral("Modified"), QStringLiteral("Saved!")}};
    for (std::size_t i = 0; i < StatusPanels.size(); ++i) {
        auto* panel = new QLabel(StatusBar1);
        panel->setFrameShape(QFrame::Panel);
        panel->setFrameShadow(QFrame::Sunken);
        const QFontMetrics metrics(panel->font());
        int wanted = widths[i];
        for (const QString& word : words[i])
            wanted = std::max(wanted, metrics.horizontalAdvance(word) + 2 * panel->frameWidth() +
                                          2 * metrics.averageCharWidth());
        panel->setFixedWidth(wanted);
        StatusBar1->addWidget(panel);
        StatusPanels[i] = panel;
    }
}

const TSkinDataModel* TSynForm::ActiveSkin() const {
    return SkinData && SkinData->Active() && !SkinData->Empty ? SkinData : nullptr;
}

void TSynForm::CreateSkinData() {
    // The component as the form stores it, then its start, then the
    // settings' choice on top.
    SkinData = new TSkinData(this);
    SkinData->setObjectName("SkinData");
    SkinData->DisableTag = 99;
    SkinData->SkinFormtype = sfMainform;
    SkinData->Options = 1u << xoPreview;
    SkinData->MenuUpdate = true;
    SkinData->MenuMerge = false;
    SkinData->Skin3rd = DefaultSkin3rd();
    SkinData->Skin3rd.push_back("TPlusPageControl=nil");
    SkinData->Loaded();
    SkinData->SkinControls = SkinChoice.SkinControls;
    SkinData->SetSkinFile(SkinChoice.SkinFile);
    SkinData->SetActive(SkinChoice.Active);
    // The skin reaches only the toolkit's own dialogs.
    TQtDialogs::SetNativeFileDialogs(!ActiveSkin());
}

void TSynForm::ApplySkinPalette() {
    TPaletteTargets targets;
    targets.Form = this;
    targets.Panel1 = Panel1;
    for (std::size_t i = 0; i < Toolbars.size(); ++i)
        targets.Toolbars[i] = Toolbars[i];
    targets.MenuBar = WgMenuBar1;
    targets.panHead = panHead;
    targets.panBottom = panBottom;
    targets.panSections = panSections;
    targets.WgPanel1 = WgPanel1;
    targets.PageControl = WgPageControl1;
    targets.PlusPageControl = PlusPageControl1;
    targets.Trees = {WgTree1, WgTree2, WgTreeFold};
    ApplyWindowPalette(ActiveSkin(), targets);
}

// --- Document ---------------------------------------------------------------

void TSynForm::SetStatus(int Panel, const QString& Text) {
    StatusPanels[std::size_t(Panel)]->setText(Text);
}

QString TSynForm::StatusText(int Panel) const {
    return StatusPanels[std::size_t(Panel)]->text();
}

void TSynForm::MarkModified() {
    Modified = true;
    SetStatus(1, QStringLiteral("Modified"));
    emit DocumentChanged();
}

void TSynForm::NewTransferLists(int OptionCount) {
    Options = std::make_unique<TWgWideStringList>();
    for (int i = 0; i < OptionCount; ++i)
        Options->Add(WideString());
    Blocks = std::make_unique<TWgWideStringList>();
    Folds = std::make_unique<TWgWideStringList>();
    Header = std::make_unique<TWgWideStringList>();
}

void TSynForm::ResetDocument() {
    // Sample is neither freed nor cleared here; SampleMemo is.
    Pages.CreateLists();
    SaveDialog.FileName.clear();
    NewTransferLists(DocumentOptionCount);
    Pages.InfoMemo->Lines().Clear();
    TWgTreeItems& rows = WgTree1->Tree().Items();
    for (int i = 0; i < rows.Count(); ++i)
        rows.Item(i)->ColumnText().Clear();
    for (int i = 0; i < rows.Count(); ++i)
        rows.Item(i)->ColumnText().Add(WideString());
    WgTree2->Tree().Items().Clear();
    WgTreeFold->Tree().Items().Clear();
    Pages.ClearListPages();
    Modified = false;
    SetStatus(0, NewDocumentCaption);
    SetStatus(1, QString());
    FDisk = {};
    if (Problems) Problems->ForgetFile();
    emit DocumentChanged();
}

void TSynForm::OpenDocument(const AnsiString& FileName) {
    ResetDocument();
    Document.Load(FileName);
    TUniMemoLines& info = Pages.InfoMemo->Lines();
    info.Clear();
    info.AddLines(Header->Count(), [this](int I) { return Header->Ref(I); });
    if (Header->Count() < 1) Pages.FillDefaultHeader();
    TWgTreeItems& rows = WgTree1->Tree().Items();
    for (int i = 0; i < Options->Count(); ++i) {
        if (i >= rows.Count()) continue;
        TWgWideStringList& cells = rows.Item(i)->ColumnText();
        if (cells.Count() == 0)
            cells.Add(Options->Ref(i));
        else
            cells.Put(0, Options->Ref(i));
    }
    FillRecords(*WgTree2, *Blocks, true);
    FillRecords(*WgTreeFold, *Folds, false);
    Pages.FillHintsList();
    TUniMemoLines& sample = Pages.SampleMemo->Lines();
    sample.Clear();
    sample.AddLines(Sample->Count(), [this](int I) { return Sample->Ref(I); });
    if (WgPageControl1->ActivePage() == 1) Pages.RefreshMenuNames();
    Modified = false;
    SetStatus(1, QString());
    SetStatus(0, ExtractFileName(FileName));
    RememberDiskState(FileName);
    Problems->FileOpened(FileName);
    emit DocumentChanged();
}

void TSynForm::FillRecords(TWgTree& Tree, const TWgWideStringList& List, bool BlockRecords) {
    Tree.Tree().Items().Clear();
    if (BlockRecords)
        AddBlockRows(List.Count() / RecordSize);
    else
        AddFoldRows(List.Count() / RecordSize);
    // Entry i belongs to row i + i div 5: every fifth entry steps over a separator.
    TWgTreeItems& rows = Tree.Tree().Items();
    int row = 0;
    for (int i = 0; i < List.Count(); ++i) {
        if (i > 0 && i % RecordSize == 0) ++row;
        if (row < rows.Count()) rows.Item(row)->ColumnText().Add(List.Ref(i));
        ++row;
    }
}

void TSynForm::HarvestDocument() {
    Header->Clear();
    for (const WideString& line : Pages.InfoMemo->Lines().ToVector())
        Header->Add(line);
    Options->Clear();
    TWgTreeItems& rows = WgTree1->Tree().Items();
    for (int i = 0; i < rows.Count(); ++i)
        Options->Add(rows.Item(i)->ColumnTextAt(0));
    HarvestRecords(*WgTree2, *Blocks);
    HarvestRecords(*WgTreeFold, *Folds);
    Sample->Clear();
    for (const WideString& line : Pages.SampleMemo->Lines().ToVector())
        Sample->Add(line);
}

void TSynForm::SaveDocument(const AnsiString& FileName) {
    HarvestDocument();
    Document.Save(FileName);
    Problems->ForgetFile();
    Modified = false;
    SetStatus(1, QStringLiteral("Saved!"));
    SetStatus(0, ExtractFileName(FileName));
    RememberDiskState(FileName);
}

void TSynForm::HarvestRecords(TWgTree& Tree, TWgWideStringList& List) {
    List.Clear();
    TWgTreeItems& rows = Tree.Tree().Items();
    for (int r = 1; r <= rows.Count(); ++r)
        if (r % RecordRows != 0) List.Add(rows.Item(r - 1)->ColumnTextAt(0));
}

bool TSynForm::QuerySave() {
    // The answer alone decides: Yes and then a cancelled Save As still lets
    // the caller go on, and the changes are dropped.
    if (Modified && !SaveDialog.FileName.empty()) {
        const int answer =
            InstalledDialogs().MessageBox(PromptChanged, PromptCaption, MB_YESNOCANCEL);
        FSaveDeclined = false;
        if (answer == IDYES) FileSaveClick();
        // Called off at the question of what the save loses: the user
        // chose to keep the document rather than lose it, so stay.
        if (FSaveDeclined) return false;
        return answer != IDCANCEL;
    }
    if (!Modified) return true;
    const int answer = InstalledDialogs().MessageBox(PromptNotSaved, PromptCaption, MB_YESNOCANCEL);
    FSaveDeclined = false;
    if (answer == IDYES) FileSaveAsClick();
    if (FSaveDeclined) return false;
    return answer != IDCANCEL;
}

void TSynForm::FileNewClick() {
    if (!QuerySave()) return;
    ResetDocument();
    Modified = false;
}

void TSynForm::FileOpenClick() {
    if (!QuerySave()) return;
    OpenDialog.Filter = u"Syntax Files|*.syx";
    OpenDialog.DefaultExt = u"syx";
    if (!InstalledDialogs().OpenDialog(OpenDialog)) return;
    if (!SaveDialog.FileName.empty()) ResetDocument();
    OpenDocument(OpenDialog.FileName);
    SaveDialog.FileName = OpenDialog.FileName;
}

void TSynForm::FileSaveClick() {
    if (!SaveDialog.FileName.empty() && SaveDialog.FileName[0] != '*') {
        if (!ConfirmOverwriteChanged()) return;
        FSaveDeclined = !Problems->ConfirmSave();
        if (FSaveDeclined) return;
        SaveDocument(SaveDialog.FileName);
    } else {
        FileSaveAsClick();
    }
}

void TSynForm::FileSaveAsClick() {
    // The chosen filter line is remembered and offered again; the written
    // file does not depend on it.
    auto encoding = [](int Index) { return Index >= 1 && Index <= 3 ? Index : 4; };
    SaveDialog.Filter = u"Ansi|*.syx|UTF-8|*.syx|Unicode|*.syx|Unicode Big endien|*.syx";
    SaveDialog.DefaultExt = u"syx";
    SaveDialog.OverwritePrompt = true;
    SaveDialog.FilterIndex = encoding(SaveEncoding);
    FSaveDeclined = !Problems->ConfirmSave();
    if (FSaveDeclined) return;
    if (!InstalledDialogs().SaveDialog(SaveDialog)) return;
    SaveEncoding = std::uint8_t(encoding(SaveDialog.FilterIndex));
    SaveDocument(SaveDialog.FileName);
}

void TSynForm::FileExitClick() {
    close();
}

bool TSynForm::FormClose() {
    if (!QuerySave()) return false;
    // The containers go with the form; the option and block rows go now.
    WgTree1->Tree().Items().Clear();
    WgTree2->Tree().Items().Clear();
    return true;
}

void TSynForm::closeEvent(QCloseEvent* Event) {
    if (FormClose())
        Event->accept();
    else
        Event->ignore();
}

void TSynForm::OpenFromCommandLine(const AnsiString& FileName) {
    if (!FileExists(FileName)) return;
    OpenDialog.FileName = FileName;
    OpenDocument(FileName);
    SaveDialog.FileName = FileName;
}

void TSynForm::FormShow() {
    for (const QString& param : Params)
        OpenFromCommandLine(QFile::encodeName(param).toStdString());
    PlusPageControl1->SetActivePageIndex(0);
}

void TSynForm::showEvent(QShowEvent* Event) {
    QWidget::showEvent(Event);
    if (FShown) return;
    FShown = true;
    FitToScreen();
    FormShow();
}

void TSynForm::FormResize() {
    Panel1->setFixedHeight(PlusPageControl1->height() / 2);
}

void TSynForm::resizeEvent(QResizeEvent* Event) {
    QWidget::resizeEvent(Event);
    FormResize();
}

// --- Block and fold records -------------------------------------------------

void TSynForm::AddRecordRows(TWgTree& Tree, int Count,
                             const std::array<const char16_t*, RecordSize>& Labels,
                             const std::array<int, RecordSize>& Tags) {
    if (Count < 1) return;
    TCustomWgTree& tree = Tree.Tree();
    TWgTreeItems& rows = tree.Items();
    tree.BeginUpdate();
    rows.AllocateStorage(Count * RecordRows + rows.Count());
    for (int n = 0; n < Count; ++n) {
        for (int r = 0; r < RecordRows; ++r) {
            TWgTreeItem* item = rows.Add(nullptr, WideString());
            item->SetTag(r < RecordSize ? Tags[std::size_t(r)] : 0);
            item->SetText(r < RecordSize ? WideString(Labels[std::size_t(r)]) : WideString());
        }
    }
    tree.EndUpdate();
    MarkModified();
}

void TSynForm::AddBlockRows(int Count) {
    AddRecordRows(*WgTree2, Count, BlockLabels, BlockTags);
}

void TSynForm::AddFoldRows(int Count) {
    AddRecordRows(*WgTreeFold, Count, FoldLabels, FoldTags);
}

void TSynForm::AddRecordWithCells(TWgTree& Tree) {
    if (&Tree == WgTree2)
        AddBlockRows(1);
    else
        AddFoldRows(1);
    // Every row, old ones and separators too, gains a column text; only
    // entry 0 is ever read, and this is how the new rows get their cells.
    TWgTreeItems& rows = Tree.Tree().Items();
    for (int i = 0; i < rows.Count(); ++i)
        rows.Item(i)->ColumnText().Add(WideString());
}

void TSynForm::BtnBlockAddClick() {
    AddRecordWithCells(*WgTree2);
}

void TSynForm::BtnFoldAddClick() {
    AddRecordWithCells(*WgTreeFold);
}

void TSynForm::DeleteLastRecord(TWgTree& Tree) {
    // The selection plays no part: the last record goes, without a question.
    TCustomWgTree& tree = Tree.Tree();
    TWgTreeItems& rows = tree.Items();
    tree.BeginUpdate();
    if (rows.Count() > 0)
        for (int i = 0; i < RecordRows && rows.Count() > 0; ++i)
            rows.Delete(rows.Item(rows.Count() - 1));
    tree.EndUpdate();
    MarkModified();
}

void TSynForm::BtnBlockDeleteClick() {
    DeleteLastRecord(*WgTree2);
}

void TSynForm::BtnFoldDeleteClick() {
    DeleteLastRecord(*WgTreeFold);
}

void TSynForm::TryEdit(TWgTreeItem* Item, int SectionIndex, TWgFieldType& CellType) {
    // Opening an editor marks the document, whatever the edit then does:
    // this is the only change tracking of the three trees.
    if (SectionIndex == 1 && Item->Tag() == TagYesNo)
        CellType = sftEnum;
    else if (SectionIndex == 1 && Item->Tag() == TagText)
        CellType = sftText;
    MarkModified();
}

// --- Section navigator, help, about -----------------------------------------

void TSynForm::SelectSection(int Section) {
    const TSectionView& view = SectionViews[std::size_t(Section)];
    Pages.CurrentSection = Section;
    WgPanel1->SetCaption(view.Heading);
    WgPageControl1->SetActivePage(view.PageIndex);
    Pages.RefreshSection();
    // Picked by key or by click, the section is there to be worked in.
    if (QWidget* control = SectionControl(Section)) control->setFocus(Qt::ShortcutFocusReason);
}

QWidget* TSynForm::SectionControl(int Section) const {
    switch (Section) {
    case 0:
        return PlusPageControl1->ActivePageIndex() == 1 ? WgTree2->ViewWidget()
                                                        : WgTree1->ViewWidget();
    case 1:
    case 2:
    case 4:
    case 5:
        return Pages.lbMenu;
    case 3:
        return Pages.lbUserMenu;
    case 6:
        return Pages.HintsEdit;
    case 7:
        return Pages.SampleMemo;
    case 8:
        return Pages.InfoMemo;
    default:
        return nullptr;
    }
}

void TSynForm::LabelMouseEnter(QLabel* Label) {
    QPalette palette = Label->palette();
    palette.setColor(QPalette::WindowText, QColor(0, 0, 0xFF));
    Label->setPalette(palette);
    QFont font = Label->font();
    font.setUnderline(true);
    Label->setFont(font);
    // One saved cursor serves all labels: the pointer is over one at a time.
    if (FCursorSaved)
        QApplication::changeOverrideCursor(Qt::PointingHandCursor);
    else
        QApplication::setOverrideCursor(Qt::PointingHandCursor);
    FCursorSaved = true;
}

void TSynForm::LabelMouseLeave(QLabel* Label) {
    QPalette palette = Label->palette();
    palette.setColor(QPalette::WindowText, Qt::black);
    Label->setPalette(palette);
    QFont font = Label->font();
    font.setUnderline(false);
    Label->setFont(font);
    if (FCursorSaved) QApplication::restoreOverrideCursor();
    FCursorSaved = false;
}

bool TSynForm::eventFilter(QObject* Watched, QEvent* Event) {
    for (TWgTree* tree : {WgTree1, WgTree2, WgTreeFold}) {
        if (!tree) continue;
        if (Watched == tree->ViewWidget() && Event->type() == QEvent::KeyPress &&
            TreeKey(*tree, *static_cast<QKeyEvent*>(Event)))
            return true;
        if (Watched == tree->ViewWidget() && Event->type() == QEvent::Resize) FitValueColumn(*tree);
    }
    if (Watched == PlusPageControl1 && Event->type() == QEvent::Resize) FormResize();
    if (Watched == WgPanel2 && Event->type() == QEvent::Resize)
        panBottom->setGeometry(0, WgPanel2->height() - BottomBandHeight, SidePanelWidth,
                               BottomBandHeight);
    for (int i = 0; i < SectionCount; ++i) {
        QLabel* label = SectionLabels[std::size_t(i)];
        if (Watched != label) continue;
        switch (Event->type()) {
        case QEvent::Enter:
            LabelMouseEnter(label);
            break;
        case QEvent::Leave:
            LabelMouseLeave(label);
            break;
        case QEvent::MouseButtonRelease:
            if (static_cast<QMouseEvent*>(Event)->button() == Qt::LeftButton &&
                label->rect().contains(static_cast<QMouseEvent*>(Event)->position().toPoint()))
                SelectSection(i);
            break;
        default:
            break;
        }
    }
    return QWidget::eventFilter(Watched, Event);
}

void TSynForm::HelpContentClick() {
    ShowHelpContents(QCoreApplication::applicationDirPath());
}

void TSynForm::HelpAboutClick() {
    if (!FAbout) FAbout = new TSyntaxAbout(this);
    FAbout->ShowModal();
}
