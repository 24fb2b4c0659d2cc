#include "skin/reader.h"

#include "skin/lzh.h"
#include "skin/quickini.h"

#include <algorithm>
#include <cstring>

std::vector<AnsiString> SplitListText(std::string_view Text) {
    std::vector<AnsiString> lines;
    std::size_t p = 0;
    while (p < Text.size() && Text[p] != '\0') {
        std::size_t start = p;
        while (p < Text.size() && Text[p] != '\0' && Text[p] != '\n' && Text[p] != '\r')
            ++p;
        lines.emplace_back(Text.substr(start, p - start));
        if (p < Text.size() && Text[p] == '\r') ++p;
        if (p < Text.size() && Text[p] == '\n') ++p;
    }
    return lines;
}

bool TSkinReader::Expand(TStream& Source, TMemoryStream& Target) {
    Target.Clear();
    Source.SetPosition(0);
    std::int64_t size = Source.Size();
    std::vector<std::uint8_t> in(std::size_t(std::max<std::int64_t>(size, 0)));
    in.resize(std::size_t(Source.Read(in.data(), std::int64_t(in.size()))));
    std::int64_t limit = std::min<std::int64_t>(
        SkinMaxImageSize, std::int64_t(in.size()) * SkinMaxExpansion + Lzh::N);
    std::vector<std::uint8_t> out;
    if (!LzhExpandFrame(in.data(), in.size(), out, limit)) return false;
    Target = TMemoryStream(std::move(out));
    Target.SetPosition(0);
    return true;
}

bool TSkinReader::LoadFromStream(TStream& Source) {
    TMemoryStream image;
    bool expanded = Expand(Source, image);
    image.SetPosition(0);
    std::uint32_t header[4] = {};
    std::uint8_t raw[16] = {};
    std::int64_t got = image.Read(raw, 16);
    for (int i = 0; i < 4; ++i)
        header[i] = std::uint32_t(raw[4 * i]) | (std::uint32_t(raw[4 * i + 1]) << 8) |
                    (std::uint32_t(raw[4 * i + 2]) << 16) | (std::uint32_t(raw[4 * i + 3]) << 24);
    std::int64_t nameLength = std::int32_t(header[1]);
    std::int64_t imageSize = image.Size();

    std::vector<AnsiString> names;
    if (expanded && got == 16 && std::int32_t(header[0]) == SkinFormatMark) {
        // A name text cut short by the image's end holds what is there.
        std::int64_t take = std::clamp<std::int64_t>(nameLength, 0, imageSize - 16);
        AnsiString text(std::size_t(take), '\0');
        image.Read(text.data(), take);
        names = SplitListText(AnsiLower(text));
    }
    if (!expanded || got != 16 || std::int32_t(header[0]) != SkinFormatMark ||
        names.size() > std::size_t(SkinMaxFiles)) {
        if (OnMessage) OnMessage(SkinMessages::SOlderSkin);
        return false;
    }
    std::copy(std::begin(header), std::end(header), Header.begin());
    FileNames = std::move(names);
    FileCount = std::int32_t(FileNames.size());
    FileSizes.fill(0);
    // The sizes follow the name text as declared, even if it was cut short.
    std::int64_t sizesAt = 16 + std::max<std::int64_t>(nameLength, 0);
    for (int i = 0; i < FileCount; ++i) {
        std::int64_t at = sizesAt + 4 * std::int64_t(i);
        if (at + 4 > imageSize) break;
        const std::uint8_t* p = image.Data().data() + at;
        FileSizes[std::size_t(i)] =
            std::int32_t(std::uint32_t(p[0]) | (std::uint32_t(p[1]) << 8) |
                         (std::uint32_t(p[2]) << 16) | (std::uint32_t(p[3]) << 24));
    }
    std::int64_t h = 16 + nameLength + 4 * std::int64_t(FileCount);
    Data->Clear();
    if (h >= 0 && h < imageSize) Data->WriteBuffer(image.Data().data() + h, imageSize - h);
    Data->SetPosition(0);
    return true;
}

void TSkinReader::CopyMember(int Index, std::int64_t Offset, TMemoryStream& Target) const {
    // Only the part of the member that lies inside the payload is copied.
    std::int64_t size = FileSizes[std::size_t(Index)];
    std::int64_t begin = std::max<std::int64_t>(Offset, 0);
    std::int64_t end = std::min<std::int64_t>(Offset + size, Data->Size());
    if (size > 0 && end > begin) Target.WriteBuffer(Data->Data().data() + begin, end - begin);
    Target.SetPosition(0);
}

void TSkinReader::GetFile(const AnsiString& Name, TMemoryStream& Target) const {
    Target.Clear();
    AnsiString name = AnsiLower(Name);
    std::int64_t offset = 0;
    for (int i = 0; i < FileCount; ++i) {
        if (FileNames[std::size_t(i)] == name) {
            CopyMember(i, offset, Target);
            return;
        }
        offset += FileSizes[std::size_t(i)];
    }
}

void TSkinReader::GetFileByPart(const AnsiString& Part, TMemoryStream& Target,
                                AnsiString& FullName) const {
    Target.Clear();
    std::int64_t offset = 0;
    for (int i = 0; i < FileCount; ++i) {
        if (FileNames[std::size_t(i)].find(Part) != AnsiString::npos) {
            FullName = FileNames[std::size_t(i)];
            CopyMember(i, offset, Target);
            return;
        }
        offset += FileSizes[std::size_t(i)];
    }
}

std::vector<std::uint8_t> BuildSkinImage(const std::vector<TSkinMember>& Members) {
    std::vector<std::uint8_t> out;
    auto put32 = [&out](std::uint32_t v) {
        for (int i = 0; i < 4; ++i)
            out.push_back(std::uint8_t(v >> (8 * i)));
    };
    AnsiString names;
    for (const TSkinMember& m : Members)
        names += m.Name + "\r\n";
    put32(std::uint32_t(SkinFormatMark));
    put32(std::uint32_t(names.size()));
    put32(0); // the two reserved words are left 0
    put32(0);
    out.insert(out.end(), names.begin(), names.end());
    for (const TSkinMember& m : Members)
        put32(std::uint32_t(m.Bytes.size()));
    for (const TSkinMember& m : Members)
        out.insert(out.end(), m.Bytes.begin(), m.Bytes.end());
    return out;
}

std::vector<std::uint8_t> PackSkinFile(const std::vector<TSkinMember>& Members) {
    return LzhCompressFrame(BuildSkinImage(Members));
}
