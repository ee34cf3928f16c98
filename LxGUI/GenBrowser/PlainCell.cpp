#include "LxGUI/GenBrowser/PlainCell.h"

#include <QtCore/QModelIndex>
#include <QtCore/QtMath>
#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionViewItem>
#include <QtWidgets/QWidget>
#include <algorithm>

#include "LxGUI/GenBrowser/CellColors.h"

namespace
{

bool IsPlain(const QStyleOptionViewItem &aOption)
{
    constexpr QStyle::State special = QStyle::State_Selected | QStyle::State_HasFocus | QStyle::State_MouseOver;
    return aOption.widget && aOption.widget->style()->inherits("QFusionStyle") && !(aOption.state & special) &&
           aOption.direction == Qt::LeftToRight && aOption.displayAlignment == (Qt::AlignLeft | Qt::AlignVCenter);
}

/// Texts of these characters alone need no other font, which may be of another height, and go from left to right.
bool IsPlain(const QString &aText)
{
    return std::all_of(aText.begin(), aText.end(),
                       [](QChar aCharacter) { return aCharacter <= u'\u024F' && aCharacter.isPrint(); });
}

bool Fits(const QString &aText, const QFontMetricsF &aMetrics, int aWidth)
{
    // Most texts are so short that there is no need to measure them.
    const auto size = static_cast<qreal>(aText.size());
    return size * aMetrics.maxWidth() <= aWidth || aMetrics.horizontalAdvance(aText) <= aWidth;
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
    const QFontMetricsF metrics(font, aPainter.device());
    if (!Fits(text, metrics, place.width())) {
        return false;
    }
    const QPoint origin = aPainter.brushOrigin();
    aPainter.setBrushOrigin(aOption.rect.topLeft());
    aPainter.fillRect(aOption.rect, aIndex.data(Qt::BackgroundRole).value<QBrush>());
    aPainter.setBrushOrigin(origin);
    if (!text.isEmpty()) {
        const QPen pen = aPainter.pen();
        const QFont fontBefore = aPainter.font();
        aPainter.setPen(CellTextColor(aIndex));
        aPainter.setFont(font);
        const int height = qCeil(metrics.ascent() + metrics.descent());
        const int top = place.top() + (place.height() - height) / 2;
        aPainter.drawText(QPointF(place.left(), top + metrics.ascent()), text);
        aPainter.setFont(fontBefore);
        aPainter.setPen(pen);
    }
    return true;
}
