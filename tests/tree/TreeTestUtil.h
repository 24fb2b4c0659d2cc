#pragma once
// Helpers of the tree tests: an invariant check and a recording view.

#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"
#include "tree/WgTreeModel.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// Checks the flat list against a walk of the children lists, the parent
// links, the selection list and the hidden count.
inline void CheckTreeInvariants(TWgTreeModel& Tree) {
    std::vector<TWgTreeItem*> walk;
    int hidden = 0;
    TWgTreeItem* root = Tree.Items().Root();
    ASSERT_EQ(root->ParentItem(), nullptr);
    ASSERT_EQ(root->Level(), -1);
    std::vector<TWgTreeItem*> stack{root};
    auto visit = [&](auto& self, TWgTreeItem* item) -> void {
        if (item->Children()) {
            ASSERT_GT(item->Children()->Count(), 0) << "an empty children list must not exist";
        }
        for (int i = 0; i < item->ChildrenCount(); ++i) {
            TWgTreeItem* child = item->GetChild(i);
            ASSERT_EQ(child->ParentItem(), item);
            walk.push_back(child);
            hidden += child->Hidden();
            self(self, child);
        }
    };
    visit(visit, root);
    const auto& all = Tree.AllList();
    ASSERT_EQ(all.Count(), int(walk.size()));
    for (int i = 0; i < all.Count(); ++i) {
        ASSERT_EQ(all.At(i), walk[std::size_t(i)]) << "at " << i;
        ASSERT_EQ(walk[std::size_t(i)]->AbsoluteIndex(), i);
    }
    EXPECT_EQ(Tree.HiddenCount(), hidden);
    if (auto* selected = Tree.SelectedList()) {
        int flagged = 0;
        for (TWgTreeItem* item : walk)
            flagged += item->Selected();
        EXPECT_EQ(selected->Count(), flagged);
        for (TWgTreeItem* item : selected->Items())
            EXPECT_TRUE(item->Selected());
    }
}

// A view that records what the model asks of it.
class TRecordingView : public TWgTreeViewLink {
public:
    std::vector<std::string> Log;
    std::uint32_t Marks = 0;
    int Locks = 0;
    bool Answer = true;

    void UpdateBegun() override { ++Locks; }
    void UpdateEnded(int Count) override {
        --Locks;
        if (Count == 0) Log.push_back("end-update");
    }
    void MarkStale(std::uint32_t M) override { Marks |= M; }
    void ForgetItem(TWgTreeItem* Item) override { Log.push_back("forget " + Name(Item)); }
    void RemoveVisibleRow(TWgTreeItem* Item) override { Log.push_back("unlist " + Name(Item)); }
    void ClearVisibleRows() override { Log.push_back("clear-rows"); }
    void InvalidateItem(TWgTreeItem* Item, int Column) override {
        Log.push_back("paint " + Name(Item) + " " + std::to_string(Column));
    }
    void RecomputeHRange() override { Log.push_back("hrange"); }
    void AutoSizeSection(int Index) override { Log.push_back("fit " + std::to_string(Index)); }
    void AutoSizeAllSections() override { Log.push_back("fit-all"); }
    void SortChildren(TWgTreeItem* Parent, bool Recursive) override {
        Log.push_back("sort " + Name(Parent) + (Recursive ? " rec" : ""));
    }
    int MeasureCellHeight(TWgTreeItem*, int Column, int Width) override {
        Log.push_back("measure " + std::to_string(Column) + " " + std::to_string(Width));
        return 20 + Column;
    }
    int MeasureItemWidth(TWgTreeItem*) override { return 50; }
    int ClientWidth() override { return 300; }
    std::unique_ptr<TWgMarkupData> ParseMarkup(const WideString&) override {
        ++Parsed;
        return std::make_unique<TWgMarkupData>();
    }
    bool Confirm(const char*, const char*) override { return Answer; }

    int Parsed = 0;
    static std::string Name(TWgTreeItem* Item) {
        if (!Item) return "none";
        std::string s;
        for (char16_t c : Item->Text())
            s += char(c);
        return s.empty() ? "root" : s;
    }
    bool Has(const std::string& Entry) const {
        for (auto& e : Log)
            if (e == Entry) return true;
        return false;
    }
};

inline std::string Texts(TWgTreeModel& Tree) {
    std::string s;
    for (int i = 0; i < Tree.Items().Count(); ++i) {
        if (i) s += ' ';
        s += TRecordingView::Name(Tree.Items().Item(i));
    }
    return s;
}
