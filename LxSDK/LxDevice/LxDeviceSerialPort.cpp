#include "LxDevice/LxDeviceSerialPort.h"

#include <mutex>

#include "LxDevice/LxDevice.h"
#include "LxDevice/LxDeviceAdapter.h"
#include "LxDevice/SerialPortSource.h"

using LxDetail::SerialPortChannel;
using LxDetail::SerialPortSource;

namespace LxDetail
{

SerialPortSource *FindSerialPortSource(ILxDeviceAdapter *aAdapter)
{
    if (auto *source = dynamic_cast<SerialPortSource *>(aAdapter)) {
        return source;
    }
    const auto *adapter = dynamic_cast<LxDeviceAdapter *>(aAdapter);
    return adapter ? dynamic_cast<SerialPortSource *>(adapter->GetDevice()) : nullptr;
}

}  // namespace LxDetail

namespace
{

bool IsPort(LxDeviceSerial aPort)
{
    return static_cast<uint32_t>(aPort) <= static_cast<uint32_t>(LxDeviceSerial::Bulk7);
}

LxResult NotOpen()
{
    return LxResult(LxResultCode::InvalidState, "The serial port is not open.");
}

}  // namespace

class LX_NO_EXPORT LxDeviceSerialPort::Data
{
public:
    std::shared_ptr<SerialPortChannel> GetChannel() const
    {
        std::lock_guard lock(mMutex);
        return mChannel;
    }

    std::mutex mChangeMutex;    // held while the port is opened or closed
    mutable std::mutex mMutex;  // guards mChannel
    std::shared_ptr<SerialPortChannel> mChannel;
};

LxDeviceSerialPort::LxDeviceSerialPort() : mData(std::make_unique<Data>()) {}

LxDeviceSerialPort::~LxDeviceSerialPort()
{
    Close();
}

bool LxDeviceSerialPort::IsSupported(ILxDeviceAdapter *aAdapter, LxDeviceSerial aPort)
{
    const SerialPortSource *source = LxDetail::FindSerialPortSource(aAdapter);
    return source && IsPort(aPort) && source->HasSerialPort(aPort);
}

LxResult LxDeviceSerialPort::Open(ILxDeviceAdapter *aAdapter, LxDeviceSerial aPort)
{
    if (aAdapter == nullptr) {
        return LxResult(LxResultCode::InvalidArgument, "There is no device.");
    }
    std::lock_guard change(mData->mChangeMutex);
    if (mData->GetChannel()) {
        return LxResult(LxResultCode::AlreadyOpen, "The serial port is open already.");
    }
    SerialPortSource *source = LxDetail::FindSerialPortSource(aAdapter);
    if (!source || !IsPort(aPort) || !source->HasSerialPort(aPort)) {
        return LxResult(LxResultCode::NoSerialPort,
                        "The device has no serial port \"" + LxDeviceSerialToString(aPort).GetString() + "\".");
    }
    std::shared_ptr<SerialPortChannel> channel;
    const LxResult result = source->OpenSerialPort(aPort, channel);
    if (result.IsOK()) {
        std::lock_guard lock(mData->mMutex);
        mData->mChannel = std::move(channel);
    }
    return result;
}

LxResult LxDeviceSerialPort::Close()
{
    std::lock_guard change(mData->mChangeMutex);
    std::shared_ptr<SerialPortChannel> channel;
    {
        std::lock_guard lock(mData->mMutex);
        channel.swap(mData->mChannel);
    }
    if (channel) {
        channel->Close();
    }
    return LxResult();
}

bool LxDeviceSerialPort::IsOpened() const
{
    return mData->GetChannel() != nullptr;
}

LxResult LxDeviceSerialPort::Write(const uint8_t *aData, uint32_t aCount, uint32_t &aWritten)
{
    aWritten = 0;
    const auto channel = mData->GetChannel();
    if (!channel) {
        return NotOpen();
    }
    if (aCount == 0) {
        return LxResult();
    }
    if (aData == nullptr) {
        return LxResult(LxResultCode::InvalidArgument, "There are no bytes to write.");
    }
    return channel->Write(aData, aCount, aWritten);
}

LxResult LxDeviceSerialPort::Read(uint8_t *aData, uint32_t aCapacity, uint32_t &aRead, uint32_t aTimeout)
{
    aRead = 0;
    const auto channel = mData->GetChannel();
    if (!channel) {
        return NotOpen();
    }
    if (aData == nullptr || aCapacity == 0) {
        return LxResult(LxResultCode::InvalidArgument, "There is no place for the bytes.");
    }
    return channel->Read(aData, aCapacity, aRead, aTimeout);
}
