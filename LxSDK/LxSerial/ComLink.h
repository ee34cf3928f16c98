#pragma once

// Internal: carries bytes between a COM port of the host and a serial port of a device.

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "LxSerial/BridgedPort.h"
#include "LxSerial/ComPort.h"

namespace LxDetail
{

/// Two threads, one for each direction, from Start() until the destructor. A device that does not answer for a while is
/// asked again; a COM port that is gone stays gone.
class ComLink
{
public:
    /// The device's port is open; this closes it in the end.
    explicit ComLink(BridgedPort &aDevice) : mDevice(aDevice) {}
    ~ComLink();
    ComLink(const ComLink &) = delete;
    ComLink &operator=(const ComLink &) = delete;

    LxResult Start(const LxString &aCOMPort, const LxSerialPortConfiguration &aConfiguration);
    LxResult SetConfiguration(const LxSerialPortConfiguration &aConfiguration);
    /// False once the COM port is gone.
    bool IsOpen() const { return mOpen; }

private:
    void RunToDevice();
    void RunToHost();
    /// Waits before the device is asked again. False when the link ends.
    bool Pause();

    BridgedPort &mDevice;
    ComPort mPort;
    std::atomic<bool> mOpen{false};
    std::mutex mMutex;  // guards mStop
    std::condition_variable mStopped;
    bool mStop = false;
    std::thread mToDevice;
    std::thread mToHost;
};

}  // namespace LxDetail
