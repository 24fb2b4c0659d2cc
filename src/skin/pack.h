#pragma once
// Folders of skin members: what our packer reads and unpacking writes.

#include "skin/reader.h"

#include <string>
#include <vector>

// The members of a folder: the names of DIR/files.lst in its order (one a
// line, blank lines skipped) when it exists, else every .ini and .bmp file
// in the order of their lower-cased names. Raises Exception with a message
// naming the folder or file at fault.
std::vector<TSkinMember> ReadSkinFolder(const std::string& Dir);
inline constexpr const char* SkinListingFile = "files.lst";

// Writes each member as the reader's GetFile returns it into Dir (created
// if needed). Names with a path or none are not written; they are returned.
std::vector<AnsiString> WriteSkinFolder(const TSkinReader& Reader, const std::string& Dir);
