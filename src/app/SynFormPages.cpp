#include "app/SynFormPages.h"

#include "app/AddKeywordsDialog.h"
#include "app/UserMenuDialog.h"
#include "base/Dialogs.h"
#include "base/ui/Layouts.h"
#include "base/ui/QtDialogs.h"
#include "controls/ui/UniControls.h"
#include "document/SyntaxDocument.h"
#include "wide/CodePage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

#include <unordered_set>

namespace {

// The user menu is the one menu of this literal name.
const WideString UserMenuName = u"0";

bool AskRemove(const WideString& Text) {
    return InstalledDialogs().MessageBox(Text, u"Remove", MB_YESNO) == IDYES;
}

QFont TahomaFont() {
    QFont font(QStringLiteral("Tahoma"));
    font.setPixelSize(13);
    return font;
}

QWidget* MakeToolbarHost(QWidget* Parent) {
    auto* host = new QWidget(Parent);
    host->setFixedHeight(30);
    auto* layout = new QHBoxLayout(host);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    return host;
}

} // namespace

const std::array<TSectionView, 9> SectionViews = {{
    {u"Options", 0},
    {u"Keywords", 1},
    {u"Tags", 1},
    {u"User Menu (Ctrl + Space)", 5},
    {u"Class Completion List", 1},
    {u"Tag Completion List", 1},
    {u"Hints", 2},
    {u"Syntax sample", 3},
    {u"Author information", 4},
}};

TSynFormPages::TSynFormPages(QWidget* PageParent, TSyntaxDocument* Document)
    : FOwnDocument(Document ? nullptr : std::make_unique<TSyntaxDocument>()),
      Document(Document ? *Document : *FOwnDocument), UserMenu(this->Document.UserMenu),
      TagComplete(this->Document.TagComplete), AutoComplete(this->Document.AutoComplete),
      Keywords(this->Document.Keywords), Tags(this->Document.Tags),
      AutoHint(this->Document.AutoHint) {
    CreateLists();
    LoadKindBitmaps();
    CreateCodeMenuPage(PageParent);
    CreateHintsPage(PageParent);
    CreateSamplePage(PageParent);
    CreateInfoPage(PageParent);
    CreateUserMenuPage(PageParent);
    FPages = {TabCodeMenu, TabHints, TabSample, TabInfo, TabUserMenu};
}

TSynFormPages::~TSynFormPages() {
    // Pages still without a parent were never placed; the rest belong to
    // the page control. Their controls must not call back into us any more.
    for (QPointer<QWidget>& page : FPages) {
        if (!page) continue;
        for (TUniMemo* memo : page->findChildren<TUniMemo*>())
            memo->OnChange = nullptr;
        if (!page->parent()) delete page.data();
    }
}

void TSynFormPages::SetForms(TAddForm* AddForm, TUserMenuForm* UserMenuForm) {
    FAddForm = AddForm;
    FUserMenuForm = UserMenuForm;
}

TAddForm& TSynFormPages::AddForm() {
    if (!FAddForm) FAddForm = new TAddForm(TabCodeMenu->window());
    return *FAddForm;
}

TUserMenuForm& TSynFormPages::UserMenuForm() {
    if (!FUserMenuForm) FUserMenuForm = new TUserMenuForm(TabCodeMenu->window());
    return *FUserMenuForm;
}

void TSynFormPages::CreateLists() {
    UserMenu = std::make_unique<TMenuList>();
    TagComplete = std::make_unique<TMenuList>();
    AutoComplete = std::make_unique<TMenuList>();
    Keywords = std::make_unique<TMenuList>();
    Tags = std::make_unique<TMenuList>();
    AutoHint = std::make_unique<TWgWideStringList>();
}

void TSynFormPages::LoadKindBitmaps() {
    for (int i = 0; i < KindIconCount; ++i) {
        KindBitmaps[std::size_t(i)] = std::make_unique<TKVBitmap>();
        LoadKindBitmap(i, *KindBitmaps[std::size_t(i)]);
    }
    for (int i = 0; i < KindIconCount; ++i)
        KindBitmaps[std::size_t(i)]->KindIndex = i;
}

// --- Pages ------------------------------------------------------------------

void TSynFormPages::CreateCodeMenuPage(QWidget* Parent) {
    TabCodeMenu = new QWidget(Parent);
    QVBoxLayout* page = PlainColumn(TabCodeMenu);

    Splitter1 = new QSplitter(Qt::Vertical, TabCodeMenu);
    Splitter1->setHandleWidth(6);
    Splitter1->setChildrenCollapsible(false);
    page->addWidget(Splitter1);

    Panel8 = new QWidget(Splitter1);
    QVBoxLayout* top = PlainColumn(Panel8);
    ToolbarHost1 = MakeToolbarHost(Panel8);
    top->addWidget(ToolbarHost1);
    lbMenu = new TUniListBox(Panel8);
    lbMenu->SetItemHeight(13);
    lbMenu->OnClick = [this](QObject*) { lbMenuClick(); };
    top->addWidget(lbMenu);

    Panel9 = new QWidget(Splitter1);
    QVBoxLayout* bottom = PlainColumn(Panel9);
    ToolbarHost2 = MakeToolbarHost(Panel9);
    bottom->addWidget(ToolbarHost2);
    // Keyword hygiene: narrow the items by typing, and drop the repeats.
    auto* hygiene = new QHBoxLayout;
    hygiene->setContentsMargins(2, 2, 2, 2);
    ItemFilter = new QLineEdit(Panel9);
    ItemFilter->setObjectName(QStringLiteral("ItemFilter"));
    ItemFilter->setPlaceholderText(QStringLiteral("Filter items"));
    ItemFilter->setClearButtonEnabled(true);
    ItemFilter->setAccessibleName(QStringLiteral("Filter items"));
    QObject::connect(ItemFilter, &QLineEdit::textChanged, this, [this] {
        if (lbMenu->ItemIndex() >= 0) RefreshMenuItems(lbMenu->Items().Strings(lbMenu->ItemIndex()));
    });
    hygiene->addWidget(ItemFilter, 1);
    ItemCount = new QLabel(Panel9);
    ItemCount->setObjectName(QStringLiteral("ItemCount"));
    hygiene->addWidget(ItemCount);
    BtnRemoveDuplicates = new QPushButton(QStringLiteral("Remove duplicates"), Panel9);
    BtnRemoveDuplicates->setObjectName(QStringLiteral("BtnRemoveDuplicates"));
    BtnRemoveDuplicates->setAutoDefault(false);
    QObject::connect(BtnRemoveDuplicates, &QPushButton::clicked, this,
                     &TSynFormPages::RemoveDuplicatesClick);
    hygiene->addWidget(BtnRemoveDuplicates);
    bottom->addLayout(hygiene);
    lbMenuItem = new TUniListBox(Panel9);
    lbMenuItem->SetStyle(lbOwnerDrawFixed);
    lbMenuItem->SetItemHeight(16);
    lbMenuItem->OnDrawItem = [this](TUniListBox& Control, TCanvas& Canvas, int Index,
                                    const TRect& Rect, TOwnerDrawState) {
        lbMenuItemDrawItem(Control, Canvas, Index, Rect);
    };
    bottom->addWidget(lbMenuItem);

    Splitter1->addWidget(Panel8);
    Splitter1->addWidget(Panel9);
    Splitter1->setStretchFactor(0, 0);
    Splitter1->setStretchFactor(1, 1);
    Splitter1->setSizes({192, 300}); // Panel8 starts 192 high; Panel9 takes the rest
}

void TSynFormPages::CreateHintsPage(QWidget* Parent) {
    TabHints = new QWidget(Parent);
    auto* grid = new QGridLayout(TabHints);
    grid->setContentsMargins(8, 8, 8, 8);

    Label5 = new QLabel(QStringLiteral("Add hints for functions, procedures or class methods."),
                        TabHints);
    grid->addWidget(Label5, 0, 0, 1, 2);

    HintsEdit = new TUniEdit(TabHints);
    HintsEdit->setFont(TahomaFont());
    HintsEdit->OnKeyDown = [this](QObject*, int& Key, Qt::KeyboardModifiers) {
        HintsEditKeyDown(Key);
    };
    grid->addWidget(HintsEdit, 1, 0);
    BtnHintsAdd = new TUniBitBtn(u"Add", TabHints);
    BtnHintsAdd->OnClick = [this](QObject*) { BtnHintsAddClick(); };
    grid->addWidget(BtnHintsAdd, 1, 1);

    HintsList = new TUniListBox(TabHints);
    HintsList->setFont(TahomaFont());
    HintsList->SetItemHeight(16);
    grid->addWidget(HintsList, 2, 0, 3, 1);
    BtnHintsDelete = new TUniBitBtn(u"Del", TabHints);
    BtnHintsDelete->OnClick = [this](QObject*) { BtnHintsDeleteClick(); };
    grid->addWidget(BtnHintsDelete, 2, 1);
    btnHintsSort = new TUniBitBtn(u"Sort", TabHints);
    btnHintsSort->OnClick = [this](QObject*) { btnHintsSortClick(); };
    grid->addWidget(btnHintsSort, 3, 1);
    grid->setRowStretch(4, 1);
}

void TSynFormPages::CreateSamplePage(QWidget* Parent) {
    TabSample = new QWidget(Parent);
    auto* column = new QVBoxLayout(TabSample);
    column->setContentsMargins(8, 8, 8, 8);
    Label26 = new QLabel(
        QStringLiteral("Enter a sample text that will be displayed in the options dialog:"),
        TabSample);
    Label26->setWordWrap(true);
    column->addWidget(Label26);
    SampleMemo = new TUniMemo(TabSample);
    SampleMemo->setFont(TahomaFont());
    SampleMemo->SetWordWrap(false);
    SampleMemo->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    SampleMemo->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    SampleMemo->OnChange = [this](QObject*) { SampleMemoChange(); };
    // Below the memo, the sample as the definition colours it; the line
    // between them moves. The memo keeps two thirds: it is where one types.
    auto* split = new QSplitter(Qt::Vertical, TabSample);
    split->setChildrenCollapsible(false);
    split->addWidget(SampleMemo);
    SamplePreview = new TSamplePreview(split);
    split->addWidget(SamplePreview);
    split->setStretchFactor(0, 2);
    split->setStretchFactor(1, 1);
    split->setSizes({2000, 1000});
    column->addWidget(split, 1);
    // No mnemonic: an Alt combination that a shortcut takes leaves the menu
    // bar's Alt key armed. The memo keeps Tab for itself, so the box stands
    // just before it: Shift+Tab from the memo reaches it.
    PreviewCheck = new QCheckBox(QStringLiteral("Preview"), TabSample);
    PreviewCheck->setChecked(true);
    connect(PreviewCheck, &QCheckBox::toggled, SamplePreview, &QWidget::setVisible);
    column->addWidget(PreviewCheck);
    QWidget::setTabOrder(SamplePreview, PreviewCheck);
    QWidget::setTabOrder(PreviewCheck, SampleMemo);
}

void TSynFormPages::CreateInfoPage(QWidget* Parent) {
    TabInfo = new QWidget(Parent);
    auto* column = new QVBoxLayout(TabInfo);
    column->setContentsMargins(8, 8, 8, 8);
    UniLabel1 = new TUniLabel(u"Add information about the syntax definition file and who wrote it.",
                              TabInfo);
    UniLabel1->setWordWrap(true);
    column->addWidget(UniLabel1);
    InfoMemo = new TUniMemo(TabInfo);
    InfoMemo->setFont(TahomaFont());
    InfoMemo->SetWordWrap(false);
    InfoMemo->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    InfoMemo->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    InfoMemo->OnChange = [this](QObject*) { InfoMemoChange(); };
    column->addWidget(InfoMemo);
    auto* row = new QHBoxLayout();
    UniLabel2 = new TUniLabel(u"Add default author information lines", TabInfo);
    row->addWidget(UniLabel2);
    row->addStretch(1);
    BtnInfoKeyAdd = new QPushButton(QStringLiteral("Add Default"), TabInfo);
    BtnInfoKeyAdd->setAutoDefault(false);
    connect(BtnInfoKeyAdd, &QPushButton::clicked, this, &TSynFormPages::BtnInfoKeyAddClick);
    row->addWidget(BtnInfoKeyAdd);
    column->addLayout(row);
}

void TSynFormPages::CreateUserMenuPage(QWidget* Parent) {
    TabUserMenu = new QWidget(Parent); // the sheet has no caption
    QVBoxLayout* page = PlainColumn(TabUserMenu);
    ToolbarHost3 = MakeToolbarHost(TabUserMenu);
    page->addWidget(ToolbarHost3);
    lbUserMenu = new TUniListBox(TabUserMenu);
    lbUserMenu->SetStyle(lbOwnerDrawFixed);
    lbUserMenu->SetItemHeight(16);
    lbUserMenu->OnDrawItem = [this](TUniListBox& Control, TCanvas& Canvas, int Index,
                                    const TRect& Rect, TOwnerDrawState) {
        lbUserMenuDrawItem(Control, Canvas, Index, Rect);
    };
    page->addWidget(lbUserMenu);
}

void TSynFormPages::ClearListPages() {
    HintsList->Items().Clear();
    HintsEdit->clear();
    lbMenu->Items().Clear();
    lbMenuItem->Items().Clear();
    SampleMemo->Lines().Clear();
}

void TSynFormPages::FillHintsList() {
    for (int i = 0; i < AutoHint->Count(); ++i)
        HintsList->Items().Add(AutoHint->Ref(i));
}

// --- Lists of menus ---------------------------------------------------------

TMenuList* TSynFormPages::CurrentMenuList() const {
    switch (CurrentSection) {
    case 1:
        return Keywords.get();
    case 2:
        return Tags.get();
    case 3:
        return UserMenu.get();
    case 4:
        return AutoComplete.get();
    case 5:
        return TagComplete.get();
    default:
        return nullptr;
    }
}

TObjectValue TSynFormPages::KindObject(int Kind) const {
    const int index = Kind & 0x7F;
    if (index < 0 || index >= KindIconCount) return 0;
    return reinterpret_cast<TObjectValue>(KindBitmaps[std::size_t(index)].get());
}

int TSynFormPages::FillKindRows(TUniListBox& Box, TMenuList& List, const WideString& MenuName,
                                const WideString& Filter) {
    const int menu = List.IndexOfMenu(MenuName, false);
    // Declared once for the walk: a row past the end of a shorter duplicate
    // menu leaves the kind of the row before it, as the list reports it.
    int kind = 20;
    WideString name;
    const WideString filter = WideLowerCase(Filter);
    const int count = List.MenuItemCount(MenuName);
    for (int i = 0; i < count; ++i) {
        List.GetItemNameKind(menu, i, name, kind);
        if (!filter.empty() && WideLowerCase(name).find(filter) == WideString::npos) continue;
        Box.Items().AddObject(name, KindObject(kind));
    }
    return count;
}

void TSynFormPages::RefreshSection() {
    switch (CurrentSection) {
    case 1:
    case 2:
    case 4:
    case 5:
        RefreshMenuNames();
        break;
    case 3:
        RefreshUserMenu();
        break;
    default:
        break;
    }
}

void TSynFormPages::RefreshMenuNames() {
    lbMenu->Items().Clear();
    lbMenuItem->Items().Clear();
    TMenuList* list = CurrentMenuList();
    if (!list) return;
    for (int i = 0; i < list->MenuCount(); ++i)
        lbMenu->Items().Add(list->MenuName(i));
}

void TSynFormPages::RefreshMenuItems(const WideString& MenuName) {
    TMenuList* list = CurrentMenuList();
    if (!list) return;
    lbMenuItem->Items().Clear();
    const WideString filter = ItemFilter->text().toStdU16String();
    const int count = FillKindRows(*lbMenuItem, *list, MenuName, filter);
    const int shown = lbMenuItem->Items().Count();
    ItemCount->setText(filter.empty() ? QStringLiteral("%1 items").arg(count)
                                      : QStringLiteral("%1 of %2").arg(shown).arg(count));
}

void TSynFormPages::ClearItemFilter() {
    ItemFilter->clear();
}

void TSynFormPages::RemoveDuplicatesClick() {
    TMenuList* list = CurrentMenuList();
    if (!list || lbMenu->ItemIndex() < 0) return;
    const WideString menuName = lbMenu->Items().Strings(lbMenu->ItemIndex());
    const int menu = list->IndexOfMenu(menuName, false);
    if (menu < 0) return;
    // Keywords and tags compare as the definition says; menu entries by name.
    const bool tags = CurrentSection == 2 || CurrentSection == 5;
    const bool caseSensitive = (CurrentSection == 1 || CurrentSection == 2) && IsCaseSensitive &&
                               IsCaseSensitive(tags);
    TWgWideStringList& items = *list->Menu(menu)->Items;
    std::unordered_set<WideString> seen;
    std::vector<int> repeats;
    for (int i = 0; i < items.Count(); ++i) {
        const WideView name = TMenuList::ItemLeftView(items.Ref(i));
        if (!seen.insert(caseSensitive ? WideString(name) : WideLowerCase(name)).second)
            repeats.push_back(i);
    }
    const WideString caption = u"Remove duplicates";
    if (repeats.empty()) {
        InstalledDialogs().MessageBox(u"\"" + menuName + u"\" has no duplicates.", caption, MB_OK);
        return;
    }
    const WideString question = u"Remove " + IntToWide(static_cast<long long>(repeats.size())) +
                                (repeats.size() == 1 ? u" duplicate" : u" duplicates") +
                                u" from \"" + menuName + u"\"? The first of each stays.";
    if (InstalledDialogs().MessageBox(question, caption, MB_YESNO) != IDYES) return;
    for (auto it = repeats.rbegin(); it != repeats.rend(); ++it)
        items.Delete(*it);
    RefreshMenuItems(menuName);
    MarkModified();
}

void TSynFormPages::RefreshUserMenu() {
    TMenuList* list = CurrentMenuList();
    if (!list) return; // the box keeps its rows
    lbUserMenu->Items().Clear();
    FillKindRows(*lbUserMenu, *list, UserMenuName, WideString());
}

void TSynFormPages::lbMenuClick() {
    TMenuList* list = CurrentMenuList();
    if (!list) return;
    const WideString name = lbMenu->Items().Strings(lbMenu->ItemIndex());
    if (list->IndexOfMenu(name, false) < 0) return;
    lbMenuItem->Items().Clear();
    RefreshMenuItems(name);
}

void TSynFormPages::MenuAddClick() {
    const WideString name =
        AnsiToWide(InstalledDialogs().InputBox(u"Add", u"Enter a name", AnsiString()));
    if (name.empty()) return;
    TMenuList* list = CurrentMenuList();
    if (!list) return;
    // A duplicate name makes a second menu; the selection falls on the first.
    list->AddMenu(name);
    RefreshMenuNames();
    lbMenu->SetItemIndex(list->IndexOfMenu(name, false));
    lbMenuClick();
    MarkModified();
}

void TSynFormPages::MenuRenameClick() {
    if (lbMenu->ItemIndex() < 0) return;
    const WideString oldName = lbMenu->Items().Strings(lbMenu->ItemIndex());
    // The name goes through the narrow input box: characters outside the
    // code page change on the way, and a plain OK then counts as a rename.
    const WideString newName = AnsiToWide(
        InstalledDialogs().InputBox(u"Rename", u"Enter a new name", WideToAnsi(oldName)));
    if (newName == oldName) return; // an empty name is accepted
    TMenuList* list = CurrentMenuList();
    if (!list) return;
    list->SetMenuName(list->IndexOfMenu(oldName, false), newName);
    list->SortMenus(); // a rename reorders the whole list on purpose
    const int index = list->IndexOfMenu(newName, false);
    RefreshMenuNames();
    lbMenu->SetItemIndex(index);
    lbMenuClick();
    MarkModified();
}

void TSynFormPages::MenuSortClick() {
    TMenuList* list = CurrentMenuList();
    if (!list) return;
    list->SortMenus();
    RefreshMenuNames();
    MarkModified();
}

void TSynFormPages::MenuRemoveClick() {
    TMenuList* list = CurrentMenuList();
    if (!list) return;
    // Without a selection this read raises the list's index error; the
    // command has no guard of its own, and the error box is its answer.
    const WideString name = lbMenu->Items().Strings(lbMenu->ItemIndex());
    const int index = list->IndexOfMenu(name, false);
    if (index < 0) return;
    if (!AskRemove(u"Remove the menu?")) return;
    list->DeleteMenu(index);
    RefreshMenuNames();
    MarkModified();
}

void TSynFormPages::MenuItemSortClick() {
    TMenuList* list = CurrentMenuList();
    if (lbMenu->ItemIndex() < 0 || !list) return;
    const WideString name = lbMenu->Items().Strings(lbMenu->ItemIndex());
    list->SortItems(list->IndexOfMenu(name, false));
    RefreshMenuItems(name);
    MarkModified();
}

void TSynFormPages::MenuItemRemoveClick() {
    TMenuList* list = CurrentMenuList();
    if (lbMenuItem->ItemIndex() < 0 || !list) return;
    const WideString menuName = lbMenu->Items().Strings(lbMenu->ItemIndex());
    const int menu = list->IndexOfMenu(menuName, false);
    const WideString itemName = lbMenuItem->Items().Strings(lbMenuItem->ItemIndex());
    if (menu < 0) return;
    if (!AskRemove(u"Remove the menu item?")) return;
    list->DeleteItem(menu, itemName); // with duplicates the first of the name goes
    RefreshMenuItems(menuName);
    MarkModified();
}

void TSynFormPages::MenuItemAddClick() {
    TMenuList* list = CurrentMenuList();
    if (lbMenu->ItemIndex() < 0 || !list) return;
    if (CurrentSection >= 3 && CurrentSection <= 5)
        AddCompletionItem(*list);
    else
        AddKeywords(*list);
}

void TSynFormPages::AddKeywords(TMenuList& List) {
    TAddForm& form = AddForm();
    form.Edit->SetText(WideString());
    form.List->Items().Clear();
    if (form.ShowModal() != 1) return;
    const int menu = List.IndexOfMenu(lbMenu->Items().Strings(lbMenu->ItemIndex()), false);
    if (menu < 0) return;
    for (const WideString& word : form.List->Items().ToVector())
        List.AddMenuItem(menu, word, 20, u"");
    lbMenu->SetItemIndex(menu);
    lbMenuClick();
    MarkModified(); // even when the dialog's list was empty
}

void TSynFormPages::AddCompletionItem(TMenuList& List) {
    TUserMenuForm& form = UserMenuForm();
    // The kind row and the caption stay as the last use left them.
    form.txtItem->SetText(WideString());
    form.DataMemo->Lines().Clear();
    if (form.ShowModal() != 1) return;
    const int menu = List.IndexOfMenu(lbMenu->Items().Strings(lbMenu->ItemIndex()), false);
    const WideString name = form.txtItem->Text();
    const WideString text = EscapeItemText(form.DataMemo->Text());
    if (menu < 0) return;
    List.AddMenuItem(menu, name, KindFromComboIndex(form.ComboBoxEx1->currentIndex()), text);
    lbMenu->SetItemIndex(menu);
    lbMenuClick();
    MarkModified();
}

bool TSynFormPages::EditKindItem(TMenuList& List, int MenuIndex, WideString OldName) {
    TUserMenuForm& form = UserMenuForm();
    const int item = List.IndexOfItem(MenuIndex, OldName);
    int kind = 0; // an item that is not found reads as kind 0
    WideString text;
    List.GetItemTextKind(MenuIndex, item, kind, text);
    form.DataMemo->SetText(UnescapeItemText(text));
    form.txtItem->SetText(OldName);
    form.ComboBoxEx1->setCurrentIndex(ComboIndexFromKind(kind));
    form.SetCaption(u"Edit");
    if (form.ShowModal() != 1) return false;
    kind = KindFromComboIndex(form.ComboBoxEx1->currentIndex());
    text = EscapeItemText(form.DataMemo->Text());
    const WideString name = form.txtItem->Text();
    if (name != OldName) {
        List.SetItemName(MenuIndex, item, name);
        OldName = name;
    }
    // Found by name: with duplicates the first item of the name changes.
    List.ChangeItem(MenuIndex, OldName, kind, text);
    return true;
}

void TSynFormPages::MenuItemEditClick() {
    TMenuList* list = CurrentMenuList();
    if (lbMenu->ItemIndex() < 0 || lbMenuItem->ItemIndex() < 0 || !list) return;
    const int menu = list->IndexOfMenu(lbMenu->Items().Strings(lbMenu->ItemIndex()), false);
    const WideString oldName = lbMenuItem->Items().Strings(lbMenuItem->ItemIndex());
    if (CurrentSection >= 3 && CurrentSection <= 5) {
        if (!EditKindItem(*list, menu, oldName)) return;
    } else {
        const WideString newName = AnsiToWide(
            InstalledDialogs().InputBox(u"Rename", u"Rename the item", WideToAnsi(oldName)));
        if (newName == oldName) return;
        list->SetItemName(menu, list->IndexOfItem(menu, oldName), newName);
    }
    lbMenu->SetItemIndex(menu);
    lbMenuClick();
    MarkModified();
}

// --- User menu ----------------------------------------------------------------

void TSynFormPages::tbUserAddClick() {
    TMenuList* list = CurrentMenuList();
    if (!list || CurrentSection != 3) return;
    TUserMenuForm& form = UserMenuForm();
    form.txtItem->SetText(WideString());
    form.DataMemo->Lines().Clear();
    if (form.ShowModal() != 1) return;
    int menu = list->IndexOfMenu(UserMenuName, false);
    if (menu < 0) {
        // The menu comes with its first item; no other menu is expected here.
        list->AddMenu(UserMenuName);
        menu = 0;
    }
    const WideString name = form.txtItem->Text();
    const WideString text = EscapeItemText(form.DataMemo->Text());
    list->AddMenuItem(menu, name, KindFromComboIndex(form.ComboBoxEx1->currentIndex()), text);
    RefreshUserMenu();
    MarkModified();
}

void TSynFormPages::tbUserEditClick() {
    TMenuList* list = CurrentMenuList();
    if (lbUserMenu->ItemIndex() < 0 || !list) return;
    const int menu = list->IndexOfMenu(UserMenuName, false);
    const WideString oldName = lbUserMenu->Items().Strings(lbUserMenu->ItemIndex());
    if (CurrentSection != 3) return;
    if (!EditKindItem(*list, menu, oldName)) return;
    RefreshUserMenu();
    MarkModified();
}

void TSynFormPages::tbUserSortClick() {
    TMenuList* list = CurrentMenuList();
    if (!list) return;
    // Without the menu the index is -1 and the list's index error reaches the user.
    list->SortItems(list->IndexOfMenu(UserMenuName, false));
    RefreshUserMenu();
    MarkModified();
}

void TSynFormPages::tbUserDeleteClick() {
    TMenuList* list = CurrentMenuList();
    if (lbUserMenu->ItemIndex() < 0 || !list) return;
    const int menu = list->IndexOfMenu(UserMenuName, false);
    const WideString name = lbUserMenu->Items().Strings(lbUserMenu->ItemIndex());
    if (menu < 0) return;
    if (!AskRemove(u"Remove the menu item?")) return;
    list->DeleteItem(menu, name);
    RefreshUserMenu();
    MarkModified();
}

void TSynFormPages::lbMenuItemDrawItem(TUniListBox& Control, TCanvas& Canvas, int Index,
                                       const TRect& Rect) {
    const auto* bitmap = reinterpret_cast<const TKVBitmap*>(Control.Items().Objects(Index));
    DrawKindListItem(Canvas, Rect, Control.Items().Strings(Index), bitmap);
}

void TSynFormPages::lbUserMenuDrawItem(TUniListBox& Control, TCanvas& Canvas, int Index,
                                       const TRect& Rect) {
    lbMenuItemDrawItem(Control, Canvas, Index, Rect); // one routine serves both lists
}

// --- Hints, sample and author lines -------------------------------------------

void TSynFormPages::BtnHintsAddClick() {
    const WideString text = HintsEdit->Text();
    if (text.empty()) return;
    HintsList->Items().Add(text); // no duplicate check
    AutoHint->Add(text);
    HintsEdit->clear();
    HintsList->SetItemIndex(HintsList->Items().Count() - 1);
    HintsEdit->setFocus();
    MarkModified();
}

void TSynFormPages::HintsEditKeyDown(int& Key) {
    if (Key == 13) BtnHintsAddClick();
}

void TSynFormPages::BtnHintsDeleteClick() {
    const int index = HintsList->ItemIndex();
    if (index < 0) return;
    HintsList->Items().Delete(index);
    AutoHint->Delete(index);
    MarkModified();
}

void TSynFormPages::btnHintsSortClick() {
    if (HintsList->Items().Count() == 0) return;
    AutoHint->Sort();
    HintsList->Items().Clear();
    FillHintsList();
    // Sorting the hints alone does not mark the document; kept so on purpose.
}

void TSynFormPages::SampleMemoChange() {
    MarkModified();
}

void TSynFormPages::InfoMemoChange() {
    MarkModified();
}

void TSynFormPages::FillDefaultHeader() {
    InfoMemo->Lines().Clear();
    for (const char16_t* line : DefaultHeaderLines)
        InfoMemo->Lines().Add(line);
}

void TSynFormPages::BtnInfoKeyAddClick() {
    for (const char16_t* line : DefaultHeaderLines)
        InfoMemo->Lines().Add(line);
    InfoMemo->Lines().Add(WideString());
    MarkModified();
}
