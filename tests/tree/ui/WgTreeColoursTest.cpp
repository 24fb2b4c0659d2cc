// The tree's header and border colours: the defaults keep the system look,
// and each colour reaches the pixels it is meant for.

#include "base/ui/Colors.h"
#include "tree/ui/WgTree.h"

#include <QScrollBar>

#include <gtest/gtest.h>

namespace {

const QString Forms = QStringLiteral(LEXSMITH_RESOURCES "/forms/");

void SetBorderColours(TWgTree& Tree) {
    Tree.SetBorderColorShadow(0x000001);
    Tree.SetBorderColorHighlight(0x000002);
    Tree.SetBorderColorDkShadow(0x000003);
    Tree.SetBorderColorFace(0x000004);
    Tree.SetBorderColorWindow(0x000005);
}

} // namespace

TEST(WgTreeColours, BorderLinesTakeTheirColours) {
    const struct {
        bool Flat, Coloured;
        // Top left, bottom right, top right, then one pixel inside top left and bottom right.
        TColor Outer, OuterEnd, OuterTopRight, Inner, InnerEnd;
    } cases[] = {
        {true, false, clBtnShadow, clBtnShadow, clBtnShadow, clNone, clNone},
        {true, true, 0x000001, 0x000001, 0x000001, clNone, clNone},
        {false, false, clBtnShadow, clBtnHighlight, clBtnHighlight, cl3DDkShadow, clBtnFace},
        {false, true, 0x000001, 0x000002, 0x000002, 0x000003, 0x000004},
    };
    for (const auto& c : cases) {
        TWgTree tree;
        tree.SetShowColumns(false);
        tree.SetFlat(c.Flat);
        if (c.Coloured) SetBorderColours(tree);
        tree.resize(60, 40);
        const QImage shot = tree.grab().toImage();
        SCOPED_TRACE(testing::Message() << "flat " << c.Flat << " coloured " << c.Coloured);
        EXPECT_EQ(shot.pixelColor(0, 0), ToQColor(c.Outer));
        EXPECT_EQ(shot.pixelColor(59, 39), ToQColor(c.OuterEnd));
        EXPECT_EQ(shot.pixelColor(59, 0), ToQColor(c.OuterTopRight));
        if (c.Inner == clNone) continue; // the flat border is one line
        EXPECT_EQ(shot.pixelColor(1, 1), ToQColor(c.Inner));
        EXPECT_EQ(shot.pixelColor(58, 38), ToQColor(c.InnerEnd));
    }
}

TEST(WgTreeColours, HeaderAndFreeSpaceTakeTheirColours) {
    TWgTree tree;
    ASSERT_TRUE(tree.LoadSectionsFile(Forms + "WgTree1.HeaderSections.Data"));
    ASSERT_TRUE(tree.LoadItemsFile(Forms + "WgTree1.Items.Data"));
    tree.SetShowColumns(true);
    tree.SetHeaderHeight(17);
    tree.SetLineHeight(15);
    tree.resize(600, 120); // wider than the sections, lower than the rows
    tree.SyncScrollBars();
    ASSERT_TRUE(tree.VScrollBar()->isVisibleTo(&tree));
    SetBorderColours(tree);
    tree.SetHeaderColor(0x0000FF);
    const QImage shot = tree.grab().toImage();
    // Right of the last section the header shows its own colour.
    EXPECT_EQ(shot.pixelColor(560, 8), QColor(Qt::red));
    // Beside the header, above the vertical scroll bar, nothing covers the tree.
    EXPECT_EQ(shot.pixelColor(590, 8), ToQColor(0x000005));
}
