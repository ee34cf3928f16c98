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

    FeatureBrowser &Browser() { return mBrowser; }

signals:
    /// The user closed it.
    void Closed();

protected:
    void closeEvent(QCloseEvent *aEvent) override;

private:
    FeatureBrowser mBrowser;
};
