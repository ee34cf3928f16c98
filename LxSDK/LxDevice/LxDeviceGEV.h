#pragma once

#include "LxDevice/LxDevice.h"

/// Who may do what with a GigE Vision device at the moment, from its control channel privilege register (CCP).
enum LxAccessType : int
{
    LxAccessUnknown = 0,
    LxAccessOpen = 1,       ///< Nobody controls it.
    LxAccessControl = 2,    ///< An application controls it; others may read.
    LxAccessExclusive = 3,  ///< An application has it for itself.
    LxAccessReadOnly = 4,   ///< It can only be read.
};

/// A connected GigE Vision device.
class LX_API LxDeviceGEV : public LxDevice
{
public:
    ~LxDeviceGEV() override;

    /// Reads a 32-bit register (GVCP READREG). aValue is set on success only. Errors: InvalidAddress (also for an
    /// address that is negative or exceeds 32 bits), BadAlignment, AccessDenied, Timeout, NotConnected, ProtocolError.
    virtual LxResult ReadRegister(int64_t aAddress, uint32_t &aValue) = 0;
    /// Writes a 32-bit register (GVCP WRITEREG). Errors as above, and WriteProtected.
    /// @param aWaitForAcknowledge true: returns when the device acknowledged; false: may return earlier. This
    ///        implementation always waits.
    virtual LxResult WriteRegister(int64_t aAddress, uint32_t aValue, bool aWaitForAcknowledge = true) = 0;

    /// Asks the device at an address who controls it, without connecting. Blocks up to 600 ms.
    /// @param aType one of LxAccessType; LxAccessUnknown on failure.
    /// @return InvalidArgument for a null pointer, a text that is no address, or 0.0.0.0; Timeout, ProtocolError,
    ///         NotFound (no kind of transport is active that could ask there).
    static LxResult GetAccessType(const LxString &aIPAddress, int *aType);
    /// Gives the device with this MAC address a temporary IP configuration (GVCP FORCEIP), broadcast on every adapter.
    /// Blocks up to 3 s.
    /// @return OK when the device acknowledged or answers a new discovery with the address; InvalidArgument for a text
    ///         that is no address, NotFound when no device with the MAC address answers, AccessDenied, Failed.
    static LxResult SetIPConfiguration(const LxString &aMACAddress, const LxString &aIPAddress,
                                       const LxString &aSubnetMask, const LxString &aDefaultGateway);
};
