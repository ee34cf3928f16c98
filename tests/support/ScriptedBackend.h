#pragma once

#include <condition_variable>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "LxDevice/DeviceBackend.h"
#include "LxSystem/LxDeviceInfoGEV.h"
#include "LxSystem/LxDeviceInfoKelvraProtocol.h"
#include "LxSystem/LxDeviceInfoU3V.h"
#include "LxSystem/LxDeviceInfoUSB.h"
#include "LxSystem/LxNetworkAdapter.h"
#include "LxSystem/LxUSBHostController.h"

// Interfaces and devices whose every property a test can set, also while a search runs.

/// Properties that any thread may read while another changes them.
template <class Values>
class Guarded
{
public:
    explicit Guarded(Values aValues) : mValues(std::move(aValues)) {}

    Values Get() const
    {
        const std::lock_guard lock(mMutex);
        return mValues;
    }

    void Change(const std::function<void(Values &)> &aChange)
    {
        const std::lock_guard lock(mMutex);
        aChange(mValues);
    }

private:
    mutable std::mutex mMutex;  // guards mValues
    Values mValues;
};

struct InterfaceValues
{
    int mType = LxInterfaceTypeNetworkAdapter;
    std::string mUniqueID;
    std::string mDisplayID;
    std::vector<const LxDeviceInfo *> mDevices;
};

template <class Base, class Values>
class ScriptedInterface : public Base, public Guarded<Values>
{
public:
    using Guarded<Values>::Guarded;

    int GetType() const override { return this->Get().mType; }
    LxString GetUniqueID() const override { return this->Get().mUniqueID; }
    LxString GetDisplayID() const override { return this->Get().mDisplayID; }
    uint32_t GetDeviceCount() const override { return static_cast<uint32_t>(this->Get().mDevices.size()); }
    const LxDeviceInfo *GetDeviceInfo(uint32_t aIndex) const override
    {
        const auto devices = this->Get().mDevices;
        return aIndex < devices.size() ? devices[aIndex] : nullptr;
    }
};

struct AdapterValues : InterfaceValues
{
    std::string mDescription = "Scripted adapter";
    std::string mMACAddress = "02:00:00:00:00:01";
    std::vector<std::pair<std::string, std::string>> mAddresses = {{"192.168.1.1", "255.255.255.0"}};
    std::string mGateway = "0.0.0.0";
    bool mDriver = true;
};

class ScriptedAdapter : public ScriptedInterface<LxNetworkAdapter, AdapterValues>
{
public:
    using ScriptedInterface::ScriptedInterface;

    LxString GetDescription() const override { return Get().mDescription; }
    LxString GetMACAddress() const override { return Get().mMACAddress; }
    uint32_t GetIPAddressCount() const override { return static_cast<uint32_t>(Get().mAddresses.size()); }
    LxString GetIPAddress(uint32_t aIndex) const override { return GetAddress(aIndex).first; }
    LxString GetSubnetMask(uint32_t aIndex) const override { return GetAddress(aIndex).second; }
    LxString GetDefaultGateway() const override { return Get().mGateway; }
    bool IsKelvraDriverInstalled() const override { return Get().mDriver; }

private:
    std::pair<std::string, std::string> GetAddress(uint32_t aIndex) const
    {
        const auto addresses = Get().mAddresses;
        return aIndex < addresses.size() ? addresses[aIndex]
                                         : std::pair<std::string, std::string>("0.0.0.0", "0.0.0.0");
    }
};

struct ControllerValues : InterfaceValues
{
    ControllerValues() { mType = LxInterfaceTypeUSBHostController; }
    uint32_t mVendorID = 0x8086;
    uint32_t mDeviceID = 0x1E31;
    uint32_t mSubsystemID = 0x00A1B2C3;
    uint32_t mRevision = 4;
    uint32_t mSpeed = LxUSBSpeedSuper;
};

class ScriptedController : public ScriptedInterface<LxUSBHostController, ControllerValues>
{
public:
    using ScriptedInterface::ScriptedInterface;

    uint32_t GetVendorID() const override { return Get().mVendorID; }
    uint32_t GetDeviceID() const override { return Get().mDeviceID; }
    uint32_t GetSubsystemID() const override { return Get().mSubsystemID; }
    uint32_t GetRevision() const override { return Get().mRevision; }
    uint32_t GetSpeed() const override { return Get().mSpeed; }
};

struct DeviceValues
{
    int mType = LxDeviceInfoTypeGEV;
    const LxInterface *mInterface = nullptr;
    std::string mUniqueID;
    std::string mDisplayID;
    std::string mVendor = "Vendor";
    std::string mModel = "Model";
    std::string mVersion = "1.2.3";
    std::string mManufacturerInfo = "Info";
    std::string mSerialNumber = "SN7";
    std::string mUserName = "User";
    bool mConfigurationValid = true;
    bool mLicenseValid = true;
    std::string mLicenseMessage = "Valid license";
    bool mReported = true;  // whether searches report it
};

template <class Base, class Values>
class ScriptedDevice : public Base, public Guarded<Values>
{
public:
    using Guarded<Values>::Guarded;

    int GetType() const override { return this->Get().mType; }
    const LxInterface *GetInterface() const override { return this->Get().mInterface; }
    LxString GetUniqueID() const override { return this->Get().mUniqueID; }
    LxString GetDisplayID() const override { return this->Get().mDisplayID; }
    LxString GetVendorName() const override { return this->Get().mVendor; }
    LxString GetModelName() const override { return this->Get().mModel; }
    LxString GetVersion() const override { return this->Get().mVersion; }
    LxString GetManufacturerInfo() const override { return this->Get().mManufacturerInfo; }
    LxString GetSerialNumber() const override { return this->Get().mSerialNumber; }
    LxString GetUserDefinedName() const override { return this->Get().mUserName; }
    LxString GetConnectionID() const override { return this->Get().mUniqueID; }
    bool IsConfigurationValid() const override { return this->Get().mConfigurationValid; }
    bool IsLicenseValid() const override { return this->Get().mLicenseValid; }
    LxString GetLicenseMessage() const override { return this->Get().mLicenseMessage; }
};

struct NetworkDeviceValues : DeviceValues
{
    std::string mMACAddress = "00:11:22:33:44:55";
    std::string mIPAddress = "192.168.1.10";
    std::string mSubnetMask = "255.255.255.0";
    std::string mGateway = "0.0.0.0";
};

template <class Base, class Values>
class ScriptedNetworkDevice : public ScriptedDevice<Base, Values>
{
public:
    using ScriptedDevice<Base, Values>::ScriptedDevice;

    LxString GetMACAddress() const override { return this->Get().mMACAddress; }
    LxString GetIPAddress() const override { return this->Get().mIPAddress; }
    LxString GetSubnetMask() const override { return this->Get().mSubnetMask; }
    LxString GetDefaultGateway() const override { return this->Get().mGateway; }
};

struct GEVValues : NetworkDeviceValues
{
    std::string mOptions = "Persistent IP, DHCP, LLA";
    std::string mCurrent = "DHCP, LLA";
    std::pair<uint32_t, uint32_t> mGEVVersion = {2, 1};
    int mClass = 1;
};

class ScriptedGEV : public ScriptedNetworkDevice<LxDeviceInfoGEV, GEVValues>
{
public:
    using ScriptedNetworkDevice::ScriptedNetworkDevice;

    LxString GetIPConfigOptionsString() const override { return Get().mOptions; }
    LxString GetIPConfigCurrentString() const override { return Get().mCurrent; }
    void GetGEVVersion(uint32_t &aMajor, uint32_t &aMinor) const override
    {
        std::tie(aMajor, aMinor) = Get().mGEVVersion;
    }
    int GetClass() const override { return Get().mClass; }
};

struct KelvraValues : NetworkDeviceValues
{
    KelvraValues()
    {
        mType = LxDeviceInfoTypeKelvra;
        mMACAddress = "00:11:22:33:44:66";
        mIPAddress = "192.168.1.20";
        mGateway = "192.168.1.254";
    }
    uint32_t mDeviceID = 0x0A;
    uint32_t mModuleID = 0x1B;
    uint32_t mSubID = 0x2;
    uint32_t mVendorID = 0x123;
    uint32_t mSoftwareMajor = 10;
    uint32_t mSoftwareMinor = 3;
};

class ScriptedKelvra : public ScriptedNetworkDevice<LxDeviceInfoKelvraProtocol, KelvraValues>
{
public:
    using ScriptedNetworkDevice::ScriptedNetworkDevice;

    uint32_t GetDeviceID() const override { return Get().mDeviceID; }
    uint32_t GetModuleID() const override { return Get().mModuleID; }
    uint32_t GetSubID() const override { return Get().mSubID; }
    uint32_t GetVendorID() const override { return Get().mVendorID; }
    uint32_t GetSoftwareMajor() const override { return Get().mSoftwareMajor; }
    uint32_t GetSoftwareMinor() const override { return Get().mSoftwareMinor; }
};

struct U3VValues : DeviceValues
{
    U3VValues() { mType = LxDeviceInfoTypeU3V; }
    bool mDriver = true;
    bool mCapabilities = true;
    std::string mPowerMessage = "Enough power";
    bool mLowSpeed = false;
    bool mFullSpeed = false;
    bool mHighSpeed = true;
    bool mSuperSpeed = true;
    bool mCurrentSpeedSupported = true;
    uint32_t mSpeed = LxUSBSpeedSuper;
    std::string mSpeedMessage = "SuperSpeed";
    std::string mGUID = "ABCD12345678";
    std::string mFamily = "Family";
    std::string mU3VSerial = "U3V9";
    std::pair<uint32_t, uint32_t> mGenCPVersion = {1, 3};
    std::pair<uint32_t, uint32_t> mU3VVersion = {1, 0};
    uint32_t mMaxPower = 896;
};

class ScriptedU3V : public ScriptedDevice<LxDeviceInfoU3V, U3VValues>
{
public:
    using ScriptedDevice::ScriptedDevice;

    bool IsKelvraDriverInstalled() const override { return Get().mDriver; }
    bool IsInitializedCapabilities() const override { return Get().mCapabilities; }
    LxString GetPowerMessage() const override { return Get().mPowerMessage; }
    bool IsLowSpeedSupported() const override { return Get().mLowSpeed; }
    bool IsFullSpeedSupported() const override { return Get().mFullSpeed; }
    bool IsHighSpeedSupported() const override { return Get().mHighSpeed; }
    bool IsSuperSpeedSupported() const override { return Get().mSuperSpeed; }
    bool IsCurrentSpeedSupported() const override { return Get().mCurrentSpeedSupported; }
    uint32_t GetSpeed() const override { return Get().mSpeed; }
    LxString GetSpeedMessage() const override { return Get().mSpeedMessage; }
    LxString GetDeviceGUID() const override { return Get().mGUID; }
    LxString GetFamilyName() const override { return Get().mFamily; }
    LxString GetU3VSerialNumber() const override { return Get().mU3VSerial; }
    void GetGenCPVersion(uint32_t &aMajor, uint32_t &aMinor) const override
    {
        std::tie(aMajor, aMinor) = Get().mGenCPVersion;
    }
    void GetU3VVersion(uint32_t &aMajor, uint32_t &aMinor) const override
    {
        std::tie(aMajor, aMinor) = Get().mU3VVersion;
    }
    uint32_t GetMaxPower() const override { return Get().mMaxPower; }
};

struct USBValues : DeviceValues
{
    USBValues() { mType = LxDeviceInfoTypeUSB; }
    int mStatus = 0;
};

class ScriptedUSB : public ScriptedDevice<LxDeviceInfoUSB, USBValues>
{
public:
    using ScriptedDevice::ScriptedDevice;

    int GetStatus() const override { return Get().mStatus; }
};

/// A backend that finds what a test has put into it and records what it is asked. Thread-safe.
///
/// A search reports the devices that are to be reported, in the order in which they were added, and lasts 20 ms, or as
/// long as it is held.
class ScriptedBackend : public LxDetail::DeviceBackend
{
public:
    struct FindCall
    {
        uint32_t mTimeout;
        bool mSubnetBroadcast;
        std::thread::id mThread;
    };

    ScriptedAdapter &AddAdapter(const std::string &aUniqueID, const std::function<void(AdapterValues &)> &aChange = {});
    ScriptedController &AddController(const std::string &aUniqueID,
                                      const std::function<void(ControllerValues &)> &aChange = {});
    ScriptedGEV &AddGEV(const LxInterface &aInterface, const std::string &aUniqueID,
                        const std::function<void(GEVValues &)> &aChange = {});
    ScriptedKelvra &AddKelvra(const LxInterface &aInterface, const std::string &aUniqueID,
                              const std::function<void(KelvraValues &)> &aChange = {});
    ScriptedU3V &AddU3V(const LxInterface &aInterface, const std::string &aUniqueID,
                        const std::function<void(U3VValues &)> &aChange = {});
    ScriptedUSB &AddUSB(const LxInterface &aInterface, const std::string &aUniqueID,
                        const std::function<void(USBValues &)> &aChange = {});
    /// What FindDevice() and GetAccessType() answer for an address; NotFound for others.
    void SetAddress(const std::string &aAddress, const LxDeviceInfo *aInfo);
    void SetAccessType(const std::string &aAddress, int aType);
    /// What setting an IP configuration answers; OK by default.
    void SetIPConfigurationResult(const LxResult &aResult);
    /// While held, a search that has reported does not end unless it is cancelled.
    void HoldSearch(bool aHold);

    std::vector<FindCall> GetFindCalls() const;
    size_t GetFindCount() const { return GetFindCalls().size(); }
    bool IsSearching() const;
    std::vector<std::string> GetFindDeviceCalls() const;
    std::vector<std::string> GetAccessTypeCalls() const;
    /// Each with the kind of device and the arguments: "GEV 00:11:22:33:44:55 10.0.0.2 255.0.0.0 0.0.0.0".
    std::vector<std::string> GetIPConfigurationCalls() const;

    const char *GetName() const override { return "scripted"; }
    std::unique_ptr<LxDetail::DeviceScanner> CreateScanner() override;
    LxResult Connect(const LxDeviceInfo &, LxDeviceAccess, std::unique_ptr<LxDevice> &) override;
    LxResult GetAccessType(const LxString &aIPAddress, int &aType) override;
    LxResult SetGEVIPConfiguration(const LxString &aMACAddress, const LxString &aIPAddress, const LxString &aSubnetMask,
                                   const LxString &aDefaultGateway) override;
    LxResult SetKelvraIPConfiguration(const LxString &aMACAddress, const LxString &aIPAddress,
                                      const LxString &aSubnetMask, const LxString &aDefaultGateway) override;

private:
    class Scanner;
    struct Entry
    {
        std::unique_ptr<LxDeviceInfo> mInfo;
        const LxInterface *mInterface;
        std::function<bool()> mIsReported;
    };
    struct InterfaceEntry
    {
        std::unique_ptr<LxInterface> mInterface;
        std::function<void(std::vector<const LxDeviceInfo *>)> mSetDevices;
    };

    template <class Interface, class Values>
    Interface &AddInterface(const std::string &aUniqueID, const std::function<void(Values &)> &aChange);
    template <class Info, class Values>
    Info &AddDevice(const LxInterface &aInterface, const std::string &aUniqueID,
                    const std::function<void(Values &)> &aChange);
    void Find(LxDetail::SearchContext &aContext);
    LxResult FindDevice(const LxString &aAddress, const LxDeviceInfo **aFound);
    std::vector<const LxInterface *> GetInterfaces() const;
    LxResult SetIPConfiguration(const std::string &aKind, std::initializer_list<LxString> aArguments);

    mutable std::mutex mMutex;  // guards everything below
    std::condition_variable mChanged;
    std::vector<InterfaceEntry> mInterfaces;
    std::vector<Entry> mDevices;
    std::map<std::string, const LxDeviceInfo *> mAddresses;
    std::map<std::string, int> mAccessTypes;
    bool mHold = false;
    int mSearching = 0;
    std::vector<FindCall> mFindCalls;
    std::vector<std::string> mFindDeviceCalls;
    std::vector<std::string> mAccessTypeCalls;
    std::vector<std::string> mIPConfigurationCalls;
    LxResult mIPConfigurationResult;
};

/// Makes a scripted backend the only one for as long as it lives.
class ScriptedDevices
{
public:
    ScriptedDevices();
    ~ScriptedDevices();
    ScriptedDevices(const ScriptedDevices &) = delete;
    ScriptedDevices &operator=(const ScriptedDevices &) = delete;

    ScriptedBackend *operator->() const { return mBackend.get(); }

private:
    const std::shared_ptr<ScriptedBackend> mBackend = std::make_shared<ScriptedBackend>();
};
