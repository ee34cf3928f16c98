#include "LxCameraBridge/CameraFile.h"

#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <set>

namespace LxDetail
{

namespace
{

constexpr size_t LargestFile = 1 << 20;
constexpr size_t MostFeatures = 1000;
constexpr int FormatVersion = 1;

/// What is wrong with a file, and where.
struct Problem
{
    int mLine;  // from 0 on; negative: unknown
    std::string mText;
};

[[noreturn]] void Fail(const YAML::Node &aNode, const std::string &aText)
{
    throw Problem{aNode.Mark().line, aText};
}

/// A mapping of the file: knows its keys, so that misspelled ones are found.
class Mapping
{
public:
    Mapping(const YAML::Node &aNode, const std::string &aWhat, std::initializer_list<const char *> aKeys)
        : mNode(aNode), mWhat(aWhat)
    {
        if (!aNode.IsMap()) {
            Fail(aNode, aWhat + " must have keys and values.");
        }
        std::set<std::string> seen;
        for (const auto &item : aNode) {
            if (!item.first.IsScalar()) {
                Fail(item.first, aWhat + " has a key that is no text.");
            }
            const std::string key = item.first.Scalar();
            if (std::find(aKeys.begin(), aKeys.end(), key) == aKeys.end()) {
                Fail(item.first, "\"" + key + "\" is not known in " + aWhat + ".");
            }
            if (!seen.insert(key).second) {
                Fail(item.first, "\"" + key + "\" is there twice.");
            }
        }
    }

    YAML::Node Find(const char *aKey) const { return mNode[aKey]; }
    bool Has(const char *aKey) const { return mNode[aKey].IsDefined(); }
    YAML::Node Need(const char *aKey) const
    {
        const YAML::Node node = mNode[aKey];
        if (!node.IsDefined()) {
            Fail(mNode, mWhat + " lacks \"" + aKey + "\".");
        }
        return node;
    }
    std::string Text(const char *aKey, const std::string &aDefault = "") const
    {
        const YAML::Node node = mNode[aKey];
        if (!node.IsDefined()) {
            return aDefault;
        }
        if (!node.IsScalar()) {
            Fail(node, std::string("\"") + aKey + "\" must be a text.");
        }
        return node.Scalar();
    }
    template <class Number>
    Number Integer(const char *aKey, Number aDefault, Number aMin, Number aMax) const
    {
        if (!Has(aKey)) {
            return aDefault;
        }
        const std::string text = Text(aKey);
        const bool hex = text.starts_with("0x");
        const char *begin = text.data() + (hex ? 2 : 0);
        const char *end = text.data() + text.size();
        Number number = 0;
        const auto [stop, error] = std::from_chars(begin, end, number, hex ? 16 : 10);
        if (error != std::errc() || stop != end || number < aMin || number > aMax) {
            Fail(mNode[aKey], std::string("\"") + aKey + "\" must be a whole number of " + std::to_string(aMin) +
                                  " to " + std::to_string(aMax) + ".");
        }
        return number;
    }
    /// A number as the file has it, or the empty text.
    std::string NumberText(const char *aKey, bool aWhole) const
    {
        const std::string text = Text(aKey);
        double real = 0;
        int64_t whole = 0;
        const char *end = text.data() + text.size();
        const auto result = aWhole ? std::from_chars(text.data(), end, whole) : std::from_chars(text.data(), end, real);
        if (Has(aKey) && (result.ec != std::errc() || result.ptr != end || !std::isfinite(real))) {
            Fail(mNode[aKey], std::string("\"") + aKey + "\" must be a " + (aWhole ? "whole number." : "number."));
        }
        return text;
    }
    /// One of the texts.
    std::string Choice(const char *aKey, const std::string &aDefault, std::initializer_list<const char *> aTexts) const
    {
        std::string text = Text(aKey, aDefault);
        if (std::find(aTexts.begin(), aTexts.end(), text) == aTexts.end()) {
            std::string all;
            for (const char *choice : aTexts) {
                all += (all.empty() ? "" : ", ") + std::string(choice);
            }
            Fail(mNode[aKey], std::string("\"") + aKey + "\" must be one of " + all + ".");
        }
        return text;
    }

private:
    const YAML::Node mNode;
    const std::string mWhat;
};

bool IsIdentifier(const std::string &aText)
{
    return !aText.empty() && std::isdigit(static_cast<unsigned char>(aText[0])) == 0 &&
           std::all_of(aText.begin(), aText.end(),
                       [](unsigned char aByte) { return std::isalnum(aByte) != 0 || aByte == '_'; });
}

/// A feature or a category. Some names are those of the description that is made of the file.
std::string ReadName(const Mapping &aMapping, const char *aKey, const std::string &aDefault)
{
    std::string name = aMapping.Text(aKey, aDefault);
    if (!IsIdentifier(name) || name == "Root" || name == "Device" || name.ends_with("_Reg")) {
        Fail(aMapping.Find(aKey), std::string("\"") + aKey +
                                      "\" must be made of letters, digits and '_', not be \"Root\" or \"Device\", and "
                                      "not end in \"_Reg\".");
    }
    return name;
}

template <class Number>
Number ParseNumber(const std::string &aText)
{
    Number number = 0;
    std::from_chars(aText.data(), aText.data() + aText.size(), number);
    return number;
}

void ReadLimits(const Mapping &aMapping, CameraFileFeature &aFeature)
{
    const bool whole = aFeature.mKind != CameraFileKind::Float;
    aFeature.mMin = aMapping.NumberText("min", whole);
    aFeature.mMax = aMapping.NumberText("max", whole);
    aFeature.mIncrement = aMapping.NumberText("increment", true);
    if (!aFeature.mMin.empty() && !aFeature.mMax.empty() &&
        (whole ? ParseNumber<int64_t>(aFeature.mMin) > ParseNumber<int64_t>(aFeature.mMax)
               : ParseNumber<double>(aFeature.mMin) > ParseNumber<double>(aFeature.mMax)))
    {
        Fail(aMapping.Find("min"), "\"min\" must not be above \"max\".");
    }
    if (!aFeature.mIncrement.empty() && ParseNumber<int64_t>(aFeature.mIncrement) < 1) {
        Fail(aMapping.Find("increment"), "\"increment\" must be at least 1.");
    }
}

void ReadEntries(const Mapping &aMapping, bool aGenCP, CameraFileFeature &aFeature)
{
    const YAML::Node entries = aMapping.Need("entries");
    if (!entries.IsMap() || entries.size() == 0) {
        Fail(entries, "\"entries\" must have names and values.");
    }
    std::set<std::string> names;
    for (const auto &item : entries) {
        if (!item.first.IsScalar() || !item.second.IsScalar() || !IsIdentifier(item.first.Scalar())) {
            Fail(item.first, "An entry must have a name (letters, digits, '_') and a value.");
        }
        if (!names.insert(item.first.Scalar()).second) {
            Fail(item.first, "The entry \"" + item.first.Scalar() + "\" is there twice.");
        }
        int64_t number = 0;
        if (aGenCP && !YAML::convert<int64_t>::decode(item.second, number)) {
            Fail(item.second, "The value of the entry \"" + item.first.Scalar() + "\" must be a whole number.");
        }
        aFeature.mEntries.emplace_back(item.first.Scalar(), aGenCP ? std::to_string(number) : item.second.Scalar());
    }
}

CameraFileFeature ReadFeature(const YAML::Node &aNode, bool aGenCP)
{
    static constexpr const char *kinds[] = {"integer", "float", "boolean", "enumeration", "string", "command"};
    const Mapping mapping = aGenCP
                                ? Mapping(aNode, "a feature of a GenCP camera",
                                          {"name", "type", "category", "displayName", "toolTip", "unit", "visibility",
                                           "min", "max", "increment", "entries", "address", "length", "access"})
                                : Mapping(aNode, "a feature",
                                          {"name", "type", "category", "displayName", "toolTip", "unit", "visibility",
                                           "min", "max", "increment", "entries", "read", "write", "answer"});
    CameraFileFeature feature;
    mapping.Need("name");
    mapping.Need("type");
    feature.mName = ReadName(mapping, "name", "");
    const std::string kind = mapping.Choice("type", "", {kinds[0], kinds[1], kinds[2], kinds[3], kinds[4], kinds[5]});
    feature.mKind = static_cast<CameraFileKind>(std::find(kinds, std::end(kinds), kind) - kinds);
    feature.mCategory = ReadName(mapping, "category", feature.mCategory);
    feature.mDisplayName = mapping.Text("displayName");
    feature.mToolTip = mapping.Text("toolTip");
    feature.mUnit = mapping.Text("unit");
    feature.mVisibility =
        mapping.Choice("visibility", feature.mVisibility, {"Beginner", "Expert", "Guru", "Invisible"});
    ReadLimits(mapping, feature);
    if (feature.mKind == CameraFileKind::Enumeration) {
        ReadEntries(mapping, aGenCP, feature);
    }
    else if (mapping.Has("entries")) {
        Fail(mapping.Find("entries"), "Only an enumeration has \"entries\".");
    }
    if (aGenCP) {
        mapping.Need("address");
        feature.mAddress = mapping.Integer<uint64_t>("address", 0, 0, UINT64_MAX);
        feature.mLength = mapping.Integer<uint32_t>("length", feature.mLength, 1, 1008);
        feature.mWritable = mapping.Choice("access", "RW", {"RO", "RW"}) == "RW";
        const bool number = feature.mKind != CameraFileKind::String;
        const bool real = feature.mKind == CameraFileKind::Float;
        if (number && feature.mLength != 4 && feature.mLength != 8 && (real || feature.mLength > 2)) {
            Fail(mapping.Find("length"),
                 real ? "\"length\" of a float must be 4 or 8." : "\"length\" of a number must be 1, 2, 4 or 8.");
        }
        return feature;
    }
    feature.mRead = mapping.Text("read");
    feature.mWrite = mapping.Text("write");
    feature.mAnswer = mapping.Text("answer", feature.mAnswer);
    const bool command = feature.mKind == CameraFileKind::Command;
    if (command ? feature.mWrite.empty() : feature.mRead.empty()) {
        Fail(aNode, "The feature \"" + feature.mName + "\" lacks \"" + (command ? "write" : "read") + "\".");
    }
    if (!command && !feature.mWrite.empty() && feature.mWrite.find("{value}") == std::string::npos) {
        Fail(mapping.Find("write"), "\"write\" must have \"{value}\" where the value goes.");
    }
    if (feature.mAnswer.find("{value}") == std::string::npos) {
        Fail(mapping.Find("answer"), "\"answer\" must have \"{value}\" where the value is.");
    }
    return feature;
}

CameraFile Read(const YAML::Node &aRoot)
{
    if (!aRoot.IsMap()) {
        Fail(aRoot, "The file must begin with \"kelvraCameraFile: 1\".");
    }
    const Mapping root(aRoot, "the file", {"kelvraCameraFile", "camera", "protocol", "features"});
    root.Need("kelvraCameraFile");
    if (root.Text("kelvraCameraFile") != std::to_string(FormatVersion)) {
        Fail(root.Find("kelvraCameraFile"), "Only version 1 of the format is known.");
    }
    CameraFile file;
    if (root.Has("camera")) {
        const Mapping camera(root.Find("camera"), "\"camera\"", {"vendor", "model"});
        file.mVendor = camera.Text("vendor", file.mVendor);
        file.mModel = camera.Text("model", file.mModel);
    }
    const YAML::Node protocolNode = root.Need("protocol");
    const Mapping protocol(protocolNode, "\"protocol\"", {"type", "terminator", "acknowledge", "timeout"});
    protocol.Need("type");
    file.mIsGenCP = protocol.Choice("type", "", {"ascii", "gencp"}) == "gencp";
    file.mTerminator = protocol.Text("terminator", file.mTerminator);
    if (file.mTerminator.empty()) {
        Fail(protocol.Find("terminator"), "\"terminator\" must not be empty.");
    }
    file.mAcknowledge = protocol.Text("acknowledge", file.mAcknowledge);
    file.mTimeout = protocol.Integer<uint32_t>("timeout", file.mTimeout, 10, 60000);

    const YAML::Node features = root.Need("features");
    if (!features.IsSequence() || features.size() == 0 || features.size() > MostFeatures) {
        Fail(features, "\"features\" must be a list of 1 to " + std::to_string(MostFeatures) + " features.");
    }
    std::set<std::string> names;
    for (const auto &node : features) {
        file.mFeatures.push_back(ReadFeature(node, file.mIsGenCP));
        if (!names.insert(file.mFeatures.back().mName).second) {
            Fail(node, "There are two features \"" + file.mFeatures.back().mName + "\".");
        }
    }
    for (const CameraFileFeature &feature : file.mFeatures) {
        if (names.count(feature.mCategory) != 0) {
            Fail(features, "\"" + feature.mCategory + "\" is a feature and a category.");
        }
    }
    return file;
}

}  // namespace

LxResult ParseCameraFile(const std::string &aText, const std::string &aName, CameraFile &aFile)
{
    Problem problem{-1, ""};
    try {
        aFile = Read(YAML::Load(aText));
        return LxResult();
    }
    catch (const Problem &found) {
        problem = found;
    }
    catch (const YAML::Exception &error) {
        problem = {error.mark.line, "This is no YAML: " + error.msg + "."};
    }
    catch (const std::exception &error) {
        problem.mText = error.what();
    }
    const std::string line = problem.mLine < 0 ? "" : ":" + std::to_string(problem.mLine + 1);
    return LxResult(LxResultCode::InvalidDataFormat, aName + line + ": " + problem.mText);
}

LxResult LoadCameraFile(const std::string &aPath, CameraFile &aFile)
{
    const auto failed = [&](const std::string &aWhy) {
        return LxResult(LxResultCode::FileError, "The file \"" + aPath + "\" cannot be read: " + aWhy + ".");
    };
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(aPath, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        return failed(std::filesystem::is_directory(status) ? "it is a folder"
                                                            : "it is no file");  // a pipe would block
    }
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(aPath.c_str(), "rb"), &std::fclose);
    if (!file) {
        return failed(std::strerror(errno));
    }
    std::string text(LargestFile + 1, '\0');
    text.resize(std::fread(text.data(), 1, text.size(), file.get()));
    if (std::ferror(file.get()) != 0) {
        return failed(std::strerror(errno));
    }
    if (text.size() > LargestFile) {
        return failed("it is larger than 1 MiB");
    }
    return ParseCameraFile(text, aPath.substr(aPath.find_last_of('/') + 1), aFile);
}

}  // namespace LxDetail
