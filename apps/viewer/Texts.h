#pragma once

#include <QtCore/QString>

#include "LxBase/LxResult.h"
#include "LxBase/LxString.h"

inline QString ToQString(const LxString &aText)
{
    return QString::fromUtf8(aText.GetAscii());
}

inline LxString ToLxString(const QString &aText)
{
    return LxString(aText.toUtf8().constData());
}

/// What a failure says about itself: its description, or its code where it has none.
inline QString Reason(const LxResult &aResult)
{
    const QString description = ToQString(aResult.GetDescription());
    return description.isEmpty() ? ToQString(aResult.GetCodeString()) : description;
}
