#include "NodeMap/ArvSupport.h"

#include <cctype>
#include <string>

#include "NodeMap/Arv.h"

namespace LxDetail
{

namespace
{

GQuark ResultDomain()
{
    static const GQuark sQuark = g_quark_from_static_string("lx-result");
    return sQuark;
}

LxResultCode DeviceErrorCode(int aCode)
{
    switch (aCode) {
        case ARV_DEVICE_ERROR_NOT_CONNECTED:
            return LxResultCode::NotConnected;
        case ARV_DEVICE_ERROR_FEATURE_NOT_FOUND:
        case ARV_DEVICE_ERROR_NOT_FOUND:
            return LxResultCode::NotFound;
        case ARV_DEVICE_ERROR_TIMEOUT:
            return LxResultCode::Timeout;
        case ARV_DEVICE_ERROR_PROTOCOL_ERROR:
        case ARV_DEVICE_ERROR_TRANSFER_ERROR:
            return LxResultCode::ProtocolError;
        case ARV_DEVICE_ERROR_GENICAM_NOT_FOUND:
            return LxResultCode::GenICamError;
        case ARV_DEVICE_ERROR_NO_STREAM_CHANNEL:
        case ARV_DEVICE_ERROR_PROTOCOL_ERROR_NOT_IMPLEMENTED:
            return LxResultCode::NotSupported;
        case ARV_DEVICE_ERROR_NOT_CONTROLLER:
        case ARV_DEVICE_ERROR_PROTOCOL_ERROR_ACCESS_DENIED:
            return LxResultCode::AccessDenied;
        case ARV_DEVICE_ERROR_INVALID_PARAMETER:
        case ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_PARAMETER:
            return LxResultCode::InvalidParameter;
        case ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_ADDRESS:
            return LxResultCode::InvalidAddress;
        case ARV_DEVICE_ERROR_PROTOCOL_ERROR_WRITE_PROTECT:
            return LxResultCode::WriteProtected;
        case ARV_DEVICE_ERROR_PROTOCOL_ERROR_BAD_ALIGNMENT:
            return LxResultCode::BadAlignment;
        case ARV_DEVICE_ERROR_PROTOCOL_ERROR_BUSY:
            return LxResultCode::Busy;
        default:
            return LxResultCode::Failed;
    }
}

LxResultCode NodeErrorCode(int aCode)
{
    switch (aCode) {
        case ARV_GC_ERROR_PROPERTY_NOT_DEFINED:
        case ARV_GC_ERROR_PVALUE_NOT_DEFINED:
        case ARV_GC_ERROR_INVALID_PVALUE:
        case ARV_GC_ERROR_EMPTY_ENUMERATION:
        case ARV_GC_ERROR_NO_DEVICE_SET:
        case ARV_GC_ERROR_NO_EVENT_IMPLEMENTATION:
        case ARV_GC_ERROR_NODE_NOT_FOUND:
            return LxResultCode::GenICamError;
        case ARV_GC_ERROR_OUT_OF_RANGE:
            return LxResultCode::OutOfRange;
        case ARV_GC_ERROR_ENUM_ENTRY_NOT_FOUND:
            return LxResultCode::NotFound;
        case ARV_GC_ERROR_INVALID_LENGTH:
            return LxResultCode::TooLong;
        case ARV_GC_ERROR_READ_ONLY:
            return LxResultCode::NotWritable;
        case ARV_GC_ERROR_INVALID_SYNTAX:
            return LxResultCode::InvalidParameter;
        default:
            return LxResultCode::Failed;
    }
}

LxString Describe(const char *aMessage)
{
    std::string text = aMessage ? aMessage : "";
    while (!text.empty() && text[0] == '[') {
        const size_t end = text.find("] ");
        if (end == std::string::npos) {
            break;
        }
        text.erase(0, end + 2);
    }
    if (!text.empty()) {
        text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    }
    return text;
}

}  // namespace

void GObjectUnref::operator()(void *aObject) const
{
    g_object_unref(aObject);
}

ArvError::~ArvError()
{
    g_clear_error(&mError);
}

_GError **ArvError::Out()
{
    g_clear_error(&mError);
    return &mError;
}

LxResult ArvError::ToResult() const
{
    return ArvErrorToResult(mError);
}

LxResult ArvErrorToResult(const _GError *aError)
{
    if (!aError) {
        return LxResult();
    }
    if (aError->domain == ResultDomain()) {
        return LxResult(static_cast<uint32_t>(aError->code), Describe(aError->message));
    }
    LxResultCode code = LxResultCode::Failed;
    if (aError->domain == ARV_DEVICE_ERROR) {
        code = DeviceErrorCode(aError->code);
    }
    else if (aError->domain == ARV_GC_ERROR) {
        code = NodeErrorCode(aError->code);
    }
    return LxResult(code, Describe(aError->message));
}

void SetArvError(_GError **aError, const LxResult &aResult)
{
    LxString text = aResult.GetDescription();
    if (text.IsEmpty()) {
        text = aResult.GetCodeString();
    }
    g_set_error_literal(aError, ResultDomain(), static_cast<gint>(aResult.GetCode()), text.GetAscii());
}

std::mutex &ArvParserMutex()
{
    static std::mutex sMutex;
    return sMutex;
}

}  // namespace LxDetail
