#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "LxBuffer/LxPixelType.h"

/// Another way to convert a format to BGRa8, with one thread: what a careful application would write with a library.
struct Peer
{
    std::string mName;
    /// Input without padding, output of 4 bytes a pixel, width, height.
    std::function<void(const uint8_t *, uint8_t *, int, int)> mConvert;
};

/// The ways that the libraries offer for a format.
std::vector<Peer> GetPeers(LxPixelType aType);

/// Those of OpenCV; none where it is not installed.
std::vector<Peer> GetOpenCVPeers(LxPixelType aType);
bool HasOpenCV();

/// Packed samples to a byte each, as C++ does it without vector instructions; false when the format is not packed.
bool UnpackSimply(LxPixelType aType, const uint8_t *aIn, uint8_t *aOut, int aPixels);
