#include "LxSerial/PortSpeed.h"

#include <gtest/gtest.h>

#include "SimulatedGrabber.h"

using LxDetail::PortSpeed;
using Rates = std::vector<uint32_t>;

namespace
{

const Rates Standard = {9600, 14400, 19200, 28800, 38400, 57600, 115200, 230400, 460800, 921600};

}  // namespace

TEST(PortSpeedTest, EnumerationsAndIntegers)
{
    const SimulatedGrabber grabber;
    const PortSpeed enumeration(grabber.GetAdapter(), LxDeviceSerial::Serial0);
    EXPECT_EQ(enumeration.GetSupported(), Standard);
    EXPECT_EQ(enumeration.Get(), 115200u);
    EXPECT_TRUE(enumeration.Set(9600).IsOK());
    EXPECT_EQ(enumeration.Get(), 9600u);
    EXPECT_EQ(enumeration.Set(9601), LxResultCode::NotSupported);
    const PortSpeed integer(grabber.GetAdapter(), LxDeviceSerial::Serial1);
    EXPECT_EQ(integer.GetSupported(), Standard);
    EXPECT_TRUE(integer.Set(1234).IsOK());
    EXPECT_EQ(integer.Get(), 1234u);
    EXPECT_EQ(integer.Set(5), LxResultCode::OutOfRange);
}

TEST(PortSpeedTest, BulkPortsAreSelectedForTheMoment)
{
    const SimulatedGrabber grabber;
    LxGenParameterArray &features = grabber.GetFeatures();
    ASSERT_TRUE(features.SetEnumValue("BulkSelector", "Bulk5").IsOK());
    const PortSpeed bulk2(grabber.GetAdapter(), LxDeviceSerial::Bulk2);
    EXPECT_TRUE(bulk2.Set(19200).IsOK());
    EXPECT_EQ(bulk2.Get(), 19200u);
    EXPECT_EQ(PortSpeed(grabber.GetAdapter(), LxDeviceSerial::Bulk3).Get(), 115200u);
    LxString selected;
    ASSERT_TRUE(features.GetEnumValue("BulkSelector", selected).IsOK());
    EXPECT_EQ(selected, LxString("Bulk5"));
}

TEST(PortSpeedTest, NoFeatureNoRates)
{
    LxSimulatedDevice values = SimulatedGrabber::MakeValues();
    values.mUart0Speed = LxSimulatedSpeed::None;
    values.mBulkSpeed = LxSimulatedSpeed::ClockDivider;
    const SimulatedGrabber grabber(values);
    for (const LxDeviceSerial port : {LxDeviceSerial::Serial0, LxDeviceSerial::Bulk1}) {
        const PortSpeed speed(grabber.GetAdapter(), port);
        EXPECT_EQ(speed.GetSupported(), Rates());
        EXPECT_EQ(speed.Get(), 0u);
        EXPECT_EQ(speed.Set(9600), LxResultCode::NotSupported);
    }
    EXPECT_EQ(PortSpeed(nullptr, LxDeviceSerial::Serial0).GetSupported(), Rates());
    grabber.GetDevice()->Disconnect();
    EXPECT_EQ(PortSpeed(grabber.GetAdapter(), LxDeviceSerial::Serial1).Get(), 0u);
}
