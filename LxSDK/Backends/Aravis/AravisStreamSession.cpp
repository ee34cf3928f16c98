#include "Backends/Aravis/AravisStreamSession.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>

#include "LxBuffer/LxGenDCContainer.h"
#include "NodeMap/Arv.h"

namespace LxDetail
{

namespace
{

LxBufferStatus ToStatus(ArvBufferStatus aStatus)
{
    switch (aStatus) {
        case ARV_BUFFER_STATUS_SUCCESS:
            return LxBufferStatus::Complete;
        case ARV_BUFFER_STATUS_MISSING_PACKETS:
        case ARV_BUFFER_STATUS_WRONG_PACKET_ID:
            return LxBufferStatus::MissingPackets;
        case ARV_BUFFER_STATUS_SIZE_MISMATCH:
            return LxBufferStatus::SizeMismatch;
        case ARV_BUFFER_STATUS_TIMEOUT:
            return LxBufferStatus::Timeout;
        default:
            return LxBufferStatus::Aborted;
    }
}

/// The first part of a frame that is an image, or -1.
int FindImage(ArvBuffer *aFrame)
{
    const guint count = arv_buffer_get_n_parts(aFrame);
    for (guint i = 0; i < count; ++i) {
        const ArvBufferPartDataType type = arv_buffer_get_part_data_type(aFrame, i);
        if (type == ARV_BUFFER_PART_DATA_TYPE_2D_IMAGE || type == ARV_BUFFER_PART_DATA_TYPE_3D_IMAGE ||
            type == ARV_BUFFER_PART_DATA_TYPE_CONFIDENCE_MAP)
        {
            return static_cast<int>(i);
        }
    }
    return -1;
}

bool CarriesImage(ArvBuffer *aFrame)
{
    const ArvBufferPayloadType type = arv_buffer_get_payload_type(aFrame);
    return type == ARV_BUFFER_PAYLOAD_TYPE_IMAGE || type == ARV_BUFFER_PAYLOAD_TYPE_EXTENDED_CHUNK_DATA ||
           type == ARV_BUFFER_PAYLOAD_TYPE_MULTIPART;
}

// GigE Vision's number for a whole container, which the library passes on without knowing it.
constexpr int genDCPayload = 0x000B;

LxPayloadType GetPayloadType(ArvBuffer *aFrame)
{
    if (CarriesImage(aFrame)) {
        return LxPayloadType::Image;
    }
    return static_cast<int>(arv_buffer_get_payload_type(aFrame)) == genDCPayload ? LxPayloadType::GenDC
                                                                                 : LxPayloadType::Raw;
}

}  // namespace

/// A frame that was handed out.
struct AravisStreamSession::HeldFrame
{
    HeldFrame(LxPayloadType aType, GObjectPtr<ArvBuffer> aFrame, std::weak_ptr<AravisStreamSession> aSession)
        : mBuffer(aType), mFrame(std::move(aFrame)), mSession(std::move(aSession))
    {
    }
    ~HeldFrame()
    {
        if (const auto session = mSession.lock()) {
            session->Recycle(std::move(mFrame));
        }
    }
    HeldFrame(const HeldFrame &) = delete;
    HeldFrame &operator=(const HeldFrame &) = delete;

    LxBuffer mBuffer;
    GObjectPtr<ArvBuffer> mFrame;
    const std::weak_ptr<AravisStreamSession> mSession;
};

AravisStreamSession::AravisStreamSession(GObjectPtr<_ArvStream> aStream, const StreamFormat &aFormat,
                                         uint64_t aRestoreCount)
    : mPayloadSize(aFormat.mPayloadSize),
      mRestoreCount(aRestoreCount),
      mGeometry(aFormat.mGeometry),
      mStream(std::move(aStream))
{
}

AravisStreamSession::~AravisStreamSession()
{
    Close();
}

LxResult AravisStreamSession::Open(_ArvDevice *aDevice, const LxStreamConfiguration &aConfiguration,
                                   const StreamFormat &aFormat, uint64_t aRestoreCount,
                                   std::shared_ptr<AravisStreamSession> &aSession)
{
    ArvError error;
    GObjectPtr<ArvStream> stream(arv_device_create_stream(aDevice, nullptr, nullptr, error.Out()));
    if (!stream) {
        const LxResult result = error.ToResult();
        return result.IsOK() ? LxResult(LxResultCode::Failed, "The stream channel cannot be opened.") : result;
    }
    if (ARV_IS_GV_STREAM(stream.get())) {
        g_object_set(stream.get(), "socket-buffer", ARV_GV_STREAM_SOCKET_BUFFER_FIXED, "socket-buffer-size",
                     static_cast<gint>(std::min<uint32_t>(aConfiguration.mSocketBuffer, G_MAXINT)), nullptr);
        // a small socket buffer may lose much of one frame, and still all of it can be had again
        g_object_set(stream.get(), "packet-request-ratio", 1.0, nullptr);
    }
    for (uint32_t i = 0; i < aConfiguration.mBufferCount; ++i) {
        // the library's own allocation would end the process when there is not enough
        void *memory = std::calloc(aFormat.mPayloadSize, 1);
        if (!memory) {
            return LxResult(LxResultCode::NoMemory, "There is not enough memory for frames of " +
                                                        std::to_string(aFormat.mPayloadSize) + " bytes.");
        }
        arv_stream_push_buffer(stream.get(), arv_buffer_new_full(aFormat.mPayloadSize, memory, memory, std::free));
    }
    aSession.reset(new AravisStreamSession(std::move(stream), aFormat, aRestoreCount));
    return LxResult();
}

std::shared_ptr<const LxBuffer> AravisStreamSession::Pop(std::chrono::milliseconds aTimeout)
{
    GObjectPtr<ArvStream> stream;
    {
        const std::lock_guard lock(mMutex);
        if (!mStream) {
            return nullptr;
        }
        stream.reset(static_cast<ArvStream *>(g_object_ref(mStream.get())));
    }
    GObjectPtr<ArvBuffer> frame(
        arv_stream_timeout_pop_buffer(stream.get(), static_cast<guint64>(std::chrono::microseconds(aTimeout).count())));
    if (!frame) {
        return nullptr;
    }
    ArvBuffer *raw = frame.get();
    const auto held = std::make_shared<HeldFrame>(GetPayloadType(raw), std::move(frame), weak_from_this());
    Describe(raw, held->mBuffer);
    return std::shared_ptr<const LxBuffer>(held, &held->mBuffer);
}

void AravisStreamSession::Describe(_ArvBuffer *aFrame, LxBuffer &aBuffer)
{
    aBuffer.SetStatus(ToStatus(arv_buffer_get_status(aFrame)));
    aBuffer.SetBlockID(arv_buffer_get_frame_id(aFrame));
    aBuffer.SetTimestamp(arv_buffer_get_timestamp(aFrame));
    aBuffer.SetReceptionTime(
        static_cast<uint64_t>(std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count()));
    if (aBuffer.GetPayloadType() == LxPayloadType::GenDC && aBuffer.GetStatus() == LxBufferStatus::Complete) {
        AttachContainer(aFrame, aBuffer);
    }
    if (aBuffer.GetImage() && aBuffer.GetStatus() != LxBufferStatus::SizeMismatch) {
        const bool complete = aBuffer.GetStatus() == LxBufferStatus::Complete;
        if (!AttachImage(aFrame, complete, *aBuffer.GetImage()) && complete) {
            aBuffer.SetStatus(LxBufferStatus::SizeMismatch);
        }
    }
}

// Where the descriptor of a container is not right, the frame comes without it.
void AravisStreamSession::AttachContainer(_ArvBuffer *aFrame, LxBuffer &aBuffer)
{
    size_t size = 0;
    const void *data = arv_buffer_get_data(aFrame, &size);
    // the frame, which is held together with the buffer, owns the memory
    const std::shared_ptr<const void> memory(std::shared_ptr<const void>(), data);
    std::shared_ptr<const LxGenDCContainer> container;
    if (!LxGenDCContainer::Parse(memory, std::min<size_t>(size, mPayloadSize), container).IsOK()) {
        aBuffer.SetStatus(LxBufferStatus::SizeMismatch);
        return;
    }
    aBuffer.SetGenDC(std::move(container));
}

// The leader of a frame is the word of the device: nothing of it is believed that does not fit the memory.
bool AravisStreamSession::AttachImage(_ArvBuffer *aFrame, bool aComplete, LxImage &aImage)
{
    size_t size = 0;
    auto *data = static_cast<uint8_t *>(const_cast<void *>(arv_buffer_get_data(aFrame, &size)));
    if (!data) {
        return false;
    }
    FrameGeometry geometry = mGeometry;
    if (aComplete) {
        const int part = FindImage(aFrame);
        if (part < 0) {
            return false;
        }
        const guint id = static_cast<guint>(part);
        size_t partSize = 0;
        auto *image = static_cast<uint8_t *>(const_cast<void *>(arv_buffer_get_part_data(aFrame, id, &partSize)));
        size = std::min<size_t>(size, mPayloadSize);
        if (!image || image < data || image >= data + size) {
            return false;
        }
        size = static_cast<size_t>(data + size - image);
        data = image;
        gint x = 0, y = 0, width = 0, height = 0, paddingX = 0, paddingY = 0;
        arv_buffer_get_part_region(aFrame, id, &x, &y, &width, &height);
        arv_buffer_get_part_padding(aFrame, id, &paddingX, &paddingY);
        if (x < 0 || y < 0 || width <= 0 || height <= 0 || paddingX < 0 || paddingY < 0) {
            return false;
        }
        geometry = {static_cast<uint32_t>(width),
                    static_cast<uint32_t>(height),
                    static_cast<LxPixelType>(arv_buffer_get_part_pixel_format(aFrame, id)),
                    static_cast<uint32_t>(paddingX),
                    static_cast<uint32_t>(paddingY),
                    static_cast<uint32_t>(x),
                    static_cast<uint32_t>(y)};
    }
    else {
        // the library tells no geometry of an incomplete frame: it is that of the frames before. Where nothing came
        // there are zeros or an older frame.
        size = mPayloadSize;
    }
    if (!aImage
             .AttachSized(data, size, geometry.mWidth, geometry.mHeight, geometry.mPixelType, geometry.mPaddingX,
                          geometry.mPaddingY)
             .IsOK())
    {
        return false;
    }
    aImage.SetOffset(geometry.mOffsetX, geometry.mOffsetY);
    mGeometry = geometry;
    return true;
}

void AravisStreamSession::Recycle(GObjectPtr<_ArvBuffer> aBuffer)
{
    const std::lock_guard lock(mMutex);
    if (mStream) {
        arv_stream_push_buffer(mStream.get(), aBuffer.release());
    }
}

StreamCounters AravisStreamSession::GetCounters() const
{
    StreamCounters counters;
    const std::lock_guard lock(mMutex);
    if (mStream) {
        guint64 completed = 0, failures = 0, underruns = 0, resent = 0, missing = 0;
        arv_stream_get_statistics(mStream.get(), &completed, &failures, &underruns);
        if (ARV_IS_GV_STREAM(mStream.get())) {
            arv_gv_stream_get_statistics(ARV_GV_STREAM(mStream.get()), &resent, &missing);
        }
        counters = {underruns, resent, missing};
    }
    return counters;
}

void AravisStreamSession::Close()
{
    GObjectPtr<ArvStream> stream;
    {
        const std::lock_guard lock(mMutex);
        stream.swap(mStream);
    }
}

}  // namespace LxDetail
