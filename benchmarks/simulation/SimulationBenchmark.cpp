#include <benchmark/benchmark.h>

#include <bit>
#include <cstdio>
#include <string>
#include <vector>

#include "Backends/Simulation/SimulatedCamera.h"
#include "Backends/Simulation/SimulatedRegisters.h"
#include "LxSimulation/LxSimulation.h"
#include "LxSystem/LxSystem.h"

namespace
{

namespace R = LxDetail::SimulatedRegister;

bool Write(LxDetail::SimulatedCamera &aCamera, uint64_t aAddress, uint64_t aValue, uint32_t aLength = 4)
{
    uint8_t bytes[8];
    for (uint32_t i = 0; i < aLength; ++i) {
        bytes[i] = static_cast<uint8_t>(aValue >> (8 * (aLength - 1 - i)));
    }
    return aCamera.GetPort()->Write(aAddress, bytes, aLength).IsOK();
}

// Frames of 2048 x 2048 a second on one core; with changes, the gain is another one for every frame.
void DrawFrame(benchmark::State &aState, LxPixelType aType, bool aChanges)
{
    LxDetail::SimulatedCamera camera(LxDetail::SimulatedCameraIdentity{});
    if (!Write(camera, R::Width, 2048) || !Write(camera, R::Height, 2048) ||
        !Write(camera, R::PixelFormat, static_cast<uint32_t>(aType)))
    {
        aState.SkipWithError("the camera refuses the format");
        return;
    }
    std::vector<uint8_t> frame(camera.GetPayloadSize());
    uint64_t number = 0;
    for (auto _ : aState) {
        if (aChanges) {
            Write(camera, R::Gain, std::bit_cast<uint64_t>(static_cast<double>(number % 20)), 8);
        }
        camera.DrawFrame(++number, frame.data(), frame.size());
        benchmark::ClobberMemory();
    }
    aState.counters["rate frames/s"] = benchmark::Counter(static_cast<double>(number), benchmark::Counter::kIsRate);
}

// Searches among devices that answer at once; LxSystem lets no search end before its shortest time.
void Find(benchmark::State &aState)
{
    LxSimulation::Clear();
    LxSimulation::Enable(true);
    LxSimulatedNetworkAdapter adapter;
    adapter.mName = "eth0";
    adapter.mAddresses = {{"192.168.1.1", "255.255.255.0"}};
    LxSimulation::SetNetworkAdapter(adapter);
    for (int64_t i = 0; i < aState.range(0); ++i) {
        LxSimulatedDevice camera;
        char mac[24];
        std::snprintf(mac, sizeof(mac), "02:00:00:01:%02X:%02X", static_cast<unsigned>(i / 256) & 0xFF,
                      static_cast<unsigned>(i) & 0xFF);
        camera.mMACAddress = mac;
        camera.mIPAddress = "192.168.1.10";
        camera.mInterfaces = {"eth0"};
        LxSimulation::SetDevice(camera);
    }
    {
        LxSystem system;
        system.SetDetectionTimeout(0);
        for (auto _ : aState) {
            if (!system.Find().IsOK()) {
                aState.SkipWithError("the search failed");
                break;
            }
        }
    }
    LxSimulation::Clear();
    LxSimulation::Disable();
}

BENCHMARK(Find)->Arg(4)->Arg(500)->Unit(benchmark::kMillisecond);

const bool Registered = [] {
    for (const LxPixelType type : {LxPixelType::Mono8, LxPixelType::Mono12p, LxPixelType::Mono16, LxPixelType::BayerRG8,
                                   LxPixelType::YUV422_8, LxPixelType::RGB8})
    {
        for (const bool changes : {false, true}) {
            const std::string name =
                std::string("DrawFrame/") + LxPixelTypeToString(type).GetAscii() + (changes ? "/changing" : "");
            benchmark::RegisterBenchmark(name.c_str(), DrawFrame, type, changes)->Unit(benchmark::kMillisecond);
        }
    }
    return true;
}();

}  // namespace
