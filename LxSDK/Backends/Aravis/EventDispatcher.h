#pragma once

// Internal: a thread that runs functions one after the other.

#include <functional>
#include <memory>
#include <thread>

namespace LxDetail
{

/// Runs posted functions in order, on one thread and without a lock, so that whoever posts never waits for an
/// application's event sink. Thread-safe.
class EventDispatcher
{
public:
    EventDispatcher();
    /// As Stop() and Wait().
    ~EventDispatcher();
    EventDispatcher(const EventDispatcher &) = delete;
    EventDispatcher &operator=(const EventDispatcher &) = delete;

    /// Does nothing after Stop().
    void Post(std::function<void()> aFunction);
    /// Drops what has not run yet. Idempotent.
    void Stop();
    /// Waits for the function that runs, unless called from it.
    void Wait();

private:
    struct State;

    const std::shared_ptr<State> mState;
    std::thread mThread;
};

}  // namespace LxDetail
