#include "LxDevice/LxDevice.h"

#include <gtest/gtest.h>

#include "../LxSystem/FakeBackend.h"
#include "LxDevice/IPConfiguration.h"
#include "LxDevice/LxDeviceAdapter.h"
#include "LxDevice/LxDeviceGEV.h"
#include "LxDevice/LxDeviceKelvraProtocol.h"

using LxDetail::DeviceBackends;

namespace
{

class PlainDevice : public LxDevice
{
public:
    LxResult Disconnect() override { return LxResult(); }
    bool IsConnected() const override { return true; }
    LxString GetUniqueID() const override { return "00:11:22:33:44:55"; }
    LxDeviceAccess GetAccess() const override { return LxDeviceAccess::Control; }
    LxGenParameterArray *GetParameters() override { return reinterpret_cast<LxGenParameterArray *>(&mMark); }
    LxString GetGenICamXML() const override { return ""; }
    LxResult ReadMemory(int64_t, uint8_t *, uint64_t) override { return LxResult(); }
    LxResult WriteMemory(int64_t, const uint8_t *, uint64_t) override { return LxResult(); }
    LxResult RegisterEventSink(LxDeviceEventSink *) override { return LxResult(); }
    LxResult UnregisterEventSink(LxDeviceEventSink *) override { return LxResult(); }

    int mMark = 0;
};

class Devices : public testing::Test
{
    const NoRealDevices mNoRealDevices;
};

std::vector<std::string> GetNames()
{
    std::vector<std::string> names;
    for (const auto &backend : DeviceBackends::Get()) {
        names.emplace_back(backend->GetName());
    }
    return names;
}

}  // namespace

TEST(LxDeviceAdapter, PassesOnWhatItsDeviceHas)
{
    PlainDevice device;
    LxDeviceAdapter adapter(&device);
    EXPECT_EQ(adapter.GetDevice(), &device);
    EXPECT_EQ(adapter.GetParameters(), device.GetParameters());
    EXPECT_EQ(adapter.GetUniqueID(), "00:11:22:33:44:55");
}

TEST(LxDeviceAdapter, OfNoDeviceHasNothing)
{
    LxDeviceAdapter adapter(nullptr);
    EXPECT_EQ(adapter.GetDevice(), nullptr);
    EXPECT_EQ(adapter.GetParameters(), nullptr);
    EXPECT_TRUE(adapter.GetUniqueID().IsEmpty());
}

TEST(LxDeviceEventSink, NeedNotCareForEveryEvent)
{
    class Sink : public LxDeviceEventSink
    {
    };
    Sink sink;
    sink.OnLinkDisconnected(nullptr);
    sink.OnLinkReconnected(nullptr);
}

TEST_F(Devices, TheNewestBackendIsAskedFirst)
{
    const ActiveBackend first("first");
    {
        const ActiveBackend second("second");
        EXPECT_EQ(GetNames(), (std::vector<std::string>{"second", "first"}));
    }
    EXPECT_EQ(GetNames(), std::vector<std::string>{"first"});
}

TEST_F(Devices, ABackendIsThereOnce)
{
    const auto backend = std::make_shared<FakeBackend>("a");
    DeviceBackends::Add(backend);
    DeviceBackends::Add(backend);
    DeviceBackends::Add(nullptr);
    EXPECT_EQ(GetNames(), std::vector<std::string>{"a"});
    DeviceBackends::Remove(backend);
    DeviceBackends::Remove(backend);
    EXPECT_TRUE(GetNames().empty());
}

TEST_F(Devices, RealOnesStayHiddenUntilEveryoneHasShownThem)
{
    EXPECT_TRUE(GetNames().empty());
    {
        const NoRealDevices nested;
        EXPECT_TRUE(GetNames().empty());
    }
    EXPECT_TRUE(GetNames().empty());
    DeviceBackends::SetRealDevicesHidden(false);
    EXPECT_FALSE(GetNames().empty());
    DeviceBackends::SetRealDevicesHidden(false);
    DeviceBackends::SetRealDevicesHidden(true);
    EXPECT_TRUE(GetNames().empty()) << "showing them more often than hiding them does not add up";
}

TEST_F(Devices, AccessTypeIsAskedOfTheBackendThatKnowsTheAddress)
{
    ActiveBackend second("second");
    ActiveBackend first("first");
    first->mAddress = "10.0.0.1";
    first->mAccessType = LxAccessReadOnly;
    second->mAddress = "10.0.0.2";
    second->mAccessType = LxAccessControl;
    int type = -1;
    EXPECT_TRUE(LxDeviceGEV::GetAccessType("10.0.0.1", &type).IsOK());
    EXPECT_EQ(type, LxAccessReadOnly);
    EXPECT_TRUE(LxDeviceGEV::GetAccessType("010.0.0.2", &type).IsOK()) << "another way to write it";
    EXPECT_EQ(type, LxAccessControl);
    const LxResult result = LxDeviceGEV::GetAccessType("10.0.0.3", &type);
    EXPECT_EQ(result, LxResultCode::NotFound);
    EXPECT_FALSE(result.GetDescription().IsEmpty());
    EXPECT_EQ(type, LxAccessUnknown);
}

TEST_F(Devices, IPConfigurationGoesToTheBackendThatKnowsTheDevice)
{
    ActiveBackend second("second");
    ActiveBackend first("first");
    const auto set = [] {
        return LxDeviceGEV::SetIPConfiguration("aa-bb-cc-dd-ee-0f", "10.0.0.5", "255.0.0.0", "0.0.0.0");
    };
    const LxResult nobody = set();
    EXPECT_EQ(nobody, LxResultCode::NotFound);
    EXPECT_NE(nobody.GetDescription().GetString().find("AA:BB:CC:DD:EE:0F"), std::string::npos);
    EXPECT_EQ(second->mConfiguration, "AA:BB:CC:DD:EE:0F 10.0.0.5 255.0.0.0 0.0.0.0");
    second->mConfiguration.clear();
    first->mConfigurationResult = LxResultCode::AccessDenied;
    EXPECT_EQ(set(), LxResultCode::AccessDenied);
    EXPECT_TRUE(second->mConfiguration.empty());
    first->mConfigurationResult = LxResult();
    EXPECT_TRUE(
        LxDeviceKelvraProtocol::SetIPConfiguration("aa-bb-cc-dd-ee-0f", "10.0.0.5", "255.0.0.0", "0.0.0.0").IsOK());
    EXPECT_EQ(first->mConfiguration, "AA:BB:CC:DD:EE:0F 10.0.0.5 255.0.0.0 0.0.0.0 Kelvra");
    EXPECT_EQ(LxDeviceKelvraProtocol::SetIPConfiguration("", "10.0.0.5", "255.0.0.0", "0.0.0.0"),
              LxResultCode::InvalidArgument);
}

TEST(MACAddress, IsReadInTheUsualForms)
{
    uint64_t address = 0;
    EXPECT_TRUE(LxDetail::ParseMACAddress("00:11:22:aA:bB:fF", address));
    EXPECT_EQ(address, 0x001122AABBFFU);
    EXPECT_TRUE(LxDetail::ParseMACAddress("FF-FF-FF-FF-FF-FF", address));
    EXPECT_EQ(address, 0xFFFFFFFFFFFFU);
    EXPECT_EQ(LxDetail::FormatMACAddress(0x001122AABBFF), "00:11:22:AA:BB:FF");
    EXPECT_EQ(LxDetail::FormatMACAddress(0), "00:00:00:00:00:00");
}

TEST(MACAddress, IsRefusedInEveryOtherForm)
{
    uint64_t address = 7;
    for (const char *text :
         {"", "00:11:22:33:44", "00:11:22:33:44:5", "00:11:22:33:44:555", "001122334455", "00.11.22.33.44.55",
          "00:11:22:33:44-55", "0g:11:22:33:44:55", " 0:11:22:33:44:55", "00:11:22:33:44:55 ", "+0:11:22:33:44:55"})
    {
        EXPECT_FALSE(LxDetail::ParseMACAddress(text, address)) << text;
    }
    EXPECT_EQ(address, 7U);
}
