#include "LxGUI/Frame/MessageBoxes.h"

#include <QtWidgets/QMessageBox>

void ShowError(QWidget *aParent, const QString &aText, const QString &aTitle)
{
    QMessageBox::warning(aParent, aTitle, aText, QMessageBox::Ok);
}
