#include "LxCodec/BandPool.h"

#include <hwy/cache_control.h>

#include <algorithm>
#include <chrono>
#include <exception>

namespace LxDetail
{

BandPool::~BandPool()
{
    Stop();
}

void BandPool::Run(uint32_t aThreads, uint32_t aPieces, const Work &aWork)
{
    const uint32_t threads = std::min(aThreads, aPieces);
    try {
        while (mHelpers.size() + 1 < threads) {
            mHelpers.emplace_back(&BandPool::Help, this, static_cast<uint32_t>(mHelpers.size() + 1));
        }
    }
    catch (const std::exception &) {
        // No thread or no memory for one: those that are there, at least the caller's, do the work.
    }
    std::unique_lock<std::mutex> lock(mMutex);
    mWork = &aWork;
    mThreads = threads;
    mNext = 0;
    mCount = aPieces;
    if (threads > 1) {
        mWake.notify_all();
    }
    DoWork(lock, 0);
    AwaitLastPieces(lock);
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

void BandPool::Help(uint32_t aThread)
{
    std::unique_lock<std::mutex> lock(mMutex);
    for (;;) {
        mWake.wait(lock, [this, aThread] { return mStop || (mNext < mCount && aThread < mThreads); });
        if (mStop) {
            return;
        }
        DoWork(lock, aThread);
    }
}

// Takes pieces until none is left. Called with the lock held.
void BandPool::DoWork(std::unique_lock<std::mutex> &aLock, uint32_t aThread)
{
    while (mNext < mCount) {
        const uint32_t piece = mNext++;
        const Work &work = *mWork;
        ++mRunning;
        aLock.unlock();
        work(piece, aThread);
        aLock.lock();
        if (--mRunning == 0 && mNext == mCount) {
            mDone.notify_one();
        }
    }
}

// Waits for the helpers' pieces, awake for as long as it takes to fall asleep and wake up.
void BandPool::AwaitLastPieces(std::unique_lock<std::mutex> &aLock)
{
    constexpr std::chrono::microseconds kAwake(100);
    if (mRunning != 0) {
        aLock.unlock();
        const auto end = std::chrono::steady_clock::now() + kAwake;
        while (mRunning != 0 && std::chrono::steady_clock::now() < end) {
            hwy::Pause();
        }
        aLock.lock();
    }
    mDone.wait(aLock, [this] { return mRunning == 0; });
}

}  // namespace LxDetail
