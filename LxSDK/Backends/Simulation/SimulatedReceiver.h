#pragma once

// Internal: the stream of a simulated device.

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "Backends/Simulation/SimulatedConnection.h"
#include "Backends/Simulation/SimulationLog.h"
#include "LxBufferReceive/BufferPool.h"
#include "LxBufferReceive/FrameQueue.h"
#include "LxBufferReceive/StreamSource.h"

namespace LxDetail
{

/// Draws the frames of a simulated camera on a thread of its own. When the device was lost and is back, the acquisition
/// is started again.
class SimulatedReceiver : public StreamReceiver
{
public:
    SimulatedReceiver(std::shared_ptr<SimulatedConnection> aConnection, const LxStreamConfiguration &aConfiguration);
    ~SimulatedReceiver() override;

    LxResult Start() override;
    LxResult Stop() override;
    LxResult RetrieveBuffer(std::shared_ptr<const LxBuffer> &aBuffer, uint32_t aTimeout) override;
    void GetStatistics(LxStreamStatistics &aStatistics) const override;

private:
    LxResult StartAcquisition();
    void Run();
    void MakeFrame(uint64_t aNumber);
    std::shared_ptr<LxBuffer> MakeImage(uint64_t aNumber);
    std::shared_ptr<LxBuffer> MakeContainer(uint64_t aNumber);
    void Pause();

    const SimulationCount mCount;
    const std::shared_ptr<SimulatedConnection> mConnection;
    const std::shared_ptr<SimulatedCamera> mCamera;
    BufferPool mPool;
    FrameQueue mQueue;
    std::mutex mMutex;  // guards mThread, and waiting for mStop
    std::condition_variable mStopped;
    std::atomic<bool> mStop{false};
    std::thread mThread;
    // of the thread, or before it starts
    uint64_t mMissingPackets = 0;
    uint64_t mLossCount = 0;
};

}  // namespace LxDetail
