#include "Backends/Aravis/AravisStreamReceiver.h"

#include <utility>

namespace LxDetail
{

AravisStreamReceiver::AravisStreamReceiver(std::shared_ptr<AravisConnection> aConnection,
                                           std::shared_ptr<NodeMap> aNodeMap,
                                           const LxStreamConfiguration &aConfiguration)
    : mConnection(std::move(aConnection)),
      mNodeMap(std::move(aNodeMap)),
      mConfiguration(aConfiguration),
      mQueue(std::make_shared<FrameQueue>(aConfiguration))
{
}

AravisStreamReceiver::~AravisStreamReceiver()
{
    Stop();
}

LxResult AravisStreamReceiver::Start()
{
    if (mPump) {
        return LxResult(LxResultCode::AlreadyOpen, "The stream is started already.");
    }
    mQueue->Start();
    auto pump = std::make_shared<AravisStreamPump>(mConnection, mNodeMap, mConfiguration, mQueue);
    const LxResult result = pump->Start();
    if (result.IsOK()) {
        mPump = std::move(pump);
    }
    else {
        mQueue->Stop();
    }
    return result;
}

LxResult AravisStreamReceiver::Stop()
{
    mQueue->Stop();
    if (mPump) {
        mPump->Stop();
        mPump.reset();
    }
    return LxResult();
}

LxResult AravisStreamReceiver::RetrieveBuffer(std::shared_ptr<const LxBuffer> &aBuffer, uint32_t aTimeout)
{
    return mQueue->Retrieve(aBuffer, aTimeout);
}

void AravisStreamReceiver::GetStatistics(LxStreamStatistics &aStatistics) const
{
    mQueue->GetStatistics(aStatistics);
}

}  // namespace LxDetail
