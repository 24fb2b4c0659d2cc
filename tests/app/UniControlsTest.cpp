// The wide controls, the dialogs driven without a modal loop, the item text
// rules, the kind mappings, help, and the drawing of one kind row.

#include "controls/ui/UniControls.h"
#include "app/AddKeywordsDialog.h"
#include "app/KindIcons.h"
#include "app/SynFormPages.h"
#include "app/UserMenuDialog.h"
#include "app/about.h"
#include "app/hh.h"
#include "base/Exceptions.h"
#include "base/ui/QtCanvas.h"
#include "base/ui/Tag.h"
#include "support/RecordingCanvas.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

using Rows = std::vector<WideString>;

TEST(UniListBox, ReadingOutsideTheRowsRaisesTheIndexError) {
    TUniListBox box;
    box.Items().Add(u"a");
    for (int index : {-1, 1}) {
        try {
            box.Items().Strings(index);
            FAIL() << index;
        } catch (const EStringListError& e) {
            EXPECT_EQ(e.Message(), "List index out of bounds (" + std::to_string(index) + ")");
        }
    }
}

TEST(UniListBox, DeletingTheSelectedRowLeavesNoSelection) {
    TUniListBox box;
    for (const char16_t* s : {u"a", u"b", u"c"})
        box.Items().Add(s);
    EXPECT_EQ(box.ItemIndex(), -1);
    box.SetItemIndex(2);
    box.Items().Delete(0); // another row: the selection moves with its row
    EXPECT_EQ(box.ItemIndex(), 1);
    box.Items().Delete(1);
    EXPECT_EQ(box.ItemIndex(), -1);
    box.SetItemIndex(5);
    EXPECT_EQ(box.ItemIndex(), -1);
    EXPECT_EQ(TagOf(&box), 0);
    SetTag(&box, 99);
    EXPECT_EQ(box.Tag(), 99); // the declared property, found by name
}

TEST(UniMemo, LinesSplitOnLineFeedsWithoutATrailingEmptyLine) {
    const std::pair<const char16_t*, Rows> table[] = {
        {u"", {}},
        {u"a", {u"a"}},
        {u"a\r\n", {u"a"}},
        {u"a\r\n\r\n", {u"a", u""}},
        {u"\r\n", {u""}},
        {u"a\rb\r\nc", {u"a", u"b", u"c"}},
        {u"x\u00A0y", {u"x\u00A0y"}}, // a no-break space stays one
    };
    TUniMemo memo;
    for (const auto& [text, lines] : table) {
        memo.SetText(text);
        EXPECT_EQ(memo.Lines().ToVector(), lines);
    }
}

TEST(UniMemo, AddEndsEachLineAndFiresOnePerChange) {
    TUniMemo memo;
    int changes = 0;
    memo.OnChange = [&](QObject* Sender) {
        EXPECT_EQ(Sender, &memo);
        ++changes;
    };
    memo.SetText(u"x");
    memo.Lines().Add(u"y");
    memo.Lines().Add(u"");
    EXPECT_EQ(memo.Text(), u"x\r\ny\r\n\r\n");
    EXPECT_EQ(memo.Lines().ToVector(), (Rows{u"x", u"y", u""}));
    EXPECT_EQ(changes, 3);
}

TEST(UniEdit, KeyDownGivesTheClassicKeyNumber) {
    TUniEdit edit;
    std::vector<int> keys;
    edit.OnKeyDown = [&](QObject*, int& Key, Qt::KeyboardModifiers) {
        keys.push_back(Key);
        if (Key == 'B') Key = 0; // swallowed
    };
    QTest::keyClick(&edit, Qt::Key_A);
    QTest::keyClick(&edit, Qt::Key_B);
    QTest::keyClick(&edit, Qt::Key_Return);
    QTest::keyClick(&edit, Qt::Key_Escape);
    EXPECT_EQ(keys, (std::vector<int>{'A', 'B', 13, 27}));
    EXPECT_EQ(edit.Text(), u"a");
}

TEST(ItemText, EscapeAndUnescape) {
    const std::pair<const char16_t*, const char16_t*> escape[] = {
        {u"plain", u"plain"},     {u"say \"hi\"", u"say \\\"hi\\\""},
        {u"a\r\nb", u"a\u000Cb"}, {u"a\nb\r", u"a\nb\r"}, // only the pair is a line break
        {u"\\\"", u"\\\\\""}, // an escaped quote gains one more backslash
    };
    for (const auto& [memo, stored] : escape)
        EXPECT_EQ(EscapeItemText(memo), stored) << int(std::u16string(memo).size());
    const std::pair<const char16_t*, const char16_t*> unescape[] = {
        {u"say \\\"hi\\\"", u"say \"hi\""},
        {u"a\u000Cb", u"a\r\nb"},
        {u"a\r\nb", u"a\r\nb"}, // real line breaks from a file stay
        {u"a\\b", u"a\\b"},
    };
    for (const auto& [stored, memo] : unescape)
        EXPECT_EQ(UnescapeItemText(stored), memo);
}

TEST(ItemText, KindComboMappingIsNotInverse) {
    const std::pair<int, int> fromCombo[] = {{0, 0},   {8, 8},   {19, 19},
                                             {20, 20}, {-1, 20}, {21, 20}};
    for (auto [index, kind] : fromCombo)
        EXPECT_EQ(KindFromComboIndex(index), kind) << index;
    const std::pair<int, int> toCombo[] = {{0, 0}, {19, 19}, {20, -1}, {128 + 5, 5}, {127, -1}};
    for (auto [kind, index] : toCombo)
        EXPECT_EQ(ComboIndexFromKind(kind), index) << kind;
}

TEST(Dialogs, AddFormEnterAddsAndNeverCloses) {
    TAddForm form;
    form.show();
    QTest::keyClick(form.Edit, Qt::Key_Return); // empty: nothing
    for (const char* word : {"one", "two", "one"}) {
        QTest::keyClicks(form.Edit, word);
        QTest::keyClick(form.Edit, Qt::Key_Return);
    }
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(form.List->Items().ToVector(), (Rows{u"one", u"two", u"one"}));
    EXPECT_TRUE(form.Edit->Text().empty());
    form.List->SetSelected(0, true);
    form.List->SetSelected(2, true);
    form.btnDel->click();
    EXPECT_EQ(form.List->Items().ToVector(), (Rows{u"two"}));
    form.btnAbort->click();
    EXPECT_EQ(form.result(), 3);
    EXPECT_EQ(form.windowTitle(), "Add");
    EXPECT_EQ(form.btnAbort->text(), "Abort");
}

TEST(Dialogs, UserMenuFormRowsAndModalResults) {
    qputenv("LEXSMITH_RESOURCES", LEXSMITH_RESOURCES);
    TUserMenuForm form;
    EXPECT_EQ(form.windowTitle(), "User");
    EXPECT_EQ(form.size(), QSize(353, 243));
    ASSERT_EQ(form.ComboBoxEx1->count(), 21);
    EXPECT_EQ(form.ComboBoxEx1->currentIndex(), -1);
    for (int i = 0; i < 21; ++i) {
        EXPECT_EQ(form.ComboBoxEx1->itemText(i).toStdU16String(), KindCaptions[std::size_t(i)]);
        EXPECT_EQ(form.ComboBoxEx1->itemIcon(i).isNull(), i == 20) << i;
    }
    form.show();
    form.UniBitBtn2->click();
    EXPECT_EQ(form.result(), 2);
    form.show();
    QTest::keyClick(form.txtItem, Qt::Key_Return); // the stock OK is the default button
    EXPECT_EQ(form.result(), 1);
}

TEST(Dialogs, AboutBox) {
    TSyntaxAbout about;
    EXPECT_EQ(about.windowTitle(), "About");
    EXPECT_EQ(about.size(), QSize(401, 187));
    EXPECT_EQ(about.Label1->text(), "KV Lexsmith");
    EXPECT_EQ(about.Label2->text(), "Version 1.72");
    about.ModalHook = [](TSyntaxAbout& Form) { return Form.BitBtn1->ModalResult(); };
    EXPECT_EQ(about.ShowModal(), 1);
}

TEST(Help, OpensTheTopicOnlyWhenTheFileExists) {
    QTemporaryDir dir;
    std::vector<QString> calls;
    HtmlHelp = [&](const QString& File, const QString& Topic) { calls.push_back(File + Topic); };
    EXPECT_FALSE(ShowHelpContents(dir.path()));
    EXPECT_TRUE(calls.empty());
    QDir(dir.path()).mkdir("help");
    QFile file(dir.filePath("help/Scribex.chm"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    EXPECT_TRUE(ShowHelpContents(dir.path()));
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0], dir.filePath("help/Scribex.chm") + "::/TheLexsmith.htm");
    UnloadHtmlHelp();
}

TEST(KindRows, RecordedDrawingOfRowsWithAndWithoutIcon) {
    qputenv("LEXSMITH_RESOURCES", LEXSMITH_RESOURCES);
    TSynFormPages pages;
    pages.CurrentSection = 4;
    pages.AutoComplete->AddMenu(u"M");
    pages.AutoComplete->AddMenuItem(0, u"load", 0, u"");
    pages.AutoComplete->AddMenuItem(0, u"none", 20, u"");
    pages.RefreshMenuItems(u"m");
    TRecordingCanvas canvas;
    pages.lbMenuItem->DrawRow(canvas, 0, Bounds(0, 16, 100, 16), odSelected);
    pages.lbMenuItem->DrawRow(canvas, 1, Bounds(0, 32, 100, 16), 0);
    ASSERT_EQ(canvas.Ops.size(), 5u);
    EXPECT_EQ(canvas.Ops[0], "FillRect(0,16,100,32) FF00000D"); // the selection brush
    EXPECT_EQ(canvas.Ops[1], "Draw(0,16) 16x16 key=00FF00");
    EXPECT_EQ(canvas.Ops[2].substr(0, 21), "TextOut(20,16,\"load\")");
    EXPECT_NE(canvas.Ops[2].find("FF00000E"), std::string::npos); // selected text colour
    EXPECT_EQ(canvas.Ops[3], "FillRect(0,32,100,48) FF000005");
    EXPECT_EQ(canvas.Ops[4].substr(0, 20), "TextOut(0,32,\"none\")");
}

TEST(KindRows, IconPixelsAndTheirKeyColourOnScreen) {
    qputenv("LEXSMITH_RESOURCES", LEXSMITH_RESOURCES);
    TKVBitmap icon;
    ASSERT_TRUE(LoadKindBitmap(0, icon));
    ASSERT_EQ(icon.Width(), 16);
    QImage image(40, 16, QImage::Format_RGB32);
    image.fill(Qt::black);
    {
        QPainter painter(&image);
        TQtCanvas canvas(painter);
        canvas.SetBrushColor(0x0000FF); // red
        DrawKindListItem(canvas, Bounds(0, 0, 40, 16), u"", &icon);
    }
    EXPECT_EQ(image.pixel(0, 0), qRgb(255, 0, 0)); // lime corner shows the fill
    EXPECT_EQ(image.pixel(7, 7) & 0xFFFFFF, icon.Pixel(7, 7) & 0xFFFFFF); // icon body
    EXPECT_NE(icon.Pixel(7, 7) & 0xFFFFFF, 0x00FF00u);
}

} // namespace
