#include "Backends/Simulation/SimulatedUnit.h"

#include <algorithm>

#include "Backends/Simulation/SimulatedConnection.h"
#include "Backends/Simulation/SimulatedRegisters.h"
#include "LxDevice/IPConfiguration.h"
#include "LxDevice/LxDeviceU3V.h"
#include "LxSystem/LxDeviceInfo.h"
#include "YrUtilsLib/IpAddress.h"

namespace LxDetail
{

using namespace std::chrono_literals;
using YrUtilsLib::Network::IpAddress;

namespace
{

constexpr auto FrozenUntilLost = 1500ms;

SimulatedCameraIdentity MakeIdentity(const LxSimulatedDevice &aValues)
{
    SimulatedCameraIdentity identity;
    identity.mVendor = aValues.mVendorName.GetString();
    identity.mModel = aValues.mModelName.GetString();
    identity.mVersion = aValues.mVersion.GetString();
    identity.mManufacturerInfo = aValues.mManufacturerInfo.GetString();
    identity.mSerialNumber = aValues.mSerialNumber.GetString();
    identity.mUserName = aValues.mUserDefinedName.GetString();
    ParseMACAddress(aValues.mMACAddress.GetString(), identity.mMACAddress);
    identity.mIPAddress = ParseIPAddress(aValues.mIPAddress);
    identity.mSubnetMask = ParseIPAddress(aValues.mSubnetMask);
    identity.mDefaultGateway = ParseIPAddress(aValues.mDefaultGateway);
    identity.mUSB3Vision = aValues.mType == LxDeviceInfoTypeU3V;
    return identity;
}

}  // namespace

SimulatedUnit::SimulatedUnit(SimulationClock &aClock, LxSimulatedDevice aValues)
    : mClock(aClock), mID(MakeID(aValues)), mValues(std::move(aValues))
{
    for (auto &port : mSerialPorts) {
        port = std::make_shared<SimulatedSerialPort>();
    }
}

SimulatedUnit::~SimulatedUnit()
{
    for (const auto &port : mSerialPorts) {
        port->SetPeer(nullptr);  // which may keep the port
    }
}

LxString SimulatedUnit::MakeID(const LxSimulatedDevice &aValues)
{
    if (!aValues.mUniqueID.IsEmpty()) {
        return aValues.mUniqueID;
    }
    const bool network = aValues.mType == LxDeviceInfoTypeGEV || aValues.mType == LxDeviceInfoTypeKelvra;
    return network ? aValues.mMACAddress : aValues.mDeviceGUID;
}

LxSimulatedDevice SimulatedUnit::GetValues() const
{
    std::lock_guard lock(mMutex);
    return mValues;
}

void SimulatedUnit::SetValues(LxSimulatedDevice aValues)
{
    std::lock_guard lock(mMutex);
    mValues = std::move(aValues);
}

LxResult SimulatedUnit::SetIPConfiguration(uint32_t aAddress, uint32_t aMask, uint32_t aGateway)
{
    std::lock_guard lock(mMutex);
    if (GetGrantedAccess() != LxAccessOpen) {
        return LxResult(LxResultCode::AccessDenied,
                        "The device is controlled by an application, which must give it up first.");
    }
    mValues.mIPAddress = IpAddress(aAddress).ToString();
    mValues.mSubnetMask = IpAddress(aMask).ToString();
    mValues.mDefaultGateway = IpAddress(aGateway).ToString();
    if (mCamera != nullptr) {
        mCamera->GetPort()->Poke32(SimulatedRegister::GevCurrentIPAddress, aAddress);
        mCamera->GetPort()->Poke32(SimulatedRegister::GevCurrentSubnetMask, aMask);
        mCamera->GetPort()->Poke32(SimulatedRegister::GevCurrentDefaultGateway, aGateway);
    }
    return LxResult();
}

void SimulatedUnit::SetReachable(bool aReachable)
{
    std::lock_guard change(mChangeMutex);
    std::shared_ptr<SimulatedCamera> camera;
    std::shared_ptr<FaultPort> port;
    std::shared_ptr<SimulatedSerialRegisters> serial;
    std::shared_ptr<SimulatedGrabberRegisters> grabber;
    {
        std::lock_guard lock(mMutex);
        if (aReachable == mReachable) {
            return;
        }
        mReachable = aReachable;
        camera = mCamera;
        port = mPort;
        serial = mSerialRegisters;
        grabber = mGrabberRegisters;
        mFrozen = false;
        ++mFreezes;
    }
    if (port != nullptr) {
        port->Thaw();
        if (aReachable) {
            camera->Restart();
            if (serial != nullptr) {
                serial->Restart();
                grabber->Restart();
            }
            port->Return();
        }
        else {
            port->Vanish();
            camera->AbortAcquisition();
        }
    }
    ChangeLink(aReachable ? Link::Connected : Link::Lost);
}

void SimulatedUnit::Freeze(std::chrono::milliseconds aTimeout)
{
    std::lock_guard change(mChangeMutex);
    const auto port = GetPort();
    uint64_t freeze = 0;
    {
        std::lock_guard lock(mMutex);
        if (!mReachable) {
            return;
        }
        mFrozen = true;
        freeze = ++mFreezes;
    }
    port->Freeze(aTimeout);
    const auto at = [self = weak_from_this(), freeze](Link aLink) {
        return [self, freeze, aLink] {
            const auto unit = self.lock();
            if (unit == nullptr) {
                return;
            }
            {
                std::lock_guard lock(unit->mMutex);
                if (!unit->mFrozen || unit->mFreezes != freeze) {
                    return;
                }
            }
            unit->ChangeLink(aLink);
        };
    };
    mClock.Post(at(Link::Suspect), aTimeout);
    mClock.Post(at(Link::Lost), aTimeout + FrozenUntilLost);
}

void SimulatedUnit::Thaw()
{
    std::lock_guard change(mChangeMutex);
    std::shared_ptr<FaultPort> port;
    {
        std::lock_guard lock(mMutex);
        if (!mFrozen) {
            return;
        }
        mFrozen = false;
        ++mFreezes;
        port = mPort;
    }
    port->Thaw();
    ChangeLink(Link::Connected);
}

void SimulatedUnit::NoteTimeout()
{
    {
        std::lock_guard lock(mMutex);
        if (!mFrozen || mLink != Link::Connected) {
            return;
        }
    }
    ChangeLink(Link::Suspect);
}

void SimulatedUnit::ChangeLink(Link aLink)
{
    std::lock_guard lock(mMutex);
    const Link old = mLink;
    if (old == aLink) {
        return;
    }
    if (aLink == Link::Lost) {
        ++mLossCount;
    }
    mLink = aLink;
    for (const auto &port : mSerialPorts) {
        port->SetLink(GetLinkResult());
    }
    auto connections = GetConnections();
    for (const auto &connection : connections) {
        connection->OnLinkChange();
    }
    // Posted under the lock, so that the changes are told in their order.
    mClock.Post([connections = std::move(connections), old, aLink] {
        for (const auto &connection : connections) {
            connection->OnLinkChanged(old, aLink);
        }
    });
}

LxResult SimulatedUnit::GetLinkResult() const
{
    switch (mLink) {
        case Link::Connected:
            break;
        case Link::Suspect:
            return LxResult(LxResultCode::Timeout, "The device does not answer.");
        case Link::Lost:
            return LxResult(LxResultCode::NotConnected, "The connection to the device is lost.");
    }
    return LxResult();
}

std::chrono::milliseconds SimulatedUnit::GetFindDelay(std::chrono::milliseconds aDefault) const
{
    std::lock_guard lock(mMutex);
    return mFindDelay.value_or(aDefault);
}

void SimulatedUnit::SetFindDelay(std::optional<std::chrono::milliseconds> aDelay)
{
    std::lock_guard lock(mMutex);
    mFindDelay = aDelay;
}

bool SimulatedUnit::TakeOne(std::atomic<uint32_t> &aCount)
{
    uint32_t count = aCount;
    while (count > 0 && !aCount.compare_exchange_weak(count, count - 1)) {
    }
    return count > 0;
}

void SimulatedUnit::MakeCamera()
{
    if (mCamera == nullptr) {
        SimulatedCameraIdentity identity = MakeIdentity(mValues);
        if (mValues.mSerialPorts != 0) {
            mSerialRegisters = std::make_shared<SimulatedSerialRegisters>(mValues, mSerialPorts);
            identity.mModules.push_back({"SerialControl", mSerialRegisters->MakeXML()});
            mGrabberRegisters = std::make_shared<SimulatedGrabberRegisters>(mValues);
            identity.mModules.push_back({"FrameGrabberControl", mGrabberRegisters->MakeXML()});
        }
        mCamera = std::make_shared<SimulatedCamera>(identity);
        if (mSerialRegisters != nullptr) {
            mSerialRegisters->Attach(mCamera->GetPort());
            mGrabberRegisters->Attach(mCamera->GetPort());
        }
        mPort = std::make_shared<FaultPort>(mCamera->GetPort());
        if (!mReachable) {
            mPort->Vanish();
        }
    }
}

std::shared_ptr<SimulatedCamera> SimulatedUnit::GetCamera()
{
    std::lock_guard lock(mMutex);
    MakeCamera();
    return mCamera;
}

std::shared_ptr<FaultPort> SimulatedUnit::GetPort()
{
    std::lock_guard lock(mMutex);
    MakeCamera();
    return mPort;
}

bool SimulatedUnit::HasSerialPort(LxDeviceSerial aPort) const
{
    const auto number = static_cast<uint32_t>(aPort);
    std::lock_guard lock(mMutex);
    return number < mSerialPorts.size() && (mValues.mSerialPorts >> number & 1) != 0;
}

std::shared_ptr<SimulatedSerialPort> SimulatedUnit::GetSerialPort(LxDeviceSerial aPort) const
{
    const auto number = static_cast<uint32_t>(aPort);
    return number < mSerialPorts.size() ? mSerialPorts[number] : nullptr;
}

std::vector<std::shared_ptr<SimulatedConnection>> SimulatedUnit::GetConnections() const
{
    std::vector<std::shared_ptr<SimulatedConnection>> connections;
    for (const auto &weak : mConnections) {
        if (auto connection = weak.lock()) {
            connections.push_back(std::move(connection));
        }
    }
    return connections;
}

LxAccessType SimulatedUnit::GetGrantedAccess() const
{
    if (mValues.mAccessType >= 0) {
        return static_cast<LxAccessType>(mValues.mAccessType);
    }
    const auto controller = mController.lock();
    if (controller == nullptr) {
        return LxAccessOpen;
    }
    return controller->GetAccess() == LxDeviceAccess::Exclusive ? LxAccessExclusive : LxAccessControl;
}

LxAccessType SimulatedUnit::GetAccessType() const
{
    std::lock_guard lock(mMutex);
    return GetGrantedAccess();
}

LxResult SimulatedUnit::CheckAccess(LxDeviceAccess aAccess) const
{
    const LxAccessType granted = GetGrantedAccess();
    const bool reading = aAccess == LxDeviceAccess::ReadOnly;
    if (granted == LxAccessExclusive || (granted == LxAccessControl && !reading) ||
        (granted == LxAccessReadOnly && !reading))
    {
        return LxResult(LxResultCode::AccessDenied,
                        reading ? "Another application has the device for itself. Close it there first."
                                : "Another application controls the device. Close it there, or connect for reading "
                                  "only.");
    }
    return LxResult();
}

void SimulatedUnit::PublishControl()
{
    const auto controller = mController.lock();
    const uint32_t privilege = controller == nullptr ? 0 : controller->GetAccess() == LxDeviceAccess::Exclusive ? 1 : 2;
    mCamera->GetPort()->Poke32(SimulatedRegister::GevCCP, privilege);
}

LxResult SimulatedUnit::Connect(LxDeviceAccess aAccess, std::unique_ptr<LxDevice> &aDevice)
{
    std::shared_ptr<SimulatedConnection> connection;
    int type = 0;
    std::string xml;
    {
        std::lock_guard lock(mMutex);
        type = mValues.mType;
        xml = mValues.mGenICamXML.GetString();
        if (type != LxDeviceInfoTypeGEV && type != LxDeviceInfoTypeU3V) {
            return LxResult(LxResultCode::NotSupported, "There is no way to connect to this kind of device.");
        }
        if (!mReachable) {
            return LxResult(LxResultCode::NotConnected,
                            "The device does not answer. Check that it is switched on and plugged in.");
        }
        if (mFrozen) {
            return LxResult(LxResultCode::Timeout, "The device does not answer.");
        }
        if (const LxResult result = CheckAccess(aAccess); !result.IsOK()) {
            return result;
        }
        MakeCamera();
        connection = std::make_shared<SimulatedConnection>(shared_from_this(), mCamera, mPort, aAccess);
        std::erase_if(mConnections, [](const auto &aWeak) { return aWeak.expired(); });
        mConnections.push_back(connection);
        if (aAccess != LxDeviceAccess::ReadOnly) {
            mController = connection;
        }
        PublishControl();
    }
    if (const LxResult result = connection->Open(xml); !result.IsOK()) {
        connection->Disconnect();
        return result;
    }
    if (type == LxDeviceInfoTypeGEV) {
        aDevice = std::make_unique<SimulatedDeviceGEV>(std::move(connection));
    }
    else {
        aDevice = std::make_unique<SimulatedDeviceOf<LxDeviceU3V>>(std::move(connection));
    }
    return LxResult();
}

void SimulatedUnit::Release(const SimulatedConnection *aConnection)
{
    for (const auto &port : mSerialPorts) {
        port->Release(aConnection);
    }
    std::shared_ptr<SimulatedCamera> abandoned;
    {
        std::lock_guard lock(mMutex);
        if (mController.lock().get() == aConnection) {
            mController.reset();
            abandoned = mCamera;
            PublishControl();
        }
        std::erase_if(mConnections, [aConnection](const auto &aWeak) {
            const auto connection = aWeak.lock();
            return connection == nullptr || connection.get() == aConnection;
        });
    }
    if (abandoned != nullptr) {
        abandoned->AbortAcquisition();
    }
}

}  // namespace LxDetail
