#include "controls/ui/WgHintWindow.h"
#include "controls/ui/WgPopupMenu.h"
#include "controls/ui/WgToolBar.h"

#include <QApplication>
#include <QHelpEvent>
#include <QStatusTipEvent>
#include <QTest>

#include <gtest/gtest.h>

namespace {

// A form with a toolbar of one button, which records the status line.
class HintTest : public ::testing::Test {
protected:
    HintTest() {
        Form.resize(300, 200);
        Bar = new TWgToolbar(&Form);
        Button = new TWgToolButton(Bar);
        Form.installEventFilter(&Status);
        Form.show();
    }
    ~HintTest() override { TWgHintWindow::HideControlHint(); }

    // Sends the toolkit's request for a hint at the button's centre.
    bool AskHint() {
        const QPoint local = Button->rect().center();
        QHelpEvent help(QEvent::ToolTip, local, Button->mapToGlobal(local));
        QApplication::sendEvent(Button, &help);
        return help.isAccepted();
    }

    struct TStatusLine : QObject {
        QString Text;
        bool eventFilter(QObject*, QEvent* E) override {
            if (E->type() == QEvent::StatusTip) Text = static_cast<QStatusTipEvent*>(E)->tip();
            return false;
        }
    } Status;
    QWidget Form;
    TWgToolbar* Bar;
    TWgToolButton* Button;
};

} // namespace

TEST_F(HintTest, TheShortFormShowsUnderThePointerAndTheLongOneIsTheStatusTip) {
    Button->SetHint(u"Open|Opens a definition");
    EXPECT_EQ(Button->statusTip(), "Opens a definition");
    EXPECT_EQ(Button->accessibleName(), "Open");
    EXPECT_TRUE(Button->toolTip().isEmpty()); // the toolkit's own tip would show the whole text

    EXPECT_TRUE(AskHint());
    TWgHintWindow* hint = TWgHintWindow::ShownFor(Button);
    ASSERT_NE(hint, nullptr);
    EXPECT_EQ(hint->Text(), u"Open");
    const QPoint pointer = Button->mapToGlobal(Button->rect().center());
    EXPECT_EQ(hint->y(), pointer.y() + TWgHintWindow::CursorMargin);
    EXPECT_EQ(hint->x(), pointer.x());

    // Leaving the button takes the hint away.
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(Button, &leave);
    EXPECT_EQ(TWgHintWindow::ShownFor(Button), nullptr);
    EXPECT_FALSE(hint->isVisible());

    // A key press does too.
    ASSERT_TRUE(AskHint());
    QTest::keyClick(&Form, Qt::Key_A);
    EXPECT_FALSE(hint->isVisible());

    // Without a short form there is no window; the request goes on to the parents.
    Button->SetHint(u"|Only on the status line");
    EXPECT_FALSE(AskHint());
    EXPECT_EQ(TWgHintWindow::ShownFor(Button), nullptr);
}

TEST_F(HintTest, MarkupHintsAreMeasuredWithoutTheirTags) {
    Button->SetHint(u"<b>Open</b> the file");
    ASSERT_TRUE(AskHint());
    const int plainWidth = TWgHintWindow::ShownFor(Button)->width();
    Button->SetHint(u"<html><b>Open</b> the file");
    EXPECT_EQ(Button->accessibleName(), "Open the file");
    ASSERT_TRUE(AskHint());
    TWgHintWindow* hint = TWgHintWindow::ShownFor(Button);
    ASSERT_NE(hint, nullptr);
    EXPECT_LT(hint->width(), plainWidth - 20);
    // The window shows the bold word: dark pixels on the info colour.
    const QImage image = hint->grab().toImage();
    int dark = 0;
    for (int x = 3; x < image.width() - 3; ++x)
        for (int y = 3; y < image.height() - 3; ++y)
            if (qGray(image.pixel(x, y)) < 100) ++dark;
    EXPECT_GT(dark, 20);
}

TEST_F(HintTest, TheSelectedMenuItemPutsItsLongHintOnTheStatusLine) {
    auto* popup = new TWgPopupMenu(&Form);
    popup->Items().Add(u"Cut")->SetHint(u"Cut|Moves the selection to the clipboard");
    popup->Items().Add(u"Paste")->SetHint(u"Inserts the clipboard");
    popup->Popup(Form.mapToGlobal(QPoint(10, 10)), true);
    EXPECT_EQ(Status.Text, "Moves the selection to the clipboard");
    QTest::keyClick(popup, Qt::Key_Down);
    EXPECT_EQ(Status.Text, "Inserts the clipboard");
    QTest::keyClick(popup, Qt::Key_Escape);
    EXPECT_EQ(Status.Text, "");
}
