// PrepareText and layout of 10,000 different short marked-up captions at a
// width of 200 pixels, beside the toolkit's rich-text document doing the same.
// Run with QT_QPA_PLATFORM=offscreen.
//
// Our side measures with a per-character width table (narrow, normal, wide
// and capital letters at fixed fractions of the pixel height), which makes
// wrapping behave like a proportional font without a window system.

#include "base/Canvas.h"
#include "controls/HTMLRender.h"

#include <QApplication>
#include <QString>
#include <QTextDocument>

#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

namespace {

class TTableCanvas : public TFixedMetricsCanvas {
public:
    TSize TextExtent(WideView Text) override {
        TTextMetrics m = TextMetrics();
        int h = m.Height;
        long long width = 0;
        for (char16_t c : Text)
            width += CharWidth(c, h);
        if (FFont.Style & fsBold) width += (long long)Text.size();
        return {int(width), h};
    }

private:
    static int CharWidth(char16_t C, int H) {
        switch (C) {
        case u'i':
        case u'l':
        case u'j':
        case u't':
        case u'f':
        case u'r':
        case u'.':
        case u',':
        case u' ':
        case u'I':
        case u'!':
            return (H * 3 + 5) / 10;
        case u'm':
        case u'w':
        case u'M':
        case u'W':
            return (H * 8 + 5) / 10;
        default:
            return C >= u'A' && C <= u'Z' ? (H * 65 + 50) / 100 : (H + 1) / 2;
        }
    }
};

const std::vector<std::string>& Captions() {
    static const std::vector<std::string> captions = [] {
        const char* words[] = {"open",   "save",   "file",   "syntax", "keyword", "block",
                               "fold",   "menu",   "sample", "author", "hint",    "tree",
                               "Header", "Column", "skin",   "window", "list",    "item"};
        const char* colours[] = {"red", "#2060a0", "navy", "green", "maroon"};
        std::mt19937 random(42);
        auto word = [&] { return std::string(words[random() % 18]); };
        std::vector<std::string> out;
        for (int i = 0; i < 10000; ++i) {
            std::string s = "<b>" + word() + "</b> " + word() + " " + std::to_string(i) + " <i>" +
                            word() + " " + word() + "</i> <font color=" + colours[random() % 5] +
                            ">" + word() + "</font> <a href=\"" + word() + "\">" + word() + " " +
                            word() + "</a><br>" + word() + " " + word() + " " + word() + " " +
                            word();
            out.push_back(s);
        }
        return out;
    }();
    return captions;
}

void BM_HTMLRender(benchmark::State& State) {
    std::vector<std::u16string> texts;
    for (const std::string& s : Captions())
        texts.emplace_back(s.begin(), s.end());
    TTableCanvas canvas;
    TWgHTMLRender render(&canvas);
    long long height = 0;
    for (auto _ : State) {
        for (const std::u16string& text : texts) {
            render.PrepareText(text, 200, true);
            height += render.Data()->TextSize.cy;
        }
    }
    benchmark::DoNotOptimize(height);
    State.SetItemsProcessed(State.iterations() * (long long)texts.size());
}

void BM_QTextDocument(benchmark::State& State) {
    std::vector<QString> texts;
    for (const std::string& s : Captions())
        texts.push_back(QString::fromStdString(s));
    QTextDocument document;
    double height = 0;
    for (auto _ : State) {
        for (const QString& text : texts) {
            document.setHtml(text);
            document.setTextWidth(200);
            height += document.size().height();
        }
    }
    benchmark::DoNotOptimize(height);
    State.SetItemsProcessed(State.iterations() * (long long)texts.size());
}

BENCHMARK(BM_HTMLRender)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QTextDocument)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
