#include <cctype>
#include <set>

#include "LxCameraBridge/CameraFile.h"

namespace LxDetail
{

namespace
{

std::string Escape(const std::string &aText)
{
    std::string text;
    for (const char character : aText) {
        switch (character) {
            case '&':
                text += "&amp;";
                break;
            case '<':
                text += "&lt;";
                break;
            case '>':
                text += "&gt;";
                break;
            case '"':
                text += "&quot;";
                break;
            default:
                text += static_cast<unsigned char>(character) < 0x20 ? ' ' : character;
        }
    }
    return text;
}

std::string Element(const char *aName, const std::string &aText)
{
    return aText.empty() ? std::string() : std::string("<") + aName + ">" + Escape(aText) + "</" + aName + ">";
}

const char *GetElementName(CameraFileKind aKind)
{
    switch (aKind) {
        case CameraFileKind::Integer:
            return "Integer";
        case CameraFileKind::Float:
            return "Float";
        case CameraFileKind::Boolean:
            return "Boolean";
        case CameraFileKind::Enumeration:
            return "Enumeration";
        case CameraFileKind::Command:
            return "Command";
        case CameraFileKind::String:
            break;
    }
    return "StringReg";
}

/// Where the feature is, and whether it can be read and written.
std::string MakeLocation(const CameraFile &aFile, size_t aIndex)
{
    const CameraFileFeature &feature = aFile.mFeatures[aIndex];
    const bool text = feature.mKind == CameraFileKind::String;
    const uint64_t address = aFile.mIsGenCP ? feature.mAddress : GetTextFeatureAddress(aIndex);
    const uint32_t length = aFile.mIsGenCP ? feature.mLength : text ? TextStringLength : TextNumberLength;
    const bool readable = aFile.mIsGenCP || !feature.mRead.empty();
    const bool writable = aFile.mIsGenCP ? feature.mWritable : !feature.mWrite.empty();
    const char *access = readable ? writable ? "RW" : "RO" : "WO";
    return Element("Address", std::to_string(address)) + Element("Length", std::to_string(length)) +
           Element("AccessMode", access) + Element("pPort", "Device");
}

std::string MakeRegister(const CameraFile &aFile, size_t aIndex)
{
    const CameraFileFeature &feature = aFile.mFeatures[aIndex];
    const bool real = feature.mKind == CameraFileKind::Float;
    const std::string kind = real ? "FloatReg" : "IntReg";
    const std::string sign = real                                                          ? ""
                             : feature.mKind == CameraFileKind::Integer && !aFile.mIsGenCP ? "Signed"
                                                                                           : "Unsigned";
    return "<" + kind + " Name=\"" + feature.mName + "_Reg\">" + MakeLocation(aFile, aIndex) + Element("Sign", sign) +
           Element("Endianess", "BigEndian") + "</" + kind + ">\n";
}

std::string MakeEntries(const CameraFile &aFile, const CameraFileFeature &aFeature)
{
    std::string xml;
    for (size_t i = 0; i < aFeature.mEntries.size(); ++i) {
        xml += "<EnumEntry Name=\"" + aFeature.mEntries[i].first + "\">" +
               Element("Value", aFile.mIsGenCP ? aFeature.mEntries[i].second : std::to_string(i)) + "</EnumEntry>";
    }
    return xml;
}

std::string MakeFeature(const CameraFile &aFile, size_t aIndex)
{
    const CameraFileFeature &feature = aFile.mFeatures[aIndex];
    const std::string element = GetElementName(feature.mKind);
    std::string xml = "<" + element + " Name=\"" + feature.mName + "\">" + Element("ToolTip", feature.mToolTip) +
                      Element("DisplayName", feature.mDisplayName) + Element("Visibility", feature.mVisibility);
    if (feature.mKind == CameraFileKind::String) {
        return xml + MakeLocation(aFile, aIndex) + "</" + element + ">\n";
    }
    xml += MakeEntries(aFile, feature) + Element("pValue", feature.mName + "_Reg");
    switch (feature.mKind) {
        case CameraFileKind::Integer:
            xml += Element("Min", feature.mMin) + Element("Max", feature.mMax) + Element("Inc", feature.mIncrement) +
                   Element("Unit", feature.mUnit);
            break;
        case CameraFileKind::Float:
            xml += Element("Min", feature.mMin) + Element("Max", feature.mMax) + Element("Unit", feature.mUnit);
            break;
        case CameraFileKind::Boolean:
            xml += Element("OnValue", "1") + Element("OffValue", "0");
            break;
        case CameraFileKind::Command:
            xml += Element("CommandValue", "1");
            break;
        default:
            break;
    }
    return xml + "</" + element + ">\n" + MakeRegister(aFile, aIndex);
}

std::string MakeIdentifier(const std::string &aText)
{
    std::string text;
    for (const char character : aText) {
        const auto byte = static_cast<unsigned char>(character);
        text += byte < 0x80 && std::isalnum(byte) != 0 ? character : '_';
    }
    return text;
}

}  // namespace

uint64_t GetTextFeatureAddress(size_t aIndex)
{
    return (aIndex + 1) * uint64_t{TextStringLength};
}

std::string MakeCameraFileXML(const CameraFile &aFile)
{
    std::string root;
    std::string categories;
    std::string features;
    std::set<std::string> seen;
    for (size_t i = 0; i < aFile.mFeatures.size(); ++i) {
        features += MakeFeature(aFile, i);
        const std::string &category = aFile.mFeatures[i].mCategory;
        if (!seen.insert(category).second) {
            continue;
        }
        root += Element("pFeature", category);
        categories += "<Category Name=\"" + category + "\">";
        for (const CameraFileFeature &feature : aFile.mFeatures) {
            if (feature.mCategory == category) {
                categories += Element("pFeature", feature.mName);
            }
        }
        categories += "</Category>\n";
    }
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<RegisterDescription ModelName=\"" +
           MakeIdentifier(aFile.mModel) + "\" VendorName=\"" + MakeIdentifier(aFile.mVendor) +
           "\" StandardNameSpace=\"None\" SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\""
           " SchemaSubMinorVersion=\"0\" MajorVersion=\"1\" MinorVersion=\"0\" SubMinorVersion=\"0\""
           " ProductGuid=\"1f6d3c1e-52c3-4b8e-9a0e-0c1d2a4f7b33\""
           " VersionGuid=\"d5a7c9d4-8e1f-4f25-8d5e-3f6a7b8c9d04\""
           " xmlns=\"http://www.genicam.org/GenApi/Version_1_1\">\n<Category Name=\"Root\">" +
           root + "</Category>\n" + categories + "<Port Name=\"Device\"/>\n" + features + "</RegisterDescription>\n";
}

}  // namespace LxDetail
