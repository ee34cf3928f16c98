#pragma once

#include <cstdint>

#include "LxBase/LxString.h"

/// What an operation of the SDK or of a window can report. Any 32-bit number can travel in an LxResult; these have a
/// name (see LxResult::GetCodeString). The numbers are part of the interface and never change.
enum class LxResultCode : uint32_t
{
    OK = 0,                           ///< Success.
    Aborted = 1,                      ///< The operation was ended by another call before it was complete.
    NotConnected = 2,                 ///< The device is not, or no longer, connected.
    NotFound = 3,                     ///< No such device, file, entry, property or feature.
    Timeout = 4,                      ///< The device did not answer in time.
    AccessDenied = 5,                 ///< Another application controls the device, or rights are missing.
    NotSupported = 6,                 ///< The device does not implement the operation.
    InvalidParameter = 7,             ///< The device rejected a parameter.
    InvalidAddress = 8,               ///< The device has no register at the address.
    WriteProtected = 9,               ///< The register cannot be written.
    BadAlignment = 10,                ///< The address or the length is not a multiple of what the device demands.
    Busy = 11,                        ///< The device or the object is in use; try again.
    ProtocolError = 12,               ///< The device answered something that the protocol does not allow.
    OutOfRange = 13,                  ///< The value is below the minimum, above the maximum or off the increment.
    TooLong = 14,                     ///< The text or the data exceed what fits.
    NotReadable = 15,                 ///< The feature cannot be read now.
    NotWritable = 16,                 ///< The feature cannot be written now.
    NotAvailable = 17,                ///< The feature is not available now.
    NotImplemented = 18,              ///< The device does not have the feature.
    GenICamError = 19,                ///< The camera's XML description is missing, broken or contradicts itself.
    InvalidDataFormat = 20,           ///< A file or a buffer does not hold what it should.
    FileError = 21,                   ///< A file cannot be opened, read or written.
    AlreadyOpen = 22,                 ///< The object is open, connected or started already.
    InvalidState = 23,                ///< The operation is not allowed in the object's present state.
    NoMemory = 24,                    ///< The memory cannot be had.
    NoSerialPort = 25,                ///< The device offers no serial port.
    Unavailable = 26,                 ///< The mode or the operation is not available on this machine.
    AlreadyShown = 28,                ///< The window is already shown.
    SerialTimeout = 30,               ///< No data came from the serial port in time.
    BufferTooSmall = 31,              ///< The buffer cannot hold the data.
    SizeMismatch = 32,                ///< The sizes of two images differ where they must be equal.
    PixelFormatNotSupported = 33,     ///< The pixel format cannot be converted.
    BufferIncomplete = 34,            ///< Packets of the frame are missing.
    NoImage = 0x0501,                 ///< The buffer carries no image.
    OperationNotImplemented = 0x604,  ///< The operation is part of the interface and does nothing.
    NoNetworkDevice = 0x0605,         ///< The device is not a network device.
    Failed = 0x4000,                  ///< The operation failed; the description says why.
    InvalidArgument = 0x4001,         ///< An argument is not valid, or no window could be made or embedded.
    Cancelled = 0x4002,               ///< The user ended a modal dialog without accepting it.
};

/// The outcome of an operation: a code, its name and a description.
///
/// The only error channel of the SDK and of the windows: nothing is thrown to the caller. A value type.
/// @thread{any; one object by one thread at a time}
class LX_API LxResult
{
public:
    /// A result with this code and no description. 0 is success.
    LxResult(uint32_t aCode = 0) : mCode(aCode) {}
    /// The same with a named code.
    LxResult(LxResultCode aCode) : mCode(static_cast<uint32_t>(aCode)) {}
    /// A result with this code and a description, UTF-8.
    LxResult(uint32_t aCode, LxString aDescription);
    /// The same with a named code.
    LxResult(LxResultCode aCode, LxString aDescription);

    /// The number; one of LxResultCode where it has a name.
    uint32_t GetCode() const { return mCode; }
    /// True when the code is 0.
    bool IsOK() const { return mCode == 0; }
    /// The name of the code in upper case with underscores, for example "ACCESS_DENIED"; for a number without a name
    /// "UNKNOWN_RESULT (0x%08X)".
    LxString GetCodeString() const;
    /// One or more sentences for the user, UTF-8, possibly empty. May start with a source location and a blank
    /// ("LxGenParameter.cpp:120 Timeout") and may hold '%' and line breaks.
    LxString GetDescription() const { return mDescription; }

    /// Results are equal when their codes are; descriptions do not count.
    bool operator==(const LxResult &aOther) const { return mCode == aOther.mCode; }
    /// The opposite.
    bool operator!=(const LxResult &aOther) const { return mCode != aOther.mCode; }
    /// Whether this is the code.
    bool operator==(LxResultCode aCode) const { return mCode == static_cast<uint32_t>(aCode); }
    /// The opposite.
    bool operator!=(LxResultCode aCode) const { return mCode != static_cast<uint32_t>(aCode); }

private:
    uint32_t mCode;
    LxString mDescription;
};
