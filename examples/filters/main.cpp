// A program that knows which cameras and which features its users need: the finder lists only cameras of one model, the
// browser shows only what concerns the picture.

#include <LxGUI/LxDeviceFinderWnd.h>
#include <LxGUI/LxGenBrowserWnd.h>
#include <LxGenICam/LxGenParameter.h>
#include <LxSystem/LxDeviceInfo.h>
#include <LxSystem/LxSystem.h>

#include <chrono>
#include <cstdio>
#include <set>
#include <string>
#include <thread>

namespace
{

class ModelFinder : public LxDeviceFinderWnd
{
public:
    explicit ModelFinder(const char *aModel) : mModel(aModel) {}
    // No call of OnFound() may come when this class is gone already.
    ~ModelFinder() override { Close(); }

    // Called on the search thread; mModel is only read.
    bool OnFound(const LxDeviceInfo *aInfo) override { return aInfo->GetModelName() == mModel; }

private:
    const LxString mModel;
};

class PictureBrowser : public LxGenBrowserWnd
{
public:
    ~PictureBrowser() override { Close(); }

    bool IsParameterDisplayed(LxGenParameter *aParameter) override
    {
        static const std::set<std::string> shown = {"Width",        "Height", "PixelFormat", "AcquisitionFrameRate",
                                                    "ExposureTime", "Gain",   "Gamma"};
        LxString name;
        return aParameter->GetName(name).IsOK() && shown.count(name.GetString()) != 0;
    }
};

}  // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: filters MODEL   (of the cameras to list)\n");
        return 2;
    }
    ModelFinder finder(argv[1]);
    finder.SetTitle("Choose a camera");
    if (!finder.ShowModal().IsOK()) {
        return 1;
    }
    std::unique_ptr<LxDevice> device;
    const LxResult result = LxSystem::Connect(finder.GetSelected(), LxDeviceAccess::Control, device);
    if (!result.IsOK()) {
        std::fprintf(stderr, "%s\n", result.GetDescription().GetAscii());
        return 1;
    }
    std::printf("%s\n", device->GetUniqueID().GetAscii());

    PictureBrowser browser;
    browser.SetTitle("Picture settings");
    browser.SetVisibility(LxGenVisibilityGuru);
    browser.SetGenParameterArray(device->GetParameters());
    browser.ShowModeless();
    while (browser.IsVisible()) {
        LxWnd::DoEvents();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return 0;
}
