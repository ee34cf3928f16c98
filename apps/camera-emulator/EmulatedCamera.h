#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "Backends/Simulation/SimulatedCamera.h"
#include "GvcpResponder.h"
#include "GvcpServer.h"
#include "GvspSender.h"
#include "NetworkLink.h"

namespace LxEmulator
{

/// Where and as what an emulated camera appears.
struct EmulatedCameraOptions
{
    LxDetail::SimulatedCameraIdentity mIdentity;
    /// The address to listen to. 0: the one that the camera claims. Not used with an interface.
    uint32_t mListenAddress = 0;
    /// When given, the camera has this network interface for itself: it sends and receives there only, whatever address
    /// it claims, and gives the interface that address where it has the right to. The interface keeps its others.
    std::string mInterface;
    uint16_t mUdpPort = Gvcp::port;
    /// Megabits per second that images are sent with at most.
    uint32_t mLinkSpeed = 10000;
};

/// A simulated camera on a real network, over GVCP and GVSP, with faults on demand. The functions may be called from
/// any thread at any time; faults take effect with the next command or image.
class EmulatedCamera
{
public:
    explicit EmulatedCamera(const EmulatedCameraOptions &aOptions);
    ~EmulatedCamera();
    EmulatedCamera(const EmulatedCamera &) = delete;
    EmulatedCamera &operator=(const EmulatedCamera &) = delete;

    /// Begins to serve. Fails when the address or the interface is not there, is in use, or rights are missing.
    LxResult Start();
    void Stop();

    /// The address that the camera is reached at, and its control port.
    Endpoint GetEndpoint() const;
    LxDetail::SimulatedCamera &GetCamera() { return *mCamera; }

    void SetControlFaults(const ControlFaults &aFaults) { mResponder->SetFaults(aFaults); }
    ControlFaults GetControlFaults() const { return mResponder->GetFaults(); }
    void SetPacketFaults(const PacketFaults &aFaults) { mSender->SetFaults(aFaults); }
    PacketFaults GetPacketFaults() const { return mSender->GetFaults(); }
    /// While frozen the camera neither answers nor streams, as if its cable were cut; it goes on by itself meanwhile.
    void SetFrozen(bool aFrozen);
    /// While silent the camera streams nothing but goes on answering.
    void SetStreamSilent(bool aSilent) { mSender->SetSilent(aSilent); }
    /// Ends all faults.
    void ClearFaults();

    /// Another application takes control (a value of the privilege register); 0: nobody has it any more. The stream of
    /// the one that had it ends.
    void OverrideControl(uint32_t aValue);
    /// Writes Width and Height from the camera's side, also while it streams.
    LxResult SetGeometry(uint32_t aWidth, uint32_t aHeight);
    /// Takes another address, as on a FORCEIP command. 0: the one that it started with.
    LxResult SetIPConfiguration(uint32_t aAddress, uint32_t aMask, uint32_t aGateway);

    uint32_t GetControlValue() const { return mResponder->GetControlValue(); }
    std::optional<Endpoint> GetController() const { return mResponder->GetController(); }
    ControlStatistics GetControlStatistics() const { return mResponder->GetStatistics(); }
    StreamStatistics GetStreamStatistics() const { return mSender->GetStatistics(); }

private:
    void PrepareRegisters();
    void OnControlLost();
    void ClaimInterfaceAddress(uint32_t aAddress, uint32_t aMask);
    void ReleaseInterfaceAddress();

    EmulatedCameraOptions mOptions;
    std::unique_ptr<LxDetail::SimulatedCamera> mCamera;
    std::unique_ptr<GvspSender> mSender;
    std::unique_ptr<GvcpResponder> mResponder;
    std::unique_ptr<GvcpServer> mServer;

    std::mutex mMutex;  // guards all members below, and one change of the address at a time
    bool mStarted = false;
    NetworkLink mLink;
    uint32_t mAddedAddress = 0;  // that the interface got from this camera
    uint32_t mAddedMask = 0;
    bool mSilentBeforeFreeze = false;
};

}  // namespace LxEmulator
