#pragma once

// Internal: whether a device answers, and what its accesses are told meanwhile.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>

#include "LxBase/LxResult.h"

namespace LxDetail
{

/// How the connection to a device stands.
///
///                 3 misses            misses for 1 s
///     Connected -----------> Suspect ---------------> Lost
///       |   ^                |     |                  |  ^
///       |   +--- answer -----+     | control gone     |  | 3 misses, or
///       | control gone             | in between       |  | restoring failed
///       |                          v                  |  |
///       +---------------------> Restoring <-- answer -+  |
///                                |  |  |                 |
///     Connected <--- restored ---+  |  +-----------------+
///                                   | refused: another application controls the device
///                                   v
///                                 Denied --- after a pause ---> Restoring
///
///     Connected --- an access was refused, and so is taking control again ---> Denied
///     any state --- Close() ---> Closed
///
/// Connected is the only state in which accesses go to the device; in every other they are answered at once:
/// Suspect with Timeout, Lost and Restoring with NotConnected, Denied with AccessDenied, Closed with NotConnected.
enum class LinkState : uint32_t
{
    Connected,
    Suspect,
    Lost,
    Restoring,
    Denied,
    Closed,
};

/// What a look at the device showed.
enum class LinkSign
{
    Answer,     ///< It answers, and this application still has the access that it opened the device with.
    NoControl,  ///< It answers, but dropped the control that this application had.
    NoAnswer,   ///< It did not answer within LinkTiming::mAnswerTimeout.
};

/// The times of a monitor. The defaults notice a device that stops answering after 640 ms at most, in spite of two
/// lost packets.
struct LinkTiming
{
    std::chrono::milliseconds mPause{100};          ///< From an answer to the next look.
    std::chrono::milliseconds mAnswerTimeout{180};  ///< How long a look waits.
    uint32_t mMisses = 3;                           ///< Looks without an answer that make a device suspect.
    std::chrono::milliseconds mSuspectTime{1000};   ///< How long a device stays suspect before it is lost.
    std::chrono::milliseconds mRetryPause{400};     ///< From a failed attempt to restore to the next one.
};

/// Keeps the state of a link. Thread-safe; whoever runs it calls Step() again and again on one thread.
class LinkMonitor
{
public:
    using Clock = std::chrono::steady_clock;
    using TimePoint = Clock::time_point;

    /// What the monitor needs of the world.
    struct World
    {
        /// Looks at the device; blocks up to the time-out.
        std::function<LinkSign(std::chrono::milliseconds)> mLook;
        /// Starts the restoring, which ends with EndRestore(), on another thread. Called by Step().
        std::function<void()> mStartRestore;
        /// Called at each change of the state, in order, on the thread that caused it. Must neither block nor call the
        /// monitor, except for GetState() and GetResult().
        std::function<void(LinkState aOld, LinkState aNew)> mOnChange;
        std::function<TimePoint()> mNow = [] { return Clock::now(); };
    };

    LinkMonitor(World aWorld, const LinkTiming &aTiming = LinkTiming());

    /// One look at the device. Returns how long to pause before the next.
    std::chrono::milliseconds Step();
    /// The outcome of a restoring: OK, AccessDenied, or why it failed.
    void EndRestore(const LxResult &aResult);
    /// The device refused an access that control would have allowed: the next Step() finds out who controls it.
    void DoubtControl();
    /// An access succeeded: a look that was answered too late on a busy machine does not count as a miss.
    void NoteSuccess() { mSuccesses.fetch_add(1, std::memory_order_relaxed); }
    /// The end of the connection.
    void Close();

    LinkState GetState() const { return mState.load(std::memory_order_acquire); }
    /// Whether the device is there as far as its user is concerned: Connected or Suspect.
    bool IsUp() const { return IsUp(GetState()); }
    static bool IsUp(LinkState aState) { return aState == LinkState::Connected || aState == LinkState::Suspect; }
    /// OK while Connected, otherwise what every access is answered. Never blocks.
    LxResult GetResult() const;
    /// Counts the times that the link was restored.
    uint64_t GetRestoreCount() const { return mRestores.load(std::memory_order_acquire); }

private:
    bool Judge(LinkSign aSign, TimePoint aNow);
    bool BeginRestore(LinkState aState);
    void Change(LinkState aState);

    const World mWorld;
    const LinkTiming mTiming;
    std::atomic<LinkState> mState{LinkState::Connected};  // written under mMutex
    std::atomic<uint64_t> mSuccesses{0};
    std::atomic<uint64_t> mRestores{0};
    std::mutex mMutex;  // guards all members below
    uint32_t mMisses = 0;
    bool mControlDoubted = false;
    bool mRestoreRuns = false;
    TimePoint mSuspectSince;
    TimePoint mRetryAt;
};

}  // namespace LxDetail
