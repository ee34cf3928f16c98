#include "CommandChannel.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <optional>
#include <vector>

#include "Backends/Simulation/SimulatedRegisters.h"
#include "BigEndian.h"
#include "Parse.h"

namespace LxEmulator
{

namespace
{

using Words = std::vector<std::string>;
using Run = std::function<std::string(EmulatedCamera &aCamera, const Words &aArguments)>;

const std::string Ok = "ok";

struct Entry
{
    std::string mName;
    std::string mArguments;
    std::string mHelp;
    size_t mMinArguments;
    size_t mMaxArguments;
    Run mRun;
};

std::string Error(const std::string &aText)
{
    return "error " + aText;
}

std::string ToReply(const LxResult &aResult)
{
    if (aResult.IsOK()) {
        return Ok;
    }
    const LxString description = aResult.GetDescription();
    return Error(std::string(aResult.GetCodeString().GetAscii()) + " " + description.GetAscii());
}

std::string Hex(uint64_t aValue)
{
    char text[24];
    std::snprintf(text, sizeof text, "0x%08llX", static_cast<unsigned long long>(aValue));
    return text;
}

/// A command whose arguments are all numbers; those left out are 0.
Run Numbers(const std::function<std::string(EmulatedCamera &, const std::array<uint32_t, 4> &)> &aRun)
{
    return [aRun](EmulatedCamera &aCamera, const Words &aArguments) {
        std::array<uint32_t, 4> numbers{};
        for (size_t i = 0; i < aArguments.size(); ++i) {
            const auto number = ParseNumber(aArguments[i], UINT32_MAX);
            if (!number) {
                return Error("not a number: " + aArguments[i]);
            }
            numbers[i] = static_cast<uint32_t>(*number);
        }
        return aRun(aCamera, numbers);
    };
}

/// A command that sets one of the numbers that say what goes wrong with packets.
Run PacketFault(uint32_t PacketFaults::*aMember)
{
    return Numbers([aMember](EmulatedCamera &aCamera, const auto &aNumbers) {
        PacketFaults faults = aCamera.GetPacketFaults();
        faults.*aMember = aNumbers[0];
        aCamera.SetPacketFaults(faults);
        return Ok;
    });
}

/// A command that sets one of the counters of what goes wrong on the control channel.
Run ControlFault(uint32_t ControlFaults::*aMember)
{
    return Numbers([aMember](EmulatedCamera &aCamera, const auto &aNumbers) {
        ControlFaults faults = aCamera.GetControlFaults();
        faults.*aMember = aNumbers[0];
        aCamera.SetControlFaults(faults);
        return Ok;
    });
}

std::string SetStatus(EmulatedCamera &aCamera, const Words &aArguments)
{
    StatusRule rule;
    rule.mLength = 4;
    const auto status = ParseNumber(aArguments[0], UINT16_MAX);
    const auto address = ParseNumber(aArguments[1], UINT32_MAX);
    if (!status || *status == 0 || !address) {
        return Error("not a status and an address: " + aArguments[0] + " " + aArguments[1]);
    }
    rule.mStatus = static_cast<uint16_t>(*status);
    rule.mAddress = *address;
    for (size_t i = 2; i < aArguments.size(); ++i) {
        const std::string &word = aArguments[i];
        const auto number = ParseNumber(word.starts_with("x") ? word.substr(1) : word);
        if (word == "read" || word == "write") {
            rule.mAccess = word == "read" ? AccessKind::Read : AccessKind::Write;
        }
        else if (number && word.starts_with("x")) {
            rule.mCount = static_cast<uint32_t>(*number);
        }
        else if (number) {
            rule.mLength = *number;
        }
        else {
            return Error("not a length, \"read\", \"write\" or xCOUNT: " + word);
        }
    }
    ControlFaults faults = aCamera.GetControlFaults();
    faults.mStatuses.push_back(rule);
    aCamera.SetControlFaults(faults);
    return Ok;
}

std::string SetCorruption(EmulatedCamera &aCamera, const Words &aArguments)
{
    static const std::array<std::pair<const char *, Corruption>, 7> kinds = {{
        {"short-header", Corruption::ShortHeader},
        {"wrong-id", Corruption::WrongId},
        {"wrong-code", Corruption::WrongCode},
        {"long-length", Corruption::LongLength},
        {"short-length", Corruption::ShortLength},
        {"garbage", Corruption::Garbage},
        {"unterminated", Corruption::Unterminated},
    }};
    const auto kind =
        std::find_if(kinds.begin(), kinds.end(), [&](const auto &aKind) { return aKind.first == aArguments[0]; });
    const auto count = aArguments.size() > 1 ? ParseNumber(aArguments[1], UINT32_MAX) : uint64_t{1};
    if (kind == kinds.end() || !count) {
        return Error("not a kind of damage and a count: " + aArguments[0]);
    }
    ControlFaults faults = aCamera.GetControlFaults();
    faults.mCorruption = kind->second;
    faults.mCorruptAnswers = static_cast<uint32_t>(*count);
    aCamera.SetControlFaults(faults);
    return Ok;
}

/// "leader", "trailer", a packet id or two with '-' between them.
std::optional<PacketRange> ParseRange(const std::string &aText)
{
    if (aText == "leader") {
        return PacketRange{0, 0};
    }
    if (aText == "trailer") {
        return PacketRange{PacketRange::Trailer, PacketRange::Trailer};
    }
    const size_t dash = aText.find('-');
    const auto first = ParseNumber(aText.substr(0, dash), PacketRange::Trailer - 1);
    const auto last = dash == std::string::npos ? first : ParseNumber(aText.substr(dash + 1), PacketRange::Trailer - 1);
    if (!first || !last || *last < *first) {
        return std::nullopt;
    }
    return PacketRange{static_cast<uint32_t>(*first), static_cast<uint32_t>(*last)};
}

std::string SetDropIds(EmulatedCamera &aCamera, const Words &aArguments)
{
    PacketFaults faults = aCamera.GetPacketFaults();
    faults.mDropIds.clear();
    for (const std::string &word : aArguments) {
        const auto range = ParseRange(word);
        if (!range) {
            return Error("not packet ids: " + word);
        }
        faults.mDropIds.push_back(*range);
    }
    aCamera.SetPacketFaults(faults);
    return Ok;
}

std::string ForceIP(EmulatedCamera &aCamera, const Words &aArguments)
{
    std::array<uint32_t, 3> addresses{};
    for (size_t i = 0; i < aArguments.size(); ++i) {
        const auto address = ParseAddress(aArguments[i]);
        if (!address) {
            return Error("not an IPv4 address: " + aArguments[i]);
        }
        addresses[i] = *address;
    }
    return ToReply(aCamera.SetIPConfiguration(addresses[0], addresses[1], addresses[2]));
}

std::string Read(EmulatedCamera &aCamera, const std::array<uint32_t, 4> &aNumbers)
{
    uint8_t bytes[4] = {};
    const LxResult result = aCamera.GetCamera().GetPort()->Read(aNumbers[0], bytes, sizeof bytes);
    return result.IsOK() ? Ok + " value=" + Hex(Get32(bytes)) : ToReply(result);
}

std::string Write(EmulatedCamera &aCamera, const std::array<uint32_t, 4> &aNumbers)
{
    uint8_t bytes[4];
    Put32(bytes, aNumbers[1]);
    return ToReply(aCamera.GetCamera().GetPort()->Write(aNumbers[0], bytes, sizeof bytes));
}

std::string Poke(EmulatedCamera &aCamera, const std::array<uint32_t, 4> &aNumbers)
{
    uint8_t bytes[4];
    Put32(bytes, aNumbers[1]);
    const bool mapped = aCamera.GetCamera().GetPort()->Poke(aNumbers[0], bytes, sizeof bytes);
    return mapped ? Ok : Error("there is no register at " + Hex(aNumbers[0]));
}

std::string DescribeState(EmulatedCamera &aCamera, const Words &)
{
    namespace Register = LxDetail::SimulatedRegister;
    const LxDetail::MemoryPort &port = *aCamera.GetCamera().GetPort();
    const ControlStatistics control = aCamera.GetControlStatistics();
    const StreamStatistics stream = aCamera.GetStreamStatistics();
    const auto holder = aCamera.GetController();
    const Endpoint claimed{port.Peek32(Register::GevCurrentIPAddress), aCamera.GetEndpoint().mPort};
    std::string text = Ok + " address=" + aCamera.GetEndpoint().ToString() + " claims=" + claimed.ToString();
    text += " privilege=" + std::to_string(aCamera.GetControlValue());
    text += " controller=" + (holder ? holder->ToString() : "none");
    text += " acquiring=" + std::to_string(aCamera.GetCamera().IsAcquiring());
    const auto add = [&text](const char *aName, uint64_t aValue) {
        text += std::string(" ") + aName + "=" + std::to_string(aValue);
    };
    add("commands", control.mCommands);
    add("invalid", control.mInvalid);
    add("ignored", control.mIgnored);
    add("repeats", control.mRepeats);
    add("denied", control.mDenied);
    add("expired", control.mExpired);
    add("blocks", stream.mBlocks);
    add("packets", stream.mPackets);
    add("dropped", stream.mDropped);
    add("failed", stream.mFailed);
    add("resend-requests", stream.mResendRequests);
    add("resent", stream.mResent);
    add("unavailable", stream.mUnavailable);
    add("test-packets", stream.mTestPackets);
    return text;
}

const std::vector<Entry> &GetEntries()
{
    static const std::vector<Entry> entries = {
        {"clear", "", "end all faults", 0, 0,
         [](EmulatedCamera &aCamera, const Words &) {
             aCamera.ClearFaults();
             return Ok;
         }},
        {"freeze", "", "ignore every command and stream nothing, as if the cable were cut", 0, 0,
         [](EmulatedCamera &aCamera, const Words &) {
             aCamera.SetFrozen(true);
             return Ok;
         }},
        {"thaw", "", "end freeze", 0, 0,
         [](EmulatedCamera &aCamera, const Words &) {
             aCamera.SetFrozen(false);
             return Ok;
         }},
        {"ignore-commands", "COUNT", "the next commands are lost on their way to the camera", 1, 1,
         ControlFault(&ControlFaults::mIgnoreCommands)},
        {"lose-answers", "COUNT", "the next commands are carried out but their answers are lost", 1, 1,
         ControlFault(&ControlFaults::mLoseAnswers)},
        {"delay", "MS", "answer so much later", 1, 1, Numbers([](EmulatedCamera &aCamera, const auto &aNumbers) {
             ControlFaults faults = aCamera.GetControlFaults();
             faults.mDelay = std::chrono::milliseconds(aNumbers[0]);
             aCamera.SetControlFaults(faults);
             return Ok;
         })},
        {"status", "CODE ADDRESS [LENGTH] [read|write] [xCOUNT]",
         "answer accesses to the range (4 bytes) with a status, COUNT times or always", 2, 5, SetStatus},
        {"clear-status", "", "forget all \"status\" and \"pending\"", 0, 0,
         [](EmulatedCamera &aCamera, const Words &) {
             ControlFaults faults = aCamera.GetControlFaults();
             faults.mStatuses.clear();
             faults.mPending.clear();
             aCamera.SetControlFaults(faults);
             return Ok;
         }},
        {"pending", "ADDRESS LENGTH MS", "answer accesses to the range with a pending acknowledge first, then late", 3,
         3, Numbers([](EmulatedCamera &aCamera, const auto &aNumbers) {
             ControlFaults faults = aCamera.GetControlFaults();
             faults.mPending.push_back({aNumbers[0], aNumbers[1], std::chrono::milliseconds(aNumbers[2])});
             aCamera.SetControlFaults(faults);
             return Ok;
         })},
        {"corrupt", "KIND [COUNT]",
         "damage the next answers: short-header, wrong-id, wrong-code, long-length, short-length, garbage, "
         "unterminated (texts of a discovery)",
         1, 2, SetCorruption},
        {"take-control", "[exclusive]", "another application takes control away", 0, 1,
         [](EmulatedCamera &aCamera, const Words &aArguments) {
             if (!aArguments.empty() && aArguments[0] != "exclusive") {
                 return Error("not \"exclusive\": " + aArguments[0]);
             }
             aCamera.OverrideControl(aArguments.empty() ? ControlPrivilege::Control : ControlPrivilege::Exclusive);
             return Ok;
         }},
        {"release-control", "", "whoever has control loses it", 0, 0,
         [](EmulatedCamera &aCamera, const Words &) {
             aCamera.OverrideControl(0);
             return Ok;
         }},
        {"force-ip", "ADDRESS MASK [GATEWAY]", "take another address; 0.0.0.0 for the one from the start", 2, 3,
         ForceIP},
        {"drop-every", "N", "every n-th packet of the stream is lost; 0: none", 1, 1,
         PacketFault(&PacketFaults::mDropEvery)},
        {"drop-random", "PERMILLE [SEED]", "so many of 1000 packets are lost, at random", 1, 2,
         Numbers([](EmulatedCamera &aCamera, const auto &aNumbers) {
             PacketFaults faults = aCamera.GetPacketFaults();
             faults.mDropPermille = aNumbers[0];
             faults.mDropSeed = aNumbers[1];
             aCamera.SetPacketFaults(faults);
             return Ok;
         })},
        {"drop-ids", "[ID|ID-ID|leader|trailer]...", "these packets of every image are lost", 0, 64, SetDropIds},
        {"drop-resends", "0|1", "packets are not sent again on demand", 1, 1,
         Numbers([](EmulatedCamera &aCamera, const auto &aNumbers) {
             PacketFaults faults = aCamera.GetPacketFaults();
             faults.mDropResends = aNumbers[0] != 0;
             aCamera.SetPacketFaults(faults);
             return Ok;
         })},
        {"duplicate-every", "N", "every n-th packet comes twice; 0: none", 1, 1,
         PacketFault(&PacketFaults::mDuplicateEvery)},
        {"reorder-every", "N", "every n-th packet comes after its successor; 0: none", 1, 1,
         PacketFault(&PacketFaults::mReorderEvery)},
        {"truncate-every", "N", "every n-th packet lacks half of its data; 0: none", 1, 1,
         PacketFault(&PacketFaults::mTruncateEvery)},
        {"fault-blocks", "N", "what is wrong with packets ends after so many images; 0: it does not", 1, 1,
         PacketFault(&PacketFaults::mBlocks)},
        {"leader-size", "WIDTH HEIGHT", "leaders state this size, whatever the image has; 0 0: the true one", 2, 2,
         Numbers([](EmulatedCamera &aCamera, const auto &aNumbers) {
             PacketFaults faults = aCamera.GetPacketFaults();
             faults.mLeaderSizeX = aNumbers[0];
             faults.mLeaderSizeY = aNumbers[1];
             aCamera.SetPacketFaults(faults);
             return Ok;
         })},
        {"geometry", "WIDTH HEIGHT", "change the size of the images, also while streaming", 2, 2,
         Numbers([](EmulatedCamera &aCamera, const auto &aNumbers) {
             return ToReply(aCamera.SetGeometry(aNumbers[0], aNumbers[1]));
         })},
        {"payload", "image|gendc", "send images, or GenDC containers of one image; before the stream is started", 1, 1,
         [](EmulatedCamera &aCamera, const Words &aWords) {
             if (aWords[0] != "image" && aWords[0] != "gendc") {
                 return Error("not a payload: " + aWords[0]);
             }
             aCamera.GetCamera().SetPayloadType(aWords[0] == "gendc" ? LxPayloadType::GenDC : LxPayloadType::Image);
             return Ok;
         }},
        {"kill-stream", "", "stream nothing, though the camera goes on acquiring and answering", 0, 0,
         [](EmulatedCamera &aCamera, const Words &) {
             aCamera.SetStreamSilent(true);
             return Ok;
         }},
        {"resume-stream", "", "end kill-stream", 0, 0,
         [](EmulatedCamera &aCamera, const Words &) {
             aCamera.SetStreamSilent(false);
             return Ok;
         }},
        {"stop-acquisition", "", "the camera stops by itself", 0, 0,
         [](EmulatedCamera &aCamera, const Words &) {
             aCamera.GetCamera().AbortAcquisition();
             return Ok;
         }},
        {"read", "ADDRESS", "read a register", 1, 1, Numbers(Read)},
        {"write", "ADDRESS VALUE", "write a register as an application does", 2, 2, Numbers(Write)},
        {"poke", "ADDRESS VALUE", "change a register without any effect of a write", 2, 2, Numbers(Poke)},
        {"state", "", "who is in control, and counts of what happened", 0, 0, DescribeState},
    };
    return entries;
}

std::string GetUsage(const std::string &aName, const std::string &aArguments)
{
    return aArguments.empty() ? aName : aName + " " + aArguments;
}

}  // namespace

std::string CommandChannel::Execute(const std::string &aLine)
{
    Words words = SplitWords(aLine.substr(0, aLine.find('#')));
    if (words.empty()) {
        return std::string();
    }
    const std::string name = words.front();
    words.erase(words.begin());
    if (name == "quit" && words.empty()) {
        mDone = true;
        return Ok;
    }
    const auto &entries = GetEntries();
    const auto entry =
        std::find_if(entries.begin(), entries.end(), [&name](const Entry &aEntry) { return aEntry.mName == name; });
    if (entry == entries.end()) {
        return Error("unknown command: " + name);
    }
    if (words.size() < entry->mMinArguments || words.size() > entry->mMaxArguments) {
        return Error("usage: " + GetUsage(entry->mName, entry->mArguments));
    }
    return entry->mRun(mCamera, words);
}

std::string CommandChannel::GetHelp()
{
    std::string text;
    const auto add = [&text](const std::string &aUsage, const std::string &aHelp) {
        text += "  " + aUsage + "\n      " + aHelp + "\n";
    };
    for (const Entry &entry : GetEntries()) {
        add(GetUsage(entry.mName, entry.mArguments), entry.mHelp);
    }
    add("quit", "end the emulator");
    return text;
}

}  // namespace LxEmulator
