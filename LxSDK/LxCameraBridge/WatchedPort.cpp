#include "LxCameraBridge/WatchedPort.h"

#include <chrono>

namespace LxDetail
{

namespace
{

constexpr std::chrono::milliseconds AskingPeriod{500};

bool IsLoss(const LxResult &aResult)
{
    return aResult == LxResultCode::Timeout || aResult == LxResultCode::NotConnected ||
           aResult == LxResultCode::Aborted || aResult == LxResultCode::InvalidState;
}

}  // namespace

WatchedPort::WatchedPort(std::shared_ptr<CameraRegisters> aCamera)
    : mCamera(std::move(aCamera)), mThread([this] { Watch(); })
{
}

WatchedPort::~WatchedPort()
{
    {
        std::lock_guard lock(mMutex);
        mStop = true;
    }
    mWake.notify_all();
    mThread.join();
}

LxResult WatchedPort::GetState() const
{
    std::lock_guard lock(mMutex);
    return mState;
}

LxResult WatchedPort::Read(uint64_t aAddress, void *aData, uint32_t aLength)
{
    const LxResult state = GetState();
    return state.IsOK() ? Judge(mCamera->Read(aAddress, aData, aLength)) : state;
}

LxResult WatchedPort::Write(uint64_t aAddress, const void *aData, uint32_t aLength)
{
    const LxResult state = GetState();
    return state.IsOK() ? Judge(mCamera->Write(aAddress, aData, aLength)) : state;
}

LxResult WatchedPort::Judge(const LxResult &aResult)
{
    if (!IsLoss(aResult)) {
        return aResult;
    }
    {
        std::lock_guard lock(mMutex);
        mState = aResult;
    }
    ChangeState();
    mWake.notify_all();
    return aResult;
}

void WatchedPort::Watch()
{
    std::unique_lock lock(mMutex);
    for (;;) {
        mWake.wait(lock, [this] { return mStop || !mState.IsOK(); });
        if (mStop) {
            return;
        }
        lock.unlock();
        TellState();  // the accesses that found out hold locks of the node map
        bool back = false;
        while (!back) {
            lock.lock();
            if (mWake.wait_for(lock, AskingPeriod, [this] { return mStop; })) {
                return;
            }
            lock.unlock();
            back = mCamera->Ping().IsOK();
        }
        lock.lock();
        mState = LxResult();
        lock.unlock();
        ChangeState();
        TellState();
        lock.lock();
    }
}

}  // namespace LxDetail
