#include "LxGUI/GenBrowser/FeatureTexts.h"

#include <QtCore/QLocale>
#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>

#include "LxGUI/Frame/Text.h"

namespace
{

// What the SDK's results carry in front of their descriptions ends with this and a line number.
constexpr QLatin1String SourceMarker(".cpp:");

constexpr std::array<const char *, 15> IPAddressNames = {
    "IPAddress",
    "GevCurrentIPAddress",
    "GevCurrentSubnetMask",
    "GevCurrentDefaultGateway",
    "GevPersistentIPAddress",
    "GevPersistentSubnetMask",
    "GevPersistentDefaultGateway",
    "GevMCDA",
    "GevSCDA",
    "MulticastIPAddress",
    "SourceIPAddress",
    "SourceSCDA",
    "GevPrimaryApplicationIPAddress",
    "LocalIPAddress",
    "DeviceIPAddress",
};

template <class Number>
QString RangeText(Number)
{
    constexpr auto bits = std::numeric_limits<Number>::digits + (std::numeric_limits<Number>::is_signed ? 1 : 0);
    return QStringLiteral("Unbound %1 %2 bits integer")
        .arg(std::numeric_limits<Number>::is_signed ? QStringLiteral("signed") : QStringLiteral("unsigned"))
        .arg(bits);
}

template <class Number>
bool IsWholeRange(int64_t aMin, int64_t aMax)
{
    return aMin == std::numeric_limits<Number>::min() && aMax == std::numeric_limits<Number>::max();
}

}  // namespace

QString VisibilityText(LxGenVisibility aVisibility)
{
    switch (aVisibility) {
        case LxGenVisibilityBeginner:
            return QStringLiteral("Beginner");
        case LxGenVisibilityExpert:
            return QStringLiteral("Expert");
        case LxGenVisibilityGuru:
            return QStringLiteral("Guru");
        case LxGenVisibilityInvisible:
            return QStringLiteral("Invisible");
        default:
            return QString();
    }
}

QString NameSpaceText(LxGenNameSpace aNameSpace)
{
    switch (aNameSpace) {
        case LxGenNameSpaceStandard:
            return QStringLiteral("Standard");
        case LxGenNameSpaceCustom:
            return QStringLiteral("Custom");
        default:
            return QStringLiteral("Invalid");
    }
}

QString TypeText(LxGenType aType)
{
    switch (aType) {
        case LxGenTypeInteger:
            return QStringLiteral("Integer");
        case LxGenTypeEnum:
            return QStringLiteral("Enum");
        case LxGenTypeBoolean:
            return QStringLiteral("Boolean");
        case LxGenTypeString:
            return QStringLiteral("String");
        case LxGenTypeCommand:
            return QStringLiteral("Command");
        case LxGenTypeFloat:
            return QStringLiteral("Float");
        case LxGenTypeRegister:
            return QStringLiteral("Register");
        default:
            return QString();
    }
}

bool IsIPAddressName(const QString &aName)
{
    return std::any_of(IPAddressNames.begin(), IPAddressNames.end(),
                       [&aName](const char *aKnown) { return aName == QLatin1String(aKnown); });
}

bool IsMACAddressName(const QString &aName)
{
    return aName == QLatin1String("GevMACAddress");
}

QString CleanDescription(const QString &aDescription)
{
    const qsizetype blank = aDescription.indexOf(QLatin1Char(' '));
    const bool hasLocation = aDescription.indexOf(SourceMarker) > 0;
    if (hasLocation && blank >= 0 && blank + 1 < aDescription.size()) {
        return aDescription.mid(blank + 1);
    }
    return aDescription;
}

QString FailureText(const LxResult &aResult)
{
    const QString text = CleanDescription(ToQString(aResult.GetDescription()));
    return text.isEmpty() ? ToQString(aResult.GetCodeString()) : text;
}

QString FailureText(const QString &aStage, const LxResult &aResult)
{
    return aStage + QLatin1String(": ") + FailureText(aResult);
}

QString FormatMACAddress(int64_t aValue)
{
    QString text;
    for (int byte = 5; byte >= 0; --byte) {
        text += QStringLiteral("%1").arg((aValue >> (8 * byte)) & 0xFF, 2, 16, QLatin1Char('0'));
        if (byte > 0) {
            text += QLatin1Char(':');
        }
    }
    return text.toUpper();
}

QString FormatIPAddress(int64_t aValue)
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg((aValue >> 24) & 0xFF)
        .arg((aValue >> 16) & 0xFF)
        .arg((aValue >> 8) & 0xFF)
        .arg(aValue & 0xFF);
}

bool ParseIPAddress(const QString &aText, int64_t &aValue)
{
    // long long, so that a number that is far too big ends up too big and not anywhere
    std::array<long long, 4> parts = {};
    if (std::sscanf(aText.toUtf8().constData(), "%lli.%lli.%lli.%lli", &parts[0], &parts[1], &parts[2], &parts[3]) != 4)
    {
        return false;
    }
    int64_t value = 0;
    for (const long long part : parts) {
        if (part < 0 || part > 255) {
            return false;
        }
        value = (value << 8) | part;
    }
    aValue = value;
    return true;
}

QString FormatInteger(int64_t aValue, int aRepresentation, const QString &aUnit)
{
    const qlonglong value = aValue;
    const QString number = aRepresentation == LxGenRepresentationHexNumber
                               ? QLatin1String("0x") + QString::number(value, 16)
                               : QString::number(value);
    return number + QLatin1Char(' ') + aUnit;
}

QString FormatFloat(double aValue)
{
    return QLocale().toString(aValue, 'g', 6);
}

QString IntegerRangeText(int64_t aMin, int64_t aMax, int aRepresentation)
{
    if (IsWholeRange<int64_t>(aMin, aMax)) {
        return RangeText(int64_t());
    }
    if (IsWholeRange<int32_t>(aMin, aMax)) {
        return RangeText(int32_t());
    }
    if (IsWholeRange<uint32_t>(aMin, aMax)) {
        return RangeText(uint32_t());
    }
    if (IsWholeRange<int16_t>(aMin, aMax)) {
        return RangeText(int16_t());
    }
    if (IsWholeRange<uint16_t>(aMin, aMax)) {
        return RangeText(uint16_t());
    }
    const int base = aRepresentation == LxGenRepresentationHexNumber ? 16 : 10;
    return QStringLiteral("Min: <b>%1</b> Max: <b>%2</b>")
        .arg(QString::number(qlonglong(aMin), base), QString::number(qlonglong(aMax), base));
}
