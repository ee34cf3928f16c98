#include "LxGUI/Frame/FixedSizeDialog.h"

#include <QtWidgets/QWidget>

void MakeFixedSizeDialog(QWidget *aDialog, int aWidth, int aHeight)
{
    if (aWidth >= 1 && aHeight >= 1) {
        aDialog->setFixedSize(aWidth, aHeight);
    }
    Qt::WindowFlags flags = aDialog->windowFlags();
    flags &= ~(Qt::WindowSystemMenuHint | Qt::WindowContextHelpButtonHint);
    flags |= Qt::CustomizeWindowHint;
    aDialog->setWindowFlags(flags);
}
