#pragma once

#include "LxBase/LxResult.h"
#include "LxBase/LxString.h"

class LxDevice;
class LxGenParameterArray;

/// How an application connects to a device.
enum class LxDeviceAccess : uint32_t
{
    Control = 0,    ///< Read and write; others may still read (GigE Vision control privilege).
    Exclusive = 1,  ///< Read and write; others are shut out (GigE Vision exclusive privilege).
    ReadOnly = 2,   ///< Read only; works beside an application that controls the device. No streaming.
};

/// Receives events of a device. Implemented by the application; called on a thread of the SDK with no lock held.
/// @thread{called on a thread of the SDK}
class LX_API LxDeviceEventSink
{
public:
    virtual ~LxDeviceEventSink();

    /// The device stopped answering or gave control to somebody else. Register and feature calls fail at once from
    /// now on. The device object stays valid; streams deliver nothing.
    virtual void OnLinkDisconnected(LxDevice *aDevice);
    /// The device answers again and is controlled by this object again: registers, features and streams work. The
    /// device may have restarted, so its settings may be others than before.
    virtual void OnLinkReconnected(LxDevice *aDevice);
};

/// A connected device. Made by LxSystem::Connect(); disconnected when destroyed.
///
/// All operations may be called from any thread. Destroy streams, bridges and windows that use the device first.
/// @thread{any}
class LX_API LxDevice
{
public:
    virtual ~LxDevice();
    LxDevice(const LxDevice &) = delete;
    LxDevice &operator=(const LxDevice &) = delete;

    /// Ends the connection: control is given up and every further operation fails with NotConnected. Idempotent. Does
    /// not wait for an event sink that runs; the destructor does.
    virtual LxResult Disconnect() = 0;
    /// False after Disconnect() and while the device is lost.
    virtual bool IsConnected() const = 0;
    /// A text that identifies the device, as LxDeviceInfo::GetUniqueID() gives it.
    virtual LxString GetUniqueID() const = 0;
    /// The access that the application asked for when it connected.
    virtual LxDeviceAccess GetAccess() const = 0;
    /// The features of the device; null after Disconnect().
    virtual LxGenParameterArray *GetParameters() = 0;
    /// The GenICam XML; empty after Disconnect().
    virtual LxString GetGenICamXML() const = 0;

    /// Reads bytes of the device's register space. Errors: InvalidArgument (null), NotConnected, Timeout,
    /// InvalidAddress (negative ones too), AccessDenied, BadAlignment, ProtocolError.
    virtual LxResult ReadMemory(int64_t aAddress, uint8_t *aData, uint64_t aLength) = 0;
    /// Writes bytes; on failure some may have been written. Errors: as above, and WriteProtected.
    virtual LxResult WriteMemory(int64_t aAddress, const uint8_t *aData, uint64_t aLength) = 0;

    /// Adds a sink, which the application owns; it is never called from within this call. InvalidArgument for null.
    virtual LxResult RegisterEventSink(LxDeviceEventSink *aSink) = 0;
    /// Removes a sink. When this returns no call of it runs on another thread, and none will come. May be called from
    /// within the sink's own callback. NotFound when it is not registered.
    virtual LxResult UnregisterEventSink(LxDeviceEventSink *aSink) = 0;

protected:
    LxDevice();
};
