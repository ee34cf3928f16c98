#include "LxGUI/DeviceFinder/InfoTable.h"

#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTableWidget>

#include "LxGUI/Frame/FitFont.h"
#include "LxGUI/Frame/TextDelegate.h"

namespace
{

constexpr int RowHeight = 18;

void FillCell(QTableWidget &aTable, int aRow, int aColumn, const QString &aText, const QColor &aColor)
{
    QTableWidgetItem *item = aTable.item(aRow, aColumn);
    if (!item) {
        item = new QTableWidgetItem;
        aTable.setItem(aRow, aColumn, item);
    }
    if (item->text() != aText) {
        item->setText(aText);
        // for texts that are wider than the column
        item->setToolTip(aText);
    }
    QBrush background;
    QBrush foreground;
    if (aColor != Qt::white) {
        background = aColor;
        foreground = aColor == Qt::darkRed ? Qt::white : Qt::black;
    }
    if (item->background() != background) {
        item->setBackground(background);
        item->setForeground(foreground);
    }
}

void FillRow(QTableWidget &aTable, int aRow, const InfoRow &aInfo)
{
    FillCell(aTable, aRow, 0, aInfo.mLabel, aInfo.mColor);
    FillCell(aTable, aRow, 1, aInfo.mValue, aInfo.mColor);
}

bool SetRowCount(QTableWidget &aTable, int aCount)
{
    if (aTable.rowCount() == aCount) {
        return false;
    }
    aTable.setRowCount(aCount);
    return true;
}

}  // namespace

QTableWidget *CreateInfoTable(QWidget *aParent, const QString &aObjectName, const QString &aAccessibleName)
{
    auto *table = new QTableWidget(0, 2, aParent);
    table->setObjectName(aObjectName);
    table->setAccessibleName(aAccessibleName);
    table->setSelectionMode(QAbstractItemView::NoSelection);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setTabKeyNavigation(false);
    table->setWordWrap(false);
    table->horizontalHeader()->hide();
    table->horizontalHeader()->setStretchLastSection(true);
    table->verticalHeader()->hide();
    table->verticalHeader()->setMinimumSectionSize(RowHeight);
    table->verticalHeader()->setDefaultSectionSize(RowHeight);
    table->setItemDelegate(new TextDelegate(table));
    ShrinkFontToHeight(table, RowHeight);
    return table;
}

bool FillInfoTable(QTableWidget &aTable, const InfoRows &aRows)
{
    const int count = static_cast<int>(aRows.size());
    const bool changed = SetRowCount(aTable, count + 1);
    for (int i = 0; i < count; ++i) {
        FillRow(aTable, i, aRows[i]);
    }
    FillRow(aTable, count, InfoRow());
    return changed;
}

bool ClearInfoTable(QTableWidget &aTable)
{
    return SetRowCount(aTable, 0);
}
