#include "TreeTestUtil.h"

#include "base/Strings.h"
#include "tree/WgTreeErrors.h"

#include <random>

namespace {

// Random adds, inserts, moves and deletes; the invariants hold after each.
void RunRandomSequence(unsigned Seed, int Steps) {
    TWgTreeModel tree;
    tree.SetMultiSelect(true);
    // Odd seeds delete under a visibility filter, which walks the flat list
    // in the middle of a subtree deletion.
    tree.SetFilteredVisibility(Seed % 2 == 1);
    tree.OnApplyVisFilter = [](TWgTreeModel&, TWgTreeItem*, bool&) {};
    std::mt19937 rng(Seed);
    auto pick = [&]() -> TWgTreeItem* {
        const int n = tree.Items().Count();
        if (n == 0 || rng() % 8 == 0) return nullptr; // the root
        return tree.Items().Item(int(rng() % unsigned(n)));
    };
    int serial = 0;
    auto name = [&] { return IntToWide(++serial); };
    for (int step = 0; step < Steps; ++step) {
        SCOPED_TRACE("seed " + std::to_string(Seed) + " step " + std::to_string(step));
        TWgTreeItems& items = tree.Items();
        const unsigned op = rng() % 14;
        TWgTreeItem* a = pick();
        TWgTreeItem* b = pick();
        switch (op) {
        case 0:
            items.AddChild(a, name());
            break;
        case 1:
            items.AddChildFirst(a, name());
            break;
        case 2:
            items.Add(a, name());
            break;
        case 3:
            items.AddFirst(a, name());
            break;
        case 4:
            items.Insert(a, name());
            break;
        case 5:
            items.InsertAfter(a, name());
            break;
        case 6: {
            // The fast path takes only a parent on the path to the last item.
            TWgTreeItem* last = items.Item(items.Count() - 1);
            std::vector<TWgTreeItem*> chain;
            for (TWgTreeItem* p = last; p; p = p->Parent())
                chain.push_back(p);
            chain.push_back(nullptr);
            items.AddLastItem(chain[rng() % chain.size()])->SetText(name());
            break;
        }
        case 7:
        case 8:
            if (a) items.Delete(a);
            break;
        case 9:
            if (a) {
                TWgTreeItem* parent = b ? b : items.Root();
                const int count = parent->ChildrenCount();
                const int index = int(rng() % unsigned(count + 1));
                try {
                    a->MoveTo(b, index);
                    EXPECT_FALSE(parent->IsUnder(a) && parent != a);
                } catch (const EWgTreeError& e) {
                    EXPECT_TRUE(parent->IsUnder(a));
                    EXPECT_STREQ(e.what(), "Can't move Item to one of its subitems.");
                } catch (const EListError&) {
                    // the index can lie one past the end after our own removal
                }
            }
            break;
        case 10:
            if (a) {
                try {
                    a->MoveToIns(b, int(rng() % 5));
                } catch (const EWgTreeError&) {
                }
            }
            break;
        case 11:
            if (a) a->SetSelected(!a->Selected());
            if (b) b->SetFocused(true);
            break;
        case 12:
            if (a) a->SetHidden(!a->Hidden());
            if (b) b->SetExpanded(!b->Expanded());
            break;
        case 13:
            if (rng() % 20 == 0) items.Clear();
            break;
        }
        CheckTreeInvariants(tree);
        if (::testing::Test::HasFatalFailure()) return;
        TWgTreeItem* focused = tree.FocusedItem();
        if (focused) {
            ASSERT_GE(focused->AbsoluteIndex(), 0);
        }
    }
}

} // namespace

TEST(TreeInvariants, RandomSequencesKeepFlatListAndChildrenInStep) {
    for (unsigned seed : {1u, 2u, 3u, 17u, 1234u, 99991u})
        RunRandomSequence(seed, 600);
}

TEST(TreeInvariants, SubtreeDeletionRemovesTheWholeRangeAndFiresInOrder) {
    TWgTreeModel tree;
    TRecordingView view;
    tree.SetView(&view);
    auto& items = tree.Items();
    TWgTreeItem* a = items.AddChild(nullptr, u"a");
    TWgTreeItem* b = items.AddChild(a, u"b");
    items.AddChild(b, u"c");
    items.AddChild(a, u"d");
    items.AddChild(nullptr, u"e");
    std::vector<std::string> deleted;
    tree.OnItemDeletion = [&](TWgTreeModel&, TWgTreeItem* item) {
        deleted.push_back(TRecordingView::Name(item));
    };
    view.Log.clear();
    items.Delete(a);
    // Children go last first, each before its parent.
    EXPECT_EQ(deleted, (std::vector<std::string>{"d", "c", "b", "a"}));
    EXPECT_EQ(Texts(tree), "e");
    EXPECT_TRUE(view.Has("forget c"));
    EXPECT_TRUE(view.Has("unlist a"));
    EXPECT_EQ(view.Log.back(), "end-update");
    EXPECT_EQ(view.Locks, 0);
    CheckTreeInvariants(tree);
    tree.OnItemDeletion = nullptr;
}
