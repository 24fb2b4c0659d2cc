#pragma once
// The skin archive: one LZHUF-compressed image holding a format mark, a
// list of member names, their sizes, and the members back to back.

#include "base/Streams.h"
#include "base/Types.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace SkinMessages {
// "\r" is one carriage return, as the message box shows it.
inline constexpr const char* SOlderSkin = "This is Older Skin File\rPlease update to new version !";
} // namespace SkinMessages

inline constexpr std::int32_t SkinFormatMark = 20000;
inline constexpr int SkinMaxFiles = 1000; // the size table holds 1001 entries
// An expanded image above this is refused as a wrong mark is: no skin comes
// near it, and the declared length is otherwise all a broken file needs to
// make us produce gigabytes.
inline constexpr std::int64_t SkinMaxImageSize = 256ll << 20;
// A complete stream cannot expand beyond about 48 bytes for each input byte
// (a 60-byte match costs at least 10 bits); a longer declared length means a
// cut or forged file, refused before any work is done.
inline constexpr std::int64_t SkinMaxExpansion = 64;

class TSkinReader {
public:
    std::vector<AnsiString> FileNames;
    std::int32_t FileCount = 0;
    std::array<std::int32_t, SkinMaxFiles + 1> FileSizes{};
    std::unique_ptr<TMemoryStream> Data;
    std::array<std::uint32_t, 4> Header{};

    // The one message a user sees from here. Empty: not shown.
    std::function<void(const AnsiString&)> OnMessage;

    TSkinReader() : Data(std::make_unique<TMemoryStream>()) {}

    bool LoadFromStream(TStream& Source);
    void GetFile(const AnsiString& Name, TMemoryStream& Target) const;
    void GetFileByPart(const AnsiString& Part, TMemoryStream& Target, AnsiString& FullName) const;
    // Expands the outer frame of Source into Target. False when the declared
    // length is beyond the limits above (Target is then empty).
    static bool Expand(TStream& Source, TMemoryStream& Target);

private:
    void CopyMember(int Index, std::int64_t Offset, TMemoryStream& Target) const;
};

// Our packer's side of the format: members in order, names as given.
struct TSkinMember {
    AnsiString Name;
    std::vector<std::uint8_t> Bytes;
};
// The expanded image (mark, name text with CR LF ends, sizes, members).
std::vector<std::uint8_t> BuildSkinImage(const std::vector<TSkinMember>& Members);
// The file: the image compressed in an outer frame.
std::vector<std::uint8_t> PackSkinFile(const std::vector<TSkinMember>& Members);

// Splits text into lines at CR, LF or CR LF as the string lists do: a line
// end at the very end adds no empty line, and a zero byte ends the text.
std::vector<AnsiString> SplitListText(std::string_view Text);
