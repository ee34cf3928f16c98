#include "Parse.h"

#include <charconv>
#include <sstream>

#include "YrUtilsLib/IpAddress.h"

namespace LxEmulator
{

std::optional<uint64_t> ParseNumber(const std::string &aText, uint64_t aMax)
{
    const bool hexadecimal = aText.starts_with("0x") || aText.starts_with("0X");
    const char *begin = aText.data() + (hexadecimal ? 2 : 0);
    const char *end = aText.data() + aText.size();
    uint64_t value = 0;
    const auto [rest, error] = std::from_chars(begin, end, value, hexadecimal ? 16 : 10);
    if (error != std::errc() || rest != end || value > aMax) {
        return std::nullopt;
    }
    return value;
}

std::optional<uint32_t> ParseAddress(const std::string &aText)
{
    YrUtilsLib::Network::IpAddress address;
    if (!address.Set(aText.c_str()).IsOK()) {
        return std::nullopt;
    }
    return address.Get();
}

std::optional<uint64_t> ParseMAC(const std::string &aText)
{
    constexpr size_t length = 17;
    if (aText.size() != length) {
        return std::nullopt;
    }
    uint64_t value = 0;
    for (size_t i = 0; i < length; i += 3) {
        uint8_t octet = 0;
        const auto [rest, error] = std::from_chars(aText.data() + i, aText.data() + i + 2, octet, 16);
        const bool separated = i + 2 == length || aText[i + 2] == ':' || aText[i + 2] == '-';
        if (error != std::errc() || rest != aText.data() + i + 2 || !separated) {
            return std::nullopt;
        }
        value = value << 8 | octet;
    }
    return value;
}

std::vector<std::string> SplitWords(const std::string &aLine)
{
    std::istringstream stream(aLine);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

}  // namespace LxEmulator
