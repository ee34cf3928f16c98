#include "LxSerial/LxCameraLinkPort.h"

#include <mutex>
#include <vector>

#include "LxGenICam/CameraLinkPorts.h"

using LxDetail::CameraLinkPort;

namespace
{

LxResult NotOpen()
{
    return LxResult(LxResultCode::InvalidState, "The Camera Link port is not open.");
}

}  // namespace

class LX_NO_EXPORT LxCameraLinkPort::Data
{
public:
    std::shared_ptr<CameraLinkPort> Get() const
    {
        std::lock_guard lock(mMutex);
        return mPort;
    }
    std::vector<uint32_t> GetRates() const
    {
        const auto port = Get();
        return port ? port->GetSupportedBaudRates() : std::vector<uint32_t>();
    }

    mutable std::mutex mMutex;  // guards mPort
    std::shared_ptr<CameraLinkPort> mPort;
};

LxCameraLinkPort::LxCameraLinkPort() : mData(std::make_unique<Data>()) {}

LxCameraLinkPort::~LxCameraLinkPort()
{
    Close();
}

LxResult LxCameraLinkPort::Open(const LxString &aPortID)
{
    std::lock_guard lock(mData->mMutex);
    if (mData->mPort) {
        return LxResult(LxResultCode::AlreadyOpen, "The Camera Link port is open already.");
    }
    const auto port = LxDetail::FindCameraLinkPort(aPortID);
    if (!port) {
        return LxResult(LxResultCode::NotFound, "There is no Camera Link port \"" + aPortID.GetString() + "\".");
    }
    const LxResult result = port->Claim();
    if (result.IsOK()) {
        mData->mPort = port;
    }
    return result;
}

LxResult LxCameraLinkPort::Close()
{
    std::lock_guard lock(mData->mMutex);
    if (mData->mPort) {
        mData->mPort->Release();
        mData->mPort.reset();
    }
    return LxResult();
}

bool LxCameraLinkPort::IsOpened() const
{
    return mData->Get() != nullptr;
}

LxResult LxCameraLinkPort::Write(const uint8_t *aData, uint32_t aCount, uint32_t &aWritten)
{
    aWritten = 0;
    const auto port = mData->Get();
    return port ? port->Write(aData, aCount, aWritten) : NotOpen();
}

LxResult LxCameraLinkPort::Read(uint8_t *aData, uint32_t aCapacity, uint32_t &aRead, uint32_t aTimeout)
{
    aRead = 0;
    const auto port = mData->Get();
    return port ? port->Read(aData, aCapacity, aRead, aTimeout) : NotOpen();
}

uint32_t LxCameraLinkPort::GetSupportedBaudRateCount() const
{
    return static_cast<uint32_t>(mData->GetRates().size());
}

uint32_t LxCameraLinkPort::GetSupportedBaudRate(uint32_t aIndex) const
{
    const std::vector<uint32_t> rates = mData->GetRates();
    return aIndex < rates.size() ? rates[aIndex] : 0;
}

LxResult LxCameraLinkPort::SetBaudRate(uint32_t aBaudRate)
{
    const auto port = mData->Get();
    return port ? port->SetBaudRate(aBaudRate) : NotOpen();
}
