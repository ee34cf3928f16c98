// The browser on the node map of a simulated camera, which has a feature of every kind and the difficult cases.

#include <QtWidgets/QMessageBox>
#include <thread>

#include "Backends/Simulation/SimulationTest.h"
#include "DeviceBrowser.h"

namespace
{

constexpr const char *Views[] = {"Tree", "AlphabeticalList"};

class SimulatedCameraBrowser : public SimulationTest
{
protected:
    void SetUp() override
    {
        mDevice = ConnectCamera();
        ASSERT_NE(mDevice, nullptr);
    }
    LxGenParameterArray *Parameters() { return mDevice->GetParameters(); }
    LxGenParameter *Feature(const char *aName) { return Parameters()->Get(aName); }
    QString DeviceText(const char *aName) { return QString(Feature(aName)->ToString().GetAscii()); }
    /// The user goes on where only other threads ask the device.
    static void ExpectBrowsingWithoutWaitingForTheDevice(DeviceBrowser &aBrowser)
    {
        LxSimulation::ClearCalls();
        LxSimulation::SetRecording(true);
        aBrowser.Browse();
        LxSimulation::SetRecording(false);
        for (const LxSimulatedCall &call : LxSimulation::GetCalls()) {
            EXPECT_NE(call.mThread, std::this_thread::get_id())
                << call.mName.GetAscii() << ' ' << call.mArguments.GetAscii();
        }
    }

    std::unique_ptr<LxDevice> mDevice;
};

TEST_F(SimulatedCameraBrowser, ShowsEveryFeatureInBothViews)
{
    for (const char *view : Views) {
        DeviceBrowser browser;
        browser.Show(Parameters(), LxGenRefreshManual, view);
        EXPECT_GT(browser.ShownFeatures().size(), 100);
        EXPECT_EQ(browser.ShownFeatures(), ExpectedFeatures(*Parameters()));
        browser.Refresh();
    }
}

TEST_F(SimulatedCameraBrowser, ShowsErrorsOnlyWhereTheDeviceFails)
{
    DeviceBrowser browser;
    browser.Show(Parameters(), LxGenRefreshManual);
    for (const QString &error : browser.Errors()) {
        EXPECT_TRUE(error.startsWith("SimFailing") || error.startsWith("SimInvalidEnumeration")) << error.toStdString();
    }
    EXPECT_EQ(browser.Errors().size(), 4) << browser.Errors().join('\n').toStdString();
    EXPECT_EQ(browser.Value("SimUnavailable"), "{Not available}");
    EXPECT_EQ(browser.Value("SimRegister"), "{Register}");
    EXPECT_EQ(browser.Value("SimStringConstant"), QString::fromUtf8("Gr\xC3\xBC\xC3\x9F"
                                                                    "e from the simulation"));
    EXPECT_EQ(browser.Value("SimCommand"), "{Command}");
    EXPECT_EQ(browser.Value("SimWriteOnly"), "");
    EXPECT_EQ(browser.Value("SimIntegerMAC").count(':'), 5);
    EXPECT_TRUE(browser.Value("SimIntegerHex").startsWith("0x"));
}

TEST_F(SimulatedCameraBrowser, WritesAnEditOfEveryKindToTheDevice)
{
    for (const char *view : Views) {
        DeviceBrowser browser;
        browser.Show(Parameters(), LxGenRefreshAutomatic, view);
        const QString number = view == Views[0] ? "40" : "50";
        browser.Enter<QSpinBox64>("SimIntegerStep", number);
        EXPECT_EQ(DeviceText("SimIntegerStep"), number);
        EXPECT_EQ(browser.Value("SimIntegerStep"), number + " px");
        browser.Enter<QSpinBox64>("SimIntegerHex", number + 'h');
        int64_t bits = 0;
        EXPECT_TRUE(Parameters()->GetIntegerValue("SimIntegerHex", bits).IsOK());
        EXPECT_EQ(bits, number.toInt(nullptr, 16));
        EXPECT_EQ(browser.Value("SimIntegerHex"), "0x" + number + ' ');
        browser.Enter<QDoubleSpinBox>("SimFloat", QLocale().toString(number.toDouble() + 0.25));
        double real = 0;
        EXPECT_TRUE(dynamic_cast<LxGenFloat *>(Feature("SimFloat"))->GetValue(real).IsOK());
        EXPECT_EQ(real, number.toDouble() + 0.25);
        const QString flag = browser.ChooseOther("SimBoolean");
        EXPECT_EQ(browser.Value("SimBoolean"), flag);
        const QString entry = browser.ChooseOther("SimEnumeration");
        EXPECT_EQ(DeviceText("SimEnumeration"), entry);
        browser.Enter<QLineEdit>("SimString", "text " + number);
        EXPECT_EQ(DeviceText("SimString"), "text " + number);
        browser.Enter<QLineEdit>("GevPersistentIPAddress", "10.0.0." + number);
        int64_t address = 0;
        EXPECT_TRUE(Parameters()->GetIntegerValue("GevPersistentIPAddress", address).IsOK());
        EXPECT_EQ(address, 0x0A000000 + number.toInt());
        int64_t before = 0;
        int64_t after = 0;
        EXPECT_TRUE(Parameters()->GetIntegerValue("SimCommandCount", before).IsOK());
        browser.Press("SimCommand");
        EXPECT_TRUE(WaitForGui([&] {
            Parameters()->GetIntegerValue("SimCommandCount", after);
            return after == before + 1;
        }));
        browser.Enter<QSpinBox64>("SimWriteOnly", number);
        EXPECT_EQ(browser.Value("SimWriteOnly"), number + ' ');
    }
}

TEST_F(SimulatedCameraBrowser, RefusesWhatTheDeviceDoesNotTake)
{
    DeviceBrowser browser;
    browser.Show(Parameters(), LxGenRefreshManual);
    const QString before = DeviceText("SimIntegerStep");
    for (const char *text : {"45", "2000", "-10", "7FFFFFFFFFFFFFFFh"}) {  // off the increment, out of range
        const ExpectedBox box;
        browser.Enter<QSpinBox64>("SimIntegerStep", text);
        EXPECT_TRUE(box.WasShown()) << text;
        EXPECT_EQ(box.Title(), "Error");
        EXPECT_FALSE(box.Text().isEmpty()) << text;
        EXPECT_EQ(DeviceText("SimIntegerStep"), before);
    }
    EXPECT_FALSE(browser.Cell("SimReadOnly", GenBrowserTreeModel::ValueColumn).flags() & Qt::ItemIsEditable);
}

TEST_F(SimulatedCameraBrowser, ShowsWhatDependsOnAnEdit)
{
    DeviceBrowser browser;
    browser.Show(Parameters(), LxGenRefreshManual);
    const bool wasAvailable = browser.Value("SimSwitched") != "{Not available}";
    browser.ChooseOther("SimAvailable");
    EXPECT_TRUE(WaitForGui([&] { return (browser.Value("SimSwitched") != "{Not available}") != wasAvailable; }));
    const auto isEditable = [&] {
        return bool(browser.Cell("SimLocked", GenBrowserTreeModel::ValueColumn).flags() & Qt::ItemIsEditable);
    };
    const bool wasEditable = isEditable();
    browser.ChooseOther("SimLock");
    EXPECT_TRUE(WaitForGui([&] { return isEditable() != wasEditable; }));
}

TEST_F(SimulatedCameraBrowser, KeepsTheModelsPromisesWhileEverythingIsRefreshed)
{
    for (const char *view : Views) {
        for (const LxGenRefresh mode : {LxGenRefreshAutomatic, LxGenRefreshPolling}) {
            DeviceBrowser browser;
            browser.Show(Parameters(), mode, view);
            int changes = 0;
            QObject::connect(browser.Model(), &QAbstractItemModel::dataChanged, browser.Model(), [&] { ++changes; });
            EXPECT_TRUE(WaitForGui([&] { return changes > 5; }));
            browser.Refresh();
            browser.Enter<QSpinBox64>("SimIntegerStep", "60");
            browser.SearchBar()->setText("sim");
        }
    }
}

TEST_F(SimulatedCameraBrowser, ADeviceWithReadsOfAFifthOfASecondLetsTheUserGoOn)
{
    for (const LxGenRefresh mode : {LxGenRefreshAutomatic, LxGenRefreshPolling}) {
        DeviceBrowser browser;
        browser.Show(Parameters(), mode);
        LxSimulation::SetAccessDelay(Camera, 200000);
        LxSimulation::SetRecording(true);
        EXPECT_TRUE(WaitForGui([] { return !LxSimulation::GetCalls("ReadPort").empty(); })) << "nobody reads";
        ExpectBrowsingWithoutWaitingForTheDevice(browser);
        LxSimulation::SetAccessDelay(Camera, 0);
    }
}

TEST_F(SimulatedCameraBrowser, AFrozenDeviceLetsTheUserGoOnAndIsShownWhenItIsBack)
{
    const QStringList expected = ExpectedFeatures(*Parameters());
    for (const LxGenRefresh mode : {LxGenRefreshAutomatic, LxGenRefreshPolling}) {
        DeviceBrowser browser;
        browser.Show(Parameters(), mode);
        LxSimulation::FreezeDevice(Camera);
        ExpectBrowsingWithoutWaitingForTheDevice(browser);
        LxSimulation::ThawDevice(Camera);
        EXPECT_TRUE(WaitForGui([&] { return mDevice->IsConnected(); }));
    }
    DeviceBrowser browser;
    browser.Show(Parameters(), LxGenRefreshAutomatic);
    EXPECT_TRUE(WaitForGui([&] {
        browser.SetGenParameterArray(Parameters());
        return browser.ShownFeatures() == expected;
    }));
}

TEST_F(SimulatedCameraBrowser, ACameraThatIsUnpluggedWhileItsEditorIsOpenIsExplainedAndComesBack)
{
    DeviceBrowser browser;
    browser.Show(Parameters(), LxGenRefreshAutomatic);
    auto *const editor = browser.Open<QSpinBox64>("SimIntegerStep");
    ASSERT_NE(editor, nullptr);
    LxSimulation::SetDevicePresent(Camera, false);
    EXPECT_TRUE(WaitForGui([&] { return !mDevice->IsConnected(); }));
    {
        const ExpectedBox box;
        QTest::keySequence(editor, QKeySequence::SelectAll);
        QTest::keyClicks(editor, "70");
        QTest::keyClick(editor, Qt::Key_Return);
        EXPECT_TRUE(WaitForGui([&] { return box.WasShown(); }));
        EXPECT_FALSE(box.Text().isEmpty());
    }
    LxSimulation::SetDevicePresent(Camera, true);
    EXPECT_TRUE(WaitForGui([&] { return mDevice->IsConnected(); }));
    browser.Tree()->scrollTo(browser.Cell("SimIntegerStep"));
    EXPECT_TRUE(WaitForGui(
        [&] { return browser.Value("SimIntegerStep") != "" && browser.Value("SimIntegerStep") != "70 px"; }));
}

}  // namespace
