#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "Backends/GigEVisionBackend.h"
#include "GvcpResponder.h"
#include "Wire.h"

/// Tests that own the network: they refuse to run beside other adapters. Only GigE Vision devices are searched.
class NetworkTest : public testing::Test
{
public:
    NetworkTest() : mBackend(std::make_shared<LxDetail::GigEVisionBackend>())
    {
        LxDetail::DeviceBackends::SetRealDevicesHidden(true);
        LxDetail::DeviceBackends::Add(mBackend);
    }
    ~NetworkTest() override
    {
        LxDetail::DeviceBackends::Remove(mBackend);
        LxDetail::DeviceBackends::SetRealDevicesHidden(false);
    }

protected:
    void SetUp() override
    {
        ASSERT_TRUE(RunCommand("test \"$(ls /sys/class/net)\" = lo")) << "run me with tests/support/in-netns";
    }

private:
    const std::shared_ptr<LxDetail::DeviceBackend> mBackend;
};
