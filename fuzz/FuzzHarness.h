#pragma once
// The shared body of the libFuzzer harnesses: one entry point of
// base/Fuzz.h on one input, with allocations watched. libFuzzer's
// -malloc_limit_mb is one limit for every input; this one grows with the
// input, so that a reader which reserves memory on a count it has not
// checked against the bytes behind it is caught even for counts far below
// the global limit. The finding is reported at the allocation itself, with
// its stack, and ends the run as a crash does.

#include "base/Fuzz.h"

#include <sanitizer/allocator_interface.h>
#include <sanitizer/common_interface_defs.h>

#include <cstdio>
#include <cstdlib>

namespace LexsmithFuzz {

inline std::size_t Bound = 0; // 0: not inside an entry point

inline void OnMalloc(const volatile void*, std::size_t Size) {
    if (Bound == 0 || Size <= Bound) return;
    const std::size_t bound = Bound;
    Bound = 0;
    std::fprintf(stderr,
                 "==lexsmith-fuzz== allocation of %zu bytes exceeds the bound of %zu bytes "
                 "for this input\n",
                 Size, bound);
    __sanitizer_print_stack_trace();
    std::abort();
}

inline void OnFree(const volatile void*) {}

inline int Run(const std::uint8_t* Data, std::size_t Size,
               int (*Entry)(const std::uint8_t*, std::size_t), std::size_t Allowance) {
    static const int hooks = __sanitizer_install_malloc_and_free_hooks(OnMalloc, OnFree);
    (void)hooks;
    Bound = FuzzAllocationBound(Size, Allowance);
    Entry(Data, Size);
    Bound = 0;
    return 0;
}

} // namespace LexsmithFuzz
