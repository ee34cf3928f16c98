#include "Backends/Aravis/EventDispatcher.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>

namespace LxDetail
{

struct EventDispatcher::State
{
    std::mutex mMutex;  // guards all members below
    std::condition_variable mChanged;
    std::deque<std::function<void()>> mFunctions;
    bool mStopped = false;
    std::thread::id mRunning;  // of the thread while it runs a function

    void Run()
    {
        std::unique_lock lock(mMutex);
        while (true) {
            mChanged.wait(lock, [this] { return mStopped || !mFunctions.empty(); });
            if (mStopped) {
                return;
            }
            std::function<void()> function = std::move(mFunctions.front());
            mFunctions.pop_front();
            mRunning = std::this_thread::get_id();
            lock.unlock();
            function();
            function = nullptr;
            lock.lock();
            mRunning = {};
            mChanged.notify_all();
        }
    }
};

EventDispatcher::EventDispatcher() : mState(std::make_shared<State>()), mThread([state = mState] { state->Run(); }) {}

EventDispatcher::~EventDispatcher()
{
    Stop();
    Wait();
    if (mThread.get_id() == std::this_thread::get_id()) {
        mThread.detach();  // an event sink destroyed its device; the thread ends when the sink returns
    }
    else {
        mThread.join();
    }
}

void EventDispatcher::Post(std::function<void()> aFunction)
{
    const std::lock_guard lock(mState->mMutex);
    if (!mState->mStopped) {
        mState->mFunctions.push_back(std::move(aFunction));
        mState->mChanged.notify_all();
    }
}

void EventDispatcher::Stop()
{
    std::deque<std::function<void()>> dropped;  // destroyed after the lock
    const std::lock_guard lock(mState->mMutex);
    mState->mStopped = true;
    dropped.swap(mState->mFunctions);
    mState->mChanged.notify_all();
}

void EventDispatcher::Wait()
{
    std::unique_lock lock(mState->mMutex);
    // a barrier instead of a join: a function that runs may itself be on its way to Stop()
    mState->mChanged.wait(lock, [this] {
        return mState->mRunning == std::thread::id() || mState->mRunning == std::this_thread::get_id();
    });
}

}  // namespace LxDetail
