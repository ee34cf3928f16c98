#include "Backends/Simulation/SerialCamera.h"

#include <bit>
#include <cstring>

#include "LxBuffer/LxPixelType.h"

namespace LxDetail
{

namespace
{

constexpr uint64_t Width = SerialCameraAddress;
constexpr uint64_t Height = SerialCameraAddress + 0x04;
constexpr uint64_t PixelFormat = SerialCameraAddress + 0x08;
constexpr uint64_t Gain = SerialCameraAddress + 0x0C;
constexpr uint64_t StatusLED = SerialCameraAddress + 0x10;
constexpr uint64_t Temperature = SerialCameraAddress + 0x14;
constexpr uint64_t Reset = SerialCameraAddress + 0x18;
constexpr uint64_t ResetCount = SerialCameraAddress + 0x1C;
constexpr uint64_t ExposureTime = SerialCameraAddress + 0x20;
constexpr uint64_t UserID = SerialCameraAddress + 0x40;
constexpr uint32_t UserIDLength = 16;
constexpr uint64_t End = SerialCameraAddress + 0x80;

constexpr SerialCameraRegister Registers[] = {
    {"WIDTH", Width, SerialCameraKind::Integer, true},
    {"HEIGHT", Height, SerialCameraKind::Integer, true},
    {"FORMAT", PixelFormat, SerialCameraKind::Integer, true},
    {"GAIN", Gain, SerialCameraKind::Integer, true},
    {"LED", StatusLED, SerialCameraKind::Integer, true},
    {"TEMPERATURE", Temperature, SerialCameraKind::Integer, false},
    {"RESETS", ResetCount, SerialCameraKind::Integer, false},
    {"RESET", Reset, SerialCameraKind::Command, true},
    {"EXPOSURE", ExposureTime, SerialCameraKind::Float, true},
    {"NAME", UserID, SerialCameraKind::Text, true},
};

void SetDefaults(MemoryPort &aMemory)
{
    aMemory.Poke32(Width, 1024);
    aMemory.Poke32(Height, 768);
    aMemory.Poke32(PixelFormat, 0x01080001);  // Mono8 of PFNC
    aMemory.Poke32(Gain, 10);
    aMemory.Poke32(StatusLED, 1);
    aMemory.Poke32(Temperature, 41);
    aMemory.Poke64(ExposureTime, std::bit_cast<uint64_t>(5000.0));
    aMemory.PokeString(UserID, UserIDLength, "Camera 1");
}

constexpr char Features[] = R"xml(
<Category Name="DeviceControl" NameSpace="Standard">
  <ToolTip>The device itself.</ToolTip>
  <pFeature>DeviceUserID</pFeature>
  <pFeature>DeviceTemperature</pFeature>
  <pFeature>DeviceResetCount</pFeature>
  <pFeature>DeviceReset</pFeature>@LED_REFERENCE@
</Category>
<Category Name="ImageFormatControl" NameSpace="Standard">
  <ToolTip>Size and format of the pictures.</ToolTip>
  <pFeature>Width</pFeature>
  <pFeature>Height</pFeature>
  <pFeature>PixelFormat</pFeature>
</Category>
<Category Name="AcquisitionControl" NameSpace="Standard">
  <ToolTip>How pictures are taken.</ToolTip>
  <pFeature>ExposureTime</pFeature>
  <pFeature>Gain</pFeature>
</Category>
<Port Name="Device" NameSpace="Standard"/>
<StringReg Name="DeviceUserID" NameSpace="Standard">
  <ToolTip>A name of your own for the camera.</ToolTip>
  <Visibility>Beginner</Visibility>
  <Address>0x20040</Address><Length>16</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
</StringReg>
<Integer Name="DeviceTemperature" NameSpace="Standard">
  <ToolTip>Temperature of the sensor.</ToolTip>
  <Visibility>Beginner</Visibility>
  <pValue>TemperatureReg</pValue><Unit>C</Unit>
</Integer>
<IntReg Name="TemperatureReg">
  <Address>0x20014</Address><Length>4</Length><AccessMode>RO</AccessMode><pPort>Device</pPort>
  <Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>
</IntReg>
<Integer Name="DeviceResetCount" NameSpace="Custom">
  <ToolTip>How often the camera has been reset.</ToolTip>
  <Visibility>Expert</Visibility>
  <pValue>ResetCountReg</pValue>
</Integer>
<IntReg Name="ResetCountReg">
  <Address>0x2001C</Address><Length>4</Length><AccessMode>RO</AccessMode><pPort>Device</pPort>
  <Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>
</IntReg>
<Command Name="DeviceReset" NameSpace="Standard">
  <ToolTip>Sets every feature to its default value.</ToolTip>
  <Visibility>Guru</Visibility>
  <pValue>ResetReg</pValue><CommandValue>1</CommandValue>
</Command>
<IntReg Name="ResetReg">
  <Address>0x20018</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
  <Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>
</IntReg>
<Integer Name="Width" NameSpace="Standard">
  <ToolTip>Width of the picture in pixels.</ToolTip>
  <Visibility>Beginner</Visibility>
  <pValue>WidthReg</pValue><Min>16</Min><Max>2048</Max><Inc>4</Inc>
</Integer>
<IntReg Name="WidthReg">
  <Address>0x20000</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
  <Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>
</IntReg>
<Integer Name="Height" NameSpace="Standard">
  <ToolTip>Height of the picture in pixels.</ToolTip>
  <Visibility>Beginner</Visibility>
  <pValue>HeightReg</pValue><Min>2</Min><Max>1536</Max><Inc>2</Inc>
</Integer>
<IntReg Name="HeightReg">
  <Address>0x20004</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
  <Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>
</IntReg>
<Enumeration Name="PixelFormat" NameSpace="Standard">
  <ToolTip>Format of the pixels.</ToolTip>
  <Visibility>Beginner</Visibility>
  <EnumEntry Name="Mono8" NameSpace="Standard"><Value>17301505</Value></EnumEntry>
  <EnumEntry Name="Mono16" NameSpace="Standard"><Value>17825799</Value></EnumEntry>
  <EnumEntry Name="RGB8" NameSpace="Standard"><Value>35127316</Value></EnumEntry>
  <pValue>PixelFormatReg</pValue>
</Enumeration>
<IntReg Name="PixelFormatReg">
  <Address>0x20008</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
  <Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>
</IntReg>
<FloatReg Name="ExposureTimeReg">
  <Address>0x20020</Address><Length>8</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
  <Endianess>BigEndian</Endianess>
</FloatReg>
<Float Name="ExposureTime" NameSpace="Standard">
  <ToolTip>How long the sensor is exposed.</ToolTip>
  <Visibility>Beginner</Visibility>
  <pValue>ExposureTimeReg</pValue><Min>1</Min><Max>1000000</Max><Unit>us</Unit>
</Float>
<Integer Name="Gain" NameSpace="Custom">
  <ToolTip>Amplification.</ToolTip>
  <Visibility>Beginner</Visibility>
  <pValue>GainReg</pValue><Min>0</Min><Max>100</Max><Unit>dB</Unit>
</Integer>
<IntReg Name="GainReg">
  <Address>0x2000C</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
  <Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>
</IntReg>
)xml";

constexpr char StatusLEDFeature[] = R"xml(<Boolean Name="StatusLED" NameSpace="Custom">
  <ToolTip>Whether the light at the back shines.</ToolTip>
  <Visibility>Beginner</Visibility>
  <pValue>StatusLEDReg</pValue><OnValue>1</OnValue><OffValue>0</OffValue>
</Boolean>
<IntReg Name="StatusLEDReg">
  <Address>0x20010</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
  <Sign>Unsigned</Sign><Endianess>BigEndian</Endianess>
</IntReg>
)xml";

}  // namespace

std::shared_ptr<MemoryPort> MakeSerialCameraRegisters()
{
    auto memory = std::make_shared<MemoryPort>();
    memory->Map(SerialCameraAddress, End - SerialCameraAddress);
    SetDefaults(*memory);
    memory->OnWrite(Reset, 4, [](MemoryPort &aPort, uint64_t, uint32_t) {
        if (aPort.Peek32(Reset) == 1) {
            SetDefaults(aPort);
            aPort.Poke32(ResetCount, aPort.Peek32(ResetCount) + 1);
        }
        aPort.Poke32(Reset, 0);
        return LxResult();
    });
    return memory;
}

std::string MakeSerialCameraXML(const std::string &aVendor, const std::string &aModel, uint32_t aMinorVersion)
{
    std::string features = Features;
    const std::string mark = "@LED_REFERENCE@";
    features.replace(features.find(mark), mark.size(), aMinorVersion > 0 ? "<pFeature>StatusLED</pFeature>" : "");
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<RegisterDescription ModelName=\"" + aModel +
           "\" VendorName=\"" + aVendor +
           "\" ToolTip=\"A camera behind a frame grabber\" StandardNameSpace=\"None\" SchemaMajorVersion=\"1\""
           " SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\" MajorVersion=\"1\" MinorVersion=\"" +
           std::to_string(aMinorVersion) +
           "\" SubMinorVersion=\"0\" ProductGuid=\"0f6d3c1e-52c3-4b8e-9a0e-0c1d2a4f7b22\""
           " VersionGuid=\"c5a7c9d4-8e1f-4f25-8d5e-3f6a7b8c9d03\""
           " xmlns=\"http://www.genicam.org/GenApi/Version_1_1\">\n"
           "<Category Name=\"Root\" NameSpace=\"Standard\">\n  <pFeature>DeviceControl</pFeature>\n"
           "  <pFeature>ImageFormatControl</pFeature>\n  <pFeature>AcquisitionControl</pFeature>\n</Category>\n" +
           features + (aMinorVersion > 0 ? StatusLEDFeature : "") + "</RegisterDescription>\n";
}

const SerialCameraRegister *FindSerialCameraRegister(const std::string &aTextName)
{
    for (const SerialCameraRegister &entry : Registers) {
        if (aTextName == entry.mTextName) {
            return &entry;
        }
    }
    return nullptr;
}

}  // namespace LxDetail
