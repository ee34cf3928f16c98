#include "LxGUI/GenBrowser/NumberText.h"

NumberText ParseNumber(const QString &aText)
{
    const QString text = aText.trimmed().toUpper();
    NumberText number;
    if (text.size() > 2 && text.startsWith(QLatin1String("0X"))) {
        number.mNotation = NumberNotation::PrefixedHexadecimal;
        number.mValue = text.mid(2).toLongLong(&number.mIsValid, 16);
    }
    else if (text.size() > 1 && text.endsWith(QLatin1Char('H'))) {
        number.mNotation = NumberNotation::SuffixedHexadecimal;
        number.mValue = static_cast<int64_t>(text.chopped(1).toULongLong(&number.mIsValid, 16));
    }
    else {
        number.mValue = text.toLongLong(&number.mIsValid, 10);
    }
    return number;
}

QString FormatNumber(int64_t aValue, NumberNotation aNotation)
{
    // The prefixed notation is read as a signed number, the suffixed one as 64 bits.
    const auto bits = static_cast<qulonglong>(aValue);
    switch (aNotation) {
        case NumberNotation::PrefixedHexadecimal:
            return QLatin1String(aValue < 0 ? "0x-" : "0x") +
                   QString::number(aValue < 0 ? qulonglong(0) - bits : bits, 16).toUpper();
        case NumberNotation::SuffixedHexadecimal:
            return QString::number(bits, 16).toUpper() + QLatin1Char('h');
        case NumberNotation::Decimal:
            break;
    }
    return QString::number(qlonglong(aValue));
}
