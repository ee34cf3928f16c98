#include "Backends/Aravis/LinkMonitor.h"

#include <gtest/gtest.h>

#include <vector>

using namespace LxDetail;
using std::chrono::milliseconds;

namespace
{

/// A device and a clock that a test plays. Nothing sleeps: a look that is not answered moves the clock on.
class PlayedWorld
{
public:
    explicit PlayedWorld(const LinkTiming &aTiming = LinkTiming())
        : mMonitor({.mLook = [this](milliseconds aTimeout) { return Look(aTimeout); },
                    .mStartRestore = [this] { ++mRestoresStarted; },
                    .mOnChange = [this](LinkState, LinkState aNew) { mStates.push_back(aNew); },
                    .mNow = [this] { return mNow; }},
                   aTiming)
    {
    }

    /// Runs the monitor until a state is reached or the time is up; returns how long it took.
    milliseconds RunUntil(LinkState aState, milliseconds aTimeout = milliseconds(60000))
    {
        const auto start = mNow;
        while (mMonitor.GetState() != aState && mNow - start < aTimeout) {
            Step();
        }
        return std::chrono::duration_cast<milliseconds>(mNow - start);
    }

    void Step()
    {
        const auto pause = mMonitor.Step();
        mNow += pause;
    }

    void MakeLost()
    {
        mSign = LinkSign::NoAnswer;
        RunUntil(LinkState::Lost);
        ASSERT_EQ(mMonitor.GetState(), LinkState::Lost);
    }

    LinkMonitor::TimePoint mNow{std::chrono::hours(1)};
    LinkSign mSign = LinkSign::Answer;
    int mLoseNext = 0;           // looks whose packet is lost
    bool mAccessInLook = false;  // another thread's access succeeds while a look waits
    milliseconds mHeldUp{0};     // how much later than it should a look ends
    bool mAnswersEarly = false;  // a look without an answer takes no time
    int mRestoresStarted = 0;
    std::vector<LinkState> mStates;
    LinkMonitor mMonitor;

private:
    LinkSign Look(milliseconds aTimeout)
    {
        if (mAccessInLook) {
            mMonitor.NoteSuccess();
        }
        if (mLoseNext > 0 || mSign == LinkSign::NoAnswer) {
            mLoseNext = std::max(0, mLoseNext - 1);
            mNow += mAnswersEarly ? milliseconds(0) : aTimeout + mHeldUp;
            return LinkSign::NoAnswer;
        }
        return mSign;
    }
};

TEST(LinkMonitor, StartsConnectedAndLetsEverythingPass)
{
    PlayedWorld world;
    world.Step();
    EXPECT_EQ(world.mMonitor.GetState(), LinkState::Connected);
    EXPECT_TRUE(world.mMonitor.GetResult().IsOK());
    EXPECT_TRUE(world.mStates.empty());
}

TEST(LinkMonitor, NoticesADeviceThatStopsAnsweringWithin700Milliseconds)
{
    PlayedWorld world;
    world.Step();  // the device stops right after this answer: the longest way to the next look
    world.mNow -= LinkTiming().mPause;
    const auto stopped = world.mNow;
    world.mNow += LinkTiming().mPause;
    world.mSign = LinkSign::NoAnswer;
    world.RunUntil(LinkState::Suspect);
    EXPECT_LE(world.mNow - stopped, milliseconds(700));
    EXPECT_EQ(world.mMonitor.GetResult(), LxResultCode::Timeout);
    EXPECT_FALSE(world.mMonitor.GetResult().GetDescription().IsEmpty());
}

TEST(LinkMonitor, TwoLostPacketsInARowAreNoReasonForSuspicion)
{
    PlayedWorld world;
    world.mLoseNext = 2;
    for (int i = 0; i < 10; ++i) {
        world.Step();
    }
    EXPECT_TRUE(world.mStates.empty());
}

TEST(LinkMonitor, AnAccessThatSucceedsDuringALookOutweighsItsMissingAnswer)
{
    PlayedWorld world;
    world.mSign = LinkSign::NoAnswer;
    world.mAccessInLook = true;
    for (int i = 0; i < 20; ++i) {
        world.Step();
    }
    EXPECT_EQ(world.mMonitor.GetState(), LinkState::Connected);
}

TEST(LinkMonitor, ALookThatWasHeldUpByABusyComputerIsNoMiss)
{
    PlayedWorld world;
    world.mSign = LinkSign::NoAnswer;
    world.mHeldUp = milliseconds(100);
    for (int i = 0; i < 20; ++i) {
        world.Step();
    }
    EXPECT_EQ(world.mMonitor.GetState(), LinkState::Connected);
}

TEST(LinkMonitor, ALookThatKnowsEarlyThatThereIsNoWayToTheDeviceIsFollowedByAPause)
{
    PlayedWorld world;
    world.mSign = LinkSign::NoAnswer;
    world.mAnswersEarly = true;
    EXPECT_EQ(world.mMonitor.Step(), LinkTiming().mAnswerTimeout);
}

TEST(LinkMonitor, ASuspectThatAnswersIsConnectedAgainWithoutBeingRestored)
{
    PlayedWorld world;
    world.mSign = LinkSign::NoAnswer;
    world.RunUntil(LinkState::Suspect);
    world.mSign = LinkSign::Answer;
    world.Step();
    EXPECT_EQ(world.mStates, (std::vector{LinkState::Suspect, LinkState::Connected}));
    EXPECT_EQ(world.mRestoresStarted, 0);
    EXPECT_EQ(world.mMonitor.GetRestoreCount(), 0u);
}

TEST(LinkMonitor, ASuspectThatStaysSilentIsLost)
{
    PlayedWorld world;
    world.mSign = LinkSign::NoAnswer;
    world.RunUntil(LinkState::Suspect);
    const auto took = world.RunUntil(LinkState::Lost);
    EXPECT_GE(took, LinkTiming().mSuspectTime);
    EXPECT_LE(took, LinkTiming().mSuspectTime + LinkTiming().mAnswerTimeout);
    EXPECT_EQ(world.mMonitor.GetResult(), LxResultCode::NotConnected);
}

TEST(LinkMonitor, ALostDeviceThatAnswersIsRestoredBeforeItIsUsed)
{
    PlayedWorld world;
    world.MakeLost();
    world.mSign = LinkSign::Answer;
    const auto returned = world.mNow;
    world.RunUntil(LinkState::Restoring);
    EXPECT_LT(world.mNow - returned, milliseconds(500));
    EXPECT_EQ(world.mRestoresStarted, 1);
    EXPECT_EQ(world.mMonitor.GetResult(), LxResultCode::NotConnected);
    world.Step();
    EXPECT_EQ(world.mRestoresStarted, 1) << "one attempt at a time";
    world.mMonitor.EndRestore(LxResult());
    EXPECT_EQ(world.mMonitor.GetState(), LinkState::Connected);
    EXPECT_EQ(world.mMonitor.GetRestoreCount(), 1u);
}

TEST(LinkMonitor, AFailedRestoreIsTriedAgainAfterAPause)
{
    PlayedWorld world;
    world.MakeLost();
    world.mSign = LinkSign::Answer;
    world.RunUntil(LinkState::Restoring);
    world.mMonitor.EndRestore(LxResult(LxResultCode::Timeout));
    EXPECT_EQ(world.mMonitor.GetState(), LinkState::Lost);
    const auto took = world.RunUntil(LinkState::Restoring);
    EXPECT_GE(took, LinkTiming().mRetryPause);
    EXPECT_EQ(world.mRestoresStarted, 2);
}

TEST(LinkMonitor, ADeviceThatVanishesWhileItIsRestoredIsLostAndTheOldAttemptCountsForNothing)
{
    PlayedWorld world;
    world.MakeLost();
    world.mSign = LinkSign::Answer;
    world.RunUntil(LinkState::Restoring);
    world.mSign = LinkSign::NoAnswer;
    world.RunUntil(LinkState::Lost);
    EXPECT_EQ(world.mMonitor.GetState(), LinkState::Lost);
    world.mSign = LinkSign::Answer;
    world.RunUntil(LinkState::Restoring, milliseconds(2000));
    EXPECT_EQ(world.mMonitor.GetState(), LinkState::Lost) << "the stuck attempt must end first";
    EXPECT_EQ(world.mRestoresStarted, 1);
    world.mMonitor.EndRestore(LxResult());
    EXPECT_EQ(world.mMonitor.GetState(), LinkState::Lost);
    world.RunUntil(LinkState::Restoring, milliseconds(2000));
    EXPECT_EQ(world.mRestoresStarted, 2);
}

TEST(LinkMonitor, ADeviceThatDroppedItsControlIsRestoredAtOnce)
{
    PlayedWorld world;
    world.mSign = LinkSign::NoControl;
    world.Step();
    EXPECT_EQ(world.mMonitor.GetState(), LinkState::Restoring);
    EXPECT_EQ(world.mRestoresStarted, 1);
}

TEST(LinkMonitor, ASuspectThatAnswersWithoutControlIsRestored)
{
    PlayedWorld world;
    world.mSign = LinkSign::NoAnswer;
    world.RunUntil(LinkState::Suspect);
    world.mSign = LinkSign::NoControl;
    world.Step();
    EXPECT_EQ(world.mMonitor.GetState(), LinkState::Restoring);
}

TEST(LinkMonitor, ADeviceThatAnotherApplicationControlsIsDeniedAndTriedAgain)
{
    PlayedWorld world;
    world.MakeLost();
    world.mSign = LinkSign::NoControl;
    world.RunUntil(LinkState::Restoring);
    world.mMonitor.EndRestore(LxResult(LxResultCode::AccessDenied));
    EXPECT_EQ(world.mMonitor.GetState(), LinkState::Denied);
    EXPECT_EQ(world.mMonitor.GetResult(), LxResultCode::AccessDenied);
    EXPECT_NE(std::string(world.mMonitor.GetResult().GetDescription().GetAscii()).find("nother application"),
              std::string::npos);
    const auto took = world.RunUntil(LinkState::Restoring);
    EXPECT_GE(took, LinkTiming().mRetryPause);
    world.mMonitor.EndRestore(LxResult());
    EXPECT_EQ(world.mMonitor.GetState(), LinkState::Connected);
}

TEST(LinkMonitor, ADoubtThatIsNotJustifiedChangesNothing)
{
    PlayedWorld world;
    world.mMonitor.DoubtControl();
    world.Step();
    EXPECT_EQ(world.mRestoresStarted, 1);
    EXPECT_EQ(world.mMonitor.GetState(), LinkState::Connected) << "accesses go on meanwhile";
    world.mMonitor.EndRestore(LxResult());
    EXPECT_TRUE(world.mStates.empty());
    EXPECT_EQ(world.mMonitor.GetRestoreCount(), 0u);
}

TEST(LinkMonitor, ADoubtThatIsJustifiedDeniesTheDevice)
{
    PlayedWorld world;
    world.mMonitor.DoubtControl();
    world.Step();
    world.mMonitor.EndRestore(LxResult(LxResultCode::AccessDenied));
    EXPECT_EQ(world.mStates, std::vector{LinkState::Denied});
}

TEST(LinkMonitor, DoubtsAreNotLookedIntoMoreOftenThanTheRetryPause)
{
    PlayedWorld world;
    world.mMonitor.DoubtControl();
    world.Step();
    world.mMonitor.EndRestore(LxResult());
    const auto ended = world.mNow;
    while (world.mRestoresStarted < 2 && world.mNow - ended < milliseconds(10000)) {
        world.mMonitor.DoubtControl();
        world.Step();
    }
    EXPECT_GE(world.mNow - ended, LinkTiming().mRetryPause);
}

TEST(LinkMonitor, ClosingIsFinal)
{
    PlayedWorld world;
    world.MakeLost();
    world.mSign = LinkSign::Answer;
    world.RunUntil(LinkState::Restoring);
    world.mMonitor.Close();
    world.mMonitor.EndRestore(LxResult());
    world.Step();
    EXPECT_EQ(world.mMonitor.GetState(), LinkState::Closed);
    EXPECT_EQ(world.mMonitor.GetResult(), LxResultCode::NotConnected);
}

}  // namespace
