#include "FuzzHarness.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
    return LexsmithFuzz::Run(Data, Size, FuzzHtml, FuzzAllowance);
}
