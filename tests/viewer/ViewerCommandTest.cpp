// The viewer as a command: what it says, and how it ends.

#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>

#include "CommandLine.h"
#include "ViewerLog.h"

namespace
{

struct Ended
{
    int mCode = -1;
    QString mOutput;
    QString mErrors;
};

Ended RunViewer(const QStringList &aArguments, bool aHasPlatform = true)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_LOGGING_RULES"}) {
        environment.remove(QLatin1String(name));
    }
    if (!aHasPlatform) {
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    }
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(qEnvironmentVariable("LXGUI_BIN") + QStringLiteral("/lxgui-viewer"), aArguments);
    Ended ended;
    if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit) {
        ended.mCode = process.exitCode();
    }
    ended.mOutput = QString::fromUtf8(process.readAllStandardOutput());
    ended.mErrors = QString::fromUtf8(process.readAllStandardError());
    return ended;
}

struct Case
{
    const char *mName;
    QStringList mArguments;
    ExitCode mCode;
    const char *mSays;  // on the output, or with a code other than 0 on the error output
};

void PrintTo(const Case &aCase, std::ostream *aStream)
{
    *aStream << aCase.mName;
}

class ViewerCommand : public testing::TestWithParam<Case>
{
};

}  // namespace

TEST_P(ViewerCommand, EndsWithItsCodeAndSaysWhy)
{
    const Case &expected = GetParam();
    const Ended ended = RunViewer(expected.mArguments, false);
    EXPECT_EQ(ended.mCode, static_cast<int>(expected.mCode)) << ended.mErrors.toStdString();
    const bool isOK = expected.mCode == ExitCode::OK;
    EXPECT_TRUE((isOK ? ended.mOutput : ended.mErrors).contains(QLatin1String(expected.mSays)))
        << ended.mOutput.toStdString() << ended.mErrors.toStdString();
    if (!isOK) {
        EXPECT_EQ(ended.mOutput, "");
    }
}

INSTANTIATE_TEST_SUITE_P(
    Lines, ViewerCommand,
    testing::Values(
        Case{"Help", {"--help"}, ExitCode::OK, "Usage: lxgui-viewer [options]"},
        Case{"ShortHelp", {"-h"}, ExitCode::OK, "Exit status:"},
        Case{"Version", {"--version"}, ExitCode::OK, "lxgui-viewer "},
        Case{"SelfCheck", {"--self-check"}, ExitCode::OK, "net.core.rmem_max:"},
        Case{"UnknownOption", {"--nonsense"}, ExitCode::BadArguments, "Unknown option 'nonsense' (see --help)"},
        Case{"StrayArgument", {"stray"}, ExitCode::BadArguments, "unexpected argument 'stray'"},
        Case{"OptionWithoutValue", {"--camera"}, ExitCode::BadArguments, "Missing value after '--camera'"},
        Case{"OptionWithEmptyValue", {"--camera="}, ExitCode::BadArguments, "--camera needs a value"},
        Case{"NoSuchCategory",
             {"--log", "-", "--log-filter", "camera,nothing"},
             ExitCode::BadArguments,
             "there is no log category 'nothing', only app, camera, stream, settings"},
        Case{"FilterWithoutLog", {"--log-filter", "camera"}, ExitCode::BadArguments, "--log-filter needs --log"},
        Case{"TwoTasks", {"--self-check", "--headless", "out"}, ExitCode::BadArguments, "--self-check goes with"},
        Case{"LogThatCannotBeWritten",
             {"--self-check", "--log", "/proc/none/log"},
             ExitCode::CannotWrite,
             "The log cannot be written to /proc/none/log"},
        Case{"FolderThatCannotBeMade",
             {"--headless", "/proc/none"},
             ExitCode::CannotWrite,
             "cannot make the folder /proc/none"},
        Case{"NoDisplay", {}, ExitCode::NoDisplay, "there is no display"}),
    [](const testing::TestParamInfo<Case> &aInfo) { return std::string(aInfo.param.mName); });

TEST(ViewerHelp, NamesEveryOptionCodeAndCategory)
{
    const CommandLine line = CommandLine::Parse({"lxgui-viewer", "--help"});
    ASSERT_TRUE(line.mEnds);
    EXPECT_EQ(line.mExitCode, ExitCode::OK);
    for (const char *option : {"--help", "--version", "--simulate", "--camera <address>", "--headless <folder>",
                               "--self-check", "--log <file>", "--log-filter <categories>"})
    {
        EXPECT_TRUE(line.mText.contains(QLatin1String(option))) << option;
    }
    for (int code = 0; code <= static_cast<int>(ExitCode::NoDisplay); ++code) {
        EXPECT_TRUE(line.mText.contains(QStringLiteral("\n  %1  ").arg(code))) << code;
    }
    for (const QString &category : ViewerLog::Categories()) {
        EXPECT_TRUE(line.mText.contains(QStringLiteral("\n  %1 ").arg(category))) << category.toStdString();
    }
}

TEST(ViewerHelp, OptionsAreTaken)
{
    const CommandLine line = CommandLine::Parse(
        {"lxgui-viewer", "--simulate", "--camera", " 10.0.0.1 ", "--log=-", "--log-filter", "camera, stream"});
    EXPECT_FALSE(line.mEnds) << line.mText.toStdString();
    EXPECT_TRUE(line.mSimulate);
    EXPECT_FALSE(line.mSelfCheck);
    EXPECT_EQ(line.mCamera, "10.0.0.1");
    EXPECT_EQ(line.mLogFile, "-");
    EXPECT_EQ(line.mLogFilter, (QStringList{"camera", "stream"}));
}

TEST(ViewerSelfCheck, ReportsEverythingABugReportNeeds)
{
    const Ended ended = RunViewer({"--self-check", "--simulate"});
    EXPECT_EQ(ended.mCode, 0);
    for (const char *text : {"\nVersions\n",
                             "LxGUI:",
                             "LxSDK:",
                             "libaravis 0.",
                             "Qt:",
                             "\nMachine\n",
                             "\nDisplay\n",
                             "Qt platform:",
                             "offscreen",
                             "Renderer:",
                             "\nNetwork adapters\n",
                             "lo:",
                             "127.0.0.1 mask ",
                             "MTU ",
                             "rp_filter ",
                             "\nReceive buffers\n",
                             "streams ask for 16777216",
                             "\nRights\n",
                             "Real-time priority:",
                             "USB transfer memory:",
                             "\nDevices\n",
                             "192.168.10.21:",
                             "GigE Vision, LxGUI Simulated Camera",
                             "USB3 Vision",
                             "! 10.0.5.7 cannot be reached"})
    {
        EXPECT_TRUE(ended.mOutput.contains(QLatin1String(text))) << text << "\n" << ended.mOutput.toStdString();
    }
}

TEST(ViewerSelfCheck, FallsBackWhenTheDisplayCannotBeReached)
{
    qputenv("DISPLAY", ":4711");
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    process.setProcessEnvironment(environment);
    process.start(qEnvironmentVariable("LXGUI_BIN") + QStringLiteral("/lxgui-viewer"), {"--self-check"});
    ASSERT_TRUE(process.waitForFinished(60000));
    qputenv("DISPLAY", "");
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_TRUE(process.readAllStandardOutput().contains("offscreen"));
}

TEST(ViewerLogFile, GoesToAFileThatGrowsAndToTheErrorOutput)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("viewer.log");
    for (int round = 1; round <= 2; ++round) {
        ASSERT_EQ(RunViewer({"--self-check", "--log", file}).mCode, 0);
        QFile log(file);
        ASSERT_TRUE(log.open(QIODevice::ReadOnly));
        const QStringList lines = QString::fromUtf8(log.readAll()).split('\n', Qt::SkipEmptyParts);
        EXPECT_EQ(lines.filter(" info app viewer ").size(), round) << lines.join('\n').toStdString();
        static const QRegularExpression sLine(
            QStringLiteral("^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3} "
                           "(info|warning) app .+"));
        for (const QString &line : lines) {
            EXPECT_TRUE(sLine.match(line).hasMatch()) << line.toStdString();
        }
    }
    const Ended ended = RunViewer({"--self-check", "--log", "-"});
    EXPECT_TRUE(ended.mErrors.contains(" info app viewer "));
    EXPECT_FALSE(ended.mOutput.contains(" info app viewer "));
    EXPECT_FALSE(RunViewer({"--self-check", "--log", "-", "--log-filter", "camera"}).mErrors.contains(" info app "));
}
