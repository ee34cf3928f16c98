#include "Backends/Simulation/SimulatedCamera.h"

#include "Backends/Simulation/SimulatedCameraData.h"

namespace LxDetail
{

SimulatedCamera::SimulatedCamera(const SimulatedCameraIdentity &aIdentity) : mData(std::make_unique<Data>(aIdentity)) {}

SimulatedCamera::~SimulatedCamera() = default;

const std::shared_ptr<MemoryPort> &SimulatedCamera::GetPort() const
{
    return mData->mPort;
}

const std::string &SimulatedCamera::GetXML() const
{
    return mData->mXML;
}

uint32_t SimulatedCamera::GetWidth() const
{
    std::lock_guard lock(mData->mMutex);
    return mData->Get(SimulatedRegister::Width);
}

uint32_t SimulatedCamera::GetHeight() const
{
    std::lock_guard lock(mData->mMutex);
    return mData->Get(SimulatedRegister::Height);
}

LxPixelType SimulatedCamera::GetPixelType() const
{
    std::lock_guard lock(mData->mMutex);
    return static_cast<LxPixelType>(mData->Get(SimulatedRegister::PixelFormat));
}

uint64_t SimulatedCamera::GetPayloadSize() const
{
    std::lock_guard lock(mData->mMutex);
    return mData->mPort->Peek64(SimulatedRegister::PayloadSize);
}

LxPayloadType SimulatedCamera::GetPayloadType() const
{
    std::lock_guard lock(mData->mMutex);
    return mData->mPayloadType;
}

void SimulatedCamera::SetPayloadType(LxPayloadType aType)
{
    std::lock_guard lock(mData->mMutex);
    mData->SetPayloadType(aType);
}

double SimulatedCamera::GetFrameRate() const
{
    std::lock_guard lock(mData->mMutex);
    return mData->GetEffectiveFrameRate();
}

bool SimulatedCamera::IsAcquiring() const
{
    std::lock_guard lock(mData->mMutex);
    return mData->mAcquiring;
}

uint64_t SimulatedCamera::GetAcquisitionCount() const
{
    std::lock_guard lock(mData->mMutex);
    return mData->mAcquisitions;
}

void SimulatedCamera::SetAcquisitionListener(std::function<void(bool aAcquiring)> aListener)
{
    std::lock_guard lock(mData->mMutex);
    mData->mListener = std::move(aListener);
}

bool SimulatedCamera::WaitForFrame(const std::atomic<bool> &aStop)
{
    return mData->WaitForFrame(aStop);
}

void SimulatedCamera::DrawFrame(uint64_t aNumber, uint8_t *aData, uint64_t aSize) const
{
    mData->DrawFrame(aNumber, aData, aSize);
}

void SimulatedCamera::AbortAcquisition()
{
    mData->AbortAcquisition();
}

void SimulatedCamera::Restart()
{
    mData->AbortAcquisition();
    std::lock_guard lock(mData->mMutex);
    mData->Restart();
}

uint64_t SimulatedCamera::GetTimestamp() const
{
    std::lock_guard lock(mData->mMutex);
    return mData->GetTimestamp(Data::Clock::now());
}

}  // namespace LxDetail
