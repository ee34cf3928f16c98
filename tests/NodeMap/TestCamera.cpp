#include "TestCamera.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <stdexcept>

std::string CameraXML(const std::string &aFeatures, const std::string &aNodes)
{
    std::string xml =
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
        "<RegisterDescription ModelName=\"Test\" VendorName=\"Test\" StandardNameSpace=\"None\" "
        "SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\" MajorVersion=\"1\" "
        "MinorVersion=\"0\" SubMinorVersion=\"0\" ProductGuid=\"1F3C6A72-7842-4EDD-9130-E2E90A2058BA\" "
        "VersionGuid=\"7645D2A1-A41E-4AC6-B486-1531FB7BECE6\" "
        "xmlns=\"http://www.genicam.org/GenApi/Version_1_1\">\n";
    std::istringstream features(aFeatures);
    std::string list;
    for (std::string name; features >> name;) {
        list += "<pFeature>" + name + "</pFeature>";
    }
    return xml + Node("Category", "Root", list) + aNodes + Node("Port", "Device") + "</RegisterDescription>\n";
}

std::string Node(const std::string &aKind, const std::string &aName, const std::string &aContent)
{
    return "<" + aKind + " Name=\"" + aName + "\">" + aContent + "</" + aKind + ">\n";
}

std::string Reg(const std::string &aName, unsigned aAddress, const std::string &aMode, const std::string &aMore)
{
    char address[16];
    std::snprintf(address, sizeof(address), "0x%X", aAddress);
    return Node("IntReg", aName,
                std::string(aMore) + "<Address>" + address + "</Address><Length>4</Length><AccessMode>" + aMode +
                    "</AccessMode><pPort>Device</pPort><Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>");
}

std::string Integer(const std::string &aName, const std::string &aTarget, const std::string &aMore)
{
    return Node("Integer", aName, "<pValue>" + aTarget + "</pValue>" + aMore);
}

TestCamera::TestCamera(const std::string &aFeatures, const std::string &aNodes)
{
    mMemory->Map(0x1000, 0x1000);
    const LxResult result = LxDetail::NodeMap::Create(mPort, CameraXML(aFeatures, aNodes), mNodeMap);
    if (!result.IsOK()) {
        throw std::runtime_error(result.GetDescription().GetAscii());
    }
    mParameters = mNodeMap->GetParameters();
}

namespace
{

template <class Kind>
Kind &Need(Kind *aFeature, const std::string &aName)
{
    if (!aFeature) {
        throw std::runtime_error("no such feature: " + aName);
    }
    return *aFeature;
}

}  // namespace

LxGenParameter &TestCamera::operator[](const std::string &aName) const
{
    return Need(mParameters->Get(aName), aName);
}

LxGenInteger &TestCamera::Int(const std::string &aName) const
{
    return Need(mParameters->GetInteger(aName), aName);
}

LxGenFloat &TestCamera::Float(const std::string &aName) const
{
    return Need(mParameters->GetFloat(aName), aName);
}

LxGenEnum &TestCamera::Enum(const std::string &aName) const
{
    return Need(mParameters->GetEnum(aName), aName);
}

LxGenBoolean &TestCamera::Boolean(const std::string &aName) const
{
    return Need(mParameters->GetBoolean(aName), aName);
}

LxGenString &TestCamera::String(const std::string &aName) const
{
    return Need(mParameters->GetString(aName), aName);
}

LxGenCommand &TestCamera::Command(const std::string &aName) const
{
    return Need(mParameters->GetCommand(aName), aName);
}

LxGenRegister &TestCamera::Register(const std::string &aName) const
{
    return Need(mParameters->GetRegister(aName), aName);
}

int64_t TestCamera::Get(const std::string &aName) const
{
    int64_t value = 0;
    const LxResult result = Int(aName).GetValue(value);
    EXPECT_TRUE(result.IsOK()) << aName << ": " << result.GetDescription().GetAscii();
    return value;
}

double TestCamera::GetFloat(const std::string &aName) const
{
    double value = 0;
    const LxResult result = Float(aName).GetValue(value);
    EXPECT_TRUE(result.IsOK()) << aName << ": " << result.GetDescription().GetAscii();
    return value;
}
