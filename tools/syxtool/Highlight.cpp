#include "Highlight.h"

#include "base/Exceptions.h"
#include "base/Streams.h"
#include "document/SyntaxDocument.h"
#include "highlight/HighlightTheme.h"
#include "highlight/Highlighter.h"
#include "wide/Utf.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

namespace {

constexpr int ExitOk = 0;
constexpr int ExitFileError = 1;
constexpr int ExitUsage = 2;

enum TOutputFormat : std::uint8_t { ofHtml, ofAnsi };

struct THighlightArgs {
    const char* Definition = nullptr;
    const char* TextFile = nullptr;
    TOutputFormat Format = ofHtml;
};

int UsageError(const std::string& Message) {
    std::fprintf(stderr, "syxtool: %s\nTry 'syxtool --help'.\n", Message.c_str());
    return ExitUsage;
}

bool ReadFormat(std::string_view Name, TOutputFormat& Format) {
    if (Name == "html")
        Format = ofHtml;
    else if (Name == "ansi")
        Format = ofAnsi;
    else
        return false;
    return true;
}

// An empty result means the arguments were read; otherwise the complaint.
std::string ParseArgs(int argc, char** argv, THighlightArgs& Args) {
    for (int i = 2; i < argc; ++i) {
        const std::string_view arg = argv[i];
        if (arg == "--format") {
            if (i + 1 >= argc) return "--format takes html or ansi";
            if (!ReadFormat(argv[++i], Args.Format))
                return "unknown format '" + std::string(argv[i]) + "' (html or ansi)";
        } else if (arg.rfind("--format=", 0) == 0) {
            if (!ReadFormat(arg.substr(9), Args.Format))
                return "unknown format '" + std::string(arg.substr(9)) + "' (html or ansi)";
        } else if (arg.size() > 1 && arg[0] == '-') {
            return "unknown option '" + std::string(arg) + "' for highlight";
        } else if (!Args.Definition) {
            Args.Definition = argv[i];
        } else if (!Args.TextFile) {
            Args.TextFile = argv[i];
        } else {
            return "highlight takes a definition and at most one text file";
        }
    }
    return Args.Definition ? std::string() : "highlight takes a definition file name";
}

// The lines of a text file as the program reads text: the encoding from its
// byte order mark, the system code page without one.
WideString ReadText(const char* FileName) {
    TTextLines lines;
    TTextEncoding encoding = teAnsi;
    {
        TFileStream stream(FileName, fmOpenRead | fmShareDenyWrite);
        lines.Load(stream, encoding);
    }
    TWgWideStringList list;
    WideString line;
    for (int i = 0; i < lines.Count(); ++i) {
        lines.Line(i, line);
        list.Add(line);
    }
    return JoinLines(list);
}

std::string BaseName(const char* Path) {
    const std::string path = Path;
    const std::size_t slash = path.find_last_of("/\\");
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

void AppendEscaped(std::string& Out, std::u16string_view Text) {
    for (char c : EncodeUtf8Lenient(Text)) {
        switch (c) {
        case '&':
            Out += "&amp;";
            break;
        case '<':
            Out += "&lt;";
            break;
        case '>':
            Out += "&gt;";
            break;
        default:
            Out += c;
        }
    }
}

std::string CssRule(const std::string& Class, const THighlightStyle& Style) {
    std::string rule = "." + Class + " { color: " + CssColor(Style.Color) + ";";
    if (Style.Bold) rule += " font-weight: bold;";
    if (Style.Italic) rule += " font-style: italic;";
    if (Style.Underline) rule += " text-decoration: underline;";
    return rule + " }\n";
}

// One rule a class; keyword and tag groups as many as the definition has.
std::string StyleSheet(const THighlightRules& Rules) {
    std::string css = "body { background: " + CssColor(HighlightPaperColor) +
                      "; color: " + CssColor(HighlightTextColor) + "; }\n";
    const THighlightKind plain[] = {hkComment, hkString, hkChar, hkNumber,
                                    hkSymbol,  hkBlock,  hkUrl};
    for (THighlightKind kind : plain)
        css += CssRule(HighlightClassName({0, 0, kind, 0}), DefaultHighlightStyle(kind, 0));
    for (int g = 1; g <= Rules.KeywordGroupCount(); ++g)
        css +=
            CssRule(HighlightClassName({0, 0, hkKeyword, g}), DefaultHighlightStyle(hkKeyword, g));
    for (int g = 1; g <= Rules.TagGroupCount(); ++g)
        css += CssRule(HighlightClassName({0, 0, hkTag, g}), DefaultHighlightStyle(hkTag, g));
    return css;
}

// Walks the text once: Plain(from, to) between the pieces, Piece(span) for
// each; pieces never hold a line break.
template <typename FPlain, typename FPiece>
void Walk(std::u16string_view Text, const std::vector<THighlightSpan>& Pieces, FPlain&& Plain,
          FPiece&& Piece) {
    std::size_t at = 0;
    for (const THighlightSpan& piece : Pieces) {
        Plain(at, piece.Offset);
        Piece(piece);
        at = piece.End();
    }
    Plain(at, Text.size());
}

std::string Html(const std::string& Title, const THighlightRules& Rules, std::u16string_view Text,
                 const std::vector<THighlightSpan>& Pieces) {
    std::string out = "<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>";
    AppendEscaped(out, DecodeUtf8Lenient(Title));
    out += "</title>\n<style>\n" + StyleSheet(Rules) + "</style>\n</head>\n<body>\n<pre>\n";
    Walk(
        Text, Pieces,
        [&](std::size_t From, std::size_t To) { AppendEscaped(out, Text.substr(From, To - From)); },
        [&](const THighlightSpan& Piece) {
            out += "<span class=\"" + HighlightClassName(Piece) + "\">";
            AppendEscaped(out, Text.substr(Piece.Offset, Piece.Length));
            out += "</span>";
        });
    if (!Text.empty()) out += '\n';
    return out + "</pre>\n</body>\n</html>\n";
}

// Select graphic rendition parameters of each kind; groups cycle.
std::string AnsiCodes(const THighlightSpan& Span) {
    static constexpr std::array<const char*, 4> keywords = {"1;34", "1;36", "1;35", "1;33"};
    static constexpr std::array<const char*, 4> tags = {"1;31", "1;32", "1;36", "1;35"};
    const std::size_t cycle = Span.Group > 0 ? std::size_t(Span.Group - 1) % 4 : 0;
    switch (Span.Kind) {
    case hkComment:
        return "32";
    case hkString:
        return "31";
    case hkChar:
        return "35";
    case hkNumber:
        return "36";
    case hkSymbol:
        return "33";
    case hkBlock:
        return "34";
    case hkKeyword:
        return keywords[cycle];
    case hkTag:
        return tags[cycle];
    case hkUrl:
        return "4;34";
    }
    return "0";
}

std::string Ansi(std::u16string_view Text, const std::vector<THighlightSpan>& Pieces) {
    std::string out;
    Walk(
        Text, Pieces,
        [&](std::size_t From, std::size_t To) {
            out += EncodeUtf8Lenient(Text.substr(From, To - From));
        },
        [&](const THighlightSpan& Piece) {
            out += "\x1b[" + AnsiCodes(Piece) + "m";
            out += EncodeUtf8Lenient(Text.substr(Piece.Offset, Piece.Length));
            out += "\x1b[0m";
        });
    if (!Text.empty()) out += '\n';
    return out;
}

int Highlight(const THighlightArgs& Args) {
    TSyntaxDocument doc;
    doc.Load(Args.Definition);
    const WideString text = Args.TextFile ? ReadText(Args.TextFile) : JoinLines(*doc.Sample);
    const THighlightRules rules(doc);
    const std::vector<THighlightSpan> pieces = SplitAtLineEnds(text, rules.Highlight(text));
    const std::string out = Args.Format == ofHtml
                                ? Html(BaseName(Args.Definition), rules, text, pieces)
                                : Ansi(text, pieces);
    std::fwrite(out.data(), 1, out.size(), stdout);
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        std::fprintf(stderr, "syxtool: cannot write the output: %s\n", std::strerror(errno));
        return ExitFileError;
    }
    return ExitOk;
}

} // namespace

int RunHighlight(int argc, char** argv) {
    THighlightArgs args;
    if (std::string complaint = ParseArgs(argc, argv, args); !complaint.empty())
        return UsageError(complaint);
    try {
        return Highlight(args);
    } catch (const Exception& e) {
        std::fprintf(stderr, "syxtool: %s\n", e.what());
        return ExitFileError;
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "syxtool: out of memory\n");
        return ExitFileError;
    }
}
