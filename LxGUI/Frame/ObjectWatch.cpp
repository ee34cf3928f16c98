#include "LxGUI/Frame/ObjectWatch.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QPointer>
#include <QtCore/QThread>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "LxBase/LxLifetime.h"
#include "LxDevice/LxDeviceAdapter.h"

namespace
{

// How long the end of an object waits for a GUI thread that may be waiting for the thread that ends it: so many short
// times, as the clock goes on when the whole program stands still.
constexpr std::chrono::milliseconds ShortTime(100);
constexpr int ShortTimes = 20;

/// One window that gives up one object.
class GivingUp
{
public:
    GivingUp(QPointer<QObject> aWindow, const char *aWhat, std::function<void()> aGiveUp)
        : mWindow(std::move(aWindow)), mWhat(aWhat), mGiveUp(std::move(aGiveUp))
    {
    }

    /// On the application's thread.
    void Run()
    {
        {
            const std::lock_guard lock(mMutex);
            if (mState == State::TooLate) {
                return;
            }
            mState = State::Running;
        }
        if (mWindow) {
            qWarning("LxGUI: %s was destroyed while a window used it. Give the window another one, or null, before.",
                     mWhat);
            mGiveUp();
        }
        const std::lock_guard lock(mMutex);
        mState = State::Done;
        mChanged.notify_all();
    }
    /// On another thread.
    void Wait()
    {
        std::unique_lock lock(mMutex);
        const auto isDone = [this] { return mState == State::Done; };
        for (int i = 0; i < ShortTimes && !isDone(); ++i) {
            mChanged.wait_for(lock, ShortTime, isDone);
        }
        if (mState == State::Waiting) {
            mState = State::TooLate;
            qWarning(
                "LxGUI: %s was destroyed while a window used it and the GUI thread was busy. The window must not be "
                "used any more.",
                mWhat);
            return;
        }
        mChanged.wait(lock, isDone);
    }

private:
    enum class State
    {
        Waiting,
        Running,
        Done,
        TooLate
    };

    const QPointer<QObject> mWindow;
    const char *const mWhat;
    const std::function<void()> mGiveUp;
    std::mutex mMutex;  // guards mState
    std::condition_variable mChanged;
    State mState = State::Waiting;
};

}  // namespace

void ObjectWatch::Set(QObject *aWindow, const char *aWhat, std::initializer_list<const void *> aObjects,
                      const std::function<void()> &aGiveUp)
{
    mWatches.clear();
    for (const void *object : aObjects) {
        if (!object) {
            continue;
        }
        mWatches.push_back(LxLifetime::Watch(object, [window = QPointer<QObject>(aWindow), aWhat, aGiveUp] {
            const auto givingUp = std::make_shared<GivingUp>(window, aWhat, aGiveUp);
            QCoreApplication *application = QCoreApplication::instance();
            if (!application || application->thread() == QThread::currentThread()) {
                givingUp->Run();
                return;
            }
            QMetaObject::invokeMethod(
                application, [givingUp] { givingUp->Run(); }, Qt::QueuedConnection);
            givingUp->Wait();
        }));
    }
}

void ObjectWatch::SetAdapter(QObject *aWindow, ILxDeviceAdapter *aAdapter, const std::function<void()> &aGiveUp)
{
    const auto *adapter = dynamic_cast<LxDeviceAdapter *>(aAdapter);
    Set(aWindow, "a device", {aAdapter, adapter ? adapter->GetDevice() : nullptr}, aGiveUp);
}
