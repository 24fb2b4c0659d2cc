#include "base/Strings.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace {

struct TCasePair {
    std::uint16_t Upper;
    std::uint16_t Lower;
};

constexpr TCasePair CaseTable[] = {
#include "base/CaseTable.inc"
};

template <typename Pred> WideString TrimBy(WideView S, Pred Drop, bool Left, bool Right) {
    std::size_t b = 0, e = S.size();
    if (Left)
        while (b < e && Drop(S[b]))
            ++b;
    if (Right)
        while (e > b && Drop(S[e - 1]))
            --e;
    return WideString(S.substr(b, e - b));
}

bool BelowBlank(WideChar C) {
    return C < 33;
}
bool IsSpace(WideChar C) {
    return C == u' ';
}

} // namespace

WideString Trim(WideView S) {
    return TrimBy(S, BelowBlank, true, true);
}
WideString TrimLeft(WideView S) {
    return TrimBy(S, BelowBlank, true, false);
}
WideString TrimRight(WideView S) {
    return TrimBy(S, BelowBlank, false, true);
}
WideString TrimSpaces(WideView S) {
    return TrimBy(S, IsSpace, true, true);
}

WideChar LowerChar(WideChar C) {
    if (C < 0x80) return (C >= u'A' && C <= u'Z') ? WideChar(C + 32) : C;
    auto it = std::lower_bound(std::begin(CaseTable), std::end(CaseTable), C,
                               [](const TCasePair& P, WideChar V) { return P.Upper < V; });
    if (it != std::end(CaseTable) && it->Upper == C) return it->Lower;
    return C;
}

WideString WideLowerCase(WideView S) {
    WideString r(S);
    for (auto& c : r)
        c = LowerChar(c);
    return r;
}

namespace {
// The case pairs ordered by their lower form; among pairs of one lower form
// the table's order, by the upper form, is kept.
std::array<TCasePair, std::size(CaseTable)> ByLower() {
    std::array<TCasePair, std::size(CaseTable)> pairs{};
    std::copy(std::begin(CaseTable), std::end(CaseTable), pairs.begin());
    std::stable_sort(pairs.begin(), pairs.end(),
                     [](const TCasePair& A, const TCasePair& B) { return A.Lower < B.Lower; });
    return pairs;
}
} // namespace

WideChar UpperChar(WideChar C) {
    if (C < 0x80) return (C >= u'a' && C <= u'z') ? WideChar(C - 32) : C;
    static const auto byLower = ByLower();
    auto it = std::lower_bound(byLower.begin(), byLower.end(), C,
                               [](const TCasePair& P, WideChar V) { return P.Lower < V; });
    if (it != byLower.end() && it->Lower == C) return it->Upper;
    return C;
}

WideString WideUpperCase(WideView S) {
    WideString r(S);
    for (auto& c : r)
        c = UpperChar(c);
    return r;
}

std::size_t Pos(WideView Sub, WideView S, std::size_t Offset) {
    if (Offset < 1 || Sub.empty()) return 0;
    auto p = S.find(Sub, Offset - 1);
    return p == WideView::npos ? 0 : p + 1;
}

std::size_t Pos(WideChar C, WideView S, std::size_t Offset) {
    if (Offset < 1) return 0;
    auto p = S.find(C, Offset - 1);
    return p == WideView::npos ? 0 : p + 1;
}

std::size_t LastPos(WideView Sub, WideView S) {
    if (Sub.size() > S.size() || Sub.empty()) return 0;
    // Taking the first occurrence and deleting through it, repeatedly, ends on
    // the last occurrence that does not overlap the one before it.
    std::size_t found = 0, from = 0;
    for (;;) {
        auto p = S.find(Sub, from);
        if (p == WideView::npos) return found;
        found = p + 1;
        from = p + Sub.size();
    }
}

WideString ReplaceAll(WideView S, WideView From, WideView To) {
    WideString r;
    if (From.empty()) return WideString(S);
    r.reserve(S.size());
    std::size_t from = 0;
    for (;;) {
        auto p = S.find(From, from);
        if (p == WideView::npos) break;
        r.append(S.substr(from, p - from));
        r.append(To);
        from = p + From.size();
    }
    r.append(S.substr(from));
    return r;
}

int CompareZ(WideView A, WideView B) {
    std::size_t i = 0;
    for (;; ++i) {
        WideChar a = i < A.size() ? A[i] : 0;
        WideChar b = i < B.size() ? B[i] : 0;
        if (a != b) return a < b ? -1 : 1;
        if (a == 0) return 0;
    }
}

WideString WideFromAscii(std::string_view S) {
    WideString r;
    r.reserve(S.size());
    for (unsigned char c : S)
        r.push_back(c);
    return r;
}

std::string AsciiFromWide(WideView S) {
    std::string r;
    r.reserve(S.size());
    for (auto c : S)
        r.push_back(c < 128 ? char(c) : '?');
    return r;
}

WideString IntToWide(long long Value) {
    return WideFromAscii(std::to_string(Value));
}
