#pragma once
// TKVWideStringList: the text-file flavour of the wide string list. It
// detects the encoding of what it loads, remembers it and writes the same
// encoding back, splits lines by length rather than by terminator, and can
// expand tabs on entry.

#include "document/WgUnicodeStrings.h"

enum TTextEncoding : std::uint8_t { teAnsi = 1, teUtf8 = 2, teUtf16LE = 3, teUtf16BE = 4 };

class TKVWideStringList : public TWgWideStringList {
public:
    bool KeepTabs() const { return FKeepTabs; }
    void SetKeepTabs(bool Value) { FKeepTabs = Value; }
    int TabWidth() const { return FTabWidth; }
    void SetTabWidth(int Value) { FTabWidth = Value; }
    TTextEncoding Encoding() const { return FEncoding; }
    void SetEncoding(TTextEncoding Value) { FEncoding = Value; }
    bool WriteBOM() const { return FWriteBOM; }
    void SetWriteBOM(bool Value) { FWriteBOM = Value; }

    void SetTextStr(const WideString& Value) override;
    int Add(const WideString& S) override;
    void LoadFromStream(TStream& Stream) override;
    void SaveToFile(const AnsiString& FileName) override;
    void SaveToStream(TStream& Stream) override;

private:
    int AddMove(WideString&& S);
    WideString ExpandTabs(WideString S) const;

    bool FKeepTabs = true;
    int FTabWidth = 4;
    TTextEncoding FEncoding = teAnsi;
    bool FWriteBOM = false;
};

// The encoding's name as the tools print it: "ansi", "utf-8", "utf-16le", "utf-16be".
const char* EncodingName(TTextEncoding Encoding);
