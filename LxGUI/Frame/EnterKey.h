#pragma once

class QAbstractButton;

/// Has the Enter key press a button that has the focus. For buttons that are not auto-default: those leave Enter alone
/// while another control has the focus, but then do nothing either when they have it themselves.
void PressOnEnter(QAbstractButton *aButton);
