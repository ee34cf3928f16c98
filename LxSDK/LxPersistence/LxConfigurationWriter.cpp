#include "LxPersistence/LxConfigurationWriter.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <pugixml.hpp>
#include <sstream>
#include <utility>
#include <vector>

#include "LxPersistence/ConfigurationText.h"

using namespace LxDetail;

namespace
{

LxResult FileFailure(const std::string &aWhat, const std::string &aPath)
{
    return LxResult(LxResultCode::FileError, aWhat + " \"" + aPath + "\": " + std::strerror(errno));
}

void AppendProperty(pugi::xml_node &aList, const LxProperty &aProperty)
{
    pugi::xml_node node = aList.append_child(ConfigurationPropertyName);
    const std::string name = aProperty.GetName().GetString();
    const std::string value = aProperty.GetValue().GetString();
    // one mark for both texts keeps the reader simple
    if (IsPlainXMLText(name) && IsPlainXMLText(value)) {
        node.append_attribute("name") = name.c_str();
        node.append_attribute("value") = value.c_str();
    }
    else {
        node.append_attribute("encoding") = "base64";
        node.append_attribute("name") = EncodeBase64(name).c_str();
        node.append_attribute("value") = EncodeBase64(value).c_str();
    }
}

}  // namespace

class LX_NO_EXPORT LxConfigurationWriter::Data
{
public:
    std::vector<std::pair<LxString, LxPropertyList>> mLists;
};

LxConfigurationWriter::LxConfigurationWriter() : mData(std::make_unique<Data>()) {}

LxConfigurationWriter::~LxConfigurationWriter() = default;

LxResult LxConfigurationWriter::Store(const LxPropertyList *aList, const LxString &aName)
{
    if (!aList || aName.IsEmpty()) {
        return LxResult(LxResultCode::InvalidArgument, "A property list and a name are needed to store it.");
    }
    if (!IsPlainXMLText(aName.GetString())) {
        return LxResult(LxResultCode::InvalidArgument, "The name of a property list must be printable UTF-8 text.");
    }
    auto &lists = mData->mLists;
    const auto old =
        std::find_if(lists.begin(), lists.end(), [&](const auto &aEntry) { return aEntry.first == aName; });
    if (old != lists.end()) {
        old->second = *aList;
    }
    else {
        lists.emplace_back(aName, *aList);
    }
    return LxResult();
}

LxString LxConfigurationWriter::SaveToString() const
{
    pugi::xml_document document;
    pugi::xml_node root = document.append_child(ConfigurationRootName);
    root.append_attribute("version") = ConfigurationVersion;
    for (const auto &[name, list] : mData->mLists) {
        pugi::xml_node node = root.append_child(ConfigurationListName);
        node.append_attribute("name") = name.GetAscii();
        for (size_t i = 0; i < list.GetCount(); ++i) {
            AppendProperty(node, *list.GetAt(i));
        }
    }
    std::ostringstream text;
    document.save(text, "  ", pugi::format_default, pugi::encoding_utf8);
    return text.str();
}

LxResult LxConfigurationWriter::Save(const LxString &aPath) const
{
    const std::string text = SaveToString().GetString();
    const std::string &path = aPath.GetString();
    std::string temporary = path + ".XXXXXX";
    const int file = mkostemp(temporary.data(), O_CLOEXEC);
    if (file < 0) {
        return FileFailure("Cannot create a file beside", path);
    }
    size_t written = 0;
    while (written < text.size()) {
        const ssize_t count = write(file, text.data() + written, text.size() - written);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            break;
        }
        written += static_cast<size_t>(count);
    }
    // mkostemp() makes files that only the owner can read; a configuration gets the rights that any new file gets
    const mode_t mask = umask(0);
    umask(mask);
    bool complete = written == text.size() && fchmod(file, 0666 & ~mask) == 0 && fsync(file) == 0;
    LxResult result = complete ? LxResult() : FileFailure("Cannot write", path);
    if (close(file) != 0 && complete) {
        complete = false;
        result = FileFailure("Cannot write", path);
    }
    if (complete && rename(temporary.c_str(), path.c_str()) != 0) {
        complete = false;
        result = FileFailure("Cannot replace", path);
    }
    if (!complete) {
        unlink(temporary.c_str());
    }
    return result;
}
