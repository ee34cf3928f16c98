#pragma once

// Internal: simulated devices, as a scanner hands them out.

#include <memory>

#include "Backends/Simulation/SimulatedInterfaces.h"
#include "Backends/Simulation/SimulatedUnit.h"
#include "Backends/Simulation/SimulationLog.h"
#include "LxSimulation/LxSimulation.h"
#include "LxSystem/LxDeviceInfoGEV.h"
#include "LxSystem/LxDeviceInfoKelvraProtocol.h"
#include "LxSystem/LxDeviceInfoU3V.h"
#include "LxSystem/LxDeviceInfoUSB.h"

namespace LxDetail
{

/// What a search learned about a simulated device at one interface.
class SimulatedInfo
{
public:
    SimulatedInfo(std::shared_ptr<SimulatedUnit> aUnit, const SimulatedInterface &aInterface);
    virtual ~SimulatedInfo() = default;

    /// The information for the device's kind.
    static std::unique_ptr<SimulatedInfo> Create(std::shared_ptr<SimulatedUnit> aUnit,
                                                 const SimulatedInterface &aInterface);
    /// Takes over the device's values of now.
    void Update() { mValues.Set(mUnit->GetValues()); }
    virtual const LxDeviceInfo *GetInfo() const = 0;
    const std::shared_ptr<SimulatedUnit> &GetUnit() const { return mUnit; }
    const SimulatedInterface &GetSimulatedInterface() const { return mInterface; }
    LxSimulatedDevice GetValues() const { return mValues.Get(); }
    bool IsValid() const;

protected:
    LxString MakeDisplayID() const;

private:
    const SimulationCount mCount;
    const std::shared_ptr<SimulatedUnit> mUnit;
    const SimulatedInterface &mInterface;
    SharedValues<LxSimulatedDevice> mValues;
};

/// The operations that all kinds share.
template <class Base>
class SimulatedInfoOf : public Base, public SimulatedInfo
{
public:
    using SimulatedInfo::SimulatedInfo;

    const LxDeviceInfo *GetInfo() const override { return this; }

    int GetType() const override { return GetValues().mType; }
    const LxInterface *GetInterface() const override { return GetSimulatedInterface().GetInterface(); }
    LxString GetUniqueID() const override { return GetUnit()->GetID(); }
    LxString GetDisplayID() const override { return MakeDisplayID(); }
    LxString GetVendorName() const override { return GetValues().mVendorName; }
    LxString GetModelName() const override { return GetValues().mModelName; }
    LxString GetVersion() const override { return GetValues().mVersion; }
    LxString GetManufacturerInfo() const override { return GetValues().mManufacturerInfo; }
    LxString GetSerialNumber() const override { return GetValues().mSerialNumber; }
    LxString GetUserDefinedName() const override { return GetValues().mUserDefinedName; }
    LxString GetConnectionID() const override { return GetUnit()->GetID(); }
    bool IsConfigurationValid() const override { return IsValid(); }
    bool IsLicenseValid() const override { return GetValues().mLicenseValid; }
    LxString GetLicenseMessage() const override { return GetValues().mLicenseMessage; }
};

/// The operations that network devices share.
template <class Base>
class SimulatedNetworkInfoOf : public SimulatedInfoOf<Base>
{
public:
    using SimulatedInfoOf<Base>::SimulatedInfoOf;

    LxString GetConnectionID() const override { return GetIPAddress(); }
    LxString GetMACAddress() const override { return this->GetValues().mMACAddress; }
    LxString GetIPAddress() const override { return this->GetValues().mIPAddress; }
    LxString GetSubnetMask() const override { return this->GetValues().mSubnetMask; }
    LxString GetDefaultGateway() const override { return this->GetValues().mDefaultGateway; }
};

class SimulatedInfoGEV : public SimulatedNetworkInfoOf<LxDeviceInfoGEV>
{
public:
    using SimulatedNetworkInfoOf::SimulatedNetworkInfoOf;

    LxString GetIPConfigOptionsString() const override;
    LxString GetIPConfigCurrentString() const override;
    void GetGEVVersion(uint32_t &aMajor, uint32_t &aMinor) const override;
    int GetClass() const override { return GetValues().mClass; }
};

class SimulatedInfoKelvraProtocol : public SimulatedNetworkInfoOf<LxDeviceInfoKelvraProtocol>
{
public:
    using SimulatedNetworkInfoOf::SimulatedNetworkInfoOf;

    uint32_t GetDeviceID() const override { return GetValues().mDeviceID; }
    uint32_t GetModuleID() const override { return GetValues().mModuleID; }
    uint32_t GetSubID() const override { return GetValues().mSubID; }
    uint32_t GetVendorID() const override { return GetValues().mVendorID; }
    uint32_t GetSoftwareMajor() const override { return GetValues().mSoftwareMajor; }
    uint32_t GetSoftwareMinor() const override { return GetValues().mSoftwareMinor; }
};

class SimulatedInfoU3V : public SimulatedInfoOf<LxDeviceInfoU3V>
{
public:
    using SimulatedInfoOf::SimulatedInfoOf;

    bool IsKelvraDriverInstalled() const override { return GetValues().mKelvraDriverInstalled; }
    bool IsInitializedCapabilities() const override { return GetValues().mInitializedCapabilities; }
    LxString GetPowerMessage() const override { return GetValues().mPowerMessage; }
    bool IsLowSpeedSupported() const override { return GetValues().mLowSpeedSupported; }
    bool IsFullSpeedSupported() const override { return GetValues().mFullSpeedSupported; }
    bool IsHighSpeedSupported() const override { return GetValues().mHighSpeedSupported; }
    bool IsSuperSpeedSupported() const override { return GetValues().mSuperSpeedSupported; }
    bool IsCurrentSpeedSupported() const override;
    uint32_t GetSpeed() const override { return GetValues().mSpeed; }
    LxString GetSpeedMessage() const override;
    LxString GetDeviceGUID() const override { return GetValues().mDeviceGUID; }
    LxString GetFamilyName() const override { return GetValues().mFamilyName; }
    LxString GetU3VSerialNumber() const override { return GetValues().mU3VSerialNumber; }
    void GetGenCPVersion(uint32_t &aMajor, uint32_t &aMinor) const override;
    void GetU3VVersion(uint32_t &aMajor, uint32_t &aMinor) const override;
    uint32_t GetMaxPower() const override { return GetValues().mMaxPower; }
};

/// USB devices, and devices of a kind that does not exist.
class SimulatedInfoUSB : public SimulatedInfoOf<LxDeviceInfoUSB>
{
public:
    using SimulatedInfoOf::SimulatedInfoOf;

    int GetStatus() const override { return GetValues().mStatus; }
};

}  // namespace LxDetail
