#include "LxCodec/LxH264Decoder.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "LxCodec/H264Picture.h"
#include "LxCodec/H264Syntax.h"
#include "LxCodec/Libav.h"

namespace H264 = LxDetail::H264;
using LxDetail::Libav;

namespace
{

constexpr size_t kMostPictures = 16;           // the most that a stream reorders (A.3.1: max_dec_frame_buffering)
constexpr uint64_t kLongestUnit = 1u << 30;    // far beyond what any level allows
constexpr int64_t kMostPixels = 139264 * 256;  // MaxFS of the highest level (table A-1), in pixels
constexpr int kSilent = 2 * AV_LOG_TRACE;      // added to the levels of messages, so that they do not reach stderr

struct FreeContext
{
    void operator()(AVCodecContext *aContext) const { Libav::Get().avcodec_free_context(&aContext); }
};

struct FreePacket
{
    void operator()(AVPacket *aPacket) const { Libav::Get().av_packet_free(&aPacket); }
};

struct FreeFrame
{
    void operator()(AVFrame *aFrame) const { Libav::Get().av_frame_free(&aFrame); }
};

using Frame = std::unique_ptr<AVFrame, FreeFrame>;

LxResult NoMemory()
{
    return LxResult(LxResultCode::NoMemory, "There is no memory to decode H.264.");
}

bool IsSlice(const H264::NalUnit &aUnit)
{
    return aUnit.IsSlice();
}

}  // namespace

class LX_NO_EXPORT LxH264Decoder::Data
{
public:
    LxResult Process(std::span<const uint8_t> aBytes);
    LxResult Retrieve(LxImage &aImage);
    void WaitForKeyFrame();
    void Flush();

private:
    LxResult Open();
    LxResult Decode(std::span<const uint8_t> aBytes);
    LxResult ReceivePictures();
    LxResult PassParameterSets();
    void NoteSequence();
    bool HasKeyFrame() const;

    std::unique_ptr<AVCodecContext, FreeContext> mContext;
    std::unique_ptr<AVPacket, FreePacket> mPacket;
    Frame mFrame;  // to receive into
    std::deque<Frame> mPictures;
    H264::FrameOrder mOrder;
    std::vector<H264::NalUnit> mUnits;  // of the unit that is processed
    std::vector<uint8_t> mParameterSets;
    std::vector<uint8_t> mSequence;  // the last sequence parameter set
    bool mIsWaiting = true;
    LxDetail::H264PictureConverter mConverter;
};

LxResult LxH264Decoder::Data::Open()
{
    if (!Libav::Load()) {
        return LxResult(LxResultCode::Unavailable, "This machine has no libavcodec to decode H.264.");
    }
    const AVCodec *codec = Libav::Get().avcodec_find_decoder(AV_CODEC_ID_H264);
    if (!codec) {
        return LxResult(LxResultCode::Unavailable, "This machine's libavcodec decodes no H.264.");
    }
    std::unique_ptr<AVCodecContext, FreeContext> context(Libav::Get().avcodec_alloc_context3(codec));
    mPacket.reset(Libav::Get().av_packet_alloc());
    mFrame.reset(Libav::Get().av_frame_alloc());
    if (!context || !mPacket || !mFrame) {
        return NoMemory();
    }
    context->thread_count = 1;
    context->flags |= AV_CODEC_FLAG_UNALIGNED;  // else columns cropped on the left stay to keep lines aligned
    context->max_pixels = kMostPixels;
    context->log_level_offset = kSilent;
    if (Libav::Get().avcodec_open2(context.get(), codec, nullptr) != 0) {
        return LxResult(LxResultCode::Unavailable, "This machine's libavcodec cannot be started.");
    }
    mContext = std::move(context);
    return LxResult();
}

LxResult LxH264Decoder::Data::Process(std::span<const uint8_t> aBytes)
{
    if (!mContext) {
        if (LxResult result = Open(); !result.IsOK()) {
            return result;
        }
    }
    H264::Split(aBytes, mUnits);
    if (mUnits.empty()) {
        WaitForKeyFrame();
        return LxResult(LxResultCode::InvalidDataFormat, "There is no H.264 in the data.");
    }
    NoteSequence();
    if (!mOrder.Take(mUnits)) {
        WaitForKeyFrame();
    }
    if (std::none_of(mUnits.begin(), mUnits.end(), IsSlice)) {
        return PassParameterSets();
    }
    if (mIsWaiting && !HasKeyFrame()) {
        const LxResult result = PassParameterSets();
        return result.IsOK()
                   ? LxResult(LxResultCode::Failed,
                              "A picture that this one refers to is missing; the next key frame is waited for.")
                   : result;
    }
    mIsWaiting = false;
    const LxResult result = Decode(aBytes);
    if (!result.IsOK()) {
        WaitForKeyFrame();
    }
    return result;
}

// A sequence that says nothing of its colours leaves those of the one before in the library.
void LxH264Decoder::Data::NoteSequence()
{
    for (const H264::NalUnit &unit : mUnits) {
        if (unit.mType == 7 && !std::equal(unit.mBytes.begin(), unit.mBytes.end(), mSequence.begin(), mSequence.end()))
        {
            mSequence.assign(unit.mBytes.begin(), unit.mBytes.end());
            mContext->color_range = AVCOL_RANGE_UNSPECIFIED;
            mContext->colorspace = AVCOL_SPC_UNSPECIFIED;
        }
    }
}

bool LxH264Decoder::Data::HasKeyFrame() const
{
    return std::any_of(mUnits.begin(), mUnits.end(),
                       [](const H264::NalUnit &aUnit) { return aUnit.IsIDR() || aUnit.HasRecoveryPoint(); });
}

// Alone they make no picture, which the library takes for an error though it remembers them.
LxResult LxH264Decoder::Data::PassParameterSets()
{
    mParameterSets.clear();
    for (const H264::NalUnit &unit : mUnits) {
        if (unit.IsParameterSet()) {
            mParameterSets.insert(mParameterSets.end(), {0, 0, 0, 1});
            mParameterSets.insert(mParameterSets.end(), unit.mBytes.begin(), unit.mBytes.end());
        }
    }
    if (mParameterSets.empty()) {
        return LxResult();
    }
    const LxResult result = Decode(mParameterSets);
    return result == LxResultCode::NoMemory ? result : LxResult();
}

LxResult LxH264Decoder::Data::Decode(std::span<const uint8_t> aBytes)
{
    if (Libav::Get().av_new_packet(mPacket.get(), static_cast<int>(aBytes.size())) != 0) {
        return NoMemory();
    }
    std::memcpy(mPacket->data, aBytes.data(), aBytes.size());
    const int sent = Libav::Get().avcodec_send_packet(mContext.get(), mPacket.get());
    Libav::Get().av_packet_unref(mPacket.get());
    const LxResult received = ReceivePictures();
    if (sent == AVERROR(ENOMEM)) {
        return NoMemory();
    }
    return sent == 0 ? received : LxResult(LxResultCode::Failed, "The H.264 data are broken.");
}

LxResult LxH264Decoder::Data::ReceivePictures()
{
    LxResult result;
    for (;;) {
        const int received = Libav::Get().avcodec_receive_frame(mContext.get(), mFrame.get());
        if (received == AVERROR(EAGAIN) || received == AVERROR_EOF) {
            return result;
        }
        if (received != 0) {
            return received == AVERROR(ENOMEM) ? NoMemory()
                                               : LxResult(LxResultCode::Failed, "The H.264 data are broken.");
        }
        if (mFrame->decode_error_flags != 0 || (mFrame->flags & AV_FRAME_FLAG_CORRUPT) != 0) {
            result = LxResult(LxResultCode::Failed, "The H.264 data are broken.");
        }
        else if (result.IsOK()) {
            if (mPictures.size() == kMostPictures) {
                mPictures.pop_front();
            }
            Frame picture(Libav::Get().av_frame_alloc());
            if (!picture) {
                return NoMemory();
            }
            Libav::Get().av_frame_move_ref(picture.get(), mFrame.get());
            mPictures.push_back(std::move(picture));
        }
        Libav::Get().av_frame_unref(mFrame.get());
    }
}

LxResult LxH264Decoder::Data::Retrieve(LxImage &aImage)
{
    if (mPictures.empty()) {
        return LxResult(LxResultCode::NotFound, "There is no decoded picture.");
    }
    const Frame picture = std::move(mPictures.front());
    mPictures.pop_front();
    return mConverter.Convert(*picture, aImage);
}

// Pictures that refer to what is missing come out as if nothing were wrong: only what follows a key frame is taken.
void LxH264Decoder::Data::WaitForKeyFrame()
{
    mIsWaiting = true;
    mOrder.Restart();
    if (mContext) {
        Libav::Get().avcodec_flush_buffers(mContext.get());
    }
}

void LxH264Decoder::Data::Flush()
{
    mPictures.clear();
    WaitForKeyFrame();
}

LxH264Decoder::LxH264Decoder() : mData(std::make_unique<Data>()) {}

LxH264Decoder::~LxH264Decoder() = default;

LxResult LxH264Decoder::Process(const ILxH264AccessUnit *aUnit)
{
    // each asked for once: a unit of the application's own may answer otherwise the next time
    const auto *const data = aUnit ? static_cast<const uint8_t *>(aUnit->GetDataPointer()) : nullptr;
    if (!data) {
        return LxResult(LxResultCode::InvalidArgument, "An access unit is needed to decode it.");
    }
    const uint64_t size = aUnit->GetDataSize();
    if (size >= kLongestUnit) {
        return LxResult(LxResultCode::TooLong, "The access unit is too long.");
    }
    try {
        return mData->Process({data, size});
    }
    catch (const std::bad_alloc &) {
        return NoMemory();
    }
}

LxResult LxH264Decoder::Retrieve(LxImage *aImage)
{
    if (!aImage) {
        return LxResult(LxResultCode::InvalidArgument, "An image is needed to retrieve a picture into it.");
    }
    return mData->Retrieve(*aImage);
}

void LxH264Decoder::Flush()
{
    mData->Flush();
}
