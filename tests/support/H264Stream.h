#pragma once

extern "C" {
#include <libavutil/pixfmt.h>
}

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "LxBuffer/ILxH264AccessUnit.h"

/// Access units, in the order of their coding.
using H264Units = std::vector<std::vector<uint8_t>>;

/// How a test's stream is encoded.
struct H264Settings
{
    int mWidth = 64;
    int mHeight = 48;
    AVPixelFormat mFormat = AV_PIX_FMT_YUV420P;
    int mKeyInterval = 10;  ///< Pictures from one IDR picture to the next.
    int mBPictures = 0;
    AVColorRange mRange = AVCOL_RANGE_UNSPECIFIED;
    AVColorSpace mMatrix = AVCOL_SPC_UNSPECIFIED;
    std::string mOptions;  ///< More of x264's own options, "name=value:name=value".
};

/// The sample of a plane (0 luma, 1 and 2 chroma) of a picture at a place.
using H264Source = std::function<int(int aPicture, int aPlane, int aX, int aY)>;

/// Whether libavcodec has an H.264 encoder here.
bool HasH264Encoder();
/// Encodes pictures nearly without loss. Empty when that fails.
H264Units EncodeH264(const H264Settings &aSettings, int aCount, const H264Source &aSource);

/// A unit in memory of exactly its size, so that the address sanitizer sees what is read beyond it.
class H264Unit : public ILxH264AccessUnit
{
public:
    explicit H264Unit(const std::vector<uint8_t> &aBytes);
    const void *GetDataPointer() const override { return mData.get(); }
    uint64_t GetDataSize() const override { return mSize; }

private:
    std::unique_ptr<uint8_t[]> mData;
    uint64_t mSize;
};

/// For a test that needs an encoder: skips it, with the reason, where there is none.
#define LX_NEEDS_H264_ENCODER()                                                    \
    if (!HasH264Encoder()) {                                                       \
        GTEST_SKIP() << "this machine's libavcodec encodes no H.264 (no libx264)"; \
    }                                                                              \
    static_assert(true, "")
