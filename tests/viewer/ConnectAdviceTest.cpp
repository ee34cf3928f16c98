#include "ConnectAdvice.h"

#include <gtest/gtest.h>

TEST(ConnectAdvice, EveryFailureHasAHeadlineWithTheCameraAndWhatToDo)
{
    // Where the SDK only repeats the advice, what it says is left to the details.
    struct Case
    {
        LxResultCode mCode;
        const char *mHeadline;
        bool mInDetails;
    };
    const Case cases[] = {
        {LxResultCode::Timeout, "Cam does not answer.", true},
        {LxResultCode::NotConnected, "Cam does not answer.", true},
        {LxResultCode::NotFound, "Cam does not answer.", true},
        {LxResultCode::AccessDenied, "Cam is controlled by another application.", true},
        {LxResultCode::Busy, "Cam is controlled by another application.", true},
        {LxResultCode::Unavailable, "Cam cannot be reached as it is configured.", false},
        {LxResultCode::GenICamError, "The description that Cam gives of itself cannot be read.", false},
        {LxResultCode::NotSupported, "There is no way to connect to Cam.", false},
        {LxResultCode::Failed, "Cam could not be connected.", false},
    };
    for (const auto &[code, headline, inDetails] : cases) {
        const ConnectAdvice advice = AdviseOnConnect(LxResult(code, "the reason"), "Cam");
        EXPECT_EQ(advice.mHeadline, headline);
        EXPECT_EQ(advice.mWhatToDo.endsWith("\n\nthe reason"), !inDetails) << headline;
        EXPECT_EQ(advice.mDetails, inDetails ? "the reason" : "") << headline;
        EXPECT_GT(advice.mWhatToDo.size(), 20) << headline;
    }
}

TEST(ConnectAdvice, WithoutADescriptionTheCodeIsShown)
{
    EXPECT_EQ(AdviseOnConnect(LxResult(LxResultCode::Timeout), "Cam").mDetails, "TIMEOUT");
    EXPECT_TRUE(AdviseOnConnect(LxResult(LxResultCode::Failed), "Cam").mWhatToDo.endsWith("\n\nFAILED"));
}

TEST(ConnectAdvice, StreamFailuresSayThatTheCameraIsConnected)
{
    EXPECT_EQ(AdviseOnStream(LxResult(LxResultCode::Timeout), "Cam").mHeadline,
              "Cam is connected but sends no pictures.");
}
