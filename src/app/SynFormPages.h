#pragma once
// The list pages of the main form: keyword, tag and completion menus
// (TabCodeMenu), hints (TabHints), sample (TabSample), author lines
// (TabInfo) and the user menu (TabUserMenu), with the live containers they
// change and every command of those pages. The main form owns one of these,
// places the five pages in its page control, puts its toolbars into the
// empty ToolbarHost widgets and wires the toolbar buttons to the slots.
//
// The page commands report every change through OnMarkModified.
//
// How the document commands of the main form meet these pages:
//   new containers (FormCreate, ResetDocument): CreateLists()
//   ResetDocument, clearing the pages: InfoMemo->Lines().Clear() and
//     ClearListPages(); lbUserMenu keeps its rows
//   OpenDocument: InfoMemo lines from Header, or FillDefaultHeader(); then
//     FillHintsList(); SampleMemo lines from Sample; RefreshMenuNames() when
//     TabCodeMenu is in view
//   SaveDocument: Header and Sample from InfoMemo->Lines().ToVector() and
//     SampleMemo->Lines().ToVector(); the menu lists and AutoHint are live
//   section change: set CurrentSection, the heading and page from
//     SectionViews, then RefreshSection()

#include "app/KindIcons.h"
#include "app/SamplePreview.h"
#include "document/MenuList.h"
#include "document/SyntaxDocument.h"
#include "document/WgUnicodeStrings.h"

#include <QObject>
#include <QPointer>

#include <array>
#include <functional>
#include <memory>

class QCheckBox;
class QSplitter;
class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;
class TAddForm;
class TUniBitBtn;
class TUniEdit;
class TUniLabel;
class TUniListBox;
class TUniMemo;
class TUserMenuForm;

// What selecting a side-panel section shows: the heading above the page
// area and the index of the page. Some headings differ from the labels of
// the side panel ("User Menu (Ctrl + Space)", "Class Completion List"); both
// forms are wanted.
struct TSectionView {
    const char16_t* Heading;
    int PageIndex;
};
extern const std::array<TSectionView, 9> SectionViews;

class TSynFormPages : public QObject {
    Q_OBJECT
public:
    // The pages are made as children of PageParent (null leaves them
    // top-level until the main form places them). Their live containers are
    // those of Document; without one the pages keep a document of their own.
    explicit TSynFormPages(QWidget* PageParent = nullptr, TSyntaxDocument* Document = nullptr);
    ~TSynFormPages() override;

    // The dialogs, created once by the program's entry; made here on first
    // use when nobody gave any.
    void SetForms(TAddForm* AddForm, TUserMenuForm* UserMenuForm);
    TAddForm& AddForm();
    TUserMenuForm& UserMenuForm();

private:
    std::unique_ptr<TSyntaxDocument> FOwnDocument; // made before the references below

public:
    // The document whose live containers the pages change.
    TSyntaxDocument& Document;
    // The live containers, as they live between a load and a save: the
    // document's own.
    std::unique_ptr<TMenuList>&UserMenu, &TagComplete, &AutoComplete, &Keywords, &Tags;
    std::unique_ptr<TWgWideStringList>& AutoHint;
    // The icon of each item kind; list rows carry a pointer to one as object.
    std::array<std::unique_ptr<TKVBitmap>, KindIconCount> KindBitmaps;

    // The side-panel section in view, 0 to 8.
    int CurrentSection = 0;
    // The menus of the current section, or null.
    TMenuList* CurrentMenuList() const;

    std::function<void()> OnMarkModified;
    // Whether keywords (false) or tags (true) compare with case, as the
    // options on screen say; unset means without case.
    std::function<bool(bool Tags)> IsCaseSensitive;
    // Shows every item of the group again.
    void ClearItemFilter();
    void MarkModified() {
        if (OnMarkModified) OnMarkModified();
    }

    // Fresh empty menu lists and hint list, as a new document has them.
    void CreateLists();
    // Empties the list page controls that a new document clears: HintsList,
    // HintsEdit, lbMenu, lbMenuItem and SampleMemo. lbUserMenu keeps its rows.
    void ClearListPages();
    // Puts the hint lines of AutoHint into HintsList after a load.
    void FillHintsList();

    // The refresh that ends the selection of a section: the main form sets
    // CurrentSection, the heading and the page, then calls this.
    void RefreshSection();
    void RefreshMenuNames();
    void RefreshMenuItems(const WideString& MenuName);
    void RefreshUserMenu();
    void FillDefaultHeader();

    // Owner drawing of the two kind lists.
    void lbMenuItemDrawItem(TUniListBox& Control, TCanvas& Canvas, int Index, const TRect& Rect);
    void lbUserMenuDrawItem(TUniListBox& Control, TCanvas& Canvas, int Index, const TRect& Rect);

    void HintsEditKeyDown(int& Key);

    // Pages.
    QWidget* TabCodeMenu;
    QWidget* TabHints;
    QWidget* TabSample;
    QWidget* TabInfo;
    QWidget* TabUserMenu;

    // TabCodeMenu.
    QWidget* Panel8;
    QWidget* ToolbarHost1; // WgToolbar1 goes here
    TUniListBox* lbMenu;
    QSplitter* Splitter1;
    QWidget* Panel9;
    QWidget* ToolbarHost2; // WgToolbar2
    QLineEdit* ItemFilter;           // narrows lbMenuItem to the names holding its text
    QLabel* ItemCount;               // "40 items", or "12 of 40" while filtered
    QPushButton* BtnRemoveDuplicates; // of the group in view
    TUniListBox* lbMenuItem;

    // TabHints.
    QLabel* Label5;
    TUniEdit* HintsEdit;
    TUniListBox* HintsList;
    TUniBitBtn* BtnHintsAdd;
    TUniBitBtn* BtnHintsDelete;
    TUniBitBtn* btnHintsSort;

    // TabSample.
    QLabel* Label26;
    TUniMemo* SampleMemo;
    TSamplePreview* SamplePreview; // the sample as the definition on screen colours it
    QCheckBox* PreviewCheck;       // shows or hides SamplePreview

    // TabInfo.
    TUniLabel* UniLabel1;
    TUniMemo* InfoMemo;
    TUniLabel* UniLabel2;
    QPushButton* BtnInfoKeyAdd;

    // TabUserMenu.
    QWidget* ToolbarHost3; // WgToolbar3
    TUniListBox* lbUserMenu;

public slots:
    void lbMenuClick();
    void MenuAddClick();
    void MenuRenameClick();
    void MenuSortClick();
    void MenuRemoveClick();
    void MenuItemAddClick();
    void MenuItemEditClick();
    void MenuItemSortClick();
    void MenuItemRemoveClick();
    void tbUserAddClick();
    void tbUserEditClick();
    void tbUserSortClick();
    void tbUserDeleteClick();
    void BtnHintsAddClick();
    void BtnHintsDeleteClick();
    void btnHintsSortClick();
    void SampleMemoChange();
    void InfoMemoChange();
    void BtnInfoKeyAddClick();
    // Removes the later of items with one name from the group in view, after
    // asking; keywords and tags compare as the definition's case options say.
    void RemoveDuplicatesClick();

private:
    void CreateCodeMenuPage(QWidget* Parent);
    void CreateHintsPage(QWidget* Parent);
    void CreateSamplePage(QWidget* Parent);
    void CreateInfoPage(QWidget* Parent);
    void CreateUserMenuPage(QWidget* Parent);
    void LoadKindBitmaps();
    // Rows for the items of MenuName whose name holds Filter (without case);
    // returns the number of items of the menu.
    int FillKindRows(TUniListBox& Box, TMenuList& List, const WideString& MenuName,
                     const WideString& Filter);
    TObjectValue KindObject(int Kind) const;
    // Shared by the completion pages and the user menu: edits item OldName
    // of menu MenuIndex through TUserMenuForm; false when the dialog was not
    // left with OK.
    bool EditKindItem(TMenuList& List, int MenuIndex, WideString OldName);
    void AddKeywords(TMenuList& List);
    void AddCompletionItem(TMenuList& List);

    QPointer<TAddForm> FAddForm;
    QPointer<TUserMenuForm> FUserMenuForm;
    std::array<QPointer<QWidget>, 5> FPages;
};
