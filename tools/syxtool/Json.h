#pragma once
// A small JSON writer for the dump command: wide strings go out as UTF-8,
// with escapes for control characters and for lone surrogates.

#include "base/Types.h"

#include <string>

std::string JsonString(const WideString& Text);
