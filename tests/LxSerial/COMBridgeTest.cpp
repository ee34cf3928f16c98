// Bridges between COM ports of the host (pseudo terminals) and serial ports of a simulated frame grabber.

#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <vector>

#include "LxSerial/ComPort.h"
#include "LxSerial/LxSerialBridge.h"
#include "PseudoTerminal.h"
#include "SimulatedGrabber.h"
#include "WaitFor.h"

using namespace std::chrono_literals;

namespace
{

/// The rate of a speed constant of termios; 0 for others, as BOTHER.
speed_t GetSpeed(int aDescriptor)
{
    termios settings = {};
    tcgetattr(aDescriptor, &settings);
    return cfgetospeed(&settings);
}

class COMBridgeTest : public testing::Test
{
protected:
    COMBridgeTest() { SimulatedGrabber::SetPeer(Serial0, std::make_shared<LxSimulatedSerialEcho>()); }

    LxResult Start(const LxSerialPortConfiguration &aConfiguration = {}, LxDeviceSerial aPort = Serial0)
    {
        return mBridge.Start(mTerminal.GetName(), aConfiguration, mGrabber.GetAdapter(), aPort);
    }

    SimulatedGrabber mGrabber;
    PseudoTerminal mTerminal;
    LxSerialBridge mBridge;
};

}  // namespace

TEST_F(COMBridgeTest, CarriesBytesBothWaysAndCountsThem)
{
    ASSERT_TRUE(Start().IsOK());
    std::string sent;
    for (int i = 0; i < 256; ++i) {
        sent += static_cast<char>(i);  // every byte, the ones that terminals treat specially too
    }
    mTerminal.Write(sent);
    EXPECT_EQ(mTerminal.Read(256), sent);
    // the device may have answered before the bridge's thread has added up what it wrote
    EXPECT_TRUE(WaitFor([&] { return mBridge.GetBytesSentToDevice() == 256; }));
    EXPECT_EQ(mBridge.GetBytesReceivedFromDevice(), 256u);
    mBridge.ResetStatistics();
    EXPECT_EQ(mBridge.GetBytesSentToDevice(), 0u);
    EXPECT_EQ(mBridge.GetBytesReceivedFromDevice(), 0u);
    mTerminal.Write("ab");
    EXPECT_EQ(mTerminal.Read(2), "ab");
    EXPECT_TRUE(WaitFor([&] { return mBridge.GetBytesSentToDevice() == 2; }));
}

TEST_F(COMBridgeTest, LargeTransfersLoseNothing)
{
    ASSERT_TRUE(Start().IsOK());
    std::string sent(1000000, ' ');
    for (size_t i = 0; i < sent.size(); ++i) {
        sent[i] = static_cast<char>(i * 2654435761u >> 13);
    }
    std::thread writer([&] { mTerminal.Write(sent); });
    EXPECT_TRUE(mTerminal.Read(sent.size()) == sent);
    writer.join();
}

TEST_F(COMBridgeTest, NamesAndStateFollowTheBridge)
{
    EXPECT_EQ(mBridge.GetSerialPort(), LxString());
    EXPECT_EQ(mBridge.GetName(), LxString());
    EXPECT_EQ(mBridge.GetSupportedBaudRateCount(), 0u);
    EXPECT_EQ(mBridge.GetSupportedBaudRate(0), 0u);
    EXPECT_EQ(mBridge.GetBaudRate(), 0u);
    EXPECT_EQ(mBridge.GetHardCodedBaudRate(), 0u);
    EXPECT_EQ(mBridge.GetSerialPortConfiguration().mBaudRate, 9600u);
    EXPECT_TRUE(mBridge.Stop().IsOK()) << "also when it was never started";
    ASSERT_TRUE(Start().IsOK());
    EXPECT_EQ(mBridge.GetSerialPort(), LxString(mTerminal.GetName()));
    EXPECT_EQ(mBridge.GetSupportedBaudRateCount(), 10u);
    EXPECT_EQ(mBridge.GetSupportedBaudRate(1), 14400u);
    EXPECT_EQ(mBridge.GetBaudRate(), 9600u) << "the device's port has been set";
    EXPECT_EQ(mBridge.SetHardCodedBaudRate(9600), LxResultCode::InvalidState);
    EXPECT_EQ(Start(), LxResultCode::AlreadyOpen);
    EXPECT_EQ(mBridge.Start("id", mGrabber.GetAdapter(), Serial0), LxResultCode::AlreadyOpen);
    EXPECT_EQ(mBridge.GetSerialPort(), LxString(mTerminal.GetName()));
    EXPECT_TRUE(mBridge.Stop().IsOK());
    EXPECT_EQ(mBridge.GetSerialPort(), LxString());
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
    ASSERT_TRUE(Start().IsOK()) << "again";
    mTerminal.Write("x");
    EXPECT_EQ(mTerminal.Read(1), "x");
}

TEST_F(COMBridgeTest, ConfigurationReachesTheTerminal)
{
    LxSerialPortConfiguration configuration;
    configuration.mBaudRate = 57600;
    configuration.mStopBits = 2;
    ASSERT_TRUE(Start(configuration).IsOK());
    EXPECT_EQ(GetSpeed(mTerminal.GetSlave()), speed_t(B57600));
    termios settings = {};
    tcgetattr(mTerminal.GetSlave(), &settings);
    EXPECT_NE(settings.c_cflag & CSTOPB, 0u);
    EXPECT_EQ(settings.c_lflag, 0u) << "raw";
    for (const auto &[rate, constant] : {std::pair<uint32_t, speed_t>{1200, B1200},
                                         {9600, B9600},
                                         {19200, B19200},
                                         {38400, B38400},
                                         {115200, B115200},
                                         {230400, B230400},
                                         {460800, B460800},
                                         {921600, B921600},
                                         {4000000, B4000000}})
    {
        configuration.mBaudRate = rate;
        configuration.mStopBits = 1;
        EXPECT_TRUE(mBridge.SetSerialPortConfiguration(configuration).IsOK()) << rate;
        EXPECT_EQ(GetSpeed(mTerminal.GetSlave()), constant) << rate;
        EXPECT_EQ(mBridge.GetSerialPortConfiguration().mBaudRate, rate);
    }
    // Rates without a constant.
    for (const uint32_t rate : {14400u, 28800u, 12345u}) {
        configuration.mBaudRate = rate;
        EXPECT_TRUE(mBridge.SetSerialPortConfiguration(configuration).IsOK()) << rate;
    }
    tcgetattr(mTerminal.GetSlave(), &settings);
    EXPECT_EQ(settings.c_cflag & CSTOPB, 0u);
    mTerminal.Write("x");
    EXPECT_EQ(mTerminal.Read(1), "x");
}

TEST_F(COMBridgeTest, BaudRateOfTheDeviceFollowsTheCOMPort)
{
    LxSerialPortConfiguration configuration;
    configuration.mBaudRate = 57600;
    ASSERT_TRUE(Start(configuration).IsOK());
    LxString rate;
    ASSERT_TRUE(mGrabber.GetFeatures().GetEnumValue("Uart0BaudRate", rate).IsOK());
    EXPECT_EQ(rate, LxString("Baud57600"));
    configuration.mBaudRate = 1200;  // not one of the device's
    ASSERT_TRUE(mBridge.SetSerialPortConfiguration(configuration).IsOK());
    EXPECT_EQ(mBridge.GetBaudRate(), 57600u) << "the device keeps its own";
    EXPECT_EQ(mBridge.GetSerialPortConfiguration().mBaudRate, 1200u);
}

TEST_F(COMBridgeTest, ControlFlagsOfEveryConfiguration)
{
    LxSerialPortConfiguration configuration;
    EXPECT_EQ(LxDetail::GetControlFlags(configuration), uint32_t(CS8));
    configuration.mByteSize = 7;
    configuration.mParity = LxSerialParity::Even;
    EXPECT_EQ(LxDetail::GetControlFlags(configuration), uint32_t(CS7 | PARENB));
    configuration.mParity = LxSerialParity::Odd;
    configuration.mStopBits = 2;
    EXPECT_EQ(LxDetail::GetControlFlags(configuration), uint32_t(CS7 | PARENB | PARODD | CSTOPB));
    configuration.mByteSize = 5;
    EXPECT_EQ(LxDetail::GetControlFlags(configuration), uint32_t(CS5 | PARENB | PARODD | CSTOPB));
    configuration.mByteSize = 6;
    configuration.mParity = LxSerialParity::None;
    EXPECT_EQ(LxDetail::GetControlFlags(configuration), uint32_t(CS6 | CSTOPB));
}

TEST_F(COMBridgeTest, ValidConfigurationsAreThoseInRange)
{
    LxSerialPortConfiguration configuration;
    EXPECT_TRUE(configuration.IsValid());
    const auto valid = [](auto aChange) {
        LxSerialPortConfiguration changed;
        aChange(changed);
        return changed.IsValid();
    };
    EXPECT_FALSE(valid([](auto &aValues) { aValues.mBaudRate = 0; }));
    EXPECT_FALSE(valid([](auto &aValues) { aValues.mParity = static_cast<LxSerialParity>(3); }));
    EXPECT_FALSE(valid([](auto &aValues) { aValues.mByteSize = 4; }));
    EXPECT_FALSE(valid([](auto &aValues) { aValues.mByteSize = 9; }));
    EXPECT_FALSE(valid([](auto &aValues) { aValues.mStopBits = 0; }));
    EXPECT_FALSE(valid([](auto &aValues) { aValues.mStopBits = 3; }));
    EXPECT_TRUE(valid([](auto &aValues) { aValues.mByteSize = 5; }));
    EXPECT_TRUE(valid([](auto &aValues) { aValues.mStopBits = 2; }));
}

TEST_F(COMBridgeTest, WrongConfigurationsChangeNothing)
{
    LxSerialPortConfiguration wrong;
    wrong.mStopBits = 7;
    EXPECT_EQ(Start(wrong), LxResultCode::InvalidArgument);
    EXPECT_EQ(mBridge.SetSerialPortConfiguration({}), LxResultCode::InvalidState);
    LxSerialPortConfiguration good;
    good.mBaudRate = 19200;
    ASSERT_TRUE(Start(good).IsOK());
    EXPECT_EQ(mBridge.SetSerialPortConfiguration(wrong), LxResultCode::InvalidArgument);
    EXPECT_EQ(mBridge.GetSerialPortConfiguration().mBaudRate, 19200u);
    EXPECT_EQ(GetSpeed(mTerminal.GetSlave()), speed_t(B19200));
}

TEST_F(COMBridgeTest, FormerSettingsComeBack)
{
    termios before = {};
    tcgetattr(mTerminal.GetSlave(), &before);
    cfsetspeed(&before, B2400);
    before.c_lflag |= ICANON;
    tcsetattr(mTerminal.GetSlave(), TCSANOW, &before);
    ASSERT_TRUE(Start().IsOK());
    EXPECT_EQ(GetSpeed(mTerminal.GetSlave()), speed_t(B9600));
    mBridge.Stop();
    termios after = {};
    tcgetattr(mTerminal.GetSlave(), &after);
    EXPECT_EQ(cfgetospeed(&after), speed_t(B2400));
    EXPECT_NE(after.c_lflag & ICANON, 0u);
}

TEST_F(COMBridgeTest, COMPortsThatCannotBeOpened)
{
    const auto start = [&](const std::string &aName) {
        const LxResult result = mBridge.Start(aName, {}, mGrabber.GetAdapter(), Serial0);
        EXPECT_FALSE(result.GetDescription().IsEmpty()) << aName;
        EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u) << aName;
        return result;
    };
    EXPECT_EQ(start(""), LxResultCode::NotFound);
    EXPECT_EQ(start("COM4711"), LxResultCode::NotFound);
    EXPECT_EQ(start("/tmp"), LxResultCode::NotFound) << "a directory";
    EXPECT_EQ(start("null"), LxResultCode::NotFound) << "no tty";
    EXPECT_EQ(start(std::string(5000, 'x')), LxResultCode::NotFound);
    char folder[] = "/tmp/lxbridgeXXXXXX";
    ASSERT_NE(mkdtemp(folder), nullptr);
    const std::string pipe = std::string(folder) + "/pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(start(pipe), LxResultCode::NotFound);
    std::filesystem::remove_all(folder);
    EXPECT_TRUE(Start().IsOK());
}

TEST_F(COMBridgeTest, COMPortThatIsInUseIsBusy)
{
    ASSERT_EQ(flock(mTerminal.GetSlave(), LOCK_EX | LOCK_NB), 0);
    const LxResult result = Start();
    EXPECT_EQ(result, LxResultCode::Busy);
    EXPECT_NE(result.GetDescription().GetString().find(mTerminal.GetName()), std::string::npos);
    ASSERT_EQ(flock(mTerminal.GetSlave(), LOCK_UN), 0);
    ASSERT_TRUE(Start().IsOK());
    LxSerialBridge other;
    EXPECT_EQ(other.Start(mTerminal.GetName(), {}, mGrabber.GetAdapter(), LxDeviceSerial::Bulk0), LxResultCode::Busy);
    PseudoTerminal second;
    EXPECT_EQ(other.Start(second.GetName(), {}, mGrabber.GetAdapter(), Serial0), LxResultCode::Busy)
        << "the device's port";
    EXPECT_TRUE(other.Start(second.GetName(), {}, mGrabber.GetAdapter(), LxDeviceSerial::Bulk0).IsOK());
}

TEST_F(COMBridgeTest, ATtyMayHaveACOMName)
{
    LxSerialBridge::SetCOMPortPath("COM3", mTerminal.GetName());
    ASSERT_TRUE(mBridge.Start("COM3", {}, mGrabber.GetAdapter(), Serial0).IsOK());
    EXPECT_EQ(mBridge.GetSerialPort(), LxString("COM3"));
    EXPECT_EQ(mBridge.GetName(), LxString()) << "only what is offered has a name";
    mTerminal.Write("x");
    EXPECT_EQ(mTerminal.Read(1), "x");
    mBridge.Stop();
    LxSerialBridge::SetCOMPortPath("COM3", "");
    EXPECT_EQ(mBridge.Start("COM3", {}, mGrabber.GetAdapter(), Serial0), LxResultCode::NotFound);
}

TEST_F(COMBridgeTest, WrongDevicesAndPorts)
{
    EXPECT_EQ(mBridge.Start(mTerminal.GetName(), {}, nullptr, Serial0), LxResultCode::InvalidArgument);
    LxDeviceAdapter nothing(nullptr);
    EXPECT_EQ(mBridge.Start(mTerminal.GetName(), {}, &nothing, Serial0), LxResultCode::NoSerialPort);
    EXPECT_EQ(Start({}, LxDeviceSerial::Invalid), LxResultCode::NoSerialPort);
    EXPECT_TRUE(Start().IsOK());
}

TEST_F(COMBridgeTest, UnpluggedCOMPortEndsTheLinkOnly)
{
    ASSERT_TRUE(Start().IsOK());
    mTerminal.Unplug();
    EXPECT_TRUE(WaitFor([&] { return mBridge.GetSerialPort().IsEmpty(); }));
    EXPECT_EQ(mBridge.SetSerialPortConfiguration({}), LxResultCode::InvalidState);
    EXPECT_TRUE(mBridge.Stop().IsOK());
    PseudoTerminal other;
    ASSERT_TRUE(mBridge.Start(other.GetName(), {}, mGrabber.GetAdapter(), Serial0).IsOK());
    other.Write("x");
    EXPECT_EQ(other.Read(1), "x");
}

TEST_F(COMBridgeTest, GoesOnWhenTheDeviceIsBack)
{
    ASSERT_TRUE(Start().IsOK());
    LxSimulation::SetRecording(true);
    LxSimulation::SetDevicePresent(SimulatedGrabber::ID, false);
    mTerminal.Write("lost");
    ASSERT_TRUE(WaitFor([] { return LxSimulation::GetCalls("SerialWrite").size() > 0; }));
    EXPECT_EQ(mTerminal.Read(1, 50), "");
    LxSimulation::SetDevicePresent(SimulatedGrabber::ID, true);
    // What was sent just then may be lost too.
    EXPECT_TRUE(WaitFor([&] {
        mTerminal.Write("back");
        return mTerminal.Read(4, 200) == "back";
    }));
}

TEST_F(COMBridgeTest, ReadErrorsAreOvercome)
{
    ASSERT_TRUE(Start().IsOK());
    LxSimulatedSerialConditions failing;
    failing.mReadResult = LxResultCode::ProtocolError;
    LxSimulation::SetRecording(true);
    SimulatedGrabber::SetConditions(Serial0, failing);
    mTerminal.Write("abc");
    ASSERT_TRUE(WaitFor([] { return LxSimulation::GetCalls("SerialRead").size() >= 2; })) << "it goes on reading";
    EXPECT_EQ(mTerminal.Read(1, 50), "");
    SimulatedGrabber::SetConditions(Serial0, {});
    EXPECT_EQ(mTerminal.Read(3), "abc");
}

TEST_F(COMBridgeTest, StopEndsTransfersThatAreStuck)
{
    // To the device, which takes nothing, and to a terminal that nobody reads.
    LxSimulatedSerialConditions stalled;
    stalled.mStalled = true;
    stalled.mCapacity = 10;
    SimulatedGrabber::SetConditions(Serial0, stalled);
    ASSERT_TRUE(Start().IsOK());
    mTerminal.Write(std::string(1000, 'x'));
    PseudoTerminal other;
    LxSerialBridge flooded;
    const auto peer = std::make_shared<LxSimulatedSerialScript>();
    peer->Add("go", std::string(1000000, 'y'));
    SimulatedGrabber::SetPeer(LxDeviceSerial::Bulk0, peer);
    ASSERT_TRUE(flooded.Start(other.GetName(), {}, mGrabber.GetAdapter(), LxDeviceSerial::Bulk0).IsOK());
    other.Write("go");
    EXPECT_TRUE(WaitFor([&] { return flooded.GetBytesReceivedFromDevice() > 1000; }));
    const auto start = std::chrono::steady_clock::now();
    mBridge.Stop();
    flooded.Stop();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 20s) << "what is stuck would be so for ever";
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
}

TEST_F(COMBridgeTest, IsUsedByManyThreadsAtOnce)
{
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    threads.emplace_back([&] {
        while (!stop) {
            mBridge.GetSerialPort();
            mBridge.GetBaudRate();
            mBridge.GetSerialPortConfiguration();
            mBridge.GetBytesReceivedFromDevice();
            mBridge.ResetStatistics();
        }
    });
    threads.emplace_back([&] {
        while (!stop) {
            mTerminal.Write("0123456789");
            mTerminal.Read(10, 1);
        }
    });
    for (int i = 0; i < 30; ++i) {
        LxSerialPortConfiguration configuration;
        configuration.mBaudRate = i % 2 == 0 ? 9600 : 115200;
        if (i % 3 == 0) {
            mBridge.Stop();
        }
        Start(configuration);
        mBridge.SetSerialPortConfiguration(configuration);
        LxSimulation::SetDevicePresent(SimulatedGrabber::ID, i % 4 != 0);
    }
    stop = true;
    for (std::thread &thread : threads) {
        thread.join();
    }
    mBridge.Stop();
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
}
