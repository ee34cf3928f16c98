#include "LxGUI/DeviceFinder/FieldErrorMarker.h"

#include <QtGui/QBitmap>
#include <QtGui/QPainter>
#include <QtWidgets/QWidget>

FieldErrorMarker::FieldErrorMarker(QWidget *aField) : mField(aField), mSign(QStringLiteral(":LxGUI/res/Error.bmp"))
{
    mSign.setMask(mSign.createMaskFromColor(Qt::black));
}

void FieldErrorMarker::SetMessage(const QString &aMessage)
{
    mMessage = aMessage;
    mField->setToolTip(aMessage);
}

void FieldErrorMarker::Draw(QPainter &aPainter, const QPoint &aTopLeft) const
{
    aPainter.drawPixmap(aTopLeft, mSign);
}
