#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "Backends/Aravis/AravisConnect.h"
#include "CameraProcess.h"
#include "LxDevice/LxDeviceGEV.h"
#include "RunningTime.h"
#include "WaitFor.h"

using Milliseconds = std::chrono::duration<double, std::milli>;

inline Milliseconds Since(std::chrono::steady_clock::time_point aStart)
{
    return std::chrono::steady_clock::now() - aStart;
}

/// How long the library takes to give a call up; a bound that nothing here may come near.
constexpr Milliseconds libraryTimeout{2500};

/// The cameras that tests run with: the emulator of this project and one of another hand.
struct CameraKind
{
    const char *mName;
    std::vector<std::string> (*mCommand)();
    int64_t mFreeMemory;  ///< an address of plain memory
    size_t mFreeSize;     ///< how many bytes of it
};

inline const CameraKind emulatorKind{"Emulator", [] { return EmulatorCommand(); }, 0xB070, 64};
inline const CameraKind fakeCameraKind{"FakeCamera", [] { return FakeCameraCommand(); }, 0x1000, 2000};

inline std::string GetKindName(const testing::TestParamInfo<CameraKind> &aInfo)
{
    return aInfo.param.mName;
}

/// Connects to a camera on this computer.
inline LxResult Connect(std::unique_ptr<LxDeviceGEV> &aDevice, LxDeviceAccess aAccess = LxDeviceAccess::Control,
                        const std::string &aAddress = "127.0.0.1", const std::string &aLocal = "127.0.0.1")
{
    LxDetail::GevConnectRequest request;
    request.mDeviceAddress = aAddress;
    request.mLocalAddress = aLocal;
    request.mUniqueID = "02:00:00:00:00:01";
    request.mInterfaceName = "lo";
    std::unique_ptr<LxDevice> device;
    LxResult result = LxDetail::ConnectGigEVision(request, aAccess, device);
    aDevice.reset(dynamic_cast<LxDeviceGEV *>(device.release()));
    return result;
}

/// Remembers the events of a device.
class EventRecorder : public LxDeviceEventSink
{
public:
    void OnLinkDisconnected(LxDevice *aDevice) override { Record('-', aDevice); }
    void OnLinkReconnected(LxDevice *aDevice) override { Record('+', aDevice); }

    /// '-' for each loss, '+' for each return.
    std::string GetEvents() const
    {
        const std::lock_guard lock(mMutex);
        return mEvents;
    }
    LxDevice *GetDevice() const
    {
        const std::lock_guard lock(mMutex);
        return mDevice;
    }

private:
    void Record(char aEvent, LxDevice *aDevice)
    {
        const std::lock_guard lock(mMutex);
        mEvents += aEvent;
        mDevice = aDevice;
    }

    mutable std::mutex mMutex;  // guards everything below
    std::string mEvents;
    LxDevice *mDevice = nullptr;
};

/// Reads a register again and again on a thread of its own.
class Reader
{
public:
    explicit Reader(LxDeviceGEV &aDevice)
        : mThread([this, &aDevice] {
              while (!mStop) {
                  uint32_t value = 0;
                  mInCall = true;
                  const bool ok = aDevice.ReadRegister(0, value).IsOK();
                  mInCall = false;
                  (ok ? mGood : mBad)++;
                  if (!ok) {
                      std::this_thread::sleep_for(std::chrono::milliseconds(1));
                  }
              }
          })
    {
    }
    ~Reader()
    {
        mStop = true;
        mThread.join();
    }

    std::atomic<bool> mStop{false};
    std::atomic<bool> mInCall{false};
    std::atomic<int> mGood{0};
    std::atomic<int> mBad{0};

private:
    std::thread mThread;
};
