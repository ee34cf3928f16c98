// The code of docs/backend.md: a backend for thermometers of our own.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "LxDevice/DeviceBackend.h"
#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "LxSystem/LxDeviceInfo.h"
#include "LxSystem/LxInterface.h"
#include "LxSystem/LxSystem.h"
#include "NodeMap/NodeMap.h"
#include "NodeMap/RegisterPort.h"

namespace
{

// What a thermometer can do. A camera brings its XML along in its own memory.
const char *ThermometerXML = R"(<?xml version="1.0" encoding="utf-8"?>
<RegisterDescription ModelName="Thermometer" VendorName="Example" StandardNameSpace="None"
    SchemaMajorVersion="1" SchemaMinorVersion="1" SchemaSubMinorVersion="0"
    MajorVersion="1" MinorVersion="0" SubMinorVersion="0"
    ProductGuid="1F3C6A72-7842-4EDD-9130-E2E90A2058BA" VersionGuid="7645D2A1-A41E-4AC6-B486-1531FB7BECE6"
    xmlns="http://www.genicam.org/GenApi/Version_1_1">
  <Category Name="Root"><pFeature>Temperature</pFeature></Category>
  <Integer Name="Temperature"><pValue>TemperatureReg</pValue><Unit>C</Unit></Integer>
  <IntReg Name="TemperatureReg"><Address>0x10</Address><Length>4</Length><AccessMode>RO</AccessMode>
    <pPort>Device</pPort><Sign>Signed</Sign><Endianess>BigEndian</Endianess></IntReg>
  <Port Name="Device"/>
</RegisterDescription>)";

class ThermometerPort : public LxDetail::RegisterPort
{
public:
    LxResult Read(uint64_t aAddress, void *aData, uint32_t aLength) override
    {
        if (aAddress != 0x10 || aLength != 4) {
            return LxResult(LxResultCode::InvalidAddress, "The thermometer has one register of 4 bytes.");
        }
        const uint8_t bytes[4] = {0, 0, 0, 21};  // here the line to the device is asked
        std::copy(bytes, bytes + 4, static_cast<uint8_t *>(aData));
        return LxResult();
    }
    LxResult Write(uint64_t, const void *, uint32_t) override { return LxResultCode::WriteProtected; }
    bool IsWritable() const override { return false; }
};

class Thermometer : public LxDevice
{
public:
    LxResult Open()
    {
        return LxDetail::NodeMap::Create(std::make_shared<ThermometerPort>(), ThermometerXML, mFeatures);
    }
    LxResult Disconnect() override
    {
        mFeatures.reset();
        return LxResult();
    }
    bool IsConnected() const override { return mFeatures != nullptr; }
    LxString GetUniqueID() const override { return "thermometer-1"; }
    LxDeviceAccess GetAccess() const override { return LxDeviceAccess::ReadOnly; }
    LxGenParameterArray *GetParameters() override { return mFeatures ? mFeatures->GetParameters() : nullptr; }
    LxString GetGenICamXML() const override { return mFeatures ? LxString(mFeatures->GetXML()) : LxString(); }
    LxResult ReadMemory(int64_t aAddress, uint8_t *aData, uint64_t aLength) override
    {
        return ThermometerPort().Read(static_cast<uint64_t>(aAddress), aData, static_cast<uint32_t>(aLength));
    }
    LxResult WriteMemory(int64_t, const uint8_t *, uint64_t) override { return LxResultCode::WriteProtected; }
    LxResult RegisterEventSink(LxDeviceEventSink *) override { return LxResult(); }  // its link never ends
    LxResult UnregisterEventSink(LxDeviceEventSink *) override { return LxResult(); }

private:
    std::unique_ptr<LxDetail::NodeMap> mFeatures;
};

class ThermometerInfo : public LxDeviceInfo
{
public:
    explicit ThermometerInfo(const LxInterface *aInterface) : mInterface(aInterface) {}
    int GetType() const override { return LxDeviceInfoTypeUSB; }
    const LxInterface *GetInterface() const override { return mInterface; }
    LxString GetUniqueID() const override { return "thermometer-1"; }
    LxString GetDisplayID() const override { return "Thermometer 1"; }
    LxString GetVendorName() const override { return "Example"; }
    LxString GetModelName() const override { return "Thermometer"; }
    LxString GetVersion() const override { return "1.0"; }
    LxString GetManufacturerInfo() const override { return ""; }
    LxString GetSerialNumber() const override { return "1"; }
    LxString GetUserDefinedName() const override { return ""; }
    LxString GetConnectionID() const override { return GetUniqueID(); }
    bool IsConfigurationValid() const override { return true; }
    bool IsLicenseValid() const override { return true; }
    LxString GetLicenseMessage() const override { return "Valid"; }

private:
    const LxInterface *mInterface;
};

class ThermometerBus : public LxInterface
{
public:
    int GetType() const override { return LxInterfaceTypeUSBHostController; }
    LxString GetUniqueID() const override { return "thermometers"; }
    LxString GetDisplayID() const override { return "Thermometers"; }
    uint32_t GetDeviceCount() const override { return 1; }
    const LxDeviceInfo *GetDeviceInfo(uint32_t aIndex) const override { return aIndex == 0 ? &mInfo : nullptr; }

private:
    ThermometerInfo mInfo{this};
};

class ThermometerScanner : public LxDetail::DeviceScanner
{
public:
    void UpdateInterfaces() override {}
    std::vector<const LxInterface *> GetInterfaces() const override { return {&mBus}; }
    void Find(LxDetail::SearchContext &aContext) override { aContext.ReportDevice(&mBus, mBus.GetDeviceInfo(0)); }
    LxResult FindDevice(const LxString &aAddress, const LxDeviceInfo **aFound) override
    {
        *aFound = aAddress == mBus.GetDeviceInfo(0)->GetConnectionID() ? mBus.GetDeviceInfo(0) : nullptr;
        return *aFound ? LxResult() : LxResult(LxResultCode::NotFound);
    }

private:
    ThermometerBus mBus;
};

class ThermometerBackend : public LxDetail::DeviceBackend
{
public:
    const char *GetName() const override { return "thermometers"; }
    std::unique_ptr<LxDetail::DeviceScanner> CreateScanner() override { return std::make_unique<ThermometerScanner>(); }
    LxResult Connect(const LxDeviceInfo &aInfo, LxDeviceAccess, std::unique_ptr<LxDevice> &aDevice) override
    {
        if (!dynamic_cast<const ThermometerInfo *>(&aInfo)) {
            return LxResultCode::NotSupported;  // another backend's
        }
        auto device = std::make_unique<Thermometer>();
        const LxResult result = device->Open();
        if (result.IsOK()) {
            aDevice = std::move(device);
        }
        return result;
    }
};

}  // namespace

TEST(BackendCode, AThermometerIsFoundConnectedAndRead)
{
    const auto backend = std::make_shared<ThermometerBackend>();
    LxDetail::DeviceBackends::Add(backend);
    LxDetail::DeviceBackends::SetRealDevicesHidden(true);
    {
        LxSystem system;
        system.SetDetectionTimeout(0);
        ASSERT_TRUE(system.Find().IsOK());
        ASSERT_EQ(system.GetInterfaceCount(), 1u);
        const LxDeviceInfo *info = system.GetInterface(0)->GetDeviceInfo(0);
        ASSERT_NE(info, nullptr);
        const LxDeviceInfo *found = nullptr;
        EXPECT_TRUE(system.FindDevice("thermometer-1", &found).IsOK());
        EXPECT_EQ(found, info);

        std::unique_ptr<LxDevice> device;
        ASSERT_TRUE(LxSystem::Connect(info, LxDeviceAccess::ReadOnly, device).IsOK());
        int64_t temperature = 0;
        EXPECT_TRUE(device->GetParameters()->GetIntegerValue("Temperature", temperature).IsOK());
        EXPECT_EQ(temperature, 21);
        EXPECT_EQ(device->GetParameters()->SetIntegerValue("Temperature", 5), LxResultCode::NotWritable);
    }
    LxDetail::DeviceBackends::SetRealDevicesHidden(false);
    LxDetail::DeviceBackends::Remove(backend);
}
