#include "FeatureDock.h"

#include <QtGui/QCloseEvent>

FeatureDock::FeatureDock(QWidget *aParent) : QDockWidget(tr("Features"), aParent), mBrowser("FeatureDock")
{
    setObjectName(QStringLiteral("featureDock"));
    auto *host = new QWidget(this);
    mBrowser.Embed(host);
    setWidget(host);
}

FeatureDock::~FeatureDock()
{
    mBrowser.Close();
}

void FeatureDock::closeEvent(QCloseEvent *aEvent)
{
    QDockWidget::closeEvent(aEvent);
    if (aEvent->isAccepted()) {
        emit Closed();
    }
}
