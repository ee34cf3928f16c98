// Windows are used on another thread than that of the QApplication.

#include <QtCore/QPointer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#include <atomic>
#include <thread>

#include "HostMistakes.h"
#include "LxGUI/LxCameraBridgeManagerWnd.h"
#include "LxGUI/LxDeviceFinderWnd.h"
#include "LxGUI/LxDisplayWnd.h"
#include "LxGUI/LxGenBrowserWnd.h"
#include "LxGUI/LxRegisterInterfaceWnd.h"
#include "LxGUI/LxSerialBridgeManagerWnd.h"
#include "LxGUI/LxSerialTerminalWnd.h"
#include "LxPersistence/LxConfigurationReader.h"
#include "LxPersistence/LxConfigurationWriter.h"

namespace
{

const char *const OtherThread = "was called on another thread than that of the QApplication";

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
    LxSerialBridgeManagerWnd serial;
    LxCameraBridgeManagerWnd cameras;
    LxDeviceFinderWnd finder;  // not shown: it would search
    for (LxWnd *window : std::initializer_list<LxWnd *>{&display, &browser, &registers, &terminal, &serial, &cameras}) {
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
        CHECK(browser.SetRefreshMode(LxGenRefreshManual).GetCode() == Refused);
        CHECK(browser.SetVisibility(LxGenVisibilityGuru).GetCode() == Refused);
        LxPropertyList options;
        CHECK(browser.Save(options).GetCode() == Refused);
        CHECK(browser.Load(options).GetCode() == Refused);
        CHECK(options.GetCount() == 0);
        browser.Refresh();
        CHECK(registers.SetDevice(nullptr).GetCode() == Refused);
        CHECK(terminal.SetDevice(nullptr).GetCode() == Refused);
        CHECK(terminal.SetSerialPort(LxDeviceSerial::Serial1).GetCode() == Refused);
        LxStringList messages;
        CHECK(serial.Save(options).GetCode() == Refused);
        CHECK(serial.Load(options, messages).GetCode() == Refused);
        LxConfigurationWriter writer;
        LxConfigurationReader reader;
        CHECK(cameras.SetStream(nullptr).GetCode() == Refused);
        CHECK(cameras.Save(writer).GetCode() == Refused);
        CHECK(cameras.Load(reader, messages).GetCode() == Refused);
        finder.SetGEVEnabled(false, false);
        finder.SetU3VEnabled(false, false);
        finder.SetKelvraProtocolEnabled(false, false);
        cameras.ShowKCF();
        cameras.HideKCF();
    }).join();
    CHECK(browser.GetRefreshMode() == LxGenRefreshAutomatic);
    CHECK(browser.GetVisibility() == LxGenVisibilityBeginner);
    bool enabled = false;
    bool visible = false;
    finder.GetGEVEnabled(enabled, visible);
    CHECK(enabled && visible);
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

}  // namespace

std::vector<Mistake> ThreadMistakes()
{
    return {
        {"MakeAWindowOnAnotherThread", MakeAWindowOnAnotherThread, OtherThread},
        {"CallAWindowOnAnotherThread", CallAWindowOnAnotherThread, OtherThread},
        {"CallTheirOwnOperationsOnAnotherThread", CallTheirOwnOperationsOnAnotherThread,
         "LxGenBrowserWnd::SetGenParameterArray() was called on another thread", true},
        {"DestroyAWindowOnAnotherThread", DestroyAWindowOnAnotherThread, OtherThread},
    };
}
