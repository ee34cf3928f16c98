#include "SelfCheck.h"

#include <sys/resource.h>
#include <unistd.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSysInfo>
#include <QtCore/QThread>
#include <QtGui/QGuiApplication>

#include "LxBufferReceive/LxStream.h"
#include "LxGUI/LxDisplayWnd.h"
#include "LxSystem/LxDeviceInfo.h"
#include "LxSystem/LxNetworkAdapter.h"
#include "LxSystem/LxSystem.h"
#include "LxSystem/LxUSBHostController.h"
#include "Texts.h"

namespace
{

constexpr int NameWidth = 26;

// The least that USB3 Vision cameras of ordinary sizes need for their transfers, in MiB.
constexpr int UsualUSBMemory = 128;

// The first line of a small file of the system; empty when there is none.
QString ReadLine(const QString &aPath)
{
    QFile file(aPath);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readLine()).trimmed() : QString();
}

class Report
{
public:
    void Section(const QString &aTitle) { mText += QStringLiteral("\n%1\n").arg(aTitle); }
    void Line(const QString &aName, const QString &aValue)
    {
        mText += QStringLiteral("  %1 %2\n").arg(aName + QLatin1Char(':'), -NameWidth).arg(aValue);
    }
    void Advice(const QString &aText) { mText += QStringLiteral("! %1\n").arg(aText); }
    QString mText;
};

void AddVersions(Report &aReport)
{
    aReport.Section(QStringLiteral("Versions"));
    aReport.Line(QStringLiteral("Viewer"), QCoreApplication::applicationVersion());
    aReport.Line(QStringLiteral("LxGUI"), ToQString(LxWnd::GetVersion()));
    aReport.Line(QStringLiteral("LxSDK"), ToQString(LxSystem::GetVersion()));
    aReport.Line(QStringLiteral("Camera library"), ToQString(LxSystem::GetTransportLibrary()));
    aReport.Line(QStringLiteral("Qt"),
                 QStringLiteral("%1, compiled with %2").arg(QLatin1String(qVersion()), QStringLiteral(QT_VERSION_STR)));
}

void AddMachine(Report &aReport)
{
    aReport.Section(QStringLiteral("Machine"));
    aReport.Line(QStringLiteral("System"), QSysInfo::prettyProductName());
    aReport.Line(QStringLiteral("Kernel"), QSysInfo::kernelType() + QLatin1Char(' ') + QSysInfo::kernelVersion());
    aReport.Line(
        QStringLiteral("Processor"),
        QStringLiteral("%1, %2 cores").arg(QSysInfo::currentCpuArchitecture()).arg(QThread::idealThreadCount()));
    aReport.Line(QStringLiteral("Locale"), QLocale().name());
}

void AddDisplay(Report &aReport)
{
    aReport.Section(QStringLiteral("Display"));
    aReport.Line(QStringLiteral("Qt platform"), QGuiApplication::platformName());
    // asked first: the strings are known from then on
    const bool isUsable = LxDisplayWnd::GetHighestRendererMode() >= LxRendererModeOpenGL;
    aReport.Line(QStringLiteral("Renderer"), ToQString(LxDisplayWnd::GetRenderer()));
    aReport.Line(QStringLiteral("OpenGL version"), ToQString(LxDisplayWnd::GetRendererVersion()));
    aReport.Line(QStringLiteral("Drawing by OpenGL"),
                 isUsable ? QStringLiteral("possible") : QStringLiteral("not possible; the processor draws"));
}

void AddAdapter(Report &aReport, const LxNetworkAdapter &aAdapter)
{
    QString name = ToQString(aAdapter.GetUniqueID());
    if (name.startsWith(QLatin1String("net:"))) {
        name.remove(0, 4);
    }
    QStringList parts;
    for (uint32_t i = 0; i < aAdapter.GetIPAddressCount(); ++i) {
        parts << QStringLiteral("%1 mask %2")
                     .arg(ToQString(aAdapter.GetIPAddress(i)), ToQString(aAdapter.GetSubnetMask(i)));
    }
    if (parts.isEmpty()) {
        parts << QStringLiteral("no IPv4 address");
    }
    parts << QStringLiteral("MAC ") + ToQString(aAdapter.GetMACAddress());
    const QString folder = QStringLiteral("/sys/class/net/%1").arg(name);
    if (!QFileInfo::exists(folder)) {
        aReport.Line(name, (parts << QStringLiteral("simulated")).join(QStringLiteral(", ")));
        return;
    }
    parts << QStringLiteral("MTU ") + ReadLine(folder + QStringLiteral("/mtu"));
    parts << QStringLiteral("link ") + ReadLine(folder + QStringLiteral("/operstate"));
    // the kernel uses the stricter of the two
    const QString filter = QStringLiteral("/proc/sys/net/ipv4/conf/%1/rp_filter");
    const int strictness =
        qMax(ReadLine(filter.arg(QStringLiteral("all"))).toInt(), ReadLine(filter.arg(name)).toInt());
    parts << QStringLiteral("rp_filter %1").arg(strictness);
    aReport.Line(name, parts.join(QStringLiteral(", ")));
    const bool isLoopback = ReadLine(folder + QStringLiteral("/type")) == QLatin1String("772");
    if (strictness == 1 && !isLoopback) {
        aReport.Advice(QStringLiteral("%1 drops answers of cameras that are on no subnet of it. To see them: "
                                      "sudo sysctl -w net.ipv4.conf.%1.rp_filter=2")
                           .arg(name));
    }
    if (ReadLine(folder + QStringLiteral("/mtu")).toInt() < 8000 && !isLoopback) {
        aReport.Advice(QStringLiteral("%1 passes small packets only, which costs processor time at high data rates. If "
                                      "camera and switch can do it: sudo ip link set %1 mtu 9000")
                           .arg(name));
    }
}

void AddLimits(Report &aReport)
{
    aReport.Section(QStringLiteral("Receive buffers"));
    const QString limit = ReadLine(QStringLiteral("/proc/sys/net/core/rmem_max"));
    const qint64 wanted = LxStreamConfiguration().mSocketBuffer;
    aReport.Line(QStringLiteral("net.core.rmem_max"),
                 QStringLiteral("%1 bytes; streams ask for %2").arg(limit).arg(wanted));
    aReport.Line(QStringLiteral("net.core.rmem_default"),
                 ReadLine(QStringLiteral("/proc/sys/net/core/rmem_default")) + QStringLiteral(" bytes"));
    if (limit.toLongLong() < wanted) {
        aReport.Advice(QStringLiteral("Frames may be lost in bursts. To allow larger receive buffers: "
                                      "sudo sysctl -w net.core.rmem_max=%1")
                           .arg(wanted));
    }
}

void AddRights(Report &aReport)
{
    aReport.Section(QStringLiteral("Rights"));
    rlimit priority = {};
    getrlimit(RLIMIT_RTPRIO, &priority);
    aReport.Line(QStringLiteral("Real-time priority"), priority.rlim_cur > 0 || geteuid() == 0
                                                           ? QStringLiteral("allowed")
                                                           : QStringLiteral("not allowed (ulimit -r is 0)"));
    const QString memory = ReadLine(QStringLiteral("/sys/module/usbcore/parameters/usbfs_memory_mb"));
    aReport.Line(QStringLiteral("USB transfer memory"),
                 memory.isEmpty() ? QStringLiteral("no USB here") : memory + QStringLiteral(" MiB"));
    if (!memory.isEmpty() && memory.toInt() != 0 && memory.toInt() < UsualUSBMemory) {
        aReport.Advice(
            QStringLiteral("Large pictures of USB3 Vision cameras may not fit. To allow more: "
                           "echo 1000 | sudo tee /sys/module/usbcore/parameters/usbfs_memory_mb"));
    }
    int count = 0;
    int usable = 0;
    const QDir buses(QStringLiteral("/dev/bus/usb"));
    for (const QString &bus : buses.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        for (const QFileInfo &device : QDir(buses.filePath(bus)).entryInfoList(QDir::System | QDir::Files)) {
            ++count;
            usable += device.isWritable() ? 1 : 0;
        }
    }
    aReport.Line(QStringLiteral("USB devices"),
                 QStringLiteral("%1, of which this user may open %2").arg(count).arg(usable));
}

QString KindOf(const LxDeviceInfo &aInfo)
{
    switch (aInfo.GetType()) {
        case LxDeviceInfoTypeGEV:
            return QStringLiteral("GigE Vision");
        case LxDeviceInfoTypeKelvra:
            return QStringLiteral("Kelvra protocol");
        case LxDeviceInfoTypeUSB:
            return QStringLiteral("USB");
        case LxDeviceInfoTypeU3V:
            return QStringLiteral("USB3 Vision");
        default:
            return QStringLiteral("unknown kind");
    }
}

void AddDevices(Report &aReport, const LxInterface &aInterface)
{
    for (uint32_t i = 0; i < aInterface.GetDeviceCount(); ++i) {
        const LxDeviceInfo *info = aInterface.GetDeviceInfo(i);
        if (!info) {
            continue;
        }
        aReport.Line(ToQString(info->GetConnectionID()),
                     QStringLiteral("%1, %2 %3, version %4, serial number %5, at %6")
                         .arg(KindOf(*info), ToQString(info->GetVendorName()), ToQString(info->GetModelName()),
                              ToQString(info->GetVersion()), ToQString(info->GetSerialNumber()),
                              ToQString(aInterface.GetUniqueID())));
        if (!info->IsConfigurationValid()) {
            aReport.Advice(QStringLiteral("%1 cannot be reached as it is configured: it is on no subnet of its network "
                                          "adapter, or at a USB port that is too slow.")
                               .arg(ToQString(info->GetConnectionID())));
        }
    }
}

}  // namespace

QString SelfCheckReport()
{
    Report report;
    report.mText = QStringLiteral("LxGUI viewer self-check\n");
    AddVersions(report);
    AddMachine(report);
    AddDisplay(report);

    LxSystem system;
    const LxResult found = system.Find();
    report.Section(QStringLiteral("Network adapters"));
    QStringList controllers;
    uint32_t devices = 0;
    for (uint32_t i = 0; i < system.GetInterfaceCount(); ++i) {
        const LxInterface *interface = system.GetInterface(i);
        devices += interface->GetDeviceCount();
        if (const auto *adapter = dynamic_cast<const LxNetworkAdapter *>(interface)) {
            AddAdapter(report, *adapter);
        }
        else {
            controllers << ToQString(interface->GetDisplayID());
        }
    }
    report.Section(QStringLiteral("USB host controllers"));
    for (qsizetype i = 0; i < controllers.size(); ++i) {
        report.Line(QString::number(i + 1), controllers[i]);
    }
    AddLimits(report);
    AddRights(report);
    report.Section(QStringLiteral("Devices"));
    if (!found.IsOK()) {
        report.Advice(QStringLiteral("The search failed: %1").arg(ToQString(found.GetDescription())));
    }
    report.Line(QStringLiteral("Found"), QString::number(devices));
    for (uint32_t i = 0; i < system.GetInterfaceCount(); ++i) {
        AddDevices(report, *system.GetInterface(i));
    }
    return report.mText;
}
