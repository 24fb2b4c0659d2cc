// The main window as the user drives it: a file's way from disk through the
// trees and pages back to disk, the state words of the status bar, the
// questions asked before a document is dropped, Save As, the block and fold
// records, the side panel's sections and the files of the command line.

#include "app/AddKeywordsDialog.h"
#include "app/SynEditor.h"
#include "app/UserMenuDialog.h"
#include "base/Exceptions.h"
#include "controls/ui/PlusPageControl.h"
#include "controls/ui/UniControls.h"
#include "controls/ui/WgPanel.h"
#include "controls/ui/WgPgCtl.h"
#include "document/SyntaxDocument.h"
#include "support/ScriptedDialogs.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"
#include "tree/ui/WgTree.h"
#include "tree/ui/WgTreeInplace.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace {

using Rows = std::vector<WideString>;

Rows LinesOf(const TWgWideStringList& List) {
    Rows rows;
    for (int i = 0; i < List.Count(); ++i)
        rows.push_back(List.Ref(i));
    return rows;
}

Rows MenuNames(const TMenuList& List) {
    Rows names;
    for (int i = 0; i < List.MenuCount(); ++i)
        names.push_back(List.MenuName(i));
    return names;
}

QByteArray Bytes(const AnsiString& FileName) {
    QFile file(QFile::decodeName(QByteArray::fromStdString(FileName)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

TWgTreeItems& Items(TWgTree* Tree) {
    return Tree->Tree().Items();
}

WideString Cell(TWgTree* Tree, int Row) {
    return Items(Tree).Item(Row)->ColumnTextAt(0);
}

const std::u16string Asked = u"KV Scribex Message: The file ";

class SynFormTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(Temp.isValid());
        qputenv("LEXSMITH_RESOURCES", LEXSMITH_RESOURCES);
        qputenv("LEXSMITH_APPDATA", QFile::encodeName(Temp.filePath("appdata")));
        NewForm();
    }

    // Picks a section of the side panel: the heading and the page follow.
    void Select(int Section, const char16_t* Heading, int Page) {
        Form->SelectSection(Section);
        EXPECT_EQ(Form->WgPanel1->Caption(), Heading);
        EXPECT_EQ(Form->WgPageControl1->ActivePage(), Page) << Section;
    }
    // A window as the program's entry makes it, without its arguments.
    void NewForm() {
        Form = std::make_unique<TSynForm>();
        Form->Params.clear();
        Form->SetForms(nullptr, &User, &Add);
    }

    AnsiString Path(const char* Name) const {
        return QFile::encodeName(Temp.filePath(QString::fromLatin1(Name))).toStdString();
    }
    AnsiString Example(const char* Name) const {
        QFile::copy(QStringLiteral(LEXSMITH_EXAMPLES "/") + QString::fromLatin1(Name),
                    QString::fromStdString(Path(Name)));
        return Path(Name);
    }
    // A definition with Count blocks; every text value tells its place.
    AnsiString WithBlocks(int Count, const char* Name, Rows& Values) const {
        TSyntaxDocument doc;
        for (int i = 0; i < Count * 5; ++i) {
            if (i % 5 == 1 || i % 5 == 2)
                doc.Blocks->Add((i / 5 + i) % 2 ? u"Yes" : u"No");
            else
                doc.Blocks->Add(u"v" + QString::number(i).toStdU16String());
        }
        Values = LinesOf(*doc.Blocks);
        doc.Save(Path(Name));
        return Path(Name);
    }

    QTemporaryDir Temp;
    TScriptedDialogs Dialogs;
    TDialogsScope Scope{Dialogs};
    TAddForm Add;
    TUserMenuForm User;
    std::unique_ptr<TSynForm> Form;
};

TEST_F(SynFormTest, OpenFillsThePagesAndSaveWritesTheEditedDocument) {
    const AnsiString file = Example("lua.syx");
    Form->show();
    Form->OpenDocument(file);
    Form->SaveDialog.FileName = file;
    EXPECT_EQ(Form->StatusText(0), "lua.syx");
    EXPECT_EQ(Form->StatusText(1), "");

    TSyntaxDocument doc;
    doc.Open(file);
    ASSERT_EQ(Items(Form->WgTree1).Count(), SyntaxOptionCount);
    for (int i = 0; i < SyntaxOptionCount; ++i) {
        EXPECT_EQ(Cell(Form->WgTree1, i), doc.Options->Ref(i)) << i;
    }
    for (auto [tree, list] : {std::pair{Form->WgTree2, doc.Blocks.get()},
                              std::pair{Form->WgTreeFold, doc.Folds.get()}}) {
        ASSERT_GT(list->Count(), 0);
        ASSERT_EQ(Items(tree).Count(), list->Count() / 5 * 6);
        for (int r = 0; r < Items(tree).Count(); ++r) {
            EXPECT_EQ(Cell(tree, r), r % 6 == 5 ? WideString() : list->Ref(r - r / 6)) << r;
        }
    }
    ASSERT_EQ(MenuNames(*Form->Pages.Keywords), MenuNames(*doc.Keywords));
    for (int m = 0; m < doc.Keywords->MenuCount(); ++m) {
        EXPECT_EQ(LinesOf(*Form->Pages.Keywords->Menu(m)->Items),
                  LinesOf(*doc.Keywords->Menu(m)->Items));
    }
    EXPECT_EQ(Form->Pages.HintsList->Items().ToVector(), LinesOf(*doc.AutoHint));
    EXPECT_EQ(Form->Pages.SampleMemo->Lines().ToVector(), LinesOf(*doc.Sample));
    EXPECT_EQ(Form->Pages.InfoMemo->Lines().ToVector(), LinesOf(*doc.Header));

    // LineCommentA edited in place; Save then writes straight to the name.
    Form->WgTree1->EditItem(Items(Form->WgTree1).Item(0), 1);
    ASSERT_TRUE(Form->WgTree1->IsEditing());
    EXPECT_EQ(Form->WgTreeInplaceEdit1->Editor()->text().toStdU16String(), doc.Options->Ref(0));
    Form->WgTreeInplaceEdit1->Editor()->setText(QStringLiteral("//"));
    Form->WgTree1->EndEdit(false);
    EXPECT_EQ(Form->StatusText(1), "Modified");
    Form->FileSaveClick();
    EXPECT_TRUE(Dialogs.FileDialogs.empty());
    EXPECT_FALSE(Form->Modified);
    EXPECT_EQ(Form->StatusText(0), "lua.syx");
    EXPECT_EQ(Form->StatusText(1), "Saved!");
    doc.Options->Put(0, u"//");
    doc.Save(Path("expected.syx"));
    EXPECT_EQ(Bytes(file), Bytes(Path("expected.syx")));
}

TEST_F(SynFormTest, DroppingAChangedDocumentAsksFirst) {
    EXPECT_EQ(Form->StatusText(0), "*New.syx");
    EXPECT_EQ(Form->StatusText(1), "");
    Form->FileNewClick(); // unchanged: nothing to ask
    EXPECT_TRUE(Dialogs.Messages.empty());

    const AnsiString file = Example("ini.syx");
    const QByteArray original = Bytes(file);
    Form->show();
    Form->OpenFromCommandLine(file);
    Form->BtnBlockAddClick();
    Dialogs.MessageAnswers = {IDCANCEL, IDCANCEL, IDCANCEL};
    EXPECT_FALSE(Form->close());
    EXPECT_TRUE(Form->isVisible());
    Form->FileNewClick();
    Form->FileOpenClick();
    EXPECT_TRUE(Dialogs.FileDialogs.empty());
    EXPECT_TRUE(Form->Modified);
    EXPECT_EQ(Form->SaveDialog.FileName, file);
    EXPECT_EQ(Items(Form->WgTree2).Count(), 6);
    EXPECT_EQ(Dialogs.Messages,
              std::vector<std::u16string>(3, Asked + u"has changed. Do you want to save it?"));
    EXPECT_EQ(Dialogs.MessageFlags, std::vector<unsigned>(3, 3));

    Dialogs.MessageAnswers = {IDNO};
    Form->FileNewClick();
    EXPECT_EQ(Bytes(file), original);
    EXPECT_EQ(Form->StatusText(0), "*New.syx");
    EXPECT_EQ(Form->StatusText(1), "");
    EXPECT_TRUE(Form->SaveDialog.FileName.empty());
    EXPECT_EQ(Items(Form->WgTree2).Count(), 0);

    Form->OpenFromCommandLine(file);
    Form->BtnBlockAddClick();
    Dialogs.MessageAnswers = {IDYES};
    EXPECT_TRUE(Form->close());
    EXPECT_FALSE(Form->isVisible());
    EXPECT_TRUE(Dialogs.FileDialogs.empty());
    TSyntaxDocument saved;
    saved.Open(file);
    EXPECT_EQ(saved.Blocks->Count(), 5);

    // Without a name: Yes, then a cancelled Save As, still lets the window go.
    NewForm();
    Form->show();
    Form->BtnFoldAddClick();
    Dialogs.MessageAnswers = {IDYES};
    EXPECT_TRUE(Form->close());
    EXPECT_EQ(Dialogs.Messages.back(), Asked + u"has not been saved. Do you want to save it?");
    EXPECT_EQ(Dialogs.MessageFlags.back(), 3u);
    EXPECT_EQ(Dialogs.FileDialogs.size(), 1u);
    EXPECT_EQ(QDir(Temp.path()).entryList(QDir::Files), QStringList{"ini.syx"});
}

TEST_F(SynFormTest, SaveAsRemembersTheFilterLineButWritesTheSameBytes) {
    Form->Pages.SampleMemo->Lines().Add(u"local x = 1");
    Dialogs.FileAnswers = {{true, Path("a.syx"), 4}, {true, Path("b.syx"), 1}};
    Form->FileSaveClick(); // a fresh document has no name: Save As
    Form->FileSaveAsClick();
    ASSERT_EQ(Dialogs.FileDialogs.size(), 2u);
    EXPECT_EQ(Dialogs.FileDialogs[0].FilterIndex, 2);
    EXPECT_EQ(Dialogs.FileDialogs[1].FilterIndex, 4);
    EXPECT_TRUE(Bytes(Path("a.syx")).contains("local x = 1"));
    EXPECT_EQ(Bytes(Path("a.syx")), Bytes(Path("b.syx")));
    EXPECT_EQ(Form->StatusText(0), "b.syx");

    Form->FileSaveClick(); // named now: no dialog
    EXPECT_EQ(Dialogs.FileDialogs.size(), 2u);
    Form->SaveDialog.FileName = "*" + Path("c.syx");
    Form->FileSaveClick();
    ASSERT_EQ(Dialogs.FileDialogs.size(), 3u);
    EXPECT_EQ(Dialogs.FileDialogs[2].FilterIndex, 1);
    EXPECT_FALSE(QFile::exists(QString::fromStdString(Path("c.syx"))));
}

TEST_F(SynFormTest, BlockRecordsComeAndGoAsWholes) {
    Rows values;
    Form->show();
    Form->OpenDocument(WithBlocks(2, "two.syx", values));
    TWgTreeItems& rows = Items(Form->WgTree2);
    ASSERT_EQ(rows.Count(), 12);
    std::vector<std::pair<WideString, int>> before;
    for (int i = 0; i < rows.Count(); ++i)
        before.push_back({Cell(Form->WgTree2, i), rows.Item(i)->ColumnTextCount()});

    Form->BtnBlockAddClick();
    ASSERT_EQ(rows.Count(), 18);
    EXPECT_TRUE(Form->Modified);
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(Cell(Form->WgTree2, i), before[std::size_t(i)].first) << i;
        EXPECT_EQ(rows.Item(i)->ColumnTextCount(), before[std::size_t(i)].second + 1) << i;
    }
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(rows.Item(12 + i)->Text(), rows.Item(i)->Text()) << i;
        EXPECT_EQ(rows.Item(12 + i)->Tag(), rows.Item(i)->Tag()) << i;
    }
    rows.Item(1)->SetSelected(true); // the selection plays no part
    Form->BtnBlockDeleteClick();
    ASSERT_EQ(rows.Count(), 12);
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(Cell(Form->WgTree2, i), before[std::size_t(i)].first) << i;
    }

    // Seven records: 42 rows, and an edit of the third name lands in its place.
    Form->OpenDocument(WithBlocks(7, "seven.syx", values));
    ASSERT_EQ(rows.Count(), 42);
    EXPECT_FALSE(Form->Modified);
    Form->WgTree2->EditItem(rows.Item(12), 1);
    EXPECT_TRUE(Form->Modified); // opening the editor alone marks
    Form->WgTreeInplaceEdit2->Editor()->setText(QStringLiteral("renamed"));
    Form->WgTree2->EndEdit(true);
    Form->SaveDocument(Path("again.syx"));
    values[10] = u"renamed";
    TSyntaxDocument doc;
    doc.Open(Path("again.syx"));
    EXPECT_EQ(LinesOf(*doc.Blocks), values);

    // Delete on an empty fold tree only marks.
    Form->OpenDocument(Example("ini.syx"));
    const WideString comment = Cell(Form->WgTree1, 0);
    Form->BtnFoldDeleteClick();
    EXPECT_EQ(Form->StatusText(1), "Modified");
    EXPECT_EQ(Items(Form->WgTreeFold).Count(), 0);
    EXPECT_EQ(Items(Form->WgTree2).Count(), 0);
    EXPECT_EQ(Cell(Form->WgTree1, 0), comment);
}

TEST_F(SynFormTest, EveryOptionEditEndsAsACommit) {
    Form->show();
    TWgTreeItem* caseSensitive = Items(Form->WgTree1).Item(13);
    ASSERT_EQ(caseSensitive->Text(), u"CaseSensitive");
    ASSERT_EQ(caseSensitive->Tag(), 8);
    Form->WgTree1->EditItem(caseSensitive, 1);
    ASSERT_TRUE(Form->WgTree1->IsEditing());
    EXPECT_TRUE(Form->Modified);
    EXPECT_EQ(Form->StatusText(1), "Modified");
    EXPECT_EQ(Form->WgTreeInplaceComboBox1->Editor()->currentText(), "No");
    Form->WgTree1->EndEdit(true);
    EXPECT_FALSE(Form->WgTree1->IsEditing());
    EXPECT_EQ(Cell(Form->WgTree1, 13), u"No");
}

TEST_F(SynFormTest, TheTreesHaveFlatStillHeadersAndTheCaptionColouredSelection) {
    for (TWgTree* tree : {Form->WgTree1, Form->WgTree2, Form->WgTreeFold}) {
        TCustomWgTree& t = tree->Tree();
        EXPECT_TRUE(t.HeaderFlat());
        EXPECT_EQ(t.DefaultSectionWidth(), 100);
        // The pointer over a section leaves it as it is: no hot look.
        t.Header().MouseMove(20, 8, false);
        EXPECT_EQ(t.Header().HotSection(), nullptr);
        // A new column takes the form's default width.
        TWgHeaderSection* added = t.Header().Sections().AddSection();
        EXPECT_EQ(added->Width(), 100);
        t.Header().Sections().DeleteSection(added);
    }
    EXPECT_EQ(Form->WgTree1->Tree().FocusedSelectColor, clActiveCaption);
    EXPECT_EQ(Form->WgTree1->Tree().StoragePath(), "\\Tree");
}

TEST_F(SynFormTest, TheSimplePagesNameTheirSheets) {
    EXPECT_EQ(Form->TabHints->Caption(), u"Hints");
    EXPECT_EQ(Form->TabSample->Caption(), u"Sample");
    EXPECT_EQ(Form->TabInfo->Caption(), u"Info");
    // Not the widgets inside them.
    for (QWidget* inner : {Form->Pages.TabHints, Form->Pages.TabSample, Form->Pages.TabInfo})
        EXPECT_TRUE(inner->windowTitle().isEmpty());
}

TEST_F(SynFormTest, SectionsAndPageCommandsThroughTheWindow) {
    Form->OpenDocument(Example("lua.syx"));
    Form->Pages.Tags->AddMenu(u"Elements");
    Select(2, u"Tags", 1);
    EXPECT_EQ(Form->Pages.lbMenu->Items().ToVector(), Rows{u"Elements"});
    Select(1, u"Keywords", 1);
    EXPECT_EQ(Form->Pages.lbMenu->Items().ToVector(), MenuNames(*Form->Pages.Keywords));
    Form->Pages.lbMenu->SetItemIndex(1);
    Form->Pages.lbMenuClick();
    const int words = Form->Pages.Keywords->Menu(1)->Items->Count();
    Add.ModalHook = [](TAddForm& Form) {
        Form.Edit->setText(QStringLiteral("rawlen"));
        Form.btnAddClick();
        return 1;
    };
    Form->Pages.MenuItemAddClick();
    EXPECT_EQ(Form->Pages.Keywords->Menu(1)->Items->Count(), words + 1);
    EXPECT_EQ(Form->Pages.lbMenuItem->Items().ToVector().back(), u"rawlen");
    EXPECT_EQ(Form->StatusText(1), "Modified");

    // A class completion item with a quoted two-line text, added and edited.
    Form->Modified = false;
    Select(4, u"Class Completion List", 1);
    EXPECT_EQ(Form->Pages.lbMenu->Items().ToVector(), MenuNames(*Form->Pages.AutoComplete));
    Form->Pages.lbMenu->SetItemIndex(0);
    Form->Pages.lbMenuClick();
    const WideString entered = u"rep(\"s\", n)\r\n-- repeated";
    User.ModalHook = [&](TUserMenuForm& Form) {
        Form.txtItem->SetText(u"rep");
        Form.DataMemo->SetText(entered);
        Form.ComboBoxEx1->setCurrentIndex(5);
        return 1;
    };
    Form->Pages.MenuItemAddClick();
    EXPECT_TRUE(Form->Modified);
    TMenuList& complete = *Form->Pages.AutoComplete;
    WideString stored;
    int kind = -1;
    complete.GetItemTextKind(0, complete.IndexOfItem(0, u"rep"), kind, stored);
    EXPECT_EQ(stored, u"rep(\\\"s\\\", n)\u000C-- repeated");
    EXPECT_EQ(kind, 5);

    Form->Modified = false;
    Form->Pages.lbMenuItem->SetItemIndex(Form->Pages.lbMenuItem->Items().Count() - 1);
    User.ModalHook = [&](TUserMenuForm& Form) {
        EXPECT_EQ(Form.txtItem->Text(), u"rep");
        EXPECT_EQ(Form.DataMemo->Text(), entered);
        Form.DataMemo->SetText(u"\"a\"\r\n\"b\"");
        return 1;
    };
    Form->Pages.MenuItemEditClick();
    complete.GetItemTextKind(0, complete.IndexOfItem(0, u"rep"), kind, stored);
    EXPECT_EQ(stored, u"\\\"a\\\"\u000C\\\"b\\\"");
    EXPECT_TRUE(Form->Modified);

    // Hints: Sort leaves the document unchanged, Add Default appends each time.
    Form->OpenDocument(Example("lua.syx"));
    Form->Pages.btnHintsSortClick();
    const Rows hints = Form->Pages.HintsList->Items().ToVector();
    EXPECT_TRUE(std::is_sorted(hints.begin(), hints.end()));
    EXPECT_FALSE(Form->Modified);
    EXPECT_EQ(Form->StatusText(1), "");
    Rows info = Form->Pages.InfoMemo->Lines().ToVector();
    for (int n = 0; n < 2; ++n) {
        info.insert(info.end(), DefaultHeaderLines.begin(), DefaultHeaderLines.end());
        info.push_back(WideString());
        Form->Pages.BtnInfoKeyAddClick();
    }
    EXPECT_EQ(Form->Pages.InfoMemo->Lines().ToVector(), info);
    EXPECT_TRUE(Form->Modified);

    // The user menu of a document without one is created as "0".
    Form->OpenDocument(Example("ini.syx"));
    ASSERT_EQ(Form->Pages.UserMenu->MenuCount(), 0);
    Select(3, u"User Menu (Ctrl + Space)", 5);
    User.ModalHook = [](TUserMenuForm& Form) {
        Form.txtItem->SetText(u"Check");
        return 1;
    };
    Form->Pages.tbUserAddClick();
    EXPECT_EQ(MenuNames(*Form->Pages.UserMenu), Rows{u"0"});
    EXPECT_EQ(Form->Pages.lbUserMenu->Items().ToVector(), Rows{u"Check"});
    EXPECT_TRUE(Form->Modified);
    Select(0, u"Options", 0);
}

TEST_F(SynFormTest, FilesOfTheCommandLineOpenAtTheFirstShow) {
    const AnsiString first = Example("lua.syx"), last = Example("ini.syx");
    Form->Params = {QString::fromStdString(first), Temp.filePath("missing.syx"),
                    QString::fromStdString(last)};
    Form->PlusPageControl1->SetActivePageIndex(1);
    Form->show();
    EXPECT_TRUE(Dialogs.Messages.empty());
    EXPECT_EQ(Form->OpenDialog.FileName, last);
    EXPECT_EQ(Form->SaveDialog.FileName, last);
    EXPECT_EQ(Form->StatusText(0), "ini.syx");
    TSyntaxDocument doc;
    doc.Open(last);
    EXPECT_EQ(Cell(Form->WgTree1, 0), doc.Options->Ref(0));
    EXPECT_EQ(Items(Form->WgTree2).Count(), 0); // lua's block went with lua
    EXPECT_EQ(Form->PlusPageControl1->ActivePageIndex(), 0);

    const int height = Form->PlusPageControl1->height();
    Form->resize(Form->width() + 100, Form->height() + 200);
    QApplication::processEvents();
    EXPECT_GT(Form->PlusPageControl1->height(), height);
    EXPECT_EQ(Form->Panel1->height(), Form->PlusPageControl1->height() / 2);
}

TEST_F(SynFormTest, AFileThatCannotBeReadLeavesAFreshDocument) {
    const AnsiString file = Example("lua.syx");
    for (const AnsiString& bad : {QFile::encodeName(Temp.path()).toStdString(), Path("none.syx")}) {
        Form->OpenFromCommandLine(file);
        ASSERT_EQ(Form->SaveDialog.FileName, file);
        EXPECT_ANY_THROW(Form->OpenDocument(bad)) << bad;
        EXPECT_EQ(Form->StatusText(0), "*New.syx") << bad;
        EXPECT_EQ(Form->StatusText(1), "");
        EXPECT_TRUE(Form->SaveDialog.FileName.empty());
        EXPECT_FALSE(Form->Modified);
        EXPECT_TRUE(Cell(Form->WgTree1, 0).empty());
        EXPECT_EQ(Form->Pages.Keywords->MenuCount(), 0);
    }
}

} // namespace

namespace {

// The keys of the File menu and of the sections work wherever the focus is.
TEST_F(SynFormTest, KeyboardReachesTheFileCommandsAndTheSections) {
    const AnsiString file = Example("lua.syx");
    Form->show();
    QApplication::setActiveWindow(Form.get());
    Form->OpenFromCommandLine(file);
    Form->SelectSection(7);
    Form->Pages.SampleMemo->setFocus();
    QApplication::processEvents();

    QTest::keyClick(Form->Pages.SampleMemo, Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(Form->Pages.CurrentSection, 1);
    EXPECT_EQ(Form->WgPageControl1->ActivePage(), 1);

    Form->MarkModified();
    Dialogs.MessageAnswers = {IDYES}; // save the change, then start anew
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_N, Qt::ControlModifier);
    ASSERT_EQ(Dialogs.Messages.size(), 1u);
    EXPECT_EQ(Form->StatusText(0), "*New.syx");
    EXPECT_TRUE(Form->SaveDialog.FileName.empty());

    // Save on the fresh document asks for a name.
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(Dialogs.FileDialogs.size(), 1u);
}

// A label of the side panel turns blue and underlined under the pointer,
// with the hand cursor, and a click on it selects its section.
TEST_F(SynFormTest, SidePanelLabelsTrackThePointerAndSelectOnClick) {
    Form->show();
    QLabel* hints = Form->SectionLabels[6];
    QLabel* sample = Form->SectionLabels[7];
    QEvent enter(QEvent::Enter), leave(QEvent::Leave);
    QApplication::sendEvent(hints, &enter);
    EXPECT_EQ(hints->palette().color(QPalette::WindowText), QColor(0, 0, 0xFF));
    EXPECT_TRUE(hints->font().underline());
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::PointingHandCursor);
    // Straight over to the next label: leave comes first and restores.
    QApplication::sendEvent(hints, &leave);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    QApplication::sendEvent(sample, &enter);
    EXPECT_EQ(hints->palette().color(QPalette::WindowText), QColor(Qt::black));
    EXPECT_FALSE(hints->font().underline());
    QApplication::sendEvent(sample, &leave);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);

    QTest::mouseClick(hints, Qt::LeftButton);
    EXPECT_EQ(Form->Pages.CurrentSection, 6);
    EXPECT_EQ(Form->WgPanel1->Caption(), u"Hints");
    EXPECT_EQ(Form->WgPageControl1->ActivePage(), 2);
}

} // namespace

// A save that fails leaves the document changed, with its state word, and
// says which file and why; only a whole save says "Saved!".
TEST_F(SynFormTest, AFailedSaveKeepsTheDocumentModified) {
#ifndef _WIN32
    const AnsiString file = Example("lua.syx");
    Form->show();
    Form->OpenDocument(file);
    Form->MarkModified();
    try {
        Form->SaveDocument("/dev/full");
        ADD_FAILURE() << "the save to /dev/full did not fail";
    } catch (const EWriteError& e) {
        EXPECT_STREQ(e.what(), "Cannot write file \"/dev/full\". No space left on device");
    }
    EXPECT_TRUE(Form->Modified);
    EXPECT_EQ(Form->StatusText(1), "Modified");
    EXPECT_EQ(Form->StatusText(0), "lua.syx");
    Form->SaveDocument(file);
    EXPECT_EQ(Form->StatusText(1), "Saved!");
#endif
}

// Another program saves the open file: the window asks on its next
// activation whether to reload, and a save never overwrites that change
// without a question.
TEST_F(SynFormTest, AFileChangedByAnotherProgramIsNeverOverwrittenUnasked) {
    const AnsiString file = Example("lua.syx");
    Form->show();
    Form->OpenFromCommandLine(file);
    auto otherProgramWrites = [&](const char* Escape) {
        TSyntaxDocument doc;
        doc.Open(file);
        doc.Options->Put(12, WideString(Escape, Escape + std::strlen(Escape)));
        doc.Save(file);
    };
    Form->CheckDiskChange();
    EXPECT_TRUE(Dialogs.Messages.empty()) << "nothing changed, nothing to ask";

    // Reload.
    otherProgramWrites("%%");
    Form->MarkModified();
    Dialogs.MessageAnswers = {IDYES};
    Form->CheckDiskChange();
    ASSERT_EQ(Dialogs.Messages.size(), 1u);
    EXPECT_EQ(Dialogs.Messages[0].substr(0, 30), u"KV Scribex Message: The file \"");
    EXPECT_EQ(Cell(Form->WgTree1, 12), u"%%");
    EXPECT_FALSE(Form->Modified);

    // Keep the edits: asked once, then a save writes them without a question.
    otherProgramWrites("@@@");
    Dialogs.MessageAnswers = {IDNO};
    Form->CheckDiskChange();
    Form->CheckDiskChange();
    EXPECT_EQ(Dialogs.Messages.size(), 2u);
    EXPECT_EQ(Cell(Form->WgTree1, 12), u"%%");
    Form->FileSaveClick();
    EXPECT_EQ(Dialogs.Messages.size(), 2u);
    EXPECT_EQ(Form->StatusText(1), "Saved!");

    // A change that the window has not been back for yet: Save asks first.
    otherProgramWrites("&&&&");
    const QByteArray theirs = Bytes(file);
    Dialogs.MessageAnswers = {IDNO};
    Form->FileSaveClick();
    EXPECT_EQ(Dialogs.Messages.size(), 3u);
    EXPECT_EQ(Bytes(file), theirs);
    Dialogs.MessageAnswers = {IDYES};
    Form->FileSaveClick();
    EXPECT_NE(Bytes(file), theirs);
    EXPECT_EQ(Form->StatusText(1), "Saved!");
}
