#include "base/FileNames.h"

#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#endif

#ifdef _WIN32

std::filesystem::path NarrowPath(const AnsiString& Name) {
    if (Name.empty()) return {};
    const int n = MultiByteToWideChar(CP_ACP, 0, Name.data(), int(Name.size()), nullptr, 0);
    std::wstring wide(std::size_t(n > 0 ? n : 0), L'\0');
    if (n > 0) MultiByteToWideChar(CP_ACP, 0, Name.data(), int(Name.size()), wide.data(), n);
    return std::filesystem::path(wide);
}

AnsiString NarrowName(const std::filesystem::path& Path) {
    const std::wstring& wide = Path.native();
    if (wide.empty()) return {};
    const DWORD flags = WC_NO_BEST_FIT_CHARS;
    const int n =
        WideCharToMultiByte(CP_ACP, flags, wide.data(), int(wide.size()), nullptr, 0, "?", nullptr);
    AnsiString out(std::size_t(n > 0 ? n : 0), '\0');
    if (n > 0)
        WideCharToMultiByte(CP_ACP, flags, wide.data(), int(wide.size()), out.data(), n, "?",
                            nullptr);
    return out;
}

#else

std::filesystem::path NarrowPath(const AnsiString& Name) {
    return std::filesystem::path(Name);
}

AnsiString NarrowName(const std::filesystem::path& Path) {
    return Path.string();
}

#endif
