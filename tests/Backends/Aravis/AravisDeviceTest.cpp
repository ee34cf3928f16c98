// Real devices over libaravis, against the camera that comes with it. Run in a private network namespace.

#include "AravisDeviceTest.h"
#include "EmulatedCamera.h"

#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenParameterArray.h"

namespace
{

class AravisDevice : public testing::TestWithParam<CameraKind>
{
protected:
    void SetUp() override { ASSERT_TRUE(mCamera.Start()); }

    const int64_t mMemory = GetParam().mFreeMemory;
    CameraProcess mCamera{GetParam().mCommand()};
};

INSTANTIATE_TEST_SUITE_P(With, AravisDevice, testing::Values(emulatorKind, fakeCameraKind), GetKindName);

}  // namespace

TEST_P(AravisDevice, ConnectsReadsAndWritesRegisters)
{
    std::unique_ptr<LxDeviceGEV> device;
    const LxResult connected = Connect(device);
    ASSERT_TRUE(connected.IsOK()) << connected.GetDescription().GetAscii();
    EXPECT_TRUE(device->IsConnected());
    EXPECT_EQ(device->GetAccess(), LxDeviceAccess::Control);
    EXPECT_STREQ(device->GetUniqueID().GetAscii(), "02:00:00:00:00:01");
    uint32_t value = 0;
    ASSERT_TRUE(device->WriteRegister(mMemory, 0x12345678).IsOK());
    ASSERT_TRUE(device->ReadRegister(mMemory, value).IsOK());
    EXPECT_EQ(value, 0x12345678U);
}

TEST_P(AravisDevice, OffersTheFeaturesOfItsXML)
{
    std::unique_ptr<LxDeviceGEV> device;
    ASSERT_TRUE(Connect(device).IsOK());
    EXPECT_NE(std::string(device->GetGenICamXML().GetAscii()).find("<RegisterDescription"), std::string::npos);
    LxGenParameterArray *parameters = device->GetParameters();
    ASSERT_NE(parameters, nullptr);
    EXPECT_EQ(parameters->GetAccessMode(), 0);
    int64_t width = 0;
    ASSERT_TRUE(parameters->SetIntegerValue("Width", 320).IsOK());
    ASSERT_TRUE(parameters->GetIntegerValue("Width", width).IsOK());
    EXPECT_EQ(width, 320);
    EXPECT_EQ(parameters->SetIntegerValue("Width", 1 << 20), LxResultCode::OutOfRange);
    LxString vendor;
    ASSERT_TRUE(parameters->GetStringValue("DeviceVendorName", vendor).IsOK());
    EXPECT_FALSE(vendor.IsEmpty());
}

TEST_P(AravisDevice, ReadsAndWritesMemoryOfAnyLengthAtAnyAddress)
{
    std::unique_ptr<LxDeviceGEV> device;
    ASSERT_TRUE(Connect(device).IsOK());
    std::vector<uint8_t> pattern(GetParam().mFreeSize);
    for (size_t i = 0; i < pattern.size(); ++i) {
        pattern[i] = static_cast<uint8_t>(i * 7);
    }
    ASSERT_TRUE(device->WriteMemory(mMemory, pattern.data(), pattern.size()).IsOK());
    std::vector<uint8_t> read(pattern.size());
    ASSERT_TRUE(device->ReadMemory(mMemory, read.data(), read.size()).IsOK());
    EXPECT_EQ(read, pattern);

    uint8_t five[5] = {};
    ASSERT_TRUE(device->ReadMemory(mMemory + 3, five, sizeof(five)).IsOK());
    EXPECT_EQ(std::vector<uint8_t>(five, five + 5), std::vector<uint8_t>(pattern.begin() + 3, pattern.begin() + 8));
    const uint8_t two[2] = {0xAA, 0xBB};
    ASSERT_TRUE(device->WriteMemory(mMemory + 9, two, sizeof(two)).IsOK());
    pattern[9] = 0xAA;
    pattern[10] = 0xBB;
    ASSERT_TRUE(device->ReadMemory(mMemory, read.data(), read.size()).IsOK());
    EXPECT_EQ(read, pattern) << "what shares the word with the written bytes stays";
    EXPECT_TRUE(device->ReadMemory(mMemory, nullptr, 0).IsOK());
}

TEST_P(AravisDevice, RefusesAddressesThatGigEVisionDoesNotHave)
{
    std::unique_ptr<LxDeviceGEV> device;
    ASSERT_TRUE(Connect(device).IsOK());
    uint32_t value = 77;
    uint8_t byte = 0;
    EXPECT_EQ(device->ReadRegister(-4, value), LxResultCode::InvalidAddress);
    EXPECT_EQ(device->ReadRegister(INT64_C(0x100000000), value), LxResultCode::InvalidAddress);
    EXPECT_EQ(device->ReadRegister(INT64_MAX, value), LxResultCode::InvalidAddress);
    EXPECT_EQ(device->WriteRegister(INT64_MIN, 1), LxResultCode::InvalidAddress);
    EXPECT_EQ(device->ReadRegister(2, value), LxResultCode::BadAlignment);
    EXPECT_EQ(device->WriteRegister(0x1001, 1), LxResultCode::BadAlignment);
    EXPECT_EQ(device->ReadMemory(-1, &byte, 1), LxResultCode::InvalidAddress);
    EXPECT_EQ(device->ReadMemory(INT64_C(0xFFFFFFFF), &byte, 2), LxResultCode::InvalidAddress);
    EXPECT_EQ(device->ReadMemory(0, &byte, UINT64_MAX), LxResultCode::InvalidAddress);
    EXPECT_EQ(device->WriteMemory(0, nullptr, 4), LxResultCode::InvalidArgument);
    EXPECT_EQ(value, 77U) << "the value is set on success only";
    EXPECT_FALSE(device->ReadRegister(2, value).GetDescription().IsEmpty());
}

TEST_P(AravisDevice, SaysThatAnotherApplicationControlsIt)
{
    std::unique_ptr<LxDeviceGEV> first;
    ASSERT_TRUE(Connect(first).IsOK());
    std::unique_ptr<LxDeviceGEV> second;
    const RunningTime time;
    const LxResult result = Connect(second);
    EXPECT_LT(time.Get(), libraryTimeout);
    EXPECT_EQ(result, LxResultCode::AccessDenied);
    EXPECT_EQ(second, nullptr);
    EXPECT_NE(std::string(result.GetDescription().GetAscii()).find("Another application controls the device"),
              std::string::npos);
    first.reset();
    EXPECT_TRUE(Connect(second).IsOK()) << "given up, so it can be taken";
}

TEST_P(AravisDevice, CanBeReadBesideAnApplicationThatControlsIt)
{
    std::unique_ptr<LxDeviceGEV> controller;
    ASSERT_TRUE(Connect(controller).IsOK());
    std::unique_ptr<LxDeviceGEV> reader;
    ASSERT_TRUE(Connect(reader, LxDeviceAccess::ReadOnly).IsOK());
    EXPECT_EQ(reader->GetAccess(), LxDeviceAccess::ReadOnly);
    uint32_t value = 0;
    EXPECT_TRUE(reader->ReadRegister(0, value).IsOK());
    const LxResult refused = reader->WriteRegister(mMemory, 1);
    EXPECT_EQ(refused, LxResultCode::AccessDenied);
    EXPECT_NE(std::string(refused.GetDescription().GetAscii()).find("read-only"), std::string::npos);
    EXPECT_EQ(reader->GetParameters()->SetIntegerValue("Width", 100), LxResultCode::NotWritable);
    EXPECT_TRUE(controller->WriteRegister(mMemory, 1).IsOK()) << "control was not touched";
}

TEST_P(AravisDevice, DoesNotKeepControlWhenItIsOpenedReadOnly)
{
    std::unique_ptr<LxDeviceGEV> reader;
    ASSERT_TRUE(Connect(reader, LxDeviceAccess::ReadOnly).IsOK());
    uint32_t privilege = 1;
    ASSERT_TRUE(reader->ReadRegister(0x0A00, privilege).IsOK());
    EXPECT_EQ(privilege, 0U);
    std::unique_ptr<LxDeviceGEV> controller;
    EXPECT_TRUE(Connect(controller).IsOK());
}

TEST_P(AravisDevice, TakesTheExclusivePrivilege)
{
    std::unique_ptr<LxDeviceGEV> device;
    ASSERT_TRUE(Connect(device, LxDeviceAccess::Exclusive).IsOK());
    uint32_t privilege = 0;
    ASSERT_TRUE(device->ReadRegister(0x0A00, privilege).IsOK());
    EXPECT_EQ(privilege & 1, 1U);
    std::unique_ptr<LxDeviceGEV> other;
    EXPECT_EQ(Connect(other, LxDeviceAccess::ReadOnly), LxResultCode::AccessDenied);
}

TEST_P(AravisDevice, SaysWhyItCannotBeReached)
{
    std::unique_ptr<LxDeviceGEV> device;
    const RunningTime time;
    const LxResult nobody = Connect(device, LxDeviceAccess::Control, "127.0.0.77");
    EXPECT_LT(time.Get(), libraryTimeout);
    EXPECT_EQ(nobody, LxResultCode::Timeout);
    EXPECT_NE(std::string(nobody.GetDescription().GetAscii()).find("127.0.0.77 does not answer"), std::string::npos);
    EXPECT_EQ(Connect(device, LxDeviceAccess::Control, "127.0.0.1", "10.1.2.3"), LxResultCode::Unavailable)
        << "an address that this computer does not have";
    EXPECT_EQ(Connect(device, LxDeviceAccess::Control, "127.0.0.1", ""), LxResultCode::Unavailable);
    EXPECT_EQ(Connect(device, LxDeviceAccess::Control, "0.0.0.0"), LxResultCode::Unavailable);
    EXPECT_EQ(device, nullptr);
}

TEST_P(AravisDevice, AnswersNothingAnyMoreAfterDisconnect)
{
    std::unique_ptr<LxDeviceGEV> device;
    ASSERT_TRUE(Connect(device).IsOK());
    EventRecorder events;
    device->RegisterEventSink(&events);
    ASSERT_TRUE(device->Disconnect().IsOK());
    EXPECT_TRUE(device->Disconnect().IsOK());
    EXPECT_FALSE(device->IsConnected());
    EXPECT_EQ(device->GetParameters(), nullptr);
    EXPECT_TRUE(device->GetGenICamXML().IsEmpty());
    uint32_t value = 0;
    EXPECT_EQ(device->ReadRegister(0, value), LxResultCode::NotConnected);
    EXPECT_EQ(device->WriteRegister(mMemory, 0), LxResultCode::NotConnected);
    uint8_t byte = 0;
    EXPECT_EQ(device->ReadMemory(0, &byte, 1), LxResultCode::NotConnected);
    EXPECT_EQ(events.GetEvents(), "") << "who disconnects needs no event";
    std::unique_ptr<LxDeviceGEV> again;
    EXPECT_TRUE(Connect(again).IsOK());
}

TEST_P(AravisDevice, OpensAndClosesManyTimes)
{
    for (int i = 0; i < 15; ++i) {
        std::unique_ptr<LxDeviceGEV> device;
        const LxResult result = Connect(device);
        ASSERT_TRUE(result.IsOK()) << i << ": " << result.GetDescription().GetAscii();
        uint32_t value = 0;
        ASSERT_TRUE(device->ReadRegister(0, value).IsOK());
    }
}

TEST_P(AravisDevice, IsOpenedByManyThreadsAtOnce)
{
    std::vector<std::thread> threads;
    std::atomic<int> good{0};
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&good] {
            for (int k = 0; k < 3; ++k) {
                std::unique_ptr<LxDeviceGEV> device;
                uint32_t value = 0;
                int64_t width = 0;
                if (Connect(device, LxDeviceAccess::ReadOnly).IsOK() && device->ReadRegister(0, value).IsOK() &&
                    device->GetParameters()->GetIntegerValue("Width", width).IsOK())
                {
                    ++good;
                }
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(good, 12);
}

TEST(AravisDevices, TwoAreUsedAtOnce)
{
    const int64_t memory = emulatorKind.mFreeMemory;
    CameraProcess left(EmulatorCommand("127.0.0.1"), "127.0.0.1");
    CameraProcess right(EmulatorCommand("127.0.0.2"), "127.0.0.2");
    ASSERT_TRUE(left.Start() && right.Start());
    std::unique_ptr<LxDeviceGEV> first;
    std::unique_ptr<LxDeviceGEV> second;
    ASSERT_TRUE(Connect(first, LxDeviceAccess::Control, left.GetAddress()).IsOK());
    ASSERT_TRUE(Connect(second, LxDeviceAccess::Control, right.GetAddress()).IsOK());
    ASSERT_TRUE(first->WriteRegister(memory, 1).IsOK());
    ASSERT_TRUE(second->WriteRegister(memory, 2).IsOK());
    uint32_t value = 0;
    ASSERT_TRUE(first->ReadRegister(memory, value).IsOK());
    EXPECT_EQ(value, 1U);
    ASSERT_TRUE(second->ReadRegister(memory, value).IsOK());
    EXPECT_EQ(value, 2U);
    right.Kill();
    ASSERT_TRUE(WaitFor([&second] { return !second->IsConnected(); }));
    EXPECT_TRUE(first->ReadRegister(memory, value).IsOK()) << "the loss of one does not concern the other";
}

TEST(AravisDevices, NoUsbDevicesAreListedWhereThereIsNoUsb)
{
    EXPECT_TRUE(LxDetail::ListUSB3VisionDevices().empty());
    std::unique_ptr<LxDevice> device;
    LxDetail::UsbConnectRequest request;
    request.mUniqueID = "no-such-guid";
    const LxResult result = LxDetail::ConnectUSB3Vision(request, LxDeviceAccess::Control, device);
    EXPECT_EQ(result, LxResultCode::NotConnected);
    EXPECT_EQ(device, nullptr);
    EXPECT_NE(std::string(result.GetDescription().GetAscii()).find("udev"), std::string::npos);
}

TEST(AravisDevices, EveryStatusOfTheDeviceHasItsResult)
{
    LxEmulator::EmulatedCamera camera{LxEmulator::EmulatedCameraOptions()};
    ASSERT_TRUE(camera.Start().IsOK());
    std::unique_ptr<LxDeviceGEV> device;
    ASSERT_TRUE(Connect(device).IsOK());
    const std::vector<std::pair<uint16_t, LxResultCode>> table{
        {0x8001, LxResultCode::NotSupported},   {0x8002, LxResultCode::InvalidParameter},
        {0x8003, LxResultCode::InvalidAddress}, {0x8004, LxResultCode::WriteProtected},
        {0x8005, LxResultCode::BadAlignment},   {0x8006, LxResultCode::AccessDenied},
        {0x8007, LxResultCode::Busy},           {0x8008, LxResultCode::ProtocolError},
        {0x8FFF, LxResultCode::ProtocolError},
    };
    for (const auto &[status, code] : table) {
        LxEmulator::ControlFaults faults;
        faults.mStatuses.push_back({status, 0xB070, 4, LxEmulator::AccessKind::Both, 0});
        camera.SetControlFaults(faults);
        uint32_t value = 0;
        const LxResult read = device->ReadRegister(0xB070, value);
        EXPECT_EQ(read, code) << std::hex << status << ": " << read.GetCodeString().GetAscii();
        EXPECT_FALSE(read.GetDescription().IsEmpty());
        EXPECT_EQ(device->WriteRegister(0xB070, 1), code) << std::hex << status;
        uint8_t byte = 0;
        EXPECT_EQ(device->ReadMemory(0xB070, &byte, 1), code) << std::hex << status;
    }
    camera.ClearFaults();
    uint32_t value = 0;
    EXPECT_EQ(device->ReadRegister(0xFFFFF0, value), LxResultCode::InvalidAddress);
    EXPECT_EQ(device->WriteRegister(0, 1), LxResultCode::WriteProtected);
    EXPECT_TRUE(device->ReadRegister(0xB070, value).IsOK());
    EXPECT_TRUE(device->IsConnected()) << "errors of registers are no loss of the device";
}

TEST(AravisDevices, MemoryIsWrittenWordByWordWhenTheDeviceDoesNotKnowWriteMem)
{
    for (const bool known : {true, false}) {
        LxEmulator::EmulatedCamera camera{LxEmulator::EmulatedCameraOptions()};
        ASSERT_TRUE(camera.Start().IsOK());
        const auto &port = camera.GetCamera().GetPort();
        const uint32_t capability = port->Peek32(0x0934);
        port->Poke32(0x0934, known ? capability | 2U : capability & ~2U);
        std::vector<uint32_t> lengths;
        std::mutex mutex;  // guards lengths
        port->OnWrite(0xB070, 64, [&](LxDetail::MemoryPort &, uint64_t, uint32_t aLength) {
            const std::lock_guard lock(mutex);
            lengths.push_back(aLength);
            return LxResult();
        });
        std::unique_ptr<LxDeviceGEV> device;
        ASSERT_TRUE(Connect(device).IsOK());
        const std::vector<uint8_t> written{1, 2, 3, 4, 5, 6, 7, 8};
        ASSERT_TRUE(device->WriteMemory(0xB070, written.data(), written.size()).IsOK());
        std::vector<uint8_t> read(written.size());
        ASSERT_TRUE(device->ReadMemory(0xB070, read.data(), read.size()).IsOK());
        EXPECT_EQ(read, written);
        const std::lock_guard lock(mutex);
        EXPECT_EQ(lengths, known ? std::vector<uint32_t>{8} : (std::vector<uint32_t>{4, 4}));
    }
}

TEST(AravisDevices, ControlThatAnotherApplicationTookIsNoticedAndTakenBackWhenItIsFree)
{
    LxEmulator::EmulatedCamera camera{LxEmulator::EmulatedCameraOptions()};
    ASSERT_TRUE(camera.Start().IsOK());
    std::unique_ptr<LxDeviceGEV> device;
    ASSERT_TRUE(Connect(device).IsOK());
    EventRecorder events;
    device->RegisterEventSink(&events);
    camera.OverrideControl(2);
    // the library's heartbeat may have noticed already, so that control is being asked for again
    EXPECT_TRUE(WaitFor([&] { return device->WriteRegister(0xB070, 1) == LxResultCode::AccessDenied; }));
    ASSERT_TRUE(WaitFor([&] { return events.GetEvents() == "-"; }));
    EXPECT_FALSE(device->IsConnected());
    uint32_t value = 0;
    LxResult denied;
    EXPECT_TRUE(WaitFor([&] {  // asked for again now and then
        denied = device->ReadRegister(0xB070, value);
        return denied == LxResultCode::AccessDenied;
    }));
    EXPECT_NE(std::string(denied.GetDescription().GetAscii()).find("Another application"), std::string::npos);
    camera.OverrideControl(0);
    ASSERT_TRUE(WaitFor([&] { return events.GetEvents() == "-+"; }));
    EXPECT_TRUE(device->WriteRegister(0xB070, 1).IsOK());
    device->UnregisterEventSink(&events);
}

TEST(AravisDevices, ARefusedWriteAloneIsNoLossOfControl)
{
    LxEmulator::EmulatedCamera camera{LxEmulator::EmulatedCameraOptions()};
    ASSERT_TRUE(camera.Start().IsOK());
    std::unique_ptr<LxDeviceGEV> device;
    ASSERT_TRUE(Connect(device).IsOK());
    EventRecorder events;
    device->RegisterEventSink(&events);
    LxEmulator::ControlFaults faults;
    faults.mStatuses.push_back({0x8006, 0xB070, 4, LxEmulator::AccessKind::Write, 0});
    camera.SetControlFaults(faults);
    std::atomic<int> identityReads{0};
    camera.GetCamera().GetPort()->OnRead(0x0008, 8, [&](LxDetail::MemoryPort &, uint64_t, uint32_t) {
        ++identityReads;
        return LxResult();
    });
    EXPECT_EQ(device->WriteRegister(0xB070, 1), LxResultCode::AccessDenied);
    // the doubt is settled by looking who the device is and taking control once more
    ASSERT_TRUE(WaitFor([&] { return identityReads >= 2; }));
    EXPECT_TRUE(device->WriteRegister(0xB074, 1).IsOK());
    EXPECT_EQ(events.GetEvents(), "");
    device->UnregisterEventSink(&events);
}

TEST(AravisDevices, ADeviceWhoseXMLCannotBeReadIsRefusedWithTheReason)
{
    LxEmulator::EmulatedCamera camera{LxEmulator::EmulatedCameraOptions()};
    ASSERT_TRUE(camera.Start().IsOK());
    const std::string url = "Local:camera.xml;FFFFF000;1000";
    for (const uint32_t address : {0x200U, 0x400U}) {
        camera.GetCamera().GetPort()->PokeString(address, 512, url);
    }
    std::unique_ptr<LxDeviceGEV> device;
    const LxResult result = Connect(device);
    EXPECT_EQ(result, LxResultCode::GenICamError) << result.GetDescription().GetAscii();
    EXPECT_EQ(device, nullptr);
    EXPECT_FALSE(result.GetDescription().IsEmpty());
}

TEST(AravisDevices, AnXMLThatIsNoneIsRefusedWithTheReason)
{
    LxEmulator::EmulatedCamera camera{LxEmulator::EmulatedCameraOptions()};
    ASSERT_TRUE(camera.Start().IsOK());
    // the user-defined name stands where the XML should
    camera.GetCamera().GetPort()->PokeString(0xE8, 16, "no XML at all");
    for (const uint32_t address : {0x200U, 0x400U}) {
        camera.GetCamera().GetPort()->PokeString(address, 512, "Local:camera.xml;E8;10");
    }
    std::unique_ptr<LxDeviceGEV> device;
    const LxResult result = Connect(device);
    EXPECT_EQ(result, LxResultCode::GenICamError) << result.GetDescription().GetAscii();
    EXPECT_EQ(device, nullptr);
}
