#pragma once

// Internal: the interfaces of the simulated host, as a scanner hands them out.

#include <mutex>

#include "LxSimulation/LxSimulation.h"
#include "LxSystem/DeviceList.h"
#include "LxSystem/LxNetworkAdapter.h"
#include "LxSystem/LxUSBHostController.h"

namespace LxDetail
{

/// What a scanner needs of every interface.
class SimulatedInterface
{
public:
    virtual ~SimulatedInterface() = default;

    virtual const LxInterface *GetInterface() const = 0;
    DeviceList &GetDevices() { return mDevices; }

protected:
    DeviceList mDevices;
};

/// Values that may be replaced while others read them.
template <class Values>
class SharedValues
{
public:
    explicit SharedValues(Values aValues) : mValues(std::move(aValues)) {}

    Values Get() const
    {
        std::lock_guard lock(mMutex);
        return mValues;
    }
    void Set(Values aValues)
    {
        std::lock_guard lock(mMutex);
        mValues = std::move(aValues);
    }

private:
    mutable std::mutex mMutex;  // guards mValues
    Values mValues;
};

class SimulatedNetworkAdapter : public LxNetworkAdapter, public SimulatedInterface
{
public:
    using Values = LxSimulatedNetworkAdapter;
    explicit SimulatedNetworkAdapter(Values aValues) : mValues(std::move(aValues)) {}

    void Update(Values aValues) { mValues.Set(std::move(aValues)); }
    /// Whether an address (a number) is on one of its subnets.
    bool Contains(uint32_t aAddress) const;
    const LxInterface *GetInterface() const override { return this; }

    int GetType() const override { return LxInterfaceTypeNetworkAdapter; }
    LxString GetUniqueID() const override { return mValues.Get().mName; }
    LxString GetDisplayID() const override;
    uint32_t GetDeviceCount() const override { return mDevices.GetCount(); }
    const LxDeviceInfo *GetDeviceInfo(uint32_t aIndex) const override { return mDevices.Get(aIndex); }
    LxString GetDescription() const override;
    LxString GetMACAddress() const override { return mValues.Get().mMACAddress; }
    uint32_t GetIPAddressCount() const override { return static_cast<uint32_t>(mValues.Get().mAddresses.size()); }
    LxString GetIPAddress(uint32_t aIndex) const override;
    LxString GetSubnetMask(uint32_t aIndex) const override;
    LxString GetDefaultGateway() const override { return mValues.Get().mDefaultGateway; }
    bool IsKelvraDriverInstalled() const override { return mValues.Get().mKelvraDriverInstalled; }

private:
    SharedValues<Values> mValues;
};

class SimulatedUSBHostController : public LxUSBHostController, public SimulatedInterface
{
public:
    using Values = LxSimulatedUSBHostController;
    explicit SimulatedUSBHostController(Values aValues) : mValues(std::move(aValues)) {}

    void Update(Values aValues) { mValues.Set(std::move(aValues)); }
    const LxInterface *GetInterface() const override { return this; }

    int GetType() const override { return LxInterfaceTypeUSBHostController; }
    LxString GetUniqueID() const override { return mValues.Get().mName; }
    LxString GetDisplayID() const override;
    uint32_t GetDeviceCount() const override { return mDevices.GetCount(); }
    const LxDeviceInfo *GetDeviceInfo(uint32_t aIndex) const override { return mDevices.Get(aIndex); }
    uint32_t GetVendorID() const override { return mValues.Get().mVendorID; }
    uint32_t GetDeviceID() const override { return mValues.Get().mDeviceID; }
    uint32_t GetSubsystemID() const override { return mValues.Get().mSubsystemID; }
    uint32_t GetRevision() const override { return mValues.Get().mRevision; }
    uint32_t GetSpeed() const override { return mValues.Get().mSpeed; }

private:
    SharedValues<Values> mValues;
};

}  // namespace LxDetail
