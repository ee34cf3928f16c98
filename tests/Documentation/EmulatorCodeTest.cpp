// The code of docs/camera-emulator.md.

#include <gtest/gtest.h>

#include "CommandChannel.h"
#include "EmulatedCamera.h"
#include "LxSystem/LxDeviceInfo.h"
#include "LxSystem/LxSystem.h"
#include "WaitFor.h"

TEST(EmulatorCode, ACameraInTheProcess)
{
    LxEmulator::EmulatedCameraOptions options;
    options.mListenAddress = options.mIdentity.mIPAddress = 0x7F000001;
    LxEmulator::EmulatedCamera camera(options);
    LxResult result = camera.Start();  // from now on it can be found
    LxEmulator::CommandChannel(camera).Execute("drop-every 100");
    camera.GetStreamStatistics().mResent;

    EXPECT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
    LxSystem system;
    const LxDeviceInfo *found = nullptr;
    EXPECT_TRUE(WaitFor([&] { return system.FindDevice("127.0.0.1", &found).IsOK(); }));
    camera.Stop();
}
