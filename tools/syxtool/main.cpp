// syxtool: reads and writes .syx syntax definitions from the command line.
//
//   syxtool dump FILE            the eleven containers as JSON on stdout
//   syxtool normalize IN OUT     what the editor does on Open then Save

#include "Check.h"
#include "Highlight.h"
#include "Json.h"

#include "base/Exceptions.h"
#include "document/SyntaxDocument.h"

#include <cstdio>
#include <cstring>
#include <string>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace {

constexpr int ExitOk = 0;
constexpr int ExitFileError = 1;
constexpr int ExitUsage = 2;

const char* const Usage =
    "Usage: syxtool COMMAND ARGS\n"
    "\n"
    "Commands:\n"
    "  dump FILE           print the definition's eleven containers as JSON:\n"
    "                      Header, Options (30 entries), Blocks and Folds (flat\n"
    "                      5-tuples), AutoHint, Sample, and the menus Keywords,\n"
    "                      Tags, AutoComplete, TagComplete, UserMenu (each menu a\n"
    "                      name and items of name, kind, text), with the encoding\n"
    "                      detected on reading\n"
    "  normalize IN OUT    open IN as the editor does (a file without banner lines\n"
    "                      gets the default author lines) and save it to OUT\n"
    "  check [--format text|json] [--disable ID]... FILE...\n"
    "                      report what the reader passes over, what a save would\n"
    "                      change or lose, and what the companion editor cannot\n"
    "                      tell apart, one line a finding: FILE:LINE[:COL]:\n"
    "                      warning|error: message [check-id]; exit 0 when\n"
    "                      nothing is found, 1 with findings, 2 on bad arguments\n"
    "                      or a file that cannot be read\n"
    "  diff A B            what differs between two definitions, by section;\n"
    "                      exit 0 when they are the same, 1 when they differ\n"
    "  highlight FILE [TEXTFILE] [--format html|ansi]\n"
    "                      colour the definition's sample, or TEXTFILE (read in\n"
    "                      the system code page unless it has a byte order mark),\n"
    "                      by the definition: a small HTML page (the default) or\n"
    "                      terminal colours; written as UTF-8\n"
    "  --help              show this text\n"
    "  --version           print the version number\n"
    "\n"
    "Files are written as narrow text in the system code page (Windows-1252, or\n"
    "the code page number in LEXSMITH_CODEPAGE).\n"
    "\n"
    "Exit status: 0 on success, 1 when a file cannot be read or written, 2 on\n"
    "bad arguments.\n";

std::string ListJson(const TWgWideStringList& List, const char* Indent) {
    if (List.Count() == 0) return "[]";
    std::string out = "[\n";
    for (int i = 0; i < List.Count(); ++i) {
        out += Indent;
        out += "  " + JsonString(List.Ref(i));
        out += i + 1 < List.Count() ? ",\n" : "\n";
    }
    return out + Indent + "]";
}

std::string MenusJson(const TMenuList& Menus) {
    if (Menus.MenuCount() == 0) return "[]";
    std::string out = "[\n";
    for (int i = 0; i < Menus.MenuCount(); ++i) {
        out += "    {\"name\": " + JsonString(Menus.MenuName(i)) + ", \"items\": [";
        const TWgWideStringList& items = *Menus.Menu(i)->Items;
        for (int j = 0; j < items.Count(); ++j) {
            WideString name, text;
            int kind = KindNone;
            Menus.GetItemNameKind(i, j, name, kind);
            Menus.GetItemText(i, j, text);
            out += j == 0 ? "\n" : ",\n";
            out += "      {\"name\": " + JsonString(name) + ", \"kind\": " + std::to_string(kind) +
                   ", \"text\": " + JsonString(text) + "}";
        }
        out += items.Count() > 0 ? "\n    ]}" : "]}";
        out += i + 1 < Menus.MenuCount() ? ",\n" : "\n";
    }
    return out + "  ]";
}

int Dump(const char* FileName) {
    TSyntaxDocument doc;
    TTextEncoding encoding = teAnsi;
    doc.Load(FileName, &encoding);
    std::string out = "{\n";
    out += "  \"encoding\": \"" + std::string(EncodingName(encoding)) + "\",\n";
    out += "  \"Header\": " + ListJson(*doc.Header, "  ") + ",\n";
    out += "  \"Options\": " + ListJson(*doc.Options, "  ") + ",\n";
    out += "  \"Blocks\": " + ListJson(*doc.Blocks, "  ") + ",\n";
    out += "  \"Folds\": " + ListJson(*doc.Folds, "  ") + ",\n";
    out += "  \"AutoHint\": " + ListJson(*doc.AutoHint, "  ") + ",\n";
    out += "  \"Sample\": " + ListJson(*doc.Sample, "  ") + ",\n";
    out += "  \"Keywords\": " + MenusJson(*doc.Keywords) + ",\n";
    out += "  \"Tags\": " + MenusJson(*doc.Tags) + ",\n";
    out += "  \"AutoComplete\": " + MenusJson(*doc.AutoComplete) + ",\n";
    out += "  \"TagComplete\": " + MenusJson(*doc.TagComplete) + ",\n";
    out += "  \"UserMenu\": " + MenusJson(*doc.UserMenu) + "\n";
    out += "}\n";
    std::fwrite(out.data(), 1, out.size(), stdout);
    return std::fflush(stdout) == 0 ? ExitOk : ExitFileError;
}

int Normalize(const char* In, const char* Out) {
    TSyntaxDocument doc;
    doc.Open(In);
    doc.Save(Out);
    return ExitOk;
}

int UsageError(const char* Message) {
    std::fprintf(stderr, "syxtool: %s\nTry 'syxtool --help'.\n", Message);
    return ExitUsage;
}

} // namespace

int main(int argc, char** argv) {
#ifdef _WIN32
    // JSON, findings and pages are the same bytes on every system: no
    // carriage returns added. File names arrive in the ANSI code page and
    // are opened by it.
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    if (argc < 2) return UsageError("no command given");
    const std::string command = argv[1];
    if (command == "--help" || command == "-h" || command == "help") {
        std::fputs(Usage, stdout);
        return ExitOk;
    }
    if (command == "--version") {
        std::printf("syxtool %s\n", LEXSMITH_VERSION);
        return ExitOk;
    }
    try {
        if (command == "check") return RunCheck(argc - 2, argv + 2);
        if (command == "diff") return RunDiff(argc - 2, argv + 2);
        if (command == "highlight") return RunHighlight(argc, argv);
        if (command == "dump") {
            if (argc != 3) return UsageError("dump takes one file name");
            return Dump(argv[2]);
        }
        if (command == "normalize") {
            if (argc != 4) return UsageError("normalize takes an input and an output file name");
            return Normalize(argv[2], argv[3]);
        }
    } catch (const Exception& e) {
        std::fprintf(stderr, "syxtool: %s\n", e.what());
        return ExitFileError;
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "syxtool: out of memory\n");
        return ExitFileError;
    }
    return UsageError(("unknown command '" + command + "'").c_str());
}
