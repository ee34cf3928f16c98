#include "LxGUI/Frame/IP4Validator.h"

#include <QtCore/QStringList>

QValidator::State IP4Validator::validate(QString &aInput, int & /*aPos*/) const
{
    if (aInput.isEmpty()) {
        return Acceptable;
    }
    const QStringList parts = aInput.split(QLatin1Char('.'), Qt::KeepEmptyParts);
    if (parts.size() > 4) {
        return Invalid;
    }
    bool complete = parts.size() == 4;
    for (const QString &part : parts) {
        if (part.isEmpty()) {
            complete = false;
            continue;
        }
        bool isNumber = false;
        const int value = part.toInt(&isNumber, 10);
        if (!isNumber || value > 255 || part.size() > 3) {
            return Invalid;
        }
    }
    return complete ? Acceptable : Intermediate;
}
