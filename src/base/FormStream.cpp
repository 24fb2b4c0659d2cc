#include "base/FormStream.h"

#include "base/Exceptions.h"

void TFormWriter::WriteWideString(const WideString& Value) {
    FStream.WriteByte(vaWString);
    FStream.WriteInt32(std::int32_t(Value.size()));
    for (WideChar c : Value)
        FStream.WriteUInt16(c);
}

TValueType TFormReader::NextValue() {
    TValueType v = ReadValue();
    FStream.Seek(-1, soCurrent);
    return v;
}

void TFormReader::ReadListBegin() {
    if (ReadValue() != vaList) throw EReadError(RtlMessages::SInvalidPropertyValue);
}

void TFormReader::ReadListEnd() {
    if (ReadValue() != vaNull) throw EReadError(RtlMessages::SInvalidPropertyValue);
}

std::int64_t TFormReader::Remaining() {
    return FStream.Size() - FStream.Position();
}

AnsiString TFormReader::ReadNarrow(std::int64_t Count) {
    if (Count < 0 || Count > Remaining()) throw EReadError(RtlMessages::SReadError);
    AnsiString s(std::size_t(Count), '\0');
    FStream.ReadBuffer(s.data(), Count);
    return s;
}

WideString TFormReader::ReadWideChars(std::int64_t Count) {
    if (Count < 0 || Count > Remaining() / 2) throw EReadError(RtlMessages::SReadError);
    std::string bytes(std::size_t(Count) * 2, '\0');
    FStream.ReadBuffer(bytes.data(), Count * 2);
    WideString s(std::size_t(Count), u'\0');
    for (std::size_t i = 0; i < s.size(); ++i)
        s[i] = WideChar(std::uint8_t(bytes[2 * i]) | (std::uint8_t(bytes[2 * i + 1]) << 8));
    return s;
}
