#pragma once

#include "LxSimulation/LxSimulatedSerial.h"

/// A camera that is controlled by lines of text, each ended by a carriage return. Thread-safe.
///
///   ID?             identifies it: "LxGUI,TextCamera,TC1024,1.0.0,TXT0001"
///   NAME?           the value of WIDTH, HEIGHT, FORMAT (PFNC number), GAIN, LED (0 or 1), TEMPERATURE, RESETS,
///                   EXPOSURE (microseconds, a float) or NAME (a text)
///   NAME=VALUE      sets it: "OK"
///   RESET!          sets everything back: "OK"
///   R ADDR COUNT    bytes of its registers: hexadecimal address, decimal count; hexadecimal digits
///   W ADDR BYTES    writes bytes, hexadecimal digits: "OK"
/// Everything else is answered by "ERROR " and a reason.
/// @thread{any}
class LX_API LxSimulatedTextCamera : public LxSimulatedSerialPeer
{
public:
    LxSimulatedTextCamera();
    ~LxSimulatedTextCamera() override;

    /// An unplugged camera hears nothing.
    void SetPlugged(bool aPlugged);
    /// The lines heard so far, each ended by a line feed.
    LxString GetReceived() const;

    void OnReceive(const uint8_t *aData, uint32_t aCount, LxSimulatedSerialLine &aLine) override;

private:
    class Data;
    std::unique_ptr<Data> mData;
};
