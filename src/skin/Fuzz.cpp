#include "base/Fuzz.h"

#include "skin/bitmap.h"
#include "skin/data.h"
#include "skin/lzh.h"
#include "skin/quickini.h"
#include "skin/reader.h"

#include <vector>

int FuzzLzhExpand(const std::uint8_t* Data, std::size_t Size) {
    std::vector<std::uint8_t> out;
    try {
        // The same bound as the reader's, so that a forged length stays cheap.
        return LzhExpandFrame(Data, Size, out, std::int64_t(Size) * SkinMaxExpansion + Lzh::N);
    } catch (const Exception&) {
        return 0;
    }
}

int FuzzQuickIni(const std::uint8_t* Data, std::size_t Size) {
    TQuickIni ini;
    ini.LoadFromString(AnsiString(reinterpret_cast<const char*>(Data), Size));
    std::vector<AnsiString> sections;
    ini.ReadSections(sections);
    for (const AnsiString& s : sections) {
        ini.ReadString(s, "Image", "x");
        ini.ReadInteger(s, "Frame", 7);
    }
    return 1;
}

int FuzzSkinReader(const std::uint8_t* Data, std::size_t Size) {
    TSkinReader reader;
    TMemoryStream source(std::vector<std::uint8_t>(Data, Data + Size));
    try {
        if (!reader.LoadFromStream(source)) return 0;
        TMemoryStream member;
        for (const AnsiString& name : reader.FileNames)
            reader.GetFile(name, member);
        AnsiString full;
        reader.GetFileByPart(".ini", member, full);
    } catch (const Exception&) {
        return 0;
    }
    return 1;
}

int FuzzBmp(const std::uint8_t* Data, std::size_t Size) {
    TMemoryBitmap bmp;
    return LoadBMP(Data, Size, bmp);
}

int FuzzSkinData(const std::uint8_t* Data, std::size_t Size) {
    TSkinDataModel model;
    model.SkinStream = TMemoryStream(std::vector<std::uint8_t>(Data, Data + Size));
    try {
        return model.ReadSkin();
    } catch (const Exception&) {
        return 0;
    }
}
