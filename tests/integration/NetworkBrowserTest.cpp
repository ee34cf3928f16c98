// The browser on the node maps of cameras that are processes of their own on a real network.

#include <gtest/gtest.h>

#include <QtCore/QThread>
#include <atomic>

#include "CameraProcess.h"
#include "GenBrowser/DeviceBrowser.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "LxSystem/LxSystem.h"
#include "NetworkCameras.h"

namespace
{

constexpr const char *Views[] = {"Tree", "AlphabeticalList"};

/// A camera and one of its features of each kind; an empty name where it has none that can be edited.
struct Kind
{
    const char *mName;
    std::vector<std::string> (*mCommand)();
    const char *mInteger;
    const char *mFloat;
    const char *mEnumeration;
    const char *mBoolean;
    const char *mString;
    const char *mAddress;
    const char *mCommandFeature;
};

/// Counts the readings of a browser's features by the thread that made them; outlives the model.
class ReadingCounter
{
public:
    explicit ReadingCounter(GenBrowserTreeModel &aModel)
    {
        GenBrowserTreeWalk walk(aModel);
        for (QModelIndex index = walk.Next(); index.isValid(); index = walk.Next()) {
            GenBrowserTreeItem *const item = GenBrowserTreeModel::Item(index);
            QObject::connect(
                item, &GenBrowserTreeItem::UpdateDataSignal, item,
                [this] { ++(QThread::currentThread() == mGui ? mOnGui : mElsewhere); }, Qt::DirectConnection);
        }
    }

    std::atomic<int> mOnGui{0};
    std::atomic<int> mElsewhere{0};

private:
    QThread *const mGui = QThread::currentThread();
};

class NetworkBrowser : public testing::TestWithParam<Kind>
{
protected:
    void SetUp() override
    {
        mCamera = std::make_unique<CameraProcess>(GetParam().mCommand());
        ASSERT_TRUE(mCamera->Start());
        mDevice = Connect(FindAt(mSystem, "lo"));
        ASSERT_NE(mDevice, nullptr);
    }
    LxGenParameterArray *Parameters() { return mDevice->GetParameters(); }
    QString DeviceText(const char *aName) { return QString(Parameters()->Get(aName)->ToString().GetAscii()); }
    int64_t DeviceInteger(const char *aName)
    {
        int64_t value = 0;
        EXPECT_TRUE(Parameters()->GetIntegerValue(aName, value).IsOK()) << aName;
        return value;
    }

    std::unique_ptr<CameraProcess> mCamera;
    LxSystem mSystem;
    std::unique_ptr<LxDeviceGEV> mDevice;
};

}  // namespace

TEST_P(NetworkBrowser, ShowsEveryFeatureInBothViewsAndKeepsTheModelsPromises)
{
    for (const char *view : Views) {
        for (const LxGenRefresh mode : {LxGenRefreshPolling, LxGenRefreshAutomatic}) {
            DeviceBrowser browser;
            browser.Show(Parameters(), mode, view);
            EXPECT_GT(browser.ShownFeatures().size(), 10);
            EXPECT_EQ(browser.ShownFeatures(), ExpectedFeatures(*Parameters()));
            int changes = 0;
            QObject::connect(browser.Model(), &QAbstractItemModel::dataChanged, browser.Model(), [&] { ++changes; });
            browser.Refresh();
            EXPECT_TRUE(WaitForGui([&] { return changes > 5; }));
            browser.SearchBar()->setText("e");
        }
    }
}

TEST_P(NetworkBrowser, WritesAnEditOfEveryKindToTheCamera)
{
    const Kind &kind = GetParam();
    DeviceBrowser browser;
    browser.Show(Parameters(), LxGenRefreshAutomatic);
    browser.Enter<QSpinBox64>(kind.mInteger, "100h");
    EXPECT_EQ(DeviceInteger(kind.mInteger), 0x100);
    browser.Enter<QDoubleSpinBox>(kind.mFloat, QLocale().toString(64.0));
    double real = 0;
    EXPECT_TRUE(Parameters()->GetFloatValue(kind.mFloat, real).IsOK());
    EXPECT_EQ(real, 64.0);
    const QString entry = browser.ChooseOther(kind.mEnumeration);
    EXPECT_EQ(DeviceText(kind.mEnumeration), entry);
    if (*kind.mBoolean) {
        const QString chosen = browser.ChooseOther(kind.mBoolean);
        bool isSet = false;
        EXPECT_TRUE(Parameters()->GetBooleanValue(kind.mBoolean, isSet).IsOK());
        EXPECT_EQ(chosen, isSet ? "True" : "False");
    }
    if (*kind.mString) {
        browser.Enter<QLineEdit>(kind.mString, "bench 7");
        EXPECT_EQ(DeviceText(kind.mString), "bench 7");
    }
    if (*kind.mAddress) {
        browser.Enter<QLineEdit>(kind.mAddress, "10.0.0.7");
        EXPECT_EQ(DeviceInteger(kind.mAddress), 0x0A000007);
    }
    browser.Press(kind.mCommandFeature);
    EXPECT_TRUE(WaitForGui([&] { return browser.Value(kind.mCommandFeature) == "{Command}"; }));
    EXPECT_TRUE(browser.Errors().filter(kind.mCommandFeature).isEmpty());
}

TEST_P(NetworkBrowser, ACameraThatStopsAnsweringIsWaitedForByNobodyWhoBrowsesIt)
{
    for (const LxGenRefresh mode : {LxGenRefreshPolling, LxGenRefreshAutomatic}) {
        DeviceBrowser browser;
        browser.Show(Parameters(), mode);
        const ReadingCounter readings(*browser.Model());
        mCamera->Freeze();
        browser.Browse();
        EXPECT_EQ(readings.mOnGui, 0);
        mCamera->Thaw();
        EXPECT_TRUE(WaitForGui([&] { return mDevice->IsConnected() && Parameters()->GetAccessMode() == 0; }));
    }
}

TEST_P(NetworkBrowser, ACameraThatStopsAnsweringKeepsItsLastValuesAndIsReadAgainWhenItIsBack)
{
    const char *const name = GetParam().mInteger;
    DeviceBrowser browser;
    browser.Show(Parameters(), LxGenRefreshAutomatic);
    browser.Tree()->scrollTo(browser.Cell(name));
    const QString value = browser.Value(name);
    EXPECT_FALSE(value.isEmpty());
    const QStringList errors = browser.Errors();
    mCamera->Freeze();
    EXPECT_TRUE(WaitForGui([&] { return !mDevice->IsConnected(); }));
    EXPECT_EQ(browser.Value(name), value);
    EXPECT_EQ(browser.Errors(), errors);

    mCamera->Thaw();
    EXPECT_TRUE(WaitForGui([&] { return mDevice->IsConnected(); }));
    ReadingCounter readings(*browser.Model());
    EXPECT_TRUE(WaitForGui([&] { return readings.mElsewhere > 5; })) << "the refresh thread goes on";
    EXPECT_EQ(browser.Value(name), value);
    EXPECT_EQ(browser.Errors(), errors);
    EXPECT_EQ(readings.mOnGui, 0);
    browser.Close();
}

INSTANTIATE_TEST_SUITE_P(Cameras, NetworkBrowser,
                         testing::Values(Kind{"Emulator", [] { return EmulatorCommand(); }, "Width", "SimFloat",
                                              "SimEnumeration", "SimBoolean", "DeviceUserID", "GevPersistentIPAddress",
                                              "SimCommand"},
                                         Kind{"Fake", [] { return FakeCameraCommand(); }, "Width", "ExposureTimeAbs",
                                              "PixelFormat", "", "", "", "AcquisitionStop"}),
                         [](const auto &aInfo) { return std::string(aInfo.param.mName); });
