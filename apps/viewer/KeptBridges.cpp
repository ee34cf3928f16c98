#include "KeptBridges.h"

#include <QtWidgets/QApplication>

#include "LxGUI/LxCameraBridgeManagerWnd.h"
#include "LxPersistence/LxConfigurationReader.h"
#include "LxPersistence/LxConfigurationWriter.h"
#include "ViewerConfiguration.h"

namespace
{

constexpr const char *BridgeOptions = "CameraBridges";  // of each frame grabber, by its unique ID

}  // namespace

void KeepBridges(LxCameraBridgeManagerWnd &aBridges, const LxString &aGrabber, ViewerConfiguration &aConfiguration)
{
    if (aBridges.GetBridgeCount() == 0) {
        return;
    }
    LxConfigurationWriter writer;
    aBridges.Save(writer);
    LxPropertyList list;
    list.Add(LxProperty(aGrabber, writer.SaveToString()));
    aConfiguration.Set(BridgeOptions, list);
}

QString RestoreBridges(LxCameraBridgeManagerWnd &aBridges, const LxString &aGrabber,
                       const ViewerConfiguration &aConfiguration)
{
    LxPropertyList list = aConfiguration.Get(BridgeOptions);
    const LxProperty *bridges = list.GetProperty(aGrabber);
    LxConfigurationReader reader;
    if (aBridges.GetBridgeCount() == 0 || !bridges || !reader.LoadFromString(bridges->GetValue()).IsOK()) {
        return QString();
    }
    LxStringList errors;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    aBridges.Load(reader, errors);
    QApplication::restoreOverrideCursor();
    return errors.GetSize() > 0 ? QString::fromUtf8(errors.GetItem(0).GetAscii()) : QString();
}
