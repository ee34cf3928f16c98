#include "Backends/Simulation/SimulatedReceiver.h"

#include <chrono>

#include "Backends/Simulation/SimulationLog.h"
#include "LxBuffer/LxGenDCContainer.h"
#include "LxGenICam/LxGenParameterArray.h"

namespace LxDetail
{

using namespace std::chrono_literals;

namespace
{

constexpr auto IdleInterval = 5ms;        // between looks at a camera that does not acquire
constexpr uint64_t PacketsOfADamage = 3;  // that a damaged frame lacks

}  // namespace

SimulatedReceiver::SimulatedReceiver(std::shared_ptr<SimulatedConnection> aConnection,
                                     const LxStreamConfiguration &aConfiguration)
    : mCount(SimulationLog::Get().mReceivers),
      mConnection(std::move(aConnection)),
      mCamera(mConnection->GetCamera()),
      mPool(aConfiguration.mBufferCount),
      mQueue(aConfiguration)
{
}

SimulatedReceiver::~SimulatedReceiver()
{
    Stop();
    mConnection->ReleaseStream();
}

LxResult SimulatedReceiver::StartAcquisition()
{
    NodeMap &nodeMap = *mConnection->GetNodeMap();
    const LxResult locked = nodeMap.SetInternalInteger("TLParamsLocked", 1);
    if (!locked.IsOK() && locked != LxResultCode::NotFound) {  // an XML of a test may do without it
        return locked;
    }
    const LxResult result = nodeMap.GetParameters()->ExecuteCommand("AcquisitionStart");
    if (!result.IsOK()) {
        nodeMap.SetInternalInteger("TLParamsLocked", 0);
    }
    return result;
}

LxResult SimulatedReceiver::Start()
{
    SimulationLog::Get().Record("StreamStart", mConnection->GetUnit().GetID().GetString());
    LxResult ordered;
    if (SimulationLog::Get().TakeResult("StreamStart", ordered)) {
        return ordered;
    }
    std::lock_guard lock(mMutex);
    if (mThread.joinable()) {
        return LxResult(LxResultCode::AlreadyOpen, "The stream is started already.");
    }
    mQueue.Start();
    mLossCount = mConnection->GetUnit().GetLossCount();
    if (const LxResult result = StartAcquisition(); !result.IsOK()) {
        mQueue.Stop();
        return result;
    }
    mStop = false;
    mMissingPackets = 0;
    mThread = std::thread([this] { Run(); });
    return LxResult();
}

LxResult SimulatedReceiver::Stop()
{
    std::thread thread;
    {
        std::lock_guard lock(mMutex);
        mStop = true;
        mStopped.notify_all();
        thread.swap(mThread);
    }
    if (!thread.joinable()) {
        return LxResult();
    }
    mQueue.Stop();
    thread.join();
    SimulationLog::Get().Record("StreamStop", mConnection->GetUnit().GetID().GetString());
    LxResult result;
    if (mConnection->IsConnected()) {
        result = mConnection->GetNodeMap()->GetParameters()->ExecuteCommand("AcquisitionStop");
    }
    mConnection->GetNodeMap()->SetInternalInteger("TLParamsLocked", 0);
    return result;
}

LxResult SimulatedReceiver::RetrieveBuffer(std::shared_ptr<const LxBuffer> &aBuffer, uint32_t aTimeout)
{
    return mQueue.Retrieve(aBuffer, aTimeout);
}

void SimulatedReceiver::GetStatistics(LxStreamStatistics &aStatistics) const
{
    mQueue.GetStatistics(aStatistics);
}

void SimulatedReceiver::Pause()
{
    std::unique_lock lock(mMutex);
    mStopped.wait_for(lock, IdleInterval, [this] { return mStop.load(); });
}

void SimulatedReceiver::Run()
{
    SimulatedUnit &unit = mConnection->GetUnit();
    uint64_t number = 0;
    bool lost = false;
    while (!mStop) {
        // the link may be lost and back again between two looks
        if (const uint64_t losses = unit.GetLossCount(); losses != mLossCount) {
            mLossCount = losses;
            lost = true;
            mQueue.SetLost(true);
        }
        if (!mConnection->IsConnected()) {
            Pause();
            continue;
        }
        if (lost) {
            // The device may have restarted: it knows nothing of an acquisition, and counts from 1.
            if (!StartAcquisition().IsOK()) {
                Pause();
                continue;
            }
            lost = false;
            number = 0;
            mQueue.SetLost(false);
        }
        if (!mCamera->WaitForFrame(mStop)) {
            Pause();
            continue;
        }
        ++number;
        if (!unit.IsFrozen() && !unit.TakeSkip()) {
            MakeFrame(number);
        }
    }
}

void SimulatedReceiver::MakeFrame(uint64_t aNumber)
{
    const std::shared_ptr<LxBuffer> buffer =
        mCamera->GetPayloadType() == LxPayloadType::GenDC ? MakeContainer(aNumber) : MakeImage(aNumber);
    if (buffer == nullptr) {
        mQueue.CountDropped();
        return;
    }
    buffer->SetBlockID(aNumber);
    buffer->SetTimestamp(mCamera->GetTimestamp());
    buffer->SetReceptionTime(static_cast<uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
            .count()));
    if (mConnection->GetUnit().TakeDamage()) {
        buffer->SetGenDC(nullptr);  // its descriptor may be among what is missing
        buffer->SetStatus(LxBufferStatus::MissingPackets);
        mMissingPackets += PacketsOfADamage;
        mQueue.SetPackets(0, mMissingPackets);
    }
    mQueue.Push(buffer);
}

// Null when there is no memory for a frame, as in the next.
std::shared_ptr<LxBuffer> SimulatedReceiver::MakeImage(uint64_t aNumber)
{
    const std::shared_ptr<LxBuffer> buffer = mPool.Take();
    if (buffer == nullptr) {
        return nullptr;
    }
    LxImage *image = buffer->GetImage();
    if (!image->Alloc(mCamera->GetWidth(), mCamera->GetHeight(), mCamera->GetPixelType()).IsOK()) {
        return nullptr;
    }
    mCamera->DrawFrame(aNumber, static_cast<uint8_t *>(image->GetDataPointer()), image->GetDataSize());
    return buffer;
}

std::shared_ptr<LxBuffer> SimulatedReceiver::MakeContainer(uint64_t aNumber)
{
    // an image of the pool serves as the memory of the container
    const std::shared_ptr<LxBuffer> memory = mPool.Take();
    const uint64_t size = mCamera->GetPayloadSize();
    if (memory == nullptr || size > UINT32_MAX ||
        !memory->GetImage()->Alloc(static_cast<uint32_t>(size), 1, LxPixelType::Mono8).IsOK())
    {
        return nullptr;
    }
    auto *const data = static_cast<uint8_t *>(memory->GetDataPointer());
    mCamera->DrawFrame(aNumber, data, size);
    auto buffer = std::make_shared<LxBuffer>(LxPayloadType::GenDC);
    std::shared_ptr<const LxGenDCContainer> container;
    if (LxGenDCContainer::Parse({memory, data}, size, container).IsOK()) {
        buffer->SetGenDC(std::move(container));
    }
    return buffer;
}

}  // namespace LxDetail
