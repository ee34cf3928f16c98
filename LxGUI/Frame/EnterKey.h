#pragma once

class QAbstractButton;
class QPushButton;
class QString;
class QWidget;

/// Has the Enter key press a button that has the focus. For buttons that are not auto-default: those leave Enter alone
/// while another control has the focus, but then do nothing either when they have it themselves.
void PressOnEnter(QAbstractButton *aButton);

/// A button that Enter presses only where it is: in a field Enter does what belongs to the field.
/// @param aAccessibleName what it does, for assistive technology.
QPushButton *MakeEnterButton(QWidget *aParent, const char *aName, const QString &aText, const QString &aAccessibleName);
