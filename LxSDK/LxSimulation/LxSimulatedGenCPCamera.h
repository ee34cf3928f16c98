#pragma once

#include "LxSimulation/LxSimulatedSerial.h"

/// What a simulated GenCP camera is.
struct LxSimulatedGenCPValues
{
    /// Manufacturer name in the bootstrap registers.
    LxString mManufacturer = "LxGUI";
    /// Model name in the bootstrap registers.
    LxString mModel = "Line Camera";
    /// Device version in the bootstrap registers.
    LxString mVersion = "1.0.0";
    /// Serial number in the bootstrap registers.
    LxString mSerialNumber = "GCP0001";
    /// Its GenICam XML; empty: one with the features Width, Height, PixelFormat, ExposureTime, Gain and some more.
    LxString mXML;
    bool mZipped = true;      ///< Whether the XML is stored as ZIP file.
    bool mWrongSHA1 = false;  ///< The manifest has a checksum that is not that of the file.
    /// Whether the line must run at the speed of the camera: 9600 baud until the host sets another.
    bool mOwnSpeed = false;
};

/// How a simulated GenCP camera misbehaves. Perfect from the start.
struct LxSimulatedGenCPFaults
{
    uint32_t mCorrupt = 0;  ///< So many acknowledges from now on have a wrong checksum.
    uint32_t mLose = 0;     ///< So many acknowledges from now on do not come.
    uint32_t mDelay = 0;    ///< Every acknowledge comes so many milliseconds late.
    /// Every acknowledge comes so many milliseconds late, and pending acknowledges announce it.
    uint32_t mPending = 0;
    uint32_t mUnplugAfter = 0;  ///< After so many further commands the camera is unplugged; 0: never.
};

/// A camera that speaks GenCP (EMVA GenICam GenCP 1.3) over a serial line: bootstrap registers, manifest with the XML,
/// switching of the speed, and the registers of its features, which are real. Thread-safe.
/// @thread{any}
class LX_API LxSimulatedGenCPCamera : public LxSimulatedSerialPeer
{
public:
    /// A plugged camera with these values.
    explicit LxSimulatedGenCPCamera(const LxSimulatedGenCPValues &aValues = {});
    ~LxSimulatedGenCPCamera() override;

    /// Replaces all faults, from the next command on.
    void SetFaults(const LxSimulatedGenCPFaults &aFaults);
    /// An unplugged camera hears nothing. It has been switched off: its speed is the first one again.
    void SetPlugged(bool aPlugged);

    /// Commands that were heard undamaged, repeated ones included.
    uint64_t GetCommandCount() const;
    /// Commands that were executed: a repetition of the last one is answered without executing it again.
    uint64_t GetExecutionCount() const;
    /// How often a speed that was not confirmed in time has been undone.
    uint32_t GetSpeedFallbackCount() const;
    /// The packets so far, at most the last 10000, one line each: "> " for a command or "< " for an acknowledge, and
    /// its bytes in hexadecimal.
    LxString GetTrace() const;

    void OnReceive(const uint8_t *aData, uint32_t aCount, LxSimulatedSerialLine &aLine) override;
    uint32_t GetBaudRate() const override;

private:
    class Data;
    std::unique_ptr<Data> mData;
};
