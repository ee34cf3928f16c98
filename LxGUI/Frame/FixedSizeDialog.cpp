#include "LxGUI/Frame/FixedSizeDialog.h"

#include <QtWidgets/QWidget>

#include "LxGUI/Frame/FitFont.h"

void MakeFixedSizeDialog(QWidget *aDialog, int aWidth, int aHeight, const std::function<bool()> &aFits)
{
    if (aWidth >= 1 && aHeight >= 1) {
        ShrinkFontToFit(aDialog, QSize(aWidth, aHeight), aFits);
        aDialog->setFixedSize(aWidth, aHeight);
    }
    Qt::WindowFlags flags = aDialog->windowFlags();
    flags &= ~(Qt::WindowSystemMenuHint | Qt::WindowContextHelpButtonHint);
    flags |= Qt::CustomizeWindowHint;
    aDialog->setWindowFlags(flags);
}
