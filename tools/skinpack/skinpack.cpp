// skinpack: makes, lists and takes apart skin files.

#include "base/Exceptions.h"
#include "base/FileNames.h"
#include "base/SafeFileStream.h"
#include "skin/data.h"
#include "skin/lzh.h"
#include "skin/pack.h"
#include "skin/quickini.h"
#include "skin/reader.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

namespace {

const char* const Usage =
    "usage: skinpack COMMAND ARGS\n"
    "  pack DIR OUT      pack the ini text and BMP files of DIR into the skin file OUT;\n"
    "                    members in the order of DIR/files.lst (one name a line) if it\n"
    "                    exists, else every .ini and .bmp file by name\n"
    "  list FILE         members of a skin file and their sizes\n"
    "  expand FILE OUT   write the expanded image of FILE (any length-prefixed stream)\n"
    "  unpack FILE DIR   write each member into DIR as the reader returns it\n"
    "  info FILE         the loaded skin model as JSON\n"
    "  --help            this text\n"
    "  --version         print the version number\n";

struct TFailure {
    std::string Message;
};

Bytes ReadAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw TFailure{"cannot open " + NarrowName(path)};
    return Bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

void WriteAll(const fs::path& path, const Bytes& bytes) {
    try {
        SaveFileSafely(NarrowName(path), [&](TStream& Out) {
            Out.WriteBuffer(bytes.data(), std::int64_t(bytes.size()));
        });
    } catch (const Exception& e) {
        throw TFailure{e.what()};
    }
}

int Pack(const fs::path& dir, const fs::path& out) {
    WriteAll(out, PackSkinFile(ReadSkinFolder(NarrowName(dir))));
    return 0;
}

std::unique_ptr<TSkinReader> OpenSkin(const fs::path& file) {
    auto reader = std::make_unique<TSkinReader>();
    TMemoryStream source(ReadAll(file));
    if (!reader->LoadFromStream(source))
        throw TFailure{NarrowName(file) + ": not a skin file of this format (bad mark or size)"};
    return reader;
}

int List(const fs::path& file) {
    auto reader = OpenSkin(file);
    for (int i = 0; i < reader->FileCount; ++i)
        std::cout << reader->FileNames[std::size_t(i)] << '\t' << reader->FileSizes[std::size_t(i)]
                  << '\n';
    return 0;
}

int ExpandFile(const fs::path& file, const fs::path& out) {
    Bytes in = ReadAll(file);
    Bytes image;
    if (in.size() < 4) throw TFailure{NarrowName(file) + ": shorter than its length word"};
    if (!LzhExpandFrame(in.data(), in.size(), image, SkinMaxImageSize))
        throw TFailure{NarrowName(file) + ": declared length beyond " +
                       std::to_string(SkinMaxImageSize) + " bytes"};
    WriteAll(out, image);
    return 0;
}

int Unpack(const fs::path& file, const fs::path& dir) {
    auto reader = OpenSkin(file);
    for (const AnsiString& name : WriteSkinFolder(*reader, NarrowName(dir)))
        std::cerr << "skinpack: skipping member \"" << name << "\"\n";
    return 0;
}

// ---- JSON

std::string Quote(const std::string& s) {
    std::string out = "\"";
    for (unsigned char c : s) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += char(c);
        } else if (c < 0x20 || c >= 0x7F) {
            char buf[8];
            std::snprintf(buf, sizeof buf, "\\u%04x", c);
            out += buf;
        } else {
            out += char(c);
        }
    }
    return out + "\"";
}

std::string Colour(TColor c) {
    char buf[32];
    if (c == clUnsetColour) return "-1";
    if (c == clNone) return "\"none\"";
    if (IsSysColor(c)) {
        std::snprintf(buf, sizeof buf, "\"system %u\"", unsigned(c & 0xFF));
        return buf;
    }
    std::snprintf(buf, sizeof buf, "\"#%02X%02X%02X\"", GetRValue(c), GetGValue(c), GetBValue(c));
    return buf;
}

std::string Size(const TMemoryBitmap& b) {
    return "[" + std::to_string(b.Width()) + ", " + std::to_string(b.Height()) + "]";
}

std::string Object(const TDataSkinObject* o) {
    if (!o) return "null";
    std::ostringstream j;
    j << "{\"IDName\": " << Quote(o->IDName) << ", \"Image\": " << Size(o->Map)
      << ", \"Frame\": " << o->Frame << ", \"Margins\": [" << o->r.Left << ", " << o->r.Top << ", "
      << o->r.Right << ", " << o->r.Bottom << "], \"Trans\": " << o->Trans
      << ", \"Tile\": " << o->Tile << ", \"Style\": " << o->Style
      << ", \"NormalColour\": " << Colour(o->NormalColour)
      << ", \"MouseOverColour\": " << Colour(o->MouseOverColour)
      << ", \"PressedColour\": " << Colour(o->PressedColour)
      << ", \"NormalColour2\": " << Colour(o->NormalColour2)
      << ", \"MouseOverColour2\": " << Colour(o->MouseOverColour2)
      << ", \"PressedColour2\": " << Colour(o->PressedColour2);
    if (auto* b = dynamic_cast<const TDataSkinBorder*>(o)) j << ", \"Image2\": " << Size(b->Map2);
    if (auto* t = dynamic_cast<const TDataSkinTitle*>(o))
        j << ", \"TextAlignment\": " << t->TextAlignment
          << ", \"Textbackground\": " << t->Textbackground << ", \"FontHeight\": " << t->FontHeight
          << ", \"TXTBackleft\": " << t->TXTBackleft << ", \"TXTBackRight\": " << t->TXTBackRight
          << ", \"ActiveText\": " << Colour(t->ActiveText)
          << ", \"InActiveText\": " << Colour(t->InActiveText);
    if (auto* b = dynamic_cast<const TDataSkinButton*>(o))
        j << ", \"CheckImage\": " << Size(b->CheckMap) << ", \"RadioImage\": " << Size(b->RadioMap)
          << ", \"CheckButtonFrame\": " << b->CheckButtonFrame
          << ", \"RadioButtonFrame\": " << b->RadioButtonFrame;
    if (auto* s = dynamic_cast<const TDataSkinSysButton*>(o))
        j << ", \"Action\": " << s->Action << ", \"Align\": " << s->Align
          << ", \"Xcoord\": " << s->Xcoord << ", \"Ycoord\": " << s->Ycoord
          << ", \"CombineOp\": " << s->CombineOp << ", \"Visibility\": " << s->Visibility
          << ", \"Visibility1\": " << s->Visibility1;
    if (auto* l = dynamic_cast<const TDataSkinBoxLabel*>(o))
        j << ", \"BackgroundLeftShift\": " << l->BackgroundLeftShift
          << ", \"BackgroundRightShift\": " << l->BackgroundRightShift
          << ", \"BackgroundAlignment\": " << l->BackgroundAlignment;
    j << "}";
    return j.str();
}

int Info(const fs::path& file) {
    OpenSkin(file); // a clear error for a file of another format
    TSkinDataModel model;
    model.SkinStream = TMemoryStream(ReadAll(file));
    if (!model.ReadSkin()) throw TFailure{NarrowName(file) + ": the skin did not load"};
    std::ostringstream j;
    j << "{\n  \"SkinName\": " << Quote(model.SkinName) << ",\n  \"Objects\": {\n";
    auto objects = model.Objects();
    for (std::size_t i = 0; i < objects.size(); ++i)
        j << "    " << Quote(objects[i].first) << ": " << Object(objects[i].second)
          << (i + 1 < objects.size() ? ",\n" : "\n");
    j << "  },\n  \"Borders\": [\n";
    for (int i = 1; i <= 4; ++i)
        j << "    " << Object(model.Borders(i)) << (i < 4 ? ",\n" : "\n");
    j << "  ],\n  \"SysButtons\": [\n";
    for (std::size_t i = 0; i < model.SysButtons.size(); ++i)
        j << "    " << Object(model.SysButtons[i].get())
          << (i + 1 < model.SysButtons.size() ? ",\n" : "\n");
    const std::pair<const char*, TColor> colours[] = {
        {"WindowText", model.WindowText},
        {"TitleTextActive", model.TitleTextActive},
        {"TitleTextNoActive", model.TitleTextNoActive},
        {"ButtonFace", model.ButtonFace},
        {"ButtonText", model.ButtonText},
        {"ButtonHilight", model.ButtonHilight},
        {"Buttonlight", model.Buttonlight},
        {"ButtonShadow", model.ButtonShadow},
        {"ButtonDkShadow", model.ButtonDkShadow},
        {"HilightText", model.HilightText},
        {"Hilight", model.Hilight},
        {"Menubar", model.Menubar},
        {"MenuBarText", model.MenuBarText},
        {"MenuText", model.MenuText},
        {"Menu", model.Menu},
        {"BGColor", model.BGColor},
        {"Scrollbar", model.Scrollbar}};
    j << "  ],\n  \"Colours\": {";
    for (std::size_t i = 0; i < std::size(colours); ++i)
        j << (i ? ", " : "") << Quote(colours[i].first) << ": " << Colour(colours[i].second);
    j << "},\n  \"ColourSections\": [";
    for (std::size_t i = 0; i < model.Colours.size(); ++i)
        j << (i ? ", " : "") << Colour(model.Colours[i]);
    j << "],\n  \"CustomColors\": [";
    for (std::size_t i = 0; i < model.CustomColors.size(); ++i)
        j << (i ? ", " : "") << Colour(model.CustomColors[i]);
    j << "]\n}\n";
    std::cout << j.str();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
#ifdef _WIN32
    // Listings and JSON are the same bytes on every system: no carriage
    // returns added. Names on the command line are in the ANSI code page.
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    std::vector<std::string> args(argv + 1, argv + argc);
    if (args.empty()) {
        std::cerr << Usage;
        return 2;
    }
    if (args[0] == "--help" || args[0] == "-h") {
        std::cout << Usage;
        return 0;
    }
    if (args[0] == "--version") {
        std::cout << "skinpack " << LEXSMITH_VERSION << '\n';
        return 0;
    }
    const std::string& cmd = args[0];
    const std::size_t need = cmd == "list" || cmd == "info" ? 2 : 3;
    if ((cmd != "pack" && cmd != "list" && cmd != "expand" && cmd != "unpack" && cmd != "info") ||
        args.size() != need) {
        std::cerr << "skinpack: bad arguments\n" << Usage;
        return 2;
    }
    try {
        if (cmd == "pack") return Pack(NarrowPath(args[1]), NarrowPath(args[2]));
        if (cmd == "list") return List(NarrowPath(args[1]));
        if (cmd == "expand") return ExpandFile(NarrowPath(args[1]), NarrowPath(args[2]));
        if (cmd == "unpack") return Unpack(NarrowPath(args[1]), NarrowPath(args[2]));
        return Info(NarrowPath(args[1]));
    } catch (const TFailure& f) {
        std::cerr << "skinpack: " << f.Message << '\n';
    } catch (const std::exception& e) {
        std::cerr << "skinpack: " << e.what() << '\n';
    }
    return 1;
}
