#pragma once

#include <QtCore/QString>

#include "LxBase/LxString.h"

/// Texts at the public boundary are UTF-8.
inline QString ToQString(const LxString &aText)
{
    return QString::fromUtf8(aText.GetAscii());
}

/// A text with marks around it that keep its direction where the layout goes the other way: that of its first letter,
/// from left to right without one.
inline QString KeepDirection(const QString &aText)
{
    constexpr QChar leftToRight(0x202A);
    constexpr QChar rightToLeft(0x202B);
    constexpr QChar end(0x202C);
    return aText.isEmpty() ? aText : (aText.isRightToLeft() ? rightToLeft : leftToRight) + aText + end;
}

inline LxString ToLxString(const QString &aText)
{
    return LxString(aText.toUtf8().constData());
}
