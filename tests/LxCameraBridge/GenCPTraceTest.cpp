// docs/gencp-connect.md shows and explains the packets of one connection: they are those that are sent.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>

#include "LxCameraBridge/LxCameraBridge.h"
#include "LxSimulation/LxSimulatedGenCPCamera.h"
#include "SimulatedGrabber.h"

namespace
{

// Of a packet the document shows so many bytes.
constexpr size_t MostBytes = 48;

const char CameraXML[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<RegisterDescription ModelName="Camera" VendorName="LxGUI" StandardNameSpace="None" SchemaMajorVersion="1" SchemaMinorVersion="1" SchemaSubMinorVersion="0" MajorVersion="1" MinorVersion="0" SubMinorVersion="0" ProductGuid="11111111-2222-3333-4444-555555555555" VersionGuid="11111111-2222-3333-4444-666666666666" xmlns="http://www.genicam.org/GenApi/Version_1_1">
<Category Name="Root"><pFeature>Width</pFeature></Category>
<Port Name="Device"/>
<Integer Name="Width"><pValue>WidthReg</pValue><Min>16</Min><Max>2048</Max></Integer>
<IntReg Name="WidthReg"><Address>0x20000</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort><Sign>Unsigned</Sign><Endianess>BigEndian</Endianess></IntReg>
</RegisterDescription>
)";

/// "> 01 00 ... (1024 bytes)": a line of a trace with the first bytes of its packet.
std::string Shorten(const std::string &aLine)
{
    const size_t bytes = aLine.size() / 3;
    return bytes <= MostBytes ? aLine
                              : aLine.substr(0, 1 + 3 * MostBytes) + " ... (" + std::to_string(bytes) + " bytes)";
}

std::string GetDocumentedTrace()
{
    std::ifstream file(LXGUI_SOURCE_DIR "/docs/gencp-connect.md");
    std::string trace;
    for (std::string line; std::getline(file, line);) {
        if (std::regex_match(line, std::regex("[<>]( [0-9A-F]{2}){16,}( \\.\\.\\. \\([0-9]+ bytes\\))?"))) {
            trace += line + "\n";
        }
    }
    return trace;
}

}  // namespace

TEST(GenCPTrace, DocumentShowsTheTrafficOfOneConnect)
{
    const SimulatedGrabber grabber;
    LxSimulatedGenCPValues values;
    values.mXML = CameraXML;
    values.mZipped = false;  // the packed bytes depend on the library that packs
    const auto camera = std::make_shared<LxSimulatedGenCPCamera>(values);
    SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0, camera);
    LxCameraBridge bridge(grabber.GetDevice(), LxDeviceSerial::Serial0, nullptr);
    const LxResult result = bridge.ConnectGenCP("1.1#XML 1.0.0#LxGUI Line Camera");
    ASSERT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
    std::istringstream lines(camera->GetTrace().GetString());
    std::string trace;
    for (std::string line; std::getline(lines, line);) {
        trace += Shorten(line) + "\n";
    }
    EXPECT_EQ(GetDocumentedTrace(), trace) << "docs/gencp-connect.md should have these lines:\n" << trace;
}
