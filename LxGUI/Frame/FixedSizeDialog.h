#pragma once

#include <functional>

class QWidget;

/// Gives a dialog a fixed size and takes the system menu and the context help button from its title bar. A width or a
/// height below 1 leaves the size free. Call it before the dialog is shown: changed flags hide a visible one.
/// A font that is too large for the size becomes smaller; aFits is that of ShrinkFontToFit().
void MakeFixedSizeDialog(QWidget *aDialog, int aWidth, int aHeight, const std::function<bool()> &aFits = {});
