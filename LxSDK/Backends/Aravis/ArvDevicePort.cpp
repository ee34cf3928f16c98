#include "Backends/Aravis/ArvDevicePort.h"

#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

#include "Backends/Aravis/BackgroundTasks.h"
#include "NodeMap/Arv.h"

namespace LxDetail
{

namespace
{

LxResult AddressError(LxResultCode aCode, const char *aReason, int64_t aAddress)
{
    char text[120];
    std::snprintf(text, sizeof(text), "%s (0x%" PRIX64 ").", aReason, static_cast<uint64_t>(aAddress));
    return LxResult(aCode, text);
}

constexpr uint64_t wordSize = 4;

}  // namespace

ArvDevicePort::ArvDevicePort(LinkMonitor &aLink, bool aGigEVision, bool aWritable)
    : mLink(aLink), mGigEVision(aGigEVision), mWritable(aWritable)
{
}

GObjectPtr<_ArvDevice> ArvDevicePort::SetDevice(GObjectPtr<_ArvDevice> aDevice)
{
    const std::lock_guard lock(mDeviceMutex);
    mDevice.swap(aDevice);
    return aDevice;
}

GObjectPtr<_ArvDevice> ArvDevicePort::AcquireDevice() const
{
    const std::lock_guard lock(mDeviceMutex);
    return GObjectPtr<_ArvDevice>(mDevice ? static_cast<ArvDevice *>(g_object_ref(mDevice.get())) : nullptr);
}

template <class Access>
LxResult ArvDevicePort::Run(bool aWrites, const Access &aAccess)
{
    if (LxResult state = mLink.GetResult(); !state.IsOK()) {
        return state;
    }
    if (aWrites && !mWritable) {
        return LxResult(LxResultCode::AccessDenied,
                        "The device is connected read-only. Connect with control to write to it.");
    }
    GObjectPtr<_ArvDevice> device = AcquireDevice();
    if (!device) {
        return LxResult(LxResultCode::NotConnected, "The device was disconnected.");
    }
    ArvError error;
    aAccess(device.get(), error.Out());
    LxResult result = error.ToResult();
    if (result == LxResultCode::Timeout) {
        GiveBackInBackground(std::move(device));  // the last reference, if it has been given back elsewhere meanwhile
        const LxResult state = mLink.GetResult();
        return state.IsOK() ? LxResult(LxResultCode::Timeout, "The device did not answer in time.") : state;
    }
    mLink.NoteSuccess();
    if (aWrites && result == LxResultCode::AccessDenied) {
        mLink.DoubtControl();
    }
    return result;
}

LxResult ArvDevicePort::Read(uint64_t aAddress, void *aData, uint32_t aLength)
{
    if (LxResult result = CheckRange(aAddress, aLength); !result.IsOK()) {
        return result;
    }
    if (aLength == 0) {
        return LxResult();
    }
    if (mGigEVision && mRegisterCommands && aLength == wordSize && aAddress % wordSize == 0) {
        return Run(false, [&](ArvDevice *aDevice, GError **aError) {
            guint32 value = 0;
            if (arv_device_read_register(aDevice, aAddress, &value, aError)) {
                value = GUINT32_TO_BE(value);
                std::memcpy(aData, &value, wordSize);
            }
        });
    }
    // GVCP reads whole words at addresses of words
    const uint64_t front = mGigEVision ? aAddress % wordSize : 0;
    const uint64_t back = mGigEVision ? (wordSize - (front + aLength) % wordSize) % wordSize : 0;
    if (front == 0 && back == 0) {
        return Run(false, [&](ArvDevice *aDevice, GError **aError) {
            arv_device_read_memory(aDevice, aAddress, aLength, aData, aError);
        });
    }
    std::vector<uint8_t> words(front + aLength + back);
    const LxResult result = Run(false, [&](ArvDevice *aDevice, GError **aError) {
        arv_device_read_memory(aDevice, aAddress - front, static_cast<guint32>(words.size()), words.data(), aError);
    });
    if (result.IsOK()) {
        std::memcpy(aData, words.data() + front, aLength);
    }
    return result;
}

LxResult ArvDevicePort::Write(uint64_t aAddress, const void *aData, uint32_t aLength)
{
    if (LxResult result = CheckRange(aAddress, aLength); !result.IsOK()) {
        return result;
    }
    if (aLength == 0) {
        return LxResult();
    }
    std::vector<uint8_t> words(static_cast<const uint8_t *>(aData), static_cast<const uint8_t *>(aData) + aLength);
    if (mGigEVision && aLength == wordSize && mRegisterCommands && aAddress % wordSize == 0) {
        guint32 value = 0;
        std::memcpy(&value, aData, wordSize);
        return Run(true, [&](ArvDevice *aDevice, GError **aError) {
            arv_device_write_register(aDevice, aAddress, GUINT32_FROM_BE(value), aError);
        });
    }
    const uint64_t front = mGigEVision ? aAddress % wordSize : 0;
    const uint64_t back = mGigEVision ? (wordSize - (front + aLength) % wordSize) % wordSize : 0;
    if (front != 0 || back != 0) {
        // what shares a word with the written bytes is written as it is
        words.assign(front + aLength + back, 0);
        if (LxResult result = Read(aAddress - front, words.data(), static_cast<uint32_t>(words.size())); !result.IsOK())
        {
            return result;
        }
        std::memcpy(words.data() + front, aData, aLength);
    }
    const uint64_t start = aAddress - front;
    return Run(true, [&](ArvDevice *aDevice, GError **aError) {
        if (!mGigEVision || mMemoryWritable) {
            arv_device_write_memory(aDevice, start, static_cast<guint32>(words.size()), words.data(), aError);
            return;
        }
        for (uint64_t i = 0; i < words.size(); i += wordSize) {
            guint32 word = 0;
            std::memcpy(&word, words.data() + i, wordSize);
            if (!arv_device_write_register(aDevice, start + i, GUINT32_FROM_BE(word), aError)) {
                return;
            }
        }
    });
}

LxResult ArvDevicePort::ReadRegister(int64_t aAddress, uint32_t &aValue)
{
    if (LxResult result = CheckRegister(aAddress); !result.IsOK()) {
        return result;
    }
    guint32 value = 0;
    const LxResult result = Run(false, [&](ArvDevice *aDevice, GError **aError) {
        arv_device_read_register(aDevice, static_cast<guint64>(aAddress), &value, aError);
    });
    if (result.IsOK()) {
        aValue = value;
    }
    return result;
}

LxResult ArvDevicePort::WriteRegister(int64_t aAddress, uint32_t aValue)
{
    if (LxResult result = CheckRegister(aAddress); !result.IsOK()) {
        return result;
    }
    return Run(true, [&](ArvDevice *aDevice, GError **aError) {
        arv_device_write_register(aDevice, static_cast<guint64>(aAddress), aValue, aError);
    });
}

// The library cuts the addresses of GigE Vision to 32 bits without a word.
LxResult ArvDevicePort::CheckRange(uint64_t aAddress, uint64_t aLength) const
{
    const uint64_t limit = mGigEVision ? UINT64_C(0x100000000) : UINT64_MAX;
    if (aAddress > limit || aLength > limit - aAddress) {
        return AddressError(LxResultCode::InvalidAddress, "The device has no registers at this address",
                            static_cast<int64_t>(aAddress));
    }
    return LxResult();
}

LxResult ArvDevicePort::CheckRegister(int64_t aAddress) const
{
    if (aAddress < 0) {
        return AddressError(LxResultCode::InvalidAddress, "A register address cannot be negative", aAddress);
    }
    if (LxResult result = CheckRange(static_cast<uint64_t>(aAddress), wordSize); !result.IsOK()) {
        return result;
    }
    if (mGigEVision && aAddress % static_cast<int64_t>(wordSize) != 0) {
        return AddressError(LxResultCode::BadAlignment, "A register address must be a multiple of 4", aAddress);
    }
    return LxResult();
}

}  // namespace LxDetail
