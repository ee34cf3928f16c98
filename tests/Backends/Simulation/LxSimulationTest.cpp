// The simulated host: interfaces, devices of every kind, searches, access and addresses.

#include "LxSimulation/LxSimulation.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <mutex>
#include <thread>

#include "Backends/Simulation/SimulationHost.h"
#include "LxDevice/LxDeviceGEV.h"
#include "LxDevice/LxDeviceKelvraProtocol.h"
#include "LxSystem/LxDeviceInfoGEV.h"
#include "LxSystem/LxDeviceInfoKelvraProtocol.h"
#include "LxSystem/LxDeviceInfoU3V.h"
#include "LxSystem/LxDeviceInfoUSB.h"
#include "LxSystem/LxNetworkAdapter.h"
#include "LxSystem/LxSystemEventSink.h"
#include "LxSystem/LxUSBHostController.h"
#include "SimulationTest.h"
#include "WaitFor.h"

using namespace std::chrono_literals;

namespace
{

class LxSimulationTest : public SimulationTest
{
};

class FoundSink : public LxSystemEventSink
{
public:
    void OnDeviceFound(const LxInterface *aInterface, const LxDeviceInfo *aInfo, bool &) override
    {
        std::lock_guard lock(mMutex);
        mFound.push_back(aInterface->GetUniqueID().GetString() + " " +
                         (aInfo == nullptr ? "-" : aInfo->GetUniqueID().GetString()));
    }
    std::vector<std::string> Get()
    {
        std::lock_guard lock(mMutex);
        return mFound;
    }

private:
    std::mutex mMutex;  // guards mFound
    std::vector<std::string> mFound;
};

std::string Text(const LxString &aText)
{
    return aText.GetString();
}

}  // namespace

TEST_F(LxSimulationTest, InterfacesAreThereBeforeAnySearch)
{
    ASSERT_EQ(mSystem->GetInterfaceCount(), 2u) << "real ones are hidden";
    EXPECT_EQ(mSystem->GetInterface(0)->GetType(), LxInterfaceTypeNetworkAdapter);
    EXPECT_EQ(mSystem->GetInterface(1)->GetType(), LxInterfaceTypeUSBHostController);
    EXPECT_EQ(mSystem->GetInterface(2), nullptr);
}

TEST_F(LxSimulationTest, AdapterShowsItsValues)
{
    LxSimulatedNetworkAdapter adapter;
    adapter.mName = "eth1";
    adapter.mDescription = "Fast one";
    adapter.mMACAddress = "02:00:00:00:00:99";
    adapter.mAddresses = {{"10.0.0.1", "255.0.0.0"}, {"0.0.0.0", "0.0.0.0"}};
    adapter.mDefaultGateway = "10.0.0.254";
    adapter.mKelvraDriverInstalled = false;
    ASSERT_TRUE(LxSimulation::SetNetworkAdapter(adapter).IsOK());
    ASSERT_TRUE(mSystem->Find().IsOK());
    const auto *shown = dynamic_cast<const LxNetworkAdapter *>(GetInterface("eth1"));
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(Text(shown->GetDescription()), "Fast one");
    EXPECT_EQ(Text(shown->GetMACAddress()), "02:00:00:00:00:99");
    ASSERT_EQ(shown->GetIPAddressCount(), 2u);
    EXPECT_EQ(Text(shown->GetIPAddress(0)), "10.0.0.1");
    EXPECT_EQ(Text(shown->GetSubnetMask(0)), "255.0.0.0");
    EXPECT_EQ(Text(shown->GetIPAddress(1)), "0.0.0.0");
    EXPECT_EQ(Text(shown->GetIPAddress(2)), "0.0.0.0");
    EXPECT_EQ(Text(shown->GetSubnetMask(2)), "0.0.0.0");
    EXPECT_EQ(Text(shown->GetDefaultGateway()), "10.0.0.254");
    EXPECT_FALSE(shown->IsKelvraDriverInstalled());
    EXPECT_EQ(Text(shown->GetDisplayID()), "eth1 10.0.0.1, 0.0.0.0");

    adapter.mAddresses.clear();
    ASSERT_TRUE(LxSimulation::SetNetworkAdapter(adapter).IsOK());
    ASSERT_TRUE(mSystem->Find().IsOK());
    EXPECT_EQ(GetInterface("eth1"), shown) << "the object stays";
    EXPECT_EQ(shown->GetIPAddressCount(), 0u);
}

TEST_F(LxSimulationTest, ControllerShowsAnyNumbers)
{
    LxSimulatedUSBHostController controller;
    controller.mName = "usb0";
    controller.mDisplayID = "xHCI";
    controller.mVendorID = 0xFFFFFFFF;
    controller.mDeviceID = 1;
    controller.mSubsystemID = 2;
    controller.mRevision = 3;
    controller.mSpeed = 99;
    ASSERT_TRUE(LxSimulation::SetUSBHostController(controller).IsOK());
    ASSERT_TRUE(mSystem->Find().IsOK());
    const auto *shown = dynamic_cast<const LxUSBHostController *>(GetInterface("usb0"));
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(Text(shown->GetDisplayID()), "xHCI");
    EXPECT_EQ(shown->GetVendorID(), 0xFFFFFFFFu);
    EXPECT_EQ(shown->GetDeviceID(), 1u);
    EXPECT_EQ(shown->GetSubsystemID(), 2u);
    EXPECT_EQ(shown->GetRevision(), 3u);
    EXPECT_EQ(shown->GetSpeed(), 99u);
}

TEST_F(LxSimulationTest, GigEVisionDeviceShowsItsValues)
{
    LxSimulatedDevice camera = MakeCamera();
    camera.mVendorName = "Vendor";
    camera.mModelName = "Model";
    camera.mVersion = "3.1";
    camera.mManufacturerInfo = "info";
    camera.mSerialNumber = "S1";
    camera.mUserDefinedName = "Left";
    camera.mDefaultGateway = "192.168.1.254";
    camera.mIPConfigOptions = 7;
    camera.mIPConfigCurrent = 5;
    camera.mGEVMajor = 1;
    camera.mGEVMinor = 2;
    camera.mClass = 77;
    camera.mLicenseValid = false;
    camera.mLicenseMessage = "expired";
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    const auto *info = dynamic_cast<const LxDeviceInfoGEV *>(Find(Camera));
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->GetType(), LxDeviceInfoTypeGEV);
    EXPECT_EQ(info->GetInterface(), GetInterface("eth0"));
    EXPECT_EQ(Text(info->GetUniqueID()), Camera);
    EXPECT_EQ(Text(info->GetConnectionID()), "192.168.1.10");
    EXPECT_EQ(Text(info->GetDisplayID()), "Vendor Model \"Left\" [192.168.1.10]");
    EXPECT_EQ(Text(info->GetVendorName()), "Vendor");
    EXPECT_EQ(Text(info->GetModelName()), "Model");
    EXPECT_EQ(Text(info->GetVersion()), "3.1");
    EXPECT_EQ(Text(info->GetManufacturerInfo()), "info");
    EXPECT_EQ(Text(info->GetSerialNumber()), "S1");
    EXPECT_EQ(Text(info->GetUserDefinedName()), "Left");
    EXPECT_EQ(Text(info->GetMACAddress()), Camera);
    EXPECT_EQ(Text(info->GetIPAddress()), "192.168.1.10");
    EXPECT_EQ(Text(info->GetSubnetMask()), "255.255.255.0");
    EXPECT_EQ(Text(info->GetDefaultGateway()), "192.168.1.254");
    EXPECT_EQ(Text(info->GetIPConfigOptionsString()), "Persistent IP, DHCP, LLA");
    EXPECT_EQ(Text(info->GetIPConfigCurrentString()), "Persistent IP, LLA");
    uint32_t major = 0;
    uint32_t minor = 0;
    info->GetGEVVersion(major, minor);
    EXPECT_EQ(major, 1u);
    EXPECT_EQ(minor, 2u);
    EXPECT_EQ(info->GetClass(), 77);
    EXPECT_TRUE(info->IsConfigurationValid());
    EXPECT_FALSE(info->IsLicenseValid());
    EXPECT_EQ(Text(info->GetLicenseMessage()), "expired");
}

TEST_F(LxSimulationTest, KelvraDeviceShowsItsValues)
{
    LxSimulatedDevice device = MakeCamera();
    device.mType = LxDeviceInfoTypeKelvra;
    device.mDeviceID = 0xA1;
    device.mModuleID = 0xA2;
    device.mSubID = 0xA3;
    device.mVendorID = 0xA4;
    device.mSoftwareMajor = 5;
    device.mSoftwareMinor = 6;
    ASSERT_TRUE(LxSimulation::SetDevice(device).IsOK());
    const auto *info = dynamic_cast<const LxDeviceInfoKelvraProtocol *>(Find(Camera));
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->GetType(), LxDeviceInfoTypeKelvra);
    EXPECT_EQ(Text(info->GetMACAddress()), Camera);
    EXPECT_EQ(info->GetDeviceID(), 0xA1u);
    EXPECT_EQ(info->GetModuleID(), 0xA2u);
    EXPECT_EQ(info->GetSubID(), 0xA3u);
    EXPECT_EQ(info->GetVendorID(), 0xA4u);
    EXPECT_EQ(info->GetSoftwareMajor(), 5u);
    EXPECT_EQ(info->GetSoftwareMinor(), 6u);
    std::unique_ptr<LxDevice> connected;
    EXPECT_EQ(LxSystem::Connect(info, LxDeviceAccess::Control, connected), LxResultCode::NotSupported);
}

TEST_F(LxSimulationTest, USB3VisionDeviceShowsItsValues)
{
    LxSimulatedDevice device = MakeUSBCamera();
    device.mSpeed = 3;
    device.mKelvraDriverInstalled = false;
    device.mInitializedCapabilities = false;
    device.mPowerMessage = "Not enough";
    device.mLowSpeedSupported = true;
    device.mFullSpeedSupported = true;
    device.mGenCPMinor = 2;
    device.mMaxPower = 500;
    ASSERT_TRUE(LxSimulation::SetDevice(device).IsOK());
    const auto *info = dynamic_cast<const LxDeviceInfoU3V *>(Find("0000C0FFEE01", "usb0"));
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->GetType(), LxDeviceInfoTypeU3V);
    EXPECT_FALSE(info->IsConfigurationValid()) << "not at a SuperSpeed port";
    EXPECT_FALSE(info->IsKelvraDriverInstalled());
    EXPECT_FALSE(info->IsInitializedCapabilities());
    EXPECT_EQ(Text(info->GetPowerMessage()), "Not enough");
    EXPECT_TRUE(info->IsLowSpeedSupported());
    EXPECT_TRUE(info->IsFullSpeedSupported());
    EXPECT_TRUE(info->IsHighSpeedSupported());
    EXPECT_TRUE(info->IsSuperSpeedSupported());
    EXPECT_TRUE(info->IsCurrentSpeedSupported());
    EXPECT_EQ(info->GetSpeed(), 3u);
    EXPECT_EQ(Text(info->GetSpeedMessage()), "High Speed (480 Mbit/s)");
    EXPECT_EQ(Text(info->GetDeviceGUID()), "0000C0FFEE01");
    EXPECT_EQ(Text(info->GetFamilyName()), "Simulation");
    EXPECT_EQ(Text(info->GetU3VSerialNumber()), "SIM0001");
    uint32_t major = 0;
    uint32_t minor = 0;
    info->GetGenCPVersion(major, minor);
    EXPECT_EQ(major * 100 + minor, 102u);
    info->GetU3VVersion(major, minor);
    EXPECT_EQ(major * 100 + minor, 102u);
    EXPECT_EQ(info->GetMaxPower(), 500u);
    std::unique_ptr<LxDevice> connected;
    EXPECT_EQ(LxSystem::Connect(info, LxDeviceAccess::Control, connected), LxResultCode::Unavailable);

    device.mSpeed = 77;
    ASSERT_TRUE(LxSimulation::SetDevice(device).IsOK());
    Find("0000C0FFEE01", "usb0");
    EXPECT_FALSE(info->IsCurrentSpeedSupported());
    EXPECT_EQ(Text(info->GetSpeedMessage()), "Unknown");
    device.mCurrentSpeedSupported = LxSimulatedAnswer::Yes;
    device.mSpeedMessage = "Warp";
    ASSERT_TRUE(LxSimulation::SetDevice(device).IsOK());
    Find("0000C0FFEE01", "usb0");
    EXPECT_TRUE(info->IsCurrentSpeedSupported());
    EXPECT_EQ(Text(info->GetSpeedMessage()), "Warp");
}

TEST_F(LxSimulationTest, USBDeviceHasAnyStatus)
{
    LxSimulatedDevice device = MakeUSBCamera();
    device.mType = LxDeviceInfoTypeUSB;
    device.mStatus = 10;
    ASSERT_TRUE(LxSimulation::SetDevice(device).IsOK());
    const auto *info = dynamic_cast<const LxDeviceInfoUSB *>(Find("0000C0FFEE01", "usb0"));
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->GetType(), LxDeviceInfoTypeUSB);
    EXPECT_EQ(info->GetStatus(), 10);
    EXPECT_FALSE(info->IsConfigurationValid());
}

TEST_F(LxSimulationTest, DeviceMayBeOfAKindThatDoesNotExist)
{
    LxSimulatedDevice device = MakeUSBCamera();
    device.mType = 7;
    ASSERT_TRUE(LxSimulation::SetDevice(device).IsOK());
    const LxDeviceInfo *info = Find("0000C0FFEE01", "usb0");
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->GetType(), 7);
}

TEST_F(LxSimulationTest, DeviceOnAnotherSubnetIsInvalid)
{
    LxSimulatedDevice camera = MakeCamera();
    camera.mIPAddress = "10.1.2.3";
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    const LxDeviceInfo *info = Find(Camera);
    ASSERT_NE(info, nullptr) << "found all the same";
    EXPECT_FALSE(info->IsConfigurationValid());
    std::unique_ptr<LxDevice> device;
    const LxResult result = LxSystem::Connect(info, LxDeviceAccess::Control, device);
    EXPECT_EQ(result, LxResultCode::Unavailable);
    EXPECT_THAT(Text(result.GetDescription()), testing::HasSubstr("subnet"));
    const LxDeviceInfo *found = info;
    EXPECT_EQ(mSystem->FindDevice("10.1.2.3", &found), LxResultCode::NotFound) << "nothing leads there";
    EXPECT_EQ(found, nullptr);
    camera.mConfigurationValid = LxSimulatedAnswer::Yes;
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    EXPECT_TRUE(Find(Camera)->IsConfigurationValid());
    EXPECT_TRUE(mSystem->FindDevice("10.1.2.3", &found).IsOK());
    EXPECT_EQ(found, info);
    camera.mIPAddress = "0.0.0.0";
    camera.mConfigurationValid = LxSimulatedAnswer::Automatic;
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    EXPECT_FALSE(Find(Camera)->IsConfigurationValid());
    EXPECT_EQ(mSystem->FindDevice("0.0.0.0", &found), LxResultCode::NotFound);
}

TEST_F(LxSimulationTest, DeviceAtTwoInterfacesIsFoundTwice)
{
    LxSimulatedNetworkAdapter adapter;
    adapter.mName = "eth1";
    ASSERT_TRUE(LxSimulation::SetNetworkAdapter(adapter).IsOK());
    LxSimulatedDevice camera = MakeCamera();
    camera.mInterfaces = {"eth0", "eth1"};
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    FoundSink sink;
    mSystem->RegisterEventSink(&sink);
    const LxDeviceInfo *first = Find(Camera);
    const LxDeviceInfo *second = GetInterface("eth1")->GetDeviceInfo(0);
    mSystem->UnregisterEventSink(&sink);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(first, second);
    EXPECT_EQ(first->GetUniqueID(), second->GetUniqueID());
    EXPECT_TRUE(first->IsConfigurationValid());
    EXPECT_FALSE(second->IsConfigurationValid());
    EXPECT_THAT(sink.Get(), testing::ElementsAre(std::string("eth0 ") + Camera, std::string("eth1 ") + Camera));
}

TEST_F(LxSimulationTest, VanishedDeviceKeepsItsObject)
{
    ASSERT_TRUE(LxSimulation::SetDevice(MakeCamera()).IsOK());
    const LxDeviceInfo *info = Find(Camera);
    ASSERT_TRUE(LxSimulation::SetDevicePresent(Camera, false).IsOK());
    EXPECT_EQ(Find(Camera), nullptr);
    EXPECT_EQ(Text(info->GetUniqueID()), Camera);
    std::unique_ptr<LxDevice> device;
    EXPECT_EQ(LxSystem::Connect(info, LxDeviceAccess::Control, device), LxResultCode::NotConnected);
    ASSERT_TRUE(LxSimulation::SetDevicePresent(Camera, true).IsOK());
    EXPECT_EQ(Find(Camera), info);
    ASSERT_TRUE(LxSimulation::RemoveDevice(Camera).IsOK());
    EXPECT_EQ(Find(Camera), nullptr);
    EXPECT_EQ(Text(info->GetUniqueID()), Camera);
}

TEST_F(LxSimulationTest, FindDeviceByAddressOrID)
{
    ASSERT_TRUE(LxSimulation::SetDevice(MakeCamera()).IsOK());
    ASSERT_TRUE(LxSimulation::SetDevice(MakeUSBCamera()).IsOK());
    const LxDeviceInfo *found = nullptr;
    ASSERT_TRUE(mSystem->FindDevice("192.168.1.10", &found).IsOK());
    EXPECT_EQ(Text(found->GetUniqueID()), Camera);
    ASSERT_TRUE(mSystem->FindDevice("0000C0FFEE01", &found).IsOK());
    EXPECT_EQ(found->GetType(), LxDeviceInfoTypeU3V);
    LxSimulation::QueueResult("FindDevice", LxResultCode::Timeout);
    EXPECT_EQ(mSystem->FindDevice("192.168.1.10", &found), LxResultCode::Timeout);
    EXPECT_TRUE(mSystem->FindDevice("192.168.1.10", &found).IsOK());
}

TEST_F(LxSimulationTest, AnswersComeAfterTheirDelays)
{
    LxSimulatedDevice camera = MakeCamera();
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    camera.mMACAddress = "02:00:00:00:00:11";
    camera.mIPAddress = "192.168.1.11";
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    camera.mMACAddress = "02:00:00:00:00:12";
    camera.mIPAddress = "192.168.1.12";
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    ASSERT_TRUE(LxSimulation::SetFindDelay(Camera, 40).IsOK());
    ASSERT_TRUE(LxSimulation::SetFindDelay("02:00:00:00:00:12", 5000).IsOK());
    mSystem->SetDetectionTimeout(100);
    FoundSink sink;
    mSystem->RegisterEventSink(&sink);
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(mSystem->Find().IsOK());
    EXPECT_GE(std::chrono::steady_clock::now() - start, 40ms);
    mSystem->UnregisterEventSink(&sink);
    EXPECT_THAT(sink.Get(), testing::ElementsAre("eth0 02:00:00:00:00:11", std::string("eth0 ") + Camera))
        << "the quick one first, the one after the time-out not at all";
    EXPECT_EQ(GetInterface("eth0")->GetDeviceCount(), 2u);
}

TEST_F(LxSimulationTest, CancelledSearchKeepsTheList)
{
    ASSERT_TRUE(LxSimulation::SetDevice(MakeCamera()).IsOK());
    ASSERT_NE(Find(Camera), nullptr);
    ASSERT_TRUE(LxSimulation::SetFindDelay("", 50000).IsOK());
    mSystem->SetDetectionTimeout(60000);
    auto searching = std::async(std::launch::async, [&] { return mSystem->Find(); });
    // Cancelled until it hears: it may not have begun yet.
    EXPECT_TRUE(WaitFor([&] {
        mSystem->CancelFind();
        return searching.wait_for(0ms) == std::future_status::ready;
    }));
    EXPECT_EQ(searching.get(), LxResultCode::Aborted);
    EXPECT_EQ(GetInterface("eth0")->GetDeviceCount(), 1u);
}

TEST_F(LxSimulationTest, AccessTypeIsWhatConnectionsMakeItOrWhatIsForced)
{
    LxSimulatedDevice camera = MakeCamera();
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    int type = 77;
    EXPECT_TRUE(LxDeviceGEV::GetAccessType("192.168.1.10", &type).IsOK());
    EXPECT_EQ(type, LxAccessOpen);
    camera.mAccessType = LxAccessReadOnly;
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    EXPECT_TRUE(LxDeviceGEV::GetAccessType("192.168.1.10", &type).IsOK());
    EXPECT_EQ(type, LxAccessReadOnly);
    LxSimulation::QueueResult("GetAccessType", LxResultCode::ProtocolError);
    EXPECT_EQ(LxDeviceGEV::GetAccessType("192.168.1.10", &type), LxResultCode::ProtocolError);
    EXPECT_EQ(type, LxAccessUnknown);
    LxSimulation::SetDevicePresent(Camera, false);
    EXPECT_EQ(LxDeviceGEV::GetAccessType("192.168.1.10", &type), LxResultCode::Timeout);
    EXPECT_EQ(LxDeviceGEV::GetAccessType("192.168.1.99", &type), LxResultCode::NotFound);
}

TEST_F(LxSimulationTest, IPConfigurationChangesTheDevice)
{
    LxSimulatedDevice camera = MakeCamera();
    camera.mIPAddress = "10.9.9.9";
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    const LxDeviceInfo *info = Find(Camera);
    EXPECT_FALSE(info->IsConfigurationValid());
    ASSERT_TRUE(LxDeviceGEV::SetIPConfiguration(Camera, "192.168.1.77", "255.255.255.0", "192.168.1.1").IsOK());
    Find(Camera);
    EXPECT_TRUE(info->IsConfigurationValid());
    EXPECT_EQ(Text(dynamic_cast<const LxDeviceInfoGEV &>(*info).GetIPAddress()), "192.168.1.77");
    EXPECT_EQ(Text(dynamic_cast<const LxDeviceInfoGEV &>(*info).GetDefaultGateway()), "192.168.1.1");
    const auto device = Connect(info);
    uint32_t address = 0;
    EXPECT_TRUE(dynamic_cast<LxDeviceGEV &>(*device).ReadRegister(0x24, address).IsOK());
    EXPECT_EQ(address, 0xC0A8014Du);
    EXPECT_EQ(LxDeviceGEV::SetIPConfiguration(Camera, "192.168.1.78", "255.255.255.0", "0.0.0.0"),
              LxResultCode::AccessDenied)
        << "an application controls it";
    EXPECT_EQ(LxDeviceGEV::SetIPConfiguration("02:00:00:00:00:55", "192.168.1.78", "255.255.255.0", "0.0.0.0"),
              LxResultCode::NotFound);
    EXPECT_EQ(LxDeviceKelvraProtocol::SetIPConfiguration(Camera, "192.168.1.78", "255.255.255.0", "0.0.0.0"),
              LxResultCode::NotFound);
    LxSimulation::QueueResult("SetGEVIPConfiguration", LxResult(LxResultCode::Failed, "Refused."));
    EXPECT_EQ(LxDeviceGEV::SetIPConfiguration(Camera, "192.168.1.78", "255.255.255.0", "0.0.0.0"),
              LxResultCode::Failed);
}

TEST_F(LxSimulationTest, IPConfigurationOfAKelvraDevice)
{
    LxSimulatedDevice device = MakeCamera();
    device.mType = LxDeviceInfoTypeKelvra;
    ASSERT_TRUE(LxSimulation::SetDevice(device).IsOK());
    ASSERT_TRUE(LxDeviceKelvraProtocol::SetIPConfiguration(Camera, "192.168.1.80", "255.255.0.0", "0.0.0.0").IsOK());
    const auto *info = dynamic_cast<const LxDeviceInfoKelvraProtocol *>(Find(Camera));
    EXPECT_EQ(Text(info->GetIPAddress()), "192.168.1.80");
    EXPECT_EQ(Text(info->GetSubnetMask()), "255.255.0.0");
}

TEST_F(LxSimulationTest, WrongValuesAreRefused)
{
    LxSimulatedNetworkAdapter adapter;
    EXPECT_EQ(LxSimulation::SetNetworkAdapter(adapter), LxResultCode::InvalidArgument) << "no name";
    adapter.mName = "usb0";
    EXPECT_EQ(LxSimulation::SetNetworkAdapter(adapter), LxResultCode::InvalidArgument) << "name of a controller";
    adapter.mName = "eth5";
    adapter.mAddresses = {{"192.168.1", "255.255.255.0"}};
    EXPECT_EQ(LxSimulation::SetNetworkAdapter(adapter), LxResultCode::InvalidArgument);
    adapter.mAddresses = {{"192.168.1.1", "/24"}};
    EXPECT_EQ(LxSimulation::SetNetworkAdapter(adapter), LxResultCode::InvalidArgument);
    LxSimulatedDevice camera = MakeCamera();
    camera.mMACAddress = "nonsense";
    EXPECT_EQ(LxSimulation::SetDevice(camera), LxResultCode::InvalidArgument);
    camera = MakeCamera();
    camera.mIPAddress = "1.2.3.256";
    EXPECT_EQ(LxSimulation::SetDevice(camera), LxResultCode::InvalidArgument);
    camera = MakeUSBCamera();
    camera.mDeviceGUID = "";
    EXPECT_EQ(LxSimulation::SetDevice(camera), LxResultCode::InvalidArgument);
    ASSERT_TRUE(LxSimulation::SetDevice(MakeCamera()).IsOK());
    camera = MakeCamera();
    camera.mType = LxDeviceInfoTypeKelvra;
    EXPECT_EQ(LxSimulation::SetDevice(camera), LxResultCode::InvalidArgument) << "another kind";
}

TEST_F(LxSimulationTest, UnknownNamesAreNotFound)
{
    LxSimulatedDevice values;
    EXPECT_EQ(LxSimulation::GetDevice("x", values), LxResultCode::NotFound);
    EXPECT_EQ(LxSimulation::RemoveDevice("x"), LxResultCode::NotFound);
    EXPECT_EQ(LxSimulation::RemoveInterface("x"), LxResultCode::NotFound);
    EXPECT_EQ(LxSimulation::SetDevicePresent("x", true), LxResultCode::NotFound);
    EXPECT_EQ(LxSimulation::FreezeDevice("x"), LxResultCode::NotFound);
    EXPECT_EQ(LxSimulation::ThawDevice("x"), LxResultCode::NotFound);
    EXPECT_EQ(LxSimulation::FailRange("x", 0, 4, LxResultCode::Busy), LxResultCode::NotFound);
    EXPECT_EQ(LxSimulation::FailCall("x", 1, LxResultCode::Busy), LxResultCode::NotFound);
    EXPECT_EQ(LxSimulation::FailAll("x", LxResultCode::Busy), LxResultCode::NotFound);
    EXPECT_EQ(LxSimulation::ClearFailures("x"), LxResultCode::NotFound);
    EXPECT_EQ(LxSimulation::SetAccessDelay("x", 1), LxResultCode::NotFound);
    EXPECT_EQ(LxSimulation::SkipFrames("x", 1), LxResultCode::NotFound);
    EXPECT_EQ(LxSimulation::DamageFrames("x", 1), LxResultCode::NotFound);
    EXPECT_EQ(LxSimulation::SetFindDelay("x", 1), LxResultCode::NotFound);
}

TEST_F(LxSimulationTest, CallsAreRecordedWithArgumentsThreadAndTime)
{
    LxSimulation::SetRecording(true);
    const auto device = ConnectCamera();
    uint32_t value = 0;
    std::thread::id other;
    std::thread([&] {
        other = std::this_thread::get_id();
        dynamic_cast<LxDeviceGEV &>(*device).ReadRegister(0x0A00, value);
    }).join();
    dynamic_cast<LxDeviceGEV &>(*device).WriteRegister(0x0938, 5000);
    device->Disconnect();
    const auto reads = LxSimulation::GetCalls("ReadRegister");
    ASSERT_EQ(reads.size(), 1u);
    EXPECT_EQ(Text(reads[0].mArguments), std::string(Camera) + ", 0xA00, 0x4");
    EXPECT_EQ(reads[0].mThread, other);
    const auto writes = LxSimulation::GetCalls("WriteRegister");
    ASSERT_EQ(writes.size(), 1u);
    EXPECT_EQ(Text(writes[0].mArguments), std::string(Camera) + ", 0x938, 0x1388");
    EXPECT_GE(writes[0].mTime, reads[0].mTime);
    EXPECT_EQ(LxSimulation::GetCalls("Connect").size(), 1u);
    EXPECT_EQ(LxSimulation::GetCalls("Disconnect").size(), 1u);
    EXPECT_EQ(LxSimulation::GetCalls("Find").size(), 1u);
    const auto port = LxSimulation::GetCalls("ReadPort");
    ASSERT_GE(port.size(), 1u);
    EXPECT_EQ(Text(port.back().mArguments), std::string(Camera) + ", 0xA00, 0x4");
    EXPECT_EQ(port.back().mThread, other);
    EXPECT_EQ(LxSimulation::GetCalls("WritePort").size(), 1u);
    EXPECT_EQ(LxSimulation::GetCalls().size(), 6u + port.size());
    LxSimulation::ClearCalls();
    LxSimulation::SetRecording(false);
    mSystem->Find();
    EXPECT_TRUE(LxSimulation::GetCalls().empty());
}

TEST_F(LxSimulationTest, OrderedResultsComeInTheirOrder)
{
    ASSERT_TRUE(LxSimulation::SetDevice(MakeCamera()).IsOK());
    LxSimulation::QueueResult("Connect", LxResultCode::Timeout);
    LxSimulation::QueueResult("Connect", LxResultCode::GenICamError);
    std::unique_ptr<LxDevice> device;
    const LxDeviceInfo *info = Find(Camera);
    EXPECT_EQ(LxSystem::Connect(info, LxDeviceAccess::Control, device), LxResultCode::Timeout);
    EXPECT_EQ(LxSystem::Connect(info, LxDeviceAccess::Control, device), LxResultCode::GenICamError);
    EXPECT_TRUE(LxSystem::Connect(info, LxDeviceAccess::Control, device).IsOK());
}

TEST_F(LxSimulationTest, DisabledHostIsNotListedButDevicesStayConnected)
{
    const auto device = ConnectCamera();
    LxSimulation::Enable(true);
    EXPECT_TRUE(LxSimulation::IsEnabled());
    LxSimulation::Disable();
    EXPECT_FALSE(LxSimulation::IsEnabled());
    LxSimulation::Disable();
    EXPECT_TRUE(device->IsConnected());
    LxSimulation::Enable(true);
    EXPECT_NE(Find(Camera), nullptr);
    EXPECT_EQ(mSystem->GetInterfaceCount(), 2u) << "the scanner is used again, not a second one";
}

TEST_F(LxSimulationTest, RealInterfacesAreListedUnlessHidden)
{
    LxSimulation::Enable(false);
    LxSystem system;
    EXPECT_GT(system.GetInterfaceCount(), 2u) << "every machine has a loopback adapter";
    EXPECT_EQ(Text(system.GetInterface(0)->GetUniqueID()), "eth0") << "simulated ones first";
    LxSimulation::Enable(true);
    EXPECT_EQ(LxSystem().GetInterfaceCount(), 2u);
}

TEST_F(LxSimulationTest, DefaultHostIsPlausible)
{
    LxSimulation::Clear();
    LxSimulation::AddDefaultHost();
    ASSERT_TRUE(mSystem->Find().IsOK());
    ASSERT_EQ(mSystem->GetInterfaceCount(), 3u);
    int valid = 0;
    int invalid = 0;
    for (uint32_t i = 0; i < 3; ++i) {
        const LxInterface *interface = mSystem->GetInterface(i);
        for (uint32_t j = 0; j < interface->GetDeviceCount(); ++j) {
            const LxDeviceInfo *info = interface->GetDeviceInfo(j);
            if (info->IsConfigurationValid()) {
                ++valid;
                EXPECT_NE(Connect(info), nullptr);
            }
            else {
                ++invalid;
            }
        }
    }
    EXPECT_EQ(valid, 4);
    EXPECT_EQ(invalid, 1);
}

TEST_F(LxSimulationTest, EnvironmentVariableEnablesTheDefaultHost)
{
    LxSimulation::Disable();
    LxSimulation::Clear();
    LxDetail::SimulationHost &host = LxDetail::SimulationHost::Get();
    setenv("LXSDK_SIMULATION", "0", 1);
    host.EnableByEnvironment();
    EXPECT_FALSE(LxSimulation::IsEnabled());
    setenv("LXSDK_SIMULATION", "only", 1);
    host.EnableByEnvironment();
    EXPECT_TRUE(LxSimulation::IsEnabled());
    EXPECT_EQ(LxSystem().GetInterfaceCount(), 3u);
    setenv("LXSDK_SIMULATION", "1", 1);
    host.EnableByEnvironment();
    EXPECT_GT(LxSystem().GetInterfaceCount(), 3u);
    unsetenv("LXSDK_SIMULATION");
}

TEST_F(LxSimulationTest, FiveHundredDevicesAreFoundAtOnce)
{
    for (int i = 0; i < 500; ++i) {
        LxSimulatedDevice camera = MakeCamera();
        char mac[24];
        std::snprintf(mac, sizeof(mac), "02:00:00:01:%02X:%02X", i / 256, i % 256);
        camera.mMACAddress = mac;
        camera.mIPAddress = ("192.168.1." + std::to_string(i % 250 + 2)).c_str();
        ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    }
    ASSERT_TRUE(mSystem->Find().IsOK());
    EXPECT_EQ(GetInterface("eth0")->GetDeviceCount(), 500u);
}

TEST_F(LxSimulationTest, ObjectsAreReadWhileEverythingChanges)
{
    ASSERT_TRUE(LxSimulation::SetDevice(MakeCamera()).IsOK());
    const LxDeviceInfo *info = Find(Camera);
    const LxInterface *interface = GetInterface("eth0");
    std::atomic<bool> stop{false};
    std::atomic<int> searches{0};
    std::thread searching([&] {
        while (!stop) {
            mSystem->Find();
            ++searches;
        }
    });
    std::thread reading([&] {
        while (!stop) {
            info->GetDisplayID();
            info->IsConfigurationValid();
            for (uint32_t i = 0; i < interface->GetDeviceCount(); ++i) {
                if (const LxDeviceInfo *device = interface->GetDeviceInfo(i)) {
                    device->GetModelName();
                }
            }
            dynamic_cast<const LxNetworkAdapter &>(*interface).GetIPAddress(0);
            interface->GetDisplayID();
        }
    });
    LxSimulatedNetworkAdapter adapter;
    adapter.mName = "eth0";
    for (int i = 0; searches < 5; ++i) {
        LxSimulatedDevice camera = MakeCamera();
        camera.mModelName = std::to_string(i).c_str();
        LxSimulation::SetDevice(camera);
        adapter.mAddresses = {{("192.168.1." + std::to_string(i % 200)).c_str(), "255.255.255.0"}};
        LxSimulation::SetNetworkAdapter(adapter);
        LxSimulation::SetDevicePresent(Camera, i % 2 == 0);
        if (i % 5 == 0) {
            LxSimulation::RemoveInterface("usb0");
        }
        LxSimulatedUSBHostController controller;
        controller.mName = "usb0";
        LxSimulation::SetUSBHostController(controller);
    }
    stop = true;
    searching.join();
    reading.join();
}
