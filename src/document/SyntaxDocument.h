#pragma once
// The eleven containers of one definition, made fresh as the editor makes
// them before a load, with the Open-then-Save road of the editor for tools.

#include "document/KVSyntax.h"

#include <array>
#include <memory>

// The default author lines that an opened file without banner receives.
extern const std::array<const char16_t*, 6> DefaultHeaderLines;

struct TSyntaxDocument {
    TSyntaxDocument() { Reset(); }

    // Fresh containers: Options with its 30 empty entries, everything else empty.
    void Reset();

    void Load(const AnsiString& FileName, TTextEncoding* DetectedEncoding = nullptr);
    void Save(const AnsiString& FileName) const;
    AnsiString SaveText() const;
    // The lines a save would write, still in wide form.
    void SaveWideLines(TWgWideStringList& Lines) const;
    // Reads lines into the containers as Load does, telling Observer what
    // each line did.
    void LoadLines(const TLineSource& Lines, TSyntaxWalkObserver* Observer = nullptr);

    // What the editor does on Open: load into fresh containers, then give a
    // file without banner lines the default author lines.
    void Open(const AnsiString& FileName, TTextEncoding* DetectedEncoding = nullptr);

    std::unique_ptr<TWgWideStringList> Header, Options, Blocks, Folds, AutoHint, Sample;
    std::unique_ptr<TMenuList> Keywords, Tags, AutoComplete, TagComplete, UserMenu;
};
