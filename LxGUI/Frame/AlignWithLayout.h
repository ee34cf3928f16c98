#pragma once

#include <QtWidgets/QLabel>

/// Puts the text of a label where the layout begins. By itself a label puts it where the text would begin, which for
/// Latin letters is the far end of a layout from right to left.
inline QLabel *AlignWithLayout(QLabel *aLabel)
{
    if (aLabel->isRightToLeft()) {
        aLabel->setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
    }
    return aLabel;
}
