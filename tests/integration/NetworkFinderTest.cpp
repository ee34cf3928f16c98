// What a user does with the finder to a camera on a real network.

#include <gtest/gtest.h>

#include <QtTest/QTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTreeWidget>

#include "CameraProcess.h"
#include "GuiTest.h"
#include "LxGUI/LxDeviceFinderWnd.h"
#include "NetworkCameras.h"
#include "Wire.h"

namespace
{

template <class Widget>
Widget *Child(const QWidget *aDialog, const char *aName)
{
    auto *child = aDialog->findChild<Widget *>(QLatin1String(aName));
    EXPECT_NE(child, nullptr) << aName;
    return child;
}

void Click(const QWidget *aDialog, const char *aButton)
{
    QTest::mouseClick(Child<QPushButton>(aDialog, aButton), Qt::LeftButton);
}

/// The line of a camera at an adapter whose text has the address in it, or null.
QTreeWidgetItem *FindLine(const QTreeWidget *aTree, const std::string &aAdapter, const char *aAddress)
{
    for (int i = 0; i < aTree->topLevelItemCount(); ++i) {
        const QTreeWidgetItem *adapter = aTree->topLevelItem(i);
        for (int j = 0; adapter->text(0).contains(QString::fromStdString(aAdapter)) && j < adapter->childCount(); ++j) {
            if (adapter->child(j)->text(0).contains(QLatin1String(aAddress))) {
                return adapter->child(j);
            }
        }
    }
    return nullptr;
}

void SelectLine(QTreeWidget *aTree, const std::string &aAdapter, const char *aAddress)
{
    ASSERT_TRUE(WaitForGui([&] { return FindLine(aTree, aAdapter, aAddress) != nullptr; })) << aAddress;
    QTreeWidgetItem *line = FindLine(aTree, aAdapter, aAddress);
    QTest::mouseClick(aTree->viewport(), Qt::LeftButton, {}, aTree->visualItemRect(line).center());
    ASSERT_TRUE(line->isSelected());
}

}  // namespace

TEST(NetworkFinder, GivesACameraOnAWrongSubnetAnAddressWithWhichItIsChosenAndStreams)
{
    const Wire wire("moved", "192.168.55.1/24", "");
    CameraProcess camera(EmulatorBehind(wire, "10.9.9.9", "02:00:00:00:00:56"), "");
    ASSERT_TRUE(camera.Start());

    LxDeviceFinderWnd finder;
    OnNextModal([&](QWidget *aFinder) {
        auto *tree = Child<QTreeWidget>(aFinder, "DeviceTree");
        QTest::mouseClick(Child<QCheckBox>(aFinder, "ShowUnreachableCheck"), Qt::LeftButton, {}, QPoint(8, 8));
        SelectLine(tree, wire.GetNearEnd(), "10.9.9.9");
        {
            const ExpectedBox box;
            Click(aFinder, "OKButton");
            EXPECT_TRUE(box.Text().startsWith("The device is on a subnet that is not compatible"));
        }
        OnNextModal([](QWidget *aDialog) {
            EXPECT_EQ(Child<QLineEdit>(aDialog, "DeviceMACAddress")->text(), "02:00:00:00:00:56");
            EXPECT_EQ(Child<QLineEdit>(aDialog, "DeviceIPAddress")->text(), "192.168.55.");
            QTest::keyClicks(Child<QLineEdit>(aDialog, "DeviceIPAddress"), "7");
            Click(aDialog, "OKButton");
            EXPECT_FALSE(aDialog->isVisible());
        });
        Click(aFinder, "SetIPButton");
        SelectLine(tree, wire.GetNearEnd(), "192.168.55.7");
        Click(aFinder, "OKButton");
    });
    ASSERT_TRUE(finder.ShowModal().IsOK());

    const auto *info = dynamic_cast<const LxDeviceInfoGEV *>(finder.GetSelected());
    ASSERT_NE(info, nullptr);
    EXPECT_TRUE(info->IsConfigurationValid());
    EXPECT_EQ(info->GetIPAddress(), LxString("192.168.55.7"));
    ExpectStreams(info);
}

TEST(NetworkFinder, ChoosesACameraByTheAddressThatIsTyped)
{
    const Wire wire("typed", "192.168.56.1/24", "");
    CameraProcess camera(EmulatorBehind(wire, "192.168.56.7", "02:00:00:00:00:57"), "");
    ASSERT_TRUE(camera.Start());

    LxDeviceFinderWnd finder;
    OnNextModal([&](QWidget *aFinder) {
        // It answers soon after it has started, which is when it is listed.
        ASSERT_TRUE(WaitForGui([&] {
            return FindLine(Child<QTreeWidget>(aFinder, "DeviceTree"), wire.GetNearEnd(), "192.168.56.7") != nullptr;
        }));
        OnNextModal([](QWidget *aDialog) {
            QTest::keyClicks(Child<QLineEdit>(aDialog, "AddressEdit"), "192.168.56.7");
            Click(aDialog, "OKButton");
        });
        Click(aFinder, "SelectFromIPButton");
    });
    ASSERT_TRUE(finder.ShowModal().IsOK());
    const auto *info = dynamic_cast<const LxDeviceInfoGEV *>(finder.GetSelected());
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->GetIPAddress(), LxString("192.168.56.7"));
    ExpectStreams(info);
}
