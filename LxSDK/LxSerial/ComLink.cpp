#include "LxSerial/ComLink.h"

#include <chrono>

namespace LxDetail
{

namespace
{

constexpr uint32_t ChunkSize = 4096;
constexpr uint32_t ReadTimeout = 1000;  // ms; Close() ends a read at once
constexpr auto RetryInterval = std::chrono::milliseconds(100);

}  // namespace

ComLink::~ComLink()
{
    {
        std::lock_guard lock(mMutex);
        mStop = true;
    }
    mStopped.notify_all();
    mDevice.mPort.Close();
    if (mToDevice.joinable()) {
        mPort.Interrupt();
        mToDevice.join();
        mToHost.join();
    }
}

LxResult ComLink::Start(const LxString &aCOMPort, const LxSerialPortConfiguration &aConfiguration)
{
    const LxResult result = mPort.Open(aCOMPort, aConfiguration);
    if (result.IsOK()) {
        mOpen = true;
        mToDevice = std::thread([this] { RunToDevice(); });
        mToHost = std::thread([this] { RunToHost(); });
    }
    return result;
}

LxResult ComLink::SetConfiguration(const LxSerialPortConfiguration &aConfiguration)
{
    return mPort.SetConfiguration(aConfiguration);
}

bool ComLink::Pause()
{
    std::unique_lock lock(mMutex);
    mStopped.wait_for(lock, RetryInterval, [this] { return mStop; });
    return !mStop;
}

void ComLink::RunToDevice()
{
    uint8_t bytes[ChunkSize];
    uint32_t count = 0;
    LxResult result;
    while ((result = mPort.Read(bytes, sizeof(bytes), count)).IsOK()) {
        uint32_t written = 0;
        // What a device does not take is lost, as on a line that nobody listens to.
        if (!mDevice.Write(bytes, count, written).IsOK() && !Pause()) {
            return;
        }
    }
    if (result != LxResultCode::Aborted) {
        mOpen = false;
    }
}

void ComLink::RunToHost()
{
    uint8_t bytes[ChunkSize];
    uint32_t count = 0;
    for (;;) {
        const LxResult result = mDevice.Read(bytes, sizeof(bytes), count, ReadTimeout);
        if (result == LxResultCode::Aborted || result == LxResultCode::InvalidState) {
            return;  // the port has been closed
        }
        if (result.IsOK()) {
            if (mOpen && mPort.Write(bytes, count) == LxResultCode::NotConnected) {
                mOpen = false;
            }
        }
        else if (result != LxResultCode::SerialTimeout && !Pause()) {
            return;
        }
    }
}

}  // namespace LxDetail
