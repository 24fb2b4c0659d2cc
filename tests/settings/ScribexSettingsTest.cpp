// The companion editor's settings: where its folder is, what of its
// Scribex.ini is read, and the skin choice made from that.

#include "settings/ScribexSettings.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

namespace {

namespace fs = std::filesystem;

#ifndef _WIN32
TEST(ScribexSettingsTest, AppDataFolderRules) {
    std::map<std::string, std::string> env = {{"HOME", "/home/ann/"}, {"USER", "ann"}};
    std::vector<AnsiString> asked;
    bool wineExists = false;
    auto folder = [&] {
        return AppDataFolderFrom(
            [&](const char* Name) { return env.count(Name) ? env[Name].c_str() : nullptr; },
            [&](const AnsiString& Path) { return asked.push_back(Path), wineExists; });
    };
    const AnsiString wine = "/home/ann/.wine/drive_c/users/ann/AppData/Roaming/KV Scribex";
    EXPECT_EQ(folder(), "/home/ann/.config/KV Scribex");
    EXPECT_EQ(asked, std::vector<AnsiString>{wine});
    env["XDG_CONFIG_HOME"] = "/cfg/";
    EXPECT_EQ(folder(), "/cfg/KV Scribex");
    wineExists = true;
    EXPECT_EQ(folder(), wine);
    env["LEXSMITH_APPDATA"] = ""; // empty counts as unset
    EXPECT_EQ(folder(), wine);
    env["LEXSMITH_APPDATA"] = "/own/place/";
    EXPECT_EQ(folder(), "/own/place");

    asked.clear(); // without a user name no Wine folder is tried
    env = {{"HOME", "/home/bob"}};
    EXPECT_EQ(folder(), "/home/bob/.config/KV Scribex");
    EXPECT_TRUE(asked.empty());
}
#else
TEST(ScribexSettingsTest, AppDataFolderRulesOnWindows) {
    std::map<std::string, std::string> env;
    auto folder = [&] {
        return AppDataFolderFrom(
            [&](const char* Name) { return env.count(Name) ? env[Name].c_str() : nullptr; },
            [&](const AnsiString& Path) {
                ADD_FAILURE() << "no folder is probed on Windows: " << Path;
                return false;
            });
    };
    // The shell's per-user application data folder, which the system also
    // gives the process as %APPDATA%; the lookup's own APPDATA is no rival.
    const char* appData = std::getenv("APPDATA");
    ASSERT_TRUE(appData && *appData);
    const AnsiString expected = AnsiString(appData) + "\\KV Scribex";
    EXPECT_EQ(folder(), expected);
    env["APPDATA"] = "C:\\elsewhere";
    EXPECT_EQ(folder(), expected);
    env["LEXSMITH_APPDATA"] = "D:\\own\\place\\";
    EXPECT_EQ(folder(), "D:\\own\\place");
    // What lies below it is joined with the Windows separator.
    EXPECT_EQ(ChooseSkin({true, false, "Dark.skn"}, "D:\\own").SkinFile,
              "D:\\own\\skins\\Dark.skn");
}
#endif

TEST(ScribexSettingsTest, ReadsOnlyTheCustomizeSection) {
    const fs::path file = fs::temp_directory_path() / "lexsmith-scribex-settings.ini";
    fs::remove(file);
    const TScribexSettings missing = ReadScribexSettings(file.string());
    EXPECT_FALSE(missing.SkinEnabled || missing.DontSkinCaption || !missing.Skin.empty());

    struct Case {
        const char* Text;
        bool Enabled, NoCaption;
        const char* Skin;
    };
    for (const Case& c : {
             Case{"[customize]\r\nskinenabled=1\r\nDONTSKINCAPTION = 1\r\nsKiN=Dark.skn\r\n", true,
                  true, "Dark.skn"},
             Case{"[Customize]\nSkinEnabled=0\nDontSkinCaption=1\n", false, true, ""},
             Case{"[Customize]\nSkinEnabled=yes\nDontSkinCaption=on\n", false, false, ""},
             Case{"[Window]\nSkinEnabled=1\nSkin=a\n[Customize]\nDontSkinCaption=1\n[X]\nSkin=b\n",
                  false, true, ""},
             Case{"SkinEnabled=1\n", false, false, ""},
         }) {
        std::ofstream(file, std::ios::binary) << c.Text;
        const TScribexSettings s = ReadScribexSettings(file.string());
        EXPECT_EQ(s.SkinEnabled, c.Enabled) << c.Text;
        EXPECT_EQ(s.DontSkinCaption, c.NoCaption) << c.Text;
        EXPECT_EQ(s.Skin, c.Skin) << c.Text;
    }
    fs::remove(file);
}

TEST(ScribexSettingsTest, ChooseSkinTable) {
    const AnsiString appData = LEXSMITH_EXAMPLES "/appdata";
    const AnsiString skins = appData + PathDelim + "skins" + PathDelim;
    const char* dark = "Lexsmith Dark.skn";
    ASSERT_TRUE(FileExists(skins + dark));
    // The skin engine's bits: combo 5 to speed button 13, panel 15 to tab 18,
    // system menu 20; the main menu is bit 0. Spin, track bar, tool bars and
    // the popup menus stay out.
    const TSkinControlTypes controls = 0x17BFE0;
    const TSkinControlTypes withMenu = controls | 1u;

    struct Case {
        bool Enabled, NoCaption;
        const char* Skin;
        TSkinControlTypes Controls;
        bool Active;
    };
    for (const Case& c :
         {Case{true, true, dark, controls, true}, Case{true, false, dark, withMenu, true},
          Case{false, false, dark, 0, false}, Case{false, true, dark, 0, false},
          Case{true, false, "Missing.skn", withMenu, false},
          Case{true, true, "", controls, false}}) {
        const TSkinChoice choice = ChooseSkin({c.Enabled, c.NoCaption, c.Skin}, appData);
        EXPECT_EQ(choice.SkinControls, c.Controls) << c.Enabled << c.NoCaption << c.Skin;
        EXPECT_EQ(choice.SkinFile, skins + c.Skin);
        EXPECT_EQ(choice.Active, c.Active) << c.Skin;
    }
    EXPECT_TRUE(HasBit(withMenu, xcMainMenu) && HasBit(controls, xcSystemMenu) &&
                !HasBit(controls, xcSpin) && !HasBit(controls, xcPopupMenu));
    // No skin named: the path is the skins folder itself, which is no skin file.
    EXPECT_TRUE(fs::is_directory(ChooseSkin({true, false, ""}, appData).SkinFile));
}

} // namespace
