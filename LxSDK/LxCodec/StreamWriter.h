#pragma once

// Internal: writes an image past the caches.

#include "LxCodec/ConversionKernels.h"

namespace LxDetail
{

/// Takes pieces of an image and writes them to memory in whole cache lines past the caches, so that what is written
/// over is not read first. Pieces that follow each other in memory share lines, wherever they begin.
class StreamWriter
{
public:
    /// Bytes of a piece at most.
    static constexpr size_t kMostBytes = 2304;

    explicit StreamWriter(const ConversionKernels &aKernels) : mKernels(aKernels) {}
    StreamWriter(const StreamWriter &) = delete;
    StreamWriter &operator=(const StreamWriter &) = delete;

    /// kMostBytes of memory for the next piece; it stays in the cache.
    uint8_t *GetRoom() { return mBuffer + kStreamUnit; }

    /// Writes the first aSize bytes of GetRoom() to aTo, some of them later.
    void Write(uint8_t *aTo, size_t aSize);

    /// Writes what is left. Call it before the image is handed to anybody.
    void Finish();

private:
    void WriteRest();

    const ConversionKernels &mKernels;
    uint8_t *mEnd = nullptr;  // behind the last piece
    size_t mRest = 0;         // bytes before mEnd that are not written yet; they lie before GetRoom()
    alignas(kStreamUnit) uint8_t mBuffer[kStreamUnit + kMostBytes];
};

}  // namespace LxDetail
