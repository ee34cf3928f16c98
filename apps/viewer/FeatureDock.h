#pragma once

#include <QtWidgets/QDockWidget>

#include "FeatureBrowser.h"

/// The feature browser beside the picture.
class FeatureDock : public QDockWidget
{
    Q_OBJECT

public:
    explicit FeatureDock(QWidget *aParent);
    ~FeatureDock() override;

    /// Makes the browser, which the start of the viewer need not wait for, unless it is there already.
    void Fill();
    FeatureBrowser &Browser() { return mBrowser; }

signals:
    /// The user closed it.
    void Closed();

protected:
    void closeEvent(QCloseEvent *aEvent) override;

private:
    FeatureBrowser mBrowser;
    bool mIsFilled = false;
};
