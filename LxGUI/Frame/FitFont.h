#pragma once

#include <QtCore/QSize>
#include <QtCore/QString>
#include <functional>

class QLineEdit;
class QWidget;

/// Makes the font of a widget, and of what is in it, as much smaller as its layout needs to fit a size that cannot grow
/// with the font. A font that fits stays.
/// @param aFits called at each size of the font before the layout is asked: sets what depends on the font, and says
///              whether that fits of which the layout knows nothing.
void ShrinkFontToFit(QWidget *aWidget, const QSize &aSize, const std::function<bool()> &aFits = {});

/// Makes the font of a widget as much smaller as is needed for a line of text to be at most so high, in pixels.
void ShrinkFontToHeight(QWidget *aWidget, int aHeight);

/// The width of a line edit that shows all of a text.
int WidthForText(const QLineEdit *aEdit, const QString &aText);
