#include "LxGUI/DeviceFinder/InfoFormat.h"

#include <array>

namespace InfoFormat
{

namespace
{

template <size_t tCount>
QString Pick(const std::array<const char *, tCount> &aTexts, int64_t aIndex, const char *aOther)
{
    const bool known = aIndex >= 0 && aIndex < static_cast<int64_t>(tCount);
    return QLatin1String(known ? aTexts[static_cast<size_t>(aIndex)] : aOther);
}

}  // namespace

QString Hex(uint32_t aValue, int aWidth)
{
    return QStringLiteral("0x%1").arg(aValue, aWidth, 16, QLatin1Char('0'));
}

QString Dec(uint32_t aValue)
{
    return QString::number(aValue);
}

QString Version(uint32_t aMajor, uint32_t aMinor)
{
    return QStringLiteral("%1.%2").arg(aMajor).arg(aMinor);
}

QString Bool(bool aValue)
{
    return aValue ? QStringLiteral("True") : QStringLiteral("False");
}

QString Validity(bool aValid)
{
    return aValid ? QStringLiteral("Valid") : QStringLiteral("Invalid");
}

QString Milliampere(uint32_t aValue)
{
    return QStringLiteral("%1 mA").arg(aValue);
}

QString USBSpeed(uint32_t aSpeed)
{
    static constexpr std::array texts = {"Unknown", "Low", "Full", "High", "Super"};
    return Pick(texts, aSpeed, "Unknown");
}

QString DeviceClass(int aClass)
{
    static constexpr std::array texts = {"Unknown", "Transmitter", "Receiver", "Transceiver", "Peripheral"};
    return Pick(texts, aClass, "");
}

QString AccessType(int aType)
{
    static constexpr std::array texts = {"Unknown", "Open", "Control", "Exclusive", "Read-Only"};
    return Pick(texts, aType, "Unknown");
}

QString USBStatus(int aStatus)
{
    static constexpr std::array texts = {"Connected",
                                         "Failed Enumeration",
                                         "General Failure",
                                         "Caused Overcurrent",
                                         "Not Enough Power",
                                         "Not Enough Bandwidth",
                                         "Hub Nested Too Deeply",
                                         "Legacy Hub",
                                         "Enumerating",
                                         "Reset"};
    return Pick(texts, aStatus, "Unknown");
}

}  // namespace InfoFormat
