#include "TreeTestUtil.h"

#include "tree/WgHeaderModel.h"
#include "tree/WgTreeErrors.h"

namespace {
struct TSmallTree {
    TWgTreeModel Tree;
    TWgTreeItem *A, *A1, *A2, *A3, *B, *B1;
    TSmallTree() {
        auto& items = Tree.Items();
        A = items.AddChild(nullptr, u"A");
        A1 = items.AddChild(A, u"A1");
        A2 = items.AddChild(A, u"A2");
        A3 = items.AddChild(A, u"A3");
        B = items.AddChild(nullptr, u"B");
        B1 = items.AddChild(B, u"B1");
    }
};
} // namespace

TEST(TreeItems, NewItemsAndTheRoot) {
    TWgTreeModel tree;
    TWgTreeItem* root = tree.Items().Root();
    EXPECT_EQ(root->Flags(), 0x02108000u);
    EXPECT_EQ(root->StaticDataEx(), nullptr);
    EXPECT_NE(root->StaticData(), nullptr);
    TWgTreeItem* item = tree.Items().AddChild(nullptr, u"x");
    EXPECT_EQ(item->Flags(), 0x00108000u);
    EXPECT_EQ(item->HeightWord(), 0x0000FFFFu);
    EXPECT_EQ(item->StaticFlags(), 0x00068683u);
    EXPECT_EQ(item->ImageIndex(), -1);
    EXPECT_EQ(item->StaticDataEx()->BorderSpaceColor, 0xFF000005u);
    EXPECT_EQ(item->ColumnTextCount(), 0);
    EXPECT_EQ(item->Children(), nullptr);
    EXPECT_EQ(item->Level(), 0);
    EXPECT_EQ(item->Parent(), nullptr);
    EXPECT_EQ(item->ParentItem(), root);
    EXPECT_TRUE(item->AllowEdit());
    EXPECT_EQ(item->ColumnTextAt(5), u"");
}

TEST(TreeItems, AddAndInsertPlaceItemsInDepthFirstOrder) {
    TSmallTree t;
    auto& items = t.Tree.Items();
    items.AddChildFirst(t.A, u"A0");
    items.Insert(t.A2, u"A1b");
    items.InsertAfter(t.A3, u"A4");
    items.AddFirst(t.B, u"Z");
    items.Add(t.B1, u"B2");
    items.Insert(nullptr, u"first");
    EXPECT_EQ(Texts(t.Tree), "first Z A A0 A1 A1b A2 A3 A4 B B1 B2");
    CheckTreeInvariants(t.Tree);
    EXPECT_EQ(t.A3->Index(), 4);
    EXPECT_EQ(t.A->LastSubItem()->Text(), u"A4");
    EXPECT_EQ(t.A->SubCount(), 6);
    EXPECT_EQ(t.A2->GetPrev()->Text(), u"A1b");
    EXPECT_EQ(t.B->GetPrevSibling(), t.A);

    try {
        items.InsertItem(3, t.B);
        FAIL();
    } catch (const EWgTreeError& e) {
        EXPECT_STREQ(e.what(), "WgTree item index out of bounds.");
    }
    EXPECT_EQ(items.Count(), 12);
    EXPECT_EQ(items.Item(12), nullptr);
    EXPECT_EQ(items.Item(-1), nullptr);
}

TEST(TreeItems, AllocateStorageKeepsItsMask) {
    TWgTreeModel tree;
    struct {
        int Count, Capacity;
    } cases[] = {{1, 256}, {2049, 2304}, {1000000, 1000192}};
    for (auto c : cases) {
        TWgTreeModel t;
        t.Items().AllocateStorage(c.Count);
        EXPECT_EQ(t.AllList().Capacity(), c.Capacity) << c.Count;
    }
    tree.Items().AllocateStorage(5000);
    const int capacity = tree.AllList().Capacity();
    tree.Items().AllocateStorage(10);
    EXPECT_EQ(tree.AllList().Capacity(), capacity);
}

TEST(TreeItems, DeletingMovesFocusAndAnchor) {
    TSmallTree t;
    auto& tree = t.Tree;
    int focusEvents = 0;
    tree.OnItemFocused = [&](TWgTreeModel&) { ++focusEvents; };
    t.A2->SetFocused(true);
    tree.SetSelAnchor(t.A2);
    focusEvents = 0;
    tree.Items().Delete(t.A2); // next sibling
    EXPECT_EQ(tree.FocusedItem(), t.A3);
    EXPECT_EQ(tree.SelAnchor(), t.A3);
    EXPECT_TRUE(t.A3->Focused());
    EXPECT_EQ(focusEvents, 1);
    tree.Items().Delete(t.A3); // last sibling: the previous one
    EXPECT_EQ(tree.FocusedItem(), t.A1);
    tree.Items().Delete(t.A1); // an only child: the parent
    EXPECT_EQ(tree.FocusedItem(), t.A);
    EXPECT_EQ(t.A->Children(), nullptr);
    EXPECT_EQ(t.A->GetFirstChild(), nullptr);
    tree.Items().Delete(t.B);
    tree.Items().Delete(t.A); // an only top-level row: none
    EXPECT_EQ(tree.FocusedItem(), nullptr);
    EXPECT_EQ(tree.SelAnchor(), nullptr);
}

TEST(TreeItems, FocusInsideADeletedSubtreeFiresOnce) {
    TSmallTree t;
    int focusEvents = 0;
    t.Tree.OnItemFocused = [&](TWgTreeModel&) { ++focusEvents; };
    t.A2->SetFocused(true);
    focusEvents = 0;
    t.Tree.Items().Delete(t.A);
    EXPECT_EQ(t.Tree.FocusedItem(), t.B);
    // Once for the moves among the children, once for A's own.
    EXPECT_EQ(focusEvents, 2);
}

TEST(TreeItems, MovingKeepsOrderAndExtendsByOneSlot) {
    TSmallTree t;
    const std::string before = Texts(t.Tree);
    t.A2->MoveTo(t.A, 1); // its own place
    EXPECT_EQ(Texts(t.Tree), before);
    t.A->MoveTo(nullptr, 2); // past the last row: the extension
    EXPECT_EQ(Texts(t.Tree), "B B1 A A1 A2 A3");
    t.A->MoveTo(t.A, 0); // onto itself: nothing
    EXPECT_THROW(t.A->MoveTo(t.A2, 0), EWgTreeError);
    t.B1->MoveToIns(t.A2, 4); // before A2
    EXPECT_EQ(Texts(t.Tree), "B A A1 B1 A2 A3");
    EXPECT_EQ(t.B->Children(), nullptr);
    t.A1->MoveToIns(t.A3, 4); // before a later sibling
    EXPECT_EQ(Texts(t.Tree), "B A B1 A2 A1 A3");
    t.A3->MoveToIns(t.B, 3); // first child of B
    t.B1->MoveToIns(t.B, 2); // last child of B
    EXPECT_EQ(Texts(t.Tree), "B A3 B1 A A2 A1");
    t.A->MoveToIns(nullptr, 1);
    EXPECT_EQ(Texts(t.Tree), "A A2 A1 B A3 B1");
    t.A->MoveToIns(t.B, 0); // last among B's siblings
    EXPECT_EQ(Texts(t.Tree), "B A3 B1 A A2 A1");
    try {
        t.A->MoveToIns(nullptr, 0);
        FAIL();
    } catch (const EWgTreeError& e) {
        EXPECT_STREQ(e.what(), "WgTree item not specified");
    }
    CheckTreeInvariants(t.Tree);
}

TEST(TreeItems, ExpandCollapseEventsAndRefusal) {
    TSmallTree t;
    auto& tree = t.Tree;
    TRecordingView view;
    tree.SetView(&view);
    std::vector<std::string> events;
    bool allow = false;
    tree.OnItemExpanding = [&](TWgTreeModel&, TWgTreeItem* i, bool& can) {
        events.push_back("expanding " + TRecordingView::Name(i));
        can = allow;
    };
    tree.OnItemExpand = [&](TWgTreeModel&, TWgTreeItem* i) {
        events.push_back("expand " + TRecordingView::Name(i));
    };
    tree.OnItemCollapse = [&](TWgTreeModel&, TWgTreeItem* i) {
        events.push_back("collapse " + TRecordingView::Name(i));
    };
    t.A->Expand(false);
    EXPECT_FALSE(t.A->Expanded());
    allow = true;
    view.Marks = 0;
    t.A->SetExpanded(true);
    EXPECT_TRUE(t.A->Expanded());
    EXPECT_EQ(t.A->State() & stExpanded, stExpanded);
    EXPECT_EQ(view.Marks & (tsmVisUpdated | tsmClearVis), tsmVisUpdated | tsmClearVis);
    t.A->SetExpanded(true); // already: nothing
    t.A->Collapse(false);
    EXPECT_EQ(events,
              (std::vector<std::string>{"expanding A", "expanding A", "expand A", "collapse A"}));
    // Visible rows skip collapsed subtrees.
    t.B->Expand(false);
    EXPECT_EQ(tree.TotalVisible(), 3); // A's children are not reachable
    EXPECT_EQ(tree.Items().ItemAsVis(1), t.B);
    EXPECT_EQ(t.B1->VisIndex(), 2);
    EXPECT_EQ(t.A2->VisIndex(), -1);
    t.A2->MakeVisible();
    EXPECT_TRUE(t.A->Expanded());
    EXPECT_EQ(tree.TotalVisible(), 6);
}

TEST(TreeItems, CollapseMovesFocusAndDeselectsChildren) {
    TSmallTree t;
    auto& tree = t.Tree;
    tree.SetMultiSelect(true);
    tree.SetMoveFocusOnCollapse(true);
    tree.SetDeselectChildrenOnCollapse(true);
    t.A->Expand(false);
    t.A2->SetFocused(true);
    t.A2->SetSelected(true);
    t.A3->SetSelected(true);
    t.B->SetSelected(true);
    t.A->Collapse(false);
    EXPECT_EQ(tree.FocusedItem(), t.A);
    EXPECT_FALSE(t.A2->Selected());
    EXPECT_FALSE(t.A3->Selected());
    EXPECT_TRUE(t.B->Selected());
    CheckTreeInvariants(tree);
}

TEST(TreeItems, TextChangesNotifyAndSortOrMarkDelayed) {
    TSmallTree t;
    auto& tree = t.Tree;
    TRecordingView view;
    tree.SetView(&view);
    std::vector<TItemChangeMode> changes;
    tree.OnItemChange = [&](TWgTreeModel&, TWgTreeItem*, TItemChangeMode m) {
        changes.push_back(m);
    };
    tree.SetSortMode(smAdd);
    int sortEvents = 0;
    tree.OnSortBegin = [&](TWgTreeModel&) { ++sortEvents; };
    t.A2->SetText(u"Q");
    EXPECT_TRUE(view.Has("sort A"));
    EXPECT_EQ(sortEvents, 1);
    EXPECT_TRUE(view.Has("paint Q -1"));
    view.Marks = 0;
    tree.BeginUpdate();
    t.A2->SetText(u"R");
    EXPECT_EQ(view.Marks & tsmDelayedSort, tsmDelayedSort);
    tree.EndUpdate();
    EXPECT_EQ(sortEvents, 1);
    t.A2->ColumnText().Add(u"v");
    EXPECT_EQ(changes, (std::vector<TItemChangeMode>{icmText, icmText, icmColumnText}));
}

TEST(TreeItems, HtmlTextsAndHeights) {
    TWgTreeModel tree;
    TRecordingView view;
    tree.SetView(&view);
    tree.SetLineHeight(15);
    TWgTreeItem* item = tree.Items().AddChild(nullptr, u"<html>");
    EXPECT_EQ(item->MainHtmlData(), nullptr); // not an HTML item: plain text
    EXPECT_EQ(item->GetHeight(), 15);
    item->SetIsHTML(true);
    EXPECT_EQ(tree.TotalVarHeightCount(), 1);
    EXPECT_NE(item->MainHtmlData(), nullptr);
    EXPECT_EQ(item->GetHeight(), 19); // measured once, for the client width
    view.Log.clear();
    EXPECT_EQ(item->GetHeight(), 19);
    EXPECT_TRUE(view.Log.empty());
    item->SetText(u"<HTML>x"); // not the exact tag
    EXPECT_EQ(item->MainHtmlData(), nullptr);
    EXPECT_EQ(item->HeightWord() & 0xFFFF, 0xFFFFu);

    TWgTreeItem* fixed = tree.Items().AddChild(nullptr, u"f");
    fixed->SetOwnerHeight(false);
    fixed->SetFixedHeight(33);
    EXPECT_EQ(fixed->GetHeight(), 33);
    EXPECT_EQ(tree.TotalVarHeightCount(), 2);
    tree.Items().Delete(item);
    tree.Items().Delete(fixed);
    EXPECT_EQ(tree.TotalVarHeightCount(), 0);
}

TEST(TreeItems, HeightWithColumnsTakesTheTallestSection) {
    TWgTreeModel tree;
    TRecordingView view;
    TWgHeaderModel header;
    header.Sections().AddSection()->SetWidth(80);
    header.Sections().AddSection()->SetWidth(60);
    tree.SetView(&view);
    tree.SetHeaderSections(&header.Sections());
    tree.SetShowColumns(true);
    TWgTreeItem* item = tree.Items().AddChild(nullptr, u"m");
    item->SetMultiline(true);
    view.Log.clear();
    EXPECT_EQ(item->GetHeight(), 21);
    EXPECT_EQ(view.Log, (std::vector<std::string>{"measure 0 80", "measure 1 60"}));
    item->SetWholeLine(true);
    view.Log.clear();
    EXPECT_EQ(item->GetHeight(), 19);
    EXPECT_EQ(view.Log, (std::vector<std::string>{"measure -1 140"}));
}

TEST(TreeItems, RadioButtonsUncheckTheirSiblings) {
    TSmallTree t;
    t.A1->SetCheckBoxType(ectRadioButton);
    t.A2->SetCheckBoxType(ectRadioButton);
    t.A3->SetCheckBoxType(ectCheckBox);
    t.A1->SetChecked(true);
    t.A3->SetChecked(true);
    t.A2->SetChecked(true);
    EXPECT_FALSE(t.A1->Checked());
    EXPECT_TRUE(t.A2->Checked());
    EXPECT_TRUE(t.A3->Checked());
}

TEST(TreeItems, AssignCopiesValuesAndChildren) {
    TSmallTree t;
    t.A->SetTag(7);
    t.A->SetHint(u"hint");
    t.A->ColumnText().Add(u"c0");
    t.A->SetUseStyles(true);
    t.A->AddStyle()->SetTextColor(0x123);
    t.A->SetFocused(true);
    t.A->SetIsHTML(true);
    t.B->Assign(*t.A);
    EXPECT_EQ(t.B->Text(), u"A");
    EXPECT_EQ(t.B->Tag(), 7);
    EXPECT_EQ(t.B->Hint(), u"hint");
    EXPECT_EQ(t.B->ColumnTextAt(0), u"c0");
    EXPECT_EQ(t.B->GetStyles(0)->TextColor(), 0x123u);
    EXPECT_FALSE(t.B->Focused());
    EXPECT_TRUE(t.B->IsHTML());
    EXPECT_EQ(Texts(t.Tree), "A A1 A2 A3 A A1 A2 A3");
    t.A->Assign(*t.A2); // a descendant as the source
    EXPECT_EQ(Texts(t.Tree), "A2 A A1 A2 A3");
    CheckTreeInvariants(t.Tree);
}

TEST(TreeItems, IterateSkipsCollapsedAndHiddenAndStops) {
    TSmallTree t;
    auto& tree = t.Tree;
    t.B->Expand(false);
    std::string walk;
    auto proc = [&](TWgTreeItem* item, int index, bool& go, void*, TWgTreeModel*) {
        walk += TRecordingView::Name(item) + ":" + std::to_string(index) + " ";
        go = item != t.B1;
    };
    tree.Iterate(true, false, proc, nullptr);
    EXPECT_EQ(walk, "A:0 B:1 B1:2 ");
    walk.clear();
    tree.Iterate(false, true, proc, nullptr);
    EXPECT_EQ(walk, "A:0 A1:1 A2:2 A3:3 B:4 B1:5 ");
    walk.clear();
    tree.IterateBack(true, false, proc, nullptr);
    EXPECT_EQ(walk, "B1:0 ");
    walk.clear();
    tree.IterateBackFrom(true, true, proc, nullptr, t.A3);
    EXPECT_EQ(walk, "A3:0 A2:1 A1:2 A:3 ");
    tree.SetFilteredVisibility(true);
    t.B->SetHidden(true);
    walk.clear();
    tree.IterateFrom(true, true, proc, nullptr, t.A2);
    EXPECT_EQ(walk, "A2:0 A3:1 ");
}

TEST(TreeItems, ClearEmptiesTreeAndSelection) {
    TSmallTree t;
    TRecordingView view;
    t.Tree.SetView(&view);
    t.Tree.SetMultiSelect(true);
    t.A1->SetSelected(true);
    t.B->SetFocused(true);
    t.Tree.Items().Clear();
    EXPECT_EQ(t.Tree.Items().Count(), 0);
    EXPECT_EQ(t.Tree.SelectedList()->Count(), 0);
    EXPECT_EQ(t.Tree.FocusedItem(), nullptr);
    EXPECT_TRUE(view.Has("clear-rows"));
    EXPECT_EQ(view.Marks & tsmHRange, tsmHRange);
}

TEST(TreeItems, VirtualityLevelAsksAndClears) {
    TSmallTree t;
    TRecordingView view;
    t.Tree.SetView(&view);
    view.Answer = false;
    t.Tree.SetVirtualityLevel(vlAllProps);
    EXPECT_EQ(t.Tree.VirtualityLevel(), vlNone);
    EXPECT_EQ(t.Tree.Items().Count(), 6);
    view.Answer = true;
    t.Tree.SetVirtualityLevel(vlTextAndStyles);
    EXPECT_EQ(t.Tree.Items().Count(), 0);
    t.Tree.OnVirtualTextNeeded = [](TWgTreeModel&, TWgTreeItem*, int, WideString& text) {
        text = u"virtual";
    };
    TWgTreeItem* item = t.Tree.Items().AddChild(nullptr, u"ignored");
    EXPECT_EQ(item->StaticData(), nullptr);
    EXPECT_NE(item->StaticDataEx(), nullptr);
    EXPECT_EQ(item->Text(), u"virtual");
}
