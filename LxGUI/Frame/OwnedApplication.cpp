#include "LxGUI/Frame/OwnedApplication.h"

#include <QtCore/QDebug>
#include <QtCore/QThread>
#include <cstdlib>
#include <vector>

namespace
{

// Qt keeps references to both for as long as the application lives.
int sArgumentCount = 0;
char *sArguments[] = {nullptr};

// Released inside an event loop, to be deleted outside of it; at the latest when the program ends or the library is
// unloaded.
std::unique_ptr<QApplication> sReleased;

// The one that Ensure() made last and that has not ended.
QApplication *sOwned = nullptr;

int sPumpDepth = 0;

// Set when the program ends: from then on what Qt needs itself goes away piece by piece.
bool sExiting = false;

// Whether the program has made an application of its own though there was ours. Only one of the two can be used, and
// deleting the other would take from Qt what both share.
bool IsReplaced()
{
    return sOwned && QCoreApplication::instance() != sOwned;
}

// Qt goes on with the program's application; ours stays as it is, for good.
void Abandon(std::unique_ptr<QApplication> aApplication)
{
    static std::vector<QApplication *> sAbandoned;  // not lost, only given up
    sAbandoned.push_back(aApplication.release());
    sOwned = nullptr;
}

void End(std::unique_ptr<QApplication> aApplication)
{
    if (IsReplaced()) {
        Abandon(std::move(aApplication));
        return;
    }
    sOwned = nullptr;
    // Deferred deletions never come in a program without an event loop, and widgets cannot outlive the application.
    // What goes may take more along: the native parent of an embedded window.
    for (int round = 0; round < 2; ++round) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    aApplication.reset();
}

// What is registered last runs first: this one, before what Qt has made until now goes.
void CallAtExit()
{
    std::atexit([] {
        sExiting = true;
        if (sReleased && OwnedApplication::IsIdle()) {
            End(std::move(sReleased));
        }
        static_cast<void>(sReleased.release());
    });
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
    auto application = std::make_unique<QApplication>(sArgumentCount, sArguments);
    sOwned = application.get();
    return application;
}

void OwnedApplication::Release(std::unique_ptr<QApplication> aApplication)
{
    CollectReleased();
    if (!aApplication) {
        return;
    }
    if (sExiting) {
        static_cast<void>(aApplication.release());
        return;
    }
    if (IsIdle()) {
        End(std::move(aApplication));
    }
    else {
        sReleased = std::move(aApplication);
        CallAtExit();
    }
}

bool OwnedApplication::CanMakeWidgets()
{
    static QApplication *sWarnedOf = nullptr;
    if (IsReplaced() && QCoreApplication::instance() && sOwned != sWarnedOf) {
        sWarnedOf = sOwned;
        qWarning(
            "LxGUI: the program has made a QApplication after its first window, which had made one already. Make "
            "the QApplication before the first window.");
    }
    return !sExiting && qobject_cast<QApplication *>(QCoreApplication::instance()) != nullptr;
}

void OwnedApplication::LeaveAloneAtExit()
{
    static const bool sRegistered = (CallAtExit(), true);
    static_cast<void>(sRegistered);
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
