#pragma once
// A little builder of stream bytes for the reader tests.

#include "base/Streams.h"
#include "base/Types.h"

#include <cstdint>
#include <string>
#include <vector>

struct TBytes {
    std::vector<std::uint8_t> B;

    TBytes& I32(std::int32_t V) {
        for (int i = 0; i < 4; ++i)
            B.push_back(std::uint8_t(std::uint32_t(V) >> (8 * i)));
        return *this;
    }
    TBytes& U8(std::uint8_t V) {
        B.push_back(V);
        return *this;
    }
    TBytes& Raw(const std::string& S) {
        B.insert(B.end(), S.begin(), S.end());
        return *this;
    }
    TBytes& Ansi(const std::string& S) { return I32(std::int32_t(S.size())).Raw(S); }
    TBytes& AnsiZ(const std::string& S) { return I32(std::int32_t(S.size() + 1)).Raw(S).U8(0); }
    TBytes& Wide(const std::u16string& S) {
        I32(std::int32_t(S.size()));
        for (char16_t c : S)
            U8(std::uint8_t(c)).U8(std::uint8_t(c >> 8));
        return *this;
    }
    // A record of Size bytes with 32-bit values or bytes at offsets.
    struct TField {
        int Offset;
        std::int64_t Value;
        int Size;
    };
    TBytes& Record(int Size, std::initializer_list<TField> Fields) {
        std::vector<std::uint8_t> r(std::size_t(Size), 0);
        for (const TField& f : Fields)
            for (int i = 0; i < f.Size; ++i)
                r[std::size_t(f.Offset + i)] = std::uint8_t(std::uint64_t(f.Value) >> (8 * i));
        B.insert(B.end(), r.begin(), r.end());
        return *this;
    }
    TMemoryStream Stream() const { return TMemoryStream(B); }
};
