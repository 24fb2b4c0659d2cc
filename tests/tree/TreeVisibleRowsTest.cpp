// The index of the rows on show against a walk of the children lists, made
// afresh after every change of a random tree: counts, rows by position,
// positions of rows, the largest top position and the keys that move the
// focus by it.

#include "TreeTestUtil.h"
#include "ViewTestUtil.h"

#include "base/Strings.h"
#include "tree/WgTreeErrors.h"

#include <random>

namespace {

// The rows on show by their definition: through expanded parents, without
// a hidden row or its subtree when the filter is on.
std::vector<TWgTreeItem*> WalkShownRows(TWgTreeModel& Tree) {
    std::vector<TWgTreeItem*> rows;
    auto visit = [&](auto& self, TWgTreeItem* Parent) -> void {
        for (int i = 0; i < Parent->ChildrenCount(); ++i) {
            TWgTreeItem* child = Parent->GetChild(i);
            if (Tree.FilteredVisibility() && child->Hidden()) continue;
            rows.push_back(child);
            if (child->Expanded()) self(self, child);
        }
    };
    visit(visit, Tree.Items().Root());
    return rows;
}

void ExpectIndexMatchesWalk(TCustomWgTree& Tree) {
    const std::vector<TWgTreeItem*> rows = WalkShownRows(Tree);
    ASSERT_EQ(Tree.TotalVisible(), int(rows.size()));
    for (int i = 0; i < int(rows.size()); ++i) {
        ASSERT_EQ(Tree.Items().ItemAsVis(i), rows[std::size_t(i)]) << "row " << i;
        ASSERT_EQ(rows[std::size_t(i)]->VisIndex(), i);
    }
    EXPECT_EQ(Tree.Items().ItemAsVis(int(rows.size())), nullptr);
    EXPECT_EQ(Tree.Items().ItemAsVis(-1), nullptr);
    for (int i = 0; i < Tree.Items().Count(); ++i) {
        TWgTreeItem* item = Tree.Items().Item(i);
        if (std::find(rows.begin(), rows.end(), item) == rows.end()) {
            ASSERT_EQ(item->VisIndex(), -1) << AsciiFromWide(item->Text());
        }
    }
    // Rows of one line each: the last top position shows the last row at the bottom.
    TWgTreeView& view = Tree.View();
    EXPECT_EQ(view.MaxTopIndex(), int(rows.size()) - view.GetVisiCount() + 1);
}

// What End, Home, Up and Down must reach from the focused row, by the walk.
void ExpectKeysFollowWalk(TCustomWgTree& Tree, std::mt19937& Rng) {
    std::vector<TWgTreeItem*> rows = WalkShownRows(Tree);
    std::erase_if(rows, [](TWgTreeItem* Item) { return !Item->Enabled(); });
    if (rows.empty()) return;
    TWgTreeItem* start = rows[Rng() % rows.size()];
    const auto at = std::find(rows.begin(), rows.end(), start) - rows.begin();
    struct Key {
        int Code;
        TWgTreeItem* Expected;
    };
    const Key keys[] = {
        {VK_END, rows.back()},
        {VK_HOME, rows.front()},
        {VK_DOWN, at + 1 < int(rows.size()) ? rows[std::size_t(at + 1)] : start},
        {VK_UP, at > 0 ? rows[std::size_t(at - 1)] : start},
    };
    for (const Key& key : keys) {
        Tree.SetFocusedItem(start);
        Tree.View().KeyDown(key.Code, 0);
        ASSERT_EQ(Tree.FocusedItem(), key.Expected) << "key " << key.Code;
        if (key.Expected == start) continue;
        // A row the focus moved to is on screen.
        const int index = key.Expected->VisIndex();
        EXPECT_GE(index, Tree.View().TopIndex());
        EXPECT_LT(index, Tree.View().TopIndex() + Tree.View().GetVisCount());
    }
}

void RunRandomTree(unsigned Seed, int Steps) {
    TViewFixture f(200, 170); // ten rows of 17 pixels
    TCustomWgTree& tree = f.Tree;
    tree.SetFilteredVisibility(Seed % 2 == 1);
    std::mt19937 rng(Seed);
    auto pick = [&]() -> TWgTreeItem* {
        const int n = tree.Items().Count();
        if (n == 0 || rng() % 8 == 0) return nullptr; // the root
        return tree.Items().Item(int(rng() % unsigned(n)));
    };
    int serial = 0;
    auto name = [&] {
        return WideFromAscii("r" + std::to_string(rng() % 1000) + "-" + std::to_string(++serial));
    };
    // A handler that asks for positions while a subtree is half deleted.
    tree.OnItemDeletion = [&](TWgTreeModel&, TWgTreeItem* Item) {
        if (rng() % 16 == 0) {
            const std::vector<TWgTreeItem*> rows = WalkShownRows(tree);
            const auto it = std::find(rows.begin(), rows.end(), Item);
            EXPECT_EQ(Item->VisIndex(), it == rows.end() ? -1 : int(it - rows.begin()));
            EXPECT_EQ(tree.TotalVisible(), int(rows.size()));
        }
    };
    for (int step = 0; step < Steps; ++step) {
        SCOPED_TRACE("seed " + std::to_string(Seed) + " step " + std::to_string(step));
        TWgTreeItems& items = tree.Items();
        TWgTreeItem* a = pick();
        TWgTreeItem* b = pick();
        switch (rng() % 16) {
        case 0:
        case 1:
            items.AddChild(a, name());
            break;
        case 2:
            items.AddChildFirst(a, name());
            break;
        case 3:
            items.Insert(a, name());
            break;
        case 4: {
            // A whole family at once, under the lock.
            TWgTreeLock lock(tree);
            TWgTreeItem* top = items.AddChild(a, name());
            for (int i = int(rng() % 6); i > 0; --i)
                items.AddChild(top, name())->SetExpanded(rng() % 2 == 0);
            top->Expand(false);
            break;
        }
        case 5:
            if (a) items.Delete(a); // often an expanded subtree
            break;
        case 6:
            if (a) {
                try {
                    a->MoveTo(b,
                              int(rng() % unsigned((b ? b : items.Root())->ChildrenCount() + 1)));
                } catch (const EWgTreeError&) {
                } catch (const EListError&) {
                }
            }
            break;
        case 7:
            if (a) a->SetExpanded(!a->Expanded());
            break;
        case 8:
            if (a) rng() % 2 ? a->Expand(true) : a->Collapse(true);
            break;
        case 9:
            if (a) a->SetHidden(!a->Hidden());
            break;
        case 10:
            if (rng() % 4 == 0) tree.SetFilteredVisibility(!tree.FilteredVisibility());
            break;
        case 11:
            tree.SortDir = rng() % 2 ? sdAscend : sdDescend;
            tree.Sort(rng() % 2 == 0);
            break;
        case 12:
            if (a) a->SetEnabled(!a->Enabled());
            break;
        case 13:
            // The raw flags, as painting and loading write them.
            if (a) a->SetFlagsRaw(a->Flags() ^ (rng() % 2 ? ifExpanded : ifHidden));
            break;
        case 14:
            if (a) a->MakeVisible();
            break;
        case 15:
            if (rng() % 30 == 0) items.Clear();
            break;
        }
        ExpectIndexMatchesWalk(tree);
        if (::testing::Test::HasFatalFailure()) return;
        if (step % 7 == 0) ExpectKeysFollowWalk(tree, rng);
        if (::testing::Test::HasFatalFailure()) return;
    }
    tree.OnItemDeletion = nullptr;
}

} // namespace

TEST(TreeVisibleRows, IndexFollowsEveryChangeOfARandomTree) {
    for (unsigned seed : {1u, 2u, 5u, 42u, 777u, 90001u})
        RunRandomTree(seed, 400);
}

TEST(TreeVisibleRows, ChangesInsideALockAreSeenByTheNextQuestion) {
    TViewFixture f;
    f.Build({"a", "  a1", "  a2", "b", "  b1", "c"});
    TWgTreeLock lock(f.Tree);
    EXPECT_EQ(f.Tree.TotalVisible(), 3);
    f.Item("a")->Expand(false);
    EXPECT_EQ(f.Item("b")->VisIndex(), 3);
    f.Tree.Items().Delete(f.Item("a1"));
    EXPECT_EQ(f.Item("b")->VisIndex(), 2);
    EXPECT_EQ(f.Tree.Items().ItemAsVis(1), f.Item("a2"));
    f.Item("b")->MoveTo(nullptr, 0);
    EXPECT_EQ(f.Tree.Items().ItemAsVis(0), f.Item("b"));
    EXPECT_EQ(f.Item("a2")->VisIndex(), 2);
    f.Tree.SetFilteredVisibility(true);
    f.Item("a")->SetHidden(true);
    EXPECT_EQ(f.Tree.TotalVisible(), 2);
    EXPECT_EQ(f.Item("a2")->VisIndex(), -1);
    EXPECT_EQ(f.Item("c")->VisIndex(), 1);
}

TEST(TreeVisibleRows, PagesAndTheLastRowOfAMillionRowsComeFromTheIndex) {
    // Big enough that a walk per key would show, small enough for a test.
    TViewFixture f(200, 170);
    {
        TWgTreeLock lock(f.Tree);
        TWgTreeItems& items = f.Tree.Items();
        for (int t = 0; t < 100; ++t) {
            TWgTreeItem* top = items.AddLastItem(nullptr);
            top->SetText(WideFromAscii("t" + std::to_string(t)));
            for (int c = 0; c < 999; ++c)
                items.AddLastItem(top)->SetText(WideFromAscii(std::to_string(t * 1000 + c)));
            top->Expand(false);
        }
    }
    EXPECT_EQ(f.Tree.TotalVisible(), 100000);
    f.View().KeyDown(VK_END, 0);
    EXPECT_EQ(f.Focused(), "99998");
    EXPECT_EQ(f.View().BottomIndex(), 100000 - 1);
    f.View().KeyDown(VK_PRIOR, 0);
    EXPECT_EQ(f.Tree.FocusedItem()->VisIndex(), 100000 - 1 - 9);
    f.View().KeyDown(VK_HOME, 0);
    EXPECT_EQ(f.Focused(), "t0");
    f.View().KeyDown(VK_NEXT, 0);
    EXPECT_EQ(f.Focused(), "8");
    f.Item("t0")->Collapse(false);
    EXPECT_EQ(f.Tree.TotalVisible(), 100000 - 999);
    EXPECT_EQ(f.Tree.Items().ItemAsVis(1)->Text(), u"t1");
}
