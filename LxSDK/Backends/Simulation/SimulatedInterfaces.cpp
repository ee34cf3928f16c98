#include "Backends/Simulation/SimulatedInterfaces.h"

#include "YrUtilsLib/IpAddress.h"

namespace LxDetail
{

using YrUtilsLib::Network::IpAddress;

bool SimulatedNetworkAdapter::Contains(uint32_t aAddress) const
{
    const Values values = mValues.Get();
    for (const LxSimulatedAddress &entry : values.mAddresses) {
        IpAddress address;
        IpAddress mask;
        if (address.Set(entry.mIPAddress.GetAscii()).IsOK() && mask.Set(entry.mSubnetMask.GetAscii()).IsOK() &&
            mask.Get() != 0 && aAddress != 0 && (address.Get() & mask.Get()) == (aAddress & mask.Get()))
        {
            return true;
        }
    }
    return false;
}

LxString SimulatedNetworkAdapter::GetDisplayID() const
{
    const Values values = mValues.Get();
    if (!values.mDisplayID.IsEmpty()) {
        return values.mDisplayID;
    }
    std::string text = values.mName.GetString();
    for (const LxSimulatedAddress &address : values.mAddresses) {
        text += (&address == &values.mAddresses.front() ? " " : ", ") + address.mIPAddress.GetString();
    }
    return text + (values.mAddresses.empty() ? " (no IP address)" : "");
}

LxString SimulatedNetworkAdapter::GetDescription() const
{
    const LxString description = mValues.Get().mDescription;
    return description.IsEmpty() ? LxString("Simulated network adapter") : description;
}

LxString SimulatedNetworkAdapter::GetIPAddress(uint32_t aIndex) const
{
    const Values values = mValues.Get();
    return aIndex < values.mAddresses.size() ? values.mAddresses[aIndex].mIPAddress : LxString("0.0.0.0");
}

LxString SimulatedNetworkAdapter::GetSubnetMask(uint32_t aIndex) const
{
    const Values values = mValues.Get();
    return aIndex < values.mAddresses.size() ? values.mAddresses[aIndex].mSubnetMask : LxString("0.0.0.0");
}

LxString SimulatedUSBHostController::GetDisplayID() const
{
    const LxString text = mValues.Get().mDisplayID;
    return text.IsEmpty() ? LxString("Simulated USB host controller") : text;
}

}  // namespace LxDetail
