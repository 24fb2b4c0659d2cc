#include "base/Fuzz.h"

#include "base/BitmapCanvas.h"
#include "controls/HTMLRender.h"
#include "controls/WgIni.h"
#include "wide/Utf.h"

#include <stdexcept>
#include <string_view>
#include <vector>

int FuzzHtml(const std::uint8_t* Data, std::size_t Size) {
    if (Size < 2) return 0;
    const int width = Data[0] * 2;
    const unsigned options = Data[1];
    const WideString markup =
        DecodeUtf8Lenient(std::string_view(reinterpret_cast<const char*>(Data) + 2, Size - 2));

    // A canvas a little smaller than the widest layout, so that drawing is
    // clipped on the right and at the bottom as well as inside.
    TMemoryBitmap pixels(400, 120);
    TBitmapCanvas canvas(pixels);
    TMemoryBitmap image(5, 4, 0xFF00FF00u);
    TWgHTMLRender render(&canvas);
    render.SetDoubleBuffer((options & 4) != 0);
    render.OnImageNeeded = [&image](TWgHTMLRender&, const WideString&, TMemoryBitmap*& Image) {
        Image = &image;
    };
    try {
        render.PrepareText(markup, width, (options & 1) != 0);
        const TRect area = Rect(-3, -2, 397, 118);
        render.DrawHtml(canvas, {2, 1}, area, (options & 2) ? 0x808080 : clNone);
        // Hit tests on a grid across the text and just outside it.
        WideString href;
        for (int y = -4; y < 124; y += 11)
            for (int x = -4; x < 404; x += 29) {
                render.LinkAtPoint({2, 1}, {x, y}, area, href);
                render.ItemAtPoint({2, 1}, {x, y}, area);
            }
        WideString plain;
        render.PlainText(plain);
    } catch (const Exception&) {
        return 0;
    }
    return 1;
}

int FuzzIniText(const std::uint8_t* Data, std::size_t Size) {
    try {
        TWgIniFile ini;
        ini.LoadFromText(AnsiString(reinterpret_cast<const char*>(Data), Size));
        // The text form has no escapes: a name that begins with "[" or a
        // nameless value that holds the divider reads back as something
        // else, so only the saving and reading themselves are checked here.
        TWgIniFile again;
        again.LoadFromText(ini.SaveToText());
        again.SaveToText();
    } catch (const Exception&) {
        return 0;
    }
    return 1;
}

int FuzzIniBinary(const std::uint8_t* Data, std::size_t Size) {
    TMemoryStream saved;
    try {
        TWgIniFile ini;
        TMemoryStream in(std::vector<std::uint8_t>(Data, Data + Size));
        ini.LoadFromBinary(in);
        ini.SaveToBinary(saved);
    } catch (const Exception&) {
        return 0;
    }
    TWgIniFile again;
    TMemoryStream back(saved.Data());
    try {
        again.LoadFromBinary(back);
    } catch (const Exception& e) {
        throw std::logic_error(std::string("ini binary: the saved form does not read back: ") +
                               e.what());
    }
    TMemoryStream twice;
    again.SaveToBinary(twice);
    if (twice.Data() != saved.Data())
        throw std::logic_error("ini binary: the saved form reads back to different bytes");
    return 1;
}
