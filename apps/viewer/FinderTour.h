#pragma once

class HeadlessTour;
class QDialog;
class QString;

/// The part of the tour that shows the device finder with simulated interfaces and devices of every kind, and the
/// dialogs that it opens.
class FinderTour
{
public:
    explicit FinderTour(HeadlessTour &aTour) : mTour(aTour) {}

    /// False, with the reason on the error output, when a step did not come about. Replaces what is simulated.
    bool Run();

private:
    bool TourDialog(QDialog *aFinder);
    /// Clicks on a button of the finder, writes a picture of the dialog that this opens, and cancels it.
    bool ShootDialogOf(QDialog *aFinder, const QString &aButton, const QString &aName);

    HeadlessTour &mTour;
};
