#pragma once

#include <memory>

#include "LxBuffer/LxBuffer.h"

/// Decodes H.264 access units into BGRa8 images with alpha 255. One call at a time per object.
class LX_API LxH264Decoder
{
public:
    LxH264Decoder();
    ~LxH264Decoder();
    LxH264Decoder(const LxH264Decoder &) = delete;
    LxH264Decoder &operator=(const LxH264Decoder &) = delete;

    /// Takes one access unit. Unavailable when this build has no decoder; Failed, with the reason, when it cannot be
    /// decoded. The data are copied.
    LxResult Process(const ILxH264AccessUnit *aUnit);
    /// Takes the next decoded frame, allocating the image as needed. NotFound when none is left.
    LxResult Retrieve(LxImage *aImage);

private:
    class Data;
    std::unique_ptr<Data> mData;
};
