#pragma once

#include <QtCore/QString>
#include <cstdint>
#include <optional>

/// Arithmetic on IPv4 addresses and masks; as numbers, the first octet is the most significant.
namespace IPv4
{

/// Nothing for a text that is not four decimal octets.
std::optional<uint32_t> Parse(const QString &aText);
/// The same with 0 instead of nothing.
uint32_t ToNumber(const QString &aText);
/// "a.b.c.d"
QString ToText(uint32_t aAddress);

constexpr uint32_t GetNetwork(uint32_t aAddress, uint32_t aMask)
{
    return aAddress & aMask;
}

constexpr uint32_t GetHostPart(uint32_t aAddress, uint32_t aMask)
{
    return aAddress & ~aMask;
}

constexpr bool IsSameNetwork(uint32_t aOne, uint32_t aOther, uint32_t aMask)
{
    return GetNetwork(aOne, aMask) == GetNetwork(aOther, aMask);
}

/// Octet 0 is the first one.
constexpr uint32_t GetOctet(uint32_t aAddress, int aIndex)
{
    return aAddress >> (24 - 8 * aIndex) & 0xFF;
}

/// Whether no 1 bit follows a 0 bit, from the most significant one down.
constexpr bool IsContiguous(uint32_t aMask)
{
    return (~aMask & (~aMask + 1)) == 0;
}

/// The text of a network without the octets of 0 at its end, for the user to complete: "192.168.1." for 192.168.1.0.
QString GetSuggestedPrefix(uint32_t aNetwork);

}  // namespace IPv4
