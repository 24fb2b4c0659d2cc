#include "wide/CodePage.h"

#include "wide/Utf.h"

#include <array>
#include <cstdlib>
#include <string>
#include <vector>

#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <iconv.h>
#endif

namespace {

// A single-byte code page as a table of 256 code points and its inverse.
class TSingleByteCodePage final : public TCodePage {
public:
    TSingleByteCodePage(int Number, const std::array<WideChar, 256>& Table)
        : FNumber(Number), FToWide(Table), FToByte(0x10000, -1) {
        for (int b = 255; b >= 0; --b)
            FToByte[FToWide[std::size_t(b)]] = std::int16_t(b); // the lowest byte wins
        FSplitsOnBytes = FToWide[10] == 10 && FToWide[13] == 13;
        for (int b = 0; b < 0x80; ++b)
            if (FToByte[std::size_t(b)] != b) FAsciiIdentity = false;
        for (int b = 0; b < 256; ++b)
            if (b != 10 && b != 13 &&
                (FToWide[std::size_t(b)] == 10 || FToWide[std::size_t(b)] == 13))
                FSplitsOnBytes = false;
    }
    int Number() const override { return FNumber; }
    WideString Decode(std::string_view Bytes) const override {
        WideString out;
        DecodeTo(Bytes, out);
        return out;
    }
    void DecodeTo(std::string_view Bytes, WideString& Out) const override {
        Out.resize(Bytes.size());
        for (std::size_t i = 0; i < Bytes.size(); ++i)
            Out[i] = FToWide[std::uint8_t(Bytes[i])];
    }
    bool SplitsOnBytes() const override { return FSplitsOnBytes; }
    bool AsciiIdentity() const override { return FAsciiIdentity; }
    AnsiString Encode(std::u16string_view Text) const override {
        AnsiString out;
        EncodeAppend(Text, out);
        return out;
    }
    void EncodeAppend(std::u16string_view Text, AnsiString& Out) const override {
        const std::size_t base = Out.size();
        Out.resize(base + Text.size());
        char* dest = Out.data() + base;
        const WideChar* src = Text.data();
        const std::size_t size = Text.size();
        std::size_t n = 0;
        for (std::size_t i = 0; i < size; ++i) {
            if (FAsciiIdentity) {
                // The common case: a run of ASCII copies straight through.
                while (i < size && src[i] < 0x80)
                    dest[n++] = char(src[i++]);
                if (i == size) break;
            }
            const WideChar c = src[i];
            const std::int16_t b = FToByte[c];
            if (b >= 0) {
                dest[n++] = char(b);
                continue;
            }
            if (IsHighSurrogate(c) && i + 1 < size && IsLowSurrogate(src[i + 1]))
                ++i; // a pair stands for one character and gives one "?"
            dest[n++] = '?';
        }
        Out.resize(base + n);
    }

private:
    int FNumber;
    std::array<WideChar, 256> FToWide;
    std::vector<std::int16_t> FToByte; // byte for each UTF-16 unit, or -1
    bool FSplitsOnBytes = false;
    bool FAsciiIdentity = true;
};

std::array<WideChar, 256> Windows1252Table() {
    // 0x81, 0x8D, 0x8F, 0x90 and 0x9D are unassigned and map to themselves.
    static constexpr WideChar High[32] = {
        0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
        0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
    std::array<WideChar, 256> t{};
    for (int b = 0; b < 256; ++b)
        t[std::size_t(b)] = (b >= 0x80 && b < 0xA0) ? High[b - 0x80] : WideChar(b);
    return t;
}

class TUtf8CodePage final : public TCodePage {
public:
    int Number() const override { return 65001; }
    WideString Decode(std::string_view Bytes) const override { return DecodeUtf8Lenient(Bytes); }
    void DecodeTo(std::string_view Bytes, WideString& Out) const override {
        DecodeUtf8LenientTo(Bytes, Out);
    }
    bool SplitsOnBytes() const override { return true; }
    bool AsciiIdentity() const override { return true; }
    AnsiString Encode(std::u16string_view Text) const override {
        WideString clean(Text);
        for (std::size_t i = 0; i < clean.size(); ++i) {
            if (IsHighSurrogate(clean[i]) && i + 1 < clean.size() && IsLowSurrogate(clean[i + 1]))
                ++i;
            else if (IsHighSurrogate(clean[i]) || IsLowSurrogate(clean[i]))
                clean[i] = u'?';
        }
        return EncodeUtf8Lenient(clean);
    }
};

#ifdef _WIN32

class TWindowsCodePage final : public TCodePage {
public:
    explicit TWindowsCodePage(UINT Number) : FNumber(Number) {}
    int Number() const override { return int(FNumber); }
    WideString Decode(std::string_view Bytes) const override {
        if (Bytes.empty()) return {};
        int n = MultiByteToWideChar(FNumber, 0, Bytes.data(), int(Bytes.size()), nullptr, 0);
        std::wstring w(std::size_t(n), L'\0');
        MultiByteToWideChar(FNumber, 0, Bytes.data(), int(Bytes.size()), w.data(), n);
        return WideString(w.begin(), w.end());
    }
    AnsiString Encode(std::u16string_view Text) const override {
        // The system gives a "?" for each half of a pair that the code page
        // lacks; a pair is one character and gives one "?".
        AnsiString out;
        std::size_t start = 0;
        for (std::size_t i = 0; i + 1 < Text.size(); ++i) {
            if (!IsHighSurrogate(Text[i]) || !IsLowSurrogate(Text[i + 1])) continue;
            out += Convert(Text.substr(start, i - start));
            bool missing = false;
            const AnsiString pair = Convert(Text.substr(i, 2), &missing);
            out += missing ? AnsiString("?") : pair;
            start = ++i + 1;
        }
        return out + Convert(Text.substr(start));
    }

private:
    AnsiString Convert(std::u16string_view Text, bool* Missing = nullptr) const {
        if (Text.empty()) return {};
        const std::wstring w(Text.begin(), Text.end());
        const DWORD flags = WC_NO_BEST_FIT_CHARS;
        BOOL usedDefault = FALSE;
        // The code pages of the UTF and GB18030 families have every character
        // and refuse the question.
        const bool ask = Missing && FNumber != 54936 && FNumber != 65000 && FNumber != 65001;
        int n = WideCharToMultiByte(FNumber, flags, w.data(), int(w.size()), nullptr, 0, "?",
                                    ask ? &usedDefault : nullptr);
        AnsiString out(std::size_t(n > 0 ? n : 0), '\0');
        if (n > 0)
            WideCharToMultiByte(FNumber, flags, w.data(), int(w.size()), out.data(), n, "?",
                                nullptr);
        if (Missing) *Missing = ask && usedDefault;
        return out;
    }

    UINT FNumber;
};

#else

std::string IconvName(int Number) {
    return "CP" + std::to_string(Number);
}

// Converts Bytes with an open descriptor; false when any input is invalid or
// incomplete.
bool IconvAll(iconv_t Cd, std::string_view Bytes, std::string& Out) {
    iconv(Cd, nullptr, nullptr, nullptr, nullptr);
    Out.assign(Bytes.size() * 4 + 16, '\0');
    char* in = const_cast<char*>(Bytes.data());
    std::size_t inLeft = Bytes.size();
    char* out = Out.data();
    std::size_t outLeft = Out.size();
    if (iconv(Cd, &in, &inLeft, &out, &outLeft) == std::size_t(-1)) return false;
    if (iconv(Cd, nullptr, nullptr, &out, &outLeft) == std::size_t(-1)) return false;
    Out.resize(Out.size() - outLeft);
    return inLeft == 0;
}

// A multi-byte code page through iconv, converting one sequence at a time so
// that a bad byte costs only itself (one U+FFFD).
class TIconvCodePage final : public TCodePage {
public:
    TIconvCodePage(int Number, iconv_t ToWide, iconv_t ToNarrow)
        : FNumber(Number), FToWide(ToWide), FToNarrow(ToNarrow) {}
    ~TIconvCodePage() override {
        iconv_close(FToWide);
        iconv_close(FToNarrow);
    }
    int Number() const override { return FNumber; }
    WideString Decode(std::string_view Bytes) const override {
        WideString out;
        std::string units;
        std::size_t i = 0;
        while (i < Bytes.size()) {
            std::size_t len = 1;
            for (; len <= 4 && i + len <= Bytes.size(); ++len)
                if (IconvAll(FToWide, Bytes.substr(i, len), units)) break;
            if (len > 4 || i + len > Bytes.size()) {
                out.push_back(0xFFFD);
                ++i;
                continue;
            }
            out += DecodeUtf16LE(units);
            i += len;
        }
        return out;
    }
    AnsiString Encode(std::u16string_view Text) const override {
        AnsiString out;
        std::string bytes;
        for (std::size_t i = 0; i < Text.size(); ++i) {
            std::size_t len = 1;
            if (IsHighSurrogate(Text[i]) && i + 1 < Text.size() && IsLowSurrogate(Text[i + 1]))
                len = 2;
            if (IconvAll(FToNarrow, EncodeUtf16LE(Text.substr(i, len)), bytes))
                out += bytes;
            else
                out.push_back('?');
            i += len - 1;
        }
        return out;
    }

private:
    int FNumber;
    iconv_t FToWide, FToNarrow;
};

std::unique_ptr<TCodePage> CreateIconvCodePage(int Number) {
    iconv_t toWide = iconv_open("UTF-16LE", IconvName(Number).c_str());
    if (toWide == iconv_t(-1)) return nullptr;
    iconv_t toNarrow = iconv_open(IconvName(Number).c_str(), "UTF-16LE");
    if (toNarrow == iconv_t(-1)) {
        iconv_close(toWide);
        return nullptr;
    }
    // Single-byte when every byte converts alone to one unit.
    std::array<WideChar, 256> table{};
    bool singleByte = true;
    std::string units;
    for (int b = 0; b < 256; ++b) {
        char c = char(b);
        if (IconvAll(toWide, std::string_view(&c, 1), units) && units.size() == 2) {
            table[std::size_t(b)] = DecodeUtf16LE(units)[0];
        } else if (b >= 0x80) {
            // Unassigned bytes map to the code point of the same value.
            table[std::size_t(b)] = WideChar(b);
            char probe[2] = {c, 'A'};
            if (IconvAll(toWide, std::string_view(probe, 2), units))
                singleByte = false; // a lead byte
        } else {
            singleByte = false;
        }
    }
    if (singleByte) {
        iconv_close(toWide);
        iconv_close(toNarrow);
        return std::make_unique<TSingleByteCodePage>(Number, table);
    }
    return std::make_unique<TIconvCodePage>(Number, toWide, toNarrow);
}

#endif

std::unique_ptr<TCodePage> ChooseSystemCodePage() {
#ifdef _WIN32
    if (GetACP() != 1252) return std::make_unique<TWindowsCodePage>(GetACP());
#else
    if (const char* env = std::getenv("LEXSMITH_CODEPAGE"); env && *env) {
        char* end = nullptr;
        long number = std::strtol(env, &end, 10);
        if (end && *end == '\0' && number > 0 && number != 1252)
            if (auto page = CreateCodePage(int(number))) return page;
    }
#endif
    return CreateCodePage(1252);
}

} // namespace

std::unique_ptr<TCodePage> CreateCodePage(int Number) {
    if (Number == 1252) return std::make_unique<TSingleByteCodePage>(1252, Windows1252Table());
    if (Number == 65001) return std::make_unique<TUtf8CodePage>();
#ifdef _WIN32
    if (IsValidCodePage(UINT(Number))) return std::make_unique<TWindowsCodePage>(UINT(Number));
    return nullptr;
#else
    return CreateIconvCodePage(Number);
#endif
}

const TCodePage& SystemCodePage() {
    static const std::unique_ptr<TCodePage> page = ChooseSystemCodePage();
    return *page;
}

WideString AnsiToWide(std::string_view Bytes) {
    return SystemCodePage().Decode(Bytes);
}
AnsiString WideToAnsi(std::u16string_view Text) {
    return SystemCodePage().Encode(Text);
}
