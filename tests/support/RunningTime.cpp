#include "RunningTime.h"

#include <algorithm>
#include <mutex>
#include <thread>

namespace
{

using Clock = std::chrono::steady_clock;
using Milliseconds = RunningTime::Milliseconds;

constexpr std::chrono::milliseconds tick(10);

/// A thread that looks at the clock again and again. The time from one look to the next counts up to a limit: a longer
/// one was a halt.
class Ticker
{
public:
    Ticker() : mThread([this] { Run(); }) {}
    ~Ticker()
    {
        {
            const std::lock_guard lock(mMutex);
            mStop = true;
        }
        mThread.join();
    }

    Milliseconds Look()
    {
        constexpr Milliseconds longest(3 * tick);
        const std::lock_guard lock(mMutex);
        const Clock::time_point now = Clock::now();
        mSum += std::min<Milliseconds>(now - mLast, longest);
        mLast = now;
        return mSum;
    }

private:
    void Run()
    {
        for (bool stop = false; !stop;) {
            std::this_thread::sleep_for(tick);
            Look();
            const std::lock_guard lock(mMutex);
            stop = mStop;
        }
    }

    std::mutex mMutex;  // guards all members below
    Clock::time_point mLast = Clock::now();
    Milliseconds mSum{0};
    bool mStop = false;
    std::thread mThread;
};

Milliseconds GetSum()
{
    static Ticker ticker;
    return ticker.Look();
}

}  // namespace

RunningTime::RunningTime() : mStart(GetSum()) {}

RunningTime::Milliseconds RunningTime::Get() const
{
    return GetSum() - mStart;
}
