#pragma once

// Internal: what the simulation does later, or on a thread of its own.

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace LxDetail
{

/// Runs tasks in the order of their times on one thread, which exists from the first task on. Thread-safe.
class SimulationClock
{
public:
    using Clock = std::chrono::steady_clock;

    SimulationClock() = default;
    ~SimulationClock();
    SimulationClock(const SimulationClock &) = delete;
    SimulationClock &operator=(const SimulationClock &) = delete;

    void Post(std::function<void()> aTask, Clock::duration aDelay = Clock::duration::zero());

private:
    void Run();

    std::mutex mMutex;  // guards all members below
    std::condition_variable mChanged;
    std::multimap<Clock::time_point, std::function<void()>> mTasks;
    bool mStop = false;
    std::thread mThread;
};

}  // namespace LxDetail
