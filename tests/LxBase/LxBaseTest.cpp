#include <gtest/gtest.h>

#include "LxBase/LxDeviceSerial.h"
#include "LxBase/LxResult.h"
#include "LxBase/LxStringList.h"

TEST(LxString, KeepsBytesAndIsNeverNull)
{
    EXPECT_STREQ(LxString().GetAscii(), "");
    EXPECT_STREQ(LxString(static_cast<const char *>(nullptr)).GetAscii(), "");
    EXPECT_STREQ(LxString("\xC3\xA4%n\xFF").GetAscii(), "\xC3\xA4%n\xFF");
}

TEST(LxString, CopiesAreIndependent)
{
    LxString first("one");
    LxString second = first;
    first = "two";
    EXPECT_STREQ(second.GetAscii(), "one");
}

TEST(LxStringList, KeepsOrderAndDuplicates)
{
    LxStringList list;
    list.Add("b");
    list.Add("a");
    list.Add("b");
    ASSERT_EQ(list.GetSize(), 3u);
    EXPECT_EQ(list.GetItem(0), LxString("b"));
    EXPECT_EQ(list.GetItem(1), LxString("a"));
    EXPECT_EQ(list.GetItem(2), LxString("b"));
    EXPECT_TRUE(list.GetItem(3).IsEmpty());
    list.Clear();
    EXPECT_EQ(list.GetSize(), 0u);
}

TEST(LxResult, IsOKOnlyForCodeZero)
{
    EXPECT_TRUE(LxResult().IsOK());
    EXPECT_TRUE(LxResult(0).IsOK());
    EXPECT_FALSE(LxResult(1).IsOK());
    EXPECT_FALSE(LxResult(LxResultCode::Failed).IsOK());
}

TEST(LxResult, NumbersOfTheInterfaceAreFixed)
{
    EXPECT_EQ(LxResult(LxResultCode::Unavailable).GetCode(), 26u);
    EXPECT_EQ(LxResult(LxResultCode::AlreadyShown).GetCode(), 28u);
    EXPECT_EQ(LxResult(LxResultCode::SerialTimeout).GetCode(), 30u);
    EXPECT_EQ(LxResult(LxResultCode::NoImage).GetCode(), 0x0501u);
    EXPECT_EQ(LxResult(LxResultCode::OperationNotImplemented).GetCode(), 1540u);
    EXPECT_EQ(LxResult(LxResultCode::NoNetworkDevice).GetCode(), 0x0605u);
    EXPECT_EQ(LxResult(LxResultCode::Failed).GetCode(), 0x4000u);
    EXPECT_EQ(LxResult(LxResultCode::InvalidArgument).GetCode(), 0x4001u);
    EXPECT_EQ(LxResult(LxResultCode::Cancelled).GetCode(), 0x4002u);
}

TEST(LxResult, CarriesCodeStringAndDescription)
{
    const LxResult result(LxResultCode::AccessDenied, "100 % taken\nby somebody");
    EXPECT_EQ(result.GetCodeString(), LxString("ACCESS_DENIED"));
    EXPECT_EQ(result.GetDescription(), LxString("100 % taken\nby somebody"));
    EXPECT_EQ(LxResult().GetCodeString(), LxString("OK"));
    EXPECT_EQ(LxResult(0x12345678).GetCodeString(), LxString("UNKNOWN_RESULT (0x12345678)"));
    EXPECT_TRUE(result == LxResultCode::AccessDenied);
    EXPECT_TRUE(result == LxResult(LxResultCode::AccessDenied));
    EXPECT_TRUE(result != LxResultCode::OK);
}

TEST(LxDeviceSerial, NamesEveryPortAndNothingElse)
{
    const char *names[] = {"Serial0", "Serial1", "Bulk0", "Bulk1", "Bulk2",
                           "Bulk3",   "Bulk4",   "Bulk5", "Bulk6", "Bulk7"};
    for (uint32_t port = 0; port < 10; ++port) {
        EXPECT_EQ(LxDeviceSerialToString(static_cast<LxDeviceSerial>(port)), LxString(names[port]));
    }
    EXPECT_EQ(LxDeviceSerialToString(static_cast<LxDeviceSerial>(10)), LxString("Invalid"));
    EXPECT_EQ(LxDeviceSerialToString(LxDeviceSerial::Invalid), LxString("Invalid"));
}
