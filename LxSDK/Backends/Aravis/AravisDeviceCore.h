#pragma once

// Internal: what every connected real device does, whatever its kind.

#include <atomic>
#include <memory>

#include "Backends/Aravis/AravisConnection.h"
#include "LxBase/SinkList.h"
#include "LxBufferReceive/StreamSource.h"
#include "LxDevice/LxDevice.h"
#include "NodeMap/NodeMap.h"

namespace LxDetail
{

/// The operations of LxDevice on a connection. Thread-safe.
class AravisDeviceCore
{
public:
    /// Opens the device and reads its XML. Errors as LxSystem::Connect().
    static LxResult Open(std::unique_ptr<AravisTransport> aTransport, std::unique_ptr<AravisDeviceCore> &aCore);
    ~AravisDeviceCore();

    /// Begins to watch the device; the owner is what event sinks are given.
    void Start(LxDevice *aOwner);
    void Disconnect();
    /// Disconnects and waits for the event sink that runs, unless called from it.
    void End();
    bool IsConnected() const;
    LxDeviceAccess GetAccess() const { return mConnection->GetTransport().GetAccess(); }
    std::string GetUniqueID() const { return mConnection->GetTransport().GetUniqueID(); }
    LxGenParameterArray *GetParameters();
    std::string GetXML() const;
    ArvDevicePort &GetPort() { return *mPort; }
    LxResult ReadMemory(int64_t aAddress, uint8_t *aData, uint64_t aLength);
    LxResult WriteMemory(int64_t aAddress, const uint8_t *aData, uint64_t aLength);
    LxResult AddSink(LxDeviceEventSink *aSink);
    LxResult RemoveSink(LxDeviceEventSink *aSink);
    LxResult CreateReceiver(const LxStreamConfiguration &aConfiguration, std::unique_ptr<StreamReceiver> &aReceiver);

private:
    AravisDeviceCore(std::shared_ptr<AravisConnection> aConnection, std::shared_ptr<NodeMap> aNodeMap);

    const std::shared_ptr<AravisConnection> mConnection;
    const std::shared_ptr<ArvDevicePort> mPort;
    const std::shared_ptr<NodeMap> mNodeMap;
    std::atomic<bool> mDisconnected{false};
    const std::shared_ptr<SinkList<LxDeviceEventSink>> mSinks = std::make_shared<SinkList<LxDeviceEventSink>>();
};

}  // namespace LxDetail
