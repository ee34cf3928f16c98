#include <QtCore/QElapsedTimer>
#include <QtCore/QMetaMethod>
#include <QtCore/QRegularExpression>
#include <QtCore/QThread>
#include <QtTest/QTest>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <atomic>

#include "FinderTest.h"
#include "LxGUI/LxDeviceFinderWnd.h"

namespace
{

/// Counts the refresh events that reach the window.
class RefreshCounter : public QObject
{
public:
    bool eventFilter(QObject *, QEvent *aEvent) override
    {
        mCount += aEvent->type() == DeviceFinderWnd::RefreshEvent;
        return false;
    }

    int mCount = 0;
};

}  // namespace

// Layout

TEST_F(FinderTest, IsADialogOfFixedSize)
{
    Show();
    QWidget *widget = mFinder.GetQWidget();
    EXPECT_EQ(widget->windowTitle(), "Device Selection");
    EXPECT_EQ(widget->size(), QSize(900, 600));
    EXPECT_EQ(widget->minimumSize(), widget->maximumSize());
    EXPECT_TRUE(widget->windowFlags() & Qt::CustomizeWindowHint);
    EXPECT_FALSE(widget->windowFlags() & Qt::WindowContextHelpButtonHint);
}

TEST_F(FinderTest, HasItsTexts)
{
    Show();
    QStringList labels;
    for (const QLabel *label : mFinder.GetQWidget()->findChildren<QLabel *>()) {
        labels << label->text();
        EXPECT_TRUE(label->font().bold()) << label->text().toStdString();
    }
    labels.sort();
    EXPECT_EQ(labels, (QStringList{"Available Devices", "Device Information", "Interface Information"}));
    EXPECT_EQ(Button("SetIPButton")->text(), "Set IP Address...");
    EXPECT_EQ(Button("SelectFromIPButton")->text(), "Select from IP Address...");
    EXPECT_EQ(Button("OKButton")->text(), "OK");
    EXPECT_EQ(Button("CancelButton")->text(), "Cancel");
    EXPECT_EQ(Check()->text(), "Show unreachable Network Devices");
}

TEST_F(FinderTest, LaysOutTreeLeftTablesRightButtonsBelow)
{
    Show();
    const auto rect = [this](QWidget *aWidget) {
        return QRect(aWidget->mapTo(mFinder.GetQWidget(), QPoint(0, 0)), aWidget->size());
    };
    const QRect tree = rect(Tree());
    const QRect interfaces = rect(Table("InterfaceTable"));
    const QRect devices = rect(Table("DeviceTable"));
    EXPECT_GE(tree.width(), 540);
    EXPECT_LT(tree.right(), interfaces.left());
    EXPECT_LT(interfaces.bottom(), devices.top());
    EXPECT_LE(interfaces.height(), 140);
    EXPECT_LT(tree.bottom(), rect(Check()).top());
    EXPECT_LT(rect(Check()).bottom(), rect(Button("SetIPButton")).top());
    EXPECT_LT(rect(Button("SetIPButton")).right(), rect(Button("SelectFromIPButton")).left());
    EXPECT_LT(rect(Button("SelectFromIPButton")).right(), rect(Button("OKButton")).left());
    EXPECT_LT(rect(Button("OKButton")).right(), rect(Button("CancelButton")).left());
    EXPECT_GE(rect(Button("SetIPButton")).width(), 140);
    EXPECT_GE(rect(Button("SelectFromIPButton")).width(), 140);
}

TEST_F(FinderTest, TablesAreOnlyLookedAt)
{
    Show();
    for (const char *name : {"InterfaceTable", "DeviceTable"}) {
        const QTableWidget *table = Table(name);
        EXPECT_EQ(table->columnCount(), 2);
        EXPECT_EQ(table->selectionMode(), QAbstractItemView::NoSelection);
        EXPECT_EQ(table->editTriggers(), QAbstractItemView::NoEditTriggers);
        EXPECT_TRUE(table->horizontalHeader()->isHidden());
        EXPECT_TRUE(table->verticalHeader()->isHidden());
        EXPECT_TRUE(table->horizontalHeader()->stretchLastSection());
    }
    EXPECT_EQ(Table("DeviceTable")->horizontalHeader()->sectionResizeMode(0), QHeaderView::ResizeToContents);
}

TEST_F(FinderTest, EveryControlHasAnAccessibleNameAndIsReachedByTab)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    Select("Device g");
    mFinder.GetQWidget()->activateWindow();
    ASSERT_TRUE(WaitForGui([this] { return mFinder.GetQWidget()->isActiveWindow(); }));
    Tree()->setFocus();
    QStringList order;
    QWidget *widget = Tree();
    do {
        order << widget->objectName();
        EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
        QTest::keyClick(widget, Qt::Key_Tab);
        widget = QApplication::focusWidget();
        ASSERT_NE(widget, nullptr);
    } while (widget != Tree() && order.size() < 20);
    EXPECT_EQ(order, (QStringList{"DeviceTree", "InterfaceTable", "DeviceTable", "ShowUnreachableCheck", "SetIPButton",
                                  "SelectFromIPButton", "OKButton", "CancelButton"}));
}

TEST_F(FinderTest, OKIsTheDefaultButton)
{
    Show();
    EXPECT_TRUE(Button("OKButton")->isDefault());
    EXPECT_FALSE(Button("SetIPButton")->autoDefault());
    EXPECT_FALSE(Button("SelectFromIPButton")->autoDefault());
}

TEST_F(FinderTest, SlotsAreInTheirOrder)
{
    const QMetaObject &meta = DeviceFinderWnd::staticMetaObject;
    QStringList slots_;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        slots_ << meta.method(i).methodSignature();
    }
    EXPECT_EQ(slots_, (QStringList{"OnTvnSelchangedTree()", "OnBnClickedShowunreachableCheck(int)", "accept()",
                                   "reject()", "OnNMDblclkTree(QTreeWidgetItem*,int)", "OnBnClickedForceipButton()",
                                   "OnBnClickedSelectfromipButton()", "OnContextMenu(QPoint)"}));
}

TEST_F(FinderTest, AnswersToTheNameOfItsSink)
{
    EXPECT_NE(mFinder.qt_metacast("LxSystemEventSink"), nullptr);
    EXPECT_NE(mFinder.qt_metacast("DeviceFinderWnd"), nullptr);
    EXPECT_EQ(mFinder.qt_metacast("Other"), nullptr);
}

// Options

TEST(FinderOptions, HaveTheirDefaultsAndKeepWhatIsSet)
{
    LxDeviceFinderWnd finder;
    bool enabled = false;
    bool visible = false;
    finder.GetGEVEnabled(enabled, visible);
    EXPECT_TRUE(enabled && visible);
    finder.GetU3VEnabled(enabled, visible);
    EXPECT_TRUE(enabled && visible);
    finder.GetKelvraProtocolEnabled(enabled, visible);
    EXPECT_FALSE(enabled);
    EXPECT_TRUE(visible);

    finder.SetGEVEnabled(false, true);
    finder.SetU3VEnabled(true, false);
    finder.SetKelvraProtocolEnabled(true, true);
    finder.GetGEVEnabled(enabled, visible);
    EXPECT_TRUE(!enabled && visible);
    finder.GetU3VEnabled(enabled, visible);
    EXPECT_TRUE(enabled && !visible);
    finder.GetKelvraProtocolEnabled(enabled, visible);
    EXPECT_TRUE(enabled && visible);
    EXPECT_EQ(finder.GetSelected(), nullptr);
    EXPECT_STREQ(finder.GetTitle().GetAscii(), "Device Selection");
    int x = 0, y = 0, width = 0, height = 0;
    finder.GetPosition(x, y, width, height);
    EXPECT_EQ((std::vector<int>{x, y, width, height}), (std::vector<int>{-1, -1, 900, 600}));
}

// What is listed

TEST_F(FinderTest, ListsDevicesOfAllKindsUnderTheirInterfaces)
{
    const LxInterface &adapter = mDevices->AddAdapter("a");
    const LxInterface &controller = mDevices->AddController("c");
    mDevices->AddGEV(adapter, "g");
    mDevices->AddKelvra(adapter, "k");
    mDevices->AddUSB(controller, "s");
    mDevices->AddU3V(controller, "u");
    Show();
    ASSERT_TRUE(WaitForLines({"Interface a: Device g, Device k", "Interface c: Device s, Device u"}));
    EXPECT_EQ(Icon("Interface a"), 7);
    EXPECT_EQ(Icon("Interface c"), 17);
    EXPECT_EQ(Icon("Device g"), 1);
    EXPECT_EQ(Icon("Device k"), 26) << "not enabled by default";
    EXPECT_EQ(Icon("Device u"), 21);
    EXPECT_EQ(Icon("Device s"), 28) << "never enabled";
    for (const char *text : {"Interface a", "Device g", "Device u"}) {
        EXPECT_FALSE(Tree()->visualItemRect(Item(text)).isEmpty()) << text << " must be visible";
        EXPECT_FALSE(Item(text)->icon(0).isNull()) << text;
    }
}

TEST_F(FinderTest, InterfacesAreThereAtOnceInTheirOrder)
{
    mDevices->AddController("z");
    mDevices->AddAdapter("b");
    mDevices->AddAdapter("a");
    mDevices->AddAdapter("unknown", [](AdapterValues &aValues) { aValues.mType = 2; });
    Show();
    EXPECT_EQ(Lines(), (QStringList{"Interface z", "Interface b", "Interface a"}));
}

TEST_F(FinderTest, ADeviceOnTwoInterfacesHasTwoLines)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    mDevices->AddGEV(mDevices->AddAdapter("b"), "g");
    Show();
    ASSERT_TRUE(WaitForLines({"Interface a: Device g", "Interface b: Device g"}));
    ASSERT_TRUE(WaitForRounds(3));
    EXPECT_EQ(Lines(), (QStringList{"Interface a: Device g", "Interface b: Device g"})) << "no line may be doubled";
}

TEST_F(FinderTest, WhatIsNotVisibleIsNotListed)
{
    const LxInterface &adapter = mDevices->AddAdapter("a");
    const LxInterface &controller = mDevices->AddController("c");
    mDevices->AddGEV(adapter, "g");
    mDevices->AddKelvra(adapter, "k");
    mDevices->AddU3V(controller, "u");
    mDevices->AddUSB(controller, "s");
    mFinder.SetGEVEnabled(true, false);
    mFinder.SetU3VEnabled(true, false);
    Show();
    ASSERT_TRUE(WaitForLines({"Interface a: Device k"}));
    ASSERT_TRUE(WaitForRounds(2));
    EXPECT_EQ(Lines(), QStringList{"Interface a: Device k"});
    EXPECT_FALSE(Button("SetIPButton")->isHidden());
}

TEST_F(FinderTest, WithoutNetworkKindsAdaptersAndAddressButtonsAreHidden)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    mDevices->AddU3V(mDevices->AddController("c"), "u");
    mFinder.SetGEVEnabled(true, false);
    mFinder.SetKelvraProtocolEnabled(true, false);
    Show();
    ASSERT_TRUE(WaitForLines({"Interface c: Device u"}));
    EXPECT_TRUE(Button("SetIPButton")->isHidden());
    EXPECT_TRUE(Button("SelectFromIPButton")->isHidden());
}

TEST_F(FinderTest, ARejectedDeviceIsNeverListedAndCausesNoRefresh)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    mDevices->HoldSearch(true);
    std::atomic<int> asked{0};
    mFinder.mOnFound = [&asked](const LxDeviceInfo *) {
        ++asked;
        return false;
    };
    RefreshCounter counter;
    mFinder.installEventFilter(&counter);
    Show();
    ASSERT_TRUE(WaitForGui([this, &asked] { return asked > 0 && mDevices->IsSearching(); }));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(counter.mCount, 1) << "the one of opening";
    mDevices->HoldSearch(false);
    ASSERT_TRUE(WaitForRounds(2));
    EXPECT_EQ(Lines(), QStringList{"Interface a"});
}

TEST_F(FinderTest, TheApplicationIsAskedThroughThePublicWindow)
{
    class Chooser : public LxDeviceFinderWnd
    {
    public:
        ~Chooser() override { Close(); }
        bool OnFound(const LxDeviceInfo *aInfo) override
        {
            mThread = QThread::currentThread();
            return aInfo->GetUniqueID() == "g2";
        }
        std::atomic<QThread *> mThread{nullptr};
    };
    const LxInterface &adapter = mDevices->AddAdapter("a");
    mDevices->AddGEV(adapter, "g1");
    mDevices->AddGEV(adapter, "g2");
    Chooser chooser;
    chooser.ShowModeless();
    auto *tree = chooser.GetQWidget()->findChild<QTreeWidget *>("DeviceTree");
    ASSERT_TRUE(WaitForGui([tree] { return tree->topLevelItem(0)->childCount() > 0; }));
    EXPECT_EQ(tree->topLevelItem(0)->childCount(), 1);
    EXPECT_EQ(tree->topLevelItem(0)->child(0)->text(0), "Device g2");
    EXPECT_NE(chooser.mThread, QThread::currentThread());
}

TEST_F(FinderTest, SearchesOnItsThreadWithASecondsTimeOut)
{
    Show();
    ASSERT_TRUE(WaitForRounds(2));
    const auto calls = mDevices->GetFindCalls();
    EXPECT_EQ(calls[0].mTimeout, 1000u);
    EXPECT_EQ(calls[1].mTimeout, 1000u);
    EXPECT_NE(calls[0].mThread, std::this_thread::get_id());
}

TEST_F(FinderTest, SubnetsAreSearchedBesidesOnlyWhileUnreachableDevicesAreNotShown)
{
    Show();
    ASSERT_TRUE(WaitForRounds(1));
    EXPECT_TRUE(mDevices->GetFindCalls().back().mSubnetBroadcast);
    QTest::mouseClick(Check(), Qt::LeftButton, {}, QPoint(8, Check()->height() / 2));
    ASSERT_TRUE(Check()->isChecked());
    ASSERT_TRUE(WaitForGui([this] { return !mDevices->GetFindCalls().back().mSubnetBroadcast; }));
    Check()->setChecked(false);
    EXPECT_TRUE(WaitForGui([this] { return mDevices->GetFindCalls().back().mSubnetBroadcast; }));
}

TEST_F(FinderTest, UnreachableDevicesAreShownOnDemandWithTheirIcon)
{
    const LxInterface &adapter = mDevices->AddAdapter("a");
    mDevices->AddGEV(adapter, "g", [](GEVValues &aValues) { aValues.mConfigurationValid = false; });
    mDevices->AddGEV(adapter, "h");
    mFinder.SetKelvraProtocolEnabled(true, true);
    mDevices->AddKelvra(adapter, "k", [](KelvraValues &aValues) { aValues.mConfigurationValid = false; });
    Show();
    ASSERT_TRUE(WaitForLines({"Interface a: Device h"}));
    Check()->setChecked(true);
    ASSERT_TRUE(WaitForLines({"Interface a: Device g, Device h, Device k"}));
    EXPECT_EQ(Icon("Device g"), 3);
    EXPECT_EQ(Icon("Device k"), 2);
    Check()->setChecked(false);
    ASSERT_TRUE(WaitForLines({"Interface a: Device h"}));
}

TEST_F(FinderTest, TheWishForUnreachableDevicesSurvivesClosing)
{
    Show();
    Check()->setChecked(true);
    mFinder.Close();
    Show();
    EXPECT_TRUE(Check()->isChecked());
}

TEST_F(FinderTest, ADeviceThatBecomesInvalidDisappearsAndComesBack)
{
    ScriptedGEV &info = mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    ASSERT_TRUE(WaitForLines({"Interface a: Device g"}));
    info.Change([](GEVValues &aValues) { aValues.mConfigurationValid = false; });
    ASSERT_TRUE(WaitForLines({"Interface a"}));
    info.Change([](GEVValues &aValues) { aValues.mConfigurationValid = true; });
    ASSERT_TRUE(WaitForLines({"Interface a: Device g"}));
}

TEST_F(FinderTest, TextAndIconOfAListedDeviceFollowItsReports)
{
    ScriptedGEV &info = mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    Check()->setChecked(true);
    ASSERT_TRUE(WaitForLines({"Interface a: Device g"}));
    const QTreeWidgetItem *item = Item("Device g");
    const QImage before = item->icon(0).pixmap(16).toImage();
    info.Change([](GEVValues &aValues) {
        aValues.mDisplayID = "Größer";
        aValues.mConfigurationValid = false;
    });
    ASSERT_TRUE(WaitForLines({"Interface a: Größer"}));
    EXPECT_EQ(Item("Größer"), item) << "the line must be kept";
    EXPECT_EQ(Icon("Größer"), 3);
    EXPECT_NE(item->icon(0).pixmap(16).toImage(), before);
}

TEST_F(FinderTest, ADeviceThatIsNoLongerReportedDisappearsAfterTwoSeconds)
{
    const LxInterface &adapter = mDevices->AddAdapter("a");
    ScriptedGEV &info = mDevices->AddGEV(adapter, "g");
    mDevices->AddGEV(adapter, "h");
    Show();
    ASSERT_TRUE(WaitForLines({"Interface a: Device g, Device h"}));
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(WaitForRounds(1));  // its last report comes after the clock's start
    info.Change([](GEVValues &aValues) { aValues.mReported = false; });
    ASSERT_TRUE(WaitForLines({"Interface a: Device h"}));
    EXPECT_GT(clock.elapsed(), 2000);
    EXPECT_LT(clock.elapsed(), 10000);
}

TEST_F(FinderTest, ADeviceWithoutAnIDIsNotRemoved)
{
    ScriptedGEV &info =
        mDevices->AddGEV(mDevices->AddAdapter("a"), "", [](GEVValues &aValues) { aValues.mDisplayID = "Nobody"; });
    Show();
    ASSERT_TRUE(WaitForLines({"Interface a: Nobody"}));
    info.Change([](GEVValues &aValues) { aValues.mConfigurationValid = false; });
    ASSERT_TRUE(WaitForGui([this] { return Icon("Nobody") == 3; }));
    ASSERT_TRUE(WaitForRounds(2));
    EXPECT_EQ(Lines(), QStringList{"Interface a: Nobody"});
}

TEST_F(FinderTest, ANewInterfaceIsListed)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    ASSERT_TRUE(WaitForLines({"Interface a: Device g"}));
    mDevices->AddGEV(mDevices->AddAdapter("b"), "h");
    ASSERT_TRUE(WaitForLines({"Interface a: Device g", "Interface b: Device h"}));
    EXPECT_FALSE(Tree()->visualItemRect(Item("Device h")).isEmpty()) << "must be expanded";
}

TEST_F(FinderTest, ACollapsedInterfaceStaysCollapsed)
{
    const LxInterface &adapter = mDevices->AddAdapter("a");
    mDevices->AddGEV(adapter, "g");
    Show();
    ASSERT_TRUE(WaitForLines({"Interface a: Device g"}));
    Item("Interface a")->setExpanded(false);
    mDevices->AddGEV(adapter, "h");
    ASSERT_TRUE(WaitForLines({"Interface a: Device g, Device h"}));
    EXPECT_FALSE(Item("Interface a")->isExpanded());
}

// Information tables

TEST_F(FinderTest, NothingIsShownBeforeASelection)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    ASSERT_TRUE(WaitForLines({"Interface a: Device g"}));
    EXPECT_EQ(Table("InterfaceTable")->rowCount(), 0);
    EXPECT_EQ(Table("DeviceTable")->rowCount(), 0);
    EXPECT_FALSE(Button("OKButton")->isEnabled());
    EXPECT_FALSE(Button("SetIPButton")->isEnabled());
    EXPECT_TRUE(Button("SelectFromIPButton")->isEnabled());
}

TEST_F(FinderTest, ASelectedInterfaceFillsItsTableOnly)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    Select("Device g");
    Select("Interface a");
    EXPECT_EQ(Rows("InterfaceTable"),
              (QStringList{"Description = Scripted adapter", "MAC = 02:00:00:00:00:01", "IP Address = 192.168.1.1",
                           "Subnet Mask = 255.255.255.0", "Default Gateway = 0.0.0.0", " = "}));
    EXPECT_EQ(Table("DeviceTable")->rowCount(), 0);
    EXPECT_FALSE(Button("OKButton")->isEnabled());
    EXPECT_FALSE(Button("SetIPButton")->isEnabled());
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(Table("InterfaceTable")->rowHeight(i), 18);
    }
}

TEST_F(FinderTest, ASelectedDeviceFillsBothTables)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    mDevices->SetAccessType("192.168.1.10", 2);
    Show();
    Select("Device g");
    EXPECT_EQ(Table("DeviceTable")->rowCount(), 18);
    EXPECT_EQ(Rows("DeviceTable")[0], "MAC = 00:11:22:33:44:55");
    EXPECT_EQ(Rows("DeviceTable")[6], "Access Status = Control") << "asked for when it was selected";
    EXPECT_EQ(Rows("DeviceTable")[17], " = ");
    EXPECT_EQ(Table("InterfaceTable")->rowCount(), 6);
    EXPECT_EQ(mDevices->GetAccessTypeCalls(), std::vector<std::string>{"192.168.1.10"});
    EXPECT_TRUE(Button("OKButton")->isEnabled());
    EXPECT_TRUE(Button("SetIPButton")->isEnabled());
}

TEST_F(FinderTest, TheColumnOfLabelsIsAsWideAsItsTexts)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g");
    Show();
    Select("Device g");
    for (const char *name : {"InterfaceTable", "DeviceTable"}) {
        QTableWidget *table = Table(name);
        int widest = 0;
        for (int i = 0; i < table->rowCount(); ++i) {
            widest = std::max(widest, table->fontMetrics().horizontalAdvance(table->item(i, 0)->text()));
        }
        EXPECT_GT(widest, 0) << name;
        EXPECT_GT(table->columnWidth(0), widest) << name;
        EXPECT_LT(table->columnWidth(0), 2 * widest) << name;
    }
}

TEST_F(FinderTest, AColouredRowIsPaintedInBothCellsAndDarkRedWithWhiteText)
{
    mDevices->AddGEV(mDevices->AddAdapter("a"), "g", [](GEVValues &aValues) {
        aValues.mIPAddress = "0.0.0.0";
        aValues.mConfigurationValid = false;
    });
    Show();
    Check()->setChecked(true);
    Select("Device g");
    const QTableWidget *table = Table("DeviceTable");
    const auto row = [this](const char *aLabel) {
        return Rows("DeviceTable").indexOf(QRegularExpression(QLatin1String(aLabel) + QStringLiteral(" = .*")));
    };
    ASSERT_GE(row("IP"), 0);
    ASSERT_GE(row("IP Configuration"), 0);
    for (int column = 0; column < 2; ++column) {
        EXPECT_EQ(table->item(row("MAC"), column)->background(), QBrush());
        EXPECT_EQ(table->item(row("IP"), column)->background().color(), QColor(Qt::yellow));
        EXPECT_EQ(table->item(row("IP Configuration"), column)->background().color(), QColor(Qt::darkRed));
        EXPECT_EQ(table->item(row("IP Configuration"), column)->foreground().color(), QColor(Qt::white));
    }
}

TEST_F(FinderTest, TheTableOfASelectedInterfaceFollowsReportsThatOfADeviceDoesNot)
{
    ScriptedAdapter &adapter = mDevices->AddAdapter("a");
    ScriptedGEV &info = mDevices->AddGEV(adapter, "g");
    Show();
    Select("Device g");
    info.Change([](GEVValues &aValues) { aValues.mVendor = "Other"; });
    ASSERT_TRUE(WaitForRounds(3));
    EXPECT_TRUE(Rows("DeviceTable").contains("Vendor = Vendor"));
    Select("Interface a");
    adapter.Change([](AdapterValues &aValues) {
        aValues.mDescription = "Renamed";
        aValues.mAddresses.clear();
    });
    EXPECT_TRUE(WaitForGui([this] {
        return Rows("InterfaceTable") ==
               QStringList{"Description = Renamed", "MAC = 02:00:00:00:00:01", "Default Gateway = 0.0.0.0", " = "};
    }));
}

TEST_F(FinderTest, OKAndSetIPAreForEnabledDevicesOfTheirKinds)
{
    const LxInterface &adapter = mDevices->AddAdapter("a");
    const LxInterface &controller = mDevices->AddController("c");
    mDevices->AddGEV(adapter, "g");
    mDevices->AddKelvra(adapter, "k");
    mDevices->AddU3V(controller, "u");
    mDevices->AddUSB(controller, "s");
    for (const bool enabled : {true, false}) {
        mFinder.SetGEVEnabled(enabled, true);
        mFinder.SetKelvraProtocolEnabled(enabled, true);
        mFinder.SetU3VEnabled(enabled, true);
        Show();
        const struct
        {
            const char *mText;
            bool mOK;
            bool mSetIP;
            int mIcon;
        } cases[] = {{"Device g", enabled, enabled, enabled ? 1 : 25},
                     {"Device k", enabled, enabled, enabled ? 0 : 26},
                     {"Device u", enabled, false, enabled ? 21 : 27},
                     {"Device s", false, false, 28}};
        for (const auto &one : cases) {
            Select(one.mText);
            EXPECT_EQ(Button("OKButton")->isEnabled(), one.mOK) << one.mText;
            EXPECT_EQ(Button("SetIPButton")->isEnabled(), one.mSetIP) << one.mText;
            EXPECT_EQ(Icon(one.mText), one.mIcon) << one.mText;
        }
        mFinder.Close();
    }
}

TEST_F(FinderTest, RemovingTheSelectedDeviceEmptiesOrMovesTheTables)
{
    const LxInterface &adapter = mDevices->AddAdapter("a");
    ScriptedGEV &info = mDevices->AddGEV(adapter, "g");
    Show();
    Select("Device g");
    info.Change([](GEVValues &aValues) { aValues.mConfigurationValid = false; });
    ASSERT_TRUE(WaitForLines({"Interface a"}));
    EXPECT_EQ(Table("DeviceTable")->rowCount(), 0);
    EXPECT_FALSE(Button("OKButton")->isEnabled());
}
