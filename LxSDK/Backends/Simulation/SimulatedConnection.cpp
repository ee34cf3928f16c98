#include "Backends/Simulation/SimulatedConnection.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <vector>

#include "Backends/Simulation/SimulatedReceiver.h"
#include "Backends/Simulation/SimulationLog.h"

namespace LxDetail
{

namespace
{

LxResult Closed()
{
    return LxResult(LxResultCode::NotConnected, "The device has been disconnected.");
}

void Record(const char *aName, const SimulatedUnit &aUnit, int64_t aAddress, uint64_t aNumber)
{
    SimulationLog &log = SimulationLog::Get();
    if (log.IsRecording()) {
        char text[64];
        std::snprintf(text, sizeof(text), ", 0x%" PRIX64 ", 0x%" PRIX64, static_cast<uint64_t>(aAddress), aNumber);
        log.Record(aName, aUnit.GetID().GetString() + text);
    }
}

}  // namespace

SimulatedLinkPort::SimulatedLinkPort(std::shared_ptr<SimulatedUnit> aUnit, std::shared_ptr<FaultPort> aPort,
                                     LxDeviceAccess aAccess)
    : mUnit(std::move(aUnit)), mPort(std::move(aPort)), mAccess(aAccess)
{
}

LxResult SimulatedLinkPort::GetState() const
{
    return mClosed ? Closed() : mUnit->GetLinkResult();
}

LxResult SimulatedLinkPort::Judge(const LxResult &aResult)
{
    if (aResult == LxResultCode::Timeout) {
        mUnit->NoteTimeout();
    }
    return aResult;
}

LxResult SimulatedLinkPort::Read(uint64_t aAddress, void *aData, uint32_t aLength)
{
    const LxResult state = GetState();
    if (!state.IsOK()) {
        return state;
    }
    Record("ReadPort", *mUnit, static_cast<int64_t>(aAddress), aLength);
    return Judge(mPort->Read(aAddress, aData, aLength));
}

LxResult SimulatedLinkPort::Write(uint64_t aAddress, const void *aData, uint32_t aLength)
{
    const LxResult state = GetState();
    if (!state.IsOK()) {
        return state;
    }
    if (!IsWritable()) {
        return LxResult(LxResultCode::AccessDenied, "The device is connected for reading only.");
    }
    Record("WritePort", *mUnit, static_cast<int64_t>(aAddress), aLength);
    return Judge(mPort->Write(aAddress, aData, aLength));
}

bool SimulatedLinkPort::Close()
{
    const bool closes = !mClosed.exchange(true);
    if (closes) {
        ChangeState();
    }
    return closes;
}

SimulatedConnection::SimulatedConnection(std::shared_ptr<SimulatedUnit> aUnit, std::shared_ptr<SimulatedCamera> aCamera,
                                         std::shared_ptr<FaultPort> aPort, LxDeviceAccess aAccess)
    : mUnit(aUnit),
      mAccess(aAccess),
      mCamera(std::move(aCamera)),
      mPort(std::make_shared<SimulatedLinkPort>(std::move(aUnit), std::move(aPort), aAccess))
{
}

SimulatedConnection::~SimulatedConnection() = default;

LxResult SimulatedConnection::Open(const std::string &aXML)
{
    return NodeMap::Create(mPort, aXML.empty() ? mCamera->GetXML() : aXML, mNodeMap);
}

void SimulatedConnection::SetDevice(LxDevice *aDevice)
{
    std::lock_guard lock(mDeviceMutex);
    mDevice = aDevice;
}

bool SimulatedConnection::Disconnect()
{
    if (!mPort->Close()) {
        return false;
    }
    SimulationLog::Get().Record("Disconnect", mUnit->GetID().GetString());
    mUnit->Release(this);
    return true;
}

void SimulatedConnection::PostStateChange()
{
    mUnit->Post([self = shared_from_this()] { self->mPort->TellState(); });
}

bool SimulatedConnection::IsConnected() const
{
    return !mPort->IsClosed() && mUnit->GetLink() != SimulatedUnit::Link::Lost;
}

LxResult SimulatedConnection::CheckRange(int64_t aAddress, const void *aData, uint64_t aLength) const
{
    if (IsClosed()) {
        return Closed();
    }
    if (aData == nullptr && aLength > 0) {
        return LxResult(LxResultCode::InvalidArgument, "There is no memory for the data.");
    }
    if (aAddress < 0 || aLength > UINT32_MAX) {
        return LxResult(LxResultCode::InvalidAddress, "The device has no registers there.");
    }
    return LxResult();
}

LxResult SimulatedConnection::ReadMemory(int64_t aAddress, uint8_t *aData, uint64_t aLength)
{
    Record("ReadMemory", *mUnit, aAddress, aLength);
    if (const LxResult result = CheckRange(aAddress, aData, aLength); !result.IsOK()) {
        return result;
    }
    return mPort->Read(static_cast<uint64_t>(aAddress), aData, static_cast<uint32_t>(aLength));
}

LxResult SimulatedConnection::WriteMemory(int64_t aAddress, const uint8_t *aData, uint64_t aLength)
{
    Record("WriteMemory", *mUnit, aAddress, aLength);
    if (const LxResult result = CheckRange(aAddress, aData, aLength); !result.IsOK()) {
        return result;
    }
    return mPort->Write(static_cast<uint64_t>(aAddress), aData, static_cast<uint32_t>(aLength));
}

LxResult SimulatedConnection::CheckRegister(int64_t aAddress) const
{
    if (IsClosed()) {
        return Closed();
    }
    if (aAddress < 0 || aAddress > UINT32_MAX) {
        return LxResult(LxResultCode::InvalidAddress, "A register has an address of 32 bits.");
    }
    if (aAddress % 4 != 0) {
        return LxResult(LxResultCode::BadAlignment, "The address of a register is a multiple of 4.");
    }
    return LxResult();
}

LxResult SimulatedConnection::ReadRegister(int64_t aAddress, uint32_t &aValue)
{
    Record("ReadRegister", *mUnit, aAddress, 4);
    if (const LxResult result = CheckRegister(aAddress); !result.IsOK()) {
        return result;
    }
    uint8_t bytes[4];
    const LxResult result = mPort->Read(static_cast<uint64_t>(aAddress), bytes, sizeof(bytes));
    if (result.IsOK()) {
        aValue = uint32_t(bytes[0]) << 24 | uint32_t(bytes[1]) << 16 | uint32_t(bytes[2]) << 8 | bytes[3];
    }
    return result;
}

LxResult SimulatedConnection::WriteRegister(int64_t aAddress, uint32_t aValue)
{
    Record("WriteRegister", *mUnit, aAddress, aValue);
    if (const LxResult result = CheckRegister(aAddress); !result.IsOK()) {
        return result;
    }
    const uint8_t bytes[4] = {static_cast<uint8_t>(aValue >> 24), static_cast<uint8_t>(aValue >> 16),
                              static_cast<uint8_t>(aValue >> 8), static_cast<uint8_t>(aValue)};
    return mPort->Write(static_cast<uint64_t>(aAddress), bytes, sizeof(bytes));
}

void SimulatedConnection::OnLinkChanged(SimulatedUnit::Link aOld, SimulatedUnit::Link aNew)
{
    if (IsClosed()) {
        return;
    }
    const bool lost = aNew == SimulatedUnit::Link::Lost;
    if (!lost && aOld == SimulatedUnit::Link::Lost && mNodeMap != nullptr && !mStreaming) {
        mNodeMap->SetInternalInteger("TLParamsLocked", 0);  // a stream does so itself, and may have begun again
    }
    mPort->TellState();
    if (lost == (aOld == SimulatedUnit::Link::Lost)) {
        return;
    }
    std::lock_guard lock(mDeviceMutex);
    if (mDevice != nullptr) {
        mSinks.Notify([this, lost](LxDeviceEventSink *aSink) {
            if (mDevice == nullptr) {
                return;  // a sink has destroyed it
            }
            if (lost) {
                aSink->OnLinkDisconnected(mDevice);
            }
            else {
                aSink->OnLinkReconnected(mDevice);
            }
        });
    }
}

LxResult SimulatedConnection::OpenSerialPort(LxDeviceSerial aPort, std::shared_ptr<SerialPortChannel> &aChannel)
{
    if (IsClosed()) {
        return Closed();
    }
    if (!mPort->IsWritable()) {
        return LxResult(LxResultCode::AccessDenied, "The device is connected for reading only.");
    }
    const std::string name = mUnit->GetID().GetString() + ", " + LxDeviceSerialToString(aPort).GetString();
    const LxResult result = mUnit->GetSerialPort(aPort)->Open(name, this, aChannel);
    if (IsClosed()) {
        mUnit->GetSerialPort(aPort)->Release(this);  // it ended meanwhile
    }
    return result;
}

LxResult SimulatedConnection::CreateReceiver(const LxStreamConfiguration &aConfiguration,
                                             std::unique_ptr<StreamReceiver> &aReceiver)
{
    if (mStreaming.exchange(true)) {
        return LxResult(LxResultCode::Busy, "The device has one stream, which is open already.");
    }
    aReceiver = std::make_unique<SimulatedReceiver>(shared_from_this(), aConfiguration);
    return LxResult();
}

}  // namespace LxDetail
