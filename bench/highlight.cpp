// The preview's highlighter on a large definition: 200,000 keywords in 100
// groups (the shared generated definition) with comments, strings, chars,
// numbers, symbols and a block record added to its options.
//
// HighlightText: 10,000 lines of code-like text, rules built beforehand;
//   throughput in bytes of text (one byte a character, as the file holds it).
// BuildRules: what a changed definition costs before the next highlight.
// CachedSample: what each pause of the editor costs when only the sample
//   changed: the check that the definition is the same, then a 7-line sample.

#include "LargeDefinition.h"
#include "base/Strings.h"
#include "document/SyntaxDocument.h"
#include "highlight/Highlighter.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

const char* const ExtraOptions = "  LineCommentB = \"#\"\r\n"
                                 "  CommentStartA = \"/*\"\r\n"
                                 "  CommentEndA = \"*/\"\r\n"
                                 "  String = \"\\\"\"\r\n"
                                 "  Char = \"'\"\r\n"
                                 "  Escape = \"\\\\\"\r\n"
                                 "  StringOnLine = \"Yes\"\r\n"
                                 "  Symbols = \"+-*/=<>(){}[];,.\"\r\n"
                                 "  Numbers = \"0123456789.\"\r\n"
                                 "  HexIdentifier = \"0x\"\r\n"
                                 "  BlockName = \"Raw\"\r\n"
                                 "  BlockStart = \"<<\"\r\n"
                                 "  BlockEnd = \">>\"\r\n";

const TSyntaxDocument& Definition() {
    static const TSyntaxDocument doc = [] {
        std::string text = MakeDefinition();
        text.insert(text.find("[Options]\r\n") + 11, ExtraOptions);
        TSyntaxDocument d;
        TKVWideStringList lines;
        TMemoryStream stream(std::vector<std::uint8_t>(text.begin(), text.end()));
        lines.LoadFromStream(stream);
        TKVSyntax().LoadSyntaxLines(TStringListLines(lines), *d.Header, *d.Options, *d.Blocks,
                                    *d.Folds, *d.AutoHint, *d.Sample, *d.Keywords, *d.Tags,
                                    *d.AutoComplete, *d.TagComplete, *d.UserMenu);
        return d;
    }();
    return doc;
}

// Lines of code: keywords of the definition among other words, calls,
// numbers, strings, chars, comments, now and then a block comment or a block.
WideString MakeText(int Lines) {
    const TMenuList& groups = *Definition().Keywords;
    unsigned seed = 777;
    const auto next = [&seed](unsigned Range) {
        seed = seed * 1103515245u + 12345u;
        return (seed >> 16) % Range;
    };
    const auto keyword = [&] {
        const TWgWideStringList& items =
            *groups.Menu(int(next(unsigned(groups.MenuCount()))))->Items;
        return TMenuList::ItemLeft(items.Ref(int(next(unsigned(items.Count())))));
    };
    WideString text;
    for (int i = 0; i < Lines; ++i) {
        if (i > 0) text += u'\n';
        switch (i % 25) {
        case 0:
            text += u"/* " + keyword() + u" spans\n   two lines */ " + keyword() + u" x;";
            ++i;
            break;
        case 12:
            text += u"  << raw " + keyword() + u" text >> # " + keyword();
            break;
        default:
            text += u"  " + keyword() + u" value_" + IntToWide(i) + u" = " + keyword() +
                    u"(0x1F, 42.5, \"str \\\"q\\\" " + keyword() + u"\", 'c'); // " + keyword();
        }
    }
    return text;
}

void BM_HighlightText(benchmark::State& State) {
    const THighlightRules rules(Definition());
    const WideString text = MakeText(10000);
    std::vector<THighlightSpan> spans;
    for (auto _ : State) {
        rules.Highlight(text, spans);
        benchmark::DoNotOptimize(spans.data());
    }
    State.SetBytesProcessed(std::int64_t(State.iterations()) * std::int64_t(text.size()));
    State.counters["spans"] = double(spans.size());
    State.counters["text_chars"] = double(text.size());
}
BENCHMARK(BM_HighlightText)->Unit(benchmark::kMillisecond);

void BM_BuildRules(benchmark::State& State) {
    const TSyntaxDocument& doc = Definition();
    for (auto _ : State) {
        THighlightRules rules(doc);
        benchmark::DoNotOptimize(&rules);
    }
}
BENCHMARK(BM_BuildRules)->Unit(benchmark::kMillisecond);

void BM_CachedSample(benchmark::State& State) {
    const TSyntaxDocument& doc = Definition();
    THighlighter highlighter;
    const WideString sample = MakeText(7);
    std::vector<THighlightSpan> spans;
    highlighter.Highlight(doc, sample, spans);
    for (auto _ : State) {
        highlighter.Highlight(doc, sample, spans);
        benchmark::DoNotOptimize(spans.data());
    }
    if (highlighter.Builds() != 1) State.SkipWithError("the rules were built again");
}
BENCHMARK(BM_CachedSample)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
