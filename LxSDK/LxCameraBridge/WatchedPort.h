#pragma once

// Internal: a camera's registers as a port of a node map.

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "LxCameraBridge/CameraRegisters.h"
#include "NodeMap/RegisterPort.h"

namespace LxDetail
{

/// Fails fast: a camera that has stopped answering costs one access; from then on accesses fail at once, while a thread
/// asks the camera whether it is back.
class WatchedPort : public RegisterPort
{
public:
    explicit WatchedPort(std::shared_ptr<CameraRegisters> aCamera);
    ~WatchedPort() override;

    LxResult Read(uint64_t aAddress, void *aData, uint32_t aLength) override;
    LxResult Write(uint64_t aAddress, const void *aData, uint32_t aLength) override;
    LxResult GetState() const override;

private:
    LxResult Judge(const LxResult &aResult);
    void Watch();

    const std::shared_ptr<CameraRegisters> mCamera;
    mutable std::mutex mMutex;  // guards mState and mStop
    std::condition_variable mWake;
    LxResult mState;
    bool mStop = false;
    std::thread mThread;
};

}  // namespace LxDetail
