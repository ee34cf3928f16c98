#pragma once

class QWidget;

/// Gives a dialog a fixed size and takes the system menu and the context help button from its title bar. A width or a
/// height below 1 leaves the size free. Call it before the dialog is shown: changed flags hide a visible one.
void MakeFixedSizeDialog(QWidget *aDialog, int aWidth, int aHeight);
