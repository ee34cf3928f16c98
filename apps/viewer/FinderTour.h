#pragma once

class HeadlessTour;
class QDialog;

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

    HeadlessTour &mTour;
};
