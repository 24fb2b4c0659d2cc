// The main window with and without a skin, side by side: a full repaint of
// the window, and one step of a resize (the frame laid out again, the
// outline cut, the mask set, the window repainted), at 688x517 and
// 1600x1000. Both windows have the same outer size; the skinned one draws
// its frame itself.
//
// Runs without a screen (QT_QPA_PLATFORM=offscreen is set when no platform
// is named); on a real X server run it under Xvfb to include the window
// system's own mask handling.

#include "app/SynEditor.h"
#include "base/ui/Application.h"
#include "skin/ui/data.h"
#include "skin/ui/form.h"
#include "skin/ui/manager.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>

namespace {

QTemporaryDir* Folder() {
    static QTemporaryDir dir;
    return &dir;
}

// A data folder whose settings switch the skin on.
QString DataFolder() {
    const QString root = Folder()->filePath("appdata");
    QDir().mkpath(root + "/skins");
    QFile::copy(QStringLiteral(LEXSMITH_SKIN), root + "/skins/Lexsmith Light.skn");
    QFile ini(root + "/Scribex.ini");
    ini.open(QIODevice::WriteOnly);
    ini.write("[Customize]\nSkinEnabled=1\nSkin=Lexsmith Light.skn\n");
    return root;
}

// One window for both: its skin is switched off and on as the skin
// component does it, and the manager's action runs at once.
std::unique_ptr<TSynForm> form;

TSynForm& Window(bool Skinned) {
    if (!form) {
        qputenv("LEXSMITH_APPDATA", DataFolder().toLocal8Bit());
        form = std::make_unique<TSynForm>();
        form->Params.clear();
        form->show();
        QCoreApplication::processEvents();
    }
    TSkinManage& manager = TSkinManage::Instance();
    manager.State = 1;
    form->SkinData->SetActive(Skinned);
    if (manager.Action != saNone) manager.OnTimer();
    QCoreApplication::processEvents();
    if (Skinned != TSkinManage::IsSkinned(form.get())) {
        std::fprintf(stderr, "skin_frame_ui: the window is %s\n",
                     Skinned ? "not skinned" : "skinned");
        std::exit(1);
    }
    return *form;
}

void SizeTo(TSynForm& Form, int W, int H) {
    Form.setMinimumSize(0, 0);
    Form.resize(W, H);
    QCoreApplication::processEvents();
}

void BM_Repaint(benchmark::State& State) {
    TSynForm& form = Window(State.range(0) != 0);
    SizeTo(form, int(State.range(1)), int(State.range(2)));
    for (auto _ : State)
        form.repaint();
    State.counters["width"] = form.width();
    State.counters["height"] = form.height();
}

void BM_ResizeStep(benchmark::State& State) {
    TSynForm& form = Window(State.range(0) != 0);
    const int w = int(State.range(1)), h = int(State.range(2));
    SizeTo(form, w, h);
    int step = 0;
    for (auto _ : State) {
        step ^= 1;
        form.resize(w + step, h + step);
        QCoreApplication::processEvents();
        form.repaint();
    }
}

void Args(benchmark::internal::Benchmark* B) {
    B->ArgNames({"skinned", "w", "h"});
    for (int skinned : {0, 1}) {
        B->Args({skinned, 688, 517});
        B->Args({skinned, 1600, 1000});
    }
    B->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_Repaint)->Apply(Args);
BENCHMARK(BM_ResizeStep)->Apply(Args);

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    // The offscreen platform cannot set a window's mask and says so at
    // every step; the step is measured all the same.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    TApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    form.reset(); // before the application object
    return 0;
}
