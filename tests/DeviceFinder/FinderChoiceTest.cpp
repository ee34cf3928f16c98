#include <QtCore/QElapsedTimer>
#include <QtTest/QTest>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMessageBox>
#include <thread>

#include "FinderTest.h"

// OK and Cancel

TEST_F(FinderTest, OKChoosesTheSelectedDevice)
{
    const ScriptedGEV &info = mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    OnNextModal([this](QWidget *) {
        Select("Device g");
        ASSERT_TRUE(WaitForRounds(1));
        Click("OKButton");
    });
    EXPECT_TRUE(mFinder.ShowModal(nullptr).IsOK());
    EXPECT_EQ(mFinder.GetSelected(), &info);
    EXPECT_FALSE(mFinder.GetQWidget()->isVisible());
    EXPECT_EQ(Tree()->topLevelItemCount(), 0) << "closing empties the window";
    EXPECT_FALSE(mDevices->IsSearching());
}

TEST_F(FinderTest, OKDoesNotWaitForTheRunningSearch)
{
    const ScriptedGEV &info = mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    Select("Device g");
    ASSERT_TRUE(WaitForRounds(2));
    mDevices->HoldSearch(true);
    Click("OKButton");
    EXPECT_EQ(mFinder.GetSelected(), &info);
}

TEST_F(FinderTest, ADeviceCanBeChosenDuringTheFirstSearch)
{
    const ScriptedGEV &info = mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    mDevices->HoldSearch(true);
    Show();
    Select("Device g");
    ASSERT_EQ(mDevices->GetFindCount(), 1u);
    std::thread other([this] { mDevices->HoldSearch(false); });
    Click("OKButton");
    other.join();
    EXPECT_EQ(mFinder.GetSelected(), &info);
}

TEST_F(FinderTest, EnterChoosesTheSelectedDevice)
{
    const ScriptedU3V &info = mDevices->AddU3V(mDevices->AddController("c"), "u");
    OnNextModal([this](QWidget *aDialog) {
        Select("Device u");
        QTest::keyClick(aDialog, Qt::Key_Return);
    });
    EXPECT_TRUE(mFinder.ShowModal(nullptr).IsOK());
    EXPECT_EQ(mFinder.GetSelected(), &info);
}

TEST_F(FinderTest, DoubleClickChoosesADevice)
{
    const ScriptedGEV &info = mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    OnNextModal([this](QWidget *) { DoubleClick("Device g"); });
    EXPECT_TRUE(mFinder.ShowModal(nullptr).IsOK());
    EXPECT_EQ(mFinder.GetSelected(), &info);
}

TEST_F(FinderTest, DoubleClickOnWhatCannotBeChosenDoesNothing)
{
    mDevices->AddAdapter("a");
    mDevices->AddUSB(mDevices->AddController("c"), "s");
    Show();
    DoubleClick("Device s");
    DoubleClick("Interface a");
    EXPECT_TRUE(mFinder.GetQWidget()->isVisible());
    EXPECT_EQ(mFinder.GetSelected(), nullptr);
    EXPECT_TRUE(WaitForRounds(2));
}

TEST_F(FinderTest, AChosenDeviceOnTwoInterfacesIsThatOfTheSelectedOne)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    const ScriptedGEV &second =
        mDevices->AddGEV(mDevices->AddAdapter("b"), "g", [](GEVValues &aValues) { aValues.mDisplayID = "Second"; });
    OnNextModal([this](QWidget *) {
        Select("Second");
        Click("OKButton");
    });
    EXPECT_TRUE(mFinder.ShowModal(nullptr).IsOK());
    EXPECT_EQ(mFinder.GetSelected(), &second);
}

TEST_F(FinderTest, CancelChoosesNothing)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    OnNextModal([this](QWidget *) {
        Select("Device g");
        Click("CancelButton");
    });
    EXPECT_EQ(mFinder.ShowModal(nullptr).GetCode(), 0x4002u);
    EXPECT_EQ(mFinder.GetSelected(), nullptr);
    EXPECT_FALSE(mDevices->IsSearching());
}

TEST_F(FinderTest, OpeningAgainForgetsTheChoice)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    OnNextModal([this](QWidget *) { DoubleClick("Device g"); });
    EXPECT_TRUE(mFinder.ShowModal(nullptr).IsOK());
    EXPECT_NE(mFinder.GetSelected(), nullptr);
    OnNextModal([this](QWidget *) {
        EXPECT_EQ(mFinder.GetSelected(), nullptr);
        ASSERT_TRUE(WaitForLines({"Interface a: Device g"}));
        EXPECT_FALSE(Button("OKButton")->isEnabled());
        Click("CancelButton");
    });
    EXPECT_EQ(mFinder.ShowModal(nullptr).GetCode(), 0x4002u);
    EXPECT_EQ(mFinder.GetSelected(), nullptr);
}

TEST_F(FinderTest, AcceptingNothingGoesOnSearching)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    Select("Interface a");
    mFinder.accept();
    EXPECT_TRUE(mFinder.GetQWidget()->isVisible());
    EXPECT_TRUE(WaitForRounds(2));
}

TEST_F(FinderTest, AcceptingADeviceThatIsGoneGoesOnSearching)
{
    ScriptedGEV &info = mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    Select("Device g");
    info.Change([](GEVValues &aValues) { aValues.mReported = false; });
    ASSERT_TRUE(WaitForRoundsUnseen(2));
    Click("OKButton");
    EXPECT_TRUE(mFinder.GetQWidget()->isVisible());
    EXPECT_EQ(mFinder.GetSelected(), nullptr);
    EXPECT_TRUE(WaitForRounds(2));
}

TEST_F(FinderTest, AU3VDeviceAtASlowPortCannotBeChosen)
{
    mDevices->AddU3V(mDevices->AddController("c"), "u", [](U3VValues &aValues) {
        aValues.mSpeed = 3;
        aValues.mConfigurationValid = false;
    });
    Show();
    Select("Device u");
    EXPECT_EQ(Icon("Device u"), 23);
    ExpectedBox box;
    Click("OKButton");
    EXPECT_EQ(box.Title(), "Error");
    EXPECT_EQ(box.Text(), "This device must be connected to a USB 3.0 (SuperSpeed) port.");
    EXPECT_TRUE(mFinder.GetQWidget()->isVisible());
    EXPECT_EQ(mFinder.GetSelected(), nullptr);
    EXPECT_TRUE(WaitForRounds(2)) << "the search must go on";
}

TEST_F(FinderTest, ANetworkDeviceOnAnotherSubnetCannotBeChosen)
{
    const LxInterface &adapter = mDevices->AddAdapter("a");
    mDevices->AddGEV(adapter, "g", [](GEVValues &aValues) { aValues.mConfigurationValid = false; });
    mDevices->AddKelvra(adapter, "k", [](KelvraValues &aValues) { aValues.mConfigurationValid = false; });
    mFinder.SetKelvraProtocolEnabled(true, true);
    Show();
    Check()->setChecked(true);
    for (const char *device : {"Device g", "Device k"}) {
        Select(device);
        ExpectedBox box;
        Click("OKButton");
        EXPECT_EQ(box.Title(), "Error");
        EXPECT_EQ(box.Text(), QString::fromUtf8(
                                  "The device is on a subnet that is not compatible with your computer\u2019s network "
                                  "interface card (NIC). Configure the device to use dynamic addressing (LLA or "
                                  "DHCP) or a static IP address. "));
        EXPECT_TRUE(mFinder.GetQWidget()->isVisible());
    }
}

TEST_F(FinderTest, ClosingTheWindowFromItsWarningIsSafe)
{
    mDevices->AddU3V(mDevices->AddController("c"), "u",
                     [](U3VValues &aValues) { aValues.mConfigurationValid = false; });
    Show();
    Select("Device u");
    OnNextModal([this](QWidget *aBox) {
        mFinder.Close();
        qobject_cast<QMessageBox *>(aBox)->accept();
    });
    Click("OKButton");
    EXPECT_FALSE(mDevices->IsSearching());
}

// Set IP Address...

TEST_F(FinderTest, SetIPWorksOnTheSelectedDeviceWhileTheSearchRests)
{
    const ScriptedAdapter &adapter = mDevices->AddAdapter("a");
    const ScriptedGEV &info = mDevices->AddGEV(adapter, "g");
    Show();
    Select("Device g");
    ASSERT_TRUE(WaitForRounds(1));
    int calls = 0;
    mFinder.mOnEditIP = [&](const LxDeviceInfo &aInfo, const LxNetworkAdapter &aAdapter) {
        ++calls;
        EXPECT_EQ(&aInfo, &info);
        EXPECT_EQ(&aAdapter, &adapter);
        EXPECT_FALSE(mDevices->IsSearching());
    };
    Click("SetIPButton");
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(WaitForRounds(2)) << "the search must go on";
    EXPECT_EQ(Lines(), QStringList{"Interface a: Device g"});
}

TEST_F(FinderTest, NoDeviceIsDroppedForTheTimeThatSettingAnAddressTook)
{
    const LxInterface &adapter = mDevices->AddAdapter("a");
    mDevices->AddGEV(adapter, "g");
    ScriptedGEV &silent = mDevices->AddGEV(adapter, "h");
    Show();
    Select("Device g");
    ASSERT_TRUE(WaitForLines({"Interface a: Device g, Device h"}));
    ASSERT_TRUE(WaitForRounds(1));
    const QTreeWidgetItem *item = Item("Device h");
    mFinder.mOnEditIP = [&silent](const LxDeviceInfo &, const LxNetworkAdapter &) {
        QElapsedTimer clock;
        clock.start();
        EXPECT_TRUE(WaitForGui([&clock] { return clock.elapsed() > 2100; }));
        silent.Change([](GEVValues &aValues) { aValues.mReported = false; });
    };
    Click("SetIPButton");
    // At once: whether the machine is slow or not, the two seconds are not over yet.
    QEvent refresh(DeviceFinderWnd::RefreshEvent);
    QCoreApplication::sendEvent(&mFinder, &refresh);
    EXPECT_EQ(Item("Device h"), item) << "the silent device has two seconds more";
}

TEST_F(FinderTest, SetIPOfADeviceThatIsGoneSaysSo)
{
    ScriptedGEV &info = mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    Select("Device g");
    info.Change([](GEVValues &aValues) { aValues.mReported = false; });
    ASSERT_TRUE(WaitForRoundsUnseen(2));
    mFinder.mOnEditIP = [](const LxDeviceInfo &, const LxNetworkAdapter &) { ADD_FAILURE(); };
    ExpectedBox box;
    Click("SetIPButton");
    EXPECT_EQ(box.Title(), "Error");
    EXPECT_EQ(box.Text(), "The selected device is no longer available");
    EXPECT_TRUE(WaitForRounds(2));
}

TEST_F(FinderTest, SetIPWithoutADeviceOrAnAdapterSaysSo)
{
    mDevices->AddAdapter("a");
    mDevices->AddGEV(mDevices->AddController("c"), "g");
    mDevices->AddU3V(mDevices->AddController("d"), "u");
    Show();
    for (const char *text : {"Interface a", "Device g", "Device u"}) {
        Select(text);
        ExpectedBox box;
        mFinder.OnBnClickedForceipButton();
        EXPECT_EQ(box.Text(), "The selected device is no longer available") << text;
    }
    EXPECT_TRUE(WaitForRounds(2));
}

// Context menu

namespace
{

QMenu *OpenMenu(QTreeWidget *aTree, QTreeWidgetItem *aItem)
{
    emit aTree->customContextMenuRequested(aTree->visualItemRect(aItem).center());
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

}  // namespace

TEST_F(FinderTest, TheMenuOfANetworkDeviceSetsItsAddress)
{
    mFinder.SetKelvraProtocolEnabled(true, true);
    const LxInterface &adapter = mDevices->AddAdapter("a");
    mDevices->AddGEV(adapter, "g");
    mDevices->AddKelvra(adapter, "k");
    Show();
    for (const char *device : {"Device g", "Device k"}) {
        Select(device);
        ASSERT_TRUE(WaitForRounds(1));
        QMenu *menu = OpenMenu(Tree(), Item(device));
        ASSERT_NE(menu, nullptr) << device;
        ASSERT_EQ(menu->actions().size(), 1);
        EXPECT_EQ(menu->actions()[0]->text(), "Set IP Address...");
        QString edited;
        mFinder.mOnEditIP = [&edited](const LxDeviceInfo &aInfo, const LxNetworkAdapter &) {
            edited = aInfo.GetDisplayID().GetAscii();
        };
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
        EXPECT_EQ(edited, device);
        EXPECT_TRUE(WaitForGui([] { return !QApplication::activePopupWidget(); }));
    }
}

TEST_F(FinderTest, OtherLinesHaveNoMenu)
{
    const LxInterface &adapter = mDevices->AddAdapter("a");
    mDevices->AddGEV(adapter, "g");
    mDevices->AddKelvra(adapter, "k");
    mDevices->AddU3V(mDevices->AddController("c"), "u");
    mFinder.SetGEVEnabled(false, true);
    Show();
    for (const char *text : {"Interface a", "Device g", "Device k", "Device u"}) {
        Select(text);
        EXPECT_EQ(OpenMenu(Tree(), Item(text)), nullptr) << text;
    }
}

TEST_F(FinderTest, BesideTheLinesThereIsNoMenu)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    Select("Device g");
    emit Tree()->customContextMenuRequested(QPoint(5, Tree()->viewport()->height() - 5));
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

// Select from IP Address...

TEST_F(FinderTest, SelectFromIPThatIsCancelledGoesOnSearching)
{
    mDevices->AddAdapter("a");
    Show();
    mFinder.mOnAskForAddress = [this] {
        EXPECT_FALSE(mDevices->IsSearching());
        return std::nullopt;
    };
    Click("SelectFromIPButton");
    EXPECT_TRUE(mDevices->GetFindDeviceCalls().empty());
    EXPECT_TRUE(mFinder.GetQWidget()->isVisible());
    EXPECT_TRUE(WaitForRounds(2));
}

TEST_F(FinderTest, SelectFromIPChoosesWhatAnswersWithoutCheckingIt)
{
    const ScriptedGEV &info = mDevices->AddGEV(mDevices->AddAdapter("a"), "g", [](GEVValues &aValues) {
        aValues.mConfigurationValid = false;
        aValues.mReported = false;
    });
    mDevices->SetAddress("10.1.2.3", &info);
    mFinder.mOnAskForAddress = [] { return LxString("10.1.2.3"); };
    OnNextModal([this](QWidget *) { Click("SelectFromIPButton"); });
    EXPECT_TRUE(mFinder.ShowModal(nullptr).IsOK());
    EXPECT_EQ(mFinder.GetSelected(), &info);
    EXPECT_EQ(mDevices->GetFindDeviceCalls(), std::vector<std::string>{"10.1.2.3"});
}

TEST_F(FinderTest, SelectFromIPThatNobodyAnswersSaysSoAndGoesOnSearching)
{
    mDevices->AddAdapter("a");
    Show();
    mFinder.mOnAskForAddress = [] { return LxString("10.9.9.9"); };
    ExpectedBox box;
    Click("SelectFromIPButton");
    EXPECT_EQ(box.Title(), "Error");
    EXPECT_EQ(box.Text(), "Could not contact device.");
    EXPECT_TRUE(mFinder.GetQWidget()->isVisible());
    EXPECT_EQ(mFinder.GetSelected(), nullptr);
    EXPECT_TRUE(WaitForRounds(2));
}
