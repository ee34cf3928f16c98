#include "ConnectAdvice.h"

#include <gtest/gtest.h>

TEST(ConnectAdvice, EveryFailureHasAHeadlineWithTheCameraAndWhatToDo)
{
    const std::pair<LxResultCode, const char *> cases[] = {
        {LxResultCode::Timeout, "Cam does not answer."},
        {LxResultCode::NotConnected, "Cam does not answer."},
        {LxResultCode::NotFound, "Cam does not answer."},
        {LxResultCode::AccessDenied, "Cam is controlled by another application."},
        {LxResultCode::Busy, "Cam is controlled by another application."},
        {LxResultCode::Unavailable, "Cam cannot be reached as it is configured."},
        {LxResultCode::GenICamError, "The description that Cam gives of itself cannot be read."},
        {LxResultCode::NotSupported, "There is no way to connect to Cam."},
        {LxResultCode::Failed, "Cam could not be connected."},
    };
    for (const auto &[code, headline] : cases) {
        const ConnectAdvice advice = AdviseOnConnect(LxResult(code, "the reason"), "Cam");
        EXPECT_EQ(advice.mHeadline, headline);
        EXPECT_TRUE(advice.mWhatToDo.endsWith("\n\nthe reason")) << headline;
        EXPECT_GT(advice.mWhatToDo.size(), 20) << headline;
    }
}

TEST(ConnectAdvice, WithoutADescriptionTheCodeIsShown)
{
    EXPECT_TRUE(AdviseOnConnect(LxResult(LxResultCode::Timeout), "Cam").mWhatToDo.endsWith("TIMEOUT"));
}

TEST(ConnectAdvice, StreamFailuresSayThatTheCameraIsConnected)
{
    EXPECT_EQ(AdviseOnStream(LxResult(LxResultCode::Timeout), "Cam").mHeadline,
              "Cam is connected but sends no pictures.");
}
