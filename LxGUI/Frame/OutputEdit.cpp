#include "LxGUI/Frame/OutputEdit.h"

#include <QtGui/QPalette>
#include <QtWidgets/QLineEdit>

void MakeOutputEdit(QLineEdit *aEdit)
{
    aEdit->setEnabled(false);
    QPalette palette = aEdit->palette();
    palette.setColor(QPalette::Disabled, QPalette::Text, palette.color(QPalette::Active, QPalette::Text));
    aEdit->setPalette(palette);
}
