#include "TourGrabber.h"

#include <cstdio>
#include <utility>

#include "LxSystem/LxSystem.h"

namespace
{

constexpr char ID[] = "02:00:00:00:00:20";
constexpr char Address[] = "192.168.10.20";

}  // namespace

TourGrabber::TourGrabber()
{
    LxSimulation::Clear();
    LxSimulatedNetworkAdapter adapter;
    adapter.mName = "eth0";
    adapter.mAddresses = {{"192.168.10.1", "255.255.255.0"}};
    LxSimulation::SetNetworkAdapter(adapter);
    LxSimulatedDevice grabber;
    grabber.mMACAddress = ID;
    grabber.mIPAddress = Address;
    grabber.mSubnetMask = "255.255.255.0";
    grabber.mInterfaces = {"eth0"};
    grabber.mSerialPorts = 0x3F;
    grabber.mBulkSpeed = LxSimulatedSpeed::None;
    LxSimulation::SetDevice(grabber);
    LxSimulation::Enable(true);
    LxSystem system;
    const LxDeviceInfo *info = nullptr;
    LxResult result = system.FindDevice(Address, &info);
    if (result.IsOK()) {
        result = LxSystem::Connect(info, LxDeviceAccess::Control, mDevice);
    }
    if (!result.IsOK()) {
        std::fprintf(stderr, "no frame grabber: %s\n", result.GetDescription().GetAscii());
        return;
    }
    mAdapter = std::make_unique<LxDeviceAdapter>(mDevice.get());
}

TourGrabber::~TourGrabber()
{
    mAdapter.reset();
    mDevice.reset();
    LxSimulation::Disable();
    LxSimulation::Clear();
}

void TourGrabber::SetPeer(LxDeviceSerial aPort, std::shared_ptr<LxSimulatedSerialPeer> aPeer)
{
    LxSimulation::SetSerialPeer(ID, aPort, std::move(aPeer));
}

void TourGrabber::SetConditions(LxDeviceSerial aPort, const LxSimulatedSerialConditions &aConditions)
{
    LxSimulation::SetSerialConditions(ID, aPort, aConditions);
}
