#include "FeatureDock.h"

#include <QtGui/QCloseEvent>

FeatureDock::FeatureDock(QWidget *aParent) : QDockWidget(tr("Features"), aParent), mBrowser("FeatureDock")
{
    setObjectName(QStringLiteral("featureDock"));
    setWidget(new QWidget(this));
}

FeatureDock::~FeatureDock()
{
    mBrowser.Close();
}

void FeatureDock::Fill()
{
    if (!mIsFilled) {
        mIsFilled = true;
        mBrowser.Embed(widget());
    }
}

void FeatureDock::closeEvent(QCloseEvent *aEvent)
{
    QDockWidget::closeEvent(aEvent);
    if (aEvent->isAccepted()) {
        emit Closed();
    }
}
