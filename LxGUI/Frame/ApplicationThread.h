#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QMetaObject>
#include <QtCore/QThread>
#include <utility>

/// Whether this is the thread of the application, or there is no application. Otherwise it warns, naming the public
/// operation that was called.
bool IsOnApplicationThread(const char *aOperation);

/// Calls a function on the thread of the application and returns when it is done: directly when this is that thread or
/// when there is no application, otherwise from the application's event loop. A GUI thread that waits for the calling
/// thread meanwhile hangs.
template <typename Function>
void CallOnApplicationThread(Function &&aFunction)
{
    QCoreApplication *application = QCoreApplication::instance();
    if (!application || application->thread() == QThread::currentThread()) {
        std::forward<Function>(aFunction)();
    }
    else {
        QMetaObject::invokeMethod(application, std::forward<Function>(aFunction), Qt::BlockingQueuedConnection);
    }
}
