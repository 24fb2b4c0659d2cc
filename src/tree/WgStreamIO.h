#pragma once
// The primitive encodings of the tree's binary streams, and little-endian
// access to fixed records. Every read is checked against what the stream
// still holds before anything is allocated.

#include "base/Streams.h"
#include "base/Types.h"

#include <cstdint>
#include <cstring>

namespace WgStreamIO {

// Bytes left between the position and the end of the stream.
std::int64_t Remaining(TStream& Stream);
// Raises the stream's read error unless Bytes more bytes can be read.
void Require(TStream& Stream, std::int64_t Bytes);

// i32 byte count N, then N bytes; a negative count is an invalid header.
AnsiString ReadAnsiCounted(TStream& Stream);
void WriteAnsiCounted(TStream& Stream, const AnsiString& Value);
// i32 character count N, then 2N bytes of UTF-16LE.
WideString ReadWideCounted(TStream& Stream);
void WriteWideCounted(TStream& Stream, const WideString& Value);
// i32 byte count N including a terminating NUL; the text ends at the first NUL.
AnsiString ReadAnsiZ(TStream& Stream);
void WriteAnsiZ(TStream& Stream, const AnsiString& Value);
// N raw bytes of 8-bit text.
AnsiString ReadRaw(TStream& Stream, std::int32_t Count);

// An element count that precedes entries of at least MinEntryBytes each:
// negative or more than the stream can hold is a read error, raised before
// anything is made for the entries.
std::int32_t ReadCount(TStream& Stream, std::int64_t MinEntryBytes);

inline std::int32_t GetI32(const std::uint8_t* R, int Offset) {
    return std::int32_t(std::uint32_t(R[Offset]) | (std::uint32_t(R[Offset + 1]) << 8) |
                        (std::uint32_t(R[Offset + 2]) << 16) |
                        (std::uint32_t(R[Offset + 3]) << 24));
}
inline std::uint32_t GetU32(const std::uint8_t* R, int Offset) {
    return std::uint32_t(GetI32(R, Offset));
}
inline std::uint16_t GetU16(const std::uint8_t* R, int Offset) {
    return std::uint16_t(R[Offset] | (R[Offset + 1] << 8));
}
inline void PutU32(std::uint8_t* R, int Offset, std::uint32_t V) {
    R[Offset] = std::uint8_t(V);
    R[Offset + 1] = std::uint8_t(V >> 8);
    R[Offset + 2] = std::uint8_t(V >> 16);
    R[Offset + 3] = std::uint8_t(V >> 24);
}
inline void PutI32(std::uint8_t* R, int Offset, std::int32_t V) {
    PutU32(R, Offset, std::uint32_t(V));
}
inline void PutU16(std::uint8_t* R, int Offset, std::uint16_t V) {
    R[Offset] = std::uint8_t(V);
    R[Offset + 1] = std::uint8_t(V >> 8);
}

} // namespace WgStreamIO
