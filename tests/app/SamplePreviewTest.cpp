// The sample page's preview in the main window: it follows edits of the
// keyword groups, the options and the sample after its pause, catches up
// when shown, hides and shows from the keyboard, takes a skin's colours and
// leaves the document as it was.

#include "app/SamplePreview.h"
#include "app/AddKeywordsDialog.h"
#include "app/SynEditor.h"
#include "app/UserMenuDialog.h"
#include "base/ui/Colors.h"
#include "controls/ui/UniControls.h"
#include "highlight/HighlightTheme.h"
#include "skin/data.h"
#include "support/ScriptedDialogs.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"
#include "tree/ui/WgTree.h"
#include "tree/ui/WgTreeInplace.h"
#include "wide/Utf.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Stretches = std::vector<std::string>;

bool CopyFolder(const QString& From, const QString& To) {
    QDir().mkpath(To);
    for (const QFileInfo& entry :
         QDir(From).entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString target = To + "/" + entry.fileName();
        if (entry.isDir() ? !CopyFolder(entry.filePath(), target)
                          : !QFile::copy(entry.filePath(), target))
            return false;
    }
    return true;
}

class SamplePreviewTest : public ::testing::Test {
protected:
    void SetUp() override { Start("appdata"); }

    void Start(const char* AppData) {
        ASSERT_TRUE(Temp.isValid());
        const QString appData = Temp.filePath(QString::fromLatin1(AppData));
        ASSERT_TRUE(CopyFolder(QStringLiteral(LEXSMITH_EXAMPLES "/") + AppData, appData));
        qputenv("LEXSMITH_RESOURCES", LEXSMITH_RESOURCES);
        qputenv("LEXSMITH_APPDATA", QFile::encodeName(appData));
        Form = std::make_unique<TSynForm>();
        Form->Params.clear();
        Form->SetForms(nullptr, &User, &Add);
        Form->show();
        QApplication::setActiveWindow(Form.get());
        ASSERT_TRUE(QTest::qWaitForWindowActive(Form.get()));
        QFile::copy(QStringLiteral(LEXSMITH_EXAMPLES "/lua.syx"), Temp.filePath("lua.syx"));
        Form->OpenDocument(QFile::encodeName(Temp.filePath("lua.syx")).toStdString());
    }

    TSamplePreview& Preview() const { return *Form->Pages.SamplePreview; }

    // "class:text" of each stretch the preview shows.
    Stretches Shown() const {
        const std::u16string text = Preview().toPlainText().toStdU16String();
        Stretches out;
        for (const THighlightSpan& s : Preview().Spans())
            out.push_back(HighlightClassName(s) + ":" +
                          EncodeUtf8Lenient(std::u16string_view(text).substr(s.Offset, s.Length)));
        return out;
    }
    static bool Has(const Stretches& All, const std::string& One) {
        return std::find(All.begin(), All.end(), One) != All.end();
    }
    // Waits for the pause to end and the preview to follow.
    bool Followed() {
        QSignalSpy refreshed(&Preview(), &TSamplePreview::Refreshed);
        return refreshed.wait(10000);
    }

    QTemporaryDir Temp;
    TScriptedDialogs Dialogs;
    TDialogsScope Scope{Dialogs};
    TAddForm Add;
    TUserMenuForm User;
    std::unique_ptr<TSynForm> Form;
};

TEST_F(SamplePreviewTest, FollowsEditsAfterThePauseAndLeavesTheDocumentAlone) {
    Form->SelectSection(7);
    ASSERT_TRUE(Preview().isVisible());
    // Showing the page caught up at once; reading the screen changed nothing.
    EXPECT_FALSE(Preview().Behind());
    const Stretches opened = Shown();
    EXPECT_TRUE(Has(opened, "keyword-1:local"));
    EXPECT_TRUE(Has(opened, "keyword-2:print"));
    EXPECT_TRUE(Has(opened, "comment:--[[ a block comment ]]"));
    EXPECT_FALSE(Has(opened, "keyword-2:greet"));
    EXPECT_FALSE(Form->Modified);
    EXPECT_EQ(Form->StatusText(1), "");

    // A keyword in the second group, reported as the group commands report
    // theirs: nothing moves before the pause has passed.
    Form->Pages.Keywords->AddMenuItem(1, u"greet", KindNone, {});
    Form->Pages.MarkModified();
    EXPECT_TRUE(Preview().Behind());
    EXPECT_EQ(Shown(), opened);
    ASSERT_TRUE(Followed());
    EXPECT_TRUE(Has(Shown(), "keyword-2:greet"));

    // Typing in the sample: the new line is coloured after the pause.
    Form->Pages.SampleMemo->setFocus();
    Form->Pages.SampleMemo->moveCursor(QTextCursor::End);
    QTest::keyClick(Form->Pages.SampleMemo, Qt::Key_Return);
    QTest::keyClicks(Form->Pages.SampleMemo, QStringLiteral("while 7"));
    ASSERT_TRUE(Followed());
    const Stretches typed = Shown();
    EXPECT_TRUE(Has(typed, "keyword-1:while"));
    EXPECT_TRUE(Has(typed, "number:7"));
    // Nothing but the edits themselves reached the document.
    EXPECT_EQ(Form->Pages.Keywords->MenuCount(), 2);
    EXPECT_EQ(Form->Document.Sample->Ref(Form->Document.Sample->Count() - 1), u"while 7");
}

TEST_F(SamplePreviewTest, OptionAndGroupEditsElsewhereShowWhenThePageComesBack) {
    Form->SelectSection(7);
    ASSERT_FALSE(Preview().Behind());
    const int builds = Preview().RuleBuilds();

    // Symbols emptied in the options tree, while the page is out of view.
    Form->SelectSection(0);
    EXPECT_FALSE(Preview().isVisible());
    TWgTreeItem* symbols = Form->WgTree1->Tree().Items().Item(11);
    ASSERT_EQ(symbols->Text(), u"Symbols");
    Form->WgTree1->EditItem(symbols, 1);
    ASSERT_TRUE(Form->WgTree1->IsEditing());
    Form->WgTreeInplaceEdit1->Editor()->setText(QString());
    Form->WgTree1->EndEdit(false);
    // A keyword added to the first group through the group's command.
    Form->SelectSection(1);
    Form->Pages.lbMenu->SetItemIndex(0);
    Form->Pages.lbMenuClick();
    Add.ModalHook = [](TAddForm& Dialog) {
        Dialog.Edit->setText(QStringLiteral("message"));
        Dialog.btnAddClick();
        return 1;
    };
    Form->Pages.MenuItemAddClick();
    QApplication::processEvents();
    // Hidden, the preview did no work.
    EXPECT_TRUE(Preview().Behind());
    EXPECT_EQ(Preview().RuleBuilds(), builds);

    Form->SelectSection(7);
    EXPECT_FALSE(Preview().Behind());
    EXPECT_EQ(Preview().RuleBuilds(), builds + 1);
    const Stretches shown = Shown();
    EXPECT_TRUE(Has(shown, "keyword-1:message"));
    EXPECT_TRUE(std::none_of(shown.begin(), shown.end(),
                             [](const std::string& s) { return s.rfind("symbol:", 0) == 0; }));
}

TEST_F(SamplePreviewTest, TheCheckBoxHidesAndShowsItFromTheKeyboard) {
    const auto key = [this](Qt::Key K, Qt::KeyboardModifiers Mods = Qt::NoModifier) {
        QTest::keyClick(Form->windowHandle(), K, Mods);
        QApplication::processEvents();
    };
    key(Qt::Key_8, Qt::ControlModifier);
    ASSERT_EQ(QApplication::focusWidget(), Form->Pages.SampleMemo);
    QCheckBox& check = *Form->Pages.PreviewCheck;
    ASSERT_TRUE(check.isChecked());
    // The memo keeps Tab; Shift+Tab goes back to the box, Space toggles it.
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    ASSERT_EQ(QApplication::focusWidget(), &check);
    key(Qt::Key_Space);
    EXPECT_FALSE(check.isChecked());
    EXPECT_FALSE(Preview().isVisible());

    // Hidden, the preview falls behind the sample and catches up when shown.
    key(Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget(), Form->Pages.SampleMemo);
    Form->Pages.SampleMemo->moveCursor(QTextCursor::End);
    QTest::keyClicks(Form->Pages.SampleMemo, QStringLiteral(" end"));
    QApplication::processEvents();
    EXPECT_TRUE(Preview().Behind());
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    key(Qt::Key_Space);
    EXPECT_TRUE(check.isChecked());
    EXPECT_TRUE(Preview().isVisible());
    EXPECT_FALSE(Preview().Behind());
    EXPECT_EQ(Preview().toPlainText().right(4), QStringLiteral(" end"));
    // Shift+Tab once more reaches the preview itself, for its scroll keys.
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), &Preview());
}

// The colour of the format at Offset of the preview's text.
QColor ColourAt(const TSamplePreview& Preview, int Offset) {
    const QTextBlock block = Preview.document()->findBlock(Offset);
    for (const QTextLayout::FormatRange& range : block.layout()->formats())
        if (Offset - block.position() >= range.start &&
            Offset - block.position() < range.start + range.length)
            return range.format.foreground().color();
    return {};
}

TEST_F(SamplePreviewTest, ColoursComeFromTheThemeOrTheActiveSkin) {
    Form->SelectSection(7);
    const int local = Preview().toPlainText().indexOf(QStringLiteral("local"));
    ASSERT_GE(local, 0);
    ASSERT_EQ(Form->ActiveSkin(), nullptr);
    EXPECT_EQ(ColourAt(Preview(), local), ToQColor(DefaultHighlightStyle(hkKeyword, 1).Color));

    Form.reset();
    Start("appdata-skinned");
    Form->SelectSection(7);
    const TSkinDataModel* skin = Form->ActiveSkin();
    ASSERT_NE(skin, nullptr);
    EXPECT_EQ(ColourAt(Preview(), local), ToQColor(skin->CustomColors[0]));
    EXPECT_NE(skin->CustomColors[0], DefaultHighlightStyle(hkKeyword, 1).Color);
}

} // namespace
