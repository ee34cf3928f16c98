// Connected simulated devices: registers, features, privileges, loss and return.

#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <thread>

#include "Backends/Simulation/SimulatedRegisters.h"
#include "LxDevice/LxDeviceGEV.h"
#include "LxDevice/LxDeviceU3V.h"
#include "LxGenICam/LxGenCategory.h"
#include "LxGenICam/LxGenCommand.h"
#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenEventSink.h"
#include "LxGenICam/LxGenFloat.h"
#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "LxGenICam/LxGenString.h"
#include "SimulationTest.h"
#include "WaitFor.h"

namespace R = LxDetail::SimulatedRegister;
using namespace std::chrono_literals;

namespace
{

class SimulatedDeviceTest : public SimulationTest
{
};

class DeviceSink : public LxDeviceEventSink
{
public:
    void OnLinkDisconnected(LxDevice *) override
    {
        mThread = std::this_thread::get_id();
        ++mDisconnected;
    }
    void OnLinkReconnected(LxDevice *) override { ++mReconnected; }

    std::atomic<int> mDisconnected{0};
    std::atomic<int> mReconnected{0};
    std::atomic<std::thread::id> mThread{};
};

class ParameterSink : public LxGenEventSink
{
public:
    void OnParameterUpdate(LxGenParameter *) override { ++mUpdates; }

    std::atomic<int> mUpdates{0};
};

}  // namespace

TEST_F(SimulatedDeviceTest, ConnectedDeviceIsOfItsKind)
{
    const auto device = ConnectCamera();
    ASSERT_NE(device, nullptr);
    EXPECT_NE(dynamic_cast<LxDeviceGEV *>(device.get()), nullptr);
    EXPECT_TRUE(device->IsConnected());
    EXPECT_STREQ(device->GetUniqueID().GetAscii(), Camera);
    EXPECT_EQ(device->GetAccess(), LxDeviceAccess::Control);
    EXPECT_THAT(device->GetGenICamXML().GetString(), testing::HasSubstr("RegisterDescription"));

    ASSERT_TRUE(LxSimulation::SetDevice(MakeUSBCamera()).IsOK());
    const auto usb = Connect(Find("0000C0FFEE01", "usb0"));
    ASSERT_NE(usb, nullptr);
    EXPECT_NE(dynamic_cast<LxDeviceU3V *>(usb.get()), nullptr);
    LxString type;
    EXPECT_TRUE(usb->GetParameters()->GetEnumValue("DeviceTLType", type).IsOK());
    EXPECT_STREQ(type.GetAscii(), "USB3Vision");
    EXPECT_EQ(usb->GetParameters()->Get("GevMACAddress"), nullptr);
    EXPECT_NE(device->GetParameters()->Get("GevMACAddress"), nullptr);
    EXPECT_NE(device->GetParameters()->GetCategory("Root\\TransportLayerControl\\GigEVision"), nullptr);
}

TEST_F(SimulatedDeviceTest, EveryFeatureAnswersOrFailsAsItShould)
{
    const auto device = ConnectCamera();
    ASSERT_NE(device, nullptr);
    LxGenParameterArray *parameters = device->GetParameters();
    EXPECT_GE(parameters->GetCount(), 110u);
    for (uint32_t i = 0; i < parameters->GetCount(); ++i) {
        LxGenParameter *parameter = (*parameters)[i];
        LxString name;
        ASSERT_TRUE(parameter->GetName(name).IsOK());
        LxGenType type = LxGenTypeUndefined;
        EXPECT_TRUE(parameter->GetType(type).IsOK()) << name.GetAscii();
        if (!parameter->IsReadable() || name.GetString().find("Failing") != std::string::npos ||
            name == LxString("SimInvalidEnumeration") || type == LxGenTypeCommand || type == LxGenTypeRegister)
        {
            continue;
        }
        if (const LxGenInteger *integer = parameters->GetInteger(name)) {
            int64_t value = 0;
            int64_t min = 0;
            int64_t max = 0;
            int64_t increment = 0;
            EXPECT_TRUE(integer->GetValue(value).IsOK()) << name.GetAscii();
            EXPECT_TRUE(integer->GetMin(min).IsOK()) << name.GetAscii();
            EXPECT_TRUE(integer->GetMax(max).IsOK()) << name.GetAscii();
            EXPECT_TRUE(integer->GetIncrement(increment).IsOK()) << name.GetAscii();
            EXPECT_LE(min, value) << name.GetAscii();
            EXPECT_GE(max, value) << name.GetAscii();
        }
        else if (const LxGenFloat *number = parameters->GetFloat(name)) {
            double value = 0.0;
            double min = 0.0;
            double max = 0.0;
            EXPECT_TRUE(number->GetValue(value).IsOK()) << name.GetAscii();
            EXPECT_TRUE(number->GetMin(min).IsOK()) << name.GetAscii();
            EXPECT_TRUE(number->GetMax(max).IsOK()) << name.GetAscii();
            EXPECT_LE(min, value) << name.GetAscii();
            EXPECT_GE(max, value) << name.GetAscii();
        }
        else if (type == LxGenTypeString) {
            LxString value;
            EXPECT_TRUE(parameters->GetStringValue(name, value).IsOK()) << name.GetAscii();
        }
        else if (type == LxGenTypeEnum) {
            LxString value;
            EXPECT_TRUE(parameters->GetEnumValue(name, value).IsOK()) << name.GetAscii();
        }
        else {
            bool value = false;
            EXPECT_TRUE(parameters->GetBooleanValue(name, value).IsOK()) << name.GetAscii();
        }
    }
}

TEST_F(SimulatedDeviceTest, AccessOfTheDifficultFeatures)
{
    const auto device = ConnectCamera();
    LxGenParameterArray &parameters = *device->GetParameters();
    const auto check = [&](const char *aName, bool aImplemented, bool aAvailable, bool aReadable, bool aWritable) {
        const LxGenParameter *parameter = parameters.Get(aName);
        ASSERT_NE(parameter, nullptr) << aName;
        EXPECT_EQ(parameter->IsImplemented(), aImplemented) << aName;
        EXPECT_EQ(parameter->IsAvailable(), aAvailable) << aName;
        EXPECT_EQ(parameter->IsReadable(), aReadable) << aName;
        EXPECT_EQ(parameter->IsWritable(), aWritable) << aName;
    };
    check("SimReadOnly", true, true, true, false);
    check("SimWriteOnly", true, true, false, true);
    check("SimImposed", true, true, true, false);
    check("SimUnavailable", true, false, false, false);
    check("SimUnimplemented", false, false, false, false);
    check("SimSwitched", true, true, true, true);
    check("SimLocked", true, true, true, true);
    check("Width", true, true, true, true);
    check("DecimationHorizontal", false, false, false, false);
    check("AcquisitionFrameCount", true, false, false, false);
    check("BalanceRatio", true, false, false, false);

    EXPECT_TRUE(parameters.SetBooleanValue("SimAvailable", false).IsOK());
    EXPECT_TRUE(parameters.SetBooleanValue("SimLock", true).IsOK());
    EXPECT_TRUE(parameters.SetEnumValue("AcquisitionMode", "MultiFrame").IsOK());
    EXPECT_TRUE(parameters.SetEnumValue("PixelFormat", "BayerRG8").IsOK());
    check("SimSwitched", true, false, false, false);
    check("SimLocked", true, true, true, false);
    check("AcquisitionFrameCount", true, true, true, true);
    check("BalanceRatio", true, true, true, true);

    int64_t value = 0;
    EXPECT_FALSE(parameters.GetIntegerValue("SimFailing", value).IsOK());
    EXPECT_FALSE(parameters.SetStringValue("SimFailingWrite", "text").IsOK());
    EXPECT_FALSE(parameters.ExecuteCommand("SimCommandFailing").IsOK());
    LxString entry;
    EXPECT_EQ(parameters.GetEnumValue("SimInvalidEnumeration", entry), LxResultCode::NotFound);
}

TEST_F(SimulatedDeviceTest, SelectorsReachEveryElement)
{
    const auto device = ConnectCamera();
    LxGenParameterArray &parameters = *device->GetParameters();
    const char *const outer[] = {"Alpha", "Beta", "Gamma"};
    for (int64_t i = 0; i < 3; ++i) {
        ASSERT_TRUE(parameters.SetEnumValue("SimSelector", outer[i]).IsOK());
        for (int64_t j = 0; j < 4; ++j) {
            ASSERT_TRUE(parameters.SetIntegerValue("SimSubSelector", j).IsOK());
            int64_t value = 0;
            ASSERT_TRUE(parameters.GetIntegerValue("SimArrayValue", value).IsOK());
            EXPECT_EQ(value, (i + 1) * 100 + j);
        }
    }
    LxString text;
    ASSERT_TRUE(parameters.GetStringValue("SimArrayText", text).IsOK());
    EXPECT_STREQ(text.GetAscii(), "gamma");
}

TEST_F(SimulatedDeviceTest, CommandTakesItsTime)
{
    const auto device = ConnectCamera();
    LxGenParameterArray &parameters = *device->GetParameters();
    const LxGenCommand *command = parameters.GetCommand("SimCommand");
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(parameters.ExecuteCommand("SimCommand").IsOK());
    bool done = true;
    ASSERT_TRUE(command->IsDone(done).IsOK());
    EXPECT_TRUE(!done || std::chrono::steady_clock::now() - start >= 200ms);
    EXPECT_TRUE(WaitFor([&] { return command->IsDone(done).IsOK() && done; }));
    int64_t count = 0;
    EXPECT_TRUE(parameters.GetIntegerValue("SimCommandCount", count).IsOK());
    EXPECT_EQ(count, 1);
    // A test packet in memory goes nowhere, but the command must end.
    ASSERT_TRUE(parameters.ExecuteCommand("GevSCPSFireTestPacket").IsOK());
    EXPECT_TRUE(parameters.GetCommand("GevSCPSFireTestPacket")->IsDone(done).IsOK());
    EXPECT_TRUE(done);
}

TEST_F(SimulatedDeviceTest, WritingAFeatureNotifiesWhatDependsOnIt)
{
    const auto device = ConnectCamera();
    LxGenParameterArray &parameters = *device->GetParameters();
    ParameterSink sink;
    ASSERT_TRUE(parameters.Get("PayloadSize")->RegisterEventSink(&sink).IsOK());
    ASSERT_TRUE(parameters.SetIntegerValue("Width", 640).IsOK());
    EXPECT_GE(sink.mUpdates, 1);
    EXPECT_TRUE(parameters.Get("PayloadSize")->UnregisterEventSink(&sink).IsOK());
}

TEST_F(SimulatedDeviceTest, RegistersAreCheckedLikeThoseOfARealDevice)
{
    const auto device = ConnectCamera();
    auto &gev = dynamic_cast<LxDeviceGEV &>(*device);
    uint32_t value = 77;
    EXPECT_EQ(gev.ReadRegister(-4, value), LxResultCode::InvalidAddress);
    EXPECT_EQ(gev.ReadRegister(0x100000000, value), LxResultCode::InvalidAddress);
    EXPECT_EQ(gev.ReadRegister(2, value), LxResultCode::BadAlignment);
    EXPECT_EQ(gev.ReadRegister(0x8000, value), LxResultCode::InvalidAddress);
    EXPECT_EQ(value, 77u) << "set on success only";
    EXPECT_TRUE(gev.ReadRegister(R::Width, value).IsOK());
    EXPECT_EQ(value, 1280u);
    EXPECT_TRUE(gev.WriteRegister(R::Width, 640).IsOK());
    EXPECT_EQ(gev.WriteRegister(R::Width, 1), LxResultCode::InvalidParameter);
    EXPECT_EQ(gev.WriteRegister(R::SensorWidth, 1), LxResultCode::WriteProtected);
    int64_t width = 0;
    EXPECT_TRUE(device->GetParameters()->GetIntegerValue("Width", width).IsOK());
    EXPECT_EQ(width, 640);
    uint8_t bytes[8];
    EXPECT_TRUE(device->ReadMemory(R::Width, bytes, 8).IsOK());
    EXPECT_EQ(device->ReadMemory(-1, bytes, 8), LxResultCode::InvalidAddress);
    EXPECT_EQ(device->ReadMemory(R::Width, nullptr, 8), LxResultCode::InvalidArgument);
    EXPECT_EQ(device->ReadMemory(R::Width, bytes, uint64_t(1) << 40), LxResultCode::InvalidAddress);
}

TEST_F(SimulatedDeviceTest, ControlIsGivenOnce)
{
    const auto first = ConnectCamera();
    const LxDeviceInfo *info = Find(Camera);
    std::unique_ptr<LxDevice> second;
    EXPECT_EQ(LxSystem::Connect(info, LxDeviceAccess::Control, second), LxResultCode::AccessDenied);
    EXPECT_EQ(LxSystem::Connect(info, LxDeviceAccess::Exclusive, second), LxResultCode::AccessDenied);
    EXPECT_EQ(second, nullptr);
    const auto reader = Connect(info, LxDeviceAccess::ReadOnly);
    ASSERT_NE(reader, nullptr);
    int type = 0;
    EXPECT_TRUE(LxDeviceGEV::GetAccessType("192.168.1.10", &type).IsOK());
    EXPECT_EQ(type, LxAccessControl);
    uint32_t ccp = 0;
    EXPECT_TRUE(dynamic_cast<LxDeviceGEV &>(*reader).ReadRegister(0x0A00, ccp).IsOK());
    EXPECT_EQ(ccp, 2u);

    EXPECT_TRUE(first->Disconnect().IsOK());
    EXPECT_TRUE(LxDeviceGEV::GetAccessType("192.168.1.10", &type).IsOK());
    EXPECT_EQ(type, LxAccessOpen);
    second = Connect(info, LxDeviceAccess::Exclusive);
    EXPECT_TRUE(LxDeviceGEV::GetAccessType("192.168.1.10", &type).IsOK());
    EXPECT_EQ(type, LxAccessExclusive);
    std::unique_ptr<LxDevice> third;
    EXPECT_EQ(LxSystem::Connect(info, LxDeviceAccess::ReadOnly, third), LxResultCode::AccessDenied);
}

TEST_F(SimulatedDeviceTest, ReaderCannotWrite)
{
    const auto reader = ConnectCamera(LxDeviceAccess::ReadOnly);
    EXPECT_EQ(dynamic_cast<LxDeviceGEV &>(*reader).WriteRegister(R::Width, 640), LxResultCode::AccessDenied);
    EXPECT_FALSE(reader->GetParameters()->Get("Width")->IsWritable());
    EXPECT_TRUE(reader->GetParameters()->Get("Width")->IsReadable());
}

TEST_F(SimulatedDeviceTest, AnotherApplicationMayHaveTheDevice)
{
    LxSimulatedDevice camera = MakeCamera();
    camera.mAccessType = LxAccessExclusive;
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    std::unique_ptr<LxDevice> device;
    EXPECT_EQ(LxSystem::Connect(Find(Camera), LxDeviceAccess::ReadOnly, device), LxResultCode::AccessDenied);
    camera.mAccessType = LxAccessControl;
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    EXPECT_EQ(LxSystem::Connect(Find(Camera), LxDeviceAccess::Control, device), LxResultCode::AccessDenied);
    EXPECT_NE(Connect(Find(Camera), LxDeviceAccess::ReadOnly), nullptr);
}

TEST_F(SimulatedDeviceTest, DisconnectedDeviceAnswersNothing)
{
    const auto device = ConnectCamera();
    EXPECT_TRUE(device->Disconnect().IsOK());
    EXPECT_TRUE(device->Disconnect().IsOK());
    EXPECT_FALSE(device->IsConnected());
    EXPECT_EQ(device->GetParameters(), nullptr);
    EXPECT_TRUE(device->GetGenICamXML().IsEmpty());
    uint32_t value = 0;
    EXPECT_EQ(dynamic_cast<LxDeviceGEV &>(*device).ReadRegister(R::Width, value), LxResultCode::NotConnected);
}

TEST_F(SimulatedDeviceTest, DeviceMayHaveAnXMLOfATest)
{
    LxSimulatedDevice camera = MakeCamera();
    camera.mGenICamXML = "this is no XML";
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    std::unique_ptr<LxDevice> device;
    EXPECT_EQ(LxSystem::Connect(Find(Camera), LxDeviceAccess::Control, device), LxResultCode::GenICamError);
    EXPECT_EQ(device, nullptr);
    int type = 0;
    EXPECT_TRUE(LxDeviceGEV::GetAccessType("192.168.1.10", &type).IsOK());
    EXPECT_EQ(type, LxAccessOpen) << "a failed connection must give control back";
    camera.mGenICamXML =
        "<?xml version=\"1.0\"?><RegisterDescription ModelName=\"M\" VendorName=\"V\" StandardNameSpace=\"GEV\" "
        "SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\" MajorVersion=\"1\" "
        "MinorVersion=\"0\" SubMinorVersion=\"0\" ProductGuid=\"1\" VersionGuid=\"1\" "
        "xmlns=\"http://www.genicam.org/GenApi/Version_1_1\"><Category Name=\"Root\"><pFeature>Five</pFeature>"
        "</Category><Integer Name=\"Five\"><Value>5</Value></Integer><Port Name=\"Device\"/></RegisterDescription>";
    ASSERT_TRUE(LxSimulation::SetDevice(camera).IsOK());
    device = Connect(Find(Camera));
    ASSERT_NE(device, nullptr);
    EXPECT_EQ(device->GetParameters()->GetCount(), 1u);
    int64_t five = 0;
    EXPECT_TRUE(device->GetParameters()->GetIntegerValue("Five", five).IsOK());
    EXPECT_EQ(five, 5);
}

TEST_F(SimulatedDeviceTest, DeviceOutlivesTheSystem)
{
    const auto device = ConnectCamera();
    mSystem.reset();
    int64_t width = 0;
    EXPECT_TRUE(device->GetParameters()->GetIntegerValue("Width", width).IsOK());
    mSystem = std::make_unique<LxSystem>();
}

TEST_F(SimulatedDeviceTest, VanishingAndReturningIsToldOnAThreadOfTheSDK)
{
    const auto device = ConnectCamera();
    DeviceSink sink;
    ASSERT_TRUE(device->RegisterEventSink(&sink).IsOK());
    ASSERT_TRUE(device->GetParameters()->SetIntegerValue("Width", 640).IsOK());
    ParameterSink width;
    device->GetParameters()->Get("Width")->RegisterEventSink(&width);

    ASSERT_TRUE(LxSimulation::SetDevicePresent(Camera, false).IsOK());
    EXPECT_TRUE(WaitFor([&] { return sink.mDisconnected == 1; }));
    EXPECT_NE(sink.mThread.load(), std::this_thread::get_id());
    EXPECT_TRUE(WaitFor([&] { return width.mUpdates >= 1; })) << "features hear of a change of the link";
    EXPECT_FALSE(device->IsConnected());
    int64_t value = 0;
    EXPECT_EQ(device->GetParameters()->GetIntegerValue("Width", value), LxResultCode::NotConnected);
    EXPECT_NE(device->GetParameters()->GetAccessMode(), 0);
    EXPECT_EQ(Find(Camera), nullptr);

    ASSERT_TRUE(LxSimulation::SetDevicePresent(Camera, true).IsOK());
    EXPECT_TRUE(WaitFor([&] { return sink.mReconnected == 1; }));
    EXPECT_TRUE(device->IsConnected());
    EXPECT_EQ(device->GetParameters()->GetAccessMode(), 0);
    EXPECT_TRUE(device->GetParameters()->GetIntegerValue("Width", value).IsOK());
    EXPECT_EQ(value, 1280) << "it has restarted";
    EXPECT_NE(Find(Camera), nullptr);
    device->GetParameters()->Get("Width")->UnregisterEventSink(&width);
    EXPECT_TRUE(device->UnregisterEventSink(&sink).IsOK());
    EXPECT_EQ(device->UnregisterEventSink(&sink), LxResultCode::NotFound);
    EXPECT_EQ(device->RegisterEventSink(nullptr), LxResultCode::InvalidArgument);
}

TEST_F(SimulatedDeviceTest, RemovingTheAdapterCutsTheLink)
{
    const auto device = ConnectCamera();
    ASSERT_TRUE(LxSimulation::RemoveInterface("eth0").IsOK());
    EXPECT_FALSE(device->IsConnected());
    EXPECT_EQ(GetInterface("eth0")->GetDeviceCount(), 1u) << "the system looks with the next search";
    ASSERT_TRUE(mSystem->Find().IsOK());
    EXPECT_EQ(GetInterface("eth0"), nullptr);
}

TEST_F(SimulatedDeviceTest, FrozenDeviceCostsOneTimeout)
{
    const auto device = ConnectCamera();
    DeviceSink sink;
    device->RegisterEventSink(&sink);
    auto &gev = dynamic_cast<LxDeviceGEV &>(*device);
    const auto frozen = std::chrono::steady_clock::now();
    ASSERT_TRUE(LxSimulation::FreezeDevice(Camera, 500).IsOK());
    uint32_t value = 0;
    const auto expectTimeout = [&] {
        const LxResult result = gev.ReadRegister(R::Width, value);
        // after two seconds it is lost
        EXPECT_TRUE(result == LxResultCode::Timeout || std::chrono::steady_clock::now() - frozen >= 2s)
            << result.GetCodeString().GetAscii();
    };
    expectTimeout();
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 20; ++i) {
        expectTimeout();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, 9s) << "twenty time-outs would be ten seconds";
    EXPECT_EQ(Find(Camera), nullptr);
    EXPECT_TRUE(WaitFor([&] { return sink.mDisconnected == 1; }));
    EXPECT_EQ(gev.ReadRegister(R::Width, value), LxResultCode::NotConnected);
    ASSERT_TRUE(LxSimulation::ThawDevice(Camera).IsOK());
    EXPECT_TRUE(gev.ReadRegister(R::Width, value).IsOK());
    EXPECT_TRUE(WaitFor([&] { return sink.mReconnected == 1; }));
    device->UnregisterEventSink(&sink);
}

TEST_F(SimulatedDeviceTest, ShortFreezeIsNoLoss)
{
    const auto device = ConnectCamera();
    DeviceSink sink;
    device->RegisterEventSink(&sink);
    ASSERT_TRUE(LxSimulation::FreezeDevice(Camera, 60000).IsOK());
    LxSimulation::SetRecording(true);
    auto reading = std::async(std::launch::async, [&] {
        int64_t value = 0;
        return device->GetParameters()->GetIntegerValue("Width", value);
    });
    EXPECT_TRUE(WaitFor([] { return !LxSimulation::GetCalls("ReadPort").empty(); }));
    LxSimulation::SetRecording(false);
    EXPECT_EQ(reading.wait_for(0s), std::future_status::timeout);
    ASSERT_TRUE(LxSimulation::ThawDevice(Camera).IsOK());
    EXPECT_TRUE(reading.get().IsOK());
    EXPECT_EQ(sink.mDisconnected, 0);
    device->UnregisterEventSink(&sink);
}

TEST_F(SimulatedDeviceTest, InjectedFaultsReachTheFeatures)
{
    const auto device = ConnectCamera();
    LxGenParameterArray &parameters = *device->GetParameters();
    int64_t value = 0;
    ASSERT_TRUE(LxSimulation::FailRange(Camera, R::Width, 4, LxResult(LxResultCode::Busy, "Out to lunch.")).IsOK());
    const LxResult result = parameters.GetIntegerValue("Width", value);
    EXPECT_EQ(result, LxResultCode::Busy);
    EXPECT_THAT(result.GetDescription().GetString(), testing::HasSubstr("Out to lunch."));
    EXPECT_TRUE(parameters.GetIntegerValue("SensorHeight", value).IsOK());
    ASSERT_TRUE(LxSimulation::FailAll(Camera, LxResultCode::ProtocolError).IsOK());
    EXPECT_EQ(parameters.GetIntegerValue("SensorHeight", value), LxResultCode::ProtocolError);
    ASSERT_TRUE(LxSimulation::ClearFailures(Camera).IsOK());
    EXPECT_TRUE(parameters.GetIntegerValue("Width", value).IsOK());
    ASSERT_TRUE(LxSimulation::FailCall(Camera, 2, LxResultCode::Timeout).IsOK());
    uint32_t raw = 0;
    auto &gev = dynamic_cast<LxDeviceGEV &>(*device);
    EXPECT_TRUE(gev.ReadRegister(R::Width, raw).IsOK());
    EXPECT_EQ(gev.ReadRegister(R::Width, raw), LxResultCode::Timeout);
    EXPECT_TRUE(gev.ReadRegister(R::Width, raw).IsOK());
    ASSERT_TRUE(LxSimulation::SetAccessDelay(Camera, 20000).IsOK());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(gev.ReadRegister(R::Width, raw).IsOK());
    EXPECT_GE(std::chrono::steady_clock::now() - start, 20ms);
}

TEST_F(SimulatedDeviceTest, SinkMayDestroyTheDevice)
{
    class Destroyer : public LxDeviceEventSink
    {
    public:
        void OnLinkDisconnected(LxDevice *aDevice) override
        {
            aDevice->UnregisterEventSink(this);
            mDevice.reset();
            mDone = true;
        }
        std::unique_ptr<LxDevice> mDevice;
        std::atomic<bool> mDone{false};
    } destroyer;
    destroyer.mDevice = ConnectCamera();
    destroyer.mDevice->RegisterEventSink(&destroyer);
    LxSimulation::SetDevicePresent(Camera, false);
    EXPECT_TRUE(WaitFor([&] { return destroyer.mDone.load(); }));
    EXPECT_TRUE(WaitFor([&] { return LxSimulation::GetCounters().mDevices == 0; }));
}

TEST_F(SimulatedDeviceTest, DisconnectDoesNotWaitForASinkThatWaitsForIt)
{
    class Waiter : public LxGenEventSink
    {
    public:
        void OnParameterUpdate(LxGenParameter *) override
        {
            mEntered = true;
            mInTime = WaitFor([this] { return mDisconnected.load(); });
            mLeft = true;
        }
        std::atomic<bool> mEntered{false};
        std::atomic<bool> mDisconnected{false};
        std::atomic<bool> mInTime{false};
        std::atomic<bool> mLeft{false};
    } waiter;
    const auto device = ConnectCamera();
    LxGenParameter *width = device->GetParameters()->Get("Width");
    ASSERT_TRUE(width->RegisterEventSink(&waiter).IsOK());
    LxSimulation::SetDevicePresent(Camera, false);
    ASSERT_TRUE(WaitFor([&] { return waiter.mEntered.load(); }));
    EXPECT_TRUE(device->Disconnect().IsOK());
    waiter.mDisconnected = true;
    EXPECT_TRUE(WaitFor([&] { return waiter.mLeft.load(); }));
    EXPECT_TRUE(waiter.mInTime);
    width->UnregisterEventSink(&waiter);
}

TEST_F(SimulatedDeviceTest, ManyThreadsUseADeviceThatComesAndGoes)
{
    const auto device = ConnectCamera();
    DeviceSink sink;
    device->RegisterEventSink(&sink);
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&, i] {
            while (!stop) {
                int64_t value = 0;
                device->GetParameters()->GetIntegerValue("PayloadSize", value);
                device->GetParameters()->SetIntegerValue("OffsetX", 4 * i);
                device->GetParameters()->Get("Gain")->ToString();
                uint32_t raw = 0;
                dynamic_cast<LxDeviceGEV &>(*device).ReadRegister(R::Timestamp, raw);
            }
        });
    }
    for (int i = 0; i < 5; ++i) {
        LxSimulation::SetDevicePresent(Camera, false);
        EXPECT_TRUE(WaitFor([&] { return sink.mDisconnected == i + 1; }));
        LxSimulation::SetDevicePresent(Camera, true);
        EXPECT_TRUE(WaitFor([&] { return sink.mReconnected == i + 1; }));
    }
    stop = true;
    for (std::thread &thread : threads) {
        thread.join();
    }
    device->UnregisterEventSink(&sink);
}
