#pragma once

#include <QtCore/QString>

class QWidget;

/// Shows a warning with one OK button and returns when the user has closed it.
void ShowError(QWidget *aParent, const QString &aText, const QString &aTitle = QStringLiteral("Error"));
/// The same as a critical message.
void ShowCritical(QWidget *aParent, const QString &aText, const QString &aTitle = QStringLiteral("Error"));
