#pragma once

// Internal: threads that share the bands of an image.

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
    BandPool() = default;
    /// Ends the helpers.
    ~BandPool();
    BandPool(const BandPool &) = delete;
    BandPool &operator=(const BandPool &) = delete;

    /// Calls aWork(0) to aWork(aCount - 1), each once, on at most aCount threads, and returns when all have returned.
    /// aWork must not throw. Helpers that the system cannot give are done without.
    void Run(uint32_t aCount, const std::function<void(uint32_t)> &aWork);

    /// Ends the helpers; the next Run() starts as many as it needs.
    void Stop();

private:
    void Help();
    void DoWork(std::unique_lock<std::mutex> &aLock);

    std::mutex mMutex;  // guards all below but mHelpers
    std::condition_variable mWake;
    std::condition_variable mDone;
    const std::function<void(uint32_t)> *mWork = nullptr;
    uint32_t mNext = 0;     // the first piece that nobody has taken
    uint32_t mCount = 0;    // pieces of this run
    uint32_t mRunning = 0;  // pieces taken and not finished
    bool mStop = false;
    std::vector<std::thread> mHelpers;  // of the thread that calls Run() and Stop()
};

}  // namespace LxDetail
