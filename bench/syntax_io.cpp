// Load and save of a large syntax definition: 200,000 keywords in 100
// groups plus 5,000 completion entries, about 2.5 MB of narrow text.
//
// Reports throughput for load + save together (file bytes per second) and
// the peak heap in use during one load + save, as a multiple of the file
// size. Heap use is counted by replacing the global allocation functions.
//
// Beside it, on the same file, the floor: what reading, converting and
// writing that much text costs at the least. The file is read whole, split
// into lines, each line widened through the code page table into a wide
// string of its own, then every line narrowed back into one buffer, which is
// written to a file with plain checked writes (no temporary file, no sync).
// BM_AgainstFloor runs the two by turns, so both see the same machine load,
// and reports CPU and wall time of each and their ratio.

#include "LargeDefinition.h"
#include "document/SyntaxDocument.h"
#include "document/TextLines.h"
#include "wide/CodePage.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <time.h>

namespace {

std::atomic<std::size_t> gInUse{0};
std::atomic<std::size_t> gPeak{0};
// Heap use is counted in a pass of its own, so the timed runs pay nothing
// for it; a block remembers whether it was counted.
std::atomic<bool> gCounting{false};

void Count(std::size_t Bytes) {
    std::size_t now = gInUse.fetch_add(Bytes) + Bytes;
    std::size_t peak = gPeak.load();
    while (now > peak && !gPeak.compare_exchange_weak(peak, now)) {
    }
}

} // namespace

void* operator new(std::size_t Size) {
    void* p = std::malloc(Size + 16);
    if (!p) throw std::bad_alloc();
    const bool counted = gCounting.load(std::memory_order_relaxed);
    static_cast<std::size_t*>(p)[0] = counted ? Size : 0;
    if (counted) Count(Size);
    return static_cast<char*>(p) + 16;
}

void operator delete(void* P) noexcept {
    if (!P) return;
    void* base = static_cast<char*>(P) - 16;
    if (const std::size_t size = *static_cast<std::size_t*>(base)) gInUse.fetch_sub(size);
#if defined(__GNUC__) && !defined(__clang__)
// The block came from malloc in operator new above; the compiler cannot see that.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif
    std::free(base);
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif
}

void operator delete(void* P, std::size_t) noexcept {
    operator delete(P);
}

namespace {

std::string TempPath(const char* Name) {
    return (std::filesystem::temp_directory_path() / Name).string();
}

// The peak heap in use while F runs, less what was in use before.
template <typename F> std::size_t PeakHeap(F&& Run) {
    gCounting = true;
    const std::size_t base = gInUse.load();
    gPeak.store(base);
    Run();
    gCounting = false;
    return gPeak.load() - base;
}

void BM_LoadSaveLargeDefinition(benchmark::State& State) {
    const std::string in = TempPath("lexsmith-bench-in.syx");
    const std::string out = TempPath("lexsmith-bench-out.syx");
    const std::string text = MakeDefinition();
    std::ofstream(in, std::ios::binary) << text;
    const double fileSize = double(text.size());

    auto loadSave = [&] {
        TSyntaxDocument doc;
        doc.Load(in);
        doc.Save(out);
    };
    const double peakRatio = double(PeakHeap(loadSave)) / fileSize;
    for (auto _ : State)
        loadSave();
    State.SetBytesProcessed(std::int64_t(State.iterations()) * std::int64_t(text.size()));
    State.counters["file_MB"] = fileSize / 1e6;
    State.counters["peak_heap_x_file"] = peakRatio;
    std::remove(in.c_str());
    std::remove(out.c_str());
}

std::string ReadWhole(const std::string& Name) {
    std::FILE* f = std::fopen(Name.c_str(), "rb");
    if (!f) throw std::runtime_error("cannot open " + Name);
    std::fseek(f, 0, SEEK_END);
    const long size = std::ftell(f);
    std::fseek(f, 0, SEEK_SET);
    std::string bytes(size > 0 ? std::size_t(size) : 0, '\0');
    const bool ok = size >= 0 && std::fread(bytes.data(), 1, bytes.size(), f) == bytes.size();
    std::fclose(f);
    if (!ok) throw std::runtime_error("cannot read " + Name);
    return bytes;
}

void WriteWhole(const std::string& Name, const std::string& Bytes) {
    std::FILE* f = std::fopen(Name.c_str(), "wb");
    if (!f) throw std::runtime_error("cannot create " + Name);
    const bool ok = std::fwrite(Bytes.data(), 1, Bytes.size(), f) == Bytes.size();
    if (std::fclose(f) != 0 || !ok) throw std::runtime_error("cannot write " + Name);
}

// The floor of a load and a save: the text read, split, widened line by
// line into wide strings, narrowed back and written.
void Floor(const std::string& In, const std::string& Out) {
    const TCodePage& page = SystemCodePage();
    const std::string bytes = ReadWhole(In);
    std::vector<WideString> lines;
    ForEachLine(bytes.data(), bytes.size(), [&](std::size_t Start, std::size_t Length) {
        page.DecodeTo(std::string_view(bytes.data() + Start, Length), lines.emplace_back());
    });
    std::string text;
    text.reserve(bytes.size());
    for (const WideString& line : lines) {
        page.EncodeAppend(line, text);
        text += "\r\n";
    }
    WriteWhole(Out, text);
}

void OursOnce(const std::string& In, const std::string& Out) {
    TSyntaxDocument doc;
    doc.Load(In);
    doc.Save(Out);
}

void BM_Floor(benchmark::State& State) {
    const std::string in = TempPath("lexsmith-bench-in.syx");
    const std::string out = TempPath("lexsmith-bench-floor.syx");
    const std::string text = MakeDefinition();
    std::ofstream(in, std::ios::binary) << text;
    const double peakRatio = double(PeakHeap([&] { Floor(in, out); })) / double(text.size());
    for (auto _ : State)
        Floor(in, out);
    State.SetBytesProcessed(std::int64_t(State.iterations()) * std::int64_t(text.size()));
    State.counters["peak_heap_x_file"] = peakRatio;
    std::remove(in.c_str());
    std::remove(out.c_str());
}

double ThreadSeconds() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

double WallSeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

// Ours and the floor by turns on the same file; the ratio is ours over the floor.
void BM_AgainstFloor(benchmark::State& State) {
    const std::string in = TempPath("lexsmith-bench-in.syx");
    const std::string out = TempPath("lexsmith-bench-out.syx");
    const std::string floorOut = TempPath("lexsmith-bench-floor.syx");
    const std::string text = MakeDefinition();
    std::ofstream(in, std::ios::binary) << text;
    double oursCpu = 0, oursWall = 0, floorCpu = 0, floorWall = 0;
    for (auto _ : State) {
        double c = ThreadSeconds(), w = WallSeconds();
        OursOnce(in, out);
        oursCpu += ThreadSeconds() - c;
        oursWall += WallSeconds() - w;
        c = ThreadSeconds();
        w = WallSeconds();
        Floor(in, floorOut);
        floorCpu += ThreadSeconds() - c;
        floorWall += WallSeconds() - w;
    }
    const double n = double(State.iterations());
    const double megabytes = double(text.size()) / 1e6;
    State.counters["ours_cpu_ms"] = oursCpu / n * 1e3;
    State.counters["floor_cpu_ms"] = floorCpu / n * 1e3;
    State.counters["ratio_cpu"] = oursCpu / floorCpu;
    State.counters["ours_MBps"] = megabytes * n / oursCpu;
    State.counters["floor_MBps"] = megabytes * n / floorCpu;
    State.counters["ours_wall_ms"] = oursWall / n * 1e3;
    State.counters["floor_wall_ms"] = floorWall / n * 1e3;
    State.counters["ratio_wall"] = oursWall / floorWall;
    std::remove(in.c_str());
    std::remove(out.c_str());
    std::remove(floorOut.c_str());
}

} // namespace

BENCHMARK(BM_LoadSaveLargeDefinition)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_Floor)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_AgainstFloor)->Unit(benchmark::kMillisecond)->MinTime(3.0);

BENCHMARK_MAIN();
