#pragma once

// Internal: frame memory that is used again and again.

#include <memory>

#include "LxBuffer/LxBuffer.h"

namespace LxDetail
{

/// A fixed number of image buffers. A buffer returns to the pool when its last reference goes; when the pool has been
/// destroyed before, its memory is freed then. Thread-safe.
class BufferPool
{
public:
    explicit BufferPool(uint32_t aCount);
    ~BufferPool();
    BufferPool(const BufferPool &) = delete;
    BufferPool &operator=(const BufferPool &) = delete;

    /// A free buffer, without block ID and times, its memory as it was left; null while all are in use.
    std::shared_ptr<LxBuffer> Take();

private:
    struct Free;
    std::shared_ptr<Free> mFree;
};

}  // namespace LxDetail
