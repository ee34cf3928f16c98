#pragma once

#include <unistd.h>

#include <QtCore/QObject>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <ctime>
#include <fstream>
#include <string>
#include <thread>

/// What a clock of the system says, in seconds.
inline double Seconds(clockid_t aClock)
{
    timespec time = {};
    clock_gettime(aClock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// How long other machines have had the processors that this one wanted, all of them together, in seconds; in steps of
/// a hundredth. 0 where nobody tells.
inline double StolenSeconds()
{
    std::ifstream file("/proc/stat");
    std::string name;
    double ticks[8] = {};
    file >> name;
    for (double &tick : ticks) {
        file >> tick;
    }
    return ticks[7] / static_cast<double>(sysconf(_SC_CLK_TCK));
}

/// Sees how long the GUI thread stays away from its event loop: how long an event waits that another thread posts. A
/// timer of the GUI thread would do, but Qt's event loop spins through the last millisecond of each.
class Absence
{
public:
    Absence()
    {
        Start();
        mThread = std::thread([this] { Run(); });
    }
    ~Absence()
    {
        mStop = true;
        mThread.join();
    }
    Absence(const Absence &) = delete;
    Absence &operator=(const Absence &) = delete;

    /// Forgets what was.
    void Start()
    {
        mStolen = StolenSeconds();
        mPosted = Seconds(CLOCK_MONOTONIC);
        mCpu = Seconds(CLOCK_THREAD_CPUTIME_ID);
        mLongest = 0;
        mLongestOwn = 0;
        mLongestWork = 0;
    }
    /// Back at the event loop, or as good as that.
    void Note()
    {
        const double cpu = Seconds(CLOCK_THREAD_CPUTIME_ID);
        const double away = (Seconds(CLOCK_MONOTONIC) - mPosted) * 1e3;
        mLongest = std::max(mLongest, away);
        if (away > mLongestOwn && StolenSeconds() == mStolen) {
            mLongestOwn = away;
        }
        mLongestWork = std::max(mLongestWork, (cpu - mCpu) * 1e3);
        mCpu = cpu;
    }

    double mLongest = 0;      // milliseconds
    double mLongestOwn = 0;   // milliseconds, of those during which no other machine had a processor of this one
    double mLongestWork = 0;  // milliseconds of processor time, whatever else runs on the machine

private:
    void Run()
    {
        while (!mStop) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
            if (!mWaiting.exchange(true)) {
                mStolen = StolenSeconds();
                mPosted = Seconds(CLOCK_MONOTONIC);
                QMetaObject::invokeMethod(
                    &mReceiver,
                    [this] {
                        Note();
                        mWaiting = false;
                    },
                    Qt::QueuedConnection);
            }
        }
    }

    QObject mReceiver;
    std::atomic<double> mPosted{0};
    std::atomic<double> mStolen{0};
    std::atomic<bool> mWaiting{false};
    std::atomic<bool> mStop{false};
    std::thread mThread;
    double mCpu = 0;
};
