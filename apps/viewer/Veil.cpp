#include "Veil.h"

#include <QtCore/QEvent>
#include <QtGui/QPainter>

namespace
{

constexpr int Opacity = 120;  // of 255
constexpr int Margin = 8;

}  // namespace

Veil::Veil(QWidget *aBelow, const QString &aText) : QWidget(aBelow), mText(aText)
{
    setObjectName(QStringLiteral("veil"));
    setAccessibleName(aText);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    aBelow->installEventFilter(this);
    setGeometry(aBelow->rect());
    show();
    raise();
}

bool Veil::eventFilter(QObject *aObject, QEvent *aEvent)
{
    if (aObject == parent() && aEvent->type() == QEvent::Resize) {
        setGeometry(parentWidget()->rect());
    }
    return QWidget::eventFilter(aObject, aEvent);
}

void Veil::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QColor ground = palette().color(QPalette::Window);
    ground.setAlpha(Opacity);
    painter.fillRect(rect(), ground);

    QRect sign(QPoint(), fontMetrics().size(Qt::TextSingleLine, mText) + QSize(2 * Margin, Margin));
    sign.moveBottomRight(rect().bottomRight() - QPoint(3 * Margin, 3 * Margin));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(palette().toolTipBase());
    painter.drawRoundedRect(sign, 3, 3);
    painter.setPen(palette().color(QPalette::ToolTipText));
    painter.drawText(sign, Qt::AlignCenter, mText);
}
