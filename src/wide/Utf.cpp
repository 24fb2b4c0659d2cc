#include "wide/Utf.h"

namespace {

constexpr WideChar Replacement = 0xFFFD;

void AppendCodePoint(WideString& Out, std::uint32_t Cp) {
    if (Cp >= 0x10000) {
        Cp -= 0x10000;
        Out.push_back(WideChar(0xD800 + (Cp >> 10)));
        Out.push_back(WideChar(0xDC00 + (Cp & 0x3FF)));
    } else {
        Out.push_back(WideChar(Cp));
    }
}

} // namespace

WideString DecodeUtf8Lenient(std::string_view Bytes) {
    WideString out;
    DecodeUtf8LenientTo(Bytes, out);
    return out;
}

void DecodeUtf8LenientTo(std::string_view Bytes, WideString& out) {
    out.clear();
    out.reserve(Bytes.size());
    const auto* s = reinterpret_cast<const unsigned char*>(Bytes.data());
    const std::size_t n = Bytes.size();
    std::size_t i = 0;
    while (i < n) {
        unsigned char b = s[i];
        if (b < 0x80) {
            out.push_back(b);
            ++i;
            continue;
        }
        int need;
        std::uint32_t cp;
        unsigned char lo = 0x80, hi = 0xBF; // allowed range of the second byte
        if (b >= 0xC2 && b <= 0xDF) {
            need = 1;
            cp = b & 0x1F;
        } else if (b >= 0xE0 && b <= 0xEF) {
            need = 2;
            cp = b & 0x0F;
            if (b == 0xE0) lo = 0xA0; // surrogates (0xED 0xA0..0xBF) are let through on purpose
        } else if (b >= 0xF0 && b <= 0xF4) {
            need = 3;
            cp = b & 0x07;
            if (b == 0xF0) lo = 0x90;
            if (b == 0xF4) hi = 0x8F;
        } else {
            out.push_back(Replacement);
            ++i;
            continue;
        }
        std::size_t j = i + 1;
        int got = 0;
        while (got < need && j < n) {
            unsigned char c = s[j];
            unsigned char l = got == 0 ? lo : 0x80, h = got == 0 ? hi : 0xBF;
            if (c < l || c > h) break;
            cp = (cp << 6) | (c & 0x3F);
            ++j;
            ++got;
        }
        if (got == need)
            AppendCodePoint(out, cp);
        else
            out.push_back(Replacement); // one U+FFFD for the whole broken prefix
        i = j;
    }
}

std::string EncodeUtf8Lenient(std::u16string_view Text) {
    std::string out;
    out.reserve(Text.size());
    for (std::size_t i = 0; i < Text.size(); ++i) {
        std::uint32_t cp = Text[i];
        if (IsHighSurrogate(WideChar(cp)) && i + 1 < Text.size() && IsLowSurrogate(Text[i + 1])) {
            cp = 0x10000 + ((cp - 0xD800) << 10) + (Text[i + 1] - 0xDC00);
            ++i;
        }
        if (cp < 0x80) {
            out.push_back(char(cp));
        } else if (cp < 0x800) {
            out.push_back(char(0xC0 | (cp >> 6)));
            out.push_back(char(0x80 | (cp & 0x3F)));
        } else if (cp < 0x10000) {
            out.push_back(char(0xE0 | (cp >> 12)));
            out.push_back(char(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(char(0x80 | (cp & 0x3F)));
        } else {
            out.push_back(char(0xF0 | (cp >> 18)));
            out.push_back(char(0x80 | ((cp >> 12) & 0x3F)));
            out.push_back(char(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(char(0x80 | (cp & 0x3F)));
        }
    }
    return out;
}

WideString DecodeUtf16LE(std::string_view Bytes) {
    WideString out(Bytes.size() / 2, u'\0');
    const auto* s = reinterpret_cast<const unsigned char*>(Bytes.data());
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = WideChar(s[2 * i] | (s[2 * i + 1] << 8));
    return out;
}

std::string EncodeUtf16LE(std::u16string_view Text) {
    std::string out(Text.size() * 2, '\0');
    for (std::size_t i = 0; i < Text.size(); ++i) {
        out[2 * i] = char(Text[i] & 0xFF);
        out[2 * i + 1] = char(Text[i] >> 8);
    }
    return out;
}

void SwapUtf16(WideString& Text) {
    for (auto& c : Text)
        c = WideChar((c >> 8) | (c << 8));
}
