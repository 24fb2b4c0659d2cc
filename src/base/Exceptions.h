#pragma once
// The exception classes of the program. Every one carries its message text
// exactly as the user is to read it.

#include <stdexcept>
#include <string>

class Exception : public std::runtime_error {
public:
    explicit Exception(const std::string& Message) : std::runtime_error(Message) {}
    std::string Message() const { return what(); }
};

#define LEXSMITH_EXCEPTION(Name, Base)                                                             \
    class Name : public Base {                                                                     \
    public:                                                                                        \
        using Base::Base;                                                                          \
    };

LEXSMITH_EXCEPTION(EListError, Exception)
LEXSMITH_EXCEPTION(EStringListError, Exception)
LEXSMITH_EXCEPTION(EStreamError, Exception)
LEXSMITH_EXCEPTION(EFileStreamError, EStreamError)
LEXSMITH_EXCEPTION(EFOpenError, EFileStreamError)
LEXSMITH_EXCEPTION(EFCreateError, EFileStreamError)
LEXSMITH_EXCEPTION(EReadError, EStreamError)
LEXSMITH_EXCEPTION(EWriteError, EStreamError)
LEXSMITH_EXCEPTION(EConvertError, Exception)

#undef LEXSMITH_EXCEPTION

// The run-time's message texts that list and stream errors use.
namespace RtlMessages {
inline constexpr const char* SListIndexError = "List index out of bounds (%d)";
inline constexpr const char* SSortedListError = "Operation not allowed on sorted list";
inline constexpr const char* SDuplicateString = "String list does not allow duplicates";
inline constexpr const char* SReadError = "Stream read error";
inline constexpr const char* SWriteError = "Stream write error";
inline constexpr const char* SFOpenError = "Cannot open file \"%s\". %s";
inline constexpr const char* SFCreateError = "Cannot create file \"%s\". %s";
inline constexpr const char* SInvalidPropertyValue = "Invalid property value";
} // namespace RtlMessages

// Formats one of the messages above: each "%d" and "%s" takes the next argument.
std::string FormatMessage(const char* Format, std::initializer_list<std::string> Args);
std::string FormatIndexMessage(const char* Format, long long Index);
