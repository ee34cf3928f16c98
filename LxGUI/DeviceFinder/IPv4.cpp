#include "LxGUI/DeviceFinder/IPv4.h"

#include "YrUtilsLib/IpAddress.h"

namespace IPv4
{

std::optional<uint32_t> Parse(const QString &aText)
{
    YrUtilsLib::Network::IpAddress address;
    if (!address.Set(aText.toLocal8Bit().constData()).IsOK()) {
        return std::nullopt;
    }
    return address.Get();
}

uint32_t ToNumber(const QString &aText)
{
    return Parse(aText).value_or(0);
}

QString ToText(uint32_t aAddress)
{
    return QString::fromStdString(YrUtilsLib::Network::IpAddress(aAddress).ToString());
}

QString GetSuggestedPrefix(uint32_t aNetwork)
{
    QString text = ToText(aNetwork);
    for (int octet = 3; octet >= 0 && GetOctet(aNetwork, octet) == 0; --octet) {
        // The dot before the last octet stays; that before an earlier one goes instead of the one behind it.
        text.chop(octet == 3 ? 1 : 2);
    }
    return text;
}

}  // namespace IPv4
