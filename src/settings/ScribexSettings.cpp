#include "settings/ScribexSettings.h"

#include "base/FileNames.h"
#include "skin/quickini.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#include <shlobj.h>
#include <windows.h>
#endif

AnsiString AppDataFolderFrom(const TEnvLookup& Env, const TDirExists& DirExists) {
    auto env = [&](const char* Name) -> AnsiString {
        const char* value = Env(Name);
        return value ? AnsiString(value) : AnsiString();
    };
    auto noTrailing = [](AnsiString Path) {
        while (Path.size() > 1 && (Path.back() == '/' || Path.back() == '\\'))
            Path.pop_back();
        return Path;
    };
    const AnsiString own = env("LEXSMITH_APPDATA");
    if (!own.empty()) return noTrailing(own);
#ifdef _WIN32
    (void)DirExists;
    // The shell's per-user application data folder, narrow, as the
    // companion editor asks for it; %APPDATA% when the shell has none.
    char shell[MAX_PATH] = {};
    if (SHGetFolderPathA(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, shell) == S_OK &&
        shell[0])
        return noTrailing(shell) + "\\KV Scribex";
    return noTrailing(env("APPDATA")) + "\\KV Scribex";
#else
    const AnsiString home = env("HOME");
    const AnsiString user = env("USER");
    if (!home.empty() && !user.empty()) {
        const AnsiString wine =
            noTrailing(home) + "/.wine/drive_c/users/" + user + "/AppData/Roaming/KV Scribex";
        if (DirExists(wine)) return wine;
    }
    AnsiString config = env("XDG_CONFIG_HOME");
    if (config.empty()) config = noTrailing(home) + "/.config";
    return noTrailing(config) + "/KV Scribex";
#endif
}

TScribexSettings ReadScribexSettings(const AnsiString& FileName) {
    TScribexSettings settings;
    std::ifstream file(FileName, std::ios::binary);
    if (!file) return settings;
    AnsiString text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (text.rfind("\xEF\xBB\xBF", 0) == 0) text.erase(0, 3); // a UTF-8 mark
    TQuickIni ini;
    ini.LoadFromString(text);
    // Booleans are integers, true when not 0; a value that is no integer reads as false.
    settings.SkinEnabled = ini.ReadInteger("Customize", "SkinEnabled", 0) != 0;
    settings.DontSkinCaption = ini.ReadInteger("Customize", "DontSkinCaption", 0) != 0;
    AnsiString skin = ini.ReadString("Customize", "Skin", AnsiString());
    if (skin.size() >= 2 && (skin.front() == '"' || skin.front() == '\'') &&
        skin.back() == skin.front())
        skin = skin.substr(1, skin.size() - 2);
    settings.Skin = skin;
    return settings;
}

TSkinChoice ChooseSkin(const TScribexSettings& Settings, const AnsiString& AppData) {
    TSkinChoice choice;
    if (Settings.SkinEnabled) {
        for (TSkinControlType c :
             {xcCombo, xcCheckBox, xcRadioButton, xcProgress, xcScrollbar, xcEdit, xcButton,
              xcBitBtn, xcSpeedButton, xcPanel, xcGroupBox, xcStatusBar, xcTab, xcSystemMenu})
            choice.SkinControls |= TSkinControlTypes(1) << c;
        // xcMainMenu also decides whether the window frame is skinned.
        if (!Settings.DontSkinCaption) choice.SkinControls |= TSkinControlTypes(1) << xcMainMenu;
    }
    choice.SkinFile = AppData + PathDelim + "skins" + PathDelim + Settings.Skin;
    choice.Active = Settings.SkinEnabled && FileExists(choice.SkinFile);
    return choice;
}

bool FileExists(const AnsiString& FileName) {
    std::error_code error;
    return !FileName.empty() && std::filesystem::is_regular_file(NarrowPath(FileName), error);
}
