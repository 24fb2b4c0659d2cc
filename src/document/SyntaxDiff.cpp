#include "document/SyntaxDiff.h"

#include "base/Strings.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace {

const char16_t* const BlockKeys[5] = {u"BlockName", u"BlockOnLine", u"BlockAsString",
                                      u"BlockStart", u"BlockEnd"};
const char16_t* const FoldKeys[5] = {u"Fold_Id", u"Fold_Begin", u"Fold_End", u"Fold_Section",
                                     u"Fold_NoParentOfId"};

// Above this many cells the line lists are compared as sets of lines.
constexpr std::size_t LcsLimit = 4'000'000;

WideString Q(WideView S) {
    return u"\"" + ReplaceAll(S, u"\r\n", u"\\n") + u"\"";
}

void Options(const TSyntaxDocument& A, const TSyntaxDocument& B, std::vector<WideString>& Out) {
    for (int i = 0; i < SyntaxOptionCount; ++i) {
        const WideString& a = A.Options->Ref(i);
        const WideString& b = B.Options->Ref(i);
        if (a == b) continue;
        const WideString key = WideFromAscii(SyntaxOptionKeys[std::size_t(i)]);
        if (a.empty())
            Out.push_back(u"+ " + key + u" = " + Q(b));
        else if (b.empty())
            Out.push_back(u"- " + key + u" = " + Q(a));
        else
            Out.push_back(u"~ " + key + u": " + Q(a) + u" -> " + Q(b));
    }
}

// Records matched by their first field (name or id); the n-th record of a
// name in A goes with the n-th of that name in B.
void Records(const TWgWideStringList& A, const TWgWideStringList& B, const char16_t* const Keys[5],
             const char16_t* Noun, std::vector<WideString>& Out) {
    auto records = [](const TWgWideStringList& L) {
        std::vector<int> starts;
        for (int i = 0; i + 4 < L.Count(); i += 5)
            starts.push_back(i);
        return starts;
    };
    const std::vector<int> ra = records(A), rb = records(B);
    std::unordered_map<WideString, std::vector<int>> byName;
    for (auto it = rb.rbegin(); it != rb.rend(); ++it)
        byName[B.Ref(*it)].push_back(*it);
    std::unordered_set<int> matched;
    for (int a : ra) {
        auto found = byName.find(A.Ref(a));
        if (found == byName.end() || found->second.empty()) {
            Out.push_back(u"- " + WideString(Noun) + u" " + Q(A.Ref(a)));
            continue;
        }
        const int b = found->second.back();
        found->second.pop_back();
        matched.insert(b);
        for (int f = 1; f < 5; ++f)
            if (A.Ref(a + f) != B.Ref(b + f))
                Out.push_back(u"~ " + WideString(Noun) + u" " + Q(A.Ref(a)) + u": " + Keys[f] +
                              u" " + Q(A.Ref(a + f)) + u" -> " + Q(B.Ref(b + f)));
    }
    for (int b : rb)
        if (!matched.count(b)) Out.push_back(u"+ " + WideString(Noun) + u" " + Q(B.Ref(b)));
}

// Lines added and removed, in order, by the longest common run of lines.
void Lines(const TWgWideStringList& A, const TWgWideStringList& B, const char16_t* Noun,
           std::vector<WideString>& Out) {
    const std::size_t n = std::size_t(A.Count()), m = std::size_t(B.Count());
    std::size_t head = 0;
    while (head < n && head < m && A.Ref(int(head)) == B.Ref(int(head)))
        ++head;
    std::size_t tail = 0;
    while (tail < n - head && tail < m - head &&
           A.Ref(int(n - 1 - tail)) == B.Ref(int(m - 1 - tail)))
        ++tail;
    const std::size_t na = n - head - tail, nb = m - head - tail;
    auto a = [&](std::size_t i) -> const WideString& { return A.Ref(int(head + i)); };
    auto b = [&](std::size_t j) -> const WideString& { return B.Ref(int(head + j)); };
    auto line = [&](char16_t Sign, std::size_t Index, const WideString& Text) {
        return WideString(1, Sign) + u" " + Noun + u" " + IntToWide(static_cast<long long>(Index) + 1) +
               u": " + Q(Text);
    };
    if ((na + 1) * (nb + 1) > LcsLimit) {
        std::unordered_set<WideString> inA, inB;
        for (std::size_t i = 0; i < na; ++i)
            inA.insert(a(i));
        for (std::size_t j = 0; j < nb; ++j)
            inB.insert(b(j));
        for (std::size_t i = 0; i < na; ++i)
            if (!inB.count(a(i))) Out.push_back(line(u'-', head + i, a(i)));
        for (std::size_t j = 0; j < nb; ++j)
            if (!inA.count(b(j))) Out.push_back(line(u'+', head + j, b(j)));
        return;
    }
    std::vector<std::vector<std::uint32_t>> lcs(na + 1, std::vector<std::uint32_t>(nb + 1, 0));
    for (std::size_t i = na; i-- > 0;)
        for (std::size_t j = nb; j-- > 0;)
            lcs[i][j] = a(i) == b(j) ? lcs[i + 1][j + 1] + 1 : std::max(lcs[i + 1][j], lcs[i][j + 1]);
    std::size_t i = 0, j = 0;
    while (i < na || j < nb) {
        if (i < na && j < nb && a(i) == b(j)) {
            ++i;
            ++j;
        } else if (j < nb && (i == na || lcs[i][j + 1] > lcs[i + 1][j])) {
            Out.push_back(line(u'+', head + j, b(j)));
            ++j;
        } else {
            Out.push_back(line(u'-', head + i, a(i)));
            ++i;
        }
    }
}

WideString ItemShown(const TWgWideStringList& Items, int J, bool WithKind) {
    WideString s = Q(TMenuList::ItemLeft(Items.Ref(J)));
    const WideString text = TMenuList::ItemRight(Items.Ref(J));
    if (!text.empty()) s += u" | " + Q(text);
    if (WithKind) s += u" + " + WideString(1, KindIndexToLetter(int(Items.GetObject(J))));
    return s;
}

// Menus matched by name; items by name within a menu.
void Menus(const TMenuList& A, const TMenuList& B, const char16_t* Noun, bool WithKind,
           std::vector<WideString>& Out) {
    std::unordered_map<WideString, int> inB;
    for (int m = B.MenuCount(); m-- > 0;)
        inB[B.MenuName(m)] = m;
    std::unordered_set<int> matched;
    for (int ma = 0; ma < A.MenuCount(); ++ma) {
        const WideString name = A.MenuName(ma);
        auto found = inB.find(name);
        if (found == inB.end() || matched.count(found->second)) {
            Out.push_back(u"- " + WideString(Noun) + u" " + Q(name) + u" (" +
                          IntToWide(A.Menu(ma)->Items->Count()) + u" items)");
            continue;
        }
        const int mb = found->second;
        matched.insert(mb);
        const TWgWideStringList& ia = *A.Menu(ma)->Items;
        const TWgWideStringList& ib = *B.Menu(mb)->Items;
        // The n-th item of a name in A goes with the n-th of that name in B.
        std::unordered_map<WideString, std::vector<int>> itemsB;
        for (int j = ib.Count(); j-- > 0;)
            itemsB[TMenuList::ItemLeft(ib.Ref(j))].push_back(j);
        std::unordered_set<int> seen;
        const WideString where = u" in " + WideString(Noun) + u" " + Q(name);
        for (int j = 0; j < ia.Count(); ++j) {
            auto hit = itemsB.find(TMenuList::ItemLeft(ia.Ref(j)));
            if (hit == itemsB.end() || hit->second.empty()) {
                Out.push_back(u"- " + ItemShown(ia, j, WithKind) + where);
                continue;
            }
            const int k = hit->second.back();
            hit->second.pop_back();
            seen.insert(k);
            if (ia.Ref(j) != ib.Ref(k) || ia.GetObject(j) != ib.GetObject(k))
                Out.push_back(u"~ " + ItemShown(ia, j, WithKind) + u" -> " +
                              ItemShown(ib, k, WithKind) + where);
        }
        for (int j = 0; j < ib.Count(); ++j)
            if (!seen.count(j)) Out.push_back(u"+ " + ItemShown(ib, j, WithKind) + where);
    }
    for (int mb = 0; mb < B.MenuCount(); ++mb)
        if (!matched.count(mb))
            Out.push_back(u"+ " + WideString(Noun) + u" " + Q(B.MenuName(mb)) + u" (" +
                          IntToWide(B.Menu(mb)->Items->Count()) + u" items)");
}

} // namespace

std::vector<TSyntaxDiffSection> DiffSyntaxDocuments(const TSyntaxDocument& A,
                                                    const TSyntaxDocument& B) {
    std::vector<TSyntaxDiffSection> out;
    auto section = [&](const char* Name, auto&& Fill) {
        TSyntaxDiffSection s{Name, {}};
        Fill(s.Changes);
        if (!s.Changes.empty()) out.push_back(std::move(s));
    };
    section("Header", [&](auto& C) { Lines(*A.Header, *B.Header, u"banner line", C); });
    section("Options", [&](auto& C) { Options(A, B, C); });
    section("Blocks", [&](auto& C) { Records(*A.Blocks, *B.Blocks, BlockKeys, u"block", C); });
    section("Folds", [&](auto& C) { Records(*A.Folds, *B.Folds, FoldKeys, u"fold", C); });
    section("Tags", [&](auto& C) { Menus(*A.Tags, *B.Tags, u"group", false, C); });
    section("Keywords", [&](auto& C) { Menus(*A.Keywords, *B.Keywords, u"group", false, C); });
    section("AutoHint", [&](auto& C) { Lines(*A.AutoHint, *B.AutoHint, u"hint", C); });
    section("UserMenu", [&](auto& C) { Menus(*A.UserMenu, *B.UserMenu, u"menu", true, C); });
    section("AutoComplete",
            [&](auto& C) { Menus(*A.AutoComplete, *B.AutoComplete, u"menu", true, C); });
    section("TagComplete",
            [&](auto& C) { Menus(*A.TagComplete, *B.TagComplete, u"menu", true, C); });
    section("Sample", [&](auto& C) { Lines(*A.Sample, *B.Sample, u"line", C); });
    return out;
}
