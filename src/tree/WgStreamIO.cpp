#include "tree/WgStreamIO.h"

#include "base/Exceptions.h"
#include "tree/WgTreeErrors.h"

#include <bit>
#include <vector>

namespace WgStreamIO {

std::int64_t Remaining(TStream& Stream) {
    const std::int64_t left = Stream.Size() - Stream.Position();
    return left < 0 ? 0 : left;
}

void Require(TStream& Stream, std::int64_t Bytes) {
    if (Bytes > Remaining(Stream)) throw EReadError(RtlMessages::SReadError);
}

namespace {
std::int32_t ReadStringCount(TStream& Stream) {
    const std::int32_t count = Stream.ReadInt32();
    if (count < 0) throw EReadError(WgTreeMessages::SInvalidStringHeader);
    return count;
}
} // namespace

AnsiString ReadRaw(TStream& Stream, std::int32_t Count) {
    if (Count <= 0) return AnsiString();
    Require(Stream, Count);
    AnsiString result(std::size_t(Count), '\0');
    Stream.ReadBuffer(result.data(), Count);
    return result;
}

AnsiString ReadAnsiCounted(TStream& Stream) {
    return ReadRaw(Stream, ReadStringCount(Stream));
}

void WriteAnsiCounted(TStream& Stream, const AnsiString& Value) {
    Stream.WriteInt32(std::int32_t(Value.size()));
    Stream.WriteBuffer(Value.data(), std::int64_t(Value.size()));
}

WideString ReadWideCounted(TStream& Stream) {
    const std::int32_t count = ReadStringCount(Stream);
    if (count == 0) return WideString();
    Require(Stream, std::int64_t(count) * 2);
    WideString result(std::size_t(count), u'\0');
    if constexpr (std::endian::native == std::endian::little) {
        Stream.ReadBuffer(result.data(), std::int64_t(count) * 2);
    } else {
        std::vector<std::uint8_t> bytes(std::size_t(count) * 2);
        Stream.ReadBuffer(bytes.data(), std::int64_t(bytes.size()));
        for (std::size_t i = 0; i < result.size(); ++i)
            result[i] = char16_t(bytes[2 * i] | (bytes[2 * i + 1] << 8));
    }
    return result;
}

void WriteWideCounted(TStream& Stream, const WideString& Value) {
    Stream.WriteInt32(std::int32_t(Value.size()));
    if constexpr (std::endian::native == std::endian::little) {
        Stream.WriteBuffer(Value.data(), std::int64_t(Value.size()) * 2);
    } else {
        std::vector<std::uint8_t> bytes(Value.size() * 2);
        for (std::size_t i = 0; i < Value.size(); ++i) {
            bytes[2 * i] = std::uint8_t(Value[i]);
            bytes[2 * i + 1] = std::uint8_t(Value[i] >> 8);
        }
        Stream.WriteBuffer(bytes.data(), std::int64_t(bytes.size()));
    }
}

AnsiString ReadAnsiZ(TStream& Stream) {
    const std::int32_t count = Stream.ReadInt32();
    if (count < 0) throw EReadError(WgTreeMessages::SInvalidStringHeader);
    AnsiString bytes = ReadRaw(Stream, count);
    const std::size_t nul = bytes.find('\0');
    if (nul != AnsiString::npos) bytes.resize(nul);
    return bytes;
}

void WriteAnsiZ(TStream& Stream, const AnsiString& Value) {
    // A text with an inner NUL ends there, as the reader would see it.
    const std::size_t length = std::min(Value.size(), Value.find('\0'));
    Stream.WriteInt32(std::int32_t(length + 1));
    Stream.WriteBuffer(Value.data(), std::int64_t(length));
    Stream.WriteByte(0);
}

std::int32_t ReadCount(TStream& Stream, std::int64_t MinEntryBytes) {
    const std::int32_t count = Stream.ReadInt32();
    // A count that the bytes left cannot hold is a truncated stream, and
    // fails as one: nothing is made for entries that are not there.
    if (count < 0 || std::int64_t(count) * MinEntryBytes > Remaining(Stream))
        throw EReadError(RtlMessages::SReadError);
    return count;
}

} // namespace WgStreamIO
