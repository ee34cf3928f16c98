#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "GigEVision/GvcpPacket.h"

constexpr uint32_t loopbackAddress = 0x7F000001;
constexpr uint64_t mac = 0x0011223344AB;

/// A command that a GvcpResponder received.
struct ReceivedCommand
{
    LxDetail::Gvcp::CommandPacket mPacket;  ///< its payload is valid during the call only
    uint32_t mSource = 0;
    uint32_t mDestination = 0;  ///< a broadcast address, or one of the responder
};

/// What it sends back.
struct Reply
{
    std::vector<uint8_t> mBytes;
    bool mBroadcast = false;  ///< to 255.255.255.255 instead of to who asked
};

/// Answers on the GVCP port whatever a function says. Runs on a thread of its own.
class GvcpResponder
{
public:
    using Script = std::function<std::vector<Reply>(const ReceivedCommand &)>;

    /// @param aNamespace the name of the network namespace ("ip netns") to answer in; empty for that of the caller.
    /// @param aAdapter the adapter to answer at; empty for every one.
    explicit GvcpResponder(Script aScript, const std::string &aNamespace = "", const std::string &aAdapter = "");
    ~GvcpResponder();
    GvcpResponder(const GvcpResponder &) = delete;
    GvcpResponder &operator=(const GvcpResponder &) = delete;

    bool IsReady() const { return mSocket >= 0; }
    /// How many commands of a kind have come.
    int GetCount(LxDetail::Gvcp::Command aCommand) const;
    /// The destination addresses of the commands of a kind.
    std::vector<uint32_t> GetDestinations(LxDetail::Gvcp::Command aCommand) const;

private:
    void Open(const std::string &aNamespace, const std::string &aAdapter);
    void Run();

    const Script mScript;
    int mSocket = -1;
    int mStop = -1;
    mutable std::mutex mMutex;  // guards mCommands
    std::vector<std::pair<uint16_t, uint32_t>> mCommands;
    std::thread mThread;
};

/// A discovery acknowledge for a command.
Reply AnswerDiscovery(const ReceivedCommand &aCommand, const LxDetail::Gvcp::Discovery &aDiscovery);
/// An acknowledge for a command with a status and payload.
Reply Answer(const ReceivedCommand &aCommand, LxDetail::Gvcp::Status aStatus,
             const std::vector<uint8_t> &aPayload = {});
/// A camera to answer as.
LxDetail::Gvcp::Discovery MakeCamera(uint64_t aMAC, uint32_t aAddress);
