// A Qt application has the live picture and the features of a camera inside its own widgets.

#include <LxBufferReceive/LxStream.h>
#include <LxGUI/LxDeviceFinderWnd.h>
#include <LxGUI/LxDisplayWnd.h>
#include <LxGUI/LxGenBrowserWnd.h>
#include <LxSystem/LxSystem.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStatusBar>
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

    QMainWindow window;
    window.setWindowTitle("Inspection");
    window.statusBar()->showMessage(device->GetUniqueID().GetAscii());
    auto *splitter = new QSplitter;
    auto *picture = new QWidget;
    auto *features = new QWidget;
    splitter->addWidget(picture);
    splitter->addWidget(features);
    window.setCentralWidget(splitter);
    window.resize(1100, 600);

    // The widgets stay the application's; the library puts its content into them.
    LxDisplayWnd display;
    display.Create(picture);
    LxGenBrowserWnd browser;
    browser.SetGenParameterArray(device->GetParameters());
    browser.Create(features);
    splitter->setSizes({600, 500});
    window.show();

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

    const int code = QApplication::exec();  // until the window is closed
    stop = true;
    stream.Stop();
    acquisition.join();
    return code;
}
