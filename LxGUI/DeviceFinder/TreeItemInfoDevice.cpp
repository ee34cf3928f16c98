#include "LxGUI/DeviceFinder/TreeItemInfoDevice.h"

#include "LxGUI/DeviceFinder/ListingRules.h"
#include "LxSystem/LxDeviceInfo.h"

TreeItemInfoDevice::TreeItemInfoDevice(bool aEnabled) : mEnabled(aEnabled)
{
    mLastSeen.start();
}

TreeItemInfoDevice::~TreeItemInfoDevice() = default;

void TreeItemInfoDevice::RefreshAccess() {}

void TreeItemInfoDevice::Refill(const LxDeviceInfo &aInfo)
{
    ClearRows();
    SetIdentity(aInfo.GetDisplayID(), aInfo.GetUniqueID());
    RestartLastSeen();
    mDeviceType = aInfo.GetType();
    FillRows(aInfo);
    ChooseIcon(aInfo);
}

bool TreeItemInfoDevice::CanSetIP() const
{
    return mEnabled && IsNetworkDevice(mDeviceType);
}

bool TreeItemInfoDevice::IsToBeRemoved(bool aShowUnreachable) const
{
    if (GetUniqueID().isEmpty()) {
        return false;
    }
    return (!mReachable && !aShowUnreachable) || IsReportTooOld(mLastSeen.elapsed());
}
