#pragma once
// Narrow file names and std::filesystem. A narrow name is bytes in the
// system code page, as the C library's fopen takes it. On POSIX systems
// those bytes are the path itself. On Windows the file system library reads
// a narrow string as Latin-1 and gives UTF-8 back, so every trip through it
// converts by the ANSI code page instead, as the system's narrow file
// functions do; a character that the code page lacks becomes "?".

#include "base/Types.h"

#include <filesystem>

std::filesystem::path NarrowPath(const AnsiString& Name);
AnsiString NarrowName(const std::filesystem::path& Path);
