#pragma once

#include <QtCore/QStringList>

class QWidget;

/// What keeps those out of a window who do not see it or use no mouse. Each gives a line a fault.

/// As assistive technology sees the window: every control that takes the focus has a role and a name, no two have the
/// same name, and the label left of a field belongs to it.
QStringList FindNameFaults(QWidget *aWindow);

/// As Tab goes: it starts with the focus where it is, follows the eye (down the rows, each in the direction of reading,
/// one block of the window after the other), reaches every control that is enabled, and comes round; Shift+Tab goes
/// back. The window must be active.
QStringList FindTabFaults(QWidget *aWindow);

/// No two controls, and no two entries of one menu, answer to the same Alt+letter.
QStringList FindMnemonicFaults(QWidget *aWindow);

/// All of these, as test failures that name the window.
void ExpectAccessible(QWidget *aWindow);
