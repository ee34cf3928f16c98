#pragma once

#include <memory>

#include "LxBase/LxResult.h"
#include "LxDevice/LxDevice.h"

class LxDeviceInfo;
class LxInterface;
class LxSystemEventSink;

/// Finds the interfaces of the host and the devices at them, and connects to devices.
///
/// The interfaces are listed from construction on. All operations may be called from any thread; Find() and
/// FindDevice() of one object wait for each other. Interfaces and device informations are owned by the system, live as
/// long as it does and may be read while a search runs. So that answers with ever new identities cannot fill the
/// memory, a system tells at most 4096 network devices apart at each adapter, over its whole life: further ones are
/// neither reported nor listed, those that are known still are.
/// @thread{any}
class LX_API LxSystem
{
public:
    LxSystem();
    ~LxSystem();
    LxSystem(const LxSystem &) = delete;
    LxSystem &operator=(const LxSystem &) = delete;

    /// How long the next Find() listens, in milliseconds; 1000 by default.
    void SetDetectionTimeout(uint32_t aTimeout);
    /// As it was set, in milliseconds.
    uint32_t GetDetectionTimeout() const;
    /// Whether the next Find() also sends to the broadcast address of each adapter's subnets. Off by default; the
    /// broadcast to 255.255.255.255 is always sent.
    void SetSubnetBroadcastEnabled(bool aEnabled);
    /// As it was set.
    bool IsSubnetBroadcastEnabled() const;

    /// Searches on every interface for the detection time-out. Each answer is passed to the event sinks as it comes,
    /// and the lists of devices are replaced at the end. Blocks; it is not interrupted by the destruction of a sink.
    /// Takes at least 30 ms (or the time-out, when that is shorter), also when every device is known at once.
    ///
    /// A search that is cancelled reports nothing more from then on. The list of interfaces is the present one all the
    /// same; an interface whose search had ended by then has its new list of devices, every other one keeps the list of
    /// the search before. What was reported but is in no list stays valid.
    /// @return Aborted after CancelFind(); InvalidState from within a sink's callback.
    LxResult Find();
    /// Ends a running Find() early; it then returns Aborted. Without effect while none runs.
    void CancelFind();
    /// Searches one device by its IP address (or the connection ID of any other device), without broadcast. Blocks up
    /// to 1 s. The pointer is set to null first. NotFound when nothing answers; InvalidArgument for an empty text or a
    /// null pointer; NoMemory when too many devices are known at the adapter; InvalidState from within a sink's
    /// callback. The sinks are told about the device too. The lists of devices stay as they are.
    LxResult FindDevice(const LxString &aAddress, const LxDeviceInfo **aFound);

    /// The number of interfaces, from the last Find() or the construction.
    uint32_t GetInterfaceCount() const;
    /// The interface at an index of 0 to GetInterfaceCount() - 1, else null. The order is stable.
    const LxInterface *GetInterface(uint32_t aIndex) const;

    /// Adds a sink; adding it again changes nothing. InvalidArgument for null.
    LxResult RegisterEventSink(LxSystemEventSink *aSink);
    /// Removes a sink. When this returns no call of it runs on another thread, and none will come. May be called while
    /// a search runs and from within the sink's own callback. NotFound when the sink is not registered.
    LxResult UnregisterEventSink(LxSystemEventSink *aSink);

    /// Connects to a device. The information must be of a living LxSystem; the device is independent of it afterwards.
    /// @param aDevice the device, the caller's; what it held before is destroyed first, and it is null after a failure.
    /// @return NotConnected or Timeout (no answer), AccessDenied (another application controls it), GenICamError (its
    ///         XML is missing or broken), InvalidArgument (null information, or an access that is none), Unavailable
    ///         (its configuration does not let it be reached), NotSupported (no way to connect to this kind). The
    ///         description says what to do.
    static LxResult Connect(const LxDeviceInfo *aInfo, LxDeviceAccess aAccess, std::unique_ptr<LxDevice> &aDevice);

    /// The version of the SDK that runs, like "1.2.3"; LXSDK_VERSION_STRING is the one that the program was compiled
    /// with.
    static LxString GetVersion();
    /// The name and version, at run time, of the library that reaches real devices, like "libaravis 0.8.26".
    static LxString GetTransportLibrary();

private:
    class Data;
    std::unique_ptr<Data> mData;
};
