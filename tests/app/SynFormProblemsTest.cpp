// The checks in the window: the problems list follows the edits, its rows
// lead to the group and item, a save that would lose what the file holds
// asks first (and being told no keeps the document, also on the way out),
// and the keyword page's filter and duplicate removal.

#include "app/AddKeywordsDialog.h"
#include "app/SynEditor.h"
#include "app/SynFormProblems.h"
#include "app/UserMenuDialog.h"
#include "controls/ui/UniControls.h"
#include "support/ScriptedDialogs.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace {

class SynFormProblemsTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(Temp.isValid());
        qputenv("LEXSMITH_RESOURCES", LEXSMITH_RESOURCES);
        qputenv("LEXSMITH_APPDATA", QFile::encodeName(Temp.filePath("appdata")));
        Form = std::make_unique<TSynForm>();
        Form->Params.clear();
        Form->SetForms(nullptr, &User, &Add);
        Form->show();
    }

    AnsiString Write(const char* Name, const QByteArray& Text) {
        const QString path = Temp.filePath(QString::fromLatin1(Name));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(Text);
        return QFile::encodeName(path).toStdString();
    }
    QByteArray Read(const AnsiString& Name) {
        QFile file(QFile::decodeName(QByteArray::fromStdString(Name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void Open(const AnsiString& Name) {
        Form->OpenDocument(Name);
        Form->SaveDialog.FileName = Name;
    }
    // Lets the pause after the last edit run out.
    void Settle() { QTest::qWait(TSynFormProblems::PauseMs + 150); }
    QStringList Rows() const {
        QStringList rows;
        QTreeWidget* list = Form->Problems->List;
        for (int i = 0; i < list->topLevelItemCount(); ++i)
            rows << list->topLevelItem(i)->text(0) + " | " + list->topLevelItem(i)->text(2);
        return rows;
    }

    QTemporaryDir Temp;
    TScriptedDialogs Dialogs;
    TDialogsScope Scope{Dialogs};
    TAddForm Add;
    TUserMenuForm User;
    std::unique_ptr<TSynForm> Form;
};

const QByteArray Duplicates = "[Keywords]\r\n>Flow\r\nif\r\nthen\r\nIf\r\n[End]\r\n";

} // namespace

TEST_F(SynFormProblemsTest, TheListFollowsEditsAndLeadsToTheItem) {
    Open(Write("dup.syx", Duplicates));
    Settle();
    EXPECT_TRUE(Form->Problems->List->isVisible());
    EXPECT_EQ(Rows(), QStringList{QString::fromUtf8("Keywords: Flow \u203A If | duplicate-keyword")});
    EXPECT_EQ(Form->Problems->Count->text(), "1 problem");

    // Enter on the row: the keyword page, the group, the item.
    QTreeWidget* list = Form->Problems->List;
    list->setFocus();
    list->setCurrentItem(list->topLevelItem(0));
    emit list->itemActivated(list->topLevelItem(0), 0);
    EXPECT_EQ(Form->Pages.CurrentSection, 1);
    EXPECT_EQ(Form->Pages.lbMenu->ItemIndex(), 0);
    EXPECT_EQ(Form->Pages.lbMenuItem->ItemIndex(), 2);

    // The filter narrows the items and counts them.
    Form->Pages.ItemFilter->setText(QStringLiteral("i"));
    EXPECT_EQ(Form->Pages.lbMenuItem->Items().ToVector(), (std::vector<WideString>{u"if", u"If"}));
    EXPECT_EQ(Form->Pages.ItemCount->text(), "2 of 3");
    Form->Pages.ClearItemFilter();
    EXPECT_EQ(Form->Pages.ItemCount->text(), "3 items");

    // Remove duplicates (keywords compare without case here) clears the list.
    Dialogs.MessageAnswers = {IDYES};
    Form->Pages.RemoveDuplicatesClick();
    ASSERT_EQ(Dialogs.Messages.size(), 1u);
    EXPECT_EQ(Dialogs.Messages[0],
              u"Remove duplicates: Remove 1 duplicate from \"Flow\"? The first of each stays.");
    EXPECT_EQ(Form->Pages.lbMenuItem->Items().ToVector(),
              (std::vector<WideString>{u"if", u"then"}));
    EXPECT_TRUE(Form->Modified);
    Settle();
    EXPECT_FALSE(Form->Problems->List->isVisible());
    EXPECT_FALSE(Form->Problems->Count->isVisible());

    // With CaseSensitive set, "if" and "If" are two keywords.
    Open(Write("dup2.syx", "[Options]\r\nCaseSensitive = Yes\r\n[End]\r\n" + Duplicates));
    Settle();
    EXPECT_TRUE(Form->Problems->Findings().empty());
    Form->SelectSection(1);
    Form->Pages.lbMenu->SetItemIndex(0);
    Form->Pages.lbMenuClick();
    Form->Pages.RemoveDuplicatesClick();
    EXPECT_EQ(Dialogs.Messages.back(), u"Remove duplicates: \"Flow\" has no duplicates.");
}

TEST_F(SynFormProblemsTest, ASaveThatLosesWhatTheFileHoldsAsksFirst) {
    const QByteArray text = "; my notes\r\n[Options]\r\n  CaseSensitve = Yes\r\n[End]\r\n" + Duplicates;
    const AnsiString file = Write("lossy.syx", text);
    Open(file);
    Settle();
    EXPECT_EQ(Rows(), (QStringList{"line 1 | dropped-comment", "line 3 | dropped-line",
                                   QString::fromUtf8("Keywords: Flow \u203A If | duplicate-keyword")}));

    // No: nothing is written and the document stays as it is.
    Form->MarkModified();
    Dialogs.MessageAnswers = {IDNO};
    Form->FileSaveClick();
    ASSERT_EQ(Dialogs.Messages.size(), 1u);
    const std::u16string asked = Dialogs.Messages[0];
    EXPECT_EQ(asked.rfind(u"Save: Saving will change what the file holds:", 0), 0u);
    EXPECT_NE(asked.find(u"line 3: unknown option \"CaseSensitve\" (did you mean"), std::u16string::npos);
    EXPECT_EQ(asked.find(u"duplicate"), std::u16string::npos); // a duplicate loses nothing
    EXPECT_EQ(Read(file), text);
    EXPECT_TRUE(Form->Modified);

    // Leaving the document: "save?" yes, then no to the losses: it stays.
    Dialogs.MessageAnswers = {IDYES, IDNO};
    Form->FileNewClick();
    EXPECT_EQ(Dialogs.Messages.size(), 3u);
    EXPECT_EQ(Form->SaveDialog.FileName, file);
    EXPECT_TRUE(Form->Modified);
    EXPECT_EQ(Read(file), text);

    // Yes: written; the file's own problems are gone with the save.
    Dialogs.MessageAnswers = {IDYES};
    Form->FileSaveClick();
    EXPECT_FALSE(Form->Modified);
    EXPECT_NE(Read(file), text);
    EXPECT_EQ(Read(file).indexOf("my notes"), -1);
    Settle();
    EXPECT_EQ(Rows(), QStringList{QString::fromUtf8("Keywords: Flow \u203A If | duplicate-keyword")});
    const std::size_t asks = Dialogs.Messages.size();
    Form->MarkModified();
    Form->FileSaveClick();
    EXPECT_EQ(Dialogs.Messages.size(), asks); // nothing more to lose
}
