#include "FinderTour.h"

#include <QtCore/QTimer>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTreeWidget>

#include "HeadlessTour.h"
#include "LxGUI/LxDeviceFinderWnd.h"
#include "LxSimulation/LxSimulation.h"
#include "LxSystem/LxDeviceInfo.h"

namespace
{

void AddAdapter(const char *aName, std::vector<LxSimulatedAddress> aAddresses, bool aDriver)
{
    LxSimulatedNetworkAdapter adapter;
    adapter.mName = aName;
    adapter.mAddresses = std::move(aAddresses);
    adapter.mKelvraDriverInstalled = aDriver;
    LxSimulation::SetNetworkAdapter(adapter);
}

void AddNetworkDevice(int aType, const char *aInterface, const char *aName, const char *aMAC, const char *aAddress)
{
    LxSimulatedDevice device;
    device.mType = aType;
    device.mInterfaces = {aInterface};
    device.mUserDefinedName = aName;
    device.mMACAddress = aMAC;
    device.mIPAddress = aAddress;
    device.mSubnetMask = "255.255.255.0";
    LxSimulation::SetDevice(device);
}

void AddUSBDevice(int aType, const char *aName, const char *aGUID, uint32_t aSpeed, bool aDriver)
{
    LxSimulatedDevice device;
    device.mType = aType;
    device.mInterfaces = {"usb0"};
    device.mModelName = "Simulated USB Camera";
    device.mUserDefinedName = aName;
    device.mDeviceGUID = aGUID;
    device.mSpeed = aSpeed;
    device.mKelvraDriverInstalled = aDriver;
    LxSimulation::SetDevice(device);
}

// One of each sign of the finder's tree.
void AddHostOfAllKinds()
{
    LxSimulation::Clear();
    AddAdapter("eth0", {{"192.168.10.1", "255.255.255.0"}}, true);
    AddAdapter("eth1", {{"192.168.20.1", "255.255.255.0"}}, false);
    AddAdapter("eth2", {{"10.0.0.1", "255.0.0.0"}, {"10.0.0.2", "255.0.0.0"}}, true);
    AddAdapter("eth3", {{"10.0.0.3", "255.0.0.0"}}, false);
    AddAdapter("eth4", {{"0.0.0.0", "0.0.0.0"}}, true);
    AddAdapter("eth5", {{"0.0.0.0", "0.0.0.0"}}, false);
    LxSimulatedUSBHostController controller;
    controller.mName = "usb0";
    LxSimulation::SetUSBHostController(controller);

    AddNetworkDevice(LxDeviceInfoTypeGEV, "eth0", "Left", "02:00:00:00:01:01", "192.168.10.21");
    AddNetworkDevice(LxDeviceInfoTypeGEV, "eth0", "Right", "02:00:00:00:01:02", "10.0.5.7");
    AddNetworkDevice(LxDeviceInfoTypeKelvra, "eth1", "Gate", "02:00:00:00:01:03", "192.168.20.22");
    AddNetworkDevice(LxDeviceInfoTypeKelvra, "eth1", "Yard", "02:00:00:00:01:04", "172.16.0.4");
    AddUSBDevice(LxDeviceInfoTypeU3V, "Top", "0000C0FFEE01", 4, true);
    AddUSBDevice(LxDeviceInfoTypeU3V, "Slow port", "0000C0FFEE02", 3, true);
    AddUSBDevice(LxDeviceInfoTypeU3V, "No driver", "0000C0FFEE03", 4, false);
    AddUSBDevice(LxDeviceInfoTypeUSB, "Scanner", "0000C0FFEE04", 4, true);
}

constexpr int DeviceCount = 8;

int CountDevices(const QTreeWidget &aTree)
{
    int count = 0;
    for (int i = 0; i < aTree.topLevelItemCount(); ++i) {
        count += aTree.topLevelItem(i)->childCount();
    }
    return count;
}

/// What the dialog marks as doubtful.
void EnterDoubtful(QDialog *aDialog)
{
    for (const auto &[field, text] : {std::pair("DeviceIPAddress", "10.0.5.7"),
                                      {"DeviceSubnetMask", "255.0.0.0"},
                                      {"DeviceDefaultGateway", "10.0.0.1"}})
    {
        if (auto *edit = aDialog->findChild<QLineEdit *>(QLatin1String(field))) {
            edit->setText(QLatin1String(text));
        }
    }
}

}  // namespace

bool FinderTour::Run()
{
    AddHostOfAllKinds();
    LxSimulation::Enable(true);
    LxDeviceFinderWnd finder;
    finder.SetKelvraProtocolEnabled(true, true);
    // the finder is modal: this runs inside its loop
    bool done = false;
    QTimer::singleShot(0, QCoreApplication::instance(), [&] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        done = dialog && TourDialog(dialog);
        finder.Close();
    });
    finder.ShowModal();
    LxSimulation::Disable();
    LxSimulation::Clear();
    return done;
}

bool FinderTour::TourDialog(QDialog *aFinder)
{
    auto *tree = aFinder->findChild<QTreeWidget *>();
    QAbstractButton *unreachable =
        HeadlessTour::FindButton(aFinder, QStringLiteral("Show unreachable Network Devices"));
    if (!tree || !unreachable) {
        return false;
    }
    unreachable->click();
    if (!mTour.WaitUntil(QStringLiteral("devices of every kind"),
                         [tree] { return CountDevices(*tree) == DeviceCount; })) {
        return false;
    }
    const QList<QTreeWidgetItem *> wrong =
        tree->findItems(QStringLiteral("Right"), Qt::MatchContains | Qt::MatchRecursive);
    if (wrong.isEmpty()) {
        return false;
    }
    tree->setCurrentItem(wrong.first());
    return mTour.Shoot(aFinder, QStringLiteral("finder-kinds")) &&
           mTour.ShootDialogOf(HeadlessTour::FindButton(aFinder, QStringLiteral("Set IP Address...")),
                               QStringLiteral("ip-address"), EnterDoubtful) &&
           mTour.ShootDialogOf(HeadlessTour::FindButton(aFinder, QStringLiteral("Select from IP Address...")),
                               QStringLiteral("select-from-address"));
}
