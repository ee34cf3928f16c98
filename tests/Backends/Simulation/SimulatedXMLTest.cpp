// The XML of the simulated camera against its registers.

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <map>
#include <pugixml.hpp>
#include <set>
#include <sstream>

#include "Backends/Simulation/SimulatedCamera.h"
#include "Backends/Simulation/SimulatedRegisters.h"
#include "Backends/Simulation/SimulatedXML.h"

using namespace LxDetail;

namespace
{

class SimulatedXMLTest : public testing::Test
{
protected:
    SimulatedXMLTest()
    {
        EXPECT_TRUE(mDocument.load_string(mCamera.GetXML().c_str()));
        Collect(mDocument.document_element());
    }

    void Collect(const pugi::xml_node &aParent)
    {
        for (const pugi::xml_node &node : aParent.children()) {
            if (std::string(node.name()) == "Group") {
                Collect(node);
                continue;
            }
            const std::string name = node.attribute("Name").value();
            EXPECT_TRUE(mNodes.emplace(name, node).second) << name << " is there twice";
        }
    }

    static bool IsRegister(const pugi::xml_node &aNode) { return aNode.child("pPort"); }

    std::vector<std::string> GetFeatures() const
    {
        std::vector<std::string> features;
        for (const auto &[name, node] : mNodes) {
            if (std::string(node.name()) == "Category") {
                for (const pugi::xml_node &feature : node.children("pFeature")) {
                    if (std::string(mNodes.at(feature.child_value()).name()) != "Category") {
                        features.push_back(feature.child_value());
                    }
                }
            }
        }
        return features;
    }

    /// The table line of the register behind a feature, or null when it is computed or a part of a register.
    const RegisterSpec *FindSpec(const pugi::xml_node &aFeature) const
    {
        const std::string target = aFeature.child_value("pValue");
        for (const RegisterSpec &spec : GetSimulatedRegisters()) {
            if (target == std::string(spec.mName) + "Reg") {
                return &spec;
            }
        }
        return nullptr;
    }

    static std::vector<uint8_t> Encode(const RegisterSpec &aSpec, double aValue)
    {
        const uint64_t bits = aSpec.mKind == RegisterKind::Float
                                  ? std::bit_cast<uint64_t>(aValue)
                                  : static_cast<uint64_t>(static_cast<int64_t>(std::llround(aValue)));
        std::vector<uint8_t> bytes(aSpec.mLength);
        for (size_t i = 0; i < bytes.size(); ++i) {
            bytes[i] = static_cast<uint8_t>(bits >> (8 * (bytes.size() - 1 - i)));
        }
        return bytes;
    }

    LxResult Write(const RegisterSpec &aSpec, double aValue)
    {
        const auto bytes = Encode(aSpec, aValue);
        return mCamera.GetPort()->Write(aSpec.mAddress, bytes.data(), aSpec.mLength);
    }

    SimulatedCamera mCamera{SimulatedCameraIdentity{}};
    pugi::xml_document mDocument;
    std::map<std::string, pugi::xml_node> mNodes;
};

}  // namespace

TEST_F(SimulatedXMLTest, EveryReferenceLeadsToANode)
{
    for (const auto &[name, node] : mNodes) {
        for (const pugi::xpath_node &found : node.select_nodes(".//*")) {
            const std::string element = found.node().name();
            if (element.size() > 1 && element[0] == 'p' && std::isupper(static_cast<unsigned char>(element[1])) != 0) {
                EXPECT_EQ(mNodes.count(found.node().child_value()), 1u)
                    << name << ": " << element << ' ' << found.node().child_value();
            }
        }
    }
}

TEST_F(SimulatedXMLTest, EveryFeatureStandsInOneCategory)
{
    std::set<std::string> seen;
    for (const std::string &feature : GetFeatures()) {
        EXPECT_TRUE(seen.insert(feature).second) << feature;
    }
    EXPECT_GE(seen.size(), 110u);
    EXPECT_EQ(seen.count("TLParamsLocked"), 1u);
}

TEST_F(SimulatedXMLTest, EveryKindVisibilityAndRepresentationIsThere)
{
    std::set<std::string> kinds;
    std::set<std::string> visibilities;
    std::set<std::string> representations;
    for (const std::string &feature : GetFeatures()) {
        const pugi::xml_node &node = mNodes.at(feature);
        kinds.insert(node.name());
        visibilities.insert(node.child_value("Visibility"));
        representations.insert(node.child_value("Representation"));
    }
    for (const char *kind : {"Integer", "Float", "Boolean", "String", "Enumeration", "Command", "Register"}) {
        EXPECT_EQ(kinds.count(kind), 1u) << kind;
    }
    for (const char *visibility : {"Beginner", "Expert", "Guru", "Invisible"}) {
        EXPECT_EQ(visibilities.count(visibility), 1u) << visibility;
    }
    for (const char *representation :
         {"Linear", "Logarithmic", "Boolean", "PureNumber", "HexNumber", "IPV4Address", "MACAddress"})
    {
        EXPECT_EQ(representations.count(representation), 1u) << representation;
    }
}

TEST_F(SimulatedXMLTest, EverySortOfRuleIsThere)
{
    const auto count = [this](const std::string &aPath) {
        return mDocument.document_element().select_nodes(("//" + aPath).c_str()).size();
    };
    // selectors, also one that is selected itself, and several for one feature
    EXPECT_GE(count("Enumeration[pSelected]"), 10u);
    EXPECT_GE(count("Integer[pSelected]"), 2u);
    EXPECT_EQ(count("*[@Name='SimSelector']/pSelected[.='SimSubSelector']"), 1u);
    EXPECT_GE(count("*[@Name='SimSelector' or @Name='SimSubSelector']/pSelected[.='SimArrayValue']"), 2u);
    // what one feature does to another
    EXPECT_GE(count("*[pInvalidator]"), 10u);
    EXPECT_GE(count("*[pIsLocked]"), 10u);
    EXPECT_GE(count("*[pIsLocked='TLParamsLocked']"), 5u);
    EXPECT_GE(count("*[pIsAvailable]"), 10u);
    EXPECT_GE(count("*[pIsImplemented]"), 3u);
    EXPECT_GE(count("*[pMax]"), 4u);
    // registers of every access, features whose access is narrowed
    for (const char *access : {"RO", "WO", "RW"}) {
        EXPECT_GE(count(std::string("*[AccessMode='") + access + "']"), 5u) << access;
    }
    EXPECT_GE(count("*[ImposedAccessMode]"), 1u);
    // entries that are not shown to everybody, not to be chosen, not there
    EXPECT_GE(count("EnumEntry[Visibility='Expert']"), 1u);
    EXPECT_GE(count("EnumEntry[Visibility='Invisible']"), 1u);
    EXPECT_GE(count("EnumEntry[pIsAvailable]"), 1u);
    EXPECT_GE(count("EnumEntry[pIsImplemented]"), 1u);
    // what is computed
    for (const char *kind : {"IntSwissKnife", "Converter", "MaskedIntReg"}) {
        EXPECT_GE(count(kind), 1u) << kind;
    }
    EXPECT_GE(count("Command[PollingTime]"), 1u);
    // units as the Standard Features Naming Convention (SFNC 2.7) gives them
    const std::map<std::string, std::string> units = {{"ExposureTime", "us"},
                                                      {"TriggerDelay", "us"},
                                                      {"TimerDuration", "us"},
                                                      {"TimerDelay", "us"},
                                                      {"AcquisitionFrameRate", "Hz"},
                                                      {"AcquisitionLineRate", "Hz"},
                                                      {"Gain", "dB"},
                                                      {"DeviceTemperature", "C"},
                                                      {"DeviceLinkSpeed", "Bps"},
                                                      {"DeviceLinkHeartbeatTimeout", "us"},
                                                      {"Timestamp", "ns"},
                                                      {"TimestampLatchValue", "ns"},
                                                      {"PayloadSize", "B"},
                                                      {"GevSCPSPacketSize", "B"},
                                                      {"GevHeartbeatTimeout", "ms"},
                                                      {"GevTimestampTickFrequency", "Hz"}};
    for (const auto &[name, unit] : units) {
        ASSERT_EQ(mNodes.count(name), 1u) << name;
        EXPECT_EQ(mNodes.at(name).child_value("Unit"), unit) << name;
        EXPECT_STREQ(mNodes.at(name).attribute("NameSpace").value(), "Standard") << name;
    }
}

TEST_F(SimulatedXMLTest, EveryRegisterLiesInMappedMemoryWithItsAccess)
{
    MemoryPort &port = *mCamera.GetPort();
    int registers = 0;
    for (const auto &[name, node] : mNodes) {
        if (!IsRegister(node)) {
            continue;
        }
        ++registers;
        for (const char *element : {"Address", "Length", "AccessMode", "Cachable"}) {
            EXPECT_TRUE(node.child(element)) << name << " has no " << element;
        }
        const uint64_t address = std::stoull(node.child_value("Address"), nullptr, 0);
        const auto length = static_cast<uint32_t>(std::stoul(node.child_value("Length")));
        std::vector<uint8_t> bytes(length);
        ASSERT_TRUE(port.Peek(address, bytes.data(), length)) << name;
        const std::string access = node.child_value("AccessMode");
        const bool failing = name.find("Failing") != std::string::npos;
        if (!failing) {
            EXPECT_EQ(port.Read(address, bytes.data(), length).IsOK(), access != "WO") << name;
        }
        if (access == "RO") {
            // Part of a register that is writable, or one that is not.
            const bool part = std::string(node.name()) == "MaskedIntReg";
            EXPECT_TRUE(part || port.Write(address, bytes.data(), length) == LxResultCode::WriteProtected) << name;
        }
        else if (!failing && name != "UserSetSaveReg") {
            EXPECT_TRUE(port.Write(address, bytes.data(), length).IsOK()) << name;
        }
    }
    EXPECT_GT(registers, 150);
}

TEST_F(SimulatedXMLTest, EveryElementOfAnArrayIsMapped)
{
    MemoryPort &port = *mCamera.GetPort();
    for (const auto &[name, node] : mNodes) {
        const uint64_t address =
            std::stoull("0" + std::string(node.child_value("Address"))
                                  .substr(std::string(node.child_value("Address")).empty() ? 0 : 1),
                        nullptr, 0);
        uint64_t last = address;
        for (const pugi::xml_node &index : node.children("pIndex")) {
            // The largest value of the selector whose register is the index.
            const std::string selectorRegister = index.child_value();
            uint64_t largest = 0;
            for (const auto &[selectorName, selector] : mNodes) {
                if (selector.child_value("pValue") == selectorRegister && !IsRegister(selector)) {
                    for (const pugi::xml_node &entry : selector.children("EnumEntry")) {
                        largest = std::max<uint64_t>(largest, std::stoull(entry.child_value("Value")));
                    }
                    if (selector.child("Max")) {
                        largest = std::stoull(selector.child_value("Max"));
                    }
                }
            }
            EXPECT_GT(largest + (selectorRegister == "LUTSelectorReg" ? 1 : 0), 0u) << name;
            last += largest * index.attribute("Offset").as_ullong();
        }
        if (last != address) {
            uint8_t bytes[64];
            const auto length = static_cast<uint32_t>(std::stoul(node.child_value("Length")));
            EXPECT_TRUE(port.Peek(last, bytes, length)) << name;
        }
    }
}

TEST_F(SimulatedXMLTest, ConstantLimitsAreThoseOfTheDevice)
{
    int limits = 0;
    for (const std::string &feature : GetFeatures()) {
        const pugi::xml_node &node = mNodes.at(feature);
        const RegisterSpec *spec = FindSpec(node);
        if (spec == nullptr || spec->mAccess == RegisterAccess::RO || feature == "SimSwitched" ||
            feature.find("Failing") != std::string::npos || feature.find("Decimation") == 0)
        {
            continue;
        }
        const double increment = node.child("Inc") ? std::stod(node.child_value("Inc")) : 0.0;
        const double step = spec->mKind == RegisterKind::Float ? 0.01 : std::max(increment, 1.0);
        if (node.child("Min")) {
            const double min = std::stod(node.child_value("Min"));
            EXPECT_TRUE(Write(*spec, min).IsOK()) << feature;
            EXPECT_EQ(Write(*spec, min - step), LxResultCode::InvalidParameter) << feature;
            ++limits;
        }
        if (node.child("Max")) {
            const double max = std::stod(node.child_value("Max"));
            EXPECT_TRUE(Write(*spec, max).IsOK()) << feature;
            if (max < 4294967295.0 || spec->mLength == 8) {
                EXPECT_EQ(Write(*spec, max + step), LxResultCode::InvalidParameter) << feature;
            }
            ++limits;
        }
        if (node.child("Min") && node.child("Max")) {
            EXPECT_LE(std::stod(node.child_value("Min")), std::stod(node.child_value("Max"))) << feature;
        }
    }
    EXPECT_GT(limits, 30);
}

TEST_F(SimulatedXMLTest, EveryPixelFormatGivesPicturesOfItsSize)
{
    ASSERT_TRUE(Write(*FindSpec(mNodes.at("Width")), 256).IsOK());
    ASSERT_TRUE(Write(*FindSpec(mNodes.at("Height")), 128).IsOK());
    for (const pugi::xml_node &entry : mNodes.at("PixelFormat").children("EnumEntry")) {
        const std::string name = entry.attribute("Name").value();
        const auto value = static_cast<uint32_t>(std::stoul(entry.child_value("Value"), nullptr, 0));
        EXPECT_EQ(LxPixelTypeFromString(name.c_str()), static_cast<LxPixelType>(value)) << name;
        ASSERT_TRUE(Write(*FindSpec(mNodes.at("PixelFormat")), value).IsOK()) << name;
        EXPECT_EQ(mCamera.GetPixelType(), static_cast<LxPixelType>(value));
        const uint64_t size = mCamera.GetPayloadSize();
        EXPECT_EQ(size, LxPixelTypeGetImageSize(static_cast<LxPixelType>(value), 256, 128)) << name;
        std::vector<uint8_t> frame(size);
        mCamera.DrawFrame(1, frame.data(), size);
        std::set<uint8_t> values(frame.begin(), frame.end());
        EXPECT_GT(values.size(), 16u) << name << " shows nothing";
        EXPECT_NE(std::count(frame.end() - 64, frame.end(), 0), 64) << name << " ends early";
    }
}

TEST_F(SimulatedXMLTest, EnumerationsHaveAnEntryForTheirValue)
{
    for (const std::string &feature : GetFeatures()) {
        const pugi::xml_node &node = mNodes.at(feature);
        const RegisterSpec *spec = FindSpec(node);
        if (std::string(node.name()) != "Enumeration" || spec == nullptr || feature == "SimInvalidEnumeration" ||
            feature.find("SerialPort") != std::string::npos)
        {
            continue;
        }
        std::set<uint32_t> values;
        for (const pugi::xml_node &entry : node.children("EnumEntry")) {
            EXPECT_TRUE(values.insert(static_cast<uint32_t>(std::stoul(entry.child_value("Value"), nullptr, 0))).second)
                << feature;
        }
        EXPECT_EQ(values.count(mCamera.GetPort()->Peek32(spec->mAddress)), 1u) << feature;
    }
}

TEST_F(SimulatedXMLTest, NoRegistersOverlap)
{
    uint64_t end = 0;
    for (const RegisterSpec &spec : GetSimulatedRegisters()) {
        EXPECT_GE(spec.mAddress, end) << spec.mName;
        EXPECT_EQ(spec.mAddress % 4, 0u) << spec.mName;
        end = spec.GetEnd();
    }
}

TEST_F(SimulatedXMLTest, NamesOfMakerAndModelBecomeIdentifiers)
{
    const std::string xml = MakeSimulatedXML("<Vendor & Sons>", "42", {}, "");
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string(xml.c_str()));
    EXPECT_STREQ(document.document_element().attribute("VendorName").value(), "VendorSons");
    EXPECT_STREQ(document.document_element().attribute("ModelName").value(), "X42");
}
