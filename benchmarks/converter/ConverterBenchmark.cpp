// Conversion to BGRa8: how near it comes to the least that any conversion must do, and how other libraries fare there.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "Limit.h"
#include "LxCodec/LxBufferConverter.h"
#include "Peers.h"

namespace
{

constexpr int kRing = 3;

struct Size
{
    uint32_t mWidth;
    uint32_t mHeight;
};

constexpr Size kFullHD = {1920, 1080};
constexpr Size kLarge = {4096, 3000};

// Frames that come one after the other, so that none is in the inner caches when its turn comes.
class Ring
{
public:
    bool Alloc(LxPixelType aType, Size aSize)
    {
        std::minstd_rand random(1);
        for (int i = 0; i < kRing; ++i) {
            if (!mInputs[i].Alloc(aSize.mWidth, aSize.mHeight, aType).IsOK() ||
                !mOutputs[i].GetImage()->Alloc(aSize.mWidth, aSize.mHeight, LxPixelType::BGRa8).IsOK())
            {
                return false;
            }
            auto *const bytes = static_cast<uint8_t *>(mInputs[i].GetDataPointer());
            for (uint64_t k = 0; k < mInputs[i].GetDataSize(); ++k) {
                bytes[k] = static_cast<uint8_t>(random());
            }
        }
        return true;
    }
    const LxImage &GetInput(int aIndex) const { return mInputs[aIndex]; }
    LxBuffer &GetOutput(int aIndex) { return mOutputs[aIndex]; }
    const uint8_t *GetIn(int aIndex) const { return static_cast<const uint8_t *>(mInputs[aIndex].GetDataPointer()); }
    uint8_t *GetOut(int aIndex) { return static_cast<uint8_t *>(mOutputs[aIndex].GetDataPointer()); }

private:
    LxImage mInputs[kRing];
    LxBuffer mOutputs[kRing] = {LxBuffer(LxPayloadType::Image), LxBuffer(LxPayloadType::Image),
                                LxBuffer(LxPayloadType::Image)};
};

// Seconds that a call takes for each frame of the ring.
template <typename Convert>
double TimeRing(const Convert &aConvert)
{
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < kRing; ++i) {
        aConvert(i);
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() / kRing;
}

double Median(std::vector<double> aValues)
{
    const auto middle = aValues.begin() + static_cast<long>(aValues.size() / 2);
    std::nth_element(aValues.begin(), middle, aValues.end());
    return *middle;
}

double MedianRatio(const std::vector<double> &aNumerators, const std::vector<double> &aDenominators)
{
    std::vector<double> ratios;
    for (size_t i = 0; i < aNumerators.size(); ++i) {
        ratios.push_back(aNumerators[i] / aDenominators[i]);
    }
    return Median(ratios);
}

// One thread. The contenders take turns, so that what else the machine does meets all of them.
void Convert(benchmark::State &aState, LxPixelType aType, Size aSize)
{
    Ring ring;
    if (!ring.Alloc(aType, aSize)) {
        aState.SkipWithError("no memory");
        return;
    }
    const size_t pixels = size_t{aSize.mWidth} * aSize.mHeight;
    LxBufferConverter converter(1);
    const std::vector<Peer> peers = GetPeers(aType);
    std::vector<double> ours;
    std::vector<double> limit;
    std::vector<std::vector<double>> others(peers.size());
    for (auto _ : aState) {
        const auto pass = [&](bool aStream) {
            return TimeRing([&](int aFrame) {
                PassOverImage(ring.GetIn(aFrame), LxPixelTypeGetBitsPerPixel(aType), ring.GetOut(aFrame), pixels,
                              aStream);
            });
        };
        limit.push_back(std::min(pass(false), pass(true)));
        ours.push_back(TimeRing([&](int aFrame) {
            if (!converter.Convert(&ring.GetInput(aFrame), &ring.GetOutput(aFrame), false, false).IsOK()) {
                aState.SkipWithError("not converted");
            }
        }));
        aState.SetIterationTime(ours.back());
        for (size_t i = 0; i < peers.size(); ++i) {
            others[i].push_back(TimeRing([&](int aFrame) {
                peers[i].mConvert(ring.GetIn(aFrame), ring.GetOut(aFrame), static_cast<int>(aSize.mWidth),
                                  static_cast<int>(aSize.mHeight));
            }));
        }
    }
    const double millions = static_cast<double>(pixels) / 1e6;
    aState.counters["1_ours MPix/s"] = millions / Median(ours);
    aState.counters["2_limit MPix/s"] = millions / Median(limit);
    aState.counters["3_of_limit"] = MedianRatio(limit, ours);
    const auto best = std::min_element(others.begin(), others.end(),
                                       [](const auto &aA, const auto &aB) { return Median(aA) < Median(aB); });
    if (best != others.end()) {
        const std::string name = peers[static_cast<size_t>(best - others.begin())].mName;
        aState.counters["4_" + name + " MPix/s"] = millions / Median(*best);
        aState.counters["5_" + name + "_of_limit"] = MedianRatio(limit, *best);
    }
}

// What the second thread brings, and that choosing the number of threads never costs anything.
void Threads(benchmark::State &aState, LxPixelType aType, Size aSize, int aThreads)
{
    Ring ring;
    if (!ring.Alloc(aType, aSize)) {
        aState.SkipWithError("no memory");
        return;
    }
    LxBufferConverter one(1);
    LxBufferConverter several(aThreads);
    std::vector<double> alone;
    std::vector<double> together;
    for (auto _ : aState) {
        const auto time = [&](LxBufferConverter &aConverter) {
            return TimeRing(
                [&](int aFrame) { aConverter.Convert(&ring.GetInput(aFrame), &ring.GetOutput(aFrame), false, false); });
        };
        alone.push_back(time(one));
        together.push_back(time(several));
        aState.SetIterationTime(together.back());
    }
    aState.counters["speedup"] = MedianRatio(alone, together);
}

const LxPixelType kTypes[] = {
    LxPixelType::Mono8,
    LxPixelType::Mono10,
    LxPixelType::Mono12,
    LxPixelType::Mono16,
    LxPixelType::RGB8,
    LxPixelType::BGR8,
    LxPixelType::RGBa8,
    LxPixelType::YUV422_8_UYVY,
    LxPixelType::YUV422_8,
    LxPixelType::Mono10p,
    LxPixelType::Mono12p,
    LxPixelType::Mono10Packed,
    LxPixelType::Mono12Packed,
    LxPixelType::BayerRG8,
    LxPixelType::BayerRG10p,
    LxPixelType::BayerRG12p,
    LxPixelType::BayerRG10Packed,
    LxPixelType::BayerRG12Packed,
    LxPixelType::BayerRG16,
};

std::string NameOf(const char *aWhat, LxPixelType aType, Size aSize)
{
    return std::string(aWhat) + "/" + LxPixelTypeToString(aType).GetAscii() + "/" + std::to_string(aSize.mWidth) + "x" +
           std::to_string(aSize.mHeight);
}

const bool kRegistered = [] {
    if (!HasOpenCV()) {
        std::fprintf(stderr, "OpenCV was not there when this was built: compared with libyuv only.\n");
    }
    const auto configure = [](benchmark::internal::Benchmark *aBenchmark, int aIterations) {
        aBenchmark->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(aIterations);
    };
    for (const LxPixelType type : kTypes) {
        configure(benchmark::RegisterBenchmark(NameOf("Convert", type, kFullHD).c_str(), Convert, type, kFullHD), 40);
        configure(benchmark::RegisterBenchmark(NameOf("Convert", type, kLarge).c_str(), Convert, type, kLarge), 8);
    }
    for (const LxPixelType type : {LxPixelType::Mono8, LxPixelType::YUV422_8_UYVY, LxPixelType::Mono12p,
                                   LxPixelType::BayerRG8, LxPixelType::BayerRG12p})
    {
        configure(benchmark::RegisterBenchmark(NameOf("TwoThreads", type, kFullHD).c_str(), Threads, type, kFullHD, 2),
                  60);
        configure(benchmark::RegisterBenchmark(NameOf("TwoThreads", type, kLarge).c_str(), Threads, type, kLarge, 2),
                  10);
    }
    for (const Size size : {Size{64, 64}, Size{256, 256}, Size{512, 512}, Size{640, 480}, Size{1024, 768}}) {
        configure(benchmark::RegisterBenchmark(NameOf("ChosenThreads", LxPixelType::Mono8, size).c_str(), Threads,
                                               LxPixelType::Mono8, size, -1),
                  400);
    }
    return true;
}();

}  // namespace
