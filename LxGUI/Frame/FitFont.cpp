#include "LxGUI/Frame/FitFont.h"

#include <QtWidgets/QLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionFrame>

namespace
{

constexpr qreal Step = 0.5;
constexpr qreal LeastSize = 5;  // in points or pixels: smaller helps nobody

void Shrink(QWidget *aWidget, const std::function<bool()> &aFits)
{
    aWidget->ensurePolished();
    QFont font = aWidget->font();
    const bool inPoints = font.pointSizeF() > 0;  // else in pixels
    qreal size = inPoints ? font.pointSizeF() : font.pixelSize();
    while (!aFits() && size > LeastSize) {
        size -= inPoints ? Step : 1;
        inPoints ? font.setPointSizeF(size) : font.setPixelSize(static_cast<int>(size));
        aWidget->setFont(font);
    }
}

bool Fits(QLayout &aLayout, const QSize &aSize)
{
    // widgets that were not shown yet do not tell their layouts that their fonts have changed
    for (QLayout *inner : aLayout.parentWidget()->findChildren<QLayout *>()) {
        inner->invalidate();
    }
    const QSize least = aLayout.minimumSize();
    const int height = aLayout.hasHeightForWidth() ? aLayout.minimumHeightForWidth(aSize.width()) : least.height();
    return least.width() <= aSize.width() && height <= aSize.height();
}

}  // namespace

void ShrinkFontToFit(QWidget *aWidget, const QSize &aSize, const std::function<bool()> &aFits)
{
    QLayout *layout = aWidget->layout();
    Shrink(aWidget, [&] { return (!aFits || aFits()) && (!layout || Fits(*layout, aSize)); });
}

void ShrinkFontToHeight(QWidget *aWidget, int aHeight)
{
    Shrink(aWidget, [&] { return aWidget->fontMetrics().height() <= aHeight; });
}

int WidthForText(const QLineEdit *aEdit, const QString &aText)
{
    constexpr int innerMargin = 2;  // that QLineEdit leaves at both sides of its text
    constexpr int cursor = 1;
    QStyleOptionFrame option;
    option.initFrom(aEdit);
    option.lineWidth = aEdit->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, aEdit);
    const QSize text(aEdit->fontMetrics().horizontalAdvance(aText) + 2 * innerMargin + cursor,
                     aEdit->fontMetrics().height());
    return aEdit->style()->sizeFromContents(QStyle::CT_LineEdit, &option, text, aEdit).width();
}
