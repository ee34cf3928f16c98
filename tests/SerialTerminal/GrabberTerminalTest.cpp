// The terminal on a simulated frame grabber: the road of real bytes.

#include <QtCore/QTemporaryFile>
#include <memory>

#include "LxDevice/LxDeviceSerialPort.h"
#include "SimulatedGrabber.h"
#include "TerminalTest.h"

namespace
{

class GrabberTerminal : public testing::Test
{
protected:
    void SetUp() override
    {
        auto console = std::make_shared<LxSimulatedSerialScript>();
        console->Add("VER\r", "1.0\r\nOK\r\n");
        SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0, console);
        SimulatedGrabber::SetPeer(LxDeviceSerial::Bulk2, std::make_shared<LxSimulatedSerialEcho>());
        ASSERT_TRUE(mWnd.SetDevice(mGrabber.GetAdapter()).IsOK());
        ASSERT_TRUE(mWnd.ShowModeless().IsOK());
    }
    void TearDown() override { mWnd.Close(); }

    void SendBytes(const QByteArray &aBytes)
    {
        QTemporaryFile file;
        ASSERT_TRUE(file.open());
        ASSERT_EQ(file.write(aBytes), aBytes.size());
        file.flush();
        mWnd.SendFile(file.fileName());
        ASSERT_TRUE(mWnd.WaitUntilSent());
    }

    SimulatedGrabber mGrabber;
    Terminal mWnd;
};

}  // namespace

TEST_F(GrabberTerminal, TalksToWhatIsConnected)
{
    EXPECT_EQ(mWnd.Ports(),
              QStringList({"Serial0", "Serial1", "Bulk0", "Bulk1", "Bulk2", "Bulk3", "Bulk4", "Bulk5", "Bulk6"}));
    mWnd.Mark("CRCheck");
    mWnd.Send("VER");
    EXPECT_TRUE(mWnd.Shows("1.0\r\nOK\r\n"));
}

TEST_F(GrabberTerminal, SetsSpeedAndLoopback)
{
    ASSERT_TRUE(mWnd.IsEnabled("SpeedCombo"));
    mWnd.SpeedCombo()->setCurrentText("Baud9600");
    LxString rate;
    EXPECT_TRUE(mGrabber.GetFeatures().GetEnumValue("Uart0BaudRate", rate).IsOK());
    EXPECT_STREQ(rate.GetAscii(), "Baud9600");
    mWnd.Mark("LoopbackCheck");
    mWnd.Send("heard by itself");
    EXPECT_TRUE(mWnd.Shows("heard by itself"));
}

TEST_F(GrabberTerminal, ABulkPortIsSelectedAndUsed)
{
    mWnd.PortCombo()->setCurrentIndex(4);
    LxString selected;
    EXPECT_TRUE(mGrabber.GetFeatures().GetEnumValue("BulkSelector", selected).IsOK());
    EXPECT_STREQ(selected.GetAscii(), "Bulk2");
    mWnd.Send("echo");
    EXPECT_TRUE(mWnd.Shows("echo"));
}

TEST_F(GrabberTerminal, AFileComesBackWhole)
{
    LxSimulatedSerialConditions conditions;
    conditions.mCapacity = 256;  // or all of it could be on its way when a second of waiting for its end begins
    SimulatedGrabber::SetConditions(LxDeviceSerial::Bulk2, conditions);
    mWnd.SetSerialPort(LxDeviceSerial::Bulk2);
    mWnd.Mark("ValidationCheck");
    QByteArray bytes;
    for (int i = 0; i < 100000; ++i) {
        bytes += static_cast<char>(i * 7 + i / 256);
    }
    SendBytes(bytes);
    EXPECT_TRUE(
        mWnd.Transcript().endsWith("100000/100000 successfully transmitted bytes (100%)\n"
                                   "100000/100000 bytes received from loopback (100%)\n"))
        << qPrintable(mWnd.Transcript().right(200));
}

TEST_F(GrabberTerminal, LostBytesAreCounted)
{
    LxSimulatedSerialConditions conditions;
    conditions.mToHost.mLossPeriod = 50;
    SimulatedGrabber::SetConditions(LxDeviceSerial::Bulk2, conditions);
    mWnd.SetSerialPort(LxDeviceSerial::Bulk2);
    mWnd.Mark("ValidationCheck");
    QByteArray bytes;
    for (int i = 0; i < 1000; ++i) {
        bytes += static_cast<char>(i % 251);
    }
    SendBytes(bytes);
    EXPECT_TRUE(mWnd.Transcript().endsWith("980/1000 bytes received from loopback (98%)\n"))
        << qPrintable(mWnd.Transcript().right(200));
}

TEST_F(GrabberTerminal, SurvivesThatTheDeviceIsUnpluggedWhileItSends)
{
    LxSimulatedSerialConditions conditions;
    conditions.mPaced = true;
    SimulatedGrabber::SetConditions(LxDeviceSerial::Bulk2, conditions);
    mWnd.SetSerialPort(LxDeviceSerial::Bulk2);
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    ASSERT_EQ(file.write(QByteArray(1000000, 'x')), 1000000);
    file.flush();
    mWnd.SendFile(file.fileName());
    ASSERT_TRUE(mWnd.ShowsInAll("xxx"));
    ASSERT_TRUE(LxSimulation::SetDevicePresent(SimulatedGrabber::ID, false).IsOK());
    ASSERT_TRUE(mWnd.WaitUntilSent());
    EXPECT_TRUE(mWnd.Transcript().contains("/1000000 successfully transmitted bytes ("));
    EXPECT_FALSE(mWnd.Transcript().contains("1000000/1000000")) << "not all of it";
}

TEST_F(GrabberTerminal, GoesOnAfterTimeoutsAndErrors)
{
    for (const auto result : {LxResultCode::SerialTimeout, LxResultCode::Timeout, LxResultCode::Failed}) {
        LxSimulatedSerialConditions conditions;
        conditions.mReadResult = result;
        SimulatedGrabber::SetConditions(LxDeviceSerial::Serial0, conditions);
        mWnd.Mark("LoopbackCheck");
        conditions.mReadResult = LxResultCode::OK;
        SimulatedGrabber::SetConditions(LxDeviceSerial::Serial0, conditions);
        mWnd.Mark("LoopbackCheck");
        mWnd.Click("ClearButton");
        if (!mWnd.Check("CRCheck")->isChecked()) {
            mWnd.Mark("CRCheck");
        }
        mWnd.Send("VER");
        EXPECT_TRUE(mWnd.Shows("1.0\r\nOK\r\n"));
    }
}

TEST_F(GrabberTerminal, APortThatAnotherHasOpenStaysClosed)
{
    LxDeviceSerialPort other;
    ASSERT_TRUE(other.Open(mGrabber.GetAdapter(), LxDeviceSerial::Serial1).IsOK());
    mWnd.SetSerialPort(LxDeviceSerial::Serial1);
    EXPECT_FALSE(mWnd.IsEnabled("SendButton"));
    other.Close();
    mWnd.SetSerialPort(LxDeviceSerial::Serial1);
    EXPECT_TRUE(mWnd.IsEnabled("SendButton"));
}
