#include "Backends/Simulation/SimulatedInfos.h"

#include "GigEVision/DeviceInfoGEV.h"
#include "YrUtilsLib/IpAddress.h"

namespace LxDetail
{

SimulatedInfo::SimulatedInfo(std::shared_ptr<SimulatedUnit> aUnit, const SimulatedInterface &aInterface)
    : mCount(SimulationLog::Get().mDeviceInfos),
      mUnit(std::move(aUnit)),
      mInterface(aInterface),
      mValues(mUnit->GetValues())
{
}

std::unique_ptr<SimulatedInfo> SimulatedInfo::Create(std::shared_ptr<SimulatedUnit> aUnit,
                                                     const SimulatedInterface &aInterface)
{
    switch (aUnit->GetValues().mType) {
        case LxDeviceInfoTypeGEV:
            return std::make_unique<SimulatedInfoGEV>(std::move(aUnit), aInterface);
        case LxDeviceInfoTypeKelvra:
            return std::make_unique<SimulatedInfoKelvraProtocol>(std::move(aUnit), aInterface);
        case LxDeviceInfoTypeU3V:
            return std::make_unique<SimulatedInfoU3V>(std::move(aUnit), aInterface);
        default:
            return std::make_unique<SimulatedInfoUSB>(std::move(aUnit), aInterface);
    }
}

bool SimulatedInfo::IsValid() const
{
    const LxSimulatedDevice values = GetValues();
    if (values.mConfigurationValid != LxSimulatedAnswer::Automatic) {
        return values.mConfigurationValid == LxSimulatedAnswer::Yes;
    }
    switch (values.mType) {
        case LxDeviceInfoTypeGEV:
        case LxDeviceInfoTypeKelvra: {
            const auto *adapter = dynamic_cast<const SimulatedNetworkAdapter *>(&mInterface);
            YrUtilsLib::Network::IpAddress address;
            address.Set(values.mIPAddress.GetAscii());
            return adapter != nullptr && adapter->Contains(address.Get());
        }
        case LxDeviceInfoTypeU3V:
            return values.mSpeed == LxUSBSpeedSuper;
        default:
            return values.mStatus == 0;
    }
}

LxString SimulatedInfo::MakeDisplayID() const
{
    const LxSimulatedDevice values = GetValues();
    if (!values.mDisplayID.IsEmpty()) {
        return values.mDisplayID;
    }
    std::string text = values.mVendorName.GetString() + ' ' + values.mModelName.GetString();
    if (!values.mUserDefinedName.IsEmpty()) {
        text += " \"" + values.mUserDefinedName.GetString() + '"';
    }
    const bool network = values.mType == LxDeviceInfoTypeGEV || values.mType == LxDeviceInfoTypeKelvra;
    return text + " [" + (network ? values.mIPAddress : values.mSerialNumber).GetString() + ']';
}

LxString SimulatedInfoGEV::GetIPConfigOptionsString() const
{
    return FormatIPConfiguration(GetValues().mIPConfigOptions);
}

LxString SimulatedInfoGEV::GetIPConfigCurrentString() const
{
    return FormatIPConfiguration(GetValues().mIPConfigCurrent);
}

void SimulatedInfoGEV::GetGEVVersion(uint32_t &aMajor, uint32_t &aMinor) const
{
    const LxSimulatedDevice values = GetValues();
    aMajor = values.mGEVMajor;
    aMinor = values.mGEVMinor;
}

bool SimulatedInfoU3V::IsCurrentSpeedSupported() const
{
    const LxSimulatedDevice values = GetValues();
    if (values.mCurrentSpeedSupported != LxSimulatedAnswer::Automatic) {
        return values.mCurrentSpeedSupported == LxSimulatedAnswer::Yes;
    }
    switch (values.mSpeed) {
        case LxUSBSpeedLow:
            return values.mLowSpeedSupported;
        case LxUSBSpeedFull:
            return values.mFullSpeedSupported;
        case LxUSBSpeedHigh:
            return values.mHighSpeedSupported;
        case LxUSBSpeedSuper:
            return values.mSuperSpeedSupported;
        default:
            return false;
    }
}

LxString SimulatedInfoU3V::GetSpeedMessage() const
{
    const LxSimulatedDevice values = GetValues();
    if (!values.mSpeedMessage.IsEmpty()) {
        return values.mSpeedMessage;
    }
    switch (values.mSpeed) {
        case LxUSBSpeedLow:
            return "Low Speed (1.5 Mbit/s)";
        case LxUSBSpeedFull:
            return "Full Speed (12 Mbit/s)";
        case LxUSBSpeedHigh:
            return "High Speed (480 Mbit/s)";
        case LxUSBSpeedSuper:
            return "SuperSpeed (5 Gbit/s)";
        default:
            return "Unknown";
    }
}

void SimulatedInfoU3V::GetGenCPVersion(uint32_t &aMajor, uint32_t &aMinor) const
{
    const LxSimulatedDevice values = GetValues();
    aMajor = values.mGenCPMajor;
    aMinor = values.mGenCPMinor;
}

void SimulatedInfoU3V::GetU3VVersion(uint32_t &aMajor, uint32_t &aMinor) const
{
    const LxSimulatedDevice values = GetValues();
    aMajor = values.mU3VMajor;
    aMinor = values.mU3VMinor;
}

}  // namespace LxDetail
