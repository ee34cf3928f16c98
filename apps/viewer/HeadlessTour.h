#pragma once

#include <QtCore/QDir>
#include <QtCore/QString>
#include <QtGui/QPixmap>
#include <functional>
#include <utility>

#include "ExitCode.h"

class QAbstractButton;
class QDialog;
class QWidget;
class ViewerWindow;

/// Drives the viewer the way a person would, on the first camera that the finder offers, and writes a picture of each
/// window.
class HeadlessTour
{
public:
    /// With an address the finder chooses the camera of that address; otherwise the first that can be used.
    /// @param aPatience how long it waits for each step, in milliseconds.
    HeadlessTour(ViewerWindow &aWindow, const QString &aFolder, const QString &aAddress, int aPatience = 20000);

    /// Has a function called with every window, or with what of it a picture is about, when the picture is taken.
    void SetWatcher(std::function<void(QWidget *aWidget, const QString &aName)> aWatcher)
    {
        mWatcher = std::move(aWatcher);
    }

    /// When a step did not come about, the reason is on the error output.
    ExitCode Run();

    // For the parts of the tour.

    /// The button of a window with a text, or null.
    static QAbstractButton *FindButton(const QWidget *aWindow, const QString &aText);
    /// False, with the reason on the error output, when the condition does not come about in time.
    bool WaitUntil(const QString &aWhat, const std::function<bool()> &aCondition);
    /// What a widget shows, with the popup above it.
    static QPixmap Picture(QWidget *aWidget);
    /// Writes a picture into the folder.
    bool Save(const QPixmap &aPicture, const QString &aName);
    bool Shoot(QWidget *aWidget, const QString &aName);
    /// Clicks a button, when it is enabled, which opens a modal dialog, and rejects that when its picture is taken.
    bool ShootDialogOf(QAbstractButton *aButton, const QString &aName,
                       const std::function<void(QDialog *)> &aPrepare = {});

private:
    bool TourWindows();
    bool TourFinder();
    bool TourPicture();
    bool ProbePicture();
    bool TourRegisters();
    /// Ends a message box that nobody is there to read; the tour has then failed.
    void EndMessageBox();

    ViewerWindow &mWindow;
    QDir mFolder;
    QString mAddress;
    int mPatience;
    bool mFailed = false;
    ExitCode mFailure = ExitCode::Failed;  // what a step that does not come about would mean
    std::function<void(QWidget *, const QString &)> mWatcher;
};
