// Camera bridges: connecting by GenCP, reading features, and how long the manager keeps the GUI thread.

#include <benchmark/benchmark.h>

#include <QtCore/QElapsedTimer>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <chrono>
#include <memory>
#include <string>

#include "Absence.h"
#include "Backends/Simulation/SerialCamera.h"
#include "LxCameraBridge/GenCPClient.h"
#include "LxCameraBridge/LxCameraBridge.h"
#include "LxGUI/LxCameraBridgeManagerWnd.h"
#include "LxSimulation/LxSimulatedGenCPCamera.h"
#include "RunBenchmarks.h"
#include "SimulatedGrabber.h"

using namespace LxDetail;

namespace
{

using Clock = std::chrono::steady_clock;

constexpr auto Port = LxDeviceSerial::Serial0;
constexpr uint64_t WidthAddress = SerialCameraAddress;

double SecondsSince(Clock::time_point aStart)
{
    return std::chrono::duration<double>(Clock::now() - aStart).count();
}

/// The XML of the simulated camera with so many more features that it has about so many bytes.
std::string MakeXML(size_t aSize)
{
    std::string xml = MakeSerialCameraXML("LxGUI", "LineCamera", 0);
    const std::string reference = "<pFeature>Gain</pFeature>";
    size_t place = xml.find(reference) + reference.size();
    for (int i = 0; xml.size() < aSize; ++i) {
        const std::string name = "LookupTable" + std::to_string(i);
        xml.insert(place, "<pFeature>" + name + "</pFeature>");
        xml.insert(xml.rfind("</RegisterDescription>"),
                   "<Integer Name=\"" + name + "\"><ToolTip>Value " + std::to_string(i) +
                       " of the lookup table.</ToolTip><Visibility>Expert</Visibility><pValue>WidthReg</pValue>"
                       "<Min>0</Min><Max>65535</Max></Integer>\n");
    }
    return xml;
}

/// A frame grabber with a GenCP camera behind each of its two ports.
class Grabber
{
public:
    Grabber(const std::string &aXML, bool aZipped)
    {
        LxSimulatedGenCPValues values;
        values.mXML = aXML;
        values.mZipped = aZipped;
        for (const LxDeviceSerial port : {Port, LxDeviceSerial::Serial1}) {
            SimulatedGrabber::SetPeer(port, std::make_shared<LxSimulatedGenCPCamera>(values));
        }
    }
    /// Bytes take the time that they take at a speed, as its entry is called.
    void SetPace(const char *aSpeed)
    {
        LxSimulatedSerialConditions conditions;
        conditions.mPaced = true;
        int number = 0;
        for (const LxDeviceSerial port : {Port, LxDeviceSerial::Serial1}) {
            SimulatedGrabber::SetConditions(port, conditions);
            mGrabber.GetFeatures().SetEnumValue("Uart" + std::to_string(number++) + "BaudRate", aSpeed);
        }
    }
    SimulatedGrabber *operator->() { return &mGrabber; }

private:
    SimulatedGrabber mGrabber{SimulatedGrabber::MakeValues(0b11)};
};

/// Seconds; 0 when it fails.
double Connect(LxCameraBridge &aBridge)
{
    LxStringList ids;
    if (!aBridge.GetGenCPXMLIDs(ids).IsOK()) {
        return 0;
    }
    const auto start = Clock::now();
    return aBridge.ConnectGenCP(ids.GetItem(0)).IsOK() ? SecondsSince(start) : 0;
}

// Against the time that the bytes of the XML alone need on the line.
void ConnectPaced(benchmark::State &aState)
{
    constexpr double bitsPerByte = 10;
    const std::string xml = MakeXML(60000);
    Grabber grabber(xml, false);
    grabber.SetPace("Baud115200");
    for (auto _ : aState) {
        LxCameraBridge bridge(grabber->GetDevice(), Port, nullptr);
        const double seconds = Connect(bridge);
        if (seconds == 0) {
            aState.SkipWithError("the camera is not connected");
            return;
        }
        const double line = static_cast<double>(xml.size()) * bitsPerByte / 115200;
        aState.counters["connect s"] = seconds;
        aState.counters["xml_on_the_line s"] = line;
        aState.counters["ratio"] = seconds / line;
    }
}
BENCHMARK(ConnectPaced)->Name("CameraBridge/Connect/115200baud")->Unit(benchmark::kMillisecond)->Iterations(1);

void ConnectUnpaced(benchmark::State &aState, bool aZipped)
{
    Grabber grabber(MakeXML(60000), aZipped);
    double longest = 0;
    for (auto _ : aState) {
        LxCameraBridge bridge(grabber->GetDevice(), Port, nullptr);
        const double seconds = Connect(bridge);
        if (seconds == 0) {
            aState.SkipWithError("the camera is not connected");
            return;
        }
        longest = std::max(longest, seconds);
    }
    aState.counters["longest_ms"] = longest * 1e3;
}
BENCHMARK_CAPTURE(ConnectUnpaced, Plain, false)
    ->Name("CameraBridge/Connect/unpaced")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(20);
BENCHMARK_CAPTURE(ConnectUnpaced, Zipped, true)
    ->Name("CameraBridge/Connect/unpaced_zipped")
    ->Unit(benchmark::kMillisecond)
    ->Iterations(20);

/// Calls a second, for half a second.
template <class Call>
double CallsPerSecond(Call aCall)
{
    const auto start = Clock::now();
    int calls = 0;
    for (; SecondsSince(start) < 0.5; ++calls) {
        if (!aCall()) {
            return 0;
        }
    }
    return calls / SecondsSince(start);
}

void FeatureRead(benchmark::State &aState)
{
    Grabber grabber(MakeXML(60000), true);
    LxCameraBridge bridge(grabber->GetDevice(), Port, nullptr);
    const auto port = std::make_shared<CountedPort>(std::make_shared<Traffic>());
    GenCPClient client(port);
    if (Connect(bridge) == 0 || !port->Open(grabber->GetAdapter(), LxDeviceSerial::Serial1).IsOK() ||
        !client.Open().IsOK()) {
        aState.SkipWithError("the cameras are not connected");
        return;
    }
    double bare = 0;
    double features = 0;
    for (auto _ : aState) {
        bare = std::max(bare, CallsPerSecond([&] {
                            uint8_t bytes[4];
                            return client.Read(WidthAddress, bytes, sizeof(bytes)).IsOK();
                        }));
        features = std::max(features, CallsPerSecond([&] {
                                int64_t width = 0;
                                return bridge.GetParameters()->GetIntegerValue("Width", width).IsOK();
                            }));
    }
    aState.counters["bare reads/s"] = bare;
    aState.counters["feature reads/s"] = features;
    aState.counters["ratio"] = bare > 0 ? features / bare : 0;
}
BENCHMARK(FeatureRead)->Name("CameraBridge/FeatureRead")->Unit(benchmark::kMillisecond)->Iterations(4);

void ProcessEventsFor(int aMilliseconds)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < aMilliseconds) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    }
}

// How long the GUI thread is away while a connected camera is shown, its features are read and its bytes counted, and
// while the user goes to another camera and back. The line is slow: a feature takes 50 ms.
void Stalls(benchmark::State &aState)
{
    Grabber grabber(MakeXML(20000), true);
    LxCameraBridgeManagerWnd manager;
    manager.SetDevice(grabber->GetDevice());
    for (int i = 0; i < manager.GetBridgeCount(); ++i) {
        if (Connect(*manager.GetBridge(i)) == 0) {
            aState.SkipWithError("the cameras are not connected");
            return;
        }
    }
    grabber.SetPace("Baud9600");
    for (auto _ : aState) {
        manager.ShowModeless();
        auto *ports = manager.GetQWidget()->findChild<QComboBox *>("PortCombo");
        ProcessEventsFor(500);
        Absence absence;
        ProcessEventsFor(5000);
        aState.counters["shown_ms"] = absence.mLongest;
        aState.counters["shown_work_ms"] = absence.mLongestWork;
        absence.Start();
        for (const int port : {1, 0, 1, 0}) {  // the browser reads the features once, under a wait cursor
            ports->setCurrentIndex(port);
            absence.Note();
            ProcessEventsFor(300);
        }
        aState.counters["changed_ms"] = absence.mLongest;
        aState.counters["changed_work_ms"] = absence.mLongestWork;
        manager.Close();
    }
}
BENCHMARK(Stalls)->Name("CameraBridge/Stalls")->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RunBenchmarks(argc, argv);
}
