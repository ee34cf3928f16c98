#include "LxBase/LxResult.h"

#include <cstdio>
#include <utility>

namespace
{

const char *CodeName(LxResultCode aCode)
{
    switch (aCode) {
        case LxResultCode::OK:
            return "OK";
        case LxResultCode::Aborted:
            return "ABORTED";
        case LxResultCode::NotConnected:
            return "NOT_CONNECTED";
        case LxResultCode::NotFound:
            return "NOT_FOUND";
        case LxResultCode::Timeout:
            return "TIMEOUT";
        case LxResultCode::AccessDenied:
            return "ACCESS_DENIED";
        case LxResultCode::NotSupported:
            return "NOT_SUPPORTED";
        case LxResultCode::InvalidParameter:
            return "INVALID_PARAMETER";
        case LxResultCode::InvalidAddress:
            return "INVALID_ADDRESS";
        case LxResultCode::WriteProtected:
            return "WRITE_PROTECTED";
        case LxResultCode::BadAlignment:
            return "BAD_ALIGNMENT";
        case LxResultCode::Busy:
            return "BUSY";
        case LxResultCode::ProtocolError:
            return "PROTOCOL_ERROR";
        case LxResultCode::OutOfRange:
            return "OUT_OF_RANGE";
        case LxResultCode::TooLong:
            return "TOO_LONG";
        case LxResultCode::NotReadable:
            return "NOT_READABLE";
        case LxResultCode::NotWritable:
            return "NOT_WRITABLE";
        case LxResultCode::NotAvailable:
            return "NOT_AVAILABLE";
        case LxResultCode::NotImplemented:
            return "NOT_IMPLEMENTED";
        case LxResultCode::GenICamError:
            return "GENICAM_ERROR";
        case LxResultCode::InvalidDataFormat:
            return "INVALID_DATA_FORMAT";
        case LxResultCode::FileError:
            return "FILE_ERROR";
        case LxResultCode::AlreadyOpen:
            return "ALREADY_OPEN";
        case LxResultCode::InvalidState:
            return "INVALID_STATE";
        case LxResultCode::NoMemory:
            return "NO_MEMORY";
        case LxResultCode::NoSerialPort:
            return "NO_SERIAL_PORT";
        case LxResultCode::Unavailable:
            return "UNAVAILABLE";
        case LxResultCode::AlreadyShown:
            return "ALREADY_SHOWN";
        case LxResultCode::SerialTimeout:
            return "SERIAL_TIMEOUT";
        case LxResultCode::BufferTooSmall:
            return "BUFFER_TOO_SMALL";
        case LxResultCode::SizeMismatch:
            return "SIZE_MISMATCH";
        case LxResultCode::PixelFormatNotSupported:
            return "PIXEL_FORMAT_NOT_SUPPORTED";
        case LxResultCode::BufferIncomplete:
            return "BUFFER_INCOMPLETE";
        case LxResultCode::NoImage:
            return "NO_IMAGE";
        case LxResultCode::OperationNotImplemented:
            return "OPERATION_NOT_IMPLEMENTED";
        case LxResultCode::NoNetworkDevice:
            return "NO_NETWORK_DEVICE";
        case LxResultCode::Failed:
            return "FAILED";
        case LxResultCode::InvalidArgument:
            return "INVALID_ARGUMENT";
        case LxResultCode::Cancelled:
            return "CANCELLED";
    }
    return nullptr;
}

}  // namespace

LxResult::LxResult(uint32_t aCode, LxString aDescription) : mCode(aCode), mDescription(std::move(aDescription)) {}

LxResult::LxResult(LxResultCode aCode, LxString aDescription)
    : LxResult(static_cast<uint32_t>(aCode), std::move(aDescription))
{
}

LxString LxResult::GetCodeString() const
{
    if (const char *name = CodeName(static_cast<LxResultCode>(mCode))) {
        return name;
    }
    char text[40];
    std::snprintf(text, sizeof(text), "UNKNOWN_RESULT (0x%08X)", mCode);
    return text;
}
