#include "Backends/Simulation/SimulationClock.h"

namespace LxDetail
{

SimulationClock::~SimulationClock()
{
    {
        std::lock_guard lock(mMutex);
        mStop = true;
        mChanged.notify_all();
    }
    if (mThread.joinable()) {
        mThread.join();
    }
}

void SimulationClock::Post(std::function<void()> aTask, Clock::duration aDelay)
{
    std::lock_guard lock(mMutex);
    mTasks.emplace(Clock::now() + aDelay, std::move(aTask));
    if (!mThread.joinable()) {
        mThread = std::thread([this] { Run(); });
    }
    mChanged.notify_all();
}

void SimulationClock::Run()
{
    std::unique_lock lock(mMutex);
    while (!mStop) {
        if (mTasks.empty()) {
            mChanged.wait(lock);
            continue;
        }
        const auto first = mTasks.begin();
        if (first->first > Clock::now()) {
            const Clock::time_point due = first->first;
            mChanged.wait_until(lock, due);
            continue;
        }
        const std::function<void()> task = std::move(first->second);
        mTasks.erase(first);
        lock.unlock();
        task();
        lock.lock();
    }
}

}  // namespace LxDetail
