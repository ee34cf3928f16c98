#pragma once

// Internal: the lock around the node engine.

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "NodeMap/RegisterPort.h"

namespace LxDetail
{

/// A recursive lock that does not keep anybody waiting for a device that does not answer: as soon as the state that it
/// is told is not OK, everybody who waits for it, or comes to wait, gets that state instead of the lock.
class NodeLock
{
public:
    /// Holds the lock, or says why not.
    class Guard
    {
    public:
        explicit Guard(NodeLock &aLock) : mLock(aLock) { mHeld = mLock.Acquire(mState); }
        ~Guard()
        {
            if (mHeld) {
                mLock.Release();
            }
        }
        Guard(const Guard &) = delete;
        Guard &operator=(const Guard &) = delete;

        bool IsHeld() const { return mHeld; }
        const LxResult &GetState() const { return mState; }
        /// Whether this guard's thread holds no other one.
        bool IsOutermost() const { return mLock.mDepth == 1; }

    private:
        NodeLock &mLock;
        LxResult mState;
        bool mHeld = false;
    };

    /// Takes over the state of the port; anything but OK wakes all who wait.
    void UpdateState(const RegisterPort &aPort);
    bool IsHeldByCaller() const { return mOwner.load(std::memory_order_relaxed) == std::this_thread::get_id(); }

private:
    bool Acquire(LxResult &aState);
    void Release();

    std::mutex mMutex;  // guards mState, mWaiters, and the change of mOwner
    std::condition_variable mReleased;
    LxResult mState;
    int mWaiters = 0;
    std::atomic<std::thread::id> mOwner{};
    int mDepth = 0;  // of the owner's guards; only the owner uses it
};

}  // namespace LxDetail
