#include "LxGUI/DeviceFinder/DeviceFinderThread.h"

#include <utility>

#include "LxGUI/DeviceFinder/DeviceFinderWnd.h"
#include "LxGUI/DeviceFinder/DiscoveryState.h"

DeviceFinderThread::DeviceFinderThread(std::shared_ptr<DiscoveryState> aState) : mState(std::move(aState)) {}

DeviceFinderThread::~DeviceFinderThread()
{
    Stop();
}

void DeviceFinderThread::Start()
{
    mStop = false;
    start(QThread::InheritPriority);
}

void DeviceFinderThread::Stop()
{
    mStop = true;
    wait();
}

void DeviceFinderThread::Cancel()
{
    mStop = true;
    // Again and again, because the thread may be just about to begin a search.
    do {
        mState->mSystem.CancelFind();
    } while (!wait(10));
}

void DeviceFinderThread::run()
{
    LxSystem &system = mState->mSystem;
    system.SetDetectionTimeout(1000);
    // There is no pause between the rounds: the detection time-out paces them.
    while (!mStop) {
        // Subnets are searched besides only while unreachable devices are not wanted.
        system.SetSubnetBroadcastEnabled(!mState->mWindow->IsShowUnreachable());
        system.Find();
        for (uint32_t i = 0; i < system.GetInterfaceCount(); ++i) {
            if (const LxInterface *interface = system.GetInterface(i)) {
                mState->mWindow->ReportInterface(*interface);
            }
        }
    }
}
