// The main window: from nothing to its first painted frame, and Open plus
// Save of the large generated definition (about 3 MB) through the window's
// own document commands, with its trees, memos and list pages filled.
//
// Runs without a screen (QT_QPA_PLATFORM=offscreen is set when no platform
// is named). The time to create the application object itself, fonts
// included, is measured once and printed before the benchmarks.

#include "LargeDefinition.h"
#include "app/SynEditor.h"
#include "base/ui/Application.h"
#include "tree/WgTreeItems.h"
#include "tree/ui/WgTree.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace {

// Waits for the first paint of Widget.
class TPaintWatch : public QObject {
public:
    bool Painted = false;

protected:
    bool eventFilter(QObject* Watched, QEvent* Event) override {
        if (Event->type() == QEvent::Paint) Painted = true;
        return QObject::eventFilter(Watched, Event);
    }
};

void BM_StartUpToFirstPaint(benchmark::State& State) {
    for (auto _ : State) {
        TSynForm form;
        form.Params.clear();
        TPaintWatch watch;
        form.installEventFilter(&watch);
        form.show();
        while (!watch.Painted)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
}

// The shared large definition with what only the window shows on top: 200
// blocks and 200 fold rules (2,400 tree rows), 4,000 hints and a sample of
// 4,000 lines; about 3 MB in all.
std::string MakeWindowDefinition() {
    std::string text = MakeDefinition();
    std::string records;
    for (int i = 0; i < 200; ++i) {
        const std::string n = std::to_string(i);
        records += "  BlockName = \"Block" + n +
                   "\"\r\n  BlockOnLine = \"No\"\r\n"
                   "  BlockAsString = \"Yes\"\r\n  BlockStart = \"<<" +
                   n + "\"\r\n  BlockEnd = \">>" + n + "\"\r\n\r\n";
        records += "  Fold_Id = \"fold" + n + "\"\r\n  Fold_Begin = \"begin" + n +
                   "\"\r\n  Fold_End = \"end" + n + "\"\r\n\r\n";
    }
    text.insert(text.find("[End]"), records);
    text += "\r\n[AutoHint]\r\n";
    for (int i = 0; i < 4000; ++i)
        text += "  \"function_" + std::to_string(i) + "(first, second, [third])\"\r\n";
    text += "[End]\r\n\r\n[BeginSample]\r\n";
    for (int i = 0; i < 4000; ++i)
        text += "local value_" + std::to_string(i) +
                " = string.format(\"%d items in %s\", count, name) -- line\r\n";
    text += "[EndSample]\r\n";
    return text;
}

void BM_OpenSaveLargeDefinition(benchmark::State& State) {
    QTemporaryDir dir;
    const std::string in = dir.filePath(QStringLiteral("in.syx")).toStdString();
    const std::string out = dir.filePath(QStringLiteral("out.syx")).toStdString();
    const std::string text = MakeWindowDefinition();
    std::ofstream(in, std::ios::binary) << text;
    TSynForm form;
    form.Params.clear();
    form.show();
    QCoreApplication::processEvents();
    for (auto _ : State) {
        form.OpenDocument(in);
        form.SaveDialog.FileName = in;
        form.SaveDocument(out);
        QCoreApplication::processEvents();
    }
    State.counters["file_MB"] = double(text.size()) / 1e6;
    State.counters["block_rows"] = form.WgTree2->Tree().Items().Count();
    State.counters["sample_lines"] = form.Sample->Count();
    form.Modified = false;
}

} // namespace

BENCHMARK(BM_StartUpToFirstPaint)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_OpenSaveLargeDefinition)->Unit(benchmark::kMillisecond)->MinTime(3.0);

int main(int argc, char** argv) {
    if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QTemporaryDir appData; // no settings of a real user are read
    setenv("LEXSMITH_APPDATA", appData.path().toLocal8Bit().constData(), 1);
    const auto before = std::chrono::steady_clock::now();
    TApplication app(argc, argv);
    const auto after = std::chrono::steady_clock::now();
    std::printf("application object with fonts: %.1f ms\n",
                std::chrono::duration<double, std::milli>(after - before).count());
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
