#include "LxGUI/Frame/MessageBoxes.h"

#include <QtWidgets/QMessageBox>

namespace
{

void Show(QMessageBox::Icon aIcon, QWidget *aParent, const QString &aText, const QString &aTitle)
{
    QMessageBox box(aIcon, aTitle, aText, QMessageBox::Ok, aParent);
    box.setTextFormat(Qt::PlainText);  // Names of files and texts of devices are no HTML.
    box.exec();
}

}  // namespace

void ShowError(QWidget *aParent, const QString &aText, const QString &aTitle)
{
    Show(QMessageBox::Warning, aParent, aText, aTitle);
}

void ShowCritical(QWidget *aParent, const QString &aText, const QString &aTitle)
{
    Show(QMessageBox::Critical, aParent, aText, aTitle);
}
