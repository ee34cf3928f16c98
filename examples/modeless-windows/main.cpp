// A Qt application shows the live picture and the features of a camera in windows beside its own.

#include <LxBufferReceive/LxStream.h>
#include <LxGUI/LxDeviceFinderWnd.h>
#include <LxGUI/LxDisplayWnd.h>
#include <LxGUI/LxGenBrowserWnd.h>
#include <LxSystem/LxSystem.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>
#include <atomic>
#include <chrono>
#include <thread>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);

    LxDeviceFinderWnd finder;
    finder.SetTitle("Choose a camera");
    if (!finder.ShowModal().IsOK()) {
        return 0;
    }

    // What works on the device is declared after it and so destroyed before it.
    std::unique_ptr<LxDevice> device;
    LxStream stream;
    LxResult result = LxSystem::Connect(finder.GetSelected(), LxDeviceAccess::Control, device);
    if (result.IsOK()) {
        result = stream.Open(device.get());
    }
    if (result.IsOK()) {
        result = stream.Start();
    }
    if (!result.IsOK()) {
        QMessageBox::warning(nullptr, "Camera", result.GetDescription().GetAscii());
        return 1;
    }

    LxGenBrowserWnd browser;
    browser.SetTitle("Features");
    browser.SetPosition(700, 40, 520, 480);
    browser.SetGenParameterArray(device->GetParameters());
    browser.ShowModeless();

    LxDisplayWnd display;
    display.SetTitle("Picture");
    display.SetPosition(40, 40, 640, 480);
    display.ShowModeless();

    // Frames are received on a thread of the application; Display() may be called on any.
    std::atomic<bool> stop{false};
    std::thread acquisition([&] {
        std::shared_ptr<const LxBuffer> buffer;
        while (!stop) {
            const LxResult received = stream.RetrieveBuffer(buffer, 200);
            if (received.IsOK()) {
                display.Display(*buffer);
            }
            else if (received == LxResultCode::NotConnected) {
                // the camera was unplugged; the stream goes on by itself when it is back
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
            }
        }
    });

    const int code = QApplication::exec();  // until the last window is closed
    stop = true;
    stream.Stop();
    acquisition.join();
    return code;
}
