#pragma once

#include <QtCore/QString>

#include "LxBase/LxString.h"

/// Texts at the public boundary are UTF-8.
inline QString ToQString(const LxString &aText)
{
    return QString::fromUtf8(aText.GetAscii());
}

inline LxString ToLxString(const QString &aText)
{
    return LxString(aText.toUtf8().constData());
}
