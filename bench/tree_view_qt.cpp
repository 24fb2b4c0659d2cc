// The tree list on screen against Qt's tree view over its standard item
// model, side by side: the same million rows (1,000 top rows with 999
// children each, all expanded) in a 600x400 control, and after each step
// the control painted into an image the same way for both
// (QWidget::render). Runs without a screen (QT_QPA_PLATFORM=offscreen is
// set when no platform is named).
//
// The steps: a jump to one of 1,000 random scroll positions (the same
// fractions of the range for both, through the scroll bar), a scroll by one
// row, the key End or Home, the key Page Down, and expanding or collapsing all rows (ours: each
// top row expanded or collapsed with its subtree, under one lock; Qt's:
// expandAll and collapseAll). Each step is one iteration; the table at
// the end gives ours, Qt's and their ratio per step (medians when the runs
// are repeated); the ratio is ours divided by Qt's, below 1 where ours is
// faster.
//
// Qt's view runs as its documentation advises for large models (uniform row
// heights); our rows take the height of Qt's, so that both paint the same
// number of rows. Both show one header column.

#include "base/Strings.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"
#include "tree/ui/WgTree.h"

#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QTreeView>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int TopRows = 1000;
constexpr int ChildRows = 999;
constexpr int Width = 600;
constexpr int Height = 400;
constexpr int Jumps = 1000;

// Where the jumps go, as fractions of the scroll range.
const std::vector<double>& JumpFractions() {
    static const std::vector<double> fractions = [] {
        std::mt19937 rng(20261124);
        std::uniform_real_distribution<double> uniform(0.0, 1.0);
        std::vector<double> out(Jumps);
        for (double& f : out)
            f = uniform(rng);
        return out;
    }();
    return fractions;
}

void PressKey(QWidget* Target, int Key) {
    QKeyEvent press(QEvent::KeyPress, Key, Qt::NoModifier);
    QCoreApplication::sendEvent(Target, &press);
    QKeyEvent release(QEvent::KeyRelease, Key, Qt::NoModifier);
    QCoreApplication::sendEvent(Target, &release);
}

// ---- the two sides, each made once and shared by its benchmarks

class TSide {
public:
    virtual ~TSide() = default;
    virtual QWidget& Widget() = 0;
    virtual QScrollBar& VScroll() = 0;
    virtual QWidget& KeyTarget() = 0;
    virtual void ExpandAll() = 0;
    virtual void CollapseAll() = 0;
    virtual int VisibleRows() = 0;
    void Paint() { Widget().render(&FImage); }
    void Save(const QString& FileName) { FImage.save(FileName); }

private:
    QImage FImage{Width, Height, QImage::Format_RGB32};
};

class TQtSide : public TSide {
public:
    TQtSide() {
        int n = 0;
        for (int t = 0; t < TopRows; ++t) {
            auto* top = new QStandardItem(QStringLiteral("Item ") + QString::number(n++));
            FModel.appendRow(top);
            for (int c = 0; c < ChildRows; ++c)
                top->appendRow(new QStandardItem(QStringLiteral("Item ") + QString::number(n++)));
        }
        FModel.setHorizontalHeaderLabels({QStringLiteral("Text")});
        FView.setUniformRowHeights(true);
        FView.setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
        FView.setModel(&FModel);
        FView.resize(Width, Height);
        FView.expandAll();
        Paint();
    }
    QWidget& Widget() override { return FView; }
    QScrollBar& VScroll() override { return *FView.verticalScrollBar(); }
    QWidget& KeyTarget() override { return FView; }
    void ExpandAll() override { FView.expandAll(); }
    void CollapseAll() override { FView.collapseAll(); }
    int VisibleRows() override { return VScroll().maximum() + VScroll().pageStep(); }
    int RowHeight() { return FView.visualRect(FModel.index(0, 0)).height(); }

private:
    QStandardItemModel FModel;
    QTreeView FView;
};

class TWgSide : public TSide {
public:
    explicit TWgSide(int RowHeight) {
        TCustomWgTree& tree = FTree.Tree();
        TWgHeaderSection* section = tree.Header().Sections().AddSection();
        section->SetText(u"Text");
        section->SetWidth(Width);
        FTree.SetShowColumns(true);
        FTree.SetLineHeight(RowHeight);
        {
            TWgTreeLock lock(tree);
            TWgTreeItems& items = tree.Items();
            items.AllocateStorage(TopRows * (ChildRows + 1));
            int n = 0;
            for (int t = 0; t < TopRows; ++t) {
                TWgTreeItem* top = items.AddLastItem(nullptr);
                top->SetText(u"Item " + IntToWide(n++));
                for (int c = 0; c < ChildRows; ++c)
                    items.AddLastItem(top)->SetText(u"Item " + IntToWide(n++));
            }
        }
        FTree.resize(Width, Height);
        ExpandAll();
        Paint();
        // The column fills the rows' width, as Qt's last column stretches.
        section->SetWidth(FTree.ViewWidget()->width());
        Paint();
    }
    QWidget& Widget() override { return FTree; }
    QScrollBar& VScroll() override { return *FTree.VScrollBar(); }
    QWidget& KeyTarget() override { return *FTree.ViewWidget(); }
    // Every row expanded, and collapsed, as the keys "*" and "/" do it for one.
    void ExpandAll() override {
        TCustomWgTree& tree = FTree.Tree();
        TWgTreeLock lock(tree);
        TWgTreeItem* root = tree.Items().Root();
        for (int t = 0; t < root->ChildrenCount(); ++t)
            root->GetChild(t)->Expand(true);
    }
    void CollapseAll() override {
        TCustomWgTree& tree = FTree.Tree();
        TWgTreeLock lock(tree);
        TWgTreeItem* root = tree.Items().Root();
        for (int t = 0; t < root->ChildrenCount(); ++t)
            root->GetChild(t)->Collapse(true);
    }
    int VisibleRows() override { return FTree.Tree().TotalVisible(); }

private:
    TWgTree FTree;
};

TQtSide& QtSide() {
    static TQtSide side;
    return side;
}

TWgSide& WgSide() {
    static TWgSide side(QtSide().RowHeight());
    return side;
}

TSide& SideOf(const benchmark::State& State) {
    return State.range(0) == 0 ? static_cast<TSide&>(WgSide()) : QtSide();
}

// ---- the steps

void Finish(benchmark::State& State, TSide& Side) {
    State.counters["rows"] = Side.VisibleRows();
}

void RandomJump(benchmark::State& State) {
    TSide& side = SideOf(State);
    side.ExpandAll();
    QScrollBar& bar = side.VScroll();
    const std::vector<double>& fractions = JumpFractions();
    std::size_t next = 0;
    for (auto _ : State) {
        bar.setValue(int(fractions[next] * bar.maximum()));
        next = (next + 1) % fractions.size();
        side.Paint();
    }
    Finish(State, side);
}

void ScrollByOneRow(benchmark::State& State) {
    TSide& side = SideOf(State);
    side.ExpandAll();
    QScrollBar& bar = side.VScroll();
    const int start = bar.maximum() / 2;
    bar.setValue(start);
    for (auto _ : State) {
        bar.setValue(bar.value() + 1);
        side.Paint();
    }
    Finish(State, side);
}

// Odd steps press End, even steps Home.
void EndHome(benchmark::State& State) {
    TSide& side = SideOf(State);
    side.ExpandAll();
    bool end = true;
    for (auto _ : State) {
        PressKey(&side.KeyTarget(), end ? Qt::Key_End : Qt::Key_Home);
        end = !end;
        side.Paint();
    }
    Finish(State, side);
}

// From the first row down, a page each step.
void PageDown(benchmark::State& State) {
    TSide& side = SideOf(State);
    side.ExpandAll();
    PressKey(&side.KeyTarget(), Qt::Key_Home);
    for (auto _ : State) {
        PressKey(&side.KeyTarget(), Qt::Key_PageDown);
        side.Paint();
    }
    Finish(State, side);
}

void ExpandAll(benchmark::State& State) {
    TSide& side = SideOf(State);
    for (auto _ : State) {
        State.PauseTiming();
        side.CollapseAll();
        side.Paint();
        State.ResumeTiming();
        side.ExpandAll();
        side.Paint();
    }
    Finish(State, side);
}

void CollapseAll(benchmark::State& State) {
    TSide& side = SideOf(State);
    for (auto _ : State) {
        State.PauseTiming();
        side.ExpandAll();
        side.Paint();
        State.ResumeTiming();
        side.CollapseAll();
        side.Paint();
    }
    side.ExpandAll();
    Finish(State, side);
}

// Argument 0 is our tree, 1 is Qt's.
void Sides(benchmark::internal::Benchmark* B) {
    B->ArgName("qt")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
}

BENCHMARK(RandomJump)->Apply(Sides)->Iterations(Jumps);
BENCHMARK(ScrollByOneRow)->Apply(Sides)->Iterations(1000);
BENCHMARK(EndHome)->Apply(Sides)->Iterations(200);
BENCHMARK(PageDown)->Apply(Sides)->Iterations(1000);
BENCHMARK(ExpandAll)->Apply(Sides)->Iterations(5);
BENCHMARK(CollapseAll)->Apply(Sides)->Iterations(5);

// Collects the time of each run (the median of repeated runs when there is
// one) and prints ours against Qt's at the end.
class TPairReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& Runs) override {
        ConsoleReporter::ReportRuns(Runs);
        for (const Run& run : Runs) {
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median") continue;
            const std::string name = run.run_name.function_name;
            const bool qt = run.run_name.args.find("qt:1") != std::string::npos;
            // A single run counts until its median arrives.
            (qt ? FQt : FOurs)[name] = run.GetAdjustedRealTime();
            (qt ? FQtCpu : FOursCpu)[name] = run.GetAdjustedCPUTime();
        }
    }
    void PrintPairs() const {
        std::printf("\n%-16s %12s %12s %8s   %12s %12s %8s\n", "step (ms)", "ours", "Qt", "ratio",
                    "ours cpu", "Qt cpu", "ratio");
        for (const auto& [name, ours] : FOurs) {
            const auto qt = FQt.find(name);
            if (qt == FQt.end()) continue;
            const double oursCpu = FOursCpu.at(name), qtCpu = FQtCpu.at(name);
            std::printf("%-16s %12.3f %12.3f %8.2f   %12.3f %12.3f %8.2f\n", name.c_str(), ours,
                        qt->second, ours / qt->second, oursCpu, qtCpu, oursCpu / qtCpu);
        }
    }

private:
    std::map<std::string, double> FOurs, FQt, FOursCpu, FQtCpu;
};

} // namespace

int main(int argc, char** argv) {
    if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication app(argc, argv);
    // With a folder named, the pictures of both controls after the first
    // steps go there to be compared by eye.
    if (const char* folder = std::getenv("TREE_VIEW_PICTURES")) {
        WgSide().Save(QString::fromLocal8Bit(folder) + "/ours.png");
        QtSide().Save(QString::fromLocal8Bit(folder) + "/qt.png");
    }
    benchmark::Initialize(&argc, argv);
    TPairReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintPairs();
    benchmark::Shutdown();
    return 0;
}
