// The definition doctor on the large generated definition (about 3 MB,
// 200,000 keywords): the checks of a file's lines, as syxtool check runs
// them, and of a document in memory, as the editor runs them after each
// pause in editing. Target: under 100 ms each.

#include "LargeDefinition.h"

#include "base/Streams.h"
#include "document/SyntaxCheck.h"

#include <benchmark/benchmark.h>

namespace {

TTextLines LinesOf(const std::string& Text) {
    TMemoryStream stream(std::vector<std::uint8_t>(Text.begin(), Text.end()));
    TTextLines lines;
    TTextEncoding encoding = teAnsi;
    lines.Load(stream, encoding);
    return lines;
}

void BM_CheckFileLines(benchmark::State& State) {
    const std::string text = MakeDefinition();
    const TTextLines lines = LinesOf(text);
    std::size_t findings = 0;
    for (auto _ : State) {
        findings = TSyntaxChecker().CheckLines(lines).size();
        benchmark::DoNotOptimize(findings);
    }
    State.counters["findings"] = double(findings);
    State.SetBytesProcessed(std::int64_t(State.iterations()) * std::int64_t(text.size()));
}

void BM_CheckDocumentInMemory(benchmark::State& State) {
    const std::string text = MakeDefinition();
    TSyntaxDocument doc;
    doc.LoadLines(LinesOf(text));
    std::size_t findings = 0;
    for (auto _ : State) {
        findings = TSyntaxChecker().CheckDocument(doc).size();
        benchmark::DoNotOptimize(findings);
    }
    State.counters["findings"] = double(findings);
    State.SetBytesProcessed(std::int64_t(State.iterations()) * std::int64_t(text.size()));
}

} // namespace

BENCHMARK(BM_CheckFileLines)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_CheckDocumentInMemory)->Unit(benchmark::kMillisecond)->MinTime(2.0);

BENCHMARK_MAIN();
