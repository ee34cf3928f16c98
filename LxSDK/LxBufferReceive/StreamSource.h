#pragma once

// Internal: what a device that can stream offers to LxStream.

#include <memory>

#include "LxBufferReceive/LxStream.h"

namespace LxDetail
{

/// A running or stopped reception. RetrieveBuffer() may be called on another thread than Stop().
class StreamReceiver
{
public:
    virtual ~StreamReceiver() = default;

    virtual LxResult Start() = 0;
    virtual LxResult Stop() = 0;
    virtual LxResult RetrieveBuffer(std::shared_ptr<const LxBuffer> &aBuffer, uint32_t aTimeout) = 0;
    virtual void GetStatistics(LxStreamStatistics &aStatistics) const = 0;
};

/// Implemented by device classes that can stream; LxStream finds it by dynamic_cast.
class StreamSource
{
public:
    virtual ~StreamSource() = default;

    virtual LxResult CreateReceiver(const LxStreamConfiguration &aConfiguration,
                                    std::unique_ptr<StreamReceiver> &aReceiver) = 0;
};

}  // namespace LxDetail
