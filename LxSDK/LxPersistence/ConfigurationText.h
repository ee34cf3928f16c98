#pragma once

// Internal: the XML names of a configuration, and texts that XML cannot carry as they are.

#include <optional>
#include <string>
#include <string_view>

namespace LxDetail
{

inline constexpr const char *ConfigurationRootName = "LxConfiguration";
inline constexpr const char *ConfigurationListName = "PropertyList";
inline constexpr const char *ConfigurationPropertyName = "Property";
inline constexpr unsigned ConfigurationVersion = 1;

/// Whether a text comes back unchanged from an XML 1.0 attribute or element: valid UTF-8 of characters that XML allows,
/// without carriage returns (which XML turns into line feeds).
bool IsPlainXMLText(std::string_view aText);
/// Base64 (RFC 4648) with padding.
std::string EncodeBase64(std::string_view aBytes);
/// Nothing when the text is no base64.
std::optional<std::string> DecodeBase64(std::string_view aText);

}  // namespace LxDetail
