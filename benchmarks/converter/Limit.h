#pragma once

#include <cstddef>
#include <cstdint>

/// The least that any conversion to BGRa8 must do: one pass that reads the source bytes and writes 4 bytes a pixel,
/// which are made of nothing but what was read. aBitsPerPixel is a multiple of 2. aOut is aligned to 64 bytes; pixels
/// beyond a multiple of 64 are left out.
/// @param aStream write past the caches.
void PassOverImage(const uint8_t *aIn, size_t aBitsPerPixel, uint8_t *aOut, size_t aPixels, bool aStream);
