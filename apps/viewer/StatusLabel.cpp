#include "StatusLabel.h"

#include <QtGui/QHelpEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QStyle>
#include <QtWidgets/QToolTip>

bool StatusLabel::IsElided() const
{
    return fontMetrics().horizontalAdvance(text()) > contentsRect().width();
}

QSize StatusLabel::minimumSizeHint() const
{
    return QSize(0, QLabel::minimumSizeHint().height());
}

bool StatusLabel::event(QEvent *aEvent)
{
    if (aEvent->type() == QEvent::ToolTip && IsElided()) {
        const QString help = toolTip().isEmpty() ? text() : text() + QStringLiteral("\n\n") + toolTip();
        QToolTip::showText(static_cast<QHelpEvent *>(aEvent)->globalPos(), help, this);
        return true;
    }
    return QLabel::event(aEvent);
}

void StatusLabel::paintEvent(QPaintEvent * /*aEvent*/)
{
    QPainter painter(this);
    const QString line = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
    style()->drawItemText(&painter, contentsRect(), QStyle::visualAlignment(layoutDirection(), alignment()), palette(),
                          isEnabled(), line, foregroundRole());
}
