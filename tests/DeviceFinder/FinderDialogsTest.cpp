// The dialogs that the finder opens, where they meet the finder and the devices.

#include <QtTest/QTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

#include "FinderTest.h"
#include "LxGUI/DeviceFinder/ForceIPDlg.h"
#include "LxSimulation/LxSimulation.h"
#include "LxSystem/LxSystem.h"

// Set IP Address...

TEST_F(FinderTest, TheAddressOfTheSelectedDeviceIsSetWhileTheSearchRests)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    Select("Device g");
    ASSERT_TRUE(WaitForRounds(1));
    OnNextModal([this](QWidget *aDialog) {
        EXPECT_EQ(aDialog->parentWidget(), mFinder.GetQWidget());
        EXPECT_FALSE(mDevices->IsSearching());
        QTest::keyClicks(Child<QLineEdit>(aDialog, "DeviceIPAddress"), "20");
        QTest::mouseClick(Child<QPushButton>(aDialog, "OKButton"), Qt::LeftButton);
    });
    Click("SetIPButton");
    EXPECT_EQ(mDevices->GetIPConfigurationCalls(),
              std::vector<std::string>{"GEV 00:11:22:33:44:55 192.168.1.20 255.255.255.0 0.0.0.0"});
    EXPECT_TRUE(WaitForRounds(2)) << "the search must go on";
}

TEST_F(FinderTest, CancelOfTheAddressGoesOnSearching)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    Select("Device g");
    ASSERT_TRUE(WaitForRounds(1));
    OnNextModal(
        [](QWidget *aDialog) { QTest::mouseClick(Child<QPushButton>(aDialog, "CancelButton"), Qt::LeftButton); });
    Click("SetIPButton");
    EXPECT_TRUE(mDevices->GetIPConfigurationCalls().empty());
    EXPECT_TRUE(WaitForRounds(2)) << "the search must go on";
}

TEST_F(FinderTest, ClosingTheWindowClosesTheAddressToo)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    Select("Device g");
    ASSERT_TRUE(WaitForRounds(1));
    OnNextModal([this](QWidget *aDialog) {
        mFinder.Close();
        EXPECT_FALSE(aDialog->isVisible());
    });
    Click("SetIPButton");
    EXPECT_TRUE(mDevices->GetIPConfigurationCalls().empty());
    EXPECT_FALSE(mDevices->IsSearching());
}

TEST(FinderOverAddresses, DestroyingTheWindowUnderADialogIsSafe)
{
    const ScriptedDevices devices;
    devices->AddGEV(devices->AddAdapter("a"), "g");
    for (const char *button : {"SelectFromIPButton", "SetIPButton"}) {
        auto finder = std::make_unique<DeviceFinderWnd>();
        ASSERT_TRUE(finder->ShowModeless(static_cast<QWidget *>(nullptr)).IsOK());
        const QPointer<QWidget> widget = finder->GetQWidget();
        auto *tree = widget->findChild<QTreeWidget *>();
        ASSERT_TRUE(WaitForGui([tree] { return tree->topLevelItem(0) && tree->topLevelItem(0)->childCount() == 1; }));
        tree->topLevelItem(0)->child(0)->setSelected(true);
        const size_t rounds = devices->GetFindCount();
        ASSERT_TRUE(WaitForGui([&] { return devices->GetFindCount() > rounds; }));
        OnNextModal([&finder](QWidget *) { finder.reset(); });
        // Not with the mouse: the button dies under the click.
        QMetaObject::invokeMethod(finder.get(), button == std::string("SetIPButton") ? "OnBnClickedForceipButton"
                                                                                     : "OnBnClickedSelectfromipButton");
        EXPECT_EQ(finder, nullptr);
        EXPECT_FALSE(devices->IsSearching());
    }
    EXPECT_TRUE(devices->GetIPConfigurationCalls().empty());
}

// With simulated devices

TEST(ForceIPDlgOfSimulatedDevice, GivesItAnAddressWithWhichItCanBeConnected)
{
    LxSimulation::Clear();
    LxSimulation::Enable(true);
    LxSimulatedNetworkAdapter adapter;
    adapter.mName = "eth0";
    adapter.mAddresses = {{"192.168.1.10", "255.255.255.0"}};
    ASSERT_TRUE(LxSimulation::SetNetworkAdapter(adapter).IsOK());
    for (const int type : {LxDeviceInfoTypeGEV, LxDeviceInfoTypeKelvra}) {
        LxSimulatedDevice device;
        device.mType = type;
        device.mMACAddress = type == LxDeviceInfoTypeGEV ? "02:00:00:00:00:20" : "02:00:00:00:00:21";
        device.mIPAddress = "10.9.9.9";
        device.mSubnetMask = "255.255.255.0";
        device.mInterfaces = {"eth0"};
        ASSERT_TRUE(LxSimulation::SetDevice(device).IsOK());
        LxSystem system;
        ASSERT_TRUE(system.Find().IsOK());
        const auto *found = dynamic_cast<const LxNetworkAdapter *>(system.GetInterface(0));
        ASSERT_NE(found, nullptr);
        const LxDeviceInfo *info = found->GetDeviceInfo(found->GetDeviceCount() - 1);
        ASSERT_EQ(info->GetType(), type);
        EXPECT_FALSE(info->IsConfigurationValid());

        ForceIPDlg dialog(*info, *found);
        dialog.show();
        QTest::keyClicks(Child<QLineEdit>(&dialog, "DeviceIPAddress"), type == LxDeviceInfoTypeGEV ? "20" : "21");
        QTest::keyClick(&dialog, Qt::Key_Return);
        EXPECT_EQ(dialog.result(), QDialog::Accepted);
        ASSERT_TRUE(system.Find().IsOK());
        EXPECT_TRUE(info->IsConfigurationValid());
        LxSimulatedDevice changed;
        ASSERT_TRUE(LxSimulation::GetDevice(device.mMACAddress, changed).IsOK());
        EXPECT_EQ(changed.mIPAddress.GetString(), type == LxDeviceInfoTypeGEV ? "192.168.1.20" : "192.168.1.21");
    }
    LxSimulation::Disable();
    LxSimulation::Clear();
}

// Select from IP Address...

TEST_F(FinderTest, CancelOfSelectFromIPGoesOnSearchingWithNothingSelected)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    ASSERT_TRUE(WaitForRounds(1));
    OnNextModal([this](QWidget *aDialog) {
        EXPECT_EQ(aDialog->parentWidget(), mFinder.GetQWidget());
        EXPECT_FALSE(mDevices->IsSearching());
        QTest::keyClicks(Child<QLineEdit>(aDialog, "AddressEdit"), "10.1.2.3");
        QTest::mouseClick(Child<QPushButton>(aDialog, "CancelButton"), Qt::LeftButton);
    });
    Click("SelectFromIPButton");
    EXPECT_TRUE(mDevices->GetFindDeviceCalls().empty());
    EXPECT_EQ(mFinder.GetSelected(), nullptr);
    EXPECT_TRUE(mFinder.GetQWidget()->isVisible());
    EXPECT_TRUE(WaitForRounds(2)) << "the search must go on";
}

TEST_F(FinderTest, AnAddressThatIsTypedChoosesTheDeviceThere)
{
    const ScriptedGEV &info =
        mDevices->AddGEV(mDevices->AddAdapter("a"), "g", [](GEVValues &aValues) { aValues.mReported = false; });
    mDevices->SetAddress("10.1.2.3", &info);
    OnNextModal([this](QWidget *) {
        OnNextModal([](QWidget *aDialog) {
            QTest::keyClicks(Child<QLineEdit>(aDialog, "AddressEdit"), "10.1.2.3");
            QTest::keyClick(aDialog, Qt::Key_Return);
        });
        Click("SelectFromIPButton");
    });
    EXPECT_TRUE(mFinder.ShowModal(nullptr).IsOK());
    EXPECT_EQ(mFinder.GetSelected(), &info);
    EXPECT_EQ(mDevices->GetFindDeviceCalls(), std::vector<std::string>{"10.1.2.3"});
}

TEST_F(FinderTest, AnAddressThatNobodyAnswersSaysSoAfterTheDialog)
{
    mDevices->AddAdapter("a");
    Show();
    std::optional<ExpectedBox> box;
    OnNextModal([&](QWidget *aDialog) {
        QTest::keyClicks(Child<QLineEdit>(aDialog, "AddressEdit"), "10.9.9.9");
        QTest::keyClick(aDialog, Qt::Key_Return);
        box.emplace();
    });
    Click("SelectFromIPButton");
    ASSERT_TRUE(box);
    EXPECT_EQ(box->Title(), "Error");
    EXPECT_EQ(box->Text(), "Could not contact device.");
    EXPECT_EQ(mFinder.GetSelected(), nullptr);
    EXPECT_TRUE(WaitForRounds(2)) << "the search must go on";
}

TEST_F(FinderTest, ClosingTheWindowClosesSelectFromIP)
{
    Show();
    OnNextModal([this](QWidget *aDialog) {
        QTest::keyClicks(Child<QLineEdit>(aDialog, "AddressEdit"), "10.1.2.3");
        mFinder.Close();
        EXPECT_FALSE(aDialog->isVisible());
    });
    Click("SelectFromIPButton");
    EXPECT_TRUE(mDevices->GetFindDeviceCalls().empty());
    EXPECT_FALSE(mDevices->IsSearching());
}
