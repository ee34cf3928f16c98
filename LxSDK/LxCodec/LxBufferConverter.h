#pragma once

#include <memory>

#include "LxBuffer/LxBuffer.h"

/// Converts images of mono, RGB, BGR, YUV, YCbCr and Bayer pixel formats into BGRa8 (PFNC 0x02200017: the bytes B, G,
/// R, a) with alpha 255.
///
/// - Samples of more than 8 bits keep their most significant 8, samples of fewer bits are stretched to 0 to 255 by
///   repeating their bits. Mono8s is shown with 0 as middle grey (128). Alpha of the input is not used.
/// - Bayer images are interpolated bilinearly, borders mirrored so that the tile is kept. An image of one line or one
///   column, which has no such neighbours, repeats it.
/// - YUV and YCbCr follow ITU-T T.871 (full range, BT.601) and the _601, _709, _2020 variants the matrices of these
///   recommendations in limited range; results are rounded to the nearest. Pixels that share chroma get the same. Where
///   an odd width leaves the last pixels of a line without chroma of their own, that of the pixels before is used.
/// - Three-dimensional, data, confidence, bicolour, sparse colour and single-colour formats are not supported.
///
/// One conversion at a time per object; different objects are independent. What a conversion writes does not depend on
/// the number of threads.
/// @thread{any; one object by one thread at a time}
class LX_API LxBufferConverter
{
public:
    /// How many threads a conversion may use, with the caller's: -1 (and every other negative number) as many as suit
    /// the image, one for a small one and at most as many as the machine has processors, 0 or 1 the caller's only, at
    /// most 256. They are started when first needed and sleep between conversions.
    explicit LxBufferConverter(int aThreadCount = -1);
    ~LxBufferConverter();
    LxBufferConverter(const LxBufferConverter &) = delete;
    LxBufferConverter &operator=(const LxBufferConverter &) = delete;

    /// Whether Convert() can read the format.
    static bool IsSupported(LxPixelType aType);

    /// Converts an image into the image of the output buffer.
    /// @param aInput the image, at most 2^24 pixels wide; its data size must cover its geometry. It must not lie in the
    ///        memory of the output.
    /// @param aOutput a buffer that has an image. Its image must be BGRa8 (or, with aAdapt, may be anything).
    /// @param aAdapt true: the output image is (re)allocated without padding when it is not BGRa8 of the input's size
    ///        without padding; false: the output must have the input's size, else SizeMismatch and nothing is written;
    ///        its paddings are not written to.
    /// @param aReserved kept for the interface, without effect.
    /// @return InvalidArgument for null or empty images, images that are too large or share memory, and an output that
    ///         is not BGRa8; PixelFormatNotSupported; BufferTooSmall when the input's data are shorter than its
    ///         geometry; SizeMismatch; NoMemory. On every failure the output is untouched.
    LxResult Convert(const ILxImage *aInput, LxBuffer *aOutput, bool aAdapt, bool aReserved);

    /// The number as it was given.
    int GetThreadCount() const;
    /// Not while a conversion runs.
    void SetThreadCount(int aThreadCount);

private:
    class Data;
    std::unique_ptr<Data> mData;
};
