#include "CommandChannel.h"

#include "Backends/Simulation/SimulatedRegisters.h"
#include "EmulatorClient.h"

namespace LxEmulator
{
namespace
{

namespace Register = LxDetail::SimulatedRegister;

class CommandChannelTest : public testing::Test
{
protected:
    EmulatedCamera mCamera{MakeOptions()};
    CommandChannel mChannel{mCamera};
};

TEST_F(CommandChannelTest, EmptyLinesAndCommentsAreNotAnswered)
{
    EXPECT_EQ("", mChannel.Execute(""));
    EXPECT_EQ("", mChannel.Execute("  \t "));
    EXPECT_EQ("", mChannel.Execute("# freeze"));
    EXPECT_EQ("ok", mChannel.Execute("  clear   # all"));
    EXPECT_EQ("ok", mChannel.Execute("clear\r"));
}

TEST_F(CommandChannelTest, SaysWhatIsWrong)
{
    for (const char *line : {"nonsense",
                             "freeze now",
                             "delay",
                             "delay x",
                             "delay -1",
                             "delay 4294967296",
                             "status",
                             "status 0 0",
                             "status 0x8007",
                             "status 0x18007 0",
                             "status 0x8007 0 sometimes",
                             "status 0x8007 0 xx",
                             "corrupt nicely",
                             "corrupt garbage x",
                             "take-control please",
                             "force-ip 1.2.3 255.0.0.0",
                             "force-ip 1.2.3.4",
                             "drop-ids 5-3",
                             "drop-ids a",
                             "drop-random",
                             "geometry 64",
                             "geometry 3 3",
                             "read 0xFFFFFFFC",
                             "read x",
                             "write 0 1",
                             "poke 0xFFFFFFFC 0",
                             "quit now"})
    {
        const std::string reply = mChannel.Execute(line);
        EXPECT_EQ(0u, reply.find("error ")) << line << ": " << reply;
        EXPECT_EQ(std::string::npos, reply.find('\n')) << line;
    }
    EXPECT_FALSE(mChannel.IsDone());
}

TEST_F(CommandChannelTest, ReadsWritesAndPokesRegisters)
{
    EXPECT_EQ("ok value=0x00000BB8", mChannel.Execute("read 0x938"));
    EXPECT_EQ("ok", mChannel.Execute("write " + std::to_string(Register::Width) + " 64"));
    EXPECT_EQ(64u, mCamera.GetCamera().GetWidth());
    EXPECT_EQ("ok", mChannel.Execute("poke 0x0000 0x00010002"));
    EXPECT_EQ("ok value=0x00010002", mChannel.Execute("read 0"));
}

TEST_F(CommandChannelTest, ForcesAnAddressOnACameraOnTheNetworkOnly)
{
    EXPECT_EQ(0u, mChannel.Execute("force-ip 127.0.0.9 255.0.0.0").find("error INVALID_STATE"));
    ASSERT_TRUE(mCamera.Start().IsOK());
    EXPECT_EQ("ok", mChannel.Execute("force-ip 127.0.0.9 255.0.0.0 127.0.0.1"));
    EXPECT_EQ(0x7F000009u, mCamera.GetEndpoint().mAddress);
    EXPECT_EQ("ok", mChannel.Execute("force-ip 0.0.0.0 0.0.0.0"));
    EXPECT_EQ(Loopback, mCamera.GetEndpoint().mAddress);
}

TEST_F(CommandChannelTest, StateTellsWhoIsInControl)
{
    ASSERT_TRUE(mCamera.Start().IsOK());
    EXPECT_EQ(
        0u, mChannel.Execute("state").find(
                "ok address=127.0.0.1:3956 claims=127.0.0.1:3956 privilege=0 controller=none acquiring=0 commands=0 "));
    EmulatorClient client;
    client.TakeControl();
    const std::string holder = "controller=" + client.GetLocal().ToString().replace(0, 7, "127.0.0.1");
    const std::string state = mChannel.Execute("state");
    EXPECT_NE(std::string::npos, state.find(" privilege=2 " + holder + " ")) << state << " " << holder;
    EXPECT_NE(std::string::npos, state.find(" commands=1 ")) << state;
}

TEST_F(CommandChannelTest, QuitIsRemembered)
{
    EXPECT_FALSE(mChannel.IsDone());
    EXPECT_EQ("ok", mChannel.Execute("quit"));
    EXPECT_TRUE(mChannel.IsDone());
}

}  // namespace
}  // namespace LxEmulator
