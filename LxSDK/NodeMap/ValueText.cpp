#include "NodeMap/ValueText.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cinttypes>
#include <cmath>
#include <cstdio>

#include "LxGenICam/LxGenTypes.h"
#include "YrUtilsLib/IpAddress.h"

namespace LxDetail
{

namespace
{

std::string Trim(const std::string &aText)
{
    const size_t first = aText.find_first_not_of(" \t\r\n");
    return first == std::string::npos ? "" : aText.substr(first, aText.find_last_not_of(" \t\r\n") - first + 1);
}

bool MACAddressFromText(const std::string &aText, int64_t &aValue)
{
    if (aText.size() != 17) {
        return false;
    }
    uint64_t value = 0;
    for (size_t i = 0; i < aText.size(); i += 3) {
        uint8_t byte = 0;
        const char *start = aText.data() + i;
        const auto [end, error] = std::from_chars(start, start + 2, byte, 16);
        if (error != std::errc() || end != start + 2 || (i < 15 && start[2] != ':' && start[2] != '-')) {
            return false;
        }
        value = value << 8 | byte;
    }
    aValue = static_cast<int64_t>(value);
    return true;
}

}  // namespace

std::string IntegerToText(int64_t aValue, int aRepresentation)
{
    char text[32];
    const auto value = static_cast<uint64_t>(aValue);
    if (aRepresentation == LxGenRepresentationHexNumber) {
        std::snprintf(text, sizeof(text), "0x%" PRIX64, value);
    }
    else if (aRepresentation == LxGenRepresentationIPV4Address && value <= 0xFFFFFFFFu) {
        return YrUtilsLib::Network::IpAddress(static_cast<uint32_t>(value)).ToString();
    }
    else if (aRepresentation == LxGenRepresentationMACAddress && value <= 0xFFFFFFFFFFFFu) {
        const auto byte = [value](int aIndex) { return static_cast<unsigned>(value >> (40 - 8 * aIndex) & 0xFF); };
        std::snprintf(text, sizeof(text), "%02X:%02X:%02X:%02X:%02X:%02X", byte(0), byte(1), byte(2), byte(3), byte(4),
                      byte(5));
    }
    else {
        std::snprintf(text, sizeof(text), "%" PRId64, aValue);
    }
    return text;
}

bool IntegerFromText(const std::string &aText, int64_t &aValue)
{
    const std::string text = Trim(aText);
    if (std::count(text.begin(), text.end(), '.') == 3) {
        YrUtilsLib::Network::IpAddress address;
        if (!address.Set(text.c_str()).IsOK()) {
            return false;
        }
        aValue = address.Get();
        return true;
    }
    if (MACAddressFromText(text, aValue)) {
        return true;
    }
    const char *start = text.data();
    const char *const stop = start + text.size();
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        uint64_t value = 0;
        const auto [end, error] = std::from_chars(start + 2, stop, value, 16);
        if (error != std::errc() || end != stop) {
            return false;
        }
        aValue = static_cast<int64_t>(value);
        return true;
    }
    if (start != stop && *start == '+' && start + 1 != stop && start[1] != '-') {
        ++start;
    }
    int64_t value = 0;
    const auto [end, error] = std::from_chars(start, stop, value);
    if (error != std::errc() || end != stop || text.empty()) {
        return false;
    }
    aValue = value;
    return true;
}

std::string FloatToText(double aValue)
{
    char text[64];
    const auto [end, error] = std::to_chars(text, text + sizeof(text), aValue);
    return error == std::errc() ? std::string(text, end) : std::string();
}

bool FloatFromText(const std::string &aText, double &aValue)
{
    const std::string text = Trim(aText);
    const char *start = text.data();
    const char *const stop = start + text.size();
    if (start != stop && *start == '+' && start + 1 != stop && start[1] != '-') {
        ++start;
    }
    double value = 0;
    const auto [end, error] = std::from_chars(start, stop, value);
    if (error != std::errc() || end != stop || text.empty() || !std::isfinite(value)) {
        return false;
    }
    aValue = value;
    return true;
}

std::string BooleanToText(bool aValue)
{
    return aValue ? "True" : "False";
}

bool BooleanFromText(const std::string &aText, bool &aValue)
{
    std::string text = Trim(aText);
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (text != "true" && text != "1" && text != "false" && text != "0") {
        return false;
    }
    aValue = text == "true" || text == "1";
    return true;
}

}  // namespace LxDetail
