#include "Backends/Aravis/LinkMonitor.h"

#include <algorithm>
#include <utility>

namespace LxDetail
{

LinkMonitor::LinkMonitor(World aWorld, const LinkTiming &aTiming) : mWorld(std::move(aWorld)), mTiming(aTiming) {}

std::chrono::milliseconds LinkMonitor::Step()
{
    const TimePoint start = mWorld.mNow();
    const uint64_t successes = mSuccesses.load(std::memory_order_relaxed);
    LinkSign sign = mWorld.mLook(mTiming.mAnswerTimeout);
    if (sign == LinkSign::NoAnswer && mSuccesses.load(std::memory_order_relaxed) != successes) {
        sign = LinkSign::Answer;
    }
    const TimePoint now = mWorld.mNow();
    if (sign == LinkSign::NoAnswer && now - start > mTiming.mAnswerTimeout * 5 / 4) {
        return std::chrono::milliseconds(0);  // this computer is too busy to tell a silent device from a slow thread
    }
    if (Judge(sign, now)) {
        mWorld.mStartRestore();
    }
    if (sign != LinkSign::NoAnswer) {
        return mTiming.mPause;
    }
    // the next look follows at once, unless this one knew early that there is no way to the device
    const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(start + mTiming.mAnswerTimeout - now);
    return std::max(rest, std::chrono::milliseconds(0));
}

// Returns whether restoring is to be started.
bool LinkMonitor::Judge(LinkSign aSign, TimePoint aNow)
{
    const std::lock_guard lock(mMutex);
    mMisses = aSign == LinkSign::NoAnswer ? mMisses + 1 : 0;
    const bool absent = mMisses >= mTiming.mMisses;
    switch (GetState()) {
        case LinkState::Connected:
            if (absent) {
                mSuspectSince = aNow;
                Change(LinkState::Suspect);
            }
            else if (aSign == LinkSign::NoControl) {
                return BeginRestore(LinkState::Restoring);
            }
            else if (aSign == LinkSign::Answer && mControlDoubted && aNow >= mRetryAt) {
                // accesses go on until the doubt turns out to be justified
                return BeginRestore(LinkState::Connected);
            }
            break;
        case LinkState::Suspect:
            if (aSign == LinkSign::Answer) {
                Change(LinkState::Connected);
            }
            else if (aSign == LinkSign::NoControl) {
                return BeginRestore(LinkState::Restoring);
            }
            else if (aNow - mSuspectSince >= mTiming.mSuspectTime) {
                mRetryAt = aNow;
                Change(LinkState::Lost);
            }
            break;
        case LinkState::Restoring:
            if (absent) {
                mRetryAt = aNow;
                Change(LinkState::Lost);
            }
            break;
        case LinkState::Lost:
        case LinkState::Denied:
            if (aSign != LinkSign::NoAnswer && aNow >= mRetryAt) {
                return BeginRestore(LinkState::Restoring);
            }
            break;
        case LinkState::Closed:
            break;
    }
    return false;
}

bool LinkMonitor::BeginRestore(LinkState aState)
{
    if (mRestoreRuns) {
        return false;  // an older attempt is still stuck; the next look tries again
    }
    mRestoreRuns = true;
    mControlDoubted = false;
    Change(aState);
    return true;
}

void LinkMonitor::EndRestore(const LxResult &aResult)
{
    const std::lock_guard lock(mMutex);
    mRestoreRuns = false;
    mRetryAt = mWorld.mNow() + mTiming.mRetryPause;
    switch (GetState()) {
        case LinkState::Connected:
            // the end of a doubt; another error than a refusal says nothing about who controls the device
            if (aResult == LxResultCode::AccessDenied) {
                Change(LinkState::Denied);
            }
            break;
        case LinkState::Restoring:
            if (aResult.IsOK()) {
                mMisses = 0;
                mRestores.fetch_add(1, std::memory_order_release);
                Change(LinkState::Connected);
            }
            else {
                Change(aResult == LxResultCode::AccessDenied ? LinkState::Denied : LinkState::Lost);
            }
            break;
        default:
            break;  // the device went away again, or the connection ended, meanwhile
    }
}

void LinkMonitor::DoubtControl()
{
    const std::lock_guard lock(mMutex);
    mControlDoubted = true;
}

void LinkMonitor::Close()
{
    const std::lock_guard lock(mMutex);
    Change(LinkState::Closed);
}

LxResult LinkMonitor::GetResult() const
{
    switch (GetState()) {
        case LinkState::Connected:
            break;
        case LinkState::Suspect:
            return LxResult(
                LxResultCode::Timeout,
                "The device does not answer. Check its power and its cable, or wait until it answers again.");
        case LinkState::Lost:
            return LxResult(
                LxResultCode::NotConnected,
                "The connection to the device is lost. It is restored as soon as the device answers again.");
        case LinkState::Restoring:
            return LxResult(LxResultCode::NotConnected, "The connection to the device is being restored.");
        case LinkState::Denied:
            return LxResult(LxResultCode::AccessDenied,
                            "Another application has taken control of the device. The connection is restored when that "
                            "application gives it up.");
        case LinkState::Closed:
            return LxResult(LxResultCode::NotConnected, "The device was disconnected.");
    }
    return LxResult();
}

void LinkMonitor::Change(LinkState aState)
{
    const LinkState old = GetState();
    if (old == aState || old == LinkState::Closed) {
        return;
    }
    mState.store(aState, std::memory_order_release);
    if (mWorld.mOnChange) {
        mWorld.mOnChange(old, aState);
    }
}

}  // namespace LxDetail
