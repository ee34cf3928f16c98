// Saving and restoring serial bridges.

#include "BridgeManagerFixture.h"
#include "LxPersistence/LxConfigurationReader.h"
#include "LxPersistence/LxConfigurationWriter.h"

namespace
{

using Values = std::vector<std::pair<std::string, std::string>>;

class BridgePersistenceTest : public BridgeManagerFixture
{
protected:
    BridgePersistenceTest() { mWnd->SetDevice(mGrabber.GetAdapter()); }

    /// Restores the properties; the messages, each in a line.
    std::string Load(const Values &aValues)
    {
        LxPropertyList list;
        for (const auto &[name, value] : aValues) {
            list.Add(LxProperty(name, value));
        }
        LxStringList messages;
        mWnd->Load(list, messages);
        std::string text;
        for (size_t i = 0; i < messages.GetSize(); ++i) {
            text += messages.GetItem(i).GetString() + "\n";
        }
        return text;
    }
};

const std::string Open = "Serial0=COMPort;Serial0Port=COM3;";
const std::string Defaults =
    "Serial0COMPortBaudRate=9600;Serial0COMPortParity=None;Serial0COMPortBitCount=8;"
    "Serial0COMPortStopBits=1;";

}  // namespace

TEST_F(BridgePersistenceTest, InactivePortsWriteNothingAndStayInactive)
{
    LxPropertyList list;
    list.Add(LxProperty("old", "value"));
    mWnd->Save(list);
    EXPECT_EQ(list.GetCount(), 0u) << "the list is cleared";
    EXPECT_EQ(Load({}), "");
    EXPECT_EQ(SaveText(), "");
    EXPECT_EQ(Load({{"Serial0", "CLDLL"}}), "");
    EXPECT_NE(SaveText(), "");
    EXPECT_EQ(Load({}), "") << "a list without the port";
    EXPECT_EQ(SaveText(), "");
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
}

TEST_F(BridgePersistenceTest, ACOMPortComesBackThroughAFile)
{
    EXPECT_EQ(Load({{"Bulk0", "CLDLL"},
                    {"Bulk0CLDLLBaudRate", "57600"},
                    {"Serial0", "COMPort"},
                    {"Serial0Port", "COM3"},
                    {"Serial0COMPortBaudRate", "19200"},
                    {"Serial0COMPortParity", "Odd"},
                    {"Serial0COMPortBitCount", "7"},
                    {"Serial0COMPortStopBits", "2"}}),
              "");
    const std::string saved = SaveText();
    EXPECT_EQ(saved, Open +
                         "Serial0COMPortBaudRate=19200;Serial0COMPortParity=Odd;Serial0COMPortBitCount=7;"
                         "Serial0COMPortStopBits=2;Bulk0=CLDLL;Bulk0CLDLLBaudRate=57600;");
    LxPropertyList list;
    mWnd->Save(list);
    LxConfigurationWriter writer;
    ASSERT_TRUE(writer.Store(&list, "bridges").IsOK());
    mWnd->SetDevice(mGrabber.GetAdapter());
    EXPECT_EQ(SaveText(), "");
    LxConfigurationReader reader;
    ASSERT_TRUE(reader.LoadFromString(writer.SaveToString()).IsOK());
    LxPropertyList restored;
    ASSERT_TRUE(reader.Restore("bridges", &restored).IsOK());
    LxStringList messages;
    mWnd->Load(restored, messages);
    EXPECT_EQ(messages.GetSize(), 0u);
    EXPECT_EQ(SaveText(), saved);
    mTerminal.Write("x");
    EXPECT_EQ(mTerminal.Read(1), "x");
}

TEST_F(BridgePersistenceTest, TheViewsFollow)
{
    Show();
    Load({{"Serial0", "COMPort"}, {"Serial0Port", "COM11"}});
    EXPECT_TRUE(IsChecked("COMPortRadio"));
    EXPECT_EQ(Combo("PortCombo")->currentText(), "COM11");
    EXPECT_EQ(Text("SummaryLabel"), "9600 baud, no parity, 8 bits, 1 stop bit");
}

TEST_F(BridgePersistenceTest, APortThatTheDeviceLacksIsReportedOnce)
{
    EXPECT_EQ(Load({{"Bulk3", "COMPort"}, {"Bulk3Port", "COM3"}}),
              "Serial bridge manager: Port Bulk3 found in persistence file, not supported by device.\n");
    EXPECT_EQ(Load({{"Bulk9", "COMPort"}, {"Other", "1"}}), "") << "no name of a port";
}

TEST_F(BridgePersistenceTest, UnexpectedTypes)
{
    EXPECT_EQ(Load({{"Serial0", "comport"}, {"Bulk0", ""}, {"Bulk1", "%1 %2"}}),
              "Serial bridge manager: Unexpected bridge type, comport on Serial0.\n"
              "Serial bridge manager: Unexpected bridge type,  on Bulk0.\n"
              "Serial bridge manager: Unexpected bridge type, %1 %2 on Bulk1.\n");
    EXPECT_EQ(SaveText(), "");
}

TEST_F(BridgePersistenceTest, COMPortsThatFail)
{
    EXPECT_EQ(Load({{"Serial0", "COMPort"}}), "Serial bridge on Serial0: Port parameter missing.\n");
    EXPECT_EQ(
        Load({{"Serial0", "COMPort"}, {"Serial0Port", "COM4"}}),
        "Serial bridge on Serial0: Unable to open serial port COM4: NOT_FOUND, There is no COM port \"COM4\"..\n");
    EXPECT_EQ(SaveText(), "Serial0=COMPort;Serial0Port=;");
    EXPECT_EQ(Load({{"Serial0", "COMPort"}, {"Serial0Port", ""}}),
              "Serial bridge on Serial0: Unable to open serial port : NOT_FOUND, There is no COM port \"\"..\n");
    // One that is in use, and the next that is not.
    EXPECT_EQ(Load({{"Serial0", "COMPort"},
                    {"Serial0Port", "COM3"},
                    {"Serial1", "COMPort"},
                    {"Serial1Port", "COM3"},
                    {"Bulk0", "COMPort"},
                    {"Bulk0Port", "COM11"}}),
              "Serial bridge on Serial1: Unable to open serial port COM3: BUSY, Another program uses the COM port "
              "\"COM3\"..\n");
    mTerminal.Write("x");
    EXPECT_EQ(mTerminal.Read(1), "x");
    EXPECT_NE(SaveText().find("Bulk0Port=COM11"), std::string::npos);
}

TEST_F(BridgePersistenceTest, ValuesThatCannotBeParsedEndTheRestoreOfThePort)
{
    const auto load = [&](const std::string &aName, const std::string &aValue) {
        return Load({{"Serial0", "COMPort"},
                     {"Serial0Port", "COM3"},
                     {"Serial0COMPortParity", aName == "Parity" ? aValue : "Even"},
                     {"Serial0COMPort" + aName, aValue},
                     {"Serial0COMPortStopBits", "2"}});
    };
    EXPECT_EQ(load("BaudRate", "fast"), "Serial bridge on Serial0: Unable to parse COM port speed.\n");
    EXPECT_EQ(SaveText(), Open + Defaults) << "nothing of it is applied";
    EXPECT_EQ(load("BaudRate", "-1"), "Serial bridge on Serial0: Unable to parse COM port speed.\n");
    EXPECT_EQ(load("BaudRate", "9600 "), "Serial bridge on Serial0: Unable to parse COM port speed.\n");
    EXPECT_EQ(load("BaudRate", "99999999999"), "Serial bridge on Serial0: Unable to parse COM port speed.\n");
    EXPECT_EQ(load("Parity", "Mark"), "Serial bridge on Serial0: Unable to parse COM port parity.\n");
    EXPECT_EQ(load("Parity", ""), "Serial bridge on Serial0: Unable to parse COM port parity.\n");
    EXPECT_EQ(load("BitCount", "8.0"), "Serial bridge on Serial0: Unable to parse COM port bit count (byte size).\n");
    EXPECT_EQ(SaveText(), Open + Defaults);
    EXPECT_EQ(Load({{"Serial0", "COMPort"}, {"Serial0Port", "COM3"}, {"Serial0COMPortStopBits", "one"}}),
              "Serial bridge on Serial0: Unable to parse COM port stop bits.\n");
}

TEST_F(BridgePersistenceTest, ValuesOutOfRangeAreInvalid)
{
    for (const auto &[name, value] :
         Values{{"BaudRate", "0"}, {"BitCount", "9"}, {"BitCount", "4"}, {"StopBits", "3"}, {"StopBits", "0"}})
    {
        EXPECT_EQ(Load({{"Serial0", "COMPort"}, {"Serial0Port", "COM3"}, {"Serial0COMPort" + name, value}}),
                  "Serial bridge on Serial0: Invalid COM port configuration.\n")
            << name;
        EXPECT_EQ(SaveText(), Open + Defaults);
    }
}

TEST_F(BridgePersistenceTest, AConfigurationThatTheDeviceRefuses)
{
    constexpr uint64_t speedOfSerial0 = 0xC040;
    LxSimulation::FailRange(SimulatedGrabber::ID, speedOfSerial0, 4, LxResult(LxResultCode::AccessDenied, "%1%2"));
    EXPECT_EQ(Load({{"Serial0", "COMPort"}, {"Serial0Port", "COM3"}, {"Serial0COMPortBaudRate", "19200"}}),
              "Serial bridge on Serial0: Unable to apply serial port configuration: ACCESS_DENIED, %1%2.\n");
    EXPECT_NE(SaveText().find(Open), std::string::npos) << "the port stays open";
}

TEST_F(BridgePersistenceTest, CameraLinkBaudRates)
{
    EXPECT_EQ(Load({{"Serial0", "CLDLL"}}), "");
    EXPECT_EQ(SaveText(), "Serial0=CLDLL;Serial0CLDLLBaudRate=0;");
    EXPECT_EQ(Load({{"Serial0", "CLDLL"}, {"Serial0CLDLLBaudRate", "38400"}}), "");
    EXPECT_EQ(SaveText(), "Serial0=CLDLL;Serial0CLDLLBaudRate=38400;");
    EXPECT_EQ(Load({{"Serial0", "CLDLL"}, {"Serial0CLDLLBaudRate", "quick"}}),
              "Serial bridge on Serial0: Unable to parse Camera Link DLL hard-coded baud rate.\n");
    EXPECT_EQ(SaveText(), "Serial0=CLDLL;Serial0CLDLLBaudRate=0;") << "it runs all the same";
    EXPECT_EQ(Load({{"Serial0", "CLDLL"}, {"Serial0CLDLLBaudRate", "1234"}}),
              "Serial bridge on Serial0: Unable to apply Camera Link DLL hard-coded baud rate: NOT_SUPPORTED, The "
              "device's serial port cannot be set to 1234 baud..\n");
    EXPECT_EQ(Load({{"Serial1", "CLDLL"}, {"Serial1CLDLLBaudRate", "1234"}}), "") << "a port that tells no rates";
}

TEST_F(BridgePersistenceTest, ACameraLinkBridgeThatFailsLeavesTheOthers)
{
    LxSimulation::QueueResult("SerialOpen", LxResult(LxResultCode::Busy, "%1%2"));
    EXPECT_EQ(Load({{"Serial0", "CLDLL"}, {"Bulk0", "CLDLL"}}),
              "Serial bridge manager: Unable to start Camera Link DLL bridge for Serial0: BUSY, %1%2.\n");
    EXPECT_EQ(SaveText(), "Bulk0=CLDLL;Bulk0CLDLLBaudRate=0;");
}

TEST_F(BridgePersistenceTest, LongMessagesAreCut)
{
    const std::string message = Load({{"Serial0", std::string(5000, 'x')}});
    EXPECT_EQ(message.size(), std::string("Serial bridge manager: ").size() + 1023 + 1);
    EXPECT_EQ(Load({{"Serial0", "COMPort"}, {"Serial0Port", std::string(5000, 'y')}}).size(),
              std::string("Serial bridge on Serial0: ").size() + 1023 + 1);
}

TEST_F(BridgePersistenceTest, WithoutADeviceEveryPortIsReported)
{
    mWnd->SetDevice(nullptr);
    EXPECT_EQ(Load({{"Serial0", "CLDLL"}, {"Serial1", "nonsense"}}),
              "Serial bridge manager: Port Serial0 found in persistence file, not supported by device.\n"
              "Serial bridge manager: Port Serial1 found in persistence file, not supported by device.\n");
}
