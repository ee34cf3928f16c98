#include "LxPersistence/LxConfigurationReader.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <pugixml.hpp>
#include <utility>
#include <vector>

#include "LxPersistence/ConfigurationText.h"

using namespace LxDetail;

namespace
{

constexpr size_t MaxFileSize = size_t{64} << 20;

using NamedLists = std::vector<std::pair<LxString, LxPropertyList>>;

LxResult FormatError(const std::string &aReason)
{
    return LxResult(LxResultCode::InvalidDataFormat, "This is no configuration: " + aReason);
}

size_t LineOf(const std::string &aText, std::ptrdiff_t aOffset)
{
    const auto end = std::clamp<std::ptrdiff_t>(aOffset, 0, static_cast<std::ptrdiff_t>(aText.size()));
    return 1 + static_cast<size_t>(std::count(aText.begin(), aText.begin() + end, '\n'));
}

LxResult ReadProperty(const pugi::xml_node &aNode, LxPropertyList &aList)
{
    const pugi::xml_attribute name = aNode.attribute("name");
    const pugi::xml_attribute value = aNode.attribute("value");
    if (!name || !value) {
        return FormatError("a property lacks its name or its value.");
    }
    const std::string encoding = aNode.attribute("encoding").value();
    if (encoding.empty()) {
        aList.Add(LxProperty(name.value(), LxString(value.value())));
        return LxResult();
    }
    const auto plainName = DecodeBase64(name.value());
    const auto plainValue = DecodeBase64(value.value());
    if (encoding != "base64" || !plainName || !plainValue) {
        return FormatError("the encoding of a property cannot be read.");
    }
    aList.Add(LxProperty(LxString(*plainName), LxString(*plainValue)));
    return LxResult();
}

LxResult Parse(const std::string &aText, NamedLists &aLists)
{
    pugi::xml_document document;
    // attribute values are taken as they are written, without the normalisation of line breaks to blanks
    const auto options = pugi::parse_default & ~pugi::parse_wconv_attribute;
    const pugi::xml_parse_result parsed =
        document.load_buffer(aText.data(), aText.size(), options, pugi::encoding_utf8);
    if (!parsed) {
        return FormatError(std::string(parsed.description()) + " in line " +
                           std::to_string(LineOf(aText, parsed.offset)) + ".");
    }
    const pugi::xml_node root = document.document_element();
    if (std::strcmp(root.name(), ConfigurationRootName) != 0) {
        return FormatError(std::string("its root element is \"") + root.name() + "\".");
    }
    if (root.attribute("version").as_uint() != ConfigurationVersion) {
        return FormatError(std::string("version \"") + root.attribute("version").value() + "\" is not known.");
    }
    for (const pugi::xml_node &listNode : root.children(ConfigurationListName)) {
        const LxString name = listNode.attribute("name").value();
        if (name.IsEmpty()) {
            return FormatError("a property list has no name.");
        }
        LxPropertyList list;
        for (const pugi::xml_node &propertyNode : listNode.children(ConfigurationPropertyName)) {
            const LxResult result = ReadProperty(propertyNode, list);
            if (!result.IsOK()) {
                return result;
            }
        }
        aLists.emplace_back(name, list);
    }
    return LxResult();
}

}  // namespace

class LX_NO_EXPORT LxConfigurationReader::Data
{
public:
    NamedLists mLists;
};

LxConfigurationReader::LxConfigurationReader() : mData(std::make_unique<Data>()) {}

LxConfigurationReader::~LxConfigurationReader() = default;

LxResult LxConfigurationReader::Load(const LxString &aPath)
{
    const std::unique_ptr<FILE, int (*)(FILE *)> file(std::fopen(aPath.GetAscii(), "rbe"), &std::fclose);
    const std::string named = " \"" + aPath.GetString() + "\"";
    if (!file) {
        return LxResult(LxResultCode::FileError, "Cannot open" + named + ": " + std::strerror(errno));
    }
    std::string text;
    char part[65536];
    size_t count = 0;
    while ((count = std::fread(part, 1, sizeof(part), file.get())) > 0) {
        text.append(part, count);
        if (text.size() > MaxFileSize) {
            return LxResult(LxResultCode::FileError, "The file" + named + " is too large for a configuration.");
        }
    }
    if (std::ferror(file.get())) {
        return LxResult(LxResultCode::FileError, "Cannot read" + named + ": " + std::strerror(errno));
    }
    return LoadFromString(LxString(std::move(text)));
}

LxResult LxConfigurationReader::LoadFromString(const LxString &aText)
{
    NamedLists lists;
    LxResult result = Parse(aText.GetString(), lists);
    if (result.IsOK()) {
        mData->mLists = std::move(lists);
    }
    return result;
}

LxResult LxConfigurationReader::Restore(const LxString &aName, LxPropertyList *aList) const
{
    if (!aList) {
        return LxResult(LxResultCode::InvalidArgument, "A property list is needed to restore into.");
    }
    for (const auto &[name, list] : mData->mLists) {
        if (name == aName) {
            *aList = list;
            return LxResult();
        }
    }
    return LxResult(LxResultCode::NotFound, "The configuration has no list named \"" + aName.GetString() + "\".");
}

LxStringList LxConfigurationReader::GetNames() const
{
    LxStringList names;
    for (const auto &entry : mData->mLists) {
        names.Add(entry.first);
    }
    return names;
}
