#pragma once

// Internal: what one application has of a connected simulated device.

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "Backends/Simulation/SimulatedUnit.h"
#include "Backends/Simulation/SimulationLog.h"
#include "LxBase/LxLifetime.h"
#include "LxBase/SinkList.h"
#include "LxBufferReceive/StreamSource.h"
#include "LxDevice/LxDevice.h"
#include "LxDevice/SerialPortSource.h"
#include "NodeMap/NodeMap.h"

namespace LxDetail
{

/// The port of one connection: fails at once while the link is not up or the connection has ended, and does not write
/// without control.
class SimulatedLinkPort : public RegisterPort
{
public:
    SimulatedLinkPort(std::shared_ptr<SimulatedUnit> aUnit, std::shared_ptr<FaultPort> aPort, LxDeviceAccess aAccess);

    LxResult Read(uint64_t aAddress, void *aData, uint32_t aLength) override;
    LxResult Write(uint64_t aAddress, const void *aData, uint32_t aLength) override;
    LxResult GetState() const override;
    bool IsWritable() const override { return mAccess != LxDeviceAccess::ReadOnly; }

    /// False when it was closed before.
    bool Close();
    bool IsClosed() const { return mClosed; }
    using RegisterPort::ChangeState;
    using RegisterPort::TellState;

private:
    LxResult Judge(const LxResult &aResult);

    const std::shared_ptr<SimulatedUnit> mUnit;
    const std::shared_ptr<FaultPort> mPort;
    const LxDeviceAccess mAccess;
    std::atomic<bool> mClosed{false};
};

/// A connection; shared by the device object, its streams and the simulation's own thread.
class SimulatedConnection : public std::enable_shared_from_this<SimulatedConnection>
{
public:
    SimulatedConnection(std::shared_ptr<SimulatedUnit> aUnit, std::shared_ptr<SimulatedCamera> aCamera,
                        std::shared_ptr<FaultPort> aPort, LxDeviceAccess aAccess);
    ~SimulatedConnection();

    /// Makes the node map, from the camera's own XML when the text is empty.
    LxResult Open(const std::string &aXML);
    /// Binds the object that event sinks are told of; null unbinds it and waits for calls of sinks that run.
    void SetDevice(LxDevice *aDevice);
    /// Ends the connection. False when it had ended before.
    bool Disconnect();
    /// Lets the features hear of it, on the simulation's thread: a sink may wait for the thread that disconnects.
    void PostStateChange();
    bool IsConnected() const;
    bool IsClosed() const { return mPort->IsClosed(); }
    LxDeviceAccess GetAccess() const { return mAccess; }
    SimulatedUnit &GetUnit() const { return *mUnit; }
    NodeMap *GetNodeMap() const { return mNodeMap.get(); }
    const std::shared_ptr<SimulatedCamera> &GetCamera() const { return mCamera; }

    LxResult ReadMemory(int64_t aAddress, uint8_t *aData, uint64_t aLength);
    LxResult WriteMemory(int64_t aAddress, const uint8_t *aData, uint64_t aLength);
    LxResult ReadRegister(int64_t aAddress, uint32_t &aValue);
    LxResult WriteRegister(int64_t aAddress, uint32_t aValue);

    SinkList<LxDeviceEventSink> &GetSinks() { return mSinks; }
    /// At once, before OnLinkChanged().
    void OnLinkChange() { mPort->ChangeState(); }
    /// On the simulation's thread.
    void OnLinkChanged(SimulatedUnit::Link aOld, SimulatedUnit::Link aNew);

    LxResult CreateReceiver(const LxStreamConfiguration &aConfiguration, std::unique_ptr<StreamReceiver> &aReceiver);
    LxResult OpenSerialPort(LxDeviceSerial aPort, std::shared_ptr<SerialPortChannel> &aChannel);
    /// The device has one stream; its receiver calls this when it ends.
    void ReleaseStream() { mStreaming = false; }

private:
    LxResult CheckRange(int64_t aAddress, const void *aData, uint64_t aLength) const;
    LxResult CheckRegister(int64_t aAddress) const;

    const std::shared_ptr<SimulatedUnit> mUnit;
    const LxDeviceAccess mAccess;
    const std::shared_ptr<SimulatedCamera> mCamera;
    const std::shared_ptr<SimulatedLinkPort> mPort;
    std::unique_ptr<NodeMap> mNodeMap;
    SinkList<LxDeviceEventSink> mSinks;
    std::recursive_mutex mDeviceMutex;  // guards mDevice and is held while sinks run
    LxDevice *mDevice = nullptr;
    std::atomic<bool> mStreaming{false};
};

/// The public device classes: everything is done by the connection.
template <class Base>
class SimulatedDeviceOf : public Base, public StreamSource, public SerialPortSource
{
public:
    explicit SimulatedDeviceOf(std::shared_ptr<SimulatedConnection> aConnection)
        : mConnection(std::move(aConnection)), mCount(SimulationLog::Get().mDevices)
    {
        mConnection->SetDevice(this);
    }
    ~SimulatedDeviceOf() override
    {
        LxLifetime::End(mConnection->GetNodeMap()->GetParameters());
        LxLifetime::End(static_cast<LxDevice *>(this));
        mConnection->SetDevice(nullptr);
        mConnection->Disconnect();
    }

    LxResult Disconnect() override
    {
        if (mConnection->Disconnect()) {
            mConnection->PostStateChange();
        }
        return LxResult();
    }
    bool IsConnected() const override { return mConnection->IsConnected(); }
    LxString GetUniqueID() const override { return mConnection->GetUnit().GetID(); }
    LxDeviceAccess GetAccess() const override { return mConnection->GetAccess(); }
    LxGenParameterArray *GetParameters() override
    {
        return mConnection->IsClosed() ? nullptr : mConnection->GetNodeMap()->GetParameters();
    }
    LxString GetGenICamXML() const override
    {
        return mConnection->IsClosed() ? LxString() : LxString(mConnection->GetNodeMap()->GetXML());
    }
    LxResult ReadMemory(int64_t aAddress, uint8_t *aData, uint64_t aLength) override
    {
        return mConnection->ReadMemory(aAddress, aData, aLength);
    }
    LxResult WriteMemory(int64_t aAddress, const uint8_t *aData, uint64_t aLength) override
    {
        return mConnection->WriteMemory(aAddress, aData, aLength);
    }
    LxResult RegisterEventSink(LxDeviceEventSink *aSink) override
    {
        if (aSink == nullptr) {
            return LxResult(LxResultCode::InvalidArgument, "The event sink is null.");
        }
        mConnection->GetSinks().Add(aSink);
        return LxResult();
    }
    LxResult UnregisterEventSink(LxDeviceEventSink *aSink) override
    {
        return mConnection->GetSinks().Remove(aSink)
                   ? LxResult()
                   : LxResult(LxResultCode::NotFound, "The event sink is not registered.");
    }
    LxResult CreateReceiver(const LxStreamConfiguration &aConfiguration,
                            std::unique_ptr<StreamReceiver> &aReceiver) override
    {
        return mConnection->CreateReceiver(aConfiguration, aReceiver);
    }
    bool HasSerialPort(LxDeviceSerial aPort) const override
    {
        return !mConnection->IsClosed() && mConnection->GetUnit().HasSerialPort(aPort);
    }
    LxResult OpenSerialPort(LxDeviceSerial aPort, std::shared_ptr<SerialPortChannel> &aChannel) override
    {
        return mConnection->OpenSerialPort(aPort, aChannel);
    }

protected:
    const std::shared_ptr<SimulatedConnection> mConnection;

private:
    const SimulationCount mCount;
};

class SimulatedDeviceGEV : public SimulatedDeviceOf<LxDeviceGEV>
{
public:
    using SimulatedDeviceOf::SimulatedDeviceOf;

    LxResult ReadRegister(int64_t aAddress, uint32_t &aValue) override
    {
        return mConnection->ReadRegister(aAddress, aValue);
    }
    LxResult WriteRegister(int64_t aAddress, uint32_t aValue, bool) override
    {
        return mConnection->WriteRegister(aAddress, aValue);
    }
};

}  // namespace LxDetail
