#pragma once

// Internal: the event sinks of one object.

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace LxDetail
{

/// Sinks that are called on any thread and may be removed at any time.
///
/// Removing is a barrier: when Remove() returns, no call of that sink runs on another thread and none will come. It may
/// be called from within the sink's own call, also on two threads at once. No lock is held while a sink is called.
template <class Sink>
class SinkList
{
public:
    /// Adds a sink; adding it again changes nothing.
    void Add(Sink *aSink)
    {
        const std::lock_guard lock(mMutex);
        if (Find(aSink) == mEntries.end()) {
            mEntries.push_back(std::make_shared<Entry>(aSink));
        }
    }

    /// False when the sink was not there.
    bool Remove(Sink *aSink)
    {
        std::unique_lock lock(mMutex);
        const auto found = Find(aSink);
        if (found == mEntries.end()) {
            // another thread may be waiting in Remove(); this one must not return before the calls have ended either
            const auto removed = std::find_if(mRemoving.begin(), mRemoving.end(),
                                              [aSink](const auto &aEntry) { return aEntry->mSink == aSink; });
            if (removed != mRemoving.end()) {
                Wait(lock, *removed);
            }
            return false;
        }
        const std::shared_ptr<Entry> entry = *found;
        mEntries.erase(found);
        mRemoving.push_back(entry);
        entry->mRemoved = true;
        Wait(lock, entry);
        mRemoving.erase(std::find(mRemoving.begin(), mRemoving.end(), entry));
        return true;
    }

    bool IsEmpty() const
    {
        const std::lock_guard lock(mMutex);
        return mEntries.empty();
    }

    /// Calls aCall(sink) for every sink that is there now and has not been removed when its turn comes.
    template <class Call>
    void Notify(const Call &aCall)
    {
        std::vector<std::shared_ptr<Entry>> entries;
        {
            const std::lock_guard lock(mMutex);
            entries = mEntries;
        }
        for (const auto &entry : entries) {
            const Running running(*this, *entry);
            if (running.mMayCall) {
                aCall(entry->mSink);
            }
        }
    }

private:
    struct Entry
    {
        explicit Entry(Sink *aSink) : mSink(aSink) {}
        Sink *const mSink;
        bool mRemoved = false;
        std::vector<std::thread::id> mCallers;  // threads inside a call of the sink, once for each nesting
        std::vector<std::thread::id> mWaiters;  // threads inside Remove() of the sink
    };

    // Marks a call of a sink for as long as it lives.
    struct Running
    {
        Running(SinkList &aList, Entry &aEntry) : mList(aList), mEntry(aEntry)
        {
            const std::lock_guard lock(mList.mMutex);
            mMayCall = !mEntry.mRemoved;
            if (mMayCall) {
                mEntry.mCallers.push_back(std::this_thread::get_id());
            }
        }
        ~Running()
        {
            if (mMayCall) {
                const std::lock_guard lock(mList.mMutex);
                auto &callers = mEntry.mCallers;
                callers.erase(std::find(callers.begin(), callers.end(), std::this_thread::get_id()));
                mList.mChanged.notify_all();
            }
        }
        Running(const Running &) = delete;
        Running &operator=(const Running &) = delete;

        SinkList &mList;
        Entry &mEntry;
        bool mMayCall = false;
    };

    auto Find(Sink *aSink)
    {
        return std::find_if(mEntries.begin(), mEntries.end(),
                            [aSink](const auto &aEntry) { return aEntry->mSink == aSink; });
    }

    // Waits for the calls on other threads, except those that are waiting here themselves.
    void Wait(std::unique_lock<std::mutex> &aLock, const std::shared_ptr<Entry> aEntry)
    {
        auto &waiters = aEntry->mWaiters;
        waiters.push_back(std::this_thread::get_id());
        mChanged.notify_all();
        mChanged.wait(aLock, [&aEntry, &waiters] {
            return std::all_of(aEntry->mCallers.begin(), aEntry->mCallers.end(), [&waiters](std::thread::id aCaller) {
                return std::find(waiters.begin(), waiters.end(), aCaller) != waiters.end();
            });
        });
        // a waiter that leaves runs its sink again: it stays listed while it is inside the call, or a second waiter
        // would wait for it for ever
        if (std::find(aEntry->mCallers.begin(), aEntry->mCallers.end(), std::this_thread::get_id()) ==
            aEntry->mCallers.end()) {
            waiters.erase(std::find(waiters.begin(), waiters.end(), std::this_thread::get_id()));
        }
    }

    mutable std::mutex mMutex;  // guards everything below and the entries
    std::condition_variable mChanged;
    std::vector<std::shared_ptr<Entry>> mEntries;
    std::vector<std::shared_ptr<Entry>> mRemoving;
};

}  // namespace LxDetail
