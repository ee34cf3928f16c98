#pragma once

#include <QtCore/QString>
#include <QtWidgets/QWidget>

/// Gives a control the name by which programs find it, and the one that assistive technology says, unless that is the
/// control's own text. Returns the control.
template <class Control>
Control *Named(Control *aControl, const char *aName, const QString &aAccessibleName = QString())
{
    aControl->setObjectName(QLatin1String(aName));
    if (!aAccessibleName.isEmpty()) {
        aControl->setAccessibleName(aAccessibleName);
    }
    return aControl;
}
