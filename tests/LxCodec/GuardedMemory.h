#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Memory between two pages that nobody may touch. Unlike the address sanitizer it also catches what hand-written
/// vector code reads outside an image.
class GuardedMemory
{
public:
    explicit GuardedMemory(size_t aCapacity)
    {
        const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
        mCapacity = (aCapacity + page - 1) / page * page;
        mMappedSize = mCapacity + 2 * page;
        void *const mapped = mmap(nullptr, mMappedSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (mapped == MAP_FAILED) {
            std::abort();
        }
        mMapped = static_cast<uint8_t *>(mapped);
        mStart = mMapped + page;
        if (mprotect(mStart, mCapacity, PROT_READ | PROT_WRITE) != 0) {
            std::abort();
        }
    }
    ~GuardedMemory() { munmap(mMapped, mMappedSize); }
    GuardedMemory(const GuardedMemory &) = delete;
    GuardedMemory &operator=(const GuardedMemory &) = delete;

    /// aSize bytes right behind the first forbidden page.
    uint8_t *AtStart() { return mStart; }
    /// aSize bytes right before the last forbidden page.
    uint8_t *AtEnd(size_t aSize) { return mStart + (mCapacity - aSize); }
    size_t GetCapacity() const { return mCapacity; }

private:
    uint8_t *mMapped = nullptr;
    uint8_t *mStart = nullptr;
    size_t mMappedSize = 0;
    size_t mCapacity = 0;
};
