#pragma once

// Internal: the features of a camera file that are text commands, as registers.

#include <string>
#include <vector>

#include "LxCameraBridge/CameraFile.h"
#include "LxCameraBridge/CameraRegisters.h"
#include "LxCameraBridge/TextLine.h"

namespace LxDetail
{

/// Each feature is a register at GetTextFeatureAddress(): a number of 8 bytes, big-endian (of an enumeration, the index
/// of the entry), or a text of 256 bytes. Reading asks the camera, writing tells it.
class TextRegisters : public CameraRegisters
{
public:
    TextRegisters(std::shared_ptr<CountedPort> aPort, CameraFile aFile);

    LxResult Read(uint64_t aAddress, void *aData, uint32_t aLength) override;
    LxResult Write(uint64_t aAddress, const void *aData, uint32_t aLength) override;
    /// Asks for the first feature that can be read.
    LxResult Ping() override;

private:
    const CameraFileFeature *Find(uint64_t aAddress, uint32_t aLength) const;
    LxResult AskValue(const CameraFileFeature &aFeature, std::string &aValue);

    const CameraFile mFile;
    TextLine mLine;
};

}  // namespace LxDetail
