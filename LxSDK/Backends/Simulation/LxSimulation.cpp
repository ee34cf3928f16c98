#include "LxSimulation/LxSimulation.h"

#include <new>

#include "Backends/Simulation/SimulatedUnit.h"
#include "Backends/Simulation/SimulationHost.h"
#include "Backends/Simulation/SimulationLog.h"
#include "LxDevice/DeviceBackend.h"
#include "LxSimulation/LxSimulatedGenCPCamera.h"
#include "LxSimulation/LxSimulatedTextCamera.h"
#include "LxSystem/LxDeviceInfo.h"

using LxDetail::SimulatedSerialPort;
using LxDetail::SimulatedUnit;
using LxDetail::SimulationHost;
using LxDetail::SimulationLog;

namespace LxDetail
{

void EnableBackendsByEnvironment()
{
    SimulationHost::Get().EnableByEnvironment();
}

}  // namespace LxDetail

namespace
{

/// Nothing is thrown across the public boundary.
template <class Operation>
LxResult Guard(Operation aOperation) noexcept
{
    try {
        return aOperation();
    }
    catch (const std::bad_alloc &) {
        return LxResultCode::NoMemory;
    }
    catch (const std::exception &exception) {
        return LxResult(LxResultCode::Failed, exception.what());
    }
}

/// Does something with a device.
template <class Operation>
LxResult With(const LxString &aDevice, Operation aOperation)
{
    return Guard([&] {
        const auto unit = SimulationHost::Get().FindUnit(aDevice);
        if (unit == nullptr) {
            return LxResult(LxResultCode::NotFound, "There is no simulated device \"" + aDevice.GetString() + "\".");
        }
        aOperation(*unit);
        return LxResult();
    });
}

/// Does something with a serial port of a device.
template <class Operation>
LxResult WithPort(const LxString &aDevice, LxDeviceSerial aPort, Operation aOperation)
{
    LxResult result(LxResultCode::InvalidArgument, "There is no such serial port.");
    const LxResult found = With(aDevice, [&](const SimulatedUnit &aUnit) {
        if (const auto port = aUnit.GetSerialPort(aPort)) {
            aOperation(*port);
            result = LxResult();
        }
    });
    return found.IsOK() ? result : found;
}

/// What is connected to the ports of the frame grabber of the default host.
std::shared_ptr<LxSimulatedSerialPeer> MakeDefaultPeer(uint32_t aPort)
{
    if (aPort == static_cast<uint32_t>(LxDeviceSerial::Bulk2)) {
        return std::make_shared<LxSimulatedGenCPCamera>();
    }
    if (aPort == static_cast<uint32_t>(LxDeviceSerial::Bulk3)) {
        return std::make_shared<LxSimulatedTextCamera>();
    }
    if (aPort != static_cast<uint32_t>(LxDeviceSerial::Serial1)) {
        return std::make_shared<LxSimulatedSerialEcho>();
    }
    auto console = std::make_shared<LxSimulatedSerialScript>();
    console->Add("HELP\r", "Commands: HELP, ID?, TEMP?, GAIN?\r\n");
    console->Add("ID?\r", "LxGUI Simulated Serial Camera\r\n");
    console->Add("TEMP?\r", "42.5\r\n");
    console->Add("GAIN?\r", "1.0\r\n");
    console->Add("\r", "ERROR: unknown command\r\n");
    return console;
}

/// Does something that cannot fail but for want of memory.
template <class Operation>
void Do(Operation aOperation)
{
    Guard([&] {
        aOperation();
        return LxResult();
    });
}

}  // namespace

void LxSimulation::Enable(bool aHideRealDevices)
{
    Do([&] { SimulationHost::Get().Enable(aHideRealDevices); });
}

void LxSimulation::Disable()
{
    Do([&] { SimulationHost::Get().Disable(); });
}

bool LxSimulation::IsEnabled()
{
    return SimulationHost::Get().IsEnabled();
}

void LxSimulation::Clear()
{
    Do([&] { SimulationHost::Get().Clear(); });
}

void LxSimulation::AddDefaultHost()
{
    LxSimulatedNetworkAdapter adapter;
    adapter.mName = "sim0";
    adapter.mDescription = "Simulated Gigabit adapter";
    adapter.mMACAddress = "02:00:00:00:00:01";
    adapter.mAddresses = {{"192.168.10.1", "255.255.255.0"}};
    adapter.mDefaultGateway = "192.168.10.254";
    SetNetworkAdapter(adapter);
    adapter.mName = "sim1";
    adapter.mDescription = "Simulated 10 Gigabit adapter";
    adapter.mMACAddress = "02:00:00:00:00:02";
    adapter.mAddresses = {{"169.254.20.1", "255.255.0.0"}};
    adapter.mDefaultGateway = "0.0.0.0";
    SetNetworkAdapter(adapter);
    LxSimulatedUSBHostController controller;
    controller.mName = "simusb0";
    controller.mDisplayID = "Simulated USB 3.0 host controller";
    SetUSBHostController(controller);

    LxSimulatedDevice camera;
    camera.mModelName = "Simulated Camera";
    camera.mSubnetMask = "255.255.255.0";
    camera.mInterfaces = {"sim0"};
    camera.mMACAddress = "02:00:00:00:01:01";
    camera.mIPAddress = "192.168.10.21";
    camera.mUserDefinedName = "Left";
    camera.mSerialNumber = "SIM0001";
    SetDevice(camera);
    camera.mMACAddress = "02:00:00:00:01:02";
    camera.mIPAddress = "10.0.5.7";  // no adapter is on this subnet
    camera.mUserDefinedName = "Wrong subnet";
    camera.mSerialNumber = "SIM0002";
    SetDevice(camera);
    camera.mInterfaces = {"sim1"};
    camera.mMACAddress = "02:00:00:00:01:03";
    camera.mIPAddress = "169.254.20.31";
    camera.mSubnetMask = "255.255.0.0";
    camera.mUserDefinedName = "Right";
    camera.mSerialNumber = "SIM0003";
    SetDevice(camera);
    LxSimulatedDevice usb;
    usb.mType = LxDeviceInfoTypeU3V;
    usb.mInterfaces = {"simusb0"};
    usb.mModelName = "Simulated USB Camera";
    usb.mUserDefinedName = "Top";
    usb.mSerialNumber = "SIM0004";
    usb.mU3VSerialNumber = "SIM0004";
    usb.mDeviceGUID = "0000C0FFEE04";
    SetDevice(usb);

    LxSimulatedDevice grabber;
    grabber.mModelName = "Simulated Frame Grabber";
    grabber.mSubnetMask = "255.255.255.0";
    grabber.mInterfaces = {"sim0"};
    grabber.mMACAddress = "02:00:00:00:01:05";
    grabber.mIPAddress = "192.168.10.25";
    grabber.mUserDefinedName = "Grabber";
    grabber.mSerialNumber = "SIM0005";
    grabber.mSerialPorts = 0x3F;
    SetDevice(grabber);
    for (uint32_t port = 0; port < 6; ++port) {
        SetSerialPeer(grabber.mMACAddress, static_cast<LxDeviceSerial>(port), MakeDefaultPeer(port));
    }
}

LxResult LxSimulation::SetNetworkAdapter(const LxSimulatedNetworkAdapter &aAdapter)
{
    return Guard([&] { return SimulationHost::Get().SetInterface(aAdapter); });
}

LxResult LxSimulation::SetUSBHostController(const LxSimulatedUSBHostController &aController)
{
    return Guard([&] { return SimulationHost::Get().SetInterface(aController); });
}

LxResult LxSimulation::RemoveInterface(const LxString &aName)
{
    return Guard([&] { return SimulationHost::Get().RemoveInterface(aName); });
}

LxResult LxSimulation::SetDevice(const LxSimulatedDevice &aDevice)
{
    return Guard([&] { return SimulationHost::Get().SetDevice(aDevice); });
}

LxResult LxSimulation::GetDevice(const LxString &aDevice, LxSimulatedDevice &aValues)
{
    return With(aDevice, [&](const SimulatedUnit &aUnit) { aValues = aUnit.GetValues(); });
}

LxResult LxSimulation::RemoveDevice(const LxString &aDevice)
{
    return Guard([&] { return SimulationHost::Get().RemoveDevice(aDevice); });
}

LxResult LxSimulation::SetDevicePresent(const LxString &aDevice, bool aPresent)
{
    return Guard([&] { return SimulationHost::Get().SetDevicePresent(aDevice, aPresent); });
}

LxResult LxSimulation::FreezeDevice(const LxString &aDevice, uint32_t aTimeout)
{
    return With(aDevice, [&](SimulatedUnit &aUnit) { aUnit.Freeze(std::chrono::milliseconds(aTimeout)); });
}

LxResult LxSimulation::ThawDevice(const LxString &aDevice)
{
    return With(aDevice, [](SimulatedUnit &aUnit) { aUnit.Thaw(); });
}

LxResult LxSimulation::FailRange(const LxString &aDevice, uint64_t aAddress, uint64_t aLength, const LxResult &aResult)
{
    return With(aDevice, [&](SimulatedUnit &aUnit) { aUnit.GetPort()->FailRange(aAddress, aLength, aResult); });
}

LxResult LxSimulation::FailCall(const LxString &aDevice, uint32_t aNumber, const LxResult &aResult)
{
    return With(aDevice, [&](SimulatedUnit &aUnit) { aUnit.GetPort()->FailCall(aNumber, aResult); });
}

LxResult LxSimulation::FailAll(const LxString &aDevice, const LxResult &aResult)
{
    return With(aDevice, [&](SimulatedUnit &aUnit) { aUnit.GetPort()->FailAll(aResult); });
}

LxResult LxSimulation::ClearFailures(const LxString &aDevice)
{
    return With(aDevice, [](SimulatedUnit &aUnit) { aUnit.GetPort()->ClearFailures(); });
}

LxResult LxSimulation::SetAccessDelay(const LxString &aDevice, uint32_t aDelay)
{
    return With(aDevice, [&](SimulatedUnit &aUnit) { aUnit.GetPort()->SetDelay(std::chrono::microseconds(aDelay)); });
}

LxResult LxSimulation::SkipFrames(const LxString &aDevice, uint32_t aCount)
{
    return With(aDevice, [&](SimulatedUnit &aUnit) { aUnit.SkipFrames(aCount); });
}

LxResult LxSimulation::DamageFrames(const LxString &aDevice, uint32_t aCount)
{
    return With(aDevice, [&](SimulatedUnit &aUnit) { aUnit.DamageFrames(aCount); });
}

LxResult LxSimulation::SetPayloadType(const LxString &aDevice, LxPayloadType aType)
{
    if (aType != LxPayloadType::Image && aType != LxPayloadType::GenDC) {
        return LxResult(LxResultCode::InvalidArgument, "Simulated devices send images or GenDC containers.");
    }
    return With(aDevice, [&](SimulatedUnit &aUnit) { aUnit.GetCamera()->SetPayloadType(aType); });
}

LxResult LxSimulation::SetSerialPeer(const LxString &aDevice, LxDeviceSerial aPort,
                                     std::shared_ptr<LxSimulatedSerialPeer> aPeer)
{
    return WithPort(aDevice, aPort, [&](SimulatedSerialPort &aLine) { aLine.SetPeer(std::move(aPeer)); });
}

LxResult LxSimulation::SetSerialConditions(const LxString &aDevice, LxDeviceSerial aPort,
                                           const LxSimulatedSerialConditions &aConditions)
{
    return WithPort(aDevice, aPort, [&](SimulatedSerialPort &aLine) { aLine.SetConditions(aConditions); });
}

LxResult LxSimulation::GetSerialConditions(const LxString &aDevice, LxDeviceSerial aPort,
                                           LxSimulatedSerialConditions &aConditions)
{
    return WithPort(aDevice, aPort, [&](const SimulatedSerialPort &aLine) { aConditions = aLine.GetConditions(); });
}

LxResult LxSimulation::SetFindDelay(const LxString &aDevice, uint32_t aDelay)
{
    const std::chrono::milliseconds delay(aDelay);
    if (aDevice.IsEmpty()) {
        SimulationHost::Get().SetDefaultFindDelay(delay);
        return LxResult();
    }
    return With(aDevice, [&](SimulatedUnit &aUnit) { aUnit.SetFindDelay(delay); });
}

void LxSimulation::QueueResult(const LxString &aOperation, const LxResult &aResult)
{
    Do([&] { SimulationLog::Get().QueueResult(aOperation.GetString(), aResult); });
}

void LxSimulation::SetRecording(bool aEnabled)
{
    SimulationLog::Get().SetRecording(aEnabled);
}

std::vector<LxSimulatedCall> LxSimulation::GetCalls(const LxString &aName)
{
    std::vector<LxSimulatedCall> calls;
    Do([&] { calls = SimulationLog::Get().GetCalls(aName.GetString()); });
    return calls;
}

void LxSimulation::ClearCalls()
{
    Do([&] { SimulationLog::Get().ClearCalls(); });
}

LxSimulationCounters LxSimulation::GetCounters()
{
    const SimulationLog &log = SimulationLog::Get();
    return {log.mScanners, log.mDeviceInfos, log.mDevices, log.mReceivers, log.mSerialPorts};
}
