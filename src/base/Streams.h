#pragma once
// Byte streams: the abstract stream, a memory stream and a file stream.

#include "base/Types.h"

#include <cstdint>
#include <cstdio>
#include <vector>

enum TSeekOrigin : std::uint8_t { soBeginning = 0, soCurrent = 1, soEnd = 2 };

class TStream {
public:
    virtual ~TStream() = default;

    // Reads or writes up to Count bytes; returns how many were moved.
    virtual std::int64_t Read(void* Buffer, std::int64_t Count) = 0;
    virtual std::int64_t Write(const void* Buffer, std::int64_t Count) = 0;
    virtual std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) = 0;

    std::int64_t Position() { return Seek(0, soCurrent); }
    void SetPosition(std::int64_t Value) { Seek(Value, soBeginning); }
    virtual std::int64_t Size();

    // Exactly Count bytes or EReadError / EWriteError.
    void ReadBuffer(void* Buffer, std::int64_t Count);
    void WriteBuffer(const void* Buffer, std::int64_t Count);

    // Little-endian helpers over ReadBuffer / WriteBuffer.
    std::uint8_t ReadByte();
    std::uint16_t ReadUInt16();
    std::int32_t ReadInt32();
    void WriteByte(std::uint8_t Value);
    void WriteUInt16(std::uint16_t Value);
    void WriteInt32(std::int32_t Value);
};

class TMemoryStream : public TStream {
public:
    TMemoryStream() = default;
    explicit TMemoryStream(std::vector<std::uint8_t> Data) : FData(std::move(Data)) {}

    std::int64_t Read(void* Buffer, std::int64_t Count) override;
    std::int64_t Write(const void* Buffer, std::int64_t Count) override;
    std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) override;
    std::int64_t Size() override { return std::int64_t(FData.size()); }

    const std::vector<std::uint8_t>& Data() const { return FData; }
    void Clear();

private:
    std::vector<std::uint8_t> FData;
    std::int64_t FPosition = 0;
};

// File open modes as the platform numbers them.
inline constexpr std::uint16_t fmOpenRead = 0x0000;
inline constexpr std::uint16_t fmOpenWrite = 0x0001;
inline constexpr std::uint16_t fmOpenReadWrite = 0x0002;
inline constexpr std::uint16_t fmShareDenyWrite = 0x0020;
inline constexpr std::uint16_t fmCreate = 0xFFFF; // create, or truncate an existing file

// A file stream on a narrow file name. On POSIX systems the name is the
// operating system's own byte path. Sharing flags are honoured where the
// platform has them (Windows); elsewhere a reader never blocks writers.
class TFileStream : public TStream {
public:
    // Raises EFCreateError (fmCreate) or EFOpenError with the system's reason.
    TFileStream(const AnsiString& FileName, std::uint16_t Mode);
    ~TFileStream() override;
    TFileStream(const TFileStream&) = delete;
    TFileStream& operator=(const TFileStream&) = delete;

    std::int64_t Read(void* Buffer, std::int64_t Count) override;
    std::int64_t Write(const void* Buffer, std::int64_t Count) override;
    std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) override;

    const AnsiString& FileName() const { return FFileName; }

private:
    AnsiString FFileName;
    std::FILE* FFile = nullptr;
};
