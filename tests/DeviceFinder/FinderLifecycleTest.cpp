#include <QtCore/QElapsedTimer>
#include <QtTest/QTest>
#include <QtWidgets/QVBoxLayout>
#include <memory>

#include "FinderTest.h"
#include "LxGUI/LxDeviceFinderWnd.h"

TEST_F(FinderTest, CloseStopsTheSearchSoonAndEmptiesTheWindow)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    Select("Device g");
    mDevices->HoldSearch(true);
    ASSERT_TRUE(WaitForGui([this] { return mDevices->IsSearching(); }));
    EXPECT_TRUE(mFinder.Close().IsOK());
    EXPECT_FALSE(mDevices->IsSearching()) << "a search whose results nobody wants must be cut short";
    EXPECT_EQ(Tree()->topLevelItemCount(), 0);
    EXPECT_EQ(Table("InterfaceTable")->rowCount(), 0);
    EXPECT_EQ(Table("DeviceTable")->rowCount(), 0);
    EXPECT_TRUE(mFinder.Close().IsOK());
}

TEST_F(FinderTest, EscapeStopsTheSearch)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    ASSERT_TRUE(WaitForLines({"Interface a: Device g"}));
    QTest::keyClick(mFinder.GetQWidget(), Qt::Key_Escape);
    EXPECT_FALSE(mFinder.GetQWidget()->isVisible());
    EXPECT_FALSE(mDevices->IsSearching());
    EXPECT_EQ(Tree()->topLevelItemCount(), 0);
}

TEST_F(FinderTest, TheCloseButtonOfTheWindowStopsTheSearch)
{
    Show();
    ASSERT_TRUE(WaitForRounds(1));
    mFinder.GetQWidget()->close();
    EXPECT_FALSE(mDevices->IsSearching());
}

TEST_F(FinderTest, WorksAgainAfterEveryWayOfClosing)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    for (int i = 0; i < 4; ++i) {
        Show();
        ASSERT_TRUE(WaitForLines({"Interface a: Device g"})) << i;
        Select("Device g");
        EXPECT_TRUE(Button("OKButton")->isEnabled()) << i;
        switch (i % 3) {
            case 0:
                mFinder.Close();
                break;
            case 1:
                QTest::keyClick(mFinder.GetQWidget(), Qt::Key_Escape);
                break;
            default:
                Click("CancelButton");
        }
    }
}

TEST_F(FinderTest, AModalShowAfterAModelessOneHasOneSetOfControls)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    mFinder.Close();
    OnNextModal([this](QWidget *aDialog) {
        EXPECT_EQ(aDialog->findChildren<QTreeWidget *>().size(), 1);
        EXPECT_EQ(aDialog->size(), QSize(900, 600));
        DoubleClick("Device g");
    });
    EXPECT_TRUE(mFinder.ShowModal(nullptr).IsOK());
}

TEST_F(FinderTest, RefreshesThatComeAfterClosingAreIgnored)
{
    mDevices->AddAdapter("a");
    Show();
    mFinder.Close();
    QCoreApplication::postEvent(&mFinder, new QEvent(DeviceFinderWnd::RefreshEvent));
    QCoreApplication::postEvent(mFinder.GetQWidget(), new QEvent(DeviceFinderWnd::RefreshEvent));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(Tree()->topLevelItemCount(), 0);
}

TEST_F(FinderTest, SlotsAreSafeBeforeOpening)
{
    const std::unique_ptr<QWidget> widget(mFinder.GetQWidget());
    ASSERT_NE(widget, nullptr);
    mFinder.accept();
    mFinder.OnTvnSelchangedTree();
    mFinder.OnNMDblclkTree(nullptr, 0);
    mFinder.OnContextMenu(QPoint(1, 1));
    mFinder.OnBnClickedShowunreachableCheck(Qt::Checked);
    mFinder.mOnAskForAddress = [] { return LxString("10.1.2.3"); };
    Click("SelectFromIPButton");
    ExpectedBox box;
    mFinder.OnBnClickedForceipButton();
    EXPECT_TRUE(box.WasShown());
    mFinder.reject();
    EXPECT_EQ(mFinder.GetSelected(), nullptr);
    EXPECT_EQ(mDevices->GetFindCount(), 0u);
}

TEST_F(FinderTest, SlotsAreSafeWithoutAnyWidget)
{
    mFinder.OnTvnSelchangedTree();
    mFinder.OnNMDblclkTree(nullptr, 0);
    mFinder.OnContextMenu(QPoint(1, 1));
    mFinder.OnBnClickedShowunreachableCheck(Qt::Unchecked);
    mFinder.accept();
    mFinder.reject();
    EXPECT_TRUE(mFinder.Close().IsOK());
}

TEST_F(FinderTest, WorksInAWidgetOfTheHost)
{
    const ScriptedGEV &info = mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    QWidget host;
    host.resize(1000, 700);
    const Qt::WindowFlags flags = host.windowFlags();
    ASSERT_TRUE(mFinder.Create(&host).IsOK());
    EXPECT_EQ(host.windowFlags(), flags);
    EXPECT_GT(host.maximumWidth(), 1000);
    Select("Device g");
    ASSERT_TRUE(WaitForRounds(1));
    Click("OKButton");
    EXPECT_EQ(mFinder.GetSelected(), &info);
    EXPECT_TRUE(host.isVisible()) << "the host's widget stays";
    EXPECT_FALSE(mDevices->IsSearching());
    Click("OKButton");
    mFinder.accept();
    mFinder.Close();
    EXPECT_EQ(mFinder.GetSelected(), &info);
}

TEST_F(FinderTest, TheDeathOfTheHostsWidgetEndsTheSearch)
{
    const LxInterface &adapter = mDevices->AddAdapter("a");
    for (int i = 0; i < 20; ++i) {
        mDevices->AddGEV(adapter, "g" + std::to_string(i));
    }
    auto host = std::make_unique<QWidget>();
    ASSERT_TRUE(mFinder.Create(host.get()).IsOK());
    ASSERT_TRUE(WaitForGui([this] { return Item("Device g19") != nullptr; }));
    host.reset();
    EXPECT_FALSE(mDevices->IsSearching());
    QCoreApplication::sendPostedEvents();
    mFinder.Close();
}

TEST_F(FinderTest, SurvivesTheDeathOfItsControlsDuringTheSearch)
{
    const LxInterface &adapter = mDevices->AddAdapter("a");
    for (int i = 0; i < 20; ++i) {
        mDevices->AddGEV(adapter, "g" + std::to_string(i));
    }
    QWidget host;
    ASSERT_TRUE(mFinder.Create(&host).IsOK());
    ASSERT_TRUE(WaitForGui([this] { return Item("Device g19") != nullptr; }));
    qDeleteAll(host.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly));
    ASSERT_TRUE(WaitForRounds(3)) << "nobody has closed the window";
    QCoreApplication::sendPostedEvents();
    mFinder.OnTvnSelchangedTree();
    mFinder.OnContextMenu(QPoint(1, 1));
    mFinder.accept();
    mFinder.Close();
    EXPECT_FALSE(mDevices->IsSearching());
}

TEST_F(FinderTest, MovesFromOneHostToAnotherWhileItSearches)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    auto first = std::make_unique<QWidget>();
    QWidget second;
    ASSERT_TRUE(mFinder.Create(first.get()).IsOK());
    ASSERT_TRUE(WaitForLines({"Interface a: Device g"}));
    ASSERT_TRUE(mFinder.Create(&second).IsOK());
    ASSERT_TRUE(WaitForLines({"Interface a: Device g"}));
    first.reset();
    ASSERT_TRUE(WaitForRounds(2));
    EXPECT_EQ(Lines(), QStringList{"Interface a: Device g"});
    mFinder.Close();
}

TEST_F(FinderTest, DestroyingAnOpenWindowEndsTheSearch)
{
    const LxInterface &adapter = mDevices->AddAdapter("a");
    for (int i = 0; i < 20; ++i) {
        mDevices->AddGEV(adapter, "g" + std::to_string(i));
    }
    for (int i = 0; i < 5; ++i) {
        auto finder = std::make_unique<LxDeviceFinderWnd>();
        finder->ShowModeless();
        const size_t before = mDevices->GetFindCount();
        ASSERT_TRUE(WaitForGui([this, before] { return mDevices->GetFindCount() > before; }));
        finder.reset();
        EXPECT_FALSE(mDevices->IsSearching());
    }
}

TEST_F(FinderTest, TheChosenDeviceOutlivesTheSearch)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    LxDeviceFinderWnd finder;
    OnNextModal([&finder](QWidget *aDialog) {
        auto *tree = aDialog->findChild<QTreeWidget *>("DeviceTree");
        ASSERT_TRUE(WaitForGui([tree] { return tree->topLevelItem(0)->childCount() > 0; }));
        tree->setCurrentItem(tree->topLevelItem(0)->child(0));
        QTest::mouseClick(aDialog->findChild<QPushButton *>("OKButton"), Qt::LeftButton);
    });
    ASSERT_TRUE(finder.ShowModal().IsOK());
    ASSERT_NE(finder.GetSelected(), nullptr);
    EXPECT_STREQ(finder.GetSelected()->GetDisplayID().GetAscii(), "Device g");
}
