// What goes wrong on the control channel on demand, through lines of text.

#include "Backends/Simulation/SimulatedRegisters.h"
#include "CommandChannel.h"
#include "EmulatorClient.h"
#include "WaitFor.h"

namespace LxEmulator
{
namespace
{

namespace Register = LxDetail::SimulatedRegister;
using namespace std::chrono_literals;

class ControlFaultsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        const LxResult result = mCamera.Start();
        ASSERT_TRUE(result.IsOK()) << result.GetDescription().GetAscii();
        mClient.emplace();
        mClient->TakeControl();
    }
    void Command(const std::string &aLine) { EXPECT_EQ("ok", mChannel.Execute(aLine)) << aLine; }

    EmulatedCamera mCamera{MakeOptions()};
    CommandChannel mChannel{mCamera};
    std::optional<EmulatorClient> mClient;
};

TEST_F(ControlFaultsTest, FrozenCameraAnswersNothingAndThaws)
{
    Command("freeze");
    mClient->SendBytes(EmulatorClient::MakeCommand(0x0082, mClient->NextId(), Words({Register::Width, 64})));
    mClient->SendBytes(EmulatorClient::MakeCommand(0x0002, mClient->NextId(), {}));
    EXPECT_TRUE(WaitFor([this] { return mCamera.GetControlStatistics().mIgnored == 2; }));
    Command("thaw");
    EXPECT_TRUE(mClient->IsSilent());
    EXPECT_NE(64u, mCamera.GetCamera().GetWidth());
    EXPECT_EQ(2u, mClient->ReadRegister(0x0A00));
}

TEST_F(ControlFaultsTest, IgnoredCommandsAreNotCarriedOut)
{
    Command("ignore-commands 1");
    mClient->SendBytes(EmulatorClient::MakeCommand(0x0082, mClient->NextId(), Words({Register::Width, 64})));
    EXPECT_TRUE(mClient->IsSilent());
    EXPECT_NE(64u, mCamera.GetCamera().GetWidth());
}

TEST_F(ControlFaultsTest, LostAnswersAreGivenOnRepetition)
{
    Command("lose-answers 1");
    const uint16_t id = mClient->NextId();
    const Bytes command = EmulatorClient::MakeCommand(0x0082, id, Words({Register::Width, 64}));
    mClient->SendBytes(command);
    EXPECT_TRUE(WaitFor([this] { return mCamera.GetCamera().GetWidth() == 64; })) << "it is carried out";
    mClient->SendBytes(command);
    const auto ack = mClient->Receive();
    ASSERT_TRUE(ack);
    EXPECT_EQ(id, ack->mId);
    EXPECT_EQ(1u, mCamera.GetControlStatistics().mRepeats);
}

TEST_F(ControlFaultsTest, AnswersAreDelayed)
{
    Command("delay 80");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(2u, mClient->ReadRegister(0x0A00));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 80ms);
    Command("delay 0");
}

TEST_F(ControlFaultsTest, RangesAnswerWithAnyStatus)
{
    for (const uint16_t status : {0x8001, 0x8002, 0x8003, 0x8004, 0x8005, 0x8006, 0x8007, 0x8008, 0x8009, 0x800A,
                                  0x800B, 0x800C, 0x800D, 0x800E, 0x800F, 0x8010, 0x8012, 0x8FFF, 0x8100})
    {
        Command("status " + std::to_string(status) + " " + std::to_string(Register::Width) + " 4 x1");
        uint32_t value = 0;
        EXPECT_EQ(status, mClient->ReadRegister(Register::Width, value));
        EXPECT_EQ(0, mClient->ReadRegister(Register::Width, value)) << "once only";
    }
}

TEST_F(ControlFaultsTest, StatusRulesKnowRangeAndDirection)
{
    Command("status 0x8007 " + std::to_string(Register::Width) + " 8 write");
    uint32_t value = 0;
    EXPECT_EQ(0, mClient->ReadRegister(Register::Width, value));
    EXPECT_EQ(0x8007, mClient->WriteRegister(Register::Width, 64));
    EXPECT_EQ(0x8007, mClient->WriteRegister(Register::Height, 64));
    EXPECT_EQ(0, mClient->WriteRegister(Register::OffsetX, 0)) << "behind the range";
    Bytes data;
    Command("status 0x8008 0x0204 4 read");
    EXPECT_EQ(0x8008, mClient->ReadMemory(0x0200, 16, data)) << "touches the range";
    EXPECT_EQ(0, mClient->ReadMemory(0x0208, 16, data));
    Command("clear-status");
    EXPECT_EQ(0, mClient->WriteRegister(Register::Width, 64));
}

TEST_F(ControlFaultsTest, PendingAcknowledgeComesFirst)
{
    Command("pending " + std::to_string(Register::Width) + " 4 100");
    const auto start = std::chrono::steady_clock::now();
    const uint16_t id = mClient->NextId();
    const Bytes command = EmulatorClient::MakeCommand(0x0082, id, Words({Register::Width, 64}));
    mClient->SendBytes(command);
    const auto pending = mClient->Receive();
    ASSERT_TRUE(pending);
    EXPECT_EQ(0x0089, pending->mCode);
    EXPECT_EQ(id, pending->mId);
    ASSERT_EQ(4u, pending->mPayload.size());
    EXPECT_GE(Get16(&pending->mPayload[2]), 100);
    const auto ack = mClient->Receive();
    ASSERT_TRUE(ack);
    EXPECT_EQ(0x0083, ack->mCode);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 100ms);
    EXPECT_EQ(64u, mCamera.GetCamera().GetWidth());
}

TEST_F(ControlFaultsTest, RepetitionWhilePendingIsAnsweredAsPending)
{
    // so long that the repetition comes in time on a slow machine too
    Command("pending " + std::to_string(Register::Width) + " 4 1000");
    const Bytes command = EmulatorClient::MakeCommand(0x0082, mClient->NextId(), Words({Register::Width, 64}));
    mClient->SendBytes(command);
    mClient->SendBytes(command);
    EXPECT_EQ(0x0089, mClient->Receive().value_or(Ack()).mCode);
    EXPECT_EQ(0x0089, mClient->Receive().value_or(Ack()).mCode);
    EXPECT_EQ(0x0083, mClient->Receive().value_or(Ack()).mCode);
    EXPECT_TRUE(mClient->IsSilent()) << "one final answer";
}

TEST_F(ControlFaultsTest, AnswersAreDamaged)
{
    const auto ask = [this](const std::string &aKind) {
        Command("corrupt " + aKind);
        const uint16_t id = mClient->NextId();
        mClient->SendBytes(EmulatorClient::MakeCommand(0x0080, id, Words({0x0938})));
        const Bytes bytes = mClient->ReceiveBytes().value_or(Bytes());
        Bytes good(12);
        Put16(&good[2], 0x0081);
        Put16(&good[4], 4);
        Put16(&good[6], id);
        Put32(&good[8], 3000);
        EXPECT_NE(good, bytes) << aKind;
        return std::pair(id, bytes);
    };
    EXPECT_LT(ask("short-header").second.size(), 8u);
    const auto wrongId = ask("wrong-id");
    EXPECT_NE(wrongId.first, Get16(&wrongId.second.at(6)));
    EXPECT_NE(0x0081, Get16(&ask("wrong-code").second.at(2)));
    EXPECT_EQ(0xFFFF, Get16(&ask("long-length").second.at(4)));
    EXPECT_EQ(0, Get16(&ask("short-length").second.at(4)));
    EXPECT_EQ(12u, ask("garbage").second.size());
    EXPECT_EQ(3000u, mClient->ReadRegister(0x0938)) << "one answer each";
    Command("corrupt unterminated 1");
    const Ack ack = mClient->Ask(0x0002, {});
    EXPECT_EQ(Bytes(248 - 0x48, 'X'), Bytes(ack.mPayload.begin() + 0x48, ack.mPayload.end()));
}

TEST_F(ControlFaultsTest, ControlIsTakenAwayAndReleased)
{
    Command("take-control");
    EXPECT_EQ(0x8006, mClient->WriteRegister(Register::Width, 64));
    Command("take-control exclusive");
    uint32_t value = 0;
    EXPECT_EQ(0x8006, mClient->ReadRegister(0x0A00, value));
    Command("release-control");
    EXPECT_EQ(0, mClient->ReadRegister(0x0A00, value));
    EXPECT_EQ(0u, value);
}

TEST_F(ControlFaultsTest, ClearEndsAll)
{
    Command("delay 100000");
    Command("status 0x8007 0 0x10000");
    Command("ignore-commands 100");
    Command("lose-answers 100");
    Command("corrupt garbage 100");
    Command("freeze");
    Command("clear");
    EXPECT_EQ(2u, mClient->ReadRegister(0x0A00));
}

}  // namespace
}  // namespace LxEmulator
