#include "LxBufferReceive/BufferPool.h"

#include <mutex>
#include <vector>

namespace LxDetail
{

struct BufferPool::Free
{
    std::mutex mMutex;  // guards mBuffers
    std::vector<std::unique_ptr<LxBuffer>> mBuffers;
};

BufferPool::BufferPool(uint32_t aCount) : mFree(std::make_shared<Free>())
{
    mFree->mBuffers.reserve(aCount);
    for (uint32_t i = 0; i < aCount; ++i) {
        mFree->mBuffers.push_back(std::make_unique<LxBuffer>(LxPayloadType::Image));
    }
}

BufferPool::~BufferPool() = default;

std::shared_ptr<LxBuffer> BufferPool::Take()
{
    std::unique_ptr<LxBuffer> buffer;
    {
        std::lock_guard lock(mFree->mMutex);
        if (mFree->mBuffers.empty()) {
            return nullptr;
        }
        buffer = std::move(mFree->mBuffers.back());
        mFree->mBuffers.pop_back();
    }
    buffer->SetBlockID(0);
    buffer->SetTimestamp(0);
    buffer->SetReceptionTime(0);
    buffer->SetStatus(LxBufferStatus::Complete);
    return std::shared_ptr<LxBuffer>(buffer.release(), [free = std::weak_ptr<Free>(mFree)](LxBuffer *aBuffer) {
        std::unique_ptr<LxBuffer> returned(aBuffer);
        if (const auto pool = free.lock()) {
            std::lock_guard lock(pool->mMutex);
            // There is room: the vector never holds more than it was made for.
            pool->mBuffers.push_back(std::move(returned));
        }
    });
}

}  // namespace LxDetail
