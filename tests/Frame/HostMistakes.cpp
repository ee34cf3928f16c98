#include "HostMistakes.h"

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <cstdio>
#include <cstdlib>

#include "LxGUI/LxCameraBridgeManagerWnd.h"
#include "LxGUI/LxDeviceFinderWnd.h"
#include "LxGUI/LxDisplayWnd.h"
#include "LxGUI/LxGenBrowserWnd.h"
#include "LxGUI/LxRegisterInterfaceWnd.h"
#include "LxGUI/LxSerialBridgeManagerWnd.h"
#include "LxGUI/LxSerialTerminalWnd.h"

namespace
{

template <class Window>
class WindowOf : public AnyWindow
{
public:
    LxWnd &Get() override { return mWindow; }

private:
    Window mWindow;
};

template <class Window>
Kind KindOf(const char *aName)
{
    return {aName, [] { return std::make_unique<WindowOf<Window>>(); }};
}

}  // namespace

void Check(bool aHolds, const char *aWhat)
{
    if (!aHolds) {
        std::fprintf(stderr, "NOT AS IT SHOULD BE: %s\n", aWhat);
        std::_Exit(3);
    }
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

void Turn()
{
    for (int i = 0; i < 3; ++i) {
        QEventLoop loop;
        QTimer::singleShot(0, &loop, &QEventLoop::quit);
        loop.exec();
    }
}

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
