#include "controls/WgGlyphs.h"
#include "controls/WgMenuBarDraw.h"
#include "controls/ui/WgMenuBar.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace {

// The main window's menu on a form with an edit that holds the focus.
class MenuBarWidgetTest : public ::testing::Test {
protected:
    MenuBarWidgetTest() {
        Images = MainMenuGlyphs();
        Menu.Images = &Images;
        Menu.OwnerDraw = true;
        Menu.DrawStyle = tdsOfficeXP;
        Menu.ItemSpace = Menu.ImageMargin = 6;
        File = Menu.Items().Add(u"File");
        New = File->Add(u"New", 0, ShortCut('N', scCtrl));
        File->Add(u"Open...", 1, ShortCut('O', scCtrl));
        Save = File->Add(u"Save", 2, ShortCut('S', scCtrl));
        File->Add(u"Save As...", 3);
        File->Add(u"-");
        File->Add(u"Exit", 4);
        Help = Menu.Items().Add(u"Help");
        Help->Add(u"Content...", 5, ShortCut(VK_F1, 0));
        Help->Add(u"About...", 6);
        for (TWgMenuItem* item : {New, Save})
            item->OnClick = [this](TWgMenuItem* Sender) { Clicked.push_back(Sender); };

        auto* layout = new QVBoxLayout(&Form);
        layout->setContentsMargins(0, 0, 0, 0);
        Bar = new TWgMenuBar(&Form);
        Bar->SetMenu(&Menu);
        layout->addWidget(Bar);
        Edit = new QLineEdit(&Form);
        layout->addWidget(Edit);
        Form.resize(300, 200);
        Form.show();
        QApplication::setActiveWindow(&Form);
        Edit->setFocus();
    }

    TWgPopupMenu* Popup() const { return Bar->OpenPopup(); }
    void Key(QWidget* W, Qt::Key K, Qt::KeyboardModifiers M = Qt::NoModifier) {
        QTest::keyClick(W, K, M);
        QCoreApplication::sendPostedEvents(Bar);
    }

    TWgImageList Images;
    TWgMainMenu Menu;
    TWgMenuItem *File, *Help, *New, *Save;
    std::vector<TWgMenuItem*> Clicked;
    QWidget Form;
    TWgMenuBar* Bar;
    QLineEdit* Edit;
};

} // namespace

TEST(MenuBarWidget, WithoutMenuTheBarIsEmptyAndOfTheSystemHeight) {
    TWgMenuBar bar;
    EXPECT_EQ(QString(bar.metaObject()->className()), "TWgMenuBar");
    EXPECT_TRUE(bar.MenuButtons().isEmpty());
    EXPECT_EQ(bar.height(), 20);
    EXPECT_EQ(bar.BtnHeight(), 20);
}

TEST_F(MenuBarWidgetTest, TopLevelItemsBecomeButtonsSideBySide) {
    const auto buttons = Bar->MenuButtons();
    ASSERT_EQ(buttons.size(), 2);
    EXPECT_EQ(buttons[0]->Caption(), u"File");
    EXPECT_EQ(buttons[0]->geometry().topLeft(), QPoint(1, 1));
    EXPECT_EQ(buttons[1]->x(), buttons[0]->geometry().right() + 2);
    EXPECT_EQ(Bar->height(), Bar->BtnHeight() + 2);
    EXPECT_GE(Bar->BtnHeight(), 20);
    // A new top-level item rebuilds the bar.
    Menu.Items().Add(u"Tools");
    EXPECT_EQ(Bar->MenuButtons().size(), 3);
    Help->SetVisible(false);
    EXPECT_TRUE(Bar->MenuButtons()[1]->isHidden());
}

TEST_F(MenuBarWidgetTest, ClickOpensThePopupAndASecondClickClosesIt) {
    TWgMenuBarButton* file = Bar->MenuButtons()[0];
    QTest::mouseClick(file, Qt::LeftButton);
    ASSERT_NE(Popup(), nullptr);
    EXPECT_EQ(&Popup()->Items(), File);
    EXPECT_EQ(Popup()->Selected(), -1); // opened by the mouse: nothing selected
    EXPECT_EQ(Popup()->geometry().topLeft(), file->mapToGlobal(QPoint(0, file->height())))
        << Popup()->pos().x() << "," << Popup()->pos().y();
    EXPECT_EQ(Bar->HotButton(), 0);
    QTest::mouseClick(file, Qt::LeftButton);
    EXPECT_EQ(Popup(), nullptr);
}

TEST_F(MenuBarWidgetTest, AltFOpensFileWithTheFirstItemSelectedAndArrowsWrap) {
    Key(Edit, Qt::Key_F, Qt::AltModifier);
    TWgPopupMenu* popup = Popup();
    ASSERT_NE(popup, nullptr);
    EXPECT_EQ(&popup->Items(), File);
    EXPECT_EQ(popup->Selected(), 0);
    const std::pair<Qt::Key, int> steps[] = {{Qt::Key_Up, 5},   {Qt::Key_Down, 0},
                                             {Qt::Key_Down, 1}, {Qt::Key_Down, 2},
                                             {Qt::Key_Down, 3}, {Qt::Key_Down, 5}};
    for (const auto& [key, selected] : steps) {
        Key(popup, key);
        EXPECT_EQ(popup->Selected(), selected) << selected;
    }
}

TEST_F(MenuBarWidgetTest, EscapeClosesThePopupThenLeavesTheBar) {
    Key(Edit, Qt::Key_F, Qt::AltModifier);
    ASSERT_NE(Popup(), nullptr);
    TWgPopupMenu* popup = Popup();
    Key(popup, Qt::Key_Escape);
    EXPECT_FALSE(popup->isVisible());
    EXPECT_EQ(Bar->HotButton(), 0);
    Key(Edit, Qt::Key_Escape);
    EXPECT_EQ(Bar->HotButton(), -1);
}

TEST_F(MenuBarWidgetTest, RightInThePopupMovesToTheNextMenuAndOpensIt) {
    Key(Edit, Qt::Key_F, Qt::AltModifier);
    ASSERT_NE(Popup(), nullptr);
    Key(Popup(), Qt::Key_Right);
    ASSERT_NE(Popup(), nullptr);
    EXPECT_EQ(&Popup()->Items(), Help);
    EXPECT_EQ(Popup()->Selected(), 0);
    Key(Popup(), Qt::Key_Right); // wraps round to File
    ASSERT_NE(Popup(), nullptr);
    EXPECT_EQ(&Popup()->Items(), File);
}

TEST_F(MenuBarWidgetTest, EnterOnAnItemClosesTheMenuAndClicksIt) {
    Key(Edit, Qt::Key_F, Qt::AltModifier);
    TWgPopupMenu* popup = Popup();
    ASSERT_NE(popup, nullptr);
    Key(popup, Qt::Key_Down);
    Key(popup, Qt::Key_Down);
    Key(popup, Qt::Key_Return);
    EXPECT_FALSE(popup->isVisible());
    EXPECT_EQ(Clicked, (std::vector<TWgMenuItem*>{Save}));
    EXPECT_EQ(Bar->HotButton(), -1);
}

TEST_F(MenuBarWidgetTest, MouseOverAnItemSelectsItAndAClickRunsIt) {
    QTest::mouseClick(Bar->MenuButtons()[0], Qt::LeftButton);
    TWgPopupMenu* popup = Popup();
    ASSERT_NE(popup, nullptr);
    const QPoint center = popup->ItemRect(0).center();
    QTest::mouseMove(popup, center);
    EXPECT_EQ(popup->Selected(), 0);
    QTest::mouseClick(popup, Qt::LeftButton, Qt::NoModifier, center);
    EXPECT_FALSE(popup->isVisible());
    EXPECT_EQ(Clicked, (std::vector<TWgMenuItem*>{New}));
}

TEST_F(MenuBarWidgetTest, ShortcutsFireTheirItemAndADisabledOneLetsTheKeyThrough) {
    Key(Edit, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(Clicked, (std::vector<TWgMenuItem*>{Save}));
    New->SetEnabled(false);
    Edit->setText("abc");
    Edit->selectAll();
    Key(Edit, Qt::Key_X, Qt::ControlModifier); // no item has it: the edit cuts
    EXPECT_EQ(Edit->text(), "");
    Key(Edit, Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(Clicked.size(), 1u);
}

TEST_F(MenuBarWidgetTest, AltAloneMakesFileHotAndAltAgainGivesTheFocusBack) {
    Key(Edit, Qt::Key_Alt);
    EXPECT_EQ(Bar->HotButton(), 0);
    Key(Edit, Qt::Key_Alt);
    EXPECT_EQ(Bar->HotButton(), -1);
    EXPECT_TRUE(Edit->hasFocus());
}

TEST_F(MenuBarWidgetTest, OwnerDrawnTopItemsShowTheHighlightWhenHot) {
    auto draw = [](TWgMenuItem* Sender, TCanvas& Canvas, TRect R, bool Selected) {
        DrawTopMenuItemCaption(Canvas, R, Selected, Sender->Caption());
    };
    File->OnDrawItem = draw;
    TWgMenuBarButton* file = Bar->MenuButtons()[0];
    EXPECT_NE(file->grab().toImage().pixelColor(1, 1), QColor(49, 106, 197));
    Key(Edit, Qt::Key_Alt);
    ASSERT_EQ(Bar->HotButton(), 0);
    EXPECT_EQ(file->grab().toImage().pixelColor(1, 1), QColor(49, 106, 197));
}

TEST_F(MenuBarWidgetTest, SubMenusOpenWithRightCloseWithLeftAndRunTheirItems) {
    TWgMenuItem* recent = File->Insert(2, std::make_unique<TWgMenuItem>(u"Recent"));
    recent->Add(u"one.syx");
    TWgMenuItem* two = recent->Add(u"two.syx");
    two->OnClick = [this](TWgMenuItem* Sender) { Clicked.push_back(Sender); };
    Key(Edit, Qt::Key_F, Qt::AltModifier);
    TWgPopupMenu* popup = Popup();
    ASSERT_NE(popup, nullptr);
    Key(popup, Qt::Key_Down);
    Key(popup, Qt::Key_Down);
    Key(popup, Qt::Key_Right);
    ASSERT_NE(popup->SubMenu(), nullptr);
    TWgPopupMenu* sub = popup->SubMenu();
    EXPECT_EQ(sub->Selected(), 0);
    EXPECT_EQ(sub->geometry().top(), popup->mapToGlobal(popup->ItemRect(2).topLeft()).y() - 2);
    Key(sub, Qt::Key_Left);
    EXPECT_EQ(popup->SubMenu(), nullptr);
    EXPECT_EQ(popup->Selected(), 2);
    Key(popup, Qt::Key_Return); // Enter on a sub-menu opens it
    ASSERT_NE(popup->SubMenu(), nullptr);
    sub = popup->SubMenu();
    Key(sub, Qt::Key_T); // the only item starting with T runs at once
    EXPECT_FALSE(popup->isVisible());
    EXPECT_EQ(Clicked, (std::vector<TWgMenuItem*>{two}));
}

TEST(MenuBarWidget, AMenuThatGoesFirstLeavesAnEmptyBar) {
    TWgMenuBar bar;
    {
        TWgMainMenu menu;
        menu.Items().Add(u"File")->Add(u"New");
        bar.SetMenu(&menu);
        EXPECT_EQ(bar.MenuButtons().size(), 1);
    }
    EXPECT_EQ(bar.Menu(), nullptr);
    EXPECT_TRUE(bar.MenuButtons().isEmpty());
    EXPECT_EQ(bar.height(), 20);
}

TEST_F(MenuBarWidgetTest, ActionsOfItemsReachTheButtonsAndTheirShortcutsRunThem) {
    TWgAction tools(u"Tools");
    tools.SetHint(u"Tools|Helpers for definitions");
    TWgMenuItem* top = Menu.Items().Add(u"");
    top->Add(u"Check");
    top->SetAction(&tools);
    ASSERT_EQ(Bar->MenuButtons().size(), 3);
    TWgMenuBarButton* button = Bar->MenuButtons()[2];
    EXPECT_EQ(button->Action(), &tools);
    EXPECT_EQ(button->Caption(), u"Tools");
    EXPECT_EQ(button->statusTip(), "Helpers for definitions");
    tools.SetCaption(u"Extras");
    tools.SetEnabled(false);
    EXPECT_EQ(button->Caption(), u"Extras");
    EXPECT_FALSE(button->isEnabled());

    int runs = 0;
    TWgAction reload(u"Reload");
    reload.SetShortCut(ShortCut('R', scCtrl));
    reload.OnExecute = [&](TWgAction*) { ++runs; };
    File->Add(u"")->SetAction(&reload);
    Key(Edit, Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(runs, 1);
    reload.SetEnabled(false);
    Key(Edit, Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(runs, 1);
}

TEST_F(MenuBarWidgetTest, PopupsShowTheHotGlyphOfTheSelectedItemAndTheDisabledOnes) {
    TWgImageList hot, disabled;
    for (int i = 0; i < 8; ++i) {
        hot.Add(TMemoryBitmap(16, 16, ColorToPixel(0x00FF00)));
        disabled.Add(TMemoryBitmap(16, 16, ColorToPixel(0xFF0000)));
    }
    Menu.HotImages = &hot;
    Menu.DisabledImages = &disabled;
    Bar->Rebuild();
    EXPECT_EQ(Bar->HotImages(), &hot);
    Save->SetEnabled(false);
    Key(Edit, Qt::Key_F, Qt::AltModifier);
    TWgPopupMenu* popup = Popup();
    ASSERT_NE(popup, nullptr);
    EXPECT_EQ(popup->DisabledImages(), &disabled);
    // The glyph column is 28 wide: a 16-pixel glyph starts at 1 + 6.
    auto glyph = [&](int Item) {
        return popup->grab().toImage().pixelColor(7 + 8, popup->ItemRect(Item).center().y());
    };
    EXPECT_EQ(glyph(0), QColor(0, 255, 0)); // selected
    EXPECT_EQ(glyph(2), QColor(0, 0, 255)); // disabled
    const QColor plain = glyph(1);
    Key(popup, Qt::Key_Down);
    EXPECT_EQ(glyph(1), QColor(0, 255, 0));
    EXPECT_NE(glyph(0), QColor(0, 255, 0));
    EXPECT_NE(plain, QColor(0, 255, 0));
}

TEST_F(MenuBarWidgetTest, AnOpenPopupFollowsChangesOfItsItems) {
    QTest::mouseClick(Bar->MenuButtons()[0], Qt::LeftButton);
    TWgPopupMenu* popup = Popup();
    ASSERT_NE(popup, nullptr);
    const QSize before = popup->size();
    File->Add(u"Close");
    ASSERT_EQ(Popup(), popup); // still open, not made anew
    EXPECT_GT(popup->height(), before.height());
    New->SetCaption(u"New definition from the template of another language");
    EXPECT_GT(popup->width(), before.width() + 100);
    EXPECT_EQ(Bar->MenuButtons().size(), 2);
}

TEST_F(MenuBarWidgetTest, TheItemOfAnOpenSubMenuMayGoAway) {
    TWgMenuItem* recent = File->Insert(2, std::make_unique<TWgMenuItem>(u"Recent"));
    recent->Add(u"one.syx");
    Key(Edit, Qt::Key_F, Qt::AltModifier);
    TWgPopupMenu* popup = Popup();
    ASSERT_NE(popup, nullptr);
    Key(popup, Qt::Key_Down);
    Key(popup, Qt::Key_Down);
    Key(popup, Qt::Key_Right);
    ASSERT_NE(popup->SubMenu(), nullptr);
    File->Remove(recent); // gone, with its sub-items
    EXPECT_EQ(popup->SubMenu(), nullptr);
    EXPECT_TRUE(popup->isVisible());
    EXPECT_EQ(popup->Selected(), 2); // now "Save"
    Key(popup, Qt::Key_Return);
    EXPECT_EQ(Clicked, (std::vector<TWgMenuItem*>{Save}));
}
