#include "LxGUI/Frame/OwnedApplication.h"

#include <QtCore/QThread>

namespace
{

// Qt keeps references to both for as long as the application lives.
int sArgumentCount = 0;
char *sArguments[] = {nullptr};

// Released inside an event loop, to be deleted outside of it; at the latest when the library is unloaded.
std::unique_ptr<QApplication> sReleased;

int sPumpDepth = 0;

void End(std::unique_ptr<QApplication> aApplication)
{
    // Deferred deletions never come in a program without an event loop, and widgets cannot outlive the application.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    aApplication.reset();
}

}  // namespace

std::unique_ptr<QApplication> OwnedApplication::Ensure()
{
    CollectReleased();
    if (sReleased) {
        return std::move(sReleased);
    }
    if (QCoreApplication::instance()) {
        return nullptr;
    }
    return std::make_unique<QApplication>(sArgumentCount, sArguments);
}

void OwnedApplication::Release(std::unique_ptr<QApplication> aApplication)
{
    CollectReleased();
    if (!aApplication) {
        return;
    }
    if (IsIdle()) {
        End(std::move(aApplication));
    }
    else {
        sReleased = std::move(aApplication);
    }
}

bool OwnedApplication::CanMakeWidgets()
{
    return qobject_cast<QApplication *>(QCoreApplication::instance()) != nullptr;
}

bool OwnedApplication::IsIdle()
{
    return sPumpDepth == 0 && QThread::currentThread()->loopLevel() == 0;
}

void OwnedApplication::ProcessEvents()
{
    ++sPumpDepth;
    QCoreApplication::processEvents();
    --sPumpDepth;
    CollectReleased();
}

void OwnedApplication::CollectReleased()
{
    if (sReleased && IsIdle()) {
        End(std::move(sReleased));
    }
}
