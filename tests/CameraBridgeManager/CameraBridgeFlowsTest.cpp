// What happens while the cameras behind a frame grabber are asked, and where there is nothing to ask.

#include <gtest/gtest.h>

#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <atomic>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <thread>

#include "CameraBridgeManagerFixture.h"
#include "LxCameraBridge/CLProtocolDriver.h"
#include "LxGUI/CameraBridgeManager/CameraBridgeManagerWnd.h"
#include "LxPersistence/LxConfigurationReader.h"
#include "LxPersistence/LxConfigurationWriter.h"
#include "WaitFor.h"

namespace
{

/// A camera that lets the test see what it is asked.
class WatchedCamera : public LxSimulatedSerialPeer
{
public:
    using Watch = std::function<void(const std::string &aRequest)>;

    WatchedCamera(std::shared_ptr<LxSimulatedSerialPeer> aCamera, Watch aWatch)
        : mCamera(std::move(aCamera)), mWatch(std::move(aWatch))
    {
    }
    void OnReceive(const uint8_t *aData, uint32_t aCount, LxSimulatedSerialLine &aLine) override
    {
        mWatch(std::string(reinterpret_cast<const char *>(aData), aCount));
        mCamera->OnReceive(aData, aCount, aLine);
    }

private:
    const std::shared_ptr<LxSimulatedSerialPeer> mCamera;
    const Watch mWatch;
};

/// The address of the XML, as a GenCP command has it.
const std::string XMLAddress("\0\0\0\0\0\x10\0\0", 8);

/// Counts requests with a text, and under which cursor they come. The GUI thread waits meanwhile.
struct CursorCount
{
    WatchedCamera::Watch MakeWatch(const std::string &aText)
    {
        return [this, aText](const std::string &aRequest) {
            if (aRequest.find(aText) != std::string::npos) {
                const QCursor *cursor = QGuiApplication::overrideCursor();
                ++(cursor && cursor->shape() == Qt::WaitCursor ? mBusy : mOther);
            }
        };
    }
    void ExpectBusyOnly()
    {
        EXPECT_GT(mBusy.exchange(0), 0);
        EXPECT_EQ(mOther.exchange(0), 0);
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    }

    std::atomic<int> mBusy{0};
    std::atomic<int> mOther{0};
};

class CameraBridgeFlowsTest : public CameraBridgeManagerFixture
{
};

class CameraBridgeNoPortsTest : public CameraBridgeManagerFixture
{
protected:
    CameraBridgeNoPortsTest() : CameraBridgeManagerFixture(0) {}
};

/// The window where the feature browser cannot be loaded.
class WindowWithoutBrowser : public CameraBridgeManagerWnd
{
protected:
    QWidget *LoadBrowser() override { return nullptr; }
};

template <class Widget>
Widget *FindIn(CameraBridgeManagerWnd &aWindow, const char *aName)
{
    return aWindow.GetQWidget()->findChild<Widget *>(aName);
}

}  // namespace

TEST_F(CameraBridgeNoPortsTest, EveryActionIsWithoutEffect)
{
    CameraBridgeManagerWnd window;
    window.SetDevice(mGrabber.GetDevice());
    window.ShowModeless(static_cast<QWidget *>(nullptr));
    EXPECT_EQ(FindIn<QComboBox>(window, "PortCombo")->count(), 0);
    EXPECT_EQ(window.GetBridgeCount(), 0);
    EXPECT_EQ(window.GetBridge(0), nullptr);
    EXPECT_EQ(window.GetBridge(-1), nullptr);
    EXPECT_EQ(static_cast<uint32_t>(window.GetBridgePort(0)), 0xFFFFFFFFu);
    EXPECT_FALSE(FindIn<QComboBox>(window, "SourceCombo")->isEnabled());
    EXPECT_FALSE(FindIn<QCheckBox>(window, "PoCLCheck")->isEnabled());
    window.OnPortComboChanged();
    for (const char *option : {"GenICam CL Protocol", "GenCP", "Kelvra Camera File", "None"}) {
        window.OnRadioButtonChanged(option);
    }
    window.OnCLPTemplateComboChanged();
    window.OnCLPXMLComboChanged();
    window.OnGenCPXMLComboChanged();
    window.OnKCFPathButtonClicked();
    window.OnCLPProbeButtonClicked();
    window.OnCLPConnectButtonClicked();
    window.OnGenCPConnectButtonClicked();
    window.OnResetButtonClicked();
    window.OnSyncCheckChanged();
    FindIn<QCheckBox>(window, "PoCLCheck")->setChecked(true);
    window.OnPoCLCheckChanged();
    EXPECT_FALSE(LxCameraBridge::IsPoCLEnabled(mGrabber.GetDevice()));
    window.OnSourceComboChanged();
    window.OnTimerTimeout();
    ExpectedBox box;
    window.OnKCFLoadButtonClicked();
    EXPECT_EQ(box.Title(), "KCF Load Error");
    EXPECT_EQ(box.Text(), "No bridge selected or invalid path.");
    window.HideKCF();
}

TEST_F(CameraBridgeFlowsTest, WithoutADeviceThereIsNothingToChoose)
{
    mWnd->ShowModeless();
    EXPECT_EQ(Combo("PortCombo")->count(), 0);
    EXPECT_EQ(Combo("SourceCombo")->count(), 0);
    for (const char *radio : {"CLPRadio", "GenCPRadio", "NoneRadio"}) {
        Click(radio);
    }
}

TEST_F(CameraBridgeFlowsTest, AnyOtherTextChoosesNothing)
{
    Plug();
    CameraBridgeManagerWnd window;
    window.SetDevice(mGrabber.GetDevice());
    window.ShowModeless(static_cast<QWidget *>(nullptr));
    FindIn<QRadioButton>(window, "GenCPRadio")->click();
    FindIn<QPushButton>(window, "GenCPConnectButton")->click();
    ASSERT_TRUE(window.GetBridge(0)->IsConnected());
    window.OnRadioButtonChanged("Something else");
    EXPECT_TRUE(window.GetBridge(0)->IsConnected());
    EXPECT_TRUE(FindIn<QRadioButton>(window, "GenCPRadio")->isChecked());
    EXPECT_TRUE(FindIn<QLabel>(window, "GenCPStatus")->isEnabled());
    EXPECT_FALSE(FindIn<QLabel>(window, "CLPStatus")->isEnabled());
}

TEST_F(CameraBridgeFlowsTest, ABrowserThatCannotBeLoadedIsSaid)
{
    Plug();
    ExpectedBox box;
    WindowWithoutBrowser window;
    window.SetDevice(mGrabber.GetDevice());
    window.ShowModeless(static_cast<QWidget *>(nullptr));
    EXPECT_EQ(box.Title(), "Warning");
    EXPECT_EQ(box.Text(), "GenICam browser could not be loaded.");
    EXPECT_EQ(FindIn<QTreeView>(window, "FeatureTree"), nullptr);
    FindIn<QRadioButton>(window, "GenCPRadio")->click();
    FindIn<QPushButton>(window, "GenCPConnectButton")->click();
    EXPECT_EQ(FindIn<QLabel>(window, "GenCPStatus")->text(), "Connected, 9 parameters available")
        << "the window goes on without it";
    window.Close();
}

TEST_F(CameraBridgeFlowsTest, TheCameraIsAskedUnderAWaitCursor)
{
    Open();
    CursorCount cursors;
    SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0,
                              std::make_shared<WatchedCamera>(mGenCP, cursors.MakeWatch(XMLAddress)));
    SimulatedGrabber::SetPeer(
        LxDeviceSerial::Serial1,
        std::make_shared<WatchedCamera>(std::make_shared<LxSimulatedTextCamera>(), cursors.MakeWatch("ID?")));
    ConnectGenCP();
    cursors.ExpectBusyOnly();
    SelectPort(1);
    Click("CLPRadio");
    Click("CLPProbeButton");
    cursors.ExpectBusyOnly();
    Click("CLPConnectButton");
    cursors.ExpectBusyOnly();

    LxConfigurationWriter writer;
    mWnd->Save(writer);
    LxConfigurationReader reader;
    ASSERT_TRUE(reader.LoadFromString(writer.SaveToString()).IsOK());
    LxStringList errors;
    EXPECT_TRUE(mWnd->Load(reader, errors).IsOK());
    cursors.ExpectBusyOnly();

    SimulatedGrabber::SetPeer(
        LxDeviceSerial::Serial1,
        std::make_shared<WatchedCamera>(std::make_shared<LxSimulatedTextCamera>(), cursors.MakeWatch("?")));
    LoadFile();
    cursors.ExpectBusyOnly();
}

TEST_F(CameraBridgeFlowsTest, AsksForTheXMLIDsUnderAWaitCursor)
{
    Open();
    CursorCount cursors;
    SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0, std::make_shared<WatchedCamera>(mGenCP, cursors.MakeWatch("")));
    Click("GenCPRadio");
    cursors.ExpectBusyOnly();
}

TEST_F(CameraBridgeFlowsTest, AChangeOfThePortReadsEachFeatureOnceUnderAWaitCursor)
{
    Open();
    ConnectGenCP();
    SelectPort(1);
    CursorCount cursors;
    std::mutex mutex;
    std::multiset<std::string> requests;
    const auto watch = cursors.MakeWatch("");
    SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0,
                              std::make_shared<WatchedCamera>(mGenCP, [&](const std::string &aRequest) {
                                  watch(aRequest);
                                  const std::lock_guard lock(mutex);
                                  requests.insert(aRequest.substr(aRequest.size() - 12));  // address and length
                              }));
    SelectPort(0);
    cursors.ExpectBusyOnly();
    {
        const std::lock_guard lock(mutex);
        EXPECT_GE(requests.size(), 7u);
        for (const std::string &request : requests) {
            EXPECT_EQ(requests.count(request), 1u);
        }
    }
    EXPECT_TRUE(WaitForGui([&] { return cursors.mOther > 0; })) << "what follows is read beside the GUI thread";
    mWnd->Close();
}

TEST_F(CameraBridgeFlowsTest, AsksForTheGeometryUnderAWaitCursor)
{
    Plug();
    ExpectedBox box;
    WindowWithoutBrowser window;  // which asks nothing meanwhile
    window.SetDevice(mGrabber.GetDevice());
    window.ShowModeless(static_cast<QWidget *>(nullptr));
    FindIn<QRadioButton>(window, "GenCPRadio")->click();
    FindIn<QPushButton>(window, "GenCPConnectButton")->click();
    ASSERT_TRUE(window.GetBridge(0)->IsConnected());
    CursorCount cursors;
    SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0, std::make_shared<WatchedCamera>(mGenCP, cursors.MakeWatch("")));
    FindIn<QCheckBox>(window, "SyncCheck")->click();
    cursors.ExpectBusyOnly();
    window.Close();
}

TEST_F(CameraBridgeFlowsTest, DeviceIsReplacedWhileABridgeConnects)
{
    Open();
    SelectPort(0);
    Click("GenCPRadio");
    std::atomic<bool> connecting{false};
    std::atomic<bool> replacing{false};
    std::atomic<bool> replaced{false};
    std::thread thread([&] {
        WaitFor([&] { return connecting.load(); });
        replacing = true;
        mWnd->SetDevice(nullptr);
        replaced = true;
    });
    SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0,
                              std::make_shared<WatchedCamera>(mGenCP, [&](const std::string &aRequest) {
                                  if (aRequest.find(XMLAddress) != std::string::npos) {
                                      connecting = true;
                                      WaitFor([&] { return replacing.load(); });
                                  }
                              }));
    Click("GenCPConnectButton");
    EXPECT_TRUE(WaitForGui([&] { return replaced.load(); }));
    thread.join();
    EXPECT_EQ(mWnd->GetBridgeCount(), 0);
    EXPECT_EQ(BrowserRows(), 0);
    EXPECT_EQ(LxSimulation::GetCounters().mSerialPorts, 0u);
}

TEST_F(CameraBridgeFlowsTest, DeviceIsReplacedWhileTheBrowserGivesTheFeaturesBack)
{
    for (const bool again : {false, true}) {
        Open();
        ConnectGenCP();
        ASSERT_TRUE(WaitForGui([&] { return BrowserRows() > 0; }));
        // Detaching the browser processes events, among them this one.
        QMetaObject::invokeMethod(
            qApp, [&] { mWnd->SetDevice(again ? mGrabber.GetDevice() : nullptr); }, Qt::QueuedConnection);
        Click("GenCPConnectButton");
        EXPECT_TRUE(WaitForGui([&] { return mWnd->GetBridgeCount() == (again ? 2 : 0); }));
        if (again) {
            EXPECT_TRUE(WaitForGui([&] { return !mWnd->GetBridge(0)->IsConnected(); }));
        }
        EXPECT_EQ(BrowserRows(), 0);
        mWnd->Close();
    }
}

TEST_F(CameraBridgeFlowsTest, HiddenCameraFilesStayHiddenWhateverWasSaved)
{
    Open();
    LoadFile();
    LxConfigurationWriter writer;
    mWnd->Save(writer);
    mWnd->HideKCF();
    LxConfigurationReader reader;
    ASSERT_TRUE(reader.LoadFromString(writer.SaveToString()).IsOK());
    LxStringList errors;
    EXPECT_TRUE(mWnd->Load(reader, errors).IsOK());
    LxString path;
    EXPECT_TRUE(mWnd->GetBridge(1)->GetKelvraCameraFilePath(path).IsOK());
    EXPECT_EQ(path, LxString(SampleFile));
    SelectPort(1);
    EXPECT_TRUE(Find<QRadioButton>("KCFRadio")->isChecked());
    for (const char *name : {"KCFRadio", "KCFPathEdit", "KCFPathButton", "KCFLoadButton", "KCFStatus"}) {
        EXPECT_FALSE(Find<QWidget>(name)->isVisible()) << name;
    }
    mWnd->ShowKCF();
    EXPECT_TRUE(Find<QWidget>("KCFStatus")->isVisible());
    EXPECT_EQ(Label("KCFStatus"), "Connected, 9 parameters available");
}

TEST_F(CameraBridgeFlowsTest, WithoutDriversNothingCanBeProbed)
{
    Open();
    const auto drivers = LxDetail::CLProtocolDrivers::Get();
    for (const auto &driver : drivers) {
        LxDetail::CLProtocolDrivers::Remove(driver);
    }
    SelectPort(1);
    Click("CLPRadio");
    EXPECT_EQ(Combo("CLPTemplateCombo")->count(), 0);
    EXPECT_EQ(Combo("CLPXMLCombo")->count(), 0);
    EXPECT_FALSE(IsEnabled("CLPProbeButton"));
    EXPECT_FALSE(IsEnabled("CLPConnectButton"));
    for (const auto &driver : drivers) {
        LxDetail::CLProtocolDrivers::Add(driver);
    }
}

TEST_F(CameraBridgeFlowsTest, AFailedConnectionKeepsTheOneThatWas)
{
    Open();
    ConnectGenCP();
    LxSimulatedGenCPFaults faults;
    faults.mUnplugAfter = 8;  // in the middle of the XML
    mGenCP->SetFaults(faults);
    ExpectedBox box;
    Click("GenCPConnectButton");
    EXPECT_EQ(box.Title(), "GenCP Connect Error");
    EXPECT_TRUE(mWnd->GetBridge(0)->IsConnected());
    EXPECT_EQ(Label("GenCPStatus"), "Connected, 9 parameters available");
    mGenCP->SetPlugged(true);
    SelectPort(1);
    SelectPort(0);
    EXPECT_GT(BrowserRows(), 0) << "it gets the features at the next refresh";
}
