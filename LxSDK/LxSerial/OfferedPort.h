#pragma once

// Internal: a serial port of a device as the Camera Link serial interface offers it.

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <vector>

#include "LxGenICam/CameraLinkPorts.h"
#include "LxSerial/BridgedPort.h"
#include "LxSerial/PortSpeed.h"

namespace LxDetail
{

/// Lives until the last user has let it go; the bridge ends it before. There are no threads: a user's calls go to the
/// device.
class OfferedPort : public CameraLinkPort
{
public:
    OfferedPort(BridgedPort &aDevice, const PortSpeed &aSpeed) : mDevice(&aDevice), mSpeed(aSpeed) {}

    /// The bridge stops: the device's port is closed, every call fails from now on, and none runs any more when this
    /// returns.
    void End();
    /// 0: the user's rate counts.
    void SetHardCodedBaudRate(uint32_t aBaudRate) { mHardCoded = aBaudRate; }

    LxResult Claim() override;
    void Release() override { mClaimed = false; }
    LxResult Write(const uint8_t *aData, uint32_t aCount, uint32_t &aWritten) override;
    LxResult Read(uint8_t *aData, uint32_t aCapacity, uint32_t &aRead, uint32_t aTimeout) override;
    std::vector<uint32_t> GetSupportedBaudRates() const override;
    LxResult SetBaudRate(uint32_t aBaudRate) override;

private:
    class Use;

    mutable std::mutex mMutex;  // guards mEnded and mUses
    mutable std::condition_variable mUnused;
    bool mEnded = false;
    mutable uint32_t mUses = 0;  // calls that use the device at the moment
    BridgedPort *const mDevice;
    const PortSpeed mSpeed;
    std::atomic<uint32_t> mHardCoded{0};
    std::atomic<bool> mClaimed{false};
};

}  // namespace LxDetail
