#include "LxGUI/Frame/ApplicationThread.h"

#include <QtCore/QDebug>

bool IsOnApplicationThread(const char *aOperation)
{
    const QCoreApplication *application = QCoreApplication::instance();
    if (!application || application->thread() == QThread::currentThread()) {
        return true;
    }
    qWarning("LxGUI: %s was called on another thread than that of the QApplication. Windows live on that thread only.",
             aOperation);
    return false;
}
