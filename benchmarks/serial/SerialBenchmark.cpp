// Serial ports: what a bridge to a COM port adds to a request and its answer.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "LxDevice/LxDeviceSerialPort.h"
#include "LxSerial/LxSerialBridge.h"
#include "PseudoTerminal.h"
#include "SimulatedGrabber.h"

namespace
{

using Clock = std::chrono::steady_clock;

constexpr int Requests = 2000;
const std::string Request = "GAIN?123456789\r";

template <class Exchange>
double Measure99thPercentile(benchmark::State &aState, Exchange aExchange)
{
    std::vector<double> times;
    for (int i = 0; i < Requests; ++i) {
        const auto start = Clock::now();
        if (!aExchange()) {
            aState.SkipWithError("an answer was lost");
            return 0;
        }
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    std::sort(times.begin(), times.end());
    return times[times.size() * 99 / 100];
}

// The same echo, once from the port itself and once through a pseudo terminal and a bridge.
void BridgeDelay(benchmark::State &aState)
{
    const SimulatedGrabber grabber;
    SimulatedGrabber::SetPeer(LxDeviceSerial::Serial0, std::make_shared<LxSimulatedSerialEcho>());
    for (auto _ : aState) {
        double direct = 0;
        {
            LxDeviceSerialPort port;
            port.Open(grabber.GetAdapter(), LxDeviceSerial::Serial0);
            direct = Measure99thPercentile(aState, [&port] {
                uint8_t bytes[64];
                uint32_t count = 0;
                port.Write(reinterpret_cast<const uint8_t *>(Request.data()), static_cast<uint32_t>(Request.size()),
                           count);
                for (size_t read = 0; read < Request.size(); read += count) {
                    if (!port.Read(bytes, sizeof(bytes), count, 1000).IsOK()) {
                        return false;
                    }
                }
                return true;
            });
        }
        PseudoTerminal terminal;
        LxSerialBridge bridge;
        if (!bridge.Start(terminal.GetName(), {}, grabber.GetAdapter(), LxDeviceSerial::Serial0).IsOK()) {
            aState.SkipWithError("the bridge does not start");
            return;
        }
        const double bridged = Measure99thPercentile(aState, [&terminal] {
            terminal.Write(Request);
            return terminal.Read(Request.size()) == Request;
        });
        aState.counters["direct_p99_ms"] = direct;
        aState.counters["bridged_p99_ms"] = bridged;
        aState.counters["added_p99_ms"] = bridged - direct;
    }
}

}  // namespace

BENCHMARK(BridgeDelay)->Iterations(1)->Unit(benchmark::kMillisecond);
