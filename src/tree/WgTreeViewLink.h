#pragma once
// What the item model asks of the view that shows it. The view keeps the
// stale marks, the list of rows on screen, the in-place editor and the
// markup renderer; the model only reports to it. A model without a view
// (loading tools, tests, benchmarks) simply skips these calls.

#include "base/Types.h"

#include <cstdint>
#include <memory>

class TWgTreeItem;

// Parsed markup of one text, owned by an item; releasing it is the
// renderer's business, done by its destructor.
class TWgMarkupData {
public:
    virtual ~TWgMarkupData() = default;
};

// Stale marks. The first four are the view's own, the rest the tree's.
enum TWgStaleMark : std::uint32_t {
    tsmClearVis = 0x01,         // the list of rows on screen must be rebuilt
    tsmClearAll = 0x02,         // the whole client area is to be repainted
    tsmVisUpdated = 0x04,       // the total count of visible rows must be recounted
    tsmRedrawMark = 0x08,       // something is to be repainted
    tsmUpdated = 0x10,          // scroll range and layout are to be updated
    tsmHRange = 0x20,           // forget the horizontal range (HRange := -1)
    tsmDelayedSort = 0x40,      // sort at the end of the update
    tsmColumnSizeUpdate = 0x80, // fit auto-sized columns at the end of the update
    tsmTopIndex = 0x100,        // forget the top index: the rows start at the first again
};
inline constexpr std::uint32_t tsmAll =
    tsmClearVis | tsmClearAll | tsmVisUpdated | tsmRedrawMark | tsmUpdated;

class TWgTreeViewLink {
public:
    virtual ~TWgTreeViewLink() = default;

    // The update lock went up, or down to Count; at 0 the view does its
    // deferred work (filter, line height, sort, scroll bars, repaint).
    virtual void UpdateBegun() = 0;
    virtual void UpdateEnded(int Count) = 0;
    virtual void MarkStale(std::uint32_t Marks) = 0;

    // An item is going: forget it as pending edit, pressed or tracked item,
    // and cancel an open in-place edit without writing back.
    virtual void ForgetItem(TWgTreeItem* Item) = 0;
    // Removes an item from the rows on screen (searching from the end).
    virtual void RemoveVisibleRow(TWgTreeItem* Item) = 0;
    virtual void ClearVisibleRows() = 0;

    // Repaints the row (Column -1) or one cell of it.
    virtual void InvalidateItem(TWgTreeItem* Item, int Column) = 0;
    // Recomputes the width of the widest row now.
    virtual void RecomputeHRange() = 0;
    // Fits one section to its content, or all auto-sized sections.
    virtual void AutoSizeSection(int SectionIndex) = 0;
    virtual void AutoSizeAllSections() = 0;
    // Sorts the children of Parent, and their children if Recursive.
    virtual void SortChildren(TWgTreeItem* Parent, bool Recursive) = 0;

    // Measuring: height of one cell of an item laid out in Width pixels
    // (Column -1 is the main cell), width of the main cell, client width.
    virtual int MeasureCellHeight(TWgTreeItem* Item, int Column, int Width) = 0;
    virtual int MeasureItemWidth(TWgTreeItem* Item) = 0;
    virtual int ClientWidth() = 0;

    // Parses a text that begins with "<html>" with the tree's defaults.
    virtual std::unique_ptr<TWgMarkupData> ParseMarkup(const WideString& Text) = 0;

    // Yes/no question to the user (the virtuality warning).
    virtual bool Confirm(const char* Text, const char* Title) = 0;
};
