#pragma once

// Internal: the reception of frames from a real device.

#include <memory>

#include "Backends/Aravis/AravisConnection.h"
#include "Backends/Aravis/AravisStreamPump.h"
#include "LxBufferReceive/FrameQueue.h"
#include "LxBufferReceive/StreamSource.h"
#include "NodeMap/NodeMap.h"

namespace LxDetail
{

/// Opens the stream channel, starts the acquisition and queues the frames, on a thread of its own: whatever of it gets
/// stuck in the library because the device fell silent delays neither Start(), Stop() nor RetrieveBuffer().
///
/// While the device is lost RetrieveBuffer() fails with NotConnected. When it is back, the stream goes on by itself.
class AravisStreamReceiver : public StreamReceiver
{
public:
    AravisStreamReceiver(std::shared_ptr<AravisConnection> aConnection, std::shared_ptr<NodeMap> aNodeMap,
                         const LxStreamConfiguration &aConfiguration);
    ~AravisStreamReceiver() override;

    LxResult Start() override;
    LxResult Stop() override;
    LxResult RetrieveBuffer(std::shared_ptr<const LxBuffer> &aBuffer, uint32_t aTimeout) override;
    void GetStatistics(LxStreamStatistics &aStatistics) const override;

private:
    const std::shared_ptr<AravisConnection> mConnection;
    const std::shared_ptr<NodeMap> mNodeMap;
    const LxStreamConfiguration mConfiguration;
    const std::shared_ptr<FrameQueue> mQueue;
    std::shared_ptr<AravisStreamPump> mPump;  // of the last Start(), null after Stop(); these follow one another
};

}  // namespace LxDetail
