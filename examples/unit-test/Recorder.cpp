#include "Recorder.h"

#include <LxGenICam/LxGenParameterArray.h>
#include <LxSystem/LxSystem.h>

LxResult Recorder::Open(const LxString &aAddress, int64_t aWidth, int64_t aHeight)
{
    LxSystem system;
    const LxDeviceInfo *info = nullptr;
    LxResult result = system.FindDevice(aAddress, &info);
    if (result.IsOK()) {
        result = LxSystem::Connect(info, LxDeviceAccess::Control, mDevice);
    }
    if (result.IsOK()) {
        result = mDevice->GetParameters()->SetIntegerValue("Width", aWidth);
    }
    if (result.IsOK()) {
        result = mDevice->GetParameters()->SetIntegerValue("Height", aHeight);
    }
    if (result.IsOK()) {
        result = mStream.Open(mDevice.get());
    }
    return result;
}

LxResult Recorder::Record(uint32_t aCount)
{
    LxResult result = mStream.Start();
    for (uint32_t i = 0; i < aCount && result.IsOK(); ++i) {
        std::shared_ptr<const LxBuffer> buffer;
        result = mStream.RetrieveBuffer(buffer, 2000);
        if (result.IsOK()) {
            ++mTaken;
            mTakenBytes += buffer->GetImage()->GetDataSize();
        }
    }
    mStream.Stop();
    return result;
}

uint64_t Recorder::Lost() const
{
    LxStreamStatistics statistics;
    mStream.GetStatistics(statistics);
    return statistics.mMissed + statistics.mIncomplete;
}

std::string Recorder::Report(const LxResult &aResult) const
{
    const std::string taken = std::to_string(mTaken) + " pictures";
    if (aResult.IsOK()) {
        return taken;
    }
    if (aResult == LxResultCode::NotConnected || aResult == LxResultCode::Timeout) {
        return taken + ", then the camera was gone";
    }
    return aResult.GetDescription().GetString();
}
