#include "LxSimulation/LxSimulatedGenCPCamera.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#include "Backends/Simulation/SerialCamera.h"
#include "LxCameraBridge/GenCPManifest.h"
#include "LxCameraBridge/GenCPPacket.h"
#include "LxCameraBridge/ZipFile.h"

using namespace LxDetail;
using namespace LxDetail::GenCP;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

namespace
{

constexpr uint64_t BootstrapSize = 0x250;
constexpr uint64_t SBRMAddress = 0x10000;
constexpr uint64_t CurrentSpeedAddress = SBRMAddress + 4;
constexpr uint64_t ManifestAddress = 0x10100;
constexpr uint64_t XMLAddress = 0x100000;
constexpr uint32_t GenCPVersion = 0x00010003;
constexpr uint32_t ResponseTime = 100;
constexpr uint64_t Capability = 1u << 0 | 1u << 1 | 1u << 8 | 1u << 9;  // user name, heartbeat, family name, SBRM
constexpr uint32_t Speeds[] = {9600, 19200, 38400, 57600, 115200, 230400, 460800, 921600};  // by bit
constexpr milliseconds ConfirmTime{250};
constexpr milliseconds LongestGap{300};
constexpr uint32_t LongestPending = 1000;
constexpr uint32_t PendingReserve = 2000;  // announced beyond what it takes, so that coming late is no failure
constexpr size_t MostTraced = 10000;

std::string ToHex(char aDirection, const std::vector<uint8_t> &aBytes)
{
    static const char digits[] = "0123456789ABCDEF";
    std::string text = {aDirection};
    for (const uint8_t byte : aBytes) {
        text += ' ';
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text + "\n";
}

void MapBootstrap(MemoryPort &aMemory, const LxSimulatedGenCPValues &aValues)
{
    const auto block = [&](uint64_t aAddress, uint64_t aEnd, bool aWritable) {
        aMemory.Map(aAddress, aEnd - aAddress, aWritable);
    };
    block(0, RegUserDefinedName, false);
    block(RegUserDefinedName, RegCapability, true);
    block(RegCapability, RegConfiguration, false);
    block(RegConfiguration, RegHeartbeat + 4, true);
    block(RegAccessPrivilege, RegAccessPrivilege + 4, true);
    aMemory.Poke32(RegVersion, GenCPVersion);
    const auto text = [&](uint64_t aAddress, const LxString &aText) {
        aMemory.PokeString(aAddress, StringSize, aText.GetString());
    };
    text(RegManufacturerName, aValues.mManufacturer);
    text(RegModelName, aValues.mModel);
    text(RegFamilyName, "Simulation");
    text(RegDeviceVersion, aValues.mVersion);
    text(RegManufacturerInfo, "simulated by LxSDK");
    text(RegSerialNumber, aValues.mSerialNumber);
    aMemory.Poke64(RegCapability, Capability);
    aMemory.Poke32(RegMaxResponseTime, ResponseTime);
    aMemory.Poke64(RegManifestAddress, ManifestAddress);
    aMemory.Poke64(RegSBRMAddress, SBRMAddress);
    aMemory.Poke32(RegHeartbeat, 3000);
}

void MapFile(MemoryPort &aMemory, const LxSimulatedGenCPValues &aValues)
{
    std::string file =
        aValues.mXML.IsEmpty() ? MakeSerialCameraXML("LxGUI", "LineCamera", 0) : aValues.mXML.GetString();
    if (aValues.mZipped) {
        file = MakeZip("camera.xml", file);
    }
    auto digest = ComputeSHA1(file);
    digest[0] ^= aValues.mWrongSHA1 ? 1 : 0;
    aMemory.Map(ManifestAddress, 8 + GenCPManifestEntrySize, false);
    aMemory.Poke64(ManifestAddress, 1);
    const uint64_t entry = ManifestAddress + 8;
    aMemory.Poke32(entry, 1u << 24);                                                     // file version 1.0.0
    aMemory.Poke32(entry + 4, 1u << 24 | 1u << 16 | (aValues.mZipped ? 1u : 0u) << 10);  // schema version 1.1
    aMemory.Poke64(entry + 8, XMLAddress);
    aMemory.Poke64(entry + 16, file.size());
    aMemory.Poke(entry + 24, digest.data(), static_cast<uint32_t>(digest.size()));
    aMemory.Map(XMLAddress, file.size(), false);
    aMemory.Poke(XMLAddress, file.data(), static_cast<uint32_t>(file.size()));
}

uint16_t ToStatus(const LxResult &aResult)
{
    if (aResult.IsOK()) {
        return Success;
    }
    return aResult == LxResultCode::InvalidAddress   ? InvalidAddress
           : aResult == LxResultCode::WriteProtected ? WriteProtect
                                                     : InvalidParameter;
}

}  // namespace

class LX_NO_EXPORT LxSimulatedGenCPCamera::Data
{
public:
    explicit Data(const LxSimulatedGenCPValues &aValues)
        : mOwnSpeed(aValues.mOwnSpeed), mMemory(MakeSerialCameraRegisters())
    {
        MapBootstrap(*mMemory, aValues);
        MapFile(*mMemory, aValues);
        mMemory->Map(SBRMAddress, 4, false);
        mMemory->Map(CurrentSpeedAddress, 4, true);
        mMemory->Poke32(SBRMAddress, 0xFF);
        mMemory->Poke32(CurrentSpeedAddress, 1);
        mMemory->OnWrite(CurrentSpeedAddress, 4, [this](MemoryPort &, uint64_t, uint32_t) { return OnSpeedWrite(); });
    }

    /// With mMutex held.
    Packet Execute(const Packet &aCommand)
    {
        Packet answer;
        answer.mRequestID = aCommand.mRequestID;
        answer.mCommand = static_cast<uint16_t>(aCommand.mCommand | 1);
        const std::vector<uint8_t> &data = aCommand.mData;
        if (aCommand.mCommand == ReadMem) {
            const size_t size = data.size() == 12 ? Get16(data.data() + 10) : 0;
            if (data.size() != 12 || Get16(data.data() + 8) != 0 || size > MaxReadSize) {
                answer.mCode = InvalidParameter;
                return answer;
            }
            answer.mData.resize(size);
            answer.mCode = ToStatus(
                mMemory->Read(Get64(data.data()), answer.mData.data(), static_cast<uint32_t>(answer.mData.size())));
        }
        else if (aCommand.mCommand == WriteMem) {
            if (data.size() <= 8 || aCommand.mRequestID == 0) {
                answer.mCode = InvalidParameter;
                return answer;
            }
            answer.mCode =
                ToStatus(mMemory->Write(Get64(data.data()), data.data() + 8, static_cast<uint32_t>(data.size() - 8)));
        }
        else {
            answer.mCode = NotImplemented;
        }
        if (answer.mCode != Success) {
            answer.mData.clear();
        }
        ++mExecutions;
        return answer;
    }

    LxResult OnSpeedWrite()
    {
        const uint32_t bit = mMemory->Peek32(CurrentSpeedAddress);
        const auto index = static_cast<size_t>(std::countr_zero(bit));
        if (!std::has_single_bit(bit) || index >= std::size(Speeds)) {
            mMemory->Poke32(CurrentSpeedAddress, mSpeedBit);
            return LxResultCode::InvalidParameter;
        }
        mConfirmed = bit == mSpeedBit;
        if (!mConfirmed) {
            mNextSpeedBit = bit;  // after the acknowledge
        }
        return LxResult();
    }
    void SetSpeed(uint32_t aBit)
    {
        mSpeedBit = aBit;
        mNextSpeedBit = 0;
        mMemory->Poke32(CurrentSpeedAddress, aBit);
    }
    /// What was not confirmed in time is undone.
    uint32_t GetSpeed()
    {
        if (!mConfirmed && mNextSpeedBit == 0 && Clock::now() > mConfirmUntil) {
            SetSpeed(mOldSpeedBit);
            mConfirmed = true;
            ++mSpeedFallbacks;
        }
        return Speeds[std::countr_zero(mSpeedBit)];
    }
    void SwitchSpeed()
    {
        if (mNextSpeedBit != 0) {
            mOldSpeedBit = mSpeedBit;
            SetSpeed(mNextSpeedBit);
            mConfirmUntil = Clock::now() + ConfirmTime;
        }
    }

    void Trace(char aDirection, const std::vector<uint8_t> &aBytes)
    {
        if (mTrace.size() == MostTraced) {
            mTrace.pop_front();
        }
        mTrace.push_back(ToHex(aDirection, aBytes));
    }
    static bool TakeOne(uint32_t &aCount) { return aCount > 0 && aCount-- > 0; }

    const bool mOwnSpeed;
    mutable std::mutex mMutex;  // guards all members below
    const std::shared_ptr<MemoryPort> mMemory;
    LxSimulatedGenCPFaults mFaults;
    bool mPlugged = true;
    Decoder mDecoder;
    Clock::time_point mLastByte{};
    uint32_t mLastRequestID = 0;  // 0: none that may be repeated
    std::vector<uint8_t> mLastAnswer;
    uint64_t mCommands = 0;
    uint64_t mExecutions = 0;
    std::deque<std::string> mTrace;
    uint32_t mSpeedBit = 1;
    uint32_t mOldSpeedBit = 1;
    uint32_t mNextSpeedBit = 0;
    bool mConfirmed = true;
    uint32_t mSpeedFallbacks = 0;
    Clock::time_point mConfirmUntil{};
};

LxSimulatedGenCPCamera::LxSimulatedGenCPCamera(const LxSimulatedGenCPValues &aValues)
    : mData(std::make_unique<Data>(aValues))
{
}

LxSimulatedGenCPCamera::~LxSimulatedGenCPCamera() = default;

void LxSimulatedGenCPCamera::SetFaults(const LxSimulatedGenCPFaults &aFaults)
{
    std::lock_guard lock(mData->mMutex);
    mData->mFaults = aFaults;
}

void LxSimulatedGenCPCamera::SetPlugged(bool aPlugged)
{
    std::lock_guard lock(mData->mMutex);
    mData->mPlugged = aPlugged;
    mData->mDecoder.Clear();
    mData->mLastRequestID = 0;
    mData->mConfirmed = true;
    mData->SetSpeed(1);
}

uint64_t LxSimulatedGenCPCamera::GetCommandCount() const
{
    std::lock_guard lock(mData->mMutex);
    return mData->mCommands;
}

uint64_t LxSimulatedGenCPCamera::GetExecutionCount() const
{
    std::lock_guard lock(mData->mMutex);
    return mData->mExecutions;
}

uint32_t LxSimulatedGenCPCamera::GetSpeedFallbackCount() const
{
    std::lock_guard lock(mData->mMutex);
    mData->GetSpeed();  // notices that the time has passed
    return mData->mSpeedFallbacks;
}

LxString LxSimulatedGenCPCamera::GetTrace() const
{
    std::lock_guard lock(mData->mMutex);
    std::string trace;
    for (const std::string &line : mData->mTrace) {
        trace += line;
    }
    return trace;
}

uint32_t LxSimulatedGenCPCamera::GetBaudRate() const
{
    std::lock_guard lock(mData->mMutex);
    return mData->mOwnSpeed ? mData->GetSpeed() : 0;
}

void LxSimulatedGenCPCamera::OnReceive(const uint8_t *aData, uint32_t aCount, LxSimulatedSerialLine &aLine)
{
    Data &data = *mData;
    std::unique_lock lock(data.mMutex);
    if (Clock::now() - data.mLastByte > LongestGap) {
        data.mDecoder.Clear();  // the rest of a packet does not come any more
    }
    data.mDecoder.Add(aData, aCount);
    Packet command;
    for (;;) {
        const Decoder::Found found = data.mDecoder.Next(command);
        if (found == Decoder::Found::Nothing) {
            break;
        }
        if (found == Decoder::Found::Corrupt || !data.mPlugged) {
            continue;  // dropped: the host sends it again
        }
        ++data.mCommands;
        data.Trace('>', Encode(command));
        const bool repeated = command.mRequestID != 0 && command.mRequestID == data.mLastRequestID;
        if (!repeated) {
            data.mLastAnswer = Encode(data.Execute(command));
            data.mLastRequestID = command.mRequestID;
        }
        std::vector<uint8_t> answer = data.mLastAnswer;
        const bool lost = Data::TakeOne(data.mFaults.mLose);
        if (Data::TakeOne(data.mFaults.mCorrupt)) {
            answer[4] ^= 0xFF;
        }
        const LxSimulatedGenCPFaults faults = data.mFaults;
        if (data.mFaults.mUnplugAfter > 0 && --data.mFaults.mUnplugAfter == 0) {
            data.mPlugged = false;
        }
        if ((command.mCode & FlagRequestAck) == 0 || lost) {
            continue;
        }
        for (uint32_t left = faults.mPending; left > 0;) {
            const uint32_t step = std::min(left, LongestPending);
            Packet pending;
            pending.mCommand = PendingAck;
            pending.mRequestID = command.mRequestID;
            Append16(pending.mData, 0);
            Append16(pending.mData, static_cast<uint16_t>(step + PendingReserve));
            const std::vector<uint8_t> bytes = Encode(pending);
            data.Trace('<', bytes);
            lock.unlock();
            aLine.Send(bytes.data(), static_cast<uint32_t>(bytes.size()));
            std::this_thread::sleep_for(milliseconds(step));
            lock.lock();
            left -= step;
        }
        data.Trace('<', answer);
        lock.unlock();
        std::this_thread::sleep_for(milliseconds(faults.mDelay));
        aLine.Send(answer.data(), static_cast<uint32_t>(answer.size()));
        lock.lock();
        data.SwitchSpeed();
    }
    data.mLastByte = Clock::now();
}
