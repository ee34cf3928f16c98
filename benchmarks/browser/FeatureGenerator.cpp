#include "FeatureGenerator.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>

namespace
{

constexpr int FeaturesPerCategory = 50;
constexpr uint64_t FirstRegister = 0x1000;
constexpr uint64_t RegisterDistance = 16;

std::string Node(const std::string &aKind, const std::string &aName, const std::string &aContent)
{
    return "<" + aKind + " Name=\"" + aName + "\">" + aContent + "</" + aKind + ">\n";
}

std::string Texts(const std::string &aName)
{
    return "<ToolTip>What " + aName + " is for, in a line.</ToolTip><Description>A longer explanation of " + aName +
           ", of the kind that cameras bring with them for each of their features.</Description><DisplayName>The " +
           aName + "</DisplayName><Visibility>Beginner</Visibility>";
}

std::string Register(const std::string &aKind, const std::string &aName, uint64_t aAddress, int aLength)
{
    char place[128];
    std::snprintf(place, sizeof(place), "<Address>0x%llX</Address><Length>%d</Length>",
                  static_cast<unsigned long long>(aAddress), aLength);
    std::string content = std::string(place) + "<AccessMode>RW</AccessMode><pPort>Device</pPort>";
    if (aKind == "IntReg") {
        content += "<Sign>Unsigned</Sign>";
    }
    return Node(aKind, aName, content + "<Endianess>BigEndian</Endianess>");
}

enum class Kind
{
    Integer,
    Float,
    Enumeration,
    Boolean,
};

Kind KindOf(int aNumber)
{
    constexpr Kind kinds[] = {Kind::Integer, Kind::Integer, Kind::Float, Kind::Enumeration, Kind::Boolean};
    return kinds[aNumber % 5];
}

/// The nodes of a feature; its kind depends on its number.
std::string Feature(int aNumber)
{
    const std::string name = "Feature" + std::to_string(aNumber);
    const std::string target = "<pValue>" + name + "Reg</pValue>";
    const uint64_t address = FirstRegister + static_cast<uint64_t>(aNumber) * RegisterDistance;
    const std::string integer = Register("IntReg", name + "Reg", address, 4);
    switch (KindOf(aNumber)) {
        case Kind::Integer:
            return integer + Node("Integer", name,
                                  Texts(name) + target + "<Min>0</Min><Max>65535</Max><Inc>1</Inc><Unit>px</Unit>");
        case Kind::Float:
            return Register("FloatReg", name + "Reg", address, 4) +
                   Node("Float", name, Texts(name) + target + "<Min>0</Min><Max>1000</Max><Unit>us</Unit>");
        case Kind::Enumeration: {
            std::string entries;
            for (const char *entry : {"Off", "Once", "Continuous"}) {
                entries += "<EnumEntry Name=\"" + std::string(entry) + "\"><Value>" +
                           (entry[1] == 'f'   ? "0"
                            : entry[1] == 'n' ? "1"
                                              : "2") +
                           "</Value></EnumEntry>";
            }
            return integer + Node("Enumeration", name, Texts(name) + entries + target);
        }
        case Kind::Boolean:
            return integer + Node("Boolean", name, Texts(name) + target);
    }
    return std::string();
}

std::string MakeXML(int aFeatures)
{
    std::string root;
    std::string nodes;
    for (int first = 0; first < aFeatures; first += FeaturesPerCategory) {
        const std::string category = "Category" + std::to_string(first / FeaturesPerCategory);
        root += "<pFeature>" + category + "</pFeature>";
        std::string members;
        for (int i = first; i < std::min(first + FeaturesPerCategory, aFeatures); ++i) {
            members += "<pFeature>Feature" + std::to_string(i) + "</pFeature>";
            nodes += Feature(i);
        }
        nodes += Node("Category", category, members);
    }
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
           "<RegisterDescription ModelName=\"Generated\" VendorName=\"LxGUI\" StandardNameSpace=\"None\" "
           "SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\" MajorVersion=\"1\" "
           "MinorVersion=\"0\" SubMinorVersion=\"0\" ProductGuid=\"1F3C6A72-7842-4EDD-9130-E2E90A2058BA\" "
           "VersionGuid=\"7645D2A1-A41E-4AC6-B486-1531FB7BECE6\" "
           "xmlns=\"http://www.genicam.org/GenApi/Version_1_1\">\n" +
           Node("Category", "Root", root) + nodes + Node("Port", "Device", "") + "</RegisterDescription>\n";
}

}  // namespace

GeneratedCamera::GeneratedCamera(int aFeatures) : mFeatures(aFeatures)
{
    mMemory->Map(FirstRegister, static_cast<uint64_t>(aFeatures) * RegisterDistance);
    const LxResult result = LxDetail::NodeMap::Create(mPort, MakeXML(aFeatures), mNodeMap);
    if (!result.IsOK()) {
        throw std::runtime_error(result.GetDescription().GetAscii());
    }
}

void GeneratedCamera::SetValues(uint32_t aNumber) const
{
    for (int i = 0; i < mFeatures; ++i) {
        uint32_t value = aNumber % 1000;
        switch (KindOf(i)) {
            case Kind::Float:
                value = std::bit_cast<uint32_t>(static_cast<float>(value));
                break;
            case Kind::Enumeration:
                value %= 3;
                break;
            case Kind::Boolean:
                value %= 2;
                break;
            case Kind::Integer:
                break;
        }
        mMemory->Poke32(FirstRegister + static_cast<uint64_t>(i) * RegisterDistance, value);
    }
}
