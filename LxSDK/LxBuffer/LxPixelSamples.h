#pragma once

#include "LxBase/LxResult.h"
#include "LxBase/LxString.h"
#include "LxBuffer/ILxImage.h"

/// The samples of one pixel as they were sent, neither scaled nor converted.
struct LxPixelSamples
{
    uint32_t mCount = 0;      ///< 1 for mono and Bayer formats, 3 or 4 for colour formats.
    int64_t mValues[4] = {};  ///< From 0 to 2^bits - 1; those of Mono8s from -128 to 127.
    LxString mNames[4];  ///< "R", "G", "B", "a", "Y", "Cb", "Cr", "U", "V"; the colour filter of a Bayer pixel; empty
                         ///< for mono.
};

/// Reads the samples of one pixel in the order in which they lie in memory. Of formats whose pixels share chroma each
/// pixel has that of its group.
/// @return InvalidArgument for a null or empty image; OutOfRange when the pixel is outside it; BufferTooSmall when the
///         data are shorter than the geometry; PixelFormatNotSupported for formats of floating point, three-dimensional
///         and other data, semiplanar formats and packed formats of several components of GigE Vision 1.x.
/// @thread{any}
LX_API LxResult LxReadPixelSamples(const ILxImage *aImage, uint32_t aX, uint32_t aY, LxPixelSamples &aSamples);
