#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <memory>

#include "LxCameraBridge/LxCameraBridge.h"

/// A serial port of the device and the bridge to the camera behind it.
class CameraBridge
{
public:
    enum Mode : int32_t
    {
        ModeNone = -1,
        ModeCameraFile = 0,
        ModeCLProtocol = 1,
        ModeGenCP = 2,
    };

    CameraBridge(LxDevice *aDevice, LxDeviceSerial aPort, LxStream *aStream);
    virtual ~CameraBridge();

    /// Disconnects and forgets everything but the mode.
    void Reset();
    /// Sets mode and texts by how the SDK's bridge is connected; resets the entry when it is not.
    void Synchronize();
    /// Sets the status text by the SDK's bridge.
    void UpdateStatus();

    const LxDeviceSerial mPort;
    Mode mMode = ModeNone;
    const std::unique_ptr<LxCameraBridge> mBridge;
    QStringList mTemplates;  ///< as the SDK gives them
    QStringList mXMLIDs;     ///< as well
    int mTemplateIndex = 0;  ///< the template chosen last
    // what is shown of a connected bridge
    QString mTemplateText;
    QString mXMLIDText;
    QString mCameraFilePath;
    QString mCameraIDText;
    QString mStatusText;
};
