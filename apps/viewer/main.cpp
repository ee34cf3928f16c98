#include <fontconfig/fontconfig.h>

#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtGui/QIcon>
#include <QtGui/QImageReader>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>
#include <cstdio>
#include <functional>
#include <optional>
#include <thread>

#include "CommandLine.h"
#include "HeadlessTour.h"
#include "LxGUIVersion.h"
#include "LxSimulation/LxSimulation.h"
#include "LxSystem/LxSystem.h"
#include "ScreenVariants.h"
#include "SelfCheck.h"
#include "ViewerLog.h"
#include "ViewerWindow.h"

namespace
{

bool HasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

/// What can be done without a display is; the platform must be chosen before the application exists.
/// @return whether windows would have nobody to look at them.
bool ChoosePlatform(int aCount, char **aArguments)
{
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        return false;
    }
    for (int i = 1; i < aCount; ++i) {
        if (qstrcmp(aArguments[i], "-platform") == 0 || qstrcmp(aArguments[i], "--platform") == 0) {
            return false;
        }
    }
    if (CommandLine::NeedsNoDisplay(aCount, aArguments)) {
        // the self-check reports the renderer of the display, where there is one
        const bool isSelfCheck = std::any_of(aArguments, aArguments + aCount,
                                             [](const char *aText) { return qstrcmp(aText, "--self-check") == 0; });
        qputenv("QT_QPA_PLATFORM", isSelfCheck && HasDisplay() ? "xcb;wayland;offscreen" : "offscreen");
        return false;
    }
    if (!HasDisplay()) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        return true;
    }
    return false;
}

/// How the tour is to show the windows, for scripts.
QString Variant()
{
    return qEnvironmentVariable("LXGUI_VIEWER_VARIANT", QStringLiteral("plain"));
}

int Say(ExitCode aCode, const QString &aText)
{
    std::fputs(aText.toLocal8Bit().constData(), aCode == ExitCode::OK ? stdout : stderr);
    return static_cast<int>(aCode);
}

ExitCode Tour(const CommandLine &aLine)
{
    if (!ScreenVariants::Apply(Variant())) {
        std::fprintf(stderr, "lxgui-viewer: there is no variant %s, only %s\n", qPrintable(Variant()),
                     qPrintable(ScreenVariants::Names().join(QStringLiteral(", "))));
        return ExitCode::BadArguments;
    }
    ExitCode outcome = ExitCode::OK;
    {
        const QTemporaryDir folder;  // the tour neither shows nor changes what a user has set
        ViewerWindow window(folder.filePath(QStringLiteral("viewer.xml")));
        window.show();
        HeadlessTour tour(window, aLine.mPictures, aLine.mCamera);
        outcome = tour.Run();
    }
    // what was to be deleted later: no event loop runs any more
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return outcome;
}

/// Calls a function from the event loop once a window is on the screen.
class WhenExposed : public QObject
{
public:
    WhenExposed(QWindow &aWindow, std::function<void()> aCall) : mWindow(aWindow), mCall(std::move(aCall))
    {
        mWindow.installEventFilter(this);
    }

private:
    bool eventFilter(QObject *aObject, QEvent *aEvent) override
    {
        if (aEvent->type() == QEvent::Expose && mWindow.isExposed()) {
            mWindow.removeEventFilter(this);
            QTimer::singleShot(0, this, mCall);
        }
        return QObject::eventFilter(aObject, aEvent);
    }

    QWindow &mWindow;
    const std::function<void()> mCall;
};

ExitCode ShowViewer(const CommandLine &aLine)
{
    ViewerWindow window;
    window.FitToScreen();
    window.show();
    const auto begin = [&] {
        // the installed icon, for X11; to look through the themes would delay the window
        QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("lxgui-viewer")));
        if (const QString error = window.ConfigurationError(); !error.isEmpty()) {
            QMessageBox::warning(&window, QCoreApplication::translate("main", "Options not read"), error);
        }
        if (aLine.mCamera.isEmpty()) {
            window.FindCamera();
        }
        else {
            window.Connect(aLine.mCamera);
        }
    };
    std::optional<WhenExposed> wait;
    if (aLine.mCamera.isEmpty()) {
        // the finder comes up over the window, wherever the window manager has put it
        wait.emplace(*window.windowHandle(), begin);
    }
    else {
        QTimer::singleShot(0, &window, begin);  // a camera is connected also by a window that others cover
    }
    const int code = QApplication::exec();
    return code != 0 ? ExitCode::Failed : aLine.mCamera.isEmpty() ? ExitCode::OK : window.Outcome();
}

}  // namespace

int main(int argc, char **argv)
{
    const bool isBlind = ChoosePlatform(argc, argv);
    ScreenVariants::Prepare(Variant());
    std::thread fonts(FcInit);  // what fonts there are takes as long to find out as all the rest: both at once
    QApplication application(argc, argv);
    fonts.join();
    // the menu bar's icon has each plugin asked whether it can read it: they are loaded while the rest is built
    const std::jthread images([] { QImageReader::supportedImageFormats(); });
    QApplication::setOrganizationName(QStringLiteral("LxGUI"));
    QApplication::setApplicationName(QStringLiteral("lxgui-viewer"));
    QApplication::setApplicationVersion(QStringLiteral(LXGUI_VERSION_STRING));
    QApplication::setDesktopFileName(QStringLiteral("lxgui-viewer"));  // where Wayland takes the icon from

    const CommandLine line = CommandLine::Parse(QCoreApplication::arguments());
    if (line.mEnds) {
        return Say(line.mExitCode, line.mText);
    }
    if (isBlind) {
        return Say(ExitCode::NoDisplay, QStringLiteral("lxgui-viewer: there is no display; --headless and --self-check "
                                                       "need none (see --help)\n"));
    }
    if (!line.mLogFile.isEmpty()) {
        if (const QString error = ViewerLog::Open(line.mLogFile, line.mLogFilter); !error.isEmpty()) {
            return Say(ExitCode::CannotWrite, QStringLiteral("lxgui-viewer: %1\n").arg(error));
        }
    }
    qCInfo(LogApp).noquote() << "viewer" << QCoreApplication::applicationVersion() << "LxGUI"
                             << LxWnd::GetVersion().GetAscii() << "LxSDK" << LxSystem::GetVersion().GetAscii()
                             << LxSystem::GetTransportLibrary().GetAscii() << "Qt" << qVersion() << "platform"
                             << QGuiApplication::platformName();
    if (line.mSimulate) {
        LxSimulation::AddDefaultHost();
        LxSimulation::Enable();
    }
    ExitCode outcome = ExitCode::OK;
    if (line.mSelfCheck) {
        Say(outcome, SelfCheckReport());
    }
    else {
        outcome = line.mPictures.isEmpty() ? ShowViewer(line) : Tour(line);
    }
    qCInfo(LogApp) << "the viewer ends with" << static_cast<int>(outcome);
    ViewerLog::Close();
    return static_cast<int>(outcome);
}
