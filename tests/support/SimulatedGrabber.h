#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "LxDevice/LxDevice.h"
#include "LxDevice/LxDeviceAdapter.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "LxSimulation/LxSimulation.h"
#include "LxSystem/LxSystem.h"

constexpr auto Serial0 = LxDeviceSerial::Serial0;

/// A connected simulated frame grabber, alone on its host, for as long as the object lives. Its unique ID is ID; the
/// ports are as the values say, with nothing connected to them.
class SimulatedGrabber
{
public:
    static constexpr const char *ID = "02:00:00:00:00:20";

    /// A device with the ports of the mask (bit n: LxDeviceSerial of number n).
    static LxSimulatedDevice MakeValues(uint32_t aPorts = 0x3FF)
    {
        LxSimulatedDevice values;
        values.mMACAddress = ID;
        values.mIPAddress = "192.168.1.20";
        values.mSubnetMask = "255.255.255.0";
        values.mInterfaces = {"eth0"};
        values.mSerialPorts = aPorts;
        return values;
    }

    explicit SimulatedGrabber(const LxSimulatedDevice &aValues = MakeValues())
    {
        LxSimulation::Clear();
        LxSimulation::Enable(true);
        LxSimulatedNetworkAdapter adapter;
        adapter.mName = "eth0";
        adapter.mAddresses = {{"192.168.1.1", "255.255.255.0"}};
        EXPECT_TRUE(LxSimulation::SetNetworkAdapter(adapter).IsOK());
        EXPECT_TRUE(LxSimulation::SetDevice(aValues).IsOK());
        LxSystem system;
        const LxDeviceInfo *info = nullptr;
        EXPECT_TRUE(system.FindDevice(aValues.mIPAddress, &info).IsOK());
        EXPECT_TRUE(LxSystem::Connect(info, LxDeviceAccess::Control, mDevice).IsOK());
        mAdapter = std::make_unique<LxDeviceAdapter>(mDevice.get());
    }
    ~SimulatedGrabber()
    {
        mAdapter.reset();
        mDevice.reset();
        LxSimulation::Clear();
        LxSimulation::Disable();
    }
    SimulatedGrabber(const SimulatedGrabber &) = delete;
    SimulatedGrabber &operator=(const SimulatedGrabber &) = delete;

    LxDevice *GetDevice() const { return mDevice.get(); }
    ILxDeviceAdapter *GetAdapter() const { return mAdapter.get(); }
    LxGenParameterArray &GetFeatures() const { return *mDevice->GetParameters(); }

    static void SetPeer(LxDeviceSerial aPort, std::shared_ptr<LxSimulatedSerialPeer> aPeer)
    {
        EXPECT_TRUE(LxSimulation::SetSerialPeer(ID, aPort, std::move(aPeer)).IsOK());
    }
    static void SetConditions(LxDeviceSerial aPort, const LxSimulatedSerialConditions &aConditions)
    {
        EXPECT_TRUE(LxSimulation::SetSerialConditions(ID, aPort, aConditions).IsOK());
    }

private:
    std::unique_ptr<LxDevice> mDevice;
    std::unique_ptr<LxDeviceAdapter> mAdapter;
};
