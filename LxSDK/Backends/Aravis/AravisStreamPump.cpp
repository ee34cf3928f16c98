#include "Backends/Aravis/AravisStreamPump.h"

#include <utility>

#include "Backends/Aravis/BackgroundTasks.h"
#include "LxGenICam/LxGenEnum.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "NodeMap/Arv.h"

namespace LxDetail
{

namespace
{

/// How often the pump looks up from waiting for a frame.
constexpr std::chrono::milliseconds lookUp{50};
/// From a failed attempt to go on after the device was away to the next one.
constexpr std::chrono::milliseconds retryPause{300};
/// How long to wait for the thread when the device was disconnected: it is stuck only if the device was silent then.
constexpr std::chrono::milliseconds closedPatience{300};
/// How long to wait for another stream of the device to end.
constexpr std::chrono::milliseconds claimPatience{500};
/// A frame that is larger is taken for an error of the device.
constexpr uint64_t largestFrame = UINT64_C(1) << 31;

/// False when the device has not taken it; one that is away answers at once.
bool StopAcquisition(NodeMap &aNodeMap)
{
    const LxResult stopped = aNodeMap.GetParameters()->ExecuteCommand("AcquisitionStop");
    // cameras without the feature do without the lock
    const LxResult unlocked = aNodeMap.SetInternalInteger("TLParamsLocked", 0);
    return stopped.IsOK() && (unlocked.IsOK() || unlocked == LxResultCode::NotFound);
}

}  // namespace

AravisStreamPump::AravisStreamPump(std::shared_ptr<AravisConnection> aConnection, std::shared_ptr<NodeMap> aNodeMap,
                                   const LxStreamConfiguration &aConfiguration, std::shared_ptr<FrameQueue> aQueue)
    : mConnection(std::move(aConnection)),
      mNodeMap(std::move(aNodeMap)),
      mConfiguration(aConfiguration),
      mQueue(std::move(aQueue))
{
}

LxResult AravisStreamPump::Start()
{
    RunInBackground([self = shared_from_this()] { self->Run(); });
    std::unique_lock lock(mMutex);
    WaitUntilDone(lock, mStarted);
    if (mStarted) {
        return mStartResult;
    }
    mStopped = true;  // stuck in the library: the thread cleans up when it comes back
    lock.unlock();
    return mConnection->GetLink().GetResult();
}

void AravisStreamPump::Stop()
{
    std::unique_lock lock(mMutex);
    mStopped = true;
    mChanged.notify_all();
    WaitUntilDone(lock, mEnded);
}

// Waits for the thread while the device answers; there is no use in waiting for one that is stuck.
void AravisStreamPump::WaitUntilDone(std::unique_lock<std::mutex> &aLock, const bool &aDone)
{
    const auto start = std::chrono::steady_clock::now();
    const auto isWorthWaiting = [this, start] {
        const LinkState state = mConnection->GetLink().GetState();
        return state == LinkState::Connected ||
               (state == LinkState::Closed && std::chrono::steady_clock::now() - start < closedPatience);
    };
    while (!aDone && isWorthWaiting()) {
        mChanged.wait_for(aLock, lookUp, [&aDone] { return aDone; });
    }
}

void AravisStreamPump::Run()
{
    bool claimed = false;
    LxResult result = mConnection->GetLink().GetResult();
    if (result.IsOK()) {
        // a stream that was stopped while the device was away may still be on its way out
        const auto end = std::chrono::steady_clock::now() + claimPatience;
        do {
            claimed = mConnection->ClaimStream();
        } while (!claimed && std::chrono::steady_clock::now() < end && !WaitForStop(std::chrono::milliseconds(10)));
        result =
            claimed ? OpenSession() : LxResult(LxResultCode::AlreadyOpen, "Another stream of this device is started.");
    }
    bool opened = result.IsOK();
    {
        const std::lock_guard lock(mMutex);
        mStartResult = std::move(result);
        mStarted = true;
        mChanged.notify_all();
    }
    while (opened && RunSession()) {
        CloseSession();
        // the device was away, or its frames have grown
        do {
            opened = !IsStopped() && mConnection->GetLink().IsUp() && OpenSession().IsOK();
        } while (!opened && !WaitForStop(retryPause));
    }
    CloseSession();
    if (claimed) {
        mConnection->ReleaseStream();
        if (mConnection->GetLink().IsUp()) {
            SettleStop(*mConnection, *mNodeMap);  // back meanwhile
        }
    }
    const std::lock_guard lock(mMutex);
    mEnded = true;
    mChanged.notify_all();
}

// Passes frames on until the stream is stopped (false) or the session has to be opened anew (true).
bool AravisStreamPump::RunSession()
{
    const LinkMonitor &link = mConnection->GetLink();
    auto checked = std::chrono::steady_clock::now();
    while (!IsStopped() && link.GetState() != LinkState::Closed) {
        if (link.GetRestoreCount() != mSession->GetRestoreCount()) {
            return true;
        }
        SetLost(!link.IsUp());
        std::shared_ptr<const LxBuffer> frame = mSession->Pop(lookUp);
        Count();
        if (!frame) {
            continue;
        }
        const bool mismatch = frame->GetStatus() == LxBufferStatus::SizeMismatch;
        Pass(std::move(frame));
        if (mismatch && std::chrono::steady_clock::now() - checked > retryPause) {
            checked = std::chrono::steady_clock::now();
            if (IsOutgrown()) {
                return true;
            }
        }
    }
    SetLost(!link.IsUp());
    return false;
}

LxResult AravisStreamPump::OpenSession()
{
    const uint64_t restoreCount = mConnection->GetLink().GetRestoreCount();
    const std::shared_ptr<ArvDevicePort> port = mConnection->GetPort();
    if (LxResult state = port->GetState(); !state.IsOK()) {
        return state;
    }
    const GObjectPtr<_ArvDevice> device = port->AcquireDevice();
    if (!device) {
        return LxResult(LxResultCode::NotConnected, "The device was disconnected.");
    }
    if (mConnection->GetTransport().IsGigEVision()) {
        if (LxResult result = ChoosePacketSize(device.get()); !result.IsOK()) {
            return result;
        }
    }
    if (mConnection->TakeOwedStop()) {
        StopAcquisition(*mNodeMap);
    }
    mNodeMap->SetInternalInteger("TLParamsLocked", 1);
    StreamFormat format;
    std::shared_ptr<AravisStreamSession> session;
    LxResult result = GetFormat(format);
    if (result.IsOK()) {
        result = AravisStreamSession::Open(device.get(), mConfiguration, format, restoreCount, session);
    }
    if (result.IsOK()) {
        result = mNodeMap->GetParameters()->ExecuteCommand("AcquisitionStart");
    }
    if (!result.IsOK()) {
        mNodeMap->SetInternalInteger("TLParamsLocked", 0);
        return result;
    }
    mSession = std::move(session);
    return LxResult();
}

void AravisStreamPump::CloseSession()
{
    if (!mSession) {
        return;
    }
    if (!StopAcquisition(*mNodeMap)) {
        mConnection->OweStop();
    }
    Count();
    mPast += mSession->GetCounters();
    mSession->Close();
    mSession.reset();
}

void AravisStreamPump::SettleStop(AravisConnection &aConnection, NodeMap &aNodeMap)
{
    if (aConnection.ClaimStream()) {
        if (aConnection.TakeOwedStop() && !StopAcquisition(aNodeMap)) {
            aConnection.OweStop();
        }
        aConnection.ReleaseStream();
    }
}

LxResult AravisStreamPump::ChoosePacketSize(_ArvDevice *aDevice)
{
    ArvGvDevice *device = ARV_GV_DEVICE(aDevice);
    // the same reception with and without root rights; the other way takes 100 ms to open
    arv_gv_device_set_stream_options(device, ARV_GV_STREAM_OPTION_PACKET_SOCKET_DISABLED);
    arv_gv_device_set_packet_size_adjustment(device, ARV_GV_PACKET_SIZE_ADJUSTMENT_NEVER);
    ArvError error;
    bool configured = false;
    if (mConfiguration.mPacketSize != 0) {
        arv_gv_device_set_packet_size(device, static_cast<gint>(mConfiguration.mPacketSize), error.Out());
        configured = !error.IsSet();
    }
    if (!configured) {
        // sends test packets where the device can; it keeps its packet size otherwise
        arv_gv_device_auto_packet_size(device, error.Out());
    }
    mNodeMap->NotifyFeature("GevSCPSPacketSize");
    const LxResult result = error.ToResult();
    return result == LxResultCode::Timeout ? result : LxResult();
}

LxResult AravisStreamPump::GetFormat(StreamFormat &aFormat) const
{
    LxGenParameterArray *parameters = mNodeMap->GetParameters();
    int64_t width = 0;
    int64_t height = 0;
    int64_t pixelFormat = 0;
    const LxGenEnum *feature = parameters->GetEnum("PixelFormat");
    if (parameters->GetIntegerValue("Width", width).IsOK() && parameters->GetIntegerValue("Height", height).IsOK() &&
        feature && feature->GetValue(pixelFormat).IsOK() && width > 0 && height > 0 && width <= UINT32_MAX &&
        height <= UINT32_MAX)
    {
        aFormat.mGeometry.mWidth = static_cast<uint32_t>(width);
        aFormat.mGeometry.mHeight = static_cast<uint32_t>(height);
        aFormat.mGeometry.mPixelType = static_cast<LxPixelType>(pixelFormat);
    }
    int64_t size = 0;
    const LxResult result = parameters->GetIntegerValue("PayloadSize", size);
    if (result == LxResultCode::NotFound) {
        size = static_cast<int64_t>(
            LxPixelTypeGetImageSize(aFormat.mGeometry.mPixelType, aFormat.mGeometry.mWidth, aFormat.mGeometry.mHeight));
    }
    else if (!result.IsOK()) {
        return result;
    }
    if (size <= 0 || static_cast<uint64_t>(size) > largestFrame) {
        return LxResult(LxResultCode::OutOfRange,
                        "The device says that its frames have " + std::to_string(size) + " bytes.");
    }
    aFormat.mPayloadSize = static_cast<uint64_t>(size);
    return LxResult();
}

bool AravisStreamPump::IsOutgrown() const
{
    StreamFormat format;
    return GetFormat(format).IsOK() && format.mPayloadSize > mSession->GetPayloadSize();
}

void AravisStreamPump::Pass(std::shared_ptr<const LxBuffer> aFrame)
{
    const std::lock_guard lock(mMutex);
    if (!mStopped) {
        mQueue->Push(std::move(aFrame));
    }
}

void AravisStreamPump::Count()
{
    StreamCounters sum = mPast;
    sum += mSession->GetCounters();
    const std::lock_guard lock(mMutex);
    if (!mStopped) {
        if (sum.mUnderruns > mUnderruns) {
            mQueue->CountDropped(sum.mUnderruns - mUnderruns);
        }
        mQueue->SetPackets(sum.mResentPackets, sum.mMissingPackets);
    }
    mUnderruns = sum.mUnderruns;
}

void AravisStreamPump::SetLost(bool aLost)
{
    const std::lock_guard lock(mMutex);
    if (mLost != aLost && !mStopped) {
        mLost = aLost;
        mQueue->SetLost(aLost);
    }
}

bool AravisStreamPump::IsStopped() const
{
    const std::lock_guard lock(mMutex);
    return mStopped;
}

bool AravisStreamPump::WaitForStop(std::chrono::milliseconds aTime)
{
    std::unique_lock lock(mMutex);
    return mChanged.wait_for(lock, aTime, [this] { return mStopped; });
}

}  // namespace LxDetail
