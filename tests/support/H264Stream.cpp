#include "H264Stream.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/opt.h>
#include <libavutil/pixdesc.h>
}

#include <algorithm>

namespace
{

struct Encoder
{
    ~Encoder()
    {
        avcodec_free_context(&mContext);
        av_packet_free(&mPacket);
        av_frame_free(&mFrame);
    }

    AVCodecContext *mContext = nullptr;
    AVPacket *mPacket = av_packet_alloc();
    AVFrame *mFrame = av_frame_alloc();
};

bool Open(Encoder &aEncoder, const H264Settings &aSettings)
{
    const AVCodec *codec = avcodec_find_encoder_by_name("libx264");
    if (!codec) {
        return false;
    }
    AVCodecContext *context = aEncoder.mContext = avcodec_alloc_context3(codec);
    context->width = aSettings.mWidth;
    context->height = aSettings.mHeight;
    context->pix_fmt = aSettings.mFormat;
    context->time_base = {1, 25};
    context->gop_size = aSettings.mKeyInterval;
    context->keyint_min = aSettings.mKeyInterval;
    context->max_b_frames = aSettings.mBPictures;
    context->color_range = aSettings.mRange;
    context->colorspace = aSettings.mMatrix;
    context->thread_count = 1;
    context->log_level_offset = 2 * AV_LOG_TRACE;
    av_opt_set(context->priv_data, "preset", aSettings.mBPictures > 0 ? "veryfast" : "ultrafast", 0);
    if (aSettings.mBPictures == 0) {
        av_opt_set(context->priv_data, "tune", "zerolatency", 0);
    }
    av_opt_set(context->priv_data, "crf", "4", 0);
    std::string options = "scenecut=0:b-adapt=0:sliced-threads=0";
    if (!aSettings.mOptions.empty()) {
        options += ":" + aSettings.mOptions;
    }
    av_opt_set(context->priv_data, "x264-params", options.c_str(), 0);
    return avcodec_open2(context, codec, nullptr) == 0;
}

void Draw(AVFrame &aFrame, int aPicture, const H264Source &aSource)
{
    const AVPixFmtDescriptor *format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(aFrame.format));
    for (int plane = 0; plane < format->nb_components; ++plane) {
        const bool chroma = plane > 0;
        const int width = chroma ? AV_CEIL_RSHIFT(aFrame.width, format->log2_chroma_w) : aFrame.width;
        const int height = chroma ? AV_CEIL_RSHIFT(aFrame.height, format->log2_chroma_h) : aFrame.height;
        for (int y = 0; y < height; ++y) {
            uint8_t *line = aFrame.data[plane] + y * aFrame.linesize[plane];
            for (int x = 0; x < width; ++x) {
                const int value = aSource(aPicture, plane, x, y);
                if (format->comp[plane].depth > 8) {
                    line[2 * x] = static_cast<uint8_t>(value);
                    line[2 * x + 1] = static_cast<uint8_t>(value >> 8);
                }
                else {
                    line[x] = static_cast<uint8_t>(value);
                }
            }
        }
    }
}

void Receive(Encoder &aEncoder, H264Units &aUnits)
{
    while (avcodec_receive_packet(aEncoder.mContext, aEncoder.mPacket) == 0) {
        aUnits.emplace_back(aEncoder.mPacket->data, aEncoder.mPacket->data + aEncoder.mPacket->size);
        av_packet_unref(aEncoder.mPacket);
    }
}

}  // namespace

bool HasH264Encoder()
{
    return avcodec_find_encoder_by_name("libx264") != nullptr;
}

H264Units EncodeH264(const H264Settings &aSettings, int aCount, const H264Source &aSource)
{
    Encoder encoder;
    H264Units units;
    if (!Open(encoder, aSettings)) {
        return units;
    }
    AVFrame &frame = *encoder.mFrame;
    frame.format = aSettings.mFormat;
    frame.width = aSettings.mWidth;
    frame.height = aSettings.mHeight;
    av_frame_get_buffer(&frame, 0);
    for (int i = 0; i < aCount; ++i) {
        av_frame_make_writable(&frame);
        Draw(frame, i, aSource);
        frame.pts = i;
        avcodec_send_frame(encoder.mContext, &frame);
        Receive(encoder, units);
    }
    avcodec_send_frame(encoder.mContext, nullptr);
    Receive(encoder, units);
    return units;
}

H264Unit::H264Unit(const std::vector<uint8_t> &aBytes)
    : mData(std::make_unique<uint8_t[]>(aBytes.size())), mSize(aBytes.size())
{
    std::copy(aBytes.begin(), aBytes.end(), mData.get());
}
