// Which control of the main window gets which skin, with a skin active.

#include "app/SynEditor.h"
#include "controls/ui/WgMenuBar.h"
#include "controls/ui/WgPgCtl.h"
#include "skin/ui/control.h"
#include "skin/ui/form.h"
#include "skin/ui/manager.h"
#include "skin/ui/scrollbar.h"
#include "tree/ui/WgTree.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStatusBar>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <map>

TEST(SynFormControlSkin, PicksOnTheMainWindow) {
    QTemporaryDir temp;
    ASSERT_TRUE(temp.isValid());
    qputenv("LEXSMITH_RESOURCES", LEXSMITH_RESOURCES);
    qputenv("LEXSMITH_APPDATA", QFile::encodeName(temp.filePath("appdata")));
    ASSERT_TRUE(QDir(temp.path()).mkpath("appdata/skins"));
    ASSERT_TRUE(QFile::copy(QStringLiteral(LEXSMITH_EXAMPLES "/appdata/skins/Lexsmith Light.skn"),
                            temp.filePath("appdata/skins/Lexsmith Light.skn")));
    {
        QFile ini(temp.filePath("appdata/Scribex.ini"));
        ASSERT_TRUE(ini.open(QIODevice::WriteOnly));
        ini.write("[Customize]\nSkinEnabled=1\nSkin=Lexsmith Light.skn\n");
    }
    {
        TSynForm form;
        form.Params.clear();
        form.show();
        TSkinManage& manager = TSkinManage::Instance();
        manager.State = 1;
        if (manager.Action != saNone) manager.OnTimer();
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        TVeneerForm* veneer = manager.FindForm(&form);
        ASSERT_TRUE(veneer);
        // Tag 99 keeps the menu bar and the page control of the sections plain.
        EXPECT_EQ(veneer->FindControl(form.WgMenuBar1), nullptr);
        EXPECT_EQ(veneer->FindControl(form.WgPageControl1), nullptr);
        EXPECT_TRUE(dynamic_cast<TSkinStatusBar*>(veneer->FindControl(form.StatusBar1)));
        for (TWgTree* tree : {form.WgTree1, form.WgTree2, form.WgTreeFold}) {
            auto* bars = dynamic_cast<TSkinScrollbar*>(veneer->FindControl(tree));
            ASSERT_TRUE(bars) << tree->objectName().toStdString();
            EXPECT_TRUE(bars->VertBar());
        }
        std::map<std::string, int> kinds;
        for (const auto& skin : veneer->ControlList)
            ++kinds[skin->metaObject()->className()];
        EXPECT_GT(kinds["TSkinButton"] + kinds["TSkinBitButton"], 0);
        EXPECT_GT(kinds["TSkinEdit"], 0);
        // Taking the skin off takes every control skin with it.
        veneer->Detach();
        EXPECT_TRUE(veneer->ControlList.empty());
        manager.FormList.clear();
    }
    qunsetenv("LEXSMITH_APPDATA");
    qunsetenv("LEXSMITH_RESOURCES");
}
