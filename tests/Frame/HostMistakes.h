#pragma once

// What the mistakes of hosts have in common. They are made in a child process.

#include <QtWidgets/QApplication>
#include <functional>
#include <memory>
#include <ostream>
#include <vector>

#include "LxGUI/LxWnd.h"

constexpr unsigned Refused = 0x4001;
constexpr unsigned NotAccepted = 0x4002;
inline QWidget *const NoParent = nullptr;

/// Ends the child when something is not as it should be.
void Check(bool aHolds, const char *aWhat);
#define CHECK(aCondition) Check(aCondition, #aCondition)

/// Any of the windows; destroying it destroys the window.
class AnyWindow
{
public:
    virtual ~AnyWindow() = default;
    virtual LxWnd &Get() = 0;
};

struct Kind
{
    const char *mName;
    std::function<std::unique_ptr<AnyWindow>()> mMake;
};

/// All the windows.
std::vector<Kind> Kinds();

/// The application of a host.
class HostApplication
{
public:
    HostApplication() : mApplication(mCount, mArguments) { QApplication::setQuitOnLastWindowClosed(false); }
    ~HostApplication()
    {
        // what was to be deleted later: no event loop runs any more
        for (int round = 0; round < 2; ++round) {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

private:
    int mCount = 1;
    char mName[5] = "host";
    char *mArguments[2] = {mName, nullptr};
    QApplication mApplication;
};

/// Some turns of the event loop.
void Turn();

/// Nothing can be shown, by any operation, and nothing breaks.
void CheckRefuses(LxWnd &aWindow);

struct Mistake
{
    const char *mName;
    void (*mMake)(const Kind &);
    const char *mSays;       // part of what is said on the error output; empty: no warning of the library
    bool mIsForAll = false;  // made once, with all windows at a time
    bool mIsAlone = false;   // in a process of its own by each window: of what Qt then has left, there is no more
};

/// For the names of the tests.
inline void PrintTo(const Mistake &aMistake, std::ostream *aStream)
{
    *aStream << aMistake.mName;
}

std::vector<Mistake> ApplicationMistakes();
std::vector<Mistake> ThreadMistakes();
std::vector<Mistake> LifetimeMistakes();
std::vector<Mistake> DeviceMistakes();
