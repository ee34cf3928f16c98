// All windows on other people's screens: what is to be read there fits. Each screen is a process of its own, as the
// scale factor is one of the process; they run side by side, because a tour mostly waits.

#include <QtCore/QProcess>
#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtWidgets/QApplication>
#include <cstdio>
#include <map>
#include <memory>
#include <string>

#include "HeadlessTour.h"
#include "LxSimulation/LxSimulation.h"
#include "ScreenCheck.h"
#include "ScreenVariants.h"
#include "ViewerWindow.h"
#include "gtest/gtest.h"

namespace
{

constexpr int TourTime = 100000;  // milliseconds
constexpr int LeastWindows = 29;
constexpr int LeastEditors = 7;

/// Whether the picture of the editors shows them: each is in a selected row.
bool ShowsEditors(const QString &aFile)
{
    const QImage picture(aFile);
    const QColor marked = QApplication::palette().color(QPalette::Highlight);
    int rows = 0;
    bool within = false;
    for (int y = 0; y < picture.height(); ++y) {
        bool found = false;
        for (int x = 0; x < picture.width() && !found; ++x) {
            found = picture.pixelColor(x, y) == marked;
        }
        rows += found && !within ? 1 : 0;
        within = found;
    }
    return rows >= LeastEditors;
}

/// Tours the windows on a screen. 0 when there is nothing that cannot be read.
int Tour(int aArgumentCount, char **aArguments, const QString &aVariant)
{
    ScreenVariants::Prepare(aVariant);
    QApplication application(aArgumentCount, aArguments);
    QStandardPaths::setTestModeEnabled(true);
    LxSimulation::AddDefaultHost();
    LxSimulation::Enable(true);
    bool done = ScreenVariants::Apply(aVariant);
    int windows = 0;
    {
        const QTemporaryDir folder;
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
        ViewerWindow window(folder.filePath(QStringLiteral("viewer.xml")));
        window.show();
        HeadlessTour tour(window, folder.filePath(QStringLiteral("pictures")), {});
        tour.SetWatcher([&](QWidget *aWidget, const QString &aName) {
            ++windows;
            for (const QString &line : FindUnreadable(*aWidget)) {
                std::printf("%s: %s\n", qPrintable(aName), qPrintable(line));
                done = false;
            }
        });
        done = tour.Run() == ExitCode::OK && done;
        if (!ShowsEditors(folder.filePath(QStringLiteral("pictures/features-editors.png")))) {
            std::printf("features-editors: it does not show the editors\n");
            done = false;
        }
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    std::printf("%d windows\n", windows);
    return done && windows >= LeastWindows ? 0 : 1;
}

class ViewerScreens : public testing::TestWithParam<std::string>
{
protected:
    static void SetUpTestSuite()
    {
        for (const QString &name : ScreenVariants::Names()) {
            auto process = std::make_unique<QProcess>();
            process->setProcessChannelMode(QProcess::MergedChannels);
            process->start(QCoreApplication::applicationFilePath(), {QStringLiteral("--tour"), name});
            sTours[name.toStdString()] = std::move(process);
        }
    }
    static void TearDownTestSuite() { sTours.clear(); }

    static std::map<std::string, std::unique_ptr<QProcess>> sTours;
};

std::map<std::string, std::unique_ptr<QProcess>> ViewerScreens::sTours;

TEST_P(ViewerScreens, ShowEverythingThatIsToBeRead)
{
    QProcess &tour = *sTours[GetParam()];
    ASSERT_TRUE(tour.waitForFinished(TourTime)) << qPrintable(tour.errorString());
    EXPECT_EQ(tour.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(tour.exitCode(), 0) << tour.readAll().constData();
}

INSTANTIATE_TEST_SUITE_P(Variants, ViewerScreens,
                         testing::Values("plain", "scale-1.5", "scale-2", "dark", "large-font", "right-to-left",
                                         "decimal-comma"),
                         [](const testing::TestParamInfo<std::string> &aInfo) {
                             std::string name = aInfo.param;
                             std::erase_if(name,
                                           [](char aCharacter) { return aCharacter == '-' || aCharacter == '.'; });
                             return name;
                         });

TEST(ScreenVariants, AreTheseNames)
{
    EXPECT_EQ(ScreenVariants::Names().join(QLatin1Char(' ')),
              QStringLiteral("plain scale-1.5 scale-2 dark large-font right-to-left decimal-comma"));
    EXPECT_FALSE(ScreenVariants::Apply(QStringLiteral("nonsense")));
}

}  // namespace

int main(int argc, char **argv)
{
    if (argc == 3 && qstrcmp(argv[1], "--tour") == 0) {
        return Tour(argc, argv, QString::fromLocal8Bit(argv[2]));
    }
    QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
