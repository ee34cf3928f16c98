#pragma once

// Internal: threads that share the bands of an image.

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace LxDetail
{

/// Runs pieces of work on the caller's thread and on helpers that sleep in between. One Run() at a time.
class BandPool
{
public:
    /// A piece of work, from 0 on, and which of the threads does it: 0 for the caller's.
    using Work = std::function<void(uint32_t aPiece, uint32_t aThread)>;

    BandPool() = default;
    /// Ends the helpers.
    ~BandPool();
    BandPool(const BandPool &) = delete;
    BandPool &operator=(const BandPool &) = delete;

    /// Calls aWork for the pieces 0 to aPieces - 1, each once, on at most aThreads threads, and returns when all have
    /// returned. Whoever is free takes the next piece, so that a helper that wakes late does less. aWork must not
    /// throw. Helpers that the system cannot give are done without.
    void Run(uint32_t aThreads, uint32_t aPieces, const Work &aWork);

    /// Ends the helpers; the next Run() starts as many as it needs.
    void Stop();

private:
    void Help(uint32_t aThread);
    void DoWork(std::unique_lock<std::mutex> &aLock, uint32_t aThread);
    void AwaitLastPieces(std::unique_lock<std::mutex> &aLock);

    std::mutex mMutex;  // guards all below but mHelpers; mRunning may be read without
    std::condition_variable mWake;
    std::condition_variable mDone;
    const Work *mWork = nullptr;
    uint32_t mThreads = 0;               // that may take part in this run
    uint32_t mNext = 0;                  // the first piece that nobody has taken
    uint32_t mCount = 0;                 // pieces of this run
    std::atomic<uint32_t> mRunning = 0;  // pieces taken and not finished
    bool mStop = false;
    std::vector<std::thread> mHelpers;  // of the thread that calls Run() and Stop()
};

}  // namespace LxDetail
