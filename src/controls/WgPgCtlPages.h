#pragma once
// Page bookkeeping of the page controls, free of any window system: which
// tab number a page has when some tabs are hidden, and who takes over when
// the active page goes.

#include <vector>

// The tab number of page Active among the visible tabs. A page whose tab is
// hidden reads as the next visible tab after it, or else the one before it;
// -1 with no active page or no visible tab.
int TabIndexOfPage(const std::vector<bool>& TabVisible, int Active);
// The page of the Index-th visible tab, or -1.
int PageOfTabIndex(const std::vector<bool>& TabVisible, int Index);
// The page that takes over when page Removed of Count goes away while it is
// active, as an index among the remaining pages: the next one, wrapping
// round to the first; -1 when none remains.
int PageAfterRemoval(int Count, int Removed);
