#pragma once

#include <QtCore/QStringList>
#include <string>

#include "LxDevice/ILxDeviceAdapter.h"
#include "LxGUI/LxSerialBridgeManagerWnd.h"
#include "LxPersistence/LxPropertyList.h"

class QWidget;
class ViewerConfiguration;

/// The serial bridges of the viewer's device: their window, and their place in the configuration, where every device
/// has a list of its own. GUI thread.
class SerialBridges
{
public:
    /// Starts the bridges that the configuration has for a device. With null all stop; the adapter must live until
    /// then.
    /// @return what could not be restored, one sentence each.
    QStringList SetDevice(ILxDeviceAdapter *aAdapter, const ViewerConfiguration &aConfiguration);
    /// Whether the device has serial ports.
    bool HasPorts() const;
    void Show(QWidget *aParent);
    void Close() { mWindow.Close(); }
    /// Keeps the bridges in the configuration if they were changed since they were restored: what could not be restored
    /// today may be there tomorrow.
    void Save(ViewerConfiguration &aConfiguration);

    LxSerialBridgeManagerWnd &Window() { return mWindow; }

private:
    std::string GetListName() const;

    LxSerialBridgeManagerWnd mWindow;
    ILxDeviceAdapter *mAdapter = nullptr;
    LxPropertyList mRestored;  // the bridges as they were after the restoration
};

/// Tells the user in one box what could not be restored; nothing when there is nothing to tell.
void ShowBridgeMessages(QWidget *aParent, const QStringList &aMessages);
