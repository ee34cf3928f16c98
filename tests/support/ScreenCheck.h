#pragma once

#include <QtCore/QStringList>

class QWidget;

/// What of a window cannot be read: controls whose text does not fit, controls that cover one another or reach out of
/// what they are in. One line for each.
QStringList FindUnreadable(const QWidget &aWindow);
