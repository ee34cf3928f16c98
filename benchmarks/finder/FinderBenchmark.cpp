// The device finder: how long a refresh keeps the GUI thread, and how soon a device is in the tree.
#include <benchmark/benchmark.h>

#include <time.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtWidgets/QApplication>
#include <QtWidgets/QTreeWidget>

#include "CameraProcess.h"
#include "LxGUI/DeviceFinder/DeviceFinderWnd.h"
#include "RunBenchmarks.h"
#include "ScriptedBackend.h"

namespace
{

/// The calling thread's time on a processor, in seconds; on a busy machine that is what a figure can be compared by.
double ThreadTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Measures the GUI thread's time in each refresh.
class TimedFinder : public DeviceFinderWnd
{
public:
    ~TimedFinder() override { StopDiscovery(); }

    bool event(QEvent *aEvent) override
    {
        if (aEvent->type() != RefreshEvent) {
            return DeviceFinderWnd::event(aEvent);
        }
        const double start = ThreadTime();
        const bool result = DeviceFinderWnd::event(aEvent);
        mLast = ThreadTime() - start;
        mLongest = std::max(mLongest, mLast);
        return result;
    }

    QTreeWidget *Tree() { return GetQWidget()->findChild<QTreeWidget *>(); }
    void Show() { ShowModeless(static_cast<QWidget *>(nullptr)); }
    double SecondsSinceOpen() const { return static_cast<double>(mClock.nsecsElapsed()) * 1e-9; }
    int DeviceCount()
    {
        int count = 0;
        for (int i = 0; i < Tree()->topLevelItemCount(); ++i) {
            count += Tree()->topLevelItem(i)->childCount();
        }
        return count;
    }
    void WaitForDevices(int aCount)
    {
        while (DeviceCount() < aCount) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

    double mLast = 0;
    double mLongest = 0;

protected:
    void OnOpen() override
    {
        mClock.start();
        DeviceFinderWnd::OnOpen();
    }

private:
    QElapsedTimer mClock;
};

/// From opening until a camera on the loopback adapter is in the tree. The camera is the emulator, in a process of its
/// own.
void OpenToCamera(benchmark::State &aState)
{
    CameraProcess camera(EmulatorCommand());
    if (!camera.Start()) {
        aState.SkipWithError("no emulated camera can be had at 127.0.0.1");
        return;
    }
    double first = 0;
    double longest = 0;
    for (auto unused : aState) {
        TimedFinder finder;
        finder.Show();
        finder.WaitForDevices(1);
        const double time = finder.SecondsSinceOpen();
        first = first == 0 ? time : first;
        longest = std::max(longest, time);
        aState.SetIterationTime(time);
    }
    aState.counters["first_ms"] = first * 1e3;
    aState.counters["longest_ms"] = longest * 1e3;
}
// Before all others, so that its first time is that of a fresh process.
BENCHMARK(OpenToCamera)->Name("finder/open-to-camera")->Iterations(50)->UseManualTime()->Unit(benchmark::kMillisecond);

void AddDevices(const ScriptedDevices &aDevices, int aCount)
{
    const LxInterface *adapter = nullptr;
    for (int i = 0; i < aCount; ++i) {
        if (i % 100 == 0) {
            adapter = &aDevices->AddAdapter("adapter " + std::to_string(i), [i](AdapterValues &aValues) {
                aValues.mAddresses = {{"10.0." + std::to_string(i / 100) + ".1", "255.255.255.0"}};
            });
        }
        aDevices->AddGEV(*adapter, std::to_string(i));
    }
}

/// A refresh of a tree of devices that are reported all the time.
void Refresh(benchmark::State &aState)
{
    const auto count = static_cast<int>(aState.range(0));
    const ScriptedDevices devices;
    AddDevices(devices, count);
    TimedFinder finder;
    finder.Show();
    finder.WaitForDevices(count);
    const double placing = finder.mLongest;
    finder.mLongest = 0;
    for (auto unused : aState) {
        QEvent refresh(DeviceFinderWnd::RefreshEvent);
        QCoreApplication::sendEvent(&finder, &refresh);
        aState.SetIterationTime(finder.mLast);
    }
    aState.counters["longest ms"] = finder.mLongest * 1e3;
    aState.counters["placing ms"] = placing * 1e3;
}
BENCHMARK(Refresh)->Name("finder/refresh")->Arg(1)->Arg(500)->UseManualTime()->Unit(benchmark::kMillisecond);

/// From opening the window until all devices are in the tree, the painting of the window included.
void OpenToTree(benchmark::State &aState)
{
    const auto count = static_cast<int>(aState.range(0));
    const ScriptedDevices devices;
    AddDevices(devices, count);
    for (auto unused : aState) {
        TimedFinder finder;
        finder.GetQWidget();
        QElapsedTimer clock;
        clock.start();
        finder.Show();
        finder.WaitForDevices(count);
        aState.SetIterationTime(static_cast<double>(clock.nsecsElapsed()) * 1e-9);
    }
}
BENCHMARK(OpenToTree)->Name("finder/open-to-tree")->Arg(1)->Arg(500)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RunBenchmarks(argc, argv);
}
