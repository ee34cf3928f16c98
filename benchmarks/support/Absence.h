#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <algorithm>
#include <ctime>

/// What a clock of the system says, in seconds.
inline double Seconds(clockid_t aClock)
{
    timespec time = {};
    clock_gettime(aClock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// Sees how long the GUI thread stays away from its event loop.
class Absence
{
public:
    Absence()
    {
        mTimer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&mTimer, &QTimer::timeout, [this] { Note(); });
        Start();
        mTimer.start(1);
    }
    /// Forgets what was.
    void Start()
    {
        mLast.start();
        mCpu = Seconds(CLOCK_THREAD_CPUTIME_ID);
        mLongest = 0;
        mLongestWork = 0;
    }
    void Note()
    {
        const double cpu = Seconds(CLOCK_THREAD_CPUTIME_ID);
        mLongest = std::max(mLongest, static_cast<double>(mLast.nsecsElapsed()) / 1e6);
        mLongestWork = std::max(mLongestWork, (cpu - mCpu) * 1e3);
        mLast.start();
        mCpu = cpu;
    }

    double mLongest = 0;      // milliseconds
    double mLongestWork = 0;  // milliseconds of processor time, whatever else runs on the machine

private:
    QTimer mTimer;
    QElapsedTimer mLast;
    double mCpu = 0;
};
