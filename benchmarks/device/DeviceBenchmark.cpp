// What a connected GigE Vision device costs: registers beside the bare library, connecting, noticing a loss, streaming.
// The camera is the emulator, in a process of its own.

#include <arv.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "Backends/Aravis/AravisConnect.h"
#include "CameraProcess.h"
#include "LxBufferReceive/LxStream.h"
#include "LxDevice/LxDeviceGEV.h"
#include "LxGenICam/LxGenParameterArray.h"
#include "NodeMap/ArvSupport.h"
#include "WaitFor.h"

namespace
{

using Clock = std::chrono::steady_clock;

double Milliseconds(Clock::duration aTime)
{
    return std::chrono::duration<double, std::milli>(aTime).count();
}

LxResult Connect(std::unique_ptr<LxDeviceGEV> &aDevice, LxDeviceAccess aAccess = LxDeviceAccess::Control)
{
    std::unique_ptr<LxDevice> device;
    LxResult result =
        LxDetail::ConnectGigEVision({"127.0.0.1", "127.0.0.1", "02:00:00:00:00:01", "lo"}, aAccess, device);
    aDevice.reset(dynamic_cast<LxDeviceGEV *>(device.release()));
    return result;
}

/// The emulator and a connection to it.
struct ConnectedCamera
{
    explicit ConnectedCamera(benchmark::State &aState)
    {
        if (!mCamera.Start() || !Connect(mDevice).IsOK()) {
            aState.SkipWithError("no emulated camera can be had at 127.0.0.1");
        }
    }

    CameraProcess mCamera{EmulatorCommand()};
    std::unique_ptr<LxDeviceGEV> mDevice;
};

// Reads with both in turns, so that what else the machine does meets both alike.
void RegisterRead(benchmark::State &aState)
{
    ConnectedCamera camera(aState);
    LxDetail::ArvError error;
    const LxDetail::GObjectPtr<GInetAddress> address(g_inet_address_new_from_string("127.0.0.1"));
    const LxDetail::GObjectPtr<ArvDevice> bare(arv_gv_device_new(address.get(), address.get(), error.Out()));
    if (!camera.mDevice || !bare) {
        aState.SkipWithError("no connection");
        return;
    }
    constexpr int turn = 100;
    Clock::duration bareTime{0};
    Clock::duration ownTime{0};
    uint64_t reads = 0;
    for (auto _ : aState) {
        const auto start = Clock::now();
        for (int i = 0; i < turn; ++i) {
            guint32 value = 0;
            arv_device_read_register(bare.get(), 0x0938, &value, nullptr);
            benchmark::DoNotOptimize(value);
        }
        const auto between = Clock::now();
        for (int i = 0; i < turn; ++i) {
            uint32_t value = 0;
            camera.mDevice->ReadRegister(0x0938, value);
            benchmark::DoNotOptimize(value);
        }
        bareTime += between - start;
        ownTime += Clock::now() - between;
        reads += turn;
    }
    const auto rate = [reads](Clock::duration aTime) { return static_cast<double>(reads) * 1e3 / Milliseconds(aTime); };
    aState.counters["rate reads/s"] = rate(ownTime);
    aState.counters["bare-library reads/s"] = rate(bareTime);
    aState.counters["ratio-to-bare-library"] = rate(ownTime) / rate(bareTime);
}
BENCHMARK(RegisterRead)->UseRealTime()->Unit(benchmark::kMillisecond)->MinTime(3);

void IntegerFeatureRead(benchmark::State &aState)
{
    ConnectedCamera camera(aState);
    for (auto _ : aState) {
        int64_t value = 0;
        if (!camera.mDevice || !camera.mDevice->GetParameters()->GetIntegerValue("Width", value).IsOK()) {
            aState.SkipWithError("no value");
            break;
        }
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(IntegerFeatureRead)->UseRealTime()->Unit(benchmark::kMicrosecond);

void ConnectAndDisconnect(benchmark::State &aState)
{
    CameraProcess camera(EmulatorCommand());
    if (!camera.Start()) {
        aState.SkipWithError("no emulated camera can be had at 127.0.0.1");
        return;
    }
    Clock::duration connect{0};
    for (auto _ : aState) {
        std::unique_ptr<LxDeviceGEV> device;
        const auto start = Clock::now();
        if (!Connect(device).IsOK()) {
            aState.SkipWithError("not connected");
            break;
        }
        connect += Clock::now() - start;
    }
    aState.counters["connect ms"] = benchmark::Counter(Milliseconds(connect), benchmark::Counter::kAvgIterations);
}
BENCHMARK(ConnectAndDisconnect)->UseRealTime()->Unit(benchmark::kMillisecond);

// A camera freezes while a thread reads it, and goes on once it is lost. The time is that until it is noticed; a call
// is one that other threads make while the first is stuck.
void FrozenCamera(benchmark::State &aState)
{
    std::vector<double> calls;
    double longestNoticed = 0;
    double longestBack = 0;
    for (auto _ : aState) {
        ConnectedCamera camera(aState);
        if (!camera.mDevice) {
            break;
        }
        LxDeviceGEV &device = *camera.mDevice;
        std::atomic<bool> stop{false};
        std::atomic<int> reads{0};
        std::thread reader([&] {
            while (!stop) {
                uint32_t value = 0;
                if (!device.ReadRegister(0, value).IsOK()) {
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
                }
                ++reads;
            }
        });
        WaitFor([&] { return reads > 1000; });
        camera.mCamera.Freeze();
        const auto frozen = Clock::now();
        WaitFor([&] { return device.GetParameters()->GetAccessMode() != 0; });
        const double noticed = Milliseconds(Clock::now() - frozen);
        while (device.IsConnected()) {
            const auto start = Clock::now();
            uint32_t value = 0;
            int64_t width = 0;
            device.ReadRegister(0, value);
            device.GetParameters()->GetIntegerValue("Width", width);
            calls.push_back(Milliseconds(Clock::now() - start));
        }
        camera.mCamera.Thaw();
        const auto thawed = Clock::now();
        uint32_t value = 0;
        WaitFor([&] { return device.ReadRegister(0, value).IsOK(); });
        longestBack = std::max(longestBack, Milliseconds(Clock::now() - thawed));
        longestNoticed = std::max(longestNoticed, noticed);
        stop = true;
        reader.join();
        aState.SetIterationTime(noticed / 1e3);
    }
    aState.counters["longest-noticed ms"] = longestNoticed;
    // a thread may lose its processor to another one in any call: the worst of a thousand says more than the worst
    std::sort(calls.begin(), calls.end());
    if (!calls.empty()) {
        aState.counters["calls calls"] = static_cast<double>(calls.size());
        aState.counters["call-of-999-in-1000 ms"] = calls[calls.size() * 999 / 1000];
        aState.counters["longest-call ms"] = calls.back();
    }
    aState.counters["longest-until-back ms"] = longestBack;
}
BENCHMARK(FrozenCamera)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

// 2048 x 2048 Mono8 at 25 frames a second for 30 seconds with the default configuration.
void Stream(benchmark::State &aState)
{
    CameraProcess camera([] {
        auto command = EmulatorCommand();
        command.insert(command.end(), {"--width", "2048", "--height", "2048", "--frame-rate", "25"});
        return command;
    }());
    std::unique_ptr<LxDeviceGEV> device;
    LxStream stream;
    if (!camera.Start() || !Connect(device).IsOK() || !stream.Open(device.get()).IsOK() || !stream.Start().IsOK()) {
        aState.SkipWithError("no stream");
        return;
    }
    for (auto _ : aState) {
        const auto end = Clock::now() + std::chrono::seconds(30);
        while (Clock::now() < end) {
            std::shared_ptr<const LxBuffer> frame;
            stream.RetrieveBuffer(frame, 1000);
        }
    }
    LxStreamStatistics statistics;
    stream.GetStatistics(statistics);
    uint32_t packetSize = 0;
    device->ReadRegister(0x0D04, packetSize);
    stream.Close();
    aState.counters["delivered frames"] = static_cast<double>(statistics.mDelivered);
    aState.counters["incomplete frames"] = static_cast<double>(statistics.mIncomplete);
    aState.counters["dropped frames"] = static_cast<double>(statistics.mDropped);
    aState.counters["missed frames"] = static_cast<double>(statistics.mMissed);
    aState.counters["resent packets"] = static_cast<double>(statistics.mResentPackets);
    aState.counters["packet-size B"] = packetSize & 0xFFFF;
}
BENCHMARK(Stream)->UseRealTime()->Unit(benchmark::kSecond)->Iterations(1);

}  // namespace
