#include "settings/ScribexSettings.h"

#include <filesystem>
#include <fstream>

namespace {

bool SameText(std::string_view A, std::string_view B) {
    if (A.size() != B.size()) return false;
    for (std::size_t i = 0; i < A.size(); ++i) {
        unsigned char a = static_cast<unsigned char>(A[i]), b = static_cast<unsigned char>(B[i]);
        if (a >= 'a' && a <= 'z') a = static_cast<unsigned char>(a - 32);
        if (b >= 'a' && b <= 'z') b = static_cast<unsigned char>(b - 32);
        if (a != b) return false;
    }
    return true;
}

std::string_view TrimBlanks(std::string_view S) {
    while (!S.empty() && (S.front() == ' ' || S.front() == '\t'))
        S.remove_prefix(1);
    while (!S.empty() && (S.back() == ' ' || S.back() == '\t' || S.back() == '\r'))
        S.remove_suffix(1);
    return S;
}

// An integer as the settings file writes it: decimal with an optional sign,
// or hexadecimal after "$" or "0x". False when the text is no integer.
bool ParseInteger(std::string_view S, long long& Value) {
    bool negative = false;
    if (!S.empty() && (S.front() == '-' || S.front() == '+')) {
        negative = S.front() == '-';
        S.remove_prefix(1);
    }
    int base = 10;
    if (!S.empty() && S.front() == '$') {
        base = 16;
        S.remove_prefix(1);
    } else if (S.size() > 2 && S[0] == '0' && (S[1] == 'x' || S[1] == 'X')) {
        base = 16;
        S.remove_prefix(2);
    }
    if (S.empty()) return false;
    long long v = 0;
    for (char c : S) {
        int d;
        if (c >= '0' && c <= '9')
            d = c - '0';
        else if (base == 16 && c >= 'a' && c <= 'f')
            d = c - 'a' + 10;
        else if (base == 16 && c >= 'A' && c <= 'F')
            d = c - 'A' + 10;
        else
            return false;
        v = v * base + d;
        if (v > 0xFFFFFFFFLL) return false;
    }
    Value = negative ? -v : v;
    return true;
}

bool ReadBool(const std::string& Text, bool Default) {
    long long value = 0;
    return ParseInteger(TrimBlanks(Text), value) ? value != 0 : Default;
}

} // namespace

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
    bool inSection = false;
    std::string line;
    // The first occurrence of a key counts, as the classic reader finds it.
    bool seenEnabled = false, seenCaption = false, seenSkin = false;
    while (std::getline(file, line)) {
        std::string_view text = TrimBlanks(line);
        if (text.size() >= 3 && static_cast<unsigned char>(text[0]) == 0xEF &&
            static_cast<unsigned char>(text[1]) == 0xBB &&
            static_cast<unsigned char>(text[2]) == 0xBF)
            text.remove_prefix(3);
        if (text.empty() || text.front() == ';') continue;
        if (text.front() == '[') {
            const std::size_t close = text.find(']');
            inSection = close != std::string_view::npos &&
                        SameText(TrimBlanks(text.substr(1, close - 1)), "Customize");
            continue;
        }
        const std::size_t eq = text.find('=');
        if (!inSection || eq == std::string_view::npos) continue;
        const std::string_view key = TrimBlanks(text.substr(0, eq));
        std::string_view value = TrimBlanks(text.substr(eq + 1));
        if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
            value.back() == value.front())
            value = value.substr(1, value.size() - 2);
        if (SameText(key, "SkinEnabled") && !seenEnabled) {
            seenEnabled = true;
            settings.SkinEnabled = ReadBool(std::string(value), false);
        } else if (SameText(key, "DontSkinCaption") && !seenCaption) {
            seenCaption = true;
            settings.DontSkinCaption = ReadBool(std::string(value), false);
        } else if (SameText(key, "Skin") && !seenSkin) {
            seenSkin = true;
            settings.Skin = AnsiString(value);
        }
    }
    return settings;
}

TSkinChoice ChooseSkin(const TScribexSettings& Settings, const AnsiString& AppData) {
    TSkinChoice choice;
    if (Settings.SkinEnabled) {
        for (TSkinControl c :
             {xcCombo, xcCheckBox, xcRadioButton, xcProgress, xcScrollbar, xcEdit, xcButton,
              xcBitBtn, xcSpeedButton, xcPanel, xcGroupBox, xcStatusBar, xcTab, xcSystemMenu})
            choice.SkinControls |= SkinControlBit(c);
        if (!Settings.DontSkinCaption) choice.SkinControls |= SkinControlBit(xcMainMenu);
    }
    choice.SkinFile = AppData + PathDelim + "skins" + PathDelim + Settings.Skin;
    choice.Active = Settings.SkinEnabled && FileExists(choice.SkinFile);
    return choice;
}

bool FileExists(const AnsiString& FileName) {
    std::error_code error;
    return !FileName.empty() && std::filesystem::is_regular_file(FileName, error);
}
