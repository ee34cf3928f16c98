#include "LxCodec/BandPool.h"

#include <exception>

namespace LxDetail
{

BandPool::~BandPool()
{
    Stop();
}

void BandPool::Run(uint32_t aCount, const std::function<void(uint32_t)> &aWork)
{
    try {
        while (mHelpers.size() + 1 < aCount) {
            mHelpers.emplace_back(&BandPool::Help, this);
        }
    }
    catch (const std::exception &) {
        // No thread or no memory for one: those that are there, at least the caller's, do the work.
    }
    std::unique_lock<std::mutex> lock(mMutex);
    mWork = &aWork;
    mNext = 0;
    mCount = aCount;
    if (aCount > 1) {
        mWake.notify_all();
    }
    DoWork(lock);
    mDone.wait(lock, [this] { return mRunning == 0; });
    mWork = nullptr;
}

void BandPool::Stop()
{
    {
        const std::lock_guard<std::mutex> lock(mMutex);
        mStop = true;
        mWake.notify_all();
    }
    for (std::thread &helper : mHelpers) {
        helper.join();
    }
    mHelpers.clear();
    const std::lock_guard<std::mutex> lock(mMutex);
    mStop = false;
}

void BandPool::Help()
{
    std::unique_lock<std::mutex> lock(mMutex);
    for (;;) {
        mWake.wait(lock, [this] { return mStop || mNext < mCount; });
        if (mStop) {
            return;
        }
        DoWork(lock);
    }
}

// Takes pieces until none is left. Called with the lock held.
void BandPool::DoWork(std::unique_lock<std::mutex> &aLock)
{
    while (mNext < mCount) {
        const uint32_t index = mNext++;
        const std::function<void(uint32_t)> &work = *mWork;
        ++mRunning;
        aLock.unlock();
        work(index);
        aLock.lock();
        if (--mRunning == 0 && mNext == mCount) {
            mDone.notify_one();
        }
    }
}

}  // namespace LxDetail
