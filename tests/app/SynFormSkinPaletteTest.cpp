// The main window's colours from the companion editor's skin choice: the
// plain look without a skin, the skin's own colours with one, down to the
// trees and the owner-drawn top menu items.

#include "app/SynEditor.h"
#include "controls/ui/WgMenuBar.h"
#include "tree/ui/WgTree.h"

#include "support/RecordingCanvas.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class SynFormSkinPaletteTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(Temp.isValid());
        qputenv("LEXSMITH_RESOURCES", LEXSMITH_RESOURCES);
        qputenv("LEXSMITH_APPDATA", QFile::encodeName(Temp.filePath("appdata")));
        ASSERT_TRUE(QDir(Temp.path()).mkpath("appdata/skins"));
    }
    void TearDown() override {
        qunsetenv("LEXSMITH_APPDATA");
        qunsetenv("LEXSMITH_RESOURCES");
    }
    void Settings(const char* Text) {
        QFile file(Temp.filePath("appdata/Scribex.ini"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(Text);
    }
    void CopySkin(const char* Name) {
        ASSERT_TRUE(QFile::copy(QStringLiteral(LEXSMITH_EXAMPLES "/appdata/skins/") + Name,
                                Temp.filePath(QStringLiteral("appdata/skins/") + Name)));
    }
    // The selected and the plain File item as the form draws them.
    static std::vector<std::string> DrawFile(TSynForm& Form) {
        TRecordingCanvas canvas;
        for (bool selected : {true, false})
            Form.WgMenuItem2->OnDrawItem(Form.WgMenuItem2, canvas, Rect(0, 0, 40, 20), selected);
        return canvas.Ops;
    }
    static std::string Hex(TColor C) { return TRecordingCanvas::Color(C); }

    QTemporaryDir Temp;
};

} // namespace

TEST_F(SynFormSkinPaletteTest, WithoutASkinTheWindowHasThePlainLook) {
    Settings("[Customize]\nSkinEnabled=0\nSkin=Lexsmith Dark.skn\n");
    CopySkin("Lexsmith Dark.skn");
    TSynForm form;
    EXPECT_EQ(form.ActiveSkin(), nullptr);
    EXPECT_EQ(form.WgMenuBar1->BevelOuter(), bvRaised);
    EXPECT_EQ(form.WgTreeFold->BorderColorShadow(), clBtnShadow);
    const std::vector<std::string> ops = DrawFile(form);
    ASSERT_EQ(ops.size(), 3u);
    EXPECT_EQ(ops[0], "FillRect(0,0,40,20) " + Hex(clSystemColor | 29));
    EXPECT_NE(ops[1].find(" " + Hex(clSystemColor | 14) + " "), std::string::npos) << ops[1];
    EXPECT_NE(ops[2].find(" " + Hex(clWindowText) + " "), std::string::npos) << ops[2];
}

TEST_F(SynFormSkinPaletteTest, AnActiveSkinGivesItsColoursToTreesMenuBarAndTopItems) {
    Settings("[Customize]\nSkinEnabled=1\nDontSkinCaption=1\nSkin=Lexsmith Dark.skn\n");
    CopySkin("Lexsmith Dark.skn");
    TSynForm form;
    const TSkinDataModel* skin = form.ActiveSkin();
    ASSERT_NE(skin, nullptr);
    EXPECT_EQ(form.WgMenuBar1->Font().Color, skin->MenuBarText);
    EXPECT_EQ(form.WgMenuBar1->BevelOuter(),
              skin->ButtonFace == skin->CustomColors[1] ? bvRaised : bvNone);
    for (TWgTree* tree : {form.WgTree1, form.WgTree2, form.WgTreeFold}) {
        EXPECT_EQ(tree->HeaderColor(), skin->ButtonFace);
        EXPECT_EQ(tree->BorderColorDkShadow(), skin->CustomColors[2]);
        EXPECT_EQ(tree->BorderColorShadow(), skin->CustomColors[3]);
    }
    const std::vector<std::string> ops = DrawFile(form);
    ASSERT_EQ(ops.size(), 3u);
    EXPECT_EQ(ops[0], "FillRect(0,0,40,20) " + Hex(skin->Hilight));
    EXPECT_NE(ops[1].find(" " + Hex(skin->HilightText) + " "), std::string::npos) << ops[1];
    EXPECT_NE(ops[2].find(" " + Hex(skin->MenuBarText) + " "), std::string::npos) << ops[2];
}
