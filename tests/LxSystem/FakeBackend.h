#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "LxDevice/DeviceBackend.h"
#include "LxSystem/DeviceList.h"
#include "LxSystem/LxDeviceInfo.h"
#include "LxSystem/LxInterface.h"

/// An interface with a name.
class FakeInterface : public LxInterface
{
public:
    explicit FakeInterface(std::string aName) : mName(std::move(aName)) {}
    int GetType() const override { return LxInterfaceTypeNetworkAdapter; }
    LxString GetUniqueID() const override { return mName; }
    LxString GetDisplayID() const override { return mName; }
    uint32_t GetDeviceCount() const override { return mDevices.GetCount(); }
    const LxDeviceInfo *GetDeviceInfo(uint32_t aIndex) const override { return mDevices.Get(aIndex); }

    LxDetail::DeviceList mDevices;

private:
    const std::string mName;
};

/// A device with a name.
class FakeInfo : public LxDeviceInfo
{
public:
    FakeInfo(std::string aName, const LxInterface &aInterface) : mName(std::move(aName)), mInterface(aInterface) {}
    int GetType() const override { return LxDeviceInfoTypeGEV; }
    const LxInterface *GetInterface() const override { return &mInterface; }
    LxString GetUniqueID() const override { return mName; }
    LxString GetDisplayID() const override { return mName; }
    LxString GetVendorName() const override { return ""; }
    LxString GetModelName() const override { return ""; }
    LxString GetVersion() const override { return ""; }
    LxString GetManufacturerInfo() const override { return ""; }
    LxString GetSerialNumber() const override { return ""; }
    LxString GetUserDefinedName() const override { return ""; }
    LxString GetConnectionID() const override { return mName; }
    bool IsConfigurationValid() const override { return true; }
    bool IsLicenseValid() const override { return true; }
    LxString GetLicenseMessage() const override { return ""; }

private:
    const std::string mName;
    const LxInterface &mInterface;
};

/// A backend whose scanners have one interface with one device, both named after it, and do what functions say.
class FakeBackend : public LxDetail::DeviceBackend
{
public:
    explicit FakeBackend(std::string aName) : mName(std::move(aName)) {}

    const char *GetName() const override { return mName.c_str(); }
    std::unique_ptr<LxDetail::DeviceScanner> CreateScanner() override { return std::make_unique<Scanner>(*this); }
    LxResult Connect(const LxDeviceInfo &aInfo, LxDeviceAccess, std::unique_ptr<LxDevice> &) override
    {
        return aInfo.GetUniqueID() == mName.c_str() ? mConnectResult : LxResult(LxResultCode::NotSupported);
    }
    LxResult GetAccessType(const LxString &aAddress, int &aType) override
    {
        aType = mAccessType;
        return aAddress == mAddress.c_str() ? LxResult() : LxResult(LxResultCode::NotFound);
    }
    LxResult SetGEVIPConfiguration(const LxString &aMAC, const LxString &aAddress, const LxString &aMask,
                                   const LxString &aGateway) override
    {
        mConfiguration =
            aMAC.GetString() + ' ' + aAddress.GetString() + ' ' + aMask.GetString() + ' ' + aGateway.GetString();
        return mConfigurationResult;
    }
    LxResult SetKelvraIPConfiguration(const LxString &aMAC, const LxString &aAddress, const LxString &aMask,
                                      const LxString &aGateway) override
    {
        SetGEVIPConfiguration(aMAC, aAddress, aMask, aGateway);
        mConfiguration += " Kelvra";
        return mConfigurationResult;
    }

    const std::string mName;
    /// Runs within Find(), before the device is reported.
    std::function<void(LxDetail::SearchContext &)> mOnFind = [](LxDetail::SearchContext &) {};
    std::atomic<int> mFindCount{0};
    LxResult mConnectResult;
    LxResult mFindDeviceResult;
    std::string mAddress = "10.0.0.1";
    int mAccessType = 0;
    LxResult mConfigurationResult = LxResultCode::NotFound;
    std::string mConfiguration;

private:
    class Scanner : public LxDetail::DeviceScanner
    {
    public:
        explicit Scanner(FakeBackend &aBackend)
            : mBackend(aBackend), mInterface(aBackend.mName), mInfo(aBackend.mName, mInterface)
        {
        }
        void UpdateInterfaces() override {}
        std::vector<const LxInterface *> GetInterfaces() const override { return {&mInterface}; }
        void Find(LxDetail::SearchContext &aContext) override
        {
            ++mBackend.mFindCount;
            mBackend.mOnFind(aContext);
            aContext.ReportDevice(&mInterface, &mInfo);
            mInterface.mDevices.Set({&mInfo});
        }
        LxResult FindDevice(const LxString &aAddress, const LxDeviceInfo **aFound) override
        {
            if (!mBackend.mFindDeviceResult.IsOK()) {
                return mBackend.mFindDeviceResult;
            }
            if (aAddress == mBackend.mAddress.c_str()) {
                *aFound = &mInfo;
                return LxResult();
            }
            return LxResultCode::NotFound;
        }

    private:
        FakeBackend &mBackend;
        FakeInterface mInterface;
        FakeInfo mInfo;
    };
};

/// A backend that is active as long as this lives.
class ActiveBackend
{
public:
    explicit ActiveBackend(const std::string &aName) : mBackend(std::make_shared<FakeBackend>(aName))
    {
        LxDetail::DeviceBackends::Add(mBackend);
    }
    ~ActiveBackend() { LxDetail::DeviceBackends::Remove(mBackend); }
    ActiveBackend(const ActiveBackend &) = delete;
    ActiveBackend &operator=(const ActiveBackend &) = delete;
    FakeBackend *operator->() const { return mBackend.get(); }

private:
    const std::shared_ptr<FakeBackend> mBackend;
};

/// Keeps the network of the machine out of a test.
class NoRealDevices
{
public:
    NoRealDevices() { LxDetail::DeviceBackends::SetRealDevicesHidden(true); }
    ~NoRealDevices() { LxDetail::DeviceBackends::SetRealDevicesHidden(false); }
    NoRealDevices(const NoRealDevices &) = delete;
    NoRealDevices &operator=(const NoRealDevices &) = delete;
};
