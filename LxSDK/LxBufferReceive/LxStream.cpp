#include "LxBufferReceive/LxStream.h"

#include <mutex>
#include <new>

#include "LxBufferReceive/StreamSource.h"
#include "LxDevice/LxDevice.h"

namespace
{

/// Nothing is thrown across the public boundary.
template <class Operation>
LxResult Guard(Operation aOperation)
{
    try {
        return aOperation();
    }
    catch (const std::bad_alloc &) {
        return LxResult(LxResultCode::NoMemory);
    }
    catch (const std::exception &exception) {
        return LxResult(LxResultCode::Failed, exception.what());
    }
}

LxResult NotOpen()
{
    return LxResult(LxResultCode::InvalidState, "The stream is not open.");
}

LxResult CheckConfiguration(const LxStreamConfiguration &aConfiguration)
{
    if (aConfiguration.mBufferCount < 2 || aConfiguration.mBufferCount > 64) {
        return LxResult(LxResultCode::InvalidArgument, "A stream has 2 to 64 buffers.");
    }
    if (aConfiguration.mQueueLimit < 1 || aConfiguration.mQueueLimit > 32) {
        return LxResult(LxResultCode::InvalidArgument, "The queue of a stream holds 1 to 32 buffers.");
    }
    return LxResult();
}

}  // namespace

class LX_NO_EXPORT LxStream::Data
{
public:
    std::shared_ptr<LxDetail::StreamReceiver> Get(bool *aStarted = nullptr)
    {
        std::lock_guard lock(mMutex);
        if (aStarted != nullptr) {
            *aStarted = mStarted;
        }
        return mReceiver;
    }

    std::mutex mChange;  // held by Open, Close, Start and Stop, so that they follow one another
    std::mutex mMutex;   // guards the members below
    std::shared_ptr<LxDetail::StreamReceiver> mReceiver;
    bool mStarted = false;
};

LxStream::LxStream() : mData(std::make_unique<Data>()) {}

LxStream::~LxStream()
{
    Close();
}

LxResult LxStream::Open(LxDevice *aDevice, const LxStreamConfiguration &aConfiguration)
{
    return Guard([&] {
        if (aDevice == nullptr) {
            return LxResult(LxResultCode::InvalidArgument, "There is no device to open a stream on.");
        }
        if (const LxResult result = CheckConfiguration(aConfiguration); !result.IsOK()) {
            return result;
        }
        std::lock_guard change(mData->mChange);
        if (mData->Get() != nullptr) {
            return LxResult(LxResultCode::AlreadyOpen, "The stream is open already.");
        }
        auto *source = dynamic_cast<LxDetail::StreamSource *>(aDevice);
        if (source == nullptr) {
            return LxResult(LxResultCode::NotSupported, "The device does not stream.");
        }
        if (!aDevice->IsConnected()) {
            return LxResult(LxResultCode::NotConnected, "The device is not connected.");
        }
        if (aDevice->GetAccess() == LxDeviceAccess::ReadOnly) {
            return LxResult(LxResultCode::AccessDenied,
                            "The device is connected for reading only. Streaming needs control of the device.");
        }
        std::unique_ptr<LxDetail::StreamReceiver> receiver;
        if (const LxResult result = source->CreateReceiver(aConfiguration, receiver); !result.IsOK()) {
            return result;
        }
        std::lock_guard lock(mData->mMutex);
        mData->mReceiver = std::move(receiver);
        return LxResult();
    });
}

LxResult LxStream::Close()
{
    return Guard([&] {
        const LxResult result = Stop();
        std::lock_guard change(mData->mChange);
        std::shared_ptr<LxDetail::StreamReceiver> receiver;  // destroyed without the inner lock
        {
            std::lock_guard lock(mData->mMutex);
            receiver.swap(mData->mReceiver);
            mData->mStarted = false;
        }
        return result;
    });
}

bool LxStream::IsOpened() const
{
    return mData->Get() != nullptr;
}

LxResult LxStream::Start()
{
    return Guard([&] {
        std::lock_guard change(mData->mChange);
        bool started = false;
        const auto receiver = mData->Get(&started);
        if (receiver == nullptr) {
            return NotOpen();
        }
        if (started) {
            return LxResult(LxResultCode::AlreadyOpen, "The stream is started already.");
        }
        const LxResult result = receiver->Start();
        std::lock_guard lock(mData->mMutex);
        mData->mStarted = result.IsOK();
        return result;
    });
}

LxResult LxStream::Stop()
{
    return Guard([&] {
        std::lock_guard change(mData->mChange);
        bool started = false;
        const auto receiver = mData->Get(&started);
        if (receiver == nullptr || !started) {
            return LxResult();
        }
        {
            std::lock_guard lock(mData->mMutex);
            mData->mStarted = false;
        }
        return receiver->Stop();
    });
}

bool LxStream::IsStarted() const
{
    bool started = false;
    mData->Get(&started);
    return started;
}

LxResult LxStream::RetrieveBuffer(std::shared_ptr<const LxBuffer> &aBuffer, uint32_t aTimeout)
{
    return Guard([&] {
        bool started = false;
        const auto receiver = mData->Get(&started);
        if (receiver == nullptr || !started) {
            return LxResult(LxResultCode::InvalidState, "The stream is not started.");
        }
        return receiver->RetrieveBuffer(aBuffer, aTimeout);
    });
}

void LxStream::GetStatistics(LxStreamStatistics &aStatistics) const
{
    aStatistics = LxStreamStatistics();
    if (const auto receiver = mData->Get()) {
        receiver->GetStatistics(aStatistics);
    }
}
