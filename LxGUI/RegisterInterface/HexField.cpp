#include "LxGUI/RegisterInterface/HexField.h"

#include <cstdio>

bool ParseHexField(const QString &aText, uint32_t &aValue)
{
    QString text = aText.trimmed().toUpper();
    if (text.size() > 2 && text.startsWith(QLatin1String("0X"))) {
        text.remove(0, 2);
    }
    unsigned int value = 0;
    if (std::sscanf(text.toUtf8().constData(), "%X", &value) != 1) {
        return false;
    }
    aValue = value;
    return true;
}

QString FormatHexField(uint32_t aValue)
{
    return QStringLiteral("%1").arg(aValue, 8, 16, QLatin1Char('0')).toUpper();
}
