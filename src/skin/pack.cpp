#include "skin/pack.h"
#include "base/SafeFileStream.h"

#include "base/Exceptions.h"
#include "skin/quickini.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace {

std::vector<std::uint8_t> ReadAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw Exception("cannot open " + path.string());
    return std::vector<std::uint8_t>((std::istreambuf_iterator<char>(in)),
                                     std::istreambuf_iterator<char>());
}

} // namespace

std::vector<TSkinMember> ReadSkinFolder(const std::string& Dir) {
    const fs::path dir(Dir);
    if (!fs::is_directory(dir)) throw Exception(Dir + " is not a folder");
    std::vector<std::string> names;
    if (fs::exists(dir / SkinListingFile)) {
        std::vector<std::uint8_t> list = ReadAll(dir / SkinListingFile);
        for (const AnsiString& line : SplitListText(std::string(list.begin(), list.end()))) {
            AnsiString name = AnsiTrim(line);
            if (!name.empty()) names.push_back(name);
        }
    } else {
        for (const auto& e : fs::directory_iterator(dir)) {
            AnsiString ext = AnsiLower(e.path().extension().string());
            if (e.is_regular_file() && (ext == ".ini" || ext == ".bmp"))
                names.push_back(e.path().filename().string());
        }
        std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
            return AnsiLower(a) < AnsiLower(b);
        });
    }
    if (names.empty()) throw Exception("no members in " + Dir);
    if (names.size() > std::size_t(SkinMaxFiles))
        throw Exception(Dir + ": more than " + std::to_string(SkinMaxFiles) + " members");
    std::vector<TSkinMember> members;
    for (const std::string& n : names)
        members.push_back({n, ReadAll(dir / n)});
    return members;
}

std::vector<AnsiString> WriteSkinFolder(const TSkinReader& Reader, const std::string& Dir) {
    const fs::path dir(Dir);
    fs::create_directories(dir);
    std::vector<AnsiString> skipped;
    for (const AnsiString& name : Reader.FileNames) {
        // Only plain names: nothing may land outside the folder.
        if (name.empty() || name == "." || name == ".." ||
            name.find_first_of("/\\:") != AnsiString::npos) {
            skipped.push_back(name);
            continue;
        }
        TMemoryStream member;
        Reader.GetFile(name, member);
        SaveFileSafely((dir / name).string(), [&](TStream& Out) {
            Out.WriteBuffer(member.Data().data(), std::int64_t(member.Data().size()));
        });
    }
    return skipped;
}
