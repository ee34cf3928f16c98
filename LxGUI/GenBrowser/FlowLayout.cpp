#include "LxGUI/GenBrowser/FlowLayout.h"

#include <QtWidgets/QStyle>
#include <QtWidgets/QWidget>
#include <algorithm>

FlowLayout::~FlowLayout() = default;

void FlowLayout::addItem(QLayoutItem *aItem)
{
    mItems.emplace_back(aItem);
}

int FlowLayout::count() const
{
    return static_cast<int>(mItems.size());
}

QLayoutItem *FlowLayout::itemAt(int aIndex) const
{
    return aIndex >= 0 && aIndex < count() ? mItems[static_cast<size_t>(aIndex)].get() : nullptr;
}

QLayoutItem *FlowLayout::takeAt(int aIndex)
{
    if (aIndex < 0 || aIndex >= count()) {
        return nullptr;
    }
    const auto place = mItems.begin() + aIndex;
    QLayoutItem *const item = place->release();
    mItems.erase(place);
    return item;
}

int FlowLayout::Gap() const
{
    const QWidget *const widget = parentWidget();
    return widget ? widget->style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing, nullptr, widget) : 0;
}

QSize FlowLayout::minimumSize() const
{
    QSize size;
    for (const auto &item : mItems) {
        size = size.expandedTo(item->minimumSize());
    }
    return size;
}

QSize FlowLayout::sizeHint() const
{
    QSize size(-Gap(), 0);
    for (const auto &item : mItems) {
        const QSize hint = item->sizeHint();
        size = QSize(size.width() + hint.width() + Gap(), std::max(size.height(), hint.height()));
    }
    return size;
}

void FlowLayout::setGeometry(const QRect &aRect)
{
    QLayout::setGeometry(aRect);
    Arrange(aRect, true);
}

int FlowLayout::Arrange(const QRect &aRect, bool aPlace) const
{
    const Qt::LayoutDirection direction = parentWidget() ? parentWidget()->layoutDirection() : Qt::LeftToRight;
    int top = 0;
    for (size_t row = 0; row < mItems.size();) {
        int height = 0;
        size_t end = row;
        for (int right = 0; end < mItems.size(); ++end) {
            const QSize hint = mItems[end]->sizeHint();
            if (end > row && right + hint.width() > aRect.width()) {
                break;
            }
            right += hint.width() + Gap();
            height = std::max(height, hint.height());
        }
        for (int left = 0; aPlace && row < end; ++row) {
            const QSize size(std::min(mItems[row]->sizeHint().width(), aRect.width()), height);
            const bool isLast = row + 1 == mItems.size();
            const QPoint place(isLast ? std::max(left, aRect.width() - size.width()) : left, top);
            mItems[row]->setGeometry(QStyle::visualRect(direction, aRect, QRect(aRect.topLeft() + place, size)));
            left += size.width() + Gap();
        }
        row = end;
        top += height + (end < mItems.size() ? Gap() : 0);
    }
    return top;
}
