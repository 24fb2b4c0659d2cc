#pragma once
// Where the companion editor keeps its per-user files, what of its settings
// this program reads (the skin choice), and which controls a chosen skin
// would paint, in the skin engine's own set. The settings file is read and
// never written.

#include "base/Types.h"
#include "skin/data.h"

#include <cstdint>
#include <functional>

// The separator that joins the application data folder with what lies below it.
#ifdef _WIN32
inline constexpr char PathDelim = '\\';
#else
inline constexpr char PathDelim = '/';
#endif

// The folder rule, with the environment given as a lookup so that it can be
// tested: LEXSMITH_APPDATA if set; on Windows the shell's per-user
// application data folder (or %APPDATA%) + "\KV Scribex";
// elsewhere the same folder in the default Wine prefix when that exists,
// otherwise $XDG_CONFIG_HOME (or ~/.config) + "/KV Scribex". No trailing
// separator.
using TEnvLookup = std::function<const char*(const char* Name)>;
using TDirExists = std::function<bool(const AnsiString& Path)>;
AnsiString AppDataFolderFrom(const TEnvLookup& Env, const TDirExists& DirExists);

// The keys of the section "Customize" of Scribex.ini that matter here.
struct TScribexSettings {
    bool SkinEnabled = false;
    bool DontSkinCaption = false;
    AnsiString Skin;
};

// Reads the settings file; a file that does not exist or cannot be read
// gives the defaults. Section and key names match without regard to case
// and the first line of a key counts; a boolean is an integer, true when not
// 0 (decimal or "$" hexadecimal), and a value that is no integer reads as false.
TScribexSettings ReadScribexSettings(const AnsiString& FileName);

struct TSkinChoice {
    TSkinControlTypes SkinControls = 0; // the skin engine's set of skinned controls
    AnsiString SkinFile;                // set whether or not skinning is wanted
    bool Active = false;
};

// The skin choice of the start-up: the controls to skin from the two
// switches, the skin's path below AppData + "/skins/", and Active only when
// skinning is on and that path names an existing file.
TSkinChoice ChooseSkin(const TScribexSettings& Settings, const AnsiString& AppData);

// An existing regular file (a folder does not count).
bool FileExists(const AnsiString& FileName);
