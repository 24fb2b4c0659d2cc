#include "base/Streams.h"

#include "base/Exceptions.h"
#include "base/FileNames.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#ifdef _WIN32
#include <share.h>
#define LEXSMITH_FSEEK _fseeki64
#define LEXSMITH_FTELL _ftelli64
#else
#define LEXSMITH_FSEEK fseeko
#define LEXSMITH_FTELL ftello
#endif

std::int64_t TStream::Size() {
    std::int64_t pos = Seek(0, soCurrent);
    std::int64_t size = Seek(0, soEnd);
    Seek(pos, soBeginning);
    return size;
}

void TStream::ReadBuffer(void* Buffer, std::int64_t Count) {
    if (Count != 0 && Read(Buffer, Count) != Count) throw EReadError(RtlMessages::SReadError);
}

void TStream::WriteBuffer(const void* Buffer, std::int64_t Count) {
    if (Count != 0 && Write(Buffer, Count) != Count) throw EWriteError(RtlMessages::SWriteError);
}

std::uint8_t TStream::ReadByte() {
    std::uint8_t b;
    ReadBuffer(&b, 1);
    return b;
}

std::uint16_t TStream::ReadUInt16() {
    std::uint8_t b[2];
    ReadBuffer(b, 2);
    return std::uint16_t(b[0] | (b[1] << 8));
}

std::int32_t TStream::ReadInt32() {
    std::uint8_t b[4];
    ReadBuffer(b, 4);
    return std::int32_t(std::uint32_t(b[0]) | (std::uint32_t(b[1]) << 8) |
                        (std::uint32_t(b[2]) << 16) | (std::uint32_t(b[3]) << 24));
}

void TStream::WriteByte(std::uint8_t Value) {
    WriteBuffer(&Value, 1);
}

void TStream::WriteUInt16(std::uint16_t Value) {
    std::uint8_t b[2] = {std::uint8_t(Value), std::uint8_t(Value >> 8)};
    WriteBuffer(b, 2);
}

void TStream::WriteInt32(std::int32_t Value) {
    auto v = std::uint32_t(Value);
    std::uint8_t b[4] = {std::uint8_t(v), std::uint8_t(v >> 8), std::uint8_t(v >> 16),
                         std::uint8_t(v >> 24)};
    WriteBuffer(b, 4);
}

// ---- memory stream

std::int64_t TMemoryStream::Read(void* Buffer, std::int64_t Count) {
    if (Count <= 0 || FPosition >= Size()) return 0;
    std::int64_t n = std::min(Count, Size() - FPosition);
    std::memcpy(Buffer, FData.data() + FPosition, std::size_t(n));
    FPosition += n;
    return n;
}

std::int64_t TMemoryStream::Write(const void* Buffer, std::int64_t Count) {
    if (Count <= 0 || FPosition < 0) return 0;
    std::int64_t end = FPosition + Count;
    if (end > Size()) FData.resize(std::size_t(end));
    std::memcpy(FData.data() + FPosition, Buffer, std::size_t(Count));
    FPosition = end;
    return Count;
}

std::int64_t TMemoryStream::Seek(std::int64_t Offset, TSeekOrigin Origin) {
    switch (Origin) {
    case soBeginning:
        FPosition = Offset;
        break;
    case soCurrent:
        FPosition += Offset;
        break;
    case soEnd:
        FPosition = Size() + Offset;
        break;
    }
    return FPosition;
}

void TMemoryStream::Clear() {
    FData.clear();
    FPosition = 0;
}

// ---- file stream

TFileStream::TFileStream(const AnsiString& FileName, std::uint16_t Mode) : FFileName(FileName) {
    const bool create = Mode == fmCreate;
    const char* how = "rb";
    if (create)
        how = "wb";
    else if ((Mode & 3) == fmOpenWrite || (Mode & 3) == fmOpenReadWrite)
        how = "r+b";
    std::error_code ec;
    if (!create && std::filesystem::is_directory(NarrowPath(FileName), ec))
        throw EFOpenError(FormatMessage(RtlMessages::SFOpenError, {FileName, "Is a directory"}));
#ifdef _WIN32
    int share = (!create && (Mode & 0xF0) == fmShareDenyWrite) ? _SH_DENYWR : _SH_DENYNO;
    FFile = _fsopen(FileName.c_str(), how, share);
#else
    FFile = std::fopen(FileName.c_str(), how);
#endif
    if (!FFile) {
        std::string reason = std::strerror(errno);
        if (create)
            throw EFCreateError(FormatMessage(RtlMessages::SFCreateError, {FileName, reason}));
        throw EFOpenError(FormatMessage(RtlMessages::SFOpenError, {FileName, reason}));
    }
}

TFileStream::~TFileStream() {
    if (FFile) std::fclose(FFile);
}

std::int64_t TFileStream::Read(void* Buffer, std::int64_t Count) {
    if (Count <= 0) return 0;
    return std::int64_t(std::fread(Buffer, 1, std::size_t(Count), FFile));
}

std::int64_t TFileStream::Write(const void* Buffer, std::int64_t Count) {
    if (Count <= 0) return 0;
    return std::int64_t(std::fwrite(Buffer, 1, std::size_t(Count), FFile));
}

std::int64_t TFileStream::Seek(std::int64_t Offset, TSeekOrigin Origin) {
    int whence = Origin == soBeginning ? SEEK_SET : Origin == soCurrent ? SEEK_CUR : SEEK_END;
    if (LEXSMITH_FSEEK(FFile, Offset, whence) != 0) return -1;
    return std::int64_t(LEXSMITH_FTELL(FFile));
}
