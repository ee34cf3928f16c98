#pragma once

// Internal: the public device classes over a connection.

#include <memory>
#include <utility>

#include "Backends/Aravis/AravisDeviceCore.h"
#include "LxBase/LxLifetime.h"
#include "LxDevice/LxDeviceGEV.h"
#include "LxDevice/LxDeviceU3V.h"

namespace LxDetail
{

/// A public device class (LxDeviceGEV, LxDeviceU3V) whose operations are those of an AravisDeviceCore.
template <class Base>
class AravisDevice : public Base, public StreamSource
{
public:
    explicit AravisDevice(std::unique_ptr<AravisDeviceCore> aCore) : mCore(std::move(aCore)) { mCore->Start(this); }
    ~AravisDevice() override
    {
        LxLifetime::End(GetParameters());
        LxLifetime::End(static_cast<LxDevice *>(this));
        mCore->End();
    }

    LxResult Disconnect() override
    {
        mCore->Disconnect();
        return LxResult();
    }
    bool IsConnected() const override { return mCore->IsConnected(); }
    LxString GetUniqueID() const override { return mCore->GetUniqueID(); }
    LxDeviceAccess GetAccess() const override { return mCore->GetAccess(); }
    LxGenParameterArray *GetParameters() override { return mCore->GetParameters(); }
    LxString GetGenICamXML() const override { return mCore->GetXML(); }
    LxResult ReadMemory(int64_t aAddress, uint8_t *aData, uint64_t aLength) override
    {
        return mCore->ReadMemory(aAddress, aData, aLength);
    }
    LxResult WriteMemory(int64_t aAddress, const uint8_t *aData, uint64_t aLength) override
    {
        return mCore->WriteMemory(aAddress, aData, aLength);
    }
    LxResult RegisterEventSink(LxDeviceEventSink *aSink) override { return mCore->AddSink(aSink); }
    LxResult UnregisterEventSink(LxDeviceEventSink *aSink) override { return mCore->RemoveSink(aSink); }
    LxResult CreateReceiver(const LxStreamConfiguration &aConfiguration,
                            std::unique_ptr<StreamReceiver> &aReceiver) override
    {
        return mCore->CreateReceiver(aConfiguration, aReceiver);
    }

protected:
    const std::unique_ptr<AravisDeviceCore> mCore;
};

/// A real GigE Vision device.
class AravisDeviceGEV final : public AravisDevice<LxDeviceGEV>
{
public:
    using AravisDevice::AravisDevice;

    LxResult ReadRegister(int64_t aAddress, uint32_t &aValue) override
    {
        return mCore->GetPort().ReadRegister(aAddress, aValue);
    }
    LxResult WriteRegister(int64_t aAddress, uint32_t aValue, bool) override
    {
        return mCore->GetPort().WriteRegister(aAddress, aValue);
    }
};

/// A real USB3 Vision device.
using AravisDeviceU3V = AravisDevice<LxDeviceU3V>;

}  // namespace LxDetail
