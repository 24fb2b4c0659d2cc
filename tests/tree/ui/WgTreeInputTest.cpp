// The tree on screen: what the widget hands the view of double clicks,
// typed and composed text, the height of markup rows and the side of the
// vertical bar.

#include "controls/WgIni.h"
#include "tree/WgCellStyle.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"
#include "tree/ui/WgTree.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

namespace {

struct TTreeForm {
    QWidget Form;
    TWgTree* Tree = new TWgTree(&Form);

    explicit TTreeForm(const std::vector<const char16_t*>& Rows) {
        {
            TWgTreeLock lock(Tree->Tree());
            for (const char16_t* text : Rows)
                Tree->Items().AddChild(nullptr, text);
        }
        Tree->setGeometry(0, 0, 300, 200);
        Form.resize(300, 200);
        Form.show();
        QApplication::setActiveWindow(&Form);
        Tree->ViewWidget()->setFocus();
    }
    void Send(QEvent::Type Type, QPoint At) {
        QWidget* view = Tree->ViewWidget();
        QMouseEvent e(Type, At, view->mapToGlobal(At), Qt::LeftButton,
                      Type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                      Qt::NoModifier);
        QApplication::sendEvent(view, &e);
    }
};

} // namespace

TEST(WgTreeInput, TheSecondPressOfADoubleClickReachesTheViewMarkedDouble) {
    TTreeForm f({u"row", u"other"});
    TWgTree& tree = *f.Tree;
    tree.SetShowColumns(true);
    tree.Tree().Header().Sections().AddSection()->SetWidth(100);
    tree.Tree().Header().Sections().AddSection()->SetWidth(100);
    TWgTreeItem* row = tree.Items().Item(0);
    row->SetUseStyles(true);
    TWgCellStyle* style = row->AddStyle();
    style->SetControl(std::make_unique<TWgCellControl>(style));
    std::vector<std::string> log;
    TWgCellControl* control = style->Control();
    control->OnMouseDown = [&](TWgCellControl&, TWgMouseButton, TWgShiftState S, int, int) {
        log.push_back((S & ssDouble) ? "down double" : "down");
    };
    control->OnClick = [&](TWgCellControl&) { log.push_back("click"); };
    control->OnDblClick = [&](TWgCellControl&) { log.push_back("dblclick"); };
    const TRect r = tree.View().GetItemRect(0);
    const QPoint at(150, (r.Top + r.Bottom) / 2);
    // What a window system gives a widget: the second press comes as the
    // double click event alone.
    f.Send(QEvent::MouseButtonPress, at);
    f.Send(QEvent::MouseButtonRelease, at);
    f.Send(QEvent::MouseButtonDblClick, at);
    f.Send(QEvent::MouseButtonRelease, at);
    EXPECT_EQ(log, (std::vector<std::string>{"down", "click", "down double", "click", "dblclick"}));
}

TEST(WgTreeInput, SpacesAndComposedTextJoinTheIncrementalSearch) {
    TTreeForm f({u"foo bar", u"foo baz", u"quux"});
    TCustomWgTree& tree = f.Tree->Tree();
    tree.IncrementalSearch = true;
    QTest::keyClicks(f.Tree->ViewWidget(), "foo baz");
    EXPECT_EQ(f.Tree->View().SearchText(), u"foo baz");
    EXPECT_EQ(tree.FocusedItem(), f.Tree->Items().Item(1));
    f.Tree->View().TimerFired(vtSearch);

    QInputMethodEvent composing(QStringLiteral("qu"), {});
    QApplication::sendEvent(f.Tree->ViewWidget(), &composing);
    EXPECT_EQ(tree.FocusedItem(), f.Tree->Items().Item(1)) << "text still composed counts not";
    QInputMethodEvent committed;
    committed.setCommitString(QStringLiteral("quu"));
    QApplication::sendEvent(f.Tree->ViewWidget(), &committed);
    EXPECT_EQ(f.Tree->View().SearchText(), u"quu");
    EXPECT_EQ(tree.FocusedItem(), f.Tree->Items().Item(2));
    QWidget* view = f.Tree->ViewWidget();
    EXPECT_TRUE(view->inputMethodQuery(Qt::ImEnabled).toBool());
}

TEST(WgTreeInput, MarkupRowsAreAsTallAsTheirLines) {
    TTreeForm f({u"plain", u"marked", u"after"});
    TWgTreeItem* marked = f.Tree->Items().Item(1);
    marked->SetIsHTML(true);
    marked->SetText(u"<html>one<br>two<br>three");
    const int lh = f.Tree->Tree().LineHeight();
    EXPECT_GT(marked->GetHeight(), lh + lh / 2) << "three lines of the tree font";
    EXPECT_EQ(f.Tree->View().GetItemRect(2).Top, lh + marked->GetHeight());
    marked->SetText(u"<html>one");
    EXPECT_EQ(marked->GetHeight(), lh);
}

TEST(WgTreeInput, TheVerticalBarCanStandOnTheLeft) {
    std::vector<const char16_t*> rows(40, u"row");
    TTreeForm f(rows);
    TWgTree& tree = *f.Tree;
    tree.SetShowColumns(true);
    tree.Tree().Header().Sections().AddSection()->SetWidth(100);
    tree.SyncScrollBars();
    ASSERT_TRUE(tree.VScrollBar()->isVisible());
    const QRect right = tree.VScrollBar()->geometry();
    EXPECT_GT(right.left(), tree.ViewWidget()->geometry().left());
    tree.SetScrollbarOpposite(true);
    const QRect bar = tree.VScrollBar()->geometry();
    EXPECT_EQ(bar.width(), right.width());
    EXPECT_EQ(tree.ViewWidget()->geometry().left(), bar.right() + 1);
    EXPECT_EQ(tree.Header()->geometry().left(), bar.right() + 1);
    EXPECT_EQ(tree.ViewWidget()->width(), right.left() - bar.left());
}

TEST(WgTreeInput, LoadedColumnsTakeBackTheLayoutOfTheStore) {
    const QString sections =
        QStringLiteral(LEXSMITH_RESOURCES "/forms/WgTree1.HeaderSections.Data");
    TWgIniFile ini;
    int fileWidth = 0;
    {
        TWgTree tree;
        tree.Tree().SetStoragePath("\\Tree");
        tree.Tree().SetStorage(&ini);
        ASSERT_TRUE(tree.LoadSectionsFile(sections)) << "an empty store changes nothing";
        TWgHeaderSections& s = tree.Tree().Header().Sections();
        ASSERT_GE(s.Count(), 2);
        fileWidth = s.GetSection(1)->Width();
        s.GetSection(1)->SetWidth(fileWidth + 23);
        s.MoveSection(s.GetSection(1), 0);
        EXPECT_TRUE(tree.Tree().Save());
    }
    TWgTree restored;
    restored.Tree().SetStoragePath("\\Tree");
    restored.Tree().SetStorage(&ini);
    ASSERT_TRUE(restored.LoadSectionsFile(sections));
    TWgHeaderSections& s = restored.Tree().Header().Sections();
    EXPECT_EQ(s.GetSection(1)->Width(), fileWidth + 23);
    EXPECT_EQ(s.GetSectionByPos(0), s.GetSection(1));

    TWgTree plain; // no store: the file's layout
    ASSERT_TRUE(plain.LoadSectionsFile(sections));
    EXPECT_EQ(plain.Tree().Header().Sections().GetSection(1)->Width(), fileWidth);
    EXPECT_FALSE(plain.Tree().Save());
}
