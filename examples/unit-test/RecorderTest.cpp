// Tests of an application's class on simulated cameras: no hardware, no network, every fault on demand.

#include <LxSimulation/LxSimulation.h>
#include <gtest/gtest.h>

#include "Recorder.h"

namespace
{

// One camera at one network adapter, and nothing that may really be there.
class RecorderTest : public testing::Test
{
protected:
    RecorderTest()
    {
        LxSimulation::Clear();
        LxSimulation::Enable(true);
        LxSimulatedNetworkAdapter adapter;
        adapter.mName = "eth0";
        adapter.mAddresses = {{"192.168.1.1", "255.255.255.0"}};
        LxSimulation::SetNetworkAdapter(adapter);
        mCamera.mUniqueID = "the camera";
        mCamera.mInterfaces = {"eth0"};
        mCamera.mIPAddress = "192.168.1.20";
        mCamera.mSubnetMask = "255.255.255.0";
        LxSimulation::SetDevice(mCamera);
    }

    ~RecorderTest() override { LxSimulation::Clear(); }

    LxSimulatedDevice mCamera;
    Recorder mRecorder;
};

TEST_F(RecorderTest, TakesPicturesOfTheWishedSize)
{
    ASSERT_TRUE(mRecorder.Open("192.168.1.20", 320, 200).IsOK());
    const LxResult result = mRecorder.Record(5);
    EXPECT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
    EXPECT_EQ(mRecorder.Taken(), 5u);
    EXPECT_EQ(mRecorder.TakenBytes(), 5u * 320 * 200);
    EXPECT_EQ(mRecorder.Lost(), 0u);
    EXPECT_EQ(mRecorder.Report(result), "5 pictures");
}

TEST_F(RecorderTest, FindsNoCameraWhereNoneIs)
{
    EXPECT_EQ(mRecorder.Open("192.168.1.99", 320, 200), LxResultCode::NotFound);
}

TEST_F(RecorderTest, SaysThatTheCameraIsInUse)
{
    LxSimulation::QueueResult("Connect", LxResult(LxResultCode::AccessDenied, "Another application controls it."));
    const LxResult result = mRecorder.Open("192.168.1.20", 320, 200);
    EXPECT_EQ(mRecorder.Report(result), "Another application controls it.");
}

TEST_F(RecorderTest, RefusesASizeThatTheCameraDoesNotHave)
{
    EXPECT_EQ(mRecorder.Open("192.168.1.20", 1000000, 200), LxResultCode::OutOfRange);
}

TEST_F(RecorderTest, CountsPicturesThatWereLostOnTheWay)
{
    ASSERT_TRUE(mRecorder.Open("192.168.1.20", 320, 200).IsOK());
    LxSimulation::DamageFrames("the camera", 2);
    ASSERT_TRUE(mRecorder.Record(3).IsOK());
    EXPECT_EQ(mRecorder.Taken(), 3u);
    EXPECT_EQ(mRecorder.Lost(), 2u);
}

TEST_F(RecorderTest, NoticesThatTheCameraIsUnplugged)
{
    ASSERT_TRUE(mRecorder.Open("192.168.1.20", 320, 200).IsOK());
    ASSERT_TRUE(mRecorder.Record(1).IsOK());
    LxSimulation::SetDevicePresent("the camera", false);
    const LxResult result = mRecorder.Record(5);
    EXPECT_EQ(mRecorder.Report(result), "1 pictures, then the camera was gone");
    LxSimulation::SetDevicePresent("the camera", true);
}

}  // namespace
