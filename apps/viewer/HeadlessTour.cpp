#include "HeadlessTour.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QTableWidget>
#include <QtWidgets/QTreeWidget>
#include <algorithm>
#include <cstdio>

#include "BridgeTour.h"
#include "FeatureTour.h"
#include "FinderTour.h"
#include "TerminalTour.h"
#include "ViewerWindow.h"

namespace
{

// Of the viewer's window: enough to show everything, small enough for documents.
constexpr int PictureWidth = 1000;
constexpr int PictureHeight = 640;
constexpr int UsualFontHeight = 15;  // a larger font needs more width

// The first device of the finder's tree, or the one whose line names the address.
QTreeWidgetItem *FindDevice(const QTreeWidget &aTree, const QString &aAddress)
{
    for (int i = 0; i < aTree.topLevelItemCount(); ++i) {
        QTreeWidgetItem *adapter = aTree.topLevelItem(i);
        for (int k = 0; k < adapter->childCount(); ++k) {
            if (aAddress.isEmpty() || adapter->child(k)->text(0).contains(aAddress)) {
                return adapter->child(k);
            }
        }
    }
    return nullptr;
}

}  // namespace

HeadlessTour::HeadlessTour(ViewerWindow &aWindow, const QString &aFolder, const QString &aAddress, int aPatience)
    : mWindow(aWindow), mFolder(aFolder), mAddress(aAddress), mPatience(aPatience)
{
}

ExitCode HeadlessTour::Run()
{
    if (!mFolder.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "cannot make the folder %s\n", qPrintable(mFolder.path()));
        return ExitCode::CannotWrite;
    }
    const int size = std::max(UsualFontHeight, mWindow.fontMetrics().height());
    mWindow.resize(PictureWidth * size / UsualFontHeight, PictureHeight);
    QTimer boxes;
    QObject::connect(&boxes, &QTimer::timeout, &mWindow, [this] { EndMessageBox(); });
    boxes.start(50);
    const bool done = TourWindows();
    mWindow.close();
    return done ? ExitCode::OK : mFailure;
}

bool HeadlessTour::TourWindows()
{
    return Shoot(&mWindow, QStringLiteral("viewer-start")) && TourFinder() && TourPicture() &&
           FeatureTour(*this, mWindow).Run() && TourRegisters() && FinderTour(*this).Run() &&
           TerminalTour(*this).Run() && BridgeTour(*this).Run();
}

bool HeadlessTour::TourFinder()
{
    // the finder is modal: this runs inside its loop
    bool done = false;
    mFailure = ExitCode::NotFound;
    QTimer::singleShot(0, &mWindow, [&] {
        QDialog *dialog = nullptr;
        QTreeWidget *tree = nullptr;
        QTreeWidgetItem *device = nullptr;
        const bool found = WaitUntil(QStringLiteral("a camera in the finder"), [&] {
            dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            tree = dialog ? dialog->findChild<QTreeWidget *>() : nullptr;
            device = tree ? FindDevice(*tree, mAddress) : nullptr;
            return device != nullptr;
        });
        if (found) {
            mFailure = ExitCode::ConnectFailed;
            tree->setCurrentItem(device);
            QAbstractButton *ok = FindButton(dialog, QStringLiteral("OK"));
            done = WaitUntil(QStringLiteral("the OK button of the finder"), [&] { return ok && ok->isEnabled(); }) &&
                   Shoot(dialog, QStringLiteral("finder"));
            if (done) {
                ok->click();
                return;
            }
        }
        if (dialog) {
            dialog->reject();
        }
    });
    mWindow.FindCamera();
    return done;
}

bool HeadlessTour::TourPicture()
{
    if (!WaitUntil(QStringLiteral("the connection"), [&] { return !mWindow.Session().IsConnecting(); })) {
        return false;
    }
    mFailure = mWindow.Session().IsConnected() ? ExitCode::NoPictures : ExitCode::ConnectFailed;
    const bool answered = WaitUntil(QStringLiteral("live pictures"), [&] {
        return !mWindow.Session().IsLive() || mWindow.Session().Statistics().mDelivered > 30;
    });
    if (!answered || !mWindow.Session().IsLive()) {
        std::fprintf(stderr, "no live pictures: %s\n", qPrintable(mWindow.BannerText()));
        return false;
    }
    mFailure = ExitCode::Failed;
    // the figures in the status bar follow within half a second
    const bool figures = WaitUntil(QStringLiteral("the frame rate"), [&] {
        return mWindow.Session().Statistics().mFrameRate > 1.0 &&
               !mWindow.findChild<QWidget *>(QStringLiteral("frameRateStatus"))
                    ->property("text")
                    .toString()
                    .startsWith(QLatin1String("0.0"));
    });
    if (!figures || !Shoot(&mWindow, QStringLiteral("viewer-live"))) {
        return false;
    }
    mWindow.Display().SetTextOverlay("Zoom 1:1");
    mWindow.Display().Zoom1To1();
    const uint64_t delivered = mWindow.Session().Statistics().mDelivered;
    return WaitUntil(QStringLiteral("another picture"),
                     [&] { return mWindow.Session().Statistics().mDelivered > delivered + 2; }) &&
           ProbePicture() && Shoot(&mWindow, QStringLiteral("viewer-zoom"));
}

bool HeadlessTour::ProbePicture()
{
    auto *picture = mWindow.findChild<QWidget *>(QStringLiteral("picture"));
    const auto *probe = mWindow.findChild<QLabel *>(QStringLiteral("probeStatus"));
    const QPointF middle(picture->rect().center());
    QMouseEvent move(QEvent::MouseMove, middle, picture->mapToGlobal(middle), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(picture, &move);
    return WaitUntil(QStringLiteral("the pixel under the mouse"), [&] { return !probe->text().isEmpty(); });
}

bool HeadlessTour::TourRegisters()
{
    mWindow.ShowRegisters();
    QWidget *registers = mWindow.Registers().GetQWidget();
    QAbstractButton *read = FindButton(registers, QStringLiteral("Read"));
    if (!WaitUntil(QStringLiteral("the register window"), [&] { return read && registers->isVisible(); })) {
        return false;
    }
    // the first register: the version of GigE Vision
    read->click();
    return WaitUntil(QStringLiteral("the value of the register"),
                     [&] {
                         for (const QLineEdit *edit : registers->findChildren<QLineEdit *>()) {
                             if (edit->text() == QLatin1String("OK")) {
                                 return true;
                             }
                         }
                         return false;
                     }) &&
           Shoot(registers, QStringLiteral("registers"));
}

QAbstractButton *HeadlessTour::FindButton(const QWidget *aWindow, const QString &aText)
{
    for (QAbstractButton *button : aWindow->findChildren<QAbstractButton *>()) {
        if (button->text() == aText) {
            return button;
        }
    }
    return nullptr;
}

void HeadlessTour::EndMessageBox()
{
    if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
        std::fprintf(stderr, "%s\n%s\n", qPrintable(box->text()), qPrintable(box->informativeText()));
        mFailed = true;
        box->reject();
    }
}

bool HeadlessTour::WaitUntil(const QString &aWhat, const std::function<bool()> &aCondition)
{
    QElapsedTimer clock;
    clock.start();
    while (!aCondition()) {
        if (mFailed) {
            return false;
        }
        if (clock.elapsed() > mPatience) {
            std::fprintf(stderr, "the tour waited in vain for %s\n", qPrintable(aWhat));
            return false;
        }
        QEventLoop loop;
        QTimer::singleShot(5, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

QPixmap HeadlessTour::Picture(QWidget *aWidget)
{
    QApplication::processEvents();
    QPixmap picture = aWidget->grab();
    if (QWidget *popup = QApplication::activePopupWidget()) {
        QPainter(&picture).drawPixmap(aWidget->mapFromGlobal(popup->geometry().topLeft()), popup->grab());
    }
    return picture;
}

bool HeadlessTour::Shoot(QWidget *aWidget, const QString &aName)
{
    const QPixmap picture = Picture(aWidget);
    if (mWatcher) {
        mWatcher(aWidget, aName);
    }
    return Save(picture, aName);
}

bool HeadlessTour::Save(const QPixmap &aPicture, const QString &aName)
{
    const QString file = mFolder.filePath(aName + QStringLiteral(".png"));
    if (!aPicture.save(file)) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
        mFailure = ExitCode::CannotWrite;
        return false;
    }
    std::printf("%s\n", qPrintable(file));
    return true;
}

bool HeadlessTour::ShootDialogOf(QAbstractButton *aButton, const QString &aName,
                                 const std::function<void(QDialog *)> &aPrepare)
{
    if (!WaitUntil(aName, [aButton] { return aButton && aButton->isEnabled(); })) {
        return false;
    }
    bool done = false;
    QTimer::singleShot(0, QCoreApplication::instance(), [&] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog || dialog == aButton->window()) {
            std::fprintf(stderr, "no dialog for %s\n", qPrintable(aName));
            return;
        }
        if (aPrepare) {
            aPrepare(dialog);
        }
        done = Shoot(dialog, aName);
        dialog->reject();
    });
    aButton->click();
    return done;
}
