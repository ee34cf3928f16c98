#pragma once

#include <QtCore/QModelIndex>

class HeadlessTour;
class QPixmap;
class QTreeView;
class QWidget;
class ViewerWindow;

/// The part of the tour that shows the feature browser.
class FeatureTour
{
public:
    FeatureTour(HeadlessTour &aTour, ViewerWindow &aWindow);

    /// False, with the reason on the error output, when a step did not come about.
    bool Run();

private:
    bool ShowTree();
    bool ShowEditors();
    bool ShowOptions();
    bool ShowSearch();
    bool ShowList();
    bool ShowError();
    void SetOptions(const char *aVisibility, const char *aView);
    QTreeView *Tree() const;
    QModelIndex Find(const char *aName) const;
    QPixmap PictureOfEditor(const char *aName);

    HeadlessTour &mTour;
    ViewerWindow &mWindow;
    QWidget *mBrowser = nullptr;
};
