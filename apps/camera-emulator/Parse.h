#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace LxEmulator
{

/// A number, decimal or hexadecimal behind "0x", up to a largest value. Nothing for any other text.
std::optional<uint64_t> ParseNumber(const std::string &aText, uint64_t aMax = UINT64_MAX);
/// An IPv4 address as four decimal octets, first octet most significant.
std::optional<uint32_t> ParseAddress(const std::string &aText);
/// Six hexadecimal octets with ':' or '-' between them, first octet most significant.
std::optional<uint64_t> ParseMAC(const std::string &aText);
/// The words of a line; blanks and tabs separate.
std::vector<std::string> SplitWords(const std::string &aLine);

}  // namespace LxEmulator
