#pragma once

#include <memory>

#include "LxBuffer/LxBuffer.h"

/// Converts images of any supported pixel format into BGRa8 (PFNC 0x02200017) with alpha 255.
///
/// Samples of more than 8 bits keep their most significant 8; Bayer images are interpolated bilinearly, borders
/// mirrored so that the tile is kept; YCbCr follows ITU-T T.871 (full range, BT.601) and the _601, _709, _2020 variants
/// the matrices of these recommendations in limited range.
///
/// One conversion at a time per object; different objects are independent.
class LX_API LxBufferConverter
{
public:
    /// How many threads a conversion may use: -1 as many as the machine has processors, 0 or 1 the caller's only.
    explicit LxBufferConverter(int aThreadCount = -1);
    ~LxBufferConverter();
    LxBufferConverter(const LxBufferConverter &) = delete;
    LxBufferConverter &operator=(const LxBufferConverter &) = delete;

    /// Whether Convert() can read the format.
    static bool IsSupported(LxPixelType aType);

    /// Converts an image into the image of the output buffer.
    /// @param aInput the image; its data size must cover its geometry.
    /// @param aOutput an image buffer. Its image must be BGRa8 (or, with aAdapt, may be anything).
    /// @param aAdapt true: the output image is (re)allocated to the input's size when it differs; false: the output
    ///        must have the input's size, else SizeMismatch and nothing is written.
    /// @param aReserved kept for the interface; recorded, without effect.
    /// @return InvalidArgument for null or empty images, PixelFormatNotSupported, BufferTooSmall when the input's data
    ///         are shorter than its geometry, SizeMismatch, NoMemory. On every failure the output is untouched.
    LxResult Convert(const ILxImage *aInput, LxBuffer *aOutput, bool aAdapt, bool aReserved);

    int GetThreadCount() const;
    void SetThreadCount(int aThreadCount);

private:
    class Data;
    std::unique_ptr<Data> mData;
};
