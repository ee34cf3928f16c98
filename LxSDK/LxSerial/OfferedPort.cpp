#include "LxSerial/OfferedPort.h"

#include <string>

namespace LxDetail
{

namespace
{

LxResult Ended()
{
    return LxResult(LxResultCode::NotConnected, "The port is offered no longer.");
}

}  // namespace

/// Keeps the device's end for the time of a call.
class OfferedPort::Use
{
public:
    explicit Use(const OfferedPort &aPort) : mPort(aPort)
    {
        std::lock_guard lock(mPort.mMutex);
        mGranted = !mPort.mEnded;
        ++mPort.mUses;
    }
    ~Use()
    {
        std::lock_guard lock(mPort.mMutex);
        if (--mPort.mUses == 0) {
            mPort.mUnused.notify_all();
        }
    }
    Use(const Use &) = delete;
    Use &operator=(const Use &) = delete;

    explicit operator bool() const { return mGranted; }

private:
    const OfferedPort &mPort;
    bool mGranted = false;
};

void OfferedPort::End()
{
    {
        std::lock_guard lock(mMutex);
        mEnded = true;
    }
    mDevice->mPort.Close();
    std::unique_lock lock(mMutex);
    mUnused.wait(lock, [this] { return mUses == 0; });
}

LxResult OfferedPort::Claim()
{
    const Use use(*this);
    if (!use) {
        return Ended();
    }
    if (mClaimed.exchange(true)) {
        return LxResult(LxResultCode::Busy, "The port has a user already.");
    }
    // What came before is not for this user.
    uint8_t bytes[256];
    uint32_t count = 0;
    while (mDevice->mPort.Read(bytes, sizeof(bytes), count, 0).IsOK()) {
    }
    return LxResult();
}

LxResult OfferedPort::Write(const uint8_t *aData, uint32_t aCount, uint32_t &aWritten)
{
    aWritten = 0;
    const Use use(*this);
    const LxResult result = use ? mDevice->Write(aData, aCount, aWritten) : Ended();
    return result == LxResultCode::Aborted || result == LxResultCode::InvalidState ? Ended() : result;
}

LxResult OfferedPort::Read(uint8_t *aData, uint32_t aCapacity, uint32_t &aRead, uint32_t aTimeout)
{
    aRead = 0;
    const Use use(*this);
    const LxResult result = use ? mDevice->Read(aData, aCapacity, aRead, aTimeout) : Ended();
    return result == LxResultCode::Aborted || result == LxResultCode::InvalidState ? Ended() : result;
}

std::vector<uint32_t> OfferedPort::GetSupportedBaudRates() const
{
    if (const uint32_t rate = mHardCoded; rate != 0) {
        return {rate};
    }
    const Use use(*this);
    return use ? mSpeed.GetSupported() : std::vector<uint32_t>();
}

LxResult OfferedPort::SetBaudRate(uint32_t aBaudRate)
{
    const Use use(*this);
    if (!use) {
        return Ended();
    }
    if (const uint32_t rate = mHardCoded; rate != 0) {
        return rate == aBaudRate
                   ? LxResult()
                   : LxResult(LxResultCode::NotSupported, "The port is fixed at " + std::to_string(rate) + " baud.");
    }
    return mSpeed.Set(aBaudRate);
}

}  // namespace LxDetail
