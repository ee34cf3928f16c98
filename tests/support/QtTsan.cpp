// Qt for programs under the thread sanitizer. Qt is not instrumented, so that the sanitizer sees neither that its locks
// are unlocked while Qt waits, and takes the next lock for a second one, nor that what a thread did before it sent an
// event, emitted a signal or ended is done for whoever gets the event or has waited for the thread. The calls that
// our code makes come here first and tell it.

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QMutex>
#include <QtCore/QThread>
#include <QtCore/QWaitCondition>
#include <utility>

namespace
{

char sEvents;       // what all threads have done before they sent their last events
char sAnswers;      // what all threads have done before the last calls of their slots returned
char sConnections;  // what all threads have done before they connected a signal

/// Qt's own function.
template <typename Function>
Function FindQt(const char *aName)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, aName));
}

/// Called before an event is delivered; true when it did that itself, as for calls, whose callers may wait for them.
bool OnEvent(void **aArguments)
{
    static thread_local const QEvent *sDelivered = nullptr;
    auto *const event = static_cast<QEvent *>(aArguments[1]);
    if (event == std::exchange(sDelivered, nullptr)) {
        return false;
    }
    __tsan_acquire(&sEvents);
    if (event->type() != QEvent::MetaCall) {
        return false;
    }
    sDelivered = event;
    *static_cast<bool *>(aArguments[2]) = QCoreApplication::sendEvent(static_cast<QObject *>(aArguments[0]), event);
    __tsan_release(&sAnswers);
    return true;
}

const bool IsListening = QInternal::registerCallback(QInternal::EventNotifyCallback, OnEvent);

template <typename Time>
bool Wait(const char *aName, QWaitCondition *aCondition, QMutex *aMutex, Time aTime)
{
    using Function = bool (*)(QWaitCondition *, QMutex *, Time);
    static const auto sWait = FindQt<Function>(aName);  // one for each type
    QtTsan::mutexPreUnlock(aMutex, 0);
    QtTsan::mutexPostUnlock(aMutex, 0);
    const bool woken = sWait(aCondition, aMutex, aTime);
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

void QCoreApplication::postEvent(QObject *aReceiver, QEvent *aEvent, int aPriority)
{
    using Function = void (*)(QObject *, QEvent *, int);
    static const auto sPost = FindQt<Function>("_ZN16QCoreApplication9postEventEP7QObjectP6QEventi");
    __tsan_release(&sEvents);
    sPost(aReceiver, aEvent, aPriority);
}

void QMetaObject::activate(QObject *aSender, const QMetaObject *aClass, int aSignal, void **aArguments)
{
    using Function = void (*)(QObject *, const QMetaObject *, int, void **);
    static const auto sActivate = FindQt<Function>("_ZN11QMetaObject8activateEP7QObjectPKS_iPPv");
    __tsan_release(&sEvents);
    __tsan_acquire(&sConnections);
    sActivate(aSender, aClass, aSignal, aArguments);
    if (aArguments && aArguments[0]) {  // it has an answer
        __tsan_acquire(&sAnswers);
    }
}

bool QMetaObject::invokeMethodImpl(QObject *aObject, QtPrivate::QSlotObjectBase *aSlot, Qt::ConnectionType aType,
                                   void *aResult)
{
    using Function = bool (*)(QObject *, QtPrivate::QSlotObjectBase *, Qt::ConnectionType, void *);
    static const auto sInvoke = FindQt<Function>(
        "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv");
    __tsan_release(&sEvents);
    if (aType != Qt::BlockingQueuedConnection) {
        return sInvoke(aObject, aSlot, aType, aResult);
    }
    aSlot->ref();  // it goes after what the other thread has done with it
    const bool isCalled = sInvoke(aObject, aSlot, aType, aResult);
    __tsan_acquire(&sAnswers);
    aSlot->destroyIfLastRef();
    return isCalled;
}

QMetaObject::Connection QObject::connectImpl(const QObject *aSender, void **aSignal, const QObject *aReceiver,
                                             void **aFunction, QtPrivate::QSlotObjectBase *aSlot,
                                             Qt::ConnectionType aType, const int *aTypes, const QMetaObject *aClass)
{
    using Function =
        QMetaObject::Connection (*)(const QObject *, void **, const QObject *, void **, QtPrivate::QSlotObjectBase *,
                                    Qt::ConnectionType, const int *, const QMetaObject *);
    static const auto sConnect = FindQt<Function>(
        "_ZN7QObject11connectImplEPKS_PPvS1_S3_PN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPKiPK11QMetaObject");
    __tsan_release(&sConnections);
    return sConnect(aSender, aSignal, aReceiver, aFunction, aSlot, aType, aTypes, aClass);
}

void QThread::start(Priority aPriority)
{
    using Function = void (*)(QThread *, Priority);
    static const auto sStart = FindQt<Function>("_ZN7QThread5startENS_8PriorityE");
    connect(
        this, &QThread::finished, this, [this] { __tsan_release(this); }, Qt::DirectConnection);
    sStart(this, aPriority);
}

bool QThread::wait(QDeadlineTimer aDeadline)
{
    using Function = bool (*)(QThread *, QDeadlineTimer);
    static const auto sWait = FindQt<Function>("_ZN7QThread4waitE14QDeadlineTimer");
    const bool hasEnded = sWait(this, aDeadline);
    if (hasEnded) {
        __tsan_acquire(this);
    }
    return hasEnded;
}
