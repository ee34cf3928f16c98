#pragma once

#include <QtWidgets/QStyledItemDelegate>

/// Shows the texts of a view. In a layout from right to left they keep their own direction, so that numbers with their
/// units and signs, addresses and names can be read.
class TextDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *aOption, const QModelIndex &aIndex) const override;
};
