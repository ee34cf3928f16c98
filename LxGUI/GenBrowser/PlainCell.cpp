#include "LxGUI/GenBrowser/PlainCell.h"

#include <QtCore/QModelIndex>
#include <QtGui/QPainter>
#include <QtGui/QTextLayout>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionViewItem>
#include <QtWidgets/QWidget>

namespace
{

bool IsPlain(const QStyleOptionViewItem &aOption)
{
    constexpr QStyle::State special = QStyle::State_Selected | QStyle::State_HasFocus | QStyle::State_MouseOver;
    return aOption.widget && aOption.widget->style()->inherits("QFusionStyle") && !(aOption.state & special) &&
           aOption.direction == Qt::LeftToRight && aOption.displayAlignment == (Qt::AlignLeft | Qt::AlignVCenter);
}

bool IsPlain(const QString &aText)
{
    return !aText.isRightToLeft() && !aText.contains(QLatin1Char('\n')) && !aText.contains(QChar::LineSeparator);
}

}  // namespace

bool PaintPlainCell(QPainter &aPainter, const QStyleOptionViewItem &aOption, const QModelIndex &aIndex)
{
    if (!IsPlain(aOption) || aIndex.data(Qt::DecorationRole).isValid() || aIndex.data(Qt::CheckStateRole).isValid()) {
        return false;
    }
    const QString text = aIndex.data(Qt::DisplayRole).toString();
    if (!IsPlain(text)) {
        return false;
    }
    const QStyle &style = *aOption.widget->style();
    const int margin = style.pixelMetric(QStyle::PM_FocusFrameHMargin, &aOption, aOption.widget) + 1;
    const QRect place = aOption.rect.adjusted(margin, 0, -margin, 0);
    const QFont font = aIndex.data(Qt::FontRole).value<QFont>().resolve(aOption.font);
    QTextLayout layout(text, font, aPainter.device());
    layout.beginLayout();
    QTextLine line = layout.createLine();
    if (line.isValid()) {
        line.setNumColumns(static_cast<int>(text.size()));  // not wrapped
    }
    layout.endLayout();
    if (line.isValid() && line.naturalTextWidth() > place.width()) {
        return false;
    }
    const QPoint origin = aPainter.brushOrigin();
    aPainter.setBrushOrigin(aOption.rect.topLeft());
    aPainter.fillRect(aOption.rect, aIndex.data(Qt::BackgroundRole).value<QBrush>());
    aPainter.setBrushOrigin(origin);
    if (line.isValid()) {
        const QPen pen = aPainter.pen();
        aPainter.setPen(aIndex.data(Qt::ForegroundRole).value<QBrush>().color());
        line.draw(&aPainter, QPointF(place.left(), place.top() + (place.height() - qRound(line.height())) / 2));
        aPainter.setPen(pen);
    }
    return true;
}
