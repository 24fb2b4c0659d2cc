// Save and load of a text store of 10,000 values: 100 keys of 100 values of
// mixed types, in memory and through a file.

#include "controls/WgIni.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>

namespace {

void FillStore(TWgIniFile& Ini) {
    for (int k = 0; k < 100; ++k) {
        std::string key = "\\Section" + std::to_string(k / 10) + "\\Key" + std::to_string(k);
        for (int v = 0; v < 100; ++v) {
            std::string name = "Value" + std::to_string(v);
            switch (v % 5) {
            case 0:
                Ini.WriteInteger(key, name, k * 1000 + v);
                break;
            case 1:
                Ini.WriteString(key, name, "text of value " + std::to_string(v));
                break;
            case 2:
                Ini.WriteBool(key, name, v % 2 == 0);
                break;
            case 3:
                Ini.WriteFloat(key, name, v + 0.25);
                break;
            default:
                Ini.WriteBinary(key, name, {std::uint8_t(v), 1, 2, 3});
            }
        }
    }
}

void BM_TextSave(benchmark::State& State) {
    TWgIniFile ini;
    FillStore(ini);
    for (auto _ : State)
        benchmark::DoNotOptimize(ini.SaveToText());
}

void BM_TextLoad(benchmark::State& State) {
    TWgIniFile source;
    FillStore(source);
    AnsiString text = source.SaveToText();
    TWgIniFile ini;
    for (auto _ : State)
        ini.LoadFromText(text);
}

void BM_FileSaveAndLoad(benchmark::State& State) {
    std::string path =
        (std::filesystem::temp_directory_path() / "lexsmith-bench-store.ini").string();
    TWgIniFile ini;
    FillStore(ini);
    ini.SetPath(path);
    for (auto _ : State) {
        ini.Save();
        ini.Load();
    }
    std::filesystem::remove(path);
}

BENCHMARK(BM_TextSave)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TextLoad)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FileSaveAndLoad)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
