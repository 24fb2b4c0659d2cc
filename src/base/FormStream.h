#pragma once
// The value tags of the form stream in which persistent properties are
// written, with a small reader and writer for them.

#include "base/Streams.h"

enum TValueType : std::uint8_t {
    vaNull = 0, // also the end of a list
    vaList = 1,
    vaInt8 = 2,
    vaInt16 = 3,
    vaInt32 = 4,
    vaExtended = 5,
    vaString = 6, // 1-byte length, narrow text
    vaIdent = 7,
    vaFalse = 8,
    vaTrue = 9,
    vaBinary = 10,
    vaSet = 11,
    vaLString = 12, // 32-bit length, narrow text
    vaNil = 13,
    vaCollection = 14,
    vaSingle = 15,
    vaCurrency = 16,
    vaDate = 17,
    vaWString = 18, // 32-bit count, UTF-16 text
    vaInt64 = 19,
    vaUTF8String = 20, // 32-bit length, UTF-8 text
};

class TFormWriter {
public:
    explicit TFormWriter(TStream& Stream) : FStream(Stream) {}
    void WriteListBegin() { FStream.WriteByte(vaList); }
    void WriteListEnd() { FStream.WriteByte(vaNull); }
    void WriteWideString(const WideString& Value);

private:
    TStream& FStream;
};

class TFormReader {
public:
    explicit TFormReader(TStream& Stream) : FStream(Stream) {}
    TValueType ReadValue() { return TValueType(FStream.ReadByte()); }
    TValueType NextValue(); // peeks without consuming
    std::uint8_t ReadByte() { return FStream.ReadByte(); }
    std::int32_t ReadInt32() { return FStream.ReadInt32(); }
    void ReadListBegin(); // EReadError unless a list starts here
    void ReadListEnd();
    bool EndOfList() { return NextValue() == vaNull; }
    // Reads the bytes of a value whose tag has been read; Count is checked
    // against what the stream still holds before anything is allocated.
    AnsiString ReadNarrow(std::int64_t Count);
    WideString ReadWideChars(std::int64_t Count);
    std::int64_t Remaining();

private:
    TStream& FStream;
};
