// Camera bridges on a simulated frame grabber.

#include "LxCameraBridge/LxCameraBridge.h"

#include <gtest/gtest.h>

#include "LxGenICam/LxGenParameterArray.h"
#include "LxPersistence/LxConfigurationReader.h"
#include "LxPersistence/LxConfigurationWriter.h"
#include "LxSimulation/LxSimulatedGenCPCamera.h"
#include "LxSimulation/LxSimulatedTextCamera.h"
#include "SimulatedGrabber.h"
#include "WaitFor.h"

namespace
{

constexpr const char *SampleFile = LXGUI_SOURCE_DIR "/docs/text-camera.yml";
constexpr const char *Template = "simulation#LxSimulatedCLProtocol#LxGUI#TextCamera";

class LxCameraBridgeTest : public testing::Test
{
protected:
    static std::shared_ptr<LxSimulatedGenCPCamera> PlugGenCP(const LxSimulatedGenCPValues &aValues = {})
    {
        auto camera = std::make_shared<LxSimulatedGenCPCamera>(aValues);
        SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0, camera);
        return camera;
    }
    static std::shared_ptr<LxSimulatedTextCamera> PlugText()
    {
        auto camera = std::make_shared<LxSimulatedTextCamera>();
        SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0, camera);
        return camera;
    }
    LxString ConnectGenCP()
    {
        LxStringList ids;
        EXPECT_TRUE(mBridge.GetGenCPXMLIDs(ids).IsOK());
        const LxResult result = mBridge.ConnectGenCP(ids.GetItem(0));
        EXPECT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
        return ids.GetItem(0);
    }
    int64_t GetGrabber(const char *aName)
    {
        int64_t value = -1;
        mGrabber.GetFeatures().GetIntegerValue(aName, value);
        return value;
    }

    SimulatedGrabber mGrabber;
    LxCameraBridge mBridge{mGrabber.GetDevice(), LxDeviceSerial::Serial0, nullptr};
    LxString mText;
};

}  // namespace

TEST_F(LxCameraBridgeTest, GenCPConnectsReadsAndDisconnects)
{
    PlugGenCP();
    EXPECT_FALSE(mBridge.IsConnected());
    EXPECT_EQ(mBridge.GetParameters(), nullptr);
    EXPECT_EQ(ConnectGenCP().GetString(), "1.1#XML 1.0.0#LxGUI Line Camera");
    EXPECT_TRUE(mBridge.IsConnected());
    EXPECT_TRUE(mBridge.GetGenCPXMLID(mText).IsOK());
    EXPECT_FALSE(mBridge.GetKelvraCameraFilePath(mText).IsOK());
    EXPECT_FALSE(mBridge.GetCLProtocolXMLID(mText).IsOK());
    ASSERT_NE(mBridge.GetParameters(), nullptr);
    EXPECT_GT(mBridge.GetBytesSentToCamera(), 0u);
    EXPECT_GT(mBridge.GetBytesReceivedFromCamera(), mBridge.GetBytesSentToCamera());
    mBridge.ResetStatistics();
    EXPECT_EQ(mBridge.GetBytesSentToCamera(), 0u);
    int64_t width = 0;
    EXPECT_TRUE(mBridge.GetParameters()->GetIntegerValue("Width", width).IsOK());
    EXPECT_EQ(mBridge.GetBytesSentToCamera(), 28u);
    EXPECT_EQ(mBridge.GetBytesReceivedFromCamera(), 20u);
    EXPECT_TRUE(mBridge.Disconnect().IsOK());
    EXPECT_FALSE(mBridge.GetGenCPXMLID(mText).IsOK());
    EXPECT_TRUE(mBridge.Disconnect().IsOK());
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
}

TEST_F(LxCameraBridgeTest, GenCPConnectMayBeRepeatedAndAFailureKeepsTheConnection)
{
    const auto camera = PlugGenCP();
    const LxString id = ConnectGenCP();
    EXPECT_TRUE(mBridge.ConnectGenCP(id).IsOK());
    EXPECT_EQ(mBridge.ConnectGenCP("no such"), LxResultCode::NotFound);
    EXPECT_TRUE(mBridge.IsConnected());
    EXPECT_EQ(mBridge.ConnectKelvraCameraFile(SampleFile), LxResultCode::AlreadyOpen);
    int64_t width = 0;
    EXPECT_TRUE(mBridge.GetParameters()->GetIntegerValue("Width", width).IsOK());
}

TEST_F(LxCameraBridgeTest, XMLThatDoesNotParseIsRefusedAndThePortIsFree)
{
    LxSimulatedGenCPValues values;
    values.mXML = "<RegisterDescription><Category";
    PlugGenCP(values);
    LxStringList ids;
    ASSERT_TRUE(mBridge.GetGenCPXMLIDs(ids).IsOK());
    const LxResult result = mBridge.ConnectGenCP(ids.GetItem(0));
    EXPECT_EQ(result, LxResultCode::GenICamError);
    EXPECT_FALSE(result.GetDescription().IsEmpty());
    EXPECT_FALSE(mBridge.IsConnected());
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
}

TEST_F(LxCameraBridgeTest, CLProtocolProbesAndConnects)
{
    PlugText();
    LxStringList templates;
    ASSERT_TRUE(LxCameraBridge::GetCLProtocolTemplates(templates).IsOK());
    ASSERT_EQ(templates.GetSize(), 3u);
    EXPECT_EQ(templates.GetItem(0).GetString(), Template);
    LxString camera;
    LxStringList ids;
    EXPECT_EQ(mBridge.ProbeCLProtocol(templates.GetItem(1), camera, ids), LxResultCode::NotFound);
    EXPECT_EQ(mBridge.ProbeCLProtocol("nothing", camera, ids), LxResultCode::NotFound);
    ASSERT_TRUE(mBridge.ProbeCLProtocol(Template, camera, ids).IsOK());
    EXPECT_EQ(camera.GetString(), std::string(Template) + "#TC1024#1.0.0#TXT0001");
    ASSERT_EQ(ids.GetSize(), 2u);
    EXPECT_EQ(mBridge.ConnectCLProtocol(Template, "v@1@no"), LxResultCode::NotFound);
    ASSERT_TRUE(mBridge.ConnectCLProtocol(Template, ids.GetItem(1)).IsOK());
    EXPECT_EQ(mBridge.GetParameters()->Get("StatusLED"), nullptr);
    mBridge.Disconnect();
    ASSERT_TRUE(mBridge.ConnectCLProtocol(camera, ids.GetItem(0)).IsOK()) << "a camera ID begins with its template";
    EXPECT_NE(mBridge.GetParameters()->Get("StatusLED"), nullptr);
    EXPECT_TRUE(mBridge.GetParameters()->SetFloatValue("ExposureTime", 12.5).IsOK());
    double exposure = 0;
    EXPECT_TRUE(mBridge.GetParameters()->GetFloatValue("ExposureTime", exposure).IsOK());
    EXPECT_EQ(exposure, 12.5);
    EXPECT_TRUE(mBridge.GetCLProtocolCameraID(mText).IsOK());
    EXPECT_EQ(mText, camera);
    EXPECT_TRUE(mBridge.GetCLProtocolTemplate(mText).IsOK());
    EXPECT_EQ(mText.GetString(), Template);
}

TEST_F(LxCameraBridgeTest, SampleCameraFileControlsTheTextCamera)
{
    const auto camera = PlugText();
    const LxResult result = mBridge.ConnectKelvraCameraFile(SampleFile);
    ASSERT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
    LxGenParameterArray &features = *mBridge.GetParameters();
    EXPECT_EQ(features.GetCount(), 9u);
    EXPECT_TRUE(features.SetIntegerValue("Gain", 33).IsOK());
    EXPECT_TRUE(features.SetStringValue("DeviceUserID", "Bridge").IsOK());
    EXPECT_TRUE(features.SetEnumValue("PixelFormat", "RGB8").IsOK());
    EXPECT_TRUE(features.SetBooleanValue("StatusLED", false).IsOK());
    int64_t gain = 0;
    bool led = true;
    EXPECT_TRUE(features.GetIntegerValue("Gain", gain).IsOK());
    EXPECT_EQ(gain, 33);
    EXPECT_TRUE(features.GetStringValue("DeviceUserID", mText).IsOK());
    EXPECT_EQ(mText.GetString(), "Bridge");
    EXPECT_TRUE(features.GetEnumValue("PixelFormat", mText).IsOK());
    EXPECT_EQ(mText.GetString(), "RGB8");
    EXPECT_TRUE(features.GetBooleanValue("StatusLED", led).IsOK());
    EXPECT_FALSE(led);
    EXPECT_NE(camera->GetReceived().GetString().find("FORMAT=35127316\n"), std::string::npos);
    EXPECT_TRUE(features.ExecuteCommand("DeviceReset").IsOK());
    EXPECT_TRUE(features.GetIntegerValue("Gain", gain).IsOK());
    EXPECT_EQ(gain, 10);
    EXPECT_TRUE(mBridge.GetKelvraCameraFilePath(mText).IsOK());
    EXPECT_EQ(mText.GetString(), SampleFile);
}

TEST_F(LxCameraBridgeTest, SynchronisationCopiesTheGeometryAtOnceAndOnChange)
{
    PlugGenCP();
    ConnectGenCP();
    ASSERT_NE(GetGrabber("Width"), 1024);
    mBridge.SetParametersSyncEnabled(true);
    EXPECT_EQ(GetGrabber("Width"), 1024);
    EXPECT_EQ(GetGrabber("Height"), 768);
    EXPECT_TRUE(mBridge.GetParameters()->SetIntegerValue("Width", 512).IsOK());
    EXPECT_EQ(GetGrabber("Width"), 512);
    EXPECT_TRUE(mBridge.GetParameters()->SetEnumValue("PixelFormat", "RGB8").IsOK());
    EXPECT_TRUE(mGrabber.GetFeatures().GetEnumValue("PixelFormat", mText).IsOK());
    EXPECT_EQ(mText.GetString(), "RGB8");
    mBridge.SetParametersSyncEnabled(false);
    EXPECT_TRUE(mBridge.GetParameters()->SetIntegerValue("Width", 256).IsOK());
    EXPECT_EQ(GetGrabber("Width"), 512);
}

TEST_F(LxCameraBridgeTest, SourceIsOneOfTheGrabberAndIsSelectedWhileSynchronising)
{
    PlugGenCP();
    EXPECT_EQ(mBridge.GetSource().GetString(), "Source0");
    EXPECT_EQ(mBridge.SetSource("nonsense"), LxResultCode::NotFound);
    EXPECT_TRUE(mBridge.SetSource("Source1").IsOK());
    ConnectGenCP();
    mBridge.SetParametersSyncEnabled(true);
    EXPECT_TRUE(mGrabber.GetFeatures().GetEnumValue("SourceSelector", mText).IsOK());
    EXPECT_EQ(mText.GetString(), "Source1");
}

TEST_F(LxCameraBridgeTest, PowerOverCameraLinkIsOfTheGrabber)
{
    EXPECT_FALSE(LxCameraBridge::IsPoCLSupported(nullptr));
    EXPECT_FALSE(LxCameraBridge::IsPoCLEnabled(nullptr));
    EXPECT_EQ(LxCameraBridge::SetPoCLEnabled(nullptr, true), LxResultCode::InvalidArgument);
    EXPECT_TRUE(LxCameraBridge::IsPoCLSupported(mGrabber.GetDevice()));
    EXPECT_FALSE(LxCameraBridge::IsPoCLEnabled(mGrabber.GetDevice()));
    EXPECT_TRUE(LxCameraBridge::SetPoCLEnabled(mGrabber.GetDevice(), true).IsOK());
    EXPECT_TRUE(LxCameraBridge::IsPoCLEnabled(mGrabber.GetDevice()));
}

TEST_F(LxCameraBridgeTest, SavedBridgesConnectAgain)
{
    LxConfigurationWriter writer;
    EXPECT_FALSE(mBridge.Save("0", writer).IsOK()) << "not connected";
    PlugGenCP();
    const LxString id = ConnectGenCP();
    mBridge.SetParametersSyncEnabled(true);
    mBridge.SetSource("Source1");
    ASSERT_TRUE(mBridge.Save("0", writer).IsOK());
    mBridge.Disconnect();
    PlugText();
    ASSERT_TRUE(mBridge.ConnectKelvraCameraFile(SampleFile).IsOK());
    ASSERT_TRUE(mBridge.Save("1", writer).IsOK());
    mBridge.Disconnect();

    LxConfigurationReader reader;
    ASSERT_TRUE(reader.LoadFromString(writer.SaveToString()).IsOK());
    LxCameraBridge second(mGrabber.GetDevice(), LxDeviceSerial::Serial0, nullptr);
    LxStringList errors;
    EXPECT_TRUE(second.Load("1", reader, errors).IsOK());
    EXPECT_TRUE(second.GetKelvraCameraFilePath(mText).IsOK());
    PlugGenCP();
    EXPECT_TRUE(second.Load("0", reader, errors).IsOK());
    EXPECT_TRUE(second.GetGenCPXMLID(mText).IsOK());
    EXPECT_EQ(mText, id);
    EXPECT_TRUE(second.GetParametersSyncEnabled());
    EXPECT_EQ(second.GetSource().GetString(), "Source1");
    EXPECT_EQ(errors.GetSize(), 0u);
    SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0, nullptr);
    EXPECT_FALSE(second.Load("0", reader, errors).IsOK());
    EXPECT_FALSE(second.Load("none", reader, errors).IsOK());
    ASSERT_EQ(errors.GetSize(), 2u);
    EXPECT_EQ(errors.GetItem(0).GetString().substr(0, 8), "Serial0:");
}

TEST_F(LxCameraBridgeTest, PortInUseIsSaid)
{
    PlugGenCP();
    ConnectGenCP();
    LxCameraBridge second(mGrabber.GetDevice(), LxDeviceSerial::Serial0, nullptr);
    LxStringList ids;
    EXPECT_EQ(second.GetGenCPXMLIDs(ids), LxResultCode::Busy);
    LxCameraBridge none(nullptr, LxDeviceSerial::Serial0, nullptr);
    EXPECT_FALSE(none.GetGenCPXMLIDs(ids).IsOK());
}
