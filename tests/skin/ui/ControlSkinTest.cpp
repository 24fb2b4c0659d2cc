#include "skin/ui/control.h"
#include "skin/ui/controlwalk.h"
#include "skin/ui/data.h"
#include "skin/ui/form.h"
#include "skin/ui/manager.h"
#include "skin/ui/scrollbar.h"

#include "app/AddKeywordsDialog.h"
#include "app/UserMenuDialog.h"
#include "base/ui/Colors.h"
#include "base/ui/Tag.h"
#include "skin/bitmap.h"
#include "skin/reader.h"
#include "tree/ui/WgTree.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QStatusBar>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <map>
#include <memory>

namespace {

using Bytes = std::vector<std::uint8_t>;

// Frame n of the test skin's strip for object k is the solid colour
// (k * 10, n * 20, 77): every piece of every state tells itself apart.
TColor Colour(int Object, int Frame) {
    return RGBColor(Object * 10, Frame * 20, 77);
}
TMemoryBitmap Strip(int Object, int Frames, int W, int H) {
    TMemoryBitmap b(Frames * W, H);
    for (int f = 1; f <= Frames; ++f)
        FillBitmapRect(b, Bounds((f - 1) * W, 0, W, H), ColorToPixel(Colour(Object, f)));
    return b;
}
enum {
    kButtons = 1,
    kCheck,
    kRadio,
    kScroll,
    kHorz,
    kVert,
    kHThumb,
    kVThumb,
    kTabs,
    kPane,
    kHeader,
    kProgress,
    kStatus,
    kUpDown,
    kThumb
};

// A small skin with every strip the control skins need.
void LoadTestSkin(TSkinDataModel& Data) {
    const std::string ini = "[Colours]\nButtonFace=200,200,200\nButtonShadow=90,91,92\n"
                            "[Buttons]\nBitmap=b.bmp\nCheckButton=c.bmp\nRadioButton=r.bmp\n"
                            "CheckButtonFrame=4\nRadioButtonFrame=4\n"
                            "[Scrollbar]\nImage=s.bmp\n[HorzScroll]\nImage=hs.bmp\n"
                            "[VertScroll]\nImage=vs.bmp\n[HorzScrollThumb]\nImage=ht.bmp\n"
                            "[VertScrollThumb]\nImage=vt.bmp\n[Tabs]\nImage=t.bmp\n"
                            "[Tab.Pane]\nImage=p.bmp\n[Headerbar]\nImage=h.bmp\nFrame=5\n"
                            "[Progress]\nBitmap=g.bmp\n[StatusBarEdges]\nImage=e.bmp\n"
                            "[UpDown.Vert]\nImage=u.bmp\n[Trackbar.ThumbHorz]\nImage=k.bmp\n";
    std::vector<TSkinMember> members{{"Skin.ini", Bytes(ini.begin(), ini.end())}};
    auto add = [&](const char* Name, const TMemoryBitmap& B) {
        members.push_back({Name, SaveBMP24(B)});
    };
    add("b.bmp", Strip(kButtons, 5, 20, 20));
    add("c.bmp", Strip(kCheck, 4, 13, 13));
    add("r.bmp", Strip(kRadio, 4, 13, 13));
    add("s.bmp", Strip(kScroll, 23, 17, 17));
    add("hs.bmp", Strip(kHorz, 4, 8, 17));
    add("vs.bmp", Strip(kVert, 4, 17, 8));
    add("ht.bmp", Strip(kHThumb, 3, 8, 17));
    add("vt.bmp", Strip(kVThumb, 3, 17, 8));
    add("t.bmp", Strip(kTabs, 5, 20, 20));
    add("p.bmp", Strip(kPane, 1, 20, 20));
    add("h.bmp", Strip(kHeader, 5, 20, 20));
    add("g.bmp", Strip(kProgress, 2, 20, 16));
    add("e.bmp", Strip(kStatus, 3, 16, 16));
    add("u.bmp", Strip(kUpDown, 8, 16, 8));
    add("k.bmp", Strip(kThumb, 5, 10, 18));
    Data.SkinStream = TMemoryStream(PackSkinFile(members));
    ASSERT_TRUE(Data.ReadSkin());
}

TColor PixelOf(QWidget& W, QPoint P) {
    const QImage image = W.grab().toImage();
    return FromQColor(QColor(image.pixel(P * image.devicePixelRatio())));
}

struct ControlSkinTest : ::testing::Test {
    std::unique_ptr<TSkinData> Data;
    TSkinManage& Manager = TSkinManage::Instance();
    QWidget Form;
    QVBoxLayout* Layout = new QVBoxLayout(&Form);

    void SetUp() override {
        Data = std::make_unique<TSkinData>();
        Data->Loaded();
        LoadTestSkin(*Data);
        ASSERT_FALSE(Data->Empty);
        Manager.Active = true;
        Form.resize(320, 480);
    }
    void TearDown() override {
        for (auto& form : Manager.FormList)
            if (!form->Dead()) form->Detach();
        Manager.FormList.clear();
        Data.reset();
        Manager.Active = false;
        Manager.State = 0;
        Manager.Action = saNone;
        Manager.Timer.stop();
        Manager.CurrentData = nullptr;
    }
    template <class T, class... A> T* Add(A&&... Args) {
        auto* w = new T(std::forward<A>(Args)...);
        Layout->addWidget(w);
        return w;
    }
    TVeneerForm* Attach(QWidget& Window) {
        Window.show();
        Window.winId();
        // Showing it may have attached it already, as it does in the program.
        if (!Manager.FindForm(&Window)) {
            EXPECT_TRUE(Manager.AddForm(&Window)) << "refused by test " << Manager.LastRefusal();
        }
        TVeneerForm* veneer = Manager.FindForm(&Window);
        QCoreApplication::sendPostedEvents();
        return veneer;
    }
};

TEST_F(ControlSkinTest, ButtonStatesShowTheirFrames) {
    auto* button = Add<QPushButton>("Go");
    auto* other = Add<QPushButton>("Other");
    TVeneerForm* veneer = Attach(Form);
    ASSERT_TRUE(dynamic_cast<TSkinButton*>(veneer->FindControl(button)));
    const QPoint corner(3, 3); // face, away from the caption
    EXPECT_EQ(PixelOf(*button, corner), Colour(kButtons, 1));
    QEnterEvent enter(QPointF(2, 2), QPointF(2, 2), QPointF(2, 2));
    QCoreApplication::sendEvent(button, &enter);
    EXPECT_EQ(PixelOf(*button, corner), Colour(kButtons, 4));
    button->setDown(true);
    EXPECT_EQ(PixelOf(*button, corner), Colour(kButtons, 2));
    button->setDown(false);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(button, &leave);
    other->setDefault(true);
    EXPECT_EQ(PixelOf(*other, corner), Colour(kButtons, 5));
    other->setEnabled(false); // a disabled default button: disabled wins
    EXPECT_EQ(PixelOf(*other, corner), Colour(kButtons, 3));
}

TEST_F(ControlSkinTest, ControlsKeepTheirBehaviour) {
    auto* button = Add<QPushButton>("Go");
    auto* check = Add<QCheckBox>("Check");
    auto* edit = Add<QLineEdit>();
    auto* combo = Add<QComboBox>();
    combo->addItems({"One", "Two"});
    TVeneerForm* veneer = Attach(Form);
    ASSERT_TRUE(veneer->FindControl(button) && veneer->FindControl(check) &&
                veneer->FindControl(edit) && veneer->FindControl(combo));
    QSignalSpy clicks(button, &QPushButton::clicked);
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(clicks.count(), 1); // handled once, not once by the skin and once more
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Space);
    EXPECT_EQ(clicks.count(), 2);
    QTest::mouseClick(check, Qt::LeftButton, {}, QPoint(6, check->height() / 2));
    EXPECT_TRUE(check->isChecked());
    QTest::keyClicks(edit, "typed");
    EXPECT_EQ(edit->text(), "typed");
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Down);
    EXPECT_EQ(combo->currentIndex(), 1);
}

TEST_F(ControlSkinTest, PiecesAreWholeAtRatioTwo) {
    auto* button = Add<QPushButton>("Go");
    auto* bar = Add<QScrollBar>(Qt::Horizontal);
    bar->setRange(0, 100);
    bar->setFixedWidth(200);
    Attach(Form);
    // Rendered at twice the density: every device pixel of the face edge
    // is the frame's, to the last one (no seam, no half pixel).
    for (QWidget* w : {static_cast<QWidget*>(button), static_cast<QWidget*>(bar)}) {
        QImage image(w->size() * 2, QImage::Format_ARGB32);
        image.setDevicePixelRatio(2);
        image.fill(Qt::black);
        w->render(&image);
        const TColor expected = w == button ? Colour(kButtons, 1) : Colour(kScroll, 1);
        for (QPoint p : {QPoint(0, 0), QPoint(1, 1), QPoint(0, image.height() - 1)})
            EXPECT_EQ(FromQColor(image.pixel(p)), expected) << w->metaObject()->className();
    }
    QImage image(bar->size() * 2, QImage::Format_ARGB32);
    image.setDevicePixelRatio(2);
    bar->render(&image);
    EXPECT_EQ(FromQColor(image.pixel(image.width() - 1, 0)), Colour(kScroll, 5));
}

TEST_F(ControlSkinTest, CheckAndRadioCells) {
    auto* check = Add<QCheckBox>("Check");
    auto* radio = Add<QRadioButton>("Radio");
    TVeneerForm* veneer = Attach(Form);
    ASSERT_TRUE(veneer->FindControl(check));
    auto box = [](QWidget* W) { return QPoint(6, W->height() / 2); };
    EXPECT_EQ(PixelOf(*check, box(check)), Colour(kCheck, 1));
    check->setChecked(true);
    EXPECT_EQ(PixelOf(*check, box(check)), Colour(kCheck, 2));
    check->setEnabled(false);
    EXPECT_EQ(PixelOf(*check, box(check)), Colour(kCheck, 4));
    check->setEnabled(true);
    check->setChecked(false);
    check->setDown(true);
    EXPECT_EQ(PixelOf(*check, box(check)), Colour(kCheck, 4));
    radio->setChecked(true);
    EXPECT_EQ(PixelOf(*radio, box(radio)), Colour(kRadio, 2));
}

TEST_F(ControlSkinTest, TabsHeadersProgressAndStatus) {
    auto* tabs = Add<QTabWidget>();
    tabs->addTab(new QWidget, "One");
    tabs->addTab(new QWidget, "Two");
    auto* table = Add<QTableWidget>(2, 2);
    table->setHorizontalHeaderLabels({"A", "B"});
    auto* progress = Add<QProgressBar>();
    progress->setTextVisible(false);
    progress->setValue(50);
    auto* status = Add<QStatusBar>();
    status->setSizeGripEnabled(false);
    auto* panel = new QLabel("Ready");
    status->addWidget(panel, 1);
    TVeneerForm* veneer = Attach(Form);
    ASSERT_TRUE(veneer->FindControl(tabs));

    QTabBar* bar = tabs->tabBar();
    EXPECT_EQ(PixelOf(*bar, bar->tabRect(0).topLeft() + QPoint(1, 1)), Colour(kTabs, 2));
    EXPECT_EQ(PixelOf(*bar, bar->tabRect(1).topLeft() + QPoint(1, 1)), Colour(kTabs, 1));
    tabs->setCurrentIndex(1);
    EXPECT_EQ(PixelOf(*bar, bar->tabRect(1).topLeft() + QPoint(1, 1)), Colour(kTabs, 2));
    // Tabs at a side: the strip turned, the whole tab still from its frame.
    tabs->setTabPosition(QTabWidget::West);
    const QRect side = bar->tabRect(0);
    ASSERT_GT(side.height(), side.width());
    EXPECT_EQ(PixelOf(*bar, side.bottomRight() - QPoint(1, 1)), Colour(kTabs, 1));

    QHeaderView* header = table->horizontalHeader();
    EXPECT_EQ(PixelOf(*header->viewport(), QPoint(1, 1)), Colour(kHeader, 1));

    EXPECT_EQ(PixelOf(*progress, QPoint(2, 2)), Colour(kProgress, 2));
    EXPECT_EQ(PixelOf(*progress, QPoint(progress->width() - 3, 2)), Colour(kProgress, 1));
    progress->setValue(0);
    EXPECT_EQ(PixelOf(*progress, QPoint(2, 2)), Colour(kProgress, 1));

    EXPECT_EQ(PixelOf(*status, panel->geometry().topLeft()), Colour(kStatus, 1));
}

TEST_F(ControlSkinTest, EditsSpinBoxesGroupsAndTrackBars) {
    auto* edit = Add<QLineEdit>("Text");
    auto* spin = Add<QSpinBox>();
    spin->setFixedWidth(80);
    auto* group = Add<QGroupBox>("Group");
    group->setMinimumHeight(40);
    auto* slider = Add<QSlider>(Qt::Horizontal);
    slider->setValue(50);
    TVeneerForm* veneer = Attach(Form);
    ASSERT_TRUE(veneer->FindControl(edit) && veneer->FindControl(spin));
    const TColor shadow = RGBColor(90, 91, 92);
    // The edit keeps its text and gets the frame: the shadow line outside,
    // two lines of its ground inside.
    EXPECT_EQ(PixelOf(*edit, QPoint(0, edit->height() / 2)), shadow);
    EXPECT_EQ(PixelOf(*edit, QPoint(2, edit->height() / 2)),
              FromQColor(edit->palette().color(QPalette::Base)));
    EXPECT_EQ(edit->text(), "Text");
    // The spin box's arrows: up cell 1, down cell 5; disabled 3 and 7.
    const QPoint up(spin->width() - 8, 4), down(spin->width() - 8, spin->height() - 5);
    EXPECT_EQ(PixelOf(*spin, up), Colour(kUpDown, 1));
    EXPECT_EQ(PixelOf(*spin, down), Colour(kUpDown, 5));
    spin->setEnabled(false);
    EXPECT_EQ(PixelOf(*spin, up), Colour(kUpDown, 3));
    EXPECT_EQ(PixelOf(*spin, down), Colour(kUpDown, 7));
    // The group's frame is a shadow line; its left side halfway down.
    EXPECT_EQ(PixelOf(*group, QPoint(0, group->height() / 2)), shadow);
    // The track bar's thumb, centred on the handle; pressed is frame 2.
    QStyleOptionSlider option;
    option.initFrom(slider);
    option.orientation = Qt::Horizontal;
    option.maximum = slider->maximum();
    option.sliderPosition = option.sliderValue = slider->value();
    const QRect handle = slider->style()->subControlRect(QStyle::CC_Slider, &option,
                                                         QStyle::SC_SliderHandle, slider);
    EXPECT_EQ(PixelOf(*slider, handle.center()), Colour(kThumb, 1));
    slider->setSliderDown(true);
    EXPECT_EQ(PixelOf(*slider, handle.center()), Colour(kThumb, 2));
}

TEST_F(ControlSkinTest, ScrollBarZonesPressesAndCells) {
    auto* bar = Add<QScrollBar>(Qt::Horizontal);
    bar->setRange(0, 100);
    bar->setPageStep(20);
    bar->setSingleStep(1);
    bar->setFixedSize(240, 17);
    TVeneerForm* veneer = Attach(Form);
    auto* skin = dynamic_cast<TSkinScControl*>(veneer->FindControl(bar));
    ASSERT_TRUE(skin && skin->Bar());
    TWScrollbar& w = *skin->Bar();

    bar->setValue(50);
    const TScrollBarGeometry g = w.Geometry();
    ASSERT_GT(g.ArrowSize, 0);
    struct {
        int Along;
        TScrollZone Zone;
        int Value; // after the press, by the bar's own logic
    } cases[] = {
        {g.ArrowSize / 2, szFirstArrow, 49},
        {(g.ArrowSize + g.ThumbTop) / 2, szPageBefore, 30},
        {(g.ThumbTop + g.ThumbBottom) / 2, szThumb, 50},
        {(g.ThumbBottom + g.BarLength - g.ArrowSize) / 2, szPageAfter, 70},
        {g.BarLength - g.ArrowSize / 2, szLastArrow, 51},
    };
    for (auto& c : cases) {
        bar->setValue(50);
        const QPoint p(c.Along, 8);
        QTest::mousePress(bar, Qt::LeftButton, {}, p);
        EXPECT_EQ(w.Zone, c.Zone) << c.Along;
        EXPECT_TRUE(w.Pressed);
        EXPECT_EQ(bar->value(), c.Value) << c.Along;
        if (c.Zone == szFirstArrow) {
            EXPECT_EQ(PixelOf(*bar, QPoint(1, 1)), Colour(kScroll, 2));
        }
        if (c.Zone == szLastArrow) {
            EXPECT_EQ(PixelOf(*bar, QPoint(bar->width() - 2, 1)), Colour(kScroll, 6));
        }
        if (c.Zone == szThumb) {
            const TScrollBarGeometry now = w.Geometry();
            EXPECT_EQ(PixelOf(*bar, QPoint(now.ThumbTop + 1, 1)), Colour(kHThumb, 2));
        }
        QTest::mouseRelease(bar, Qt::LeftButton, {}, p);
        EXPECT_FALSE(w.Pressed);
    }
    bar->setEnabled(false);
    EXPECT_EQ(PixelOf(*bar, QPoint(1, 1)), Colour(kScroll, 3));
}

TEST_F(ControlSkinTest, ScrollableControlsGetBothBarsSkinned) {
    auto* list = Add<QListWidget>();
    for (int i = 0; i < 100; ++i)
        list->addItem(QString(200, QLatin1Char('x')));
    list->setFixedSize(150, 120);
    TVeneerForm* veneer = Attach(Form);
    auto* skin = dynamic_cast<TSkinScrollbar*>(veneer->FindControl(list));
    ASSERT_TRUE(skin);
    ASSERT_TRUE(skin->HorzBar() && skin->VertBar());
    QScrollBar* v = list->verticalScrollBar();
    EXPECT_EQ(PixelOf(*v, QPoint(1, 1)), Colour(kScroll, 9));
    EXPECT_EQ(PixelOf(*v, QPoint(1, v->height() - 2)), Colour(kScroll, 13));
}

// Everything a skin may change on a control, and how it looks.
struct TControlState {
    QPalette Palette;
    bool SetPalette, AutoFill, Hover;
    QFont Font;
    QVariant Tag;
    QSize Size;
    QImage Look;
    bool operator==(const TControlState&) const = default;
};
TControlState StateOf(QWidget* W) {
    return {W->palette(),
            W->testAttribute(Qt::WA_SetPalette),
            W->autoFillBackground(),
            W->testAttribute(Qt::WA_Hover),
            W->font(),
            W->property("Tag"),
            W->size(),
            W->grab().toImage()};
}

TEST_F(ControlSkinTest, DetachLeavesEveryKindAsItWas) {
    std::vector<QWidget*> controls;
    auto keep = [&](QWidget* W) {
        controls.push_back(W);
        return W;
    };
    keep(Add<QPushButton>("Button"));
    auto* tool = Add<QToolButton>();
    tool->setText("T");
    keep(tool);
    keep(Add<QCheckBox>("Check"));
    keep(Add<QRadioButton>("Radio"));
    keep(Add<QLineEdit>("Edit"));
    auto* combo = Add<QComboBox>();
    combo->addItems({"One", "Two"});
    keep(combo);
    keep(Add<QSpinBox>());
    auto* group = Add<QGroupBox>("Group");
    group->setMinimumHeight(30);
    keep(group);
    auto* tabs = Add<QTabWidget>();
    tabs->addTab(new QWidget, "Page");
    keep(tabs);
    keep(tabs->tabBar());
    keep(tabs->widget(0));
    auto* table = Add<QTableWidget>(3, 2);
    keep(table);
    keep(table->horizontalHeader()->viewport());
    keep(table->verticalScrollBar());
    keep(Add<QProgressBar>());
    keep(Add<QSlider>(Qt::Horizontal));
    keep(Add<QScrollBar>(Qt::Horizontal));
    auto* status = Add<QStatusBar>();
    status->addWidget(new QLabel("Ready"));
    keep(status);
    auto* tagged = Add<QPushButton>("Tagged");
    SetTag(tagged, DisableTag);
    keep(tagged);
    // The plain look first: showing the form must not skin it yet.
    Manager.Active = false;
    Form.show();
    QCoreApplication::processEvents();
    std::vector<TControlState> before;
    for (QWidget* w : controls)
        before.push_back(StateOf(w));
    Manager.Active = true;

    TVeneerForm* veneer = Attach(Form);
    ASSERT_TRUE(veneer);
    EXPECT_GE(veneer->ControlList.size(), 14u);
    EXPECT_EQ(veneer->FindControl(tagged), nullptr); // Tag 99 is never touched
    // Only what it inherits from the form changes.
    EXPECT_EQ(StateOf(tagged).SetPalette, before.back().SetPalette);
    EXPECT_EQ(StateOf(tagged).Hover, before.back().Hover);
    EXPECT_NE(StateOf(controls[0]).Look, before[0].Look); // the skin is on

    veneer->Detach();
    QCoreApplication::processEvents();
    for (std::size_t i = 0; i < controls.size(); ++i) {
        const TControlState after = StateOf(controls[i]);
        const char* name = controls[i]->metaObject()->className();
        EXPECT_EQ(after.Palette, before[i].Palette) << name;
        EXPECT_EQ(after.SetPalette, before[i].SetPalette) << name;
        EXPECT_EQ(after.AutoFill, before[i].AutoFill) << name;
        EXPECT_EQ(after.Hover, before[i].Hover) << name;
        EXPECT_EQ(after.Font, before[i].Font) << name;
        EXPECT_EQ(after.Tag, before[i].Tag) << name;
        EXPECT_EQ(after.Size, before[i].Size) << name;
        EXPECT_TRUE(after.Look == before[i].Look) << name << " looks different after the detach";
    }
}

TEST_F(ControlSkinTest, OwnColourIsGivenBack) {
    auto* group = Add<QGroupBox>("Group");
    auto* panel = new QFrame(group); // a panel: the rule gives it the face colour
    auto* inner = new QVBoxLayout(group);
    inner->addWidget(panel);
    panel->setFrameShape(QFrame::Box);
    QPalette own = panel->palette();
    own.setColor(QPalette::Window, Qt::red);
    panel->setPalette(own);
    TVeneerForm* veneer = Attach(Form);
    ASSERT_TRUE(dynamic_cast<TSkinBox*>(veneer->FindControl(panel)));
    EXPECT_EQ(FromQColor(panel->palette().color(QPalette::Window)), RGBColor(200, 200, 200));
    veneer->Detach();
    EXPECT_EQ(panel->palette().color(QPalette::Window), QColor(Qt::red));
    EXPECT_TRUE(panel->testAttribute(Qt::WA_SetPalette));
}

// Which control of the program's forms gets which skin.
std::map<std::string, std::string> Picks(TVeneerForm& Veneer) {
    std::map<std::string, std::string> out;
    for (const auto& skin : Veneer.ControlList) {
        QWidget* w = skin->Control();
        const std::string key = w->objectName().isEmpty()
                                    ? std::string(w->metaObject()->className())
                                    : w->objectName().toStdString();
        std::string& entry = out[key];
        if (!entry.empty()) entry += ",";
        entry += skin->metaObject()->className();
    }
    return out;
}

TEST_F(ControlSkinTest, PicksOnTheProgramsForms) {
    TAddForm add;
    TVeneerForm* veneer = Attach(add);
    ASSERT_TRUE(veneer);
    const auto picks = Picks(*veneer);
    const std::map<std::string, std::string> expected = {
        {"TUniBitBtn", "TSkinBitButton,TSkinBitButton,TSkinBitButton,TSkinBitButton"},
        {"TUniEdit", "TSkinEdit"},
        {"TUniListBox", "TSkinScrollbar"},
    };
    EXPECT_EQ(picks, expected);
    veneer->Detach();

    TUserMenuForm user;
    veneer = Attach(user);
    ASSERT_TRUE(veneer);
    const auto userPicks = Picks(*veneer);
    EXPECT_EQ(userPicks.at("QComboBox"), "TSkinComBox");
    EXPECT_EQ(userPicks.at("TUniMemo"), "TSkinScrollbar");
    EXPECT_EQ(userPicks.at("TUniEdit"), "TSkinEdit");
    EXPECT_EQ(userPicks.count("TUniLabel"), 0u);
    veneer->Detach();

    // Our tree list holds its bars as children.
    QWidget holder;
    auto* tree = new TWgTree(&holder);
    tree->resize(200, 150);
    veneer = Attach(holder);
    auto* bars = dynamic_cast<TSkinScrollbar*>(veneer->FindControl(tree));
    ASSERT_TRUE(bars);
    EXPECT_TRUE(bars->HorzBar() && bars->VertBar());
}

TEST_F(ControlSkinTest, QtWidgetsMeetTheRuleAsTheirFrameworkClasses) {
    auto* upDown = Add<QDateTimeEdit>();
    auto* dropDown = Add<QDateTimeEdit>();
    dropDown->setCalendarPopup(true);
    auto* spin = Add<QSpinBox>();
    auto* slider = Add<QSlider>(Qt::Horizontal);
    auto* table = Add<QTableWidget>(2, 2);
    auto* line = Add<QFrame>();
    line->setFrameShape(QFrame::HLine);
    TVeneerForm* veneer = Attach(Form);
    auto is = [&](QWidget* W, const char* Class) {
        TSkinControl* skin = veneer->FindControl(W);
        return skin && std::string(skin->metaObject()->className()) == Class;
    };
    EXPECT_TRUE(is(upDown, "TSkinEdit"));
    EXPECT_TRUE(is(dropDown, "TSkinDateTime"));
    EXPECT_TRUE(is(spin, "TSkinEdit"));
    EXPECT_TRUE(is(slider, "TSkinTrackBar"));
    EXPECT_TRUE(is(table, "TSkinListView"));
    EXPECT_EQ(veneer->FindControl(line), nullptr); // a line is no panel
    // The inner parts of compound controls are no controls of the form.
    EXPECT_EQ(veneer->FindControl(table->verticalScrollBar()), nullptr);
    EXPECT_EQ(veneer->FindControl(spin->findChild<QLineEdit*>()), nullptr);
}

TEST_F(ControlSkinTest, ARefreshSkinsControlsMadeSinceTheWalk) {
    auto* first = Add<QPushButton>("First");
    TVeneerForm* veneer = Attach(Form);
    auto* later = Add<QCheckBox>("Later");
    EXPECT_EQ(veneer->FindControl(later), nullptr);
    const std::size_t before = veneer->ControlList.size();
    veneer->Refresh();
    EXPECT_TRUE(dynamic_cast<TSkinCheckBox*>(veneer->FindControl(later)));
    EXPECT_EQ(veneer->ControlList.size(), before + 1); // the first keeps its one skin
    EXPECT_TRUE(veneer->FindControl(first));
}

TEST_F(ControlSkinTest, OnSkinControlReplacesTheRule) {
    auto* button = Add<QPushButton>("Mine");
    auto* plain = Add<QPushButton>("Plain");
    TSkinControl* made = nullptr;
    Data->OnSkinControl = [&](QWidget* Control, const AnsiString& Cls) -> TSkinControl* {
        if (Control != button) return nullptr;
        EXPECT_EQ(Cls, "TBUTTON");
        made = new TSkinCheckBox;
        return made;
    };
    TVeneerForm* veneer = Attach(Form);
    EXPECT_EQ(veneer->FindControl(button), made);
    EXPECT_TRUE(dynamic_cast<TSkinButton*>(veneer->FindControl(plain)));
}

} // namespace
