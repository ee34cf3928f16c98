#pragma once

#include "LxBuffer/LxImage.h"

/// Above this many pixels in a direction an image is halved before it goes to OpenGL, to stay within the limits of
/// textures.
inline constexpr uint32_t MaxUploadLength = 4096;

/// Whether an image of this size is halved.
bool IsHalvedForUpload(uint32_t aWidth, uint32_t aHeight);

/// Shrinks an image 2:1 by copying every second pixel of every second line into a new image of the same pixel type. An
/// odd height above 1 loses its last line first, a height of 1 stays. Only whole bytes of a pixel are copied, so packed
/// formats do not survive and Bayer images keep one colour. False, and the output as it was, when the pixel type has
/// less than a byte a pixel, when the image's data are shorter than its lines, or when nothing would be left of it.
bool HalveImage(const ILxImage &aImage, LxImage &aHalved);
