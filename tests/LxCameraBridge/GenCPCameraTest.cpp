// The GenCP client against the camera behind a simulated serial port.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <future>

#include "LxCameraBridge/GenCPClient.h"
#include "LxCameraBridge/GenCPManifest.h"
#include "LxCameraBridge/WatchedPort.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "LxSimulation/LxSimulatedGenCPCamera.h"
#include "NodeMap/NodeMap.h"
#include "SimulatedGrabber.h"
#include "WaitFor.h"

using namespace LxDetail;
using namespace std::chrono_literals;

namespace
{

constexpr uint64_t WidthAddress = 0x20000;

class GenCPCameraTest : public testing::Test
{
protected:
    void Open(const LxSimulatedGenCPValues &aValues = {})
    {
        mCamera = std::make_shared<LxSimulatedGenCPCamera>(aValues);
        SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0, mCamera);
        ASSERT_TRUE(mPort->Open(mGrabber.GetAdapter(), LxDeviceSerial::Serial0).IsOK());
        mClient = std::make_shared<GenCPClient>(mPort);
        const LxResult result = mClient->Open();
        ASSERT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
    }
    LxResult ReadWidth(uint32_t &aWidth)
    {
        uint8_t bytes[4] = {};
        const LxResult result = mClient->Read(WidthAddress, bytes, sizeof(bytes));
        aWidth = GenCP::Get32(bytes);
        return result;
    }
    LxResult ReadXML(std::string &aXML)
    {
        std::vector<GenCPFile> files;
        const LxResult result = ReadGenCPManifest(*mClient, files);
        return result.IsOK() ? ReadGenCPFile(*mClient, files.front(), aXML) : result;
    }

    SimulatedGrabber mGrabber;
    std::shared_ptr<LxSimulatedGenCPCamera> mCamera;
    std::shared_ptr<Traffic> mTraffic = std::make_shared<Traffic>();
    std::shared_ptr<CountedPort> mPort = std::make_shared<CountedPort>(mTraffic);
    std::shared_ptr<GenCPClient> mClient;
};

}  // namespace

TEST_F(GenCPCameraTest, RegistersAreReadAndWrittenAndEveryByteIsCounted)
{
    Open();
    mTraffic->mSent = 0;
    mTraffic->mReceived = 0;
    uint32_t width = 0;
    ASSERT_TRUE(ReadWidth(width).IsOK());
    EXPECT_EQ(width, 1024u);
    EXPECT_EQ(mTraffic->mSent, 28u);
    EXPECT_EQ(mTraffic->mReceived, 20u);
    const uint8_t bytes[] = {0, 0, 2, 0x80};
    ASSERT_TRUE(mClient->Write(WidthAddress, bytes, sizeof(bytes)).IsOK());
    EXPECT_EQ(mTraffic->mSent, 56u);
    EXPECT_EQ(mTraffic->mReceived, 36u);
    ASSERT_TRUE(ReadWidth(width).IsOK());
    EXPECT_EQ(width, 640u);
}

TEST_F(GenCPCameraTest, FirstCommandIsTheReadOfRegisterZeroWithRequestIDZero)
{
    Open();
    EXPECT_EQ(mCamera->GetTrace().GetString().substr(0, 86),
              "> 01 00 B7 F3 B7 EF 00 00 40 00 08 00 00 0C 00 00 00 00 00 00 00 00 00 00 00 00 00 04\n");
}

TEST_F(GenCPCameraTest, ErrorsOfTheCameraComeBack)
{
    Open();
    uint8_t bytes[4] = {};
    EXPECT_EQ(mClient->Read(0x9999, bytes, sizeof(bytes)), LxResultCode::InvalidAddress);
    EXPECT_EQ(mClient->Write(GenCP::RegModelName, bytes, sizeof(bytes)), LxResultCode::WriteProtected);
    EXPECT_EQ(mClient->Write(0x10004, bytes, sizeof(bytes)), LxResultCode::InvalidParameter);
}

TEST_F(GenCPCameraTest, XMLIsReadZippedAndPlain)
{
    Open();
    std::string zipped;
    ASSERT_TRUE(ReadXML(zipped).IsOK());
    mPort->Close();
    LxSimulatedGenCPValues values;
    values.mZipped = false;
    Open(values);
    std::string plain;
    ASSERT_TRUE(ReadXML(plain).IsOK());
    EXPECT_EQ(zipped, plain);
    EXPECT_NE(plain.find("RegisterDescription"), std::string::npos);
}

TEST_F(GenCPCameraTest, XMLWithWrongChecksumIsRefused)
{
    LxSimulatedGenCPValues values;
    values.mWrongSHA1 = true;
    Open(values);
    std::string xml;
    const LxResult result = ReadXML(xml);
    EXPECT_EQ(result, LxResultCode::GenICamError);
    EXPECT_NE(result.GetDescription().GetString().find("SHA-1"), std::string::npos);
}

TEST_F(GenCPCameraTest, DamagedAndLostAcknowledgesAreAskedForAgainWithoutExecutingTwice)
{
    Open();
    const uint64_t executed = mCamera->GetExecutionCount();
    const uint64_t heard = mCamera->GetCommandCount();
    LxSimulatedGenCPFaults faults;
    faults.mCorrupt = 2;
    faults.mLose = 1;
    mCamera->SetFaults(faults);
    const uint8_t bytes[] = {0, 0, 0, 1};
    ASSERT_TRUE(mClient->Write(0x20018, bytes, sizeof(bytes)).IsOK());  // reset: counted by the camera
    EXPECT_EQ(mCamera->GetExecutionCount(), executed + 1);
    EXPECT_EQ(mCamera->GetCommandCount(), heard + 3);
    EXPECT_NE(mCamera->GetTrace().GetString().find(" C0 00 08 02 "), std::string::npos) << "marked as resent";
}

TEST_F(GenCPCameraTest, GivesUpAfterThreeRetries)
{
    Open();
    const uint64_t heard = mCamera->GetCommandCount();
    LxSimulatedGenCPFaults faults;
    faults.mCorrupt = 4;
    mCamera->SetFaults(faults);
    uint32_t width = 0;
    EXPECT_EQ(ReadWidth(width), LxResultCode::ProtocolError);
    EXPECT_EQ(mCamera->GetCommandCount(), heard + 4);
    EXPECT_TRUE(ReadWidth(width).IsOK());
}

TEST_F(GenCPCameraTest, LateAcknowledgeOfAnEarlierCommandIsNotTakenForTheNextOne)
{
    Open();
    LxSimulatedGenCPFaults faults;
    faults.mDelay = 500;
    mCamera->SetFaults(faults);
    uint32_t width = 0;
    ASSERT_TRUE(ReadWidth(width).IsOK()) << "the acknowledge of the first attempt comes during the second";
    EXPECT_EQ(width, 1024u);
    mCamera->SetFaults({});
    uint8_t bytes[4] = {};
    ASSERT_TRUE(mClient->Read(0x20004, bytes, sizeof(bytes)).IsOK());
    EXPECT_EQ(GenCP::Get32(bytes), 768u);
}

TEST_F(GenCPCameraTest, WhoStoodStillHasNotMissedTheAnswer)
{
    Open();
    LxSimulatedGenCPFaults faults;
    faults.mDelay = 300;
    mCamera->SetFaults(faults);
    const uint64_t heard = mCamera->GetCommandCount();
    auto read = std::async(std::launch::async, [&] {
        uint32_t width = 0;
        return ReadWidth(width);
    });
    EXPECT_TRUE(WaitFor([&] { return mCamera->GetCommandCount() > heard; }));
    const pid_t other = fork();
    if (other == 0) {
        kill(getppid(), SIGSTOP);
        usleep(600000);  // longer than an answer may take
        kill(getppid(), SIGCONT);
        _exit(0);
    }
    waitpid(other, nullptr, 0);
    EXPECT_TRUE(read.get().IsOK());
    EXPECT_EQ(mCamera->GetCommandCount(), heard + 1) << "nothing was sent twice";
}

TEST_F(GenCPCameraTest, PendingAcknowledgesOfTwoSecondsAreWaitedFor)
{
    Open();
    const uint64_t heard = mCamera->GetCommandCount();
    LxSimulatedGenCPFaults faults;
    faults.mPending = 2000;
    mCamera->SetFaults(faults);
    uint32_t width = 0;
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(ReadWidth(width).IsOK());
    EXPECT_GE(std::chrono::steady_clock::now() - start, 2s);
    EXPECT_EQ(width, 1024u);
    EXPECT_EQ(mCamera->GetCommandCount(), heard + 1) << "nothing was sent twice";
}

TEST_F(GenCPCameraTest, UnpluggedInTheMiddleOfTheXMLIsSaid)
{
    LxSimulatedGenCPValues values;
    values.mZipped = false;
    Open(values);
    LxSimulatedGenCPFaults faults;
    faults.mUnplugAfter = 5;
    mCamera->SetFaults(faults);
    std::string xml;
    const LxResult result = ReadXML(xml);
    EXPECT_EQ(result, LxResultCode::Timeout);
    EXPECT_EQ(result.GetDescription().GetString(), "The camera's XML could not be read. The camera does not answer.");
}

TEST_F(GenCPCameraTest, NothingAtThePortIsSaid)
{
    SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0, nullptr);
    ASSERT_TRUE(mPort->Open(mGrabber.GetAdapter(), LxDeviceSerial::Serial0).IsOK());
    GenCPClient client(mPort);
    const LxResult result = client.Open();
    EXPECT_EQ(result, LxResultCode::Timeout);
    EXPECT_NE(result.GetDescription().GetString().find("GenCP"), std::string::npos);
}

TEST_F(GenCPCameraTest, EchoIsNoCamera)
{
    SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0, std::make_shared<LxSimulatedSerialEcho>());
    ASSERT_TRUE(mPort->Open(mGrabber.GetAdapter(), LxDeviceSerial::Serial0).IsOK());
    GenCPClient client(mPort);
    EXPECT_EQ(client.Open(), LxResultCode::Timeout);
}

TEST_F(GenCPCameraTest, ClosingThePortEndsAReadThatWaits)
{
    Open();
    mCamera->SetPlugged(false);
    LxSimulation::SetRecording(true);
    auto read = std::async(std::launch::async, [&] {
        uint32_t width = 0;
        return ReadWidth(width);
    });
    ASSERT_TRUE(WaitFor([] { return LxSimulation::GetCalls("SerialRead").size() > 0; }));
    mPort->Close();
    const LxResult result = read.get();
    EXPECT_TRUE(result == LxResultCode::Aborted || result == LxResultCode::InvalidState) << result.GetCode();
}

TEST_F(GenCPCameraTest, SpeedIsSwitchedAndFallsBackUnlessConfirmed)
{
    LxSimulatedGenCPValues values;
    values.mOwnSpeed = true;
    ASSERT_TRUE(mGrabber.GetFeatures().SetEnumValue("Uart0BaudRate", "Baud9600").IsOK());
    Open(values);
    const uint8_t bit[] = {0, 0, 0, 0x10};  // 115200 baud
    // The camera goes back when the confirmation takes a quarter of a second, as on a busy machine.
    ASSERT_TRUE(WaitFor([&] {
        return mGrabber.GetFeatures().SetEnumValue("Uart0BaudRate", "Baud9600").IsOK() &&
               mClient->Write(0x10004, bit, sizeof(bit)).IsOK() &&
               mGrabber.GetFeatures().SetEnumValue("Uart0BaudRate", "Baud115200").IsOK() &&
               mClient->Write(0x10004, bit, sizeof(bit)).IsOK();
    }));
    EXPECT_EQ(mCamera->GetBaudRate(), 115200u);
    const uint32_t fallbacks = mCamera->GetSpeedFallbackCount();
    const uint8_t unconfirmed[] = {0, 0, 0, 0x20};
    ASSERT_TRUE(mClient->Write(0x10004, unconfirmed, sizeof(unconfirmed)).IsOK());
    EXPECT_TRUE(WaitFor([&] { return mCamera->GetSpeedFallbackCount() == fallbacks + 1; }));
    EXPECT_EQ(mCamera->GetBaudRate(), 115200u);
    EXPECT_TRUE(mClient->Ping().IsOK());
}

TEST_F(GenCPCameraTest, FeaturesAreTransactionsAndASilentCameraCostsOneTimeout)
{
    Open();
    std::string xml;
    ASSERT_TRUE(ReadXML(xml).IsOK());
    std::unique_ptr<NodeMap> nodes;
    ASSERT_TRUE(NodeMap::Create(std::make_shared<WatchedPort>(mClient), xml, nodes).IsOK());
    LxGenParameterArray &features = *nodes->GetParameters();
    int64_t value = 0;
    const uint64_t heard = mCamera->GetCommandCount();
    ASSERT_TRUE(features.GetIntegerValue("Width", value).IsOK());
    EXPECT_EQ(value, 1024);
    EXPECT_EQ(mCamera->GetCommandCount(), heard + 1);
    ASSERT_TRUE(features.SetIntegerValue("Width", 320).IsOK());
    double exposure = 0;
    ASSERT_TRUE(features.GetFloatValue("ExposureTime", exposure).IsOK());
    EXPECT_EQ(exposure, 5000.0);

    mCamera->SetPlugged(false);
    EXPECT_EQ(features.GetIntegerValue("Width", value), LxResultCode::Timeout);
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(features.GetIntegerValue("Height", value), LxResultCode::Timeout);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, 10s) << "a hundred time-outs would be far longer";
    mCamera->SetPlugged(true);
    EXPECT_TRUE(WaitFor([&] { return features.GetIntegerValue("Width", value).IsOK(); }));
    EXPECT_EQ(value, 320);
}
