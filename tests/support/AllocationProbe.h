#pragma once
// The largest single allocation a piece of code makes, for tests that a
// reader sizes its buffers by the bytes it has rather than by the counts
// it reads. The core test program replaces operator new for this; outside
// a probe the replacement only forwards to malloc.

#include <cstddef>

class TAllocationProbe {
public:
    TAllocationProbe();
    ~TAllocationProbe();
    TAllocationProbe(const TAllocationProbe&) = delete;
    TAllocationProbe& operator=(const TAllocationProbe&) = delete;

    // The largest request since the probe began.
    std::size_t Largest() const;
};
