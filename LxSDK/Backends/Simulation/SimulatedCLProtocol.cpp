#include "Backends/Simulation/SimulatedCLProtocol.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "Backends/Simulation/SerialCamera.h"
#include "LxCameraBridge/TextLine.h"

namespace LxDetail
{

namespace
{

constexpr uint32_t Timeout = 500;
constexpr uint32_t MostBytes = 512;
const std::string Terminator = "\r";
const std::string Driver = "simulation#LxSimulatedCLProtocol#";
const char *const Families[] = {"LxGUI#TextCamera", "LxGUI#AreaCamera", "LxGUI#ColourCamera"};
// SchemaVersion @ short template @ XMLVersion, the best first
const char *const XMLIDs[] = {"SchemaVersion.1.1@LxGUI#TextCamera@XMLVersion.1.1.0",
                              "SchemaVersion.1.1@LxGUI#TextCamera@XMLVersion.1.0.0"};

/// The registers of the camera, by its commands "R" and "W".
class RegisterCommands : public CameraRegisters
{
public:
    explicit RegisterCommands(std::shared_ptr<CountedPort> aPort) : mLine(std::move(aPort), Terminator, Timeout) {}

    LxResult Read(uint64_t aAddress, void *aData, uint32_t aLength) override
    {
        auto *bytes = static_cast<uint8_t *>(aData);
        for (uint32_t done = 0; done < aLength; done += MostBytes) {
            const uint32_t count = std::min(aLength - done, MostBytes);
            std::string answer;
            const LxResult result = Ask('R', aAddress + done, std::to_string(count), answer);
            if (!result.IsOK()) {
                return result;
            }
            for (uint32_t i = 0; i < count; ++i) {
                const char *digits = answer.data() + 2 * i;
                if (answer.size() != 2 * size_t{count} ||
                    std::from_chars(digits, digits + 2, bytes[done + i], 16).ptr != digits + 2) {
                    return LxResult(LxResultCode::ProtocolError, "The camera answered \"" + answer + "\".");
                }
            }
        }
        return LxResult();
    }
    LxResult Write(uint64_t aAddress, const void *aData, uint32_t aLength) override
    {
        std::string digits;
        for (uint32_t i = 0; i < aLength; ++i) {
            char text[3];
            std::snprintf(text, sizeof(text), "%02X", static_cast<const uint8_t *>(aData)[i]);
            digits += text;
        }
        std::string answer;
        return Ask('W', aAddress, digits, answer);
    }
    LxResult Ping() override
    {
        std::string answer;
        return mLine.Ask("ID?", answer);
    }

private:
    LxResult Ask(char aCommand, uint64_t aAddress, const std::string &aRest, std::string &aAnswer)
    {
        char text[32];
        std::snprintf(text, sizeof(text), "%c %llX ", aCommand, static_cast<unsigned long long>(aAddress));
        const LxResult result = mLine.Ask(text + aRest, aAnswer);
        if (result.IsOK() && aAnswer.starts_with("ERROR")) {
            return LxResult(LxResultCode::InvalidAddress, "The camera answered \"" + aAnswer + "\".");
        }
        return result;
    }

    TextLine mLine;
};

}  // namespace

const std::shared_ptr<SimulatedCLProtocol> &SimulatedCLProtocol::Get()
{
    static const auto &driver = *new std::shared_ptr<SimulatedCLProtocol>(std::make_shared<SimulatedCLProtocol>());
    return driver;
}

std::vector<std::string> SimulatedCLProtocol::GetTemplates() const
{
    std::vector<std::string> templates;
    for (const char *family : Families) {
        templates.push_back(Driver + family);
    }
    return templates;
}

LxResult SimulatedCLProtocol::Probe(std::shared_ptr<CountedPort> aPort, const std::string &aTemplate,
                                    std::string &aCameraID, std::vector<std::string> &aXMLIDs)
{
    TextLine line(std::move(aPort), Terminator, Timeout);
    std::string answer;
    LxResult result = line.Ask("ID?", answer);
    if (result == LxResultCode::Timeout) {
        return LxResult(LxResultCode::Timeout,
                        "No camera answers at the serial port. Check that it has power and that the speed of the port "
                        "is that of the camera.");
    }
    std::replace(answer.begin(), answer.end(), ',', '#');
    if (result.IsOK() && !(Driver + answer).starts_with(aTemplate + "#")) {
        result = LxResult(LxResultCode::NotFound, "The camera at the serial port is not of this family.");
    }
    if (result.IsOK()) {
        aCameraID = Driver + answer;
        aXMLIDs.assign(std::begin(XMLIDs), std::end(XMLIDs));
    }
    return result;
}

LxResult SimulatedCLProtocol::Connect(std::shared_ptr<CountedPort> aPort, const std::string &aXMLID, std::string &aXML,
                                      std::shared_ptr<CameraRegisters> &aRegisters)
{
    aXML = MakeSerialCameraXML("LxGUI", "TextCamera", aXMLID == XMLIDs[0] ? 1 : 0);
    aRegisters = std::make_shared<RegisterCommands>(std::move(aPort));
    return LxResult();
}

}  // namespace LxDetail
