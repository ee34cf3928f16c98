#pragma once

// Internal: decoded pictures as BGRa8.

#include "LxBuffer/LxImage.h"

struct AVFrame;
struct SwsContext;

namespace LxDetail
{

/// Converts pictures of libavcodec's H.264 decoder, by our kernels where there are 8 bits in 4:2:0 or 4:2:2, else by
/// libswscale. Not synchronised.
class H264PictureConverter
{
public:
    H264PictureConverter() = default;
    ~H264PictureConverter();
    H264PictureConverter(const H264PictureConverter &) = delete;
    H264PictureConverter &operator=(const H264PictureConverter &) = delete;

    /// Allocates the image as needed. NoMemory and PixelFormatNotSupported, and the image as it was.
    LxResult Convert(const AVFrame &aPicture, LxImage &aImage);

private:
    SwsContext *mScaler = nullptr;  // kept for the next picture of the same kind
};

}  // namespace LxDetail
