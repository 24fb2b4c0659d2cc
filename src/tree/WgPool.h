#pragma once
// A fixed-size block allocator for the objects a tree makes by the million
// (items, their text and flag blocks). Blocks are carved from large chunks and
// kept on a free list; when the last block of a pool is returned, all chunks
// go back to the system. Like the whole tree it serves one thread only.
//
// Address sanitizer builds bypass the pool so that every object stays visible
// to the sanitizer's use-after-free and leak checks.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define LEXSMITH_POOL_BYPASS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define LEXSMITH_POOL_BYPASS 1
#endif
#endif

class TWgFixedPool {
public:
    TWgFixedPool(std::size_t Size, std::size_t Align)
        : FSlot(RoundUp(Size < sizeof(void*) ? sizeof(void*) : Size, Align)), FSize(Size) {}
    ~TWgFixedPool() {
        // Chunks still in use at exit are left alone: their objects may be
        // destroyed later by another static's destructor.
        if (FLive != 0)
            for (auto& chunk : FChunks)
                (void)chunk.release();
    }
    TWgFixedPool(const TWgFixedPool&) = delete;
    TWgFixedPool& operator=(const TWgFixedPool&) = delete;

    void* Allocate() {
#ifdef LEXSMITH_POOL_BYPASS
        return ::operator new(FSize);
#else
        ++FLive;
        if (FFree) {
            void* p = FFree;
            FFree = *static_cast<void**>(p);
            return p;
        }
        if (FNext == FEnd) NewChunk();
        void* p = FNext;
        FNext += FSlot;
        return p;
#endif
    }

    void Release(void* P) {
#ifdef LEXSMITH_POOL_BYPASS
        ::operator delete(P);
#else
        if (!P) return;
        *static_cast<void**>(P) = FFree;
        FFree = P;
        if (--FLive == 0) {
            FChunks.clear();
            FFree = nullptr;
            FNext = FEnd = nullptr;
        }
#endif
    }

    std::size_t Live() const {
        return FLive;
    }

private:
    static constexpr std::size_t ChunkBytes = 256 * 1024;
    static std::size_t RoundUp(std::size_t N, std::size_t A) {
        return (N + A - 1) / A * A;
    }

    void NewChunk() {
        std::size_t count = ChunkBytes / FSlot;
        if (count == 0) count = 1;
        FChunks.emplace_back(new unsigned char[count * FSlot]);
        FNext = FChunks.back().get();
        FEnd = FNext + count * FSlot;
    }

    std::size_t FSlot;
    std::size_t FSize;
    std::size_t FLive = 0;
    void* FFree = nullptr;
    unsigned char* FNext = nullptr;
    unsigned char* FEnd = nullptr;
    std::vector<std::unique_ptr<unsigned char[]>> FChunks;
};

// The pool for objects of exactly type T; a derived class of another size
// falls back to the global heap.
template <typename T> TWgFixedPool& PoolOf() {
    static TWgFixedPool pool(sizeof(T), alignof(T));
    return pool;
}

#define LEXSMITH_POOLED(T)                                                                         \
    static void* operator new(std::size_t Size) {                                                  \
        return Size == sizeof(T) ? PoolOf<T>().Allocate() : ::operator new(Size);                  \
    }                                                                                              \
    static void operator delete(void* P, std::size_t Size) {                                       \
        if (Size == sizeof(T))                                                                     \
            PoolOf<T>().Release(P);                                                                \
        else                                                                                       \
            ::operator delete(P);                                                                  \
    }
