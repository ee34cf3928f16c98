#include "Backends/Aravis/AravisDeviceCore.h"

#include <utility>

#include "Backends/Aravis/AravisStreamPump.h"
#include "Backends/Aravis/AravisStreamReceiver.h"

namespace LxDetail
{

namespace
{

LxResult CheckMemory(int64_t aAddress, const void *aData, uint64_t aLength)
{
    if (aAddress < 0) {
        return LxResult(LxResultCode::InvalidAddress, "A register address cannot be negative.");
    }
    if (!aData && aLength > 0) {
        return LxResult(LxResultCode::InvalidArgument, "There is no memory for the data.");
    }
    if (aLength > UINT32_MAX) {
        return LxResult(LxResultCode::InvalidAddress, "The device has no registers of this length.");
    }
    return LxResult();
}

}  // namespace

AravisDeviceCore::AravisDeviceCore(std::shared_ptr<AravisConnection> aConnection, std::shared_ptr<NodeMap> aNodeMap)
    : mConnection(std::move(aConnection)), mPort(mConnection->GetPort()), mNodeMap(std::move(aNodeMap))
{
}

AravisDeviceCore::~AravisDeviceCore()
{
    End();
}

LxResult AravisDeviceCore::Open(std::unique_ptr<AravisTransport> aTransport, std::unique_ptr<AravisDeviceCore> &aCore)
{
    std::shared_ptr<AravisConnection> connection;
    if (LxResult result = AravisConnection::Open(std::move(aTransport), connection); !result.IsOK()) {
        return result;
    }
    std::unique_ptr<NodeMap> nodeMap;
    if (LxResult result = NodeMap::Create(connection->GetPort(), connection->GetXML(), nodeMap); !result.IsOK()) {
        connection->Close();
        return result;
    }
    aCore.reset(new AravisDeviceCore(connection, std::move(nodeMap)));
    return LxResult();
}

void AravisDeviceCore::Start(LxDevice *aOwner)
{
    // a sink may destroy the device: then the list lives until the sink returns, and no other sink is called
    mConnection->Start(
        [sinks = mSinks, connection = mConnection.get(), nodeMap = mNodeMap.get(), aOwner](bool aConnected) {
            if (aConnected) {
                AravisStreamPump::SettleStop(*connection, *nodeMap);
            }
            sinks->Notify([connection, aOwner, aConnected](LxDeviceEventSink *aSink) {
                if (connection->GetLink().GetState() != LinkState::Closed) {
                    aConnected ? aSink->OnLinkReconnected(aOwner) : aSink->OnLinkDisconnected(aOwner);
                }
            });
        });
}

void AravisDeviceCore::Disconnect()
{
    mDisconnected = true;
    mConnection->Close();
}

void AravisDeviceCore::End()
{
    Disconnect();
    mConnection->WaitForListener();
}

bool AravisDeviceCore::IsConnected() const
{
    return mConnection->GetLink().IsUp();
}

LxGenParameterArray *AravisDeviceCore::GetParameters()
{
    return mDisconnected ? nullptr : mNodeMap->GetParameters();
}

std::string AravisDeviceCore::GetXML() const
{
    return mDisconnected ? std::string() : mConnection->GetXML();
}

LxResult AravisDeviceCore::ReadMemory(int64_t aAddress, uint8_t *aData, uint64_t aLength)
{
    if (LxResult result = CheckMemory(aAddress, aData, aLength); !result.IsOK()) {
        return result;
    }
    return mPort->Read(static_cast<uint64_t>(aAddress), aData, static_cast<uint32_t>(aLength));
}

LxResult AravisDeviceCore::WriteMemory(int64_t aAddress, const uint8_t *aData, uint64_t aLength)
{
    if (LxResult result = CheckMemory(aAddress, aData, aLength); !result.IsOK()) {
        return result;
    }
    return mPort->Write(static_cast<uint64_t>(aAddress), aData, static_cast<uint32_t>(aLength));
}

LxResult AravisDeviceCore::AddSink(LxDeviceEventSink *aSink)
{
    if (!aSink) {
        return LxResult(LxResultCode::InvalidArgument, "There is no event sink.");
    }
    mSinks->Add(aSink);
    return LxResult();
}

LxResult AravisDeviceCore::RemoveSink(LxDeviceEventSink *aSink)
{
    return mSinks->Remove(aSink) ? LxResult() : LxResult(LxResultCode::NotFound, "The event sink is not registered.");
}

LxResult AravisDeviceCore::CreateReceiver(const LxStreamConfiguration &aConfiguration,
                                          std::unique_ptr<StreamReceiver> &aReceiver)
{
    if (LxResult state = mPort->GetState(); !state.IsOK()) {
        return state;
    }
    if (GetAccess() == LxDeviceAccess::ReadOnly) {
        return LxResult(LxResultCode::AccessDenied,
                        "The device is connected read-only. Connect with control to receive its images.");
    }
    aReceiver = std::make_unique<AravisStreamReceiver>(mConnection, mNodeMap, aConfiguration);
    return LxResult();
}

}  // namespace LxDetail
