#include "GvcpResponder.h"

#include <algorithm>
#include <bit>

#include "Backends/Simulation/SimulatedRegisters.h"
#include "BigEndian.h"

namespace LxEmulator
{

namespace
{

using Gvcp::Status;
namespace Register = LxDetail::SimulatedRegister;

constexpr uint32_t HeartbeatDisabled = 0x1;
constexpr size_t MaxExecuted = 16;  // applications whose last command is remembered
constexpr std::chrono::seconds RepeatTime{10};

Status ToStatus(const LxResult &aResult)
{
    switch (static_cast<LxResultCode>(aResult.GetCode())) {
        case LxResultCode::OK:
            return Status::Success;
        case LxResultCode::NotSupported:
        case LxResultCode::NotImplemented:
            return Status::NotImplemented;
        case LxResultCode::InvalidParameter:
        case LxResultCode::OutOfRange:
            return Status::InvalidParameter;
        case LxResultCode::InvalidAddress:
            return Status::InvalidAddress;
        case LxResultCode::WriteProtected:
            return Status::WriteProtect;
        case LxResultCode::BadAlignment:
            return Status::BadAlignment;
        case LxResultCode::AccessDenied:
        case LxResultCode::NotReadable:
        case LxResultCode::NotWritable:
        case LxResultCode::NotAvailable:
            return Status::AccessDenied;
        case LxResultCode::Busy:
            return Status::Busy;
        default:
            return Status::Error;
    }
}

bool Touches(uint64_t aAddress, uint64_t aLength, uint64_t aOther, uint64_t aOtherLength)
{
    return aAddress < aOther + aOtherLength && aOther < aAddress + aLength;
}

bool Changes(const Gvcp::CommandPacket &aCommand)
{
    using Gvcp::Command;
    return aCommand.Is(Command::WriteRegister) || aCommand.Is(Command::WriteMemory) || aCommand.Is(Command::ForceIP);
}

/// Whether a host could have this address. 0 stands for "choose one yourself".
bool IsValid(const Gvcp::ForceIP &aForceIP)
{
    if (aForceIP.mIPAddress == 0) {
        return true;
    }
    const uint32_t mask = aForceIP.mSubnetMask;
    if (mask != 0 && std::countl_one(mask) + std::countr_zero(mask) != 32) {
        return false;
    }
    const uint32_t host = aForceIP.mIPAddress & ~mask;
    const bool reserved = ~mask > 1 && (host == 0 || host == ~mask);
    return (aForceIP.mIPAddress >> 24) != 0 && (aForceIP.mIPAddress >> 28) < 0xE && !reserved;
}

void Corrupt(Corruption aCorruption, std::vector<uint8_t> &aBytes)
{
    switch (aCorruption) {
        case Corruption::None:
            break;
        case Corruption::ShortHeader:
            aBytes.resize(5);
            break;
        case Corruption::WrongId:
            Put16(&aBytes[6], Get16(&aBytes[6]) ^ 0x5555u);
            break;
        case Corruption::WrongCode:
            Put16(&aBytes[2], Get16(&aBytes[2]) ^ 0x0100u);
            break;
        case Corruption::LongLength:
            Put16(&aBytes[4], 0xFFFF);
            break;
        case Corruption::ShortLength:
            Put16(&aBytes[4], 0);
            break;
        case Corruption::Garbage:
            for (size_t i = 0; i < aBytes.size(); ++i) {
                aBytes[i] = static_cast<uint8_t>(i * 151 + 77);
            }
            break;
        case Corruption::Unterminated:
            for (size_t i = Gvcp::headerSize + 0x48; i < aBytes.size(); ++i) {
                aBytes[i] = 'X';
            }
            break;
    }
}

}  // namespace

GvcpResponder::GvcpResponder(std::shared_ptr<LxDetail::MemoryPort> aPort, Actions aActions)
    : mPort(std::move(aPort)), mActions(std::move(aActions))
{
}

std::vector<GvcpAnswer> GvcpResponder::Respond(std::span<const uint8_t> aDatagram, const Endpoint &aSource,
                                               bool aBroadcast, Clock::time_point aNow)
{
    const auto packet = Gvcp::ParseCommand(aDatagram);
    {
        std::lock_guard lock(mMutex);
        if (mFaults.mFrozen || mFaults.mIgnoreCommands > 0) {
            mFaults.mIgnoreCommands -= mFaults.mFrozen ? 0 : 1;
            ++mStatistics.mIgnored;
            return {};
        }
        if (!packet) {
            ++mStatistics.mInvalid;
            return {};
        }
        ++mStatistics.mCommands;
        mPrivilege.Refresh(aSource, aNow);
    }
    const Command command{*packet, aSource, aNow};
    if (auto repeated = FindRepeat(aDatagram, command)) {
        return Deliver(std::move(*repeated));
    }
    const std::optional<Outcome> outcome = Execute(command, aBroadcast);
    if (!outcome) {
        return {};
    }
    if (outcome->mStatus == Status::AccessDenied) {
        std::lock_guard lock(mMutex);
        ++mStatistics.mDenied;
    }
    std::vector<GvcpAnswer> answers = MakeAnswers(command, *outcome);
    if (Changes(command)) {
        Remember(aDatagram, command, answers);
    }
    return Deliver(std::move(answers));
}

std::optional<GvcpResponder::Outcome> GvcpResponder::Execute(const Command &aCommand, bool aBroadcast)
{
    if (aCommand.Is(Gvcp::Command::Discovery)) {
        return Discover();
    }
    if (aCommand.Is(Gvcp::Command::ForceIP)) {
        return ForceIP(aCommand);
    }
    if (aBroadcast) {  // everything else is for one device
        return std::nullopt;
    }
    switch (static_cast<Gvcp::Command>(aCommand.mCode)) {
        case Gvcp::Command::ReadRegister:
            return ReadRegisters(aCommand);
        case Gvcp::Command::WriteRegister:
            return WriteRegisters(aCommand);
        case Gvcp::Command::ReadMemory:
            return ReadMemory(aCommand);
        case Gvcp::Command::WriteMemory:
            return WriteMemory(aCommand);
        case Gvcp::Command::PacketResend:
            Resend(aCommand);
            return std::nullopt;
        default:
            return Outcome{Status::NotImplemented, {}, {}};
    }
}

GvcpResponder::Outcome GvcpResponder::Discover() const
{
    Outcome outcome;
    outcome.mPayload.resize(Gvcp::discoverySize);
    for (uint32_t address = 0; address < Gvcp::discoverySize; address += 4) {
        Put32(&outcome.mPayload[address], mPort->Peek32(address));
    }
    return outcome;
}

std::optional<GvcpResponder::Outcome> GvcpResponder::ForceIP(const Command &aCommand)
{
    const auto forceIP = Gvcp::ParseForceIP(aCommand.mPayload);
    if (!forceIP) {
        return Outcome{Status::InvalidParameter, {}, {}};
    }
    const uint64_t mine = mPort->Peek64(Register::GevMACAddress) & 0xFFFFFFFFFFFF;
    if (forceIP->mMACAddress != mine) {
        return std::nullopt;
    }
    if (forceIP->mIPAddress == 0 && GetControlValue() != 0) {
        return Outcome{Status::AccessDenied, {}, {}};
    }
    const bool taken = IsValid(*forceIP) && mActions.mForceIP(*forceIP);
    return Outcome{taken ? Status::Success : Status::InvalidParameter, {}, {}};
}

GvcpResponder::Outcome GvcpResponder::ReadRegisters(const Command &aCommand)
{
    const auto addresses = Gvcp::ParseWords(aCommand.mPayload);
    if (!addresses) {
        return Outcome{Status::InvalidParameter, {}, {}};
    }
    Outcome outcome;
    for (const uint32_t address : *addresses) {
        uint8_t value[4] = {};
        outcome.mStatus = Read(aCommand.mSource, address, value, sizeof value, outcome);
        if (outcome.mStatus != Status::Success) {
            break;
        }
        outcome.mPayload.insert(outcome.mPayload.end(), value, value + sizeof value);
    }
    return outcome;
}

GvcpResponder::Outcome GvcpResponder::WriteRegisters(const Command &aCommand)
{
    const auto entries = Gvcp::ParseWriteRegister(aCommand.mPayload);
    if (!entries) {
        return Outcome{Status::InvalidParameter, Gvcp::BuildWriteAck(0), {}};
    }
    Outcome outcome;
    uint16_t written = 0;
    for (const Gvcp::RegisterValue &entry : *entries) {
        uint8_t value[4];
        Put32(value, entry.mValue);
        outcome.mStatus = Write(aCommand.mSource, entry.mAddress, value, sizeof value, outcome);
        if (outcome.mStatus != Status::Success) {
            break;
        }
        ++written;
    }
    outcome.mPayload = Gvcp::BuildWriteAck(written);  // also the index of the one that failed
    return outcome;
}

GvcpResponder::Outcome GvcpResponder::ReadMemory(const Command &aCommand)
{
    const auto request = Gvcp::ParseReadMemory(aCommand.mPayload);
    if (!request || request->mCount == 0 || request->mCount % 4 != 0 || request->mCount > Gvcp::maxReadMemory) {
        return Outcome{Status::InvalidParameter, {}, {}};
    }
    Outcome outcome;
    std::vector<uint8_t> data(request->mCount);
    outcome.mStatus = Read(aCommand.mSource, request->mAddress, data.data(), request->mCount, outcome);
    if (outcome.mStatus == Status::Success) {
        outcome.mPayload = Gvcp::BuildMemoryData(request->mAddress, data);
    }
    return outcome;
}

GvcpResponder::Outcome GvcpResponder::WriteMemory(const Command &aCommand)
{
    const auto request = Gvcp::ParseMemoryData(aCommand.mPayload);
    if (!request || request->mData.empty() || request->mData.size() % 4 != 0) {
        return Outcome{Status::InvalidParameter, Gvcp::BuildWriteAck(0), {}};
    }
    const auto length = static_cast<uint16_t>(request->mData.size());
    if (Touches(request->mAddress, length, Register::GevCCP, 4)) {
        // control is taken with a register write only
        return Outcome{Status::WriteProtect, Gvcp::BuildWriteAck(0), {}};
    }
    Outcome outcome;
    outcome.mStatus = Write(aCommand.mSource, request->mAddress, request->mData.data(), length, outcome);
    outcome.mPayload = Gvcp::BuildWriteAck(outcome.mStatus == Status::Success ? length : 0);
    return outcome;
}

void GvcpResponder::Resend(const Command &aCommand)
{
    if (const auto request = Gvcp::ParsePacketResend(aCommand.mPayload, (aCommand.mFlags & Gvcp::flagExtendedIds) != 0))
    {
        mActions.mResend(*request);
        return;
    }
    std::lock_guard lock(mMutex);
    ++mStatistics.mInvalid;
}

Status GvcpResponder::Read(const Endpoint &aSource, uint32_t aAddress, uint8_t *aData, uint32_t aLength,
                           Outcome &aOutcome)
{
    if (const Status status = ApplyRules(aAddress, aLength, false, aOutcome); status != Status::Success) {
        return status;
    }
    if (aAddress % 4 != 0) {
        return Status::BadAlignment;
    }
    {
        std::lock_guard lock(mMutex);
        if (!mPrivilege.MayRead(aSource)) {
            return Status::AccessDenied;
        }
    }
    return ToStatus(mPort->Read(aAddress, aData, aLength));
}

Status GvcpResponder::Write(const Endpoint &aSource, uint32_t aAddress, const uint8_t *aData, uint32_t aLength,
                            Outcome &aOutcome)
{
    if (const Status status = ApplyRules(aAddress, aLength, true, aOutcome); status != Status::Success) {
        return status;
    }
    if (aAddress % 4 != 0) {
        return Status::BadAlignment;
    }
    if (aAddress == Register::GevCCP) {
        return WriteControl(aSource, Get32(aData));
    }
    {
        std::lock_guard lock(mMutex);
        if (!mPrivilege.MayWrite(aSource)) {
            return Status::AccessDenied;
        }
    }
    return ToStatus(mPort->Write(aAddress, aData, aLength));
}

Status GvcpResponder::WriteControl(const Endpoint &aSource, uint32_t aValue)
{
    const auto key = static_cast<uint16_t>(mPort->Peek32(Register::GevControlSwitchoverKey));
    bool lost = false;
    {
        std::lock_guard lock(mMutex);
        const bool held = mPrivilege.GetHolder().has_value();
        if (!mPrivilege.Request(aSource, aValue, key, Clock::now())) {
            return Status::AccessDenied;
        }
        lost = held && !mPrivilege.GetHolder();
        ShowControl();
    }
    if (lost) {
        mActions.mControlLost();
    }
    return Status::Success;
}

Status GvcpResponder::ApplyRules(uint32_t aAddress, uint32_t aLength, bool aWrite, Outcome &aOutcome)
{
    std::lock_guard lock(mMutex);
    for (const PendingRule &rule : mFaults.mPending) {
        if (Touches(aAddress, aLength, rule.mAddress, rule.mLength)) {
            aOutcome.mPending = rule.mTime;
            break;
        }
    }
    for (auto rule = mFaults.mStatuses.begin(); rule != mFaults.mStatuses.end(); ++rule) {
        const bool kind = rule->mAccess == AccessKind::Both || (rule->mAccess == AccessKind::Write) == aWrite;
        if (kind && Touches(aAddress, aLength, rule->mAddress, rule->mLength)) {
            const auto status = static_cast<Status>(rule->mStatus);
            if (rule->mCount != 0 && --rule->mCount == 0) {
                mFaults.mStatuses.erase(rule);
            }
            return status;
        }
    }
    return Status::Success;
}

bool GvcpResponder::IsInSubnet(uint32_t aAddress) const
{
    return ((aAddress ^ mPort->Peek32(Register::GevCurrentIPAddress)) &
            mPort->Peek32(Register::GevCurrentSubnetMask)) == 0;
}

std::chrono::milliseconds GvcpResponder::GetHeartbeatTimeout() const
{
    return std::chrono::milliseconds(mPort->Peek32(Register::GevHeartbeatTimeout));
}

void GvcpResponder::ShowControl()
{
    const Endpoint holder = mPrivilege.GetHolder().value_or(Endpoint());
    mPort->Poke32(Register::GevCCP, mPrivilege.GetValue());
    mPort->Poke32(Register::GevPrimaryApplicationPort, holder.mPort);
    mPort->Poke32(Register::GevPrimaryApplicationIPAddress, holder.mAddress);
}

std::optional<GvcpResponder::Clock::time_point> GvcpResponder::CheckHeartbeat(Clock::time_point aNow)
{
    {
        std::lock_guard lock(mMutex);
        if (!mPrivilege.GetHolder()) {
            return std::nullopt;
        }
        if (mPort->Peek32(Register::GevGVCPConfiguration) & HeartbeatDisabled) {
            return aNow + std::chrono::milliseconds(100);  // it may be enabled again
        }
        if (!mPrivilege.IsExpired(aNow, GetHeartbeatTimeout())) {
            return mPrivilege.GetExpiry(GetHeartbeatTimeout());
        }
        mPrivilege.Release();
        ++mStatistics.mExpired;
        ShowControl();
    }
    mActions.mControlLost();
    return std::nullopt;
}

void GvcpResponder::OverrideControl(const Endpoint &aHolder, uint32_t aValue)
{
    {
        std::lock_guard lock(mMutex);
        if (aValue & (ControlPrivilege::Exclusive | ControlPrivilege::Control)) {
            mPrivilege.Force(aHolder, aValue, Clock::now());
        }
        else {
            mPrivilege.Release();
        }
        ShowControl();
    }
    mActions.mControlLost();
}

uint32_t GvcpResponder::GetControlValue() const
{
    std::lock_guard lock(mMutex);
    return mPrivilege.GetValue();
}

std::optional<Endpoint> GvcpResponder::GetController() const
{
    std::lock_guard lock(mMutex);
    return mPrivilege.GetHolder();
}

void GvcpResponder::SetFaults(const ControlFaults &aFaults)
{
    std::lock_guard lock(mMutex);
    mFaults = aFaults;
}

ControlFaults GvcpResponder::GetFaults() const
{
    std::lock_guard lock(mMutex);
    return mFaults;
}

ControlStatistics GvcpResponder::GetStatistics() const
{
    std::lock_guard lock(mMutex);
    return mStatistics;
}

std::vector<GvcpAnswer> GvcpResponder::MakeAnswers(const Command &aCommand, const Outcome &aOutcome)
{
    std::vector<GvcpAnswer> answers;
    if (!aCommand.IsAckRequired()) {
        return answers;
    }
    if (aOutcome.mPending.count() > 0) {
        // Announced with a margin, so that the answer is there before its time has run out.
        const uint64_t announced =
            static_cast<uint64_t>(aOutcome.mPending.count()) + mPort->Peek32(Register::GevPendingTimeout);
        const auto payload = Gvcp::BuildPendingAck(static_cast<uint16_t>(std::min<uint64_t>(announced, 0xFFFF)));
        answers.push_back(
            {Gvcp::BuildAck(Status::Success, Gvcp::Ack::Pending, aCommand.mRequestId, payload), false, aCommand.mNow});
    }
    const Gvcp::Ack ack = Gvcp::GetAck(static_cast<Gvcp::Command>(aCommand.mCode));
    GvcpAnswer answer{Gvcp::BuildAck(aOutcome.mStatus, ack, aCommand.mRequestId, aOutcome.mPayload), false,
                      aCommand.mNow + aOutcome.mPending};
    const bool discovery = aCommand.Is(Gvcp::Command::Discovery);
    if (discovery || aCommand.Is(Gvcp::Command::ForceIP)) {
        // An application in another subnet would not get an answer that is sent to it alone.
        answer.mBroadcast = (aCommand.mFlags & Gvcp::flagBroadcastAck) && !IsInSubnet(aCommand.mSource.mAddress);
    }
    std::lock_guard lock(mMutex);
    if (discovery) {
        if (const uint32_t longest = mPort->Peek32(Register::GevDiscoveryAckDelay) & 0xFFFF) {
            answer.mDue += std::chrono::milliseconds(mRandom() % (longest + 1));
        }
    }
    answer.mDue += mFaults.mDelay;
    answers.push_back(std::move(answer));
    return answers;
}

std::vector<GvcpAnswer> GvcpResponder::Deliver(std::vector<GvcpAnswer> aAnswers)
{
    std::lock_guard lock(mMutex);
    if (!aAnswers.empty() && mFaults.mLoseAnswers > 0) {
        --mFaults.mLoseAnswers;
        return {};
    }
    for (GvcpAnswer &answer : aAnswers) {
        if (mFaults.mCorruptAnswers > 0) {
            --mFaults.mCorruptAnswers;
            Corrupt(mFaults.mCorruption, answer.mBytes);
        }
    }
    return aAnswers;
}

std::optional<std::vector<GvcpAnswer>> GvcpResponder::FindRepeat(std::span<const uint8_t> aDatagram,
                                                                 const Command &aCommand)
{
    std::lock_guard lock(mMutex);
    const auto found = std::find_if(mExecuted.begin(), mExecuted.end(), [&](const Executed &aExecuted) {
        return aExecuted.mSource == aCommand.mSource && aCommand.mNow - aExecuted.mTime < RepeatTime &&
               std::equal(aDatagram.begin(), aDatagram.end(), aExecuted.mDatagram.begin(), aExecuted.mDatagram.end());
    });
    if (found == mExecuted.end()) {
        return std::nullopt;
    }
    ++mStatistics.mRepeats;
    std::vector<GvcpAnswer> answers = found->mAnswers;
    // An answer that is still to come is not sent twice.
    std::erase_if(answers, [&aCommand](const GvcpAnswer &aAnswer) { return aAnswer.mDue > aCommand.mNow; });
    return answers;
}

void GvcpResponder::Remember(std::span<const uint8_t> aDatagram, const Command &aCommand,
                             const std::vector<GvcpAnswer> &aAnswers)
{
    std::lock_guard lock(mMutex);
    std::erase_if(mExecuted, [&aCommand](const Executed &aExecuted) { return aExecuted.mSource == aCommand.mSource; });
    if (mExecuted.size() == MaxExecuted) {
        mExecuted.erase(mExecuted.begin());
    }
    mExecuted.push_back(
        {aCommand.mSource, std::vector<uint8_t>(aDatagram.begin(), aDatagram.end()), aCommand.mNow, aAnswers});
}

}  // namespace LxEmulator
