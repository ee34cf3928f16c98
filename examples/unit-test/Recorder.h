#pragma once

#include <LxBase/LxResult.h>
#include <LxBufferReceive/LxStream.h>
#include <LxDevice/LxDevice.h>

#include <cstdint>
#include <memory>
#include <string>

/// An application's own class, which knows nothing of simulations: takes pictures with a camera.
class Recorder
{
public:
    /// Connects to the camera at an address and sets the size of its pictures.
    LxResult Open(const LxString &aAddress, int64_t aWidth, int64_t aHeight);
    /// Takes the next pictures.
    /// @param aCount how many.
    /// @return the first failure; what was taken before stays counted.
    LxResult Record(uint32_t aCount);

    uint32_t Taken() const { return mTaken; }
    uint64_t TakenBytes() const { return mTakenBytes; }
    uint64_t Lost() const;
    /// What to show the user.
    std::string Report(const LxResult &aResult) const;

private:
    std::unique_ptr<LxDevice> mDevice;
    LxStream mStream;  // after the device: the stream goes first
    uint32_t mTaken = 0;
    uint64_t mTakenBytes = 0;
};
