// The waits of QWaitCondition for programs under the thread sanitizer. Qt is not instrumented, so that the sanitizer
// does not see the mutex unlocked while Qt waits, and takes the next lock of it for a second one. Calls of our code
// come here first.

#include <dlfcn.h>

#include <QtCore/QDeadlineTimer>
#include <QtCore/QMutex>
#include <QtCore/QWaitCondition>

namespace
{

template <typename Time>
bool Wait(const char *aName, QWaitCondition *aCondition, QMutex *aMutex, Time aTime)
{
    using Function = bool (*)(QWaitCondition *, QMutex *, Time);
    const auto wait = reinterpret_cast<Function>(dlsym(RTLD_NEXT, aName));
    QtTsan::mutexPreUnlock(aMutex, 0);
    QtTsan::mutexPostUnlock(aMutex, 0);
    const bool woken = wait(aCondition, aMutex, aTime);
    QtTsan::mutexPreLock(aMutex, 0);
    QtTsan::mutexPostLock(aMutex, 0, 0);
    return woken;
}

}  // namespace

bool QWaitCondition::wait(QMutex *aMutex, QDeadlineTimer aDeadline)
{
    return Wait("_ZN14QWaitCondition4waitEP6QMutex14QDeadlineTimer", this, aMutex, aDeadline);
}

bool QWaitCondition::wait(QMutex *aMutex, unsigned long aTime)
{
    return Wait("_ZN14QWaitCondition4waitEP6QMutexm", this, aMutex, aTime);
}
