// What a host gets that does it wrong, with each of the windows. Every mistake is made in a process of its own, which
// is this program again: it must end by itself, say what it is to say, and answer with the codes that are promised.

#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QtCore/QEventLoop>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QVBoxLayout>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "LxCameraBridge/LxCameraBridge.h"
#include "LxDevice/LxDeviceGEV.h"
#include "LxGUI/LxCameraBridgeManagerWnd.h"
#include "LxGUI/LxDeviceFinderWnd.h"
#include "LxGUI/LxDisplayWnd.h"
#include "LxGUI/LxGenBrowserWnd.h"
#include "LxGUI/LxRegisterInterfaceWnd.h"
#include "LxGUI/LxSerialBridgeManagerWnd.h"
#include "LxGUI/LxSerialTerminalWnd.h"
#include "LxPersistence/LxPropertyList.h"
#include "LxSimulation/LxSimulatedGenCPCamera.h"
#include "SimulatedGrabber.h"

extern char **environ;

namespace
{

constexpr unsigned Refused = 0x4001;
constexpr unsigned NotAccepted = 0x4002;

std::string sProgram;

// In a child: what is not as it should be ends it.
void Check(bool aHolds, const char *aWhat)
{
    if (!aHolds) {
        std::fprintf(stderr, "NOT AS IT SHOULD BE: %s\n", aWhat);
        std::_Exit(3);
    }
}
#define CHECK(aCondition) Check(aCondition, #aCondition)

/// Any of the windows; destroying it destroys the window.
class AnyWindow
{
public:
    virtual ~AnyWindow() = default;
    virtual LxWnd &Get() = 0;
};

template <class Window>
class WindowOf : public AnyWindow
{
public:
    LxWnd &Get() override { return mWindow; }

private:
    Window mWindow;
};

struct Kind
{
    const char *mName;
    std::function<std::unique_ptr<AnyWindow>()> mMake;
};

template <class Window>
Kind KindOf(const char *aName)
{
    return {aName, [] { return std::make_unique<WindowOf<Window>>(); }};
}

std::vector<Kind> Kinds()
{
    return {KindOf<LxCameraBridgeManagerWnd>("LxCameraBridgeManagerWnd"),
            KindOf<LxDeviceFinderWnd>("LxDeviceFinderWnd"),
            KindOf<LxDisplayWnd>("LxDisplayWnd"),
            KindOf<LxGenBrowserWnd>("LxGenBrowserWnd"),
            KindOf<LxRegisterInterfaceWnd>("LxRegisterInterfaceWnd"),
            KindOf<LxSerialBridgeManagerWnd>("LxSerialBridgeManagerWnd"),
            KindOf<LxSerialTerminalWnd>("LxSerialTerminalWnd")};
}

QWidget *const cNoParent = nullptr;

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

// Some turns of the event loop.
void Turn()
{
    for (int i = 0; i < 3; ++i) {
        QEventLoop loop;
        QTimer::singleShot(0, &loop, &QEventLoop::quit);
        loop.exec();
    }
}

// Nothing can be shown, by any operation, and nothing breaks.
void CheckRefuses(LxWnd &aWindow)
{
    CHECK(aWindow.ShowModal().GetCode() == Refused);
    CHECK(aWindow.ShowModeless().GetCode() == Refused);
    CHECK(aWindow.ShowModeless(static_cast<HWND>(nullptr)).GetCode() == Refused);
    CHECK(aWindow.Create(static_cast<HWND>(nullptr), 0).GetCode() == Refused);
    CHECK(aWindow.GetHandle() == nullptr);
    CHECK(!aWindow.IsVisible());
    aWindow.SetTitle("title");
    aWindow.SetPosition(1, 2, 300, 200);
    int x = 0, y = 0, width = 0, height = 0;
    aWindow.GetPosition(x, y, width, height);
    aWindow.GetTitle();
    aWindow.Close();
}

// The application

void MakeTheApplicationLater(const Kind &aKind)
{
    const auto window = aKind.mMake();
    {
        const HostApplication application;
        CHECK(window->Get().ShowModeless(cNoParent).IsOK());
        Turn();
        CHECK(window->Get().IsVisible());
        window->Get().Close();
        QTimer::singleShot(0, qApp, [&] { qobject_cast<QDialog *>(window->Get().GetQWidget())->accept(); });
        CHECK(window->Get().ShowModal(cNoParent).IsOK());
    }
    CHECK(!window->Get().IsVisible());
}

void MakeTheApplicationUnderAShownWindow(const Kind &aKind)
{
    auto window = aKind.mMake();
    window->Get().ShowModeless();
    LxWnd::DoEvents();
    const HostApplication application;
    Turn();
    CHECK(window->Get().IsVisible());
    window.reset();
    Turn();
    const auto next = aKind.mMake();
    CHECK(next->Get().ShowModeless().IsOK());
    Turn();
}

void MakeAWindowAfterTheApplication(const Kind &aKind)
{
    {
        const HostApplication application;
    }
    auto window = aKind.mMake();
    CHECK(window->Get().ShowModeless().IsOK());
    LxWnd::DoEvents();
    CHECK(window->Get().IsVisible());
    window.reset();
    CHECK(QCoreApplication::instance() == nullptr);
}

void EndTheApplicationUnderAShownWindow(const Kind &aKind)
{
    auto application = std::make_unique<HostApplication>();
    auto shown = aKind.mMake();
    auto hidden = aKind.mMake();
    auto embedded = aKind.mMake();
    auto *host = new QWidget;
    shown->Get().ShowModeless();
    embedded->Get().Create(host);
    Turn();
    delete host;  // a widget of the host's own does not outlive its application
    application.reset();
    for (const auto &window : {shown.get(), hidden.get(), embedded.get()}) {
        CheckRefuses(window->Get());
    }
    LxWnd::DoEvents();
    shown.reset();
}

void UseAnApplicationWithoutWidgets(const Kind &aKind)
{
    int count = 1;
    char name[] = "host";
    char *arguments[] = {name, nullptr};
    const QCoreApplication application(count, arguments);
    const auto window = aKind.mMake();
    CheckRefuses(window->Get());
    CHECK(window->Get().GetQWidget() == nullptr);
}

// Threads

void MakeAWindowOnAnotherThread(const Kind &aKind)
{
    const HostApplication application;
    std::unique_ptr<AnyWindow> window;
    std::thread([&] {
        window = aKind.mMake();
        CheckRefuses(window->Get());
        aKind.mMake().reset();
    }).join();
    CheckRefuses(window->Get());  // on the right thread it is too late
}

void CallAWindowOnAnotherThread(const Kind &aKind)
{
    const HostApplication application;
    const auto window = aKind.mMake();
    window->Get().SetTitle("before");
    window->Get().ShowModeless();
    Turn();
    std::thread([&] {
        CheckRefuses(window->Get());
        LxWnd::DoEvents();
    }).join();
    CHECK(window->Get().IsVisible());
    CHECK(window->Get().GetTitle() == LxString("before"));
    Turn();
}

void CallTheirOwnOperationsOnAnotherThread(const Kind &)
{
    const HostApplication application;
    LxDisplayWnd display;
    LxGenBrowserWnd browser;
    LxRegisterInterfaceWnd registers;
    LxSerialTerminalWnd terminal;
    LxCameraBridgeManagerWnd cameras;
    for (LxWnd *window : std::initializer_list<LxWnd *>{&display, &browser, &registers, &terminal, &cameras}) {
        window->ShowModeless();
    }
    std::thread([&] {
        display.Zoom1To1();
        display.ZoomFit();
        display.ZoomIn();
        display.ZoomOut();
        CHECK(display.SetBackgroundColor(1, 2, 3).GetCode() == Refused);
        unsigned x = 0, y = 0;
        CHECK(!display.PictureAt(1, 1, x, y));
        browser.SetGenParameterArray(nullptr);
        browser.SetRefreshMode(LxGenRefreshManual);
        browser.SetVisibility(LxGenVisibilityGuru);
        browser.Refresh();
        CHECK(registers.SetDevice(nullptr).GetCode() == Refused);
        CHECK(terminal.SetDevice(nullptr).GetCode() == Refused);
        CHECK(terminal.SetSerialPort(LxDeviceSerial::Serial1).GetCode() == Refused);
        cameras.ShowKCF();
        cameras.HideKCF();
    }).join();
    CHECK(browser.GetRefreshMode() == LxGenRefreshAutomatic);
    CHECK(browser.GetVisibility() == LxGenVisibilityBeginner);
    Turn();
}

void DestroyAWindowOnAnotherThread(const Kind &aKind)
{
    const HostApplication application;
    auto window = aKind.mMake();
    window->Get().ShowModeless();
    Turn();
    const QPointer<QWidget> dialog = window->Get().GetQWidget();
    std::atomic<bool> done{false};
    std::thread thread([&] {
        window.reset();
        done = true;
    });
    while (!done) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    }
    thread.join();
    Turn();
    CHECK(dialog.isNull());
}

// Lifetimes

void DestroyAModalWindow(const Kind &aKind)
{
    const HostApplication application;
    auto window = aKind.mMake();
    QTimer::singleShot(0, qApp, [&] { window.reset(); });
    CHECK(window->Get().ShowModal(cNoParent).GetCode() == NotAccepted);
    CHECK(!window);
    Turn();
}

void DestroyAModelessWindow(const Kind &aKind)
{
    const HostApplication application;
    auto window = aKind.mMake();
    window->Get().ShowModeless();
    Turn();
    const QPointer<QWidget> dialog = window->Get().GetQWidget();
    window.reset();
    Turn();
    CHECK(dialog.isNull());
}

void DestroyAnEmbeddedWindow(const Kind &aKind)
{
    const HostApplication application;
    QWidget host;
    auto *layout = new QVBoxLayout(&host);
    auto *widget = new QWidget;
    layout->addWidget(widget);
    host.show();
    auto window = aKind.mMake();
    CHECK(window->Get().Create(widget).IsOK());
    Turn();
    window.reset();
    Turn();
    CHECK(widget->isVisible());
    CHECK(widget->findChildren<QWidget *>().isEmpty());
    auto top = aKind.mMake();
    CHECK(top->Get().Create(static_cast<HWND>(nullptr), 0).GetCode() == Refused);  // shown all the same
    CHECK(top->Get().IsVisible());
    top.reset();
    Turn();
}

void DestroyTheHostsWidgetFirst(const Kind &aKind)
{
    const HostApplication application;
    auto host = std::make_unique<QWidget>();
    auto *widget = new QWidget(host.get());
    host->show();
    const auto window = aKind.mMake();
    window->Get().Create(widget);
    Turn();
    host.reset();
    Turn();
    CHECK(!window->Get().IsVisible());
    window->Get().SetTitle("still usable");
    CHECK(window->Get().Close().IsOK());
    CHECK(window->Get().ShowModeless(cNoParent).IsOK());
    Turn();
}

void DestroyTheParentOfADialogFirst(const Kind &aKind)
{
    const HostApplication application;
    auto parent = std::make_unique<QWidget>();
    parent->show();
    const auto modeless = aKind.mMake();
    modeless->Get().ShowModeless(parent.get());
    const auto modal = aKind.mMake();
    QTimer::singleShot(0, qApp, [&] { parent.reset(); });
    CHECK(modal->Get().ShowModal(parent.get()).GetCode() == NotAccepted);
    Turn();
    for (const auto &window : {modeless.get(), modal.get()}) {
        CHECK(!window->Get().IsVisible());
        CHECK(window->Get().ShowModeless(cNoParent).IsOK());
    }
    Turn();
}

void DestroyEverythingAtOnce(const Kind &aKind)
{
    const HostApplication application;
    auto parent = std::make_unique<QWidget>();
    parent->show();
    auto window = aKind.mMake();
    QTimer::singleShot(0, qApp, [&] {
        parent.reset();
        window.reset();
    });
    CHECK(window->Get().ShowModal(parent.get()).GetCode() == NotAccepted);
    Turn();
}

void ShowAModalWindowTwice(const Kind &aKind)
{
    const HostApplication application;
    const auto window = aKind.mMake();
    unsigned code = 0;
    QTimer::singleShot(0, qApp, [&] {
        code = window->Get().ShowModal(cNoParent).GetCode();
        window->Get().Close();
    });
    CHECK(window->Get().ShowModal(cNoParent).GetCode() == NotAccepted);
    CHECK(code == 28);
}

void LeaveWindowsToTheEndOfTheProgram(const Kind &aKind)
{
    static std::vector<std::unique_ptr<AnyWindow>> sWindows;
    sWindows.push_back(aKind.mMake());
    sWindows.back()->Get().ShowModeless();
    LxWnd::DoEvents();
}

// Objects of the SDK

/// A connected frame grabber and every window that works on one, all shown.
class ShownGrabber
{
public:
    ShownGrabber()
    {
        LxSimulation::Clear();
        LxSimulation::Enable(true);
        LxSimulatedNetworkAdapter adapter;
        adapter.mName = "eth0";
        adapter.mAddresses = {{"192.168.1.1", "255.255.255.0"}};
        LxSimulation::SetNetworkAdapter(adapter);
        const LxSimulatedDevice values = SimulatedGrabber::MakeValues();
        LxSimulation::SetDevice(values);
        LxSimulation::SetSerialPeer(SimulatedGrabber::ID, LxDeviceSerial::Serial0,
                                    std::make_shared<LxSimulatedGenCPCamera>());
        LxSystem system;
        const LxDeviceInfo *info = nullptr;
        CHECK(system.FindDevice(values.mIPAddress, &info).IsOK());
        CHECK(LxSystem::Connect(info, LxDeviceAccess::Control, mDevice).IsOK());
        mAdapter = std::make_unique<LxDeviceAdapter>(mDevice.get());

        CHECK(mRegisters.SetDevice(dynamic_cast<LxDeviceGEV *>(mDevice.get())).IsOK());
        mBrowser.SetGenParameterArray(mDevice->GetParameters());
        CHECK(mTerminal.SetDevice(mAdapter.get()).IsOK());
        CHECK(mSerials.SetDevice(mAdapter.get()).IsOK());
        CHECK(mCameras.SetDevice(mDevice.get()).IsOK());
        CHECK(mCameras.GetBridgeCount() > 0);
        LxCameraBridge *bridge = mCameras.GetBridge(0);
        LxStringList ids;
        CHECK(bridge->GetGenCPXMLIDs(ids).IsOK());
        CHECK(bridge->ConnectGenCP(ids.GetItem(0)).IsOK());
        bridge->SetParametersSyncEnabled(true);
        for (LxWnd *window : Windows()) {
            window->ShowModeless();
        }
        Turn();
    }
    ~ShownGrabber()
    {
        LxSimulation::Clear();
        LxSimulation::Disable();
    }

    std::vector<LxWnd *> Windows() { return {&mRegisters, &mBrowser, &mTerminal, &mSerials, &mCameras}; }

    /// The user goes on: every button is pressed that is enabled and opens no dialog.
    void Use()
    {
        for (LxWnd *window : Windows()) {
            CHECK(window->IsVisible());
            for (QAbstractButton *button : window->GetQWidget()->findChildren<QAbstractButton *>()) {
                const QString text = button->text();
                if (button->isEnabled() && !text.contains(QLatin1String("...")) &&
                    !text.contains(QLatin1String("Options"))) {
                    QTimer::singleShot(0, qApp, [] {
                        if (auto *box = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
                            box->reject();
                        }
                    });
                    button->click();
                }
            }
            Turn();
        }
        mBrowser.Refresh();
        CHECK(mCameras.GetBridgeCount() == 0);
        LxPropertyList list;
        CHECK(mSerials.Save(list).IsOK());
        Turn();
    }

    std::unique_ptr<LxDevice> mDevice;
    std::unique_ptr<LxDeviceAdapter> mAdapter;

private:
    LxRegisterInterfaceWnd mRegisters;
    LxGenBrowserWnd mBrowser;
    LxSerialTerminalWnd mTerminal;
    LxSerialBridgeManagerWnd mSerials;
    LxCameraBridgeManagerWnd mCameras;
};

void DestroyTheDevice(const Kind &)
{
    const HostApplication application;
    ShownGrabber grabber;
    grabber.mDevice.reset();
    grabber.Use();
    grabber.mAdapter.reset();
    Turn();
}

void DestroyTheAdapter(const Kind &)
{
    const HostApplication application;
    ShownGrabber grabber;
    grabber.mAdapter.reset();
    Turn();
    grabber.mDevice.reset();
    grabber.Use();
}

void DestroyTheDeviceOnAnotherThread(const Kind &)
{
    const HostApplication application;
    ShownGrabber grabber;
    std::atomic<bool> done{false};
    std::thread thread([&] {
        grabber.mDevice.reset();
        done = true;
    });
    while (!done) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
    }
    thread.join();
    grabber.Use();
}

void WaitForTheThreadThatDestroysTheDevice(const Kind &)
{
    const HostApplication application;
    auto *grabber = new ShownGrabber;  // its windows must not be used any more
    std::thread([&] { grabber->mDevice.reset(); }).join();
    std::fflush(nullptr);
    std::_Exit(0);
}

void DisconnectTheDevice(const Kind &)
{
    const HostApplication application;
    ShownGrabber grabber;
    grabber.mDevice->Disconnect();
    Turn();
    grabber.mDevice.reset();
    grabber.Use();
}

void LetTheDeviceVanish(const Kind &)
{
    const HostApplication application;
    ShownGrabber grabber;
    LxSimulation::Clear();  // the device vanishes below everything
    Turn();
    grabber.mDevice.reset();
    grabber.Use();
}

void DestroyTheSystemOfTheHost(const Kind &)
{
    // the finder owns what it found: the host's own systems may go at any time
    const HostApplication application;
    LxSimulation::AddDefaultHost();
    LxSimulation::Enable(true);
    LxDeviceFinderWnd finder;
    auto system = std::make_unique<LxSystem>();
    system->Find();
    QTimer::singleShot(100, qApp, [&] {
        system.reset();
        finder.Close();
    });
    CHECK(finder.ShowModal(cNoParent).GetCode() == NotAccepted);
    LxSimulation::Disable();
}

struct Mistake
{
    const char *mName;
    void (*mMake)(const Kind &);
    const char *mSays;       // part of what is said on the error output; empty: no warning of the library
    bool mIsForAll = false;  // made once, with all windows at a time
    bool mIsAlone = false;   // made in a process of its own by each window: of what Qt then has left, there is no more
};

const char *const cOtherThread = "was called on another thread than that of the QApplication";

const Mistake cMistakes[] = {
    {"MakeTheApplicationLater", MakeTheApplicationLater, "Make the QApplication before the first window.", false, true},
    {"MakeTheApplicationUnderAShownWindow", MakeTheApplicationUnderAShownWindow,
     "Make the QApplication before the first window.", false, true},
    {"MakeAWindowAfterTheApplication", MakeAWindowAfterTheApplication, ""},
    {"EndTheApplicationUnderAShownWindow", EndTheApplicationUnderAShownWindow, "", false, true},
    {"UseAnApplicationWithoutWidgets", UseAnApplicationWithoutWidgets, ""},
    {"MakeAWindowOnAnotherThread", MakeAWindowOnAnotherThread, cOtherThread},
    {"CallAWindowOnAnotherThread", CallAWindowOnAnotherThread, cOtherThread},
    {"CallTheirOwnOperationsOnAnotherThread", CallTheirOwnOperationsOnAnotherThread,
     "LxGenBrowserWnd::SetGenParameterArray() was called on another thread", true},
    {"DestroyAWindowOnAnotherThread", DestroyAWindowOnAnotherThread, cOtherThread},
    {"DestroyAModalWindow", DestroyAModalWindow, ""},
    {"DestroyAModelessWindow", DestroyAModelessWindow, ""},
    {"DestroyAnEmbeddedWindow", DestroyAnEmbeddedWindow, ""},
    {"DestroyTheHostsWidgetFirst", DestroyTheHostsWidgetFirst, ""},
    {"DestroyTheParentOfADialogFirst", DestroyTheParentOfADialogFirst, ""},
    {"DestroyEverythingAtOnce", DestroyEverythingAtOnce, ""},
    {"ShowAModalWindowTwice", ShowAModalWindowTwice, ""},
    {"DestroyTheDevice", DestroyTheDevice, "a device was destroyed while a window used it.", true},
    {"DestroyTheAdapter", DestroyTheAdapter, "a device was destroyed while a window used it.", true},
    {"DestroyTheDeviceOnAnotherThread", DestroyTheDeviceOnAnotherThread,
     "an array of features was destroyed while a window used it.", true},
    {"WaitForTheThreadThatDestroysTheDevice", WaitForTheThreadThatDestroysTheDevice,
     "and the GUI thread was busy. The window must not be used any more.", true},
    {"DisconnectTheDevice", DisconnectTheDevice, "a device was destroyed while a window used it.", true},
    {"LetTheDeviceVanish", LetTheDeviceVanish, "a device was destroyed while a window used it.", true},
    {"DestroyTheSystemOfTheHost", DestroyTheSystemOfTheHost, "", true},
    {"LeaveWindowsToTheEndOfTheProgram", LeaveWindowsToTheEndOfTheProgram, ""},
};

void PrintTo(const Mistake &aMistake, std::ostream *aStream)
{
    *aStream << aMistake.mName;
}

// In the child.
int Make(const std::string &aMistake, const std::string &aKind)
{
    for (const Mistake &mistake : cMistakes) {
        if (aMistake != mistake.mName) {
            continue;
        }
        for (const Kind &kind : Kinds()) {
            if (aKind == "all" || aKind == kind.mName) {
                std::fprintf(stderr, "%s\n", kind.mName);
                mistake.mMake(kind);
                if (mistake.mIsForAll) {
                    break;
                }
            }
        }
        return 0;
    }
    return 4;
}

// Runs a child and gives what it says on its error output.
std::string RunChild(std::string aMistake, std::string aKind, bool aMayLeak, int &aStatus)
{
    int output[2] = {};
    EXPECT_EQ(pipe(output), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDERR_FILENO);
    posix_spawn_file_actions_addclose(&actions, output[0]);
    // nobody cleans up after an application that the host took away or put another in the place of
    const char *const sanitizer = getenv("ASAN_OPTIONS");
    std::string options = std::string("ASAN_OPTIONS=") + (sanitizer ? sanitizer : "") + ":detect_leaks=0";
    std::vector<char *> environment;
    for (char **variable = environ; *variable; ++variable) {
        if (!aMayLeak || std::string(*variable).rfind("ASAN_OPTIONS=", 0) != 0) {
            environment.push_back(*variable);
        }
    }
    if (aMayLeak) {
        environment.push_back(options.data());
    }
    environment.push_back(nullptr);
    char option[] = "--mistake";
    char *arguments[] = {sProgram.data(), option, aMistake.data(), aKind.data(), nullptr};
    pid_t child = -1;
    EXPECT_EQ(posix_spawn(&child, sProgram.c_str(), &actions, nullptr, arguments, environment.data()), 0);
    posix_spawn_file_actions_destroy(&actions);
    close(output[1]);
    std::string said;
    char buffer[4096];
    for (ssize_t count = 0; (count = read(output[0], buffer, sizeof buffer)) > 0;) {
        said.append(buffer, static_cast<size_t>(count));
    }
    close(output[0]);
    EXPECT_EQ(waitpid(child, &aStatus, 0), child);
    return said;
}

class HostMistakes : public testing::TestWithParam<Mistake>
{
};

}  // namespace

TEST_P(HostMistakes, AreAnsweredAndSurvived)
{
    std::vector<std::string> kinds = {"all"};
    if (GetParam().mIsAlone) {
        kinds.clear();
        for (const Kind &kind : Kinds()) {
            kinds.emplace_back(kind.mName);
        }
    }
    for (const std::string &kind : kinds) {
        int status = 0;
        const std::string said = RunChild(GetParam().mName, kind, GetParam().mIsAlone, status);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status << "\n" << said;
        const std::string expected = GetParam().mSays;
        if (expected.empty()) {
            EXPECT_EQ(said.find("LxGUI:"), std::string::npos) << said;
        }
        else {
            EXPECT_NE(said.find("LxGUI: "), std::string::npos) << said;
            EXPECT_NE(said.find(expected), std::string::npos) << said;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, HostMistakes, testing::ValuesIn(cMistakes),
                         [](const testing::TestParamInfo<Mistake> &aInfo) { return std::string(aInfo.param.mName); });

int main(int argc, char **argv)
{
    if (argc == 4 && std::string(argv[1]) == "--mistake") {
        return Make(argv[2], argv[3]);
    }
    sProgram = argv[0];
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
