#pragma once

#include <QtCore/QDir>
#include <QtCore/QString>
#include <QtGui/QPixmap>
#include <functional>

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
    HeadlessTour(ViewerWindow &aWindow, const QString &aFolder, const QString &aAddress);

    /// False, with the reason on the error output, when a step did not come about.
    bool Run();

    // For the parts of the tour.

    /// The button of a window with a text, or null.
    static QAbstractButton *FindButton(const QWidget *aWindow, const QString &aText);
    /// False, with the reason on the error output, when the condition does not come about in time.
    bool WaitUntil(const QString &aWhat, const std::function<bool()> &aCondition);
    /// What a widget shows, with the popup above it.
    static QPixmap Picture(QWidget *aWidget);
    /// Writes a picture into the folder.
    bool Save(const QPixmap &aPicture, const QString &aName);
    bool Shoot(QWidget *aWidget, const QString &aName) { return Save(Picture(aWidget), aName); }
    /// Clicks a button, when it is enabled, which opens a modal dialog, and rejects that when its picture is taken.
    bool ShootDialogOf(QAbstractButton *aButton, const QString &aName,
                       const std::function<void(QDialog *)> &aPrepare = {});

private:
    bool TourFinder();
    bool TourPicture();
    bool ProbePicture();
    bool TourRegisters();
    /// Ends a message box that nobody is there to read; the tour has then failed.
    void EndMessageBox();

    ViewerWindow &mWindow;
    QDir mFolder;
    QString mAddress;
    bool mFailed = false;
};
