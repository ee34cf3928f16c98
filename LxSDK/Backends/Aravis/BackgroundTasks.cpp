#include "Backends/Aravis/BackgroundTasks.h"

#include <chrono>
#include <condition_variable>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace LxDetail
{

namespace
{

/// More than the library needs to give up one call that waits behind another.
constexpr std::chrono::seconds longestCall{8};

/// Never destroyed: a task may outlive the waiting at the end of the process.
struct Tasks
{
    std::mutex mMutex;  // guards mCount
    std::condition_variable mChanged;
    uint32_t mCount = 0;
};

Tasks &GetTasks()
{
    static Tasks *const sTasks = new Tasks;
    return *sTasks;
}

/// Lets the tasks that give devices back finish before the process ends.
struct ExitWait
{
    ~ExitWait()
    {
        Tasks &tasks = GetTasks();
        std::unique_lock lock(tasks.mMutex);
        tasks.mChanged.wait_for(lock, longestCall, [&tasks] { return tasks.mCount == 0; });
    }
};

}  // namespace

void RunInBackground(std::function<void()> aTask)
{
    static ExitWait sExitWait;
    Tasks &tasks = GetTasks();
    {
        const std::lock_guard lock(tasks.mMutex);
        ++tasks.mCount;
    }
    std::thread([&tasks, task = std::move(aTask)]() mutable {
        task();
        task = nullptr;  // what it holds is given back on this thread too
        const std::lock_guard lock(tasks.mMutex);
        --tasks.mCount;
        tasks.mChanged.notify_all();
    }).detach();
}

void GiveBackInBackground(GObjectPtr<_ArvDevice> aDevice, std::chrono::milliseconds aPatience)
{
    if (!aDevice) {
        return;
    }
    const auto done = std::make_shared<std::promise<void>>();
    RunInBackground([device = std::shared_ptr<_ArvDevice>(std::move(aDevice)), done]() mutable {
        device.reset();
        done->set_value();
    });
    // in short waits, so that a halt of the whole machine does not use the patience up
    constexpr std::chrono::milliseconds look{10};
    const std::future<void> ended = done->get_future();
    for (auto left = aPatience; left.count() > 0 && ended.wait_for(look) != std::future_status::ready; left -= look) {
    }
}

}  // namespace LxDetail
