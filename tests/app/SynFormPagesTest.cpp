// The commands of the list pages: their exact effect on the containers and
// the list boxes, the prompts they ask and the answers they take.

#include "app/SynFormPages.h"
#include "app/AddKeywordsDialog.h"
#include "app/UserMenuDialog.h"
#include "base/Exceptions.h"
#include "controls/ui/UniControls.h"
#include "support/ScriptedDialogs.h"

#include <QComboBox>
#include <QTest>

#include <gtest/gtest.h>

namespace {

using Rows = std::vector<WideString>;

class SynFormPagesTest : public ::testing::Test {
protected:
    void SetUp() override {
        qputenv("LEXSMITH_RESOURCES", LEXSMITH_RESOURCES);
        Pages.SetForms(&Add, &User);
        Pages.OnMarkModified = [this] { ++Marks; };
    }

    // The items of menu 0 of List as "string/kind".
    static Rows Items(TMenuList& List, int Menu = 0) {
        Rows rows;
        TWgWideStringList& items = *List.Menu(Menu)->Items;
        for (int i = 0; i < items.Count(); ++i)
            rows.push_back(items.Ref(i) + u"/" +
                           WideString(1, u'0' + char16_t(items.Objects(i) / 10)) +
                           WideString(1, u'0' + char16_t(items.Objects(i) % 10)));
        return rows;
    }
    // Sets up the given section with one menu "M" holding Names, selected.
    void MenuWithItems(int Section, const Rows& Names, int Kind = 20) {
        Pages.CurrentSection = Section;
        TMenuList& list = *Pages.CurrentMenuList();
        list.AddMenu(u"M");
        for (const WideString& name : Names)
            list.AddMenuItem(0, name, Kind, u"t" + name);
        Pages.RefreshMenuNames();
        Pages.lbMenu->SetItemIndex(0);
        Pages.lbMenuClick();
    }

    TScriptedDialogs Dialogs;
    TDialogsScope Scope{Dialogs};
    TAddForm Add;
    TUserMenuForm User;
    TSynFormPages Pages;
    int Marks = 0;
};

TEST_F(SynFormPagesTest, CurrentMenuListFollowsTheSection) {
    const std::pair<int, TMenuList*> table[] = {{0, nullptr},
                                                {1, Pages.Keywords.get()},
                                                {2, Pages.Tags.get()},
                                                {3, Pages.UserMenu.get()},
                                                {4, Pages.AutoComplete.get()},
                                                {5, Pages.TagComplete.get()},
                                                {6, nullptr},
                                                {8, nullptr},
                                                {-1, nullptr}};
    for (auto [section, list] : table) {
        Pages.CurrentSection = section;
        EXPECT_EQ(Pages.CurrentMenuList(), list) << section;
    }
}

TEST_F(SynFormPagesTest, SectionChangeShowsTheOtherListsAndForgetsTheSelection) {
    MenuWithItems(1, {u"kw"});
    Pages.Tags->AddMenu(u"T1");
    Pages.Tags->AddMenu(u"T2");
    Pages.CurrentSection = 2;
    Pages.RefreshSection();
    EXPECT_EQ(Pages.lbMenu->Items().ToVector(), (Rows{u"T1", u"T2"}));
    EXPECT_EQ(Pages.lbMenu->ItemIndex(), -1);
    EXPECT_EQ(Pages.lbMenuItem->Items().Count(), 0);
    EXPECT_EQ(SectionViews[3].Heading, std::u16string_view(u"User Menu (Ctrl + Space)"));
    EXPECT_EQ(SectionViews[3].PageIndex, 5);
    EXPECT_EQ(SectionViews[5].Heading, std::u16string_view(u"Tag Completion List"));
}

TEST_F(SynFormPagesTest, ClickingAMenuShowsItsItems) {
    MenuWithItems(1, {});
    Pages.Keywords->AddMenu(u"N");
    Pages.Keywords->AddMenuItem(1, u"n1", 20, u"");
    Pages.RefreshMenuNames();
    Pages.TabCodeMenu->resize(300, 400);
    Pages.TabCodeMenu->show();
    const QRect row = Pages.lbMenu->visualItemRect(Pages.lbMenu->item(1));
    QTest::mouseClick(Pages.lbMenu->viewport(), Qt::LeftButton, {}, row.center());
    EXPECT_EQ(Pages.lbMenu->property("ItemIndex").toInt(), 1);
    EXPECT_EQ(Pages.lbMenuItem->Items().ToVector(), (Rows{u"n1"}));
}

TEST_F(SynFormPagesTest, AddMenuAppendsUnsortedAndSelectsTheFirstOfItsName) {
    Pages.CurrentSection = 1;
    Dialogs.InputAnswers = {{true, "Zeta"}, {true, "Alpha"}, {true, "Zeta"}, {false, "x"}};
    for (int i = 0; i < 4; ++i)
        Pages.MenuAddClick();
    EXPECT_EQ(Pages.lbMenu->Items().ToVector(), (Rows{u"Zeta", u"Alpha", u"Zeta"}));
    EXPECT_EQ(Pages.lbMenu->ItemIndex(), 0); // the duplicate selects the first Zeta
    EXPECT_EQ(Marks, 3);                     // Cancel gives the empty default: no menu
}

TEST_F(SynFormPagesTest, AddMenuWithoutAListAsksButChangesNothing) {
    Pages.CurrentSection = 6;
    Dialogs.InputAnswers = {{true, "Name"}};
    Pages.MenuAddClick();
    EXPECT_TRUE(Dialogs.InputAnswers.empty());
    EXPECT_EQ(Marks, 0);
}

TEST_F(SynFormPagesTest, RenameSortsTheMenusAndSelectsTheRenamedOne) {
    Pages.CurrentSection = 2;
    Pages.Tags->AddMenu(u"b");
    Pages.Tags->AddMenu(u"c");
    Pages.Tags->AddMenuItem(1, u"word", 20, u"");
    Pages.RefreshMenuNames();
    Pages.lbMenu->SetItemIndex(1);
    Dialogs.InputAnswers = {{true, "a"}};
    Pages.MenuRenameClick();
    EXPECT_EQ(Pages.lbMenu->Items().ToVector(), (Rows{u"a", u"b"}));
    EXPECT_EQ(Pages.lbMenu->ItemIndex(), 0);
    EXPECT_EQ(Pages.lbMenuItem->Items().ToVector(), (Rows{u"word"}));
    EXPECT_EQ(Marks, 1);

    Dialogs.InputAnswers = {{true, "a"}}; // unchanged: nothing happens
    Pages.MenuRenameClick();
    EXPECT_EQ(Marks, 1);
}

// OK on whatever the input box was given, recording prompt and default.
class TPlainOkDialogs : public TScriptedDialogs {
public:
    std::vector<std::pair<WideString, AnsiString>> Asked;
    bool InputQuery(const WideString& Caption, const WideString& Prompt,
                    AnsiString& Value) override {
        Asked.push_back({Caption + u": " + Prompt, Value});
        return true;
    }
};

TEST_F(SynFormPagesTest, RenameOfANameOutsideTheCodePageChangesItOnPlainOk) {
    TPlainOkDialogs plain;
    TDialogsScope scope(plain);
    MenuWithItems(1, {u"k"});
    Pages.Keywords->SetMenuName(0, u"\u0416x");
    Pages.RefreshMenuNames();
    Pages.lbMenu->SetItemIndex(0);
    Pages.MenuRenameClick();
    ASSERT_EQ(plain.Asked.size(), 1u);
    EXPECT_EQ(plain.Asked[0].first, u"Rename: Enter a new name");
    EXPECT_EQ(plain.Asked[0].second, "?x");
    EXPECT_EQ(Pages.Keywords->MenuName(0), u"?x");
    EXPECT_EQ(Marks, 1);

    Pages.lbMenuItem->SetItemIndex(0); // plain OK on an item of the narrow code page: no change
    Pages.MenuItemEditClick();
    EXPECT_EQ(plain.Asked[1].first, u"Rename: Rename the item");
    EXPECT_EQ(Marks, 1);
}

TEST_F(SynFormPagesTest, RenameWithoutSelectionAsksNothing) {
    Pages.CurrentSection = 1;
    Dialogs.InputAnswers = {{true, "x"}};
    Pages.MenuRenameClick();
    EXPECT_EQ(Dialogs.InputAnswers.size(), 1u);
}

TEST_F(SynFormPagesTest, SortMenusDropsTheSelectionAndTheItems) {
    MenuWithItems(1, {u"k"});
    Pages.Keywords->AddMenu(u"A");
    Pages.Keywords->AddMenu(u"a");
    Pages.MenuSortClick();
    EXPECT_EQ(Pages.lbMenu->Items().ToVector(), (Rows{u"A", u"M", u"a"}));
    EXPECT_EQ(Pages.lbMenu->ItemIndex(), -1);
    EXPECT_EQ(Pages.lbMenuItem->Items().Count(), 0);
    EXPECT_EQ(Marks, 1);
}

TEST_F(SynFormPagesTest, RemoveMenuWithoutSelectionRaisesTheListIndexError) {
    Pages.CurrentSection = 1;
    Pages.Keywords->AddMenu(u"M");
    Pages.RefreshMenuNames();
    try {
        Pages.MenuRemoveClick();
        FAIL() << "no error";
    } catch (const EStringListError& e) {
        EXPECT_STREQ(e.what(), "List index out of bounds (-1)");
    }
    EXPECT_TRUE(Dialogs.Messages.empty());
    EXPECT_EQ(Marks, 0);
}

TEST_F(SynFormPagesTest, RemoveMenuAsksAndDeletesOnYesOnly) {
    MenuWithItems(1, {});
    Dialogs.MessageAnswers = {IDNO, IDYES};
    Pages.MenuRemoveClick();
    EXPECT_EQ(Pages.Keywords->MenuCount(), 1);
    Pages.MenuRemoveClick();
    EXPECT_EQ(Pages.Keywords->MenuCount(), 0);
    EXPECT_EQ(Dialogs.Messages, (std::vector<std::u16string>(2, u"Remove: Remove the menu?")));
    EXPECT_EQ(Dialogs.MessageFlags, (std::vector<unsigned>{4, 4}));
    EXPECT_EQ(Marks, 1);
}

TEST_F(SynFormPagesTest, AddKeywordsAppendsTheDialogRowsInOrder) {
    MenuWithItems(1, {u"old"});
    Add.ModalHook = [](TAddForm& Form) {
        for (const char* word : {"gamma", "alpha", "gamma"}) {
            Form.Edit->setText(word);
            Form.btnAddClick();
        }
        Form.Edit->setText("left in the field");
        return 1;
    };
    Pages.MenuItemAddClick();
    EXPECT_EQ(Items(*Pages.Keywords),
              (Rows{u"old | told/20", u"gamma | /20", u"alpha | /20", u"gamma | /20"}));
    EXPECT_EQ(Pages.lbMenuItem->Items().ToVector(), (Rows{u"old", u"gamma", u"alpha", u"gamma"}));
    EXPECT_EQ(Pages.lbMenuItem->Items().Objects(1), 0); // kind 20 has no icon
    EXPECT_EQ(Marks, 1);
}

TEST_F(SynFormPagesTest, AddKeywordsResultsTable) {
    MenuWithItems(2, {});
    struct Case {
        int Result;
        bool AddWord;
        int Marks;
        int Items;
    };
    int marks = 0, items = 0;
    for (Case c :
         {Case{3, true, 0, 0}, Case{2, true, 0, 0}, Case{1, false, 1, 0}, Case{1, true, 1, 1}}) {
        Add.ModalHook = [&](TAddForm& Form) {
            EXPECT_EQ(Form.List->Items().Count(), 0); // cleared before each show
            if (c.AddWord) Form.List->Items().Add(u"w");
            return c.Result;
        };
        Pages.MenuItemAddClick();
        marks += c.Marks;
        items += c.Items;
        EXPECT_EQ(Marks, marks);
        EXPECT_EQ(Pages.Tags->Menu(0)->Items->Count(), items);
    }
}

TEST_F(SynFormPagesTest, AddItemWithoutMenuSelectionOpensNoDialog) {
    Pages.CurrentSection = 1;
    Pages.Keywords->AddMenu(u"M");
    Pages.RefreshMenuNames();
    bool shown = false;
    Add.ModalHook = [&](TAddForm&) { return shown = true, 1; };
    Pages.MenuItemAddClick();
    EXPECT_FALSE(shown);
}

TEST_F(SynFormPagesTest, EditKeywordRenamesInPlace) {
    MenuWithItems(1, {u"a", u"foo", u"z"});
    Pages.lbMenuItem->SetItemIndex(1);
    Dialogs.InputAnswers = {{true, "bar"}};
    Pages.MenuItemEditClick();
    EXPECT_EQ(Items(*Pages.Keywords), (Rows{u"a | ta/20", u"bar | tfoo/20", u"z | tz/20"}));
    EXPECT_EQ(Pages.lbMenuItem->Items().ToVector(), (Rows{u"a", u"bar", u"z"}));
    EXPECT_EQ(Marks, 1);
}

TEST_F(SynFormPagesTest, SortAndRemoveItems) {
    MenuWithItems(1, {u"x", u"b", u"x"});
    Pages.MenuItemSortClick();
    EXPECT_EQ(Pages.lbMenuItem->Items().ToVector(), (Rows{u"b", u"x", u"x"}));
    Pages.lbMenuItem->SetItemIndex(2);
    Dialogs.MessageAnswers = {IDYES};
    Pages.MenuItemRemoveClick();
    EXPECT_EQ(Dialogs.Messages.back(), u"Remove: Remove the menu item?");
    EXPECT_EQ(Pages.lbMenuItem->Items().ToVector(), (Rows{u"b", u"x"}));
    EXPECT_EQ(Marks, 2);
}

TEST_F(SynFormPagesTest, CompletionAddStoresEscapedTextAndKind) {
    MenuWithItems(4, {});
    User.ModalHook = [](TUserMenuForm& Form) {
        EXPECT_TRUE(Form.txtItem->Text().empty());
        Form.txtItem->SetText(u"Name");
        Form.DataMemo->SetText(u"say \"hi\"\r\nbye");
        Form.ComboBoxEx1->setCurrentIndex(8);
        return 1;
    };
    Pages.MenuItemAddClick();
    EXPECT_EQ(Items(*Pages.AutoComplete), (Rows{u"Name | say \\\"hi\\\"\u000Cbye/08"}));
    EXPECT_EQ(reinterpret_cast<TKVBitmap*>(Pages.lbMenuItem->Items().Objects(0)),
              Pages.KindBitmaps[8].get());
    EXPECT_EQ(Marks, 1);
}

TEST_F(SynFormPagesTest, CompletionEditShowsTheItemAndKeepsItsTextOnOk) {
    MenuWithItems(5, {});
    Pages.TagComplete->AddMenuItem(0, u"A", 20, u"q\\\"x\u000Cy");
    Pages.lbMenuClick();
    Pages.lbMenuItem->SetItemIndex(0);
    User.ModalHook = [](TUserMenuForm& Form) {
        EXPECT_EQ(Form.Caption(), u"Edit");
        EXPECT_EQ(Form.txtItem->Text(), u"A");
        EXPECT_EQ(Form.DataMemo->Text(), u"q\"x\r\ny");
        EXPECT_EQ(Form.ComboBoxEx1->currentIndex(), -1); // kind 20 selects no row
        return 1;
    };
    Pages.MenuItemEditClick();
    EXPECT_EQ(Items(*Pages.TagComplete), (Rows{u"A | q\\\"x\u000Cy/20"}));
    // The next Add keeps the caption and the row of that Edit.
    User.ModalHook = [](TUserMenuForm& Form) {
        EXPECT_EQ(Form.Caption(), u"Edit");
        Form.ComboBoxEx1->setCurrentIndex(20); // "None"
        return 1;
    };
    Pages.MenuItemAddClick();
    EXPECT_EQ(Items(*Pages.TagComplete)[1], u" | /20");
    EXPECT_EQ(Marks, 2);
}

TEST_F(SynFormPagesTest, CompletionEditToAnEarlierNameChangesTheEarlierItem) {
    MenuWithItems(4, {u"A", u"B"}, 1);
    Pages.lbMenuItem->SetItemIndex(1);
    User.ModalHook = [](TUserMenuForm& Form) {
        Form.txtItem->SetText(u"A");
        Form.DataMemo->SetText(u"new");
        Form.ComboBoxEx1->setCurrentIndex(3);
        return 1;
    };
    Pages.MenuItemEditClick();
    EXPECT_EQ(Items(*Pages.AutoComplete), (Rows{u"A | new/03", u"A | tB/01"}));
    User.ModalHook = [](TUserMenuForm&) { return 2; };
    Pages.lbMenuItem->SetItemIndex(0);
    Pages.MenuItemEditClick();
    EXPECT_EQ(Marks, 1); // Cancel leaves the mark alone
}

TEST_F(SynFormPagesTest, UserMenuAddCreatesTheMenuAndSortNeedsIt) {
    Pages.CurrentSection = 3;
    EXPECT_THROW(Pages.tbUserSortClick(), EListError);
    User.ModalHook = [](TUserMenuForm& Form) {
        Form.txtItem->SetText(u"item");
        Form.ComboBoxEx1->setCurrentIndex(0);
        return 1;
    };
    Pages.tbUserAddClick();
    EXPECT_EQ(Pages.UserMenu->MenuName(0), u"0");
    EXPECT_EQ(Items(*Pages.UserMenu), (Rows{u"item | /00"}));
    EXPECT_EQ(Pages.lbUserMenu->Items().ToVector(), (Rows{u"item"}));
    EXPECT_EQ(Marks, 1);
}

TEST_F(SynFormPagesTest, UserMenuDeleteTakesTheFirstOfTheName) {
    Pages.CurrentSection = 3;
    Pages.UserMenu->AddMenu(u"0");
    for (const char16_t* name : {u"x", u"y", u"x"})
        Pages.UserMenu->AddMenuItem(0, name, 20, name);
    Pages.RefreshUserMenu();
    Pages.tbUserDeleteClick(); // no selection: nothing asked
    EXPECT_TRUE(Dialogs.Messages.empty());
    Pages.lbUserMenu->SetItemIndex(2);
    Dialogs.MessageAnswers = {IDYES};
    Pages.tbUserDeleteClick();
    EXPECT_EQ(Items(*Pages.UserMenu), (Rows{u"y | y/20", u"x | x/20"}));
    EXPECT_EQ(Marks, 1);
}

TEST_F(SynFormPagesTest, UserMenuEditOfAStaleRowAfterANewDocument) {
    Pages.CurrentSection = 3;
    Pages.UserMenu->AddMenu(u"0");
    Pages.UserMenu->AddMenuItem(0, u"old", 7, u"code");
    Pages.RefreshUserMenu();
    Pages.CreateLists(); // a new document; the page keeps its rows
    EXPECT_EQ(Pages.lbUserMenu->Items().ToVector(), (Rows{u"old"}));
    Pages.lbUserMenu->SetItemIndex(0);
    User.ModalHook = [](TUserMenuForm& Form) {
        EXPECT_EQ(Form.txtItem->Text(), u"old");
        EXPECT_TRUE(Form.DataMemo->Text().empty());
        EXPECT_EQ(Form.ComboBoxEx1->currentText(), "Load");
        return 1;
    };
    Pages.tbUserEditClick();
    EXPECT_EQ(Pages.UserMenu->MenuCount(), 0);
    EXPECT_EQ(Pages.lbUserMenu->Items().Count(), 0);
    EXPECT_EQ(Marks, 1);
}

TEST_F(SynFormPagesTest, HintsAddByEnterDeleteAndSort) {
    QTest::keyClick(Pages.HintsEdit, Qt::Key_Return); // empty: nothing
    for (const char* hint : {"b()", "a()", "c()"}) {
        QTest::keyClicks(Pages.HintsEdit, hint);
        QTest::keyClick(Pages.HintsEdit, Qt::Key_Return);
    }
    EXPECT_EQ(Pages.HintsList->Items().ToVector(), (Rows{u"b()", u"a()", u"c()"}));
    EXPECT_TRUE(Pages.HintsEdit->Text().empty());
    EXPECT_EQ(Pages.HintsList->ItemIndex(), 2);
    EXPECT_EQ(Marks, 3);

    Pages.HintsList->SetItemIndex(2);
    Pages.BtnHintsDeleteClick();
    EXPECT_EQ(Pages.HintsList->ItemIndex(), -1);
    Pages.BtnHintsDeleteClick(); // no selection: nothing
    Pages.btnHintsSortClick();   // does not mark
    const Rows sorted{u"a()", u"b()"};
    EXPECT_EQ(Pages.HintsList->Items().ToVector(), sorted);
    EXPECT_EQ(Pages.AutoHint->Count(), 2);
    EXPECT_EQ(Pages.AutoHint->Get(0) + Pages.AutoHint->Get(1), u"a()b()");
    EXPECT_EQ(Marks, 4);
}

TEST_F(SynFormPagesTest, AuthorLinesAddAndDefaultHeader) {
    Pages.BtnInfoKeyAddClick();
    Pages.BtnInfoKeyAddClick();
    const Rows defaults{u"<b>Syntax:</b> ",
                        u"<b>Author:</b> ",
                        u"<b>Version:</b> ",
                        u"<b>Date:</b> ",
                        u"",
                        u"<b>Recommended colors:</b>"};
    Rows once = defaults;
    once.push_back(u"");
    Rows twice = once;
    twice.insert(twice.end(), once.begin(), once.end());
    EXPECT_EQ(Pages.InfoMemo->Lines().ToVector(), twice);
    EXPECT_GE(Marks, 2);
    Pages.FillDefaultHeader();
    EXPECT_EQ(Pages.InfoMemo->Lines().ToVector(), defaults);
}

TEST_F(SynFormPagesTest, TypingInTheMemosMarks) {
    QTest::keyClicks(Pages.SampleMemo, "x");
    EXPECT_EQ(Marks, 1);
    QTest::keyClicks(Pages.InfoMemo, "y");
    EXPECT_EQ(Marks, 2);
}

} // namespace
