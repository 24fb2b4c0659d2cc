// The tree list model against Qt's QStandardItemModel on a tree of a
// million rows: 1,000 top rows with 999 children each.
//
// Build, delete and move are timed per run; memory per row is the growth of
// the heap (small blocks and mapped chunks) over the build, as a counter.

#include "base/Strings.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"
#include "tree/WgTreeModel.h"

#include <QStandardItemModel>
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <memory>

namespace {

constexpr int TopRows = 1000;
constexpr int ChildRows = 999;
constexpr int TotalRows = TopRows * (ChildRows + 1);

std::size_t HeapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

WideString RowText(int N) {
    return u"Item " + IntToWide(N);
}
QString QtRowText(int N) {
    return QStringLiteral("Item ") + QString::number(N);
}

// ---- our tree

void BuildWithAddLastItem(TWgTreeModel& Tree) {
    TWgTreeItems& items = Tree.Items();
    TWgTreeLock lock(Tree);
    items.AllocateStorage(TotalRows);
    int n = 0;
    for (int t = 0; t < TopRows; ++t) {
        TWgTreeItem* top = items.AddLastItem(nullptr);
        top->SetText(RowText(n++));
        for (int c = 0; c < ChildRows; ++c)
            items.AddLastItem(top)->SetText(RowText(n++));
    }
}

void BuildWithAddChild(TWgTreeModel& Tree) {
    TWgTreeItems& items = Tree.Items();
    TWgTreeLock lock(Tree);
    int n = 0;
    for (int t = 0; t < TopRows; ++t) {
        TWgTreeItem* top = items.AddChild(nullptr, RowText(n++));
        for (int c = 0; c < ChildRows; ++c)
            items.AddChild(top, RowText(n++));
    }
}

void BM_Wg_Build_AddLastItem(benchmark::State& State) {
    double bytes = 0;
    for (auto _ : State) {
        const std::size_t before = HeapInUse();
        auto tree = std::make_unique<TWgTreeModel>();
        BuildWithAddLastItem(*tree);
        bytes = double(HeapInUse() - before) / TotalRows;
        State.PauseTiming();
        tree.reset();
        State.ResumeTiming();
    }
    State.counters["bytes_per_row"] = bytes;
    State.counters["rows"] = TotalRows;
}

void BM_Wg_Build_AddChild(benchmark::State& State) {
    double bytes = 0;
    for (auto _ : State) {
        const std::size_t before = HeapInUse();
        auto tree = std::make_unique<TWgTreeModel>();
        BuildWithAddChild(*tree);
        bytes = double(HeapInUse() - before) / TotalRows;
        State.PauseTiming();
        tree.reset();
        State.ResumeTiming();
    }
    State.counters["bytes_per_row"] = bytes;
    State.counters["rows"] = TotalRows;
}

void BM_Wg_DeleteEveryOtherTopRow(benchmark::State& State) {
    for (auto _ : State) {
        State.PauseTiming();
        auto tree = std::make_unique<TWgTreeModel>();
        BuildWithAddLastItem(*tree);
        TWgTreeItem* root = tree->Items().Root();
        State.ResumeTiming();
        {
            TWgTreeLock lock(*tree);
            for (int t = TopRows - 2; t >= 0; t -= 2)
                tree->Items().Delete(root->GetChild(t));
        }
        State.PauseTiming();
        benchmark::DoNotOptimize(tree->Items().Count());
        tree.reset();
        State.ResumeTiming();
    }
    State.counters["rows_deleted"] = TotalRows / 2;
}

void BM_Wg_Destroy(benchmark::State& State) {
    for (auto _ : State) {
        State.PauseTiming();
        auto tree = std::make_unique<TWgTreeModel>();
        BuildWithAddLastItem(*tree);
        State.ResumeTiming();
        tree.reset();
    }
}

// Each move puts a top row with its 999 children before its previous sibling.
void BM_Wg_Move1000Subtrees(benchmark::State& State) {
    auto tree = std::make_unique<TWgTreeModel>();
    BuildWithAddLastItem(*tree);
    TWgTreeItem* root = tree->Items().Root();
    for (auto _ : State) {
        TWgTreeLock lock(*tree);
        for (int m = 0; m < 1000; ++m) {
            const int index = 1 + (m * 7919) % (TopRows - 1);
            root->GetChild(index)->MoveToIns(root->GetChild(index - 1), 4);
        }
    }
    State.counters["moves"] = 1000;
}

void BM_Wg_StreamWrite(benchmark::State& State) {
    TWgTreeModel tree;
    BuildWithAddLastItem(tree);
    std::size_t size = 0;
    for (auto _ : State) {
        TMemoryStream stream;
        tree.Items().SaveToStream(stream);
        size = stream.Data().size();
    }
    State.counters["bytes"] = double(size);
}

void BM_Wg_StreamRead(benchmark::State& State) {
    TWgTreeModel source;
    BuildWithAddLastItem(source);
    TMemoryStream data;
    source.Items().SaveToStream(data);
    for (auto _ : State) {
        auto tree = std::make_unique<TWgTreeModel>();
        TMemoryStream stream(data.Data());
        tree->Items().LoadFromStream(stream);
        State.PauseTiming();
        benchmark::DoNotOptimize(tree->Items().Count());
        tree.reset();
        State.ResumeTiming();
    }
}

// ---- the peer

void BuildQt(QStandardItemModel& Model) {
    int n = 0;
    for (int t = 0; t < TopRows; ++t) {
        auto* top = new QStandardItem(QtRowText(n++));
        Model.appendRow(top);
        for (int c = 0; c < ChildRows; ++c)
            top->appendRow(new QStandardItem(QtRowText(n++)));
    }
}

void BM_Qt_Build(benchmark::State& State) {
    double bytes = 0;
    for (auto _ : State) {
        const std::size_t before = HeapInUse();
        auto model = std::make_unique<QStandardItemModel>();
        BuildQt(*model);
        bytes = double(HeapInUse() - before) / TotalRows;
        State.PauseTiming();
        model.reset();
        State.ResumeTiming();
    }
    State.counters["bytes_per_row"] = bytes;
    State.counters["rows"] = TotalRows;
}

void BM_Qt_DeleteEveryOtherTopRow(benchmark::State& State) {
    for (auto _ : State) {
        State.PauseTiming();
        auto model = std::make_unique<QStandardItemModel>();
        BuildQt(*model);
        State.ResumeTiming();
        for (int t = TopRows - 2; t >= 0; t -= 2)
            model->removeRow(t);
        State.PauseTiming();
        benchmark::DoNotOptimize(model->rowCount());
        model.reset();
        State.ResumeTiming();
    }
    State.counters["rows_deleted"] = TotalRows / 2;
}

void BM_Qt_Destroy(benchmark::State& State) {
    for (auto _ : State) {
        State.PauseTiming();
        auto model = std::make_unique<QStandardItemModel>();
        BuildQt(*model);
        State.ResumeTiming();
        model.reset();
    }
}

void BM_Qt_Move1000Subtrees(benchmark::State& State) {
    QStandardItemModel model;
    BuildQt(model);
    for (auto _ : State) {
        for (int m = 0; m < 1000; ++m) {
            const int index = 1 + (m * 7919) % (TopRows - 1);
            QList<QStandardItem*> row = model.takeRow(index);
            model.insertRow(index - 1, row);
        }
    }
    State.counters["moves"] = 1000;
}

} // namespace

BENCHMARK(BM_Wg_Build_AddLastItem)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Wg_Build_AddChild)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Qt_Build)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Wg_DeleteEveryOtherTopRow)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Qt_DeleteEveryOtherTopRow)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Wg_Destroy)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Qt_Destroy)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Wg_Move1000Subtrees)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Qt_Move1000Subtrees)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Wg_StreamWrite)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_Wg_StreamRead)->Unit(benchmark::kMillisecond)->Iterations(5);

BENCHMARK_MAIN();
