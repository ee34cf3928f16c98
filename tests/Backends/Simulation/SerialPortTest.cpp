// The serial ports of a simulated frame grabber, as an application sees them.

#include <algorithm>
#include <chrono>
#include <cstring>
#include <mutex>
#include <numeric>
#include <thread>

#include "LxDevice/LxDeviceAdapter.h"
#include "LxDevice/LxDeviceSerialPort.h"
#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenInteger.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "SimulationTest.h"
#include "WaitFor.h"

using namespace std::chrono_literals;

namespace
{

using Clock = std::chrono::steady_clock;

/// Hears, and sends when it is told to.
class TalkingPeer : public LxSimulatedSerialPeer
{
public:
    void OnConnected(const std::shared_ptr<LxSimulatedSerialLine> &aLine) override { mLine = aLine; }
    void OnReceive(const uint8_t *aData, uint32_t aCount, LxSimulatedSerialLine &) override
    {
        std::lock_guard lock(mMutex);
        mHeard.append(reinterpret_cast<const char *>(aData), aCount);
    }
    uint32_t GetBaudRate() const override { return mBaudRate; }
    std::string GetHeard() const
    {
        std::lock_guard lock(mMutex);
        return mHeard;
    }
    uint32_t Send(const std::string &aText)
    {
        return mLine->Send(reinterpret_cast<const uint8_t *>(aText.data()), static_cast<uint32_t>(aText.size()));
    }

    std::shared_ptr<LxSimulatedSerialLine> mLine;
    std::atomic<uint32_t> mBaudRate{0};

private:
    mutable std::mutex mMutex;
    std::string mHeard;
};

}  // namespace

class SerialPortTest : public SimulationTest
{
protected:
    static constexpr auto Serial0 = LxDeviceSerial::Serial0;
    static constexpr auto Bulk1 = LxDeviceSerial::Bulk1;

    static LxSimulatedDevice MakeGrabber(uint32_t aPorts = 0x3FF)
    {
        LxSimulatedDevice grabber = MakeCamera();
        grabber.mSerialPorts = aPorts;
        return grabber;
    }
    void ConnectGrabber(const LxSimulatedDevice &aGrabber = MakeGrabber())
    {
        ASSERT_TRUE(LxSimulation::SetDevice(aGrabber).IsOK());
        mDevice = Connect(Find(Camera));
        ASSERT_NE(mDevice, nullptr);
        mAdapter = std::make_unique<LxDeviceAdapter>(mDevice.get());
    }
    static void SetPeer(LxDeviceSerial aPort, std::shared_ptr<LxSimulatedSerialPeer> aPeer)
    {
        ASSERT_TRUE(LxSimulation::SetSerialPeer(Camera, aPort, std::move(aPeer)).IsOK());
    }
    static void SetConditions(const LxSimulatedSerialConditions &aConditions, LxDeviceSerial aPort = Serial0)
    {
        ASSERT_TRUE(LxSimulation::SetSerialConditions(Camera, aPort, aConditions).IsOK());
    }
    /// Echo at Serial0, open.
    void OpenEcho()
    {
        ConnectGrabber();
        SetPeer(Serial0, std::make_shared<LxSimulatedSerialEcho>());
        ASSERT_TRUE(mPort.Open(mAdapter.get(), Serial0).IsOK());
    }
    LxResult Write(const std::string &aText)
    {
        uint32_t written = 0;
        const LxResult result =
            mPort.Write(reinterpret_cast<const uint8_t *>(aText.data()), static_cast<uint32_t>(aText.size()), written);
        mWritten = written;
        return result;
    }
    /// Reads until there are so many bytes, or nothing comes for a while.
    std::string Read(size_t aCount, uint32_t aTimeout = 20000)
    {
        std::string text;
        while (text.size() < aCount) {
            uint8_t bytes[4096];
            uint32_t read = 0;
            mReadResult = mPort.Read(bytes, sizeof(bytes), read, aTimeout);
            if (!mReadResult.IsOK()) {
                break;
            }
            text.append(reinterpret_cast<const char *>(bytes), read);
        }
        return text;
    }
    LxGenParameterArray &Features() const { return *mDevice->GetParameters(); }

    std::unique_ptr<LxDevice> mDevice;
    std::unique_ptr<LxDeviceAdapter> mAdapter;
    LxDeviceSerialPort mPort;
    uint32_t mWritten = 0;
    LxResult mReadResult;
};

TEST_F(SerialPortTest, PortsAreThereOrNot)
{
    EXPECT_FALSE(LxDeviceSerialPort::IsSupported(nullptr, Serial0));
    LxDeviceAdapter nothing(nullptr);
    EXPECT_FALSE(LxDeviceSerialPort::IsSupported(&nothing, Serial0));
    ConnectGrabber(MakeGrabber(0b1000000101));
    for (uint32_t number = 0; number < 40; ++number) {
        EXPECT_EQ(LxDeviceSerialPort::IsSupported(mAdapter.get(), static_cast<LxDeviceSerial>(number)),
                  number == 0 || number == 2 || number == 9)
            << number;
    }
    EXPECT_FALSE(LxDeviceSerialPort::IsSupported(mAdapter.get(), LxDeviceSerial::Invalid));
    EXPECT_EQ(mPort.Open(mAdapter.get(), LxDeviceSerial::Serial1), LxResultCode::NoSerialPort);
    EXPECT_EQ(mPort.Open(mAdapter.get(), LxDeviceSerial::Invalid), LxResultCode::NoSerialPort);
    EXPECT_EQ(mPort.Open(nullptr, Serial0), LxResultCode::InvalidArgument);
    EXPECT_FALSE(mPort.IsOpened());
    mDevice->Disconnect();
    EXPECT_FALSE(LxDeviceSerialPort::IsSupported(mAdapter.get(), Serial0));
}

TEST_F(SerialPortTest, CameraWithoutPortsHasNone)
{
    ConnectGrabber(MakeCamera());
    EXPECT_FALSE(LxDeviceSerialPort::IsSupported(mAdapter.get(), Serial0));
    EXPECT_EQ(Features().Get("Uart0BaudRate"), nullptr);
    EXPECT_EQ(Features().Get("BulkSelector"), nullptr);
}

TEST_F(SerialPortTest, EchoAnswersInOrder)
{
    OpenEcho();
    std::string sent;
    for (int i = 0; i < 1000; ++i) {
        const std::string text = "line " + std::to_string(i) + "\r\n";
        ASSERT_TRUE(Write(text).IsOK());
        EXPECT_EQ(mWritten, text.size());
        sent += text;
    }
    EXPECT_EQ(Read(sent.size()), sent);
    EXPECT_EQ(Read(1, 0), "");
    EXPECT_EQ(mReadResult, LxResultCode::SerialTimeout);
    EXPECT_EQ(mReadResult.GetCode(), 30u);
}

TEST_F(SerialPortTest, WritingNothingSucceedsAndSendsNothing)
{
    OpenEcho();
    uint32_t written = 7;
    EXPECT_TRUE(mPort.Write(nullptr, 0, written).IsOK());
    EXPECT_EQ(written, 0u);
    EXPECT_EQ(mPort.Write(nullptr, 1, written), LxResultCode::InvalidArgument);
    uint8_t byte = 0;
    EXPECT_EQ(mPort.Read(&byte, 0, written, 0), LxResultCode::InvalidArgument);
    EXPECT_EQ(mPort.Read(nullptr, 1, written, 0), LxResultCode::InvalidArgument);
    EXPECT_EQ(Read(1, 0), "");
}

TEST_F(SerialPortTest, ReadTimesOutWithItsCode)
{
    OpenEcho();
    const auto start = Clock::now();
    EXPECT_EQ(Read(1, 60), "");
    EXPECT_EQ(mReadResult, LxResultCode::SerialTimeout);
    EXPECT_GE(Clock::now() - start, 60ms);
}

TEST_F(SerialPortTest, OnePortIsOpenOnce)
{
    OpenEcho();
    EXPECT_TRUE(mPort.IsOpened());
    EXPECT_EQ(mPort.Open(mAdapter.get(), Serial0), LxResultCode::AlreadyOpen);
    EXPECT_EQ(mPort.Open(mAdapter.get(), Bulk1), LxResultCode::AlreadyOpen);
    LxDeviceSerialPort other;
    EXPECT_EQ(other.Open(mAdapter.get(), Serial0), LxResultCode::Busy);
    EXPECT_TRUE(other.Open(mAdapter.get(), Bulk1).IsOK());
    EXPECT_TRUE(mPort.Close().IsOK());
    EXPECT_TRUE(mPort.Close().IsOK());
    EXPECT_TRUE(LxDeviceSerialPort().Open(mAdapter.get(), Serial0).IsOK());
    EXPECT_TRUE(mPort.Open(mAdapter.get(), Serial0).IsOK());
}

TEST_F(SerialPortTest, ReaderOfTheDeviceOpensNoPort)
{
    ASSERT_TRUE(LxSimulation::SetDevice(MakeGrabber()).IsOK());
    mDevice = Connect(Find(Camera), LxDeviceAccess::ReadOnly);
    LxDeviceAdapter adapter(mDevice.get());
    EXPECT_TRUE(LxDeviceSerialPort::IsSupported(&adapter, Serial0));
    EXPECT_EQ(mPort.Open(&adapter, Serial0), LxResultCode::AccessDenied);
}

TEST_F(SerialPortTest, BytesFromBeforeAreForgottenWhenThePortOpens)
{
    OpenEcho();
    ASSERT_TRUE(Write("old").IsOK());
    mPort.Close();
    ASSERT_TRUE(mPort.Open(mAdapter.get(), Serial0).IsOK());
    ASSERT_TRUE(Write("new").IsOK());
    EXPECT_EQ(Read(3), "new");
}

TEST_F(SerialPortTest, CloseEndsAReadAndAWriteThatWait)
{
    OpenEcho();
    LxSimulatedSerialConditions stalled;
    stalled.mStalled = true;
    stalled.mCapacity = 16;
    SetConditions(stalled);
    LxResult read;
    LxResult write;
    std::thread reader([&] {
        uint8_t byte = 0;
        uint32_t count = 0;
        read = mPort.Read(&byte, 1, count, 60000);
    });
    std::thread writer([&] { write = Write(std::string(100, 'x')); });
    LxSimulation::SetRecording(true);
    std::this_thread::yield();
    EXPECT_TRUE(mPort.Close().IsOK());
    reader.join();
    writer.join();
    // Either had begun, or found the port closed.
    for (const LxResult &result : {read, write}) {
        EXPECT_TRUE(result == LxResultCode::Aborted || result == LxResultCode::InvalidState)
            << result.GetCodeString().GetAscii();
    }
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
}

TEST_F(SerialPortTest, AWaitingReadIsAborted)
{
    OpenEcho();
    LxSimulation::SetRecording(true);
    LxResult read;
    std::thread reader([&] {
        uint8_t byte = 0;
        uint32_t count = 0;
        read = mPort.Read(&byte, 1, count, 60000);
    });
    ASSERT_TRUE(WaitFor([] { return !LxSimulation::GetCalls("SerialRead").empty(); }));
    mPort.Close();
    reader.join();
    EXPECT_EQ(read, LxResultCode::Aborted);
    EXPECT_EQ(Write("x"), LxResultCode::InvalidState);
    Read(1, 0);
    EXPECT_EQ(mReadResult, LxResultCode::InvalidState);
}

TEST_F(SerialPortTest, AFullPortMakesTheWriterWait)
{
    OpenEcho();
    LxSimulatedSerialConditions conditions;
    conditions.mStalled = true;
    conditions.mCapacity = 100;
    SetConditions(conditions);
    ASSERT_TRUE(Write(std::string(100, 'a')).IsOK());
    std::atomic<bool> done{false};
    std::thread writer([&] {
        EXPECT_TRUE(Write(std::string(500, 'b')).IsOK());
        done = true;
    });
    EXPECT_EQ(Read(1, 30), "");
    EXPECT_FALSE(done);
    conditions.mStalled = false;
    SetConditions(conditions);
    EXPECT_EQ(Read(600), std::string(100, 'a') + std::string(500, 'b'));
    writer.join();
    EXPECT_EQ(mWritten, 500u);
}

TEST_F(SerialPortTest, ALargeTransferLosesNothing)
{
    OpenEcho();
    std::string sent(5000000, ' ');
    for (size_t i = 0; i < sent.size(); ++i) {
        sent[i] = static_cast<char>(i * 2654435761u >> 13);
    }
    std::thread writer([&] { EXPECT_TRUE(Write(sent).IsOK()); });
    EXPECT_TRUE(Read(sent.size()) == sent);
    writer.join();
}

TEST_F(SerialPortTest, PacedBytesTakeTheirTime)
{
    OpenEcho();
    LxSimulatedSerialConditions paced;
    paced.mPaced = true;
    SetConditions(paced);
    ASSERT_TRUE(Features().SetEnumValue("Uart0BaudRate", "Baud9600").IsOK());
    const auto start = Clock::now();
    ASSERT_TRUE(Write(std::string(96, 'p')).IsOK());
    EXPECT_EQ(Read(96), std::string(96, 'p'));
    // 96 bytes of 10 bits at 9600 baud are 100 ms; the echo comes a byte later.
    EXPECT_GE(Clock::now() - start, 99ms);
    ASSERT_TRUE(Features().SetEnumValue("Uart0BaudRate", "Baud921600").IsOK());
    const auto fast = Clock::now();
    ASSERT_TRUE(Write(std::string(9600, 'f')).IsOK());
    EXPECT_EQ(Read(9600), std::string(9600, 'f'));
    EXPECT_LT(Clock::now() - fast, 10s) << "what the first speed would take";
}

TEST_F(SerialPortTest, LoopbackComesBackAndThePeerHearsNothing)
{
    ConnectGrabber();
    const auto peer = std::make_shared<TalkingPeer>();
    SetPeer(Serial0, peer);
    ASSERT_TRUE(mPort.Open(mAdapter.get(), Serial0).IsOK());
    ASSERT_TRUE(Features().SetBooleanValue("Uart0Loopback", true).IsOK());
    ASSERT_TRUE(Write("loop").IsOK());
    EXPECT_EQ(Read(4), "loop");
    EXPECT_EQ(peer->Send("not heard"), 9u);
    EXPECT_EQ(Read(1, 0), "");
    ASSERT_TRUE(Features().SetBooleanValue("Uart0Loopback", false).IsOK());
    ASSERT_TRUE(Write("peer").IsOK());
    EXPECT_TRUE(WaitFor([&] { return peer->GetHeard() == "peer"; })) << peer->GetHeard();
    EXPECT_EQ(peer->Send("heard"), 5u);
    EXPECT_EQ(Read(5), "heard");
}

TEST_F(SerialPortTest, PeerSendsIntoAClosedPortInVain)
{
    ConnectGrabber();
    const auto peer = std::make_shared<TalkingPeer>();
    SetPeer(Serial0, peer);
    EXPECT_FALSE(peer->mLine->IsOpen());
    EXPECT_EQ(peer->Send("x"), 0u);
    ASSERT_TRUE(mPort.Open(mAdapter.get(), Serial0).IsOK());
    EXPECT_TRUE(peer->mLine->IsOpen());
    EXPECT_EQ(peer->Send("y"), 1u);
    EXPECT_EQ(Read(1), "y");
}

TEST_F(SerialPortTest, ScriptAnswersItsRequests)
{
    ConnectGrabber();
    const auto script = std::make_shared<LxSimulatedSerialScript>();
    script->Add("ID?\r", "camera\r\n");
    script->Add("\r", "ERROR\r\n");
    SetPeer(Serial0, script);
    ASSERT_TRUE(mPort.Open(mAdapter.get(), Serial0).IsOK());
    Write("ID");
    EXPECT_EQ(Read(1, 0), "");
    Write("?\r");
    EXPECT_EQ(Read(8), "camera\r\n");
    Write("what\r");
    EXPECT_EQ(Read(7), "ERROR\r\n");
    EXPECT_EQ(script->GetReceived(), LxString("ID?\rwhat\r"));
}

TEST_F(SerialPortTest, BytesAreLostAndDamagedAsAskedFor)
{
    OpenEcho();
    LxSimulatedSerialConditions noisy;
    noisy.mToHost.mLossPeriod = 4;
    SetConditions(noisy);
    Write("abcdefgh");
    EXPECT_EQ(Read(6), "abcefg");
    noisy = {};
    noisy.mToHost.mCorruptionPeriod = 3;
    SetConditions(noisy);
    Write("aaaaaa");
    EXPECT_EQ(Read(6), "aa`aa`");
    noisy = {};
    noisy.mToPeer.mLoseFirst = 2;
    noisy.mToHost.mCorruptFirst = 1;
    SetConditions(noisy);
    Write("xyab");
    EXPECT_EQ(Read(2), "`b");
    Write("cd");
    EXPECT_EQ(Read(2), "cd");
}

TEST_F(SerialPortTest, OtherSpeedsGiveGarbage)
{
    ConnectGrabber();
    const auto peer = std::make_shared<TalkingPeer>();
    peer->mBaudRate = 9600;
    SetPeer(Serial0, peer);
    ASSERT_TRUE(mPort.Open(mAdapter.get(), Serial0).IsOK());
    EXPECT_EQ(peer->mLine->GetBaudRate(), 115200u);
    Write("hi");
    ASSERT_TRUE(WaitFor([&] { return peer->GetHeard().size() == 2; }));
    EXPECT_NE(peer->GetHeard(), "hi");
    peer->Send("ho");
    EXPECT_NE(Read(2), "ho");
    ASSERT_TRUE(Features().SetEnumValue("Uart0BaudRate", "Baud9600").IsOK());
    peer->Send("ho");
    EXPECT_EQ(Read(2), "ho");
}

TEST_F(SerialPortTest, ErrorsComeAsOrdered)
{
    OpenEcho();
    LxSimulatedSerialConditions failing;
    failing.mReadResult = LxResult(LxResultCode::ProtocolError, "Framing error.");
    SetConditions(failing);
    EXPECT_EQ(Read(1, 60000), "");
    EXPECT_EQ(mReadResult, LxResultCode::ProtocolError);
    failing.mReadResult = LxResult();
    failing.mWriteResult = LxResultCode::Timeout;
    SetConditions(failing);
    EXPECT_EQ(Write("x"), LxResultCode::Timeout);
    EXPECT_EQ(mWritten, 0u);
    SetConditions({});
    LxSimulation::QueueResult("SerialRead", LxResultCode::Busy);
    LxSimulation::QueueResult("SerialWrite", LxResultCode::AccessDenied);
    EXPECT_EQ(Write("x"), LxResultCode::AccessDenied);
    EXPECT_TRUE(Write("y").IsOK());
    Read(1);
    EXPECT_EQ(mReadResult, LxResultCode::Busy);
    EXPECT_EQ(Read(1), "y");
    LxSimulation::QueueResult("SerialOpen", LxResultCode::Busy);
    LxDeviceSerialPort other;
    EXPECT_EQ(other.Open(mAdapter.get(), Bulk1), LxResultCode::Busy);
    EXPECT_TRUE(other.Open(mAdapter.get(), Bulk1).IsOK());
}

TEST_F(SerialPortTest, AnErrorEndsAReadThatWaits)
{
    OpenEcho();
    LxSimulation::SetRecording(true);
    std::thread reader([&] { Read(1, 60000); });
    ASSERT_TRUE(WaitFor([] { return !LxSimulation::GetCalls("SerialRead").empty(); }));
    LxSimulatedSerialConditions failing;
    failing.mReadResult = LxResultCode::ProtocolError;
    SetConditions(failing);
    reader.join();
    EXPECT_EQ(mReadResult, LxResultCode::ProtocolError);
}

TEST_F(SerialPortTest, UnplugEndsReadAndWriteAndPlugBringsThePortBack)
{
    OpenEcho();
    LxSimulation::SetRecording(true);
    std::thread reader([&] { Read(1, 60000); });
    ASSERT_TRUE(WaitFor([] { return !LxSimulation::GetCalls("SerialRead").empty(); }));
    ASSERT_TRUE(LxSimulation::SetDevicePresent(Camera, false).IsOK());
    reader.join();
    EXPECT_EQ(mReadResult, LxResultCode::NotConnected);
    EXPECT_EQ(Write("lost"), LxResultCode::NotConnected);
    LxDeviceSerialPort other;
    EXPECT_EQ(other.Open(mAdapter.get(), Bulk1), LxResultCode::NotConnected);
    ASSERT_TRUE(LxSimulation::SetDevicePresent(Camera, true).IsOK());
    ASSERT_TRUE(Write("back").IsOK());
    EXPECT_EQ(Read(4), "back");
}

TEST_F(SerialPortTest, UnpluggedDeviceHasItsDefaultsAgain)
{
    ConnectGrabber();
    ASSERT_TRUE(Features().SetEnumValue("Uart0BaudRate", "Baud9600").IsOK());
    ASSERT_TRUE(LxSimulation::SetDevicePresent(Camera, false).IsOK());
    ASSERT_TRUE(LxSimulation::SetDevicePresent(Camera, true).IsOK());
    LxString rate;
    EXPECT_TRUE(WaitFor([&] {
        return Features().GetEnumValue("Uart0BaudRate", rate).IsOK() && rate == LxString("Baud115200");
    })) << "features hear of it on a thread of the SDK; it is still "
        << rate.GetAscii();
}

TEST_F(SerialPortTest, DisconnectedDeviceClosesItsPorts)
{
    OpenEcho();
    mDevice->Disconnect();
    EXPECT_EQ(Write("x"), LxResultCode::NotConnected);
    Read(1, 60000);
    EXPECT_EQ(mReadResult, LxResultCode::NotConnected);
    mDevice.reset();
    EXPECT_EQ(Write("x"), LxResultCode::NotConnected);
    // Another application can open the port although this one has not closed it.
    mDevice = Connect(Find(Camera));
    LxDeviceAdapter adapter(mDevice.get());
    LxDeviceSerialPort other;
    EXPECT_TRUE(other.Open(&adapter, Serial0).IsOK());
}

TEST_F(SerialPortTest, FeaturesSetEachPort)
{
    ConnectGrabber();
    int64_t count = 0;
    LxGenEnum *uart0 = Features().GetEnum("Uart0BaudRate");
    ASSERT_NE(uart0, nullptr);
    ASSERT_TRUE(uart0->GetEntriesCount(count).IsOK());
    EXPECT_EQ(count, 10);
    LxGenInteger *uart1 = Features().GetInteger("Uart1BaudRate");
    ASSERT_NE(uart1, nullptr);
    int64_t min = 0;
    int64_t max = 0;
    EXPECT_TRUE(uart1->GetMin(min).IsOK() && uart1->GetMax(max).IsOK());
    EXPECT_EQ(min, 1200);
    EXPECT_EQ(max, 921600);
    EXPECT_TRUE(uart1->SetValue(1234).IsOK());
    ASSERT_TRUE(Features().GetEnum("BulkSelector")->GetEntriesCount(count).IsOK());
    EXPECT_EQ(count, 8);
    // Each bulk port has its own.
    ASSERT_TRUE(Features().SetEnumValue("BulkSelector", "Bulk1").IsOK());
    ASSERT_TRUE(Features().SetEnumValue("BulkBaudRate", "Baud9600").IsOK());
    ASSERT_TRUE(Features().SetBooleanValue("BulkLoopback", true).IsOK());
    ASSERT_TRUE(Features().SetEnumValue("BulkSelector", "Bulk0").IsOK());
    LxString rate;
    bool loopback = true;
    EXPECT_TRUE(Features().GetEnumValue("BulkBaudRate", rate).IsOK());
    EXPECT_EQ(rate, LxString("Baud115200"));
    EXPECT_TRUE(Features().GetBooleanValue("BulkLoopback", loopback).IsOK());
    EXPECT_FALSE(loopback);
    ASSERT_TRUE(mPort.Open(mAdapter.get(), Bulk1).IsOK());
    ASSERT_TRUE(Write("round").IsOK());
    EXPECT_EQ(Read(5), "round");
}

TEST_F(SerialPortTest, OnlyThePortsThatAreThereHaveFeatures)
{
    LxSimulatedDevice grabber = MakeGrabber(0b101010);  // Serial1, Bulk1, Bulk3
    grabber.mBulkSpeed = LxSimulatedSpeed::ClockDivider;
    grabber.mUart1Speed = LxSimulatedSpeed::None;
    grabber.mSerialLoopback = false;
    ConnectGrabber(grabber);
    for (const char *name : {"Uart0BaudRate", "Uart1BaudRate", "BulkBaudRate", "Uart1Loopback", "BulkLoopback"}) {
        EXPECT_EQ(Features().Get(name), nullptr) << name;
    }
    LxString selected;
    ASSERT_TRUE(Features().GetEnumValue("BulkSelector", selected).IsOK());
    EXPECT_EQ(selected, LxString("Bulk1"));
    EXPECT_FALSE(Features().SetEnumValue("BulkSelector", "Bulk0").IsOK());
    const auto peer = std::make_shared<TalkingPeer>();
    SetPeer(LxDeviceSerial::Bulk3, peer);
    ASSERT_TRUE(Features().SetEnumValue("BulkSelector", "Bulk3").IsOK());
    ASSERT_TRUE(Features().SetIntegerValue("BulkSystemClockDivider", 10000).IsOK());
    EXPECT_EQ(peer->mLine->GetBaudRate(), 10000u);
    EXPECT_FALSE(Features().SetIntegerValue("BulkSystemClockDivider", 5).IsOK());
}

TEST_F(SerialPortTest, RefusedSettingsChangeNothing)
{
    ConnectGrabber();
    const uint8_t wrong[4] = {0, 0, 0, 77};
    EXPECT_EQ(mDevice->WriteMemory(0xC040, wrong, 4), LxResultCode::InvalidParameter);
    uint8_t bytes[4] = {};
    ASSERT_TRUE(mDevice->ReadMemory(0xC040, bytes, 4).IsOK());
    EXPECT_EQ(bytes[1] << 16 | bytes[2] << 8 | bytes[3], 115200);
}

TEST_F(SerialPortTest, AGrabberAlsoHasPictures)
{
    ConnectGrabber();
    int64_t width = 0;
    EXPECT_TRUE(Features().GetIntegerValue("Width", width).IsOK());
    EXPECT_EQ(width, 1280);
    LxString format;
    EXPECT_TRUE(Features().GetEnumValue("PixelFormat", format).IsOK());
    EXPECT_EQ(format, LxString("Mono8"));
}

TEST_F(SerialPortTest, UnknownPortsAndDevicesAreRefused)
{
    EXPECT_EQ(LxSimulation::SetSerialPeer("nothing", Serial0, nullptr), LxResultCode::NotFound);
    ConnectGrabber();
    EXPECT_EQ(LxSimulation::SetSerialPeer(Camera, LxDeviceSerial::Invalid, nullptr), LxResultCode::InvalidArgument);
    EXPECT_EQ(LxSimulation::SetSerialConditions(Camera, static_cast<LxDeviceSerial>(10), {}),
              LxResultCode::InvalidArgument);
    LxSimulatedSerialConditions conditions;
    conditions.mCapacity = 5;
    SetConditions(conditions, Bulk1);
    LxSimulatedSerialConditions got;
    EXPECT_TRUE(LxSimulation::GetSerialConditions(Camera, Bulk1, got).IsOK());
    EXPECT_EQ(got.mCapacity, 5u);
}

TEST_F(SerialPortTest, DefaultHostHasAGrabber)
{
    LxSimulation::Clear();
    LxSimulation::AddDefaultHost();
    mDevice = Connect(Find("02:00:00:00:01:05", "sim0"));
    ASSERT_NE(mDevice, nullptr);
    LxDeviceAdapter adapter(mDevice.get());
    ASSERT_TRUE(mPort.Open(&adapter, LxDeviceSerial::Serial1).IsOK());
    Write("ID?\r");
    EXPECT_EQ(Read(31), "LxGUI Simulated Serial Camera\r\n");
    mPort.Close();
    ASSERT_TRUE(mPort.Open(&adapter, LxDeviceSerial::Bulk1).IsOK());
    EXPECT_FALSE(LxDeviceSerialPort::IsSupported(&adapter, LxDeviceSerial::Bulk4));
    Write("echo");
    EXPECT_EQ(Read(4), "echo");
}

TEST_F(SerialPortTest, ReadersWritersSettingsAndUnplugTogether)
{
    OpenEcho();
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    threads.emplace_back([&] {
        uint8_t bytes[64];
        uint32_t count = 0;
        while (!stop) {
            mPort.Read(bytes, sizeof(bytes), count, 1);
        }
    });
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([&] {
            const uint8_t bytes[8] = {};
            uint32_t count = 0;
            while (!stop) {
                mPort.Write(bytes, sizeof(bytes), count);
                mPort.IsOpened();
            }
        });
    }
    for (int i = 0; i < 40; ++i) {
        LxSimulatedSerialConditions conditions;
        conditions.mCapacity = 64 + i;
        conditions.mToHost.mLossPeriod = static_cast<uint32_t>(i % 3);
        SetConditions(conditions);
        Features().SetBooleanValue("Uart0Loopback", i % 2 == 0);
        LxSimulation::SetDevicePresent(Camera, i % 5 != 0);
        if (i % 7 == 0) {
            mPort.Close();
            mPort.Open(mAdapter.get(), Serial0);
        }
    }
    stop = true;
    mPort.Close();
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
}
