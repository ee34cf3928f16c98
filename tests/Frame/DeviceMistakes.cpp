// Objects of the SDK end under the windows that work on them.

#include <unistd.h>

#include <QtCore/QTimer>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "HostMistakes.h"
#include "LxCameraBridge/LxCameraBridge.h"
#include "LxDevice/LxDeviceGEV.h"
#include "LxGUI/LxCameraBridgeManagerWnd.h"
#include "LxGUI/LxDeviceFinderWnd.h"
#include "LxGUI/LxGenBrowserWnd.h"
#include "LxGUI/LxRegisterInterfaceWnd.h"
#include "LxGUI/LxSerialBridgeManagerWnd.h"
#include "LxGUI/LxSerialTerminalWnd.h"
#include "LxPersistence/LxPropertyList.h"
#include "LxSimulation/LxSimulatedGenCPCamera.h"
#include "SimulatedGrabber.h"
#include "WaitFor.h"

namespace
{

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
        mTerminal.GetQWidget()->activateWindow();  // its fields have the focus
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

    /// What every host does in the end.
    void TakeTheDeviceBack()
    {
        mBrowser.Refresh();
        mBrowser.SetVisibility(LxGenVisibilityGuru);
        mBrowser.SetRefreshMode(LxGenRefreshManual);
        mBrowser.SetGenParameterArray(nullptr);
        mTerminal.SetSerialPort(LxDeviceSerial::Serial0);
        mTerminal.SetDevice(nullptr);
        mSerials.SetDevice(nullptr);
        mCameras.ShowKCF();
        mCameras.HideKCF();
        mCameras.SetDevice(nullptr);
        mRegisters.SetDevice(nullptr);
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
    CHECK(finder.ShowModal(NoParent).GetCode() == NotAccepted);
    LxSimulation::Disable();
}

void EndTheApplicationOfADevice(const Kind &)
{
    auto application = std::make_unique<HostApplication>();
    ShownGrabber grabber;
    application.reset();
    grabber.TakeTheDeviceBack();
    for (LxWnd *window : grabber.Windows()) {
        CheckRefuses(*window);
    }
}

void ExitWhileAFinderSearches(const Kind &)
{
    // made first, so that it ends after all that the libraries make
    struct SearchesGoOn
    {
        ~SearchesGoOn()
        {
            const size_t before = LxSimulation::GetCalls("Find").size();
            CHECK(WaitFor([&] { return LxSimulation::GetCalls("Find").size() >= before + 2; }));
        }
    };
    static const SearchesGoOn sSearchesGoOn;
    LxSimulation::AddDefaultHost();
    LxSimulation::Enable(true);
    LxSimulation::SetRecording(true);
    static auto *const sFinder = new LxDeviceFinderWnd;
    CHECK(sFinder->ShowModeless().IsOK());
    LxWnd::DoEvents();
    CHECK(WaitFor([] { return !LxSimulation::GetCalls("Find").empty(); }));
    std::exit(0);
}

}  // namespace

std::vector<Mistake> DeviceMistakes()
{
    return {
        {"DestroyTheDevice", DestroyTheDevice, "a device was destroyed while a window used it.", true},
        {"DestroyTheAdapter", DestroyTheAdapter, "a device was destroyed while a window used it.", true},
        {"DestroyTheDeviceOnAnotherThread", DestroyTheDeviceOnAnotherThread,
         "an array of features was destroyed while a window used it.", true},
        {"WaitForTheThreadThatDestroysTheDevice", WaitForTheThreadThatDestroysTheDevice,
         "and the GUI thread was busy. The window must not be used any more.", true},
        {"DisconnectTheDevice", DisconnectTheDevice, "a device was destroyed while a window used it.", true},
        {"LetTheDeviceVanish", LetTheDeviceVanish, "a device was destroyed while a window used it.", true},
        {"EndTheApplicationOfADevice", EndTheApplicationOfADevice, "", true, true},
        {"ExitWhileAFinderSearches", ExitWhileAFinderSearches, "", true},
        {"DestroyTheSystemOfTheHost", DestroyTheSystemOfTheHost, "", true},
    };
}
