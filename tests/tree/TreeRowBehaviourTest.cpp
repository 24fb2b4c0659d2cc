// Rows whose height follows their content, the cell controls' mouse, the
// state change notice and what loading does to the view.

#include "ViewTestUtil.h"

#include "tree/WgCellStyle.h"

#include <string>

namespace {

// Markup as the tests parse it: the number of lines is all that counts.
struct TLines : TWgMarkupData {
    int Count = 1;
};

int LinesOf(const WideString& Text) {
    int lines = 1;
    for (std::size_t at = Text.find(u"<br>"); at != WideString::npos;
         at = Text.find(u"<br>", at + 1))
        ++lines;
    return lines;
}

// Wires a parser that counts its calls and a measure of 10 pixels a line
// that reads the parsed data when there is some.
struct TMarkupFixture : TViewFixture {
    int Parsed = 0;
    int MeasuredWithoutData = 0;
    TMarkupFixture() : TViewFixture(200, 200) {
        Tree.OnMarkupParse = [this](const WideString& Text) -> std::unique_ptr<TWgMarkupData> {
            ++Parsed;
            auto lines = std::make_unique<TLines>();
            lines->Count = LinesOf(Text);
            return lines;
        };
        Tree.OnMarkupMeasure = [this](const WideString& Text, TWgMarkupData* Data, int, bool) {
            if (auto* lines = dynamic_cast<TLines*>(Data)) return lines->Count * 10;
            ++MeasuredWithoutData;
            return LinesOf(Text) * 10;
        };
    }
};

} // namespace

TEST(TreeRowHeight, MarkupRowTakesTheHeightOfItsLayout) {
    TMarkupFixture f;
    f.Build({"plain", "marked", "after"});
    TWgTreeItem* marked = f.Item("marked");
    {
        TWgTreeLock lock(f.Tree);
        marked->SetIsHTML(true);
        marked->SetText(u"<html>one<br>two<br>three");
    }
    EXPECT_EQ(marked->GetHeight(), 30);
    EXPECT_EQ(f.MeasuredWithoutData, 0) << "the parsed markup is measured, not the text again";
    // The row below starts where the markup ends.
    const int lh = f.Tree.LineHeight();
    ASSERT_GT(lh, 10);
    EXPECT_EQ(f.View().GetItemRect(2).Top, lh + 30);
    // A markup shorter than a line keeps the line height; the same text in
    // a plain item is no markup at all.
    marked->SetText(u"<html>x");
    EXPECT_EQ(marked->GetHeight(), lh);
    TWgTreeItem* plain = f.Item("plain");
    plain->SetText(u"<html>a<br>b<br>c");
    EXPECT_EQ(plain->GetHeight(), lh);
}

TEST(TreeRowHeight, LoadingParsesTheMarkupOnceAtItsEnd) {
    std::vector<std::uint8_t> bytes;
    {
        TViewFixture source;
        source.Build({"first", "second"});
        source.Item("second")->SetIsHTML(true);
        source.Item("second")->SetText(u"<html>a<br>b");
        TMemoryStream out;
        source.Tree.Items().SaveToStream(out);
        bytes = out.Data();
    }
    TMarkupFixture f;
    f.Tree.SetLoading(true);
    TMemoryStream in(bytes);
    f.Tree.Items().LoadFromStream(in);
    TWgTreeItem* marked = f.Tree.Items().Item(1);
    ASSERT_TRUE(marked->IsHTML());
    EXPECT_EQ(f.Parsed, 0);
    f.Tree.Loaded();
    EXPECT_EQ(f.Parsed, 1);
    EXPECT_NE(marked->MainHtmlData(), nullptr);
    EXPECT_EQ(marked->GetHeight(), 20);
    int drawnWith = 0;
    f.Tree.OnMarkupDraw = [&](TCanvas&, const TRect&, const WideString&, TWgMarkupData* Data) {
        if (Data) ++drawnWith;
    };
    f.Paint();
    f.Paint();
    EXPECT_EQ(drawnWith, 2);
    EXPECT_EQ(f.Parsed, 1) << "painting does not parse again";
}

TEST(TreeRowHeight, TextChangeRemeasuresARowOfItsOwnHeight) {
    TViewFixture f(200, 200);
    f.Tree.SetAdjustMultilineHeight(false);
    f.Build({"one", "below"});
    TWgTreeItem* item = f.Item("one");
    {
        TWgTreeLock lock(f.Tree);
        item->SetOwnerHeight(false);
        item->SetMultiline(true);
    }
    const int single = item->GetHeight();
    item->SetText(u"one\r\ntwo\r\nthree");
    const int triple = item->GetHeight();
    EXPECT_GT(triple, single);
    EXPECT_EQ(f.View().GetItemRect(1).Top, triple) << "the rows below move with it";
    item->SetText(u"one");
    EXPECT_EQ(item->GetHeight(), single);
}

namespace {

// Two columns; the second cell of "row" carries a control that logs its mouse.
struct TControlFixture : TViewFixture {
    std::vector<std::string> Log;
    TWgTreeItem* Row = nullptr;
    TWgCellControl* Control = nullptr;

    TControlFixture() : TViewFixture(300, 100) {
        Tree.SetShowColumnsProp(true);
        Tree.Header().Sections().AddSection()->SetWidth(100);
        Tree.Header().Sections().AddSection()->SetWidth(100);
        Build({"row", "other"});
        Row = Item("row");
        Row->SetUseStyles(true);
        TWgCellStyle* style = Row->AddStyle();
        style->SetControl(std::make_unique<TWgCellControl>(style));
        Control = style->Control();
        auto at = [](const char* Name, int X, int Y) {
            return std::string(Name) + "(" + std::to_string(X) + "," + std::to_string(Y) + ")";
        };
        Control->OnMouseDown = [this, at](TWgCellControl&, TWgMouseButton, TWgShiftState S, int X,
                                          int Y) {
            Log.push_back(at("down", X, Y) + ((S & ssDouble) ? "double" : ""));
        };
        Control->OnMouseUp = [this, at](TWgCellControl&, TWgMouseButton, TWgShiftState, int X,
                                        int Y) { Log.push_back(at("up", X, Y)); };
        Control->OnMouseMove = [this, at](TWgCellControl&, TWgShiftState, int X, int Y) {
            Log.push_back(at("move", X, Y));
        };
        Control->OnClick = [this](TWgCellControl&) { Log.push_back("click"); };
        Control->OnDblClick = [this](TWgCellControl&) { Log.push_back("dblclick"); };
        Paint();
    }
};

} // namespace

TEST(TreeCellControl, TakesPressReleaseClickDoubleClickAndMoves) {
    TControlFixture f;
    const int lh = f.Tree.LineHeight();
    f.View().MouseMove(0, 130, 4, false);
    f.View().MouseDown(false, 0, 120, 5);
    f.View().MouseMove(0, 125, 6, true);
    f.View().MouseUp(false, 0, 125, 6);
    f.View().MouseDown(false, ssDouble, 120, 5);
    f.View().MouseUp(false, 0, 120, 5);
    f.View().DblClick(0, 120, 5);
    EXPECT_EQ(f.Log, (std::vector<std::string>{"move(30,4)", "down(20,5)", "move(25,6)", "up(25,6)",
                                               "click", "down(20,5)double", "up(20,5)", "click",
                                               "dblclick"}));
    EXPECT_EQ(f.Tree.FocusedItem(), nullptr) << "the control used the presses up";

    // A release outside the cell is no click; the control follows the mouse
    // while it holds the press, also over another row.
    f.Log.clear();
    f.View().MouseDown(false, 0, 120, 5);
    f.View().MouseMove(0, 50, lh + 3, true);
    f.View().MouseUp(false, 0, 50, lh + 3);
    EXPECT_EQ(f.Log, (std::vector<std::string>{"down(20,5)", "move(-50,3)", "up(-50,3)"}));

    // The row going while the control holds the press ends it quietly.
    f.Log.clear();
    f.View().MouseDown(false, 0, 120, 5);
    f.Tree.Items().Delete(f.Row);
    f.View().MouseUp(false, 0, 120, 5);
    EXPECT_EQ(f.Log, (std::vector<std::string>{"down(20,5)"}));
}

TEST(TreeCellControl, ADisabledControlLeavesTheMouseToTheRow) {
    TControlFixture f;
    f.Control->Enabled = false;
    f.View().MouseDown(false, 0, 120, 5);
    f.View().MouseUp(false, 0, 120, 5);
    f.View().DblClick(0, 120, 5);
    EXPECT_TRUE(f.Log.empty());
    EXPECT_EQ(f.Tree.FocusedItem(), f.Row);
}

TEST(TreeItemChange, StateChangesAreReported) {
    TViewFixture f;
    f.Build({"a", "  child"});
    std::vector<TItemChangeMode> modes;
    f.Tree.OnItemChange = [&](TWgTreeModel&, TWgTreeItem*, TItemChangeMode Mode) {
        modes.push_back(Mode);
    };
    TWgTreeItem* a = f.Item("a");
    a->SetState(stBold | stItalic);
    a->SetState(stBold | stItalic); // unchanged: no notice
    a->Expand(false);
    a->SetState(stBold);
    EXPECT_EQ(modes, (std::vector<TItemChangeMode>{icmState, icmState}));
    EXPECT_EQ(a->State(), stBold | stExpanded) << "the expanded bit follows Expanded alone";
}

TEST(TreeStreamView, LoadingNewRowsShowsThemFromTheFirst) {
    TViewFixture f(200, 100);
    std::vector<std::string> lines;
    for (int i = 0; i < 60; ++i)
        lines.push_back("row" + std::to_string(i));
    f.Build(lines);
    TMemoryStream out;
    f.Tree.Items().SaveToStream(out);
    f.View().SetVScroll(30);
    ASSERT_EQ(f.View().TopIndex(), 30);
    TMemoryStream in(out.Data());
    f.Tree.Items().LoadFromStream(in);
    EXPECT_EQ(f.View().TopIndex(), 0);
    EXPECT_EQ(f.View().VisibleList().front(), f.Tree.Items().Item(0));
}

TEST(TreeCellStyle, AColumnOfUseMainStyleTakesTheMainStyle) {
    TViewFixture f(300, 100);
    f.Tree.SetShowColumnsProp(true);
    f.Tree.Header().Sections().AddSection()->SetWidth(100);
    TWgHeaderSection* second = f.Tree.Header().Sections().AddSection();
    second->SetWidth(100);
    f.Build({"row"});
    TWgTreeItem* row = f.Item("row");
    row->ColumnText().Add(u"cell");
    row->SetUseStyles(true);
    row->GetMainStyle()->SetFontStyles(fsBold);
    row->AddStyle()->SetFontStyles(fsItalic);
    auto cellFont = [&f]() -> std::string {
        for (const std::string& op : f.Paint())
            if (op.find("\"cell\"") != std::string::npos) return op;
        return "not drawn";
    };
    EXPECT_NE(cellFont().find("/i "), std::string::npos) << cellFont();
    second->UseMainStyle = true;
    EXPECT_NE(cellFont().find("/b "), std::string::npos) << cellFont();
}
