#include "controls/WgPgCtlPages.h"

int TabIndexOfPage(const std::vector<bool>& TabVisible, int Active) {
    const int n = int(TabVisible.size());
    if (Active < 0 || Active >= n) return -1;
    int before = 0;
    for (int i = 0; i < Active; ++i)
        if (TabVisible[std::size_t(i)]) ++before;
    if (TabVisible[std::size_t(Active)]) return before;
    for (int i = Active + 1; i < n; ++i)
        if (TabVisible[std::size_t(i)]) return before;
    return before > 0 ? before - 1 : -1;
}

int PageOfTabIndex(const std::vector<bool>& TabVisible, int Index) {
    if (Index < 0) return -1;
    for (int i = 0; i < int(TabVisible.size()); ++i)
        if (TabVisible[std::size_t(i)] && Index-- == 0) return i;
    return -1;
}

int PageAfterRemoval(int Count, int Removed) {
    const int remaining = Count - 1;
    if (remaining <= 0 || Removed < 0 || Removed >= Count) return -1;
    return Removed < remaining ? Removed : 0;
}
