#include "Json.h"

#include "wide/Utf.h"

#include <cstdio>

std::string JsonString(const WideString& Text) {
    std::string out = "\"";
    auto escape = [&out](unsigned unit) {
        char buf[8];
        std::snprintf(buf, sizeof buf, "\\u%04x", unit);
        out += buf;
    };
    for (std::size_t i = 0; i < Text.size(); ++i) {
        const WideChar c = Text[i];
        switch (c) {
        case u'"':
            out += "\\\"";
            continue;
        case u'\\':
            out += "\\\\";
            continue;
        case u'\n':
            out += "\\n";
            continue;
        case u'\r':
            out += "\\r";
            continue;
        case u'\t':
            out += "\\t";
            continue;
        default:
            break;
        }
        if (c < 0x20) {
            escape(c);
        } else if (IsHighSurrogate(c) && i + 1 < Text.size() && IsLowSurrogate(Text[i + 1])) {
            out += EncodeUtf8Lenient(Text.substr(i, 2));
            ++i;
        } else if (IsHighSurrogate(c) || IsLowSurrogate(c)) {
            escape(c); // a lone half has no UTF-8 form; keep it visible
        } else {
            out += EncodeUtf8Lenient(Text.substr(i, 1));
        }
    }
    out += '"';
    return out;
}
