#pragma once

#include <QtCore/QLoggingCategory>
#include <QtCore/QString>
#include <QtCore/QStringList>

// What is worth a line in a bug report. Without ViewerLog::Open() only warnings are printed.
Q_DECLARE_LOGGING_CATEGORY(LogApp)       // lxgui.viewer.app
Q_DECLARE_LOGGING_CATEGORY(LogCamera)    // lxgui.viewer.camera
Q_DECLARE_LOGGING_CATEGORY(LogStream)    // lxgui.viewer.stream
Q_DECLARE_LOGGING_CATEGORY(LogSettings)  // lxgui.viewer.settings

/// The log of the viewer: a line for each message, "2026-05-04T12:34:56.789 info camera text", with line breaks in the
/// text as blanks. Messages of Qt and of the library stand under the category "app". Messages come from any thread.
namespace ViewerLog
{

/// The short names of the categories: without "lxgui.viewer.".
QStringList Categories();
/// Logs to a file, which is appended to, or with "-" to the error output, until Close(). Warnings also go where they
/// went before.
/// @param aFilter short names; the messages of other categories are left out unless they are warnings. Empty for all.
/// @return empty, or why the file cannot be written.
QString Open(const QString &aFile, const QStringList &aFilter);
/// Closes the log; messages go where they went before.
void Close();

}  // namespace ViewerLog
