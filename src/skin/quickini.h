#pragma once
// The ini text that a skin carries: kept lines, section index, and string
// and integer look-ups. Keys and section names are plain byte strings.

#include "base/Streams.h"
#include "base/Types.h"

#include <cstdint>
#include <utility>
#include <vector>

class TQuickIni {
public:
    std::uint8_t Flag = 0; // read by nothing; kept for the layout of the record

    // The kept lines in file order, section headers among them.
    std::vector<AnsiString> Lines;
    // The section header lines with their index in Lines.
    std::vector<std::pair<AnsiString, int>> Sections;

    // Reads from the stream's position to its end; null does nothing.
    void LoadFromStream(TStream* Stream);
    void LoadFromString(const AnsiString& Text);

    // Section names without brackets and surrounding blanks, file order.
    void ReadSections(std::vector<AnsiString>& List) const;
    AnsiString ReadString(const AnsiString& Section, const AnsiString& Key,
                          const AnsiString& Default) const;
    std::int32_t ReadInteger(const AnsiString& Section, const AnsiString& Key,
                             std::int32_t Default) const;

    static bool IsSection(const AnsiString& Line);
    static AnsiString GetKey(const AnsiString& Line);
    static AnsiString GetValue(const AnsiString& Line, const AnsiString& Key);
    int FindSection(const AnsiString& Name) const;
};

// Byte-string helpers shared by the skin readers.
AnsiString AnsiTrim(std::string_view S);  // drops bytes below 33 at both ends
AnsiString AnsiLower(std::string_view S); // ASCII letters only
AnsiString AnsiUpper(std::string_view S); // ASCII letters only
bool AnsiSameText(std::string_view A, std::string_view B);
// Decimal with an optional sign, or "$" hexadecimal (up to 32 bits, which
// wrap to a signed value); anything else gives Default.
std::int32_t StrToIntDef(std::string_view S, std::int32_t Default);
