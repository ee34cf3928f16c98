#include "ViewerLog.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <mutex>

Q_LOGGING_CATEGORY(LogApp, "lxgui.viewer.app", QtWarningMsg)
Q_LOGGING_CATEGORY(LogCamera, "lxgui.viewer.camera", QtWarningMsg)
Q_LOGGING_CATEGORY(LogStream, "lxgui.viewer.stream", QtWarningMsg)
Q_LOGGING_CATEGORY(LogSettings, "lxgui.viewer.settings", QtWarningMsg)

namespace
{

constexpr QLatin1String Prefix("lxgui.viewer.");

std::mutex sMutex;  // guards the two below
QFile sFile;
bool sIsErrorOutput = false;
QtMessageHandler sFormer = nullptr;

const char *LevelOf(QtMsgType aType)
{
    switch (aType) {
        case QtDebugMsg:
            return "debug";
        case QtInfoMsg:
            return "info";
        case QtWarningMsg:
            return "warning";
        case QtCriticalMsg:
            return "error";
        case QtFatalMsg:
            return "fatal";
    }
    return "info";
}

void Write(QtMsgType aType, const QMessageLogContext &aContext, const QString &aText)
{
    QString category = QString::fromUtf8(aContext.category ? aContext.category : "");
    category = category.startsWith(Prefix) ? category.mid(Prefix.size()) : QStringLiteral("app");
    const QString line = QStringLiteral("%1 %2 %3 %4\n")
                             .arg(QDateTime::currentDateTime().toString(Qt::ISODateWithMs),
                                  QLatin1String(LevelOf(aType)), category, aText.simplified());
    bool isErrorOutput = false;
    {
        const std::lock_guard lock(sMutex);
        sFile.write(line.toUtf8());
        sFile.flush();  // the last lines before a crash are the ones that matter
        isErrorOutput = sIsErrorOutput;
    }
    const bool isWarning = aType != QtDebugMsg && aType != QtInfoMsg;
    if (sFormer && (aType == QtFatalMsg || (isWarning && !isErrorOutput))) {
        sFormer(aType, aContext, aText);
    }
}

}  // namespace

QStringList ViewerLog::Categories()
{
    return {QStringLiteral("app"), QStringLiteral("camera"), QStringLiteral("stream"), QStringLiteral("settings")};
}

QString ViewerLog::Open(const QString &aFile, const QStringList &aFilter)
{
    Close();
    const bool isErrorOutput = aFile == QLatin1String("-");
    sFile.setFileName(aFile);
    if (isErrorOutput ? !sFile.open(stderr, QIODevice::WriteOnly)
                      : !sFile.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text))
    {
        return QCoreApplication::translate("ViewerLog", "The log cannot be written to %1: %2")
            .arg(QDir::toNativeSeparators(aFile), sFile.errorString());
    }
    sIsErrorOutput = isErrorOutput;
    QStringList rules;
    for (const QString &name : aFilter.isEmpty() ? Categories() : aFilter) {
        rules << QStringLiteral("%1%2.info=true").arg(Prefix, name);
    }
    QLoggingCategory::setFilterRules(rules.join(QLatin1Char('\n')));
    sFormer = qInstallMessageHandler(Write);
    return QString();
}

void ViewerLog::Close()
{
    if (!sFile.isOpen()) {
        return;
    }
    qInstallMessageHandler(sFormer);
    QLoggingCategory::setFilterRules(QString());
    const std::lock_guard lock(sMutex);
    sFile.close();
}
