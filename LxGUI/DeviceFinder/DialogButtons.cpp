#include "LxGUI/DeviceFinder/DialogButtons.h"

#include <QtWidgets/QDialog>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QPushButton>

DialogButtons::DialogButtons(QDialog *aDialog)
    : mLayout(new QHBoxLayout),
      mOK(new QPushButton(QStringLiteral("OK"), aDialog)),
      mCancel(new QPushButton(QStringLiteral("Cancel"), aDialog))
{
    mOK->setObjectName(QStringLiteral("OKButton"));
    mOK->setDefault(true);
    mCancel->setObjectName(QStringLiteral("CancelButton"));
    mLayout->addStretch();
    mLayout->addWidget(mOK);
    mLayout->addWidget(mCancel);
    QObject::connect(mOK, SIGNAL(clicked()), aDialog, SLOT(accept()));
    QObject::connect(mCancel, SIGNAL(clicked()), aDialog, SLOT(reject()));
}
