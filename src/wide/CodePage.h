#pragma once
// The system code page: the narrow side of every conversion of wide text.
//
// Windows-1252 is built in. On POSIX systems LEXSMITH_CODEPAGE names another
// Windows code page by number (for example 1251), reached through the C
// library's iconv; on Windows the ANSI code page of the system is used.
// A character that the code page lacks becomes "?", a surrogate pair one "?";
// there is no best-fit mapping, so the bytes are the same on every machine.

#include "base/Types.h"

#include <memory>
#include <string_view>

class TCodePage {
public:
    virtual ~TCodePage() = default;
    virtual int Number() const = 0;
    virtual WideString Decode(std::string_view Bytes) const = 0;
    virtual AnsiString Encode(std::u16string_view Text) const = 0;
    // Encodes and appends to Out.
    virtual void EncodeAppend(std::u16string_view Text, AnsiString& Out) const {
        Out += Encode(Text);
    }
    // Decodes into Out, reusing its storage.
    virtual void DecodeTo(std::string_view Bytes, WideString& Out) const { Out = Decode(Bytes); }
    // True when the bytes 13 and 10 decode to carriage return and line feed
    // and nothing else decodes to either, so narrow text can be split into
    // lines before it is decoded.
    virtual bool SplitsOnBytes() const { return false; }
    // True when every unit below 128 encodes to the byte of the same value,
    // so that writers may copy plain ASCII straight through.
    virtual bool AsciiIdentity() const { return false; }
};

// The code page with this Windows number, or null when the platform cannot
// convert it. 1252 and 65001 (UTF-8) always exist.
std::unique_ptr<TCodePage> CreateCodePage(int Number);

// The process's system code page, chosen once at first use.
const TCodePage& SystemCodePage();

// Shorthands through SystemCodePage().
WideString AnsiToWide(std::string_view Bytes);
AnsiString WideToAnsi(std::u16string_view Text);
