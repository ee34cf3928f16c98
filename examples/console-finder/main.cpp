// A console program without Qt asks its user for a camera in a window and goes on without one.

#include <LxGUI/LxDeviceFinderWnd.h>
#include <LxGenICam/LxGenParameter.h>
#include <LxGenICam/LxGenParameterArray.h>
#include <LxSystem/LxSystem.h>

#include <cstdio>

namespace
{

LxResult ConnectToChosenCamera(std::unique_ptr<LxDevice> &aDevice)
{
    LxDeviceFinderWnd finder;  // makes a QApplication, which goes with it
    finder.SetTitle("Choose a camera");
    const LxResult result = finder.ShowModal();
    if (!result.IsOK()) {
        return LxResult(result.GetCode(), "No camera was chosen.");
    }
    return LxSystem::Connect(finder.GetSelected(), LxDeviceAccess::ReadOnly, aDevice);
}

}  // namespace

int main()
{
    std::puts("Choose a camera.");
    std::unique_ptr<LxDevice> device;
    const LxResult result = ConnectToChosenCamera(device);
    if (!result.IsOK()) {
        std::fprintf(stderr, "%s\n", result.GetDescription().GetAscii());
        return 1;
    }
    // The device depends neither on the finder nor on the application that it made.
    for (const char *name : {"DeviceModelName", "Width", "Height", "PixelFormat", "ExposureTime"}) {
        const LxGenParameter *feature = device->GetParameters()->Get(name);
        if (feature && feature->IsReadable()) {
            std::printf("%s = %s\n", name, feature->ToString().GetAscii());
        }
    }
    return 0;
}
