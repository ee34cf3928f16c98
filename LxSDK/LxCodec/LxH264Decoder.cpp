#include "LxCodec/LxH264Decoder.h"

// This build has no decoder.
class LxH264Decoder::Data
{
};

LxH264Decoder::LxH264Decoder() = default;

LxH264Decoder::~LxH264Decoder() = default;

LxResult LxH264Decoder::Process(const ILxH264AccessUnit *)
{
    return LxResult(LxResultCode::Unavailable, "This build of the library decodes no H.264.");
}

LxResult LxH264Decoder::Retrieve(LxImage *)
{
    return LxResult(LxResultCode::NotFound, "There is no decoded frame.");
}
