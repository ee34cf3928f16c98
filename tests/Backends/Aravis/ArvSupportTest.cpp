#include "NodeMap/ArvSupport.h"

#include <arv.h>
#include <gtest/gtest.h>

#include <tuple>
#include <vector>

using namespace LxDetail;

namespace
{

LxResult Map(GQuark aDomain, int aCode, const char *aText = "text")
{
    GError *error = g_error_new_literal(aDomain, aCode, aText);
    const LxResult result = ArvErrorToResult(error);
    g_error_free(error);
    return result;
}

TEST(ArvSupport, EveryErrorOfADeviceHasItsCode)
{
    const std::vector<std::pair<int, LxResultCode>> table{
        {ARV_DEVICE_ERROR_NOT_CONNECTED, LxResultCode::NotConnected},
        {ARV_DEVICE_ERROR_PROTOCOL_ERROR, LxResultCode::ProtocolError},
        {ARV_DEVICE_ERROR_TIMEOUT, LxResultCode::Timeout},
        {ARV_DEVICE_ERROR_NOT_FOUND, LxResultCode::NotFound},
        {ARV_DEVICE_ERROR_GENICAM_NOT_FOUND, LxResultCode::GenICamError},
        {ARV_DEVICE_ERROR_NOT_CONTROLLER, LxResultCode::AccessDenied},
        {ARV_DEVICE_ERROR_PROTOCOL_ERROR_NOT_IMPLEMENTED, LxResultCode::NotSupported},
        {ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_PARAMETER, LxResultCode::InvalidParameter},
        {ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_ADDRESS, LxResultCode::InvalidAddress},
        {ARV_DEVICE_ERROR_PROTOCOL_ERROR_WRITE_PROTECT, LxResultCode::WriteProtected},
        {ARV_DEVICE_ERROR_PROTOCOL_ERROR_BAD_ALIGNMENT, LxResultCode::BadAlignment},
        {ARV_DEVICE_ERROR_PROTOCOL_ERROR_ACCESS_DENIED, LxResultCode::AccessDenied},
        {ARV_DEVICE_ERROR_PROTOCOL_ERROR_BUSY, LxResultCode::Busy},
        {ARV_DEVICE_ERROR_UNKNOWN, LxResultCode::Failed},
    };
    for (const auto &[code, expected] : table) {
        EXPECT_EQ(Map(ARV_DEVICE_ERROR, code), expected) << "device error " << code;
    }
}

TEST(ArvSupport, EveryErrorOfTheNodeEngineHasItsCode)
{
    const std::vector<std::pair<int, LxResultCode>> table{
        {ARV_GC_ERROR_OUT_OF_RANGE, LxResultCode::OutOfRange},
        {ARV_GC_ERROR_ENUM_ENTRY_NOT_FOUND, LxResultCode::NotFound},
        {ARV_GC_ERROR_INVALID_LENGTH, LxResultCode::TooLong},
        {ARV_GC_ERROR_READ_ONLY, LxResultCode::NotWritable},
        {ARV_GC_ERROR_INVALID_SYNTAX, LxResultCode::InvalidParameter},
        {ARV_GC_ERROR_NODE_NOT_FOUND, LxResultCode::GenICamError},
        {ARV_GC_ERROR_PROPERTY_NOT_DEFINED, LxResultCode::GenICamError},
    };
    for (const auto &[code, expected] : table) {
        EXPECT_EQ(Map(ARV_GC_ERROR, code), expected) << "node error " << code;
    }
}

TEST(ArvSupport, AnErrorOfAnUnknownDomainIsAFailureWithItsText)
{
    const LxResult result = Map(g_quark_from_static_string("evaluator"), 3, "parsing error");
    EXPECT_EQ(result, LxResultCode::Failed);
    EXPECT_STREQ(result.GetDescription().GetAscii(), "Parsing error");
}

TEST(ArvSupport, TheNamesOfTheNodesInFrontOfTheTextAreLeftOut)
{
    EXPECT_STREQ(Map(ARV_GC_ERROR, 4, "[Width] [WidthReg] too large [max 5]").GetDescription().GetAscii(),
                 "Too large [max 5]");
    EXPECT_STREQ(Map(ARV_GC_ERROR, 4, "[unclosed").GetDescription().GetAscii(), "[unclosed");
    EXPECT_STREQ(Map(ARV_GC_ERROR, 4, "").GetDescription().GetAscii(), "");
}

TEST(ArvSupport, NoErrorIsSuccess)
{
    EXPECT_TRUE(ArvErrorToResult(nullptr).IsOK());
    EXPECT_TRUE(ArvError().ToResult().IsOK());
}

TEST(ArvSupport, AResultKeepsItsCodeAndTextThroughTheLibrary)
{
    ArvError error;
    SetArvError(error.Out(), LxResult(LxResultCode::NotConnected, "the device is lost"));
    ASSERT_TRUE(error.IsSet());
    EXPECT_EQ(error.ToResult(), LxResultCode::NotConnected);
    EXPECT_STREQ(error.ToResult().GetDescription().GetAscii(), "The device is lost");
    error.Out();
    EXPECT_FALSE(error.IsSet()) << "an error that is received drops the one before";
}

TEST(ArvSupport, AResultWithoutTextTravelsWithTheNameOfItsCode)
{
    ArvError error;
    SetArvError(error.Out(), LxResult(LxResultCode::Busy));
    EXPECT_STREQ(error.ToResult().GetDescription().GetAscii(), "BUSY");
}

}  // namespace
