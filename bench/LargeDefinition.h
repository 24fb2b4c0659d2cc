#pragma once
// A large generated syntax definition shared by the benchmarks: 200,000
// keywords in 100 groups plus 5,000 completion entries, about 3 MB of
// narrow text with CR LF line ends. The same text on every run.

#include <string>

inline std::string MakeDefinition() {
    std::string text = "{ Large generated definition }\r\n[Options]\r\n"
                       "  LineCommentA = \"//\"\r\n  CaseSensitive = \"Yes\"\r\n[End]\r\n";
    unsigned seed = 12345;
    auto word = [&seed](int Length) {
        std::string w;
        for (int i = 0; i < Length; ++i) {
            seed = seed * 1103515245u + 12345u;
            w += char('a' + (seed >> 16) % 26);
        }
        return w;
    };
    for (int g = 0; g < 100; ++g) {
        text += "\r\n[Keywords]\r\n>Group " + std::to_string(g) + "\r\n\r\n";
        for (int k = 0; k < 2000; ++k)
            text += "  " + word(4 + k % 8) + "\r\n";
        text += "\r\n[End]\r\n";
    }
    text += "\r\n[AutoComplete]\r\n";
    for (int m = 0; m < 50; ++m) {
        text += "\r\n  \"" + word(6) + ".\"\r\n";
        for (int e = 0; e < 100; ++e) {
            std::string name = word(5 + e % 6);
            text += "    ->\"" + name + "\" | \"" + name + "(" + word(3) + ", " + word(4) +
                    ")\" + f\r\n";
        }
    }
    text += "\r\n[End]\r\n";
    return text;
}
