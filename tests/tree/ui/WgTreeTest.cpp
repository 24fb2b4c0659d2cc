// The tree on screen with the options table: clicks reach the right cell,
// editors open over it, and the keys and focus end an edit by the rules.

#include "tree/ui/WgTree.h"
#include "base/ui/Colors.h"
#include "base/ui/Messages.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

namespace {

const QString Forms = QStringLiteral(LEXSMITH_RESOURCES "/forms/");

// The options table as the main form sets it up, inside a form with one
// other control to take the focus away.
struct TOptionsForm {
    QWidget Form;
    TWgTree* Tree = new TWgTree(&Form);
    QLineEdit* Other = new QLineEdit(&Form);
    std::vector<std::pair<TWgTreeItem*, bool>> Ended;
    TWgTreeInplaceEdit Edit;
    TWgTreeInplaceComboBox Combo;

    explicit TOptionsForm(bool StoreAlways = true, int Height = 500, int Width = 260) {
        EXPECT_TRUE(Tree->LoadSectionsFile(Forms + "WgTree1.HeaderSections.Data"));
        EXPECT_TRUE(Tree->LoadItemsFile(Forms + "WgTree1.Items.Data"));
        TCustomWgTree& t = Tree->Tree();
        Tree->SetShowColumns(true);
        t.QuickEditMode = true;
        t.FullRowSelect = false;
        t.SetHeaderFlat(true);
        t.SetHeaderHotTrack(false);
        t.FocusedSelectColor = clActiveCaption;
        Tree->SetLineHeight(15);
        Tree->SetHeaderHeight(17);
        Edit.SetTree(Tree);
        Combo.SetTree(Tree);
        Combo.DefaultValueAsText = u"No";
        Combo.InitiallyDropped = false;
        Combo.Editor()->addItems({QStringLiteral("Yes"), QStringLiteral("No")});
        if (StoreAlways) {
            auto accept = [](TWgTreeInplaceEditor&, bool& Accepted, bool&) { Accepted = true; };
            Edit.OnAfterOperation = accept;
            Combo.OnAfterOperation = accept;
        }
        Tree->OnTryEdit = [](TWgTree&, TWgTreeItem* Item, int Section, TWgFieldType& Type, bool&) {
            if (Section == 1 && Item->Tag() == 8)
                Type = sftEnum;
            else if (Section == 1 && Item->Tag() == 1)
                Type = sftText;
        };
        Tree->OnEndEditItem = [this](TWgTree&, TWgTreeItem* Item, TWgHeaderSection*,
                                     bool Canceled) {
            Ended.push_back({Item, Canceled});
        };
        Tree->setGeometry(0, 0, Width, Height);
        Other->setGeometry(0, Height + 5, 100, 20);
        Form.resize(Width, Height + 30);
        Form.show();
        QApplication::setActiveWindow(&Form);
        Tree->ViewWidget()->setFocus();
    }

    TWgTreeItem* Row(int Index) { return Tree->Items().Item(Index); }
    // The middle of a cell on screen.
    QPoint CellPoint(int Row, int Column) {
        TWgTreeView& view = Tree->View();
        const TRect r = view.GetItemRect(Row - view.TopIndex());
        TWgHeaderSection* s = Tree->Tree().Header().Sections().GetSection(Column);
        return {(s->Left() + s->Right()) / 2 - view.LeftPosition(), (r.Top + r.Bottom) / 2};
    }
    void Click(int Row, int Column) {
        QTest::mouseClick(Tree->ViewWidget(), Qt::LeftButton, {}, CellPoint(Row, Column));
    }
    // A click, then the edit timer's expiry, as the timer would bring it.
    void ClickAndWait(int Row, int Column) {
        Click(Row, Column);
        ASSERT_TRUE(Tree->ViewWidget()->TimerActive(vtEdit));
        Tree->View().TimerFired(vtEdit);
    }
    // The second click of a double click, as widgets receive it: a press,
    // the double click event, the release.
    void SecondClick(int Row, int Column) {
        const QPoint at = CellPoint(Row, Column);
        QTest::mousePress(Tree->ViewWidget(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(Tree->ViewWidget(), Qt::LeftButton, {}, at);
        QTest::mouseRelease(Tree->ViewWidget(), Qt::LeftButton, {}, at);
    }
    WideString Value(int Index) { return Row(Index)->ColumnTextAt(0); }
};

} // namespace

TEST(WgTreeWidget, FirstClickOnValueOpensTheLineEditOverThatCell) {
    TOptionsForm f;
    f.ClickAndWait(2, 1);
    ASSERT_TRUE(f.Tree->IsEditing());
    EXPECT_EQ(f.Tree->InplaceEditor(), &f.Edit);
    EXPECT_EQ(f.Tree->EditingItem(), f.Row(2));
    QLineEdit* e = f.Edit.Editor();
    EXPECT_TRUE(e->isVisible());
    EXPECT_EQ(e->parentWidget(), f.Tree->ViewWidget());
    EXPECT_TRUE(e->hasFocus());
    const TRect row = f.Tree->View().GetItemRect(2);
    TWgHeaderSection* value = f.Tree->Tree().Header().Sections().GetSection(1);
    EXPECT_EQ(e->geometry().left(), value->Left());
    EXPECT_EQ(e->geometry().top(), row.Top);
    EXPECT_EQ(e->geometry().height(), row.Bottom - row.Top);
    EXPECT_EQ(f.Edit.SectionIndex, 1);
}

TEST(WgTreeWidget, OptionColumnIsNotEditable) {
    TOptionsForm f;
    f.Click(2, 0);
    EXPECT_FALSE(f.Tree->ViewWidget()->TimerActive(vtEdit));
    f.Tree->View().TimerFired(vtEdit);
    EXPECT_FALSE(f.Tree->IsEditing());
    EXPECT_EQ(f.Tree->Tree().FocusedItem(), f.Row(2));
}

TEST(WgTreeWidget, DoubleClickStopsThePendingEditOrIsTheEditByMode) {
    TOptionsForm f;
    f.Click(3, 1);
    ASSERT_TRUE(f.Tree->ViewWidget()->TimerActive(vtEdit));
    f.SecondClick(3, 1);
    EXPECT_FALSE(f.Tree->ViewWidget()->TimerActive(vtEdit));

    f.Tree->Tree().DblClickMode = dcmEdit;
    f.Click(4, 1);
    EXPECT_FALSE(f.Tree->ViewWidget()->TimerActive(vtEdit));
    f.SecondClick(4, 1);
    ASSERT_TRUE(f.Tree->ViewWidget()->TimerActive(vtEdit));
    f.Tree->View().TimerFired(vtEdit);
    EXPECT_EQ(f.Tree->EditingItem(), f.Row(4));
    EXPECT_TRUE(f.Tree->IsEditing());
}

TEST(WgTreeWidget, YesNoRowGetsTheComboAndAnEmptyCellOpensOnNo) {
    TOptionsForm f;
    f.ClickAndWait(13, 1);
    ASSERT_EQ(f.Tree->InplaceEditor(), &f.Combo);
    EXPECT_TRUE(f.Combo.Editor()->isVisible());
    EXPECT_FALSE(f.Edit.Editor()->isVisible());
    EXPECT_EQ(f.Combo.Editor()->currentText(), QStringLiteral("No"));
    // Esc ends the edit; the form's handler turns it into a commit.
    QTest::keyClick(f.Combo.Editor()->lineEdit(), Qt::Key_Escape);
    EXPECT_FALSE(f.Tree->IsEditing());
    EXPECT_FALSE(f.Combo.Editor()->isVisible());
    EXPECT_EQ(f.Value(13), u"No");
    EXPECT_TRUE(f.Tree->ViewWidget()->hasFocus());
}

TEST(WgTreeWidget, EnterStoresAndEscCancelsWithoutAHandler) {
    TOptionsForm f(false);
    f.ClickAndWait(4, 1);
    QTest::keyClicks(f.Edit.Editor(), "/*");
    QTest::keyClick(f.Edit.Editor(), Qt::Key_Return);
    EXPECT_FALSE(f.Tree->IsEditing());
    EXPECT_EQ(f.Value(4), u"/*");

    f.ClickAndWait(4, 1);
    EXPECT_EQ(f.Edit.Editor()->text(), QStringLiteral("/*"));
    QTest::keyClicks(f.Edit.Editor(), "xx");
    QTest::keyClick(f.Edit.Editor(), Qt::Key_Escape);
    EXPECT_FALSE(f.Tree->IsEditing());
    EXPECT_EQ(f.Value(4), u"/*");
    const std::vector<std::pair<TWgTreeItem*, bool>> ended{{f.Row(4), false}, {f.Row(4), true}};
    EXPECT_EQ(f.Ended, ended);
}

TEST(WgTreeWidget, ShiftEnterAndRefusedValidationKeepTheEditOpen) {
    TOptionsForm f;
    f.ClickAndWait(6, 1);
    QTest::keyClick(f.Edit.Editor(), Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_TRUE(f.Tree->IsEditing());
    bool editingDuringCheck = true;
    f.Edit.OnValidateResult = [&](TWgTreeInplaceEditor& Sender, bool& Valid) {
        editingDuringCheck = Sender.Editing();
        Valid = false;
    };
    QTest::keyClick(f.Edit.Editor(), Qt::Key_Return);
    EXPECT_TRUE(f.Tree->IsEditing());
    EXPECT_FALSE(editingDuringCheck);
    EXPECT_TRUE(f.Edit.Editor()->hasFocus());
}

TEST(WgTreeWidget, FocusLossCancelsOrKeepsByExplorerEditMode) {
    for (bool explorer : {false, true}) {
        SCOPED_TRACE(explorer);
        TOptionsForm f(false);
        f.Tree->ExplorerEditMode = explorer;
        f.ClickAndWait(7, 1);
        QTest::keyClicks(f.Edit.Editor(), "q");
        f.Other->setFocus();
        EXPECT_FALSE(f.Tree->IsEditing());
        EXPECT_FALSE(f.Edit.Editor()->isVisible());
        EXPECT_EQ(f.Value(7), explorer ? u"q" : u"");
        // The control that took the focus keeps it.
        EXPECT_TRUE(f.Other->hasFocus());
    }
}

TEST(WgTreeWidget, ComboDecidesFocusLossOnlyWhenItsPostedMessageArrives) {
    TOptionsForm f(false);
    f.Tree->ExplorerEditMode = true;
    f.ClickAndWait(8, 1);
    ASSERT_EQ(f.Tree->InplaceEditor(), &f.Combo);
    // Its own list open: the posted check finds the list and keeps editing.
    f.Combo.Editor()->showPopup();
    QCoreApplication::sendPostedEvents(f.Combo.Editor(), PrivateMessageType(3859));
    PostPrivateMessage(f.Combo.Editor(), 3859);
    QCoreApplication::sendPostedEvents(f.Combo.Editor(), PrivateMessageType(3859));
    EXPECT_TRUE(f.Tree->IsEditing());
    f.Combo.Editor()->view()->setCurrentIndex(f.Combo.Editor()->model()->index(0, 0));
    QTest::keyClick(f.Combo.Editor()->view(), Qt::Key_Return);
    EXPECT_FALSE(f.Tree->IsEditing());
    EXPECT_EQ(f.Value(8), u"Yes");

    f.ClickAndWait(8, 1);
    f.Combo.Editor()->setEditText(QStringLiteral("maybe"));
    f.Other->setFocus();
    // The loss of focus is decided later, by the posted message.
    EXPECT_TRUE(f.Tree->IsEditing());
    QCoreApplication::sendPostedEvents(f.Combo.Editor(), PrivateMessageType(3859));
    EXPECT_FALSE(f.Tree->IsEditing());
    EXPECT_EQ(f.Value(8), u"maybe");
}

TEST(WgTreeWidget, ClickOnAnotherCellEndsTheOpenEditFirst) {
    TOptionsForm f;
    f.ClickAndWait(9, 1);
    QTest::keyClicks(f.Edit.Editor(), "$");
    f.Click(10, 1);
    EXPECT_FALSE(f.Tree->IsEditing());
    EXPECT_EQ(f.Value(9), u"$");
    ASSERT_TRUE(f.Tree->ViewWidget()->TimerActive(vtEdit));
    f.Tree->View().TimerFired(vtEdit);
    EXPECT_EQ(f.Tree->EditingItem(), f.Row(10));
}

TEST(WgTreeWidget, StoringPadsTheColumnTexts) {
    TOptionsForm f;
    f.Row(12)->ColumnText().Clear();
    f.Tree->EditItem(f.Row(12), 1);
    ASSERT_TRUE(f.Tree->IsEditing());
    QTest::keyClicks(f.Edit.Editor(), "0123456789");
    QTest::keyClick(f.Edit.Editor(), Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(f.Row(12)->ColumnTextCount(), 1);
    EXPECT_EQ(f.Value(12), u"0123456789");
}

TEST(WgTreeWidget, DeletingTheEditedRowCancelsTheEdit) {
    TOptionsForm f(false);
    f.ClickAndWait(5, 1);
    TWgTreeItem* row = f.Row(5);
    f.Tree->Items().Delete(row);
    EXPECT_FALSE(f.Tree->IsEditing());
    EXPECT_EQ(f.Tree->EditingItem(), nullptr);
    ASSERT_EQ(f.Ended.size(), 1u);
    EXPECT_TRUE(f.Ended[0].second);

    // The application's handler turns every end into an acceptance; the
    // dying row must still get nothing written into it.
    TOptionsForm stored;
    stored.ClickAndWait(5, 1);
    ASSERT_TRUE(stored.Tree->IsEditing());
    QTest::keyClicks(stored.Edit.Editor(), "typed");
    int writes = 0;
    stored.Tree->Tree().OnItemChange = [&](TWgTreeModel&, TWgTreeItem*, TItemChangeMode) {
        ++writes;
    };
    stored.Tree->Items().Delete(stored.Row(5));
    EXPECT_FALSE(stored.Tree->IsEditing());
    EXPECT_EQ(writes, 0);
    ASSERT_EQ(stored.Ended.size(), 1u);
    EXPECT_EQ(stored.Ended[0], std::make_pair(static_cast<TWgTreeItem*>(nullptr), true));
}

TEST(WgTreeWidget, ScrollBarsFollowTheViewAndMoveIt) {
    TOptionsForm f(true, 200);
    QScrollBar* v = f.Tree->VScrollBar();
    ASSERT_TRUE(v->isVisible());
    EXPECT_FALSE(f.Tree->HScrollBar()->isVisible());
    EXPECT_EQ(v->maximum(), f.Tree->View().MaxTopIndex());
    EXPECT_GT(v->maximum(), 0);
    v->setValue(10);
    EXPECT_EQ(f.Tree->View().TopIndex(), 10);
    // A click on the first row on screen reaches row 10.
    f.Click(10, 0);
    EXPECT_EQ(f.Tree->Tree().FocusedItem(), f.Row(10));
    QTest::keyClick(f.Tree->ViewWidget(), Qt::Key_End);
    EXPECT_EQ(f.Tree->Tree().FocusedItem(), f.Row(29));
    EXPECT_EQ(v->value(), f.Tree->View().TopIndex());
    EXPECT_EQ(v->value(), v->maximum());
}

TEST(WgTreeWidget, EditInANarrowTreeScrollsTheCellIntoView) {
    TOptionsForm f(true, 200, 150);
    QScrollBar* h = f.Tree->HScrollBar();
    ASSERT_TRUE(h->isVisible());
    f.Tree->EditItem(f.Row(1), 1);
    ASSERT_TRUE(f.Tree->IsEditing());
    TWgHeaderSection* value = f.Tree->Tree().Header().Sections().GetSection(1);
    const int left = f.Tree->View().LeftPosition();
    EXPECT_GT(left, 0);
    EXPECT_EQ(h->value(), left);
    EXPECT_EQ(f.Edit.Editor()->geometry().left(), value->Left() - left);
    EXPECT_GE(f.Edit.Editor()->geometry().left(), 0);
    // Scrolling by the bar moves the layout: the edit ends first.
    h->setValue(0);
    EXPECT_FALSE(f.Tree->IsEditing());
    EXPECT_EQ(f.Tree->View().LeftPosition(), 0);
}

TEST(WgTreeWidget, EditorsRegisterInOrderAndLeaveWithTheirTree) {
    TOptionsForm f;
    auto extra = std::make_unique<TWgTreeInplaceEdit>();
    extra->SetTree(f.Tree);
    EXPECT_EQ(f.Tree->InplaceManager().GetSuitableEditor(sftText), &f.Edit);
    EXPECT_EQ(f.Tree->InplaceManager().GetSuitableEditor(sftNumber), nullptr);
    f.Tree->EditItem(f.Row(0), 1);
    ASSERT_TRUE(f.Tree->IsEditing());
    // Moving the running editor to no tree ends its operation.
    f.Edit.SetTree(nullptr);
    EXPECT_FALSE(f.Tree->IsEditing());
    EXPECT_EQ(f.Tree->InplaceManager().GetSuitableEditor(sftText), extra.get());
    extra.reset();
    EXPECT_EQ(f.Tree->InplaceManager().GetSuitableEditor(sftText), nullptr);
}

TEST(WgTreeWidget, LongCellTextShowsItsHintAfterThePause) {
    TOptionsForm f;
    f.Tree->Tree().LineHintMode = shmLong;
    f.Row(3)->ColumnText().Add(u"a value far too long for the value column to hold it");
    const QPoint at = f.CellPoint(3, 1);
    QMouseEvent move(QEvent::MouseMove, at, f.Tree->ViewWidget()->mapToGlobal(at), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(f.Tree->ViewWidget(), &move);
    ASSERT_TRUE(f.Tree->ViewWidget()->TimerActive(vtHint));
    f.Tree->View().TimerFired(vtHint);
    QWidget* hint = f.Tree->ViewWidget()->HintWindow();
    ASSERT_NE(hint, nullptr);
    EXPECT_TRUE(hint->isVisible());
    EXPECT_EQ(static_cast<QLabel*>(hint)->text(),
              QStringLiteral("a value far too long for the value column to hold it"));
    EXPECT_TRUE(f.Tree->ViewWidget()->TimerActive(vtHintHide));
    f.Tree->View().TimerFired(vtHintHide);
    EXPECT_FALSE(hint->isVisible());

    // A short text that fits shows none.
    const QPoint option = f.CellPoint(5, 0);
    QMouseEvent other(QEvent::MouseMove, option, f.Tree->ViewWidget()->mapToGlobal(option),
                      Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(f.Tree->ViewWidget(), &other);
    f.Tree->View().TimerFired(vtHint);
    EXPECT_FALSE(hint->isVisible());
}

TEST(WgTreeWidget, TypedLettersSearchAndTheWheelScrolls) {
    TOptionsForm f(true, 200);
    f.Tree->Tree().IncrementalSearch = true;
    QTest::keyClicks(f.Tree->ViewWidget(), "Str");
    EXPECT_EQ(f.Tree->Tree().FocusedItem(), f.Row(7));
    EXPECT_EQ(f.Tree->View().SearchText(), u"Str");
    ASSERT_TRUE(f.Tree->ViewWidget()->TimerActive(vtSearch));
    f.Tree->View().TimerFired(vtSearch);
    EXPECT_TRUE(f.Tree->View().SearchText().empty());

    const int top = f.Tree->View().TopIndex();
    const QPoint at = f.CellPoint(top, 0);
    QWheelEvent wheel(at, f.Tree->ViewWidget()->mapToGlobal(at), QPoint(), QPoint(0, -120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(f.Tree->ViewWidget(), &wheel);
    EXPECT_EQ(f.Tree->View().TopIndex(), top + 3);
    EXPECT_EQ(f.Tree->VScrollBar()->value(), top + 3);
}

TEST(WgTreeWidget, AColumnWidthChangeEndsTheEditAndMovesTheCells) {
    TOptionsForm f;
    f.ClickAndWait(1, 1);
    ASSERT_TRUE(f.Tree->IsEditing());
    TWgHeaderSection* option = f.Tree->Tree().Header().Sections().GetSection(0);
    option->SetWidth(option->Width() + 20);
    EXPECT_FALSE(f.Tree->IsEditing());
    f.ClickAndWait(1, 1);
    ASSERT_TRUE(f.Tree->IsEditing());
    EXPECT_EQ(f.Edit.Editor()->geometry().left(),
              f.Tree->Tree().Header().Sections().GetSection(1)->Left());
}

TEST(WgTreeWidget, EditingARowBelowTheViewScrollsItInFirst) {
    TOptionsForm f(true, 200);
    f.Tree->EditItem(f.Row(28), 1);
    ASSERT_TRUE(f.Tree->IsEditing());
    TWgTreeView& view = f.Tree->View();
    EXPECT_GT(view.TopIndex(), 0);
    EXPECT_EQ(f.Tree->VScrollBar()->value(), view.TopIndex());
    const QRect box = f.Edit.Editor()->geometry();
    EXPECT_EQ(box.top(), view.GetItemRect(28 - view.TopIndex()).Top);
    EXPECT_LE(box.bottom(), f.Tree->ViewWidget()->height());
}

TEST(WgTreeWidget, TheFocusedRowIsPaintedSelected) {
    TOptionsForm f;
    f.Click(2, 0);
    const QImage shot = f.Tree->ViewWidget()->grab().toImage();
    const QColor highlight = ToQColor(clActiveCaption);
    ASSERT_NE(highlight, ToQColor(clHighlight));
    auto highlighted = [&](int Row) {
        const TRect r = f.Tree->View().GetItemRect(Row);
        int count = 0;
        for (int y = r.Top; y < r.Bottom; ++y)
            for (int x = 0; x < 130; ++x)
                count += shot.pixelColor(x, y) == highlight;
        return count;
    };
    EXPECT_GT(highlighted(2), 100);
    EXPECT_EQ(highlighted(4), 0);
}

TEST(WgTreeWidget, AnEditorOutlivesItsTree) {
    auto form = std::make_unique<QWidget>();
    auto* tree = new TWgTree(form.get());
    ASSERT_TRUE(tree->LoadSectionsFile(Forms + "WgTree1.HeaderSections.Data"));
    ASSERT_TRUE(tree->LoadItemsFile(Forms + "WgTree1.Items.Data"));
    tree->SetShowColumns(true);
    tree->resize(260, 300);
    form->show();
    TWgTreeInplaceEdit edit;
    edit.Types = {sftCustom}; // the type of the "Value" section itself
    edit.SetTree(tree);
    tree->EditItem(tree->Items().Item(0), 1);
    ASSERT_TRUE(edit.Editing());
    form.reset();
    EXPECT_FALSE(edit.Editing());
    EXPECT_EQ(edit.Tree(), nullptr);
    ASSERT_NE(edit.Editor(), nullptr);
    EXPECT_FALSE(edit.Editor()->isVisible());
    EXPECT_EQ(edit.Editor()->parentWidget(), nullptr);
}

TEST(WgTreeWidget, AnInitiallyDroppedListKeepsTheEditOpenUntilEnterPicks) {
    TOptionsForm f(false);
    f.Combo.InitiallyDropped = true;
    f.ClickAndWait(17, 1);
    ASSERT_EQ(f.Tree->InplaceEditor(), &f.Combo);
    QComboBox* box = f.Combo.Editor();
    EXPECT_TRUE(box->view()->isVisible());
    // Whatever focus moves the list made, the posted checks find it open.
    QCoreApplication::sendPostedEvents(box, PrivateMessageType(3859));
    EXPECT_TRUE(f.Tree->IsEditing());
    box->view()->setCurrentIndex(box->model()->index(1, 0));
    QTest::keyClick(box->view(), Qt::Key_Enter);
    EXPECT_FALSE(f.Tree->IsEditing());
    EXPECT_FALSE(box->view()->isVisible());
    EXPECT_EQ(f.Value(17), u"No");
}

TEST(WgTreeWidget, TheRowUnderThePointerIsTrackedUntilThePointerLeaves) {
    TOptionsForm f;
    std::vector<TWgTreeItem*> tracked;
    f.Tree->Tree().OnHotTrack = [&](TCustomWgTree&, TWgTreeItem* Item) { tracked.push_back(Item); };
    const QPoint at = f.CellPoint(4, 0);
    QMouseEvent move(QEvent::MouseMove, at, f.Tree->ViewWidget()->mapToGlobal(at), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(f.Tree->ViewWidget(), &move);
    EXPECT_EQ(f.Tree->View().TrackItem(), f.Row(4));
    ASSERT_FALSE(tracked.empty());
    EXPECT_EQ(tracked.back(), f.Row(4));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(f.Tree->ViewWidget(), &leave);
    EXPECT_EQ(f.Tree->View().TrackItem(), nullptr);
}
