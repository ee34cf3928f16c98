// An independent client, libaravis, works with the camera.

#include <arv.h>
#include <gtest/gtest.h>

#include <memory>

#include "CommandChannel.h"
#include "EmulatedCamera.h"
#include "WaitFor.h"

namespace
{

using namespace LxEmulator;

struct Unref
{
    void operator()(void *aObject) const { g_object_unref(aObject); }
};

template <typename Object>
using Owned = std::unique_ptr<Object, Unref>;

struct ErrorHolder
{
    GError *mError = nullptr;

    ~ErrorHolder() { g_clear_error(&mError); }
    testing::AssertionResult IsClear() const
    {
        return mError ? testing::AssertionFailure() << mError->message : testing::AssertionSuccess();
    }
};

class AravisTest : public testing::Test
{
protected:
    void SetUp() override
    {
        EmulatedCameraOptions options;
        options.mListenAddress = options.mIdentity.mIPAddress = 0x7F000001;
        mEmulated = std::make_unique<EmulatedCamera>(options);
        const LxResult result = mEmulated->Start();
        ASSERT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
    }
    static void TearDownTestSuite() { arv_shutdown(); }

    void Connect()
    {
        ErrorHolder error;
        mCamera.reset(arv_camera_new("127.0.0.1", &error.mError));
        ASSERT_TRUE(error.IsClear());
        ASSERT_TRUE(mCamera);
        ASSERT_TRUE(arv_gv_device_is_controller(ARV_GV_DEVICE(arv_camera_get_device(mCamera.get()))));
    }

    void Set(const char *aFeature, gint64 aValue)
    {
        ErrorHolder error;
        arv_device_set_integer_feature_value(arv_camera_get_device(mCamera.get()), aFeature, aValue, &error.mError);
        ASSERT_TRUE(error.IsClear()) << aFeature;
    }

    /// @param aRetention how long a frame may be on its way, in microseconds; 0 for the library's tenth of a second.
    void StartStream(int aBuffers, guint aRetention = 0)
    {
        ErrorHolder error;
        mStream.reset(arv_camera_create_stream(mCamera.get(), nullptr, nullptr, &error.mError));
        ASSERT_TRUE(error.IsClear());
        g_object_set(mStream.get(), "socket-buffer", ARV_GV_STREAM_SOCKET_BUFFER_FIXED, "socket-buffer-size",
                     4 * 1024 * 1024, nullptr);
        if (aRetention > 0) {
            g_object_set(mStream.get(), "frame-retention", aRetention, nullptr);
        }
        const size_t payload = arv_camera_get_payload(mCamera.get(), &error.mError);
        ASSERT_TRUE(error.IsClear());
        for (int i = 0; i < aBuffers; ++i) {
            arv_stream_push_buffer(mStream.get(), arv_buffer_new(payload, nullptr));
        }
        arv_camera_start_acquisition(mCamera.get(), &error.mError);
        ASSERT_TRUE(error.IsClear());
    }

    /// How many of the next buffers are good.
    int CountGood(int aBuffers, int aWidth, int aHeight)
    {
        int good = 0;
        for (int i = 0; i < aBuffers; ++i) {
            ArvBuffer *buffer = arv_stream_timeout_pop_buffer(mStream.get(), 20'000'000);
            if (!buffer) {
                ADD_FAILURE() << "no buffer";
                return good;
            }
            if (arv_buffer_get_status(buffer) == ARV_BUFFER_STATUS_SUCCESS) {
                EXPECT_EQ(aWidth, arv_buffer_get_image_width(buffer));
                EXPECT_EQ(aHeight, arv_buffer_get_image_height(buffer));
                ++good;
            }
            arv_stream_push_buffer(mStream.get(), buffer);
        }
        return good;
    }

    void StopStream()
    {
        ErrorHolder error;
        arv_camera_stop_acquisition(mCamera.get(), &error.mError);
        EXPECT_TRUE(error.IsClear());
        mStream.reset();
    }

    std::unique_ptr<EmulatedCamera> mEmulated;
    Owned<ArvCamera> mCamera;
    Owned<ArvStream> mStream;
};

TEST_F(AravisTest, ReadsFeatures)
{
    Connect();
    ErrorHolder error;
    EXPECT_STREQ("LxGUI", arv_camera_get_vendor_name(mCamera.get(), &error.mError));
    EXPECT_STREQ("Simulated Camera", arv_camera_get_model_name(mCamera.get(), &error.mError));
    EXPECT_STREQ("SIM0001", arv_camera_get_device_serial_number(mCamera.get(), &error.mError));
    EXPECT_EQ(static_cast<int>(mEmulated->GetCamera().GetWidth()),
              arv_camera_get_integer(mCamera.get(), "Width", &error.mError));
    EXPECT_TRUE(error.IsClear());
    EXPECT_EQ(2u, mEmulated->GetControlValue());
    mCamera.reset();
    EXPECT_EQ(0u, mEmulated->GetControlValue());
}

TEST_F(AravisTest, StreamsGoodFrames)
{
    Connect();
    Set("Width", 640);
    Set("Height", 480);
    StartStream(5, 10'000'000);  // also when the machine comes to a halt in the middle of a frame
    EXPECT_EQ(10, CountGood(10, 640, 480));
    StopStream();
}

TEST_F(AravisTest, GetsLostPacketsAgain)
{
    Connect();
    Set("Width", 640);
    Set("Height", 480);
    CommandChannel channel(*mEmulated);
    ASSERT_EQ("ok", channel.Execute("drop-ids 3 17-19"));
    StartStream(5);
    // every frame lacks packets at first; a slow machine may not get those of each in time
    EXPECT_TRUE(WaitFor([&] { return CountGood(1, 640, 480) == 1; }));
    StopStream();
    EXPECT_GE(mEmulated->GetStreamStatistics().mResent, 4u);
}

TEST_F(AravisTest, SeesFramesIncompleteWhenNothingIsSentAgain)
{
    Connect();
    Set("Width", 640);
    Set("Height", 480);
    CommandChannel channel(*mEmulated);
    ASSERT_EQ("ok", channel.Execute("drop-ids 3"));
    ASSERT_EQ("ok", channel.Execute("drop-resends 1"));
    StartStream(5);
    EXPECT_EQ(0, CountGood(3, 640, 480));
    StopStream();
}

TEST_F(AravisTest, LosesControlWhenTheCameraSaysSo)
{
    Connect();
    mEmulated->OverrideControl(2);
    ErrorHolder error;
    arv_device_set_integer_feature_value(arv_camera_get_device(mCamera.get()), "Width", 640, &error.mError);
    EXPECT_TRUE(g_error_matches(error.mError, ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_PROTOCOL_ERROR_ACCESS_DENIED))
        << (error.mError ? error.mError->message : "no error");
}

TEST_F(AravisTest, WaitsWhileAnAnswerIsPending)
{
    Connect();
    CommandChannel channel(*mEmulated);
    ASSERT_EQ("ok", channel.Execute("pending 0xA110 4 700"));  // longer than the library's 500 ms
    Set("Width", 640);
    EXPECT_EQ(640u, mEmulated->GetCamera().GetWidth());
}

}  // namespace
