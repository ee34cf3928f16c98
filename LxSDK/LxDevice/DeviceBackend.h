#pragma once

// Internal: how the public classes reach whatever finds and drives devices.

#include <memory>
#include <string>
#include <vector>

#include "LxBase/LxResult.h"
#include "LxDevice/LxDevice.h"

class LxDeviceInfo;
class LxInterface;

namespace LxDetail
{

/// What a search passes to a backend, and where the backend reports.
class SearchContext
{
public:
    virtual ~SearchContext() = default;

    /// How long to wait for answers, in milliseconds.
    virtual uint32_t GetTimeout() const = 0;
    virtual bool IsSubnetBroadcastEnabled() const = 0;
    /// True once the caller no longer wants results.
    virtual bool IsCancelled() const = 0;
    /// A file descriptor that becomes readable when IsCancelled() does, to be polled while waiting; -1 if there is
    /// none.
    virtual int GetCancelDescriptor() const { return -1; }
    /// Tells the sinks about a device, on this thread.
    virtual void ReportDevice(const LxInterface *aInterface, const LxDeviceInfo *aInfo) = 0;
};

/// The part of a backend that belongs to one LxSystem: its interfaces and device informations.
///
/// Objects live as long as the scanner and are updated in place; a device that vanished keeps its object.
/// UpdateInterfaces(), Find() and FindDevice() are never called at the same time on one scanner; reading the handed-out
/// objects is safe at any time.
class DeviceScanner
{
public:
    virtual ~DeviceScanner() = default;

    /// Brings the list of interfaces up to date, at once and without traffic.
    virtual void UpdateInterfaces() = 0;
    /// The interfaces, in a fixed order; new ones are appended.
    virtual std::vector<const LxInterface *> GetInterfaces() const = 0;
    /// Searches and reports until the time-out or, for a backend that knows at once, until it has reported.
    virtual void Find(SearchContext &aContext) = 0;
    /// Searches one device by address. NotFound when this backend has none there.
    virtual LxResult FindDevice(const LxString &aAddress, const LxDeviceInfo **aFound) = 0;
};

/// One way of reaching devices: real ones over libaravis and sockets, or simulated ones.
class DeviceBackend
{
public:
    virtual ~DeviceBackend() = default;

    virtual const char *GetName() const = 0;
    virtual std::unique_ptr<DeviceScanner> CreateScanner() = 0;
    /// Connects to a device that a scanner of this backend found. NotSupported when the information is another
    /// backend's.
    virtual LxResult Connect(const LxDeviceInfo &aInfo, LxDeviceAccess aAccess, std::unique_ptr<LxDevice> &aDevice) = 0;

    /// GigE Vision operations by address; NotFound when this backend knows no such device, and the next is asked.
    virtual LxResult GetAccessType(const LxString &aIPAddress, int &aType);
    virtual LxResult SetGEVIPConfiguration(const LxString &aMACAddress, const LxString &aIPAddress,
                                           const LxString &aSubnetMask, const LxString &aDefaultGateway);
    virtual LxResult SetKelvraIPConfiguration(const LxString &aMACAddress, const LxString &aIPAddress,
                                              const LxString &aSubnetMask, const LxString &aDefaultGateway);
};

/// The backends of this process, the simulation first. Thread-safe.
class DeviceBackends
{
public:
    /// All active backends, in the order in which they are asked.
    static std::vector<std::shared_ptr<DeviceBackend>> Get();
    /// Puts a backend in front of the others, for example the simulation or a test's own.
    static void Add(std::shared_ptr<DeviceBackend> aBackend);
    static void Remove(const std::shared_ptr<DeviceBackend> &aBackend);
    /// While on, the backends of real devices are left out. Nested calls are counted.
    static void SetRealDevicesHidden(bool aHidden);
};

/// Makes the backends of real devices; defined beside the backends.
std::vector<std::shared_ptr<DeviceBackend>> CreateRealDeviceBackends();
/// The name and version, at run time, of the library below the backends of real devices; defined beside them.
std::string GetTransportLibrary();
/// Adds the simulation when an environment variable asks for it; defined beside it. Called once, before the backends
/// are looked at for the first time.
void EnableBackendsByEnvironment();

}  // namespace LxDetail
