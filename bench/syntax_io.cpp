// Load and save of a large syntax definition: 200,000 keywords in 100
// groups plus 5,000 completion entries, about 3 MB of narrow text.
//
// Reports throughput for load + save together (file bytes per second) and
// the peak heap in use during one load + save, as a multiple of the file
// size. Heap use is counted by replacing the global allocation functions.

#include "LargeDefinition.h"
#include "document/SyntaxDocument.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <new>
#include <string>

namespace {

std::atomic<std::size_t> gInUse{0};
std::atomic<std::size_t> gPeak{0};

void Count(std::size_t Bytes) {
    std::size_t now = gInUse.fetch_add(Bytes) + Bytes;
    std::size_t peak = gPeak.load();
    while (now > peak && !gPeak.compare_exchange_weak(peak, now)) {
    }
}

} // namespace

void* operator new(std::size_t Size) {
    void* p = std::malloc(Size + 16);
    if (!p)
        throw std::bad_alloc();
    *static_cast<std::size_t*>(p) = Size;
    Count(Size);
    return static_cast<char*>(p) + 16;
}

void operator delete(void* P) noexcept {
    if (!P)
        return;
    void* base = static_cast<char*>(P) - 16;
    gInUse.fetch_sub(*static_cast<std::size_t*>(base));
    std::free(base);
}

void operator delete(void* P, std::size_t) noexcept { operator delete(P); }

namespace {

std::string TempPath(const char* Name) {
    return (std::filesystem::temp_directory_path() / Name).string();
}

void BM_LoadSaveLargeDefinition(benchmark::State& State) {
    const std::string in = TempPath("lexsmith-bench-in.syx");
    const std::string out = TempPath("lexsmith-bench-out.syx");
    const std::string text = MakeDefinition();
    std::ofstream(in, std::ios::binary) << text;
    const double fileSize = double(text.size());

    double peakRatio = 0;
    for (auto _ : State) {
        const std::size_t base = gInUse.load();
        gPeak.store(base);
        {
            TSyntaxDocument doc;
            doc.Load(in);
            doc.Save(out);
        }
        peakRatio = double(gPeak.load() - base) / fileSize;
    }
    State.SetBytesProcessed(std::int64_t(State.iterations()) * std::int64_t(text.size()));
    State.counters["file_MB"] = fileSize / 1e6;
    State.counters["peak_heap_x_file"] = peakRatio;
    std::remove(in.c_str());
    std::remove(out.c_str());
}

} // namespace

BENCHMARK(BM_LoadSaveLargeDefinition)->Unit(benchmark::kMillisecond)->MinTime(2.0);

BENCHMARK_MAIN();
