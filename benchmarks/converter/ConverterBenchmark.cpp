#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <string>

#include "LxCodec/LxBufferConverter.h"

namespace
{

constexpr uint32_t kSize = 2048;

// Millions of pixels per second, with the caller's thread alone (0) or all processors (-1).
void Convert(benchmark::State &aState, LxPixelType aType, int aThreads)
{
    LxImage input;
    if (!input.Alloc(kSize, kSize, aType).IsOK()) {
        aState.SkipWithError("no memory for the input");
        return;
    }
    std::minstd_rand random(1);
    auto *const bytes = static_cast<uint8_t *>(input.GetDataPointer());
    for (uint64_t i = 0; i < input.GetDataSize(); ++i) {
        bytes[i] = static_cast<uint8_t>(random());
    }
    LxBufferConverter converter(aThreads);
    LxBuffer output(LxPayloadType::Image);
    for (auto _ : aState) {
        const LxResult result = converter.Convert(&input, &output, true, false);
        if (!result.IsOK()) {
            aState.SkipWithError(result.GetDescription().GetAscii());
            break;
        }
        benchmark::DoNotOptimize(output.GetDataPointer());
        benchmark::ClobberMemory();
    }
    aState.counters["rate MPix/s"] =
        benchmark::Counter(static_cast<double>(kSize) * kSize / 1e6, benchmark::Counter::kIsIterationInvariantRate);
}

const LxPixelType kTypes[] = {
    LxPixelType::Mono8,           LxPixelType::Mono10,         LxPixelType::Mono12,
    LxPixelType::Mono16,          LxPixelType::Mono10p,        LxPixelType::Mono12p,
    LxPixelType::Mono12Packed,    LxPixelType::RGB8,           LxPixelType::BGR8,
    LxPixelType::RGBa8,           LxPixelType::BGRa8,          LxPixelType::RGB12,
    LxPixelType::RGB10p32,        LxPixelType::RGB8_Planar,    LxPixelType::YUV422_8_UYVY,
    LxPixelType::YUV422_8,        LxPixelType::YCbCr709_422_8, LxPixelType::YCbCr422_10p,
    LxPixelType::YCbCr411_8,      LxPixelType::YCbCr8,         LxPixelType::YCbCr420_8_YY_CbCr_Semiplanar,
    LxPixelType::BayerRG8,        LxPixelType::BayerRG10,      LxPixelType::BayerRG12p,
    LxPixelType::BayerRG12Packed,
};

const bool kRegistered = [] {
    for (const LxPixelType type : kTypes) {
        for (const int threads : {0, -1}) {
            const std::string name = std::string("Convert/") + LxPixelTypeToString(type).GetAscii() +
                                     (threads == 0 ? "/one thread" : "/all processors");
            benchmark::RegisterBenchmark(name.c_str(), Convert, type, threads)
                ->Unit(benchmark::kMillisecond)
                ->UseRealTime();
        }
    }
    return true;
}();

}  // namespace
