#include "skin/ui/data.h"
#include "skin/ui/form.h"
#include "skin/ui/manager.h"

#include "base/ui/Tag.h"
#include "skin/draw.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>
#include <QWindow>

#include <gtest/gtest.h>

#include <memory>

namespace {

const std::string SkinsDir = std::string(LEXSMITH_RESOURCES) + "/skins/";

// A registered main-form skin, switched on, with no form attached yet.
struct VeneerFormTest : ::testing::Test {
    std::unique_ptr<TSkinData> Data;
    TSkinManage& Manager = TSkinManage::Instance();

    void SetUp() override { Use("Lexsmith Light.skn"); }
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
    void Use(const std::string& Skin) {
        Data = std::make_unique<TSkinData>();
        Data->Loaded();
        Data->SetSkinFile(SkinsDir + Skin);
        ASSERT_FALSE(Data->Empty);
        Manager.Active = true;
    }
};

struct WindowLook {
    Qt::WindowFlags Flags;
    QMargins Margins;
    QRegion Mask;
    QSize Size, Minimum, Maximum;
    QColor Window;
    bool AutoFill;
    bool operator==(const WindowLook&) const = default;
};
WindowLook LookOf(QWidget& W) {
    return {W.windowHandle() ? W.windowHandle()->flags() : W.windowFlags(),
            W.contentsMargins(),
            W.mask(),
            W.size(),
            W.minimumSize(),
            W.maximumSize(),
            W.palette().color(QPalette::Window),
            W.autoFillBackground()};
}

void MakeDialog(QDialog& D, int W, int H) {
    auto* layout = new QVBoxLayout(&D);
    layout->addWidget(new QLabel("Contents", &D));
    D.setWindowTitle("A dialog");
    D.setFixedSize(W, H);
}

} // namespace

TEST_F(VeneerFormTest, AttachThenDetachLeavesTheWindowAsItWas) {
    QWidget form;
    form.resize(300, 200);
    form.setContentsMargins(3, 4, 5, 6);
    form.setWindowTitle("Plain");
    QLabel placed("Placed by hand", &form);
    placed.move(10, 12);
    form.winId();
    const WindowLook before = LookOf(form);

    ASSERT_TRUE(Manager.AddForm(&form));
    TVeneerForm* veneer = Manager.FindForm(&form);
    ASSERT_NE(veneer, nullptr);
    QCoreApplication::sendPostedEvents(&form);
    const TFormFrame& frame = veneer->Frame;
    ASSERT_GT(frame.FrameTop, 0);
    // The client keeps its size: the frame is added around it.
    EXPECT_EQ(form.size(), QSize(300 + frame.FrameLeft + frame.FrameRight,
                                 200 + frame.FrameTop + frame.FrameBottom));
    EXPECT_EQ(form.contentsMargins(), QMargins(3 + frame.FrameLeft, 4 + frame.FrameTop,
                                               5 + frame.FrameRight, 6 + frame.FrameBottom));
    EXPECT_TRUE(form.windowHandle()->flags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(TSkinManage::IsSkinned(&form));
    EXPECT_EQ(veneer->SkinState, ssRunning);
    // With no layout, what was placed by hand moves with the client area.
    EXPECT_EQ(placed.pos(), QPoint(10 + frame.FrameLeft, 12 + frame.FrameTop));

    veneer->Detach();
    EXPECT_EQ(LookOf(form), before);
    EXPECT_EQ(placed.pos(), QPoint(10, 12));
    EXPECT_FALSE(TSkinManage::IsSkinned(&form));
}

TEST_F(VeneerFormTest, AFixedDialogKeepsItsClientAndGetsItsLimitsBack) {
    QDialog dialog;
    MakeDialog(dialog, 260, 120);
    dialog.winId();
    const WindowLook before = LookOf(dialog);
    ASSERT_TRUE(Manager.AddForm(&dialog));
    TVeneerForm* veneer = Manager.FindForm(&dialog);
    const TFormFrame& frame = veneer->Frame;
    EXPECT_EQ(frame.BorderKind, 3); // a fixed dialog has the dialog frame
    EXPECT_EQ(dialog.size(), QSize(260 + frame.FrameLeft + frame.FrameRight,
                                   120 + frame.FrameTop + frame.FrameBottom));
    EXPECT_EQ(dialog.minimumSize(), dialog.maximumSize());
    veneer->Detach();
    EXPECT_EQ(LookOf(dialog), before);
}

TEST_F(VeneerFormTest, AddFormRefusesInItsOrder) {
    QWidget tagged;
    tagged.resize(100, 100);
    SetTag(&tagged, 99);
    // The number 99 is fixed for forms: another DisableTag does not free it.
    Data->DisableTag = 5;
    EXPECT_FALSE(Manager.AddForm(&tagged));
    EXPECT_EQ(Manager.LastRefusal(), 6);

    QWidget empty;
    empty.resize(0, 100);
    EXPECT_FALSE(Manager.AddForm(&empty));
    EXPECT_EQ(Manager.LastRefusal(), 5);

    QWidget child(&tagged);
    EXPECT_FALSE(Manager.AddForm(&child));
    EXPECT_EQ(Manager.LastRefusal(), 3);

    QWidget form;
    form.resize(100, 100);
    Manager.Active = false;
    EXPECT_FALSE(Manager.AddForm(&form));
    EXPECT_EQ(Manager.LastRefusal(), 1);
    Manager.Active = true;
    Data->OnFormSkin = [](QObject*, const AnsiString& Class, bool& DoSkin) {
        DoSkin = Class != "QWidget";
    };
    EXPECT_FALSE(Manager.AddForm(&form));
    EXPECT_EQ(Manager.LastRefusal(), 8);
    Data->OnFormSkin = nullptr;
    EXPECT_TRUE(Manager.AddForm(&form));
    EXPECT_FALSE(Manager.AddForm(&form));
    EXPECT_EQ(Manager.LastRefusal(), 2);
}

TEST_F(VeneerFormTest, ADyingFormIsSweptAtTheNextAddForm) {
    auto doomed = std::make_unique<QWidget>();
    doomed->resize(120, 80);
    ASSERT_TRUE(Manager.AddForm(doomed.get()));
    ASSERT_EQ(Manager.FormList.size(), 1u);
    doomed.reset();
    // Still listed, marked dead, never touched.
    ASSERT_EQ(Manager.FormList.size(), 1u);
    EXPECT_TRUE(Manager.FormList[0]->Dead());
    QWidget next;
    next.resize(120, 80);
    ASSERT_TRUE(Manager.AddForm(&next));
    ASSERT_EQ(Manager.FormList.size(), 1u);
    EXPECT_EQ(Manager.FormList[0]->Form(), &next);
}

TEST_F(VeneerFormTest, OnlyTheLastPostBeforeTheTimerCounts) {
    QWidget form;
    form.resize(200, 150);
    form.show();
    Manager.Active = false;
    Manager.State = 1;
    int changes = 0;
    Data->OnSkinChanged = [&](QObject*) { ++changes; };
    Data->SetActive(true);
    Data->SetActive(false);
    Data->SetActive(true);
    EXPECT_EQ(Manager.Action, saApply);
    Manager.OnTimer();
    EXPECT_EQ(changes, 1);
    EXPECT_NE(Manager.FindForm(&form), nullptr);

    Data->SetActive(false);
    Manager.OnTimer();
    EXPECT_EQ(Manager.FindForm(&form), nullptr);
    EXPECT_FALSE(form.windowHandle()->flags().testFlag(Qt::FramelessWindowHint));
    EXPECT_EQ(changes, 2);
}

TEST_F(VeneerFormTest, NothingHappensBeforeTheFirstFormComesUp) {
    Manager.Active = false;
    Manager.State = 0;
    Data->SetActive(true);
    // The switch is set, and no timer runs: the first form will find it.
    EXPECT_TRUE(Manager.Active);
    EXPECT_FALSE(Manager.Timer.isActive());
}

// The painted frame at densities 1 and 2 shows the skin's own border pixels.
TEST_F(VeneerFormTest, TheFramePaintsTheSkinsBordersAtBothDensities) {
    for (const char* skin : {"Lexsmith Light.skn", "Lexsmith Dark.skn"}) {
        Use(skin);
        QWidget form;
        form.resize(320, 200);
        form.setWindowTitle("Pixels");
        ASSERT_TRUE(Manager.AddForm(&form));
        TVeneerForm* veneer = Manager.FindForm(&form);
        veneer->Begin();
        const TFormFrame& frame = veneer->Frame;
        const TDataSkinBorder& left = *Data->Left;
        const TMemoryBitmap expected = DrawRect(left.Map, 1, left.Frame, false, left.r,
                                                left.Tile != 1, frame.FrameLeft, form.height());
        for (qreal ratio : {1.0, 2.0}) {
            QImage image(form.size() * ratio, QImage::Format_RGB32);
            image.setDevicePixelRatio(ratio);
            image.fill(Qt::black);
            {
                QPainter painter(&image);
                veneer->PaintFrame(painter);
            }
            int wrong = 0;
            for (int y = 0; y < form.height(); ++y)
                for (int x = 0; x < frame.FrameLeft; ++x) {
                    const TPixel want = expected.Pixel(x, y);
                    if ((want & 0xFFFFFF) == 0xFF00FF) continue;
                    for (int dy = 0; dy < int(ratio); ++dy)
                        for (int dx = 0; dx < int(ratio); ++dx) {
                            const QRgb got = image.pixel(int(x * ratio) + dx, int(y * ratio) + dy);
                            if ((got & 0xFFFFFF) != (want & 0xFFFFFF)) ++wrong;
                        }
                }
            EXPECT_EQ(wrong, 0) << skin << " at ratio " << ratio;
        }
        veneer->Detach();
        Manager.FormList.clear();
    }
}
