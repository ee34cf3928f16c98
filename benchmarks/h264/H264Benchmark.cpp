// Decoding H.264 to BGRa8, beside the same libraries without anything around them.
#include <benchmark/benchmark.h>

extern "C" {
#include <libavcodec/avcodec.h>
}
#include <libyuv/convert_argb.h>

#include <chrono>
#include <cstring>
#include <memory>
#include <vector>

#include "H264Stream.h"
#include "LxCodec/LxH264Decoder.h"

namespace
{

using Clock = std::chrono::steady_clock;

constexpr int Width = 1920;
constexpr int Height = 1080;
constexpr int Pictures = 40;
constexpr size_t RingSize = 3;  // images that a receiver of pictures goes round

/// A scene that moves, with some noise, as a camera sees it.
H264Units MakeStream()
{
    H264Settings settings;
    settings.mWidth = Width;
    settings.mHeight = Height;
    settings.mKeyInterval = 20;
    settings.mMatrix = AVCOL_SPC_BT709;
    settings.mRange = AVCOL_RANGE_MPEG;
    settings.mOptions = "crf=23";
    uint32_t state = 1;
    return EncodeH264(settings, Pictures, [&state](int aPicture, int aPlane, int aX, int aY) {
        state = state * 1664525 + 1013904223;
        if (aPlane > 0) {
            return 64 + (aX + 2 * aPicture) / 8 % 128;
        }
        return 40 + ((aX + 3 * aPicture) / 16 * 13 + (aY - aPicture) / 16 * 29) % 160 + static_cast<int>(state >> 29);
    });
}

/// libavcodec and libyuv alone: decodes, and converts every picture.
class Plain
{
public:
    Plain()
    {
        avcodec_open2(mContext, avcodec_find_decoder(AV_CODEC_ID_H264), nullptr);
        for (auto &image : mImages) {
            image.resize(size_t{4} * Width * Height);
        }
    }
    ~Plain()
    {
        avcodec_free_context(&mContext);
        av_packet_free(&mPacket);
        av_frame_free(&mFrame);
    }

    int Decode(const std::vector<uint8_t> &aUnit)
    {
        av_new_packet(mPacket, static_cast<int>(aUnit.size()));
        std::memcpy(mPacket->data, aUnit.data(), aUnit.size());
        avcodec_send_packet(mContext, mPacket);
        av_packet_unref(mPacket);
        int pictures = 0;
        for (; avcodec_receive_frame(mContext, mFrame) == 0; ++pictures) {
            auto &image = mImages[mNext++ % RingSize];
            libyuv::I420ToARGBMatrix(mFrame->data[0], mFrame->linesize[0], mFrame->data[1], mFrame->linesize[1],
                                     mFrame->data[2], mFrame->linesize[2], image.data(), 4 * Width,
                                     &libyuv::kYuvH709Constants, Width, Height);
            benchmark::DoNotOptimize(image.data());
        }
        return pictures;
    }

private:
    AVCodecContext *mContext = avcodec_alloc_context3(avcodec_find_decoder(AV_CODEC_ID_H264));
    AVPacket *mPacket = av_packet_alloc();
    AVFrame *mFrame = av_frame_alloc();
    std::vector<uint8_t> mImages[RingSize];
    size_t mNext = 0;
};

class Ours
{
public:
    int Decode(const H264Unit &aUnit)
    {
        mDecoder.Process(&aUnit);
        int pictures = 0;
        for (; mDecoder.Retrieve(&mImages[mNext % RingSize]).IsOK(); ++pictures) {
            benchmark::DoNotOptimize(mImages[mNext++ % RingSize].GetDataPointer());
        }
        return pictures;
    }

private:
    LxH264Decoder mDecoder;
    LxImage mImages[RingSize];
    size_t mNext = 0;
};

// Picture by picture in turns, so that both meet the same machine.
void DecodeAndConvert(benchmark::State &aState)
{
    const H264Units stream = HasH264Encoder() ? MakeStream() : H264Units();
    if (stream.empty()) {
        aState.SkipWithError("this machine's libavcodec encodes no H.264");
        return;
    }
    std::vector<H264Unit> units(stream.begin(), stream.end());
    Plain plain;
    Ours ours;
    Clock::duration plainTime{};
    Clock::duration ourTime{};
    int pictures = 0;
    int plainPictures = 0;
    for (auto _ : aState) {
        const Clock::duration before = ourTime;
        for (size_t i = 0; i < units.size(); ++i) {
            const auto start = Clock::now();
            pictures += ours.Decode(units[i]);
            const auto middle = Clock::now();
            plainPictures += plain.Decode(stream[i]);
            plainTime += Clock::now() - middle;
            ourTime += middle - start;
        }
        aState.SetIterationTime(std::chrono::duration<double>(ourTime - before).count());
    }
    if (pictures != plainPictures || pictures == 0) {
        aState.SkipWithError("not every picture was decoded");
        return;
    }
    const double seconds = std::chrono::duration<double>(ourTime).count();
    aState.counters["rate frames/s"] = pictures / seconds;
    aState.counters["of-libavcodec-and-libyuv"] = std::chrono::duration<double>(plainTime).count() / seconds;
}

BENCHMARK(DecodeAndConvert)->Name("H264/1920x1080")->Unit(benchmark::kMillisecond)->UseManualTime();

}  // namespace
