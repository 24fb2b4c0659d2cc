#include "support/AllocationProbe.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<int> Probes{0};
std::atomic<std::size_t> LargestRequest{0};
} // namespace

TAllocationProbe::TAllocationProbe() {
    LargestRequest = 0;
    ++Probes;
}

TAllocationProbe::~TAllocationProbe() {
    --Probes;
}

std::size_t TAllocationProbe::Largest() const {
    return LargestRequest;
}

// Every unaligned form is replaced, so that whatever allocates them (a
// sanitizer's run-time has its own) they are freed alike; the aligned forms
// are neither replaced nor counted.
void* operator new(std::size_t Size) {
    if (Probes.load(std::memory_order_relaxed) > 0) {
        std::size_t seen = LargestRequest.load(std::memory_order_relaxed);
        while (Size > seen && !LargestRequest.compare_exchange_weak(seen, Size)) {
        }
    }
    if (void* p = std::malloc(Size ? Size : 1)) return p;
    throw std::bad_alloc();
}

void* operator new[](std::size_t Size) {
    return ::operator new(Size);
}

void* operator new(std::size_t Size, const std::nothrow_t&) noexcept {
    try {
        return ::operator new(Size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void* operator new[](std::size_t Size, const std::nothrow_t& Tag) noexcept {
    return ::operator new(Size, Tag);
}

void operator delete(void* P) noexcept {
    std::free(P);
}

void operator delete[](void* P) noexcept {
    std::free(P);
}

void operator delete(void* P, std::size_t) noexcept {
    std::free(P);
}

void operator delete[](void* P, std::size_t) noexcept {
    std::free(P);
}

void operator delete(void* P, const std::nothrow_t&) noexcept {
    std::free(P);
}

void operator delete[](void* P, const std::nothrow_t&) noexcept {
    std::free(P);
}
