#pragma once

#include <QtCore/QString>
#include <functional>

class QWidget;

/// Asks for the name of a file to save to. Before a file is replaced the user is asked, also where its name is complete
/// only after the dialog has ended.
/// @param aFile folder and name that are suggested.
/// @param aFilters kinds of files, as QFileDialog takes them; the first is chosen at first.
/// @param aComplete gives a name the ending that it lacks; its arguments are the name and the kind that was chosen.
/// @return the complete name; empty when the user chose none.
QString AskSaveFileName(QWidget *aParent, const QString &aTitle, const QString &aFile, const QString &aFilters,
                        const std::function<QString(const QString &, const QString &)> &aComplete);
