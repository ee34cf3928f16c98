#include "NodeMap/NodeLock.h"

namespace LxDetail
{

void NodeLock::UpdateState(const RegisterPort &aPort)
{
    {
        // asked under the lock, so that of two updates the later one stays
        std::lock_guard lock(mMutex);
        mState = aPort.GetState();
    }
    mReleased.notify_all();
}

bool NodeLock::Acquire(LxResult &aState)
{
    if (IsHeldByCaller()) {
        ++mDepth;
        return true;
    }
    std::unique_lock lock(mMutex);
    if (mOwner.load(std::memory_order_relaxed) != std::thread::id() && mState.IsOK()) {
        ++mWaiters;
        mReleased.wait(
            lock, [this] { return mOwner.load(std::memory_order_relaxed) == std::thread::id() || !mState.IsOK(); });
        --mWaiters;
    }
    if (!mState.IsOK()) {
        aState = mState;
        return false;
    }
    mOwner.store(std::this_thread::get_id(), std::memory_order_relaxed);
    mDepth = 1;
    return true;
}

void NodeLock::Release()
{
    if (--mDepth > 0) {
        return;
    }
    bool wake = false;
    {
        std::lock_guard lock(mMutex);
        mOwner.store(std::thread::id(), std::memory_order_relaxed);
        wake = mWaiters > 0;
    }
    if (wake) {
        mReleased.notify_one();
    }
}

}  // namespace LxDetail
