#include "Check.h"

#include "Json.h"

#include "base/Exceptions.h"
#include "base/Streams.h"
#include "document/SyntaxCheck.h"
#include "document/SyntaxDiff.h"
#include "wide/Utf.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr int ExitClean = 0;
constexpr int ExitFindings = 1;
constexpr int ExitTrouble = 2;

int Trouble(const std::string& Message) {
    std::fprintf(stderr, "syxtool: %s\n", Message.c_str());
    return ExitTrouble;
}

bool KnownCheck(const std::string& Id) {
    for (const TSyntaxCheckInfo& info : SyntaxChecks)
        if (Id == info.Id) return true;
    return false;
}

std::string KnownChecks() {
    std::string ids;
    for (const TSyntaxCheckInfo& info : SyntaxChecks)
        ids += std::string(ids.empty() ? "" : ", ") + info.Id;
    return ids;
}

const char* SeverityWord(TCheckSeverity Severity) {
    return Severity == csError ? "error" : "warning";
}

// The decoded lines of a file, as the reader reads them.
void ReadLines(const char* FileName, TTextLines& Lines) {
    TFileStream stream(FileName, fmOpenRead | fmShareDenyWrite);
    TTextEncoding encoding = teAnsi;
    Lines.Load(stream, encoding);
}

} // namespace

int RunCheck(int Argc, char** Argv) {
    TSyntaxChecker checker;
    bool json = false;
    std::vector<const char*> files;
    for (int i = 0; i < Argc; ++i) {
        const std::string arg = Argv[i];
        if (arg == "--format" || arg == "--disable") {
            if (i + 1 >= Argc) return Trouble(arg + " needs a value");
            const std::string value = Argv[++i];
            if (arg == "--format") {
                if (value != "text" && value != "json")
                    return Trouble("--format takes text or json, not '" + value + "'");
                json = value == "json";
            } else {
                if (!KnownCheck(value))
                    return Trouble("unknown check '" + value + "'; the checks are " + KnownChecks());
                checker.Disabled.insert(value);
            }
        } else if (arg.size() > 1 && arg[0] == '-') {
            return Trouble("unknown option '" + arg + "'");
        } else {
            files.push_back(Argv[i]);
        }
    }
    if (files.empty()) return Trouble("check takes at least one file name");

    struct TFileFindings {
        const char* File;
        std::vector<TSyntaxFinding> Findings;
    };
    std::vector<TFileFindings> all;
    // Every file is read before anything is printed: one that cannot be
    // read makes the run's result meaningless.
    for (const char* file : files) {
        TTextLines lines;
        try {
            ReadLines(file, lines);
        } catch (const Exception& e) {
            return Trouble(e.what());
        }
        all.push_back({file, checker.CheckLines(lines)});
    }

    bool any = false;
    std::string out = json ? "[" : "";
    for (const TFileFindings& f : all) {
        for (const TSyntaxFinding& finding : f.Findings) {
            if (json) {
                out += any ? ",\n  " : "\n  ";
                out += "{\"file\": " + JsonString(DecodeUtf8Lenient(f.File)) +
                       ", \"line\": " + std::to_string(finding.Line) +
                       ", \"column\": " + std::to_string(finding.Column) +
                       ", \"severity\": \"" + SeverityWord(finding.Severity) +
                       "\", \"check\": \"" + finding.Check +
                       "\", \"message\": " + JsonString(finding.Message) + "}";
            } else {
                out += f.File;
                if (finding.Line > 0) out += ":" + std::to_string(finding.Line);
                if (finding.Line > 0 && finding.Column > 0)
                    out += ":" + std::to_string(finding.Column);
                out += std::string(": ") + SeverityWord(finding.Severity) + ": " +
                       EncodeUtf8Lenient(finding.Message) + " [" + finding.Check + "]\n";
            }
            any = true;
        }
    }
    if (json) out += any ? "\n]\n" : "]\n";
    std::fwrite(out.data(), 1, out.size(), stdout);
    if (std::fflush(stdout) != 0) return Trouble("cannot write the findings");
    return any ? ExitFindings : ExitClean;
}

int RunDiff(int Argc, char** Argv) {
    if (Argc != 2) return Trouble("diff takes two file names");
    TSyntaxDocument a, b;
    try {
        a.Load(Argv[0]);
        b.Load(Argv[1]);
    } catch (const Exception& e) {
        return Trouble(e.what());
    }
    const std::vector<TSyntaxDiffSection> sections = DiffSyntaxDocuments(a, b);
    std::string out;
    for (const TSyntaxDiffSection& s : sections) {
        out += std::string("[") + s.Name + "]\n";
        for (const WideString& change : s.Changes)
            out += "  " + EncodeUtf8Lenient(change) + "\n";
    }
    std::fwrite(out.data(), 1, out.size(), stdout);
    if (std::fflush(stdout) != 0) return Trouble("cannot write the differences");
    return sections.empty() ? ExitClean : ExitFindings;
}
