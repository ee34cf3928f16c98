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

void FillGround(QPainter &aPainter, const QRect &aPlace, const QBrush &aBrush)
{
    if (aBrush.style() == Qt::SolidPattern) {
        aPainter.fillRect(aPlace, aBrush.color());  // the shortest way
        return;
    }
    const QPoint origin = aPainter.brushOrigin();
    aPainter.setBrushOrigin(aPlace.topLeft());
    aPainter.fillRect(aPlace, aBrush);
    aPainter.setBrushOrigin(origin);
}

}  // namespace

const PlainCell::Letters &PlainCell::Find(const QFont &aAsked, const QFont &aBase, QPaintDevice *aDevice)
{
    Letters &letters = mLetters[aAsked.bold() ? 1 : 0];
    const int dotsPerInch = aDevice->logicalDpiY();
    if (letters.mDotsPerInch != dotsPerInch || letters.mAsked != aAsked || letters.mBase != aBase) {
        const QFont font(aAsked.resolve(aBase), aDevice);
        const QFontMetricsF metrics(font);
        letters = {aAsked,
                   aBase,
                   dotsPerInch,
                   font,
                   metrics.ascent(),
                   metrics.maxWidth(),
                   qCeil(metrics.ascent() + metrics.descent())};
    }
    return letters;
}

bool PlainCell::Paint(QPainter &aPainter, const QStyleOptionViewItem &aOption, const QModelIndex &aIndex)
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
    const Letters &letters = Find(aIndex.data(Qt::FontRole).value<QFont>(), aOption.font, aPainter.device());
    // Most texts are so short that there is no need to measure them.
    if (static_cast<qreal>(text.size()) * letters.mMostWidth > place.width() &&
        QFontMetricsF(letters.mFont).horizontalAdvance(text) > place.width())
    {
        return false;
    }
    FillGround(aPainter, aOption.rect, aIndex.data(Qt::BackgroundRole).value<QBrush>());
    if (!text.isEmpty()) {
        const QPen pen = aPainter.pen();
        const QFont fontBefore = aPainter.font();
        aPainter.setPen(CellTextColor(aIndex));
        aPainter.setFont(letters.mFont);
        const int top = place.top() + (place.height() - letters.mHeight) / 2;
        aPainter.drawText(QPointF(place.left(), top + letters.mAscent), text);
        aPainter.setFont(fontBefore);
        aPainter.setPen(pen);
    }
    return true;
}
