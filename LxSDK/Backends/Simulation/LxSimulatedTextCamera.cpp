#include "LxSimulation/LxSimulatedTextCamera.h"

#include <bit>
#include <charconv>
#include <mutex>
#include <string>
#include <vector>

#include "Backends/Simulation/SerialCamera.h"

using namespace LxDetail;

namespace
{

constexpr uint32_t TextLength = 16;
constexpr size_t LongestLine = 4096;
constexpr uint32_t MostBytes = 1024;

const std::string OK = "OK";

template <class Number>
bool Parse(const std::string &aText, Number &aNumber)
{
    const auto [end, error] = std::from_chars(aText.data(), aText.data() + aText.size(), aNumber);
    return error == std::errc() && end == aText.data() + aText.size();
}

bool ParseHex(const std::string &aText, uint64_t &aNumber)
{
    const auto [end, error] = std::from_chars(aText.data(), aText.data() + aText.size(), aNumber, 16);
    return error == std::errc() && end == aText.data() + aText.size();
}

std::string FormatFloat(double aValue)
{
    char text[40];
    const auto end = std::to_chars(text, text + sizeof(text), aValue).ptr;
    return std::string(text, end);
}

}  // namespace

class LX_NO_EXPORT LxSimulatedTextCamera::Data
{
public:
    std::string Answer(const std::string &aLine)
    {
        if (aLine == "ID?") {
            return "LxGUI,TextCamera,TC1024,1.0.0,TXT0001";
        }
        if (aLine.starts_with("R ") || aLine.starts_with("W ")) {
            const size_t separator = aLine.find(' ', 2);
            uint64_t address = 0;
            if (separator == std::string::npos || !ParseHex(aLine.substr(2, separator - 2), address)) {
                return "ERROR no address";
            }
            const std::string rest = aLine.substr(separator + 1);
            return aLine[0] == 'R' ? ReadBytes(address, rest) : WriteBytes(address, rest);
        }
        const size_t sign = aLine.find_first_of("?=!");
        const SerialCameraRegister *entry = FindSerialCameraRegister(aLine.substr(0, sign));
        if (sign == std::string::npos || entry == nullptr) {
            return "ERROR unknown";
        }
        const bool command = entry->mKind == SerialCameraKind::Command;
        if (aLine[sign] == '?' && !command) {
            return ReadText(*entry);
        }
        if (aLine[sign] == '!' && command) {
            return WriteNumber(entry->mAddress, 1);
        }
        return aLine[sign] == '=' && !command && entry->mWritable ? WriteText(*entry, aLine.substr(sign + 1))
                                                                  : "ERROR not possible";
    }

    mutable std::mutex mMutex;  // guards all members below
    const std::shared_ptr<MemoryPort> mMemory = MakeSerialCameraRegisters();
    bool mPlugged = true;
    std::string mLine;
    std::string mReceived;

private:
    std::string ReadBytes(uint64_t aAddress, const std::string &aCount)
    {
        uint32_t count = 0;
        if (!Parse(aCount, count) || count == 0 || count > MostBytes) {
            return "ERROR no count";
        }
        std::vector<uint8_t> bytes(count);
        if (!mMemory->Read(aAddress, bytes.data(), count).IsOK()) {
            return "ERROR no register";
        }
        static const char digits[] = "0123456789ABCDEF";
        std::string text;
        for (const uint8_t byte : bytes) {
            text += digits[byte >> 4];
            text += digits[byte & 15];
        }
        return text;
    }
    std::string WriteBytes(uint64_t aAddress, const std::string &aBytes)
    {
        std::vector<uint8_t> bytes;
        for (size_t i = 0; i + 2 <= aBytes.size(); i += 2) {
            uint64_t byte = 0;
            if (!ParseHex(aBytes.substr(i, 2), byte)) {
                return "ERROR no bytes";
            }
            bytes.push_back(static_cast<uint8_t>(byte));
        }
        if (bytes.empty() || aBytes.size() % 2 != 0) {
            return "ERROR no bytes";
        }
        return mMemory->Write(aAddress, bytes.data(), static_cast<uint32_t>(bytes.size())).IsOK() ? OK
                                                                                                  : "ERROR no register";
    }
    std::string ReadText(const SerialCameraRegister &aRegister) const
    {
        switch (aRegister.mKind) {
            case SerialCameraKind::Float:
                return FormatFloat(std::bit_cast<double>(mMemory->Peek64(aRegister.mAddress)));
            case SerialCameraKind::Text:
                return mMemory->PeekString(aRegister.mAddress, TextLength);
            default:
                return std::to_string(mMemory->Peek32(aRegister.mAddress));
        }
    }
    std::string WriteText(const SerialCameraRegister &aRegister, const std::string &aText)
    {
        if (aRegister.mKind == SerialCameraKind::Text) {
            mMemory->PokeString(aRegister.mAddress, TextLength, aText.substr(0, TextLength));
            return OK;
        }
        double real = 0;
        uint32_t number = 0;
        if (aRegister.mKind == SerialCameraKind::Float && Parse(aText, real)) {
            mMemory->Poke64(aRegister.mAddress, std::bit_cast<uint64_t>(real));
            return OK;
        }
        if (aRegister.mKind == SerialCameraKind::Integer && Parse(aText, number)) {
            return WriteNumber(aRegister.mAddress, number);
        }
        return "ERROR no number";
    }
    std::string WriteNumber(uint64_t aAddress, uint32_t aNumber)
    {
        uint8_t bytes[4];
        for (unsigned i = 0; i < 4; ++i) {
            bytes[i] = static_cast<uint8_t>(aNumber >> (24 - 8 * i));
        }
        return mMemory->Write(aAddress, bytes, sizeof(bytes)).IsOK() ? OK : "ERROR no register";
    }
};

LxSimulatedTextCamera::LxSimulatedTextCamera() : mData(std::make_unique<Data>()) {}

LxSimulatedTextCamera::~LxSimulatedTextCamera() = default;

void LxSimulatedTextCamera::SetPlugged(bool aPlugged)
{
    std::lock_guard lock(mData->mMutex);
    mData->mPlugged = aPlugged;
    mData->mLine.clear();
}

LxString LxSimulatedTextCamera::GetReceived() const
{
    std::lock_guard lock(mData->mMutex);
    return mData->mReceived;
}

void LxSimulatedTextCamera::OnReceive(const uint8_t *aData, uint32_t aCount, LxSimulatedSerialLine &aLine)
{
    for (uint32_t i = 0; i < aCount; ++i) {
        std::string answer;
        {
            std::lock_guard lock(mData->mMutex);
            if (!mData->mPlugged) {
                return;
            }
            if (aData[i] != '\r') {
                if (mData->mLine.size() < LongestLine) {
                    mData->mLine += static_cast<char>(aData[i]);
                }
                continue;
            }
            answer = mData->Answer(mData->mLine) + "\r";
            mData->mReceived += mData->mLine + "\n";
            mData->mLine.clear();
        }
        aLine.Send(reinterpret_cast<const uint8_t *>(answer.data()), static_cast<uint32_t>(answer.size()));
    }
}
