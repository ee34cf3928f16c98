#pragma once

// Internal: a camera in memory: registers, GenICam XML, pattern generator.

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Backends/Simulation/SimulatedXML.h"
#include "LxBuffer/LxBuffer.h"
#include "NodeMap/MemoryPort.h"

namespace LxDetail
{

/// How a simulated camera presents itself. IP numbers have the first octet most significant.
struct SimulatedCameraIdentity
{
    std::string mVendor = "LxGUI";
    std::string mModel = "Simulated Camera";
    std::string mVersion = "1.0.0";
    std::string mManufacturerInfo = "simulated by LxSDK";
    std::string mSerialNumber = "SIM0001";
    std::string mUserName;
    uint64_t mMACAddress = 0x020000000001;  // locally administered
    uint32_t mIPAddress = 0x7F000001;
    uint32_t mSubnetMask = 0xFF000000;
    uint32_t mDefaultGateway = 0;
    bool mUSB3Vision = false;  ///< Leaves the GigE Vision features out of the XML.
    /// Categories that this device has beside those of every camera, with all their nodes.
    std::vector<SimulatedXMLModule> mModules;
};

/// The register memory of a GigE Vision camera (bootstrap registers at 0x0000 to 0x9FFF, its own registers from 0xA000
/// on, its XML), what the registers do, and the pictures that it makes. The in-process device and the network emulator
/// both serve one of these. Thread-safe.
///
/// The camera does not know control privileges, heartbeats or packets: those belong to who serves it.
class SimulatedCamera
{
public:
    explicit SimulatedCamera(const SimulatedCameraIdentity &aIdentity);
    ~SimulatedCamera();
    SimulatedCamera(const SimulatedCamera &) = delete;
    SimulatedCamera &operator=(const SimulatedCamera &) = delete;

    /// The registers. Device-side changes go through Peek and Poke of the port.
    const std::shared_ptr<MemoryPort> &GetPort() const;
    /// The XML, which is also mapped into the registers where the URL at 0x0200 says.
    const std::string &GetXML() const;

    /// Geometry and format as the registers say at this moment.
    uint32_t GetWidth() const;
    uint32_t GetHeight() const;
    LxPixelType GetPixelType() const;
    uint64_t GetPayloadSize() const;
    /// Image (at first) or GenDC: a container with the image as its only part. Takes effect with the next frame.
    LxPayloadType GetPayloadType() const;
    void SetPayloadType(LxPayloadType aType);
    /// Frames per second, from AcquisitionFrameRate; trigger mode is looked at by WaitForFrame().
    double GetFrameRate() const;

    bool IsAcquiring() const;
    /// How often the acquisition was started: tells the frames of one acquisition from those of the next.
    uint64_t GetAcquisitionCount() const;
    /// Called on the thread that writes AcquisitionStart or AcquisitionStop, without any lock. Not called when the
    /// acquisition ends because it has taken all its frames.
    void SetAcquisitionListener(std::function<void(bool aAcquiring)> aListener);
    /// Waits until the next frame is due by frame rate or software trigger and acquisition mode. False when the
    /// acquisition ended or aStop became true.
    bool WaitForFrame(const std::atomic<bool> &aStop);
    /// Draws a frame, by the registers for geometry, format and test pattern, into memory of GetPayloadSize() bytes; as
    /// a GenDC container where the payload type says so.
    void DrawFrame(uint64_t aNumber, uint8_t *aData, uint64_t aSize) const;
    /// Stops an acquisition from outside: the link was lost or control was given up.
    void AbortAcquisition();
    /// As after switching it off and on: no acquisition, the settings of the default user set, the clock at 0.
    void Restart();
    /// The camera's clock, in nanoseconds.
    uint64_t GetTimestamp() const;

    class Data;

private:
    std::unique_ptr<Data> mData;
};

}  // namespace LxDetail
