#include "SaveFileName.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMessageBox>

QString AskSaveFileName(QWidget *aParent, const QString &aTitle, const QString &aFile, const QString &aFilters,
                        const std::function<QString(const QString &, const QString &)> &aComplete)
{
    QString suggested = aFile;
    QString filter;
    for (;;) {
        const QString chosen = QFileDialog::getSaveFileName(aParent, aTitle, suggested, aFilters, &filter);
        const QString name = chosen.isEmpty() ? chosen : aComplete(chosen, filter);
        if (name == chosen || !QFileInfo::exists(name) ||
            QMessageBox::warning(aParent, aTitle,
                                 QCoreApplication::translate("SaveFileName", "%1 already exists. Replace it?")
                                     .arg(QDir::toNativeSeparators(name)),
                                 QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes)
        {
            return name;
        }
        suggested = name;
    }
}
