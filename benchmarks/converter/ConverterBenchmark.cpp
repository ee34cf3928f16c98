// Conversion to BGRa8: how near it comes to the least that any conversion must do, and how other libraries fare there.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Limit.h"
#include "LxCodec/LxBufferConverter.h"
#include "Peers.h"

namespace
{

constexpr int RingSize = 3;

struct Size
{
    uint32_t mWidth;
    uint32_t mHeight;
};

constexpr Size FullHD = {1920, 1080};
constexpr Size Large = {4096, 3000};

// Frames that come one after the other, so that none is in the inner caches when its turn comes.
class Ring
{
public:
    bool Alloc(LxPixelType aType, Size aSize)
    {
        std::minstd_rand random(1);
        for (int i = 0; i < RingSize; ++i) {
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
    LxImage mInputs[RingSize];
    LxBuffer mOutputs[RingSize] = {LxBuffer(LxPayloadType::Image), LxBuffer(LxPayloadType::Image),
                                   LxBuffer(LxPayloadType::Image)};
};

// Seconds that a call takes for each frame of the ring.
template <typename Convert>
double TimeRing(const Convert &aConvert)
{
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < RingSize; ++i) {
        aConvert(i);
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() / RingSize;
}

// Seconds that a converter takes for a frame.
double TimeConverter(benchmark::State &aState, Ring &aRing, LxBufferConverter &aConverter)
{
    return TimeRing([&](int aFrame) {
        if (!aConverter.Convert(&aRing.GetInput(aFrame), &aRing.GetOutput(aFrame), false, false).IsOK()) {
            aState.SkipWithError("not converted");
        }
    });
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
        ours.push_back(TimeConverter(aState, ring, converter));
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

// A thread that is awake all the time, so that what two threads reach together is what the memory allows them.
class SecondThread
{
public:
    SecondThread()
        : mThread([this] {
              for (uint32_t done = 0; !mStop;) {
                  if (mStarted != done) {
                      mWork();
                      mDone = ++done;
                  }
              }
          })
    {
    }
    ~SecondThread()
    {
        mStop = true;
        mThread.join();
    }
    void Start(std::function<void()> aWork)
    {
        mWork = std::move(aWork);
        ++mStarted;
    }
    void Await() const
    {
        while (mDone != mStarted) {
        }
    }

private:
    std::function<void()> mWork;
    std::atomic<uint32_t> mStarted = 0;
    std::atomic<uint32_t> mDone = 0;
    std::atomic<bool> mStop = false;
    std::thread mThread;
};

// What the second thread brings, beside what it brings to the limit, each thread with half of the image.
void TwoThreads(benchmark::State &aState, LxPixelType aType, Size aSize)
{
    Ring ring;
    if (!ring.Alloc(aType, aSize)) {
        aState.SkipWithError("no memory");
        return;
    }
    LxBufferConverter one(1);
    LxBufferConverter two(2);
    const size_t pixels = size_t{aSize.mWidth} * aSize.mHeight;
    const size_t bits = LxPixelTypeGetBitsPerPixel(aType);
    std::vector<double> alone;
    std::vector<double> together;
    std::vector<double> limit;
    for (auto _ : aState) {
        const auto pass = [&](bool aStream) {
            return TimeRing(
                [&](int aFrame) { PassOverImage(ring.GetIn(aFrame), bits, ring.GetOut(aFrame), pixels, aStream); });
        };
        alone.push_back(TimeConverter(aState, ring, one));
        together.push_back(TimeConverter(aState, ring, two));
        aState.SetIterationTime(together.back());
        const double single = std::min(pass(false), pass(true));
        SecondThread second;
        const auto halves = [&](bool aStream) {
            const auto passHalf = [&ring, bits, pixels, aStream](int aFrame, size_t aHalf) {
                const size_t start = aHalf * pixels / 2;
                PassOverImage(ring.GetIn(aFrame) + start * bits / 8, bits, ring.GetOut(aFrame) + 4 * start, pixels / 2,
                              aStream);
            };
            return TimeRing([&](int aFrame) {
                second.Start([&passHalf, aFrame] { passHalf(aFrame, 1); });
                passHalf(aFrame, 0);
                second.Await();
            });
        };
        limit.push_back(single / std::min(halves(false), halves(true)));
    }
    aState.counters["1_speedup"] = MedianRatio(alone, together);
    aState.counters["2_speedup_of_the_limit"] = Median(limit);
}

// Choosing the number of threads never costs anything.
void ChosenThreads(benchmark::State &aState, LxPixelType aType, Size aSize)
{
    Ring ring;
    if (!ring.Alloc(aType, aSize)) {
        aState.SkipWithError("no memory");
        return;
    }
    LxBufferConverter one(1);
    LxBufferConverter chosen(-1);
    std::vector<double> alone;
    std::vector<double> together;
    for (auto _ : aState) {
        alone.push_back(TimeConverter(aState, ring, one));
        together.push_back(TimeConverter(aState, ring, chosen));
        aState.SetIterationTime(together.back());
    }
    aState.counters["speedup"] = MedianRatio(alone, together);
}

const LxPixelType Types[] = {
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

const bool Registered = [] {
    if (!HasOpenCV()) {
        std::fprintf(stderr, "OpenCV was not there when this was built: compared with libyuv only.\n");
    }
    const auto configure = [](benchmark::internal::Benchmark *aBenchmark, int aIterations) {
        aBenchmark->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(aIterations);
    };
    for (const LxPixelType type : Types) {
        configure(benchmark::RegisterBenchmark(NameOf("Convert", type, FullHD).c_str(), Convert, type, FullHD), 40);
        configure(benchmark::RegisterBenchmark(NameOf("Convert", type, Large).c_str(), Convert, type, Large), 8);
    }
    for (const LxPixelType type : {LxPixelType::Mono8, LxPixelType::YUV422_8_UYVY, LxPixelType::Mono12p,
                                   LxPixelType::BayerRG8, LxPixelType::BayerRG12p})
    {
        configure(benchmark::RegisterBenchmark(NameOf("TwoThreads", type, FullHD).c_str(), TwoThreads, type, FullHD),
                  60);
        configure(benchmark::RegisterBenchmark(NameOf("TwoThreads", type, Large).c_str(), TwoThreads, type, Large), 10);
    }
    for (const Size size : {Size{64, 64}, Size{256, 256}, Size{512, 512}, Size{640, 480}, Size{1024, 768}}) {
        configure(benchmark::RegisterBenchmark(NameOf("ChosenThreads", LxPixelType::Mono8, size).c_str(), ChosenThreads,
                                               LxPixelType::Mono8, size),
                  400);
    }
    return true;
}();

}  // namespace
