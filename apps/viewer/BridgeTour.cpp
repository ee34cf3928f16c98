#include "BridgeTour.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <QtCore/QDir>
#include <QtCore/QTemporaryFile>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTreeView>
#include <cstdio>
#include <string>

#include "HeadlessTour.h"
#include "LxGUI/LxCameraBridgeManagerWnd.h"
#include "LxGUI/LxSerialBridgeManagerWnd.h"
#include "LxSerial/LxSerialBridge.h"
#include "LxSimulation/LxSimulatedGenCPCamera.h"
#include "LxSimulation/LxSimulatedTextCamera.h"
#include "TourGrabber.h"

namespace
{

constexpr char COMPort[] = "COM3";
constexpr char CameraFile[] = R"(kelvraCameraFile: 1
camera: {vendor: LxGUI, model: TextCamera}
protocol: {type: ascii}
features:
  - {name: Width, type: integer, category: Image, read: "WIDTH?", write: "WIDTH={value}", unit: px}
  - {name: Height, type: integer, category: Image, read: "HEIGHT?", write: "HEIGHT={value}", unit: px}
  - {name: Gain, type: integer, category: Analog, read: "GAIN?", write: "GAIN={value}", unit: dB}
  - {name: ExposureTime, type: float, category: Analog, read: "EXPOSURE?", write: "EXPOSURE={value}", unit: us}
)";

/// A line of this host that has a COM name while the object lives, with a program at its other end.
class NamedLine
{
public:
    NamedLine() : mProgram(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
        if (mProgram >= 0 && grantpt(mProgram) == 0 && unlockpt(mProgram) == 0) {
            LxSerialBridge::SetCOMPortPath(COMPort, ptsname(mProgram));
        }
    }
    ~NamedLine()
    {
        LxSerialBridge::SetCOMPortPath(COMPort, "");
        if (mProgram >= 0) {
            close(mProgram);
        }
    }
    NamedLine(const NamedLine &) = delete;
    NamedLine &operator=(const NamedLine &) = delete;

    void Write(const std::string &aText) const
    {
        if (write(mProgram, aText.data(), aText.size()) < 0) {
            std::perror("the COM port");
        }
    }

private:
    int mProgram;
};

template <class Type>
Type *Find(LxWnd &aWindow, const char *aName)
{
    return aWindow.GetQWidget()->findChild<Type *>(QLatin1String(aName));
}

void Click(LxWnd &aWindow, const char *aName)
{
    Find<QAbstractButton>(aWindow, aName)->click();
}

void Choose(LxWnd &aWindow, const char *aCombo, const char *aText)
{
    auto *combo = Find<QComboBox>(aWindow, aCombo);
    combo->setCurrentIndex(combo->findText(QLatin1String(aText)));
}

/// Whether the feature browser shows the value of a feature.
bool HasValue(LxWnd &aWindow, const char *aFeature)
{
    const QAbstractItemModel *model = Find<QTreeView>(aWindow, "FeatureTree")->model();
    if (!model) {
        return false;
    }
    const QModelIndexList found = model->match(model->index(0, 0), Qt::DisplayRole, QLatin1String(aFeature), 1,
                                               Qt::MatchFixedString | Qt::MatchRecursive);
    return !found.isEmpty() && !found.first().siblingAtColumn(1).data().toString().isEmpty();
}

bool Shows(LxWnd &aWindow, const char *aLabel, const char *aText)
{
    return Find<QLabel>(aWindow, aLabel)->text().startsWith(QLatin1String(aText));
}

}  // namespace

bool BridgeTour::Run()
{
    const TourGrabber grabber;
    return grabber.GetDevice() && TourSerialBridges(grabber) && TourCameraBridges(grabber);
}

bool BridgeTour::TourSerialBridges(const TourGrabber &aGrabber)
{
    const NamedLine line;
    TourGrabber::SetPeer(LxDeviceSerial::Serial0, std::make_shared<LxSimulatedSerialEcho>());
    LxSerialBridgeManagerWnd manager;
    manager.SetDevice(aGrabber.GetAdapter());
    manager.ShowModeless();
    if (!mTour.Shoot(manager.GetQWidget(), QStringLiteral("serial-bridges-none"))) {
        return false;
    }
    Click(manager, "COMPortRadio");
    Choose(manager, "PortCombo", COMPort);
    line.Write("GAIN?\r");
    return mTour.WaitUntil(QStringLiteral("bytes on the bridge"),
                           [&] { return Shows(manager, "ReceivedLabel", "Bytes received: 6"); }) &&
           mTour.Shoot(manager.GetQWidget(), QStringLiteral("serial-bridges")) &&
           mTour.ShootDialogOf(Find<QAbstractButton>(manager, "ConfigureButton"), QStringLiteral("com-port")) &&
           TourCameraLink(manager);
}

bool BridgeTour::TourCameraLink(LxSerialBridgeManagerWnd &aManager)
{
    Choose(aManager, "PortSelectionCombo", "Serial1");
    Click(aManager, "CameraLinkRadio");
    if (!mTour.Shoot(aManager.GetQWidget(), QStringLiteral("serial-bridges-camera-link"))) {
        return false;
    }
    Choose(aManager, "PortSelectionCombo", "Bulk0");
    return mTour.ShootDialogOf(Find<QAbstractButton>(aManager, "CameraLinkRadio"), QStringLiteral("baud-rate"));
}

bool BridgeTour::TourCameraBridges(const TourGrabber &aGrabber)
{
    TourGrabber::SetPeer(LxDeviceSerial::Serial0, std::make_shared<LxSimulatedGenCPCamera>());
    TourGrabber::SetPeer(LxDeviceSerial::Serial1, std::make_shared<LxSimulatedTextCamera>());
    LxCameraBridgeManagerWnd manager;
    manager.SetDevice(aGrabber.GetDevice());
    manager.ShowModeless();
    return mTour.Shoot(manager.GetQWidget(), QStringLiteral("camera-bridges-none")) && TourGenCP(manager) &&
           TourCLProtocol(manager) && TourCameraFile(manager);
}

bool BridgeTour::ShootConnected(LxCameraBridgeManagerWnd &aManager, const char *aStatus, const QString &aName)
{
    return mTour.WaitUntil(QStringLiteral("the features of the camera"), [&] {
        return Shows(aManager, aStatus, "Connected") && HasValue(aManager, "Gain") &&
               !Shows(aManager, "SentLabel", "Bytes sent: 0");
    }) && mTour.Shoot(aManager.GetQWidget(), aName);
}

bool BridgeTour::TourGenCP(LxCameraBridgeManagerWnd &aManager)
{
    Click(aManager, "GenCPRadio");
    if (!mTour.Shoot(aManager.GetQWidget(), QStringLiteral("camera-bridges-gencp"))) {
        return false;
    }
    Click(aManager, "GenCPConnectButton");
    return ShootConnected(aManager, "GenCPStatus", QStringLiteral("camera-bridges-gencp-connected"));
}

bool BridgeTour::TourCLProtocol(LxCameraBridgeManagerWnd &aManager)
{
    Choose(aManager, "PortCombo", "Serial1");
    Click(aManager, "CLPRadio");
    Click(aManager, "CLPProbeButton");
    if (!mTour.Shoot(aManager.GetQWidget(), QStringLiteral("camera-bridges-protocol"))) {
        return false;
    }
    Click(aManager, "CLPConnectButton");
    return ShootConnected(aManager, "CLPStatus", QStringLiteral("camera-bridges"));
}

bool BridgeTour::TourCameraFile(LxCameraBridgeManagerWnd &aManager)
{
    QTemporaryFile file(QDir::temp().filePath(QStringLiteral("camera-XXXXXX.yml")));
    if (!file.open() || file.write(CameraFile) < 0 || !file.flush()) {
        std::fprintf(stderr, "no camera file: %s\n", qPrintable(file.errorString()));
        return false;
    }
    aManager.ShowKCF();
    Click(aManager, "KCFRadio");
    Find<QLineEdit>(aManager, "KCFPathEdit")->setText(file.fileName());
    if (!mTour.Shoot(aManager.GetQWidget(), QStringLiteral("camera-bridges-file"))) {
        return false;
    }
    Click(aManager, "KCFLoadButton");
    // The features are shown when the port is chosen again.
    Choose(aManager, "PortCombo", "Serial0");
    Choose(aManager, "PortCombo", "Serial1");
    return ShootConnected(aManager, "KCFStatus", QStringLiteral("camera-bridges-file-connected"));
}
