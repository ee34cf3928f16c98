#include "LxSimulation/LxSimulatedSerial.h"

#include <chrono>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

LxSimulatedSerialLine::~LxSimulatedSerialLine() = default;

LxSimulatedSerialPeer::~LxSimulatedSerialPeer() = default;

void LxSimulatedSerialPeer::OnConnected(const std::shared_ptr<LxSimulatedSerialLine> &) {}

uint32_t LxSimulatedSerialPeer::GetBaudRate() const
{
    return 0;
}

void LxSimulatedSerialEcho::OnReceive(const uint8_t *aData, uint32_t aCount, LxSimulatedSerialLine &aLine)
{
    aLine.Send(aData, aCount);
}

class LX_NO_EXPORT LxSimulatedSerialScript::Data
{
public:
    static constexpr size_t MostReceived = 65536;

    struct Entry
    {
        std::string mRequest;
        std::string mAnswer;
        std::chrono::milliseconds mDelay;
    };

    static void Append(std::string &aText, char aByte)
    {
        if (aText.size() == 2 * MostReceived) {
            aText.erase(0, MostReceived);
        }
        aText += aByte;
    }
    /// Adds a byte; true, and the answer, when a request is complete.
    bool Hear(char aByte, Entry &aEntry)
    {
        std::lock_guard lock(mMutex);
        Append(mReceived, aByte);
        Append(mPending, aByte);
        for (const Entry &entry : mEntries) {
            if (mPending.ends_with(entry.mRequest)) {
                mPending.clear();
                aEntry = entry;
                return true;
            }
        }
        return false;
    }

    mutable std::mutex mMutex;  // guards all members below
    std::vector<Entry> mEntries;
    std::string mReceived;
    std::string mPending;
};

LxSimulatedSerialScript::LxSimulatedSerialScript() : mData(std::make_unique<Data>()) {}

LxSimulatedSerialScript::~LxSimulatedSerialScript() = default;

void LxSimulatedSerialScript::Add(const LxString &aRequest, const LxString &aAnswer, uint32_t aDelay)
{
    if (!aRequest.IsEmpty()) {
        std::lock_guard lock(mData->mMutex);
        mData->mEntries.push_back({aRequest.GetString(), aAnswer.GetString(), std::chrono::milliseconds(aDelay)});
    }
}

void LxSimulatedSerialScript::OnReceive(const uint8_t *aData, uint32_t aCount, LxSimulatedSerialLine &aLine)
{
    for (uint32_t i = 0; i < aCount; ++i) {
        Data::Entry entry;
        if (mData->Hear(static_cast<char>(aData[i]), entry)) {
            std::this_thread::sleep_for(entry.mDelay);
            aLine.Send(reinterpret_cast<const uint8_t *>(entry.mAnswer.data()),
                       static_cast<uint32_t>(entry.mAnswer.size()));
        }
    }
}

LxString LxSimulatedSerialScript::GetReceived() const
{
    std::lock_guard lock(mData->mMutex);
    const std::string &text = mData->mReceived;
    return text.size() > Data::MostReceived ? text.substr(text.size() - Data::MostReceived) : text;
}
