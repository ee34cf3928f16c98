#pragma once

// Internal: the register space of a real device.

#include <memory>
#include <mutex>

#include "Backends/Aravis/LinkMonitor.h"
#include "NodeMap/ArvSupport.h"
#include "NodeMap/RegisterPort.h"

struct _ArvDevice;

namespace LxDetail
{

/// Reads and writes over libaravis while the link lets it, and answers at once otherwise.
///
/// No lock is held during an access: one that is stuck in the library's retries delays only those that entered the
/// library before the link turned suspect.
class ArvDevicePort : public RegisterPort
{
public:
    /// The link must outlive the port.
    ArvDevicePort(LinkMonitor &aLink, bool aGigEVision, bool aWritable);

    /// The device in use; may be replaced after the device was away. Returns the one before.
    GObjectPtr<_ArvDevice> SetDevice(GObjectPtr<_ArvDevice> aDevice);
    /// A reference of one's own; null after the end of the connection.
    GObjectPtr<_ArvDevice> AcquireDevice() const;
    /// Whether registers of 4 bytes are accessed with READREG and WRITEREG, as GenICam XML before schema 1.1 wants it.
    void SetRegisterCommands(bool aUse) { mRegisterCommands = aUse; }
    /// Whether the device knows WRITEMEM, which is optional; without it every word is a WRITEREG.
    void SetMemoryWritable(bool aWritable) { mMemoryWritable = aWritable; }

    LxResult Read(uint64_t aAddress, void *aData, uint32_t aLength) override;
    LxResult Write(uint64_t aAddress, const void *aData, uint32_t aLength) override;
    LxResult ReadRegister(int64_t aAddress, uint32_t &aValue);
    LxResult WriteRegister(int64_t aAddress, uint32_t aValue);

    LxResult GetState() const override { return mLink.GetResult(); }
    bool IsWritable() const override { return mWritable; }
    using RegisterPort::ChangeState;
    using RegisterPort::TellState;

private:
    LxResult CheckRange(uint64_t aAddress, uint64_t aLength) const;
    LxResult CheckRegister(int64_t aAddress) const;
    /// Lets an access through to the device, or answers in its place.
    template <class Access>
    LxResult Run(bool aWrites, const Access &aAccess);

    LinkMonitor &mLink;
    const bool mGigEVision;
    const bool mWritable;
    bool mRegisterCommands = false;  // set before the port is used, as the next
    bool mMemoryWritable = true;
    mutable std::mutex mDeviceMutex;  // guards mDevice
    GObjectPtr<_ArvDevice> mDevice;
};

}  // namespace LxDetail
