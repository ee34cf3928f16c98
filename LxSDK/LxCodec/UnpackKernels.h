#pragma once

// Internal: samples of a line, as they lie in memory, to one byte each.

#include <cstddef>
#include <cstdint>

#include "LxBuffer/PixelFormatTable.h"

namespace LxDetail
{

/// Writes aCount samples of the line that starts at aLine to aSamples, one byte each: the most significant 8 bits of
/// longer samples, shorter samples stretched to the full range. Reads the bytes that hold these samples and no others.
using UnpackKernel = void (*)(const uint8_t *aLine, uint8_t *aSamples, size_t aCount);

/// How to unpack a format: with a kernel, or not at all when its samples are bytes already.
struct Unpacking
{
    bool mIsKnown = false;
    UnpackKernel mKernel = nullptr;  ///< Null: the line holds the samples.
};

Unpacking FindUnpacking(const PixelFormat &aFormat);

}  // namespace LxDetail
