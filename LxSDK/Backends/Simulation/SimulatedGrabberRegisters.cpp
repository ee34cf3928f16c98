#include "Backends/Simulation/SimulatedGrabberRegisters.h"

#include <bit>

namespace LxDetail
{

namespace
{

constexpr uint64_t SourceAddress = 0xC100;
constexpr uint64_t PoCLAddress = 0xC104;
constexpr uint64_t GrabberEnd = 0xC108;
constexpr uint32_t SourceCount = 4;

std::string Register(const std::string &aName, const std::string &aAddress)
{
    return "<IntReg Name=\"" + aName + "\">\n  <Address>" + aAddress +
           "</Address>\n  <Length>4</Length>\n  <AccessMode>RW</AccessMode>\n  <pPort>Device</pPort>\n"
           "  <Cachable>WriteThrough</Cachable>\n  <Sign>Unsigned</Sign>\n  <Endianess>BigEndian</Endianess>\n"
           "</IntReg>\n";
}

}  // namespace

SimulatedGrabberRegisters::SimulatedGrabberRegisters(const LxSimulatedDevice &aValues)
    : mSources(aValues.mSources & ((1u << SourceCount) - 1)), mPoCL(aValues.mPoCL)
{
}

std::string SimulatedGrabberRegisters::MakeXML() const
{
    std::string references;
    std::string features;
    if (mSources != 0) {
        references += "  <pFeature>SourceSelector</pFeature>\n";
        features +=
            "<Enumeration Name=\"SourceSelector\" NameSpace=\"Standard\">\n"
            "  <ToolTip>The camera whose pictures the grabber takes.</ToolTip>\n"
            "  <Visibility>Beginner</Visibility>\n";
        std::string present;
        for (uint32_t i = 0; i < SourceCount; ++i) {
            const std::string number = std::to_string(i);
            features += "  <EnumEntry Name=\"Source" + number + "\" NameSpace=\"Standard\">\n    <pIsAvailable>Source" +
                        number + "Present</pIsAvailable>\n    <Value>" + number + "</Value>\n  </EnumEntry>\n";
            present += "<Integer Name=\"Source" + number + "Present\">\n  <Value>" + std::to_string(mSources >> i & 1) +
                       "</Value>\n</Integer>\n";
        }
        features += "  <pValue>SourceSelectorReg</pValue>\n</Enumeration>\n" + present +
                    Register("SourceSelectorReg", "0xC100");
    }
    if (mPoCL) {
        references += "  <pFeature>PoCLEnabled</pFeature>\n";
        features +=
            "<Boolean Name=\"PoCLEnabled\" NameSpace=\"Custom\">\n"
            "  <ToolTip>Whether the cameras get their power over the Camera Link cables.</ToolTip>\n"
            "  <Visibility>Beginner</Visibility>\n  <pValue>PoCLEnabledReg</pValue>\n  <OnValue>1</OnValue>\n"
            "  <OffValue>0</OffValue>\n</Boolean>\n" +
            Register("PoCLEnabledReg", "0xC104");
    }
    return "<Group Comment=\"FrameGrabberControl\">\n<Category Name=\"FrameGrabberControl\" NameSpace=\"Custom\">\n"
           "  <ToolTip>The cameras at the grabber.</ToolTip>\n" +
           references + "</Category>\n" + features + "</Group>\n";
}

void SimulatedGrabberRegisters::Attach(const std::shared_ptr<MemoryPort> &aMemory)
{
    mMemory = aMemory;
    mMemory->Map(SourceAddress, GrabberEnd - SourceAddress);
    Restart();
}

void SimulatedGrabberRegisters::Restart()
{
    mMemory->Poke32(SourceAddress, mSources == 0 ? 0 : static_cast<uint32_t>(std::countr_zero(mSources)));
    mMemory->Poke32(PoCLAddress, 0);
}

}  // namespace LxDetail
