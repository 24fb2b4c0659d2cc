// The main window at the keyboard, with keys sent the way the window system
// sends them: to the window, which hands them to the focused control. Also
// the sizes that keep the window usable and the built-in resources.

#include "app/AddKeywordsDialog.h"
#include "app/KindIcons.h"
#include "app/SynEditor.h"
#include "app/UserMenuDialog.h"
#include "controls/ui/PlusPageControl.h"
#include "controls/ui/UniControls.h"
#include "controls/ui/WgMenuBar.h"
#include "controls/ui/WgPanel.h"
#include "controls/ui/WgPgCtl.h"
#include "controls/ui/WgToolBar.h"
#include "support/ScriptedDialogs.h"
#include "tree/WgHeaderSections.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"
#include "tree/ui/WgTree.h"
#include "tree/ui/WgTreeInplace.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

namespace {

class SynFormKeyboardTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(Temp.isValid());
        qputenv("LEXSMITH_RESOURCES", LEXSMITH_RESOURCES);
        qputenv("LEXSMITH_APPDATA", QFile::encodeName(Temp.filePath("appdata")));
        Form = std::make_unique<TSynForm>();
        Form->Params.clear();
        Form->SetForms(nullptr, &User, &Add);
        File = QFile::encodeName(Temp.filePath("lua.syx")).toStdString();
        QFile::copy(QStringLiteral(LEXSMITH_EXAMPLES "/lua.syx"), Temp.filePath("lua.syx"));
        Form->show();
        QApplication::setActiveWindow(Form.get());
        ASSERT_TRUE(QTest::qWaitForWindowActive(Form.get()));
        Form->OpenFromCommandLine(File);
        // The pointer rests on the heading, away from the menu bar, whose
        // buttons a pointer over them makes hot.
        QTest::mouseMove(Form->WgPanel1);
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(Form->WgMenuBar1, &leave);
        QApplication::processEvents();
        ASSERT_EQ(Form->WgMenuBar1->HotButton(), -1);
    }

    // A key as the window system delivers it: to the window first.
    void Key(Qt::Key K, Qt::KeyboardModifiers Mods = Qt::NoModifier) {
        QTest::keyClick(Form->windowHandle(), K, Mods);
        QApplication::processEvents();
    }
    void Type(const QString& Text) {
        for (QChar c : Text)
            QTest::keyClick(Form->windowHandle(), c.toLatin1());
        QApplication::processEvents();
    }
    TWgPopupMenu* OpenMenu() const { return Form->WgMenuBar1->OpenPopup(); }

    QTemporaryDir Temp;
    TScriptedDialogs Dialogs;
    TDialogsScope Scope{Dialogs};
    TAddForm Add;
    TUserMenuForm User;
    std::unique_ptr<TSynForm> Form;
    AnsiString File;
};

TEST_F(SynFormKeyboardTest, MenuKeysWorkWhileTypingInAMemo) {
    Key(Qt::Key_8, Qt::ControlModifier);
    ASSERT_EQ(QApplication::focusWidget(), Form->Pages.SampleMemo);
    Key(Qt::Key_End, Qt::ControlModifier);
    Type(QStringLiteral("zz"));
    EXPECT_EQ(Form->StatusText(1), "Modified");
    Key(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(Form->StatusText(1), "Saved!");
    QFile saved(QString::fromStdString(File));
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_TRUE(saved.readAll().contains("\r\nzz\r\n"));

    // Alt+F opens File; Escape closes it and leaves File hot; the next
    // shortcut that moves the focus ends that, so typing reaches the memo.
    Key(Qt::Key_F, Qt::AltModifier);
    ASSERT_NE(OpenMenu(), nullptr);
    EXPECT_EQ(OpenMenu()->windowTitle(), "File");
    QTest::keyClick(OpenMenu(), Qt::Key_Escape);
    EXPECT_EQ(OpenMenu(), nullptr);
    EXPECT_EQ(Form->WgMenuBar1->HotButton(), 0);
    Key(Qt::Key_9, Qt::ControlModifier);
    EXPECT_EQ(Form->WgMenuBar1->HotButton(), -1);
    ASSERT_EQ(QApplication::focusWidget(), Form->Pages.InfoMemo);
    Key(Qt::Key_End, Qt::ControlModifier);
    Type(QStringLiteral("h"));
    EXPECT_EQ(OpenMenu(), nullptr) << "H must not open Help here";
    EXPECT_TRUE(Form->Pages.InfoMemo->toPlainText().endsWith(u'h'));
}

TEST_F(SynFormKeyboardTest, F10AndAltAloneMakeTheBarHotAndDownOpensIt) {
    for (Qt::Key key : {Qt::Key_Alt, Qt::Key_F10}) {
        Form->Pages.SampleMemo->setFocus();
        Key(key);
        EXPECT_EQ(Form->WgMenuBar1->HotButton(), 0) << key;
        EXPECT_EQ(OpenMenu(), nullptr);
        Key(Qt::Key_Right);
        EXPECT_EQ(Form->WgMenuBar1->HotButton(), 1);
        Key(Qt::Key_Down);
        ASSERT_NE(OpenMenu(), nullptr) << key;
        EXPECT_EQ(OpenMenu()->windowTitle(), "Help");
        QTest::keyClick(OpenMenu(), Qt::Key_F10); // F10 again leaves the menu
        EXPECT_EQ(OpenMenu(), nullptr);
        EXPECT_EQ(Form->WgMenuBar1->HotButton(), -1);
    }
    // A letter alone picks a button only in the keyboard's stay in the bar.
    Form->Pages.SampleMemo->setFocus();
    Key(Qt::Key_F10);
    Key(Qt::Key_F);
    ASSERT_NE(OpenMenu(), nullptr);
    EXPECT_EQ(OpenMenu()->windowTitle(), "File");
    QTest::keyClick(OpenMenu(), Qt::Key_Escape);
    Key(Qt::Key_Escape);
    EXPECT_EQ(Form->WgMenuBar1->HotButton(), -1);
}

TEST_F(SynFormKeyboardTest, SectionsTakeTheFocusAndTheTreesEditFromTheKeyboard) {
    Key(Qt::Key_1, Qt::ControlModifier);
    ASSERT_EQ(QApplication::focusWidget(), Form->WgTree1->ViewWidget());
    TWgTreeItems& rows = Form->WgTree1->Items();
    Form->WgTree1->Tree().SetFocusedItem(rows.Item(1)); // LineCommentB, a text value
    Key(Qt::Key_F2);
    ASSERT_TRUE(Form->WgTree1->IsEditing());
    EXPECT_TRUE(Form->Modified);
    auto* edit = qobject_cast<QLineEdit*>(Form->WgTree1->InplaceEditor()->Control());
    ASSERT_NE(edit, nullptr);
    edit->clear();
    Type(QStringLiteral("rem"));
    Key(Qt::Key_Return);
    EXPECT_FALSE(Form->WgTree1->IsEditing());
    EXPECT_EQ(rows.Item(1)->ColumnTextAt(0), u"rem");
    EXPECT_EQ(QApplication::focusWidget(), Form->WgTree1->ViewWidget());

    // The block sheet: Ctrl+Tab there and back, Insert and Delete records.
    Key(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(Form->PlusPageControl1->ActivePageIndex(), 1);
    ASSERT_EQ(QApplication::focusWidget(), Form->WgTree2->ViewWidget());
    const int blocks = Form->WgTree2->Items().Count();
    Key(Qt::Key_Insert);
    EXPECT_EQ(Form->WgTree2->Items().Count(), blocks + 6);
    Key(Qt::Key_Delete);
    Key(Qt::Key_Delete);
    EXPECT_EQ(Form->WgTree2->Items().Count(), blocks - 6);
    Key(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(Form->PlusPageControl1->ActivePageIndex(), 0);
    EXPECT_EQ(QApplication::focusWidget(), Form->WgTree1->ViewWidget());

    const std::array<QWidget*, 9> controls = {
        Form->WgTree1->ViewWidget(), Form->Pages.lbMenu,     Form->Pages.lbMenu,
        Form->Pages.lbUserMenu,      Form->Pages.lbMenu,     Form->Pages.lbMenu,
        Form->Pages.HintsEdit,       Form->Pages.SampleMemo, Form->Pages.InfoMemo};
    for (int i = 0; i < 9; ++i) {
        Key(Qt::Key(Qt::Key_1 + i), Qt::ControlModifier);
        EXPECT_EQ(QApplication::focusWidget(), controls[std::size_t(i)]) << i;
    }
}

TEST_F(SynFormKeyboardTest, KeysTypedDuringTheEditDelayStartTheValue) {
    Form->SelectSection(0);
    TWgTree* tree = Form->WgTree1;
    QApplication::processEvents();
    TWgHeaderSection* value = tree->Tree().Header().Sections().GetSection(1);
    TWgHeaderSection* option = tree->Tree().Header().Sections().GetSection(0);
    // The value column takes the width the option column leaves.
    EXPECT_EQ(option->Width() + value->Width(), tree->ViewWidget()->width());

    const int lineHeight = 15;
    const QPoint cell(option->Width() + 20, 5 * lineHeight + lineHeight / 2); // CommentEndB
    ASSERT_EQ(tree->Items().Item(5)->Text(), u"CommentEndB");
    QTest::mouseClick(tree->ViewWidget(), Qt::LeftButton, Qt::NoModifier, cell);
    ASSERT_NE(tree->View().DelayedEditItem(), nullptr) << "the click waits for its delay";
    Type(QStringLiteral("until"));
    ASSERT_TRUE(tree->IsEditing());
    Key(Qt::Key_Return);
    EXPECT_EQ(tree->Items().Item(5)->ColumnTextAt(0), u"until");
}

// The list marks its first row when it gets the focus but does not choose
// it; Space chooses it and shows the group's items.
TEST_F(SynFormKeyboardTest, SpaceChoosesTheMarkedGroup) {
    Key(Qt::Key_5, Qt::ControlModifier); // class completion
    ASSERT_EQ(QApplication::focusWidget(), Form->Pages.lbMenu);
    ASSERT_GT(Form->Pages.lbMenu->count(), 0);
    EXPECT_EQ(Form->Pages.lbMenuItem->count(), 0);
    Key(Qt::Key_Space);
    EXPECT_EQ(Form->Pages.lbMenu->ItemIndex(), 0);
    EXPECT_GT(Form->Pages.lbMenuItem->count(), 0);
}

TEST_F(SynFormKeyboardTest, ToolbarButtonsAreReachedByTabAndClickWithSpace) {
    Key(Qt::Key_2, Qt::ControlModifier); // keywords
    ASSERT_EQ(QApplication::focusWidget(), Form->Pages.lbMenu);
    const int groups = Form->Pages.Keywords->MenuCount();
    // Shift+Tab from the list goes back to the bar's last button: Remove.
    Dialogs.MessageAnswers = {IDYES};
    Form->Pages.lbMenu->SetItemIndex(0);
    Key(Qt::Key_Backtab, Qt::ShiftModifier);
    auto* button = qobject_cast<TWgToolButton*>(QApplication::focusWidget());
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->accessibleName(), "Remove");
    Key(Qt::Key_Space);
    EXPECT_EQ(Form->Pages.Keywords->MenuCount(), groups - 1);
    // Insert on the list runs Add.
    Form->Pages.lbMenu->setFocus();
    Dialogs.InputAnswers = {{true, "Added"}};
    Key(Qt::Key_Insert);
    EXPECT_EQ(Form->Pages.Keywords->MenuCount(), groups);
}

TEST_F(SynFormKeyboardTest, SizesFitTheirWordsAndTheScreen) {
    for (QLabel* panel : Form->StatusPanels) {
        const QFontMetrics metrics(panel->font());
        EXPECT_GE(panel->width(), metrics.horizontalAdvance(QStringLiteral("Modified")));
    }
    EXPECT_GE(Form->StatusPanels[0]->width(), 150);
    // At the smallest size the last section label lies above the bottom band.
    Form->resize(Form->minimumSize());
    QApplication::processEvents();
    EXPECT_GT(Form->minimumWidth(), 177);
    const QLabel* last = Form->SectionLabels.back();
    EXPECT_LE(last->geometry().bottom(), Form->panBottom->geometry().top());
    EXPECT_LE(Form->WgPanel2->geometry().bottom(), Form->StatusBar1->geometry().top());
    // Never larger than the free area of the screen.
    const QRect area = Form->screen()->availableGeometry();
    Form->resize(area.size() * 2);
    Form->FitToScreen();
    EXPECT_LE(Form->frameGeometry().width(), area.width());
    EXPECT_LE(Form->frameGeometry().height(), area.height());
}

TEST_F(SynFormKeyboardTest, CtrlTabLeavesTheCodeMemoOfTheItemDialog) {
    User.show();
    User.DataMemo->setFocus();
    QTest::keyClick(User.DataMemo, Qt::Key_Tab);
    EXPECT_EQ(User.DataMemo->toPlainText(), "\t");
    QTest::keyClick(User.DataMemo, Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_NE(QApplication::focusWidget(), User.DataMemo);
    User.hide();
}

TEST_F(SynFormKeyboardTest, CtrlTabLeavesTheSampleMemoAndItsPreview) {
    Key(Qt::Key_8, Qt::ControlModifier);
    ASSERT_EQ(QApplication::focusWidget(), Form->Pages.SampleMemo);
    Key(Qt::Key_Tab);
    EXPECT_TRUE(Form->Pages.SampleMemo->toPlainText().contains(u'\t')) << "Tab types a tab";
    Key(Qt::Key_Tab, Qt::ControlModifier);
    QWidget* next = QApplication::focusWidget();
    ASSERT_NE(next, Form->Pages.SampleMemo);
    // The preview, which keeps the focus for reading, lets it go on the same
    // way and back.
    Key(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_NE(QApplication::focusWidget(), next);
    next->setFocus(Qt::TabFocusReason);
    Key(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), Form->Pages.SampleMemo);
}

TEST(BuiltInResources, TheProgramCarriesItsFormDataAndImages) {
    qunsetenv("LEXSMITH_RESOURCES");
    EXPECT_EQ(ResourcesFolder(), ":/resources");
    for (const char* name : {"WgTree1.HeaderSections.Data", "WgTree1.Items.Data",
                             "WgTree2.HeaderSections.Data", "WgTreeFold.HeaderSections.Data"}) {
        QFile form(ResourcesFolder() + "/forms/" + name);
        ASSERT_TRUE(form.open(QIODevice::ReadOnly)) << name;
        QFile original(QStringLiteral(LEXSMITH_RESOURCES "/forms/") + name);
        ASSERT_TRUE(original.open(QIODevice::ReadOnly));
        EXPECT_EQ(form.readAll(), original.readAll()) << name;
    }
    TMemoryBitmap kind;
    EXPECT_TRUE(LoadKindBitmap(19, kind));
    EXPECT_EQ(kind.Width(), 16);
    EXPECT_TRUE(QFile::exists(ResourcesFolder() + "/skins/Lexsmith Light.skn"));
}

} // namespace
