// Expanding skin streams and loading our skins.
//   cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DLEXSMITH_BUILD_UI=OFF
//   ninja -C build-bench -j2 skin_lzh && ./build-bench/bench/skin_lzh

#include "skin/data.h"
#include "skin/lzh.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace {

// 20 MB of ini-like text interleaved with runs of random bytes; RandomShare
// is the share of random bytes in percent.
std::vector<std::uint8_t> MixedInput(int RandomShare) {
    std::mt19937 rng(42);
    const std::string words[] = {
        "[Personality]\r\n",           "Image=frame", ".bmp\r\n",   "LeftWidth=",
        "NormalColour2=12,200,30\r\n", "Tile=1\r\n",  "Trans=0\r\n"};
    std::vector<std::uint8_t> out;
    const std::size_t size = 20u << 20;
    out.reserve(size);
    while (out.size() < size) {
        if (int(rng() % 100) < RandomShare) {
            for (int i = 0; i < 64; ++i)
                out.push_back(std::uint8_t(rng()));
        } else {
            // 64 bytes of text a pick, as many as a random run
            for (std::size_t start = out.size(); out.size() < start + 64;) {
                const std::string& w = words[rng() % 7];
                out.insert(out.end(), w.begin(), w.end());
                out.push_back(std::uint8_t('0' + rng() % 10));
            }
        }
    }
    out.resize(size);
    return out;
}

void BM_Expand20MB(benchmark::State& state) {
    const std::vector<std::uint8_t> frame = LzhCompressFrame(MixedInput(int(state.range(0))));
    std::vector<std::uint8_t> out;
    for (auto _ : state) {
        LzhExpandFrame(frame.data(), frame.size(), out, 1ll << 30);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(out.size()));
    state.counters["ratio"] = double(frame.size()) / double(out.size());
}
// Argument: percent of random bytes.
BENCHMARK(BM_Expand20MB)->Arg(0)->Arg(25)->Arg(50)->Arg(100)->Unit(benchmark::kMillisecond);

void BM_ReadSkin(benchmark::State& state, const char* file) {
    std::filesystem::path path =
        std::filesystem::path(__FILE__).parent_path().parent_path() / "resources" / "skins" / file;
    std::ifstream in(path, std::ios::binary);
    std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(in)), {});
    if (bytes.empty()) {
        state.SkipWithError("skin file missing");
        return;
    }
    TSkinDataModel model;
    for (auto _ : state) {
        model.SkinStream = TMemoryStream(bytes);
        benchmark::DoNotOptimize(model.ReadSkin());
    }
}
BENCHMARK_CAPTURE(BM_ReadSkin, light, "Lexsmith Light.skn")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ReadSkin, dark, "Lexsmith Dark.skn")->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
