#include "LxPersistence/ConfigurationText.h"

#include <array>
#include <cstdint>

namespace LxDetail
{
namespace
{

constexpr std::string_view Base64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

bool IsPlainXMLText(std::string_view aText)
{
    for (size_t i = 0; i < aText.size();) {
        const auto first = static_cast<unsigned char>(aText[i]);
        if (first < 0x80) {
            if (first < 0x20 && first != '\t' && first != '\n') {
                return false;
            }
            ++i;
            continue;
        }
        const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
        if (first < 0xC2 || first > 0xF4 || i + length > aText.size()) {
            return false;
        }
        uint32_t character = first & (0xFFu >> (length + 1));
        for (size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(aText[i + k]);
            if ((next & 0xC0) != 0x80) {
                return false;
            }
            character = character << 6 | (next & 0x3F);
        }
        constexpr std::array<uint32_t, 5> smallest = {0, 0, 0x80, 0x800, 0x10000};
        if (character < smallest[length] || character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF) ||
            character == 0xFFFE || character == 0xFFFF)
        {
            return false;
        }
        i += length;
    }
    return true;
}

std::string EncodeBase64(std::string_view aBytes)
{
    std::string text;
    text.reserve((aBytes.size() + 2) / 3 * 4);
    for (size_t i = 0; i < aBytes.size(); i += 3) {
        const size_t count = std::min<size_t>(3, aBytes.size() - i);
        uint32_t bits = 0;
        for (size_t k = 0; k < 3; ++k) {
            bits = bits << 8 | (k < count ? static_cast<unsigned char>(aBytes[i + k]) : 0u);
        }
        for (size_t k = 0; k < 4; ++k) {
            text += k <= count ? Base64Digits[bits >> (18 - 6 * k) & 0x3F] : '=';
        }
    }
    return text;
}

std::optional<std::string> DecodeBase64(std::string_view aText)
{
    if (aText.size() % 4 != 0) {
        return std::nullopt;
    }
    std::string bytes;
    for (size_t i = 0; i < aText.size(); i += 4) {
        size_t count = 4;
        while (count > 2 && i + 4 == aText.size() && aText[i + count - 1] == '=') {
            --count;
        }
        uint32_t bits = 0;
        for (size_t k = 0; k < 4; ++k) {
            const size_t digit = k < count ? Base64Digits.find(aText[i + k]) : 0;
            if (digit == std::string_view::npos) {
                return std::nullopt;
            }
            bits = bits << 6 | static_cast<uint32_t>(digit);
        }
        for (size_t k = 0; k + 1 < count; ++k) {
            bytes += static_cast<char>(bits >> (16 - 8 * k) & 0xFF);
        }
    }
    return bytes;
}

}  // namespace LxDetail
