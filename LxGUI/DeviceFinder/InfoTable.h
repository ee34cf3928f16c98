#pragma once

#include <QtCore/QString>

#include "LxGUI/DeviceFinder/InfoRow.h"

class QTableWidget;
class QWidget;

/// A table of labels and values that is only looked at.
QTableWidget *CreateInfoTable(QWidget *aParent, const QString &aObjectName, const QString &aAccessibleName);

/// Shows the rows and an empty one behind them; changes only the cells that differ.
/// @return whether the number of rows changed.
bool FillInfoTable(QTableWidget &aTable, const InfoRows &aRows);
/// Leaves no row.
bool ClearInfoTable(QTableWidget &aTable);
