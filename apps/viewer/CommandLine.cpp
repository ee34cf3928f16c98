#include "CommandLine.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <algorithm>
#include <string_view>

#include "ViewerLog.h"

namespace
{

QString Tr(const char *aText)
{
    return QCoreApplication::translate("CommandLine", aText);
}

const QString SimulateOption = QStringLiteral("simulate");
const QString CameraOption = QStringLiteral("camera");
const QString HeadlessOption = QStringLiteral("headless");
const QString SelfCheckOption = QStringLiteral("self-check");
const QString LogOption = QStringLiteral("log");
const QString LogFilterOption = QStringLiteral("log-filter");

QString MoreHelp()
{
    return Tr(
        "\n"
        "Exit status:\n"
        "  0  everything went well\n"
        "  1  something failed that has no status of its own\n"
        "  2  the command line is not valid\n"
        "  3  the camera was not found\n"
        "  4  the camera was found and could not be connected\n"
        "  5  the camera was connected and sent no pictures\n"
        "  6  a file or a folder could not be written\n"
        "  7  there is no display to show windows on\n"
        "With --camera and without --headless, 3 and 4 mean that no camera was ever connected.\n"
        "\n"
        "Log categories:\n"
        "  app       versions at the start, what the windows and Qt report\n"
        "  camera    found, connected, disconnected, lost and back\n"
        "  stream    started, stopped, lost and dropped frames\n"
        "  settings  features and options saved and restored\n"
        "\n"
        "Environment:\n"
        "  LXSDK_SIMULATION  \"1\" offers simulated cameras too, \"only\" offers nothing else\n"
        "  QT_QPA_PLATFORM   how windows are shown: xcb, wayland, offscreen\n");
}

CommandLine End(ExitCode aCode, const QString &aText)
{
    CommandLine line;
    line.mEnds = true;
    line.mExitCode = aCode;
    line.mText = aText;
    return line;
}

CommandLine Refuse(const QString &aWhy)
{
    return End(ExitCode::BadArguments, Tr("lxgui-viewer: %1 (see --help)\n").arg(aWhy));
}

}  // namespace

CommandLine CommandLine::Parse(const QStringList &aArguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(Tr("Finds a camera, shows its live picture and changes its settings."));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, Tr("Print this text and end."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     Tr("Print the version and end."));
    parser.addOptions({help, version});
    parser.addOptions({
        {SimulateOption, Tr("Also offer simulated cameras, without any hardware.")},
        {CameraOption, Tr("Connect to the camera at <address> instead of opening the finder."),
         QStringLiteral("address")},
        {HeadlessOption, Tr("Show every window without a display, write a picture of each into <folder>, and end."),
         QStringLiteral("folder")},
        {SelfCheckOption,
         Tr("Print versions, renderer, network adapters, limits, rights and the devices that are found, for "
            "a bug report, and end. Needs no display.")},
        {LogOption, Tr("Write what happens to <file>, with time and category; \"-\" is the error output."),
         QStringLiteral("file")},
        {LogFilterOption, Tr("Log only these <categories>, separated by commas. Warnings are always logged."),
         QStringLiteral("categories")},
    });
    if (!parser.parse(aArguments)) {
        QString why = parser.errorText();
        while (why.endsWith(QLatin1Char('.'))) {
            why.chop(1);
        }
        return Refuse(why);
    }
    if (parser.isSet(help)) {
        // the name, wherever the program was started from
        return End(ExitCode::OK,
                   parser.helpText().replace(aArguments.constFirst(), QStringLiteral("lxgui-viewer")) + MoreHelp());
    }
    if (parser.isSet(version)) {
        return End(ExitCode::OK, QStringLiteral("lxgui-viewer %1\n").arg(QCoreApplication::applicationVersion()));
    }
    if (!parser.positionalArguments().isEmpty()) {
        return Refuse(Tr("unexpected argument '%1'").arg(parser.positionalArguments().constFirst()));
    }
    for (const QString &name : {CameraOption, HeadlessOption, LogOption, LogFilterOption}) {
        if (parser.isSet(name) && parser.value(name).trimmed().isEmpty()) {
            return Refuse(Tr("--%1 needs a value").arg(name));
        }
    }
    CommandLine line;
    line.mSimulate = parser.isSet(SimulateOption);
    line.mSelfCheck = parser.isSet(SelfCheckOption);
    line.mCamera = parser.value(CameraOption).trimmed();
    line.mPictures = parser.value(HeadlessOption);
    line.mLogFile = parser.value(LogOption);
    if (line.mSelfCheck && (!line.mCamera.isEmpty() || !line.mPictures.isEmpty())) {
        return Refuse(Tr("--self-check goes with --simulate, --log and --log-filter only"));
    }
    if (parser.isSet(LogFilterOption)) {
        if (line.mLogFile.isEmpty()) {
            return Refuse(Tr("--log-filter needs --log"));
        }
        for (const QString &name : parser.value(LogFilterOption).split(QLatin1Char(','), Qt::SkipEmptyParts)) {
            if (!ViewerLog::Categories().contains(name.trimmed())) {
                return Refuse(Tr("there is no log category '%1', only %2")
                                  .arg(name.trimmed(), ViewerLog::Categories().join(QStringLiteral(", "))));
            }
            line.mLogFilter << name.trimmed();
        }
    }
    return line;
}

bool CommandLine::NeedsNoDisplay(int aCount, char **aArguments)
{
    return std::any_of(aArguments, aArguments + aCount, [](const char *aArgument) {
        const std::string_view argument(aArgument);
        for (const std::string_view option : {"--help", "-h", "--version", "-v", "--headless", "--self-check"}) {
            if (argument == option || (argument.starts_with(option) && argument[option.size()] == '=')) {
                return true;
            }
        }
        return false;
    });
}
