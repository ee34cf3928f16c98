#include "YrUtilsLib/IpAddress.h"

namespace YrUtilsLib::Network
{

RkUtilsLib::Result IpAddress::Set(const char *aText)
{
    mValue = 0;
    if (!aText) {
        return RkUtilsLib::Result(false);
    }
    uint32_t value = 0;
    for (int part = 0; part < 4; ++part) {
        if (part > 0 && *aText++ != '.') {
            return RkUtilsLib::Result(false);
        }
        uint32_t octet = 0;
        int digits = 0;
        for (; *aText >= '0' && *aText <= '9' && digits < 4; ++aText, ++digits) {
            octet = octet * 10 + static_cast<uint32_t>(*aText - '0');
        }
        if (digits == 0 || digits > 3 || octet > 255) {
            return RkUtilsLib::Result(false);
        }
        value = value << 8 | octet;
    }
    if (*aText != '\0') {
        return RkUtilsLib::Result(false);
    }
    mValue = value;
    return RkUtilsLib::Result(true);
}

std::string IpAddress::ToString() const
{
    return std::to_string(mValue >> 24) + '.' + std::to_string(mValue >> 16 & 0xFF) + '.' +
           std::to_string(mValue >> 8 & 0xFF) + '.' + std::to_string(mValue & 0xFF);
}

}  // namespace YrUtilsLib::Network
