#include "ScriptedBackend.h"

#include <chrono>

class ScriptedBackend::Scanner : public LxDetail::DeviceScanner
{
public:
    explicit Scanner(ScriptedBackend &aBackend) : mBackend(aBackend) {}

    void UpdateInterfaces() override {}
    std::vector<const LxInterface *> GetInterfaces() const override { return mBackend.GetInterfaces(); }
    void Find(LxDetail::SearchContext &aContext) override { mBackend.Find(aContext); }
    LxResult FindDevice(const LxString &aAddress, const LxDeviceInfo **aFound) override
    {
        return mBackend.FindDevice(aAddress, aFound);
    }

private:
    ScriptedBackend &mBackend;
};

template <class Interface, class Values>
Interface &ScriptedBackend::AddInterface(const std::string &aUniqueID, const std::function<void(Values &)> &aChange)
{
    Values values;
    values.mUniqueID = aUniqueID;
    values.mDisplayID = "Interface " + aUniqueID;
    if (aChange) {
        aChange(values);
    }
    auto interface = std::make_unique<Interface>(values);
    Interface &added = *interface;
    const std::lock_guard lock(mMutex);
    mInterfaces.push_back({std::move(interface), [&added](std::vector<const LxDeviceInfo *> aDevices) {
                               added.Change([&aDevices](Values &aValues) { aValues.mDevices = std::move(aDevices); });
                           }});
    return added;
}

template <class Info, class Values>
Info &ScriptedBackend::AddDevice(const LxInterface &aInterface, const std::string &aUniqueID,
                                 const std::function<void(Values &)> &aChange)
{
    Values values;
    values.mInterface = &aInterface;
    values.mUniqueID = aUniqueID;
    values.mDisplayID = "Device " + aUniqueID;
    if (aChange) {
        aChange(values);
    }
    auto info = std::make_unique<Info>(values);
    Info &added = *info;
    const std::lock_guard lock(mMutex);
    mDevices.push_back({std::move(info), &aInterface, [&added] { return added.Get().mReported; }});
    return added;
}

ScriptedAdapter &ScriptedBackend::AddAdapter(const std::string &aUniqueID,
                                             const std::function<void(AdapterValues &)> &aChange)
{
    return AddInterface<ScriptedAdapter, AdapterValues>(aUniqueID, aChange);
}

ScriptedController &ScriptedBackend::AddController(const std::string &aUniqueID,
                                                   const std::function<void(ControllerValues &)> &aChange)
{
    return AddInterface<ScriptedController, ControllerValues>(aUniqueID, aChange);
}

ScriptedGEV &ScriptedBackend::AddGEV(const LxInterface &aInterface, const std::string &aUniqueID,
                                     const std::function<void(GEVValues &)> &aChange)
{
    return AddDevice<ScriptedGEV, GEVValues>(aInterface, aUniqueID, aChange);
}

ScriptedKelvra &ScriptedBackend::AddKelvra(const LxInterface &aInterface, const std::string &aUniqueID,
                                           const std::function<void(KelvraValues &)> &aChange)
{
    return AddDevice<ScriptedKelvra, KelvraValues>(aInterface, aUniqueID, aChange);
}

ScriptedU3V &ScriptedBackend::AddU3V(const LxInterface &aInterface, const std::string &aUniqueID,
                                     const std::function<void(U3VValues &)> &aChange)
{
    return AddDevice<ScriptedU3V, U3VValues>(aInterface, aUniqueID, aChange);
}

ScriptedUSB &ScriptedBackend::AddUSB(const LxInterface &aInterface, const std::string &aUniqueID,
                                     const std::function<void(USBValues &)> &aChange)
{
    return AddDevice<ScriptedUSB, USBValues>(aInterface, aUniqueID, aChange);
}

void ScriptedBackend::SetAddress(const std::string &aAddress, const LxDeviceInfo *aInfo)
{
    const std::lock_guard lock(mMutex);
    mAddresses[aAddress] = aInfo;
}

void ScriptedBackend::SetAccessType(const std::string &aAddress, int aType)
{
    const std::lock_guard lock(mMutex);
    mAccessTypes[aAddress] = aType;
}

void ScriptedBackend::SetIPConfigurationResult(const LxResult &aResult)
{
    const std::lock_guard lock(mMutex);
    mIPConfigurationResult = aResult;
}

void ScriptedBackend::HoldSearch(bool aHold)
{
    const std::lock_guard lock(mMutex);
    mHold = aHold;
    mChanged.notify_all();
}

std::vector<ScriptedBackend::FindCall> ScriptedBackend::GetFindCalls() const
{
    const std::lock_guard lock(mMutex);
    return mFindCalls;
}

bool ScriptedBackend::IsSearching() const
{
    const std::lock_guard lock(mMutex);
    return mSearching > 0;
}

std::vector<std::string> ScriptedBackend::GetFindDeviceCalls() const
{
    const std::lock_guard lock(mMutex);
    return mFindDeviceCalls;
}

std::vector<std::string> ScriptedBackend::GetAccessTypeCalls() const
{
    const std::lock_guard lock(mMutex);
    return mAccessTypeCalls;
}

std::vector<std::string> ScriptedBackend::GetIPConfigurationCalls() const
{
    const std::lock_guard lock(mMutex);
    return mIPConfigurationCalls;
}

std::unique_ptr<LxDetail::DeviceScanner> ScriptedBackend::CreateScanner()
{
    return std::make_unique<Scanner>(*this);
}

LxResult ScriptedBackend::Connect(const LxDeviceInfo &, LxDeviceAccess, std::unique_ptr<LxDevice> &)
{
    return LxResultCode::NotSupported;
}

LxResult ScriptedBackend::GetAccessType(const LxString &aIPAddress, int &aType)
{
    const std::lock_guard lock(mMutex);
    mAccessTypeCalls.push_back(aIPAddress.GetString());
    const auto found = mAccessTypes.find(aIPAddress.GetString());
    if (found == mAccessTypes.end()) {
        return LxResultCode::NotFound;
    }
    aType = found->second;
    return LxResultCode::OK;
}

LxResult ScriptedBackend::SetGEVIPConfiguration(const LxString &aMACAddress, const LxString &aIPAddress,
                                                const LxString &aSubnetMask, const LxString &aDefaultGateway)
{
    return SetIPConfiguration("GEV", {aMACAddress, aIPAddress, aSubnetMask, aDefaultGateway});
}

LxResult ScriptedBackend::SetKelvraIPConfiguration(const LxString &aMACAddress, const LxString &aIPAddress,
                                                   const LxString &aSubnetMask, const LxString &aDefaultGateway)
{
    return SetIPConfiguration("Kelvra", {aMACAddress, aIPAddress, aSubnetMask, aDefaultGateway});
}

LxResult ScriptedBackend::SetIPConfiguration(const std::string &aKind, std::initializer_list<LxString> aArguments)
{
    std::string call = aKind;
    for (const LxString &argument : aArguments) {
        call += ' ' + argument.GetString();
    }
    const std::lock_guard lock(mMutex);
    mIPConfigurationCalls.push_back(call);
    return mIPConfigurationResult;
}

std::vector<const LxInterface *> ScriptedBackend::GetInterfaces() const
{
    const std::lock_guard lock(mMutex);
    std::vector<const LxInterface *> interfaces;
    for (const InterfaceEntry &entry : mInterfaces) {
        interfaces.push_back(entry.mInterface.get());
    }
    return interfaces;
}

void ScriptedBackend::Find(LxDetail::SearchContext &aContext)
{
    std::vector<std::pair<const LxInterface *, const LxDeviceInfo *>> reports;
    {
        const std::lock_guard lock(mMutex);
        mFindCalls.push_back({aContext.GetTimeout(), aContext.IsSubnetBroadcastEnabled(), std::this_thread::get_id()});
        ++mSearching;
        for (const Entry &entry : mDevices) {
            if (entry.mIsReported()) {
                reports.emplace_back(entry.mInterface, entry.mInfo.get());
            }
        }
    }
    for (const auto &[interface, info] : reports) {
        aContext.ReportDevice(interface, info);
    }
    std::unique_lock lock(mMutex);
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(20);
    while (!aContext.IsCancelled() && (mHold || std::chrono::steady_clock::now() < end)) {
        mChanged.wait_for(lock, std::chrono::milliseconds(2));
    }
    for (const InterfaceEntry &entry : mInterfaces) {
        std::vector<const LxDeviceInfo *> devices;
        for (const auto &[interface, info] : reports) {
            if (interface == entry.mInterface.get()) {
                devices.push_back(info);
            }
        }
        // A search that was cut short leaves the lists as they were.
        if (!aContext.IsCancelled()) {
            entry.mSetDevices(std::move(devices));
        }
    }
    --mSearching;
}

LxResult ScriptedBackend::FindDevice(const LxString &aAddress, const LxDeviceInfo **aFound)
{
    const std::lock_guard lock(mMutex);
    mFindDeviceCalls.push_back(aAddress.GetString());
    const auto found = mAddresses.find(aAddress.GetString());
    if (found == mAddresses.end()) {
        return LxResultCode::NotFound;
    }
    *aFound = found->second;
    return LxResultCode::OK;
}

ScriptedDevices::ScriptedDevices()
{
    LxDetail::DeviceBackends::SetRealDevicesHidden(true);
    LxDetail::DeviceBackends::Add(mBackend);
}

ScriptedDevices::~ScriptedDevices()
{
    LxDetail::DeviceBackends::Remove(mBackend);
    LxDetail::DeviceBackends::SetRealDevicesHidden(false);
}
