// How long single questions to a camera on the loopback adapter take, sockets included.

#include <benchmark/benchmark.h>

#include <algorithm>

#include "GigEVision/GvcpClient.h"
#include "GigEVision/LivenessProbe.h"
#include "GvcpResponder.h"

namespace Gvcp = LxDetail::Gvcp;

namespace
{

constexpr uint32_t loopbackAddress = 0x7F000001;

std::vector<Reply> AnswerAsCamera(const ReceivedCommand &aCommand)
{
    const uint32_t value = 0;
    return {aCommand.mPacket.Is(Gvcp::Command::Discovery)
                ? AnswerDiscovery(aCommand, MakeCamera(0x020000000001, loopbackAddress))
                : Answer(aCommand, Gvcp::Status::Success, Gvcp::BuildWords({&value, 1}))};
}

// A camera on loopback, for as long as a benchmark runs.
class Camera
{
public:
    explicit Camera(benchmark::State &aState) : mResponder(AnswerAsCamera, "", "lo")
    {
        mAdapters = LxDetail::ListNetworkAdapters();
        std::erase_if(mAdapters, [](const LxDetail::AdapterData &aAdapter) { return !aAdapter.mLoopback; });
        if (!mResponder.IsReady() || mAdapters.empty()) {
            aState.SkipWithError("the port of GVCP is taken on the loopback adapter, or there is none");
        }
    }

    std::vector<LxDetail::AdapterData> mAdapters;

private:
    const GvcpResponder mResponder;
};

void FirstDiscoveryAnswer(benchmark::State &aState)
{
    const Camera camera(aState);
    for (auto _ : aState) {
        int answers = 0;
        LxDetail::Discover(camera.mAdapters, {}, [&answers](const LxDetail::DiscoveryAnswer &) {
            ++answers;
            return false;
        });
        if (answers != 1) {
            aState.SkipWithError("no answer");
        }
    }
}
BENCHMARK(FirstDiscoveryAnswer)->UseRealTime()->Unit(benchmark::kMicrosecond);

void FindOneAddress(benchmark::State &aState)
{
    const Camera camera(aState);
    for (auto _ : aState) {
        LxDetail::DiscoveryAnswer answer;
        if (!LxDetail::DiscoverAt(camera.mAdapters, loopbackAddress, answer).IsOK()) {
            aState.SkipWithError("no answer");
        }
    }
}
BENCHMARK(FindOneAddress)->UseRealTime()->Unit(benchmark::kMicrosecond);

void AskAccessType(benchmark::State &aState)
{
    const Camera camera(aState);
    for (auto _ : aState) {
        uint32_t value = 1;
        LxDetail::ReadRegister(camera.mAdapters, loopbackAddress, Gvcp::Register::controlChannelPrivilege, {}, value);
        if (value != 0) {
            aState.SkipWithError("no answer");
        }
    }
}
BENCHMARK(AskAccessType)->UseRealTime()->Unit(benchmark::kMicrosecond);

void AskWhetherAlive(benchmark::State &aState)
{
    const Camera camera(aState);
    LxDetail::LivenessProbe probe(loopbackAddress);
    for (auto _ : aState) {
        if (!probe.IsAlive(std::chrono::milliseconds(1000))) {
            aState.SkipWithError("no answer");
        }
    }
}
BENCHMARK(AskWhetherAlive)->UseRealTime()->Unit(benchmark::kMicrosecond);

}  // namespace
