#include "skin/ui/data.h"
#include "skin/ui/form.h"
#include "skin/ui/manager.h"
#include "skin/ui/menu.h"

#include "controls/ui/WgMenuBar.h"
#include "controls/ui/WgPopupMenu.h"
#include "skin/bitmap.h"

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <memory>

namespace {

const std::string SkinsDir = std::string(LEXSMITH_RESOURCES) + "/skins/";

// The program's choice of skinned controls; DontSkinCaption leaves the
// main menu out.
TSkinControlTypes ProgramSet(bool DontSkinCaption) {
    TSkinControlTypes set = 0;
    for (int c : {xcCombo, xcCheckBox, xcRadioButton, xcProgress, xcScrollbar, xcEdit, xcButton,
                  xcBitBtn, xcSpeedButton, xcPanel, xcGroupBox, xcStatusBar, xcTab, xcSystemMenu})
        set |= 1u << c;
    if (!DontSkinCaption) set |= 1u << xcMainMenu;
    return set;
}

constexpr TPixel BackCorner = 0xFF102030, BackEdge = 0xFF405060, BackMiddle = 0xFF708090;
TPixel ItemFramePixel(int Frame) {
    return 0xFF000000u | TPixel(0x11 * Frame) << 16 | 0x0055;
}

// The light skin with menu images whose pixels say where they come from:
// a 9 x 9 background (corners, edges, middle) and five solid item frames.
void PlantMenuImages(TSkinDataModel& Skin) {
    Skin.MenuBackground->Map = TMemoryBitmap(9, 9, BackMiddle);
    for (int y = 0; y < 9; ++y)
        for (int x = 0; x < 9; ++x) {
            const bool edgeX = x < 3 || x > 5, edgeY = y < 3 || y > 5;
            if (edgeX && edgeY)
                Skin.MenuBackground->Map.SetPixel(x, y, BackCorner);
            else if (edgeX || edgeY)
                Skin.MenuBackground->Map.SetPixel(x, y, BackEdge);
        }
    Skin.MenuBackground->r = Rect(3, 3, 3, 3);
    Skin.MenuBackground->Tile = 0;
    Skin.MenuItem->Map = TMemoryBitmap(60, 8);
    for (int f = 1; f <= 5; ++f)
        FillBitmapRect(Skin.MenuItem->Map, Rect((f - 1) * 12, 0, f * 12, 8), ItemFramePixel(f));
    Skin.MenuItem->r = {};
    Skin.MenuItem->Trans = 0;
}

struct VeneerMenuTest : ::testing::Test {
    std::unique_ptr<TSkinData> Data;
    TSkinManage& Manager = TSkinManage::Instance();

    void SetUp() override {
        Data = std::make_unique<TSkinData>();
        Data->Loaded();
        Data->SetSkinFile(SkinsDir + "Lexsmith Light.skn");
        ASSERT_FALSE(Data->Empty);
        ASSERT_TRUE(Data->MenuBackground && Data->MenuItem);
        Data->SkinControls = ProgramSet(false);
        PlantMenuImages(*Data);
        Manager.Active = true;
    }
    void TearDown() override {
        Manager.MenuList.clear();
        for (auto& form : Manager.FormList)
            if (!form->Dead()) form->Detach();
        Manager.FormList.clear();
        Data.reset();
        Manager.Active = false;
        Manager.State = 0;
        Manager.MenuKind = 0;
        Manager.MenuTracking = false;
        Manager.Action = saNone;
        Manager.Timer.stop();
        Manager.CurrentData = nullptr;
    }
};

// A window with our menu bar: File (New, Open, a separator, a Recent
// sub-menu, a disabled Print, Exit) and Help (About).
struct BarForm {
    QWidget Form;
    TWgMainMenu Menu;
    TWgMenuBar* Bar;
    WideString Clicked;

    BarForm() {
        auto* layout = new QVBoxLayout(&Form);
        layout->setContentsMargins(0, 0, 0, 0);
        Bar = new TWgMenuBar(&Form);
        layout->addWidget(Bar);
        layout->addStretch();
        TWgMenuItem* file = Menu.Items().Add(u"&File");
        for (const char16_t* text : {u"&New", u"&Open", u"-", u"&Recent", u"&Print", u"E&xit"})
            file->Add(text);
        file->Items(3)->Add(u"&One");
        file->Items(3)->Add(u"&Two");
        file->Items(4)->SetEnabled(false);
        Menu.Items().Add(u"&Help")->Add(u"&About");
        auto track = [this](TWgMenuItem& Parent, auto& Self) -> void {
            for (int i = 0; i < Parent.Count(); ++i) {
                TWgMenuItem* item = Parent.Items(i);
                item->OnClick = [this](TWgMenuItem* Sender) { Clicked = Sender->Caption(); };
                Self(*item, Self);
            }
        };
        track(Menu.Items(), track);
        Bar->SetMenu(&Menu);
        Form.resize(300, 200);
        Form.setWindowTitle("Bar");
    }
    TWgPopupMenu* Deepest() const {
        TWgPopupMenu* popup = Bar->OpenPopup();
        while (popup && popup->SubMenu() && popup->SubMenu()->isVisible())
            popup = popup->SubMenu();
        return popup;
    }
};

// What the keyboard did after one key: which menu of the bar is open, the
// selection down the chain of open popups, and what was clicked.
struct MenuSnapshot {
    int OpenButton = -1;
    std::vector<int> Selection;
    WideString Clicked;
    bool operator==(const MenuSnapshot&) const = default;
};

MenuSnapshot Snap(BarForm& F) {
    MenuSnapshot s;
    if (TWgPopupMenu* popup = F.Bar->OpenPopup()) {
        for (int i = 0; i < F.Bar->MenuButtons().size(); ++i)
            if (F.Bar->MenuButtons()[i]->PullDownMenu() == popup) s.OpenButton = i;
        for (TWgPopupMenu* p = popup; p && p->isVisible(); p = p->SubMenu())
            s.Selection.push_back(p->Selected());
    }
    s.Clicked = F.Clicked;
    return s;
}

QImage Grab(QWidget* W) {
    return W->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

} // namespace

TEST_F(VeneerMenuTest, MainMenusOfASkinnedFormTakeTheSkinOthersFollowTheirKind) {
    BarForm f;
    ASSERT_TRUE(Manager.AddForm(&f.Form));
    QCoreApplication::sendPostedEvents(&f.Form);
    f.Form.show();

    f.Bar->ButtonMouseDown(0);
    TWgPopupMenu* file = f.Bar->OpenPopup();
    ASSERT_NE(file, nullptr);
    TVeneerPopMenu* veneer = Manager.FindMenu(file);
    ASSERT_NE(veneer, nullptr);
    EXPECT_EQ(veneer->Kind(), 1);
    EXPECT_TRUE(Manager.MenuTracking);
    // The sub-menu follows the menu it opens from.
    QTest::keyClick(file, Qt::Key_R);
    ASSERT_NE(file->SubMenu(), nullptr);
    ASSERT_NE(Manager.FindMenu(file->SubMenu()), nullptr);
    EXPECT_EQ(Manager.FindMenu(file->SubMenu())->Kind(), 1);
    QTest::keyClick(file->SubMenu(), Qt::Key_Escape);
    QTest::keyClick(file, Qt::Key_Escape);
    EXPECT_TRUE(Manager.MenuList.empty());
    EXPECT_EQ(Manager.MenuKind, 0);
    EXPECT_FALSE(Manager.MenuTracking);

    // A context menu of the program is a plain pop-up: the program's set
    // leaves pop-ups out, and a set with them skins it.
    TWgPopupMenu context(&f.Form);
    context.Items().Add(u"Cut");
    context.Popup(QPoint(10, 10));
    EXPECT_EQ(Manager.FindMenu(&context), nullptr);
    context.CloseMenu(pcrCancel);
    Data->SkinControls |= 1u << xcPopupMenu;
    context.Popup(QPoint(10, 10));
    ASSERT_NE(Manager.FindMenu(&context), nullptr);
    EXPECT_EQ(Manager.FindMenu(&context)->Kind(), 0);
    context.CloseMenu(pcrCancel);
    EXPECT_EQ(Manager.FindMenu(&context), nullptr);
}

TEST_F(VeneerMenuTest, WithoutTheMainMenuInTheSetTheBarsMenusStayPlain) {
    Data->SkinControls = ProgramSet(true);
    BarForm f;
    Manager.AddForm(&f.Form);
    f.Form.show();
    f.Bar->ButtonMouseDown(0);
    ASSERT_NE(f.Bar->OpenPopup(), nullptr);
    EXPECT_EQ(Manager.FindMenu(f.Bar->OpenPopup()), nullptr);
    EXPECT_FALSE(Manager.MenuTracking);
    f.Bar->OpenPopup()->CloseMenu(pcrCancel);
}

TEST_F(VeneerMenuTest, TheSystemMenuIsSkinnedOnlyWithItsSetMember) {
    QWidget form;
    form.resize(200, 120);
    ASSERT_TRUE(Manager.AddForm(&form));
    QCoreApplication::sendPostedEvents(&form);
    form.show();
    TVeneerForm* veneer = Manager.FindForm(&form);
    ASSERT_NE(veneer, nullptr);
    auto openMenu = [&] {
        veneer->ShowSystemMenu(QPoint(5, 5));
        for (QMenu* m : form.findChildren<QMenu*>())
            if (m->isVisible()) return m;
        return static_cast<QMenu*>(nullptr);
    };
    QMenu* menu = openMenu();
    ASSERT_NE(menu, nullptr);
    ASSERT_NE(Manager.FindMenu(menu), nullptr);
    EXPECT_EQ(Manager.FindMenu(menu)->Kind(), 2);
    // Its items are the skin's: the frame of an item under the keyboard.
    QTest::keyClick(menu, Qt::Key_Down);
    ASSERT_NE(menu->activeAction(), nullptr);
    const QRect g = menu->actionGeometry(menu->activeAction());
    EXPECT_EQ(Grab(menu).pixel(g.left() + 1, g.top() + 1), ItemFramePixel(4));
    menu->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(Manager.MenuList.empty());

    Data->SkinControls &= ~(1u << xcSystemMenu);
    menu = openMenu();
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(Manager.FindMenu(menu), nullptr);
    // The kind was used up: the next pop-up is a plain one again.
    EXPECT_EQ(Manager.MenuKind, 0);
    menu->close();
}

TEST_F(VeneerMenuTest, ASkinnedPopupIsDrawnFromTheSkinsImages) {
    BarForm f;
    Manager.AddForm(&f.Form);
    f.Form.show();
    f.Bar->ButtonMouseDown(0);
    TWgPopupMenu* file = f.Bar->OpenPopup();
    ASSERT_NE(Manager.FindMenu(file), nullptr);
    QTest::keyClick(file, Qt::Key_Down); // New is selected
    const QImage image = Grab(file);
    const int w = file->width(), h = file->height();
    // Border: corners and edges of the background image, at their size.
    EXPECT_EQ(image.pixel(0, 0), BackCorner);
    EXPECT_EQ(image.pixel(w - 1, h - 1), BackCorner);
    EXPECT_EQ(image.pixel(w / 2, 0), BackEdge);
    EXPECT_EQ(image.pixel(0, h / 2), BackEdge);
    // Items: frame 4 under the selection, frame 1 for the rest.
    const QRect selected = file->ItemRect(0), normal = file->ItemRect(1);
    EXPECT_EQ(image.pixel(selected.left() + 1, selected.top() + 1), ItemFramePixel(4));
    EXPECT_EQ(image.pixel(normal.left() + 1, normal.top() + 1), ItemFramePixel(1));
    // The separator takes the second frame's bottom rows.
    const QRect line = file->ItemRect(2);
    EXPECT_EQ(image.pixel(line.center()), ItemFramePixel(2));
    file->CloseMenu(pcrCancel);
}

TEST_F(VeneerMenuTest, TheKeyboardWorksInSkinnedMenusAsInPlainOnes) {
    // Each run opens File with the mouse and then types; the state after
    // every key must be the same with the skin as without it.
    const std::vector<std::vector<int>> runs = {
        {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return},           // Open
        {Qt::Key_Down, Qt::Key_Up, Qt::Key_Up, Qt::Key_Return}, // wraps to Exit
        {Qt::Key_R, Qt::Key_Down, Qt::Key_Return},              // Recent, then Two
        {Qt::Key_R, Qt::Key_Left, Qt::Key_Escape},              // back out of Recent
        {Qt::Key_Right, Qt::Key_Down, Qt::Key_Return},          // across to Help: About
        {Qt::Key_Left, Qt::Key_Left, Qt::Key_Escape},           // wraps both ways
        {Qt::Key_P, Qt::Key_X},                                 // disabled Print; Exit
        {Qt::Key_End, Qt::Key_Home, Qt::Key_Space},             // New
    };
    auto play = [&](bool Skinned, const std::vector<int>& Keys) {
        Manager.Active = Skinned;
        BarForm f;
        if (Skinned) Manager.AddForm(&f.Form);
        f.Form.show();
        f.Bar->ButtonMouseDown(0);
        std::vector<MenuSnapshot> trace{Snap(f)};
        for (int key : Keys) {
            TWgPopupMenu* target = f.Deepest();
            if (!target) break;
            // Every menu that is open is drawn from the skin, or none is.
            for (TWgPopupMenu* p = f.Bar->OpenPopup(); p && p->isVisible(); p = p->SubMenu())
                EXPECT_EQ(Manager.FindMenu(p) != nullptr, Skinned);
            QTest::keyClick(target, Qt::Key(key));
            QCoreApplication::processEvents();
            trace.push_back(Snap(f));
        }
        if (TWgPopupMenu* open = f.Bar->OpenPopup()) open->CloseMenu(pcrCancel);
        Manager.MenuList.clear();
        for (auto& form : Manager.FormList)
            if (!form->Dead()) form->Detach();
        Manager.FormList.clear();
        return trace;
    };
    for (const auto& keys : runs) {
        const auto plain = play(false, keys);
        const auto skinned = play(true, keys);
        EXPECT_EQ(plain, skinned) << "run of " << keys.size() << " keys from " << keys.front();
    }
    // And the keys did what they say.
    EXPECT_EQ(play(true, runs[0]).back().Clicked, u"&Open");
    EXPECT_EQ(play(true, runs[2]).back().Clicked, u"&Two");
    EXPECT_EQ(play(true, runs[4]).back().Clicked, u"&About");
    EXPECT_EQ(play(true, runs[6]).back().Clicked, u"E&xit");
}

TEST_F(VeneerMenuTest, RemovingTheSkinLeavesMenuWindowsAsTheyWere) {
    BarForm f;
    f.Form.show();
    Manager.Active = false;
    f.Bar->ButtonMouseDown(0);
    TWgPopupMenu* file = f.Bar->OpenPopup();
    ASSERT_NE(file, nullptr);
    QTest::keyClick(file, Qt::Key_Down);
    const QImage plain = Grab(file);
    const QPalette palette = file->palette();
    const bool autoFill = file->autoFillBackground();
    const Qt::WindowFlags flags = file->windowFlags();
    const QRect geometry = file->geometry();

    Manager.Active = true;
    ASSERT_TRUE(Manager.AddMenu(file));
    EXPECT_NE(Grab(file), plain);
    // The timer's remove action lets go of every menu window.
    Manager.CurrentData = Data.get();
    Manager.Action = saRemove;
    Manager.OnTimer();
    EXPECT_TRUE(Manager.MenuList.empty());
    EXPECT_EQ(Grab(file), plain);
    EXPECT_EQ(file->palette(), palette);
    EXPECT_EQ(file->autoFillBackground(), autoFill);
    EXPECT_EQ(file->windowFlags(), flags);
    EXPECT_EQ(file->geometry(), geometry);
    file->CloseMenu(pcrCancel);
}

TEST_F(VeneerMenuTest, SampleShowsEveryItemStateAtBothDensities) {
    const QImage one = RenderSkinnedMenuSample(*Data, 1.0);
    const QImage two = RenderSkinnedMenuSample(*Data, 2.0);
    ASSERT_FALSE(one.isNull());
    EXPECT_EQ(two.size(), one.size() * 2);
    EXPECT_EQ(one.pixel(0, 0), BackCorner);
    // Whole pixels doubled, without smoothing.
    for (QPoint p : {QPoint(0, 0), QPoint(1, 1), QPoint(one.width() / 2, 0)})
        for (QPoint d : {QPoint(0, 0), QPoint(1, 0), QPoint(0, 1), QPoint(1, 1)})
            EXPECT_EQ(two.pixel(p * 2 + d), one.pixel(p));
    // The hot item (the second) and a normal one (the first) differ in frame.
    int hot = 0, normal = 0;
    for (int y = 0; y < one.height(); ++y) {
        hot += one.pixel(4, y) == ItemFramePixel(4);
        normal += one.pixel(4, y) == ItemFramePixel(1);
    }
    EXPECT_GT(hot, 0);
    EXPECT_GT(normal, 0);
}

TEST_F(VeneerMenuTest, AQtMenuBarBecomesAStripInTheFrameAndComesBack) {
    QMainWindow window;
    QMenu* file = window.menuBar()->addMenu("&File");
    file->addAction("&New");
    file->addAction("&Open");
    int went = 0;
    QObject::connect(window.menuBar()->addAction("&Go"), &QAction::triggered, [&] { ++went; });
    QMenu* help = window.menuBar()->addMenu("&Help");
    help->addAction("&About");
    window.menuBar()->setNativeMenuBar(false);
    window.setCentralWidget(new QWidget);
    window.resize(320, 200);
    Manager.Active = false; // shown plain first, to see what comes back
    window.show();
    QCoreApplication::processEvents();
    const QSize size = window.size();
    const QRect central = window.centralWidget()->geometry();

    Manager.Active = true;
    ASSERT_TRUE(Manager.AddForm(&window));
    QCoreApplication::sendPostedEvents(&window);
    TVeneerForm* veneer = Manager.FindForm(&window);
    ASSERT_NE(veneer->Menu(), nullptr);
    EXPECT_FALSE(window.menuBar()->isVisible());
    EXPECT_TRUE(veneer->Frame.HasMenu);
    EXPECT_EQ(veneer->Frame.MenuHeight, veneer->Menu()->Height());
    ASSERT_EQ(veneer->Menu()->Buttons.size(), 3u);
    // Painting lays the buttons out in the strip.
    Grab(&window);
    TMenuBtn* first = veneer->Menu()->Buttons[0].get();
    ASSERT_FALSE(first->Look.Rect.IsEmpty());
    EXPECT_GE(first->Look.Rect.Top, veneer->Frame.FrameTop);
    const QPoint at(first->Look.Rect.Left + 2, first->Look.Rect.Top + 2);
    EXPECT_EQ(veneer->Menu()->BtnAt(at), first);

    veneer->FramePress(at, Qt::LeftButton);
    ASSERT_TRUE(file->isVisible());
    ASSERT_NE(Manager.FindMenu(file), nullptr);
    EXPECT_EQ(Manager.FindMenu(file)->Kind(), 1);
    // Right in a menu with no sub-menu under the selection walks to Help,
    // past Go, which is a command of its own.
    QTest::keyClick(file, Qt::Key_Right);
    QCoreApplication::processEvents();
    EXPECT_FALSE(file->isVisible());
    EXPECT_TRUE(help->isVisible());
    EXPECT_EQ(help->activeAction(), help->actions().front());
    QTest::keyClick(help, Qt::Key_Right); // wraps to File
    QCoreApplication::processEvents();
    EXPECT_TRUE(file->isVisible());
    QTest::keyClick(file, Qt::Key_Escape);
    QCoreApplication::processEvents();
    EXPECT_EQ(veneer->Menu()->TrackIndex, -1);
    EXPECT_EQ(went, 0);
    // A press on Go runs it and opens nothing.
    Grab(&window);
    const TRect& go = veneer->Menu()->Buttons[1]->Look.Rect;
    veneer->FramePress(QPoint(go.Left + 2, go.Top + 2), Qt::LeftButton);
    EXPECT_EQ(went, 1);
    EXPECT_EQ(veneer->Menu()->TrackIndex, -1);
    EXPECT_TRUE(Manager.MenuList.empty());

    veneer->Detach();
    EXPECT_TRUE(window.menuBar()->isVisible());
    EXPECT_EQ(window.size(), size);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.centralWidget()->geometry(), central);
}
