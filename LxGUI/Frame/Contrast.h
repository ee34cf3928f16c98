#pragma once

#include <QtGui/QColor>

/// Contrast of text and ground as WCAG 2.1 defines it: 1 for the same colour, 21 for black on white.
double ContrastRatio(const QColor &aText, const QColor &aGround);

/// The least contrast at which text is easy to read (WCAG 2.1, success criterion 1.4.3).
constexpr double ReadableContrast = 4.5;

inline bool IsReadable(const QColor &aText, const QColor &aGround)
{
    return ContrastRatio(aText, aGround) >= ReadableContrast;
}

/// Black or white, whichever stands out more from a ground; it is always readable.
QColor StrongTextColor(const QColor &aGround);

/// A text colour that stands back and is just readable on a ground.
QColor MutedTextColor(const QColor &aGround);
