#include "EmulatedCamera.h"

#include "Backends/Simulation/SimulatedRegisters.h"
#include "BigEndian.h"

namespace LxEmulator
{

namespace
{

namespace Register = LxDetail::SimulatedRegister;

constexpr uint32_t FireTestPacketFlag = 0x80000000;
// What the serving side can do, in the GVCP capability register: test packets carry data, discovery answers can be
// delayed (and the delay set), the status codes of version 1.1, switchover of control, pending acknowledges and several
// registers in one command.
constexpr uint32_t Capabilities = 1u << 25 | 1u << 24 | 1u << 23 | 1u << 22 | 1u << 21 | 1u << 5 | 1u << 0;
constexpr Endpoint OtherApplication{0xC0000201, 49152};  // 192.0.2.1, an address for documentation (RFC 5737)

}  // namespace

EmulatedCamera::EmulatedCamera(const EmulatedCameraOptions &aOptions)
    : mOptions(aOptions), mCamera(std::make_unique<LxDetail::SimulatedCamera>(aOptions.mIdentity))
{
    mSender = std::make_unique<GvspSender>(*mCamera);
    GvcpResponder::Actions actions;
    actions.mForceIP = [this](const Gvcp::ForceIP &aForceIP) {
        return SetIPConfiguration(aForceIP.mIPAddress, aForceIP.mSubnetMask, aForceIP.mDefaultGateway).IsOK();
    };
    actions.mResend = [this](const Gvcp::PacketResend &aRequest) { mSender->Resend(aRequest); };
    actions.mControlLost = [this] { OnControlLost(); };
    mResponder = std::make_unique<GvcpResponder>(mCamera->GetPort(), std::move(actions));
    mServer = std::make_unique<GvcpServer>(*mResponder, mCamera->GetPort());
    PrepareRegisters();
}

EmulatedCamera::~EmulatedCamera()
{
    Stop();
}

void EmulatedCamera::PrepareRegisters()
{
    LxDetail::MemoryPort &port = *mCamera->GetPort();
    port.Poke32(Register::GevGVCPCapability, port.Peek32(Register::GevGVCPCapability) | Capabilities);
    port.Poke32(Register::GevLinkSpeed, mOptions.mLinkSpeed);
    port.OnWrite(Register::GevSCPS, 4, [this](LxDetail::MemoryPort &aPort, uint64_t, uint32_t) {
        const uint32_t value = aPort.Peek32(Register::GevSCPS);
        if (value & FireTestPacketFlag) {
            aPort.Poke32(Register::GevSCPS, value & ~FireTestPacketFlag);
            mSender->FireTestPacket(value);
        }
        return LxResult();
    });
}

LxResult EmulatedCamera::Start()
{
    const LxDetail::SimulatedCameraIdentity &identity = mOptions.mIdentity;
    LxResult result;
    uint32_t streamAddress = 0;
    if (mOptions.mInterface.empty()) {
        streamAddress = mOptions.mListenAddress ? mOptions.mListenAddress : identity.mIPAddress;
        result = mServer->OpenOnAddress(streamAddress, mOptions.mUdpPort);
    }
    else {
        std::lock_guard lock(mMutex);
        result = FindLinkByName(mOptions.mInterface, mLink);
        if (result.IsOK()) {
            ClaimInterfaceAddress(identity.mIPAddress, identity.mSubnetMask);
            result = mServer->OpenOnInterface(mLink, mOptions.mUdpPort);
        }
    }
    if (result.IsOK()) {
        result = mSender->Open(streamAddress, mOptions.mInterface);
    }
    if (result.IsOK()) {
        result = mServer->Start();
    }
    if (!result.IsOK()) {
        Stop();
        return result;
    }
    mSender->Start();
    std::lock_guard lock(mMutex);
    mStarted = true;
    return result;
}

void EmulatedCamera::Stop()
{
    mServer->Stop();
    mSender->Stop();
    std::lock_guard lock(mMutex);
    ReleaseInterfaceAddress();
    mStarted = false;
}

Endpoint EmulatedCamera::GetEndpoint() const
{
    return Endpoint{mServer->GetAddress(), mServer->GetUdpPort()};
}

void EmulatedCamera::SetFrozen(bool aFrozen)
{
    std::lock_guard lock(mMutex);
    ControlFaults faults = mResponder->GetFaults();
    if (faults.mFrozen == aFrozen) {
        return;
    }
    faults.mFrozen = aFrozen;
    mResponder->SetFaults(faults);
    if (aFrozen) {
        mSilentBeforeFreeze = mSender->IsSilent();
    }
    mSender->SetSilent(aFrozen || mSilentBeforeFreeze);
}

void EmulatedCamera::ClearFaults()
{
    SetFrozen(false);
    mResponder->SetFaults(ControlFaults());
    mSender->SetFaults(PacketFaults());
    mSender->SetSilent(false);
}

void EmulatedCamera::OnControlLost()
{
    LxDetail::MemoryPort &port = *mCamera->GetPort();
    port.Poke32(Register::GevSCP, 0);
    port.Poke32(Register::GevMCP, 0);
    mCamera->AbortAcquisition();
}

void EmulatedCamera::OverrideControl(uint32_t aValue)
{
    mResponder->OverrideControl(OtherApplication, aValue);
}

LxResult EmulatedCamera::SetGeometry(uint32_t aWidth, uint32_t aHeight)
{
    LxDetail::MemoryPort &port = *mCamera->GetPort();
    const auto write = [&port](uint64_t aAddress, uint32_t aValue) {
        uint8_t bytes[4];
        Put32(bytes, aValue);
        return port.Write(aAddress, bytes, sizeof bytes);
    };
    if (!mCamera->IsAcquiring()) {
        const LxResult result = write(Register::Width, aWidth);
        return result.IsOK() ? write(Register::Height, aHeight) : result;
    }
    // A camera that acquires refuses this; here it happens behind its back.
    const uint32_t maxWidth = port.Peek32(Register::WidthMax) - port.Peek32(Register::OffsetX);
    const uint32_t maxHeight = port.Peek32(Register::HeightMax) - port.Peek32(Register::OffsetY);
    if (aWidth == 0 || aWidth % 4 != 0 || aWidth > maxWidth || aHeight == 0 || aHeight % 2 != 0 || aHeight > maxHeight)
    {
        return LxResult(LxResultCode::InvalidParameter, "The camera cannot make images of this size");
    }
    port.Poke32(Register::Width, aWidth);
    port.Poke32(Register::Height, aHeight);
    // Writing any setting makes the camera work out the size of its images anew.
    return write(Register::TestPattern, port.Peek32(Register::TestPattern));
}

LxResult EmulatedCamera::SetIPConfiguration(uint32_t aAddress, uint32_t aMask, uint32_t aGateway)
{
    const LxDetail::SimulatedCameraIdentity &first = mOptions.mIdentity;
    const bool restart = aAddress == 0;
    const uint32_t address = restart ? first.mIPAddress : aAddress;
    const uint32_t mask = restart ? first.mSubnetMask : aMask;
    std::lock_guard lock(mMutex);
    if (!mStarted) {
        return LxResult(LxResultCode::InvalidState, "The camera is not on the network");
    }
    LxDetail::MemoryPort &port = *mCamera->GetPort();
    port.Poke32(Register::GevCurrentIPAddress, address);
    port.Poke32(Register::GevCurrentSubnetMask, mask);
    port.Poke32(Register::GevCurrentDefaultGateway, restart ? first.mDefaultGateway : aGateway);
    if (!mOptions.mInterface.empty()) {
        ReleaseInterfaceAddress();
        ClaimInterfaceAddress(address, mask);
        return mSender->Open(0, mOptions.mInterface);
    }
    // Where the address belongs to this machine the camera really moves there; otherwise it only claims it, like a
    // camera that ended up in a subnet of its own, and stays within reach.
    const uint32_t listen = restart && mOptions.mListenAddress ? mOptions.mListenAddress : address;
    return mServer->Move(listen).IsOK() ? mSender->Open(listen, std::string()) : LxResult();
}

void EmulatedCamera::ClaimInterfaceAddress(uint32_t aAddress, uint32_t aMask)
{
    if (aAddress == 0 || HasAddress(mLink.mName, aAddress)) {
        return;
    }
    // Without the right to do so the camera just claims it.
    if (AddAddress(mLink, aAddress, aMask).IsOK()) {
        mAddedAddress = aAddress;
        mAddedMask = aMask;
    }
}

void EmulatedCamera::ReleaseInterfaceAddress()
{
    if (mAddedAddress != 0) {
        RemoveAddress(mLink, mAddedAddress, mAddedMask);
        mAddedAddress = 0;
    }
}

}  // namespace LxEmulator
