#include <QtCore/QCommandLineParser>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>

#include "HeadlessTour.h"
#include "LxGUIVersion.h"
#include "LxSimulation/LxSimulation.h"
#include "ViewerWindow.h"

int main(int argc, char **argv)
{
    // the tour needs no display; the platform must be chosen before the application exists
    for (int i = 1; i < argc; ++i) {
        if (qstrncmp(argv[i], "--headless", 10) == 0 && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
    }
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("LxGUI"));
    QApplication::setApplicationName(QStringLiteral("lxgui-viewer"));
    QApplication::setApplicationVersion(QStringLiteral(LXGUI_VERSION_STRING));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Finds a camera and shows its live picture."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {QStringLiteral("simulate"), QStringLiteral("Also offer simulated cameras, without any hardware.")},
        {QStringLiteral("camera"), QStringLiteral("Connect to the camera at <address> instead of opening the finder."),
         QStringLiteral("address")},
        {QStringLiteral("headless"),
         QStringLiteral("Show every window without a display, write a picture of each into <folder>, and end."),
         QStringLiteral("folder")},
    });
    parser.process(application);

    if (parser.isSet(QStringLiteral("simulate"))) {
        LxSimulation::AddDefaultHost();
        LxSimulation::Enable();
    }

    if (parser.isSet(QStringLiteral("headless"))) {
        bool toured = false;
        {
            const QTemporaryDir folder;  // the tour neither shows nor changes what a user has set
            ViewerWindow window(folder.filePath(QStringLiteral("viewer.xml")));
            window.show();
            HeadlessTour tour(window, parser.value(QStringLiteral("headless")), parser.value(QStringLiteral("camera")));
            toured = tour.Run();
        }
        // what was to be deleted later: no event loop runs any more
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return toured ? 0 : 1;
    }
    ViewerWindow window;
    window.show();
    const QString address = parser.value(QStringLiteral("camera"));
    QTimer::singleShot(0, &window, [&] {
        if (const QString error = window.ConfigurationError(); !error.isEmpty()) {
            QMessageBox::warning(&window, QCoreApplication::translate("main", "Options not read"), error);
        }
        if (address.isEmpty()) {
            window.FindCamera();
        }
        else {
            window.Connect(address);
        }
    });
    return QApplication::exec();
}
