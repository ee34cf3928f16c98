#include "NodeMap/FaultPort.h"

#include <utility>

namespace LxDetail
{

FaultPort::FaultPort(std::shared_ptr<RegisterPort> aPort) : mPort(std::move(aPort))
{
    mPort->AddStateSink(this);
}

FaultPort::~FaultPort()
{
    mPort->RemoveStateSink(this);
}

void FaultPort::FailRange(uint64_t aAddress, uint64_t aLength, const LxResult &aResult, Access aAccess)
{
    std::lock_guard lock(mMutex);
    mRanges.push_back({aAddress, aLength, aResult, aAccess});
}

void FaultPort::FailCall(uint32_t aNumber, const LxResult &aResult)
{
    std::lock_guard lock(mMutex);
    mFailCall = aNumber == 0 ? 0 : mReads + mWrites + aNumber;
    mFailCallResult = aResult;
}

void FaultPort::FailAll(const LxResult &aResult)
{
    std::lock_guard lock(mMutex);
    mFailAll = aResult;
}

void FaultPort::ClearFailures()
{
    std::lock_guard lock(mMutex);
    mRanges.clear();
    mFailAll.reset();
    mFailCall = 0;
}

void FaultPort::SetDelay(std::chrono::microseconds aDelay)
{
    std::lock_guard lock(mMutex);
    mDelay = aDelay;
}

void FaultPort::Freeze(std::chrono::milliseconds aTimeout)
{
    std::lock_guard lock(mMutex);
    mFrozen = true;
    mFreezeTimeout = aTimeout;
}

void FaultPort::Thaw()
{
    {
        std::lock_guard lock(mMutex);
        mFrozen = false;
    }
    mChanged.notify_all();
}

void FaultPort::Vanish()
{
    {
        std::lock_guard lock(mMutex);
        mVanished = true;
    }
    mChanged.notify_all();
    NotifyState();
}

void FaultPort::Return()
{
    {
        std::lock_guard lock(mMutex);
        mVanished = false;
    }
    NotifyState();
}

void FaultPort::SetState(const LxResult &aState)
{
    {
        std::lock_guard lock(mMutex);
        mState = aState;
    }
    NotifyState();
}

uint64_t FaultPort::GetReadCount() const
{
    std::lock_guard lock(mMutex);
    return mReads;
}

uint64_t FaultPort::GetWriteCount() const
{
    std::lock_guard lock(mMutex);
    return mWrites;
}

LxResult FaultPort::Read(uint64_t aAddress, void *aData, uint32_t aLength)
{
    LxResult result = Inject(aAddress, aLength, Access::Read);
    return result.IsOK() ? mPort->Read(aAddress, aData, aLength) : result;
}

LxResult FaultPort::Write(uint64_t aAddress, const void *aData, uint32_t aLength)
{
    LxResult result = Inject(aAddress, aLength, Access::Write);
    return result.IsOK() ? mPort->Write(aAddress, aData, aLength) : result;
}

LxResult FaultPort::GetState() const
{
    {
        std::lock_guard lock(mMutex);
        if (LxResult state = CheckState(); !state.IsOK()) {
            return state;
        }
    }
    return mPort->GetState();
}

bool FaultPort::IsWritable() const
{
    return mPort->IsWritable();
}

LxResult FaultPort::CheckState() const
{
    return mVanished ? LxResult(LxResultCode::NotConnected, "The device is not connected any more.") : mState;
}

LxResult FaultPort::Inject(uint64_t aAddress, uint32_t aLength, Access aAccess)
{
    std::unique_lock lock(mMutex);
    ++(aAccess == Access::Read ? mReads : mWrites);
    const uint64_t call = mReads + mWrites;
    if (LxResult state = CheckState(); !state.IsOK()) {
        return state;
    }
    if (mDelay.count() > 0) {
        mChanged.wait_for(lock, mDelay, [this] { return mVanished; });
    }
    if (mFrozen && !mChanged.wait_for(lock, mFreezeTimeout, [this] { return !mFrozen || mVanished; })) {
        return LxResult(LxResultCode::Timeout, "The device did not answer in time.");
    }
    if (mVanished) {
        return CheckState();
    }
    if (mFailCall == call) {
        mFailCall = 0;
        return mFailCallResult;
    }
    for (const RangeRule &rule : mRanges) {
        const bool overlaps = aAddress < rule.mAddress + rule.mLength && rule.mAddress < aAddress + aLength;
        if (overlaps && (rule.mAccess == Access::Both || rule.mAccess == aAccess)) {
            return rule.mResult;
        }
    }
    return mFailAll.value_or(LxResult());
}

void FaultPort::NotifyState()
{
    ChangeState();
    TellState();
}

}  // namespace LxDetail
