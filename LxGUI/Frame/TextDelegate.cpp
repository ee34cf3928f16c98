#include "LxGUI/Frame/TextDelegate.h"

#include "LxGUI/Frame/Text.h"

void TextDelegate::initStyleOption(QStyleOptionViewItem *aOption, const QModelIndex &aIndex) const
{
    QStyledItemDelegate::initStyleOption(aOption, aIndex);
    if (aOption->direction == Qt::RightToLeft) {
        aOption->text = KeepDirection(aOption->text);
    }
}
