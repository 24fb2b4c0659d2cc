#pragma once
// Exceptions of the tree and its header, with their fixed messages.

#include "base/Exceptions.h"

class EWgTreeError : public Exception {
public:
    using Exception::Exception;
};

class EWgHeaderError : public Exception {
public:
    using Exception::Exception;
};

namespace WgTreeMessages {
inline constexpr const char* SItemIndexOutOfBounds = "WgTree item index out of bounds.";
inline constexpr const char* SCantMoveToSubitem = "Can't move Item to one of its subitems.";
inline constexpr const char* SItemNotSpecified = "WgTree item not specified";
inline constexpr const char* SInvalidSection = "Invalid section";
inline constexpr const char* SIndexOutOfBounds = "Index out of bounds";
inline constexpr const char* SInvalidStringHeader = "Invalid string header read from the stream";
inline constexpr const char* SVirtualityWarning =
    "Changing Virtuality Level will clear all data of the items. Continue?";
inline constexpr const char* SVirtualityWarningTitle = "Warning";
} // namespace WgTreeMessages
