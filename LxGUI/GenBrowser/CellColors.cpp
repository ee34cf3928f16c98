#include "LxGUI/GenBrowser/CellColors.h"

#include <QtCore/QModelIndex>
#include <QtGui/QBrush>
#include <QtGui/QPalette>
#include <QtWidgets/QApplication>

#include "LxGUI/Frame/Contrast.h"

QColor CellTextColor(const QModelIndex &aIndex)
{
    const QColor text = aIndex.data(Qt::ForegroundRole).value<QBrush>().color();
    const QColor ground = aIndex.data(Qt::BackgroundRole).value<QBrush>().color();
    const QPalette palette = QApplication::palette();
    const bool isGrey = text == palette.color(QPalette::Mid) && text != palette.color(QPalette::Text);
    // grey on a ground that normal text does not suit would look like normal text
    if (IsReadable(text, ground) && (!isGrey || IsReadable(palette.color(QPalette::Text), ground))) {
        return text;
    }
    return isGrey ? MutedTextColor(ground) : StrongTextColor(ground);
}
