// A Qt application asks its user for a camera and prints the choice.

#include <LxGUI/LxDeviceFinderWnd.h>
#include <LxSystem/LxDeviceInfo.h>

#include <QtWidgets/QApplication>
#include <cstdio>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);

    LxDeviceFinderWnd finder;
    finder.SetTitle("Choose a camera");
    if (!finder.ShowModal().IsOK()) {
        std::puts("No camera was chosen.");
        return 1;
    }
    // valid until the finder is shown again or destroyed
    const LxDeviceInfo *camera = finder.GetSelected();
    std::printf("%s %s at %s\n", camera->GetVendorName().GetAscii(), camera->GetModelName().GetAscii(),
                camera->GetConnectionID().GetAscii());
    return 0;
}
