// Control skins against plain controls: a full repaint of a dialog's client
// of 50 controls (buttons, check and radio boxes, edits, combo boxes,
// progress bars, group boxes and a list), and one scroll step of our tree
// list with 5000 rows followed by its repaint. The same widgets are built
// twice; one window gets the skin, the other stays plain.
//
// Runs without a screen (QT_QPA_PLATFORM=offscreen is set when no platform
// is named).

#include "base/ui/Application.h"
#include "skin/ui/data.h"
#include "skin/ui/form.h"
#include "skin/ui/manager.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"
#include "tree/ui/WgTree.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

std::unique_ptr<TSkinData> data;

TSkinData& Data() {
    if (!data) {
        data = std::make_unique<TSkinData>();
        data->Loaded();
        data->SetSkinFile(LEXSMITH_SKIN);
        if (data->Empty) {
            std::fprintf(stderr, "skin_controls_ui: cannot read %s\n", LEXSMITH_SKIN);
            std::exit(1);
        }
    }
    return *data;
}

// Shows Window, with the skin or plain.
void ShowWindow(QWidget& Window, bool Skinned) {
    Data();
    TSkinManage& manager = TSkinManage::Instance();
    manager.Active = Skinned;
    Window.show();
    Window.winId();
    QCoreApplication::processEvents();
    if (Skinned && !manager.FindForm(&Window)) manager.AddForm(&Window);
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    TVeneerForm* veneer = manager.FindForm(&Window);
    if (Skinned != (veneer && !veneer->ControlList.empty())) {
        std::fprintf(stderr, "skin_controls_ui: the window is %s\n",
                     Skinned ? "not skinned" : "skinned");
        std::exit(1);
    }
}

// The window and the client that holds the 50 controls.
struct TDialog {
    QWidget Window;
    QWidget* Client = new QWidget(&Window);
    explicit TDialog(bool Skinned) {
        auto* outer = new QVBoxLayout(&Window);
        outer->addWidget(Client);
        auto* grid = new QGridLayout(Client);
        int n = 0;
        auto put = [&](QWidget* W) {
            grid->addWidget(W, n / 5, n % 5);
            ++n;
        };
        for (int i = 0; i < 15; ++i)
            put(new QPushButton(QStringLiteral("Button %1").arg(i)));
        for (int i = 0; i < 10; ++i)
            put(new QCheckBox(QStringLiteral("Check %1").arg(i)));
        for (int i = 0; i < 5; ++i)
            put(new QRadioButton(QStringLiteral("Radio %1").arg(i)));
        for (int i = 0; i < 8; ++i)
            put(new QLineEdit(QStringLiteral("Edit %1").arg(i)));
        for (int i = 0; i < 5; ++i) {
            auto* c = new QComboBox;
            c->addItems({"One", "Two", "Three"});
            put(c);
        }
        for (int i = 0; i < 3; ++i) {
            auto* p = new QProgressBar;
            p->setValue(30 * i + 10);
            put(p);
        }
        for (int i = 0; i < 3; ++i)
            put(new QGroupBox(QStringLiteral("Group %1").arg(i)));
        auto* list = new QListWidget;
        for (int i = 0; i < 50; ++i)
            list->addItem(QStringLiteral("Row %1").arg(i));
        put(list);
        Window.resize(700, 420);
        ShowWindow(Window, Skinned);
    }
};

void BM_Dialog50(benchmark::State& State) {
    TDialog dialog(State.range(0) != 0);
    for (auto _ : State)
        dialog.Client->repaint();
    State.counters["controls"] = 50;
}
BENCHMARK(BM_Dialog50)->ArgName("skinned")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

struct TTreeWindow {
    QWidget Window;
    TWgTree* Tree = new TWgTree(&Window);
    explicit TTreeWindow(bool Skinned) {
        auto* layout = new QVBoxLayout(&Window);
        layout->addWidget(Tree);
        {
            TWgTreeItems& items = Tree->Items();
            for (int i = 0; i < 500; ++i) {
                TWgTreeItem* top = items.AddChild(nullptr, u"Top row with some text");
                for (int j = 0; j < 9; ++j)
                    items.AddChild(top, u"A child row of the tree list");
                top->SetExpanded(true);
            }
        }
        Window.resize(420, 600);
        ShowWindow(Window, Skinned);
    }
};

void BM_TreeScroll(benchmark::State& State) {
    TTreeWindow window(State.range(0) != 0);
    QScrollBar* bar = window.Tree->VScrollBar();
    int step = 0;
    for (auto _ : State) {
        step = (step + 1) % 200;
        bar->setValue(step * 3);
        QCoreApplication::processEvents();
        window.Tree->repaint();
    }
    State.counters["rows"] = 5000;
}
BENCHMARK(BM_TreeScroll)->ArgName("skinned")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    TApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    data.reset(); // before the application object
    return 0;
}
