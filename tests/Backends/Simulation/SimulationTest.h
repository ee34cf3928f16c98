#pragma once

// What the tests of the simulated host share.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "LxDevice/LxDevice.h"
#include "LxSimulation/LxSimulation.h"
#include "LxSystem/LxDeviceInfo.h"
#include "LxSystem/LxInterface.h"
#include "LxSystem/LxSystem.h"

/// A simulated host with an adapter "eth0" (192.168.1.1/24) and a USB controller "usb0", and no real devices.
class SimulationTest : public testing::Test
{
protected:
    static constexpr const char *Camera = "02:00:00:00:00:10";

    SimulationTest()
    {
        LxSimulation::Clear();
        LxSimulation::Enable(true);
        LxSimulatedNetworkAdapter adapter;
        adapter.mName = "eth0";
        adapter.mAddresses = {{"192.168.1.1", "255.255.255.0"}};
        EXPECT_TRUE(LxSimulation::SetNetworkAdapter(adapter).IsOK());
        LxSimulatedUSBHostController controller;
        controller.mName = "usb0";
        EXPECT_TRUE(LxSimulation::SetUSBHostController(controller).IsOK());
        mSystem = std::make_unique<LxSystem>();
        mSystem->SetDetectionTimeout(0);
    }
    ~SimulationTest() override
    {
        mSystem.reset();
        LxSimulation::Clear();
        LxSimulation::Disable();
    }

    static LxSimulatedDevice MakeCamera()
    {
        LxSimulatedDevice camera;
        camera.mMACAddress = Camera;
        camera.mIPAddress = "192.168.1.10";
        camera.mSubnetMask = "255.255.255.0";
        camera.mInterfaces = {"eth0"};
        return camera;
    }
    static LxSimulatedDevice MakeUSBCamera()
    {
        LxSimulatedDevice camera;
        camera.mType = LxDeviceInfoTypeU3V;
        camera.mInterfaces = {"usb0"};
        return camera;
    }

    const LxInterface *GetInterface(const char *aName) const
    {
        for (uint32_t i = 0; i < mSystem->GetInterfaceCount(); ++i) {
            if (mSystem->GetInterface(i)->GetUniqueID() == LxString(aName)) {
                return mSystem->GetInterface(i);
            }
        }
        return nullptr;
    }
    /// The device as a search finds it; null when it does not.
    const LxDeviceInfo *Find(const char *aID, const char *aInterface = "eth0")
    {
        EXPECT_TRUE(mSystem->Find().IsOK());
        const LxInterface *interface = GetInterface(aInterface);
        for (uint32_t i = 0; interface != nullptr && i < interface->GetDeviceCount(); ++i) {
            if (interface->GetDeviceInfo(i)->GetUniqueID() == LxString(aID)) {
                return interface->GetDeviceInfo(i);
            }
        }
        return nullptr;
    }
    std::unique_ptr<LxDevice> Connect(const LxDeviceInfo *aInfo, LxDeviceAccess aAccess = LxDeviceAccess::Control)
    {
        std::unique_ptr<LxDevice> device;
        const LxResult result = LxSystem::Connect(aInfo, aAccess, device);
        EXPECT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
        return device;
    }
    std::unique_ptr<LxDevice> ConnectCamera(LxDeviceAccess aAccess = LxDeviceAccess::Control)
    {
        EXPECT_TRUE(LxSimulation::SetDevice(MakeCamera()).IsOK());
        return Connect(Find(Camera), aAccess);
    }

    std::unique_ptr<LxSystem> mSystem;
};
