#pragma once

// Internal: the event sinks of one object.

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace LxDetail
{

/// What lists of sinks share whose sinks may remove each other: a thread that waits in a Remove() of one of them is not
/// waited for in another.
struct SinkDomain
{
    std::mutex mMutex;  // guards everything below, and all that the lists of the domain hold
    std::condition_variable mChanged;
    std::vector<std::thread::id> mWaiters;  // threads inside Remove()
};

/// Sinks that are called on any thread and may be removed at any time.
///
/// Removing is a barrier: when Remove() returns, no call of that sink runs on another thread and none will come. It may
/// be called from within a sink's call, also on two threads at once; of two threads that wait for each other that way
/// one goes on. No lock is held while a sink is called.
template <class Sink>
class SinkList
{
public:
    explicit SinkList(std::shared_ptr<SinkDomain> aDomain = std::make_shared<SinkDomain>())
        : mDomain(std::move(aDomain))
    {
    }

    /// Adds a sink; adding it again changes nothing.
    void Add(Sink *aSink)
    {
        const std::lock_guard lock(mDomain->mMutex);
        if (Find(aSink) == mEntries.end()) {
            mEntries.push_back(std::make_shared<Entry>(aSink));
        }
    }

    /// False when the sink was not there.
    bool Remove(Sink *aSink)
    {
        std::unique_lock lock(mDomain->mMutex);
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
        const std::lock_guard lock(mDomain->mMutex);
        return mEntries.empty();
    }

    /// Calls aCall(sink) for every sink that is there now and has not been removed when its turn comes.
    template <class Call>
    void Notify(const Call &aCall)
    {
        std::vector<std::shared_ptr<Entry>> entries;
        {
            const std::lock_guard lock(mDomain->mMutex);
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
    };

    // Marks a call of a sink for as long as it lives.
    struct Running
    {
        Running(SinkList &aList, Entry &aEntry) : mList(aList), mEntry(aEntry)
        {
            const std::lock_guard lock(mList.mDomain->mMutex);
            mMayCall = !mEntry.mRemoved;
            if (mMayCall) {
                mEntry.mCallers.push_back(std::this_thread::get_id());
            }
        }
        ~Running()
        {
            if (mMayCall) {
                const std::lock_guard lock(mList.mDomain->mMutex);
                auto &callers = mEntry.mCallers;
                callers.erase(std::find(callers.begin(), callers.end(), std::this_thread::get_id()));
                mList.mDomain->mChanged.notify_all();
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
        auto &waiters = mDomain->mWaiters;
        waiters.push_back(std::this_thread::get_id());
        mDomain->mChanged.notify_all();
        mDomain->mChanged.wait(aLock, [&aEntry, &waiters] {
            return std::all_of(aEntry->mCallers.begin(), aEntry->mCallers.end(), [&waiters](std::thread::id aCaller) {
                return std::find(waiters.begin(), waiters.end(), aCaller) != waiters.end();
            });
        });
        waiters.erase(std::find(waiters.begin(), waiters.end(), std::this_thread::get_id()));
    }

    const std::shared_ptr<SinkDomain> mDomain;
    std::vector<std::shared_ptr<Entry>> mEntries;
    std::vector<std::shared_ptr<Entry>> mRemoving;
};

}  // namespace LxDetail
