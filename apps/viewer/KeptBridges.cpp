#include "KeptBridges.h"

#include <QtCore/QCoreApplication>
#include <QtWidgets/QApplication>

#include "LxGUI/LxCameraBridgeManagerWnd.h"
#include "LxPersistence/LxConfigurationReader.h"
#include "LxPersistence/LxConfigurationWriter.h"
#include "ViewerConfiguration.h"

namespace
{

constexpr const char *BridgeOptions = "CameraBridges";  // of each frame grabber, by its unique ID

}  // namespace

LxString KeptBridges::Save()
{
    LxConfigurationWriter writer;
    mWindow.Save(writer);
    return writer.SaveToString();
}

QStringList KeptBridges::Restore(const LxString &aGrabber, const ViewerConfiguration &aConfiguration)
{
    LxPropertyList list = aConfiguration.Get(BridgeOptions);
    const LxProperty *bridges = list.GetProperty(aGrabber);
    LxConfigurationReader reader;
    QStringList texts;
    if (mWindow.GetBridgeCount() > 0 && bridges && reader.LoadFromString(bridges->GetValue()).IsOK()) {
        LxStringList errors;
        QApplication::setOverrideCursor(Qt::WaitCursor);
        mWindow.Load(reader, errors);
        QApplication::restoreOverrideCursor();
        for (size_t i = 0; i < errors.GetSize(); ++i) {
            texts << QCoreApplication::translate("KeptBridges", "Camera bridge on %1")
                         .arg(QString::fromUtf8(errors.GetItem(i).GetAscii()));
        }
    }
    mRestored = Save();
    return texts;
}

void KeptBridges::Keep(const LxString &aGrabber, ViewerConfiguration &aConfiguration)
{
    const LxString text = Save();
    if (mWindow.GetBridgeCount() == 0 || text == mRestored) {
        return;
    }
    LxPropertyList list;
    list.Add(LxProperty(aGrabber, text));
    aConfiguration.Set(BridgeOptions, list);
    mRestored = text;
}
