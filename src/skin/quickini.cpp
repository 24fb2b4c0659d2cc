#include "skin/quickini.h"

#include <algorithm>

AnsiString AnsiTrim(std::string_view S) {
    std::size_t b = 0, e = S.size();
    while (b < e && static_cast<unsigned char>(S[b]) < 33)
        ++b;
    while (e > b && static_cast<unsigned char>(S[e - 1]) < 33)
        --e;
    return AnsiString(S.substr(b, e - b));
}

AnsiString AnsiLower(std::string_view S) {
    AnsiString r(S);
    for (char& c : r)
        if (c >= 'A' && c <= 'Z') c = char(c - 'A' + 'a');
    return r;
}

AnsiString AnsiUpper(std::string_view S) {
    AnsiString r(S);
    for (char& c : r)
        if (c >= 'a' && c <= 'z') c = char(c - 'a' + 'A');
    return r;
}

bool AnsiSameText(std::string_view A, std::string_view B) {
    return A.size() == B.size() && AnsiLower(A) == AnsiLower(B);
}

std::int32_t StrToIntDef(std::string_view S, std::int32_t Default) {
    std::size_t i = 0;
    while (i < S.size() && S[i] == ' ')
        ++i;
    bool negative = false;
    if (i < S.size() && (S[i] == '+' || S[i] == '-')) negative = S[i++] == '-';
    if (i >= S.size()) return Default;
    std::uint64_t v = 0;
    if (S[i] == '$') {
        if (++i >= S.size()) return Default;
        for (; i < S.size(); ++i) {
            char c = S[i];
            int d = c >= '0' && c <= '9'   ? c - '0'
                    : c >= 'a' && c <= 'f' ? c - 'a' + 10
                    : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                           : -1;
            if (d < 0) return Default;
            v = v * 16 + unsigned(d);
            if (v > 0xFFFFFFFFull) return Default;
        }
        auto u = std::uint32_t(v);
        return std::int32_t(negative ? 0u - u : u);
    }
    for (; i < S.size(); ++i) {
        char c = S[i];
        if (c < '0' || c > '9') return Default;
        v = v * 10 + unsigned(c - '0');
        if (v > 0x80000000ull) return Default;
    }
    if (!negative && v > 0x7FFFFFFFull) return Default;
    return negative ? std::int32_t(0u - std::uint32_t(v)) : std::int32_t(v);
}

void TQuickIni::LoadFromStream(TStream* Stream) {
    if (!Stream) return;
    std::int64_t left = Stream->Size() - Stream->Position();
    AnsiString text;
    if (left > 0) {
        text.resize(std::size_t(left));
        text.resize(std::size_t(Stream->Read(text.data(), left)));
    }
    LoadFromString(text);
}

void TQuickIni::LoadFromString(const AnsiString& Text) {
    Lines.clear();
    Sections.clear();
    int index = 0;
    std::size_t p = 0;
    const std::size_t n = Text.size();
    while (p < n && Text[p] != '\0') {
        std::size_t start = p;
        while (p < n && Text[p] != '\0' && Text[p] != '\n' && Text[p] != '\r')
            ++p;
        AnsiString line = AnsiTrim(std::string_view(Text).substr(start, p - start));
        if (p < n && Text[p] == '\r') ++p;
        if (p < n && Text[p] == '\n') ++p;
        if (line.empty() || line[0] == ';') continue;
        Lines.push_back(line);
        if (IsSection(line)) Sections.emplace_back(line, index);
        ++index;
    }
}

void TQuickIni::ReadSections(std::vector<AnsiString>& List) const {
    List.clear();
    for (const auto& s : Sections)
        List.push_back(AnsiTrim(std::string_view(s.first).substr(1, s.first.size() - 2)));
}

bool TQuickIni::IsSection(const AnsiString& Line) {
    AnsiString t = AnsiTrim(Line);
    return !t.empty() && t.front() == '[' && t.back() == ']';
}

AnsiString TQuickIni::GetKey(const AnsiString& Line) {
    std::size_t eq = Line.find('=');
    if (eq == AnsiString::npos) return AnsiString();
    return AnsiLower(AnsiTrim(std::string_view(Line).substr(0, eq)));
}

AnsiString TQuickIni::GetValue(const AnsiString& Line, const AnsiString& Key) {
    if (Line.empty() || Key.empty()) return AnsiString();
    std::size_t eq = Line.find('=');
    if (eq == AnsiString::npos || GetKey(Line) != Key) return AnsiString();
    return AnsiTrim(std::string_view(Line).substr(eq + 1));
}

int TQuickIni::FindSection(const AnsiString& Name) const {
    AnsiString header = "[" + Name + "]";
    for (const auto& s : Sections)
        if (AnsiSameText(s.first, header)) return s.second;
    return -1;
}

AnsiString TQuickIni::ReadString(const AnsiString& Section, const AnsiString& Key,
                                 const AnsiString& Default) const {
    AnsiString result = Default;
    AnsiString key = AnsiLower(Key);
    if (Lines.empty()) return result;
    int header = FindSection(Section);
    if (header < 0) return result;
    for (std::size_t i = std::size_t(header) + 1; i < Lines.size(); ++i) {
        const AnsiString& line = Lines[i];
        if (IsSection(line)) break;
        if (GetKey(line) == key) {
            // The first line with the key decides, even with an empty value.
            AnsiString value = GetValue(line, key);
            if (!value.empty()) result = value;
            break;
        }
    }
    return result;
}

std::int32_t TQuickIni::ReadInteger(const AnsiString& Section, const AnsiString& Key,
                                    std::int32_t Default) const {
    AnsiString text = ReadString(Section, Key, AnsiString());
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X'))
        text.replace(0, 2, "$");
    return StrToIntDef(text, Default);
}
